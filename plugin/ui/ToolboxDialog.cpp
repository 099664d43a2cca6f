#include "ui/ToolboxDialog.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
#include "host/PresetKeys.h"
#include "host/Settings.h"
#include "host/ToolOptions.h"
#include "node/BaseNode.h"
#include "node/LightTableMenu.h"
#include "paint/BrushPreset.h"
#include "paint/ToolTable.h"
#include "ui/HostColorField.h"
#include "ui/IconButton.h"
#include "ui/NumberSlider.h"
#include "ui/PresetButton.h"

#include <maya/MEventMessage.h>

#include <QColor>
#include <QGridLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

namespace vellix {

namespace {

constexpr int TOOLBOX_MARGIN = 6;
constexpr int TOOLBOX_SPACING = 2;
constexpr int GROUP_SPACING = 5;
constexpr int ICON_SIZE = 24;
/// Every row of the panel uses the same columns.
constexpr int COLUMN_COUNT = 5;
constexpr int COLOR_HEIGHT = 26;

/// A thin line between two groups, equally faint on dark and on light.
class Separator : public QWidget {
public:
    Separator() { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QColor color = palette().color(QPalette::WindowText);
        color.setAlphaF(0.2);
        QPainter(this).fillRect(rect(), color);
    }
};

QGridLayout* CreateGrid() {
    auto* grid = new QGridLayout;
    grid->setSpacing(TOOLBOX_SPACING);
    for (int column = 0; column < COLUMN_COUNT; ++column) {
        grid->setColumnStretch(column, 1);
    }
    return grid;
}

} // namespace

ToolboxDialog::ToolboxDialog(QWidget* parent)
    : FloatingPanel(Panel::Toolbox, parent) {
    setObjectName(QStringLiteral("qmVxToolbox"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(TOOLBOX_MARGIN, TOOLBOX_MARGIN, TOOLBOX_MARGIN, TOOLBOX_MARGIN);
    column->setSpacing(GROUP_SPACING);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addLayout(CreateTools());
    // The transform button ends the first row.
    setTabOrder(tools_[COLUMN_COUNT - 2], transform_);
    column->addWidget(new Separator);
    auto* colors = new QHBoxLayout;
    column->addLayout(colors);
    column->addLayout(CreateOptions());
    column->addLayout(CreatePresets());
    column->addWidget(new Separator);
    column->addLayout(CreateFrames());
    column->addWidget(new Separator);
    column->addLayout(CreateGhostsAndLayers());
    RefreshOptions();
    AddColors(*colors, column->sizeHint().width() - 2 * TOOLBOX_MARGIN);

    // Choosing one of the host's own tools is reported only by this event.
    const auto refresh = [](void* toolbox) { static_cast<ToolboxDialog*>(toolbox)->Refresh(); };
    callbacks_.Add([&](MStatus* status) {
        return MEventMessage::addEventCallback("ToolChanged", refresh, this, status);
    });
    Refresh();
}

ToolboxDialog::~ToolboxDialog() = default;

// --- parts ------------------------------------------------------------------------------------------------

QLayout* ToolboxDialog::CreateTools() {
    QGridLayout* grid = CreateGrid();
    constexpr int perRow = COLUMN_COUNT - 1;
    int place = 0;
    for (const ToolRow& tool : AllTools()) {
        const QString toolTip =
            QStringLiteral("%1: %2").arg(QString::fromLatin1(tool.label), QString::fromLatin1(tool.hint));
        IconButton* button =
            CreateSwitch(tool.type, tool.label, toolTip, [&tool] { return MayaUtil::SetTool(tool.type); });
        ConnectGuarded(button, &IconButton::MenuWanted, this, [this, &tool] { ShowOptionsOf(tool); });
        tools_.append(button);
        grid->addWidget(button, place / perRow, place % perRow);
        ++place;
    }
    transform_ = CreateSwitch(ToolType::Transform, "Transform",
                              QStringLiteral("Transform: move, turn and scale a part of the drawing"),
                              MayaUtil::ActivateTransformTool);
    grid->addWidget(transform_, 0, perRow);
    optionsButton_ = CreateButton(Icon::Options, "Options", QStringLiteral("Tool options"),
                                  MayaUtil::ShowToolOptionsDialog);
    grid->addWidget(optionsButton_, 1, perRow);
    return grid;
}

void ToolboxDialog::AddColors(QHBoxLayout& row, int width) {
    row.setSpacing(TOOLBOX_SPACING);
    IconButton* palette = CreateButton(Icon::Palette, "Palette", QStringLiteral("Color palette"),
                                       MayaUtil::ShowColorPaletteDialog);
    const QSize size(width - palette->sizeHint().width() - TOOLBOX_SPACING, COLOR_HEIGHT);
    color_ = new HostColorField(QStringLiteral("qmToolboxColorBtn"), size,
                                QStringLiteral("Color to draw with; click to choose another one"));
    color_->setObjectName(QStringLiteral("qmVxToolboxColor"));
    color_->SetChangeCommand(Settings::UTIL_COMMAND_NAME + QStringLiteral(" -refreshToolbox"));
    row.addWidget(color_);
    row.addStretch();
    row.addWidget(palette);
    // These follow the tools in tab order, whatever the order of creation.
    QWidget* before = optionsButton_;
    for (QWidget* next : {color_->focusProxy(), static_cast<QWidget*>(palette)}) {
        if (next) {
            setTabOrder(before, next);
            before = next;
        }
    }
}

QLayout* ToolboxDialog::CreateOptions() {
    auto* grid = new QGridLayout;
    grid->setSpacing(TOOLBOX_SPACING);
    grid->setHorizontalSpacing(TOOLBOX_MARGIN);
    size_ = new NumberSlider(QStringLiteral("qmVxToolboxSize"));
    size_->SetCurved(true);
    opacity_ = new NumberSlider(QStringLiteral("qmVxToolboxOpacity"));
    opacity_->SetUp(1, 100, QStringLiteral(" %"), QStringLiteral("Opacity of the active tool"));
    int row = 0;
    for (NumberSlider* slider : {size_, opacity_}) {
        auto* label = new QLabel(slider == size_ ? QStringLiteral("Size") : QStringLiteral("Opacity"));
        label->setBuddy(slider);
        grid->addWidget(label, row, 0);
        grid->addWidget(slider, row, 1);
        ConnectGuarded(slider, &NumberSlider::Changed, this, &ToolboxDialog::Send);
        ++row;
    }
    return grid;
}

QLayout* ToolboxDialog::CreatePresets() {
    QGridLayout* grid = CreateGrid();
    for (int number = 1; number <= BrushPreset::COUNT; ++number) {
        auto* button = new PresetButton(number, ICON_SIZE);
        button->setObjectName(QStringLiteral("qmVxToolboxPreset%1").arg(number));
        ConnectGuarded(button, &QAbstractButton::clicked, this, [number] { MayaUtil::ChoosePreset(number); });
        ConnectGuarded(button, &IconButton::MenuWanted, this,
                       [this, number](const QPoint& place) { ShowPresetMenu(number, place); });
        presets_.append(button);
        grid->addWidget(button, (number - 1) / COLUMN_COUNT, (number - 1) % COLUMN_COUNT);
    }
    return grid;
}

QLayout* ToolboxDialog::CreateFrames() {
    QGridLayout* grid = CreateGrid();
    int column = 0;
    for (IconButton* button :
         {CreateButton(Icon::InsertFrame, "InsertFrame", QStringLiteral("Insert an empty frame"),
                       MayaUtil::InsertFrame),
          CreateButton(Icon::DuplicateFrame, "DuplicateFrame", QStringLiteral("Duplicate the frame"),
                       MayaUtil::DuplicateFrame),
          CreateButton(Icon::DeleteFrame, "DeleteFrame", QStringLiteral("Delete the frame"),
                       MayaUtil::DeleteFrame),
          CreateButton(Icon::StepBack, "StepBack", QStringLiteral("Step back to the frame before"),
                       MayaUtil::StepBack),
          CreateButton(Icon::StepForward, "StepForward", QStringLiteral("Step forward to the next frame"),
                       MayaUtil::StepForward)}) {
        grid->addWidget(button, 0, column++);
    }
    return grid;
}

QLayout* ToolboxDialog::CreateGhostsAndLayers() {
    QGridLayout* grid = CreateGrid();
    ghostPrevious_ =
        CreateGhostSwitch(Icon::GhostPrevious, "GhostPrevious",
                          QStringLiteral("Show the drawings before this one"), MayaUtil::ToggleGhostPrevious);
    ghostNext_ =
        CreateGhostSwitch(Icon::GhostNext, "GhostNext", QStringLiteral("Show the drawings after this one"),
                          MayaUtil::ToggleGhostNext);
    // The middle column stays empty, as wide as the others.
    auto* gap = new QWidget;
    gap->setFixedSize(ghostPrevious_->sizeHint());
    grid->addWidget(gap, 0, 2);
    grid->addWidget(ghostPrevious_, 0, 0);
    grid->addWidget(ghostNext_, 0, 1);
    grid->addWidget(
        CreateButton(Icon::NewLayer, "NewLayer", QStringLiteral("New layer"), MayaUtil::ShowNewLayerDialog),
        0, COLUMN_COUNT - 2);
    grid->addWidget(CreateButton(Icon::LayerManager, "LayerManager", QStringLiteral("Layer manager"),
                                 MayaUtil::ShowLayerManagerDialog),
                    0, COLUMN_COUNT - 1);
    return grid;
}

IconButton* ToolboxDialog::CreateButton(const Icon& icon, const char* name, const QString& toolTip,
                                        const std::function<bool()>& issue) {
    auto* button = new IconButton(icon, toolTip, ICON_SIZE);
    button->setObjectName(QStringLiteral("qmVxToolbox%1").arg(QString::fromLatin1(name)));
    ConnectGuarded(button, &QAbstractButton::clicked, this, [issue] { issue(); });
    return button;
}

IconButton* ToolboxDialog::CreateSwitch(const Icon& icon, const char* name, const QString& toolTip,
                                        const std::function<bool()>& issue) {
    IconButton* button = CreateButton(icon, name, toolTip, issue);
    button->setCheckable(true);
    ConnectGuarded(button, &QAbstractButton::clicked, this, &ToolboxDialog::Refresh);
    return button;
}

IconButton* ToolboxDialog::CreateGhostSwitch(const Icon& icon, const char* name, const QString& toolTip,
                                             const std::function<bool()>& toggle) {
    IconButton* button = CreateSwitch(icon, name, toolTip, toggle);
    ConnectGuarded(button, &IconButton::MenuWanted, this, &ToolboxDialog::ShowGhostingMenu);
    return button;
}

// --- display and actions ----------------------------------------------------------------------------------

void ToolboxDialog::Refresh() {
    // None is pressed while the host's own tools are on: a drag would not draw.
    int place = 0;
    for (const ToolRow& tool : AllTools()) {
        tools_[place++]->setChecked(BaseNode::IsDrawContextActive() && tool.type == Settings::activeTool);
    }
    transform_->setChecked(BaseNode::GetActiveTransformContext() != nullptr);
    ghostPrevious_->setChecked(Settings::ghostPrev);
    ghostNext_->setChecked(Settings::ghostNext);
    color_->SetColor(Settings::activeColor);
    for (int i = 0; i < presets_.size(); ++i) {
        presets_[i]->SetPreset(Settings::brushPresets[static_cast<std::size_t>(i)]);
    }
    RefreshOptions();
}

void ToolboxDialog::RefreshOptions() {
    const ToolRow* const tool = FindTool(Settings::activeTool);
    size_->setEnabled(tool != nullptr);
    opacity_->setEnabled(tool != nullptr);
    if (tool) {
        size_->SetUp(1, tool->maximumSize, QLatin1Char(' ') + QLatin1String(tool->SizeUnit()),
                     QStringLiteral("Size of the active tool"));
        size_->SetValue(Settings::GetToolSize(tool->type));
        opacity_->SetValue(Settings::GetToolOpacity(tool->type));
    }
}

QColor ToolboxDialog::GetColor() const {
    return color_->GetColor();
}

void ToolboxDialog::ShowOptionsOf(const ToolRow& tool) {
    if (!Settings::toolboxDrawToolContextMenu) {
        return;
    }
    if (tool.type != Settings::activeTool) {
        MayaUtil::SetTool(tool.type);
    }
    MayaUtil::ShowToolOptionsDialog();
}

void ToolboxDialog::ShowGhostingMenu(const QPoint& place) {
    if (!Settings::toolboxGhostingContextMenu) {
        return;
    }
    QMenu menu;
    const auto addSwitch = [&menu](const QString& text, bool on, bool (*toggle)()) {
        QAction* action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(on);
        ConnectGuarded(action, &QAction::triggered, action, [toggle] { toggle(); });
    };
    addSwitch(QStringLiteral("Ghost Previous"), Settings::ghostPrev, MayaUtil::ToggleGhostPrevious);
    addSwitch(QStringLiteral("Ghost Next"), Settings::ghostNext, MayaUtil::ToggleGhostNext);
    menu.addSeparator();
    ConnectGuarded(menu.addAction(QStringLiteral("Settings...")), &QAction::triggered, &menu,
                   [] { MayaUtil::ShowGhostingDialog(); });
    LightTableMenu::Add(menu);
    menu.exec(place);
}

void ToolboxDialog::ShowPresetMenu(int number, const QPoint& place) {
    QMenu menu;
    ConnectGuarded(menu.addAction(QStringLiteral("Save Tool Here...")), &QAction::triggered, this,
                   [this, number] { SavePreset(number); });
    menu.addSeparator();
    QAction* const keys = menu.addAction(QStringLiteral("Number Keys in Views"));
    keys->setCheckable(true);
    keys->setChecked(Settings::presetKeys);
    ConnectGuarded(keys, &QAction::triggered, this, [](bool on) { MayaUtil::SetPresetKeys(on); });
    menu.exec(place);
}

void ToolboxDialog::SavePreset(int number) {
    const BrushPreset& preset = Settings::brushPresets[static_cast<std::size_t>(number - 1)];
    bool isChosen = false;
    const QString name =
        QInputDialog::getText(this, QStringLiteral("Save Preset %1").arg(number),
                              QStringLiteral("Name of the preset for the active tool with its options:"),
                              QLineEdit::Normal, preset.name, &isChosen);
    if (isChosen) {
        MayaUtil::SavePreset(number, name);
    }
}

bool ToolboxDialog::HandleEvent(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && PresetOfKey(*static_cast<QKeyEvent*>(event)) > 0) {
        event->accept(); // the host may use the number keys
        return true;
    }
    return FloatingPanel::HandleEvent(event);
}

void ToolboxDialog::keyPressEvent(QKeyEvent* event) {
    const int preset = PresetOfKey(*event);
    if (preset == 0) {
        FloatingPanel::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        MayaUtil::ChoosePreset(preset);
    }
}

void ToolboxDialog::Send() {
    if (const ToolRow* const tool = FindTool(Settings::activeTool)) {
        ToolOptions options = Settings::GetToolOptions(tool->type);
        options.size = size_->GetValue();
        options.opacity = opacity_->GetValue();
        MayaUtil::SetToolOptions(tool->type, options);
    }
}

} // namespace vellix
