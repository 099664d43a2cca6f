// The menus of the draw tool: their items, and the slots that the items trigger.

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/MenuText.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/LightTableMenu.h"
#include "paint/ToolTable.h"
#include "tools/DrawContextInputHandler.h"

#include <maya/MQtUtil.h>

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QWidget>

namespace vellix {

QAction* DrawContextInputHandler::AddItem(QMenu& menu, const QString& text, Slot slot) {
    QAction* const action = menu.addAction(text);
    ConnectGuarded(action, &QAction::triggered, this, slot);
    return action;
}

void DrawContextInputHandler::AddCheckItem(QMenu& menu, const QString& text, bool checked, Slot slot) {
    QAction* const action = AddItem(menu, text, slot);
    action->setCheckable(true);
    action->setChecked(checked);
}

void DrawContextInputHandler::ShowContextMenu() {
    auto* const menu = new QMenu(MQtUtil::mainWindow());
    if (const BaseNode* const node = BaseNode::GetMaster()) {
        AddLayers(*menu, *node);
    }
    AddItem(*menu, QStringLiteral("Transform"), &DrawContextInputHandler::TransformTool);
    menu->addSeparator();
    AddTools(*menu->addMenu(QStringLiteral("Draw Tool")));
    menu->addSeparator();
    QMenu& layer = *menu->addMenu(QStringLiteral("Layer"));
    AddItem(layer, QStringLiteral("New Layer..."), &DrawContextInputHandler::NewLayer);
    AddItem(layer, QStringLiteral("Layer Properties..."), &DrawContextInputHandler::LayerProperties);
    QMenu& frame = *menu->addMenu(QStringLiteral("Frame"));
    AddFrameEdits(frame);
    frame.addSeparator();
    AddItem(frame, QStringLiteral("Step Forward"), &DrawContextInputHandler::StepForward);
    AddItem(frame, QStringLiteral("Step Back"), &DrawContextInputHandler::StepBack);
    AddGhosting(*menu->addMenu(QStringLiteral("Ghosting")));
    menu->addSeparator();
    AddPanels(*menu);
    menu->addSeparator();
    AddTimelineDisplay(*menu->addMenu(QStringLiteral("Display Timeline Frames")));
    menu->addSeparator();
    AddCleanup(*menu->addMenu(QStringLiteral("Cleanup")));
    ShowMenu(menu);
}

void DrawContextInputHandler::ShowTimeControlContextMenu() {
    auto* const menu = new QMenu(MQtUtil::mainWindow());
    menu->addAction(Settings::APPLICATION_TITLE)->setEnabled(false);
    menu->addSeparator();
    AddFrameEdits(*menu);
    ShowMenu(menu);
}

void DrawContextInputHandler::AddLayers(QMenu& menu, const BaseNode& node) {
    const QString camera = MayaUtil::GetActive3dViewCameraName();
    const bool cameraIsActive = node.GetActiveCamera() == camera;
    const QList<Layer*> layers = node.GetLayers(camera);
    for (int index = layers.size() - 1; index >= 0; --index) {
        const Layer* const layer = layers.at(index);
        if (!layer) {
            continue;
        }
        const bool isActive = cameraIsActive && layer->IsActive();
        const QString name = MenuText(layer->GetName());
        QAction* const action = AddItem(menu, isActive ? QStringLiteral("%1 (active)").arg(name) : name,
                                        &DrawContextInputHandler::SetActiveLayer);
        action->setData(static_cast<qulonglong>(layer->GetId())); // it may move meanwhile
    }
    if (!layers.isEmpty()) {
        menu.addSeparator();
    }
}

void DrawContextInputHandler::AddTools(QMenu& menu) {
    for (const ToolRow& tool : AllTools()) {
        QAction* const action = menu.addAction(QLatin1String(tool.label));
        action->setCheckable(true);
        action->setChecked(Settings::activeTool == tool.type);
        ConnectGuarded(action, &QAction::triggered, this, [&tool] { MayaUtil::SetTool(tool.type); });
    }
}

void DrawContextInputHandler::AddFrameEdits(QMenu& menu) {
    AddItem(menu, QStringLiteral("Insert Frame(s)"), &DrawContextInputHandler::InsertFrame);
    AddItem(menu, QStringLiteral("Duplicate Frame"), &DrawContextInputHandler::DuplicateFrame);
    AddItem(menu, QStringLiteral("Delete Frame(s)"), &DrawContextInputHandler::DeleteFrame);
    menu.addSeparator();
    AddItem(menu, QStringLiteral("Cut Frame(s)"), &DrawContextInputHandler::CutFrame);
    AddItem(menu, QStringLiteral("Copy Frame(s)"), &DrawContextInputHandler::CopyFrame);
    AddItem(menu, QStringLiteral("Paste Frame(s)"), &DrawContextInputHandler::PasteFrame);
    menu.addSeparator();
    AddItem(menu, QStringLiteral("Clear Frame(s)"), &DrawContextInputHandler::ClearFrame);
}

void DrawContextInputHandler::AddGhosting(QMenu& menu) {
    AddCheckItem(menu, QStringLiteral("Ghost Previous"), Settings::ghostPrev,
                 &DrawContextInputHandler::ToggleGhostPrevious);
    AddCheckItem(menu, QStringLiteral("Ghost Next"), Settings::ghostNext,
                 &DrawContextInputHandler::ToggleGhostNext);
    menu.addSeparator();
    AddItem(menu, QStringLiteral("Settings..."), &DrawContextInputHandler::GhostingSettings);
    LightTableMenu::Add(menu);
}

// The colour palette has no item on purpose.
void DrawContextInputHandler::AddPanels(QMenu& menu) {
    AddItem(menu, QStringLiteral("Toolbox..."), &DrawContextInputHandler::ShowToolbox);
    AddItem(menu, QStringLiteral("Tool Options..."), &DrawContextInputHandler::ShowToolOptions);
    AddItem(menu, QStringLiteral("Layer Manager..."), &DrawContextInputHandler::ShowLayerManager);
    AddItem(menu, QStringLiteral("Retiming Tool..."), &DrawContextInputHandler::ShowRetimingTool);
}

void DrawContextInputHandler::AddTimelineDisplay(QMenu& menu) {
    const auto current = static_cast<TimelineFrameDisplay>(Settings::timelineFrameDisplay);
    AddCheckItem(menu, QStringLiteral("Always"), current == TimelineFrameDisplay::Always,
                 &DrawContextInputHandler::SetTimelineDisplayOn);
    AddCheckItem(menu, QStringLiteral("Selection/Context Active"),
                 current == TimelineFrameDisplay::SelectionOrContext,
                 &DrawContextInputHandler::SetTimelineDisplaySelectionContext);
    AddCheckItem(menu, QStringLiteral("Off"), current == TimelineFrameDisplay::Off,
                 &DrawContextInputHandler::SetTimelineDisplayOff);
}

void DrawContextInputHandler::AddCleanup(QMenu& menu) {
    AddItem(menu, QStringLiteral("Delete Active Layer"), &DrawContextInputHandler::DeleteActiveLayer);
    AddItem(menu, QStringLiteral("Delete Active Camera Layers"),
            &DrawContextInputHandler::DeleteActiveCameraLayers);
    menu.addSeparator();
    AddItem(menu, QStringLiteral("Clear All"), &DrawContextInputHandler::ClearAll);
}

// --- slots of the items -----------------------------------------------------------------------------------

void DrawContextInputHandler::SetActiveLayer() {
    const auto* const action = qobject_cast<QAction*>(sender());
    const BaseNode* const node = BaseNode::GetMaster();
    if (action && node) {
        const LayerPlace place = node->FindLayer(static_cast<LayerId>(action->data().toULongLong()));
        if (place.layer) {
            MayaUtil::SetActiveLayer(place.camera, place.index);
        }
    }
}

void DrawContextInputHandler::NewLayer() {
    MayaUtil::ShowNewLayerDialog();
}

void DrawContextInputHandler::LayerProperties() {
    MayaUtil::ShowLayerPropertiesDialog();
}

void DrawContextInputHandler::InsertFrame() {
    MayaUtil::InsertFrame();
}

void DrawContextInputHandler::DuplicateFrame() {
    MayaUtil::DuplicateFrame();
}

void DrawContextInputHandler::DeleteFrame() {
    MayaUtil::DeleteFrame();
}

void DrawContextInputHandler::CutFrame() {
    MayaUtil::CutFrame();
}

void DrawContextInputHandler::CopyFrame() {
    MayaUtil::CopyFrame();
}

void DrawContextInputHandler::PasteFrame() {
    MayaUtil::PasteFrame();
}

void DrawContextInputHandler::ClearFrame() {
    MayaUtil::ClearFrame();
}

void DrawContextInputHandler::StepForward() {
    MayaUtil::StepForward();
}

void DrawContextInputHandler::StepBack() {
    MayaUtil::StepBack();
}

void DrawContextInputHandler::ToggleGhostPrevious() {
    MayaUtil::ToggleGhostPrevious();
}

void DrawContextInputHandler::ToggleGhostNext() {
    MayaUtil::ToggleGhostNext();
}

void DrawContextInputHandler::GhostingSettings() {
    MayaUtil::ShowGhostingDialog();
}

void DrawContextInputHandler::ShowToolbox() {
    MayaUtil::ShowToolboxDialog();
}

void DrawContextInputHandler::ShowToolOptions() {
    MayaUtil::ShowToolOptionsDialog();
}

void DrawContextInputHandler::ShowLayerManager() {
    MayaUtil::ShowLayerManagerDialog();
}

void DrawContextInputHandler::ShowColorPalette() {
    MayaUtil::ShowColorPaletteDialog();
}

void DrawContextInputHandler::ShowRetimingTool() {
    MayaUtil::ShowRetimingTool();
}

void DrawContextInputHandler::TransformTool() {
    MayaUtil::ActivateTransformTool();
}

void DrawContextInputHandler::SetTimelineDisplayOn() {
    MayaUtil::SetTimelineFrameDisplay(TimelineFrameDisplay::Always);
}

void DrawContextInputHandler::SetTimelineDisplaySelectionContext() {
    MayaUtil::SetTimelineFrameDisplay(TimelineFrameDisplay::SelectionOrContext);
}

void DrawContextInputHandler::SetTimelineDisplayOff() {
    MayaUtil::SetTimelineFrameDisplay(TimelineFrameDisplay::Off);
}

void DrawContextInputHandler::SetPencilTool() {
    MayaUtil::SetPencilTool();
}

void DrawContextInputHandler::SetBrushTool() {
    MayaUtil::SetBrushTool();
}

void DrawContextInputHandler::SetEraserTool() {
    MayaUtil::SetEraserTool();
}

void DrawContextInputHandler::SetTextTool() {
    MayaUtil::SetTextTool();
}

void DrawContextInputHandler::SetLineTool() {
    MayaUtil::SetLineTool();
}

void DrawContextInputHandler::SetArrowTool() {
    MayaUtil::SetArrowTool();
}

void DrawContextInputHandler::SetEllipseTool() {
    MayaUtil::SetEllipseTool();
}

void DrawContextInputHandler::SetRectangleTool() {
    MayaUtil::SetRectangleTool();
}

void DrawContextInputHandler::DeleteActiveLayer() {
    MayaUtil::DeleteActiveLayer();
}

void DrawContextInputHandler::DeleteActiveCameraLayers() {
    MayaUtil::DeleteActiveCameraLayers();
}

void DrawContextInputHandler::ClearAll() {
    MayaUtil::DeleteAllNodes();
}

} // namespace vellix
