#include "ui/ToolOptionsDialog.h"

#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/ToolOptions.h"
#include "paint/ToolTable.h"
#include "ui/FieldUndo.h"
#include "ui/IconView.h"
#include "ui/NumberSlider.h"

#include <QCheckBox>
#include <QFontComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

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
    : FloatingPanel(QStringLiteral("Tool Options"), Settings::toolOptionsGeometry, parent)
    , m_icon(new IconView(ToolType::Brush, OPTIONS_ICON_SIDE))
    , m_name(new QLabel)
    , m_size(new NumberSlider(QStringLiteral("qmVxToolOptionsSize")))
    , m_opacity(CreatePercent(QStringLiteral("qmVxToolOptionsOpacity"), 1,
                              QStringLiteral("How opaque the tool draws; hold M and drag in a view")))
    , m_hardness(CreatePercent(QStringLiteral("qmVxToolOptionsHardness"), 0,
                               QStringLiteral("How sharp the edge of a stroke is")))
    , m_pressure(new QCheckBox(QStringLiteral("Tablet pressure")))
    , m_font(new QFontComboBox) {
    setObjectName(QStringLiteral("qmVxToolOptions"));
    setMinimumWidth(OPTIONS_LEAST_WIDTH);
    m_pressure->setObjectName(QStringLiteral("qmVxToolOptionsPressure"));
    m_font->setObjectName(QStringLiteral("qmVxToolOptionsFont"));
    m_pressure->setToolTip(QStringLiteral("The pressure of a tablet's pen sets how opaque the stroke is"));
    m_font->setToolTip(QStringLiteral("The font of text"));
    m_font->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_font->setMinimumContentsLength(LEAST_FONT_LENGTH);
    m_font->setInsertPolicy(QComboBox::NoInsert);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(OPTIONS_MARGIN, OPTIONS_MARGIN, OPTIONS_MARGIN, OPTIONS_MARGIN);
    grid->setSpacing(OPTIONS_SPACING);
    grid->setColumnStretch(1, 1);
    grid->addLayout(CreateHeader(), 0, 0, 1, 2);
    AddRow(*grid, QStringLiteral("Size"), m_size);
    AddRow(*grid, QStringLiteral("Opacity"), m_opacity);
    m_hardnessRow = AddRow(*grid, QStringLiteral("Hardness"), m_hardness);
    m_fontRow = AddRow(*grid, QStringLiteral("Font"), m_font);
    grid->addWidget(m_pressure, grid->rowCount(), 1);
    grid->setRowStretch(grid->rowCount(), 1);

    for (NumberSlider* slider : {m_size, m_opacity, m_hardness}) {
        connect(slider, &NumberSlider::Changed, this, &ToolOptionsDialog::Send);
    }
    connect(m_pressure, &QCheckBox::clicked, this, &ToolOptionsDialog::Send);
    connect(m_font, static_cast<void (QComboBox::*)(int)>(&QComboBox::activated), this,
            &ToolOptionsDialog::OnFontChosen);
    connect(m_font->lineEdit(), &QLineEdit::editingFinished, this, &ToolOptionsDialog::OnFontChosen);
    new FieldUndo(*m_font, [this] { return m_font->currentText() != m_shownFont; });
    Refresh();
}

QLayout* ToolOptionsDialog::CreateHeader() {
    QFont font = m_name->font();
    font.setBold(true);
    m_name->setFont(font);
    auto* header = new QHBoxLayout;
    header->setSpacing(OPTIONS_SPACING);
    header->addWidget(m_icon);
    header->addWidget(m_name, 1);
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
    if (tool == nullptr) {
        return;
    }
    m_icon->SetIcon(tool->type);
    m_name->setText(QLatin1String(tool->label));
    m_size->SetUp(1, tool->maximumSize, QLatin1Char(' ') + QLatin1String(tool->SizeUnit()),
                  QStringLiteral("How large the tool draws; hold B and drag in a view"));
    m_hardnessRow.SetShown(tool->Has(ToolRow::HARDNESS));
    m_pressure->setVisible(tool->Has(ToolRow::PRESSURE));
    m_fontRow.SetShown(tool->kind == ToolKind::Text);

    const ToolOptions options = Settings::GetToolOptions(tool->type);
    m_size->SetValue(options.size);
    m_opacity->SetValue(options.opacity);
    m_hardness->SetValue(options.hardness);
    m_pressure->setChecked(options.tabletEnabled);
    ShowFont(Settings::textFontFamily);
}

void ToolOptionsDialog::ShowFont(const QString& family) {
    // Keeps text that is being typed until the font changes.
    if (family != m_shownFont) {
        const QSignalBlocker blocker(m_font);
        m_font->setCurrentFont(QFont(family));
        m_font->setEditText(family);
        m_shownFont = family;
    }
}

void ToolOptionsDialog::OnFontChosen() {
    const int index = m_font->findText(m_font->currentText(), Qt::MatchFixedString);
    if (index < 0) {
        // No such font: shows the current one again.
        m_font->setEditText(m_shownFont);
    } else if (m_font->itemText(index) != Settings::textFontFamily) {
        m_shownFont = m_font->itemText(index);
        Send();
    }
}

void ToolOptionsDialog::Send() {
    if (const ToolRow* const tool = FindTool(Settings::activeTool)) {
        MayaUtil::SetToolOptions(tool->type, {m_size->GetValue(), m_opacity->GetValue(),
                                              m_hardness->GetValue(), m_pressure->isChecked(), m_shownFont});
    }
}

} // namespace vellix
