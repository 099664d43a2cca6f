#include "ui/PreferencesDialog.h"

#include "core/LayerState.h"
#include "host/GuardedConnect.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "ui/DialogParts.h"
#include "ui/FlatButton.h"

#include <QCheckBox>
#include <QColor>
#include <QColorDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QStringList>
#include <QVBoxLayout>

#include <limits>

namespace vellix {

namespace {

const auto TIMELINE_FRAME_COLOR = QStringLiteral("Timeline Frame Color");
constexpr int COLOR_WIDTH = 48;

/// Creates the list of pages, as narrow as their names allow.
QListWidget* CreatePageList(const QStringList& names) {
    auto* list = new QListWidget;
    list->addItems(names);
    list->setCurrentRow(0);
    list->setSpacing(1);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setFixedWidth(list->sizeHintForColumn(0) + 2 * list->frameWidth() +
                        list->fontMetrics().height() * 2);
    list->setObjectName(QStringLiteral("qmVxPreferencesPages"));
    list->setAccessibleName(QStringLiteral("Pages"));
    return list;
}

QGroupBox* CreateGroup(const QString& title, QVBoxLayout& page) {
    auto* group = new QGroupBox(title);
    page.addWidget(group);
    return group;
}

} // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("qmVxPreferences"));
    setWindowTitle(QStringLiteral("Preferences"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    auto* list = CreatePageList({QStringLiteral("General"), QStringLiteral("Layers")});
    auto* pages = new QStackedWidget;
    pages->addWidget(CreateGeneralPage());
    pages->addWidget(CreateLayersPage());
    ConnectGuarded(list, &QListWidget::currentRowChanged, pages, &QStackedWidget::setCurrentIndex);

    auto* row = new QHBoxLayout;
    row->addWidget(list);
    row->addWidget(pages, 1);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row, 1);
    column->addLayout(CreateDialogButtons(*this, [this] { Apply(); }));
    LoadSettings();
}

QWidget* PreferencesDialog::CreateGeneralPage() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(CreateColorGroup());
    auto* options = new QVBoxLayout(CreateGroup(QStringLiteral("Options"), *column));
    AddSwitch(*options, "PlaybackGhosting", QStringLiteral("Disable ghosting during playback"),
              Settings::disableGhostingDuringPlayback,
              QStringLiteral("Ghosts are left out while the animation plays"));
    AddSwitch(*options, "DrawToolMenu", QStringLiteral("Draw Tool viewport context menu"),
              Settings::drawToolContextMenu,
              QStringLiteral("A right click in a viewport opens a menu while the draw tool is in use"));
    AddSwitch(*options, "TransformToolMenu", QStringLiteral("Transform Tool viewport context menu"),
              Settings::transformToolContextMenu,
              QStringLiteral("A right click in a viewport opens a menu while the transform tool is in use"));
    AddSwitch(*options, "TimelineMenu", QStringLiteral("Timeline context menu"),
              Settings::timelineContextMenu,
              QStringLiteral("A right click on the time slider opens a menu of frame operations"));
    AddSwitch(*options, "ToolboxToolMenu", QStringLiteral("Toolbox draw tool context menu"),
              Settings::toolboxDrawToolContextMenu,
              QStringLiteral("A right click on a tool of the toolbox opens its options"));
    AddSwitch(*options, "ToolboxGhostingMenu", QStringLiteral("Toolbox ghosting context menu"),
              Settings::toolboxGhostingContextMenu,
              QStringLiteral("A right click on a ghost button of the toolbox opens the ghosting menu"));
    AddSwitch(*options, "RangeMove", QStringLiteral("Timeline range move enabled"),
              Settings::timeControlRangeMoveEnabled,
              QStringLiteral("Dragging a highlighted range of the time slider moves its drawings"));
    AddSwitch(*options, "IgnorePanZoom", QStringLiteral("Ignore 2D Pan/Zoom"), Settings::ignore2dPanZoom,
              QStringLiteral("Drawings stay where they are when the camera's 2D pan and zoom changes"));
    AddSwitch(*options, "AnimationMenu",
              QStringLiteral("Show VX2 menu only  in Animation menu set (requires restart)"),
              Settings::showMainMenuInAnimationSet,
              QStringLiteral("Takes effect when the plug-in is loaded again"));
    column->addStretch();
    return page;
}

QWidget* PreferencesDialog::CreateColorGroup() {
    auto* group = new QGroupBox(TIMELINE_FRAME_COLOR);
    timelineFrameColor_ = new FlatButton;
    timelineFrameColor_->setObjectName(QStringLiteral("qmVxPreferencesFrameColor"));
    timelineFrameColor_->setFixedWidth(COLOR_WIDTH);
    timelineFrameColor_->setToolTip(QStringLiteral("Choose the color of the frames on the time slider"));
    timelineFrameColor_->setAccessibleName(TIMELINE_FRAME_COLOR);
    auto* standard = new QPushButton(QStringLiteral("Default"));
    standard->setAutoDefault(false);
    standard->setToolTip(QStringLiteral("Reset to the default color"));
    auto* row = new QHBoxLayout(group);
    row->addWidget(timelineFrameColor_);
    row->addWidget(standard);
    row->addStretch();
    ConnectGuarded(timelineFrameColor_, &QAbstractButton::clicked, this,
                   &PreferencesDialog::ChooseTimelineFrameColor);
    ConnectGuarded(standard, &QAbstractButton::clicked, this,
                   [this] { UseTimelineFrameColor(Settings::DEFAULT_TIMELINE_FRAME_COLOR); });
    return group;
}

