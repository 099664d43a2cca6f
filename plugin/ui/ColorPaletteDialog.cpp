#include "ui/ColorPaletteDialog.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
#include "ui/FlatButton.h"

#include <maya/MQtUtil.h>

#include <QButtonGroup>
#include <QColor>
#include <QColorDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QPointer>
#include <QVBoxLayout>
#include <QWindow>

namespace vellix {

namespace {

constexpr int SWATCH_COUNT = 16;
constexpr int ROW_COUNT = 2;
constexpr int PALETTE_MARGIN = 2;

} // namespace

ColorPaletteDialog::ColorPaletteDialog(QWidget* parent)
    : FloatingPanel(Panel::ColorPalette, parent) {
    setObjectName(QStringLiteral("qmVxColorPalette"));
    setContextMenuPolicy(Qt::CustomContextMenu);
    ConnectGuarded(this, &QWidget::customContextMenuRequested, this, &ColorPaletteDialog::ShowMenu);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(PALETTE_MARGIN, PALETTE_MARGIN, PALETTE_MARGIN, PALETTE_MARGIN);
    column->setSpacing(PALETTE_MARGIN);
    column->setSizeConstraint(QLayout::SetFixedSize);
    QHBoxLayout* rows[ROW_COUNT];
    for (QHBoxLayout*& row : rows) {
        row = new QHBoxLayout;
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(PALETTE_MARGIN);
        column->addLayout(row);
    }
    // In a button group the arrow keys move between swatches by their position.
    auto* group = new QButtonGroup(this);
    group->setExclusive(false);
    for (int i = 0; i < SWATCH_COUNT; ++i) {
        auto* swatch = new FlatButton;
        swatch->setObjectName(QStringLiteral("qmVxColorPalette%1").arg(i));
        swatches_.append(swatch);
        group->addButton(swatch);
        rows[i % ROW_COUNT]->addWidget(swatch);
        ConnectGuarded(swatch, &QAbstractButton::clicked, this, &ColorPaletteDialog::OnColorSelected);
    }
    // Tab goes through the upper row first.
    for (int i = 1; i < SWATCH_COUNT; ++i) {
        constexpr int half = SWATCH_COUNT / ROW_COUNT;
        const auto at = [](int place) { return place % half * ROW_COUNT + place / half; };
        setTabOrder(swatches_[at(i - 1)], swatches_[at(i)]);
    }
    // Any chooser in the host may have changed the custom colours when it closes.
    ConnectGuarded(qGuiApp, &QGuiApplication::focusWindowChanged, this, &ColorPaletteDialog::RefreshColors);
    RefreshColors();
}

void ColorPaletteDialog::RefreshColors() {
    for (int i = 0; i < swatches_.size(); ++i) {
        const QColor color = QColorDialog::customColor(i);
        const QString name = QStringLiteral("Draw with %1 %2 %3 (right click to customize)")
                                 .arg(color.red())
                                 .arg(color.green())
                                 .arg(color.blue());
        swatches_[i]->SetColor(color);
        swatches_[i]->setToolTip(name);
        swatches_[i]->setAccessibleName(name);
    }
}

void ColorPaletteDialog::showEvent(QShowEvent* event) {
    FloatingPanel::showEvent(event);
    RefreshColors();
}

void ColorPaletteDialog::OnColorSelected() {
    if (const auto* swatch = qobject_cast<FlatButton*>(sender())) {
        MayaUtil::SetActiveColor(swatch->GetColor());
    }
}

void ColorPaletteDialog::ShowMenu(const QPoint& place) {
    QMenu menu;
    ConnectGuarded(menu.addAction(QStringLiteral("Customize...")), &QAction::triggered, this,
                   &ColorPaletteDialog::CustomizeColors);
    menu.exec(mapToGlobal(place));
}

void ColorPaletteDialog::CustomizeColors() {
    // The plug-in may be unloaded while the chooser is open.
    const QPointer<ColorPaletteDialog> self = this;
    QColorDialog::getColor(QColorDialog::customColor(0), MQtUtil::mainWindow(),
                           QStringLiteral("Customize Palette Colors"), QColorDialog::DontUseNativeDialog);
    if (self) {
        RefreshColors();
    }
}

} // namespace vellix
