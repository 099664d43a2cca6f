#include "ui/ToolOptionsDialog.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
#include "host/Settings.h"
#include "host/ToolOptions.h"
#include "paint/BrushPreset.h"
#include "paint/ToolTable.h"
#include "ui/FieldUndo.h"
#include "ui/IconView.h"
#include "ui/NumberSlider.h"
#include "ui/PressureField.h"
#include "ui/PressureStrip.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

namespace vellix {

namespace {

constexpr int OPTIONS_MARGIN = 8;
constexpr int OPTIONS_SPACING = 6;
constexpr int OPTIONS_ICON_SIDE = 24;
constexpr int OPTIONS_LEAST_WIDTH = 240;
/// Characters of a font's name that are visible in the narrowest panel.
constexpr int LEAST_FONT_LENGTH = 12;

NumberSlider* CreatePercent(const QString& name, int least, const QString& toolTip) {
    auto* slider = new NumberSlider(name);
    slider->SetUp(least, 100, QStringLiteral(" %"), toolTip);
    return slider;
}

} // namespace

void ToolOptionsDialog::Row::SetShown(bool shown) const {
    label->setVisible(shown);
    field->setVisible(shown);
}

ToolOptionsDialog::ToolOptionsDialog(QWidget* parent)
    : FloatingPanel(Panel::ToolOptions, parent)
    , icon_(new IconView(ToolType::Brush, OPTIONS_ICON_SIDE))
    , name_(new QLabel)
    , size_(new NumberSlider(QStringLiteral("qmVxToolOptionsSize")))
    , opacity_(CreatePercent(QStringLiteral("qmVxToolOptionsOpacity"), 1,
                             QStringLiteral("How opaque the tool draws; hold M and drag in a view")))
    , hardness_(CreatePercent(QStringLiteral("qmVxToolOptionsHardness"), 0,
                              QStringLiteral("How sharp the edge of a stroke is")))
    , stabiliser_(new NumberSlider(QStringLiteral("qmVxToolOptionsStabiliser")))
    , pressure_(new QCheckBox(QStringLiteral("Tablet pressure")))
    , pressureSize_(new QCheckBox(QStringLiteral("Pressure sets size")))
    , smoothCurves_(new QCheckBox(QStringLiteral("Smooth curves")))
    , font_(new QFontComboBox) {
    setObjectName(QStringLiteral("qmVxToolOptions"));
    size_->SetCurved(true);
    pressure_->setObjectName(QStringLiteral("qmVxToolOptionsPressure"));
    pressureSize_->setObjectName(QStringLiteral("qmVxToolOptionsPressureSize"));
    pressureSize_->setToolTip(QStringLiteral("The pressure of a tablet's pen sets how large the tool draws"));
    smoothCurves_->setObjectName(QStringLiteral("qmVxToolOptionsSmoothCurves"));
    font_->setObjectName(QStringLiteral("qmVxToolOptionsFont"));
    pressure_->setToolTip(QStringLiteral("The pressure of a tablet's pen sets how opaque the stroke is"));
    smoothCurves_->setToolTip(QStringLiteral("Joins the samples of a fast stroke by curves"));
    stabiliser_->SetUp(
        0, LineStyle::MAX_STABILISER, QStringLiteral(" px"),
        QStringLiteral("Length of a string on which the pen draws the tool: steadies the line"));
    font_->setToolTip(QStringLiteral("The font of text"));
    font_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    font_->setMinimumContentsLength(LEAST_FONT_LENGTH);
    font_->setInsertPolicy(QComboBox::NoInsert);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(OPTIONS_MARGIN, OPTIONS_MARGIN, OPTIONS_MARGIN, OPTIONS_MARGIN);
    grid->setSpacing(OPTIONS_SPACING);
    grid->setColumnStretch(1, 1);
    // Not a minimum of the window, which would hide that larger fonts need more.
    grid->addItem(new QSpacerItem(OPTIONS_LEAST_WIDTH - 2 * OPTIONS_MARGIN, 0), 0, 0, 1, 2);
    grid->addLayout(CreateHeader(), 0, 0, 1, 2);
    AddRow(*grid, QStringLiteral("Size"), size_);
    AddRow(*grid, QStringLiteral("Opacity"), opacity_);
    hardnessRow_ = AddRow(*grid, QStringLiteral("Hardness"), hardness_);
    fontRow_ = AddRow(*grid, QStringLiteral("Font"), font_);
    stabiliserRow_ = AddRow(*grid, QStringLiteral("Stabiliser"), stabiliser_);
    grid->addWidget(smoothCurves_, grid->rowCount(), 1);
    grid->addWidget(pressure_, grid->rowCount(), 1);
    grid->addWidget(pressureSize_, grid->rowCount(), 1);
    pressureShown_ = new QToolButton;
    pressureShown_->setObjectName(QStringLiteral("qmVxToolOptionsPressureShown"));
    pressureShown_->setText(QStringLiteral("Curves of pressure"));
    pressureShown_->setToolTip(
        QStringLiteral("Shows how opacity and size answer to pressure, to be changed and tried"));
    pressureShown_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    pressureShown_->setArrowType(Qt::RightArrow);
    pressureShown_->setAutoRaise(true);
    pressureShown_->setFocusPolicy(Qt::StrongFocus);
    grid->addWidget(pressureShown_, grid->rowCount(), 0, 1, 2);
    ConnectGuarded(pressureShown_, &QToolButton::clicked, this, &ToolOptionsDialog::UnfoldPressure);
    pressureParts_ = CreatePressure();
    grid->addWidget(pressureParts_, grid->rowCount(), 0, 1, 2);
    grid->setRowStretch(grid->rowCount(), 1);

    for (NumberSlider* slider : {size_, opacity_, hardness_}) {
        ConnectGuarded(slider, &NumberSlider::Changed, this, &ToolOptionsDialog::Send);
    }
    ConnectGuarded(pressure_, &QCheckBox::clicked, this, &ToolOptionsDialog::Send);
    ConnectGuarded(stabiliser_, &NumberSlider::Changed, this,
                   [this] { MayaUtil::SetStabiliser(stabiliser_->GetValue()); });
    ConnectGuarded(smoothCurves_, &QCheckBox::clicked, this, [](bool on) { MayaUtil::SetSmoothCurves(on); });
    ConnectGuarded(font_, static_cast<void (QComboBox::*)(int)>(&QComboBox::activated), this,
                   &ToolOptionsDialog::OnFontChosen);
    ConnectGuarded(font_->lineEdit(), &QLineEdit::editingFinished, this, &ToolOptionsDialog::OnFontChosen);
    new FieldUndo(*font_, [this] { return font_->currentText() != shownFont_; });
    Refresh();
}

QWidget* ToolOptionsDialog::CreatePressure() {
    auto* parts = new QWidget;
    auto* grid = new QGridLayout(parts);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(OPTIONS_SPACING);
    opacityCurve_ = new PressureField(QStringLiteral("Opacity"));
    opacityCurve_->setObjectName(QStringLiteral("qmVxToolOptionsOpacityCurve"));
    sizeCurve_ = new PressureField(QStringLiteral("Size"));
    sizeCurve_->setObjectName(QStringLiteral("qmVxToolOptionsSizeCurve"));
    strip_ = new PressureStrip;
    strip_->setObjectName(QStringLiteral("qmVxToolOptionsStrip"));
    int column = 0;
    int widest = 0;
    for (PressureField* field : {opacityCurve_, sizeCurve_}) {
        auto* label = new QLabel(field == sizeCurve_ ? QStringLiteral("Pressure to size")
                                                     : QStringLiteral("Pressure to opacity"));
        label->setBuddy(field);
        grid->addWidget(label, 0, column);
        grid->addWidget(field, 1, column);
        widest = qMax(widest, label->sizeHint().width());
        ++column;
        ConnectGuarded(field, &PressureField::Dragged, this, [this] { strip_->SetBrush(ShownBrush()); });
    }
    grid->addWidget(strip_, 2, 0, 1, 2);
    for (column = 0; column < grid->columnCount(); ++column) { // both curves are of one size
        grid->setColumnMinimumWidth(column, widest);
        grid->setColumnStretch(column, 1);
    }
    ConnectGuarded(opacityCurve_, &PressureField::Changed, this,
                   [this] { MayaUtil::SetOpacityPressure(Settings::activeTool, ShownBrush().pressure); });
    const auto sendSize = [this] { MayaUtil::SetSizePressure(Settings::activeTool, ShownBrush().pressure); };
    ConnectGuarded(sizeCurve_, &PressureField::Changed, this, sendSize);
    ConnectGuarded(pressureSize_, &QCheckBox::clicked, this, sendSize);
    return parts;
}

void ToolOptionsDialog::UnfoldPressure() {
    isUnfolded_ = !isUnfolded_;
    pressureShown_->setArrowType(isUnfolded_ ? Qt::DownArrow : Qt::RightArrow);
    pressureParts_->setVisible(isUnfolded_);
    layout()->activate();
    resize(width(), isUnfolded_ ? qMax(height(), sizeHint().height()) : sizeHint().height());
    KeepOnScreen();
}

BrushPreset ToolOptionsDialog::ShownBrush() const {
    BrushPreset brush = Settings::GetBrush();
    brush.pressure.setsSize = pressureSize_->isChecked();
    brush.pressure.opacity = opacityCurve_->GetCurve();
    brush.pressure.size = sizeCurve_->GetCurve();
    return brush;
}

QLayout* ToolOptionsDialog::CreateHeader() {
    QFont font = name_->font();
    font.setBold(true);
    name_->setFont(font);
    auto* header = new QHBoxLayout;
    header->setSpacing(OPTIONS_SPACING);
    header->addWidget(icon_);
    header->addWidget(name_, 1);
    return header;
}

ToolOptionsDialog::Row ToolOptionsDialog::AddRow(QGridLayout& grid, const QString& label, QWidget* field) {
    auto* text = new QLabel(label);
    text->setBuddy(field);
    const int row = grid.rowCount();
    grid.addWidget(text, row, 0);
    grid.addWidget(field, row, 1);
    return {text, field};
}

void ToolOptionsDialog::Refresh() {
    const ToolRow* const tool = FindTool(Settings::activeTool);
    setEnabled(tool != nullptr);
    if (!tool) {
        return;
    }
    icon_->SetIcon(tool->type);
    name_->setText(QLatin1String(tool->label));
    size_->SetUp(1, tool->maximumSize, QLatin1Char(' ') + QLatin1String(tool->SizeUnit()),
                 QStringLiteral("How large the tool draws; hold B and drag in a view"));
    hardnessRow_.SetShown(tool->Has(ToolRow::HARDNESS));
    const bool hasPressure = tool->Has(ToolRow::PRESSURE);
    pressure_->setVisible(hasPressure);
    pressureSize_->setVisible(hasPressure);
    pressureShown_->setVisible(hasPressure);
    pressureParts_->setVisible(hasPressure && isUnfolded_);
    fontRow_.SetShown(tool->kind == ToolKind::Text);
    stabiliserRow_.SetShown(tool->kind == ToolKind::Freehand);
    smoothCurves_->setVisible(tool->kind == ToolKind::Freehand);

    const ToolOptions options = Settings::GetToolOptions(tool->type);
    size_->SetValue(options.size);
    opacity_->SetValue(options.opacity);
    hardness_->SetValue(options.hardness);
    pressure_->setChecked(options.tabletEnabled);
    const PenPressure& pressure = Settings::GetPenPressure(tool->type);
    pressureSize_->setChecked(pressure.setsSize);
    opacityCurve_->SetCurve(pressure.opacity);
    opacityCurve_->setEnabled(options.tabletEnabled);
    sizeCurve_->SetCurve(pressure.size);
    sizeCurve_->setEnabled(pressure.setsSize);
    strip_->SetBrush(ShownBrush());
    stabiliser_->SetValue(Settings::lineStyle.stabiliser);
    smoothCurves_->setChecked(Settings::lineStyle.smoothCurves);
    ShowFont(Settings::textFontFamily);
}

void ToolOptionsDialog::ShowFont(const QString& family) {
    // Keeps text that is being typed until the font changes.
    if (family != shownFont_) {
        const QSignalBlocker blocker(font_);
        font_->setCurrentFont(QFont(family));
        font_->setEditText(family);
        shownFont_ = family;
    }
}

void ToolOptionsDialog::OnFontChosen() {
    const int index = font_->findText(font_->currentText(), Qt::MatchFixedString);
    if (index < 0) {
        // No such font: shows the current one again.
        font_->setEditText(shownFont_);
    } else if (font_->itemText(index) != Settings::textFontFamily) {
        shownFont_ = font_->itemText(index);
        Send();
    }
}

void ToolOptionsDialog::Send() {
    if (const ToolRow* const tool = FindTool(Settings::activeTool)) {
        MayaUtil::SetToolOptions(tool->type, {size_->GetValue(), opacity_->GetValue(), hardness_->GetValue(),
                                              pressure_->isChecked(), shownFont_});
    }
}

} // namespace vellix