QWidget* PreferencesDialog::CreateLayersPage() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);

    auto* states = new QHBoxLayout(CreateGroup(QStringLiteral("Default New Layer State"), *column));
    animatedLayers_ = new QRadioButton(QStringLiteral("Anim"));
    animatedLayers_->setToolTip(QStringLiteral("New layers hold a drawing for each keyed frame"));
    staticLayers_ = new QRadioButton(QStringLiteral("Static"));
    staticLayers_->setToolTip(QStringLiteral("New layers hold one drawing for all frames"));
    states->addWidget(animatedLayers_);
    states->addWidget(staticLayers_);
    states->addStretch();

    auto* common = new QVBoxLayout(CreateGroup(QStringLiteral("Common Layer Options"), *column));
    AddSwitch(*common, "FirstLayer", QStringLiteral("Automatically add first layer on draw"),
              Settings::automaticallyAddFirstLayer,
              QStringLiteral("Drawing with a camera that has no layer adds one"));
    AddSwitch(*common, "NewLayerDialog", QStringLiteral("Always display new layer dialog"),
              Settings::alwaysDisplayNewLayerDialog,
              QStringLiteral("Ask for the name and state of a layer that is added by drawing"));

    auto* staticOptions = new QVBoxLayout(CreateGroup(QStringLiteral("Static Layer Options"), *column));
    auto* time = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("Default static frame time:"));
    staticFrameTime_ = new QSpinBox;
    // Allows any whole frame, so that opening the dialog does not change a value from the settings file.
    staticFrameTime_->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    staticFrameTime_->setAlignment(Qt::AlignRight);
    staticFrameTime_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    staticFrameTime_->setToolTip(QStringLiteral("The frame at which a static layer keeps its drawing"));
    label->setBuddy(staticFrameTime_);
    time->addWidget(label);
    time->addWidget(staticFrameTime_);
    time->addStretch();
    staticOptions->addLayout(time);
    AddSwitch(*staticOptions, "StaticFrame", QStringLiteral("Insert default static frame"),
              Settings::insertDefaultStaticFrame,
              QStringLiteral("A new static layer starts with an empty drawing"));
    column->addStretch();
    return page;
}

void PreferencesDialog::AddSwitch(QLayout& layout, const char* name, const QString& label, bool& setting,
                                  const QString& toolTip) {
    auto* box = new QCheckBox(label);
    box->setObjectName(QStringLiteral("qmVxPreferences%1").arg(QString::fromLatin1(name)));
    box->setToolTip(toolTip);
    layout.addWidget(box);
    switches_.append({box, &setting});
}

void PreferencesDialog::LoadSettings() {
    timelineFrameColor_->SetColor(Settings::timelineFrameColor);
    for (const Switch& one : switches_) {
        one.box->setChecked(*one.setting);
    }
    const bool isStatic = Settings::defaultLayerState == static_cast<int>(LayerState::Static);
    (isStatic ? staticLayers_ : animatedLayers_)->setChecked(true);
    staticFrameTime_->setValue(Settings::defaultStaticFrameTime);
}

void PreferencesDialog::ChooseTimelineFrameColor() {
    // The plug-in may be unloaded while the chooser is open.
    const QPointer<PreferencesDialog> self = this;
    const QColor color = QColorDialog::getColor(timelineFrameColor_->GetColor(), this, TIMELINE_FRAME_COLOR,
                                                QColorDialog::DontUseNativeDialog);
    if (self && color.isValid()) {
        UseTimelineFrameColor(color);
    }
}

void PreferencesDialog::UseTimelineFrameColor(const QColor& color) {
    timelineFrameColor_->SetColor(color);
    UpdateTimelineFrameColor();
}

void PreferencesDialog::UpdateTimelineFrameColor() {
    Settings::timelineFrameColor = timelineFrameColor_->GetColor();
    BaseNode::UpdateTimeControlOverlay();
}

void PreferencesDialog::Apply() {
    const bool ignored2dPanZoom = Settings::ignore2dPanZoom;
    Settings::timelineFrameColor = timelineFrameColor_->GetColor();
    for (const Switch& one : switches_) {
        *one.setting = one.box->isChecked();
    }
    Settings::defaultLayerState =
        static_cast<int>(staticLayers_->isChecked() ? LayerState::Static : LayerState::Animated);
    Settings::defaultStaticFrameTime = staticFrameTime_->value();
    Settings::WriteUserConfig();
    if (Settings::ignore2dPanZoom != ignored2dPanZoom) {
        if (BaseNode* const node = BaseNode::GetMaster()) {
            node->QueueRefresh();
        }
    }
    accept();
}

} // namespace vellix
