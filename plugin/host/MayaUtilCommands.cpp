// The command lines: one operation of MayaUtil for each MEL line that the plug-in executes.

#include "host/HeldKeys.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/ToolOptions.h"
#include "paint/PenPressure.h"
#include "paint/ToolTable.h"

#include <maya/MDoubleArray.h>
#include <maya/MGlobal.h>
#include <maya/MQtUtil.h>

#include <QColor>
#include <QStringList>
#include <QWidget>

#include <algorithm>

namespace vellix {

namespace {

bool Execute(const QString& line) {
    return MayaUtil::ExecuteMel(line, false, false);
}

bool ExecuteOnIdle(const QString& line) {
    return MGlobal::executeCommandOnIdle(MayaUtil::ToMString(line), false) == MStatus::kSuccess;
}

/// A name in quotes.
QString Quoted(const QString& name) {
    return QLatin1Char('"') + MayaUtil::EscapeString(name) + QLatin1Char('"');
}

/// A name as a bare word if it is a plain one, or a path of such. A drawing may name its cameras as it likes;
/// in quotes nothing of that is a command.
QString Word(const QString& name) {
    const bool isPlain = std::all_of(name.begin(), name.end(), [](QChar character) {
        const ushort code = character.unicode();
        const bool isLetter = (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z');
        return isLetter || (code >= '0' && code <= '9') || code == '_' || code == ':' || code == '|';
    });
    return isPlain ? name : Quoted(name);
}

QString Number(int value) {
    return QString::number(value);
}

/// Joins the command and its arguments with single blanks.
QString CommandLine(const QString& command, const QStringList& arguments) {
    return arguments.isEmpty() ? command : command + QLatin1Char(' ') + arguments.join(QLatin1Char(' '));
}

bool LayerLine(const QStringList& arguments) {
    return Execute(CommandLine(Settings::LAYER_COMMAND_NAME, arguments));
}

bool FrameLine(const QStringList& arguments) {
    return Execute(CommandLine(Settings::FRAME_COMMAND_NAME, arguments));
}

bool UtilLine(const QStringList& arguments) {
    return Execute(CommandLine(Settings::UTIL_COMMAND_NAME, arguments));
}

/// Executed when the host is idle: the callers are still handling the event that caused the call.
bool UtilDeferred(const char* flag) {
    return Execute(
        QStringLiteral("evalDeferred(\"%1 %2\")").arg(Settings::UTIL_COMMAND_NAME, QLatin1String(flag)));
}

bool UtilColor(const char* flag, const QColor& color) {
    return UtilLine({QStringLiteral("-e"), QLatin1String(flag), Number(color.red()), Number(color.green()),
                     Number(color.blue())});
}

bool UtilValue(const char* flag, int value) {
    return UtilLine({QStringLiteral("-e"), QLatin1String(flag), Number(value)});
}

bool Procedure(const QString& name, const QString& arguments) {
    return Execute(QStringLiteral("%1(%2)").arg(name, arguments));
}

} // namespace

bool MayaUtil::CreateMainMenu() {
    return Procedure(Settings::CREATE_MAIN_MENU_FUNC_NAME,
                     Number(Settings::showMainMenuInAnimationSet ? 1 : 0));
}

bool MayaUtil::UpdateMainMenu() {
    const QStringList values = {Number(static_cast<int>(Settings::activeTool)), Number(Settings::ghostPrev),
                                Number(Settings::ghostNext), Number(Settings::timelineFrameDisplay)};
    return Procedure(Settings::UPDATE_MAIN_MENU_FUNC_NAME, values.join(QStringLiteral(", ")));
}

bool MayaUtil::DeleteMainMenu() {
    return Execute(Settings::DELETE_MAIN_MENU_FUNC_NAME);
}

bool MayaUtil::DeleteActiveLayer() {
    return Procedure(Settings::DELETE_ACTIVE_LAYER_FUNC, QString());
}

bool MayaUtil::DeleteActiveCameraLayers() {
    return Procedure(Settings::DELETE_ACTIVE_CAMERA_LAYERS_FUNC, QString());
}

bool MayaUtil::DeleteAllNodes() {
    return Procedure(Settings::DELETE_ALL_NODES_FUNC, QString());
}

bool MayaUtil::CreateFloatingViewport(const QString& camera) {
    return Procedure(Settings::CREATE_FLOATING_VIEWPORT_FUNC_NAME, Quoted(camera));
}

bool MayaUtil::CreateNode(bool addLayer, bool addFrames, const QString& camera, const QString& layerName,
                          int layerState) {
    QStringList arguments;
    if (addLayer) {
        arguments << QStringLiteral("-l");
    }
    if (!camera.isEmpty()) {
        arguments << QStringLiteral("-c") << Word(camera);
    }
    if (!layerName.isEmpty()) {
        arguments << QStringLiteral("-ln") << Quoted(layerName);
    }
    if (layerState >= 0) {
        arguments << QStringLiteral("-ls") << Number(layerState);
    }
    if (addFrames) {
        arguments << QStringLiteral("-f");
    }
    return ExecuteOnIdle(CommandLine(Settings::NODE_COMMAND_NAME, arguments));
}

bool MayaUtil::CreateMissingNode() {
    return ExecuteOnIdle(QStringLiteral("if (!`%1 -exists`) %1").arg(Settings::NODE_COMMAND_NAME));
}

bool MayaUtil::CreateNodeNow() {
    return Execute(Settings::NODE_COMMAND_NAME);
}

bool MayaUtil::MarkSceneModified() {
    return Execute(QStringLiteral("file -modified 1"));
}

bool MayaUtil::RefreshNode() {
    return ExecuteOnIdle(CommandLine(Settings::NODE_COMMAND_NAME, {QStringLiteral("-r")}));
}

bool MayaUtil::AddLayer(const QString& camera, const QString& name, int state) {
    QStringList arguments = {QStringLiteral("-add")};
    if (!name.isEmpty()) {
        arguments << QStringLiteral("-n") << Quoted(name);
    }
    if (state >= 0) {
        arguments << QStringLiteral("-ls") << Number(state);
    }
    return LayerLine(arguments << Word(camera));
}

bool MayaUtil::InsertLayer(const QString& camera, int index) {
    return LayerLine({QStringLiteral("-insert"), Number(index), Word(camera)});
}

bool MayaUtil::RemoveLayer(const QString& camera, int index) {
    return LayerLine({QStringLiteral("-delete"), Number(index), Word(camera)});
}

bool MayaUtil::MoveLayer(const QString& camera, int from, int to) {
    return LayerLine({QStringLiteral("-move"), Number(from), Number(to), Word(camera)});
}

bool MayaUtil::MoveLayer(const QString& sourceCamera, int index, const QString& targetCamera,
                         int targetIndex) {
    return LayerLine({QStringLiteral("-newCamera"), Word(targetCamera), QStringLiteral("-move"),
                      Number(index), Number(targetIndex), Word(sourceCamera)});
}

bool MayaUtil::MoveAllLayers(const QString& sourceCamera, const QString& targetCamera) {
    return LayerLine({QStringLiteral("-moveAll"), Word(targetCamera), Word(sourceCamera)});
}

bool MayaUtil::TakeLayers(const QString& node) {
    return ExecuteMel(QStringLiteral("qmVxTakeLayers(%1)").arg(Quoted(node)), false, true);
}

bool MayaUtil::SetActiveLayer(const QString& camera, int index) {
    return LayerLine({QStringLiteral("-e"), QStringLiteral("-active"), Number(index), Word(camera)});
}

bool MayaUtil::SetLayerName(const QString& camera, int index, const QString& name) {
    return LayerLine({QStringLiteral("-en"), Quoted(name), Number(index), Word(camera)});
}

bool MayaUtil::SetLayerVisible(const QString& camera, int index, bool visible) {
    return LayerLine({QStringLiteral("-ev"), Number(visible), Number(index), Word(camera)});
}

bool MayaUtil::SetLayerMarked(const QString& camera, int index, bool marked) {
    return LayerLine({QStringLiteral("-em"), Number(marked), Number(index), Word(camera)});
}

bool MayaUtil::SetLayerOpacity(const QString& camera, int index, float opacity) {
    return LayerLine(
        {QStringLiteral("-eo"), QString::number(static_cast<double>(opacity)), Number(index), Word(camera)});
}

bool MayaUtil::SetLayerState(const QString& camera, int index, LayerState state) {
    return LayerLine({QStringLiteral("-es"), Number(static_cast<int>(state)), Number(index), Word(camera)});
}

bool MayaUtil::RefreshLayerManagerDialog() {
    return UtilDeferred("-rlm");
}

bool MayaUtil::PushStroke(const QString& camera, int layer, bool frameAdded) {
    QStringList arguments;
    if (layer >= 0) {
        arguments << QStringLiteral("-la") << Number(layer);
    }
    if (frameAdded) {
        arguments << QStringLiteral("-fa");
    }
    return Execute(CommandLine(Settings::STROKE_COMMAND_NAME, arguments << Word(camera)));
}

bool MayaUtil::Draw() {
    return UtilDeferred("-draw");
}

bool MayaUtil::ActivateTransformTool() {
    return UtilDeferred("-transform");
}

bool MayaUtil::SetTool(const QString& flag) {
    return UtilLine({flag});
}

bool MayaUtil::SetTool(ToolType tool) {
    const ToolRow* const row = FindTool(tool);
    return row != nullptr && SetTool(QLatin1String(row->toolFlag));
}

bool MayaUtil::SetToolOptions(ToolType tool, const ToolOptions& options) {
    const ToolRow* const row = FindTool(tool);
    if (!row) {
        return false;
    }
    QStringList arguments = {QLatin1String(row->optionsFlag), Number(options.size), Number(options.opacity)};
    if (row->Has(ToolRow::HARDNESS)) {
        arguments << Number(options.hardness);
    }
    if (row->Has(ToolRow::PRESSURE)) {
        arguments << Number(options.tabletEnabled);
    }
    if (row->kind == ToolKind::Text) {
        arguments << Quoted(options.fontFamily);
    }
    return UtilLine(arguments);
}

bool MayaUtil::SetSmoothCurves(bool on) {
    return UtilValue("-smoothCurves", on);
}

bool MayaUtil::SetStabiliser(int length) {
    return UtilValue("-stabiliser", length);
}

bool MayaUtil::SetSizePressure(ToolType tool, const PenPressure& pressure) {
    const ToolRow* const row = FindTool(tool);
    return row && row->sizePressureFlag &&
           UtilLine({QStringLiteral("-e"), QLatin1String(row->sizePressureFlag), Number(pressure.setsSize),
                     Number(pressure.size.least), Number(pressure.size.middleAt),
                     Number(pressure.size.middle)});
}

bool MayaUtil::SetOpacityPressure(ToolType tool, const PenPressure& pressure) {
    const ToolRow* const row = FindTool(tool);
    return row && row->opacityPressureFlag &&
           UtilLine({QStringLiteral("-e"), QLatin1String(row->opacityPressureFlag),
                     Number(pressure.opacity.least), Number(pressure.opacity.middleAt),
                     Number(pressure.opacity.middle)});
}

bool MayaUtil::ChoosePreset(int number) {
    return UtilLine({QStringLiteral("-preset"), Number(number)});
}

bool MayaUtil::SavePreset(int number, const QString& name) {
    return UtilLine({QStringLiteral("-savePreset"), Number(number), Quoted(name)});
}

bool MayaUtil::SetPresetKeys(bool on) {
    return UtilValue("-presetKeys", on);
}

bool MayaUtil::SetPencilTool() {
    return SetTool(ToolType::Pencil);
}

bool MayaUtil::SetBrushTool() {
    return SetTool(ToolType::Brush);
}

bool MayaUtil::SetEraserTool() {
    return SetTool(ToolType::Eraser);
}

bool MayaUtil::SetTextTool() {
    return SetTool(ToolType::Text);
}

bool MayaUtil::SetLineTool() {
    return SetTool(ToolType::Line);
}

bool MayaUtil::SetArrowTool() {
    return SetTool(ToolType::Arrow);
}

bool MayaUtil::SetEllipseTool() {
    return SetTool(ToolType::Ellipse);
}

bool MayaUtil::SetRectangleTool() {
    return SetTool(ToolType::Rectangle);
}

bool MayaUtil::SetPencilOptions(int size, int opacity, bool tablet) {
    return SetToolOptions(ToolType::Pencil, {size, opacity, 100, tablet, QString()});
}

bool MayaUtil::SetBrushOptions(int size, int opacity, int hardness, bool tablet) {
    return SetToolOptions(ToolType::Brush, {size, opacity, hardness, tablet, QString()});
}

bool MayaUtil::SetEraserOptions(int size, int opacity, int hardness, bool tablet) {
    return SetToolOptions(ToolType::Eraser, {size, opacity, hardness, tablet, QString()});
}

bool MayaUtil::SetTextOptions(int size, int opacity, const QString& fontFamily) {
    return SetToolOptions(ToolType::Text, {size, opacity, 100, false, fontFamily});
}

bool MayaUtil::SetLineOptions(int size, int opacity) {
    return SetToolOptions(ToolType::Line, {size, opacity, 100, false, QString()});
}

bool MayaUtil::SetArrowOptions(int size, int opacity) {
    return SetToolOptions(ToolType::Arrow, {size, opacity, 100, false, QString()});
}

bool MayaUtil::SetEllipseOptions(int size, int opacity) {
    return SetToolOptions(ToolType::Ellipse, {size, opacity, 100, false, QString()});
}

bool MayaUtil::SetRectangleOptions(int size, int opacity) {
    return SetToolOptions(ToolType::Rectangle, {size, opacity, 100, false, QString()});
}

bool MayaUtil::SetActiveColor(const QColor& color) {
    return UtilColor("-drawColor", color);
}

bool MayaUtil::ToggleGhostPrevious() {
    return UtilValue("-ghostPrevious", !Settings::ghostPrev);
}

bool MayaUtil::ToggleGhostNext() {
    return UtilValue("-ghostNext", !Settings::ghostNext);
}

bool MayaUtil::SetGhostPreviousCount(int count) {
    return UtilValue("-ghostPreviousCount", count);
}

bool MayaUtil::SetGhostNextCount(int count) {
    return UtilValue("-ghostNextCount", count);
}

bool MayaUtil::SetGhostColorOverrideEnabled(bool enabled) {
    return UtilValue("-ghostColorOverride", enabled);
}

bool MayaUtil::SetGhostColorOverridePrev(const QColor& color) {
    return UtilColor("-ghostColorPrevious", color);
}

bool MayaUtil::SetGhostColorOverrideNext(const QColor& color) {
    return UtilColor("-ghostColorNext", color);
}

bool MayaUtil::SetGhostLayers(int layers) {
    return UtilValue("-ghostLayers", layers);
}

bool MayaUtil::SetDrawingPinned(bool pinned) {
    return UtilValue("-pinDrawing", pinned);
}

bool MayaUtil::UnpinAllDrawings() {
    return UtilLine({QStringLiteral("-unpinAll")});
}

bool MayaUtil::SetActiveLayerMarked(bool marked) {
    return UtilValue("-markLayer", marked);
}

bool MayaUtil::SetPinnedColor(const QColor& color) {
    return UtilColor("-pinnedColor", color);
}

bool MayaUtil::SetOtherLayersOpacity(int percent) {
    return UtilValue("-otherLayersOpacity", percent);
}

bool MayaUtil::SetFlipAllLayers(bool all) {
    return UtilValue("-flipAllLayers", all);
}

bool MayaUtil::SetRollCount(int drawings) {
    return UtilValue("-rollCount", drawings);
}

bool MayaUtil::SetRollRate(int drawingsPerSecond) {
    return UtilValue("-rollRate", drawingsPerSecond);
}

bool MayaUtil::SetHeldKey(const HeldKey& action, const QString& keys) {
    return UtilLine({QStringLiteral("-e"), QLatin1String(action.flag), Quoted(keys)});
}

bool MayaUtil::InsertFrame() {
    return FrameLine({QStringLiteral("-insert")});
}

bool MayaUtil::DuplicateFrame() {
    return FrameLine({QStringLiteral("-duplicate")});
}

bool MayaUtil::DeleteFrame() {
    return FrameLine({QStringLiteral("-delete")});
}

bool MayaUtil::CutFrame() {
    return FrameLine({QStringLiteral("-cut")});
}

bool MayaUtil::CopyFrame() {
    return FrameLine({QStringLiteral("-copy")});
}

bool MayaUtil::PasteFrame() {
    return FrameLine({QStringLiteral("-paste")});
}

bool MayaUtil::ClearFrame() {
    return FrameLine({QStringLiteral("-clear")});
}

bool MayaUtil::StepForward() {
    return FrameLine({QStringLiteral("-stepForward")});
}

bool MayaUtil::StepBack() {
    return FrameLine({QStringLiteral("-stepBack")});
}

bool MayaUtil::RetimeFrames(int frames, bool relative, bool moveToNext) {
    QStringList arguments;
    if (relative) {
        arguments << QStringLiteral("-relative");
    }
    if (moveToNext) {
        arguments << QStringLiteral("-moveToNext");
    }
    return FrameLine(arguments << QStringLiteral("-retime") << Number(frames));
}

bool MayaUtil::MoveFrames(int offset, int first, int last) {
    return FrameLine({QStringLiteral("-move"), Number(offset), Number(first), Number(last)});
}

bool MayaUtil::SetTimelineFrameDisplay(TimelineFrameDisplay display) {
    return UtilValue("-timelineFrameDisplay", static_cast<int>(display));
}

bool MayaUtil::RefreshTimelineOverlay() {
    return UtilLine({QStringLiteral("-refreshTimelineDisplay")});
}

bool MayaUtil::ShowNewLayerDialog() {
    return UtilLine({QStringLiteral("-newLayer")});
}

bool MayaUtil::ShowLayerPropertiesDialog() {
    return UtilLine({QStringLiteral("-layerProperties")});
}

bool MayaUtil::ShowToolboxDialog() {
    return UtilLine({QStringLiteral("-toolbox")});
}

bool MayaUtil::ShowToolOptionsDialog() {
    return UtilLine({QStringLiteral("-toolOptions")});
}

bool MayaUtil::ShowLayerManagerDialog() {
    return UtilLine({QStringLiteral("-layerManager")});
}

bool MayaUtil::ShowColorPaletteDialog() {
    return UtilLine({QStringLiteral("-colorPalette")});
}

bool MayaUtil::ShowRetimingTool() {
    return UtilLine({QStringLiteral("-retimingTool")});
}

bool MayaUtil::ShowGhostingDialog() {
    return UtilLine({QStringLiteral("-ghostingSettings")});
}

bool MayaUtil::SetColorSliderGrpColor(const QString& name, const QColor& color) {
    return Execute(CommandLine(QStringLiteral("colorSliderGrp -e -rgbValue"),
                               {QString::number(color.redF()), QString::number(color.greenF()),
                                QString::number(color.blueF()), Word(name)}));
}

QColor MayaUtil::GetColorSliderGrpColor(const QString& name) {
    MDoubleArray fractions;
    const QString line = CommandLine(QStringLiteral("colorSliderGrp -q -rgbValue"), {Word(name)});
    if (!ExecuteMelDoubleArrayResult(line, fractions, false, false) || fractions.length() < 3) {
        return QColor();
    }
    return QColor(qRound(fractions[0] * 255.0), qRound(fractions[1] * 255.0), qRound(fractions[2] * 255.0),
                  255);
}

bool MayaUtil::SetColorSliderGrpChangeCommand(const QString& name, const QString& command) {
    return Execute(
        CommandLine(QStringLiteral("colorSliderGrp -e -changeCommand"), {Quoted(command), Word(name)}));
}

QWidget* MayaUtil::CreateColorSliderGrp(const QString& name, int width, int height) {
    if (!Execute(CommandLine(QStringLiteral("colorSliderGrp -columnWidth3 0"),
                             {Number(width), QStringLiteral("0"), Word(name)}))) {
        return nullptr;
    }
    QWidget* control = MQtUtil::findControl(ToMString(name));
    if (!control) {
        return nullptr;
    }
    if (QWidget* slider = control->findChild<QWidget*>(QStringLiteral("slider"))) {
        slider->hide();
    }
    control->setFixedWidth(width);
    if (QWidget* swatch = control->findChild<QWidget*>(QStringLiteral("port"))) {
        swatch->setFixedHeight(height);
    }
    return control;
}

} // namespace vellix
