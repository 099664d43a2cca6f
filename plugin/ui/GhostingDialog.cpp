#include "ui/GhostingDialog.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "ui/DialogParts.h"
#include "ui/HostColorField.h"

#include <QCheckBox>
#include <QColor>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

namespace vellix {

namespace {

constexpr int GHOSTING_MARGIN = 6;
constexpr int GHOSTING_LEAST_WIDTH = 300;

QSpinBox* CreateCount(int count, const QString& toolTip) {
    const int least = Settings::MIN_GHOSTED_FRAMES;
    const int most = Settings::MAX_GHOSTED_FRAMES;
    auto* box = new QSpinBox;
    box->setRange(least, most);
    box->setValue(count);
    box->setAlignment(Qt::AlignRight);
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    box->setToolTip(toolTip);
    return box;
}

HostColorField* CreateColor(const QString& name, const QColor& color, const QString& toolTip) {
    auto* field = new HostColorField(name, QSize(24, 18), toolTip);
    field->SetColor(color);
    return field;
}

/// Creates a row with a widget each for "Previous:" and "Next:". Rows whose widgets are at most `width` wide
/// stand one below the other.
QGridLayout* CreateRow(QWidget* previous, QWidget* next, int width) {
    auto* row = new QGridLayout;
    row->setHorizontalSpacing(GHOSTING_MARGIN);
    int column = 0;
    for (QWidget* const field : {previous, next}) {
        auto* const label =
            new QLabel(field == previous ? QStringLiteral("Previous:") : QStringLiteral("Next:"));
        label->setBuddy(field);
        row->addWidget(label, 0, column++);
        row->setColumnMinimumWidth(column, width + GHOSTING_MARGIN);
        row->addWidget(field, 0, column++, Qt::AlignLeft | Qt::AlignVCenter);
    }
    row->setColumnStretch(column, 1);
    return row;
}

/// The control's colour, or the current setting when the host has no control.
QColor ColorOf(const HostColorField& field, const QColor& setting) {
    const QColor color = field.GetColor();
    return color.isValid() ? color : setting;
}

} // namespace

GhostingDialog::GhostingDialog(QWidget* parent)
    : QDialog(parent)
    , previousCount_(
          CreateCount(Settings::ghostPrevCount, QStringLiteral("Number of earlier drawings shown")))
    , nextCount_(CreateCount(Settings::ghostNextCount, QStringLiteral("Number of later drawings shown")))
    , colorOverride_(new QCheckBox(QStringLiteral("Enable Color Override")))
    , previousColor_(CreateColor(QStringLiteral("qmGhostPrevOverrideColorBtn"),
                                 Settings::ghostColorOverridePrev,
                                 QStringLiteral("Color of the earlier drawings")))
    , nextColor_(CreateColor(QStringLiteral("qmGhostNextOverrideColorBtn"), Settings::ghostColorOverrideNext,
                             QStringLiteral("Color of the later drawings"))) {
    setObjectName(QStringLiteral("qmVxGhosting"));
    setWindowTitle(QStringLiteral("Ghosting Settings"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    previousCount_->setObjectName(QStringLiteral("qmVxGhostingPreviousCount"));
    nextCount_->setObjectName(QStringLiteral("qmVxGhostingNextCount"));
    colorOverride_->setObjectName(QStringLiteral("qmVxGhostingColorOverride"));
    colorOverride_->setChecked(Settings::ghostColorOverride);
    colorOverride_->setToolTip(QStringLiteral("Show ghosts in these colors instead of their own"));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(GHOSTING_MARGIN, GHOSTING_MARGIN, GHOSTING_MARGIN, GHOSTING_MARGIN);
    column->addSpacerItem(new QSpacerItem(GHOSTING_LEAST_WIDTH - 2 * GHOSTING_MARGIN, 0));
    column->addWidget(CreateFramesGroup());
    column->addWidget(CreateColorGroup());
    column->addStretch();
    column->addLayout(CreateDialogButtons(*this, [this] { Apply(); }));
    previousCount_->setFocus();
    previousCount_->selectAll();
}

QWidget* GhostingDialog::CreateFramesGroup() {
    auto* group = new QGroupBox(QStringLiteral("Frames to Display"));
    group->setLayout(CreateRow(previousCount_, nextCount_, previousCount_->sizeHint().width()));
    return group;
}

QWidget* GhostingDialog::CreateColorGroup() {
    auto* group = new QGroupBox(QStringLiteral("Color Override"));
    auto* column = new QVBoxLayout(group);
    column->addWidget(colorOverride_);
    column->addLayout(CreateRow(previousColor_, nextColor_, previousCount_->sizeHint().width()));
    return group;
}

void GhostingDialog::Apply() {
    MayaUtil::SetGhostPreviousCount(previousCount_->value());
    MayaUtil::SetGhostNextCount(nextCount_->value());
    MayaUtil::SetGhostColorOverrideEnabled(colorOverride_->isChecked());
    MayaUtil::SetGhostColorOverridePrev(ColorOf(*previousColor_, Settings::ghostColorOverridePrev));
    MayaUtil::SetGhostColorOverrideNext(ColorOf(*nextColor_, Settings::ghostColorOverrideNext));
    accept();
}

} // namespace vellix
