#include "commands/UtilCommand.h"

#include "core/Identity.h"
#include "core/Layer.h"
#include "core/LayerManager.h"
#include "core/LightTable.h"
#include "host/GhostLayers.h"
#include "host/HeldKeys.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
#include "host/Settings.h"
#include "host/SettingsWriter.h"
#include "host/ToolOptions.h"
#include "host/panels/DialogManager.h"
#include "node/ActiveDrawing.h"
#include "node/BaseNode.h"
#include "node/Flipping.h"
#include "paint/BrushPreset.h"
#include "paint/PenPressure.h"
#include "paint/ToolTable.h"
#include "paint/ToolType.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MIntArray.h>
#include <maya/MQtUtil.h>
#include <maya/MStringArray.h>

#include <QColor>
#include <QInputDialog>
#include <QMessageBox>
#include <QStringList>

#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <utility>

namespace vellix {

namespace {

MStatus Result(bool done) {
    return done ? MS::kSuccess : MS::kFailure;
}

// Only a host with a user interface has a menu.
void UpdateMainMenu() {
    if (Settings::guiEnabled) {
        MayaUtil::UpdateMainMenu();
    }
}

using Step = FlagRow<UtilCommand>::Step;

/// Makes a step that calls a function with these arguments.
template <typename Function, typename... Arguments>
Step Call(Function function, Arguments... arguments) {
    return [=](UtilCommand&) { return function(arguments...); };
}

/// Makes a step that calls an operation of the command.
template <typename... Parameters, typename... Arguments>
Step Call(MStatus (UtilCommand::*operation)(Parameters...) const, Arguments... arguments) {
    return [=](UtilCommand& command) { return (command.*operation)(arguments...); };
}

void SetResult(const QColor& color) {
    MIntArray components;
    for (const int component : {color.red(), color.green(), color.blue()}) {
        components.append(component);
    }
    MPxCommand::setResult(components);
}

MStatus SetResult(std::initializer_list<int> numbers) {
    MIntArray result;
    for (const int number : numbers) {
        result.append(number);
    }
    MPxCommand::setResult(result);
    return MS::kSuccess;
}

void SetResult(const QString& text) {
    MPxCommand::setResult(MayaUtil::ToMString(text));
}

template <typename Number>
void SetResult(Number number) {
    MPxCommand::setResult(number);
}

/// Makes a step that answers with a setting's value.
template <typename Setting>
Step Answer(const Setting& setting) {
    return [&setting](UtilCommand&) {
        SetResult(setting);
        return MStatus();
    };
}

/// Makes a step whose change the settings file keeps soon.
Step Keep(Step step) {
    return [step = std::move(step)](UtilCommand& command) {
        MStatus status = step(command);
        if (status) {
            SettingsWriter::Schedule();
        }
        return status;
    };
}

MStatus AnswerMarked(UtilCommand&) {
    SetResult(ActiveDrawing().IsMarked());
    return MS::kSuccess;
}

MStatus AnswerPinned(UtilCommand&) {
    SetResult(ActiveDrawing().IsPinned());
    return MS::kSuccess;
}

MStatus ImportTavlo() {
    Logger::Warning("Importing from Tavlo is not done yet.");
    return MS::kSuccess;
}

} // namespace

// If several flags are given, the first one in the table wins.
const FlagTable<UtilCommand>& UtilCommand::Flags() {
    static const FlagTable<UtilCommand> flags(Rows());
    return flags;
}

std::vector<FlagRow<UtilCommand>> UtilCommand::Rows() {
    using U = UtilCommand;
    using Value = Flag::Value;
    static const auto number = Value::Whole(&U::number_);
    static const std::vector<Value> color = {Value::Whole(&U::red_), Value::Whole(&U::green_),
                                             Value::Whole(&U::blue_)};
    std::vector<Flag> rows = {
        Flag("-d", "-draw").Does(Call(ActivateDrawContext)),
        Flag("-t", "-transform").Does(Call(ActivateTransformContext)),
        Flag("-dc", "-drawColor", color).Does(&U::SetActiveColor).Answers(Answer(Settings::activeColor)),
    };
    AddTools(rows);
    AddLine(rows);
    const Flag ghostsAndViews[] = {
        Flag("-gp", "-ghostPrevious", {&U::switch_})
            .Does(Call(&U::SwitchGhosts, std::ref(Settings::ghostPrev)))
            .Answers(Answer(Settings::ghostPrev)),
        Flag("-gn", "-ghostNext", {&U::switch_})
            .Does(Call(&U::SwitchGhosts, std::ref(Settings::ghostNext)))
            .Answers(Answer(Settings::ghostNext)),
        Flag("-gpc", "-ghostPreviousCount", {number})
            .Does(Call(&U::SetGhostCount, std::ref(Settings::ghostPrevCount)))
            .Answers(Answer(Settings::ghostPrevCount)),
        Flag("-gnc", "-ghostNextCount", {number})
            .Does(Call(&U::SetGhostCount, std::ref(Settings::ghostNextCount)))
            .Answers(Answer(Settings::ghostNextCount)),
        Flag("-gco", "-ghostColorOverride", {number})
            .Does(&U::SetGhostColorOverride)
            .Answers(Answer(Settings::ghostColorOverride)),
        Flag("-gcp", "-ghostColorPrevious", color)
            .Does(Call(&U::SetGhostColor, std::ref(Settings::ghostColorOverridePrev)))
            .Answers(Answer(Settings::ghostColorOverridePrev)),
        Flag("-gcn", "-ghostColorNext", color)
            .Does(Call(&U::SetGhostColor, std::ref(Settings::ghostColorOverrideNext)))
            .Answers(Answer(Settings::ghostColorOverrideNext)),
        Flag("-tfd", "-timelineFrameDisplay", {number})
            .Does(&U::SetTimelineFrameDisplay)
            .Answers(Answer(Settings::timelineFrameDisplay)),
        Flag("-rtd", "-refreshTimelineDisplay").Does(Call(RefreshTimelineDisplay)),
        Flag("-fv", "-floatingViewport").Does(Call(CreateFloatingViewport)),
        Flag("-fvm", "-floatingViewportMove", {&U::text_}).Does(&U::MoveToFloatingViewport),
    };
    rows.insert(rows.end(), std::begin(ghostsAndViews), std::end(ghostsAndViews));
    AddLightTable(rows);
    AddPanels(rows);
    const Flag dialogs[] = {
        Flag("-nl", "-newLayer")
            .Does(Call(ShowDialog, "new layer dialog", DialogManager::ShowNewLayerDialog)),
        Flag("-lp", "-layerProperties").Does(Call(ShowLayerProperties)),
        Flag("-gs", "-ghostingSettings")
            .Does(Call(ShowDialog, "ghosting dialog", DialogManager::ShowGhostingDialog)),
        Flag("-tvi", "-tavloImport").Does(Call(ImportTavlo)),
        Flag("-rui", "-resetUI").Does(Call(ResetPanels)),
        Flag("-pr", "-preferences")
            .Does(Call(ShowDialog, "preferences dialog", DialogManager::ShowPreferencesDialog)),
        Flag("-ab", "-about").Does(Call(ShowDialog, "about box", DialogManager::ShowAboutDialog)),
    };
    rows.insert(rows.end(), std::begin(dialogs), std::end(dialogs));
    return rows;
}

// Text comes last, so that any other tool given with it wins.
void UtilCommand::AddTools(std::vector<Flag>& rows) {
    using U = UtilCommand;
    using Value = Flag::Value;
    for (const ToolKind kind : {ToolKind::Freehand, ToolKind::Shape, ToolKind::Text}) {
        for (const ToolRow& tool : AllTools()) {
            if (tool.kind == kind) {
                rows.push_back(Flag(tool.shortToolFlag, tool.toolFlag).Does(Call(SetActiveTool, tool.type)));
            }
        }
    }
    for (const ToolRow& tool : AllTools()) {
        std::vector<Value> values = {Value::Whole(&U::size_), Value::Whole(&U::opacity_)};
        if (tool.Has(ToolRow::HARDNESS)) {
            values.push_back(Value::Whole(&U::hardness_));
        }
        if (tool.Has(ToolRow::PRESSURE)) {
            values.push_back(Value::Whole(&U::tablet_));
        }
        if (tool.kind == ToolKind::Text) {
            values.push_back(&U::text_);
        }
        rows.push_back(Flag(tool.shortOptionsFlag, tool.optionsFlag, std::move(values))
                           .Does(Call(&U::SetOptions, std::cref(tool))));
    }
}

// How lines follow the pen, what its pressure does, and the presets.
void UtilCommand::AddLine(std::vector<Flag>& rows) {
    using U = UtilCommand;
    using Value = Flag::Value;
    const auto number = Value::Whole(&U::number_);
    rows.push_back(Flag("-smc", "-smoothCurves", {number})
                       .Does(Keep(&U::SetSmoothCurves))
                       .Answers(Answer(Settings::lineStyle.smoothCurves)));
    rows.push_back(Flag("-stb", "-stabiliser", {number})
                       .Does(Keep(&U::SetStabiliser))
                       .Answers(Answer(Settings::lineStyle.stabiliser)));
    const std::vector<Value> curve = {Value::Whole(&U::least_), Value::Whole(&U::middleAt_),
                                      Value::Whole(&U::middle_)};
    for (const ToolRow& tool : AllTools()) {
        if (!tool.Has(ToolRow::PRESSURE)) {
            continue;
        }
        std::vector<Value> values = {number};
        values.insert(values.end(), curve.begin(), curve.end());
        const ToolType type = tool.type;
        rows.push_back(Flag(tool.shortSizePressureFlag, tool.sizePressureFlag, values)
                           .Does(Keep(Call(&U::SetSizePressure, type)))
                           .Answers([type](U&) {
                               const PenPressure& pressure = Settings::GetPenPressure(type);
                               const PressureCurve& size = pressure.size;
                               return SetResult({pressure.setsSize, size.least, size.middleAt, size.middle});
                           }));
        rows.push_back(Flag(tool.shortOpacityPressureFlag, tool.opacityPressureFlag, curve)
                           .Does(Keep(Call(&U::SetOpacityPressure, type)))
                           .Answers([type](U&) {
                               const PressureCurve& opacity = Settings::GetPenPressure(type).opacity;
                               return SetResult({opacity.least, opacity.middleAt, opacity.middle});
                           }));
    }
    rows.push_back(Flag("-ps", "-preset", {number}).Does(Keep(&U::ChoosePreset)));
    rows.push_back(Flag("-sps", "-savePreset", {number, &U::text_}).Does(Keep(&U::SavePreset)));
    rows.push_back(Flag("-psk", "-presetKeys", {number})
                       .Does(Keep(&U::SetPresetKeys))
                       .Answers(Answer(Settings::presetKeys)));
    rows.push_back(
        Flag("-psn", "-presetName", {number, &U::text_}).Does(Keep(&U::NamePreset)).Answers([](U&) {
            MStringArray names;
            for (const BrushPreset& preset : Settings::brushPresets) {
                names.append(MayaUtil::ToMString(preset.name));
            }
            setResult(names);
            return MStatus();
        }));
}

void UtilCommand::AddLightTable(std::vector<Flag>& rows) {
    using U = UtilCommand;
    using Value = Flag::Value;
    const auto number = Value::Whole(&U::number_);
    const std::vector<Value> color = {Value::Whole(&U::red_), Value::Whole(&U::green_),
                                      Value::Whole(&U::blue_)};
    const Flag flags[] = {
        Flag("-fl", "-flip", {&U::steps_}).Does(&U::Flip),
        Flag("-fle", "-flipEnd", {&U::steps_}).Does(&U::EndFlip),
        Flag("-rl", "-roll", {&U::switch_}).Does(&U::Roll),
        Flag("-fal", "-flipAllLayers", {number})
            .Does(Keep(&U::SetFlipAllLayers))
            .Answers(Answer(Settings::flipAllLayers)),
        Flag("-rlc", "-rollCount", {number})
            .Does(Keep(&U::SetRollCount))
            .Answers(Answer(Settings::rollCount)),
        Flag("-rlr", "-rollRate", {number}).Does(Keep(&U::SetRollRate)).Answers(Answer(Settings::rollRate)),
        Flag("-gly", "-ghostLayers", {number})
            .Does(Keep(&U::SetGhostLayers))
            .Answers(Answer(Settings::ghostLayers)),
        Flag("-mkl", "-markLayer", {&U::switch_}).Does(&U::MarkLayer).Answers(AnswerMarked),
        Flag("-pin", "-pinDrawing", {&U::switch_}).Does(&U::PinDrawing).Answers(AnswerPinned),
        Flag("-upa", "-unpinAll").Does(Call(UnpinAll)),
        Flag("-pnc", "-pinnedColor", color)
            .Does(Keep(Call(&U::SetGhostColor, std::ref(Settings::pinnedColor))))
            .Answers(Answer(Settings::pinnedColor)),
        Flag("-olo", "-otherLayersOpacity", {number})
            .Does(Keep(&U::SetOtherLayersOpacity))
            .Answers(Answer(Settings::otherLayersOpacity)),
    };
    rows.insert(rows.end(), std::begin(flags), std::end(flags));
    for (const HeldKey& action : HeldKeys::GetAll()) {
        rows.push_back(Flag(action.shortFlag, action.flag, {&U::text_})
                           .Does(Keep(Call(&U::SetHeldKey, std::cref(action))))
                           .Answers([&action](UtilCommand&) {
                               SetResult(action.keys.isEmpty() ? QStringLiteral("none") : action.keys);
                               return MStatus();
                           }));
    }
}

// In the order of precedence: the layer manager first, the toolbox's refresh before the color palette.
void UtilCommand::AddPanels(std::vector<Flag>& rows) {
    const PanelRow& layerManager = RowOf(Panel::LayerManager);
    rows.push_back(Flag(layerManager.shortFlag, layerManager.flag).Does(Call(ShowLayerManager)));
    rows.push_back(Flag("-rlm", "-refreshLayerManager").Does(Call(RefreshLayerManager)));
    for (const PanelRow& panel : PANELS) {
        if (panel.panel == Panel::ColorPalette) {
            rows.push_back(Flag("-rtb", "-refreshToolbox").Does(Call(RefreshToolbox)));
        }
        if (panel.panel != Panel::LayerManager) {
            rows.push_back(Flag(panel.shortFlag, panel.flag).Does(Call(ShowPanel, std::cref(panel))));
        }
    }
}

void* UtilCommand::Creator() {
    return new UtilCommand();
}

MString UtilCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::UTIL_COMMAND_NAME);
}

MSyntax UtilCommand::CommandSyntax() {
    return Flags().GetSyntax();
}

MStatus UtilCommand::doIt(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    const Flag* const flag = Flags().FindGiven(arguments);
    if (!flag) {
        return Refuse();
    }
    if (flag->query && arguments.isQuery()) {
        return flag->query(*this);
    }
    const bool inMode = !flag->query || arguments.isEdit();
    return inMode && flag->Read(*this, arguments) ? flag->redo(*this) : Refuse();
}

MStatus UtilCommand::Refuse() {
    Logger::Error("Invalid command parameters");
    return MS::kInvalidParameter;
}

bool UtilCommand::RequireWindow(const char* what) {
    if (!Settings::guiEnabled) {
        Logger::Error(QStringLiteral("The %1 needs a window.").arg(QString::fromLatin1(what)));
    }
    return Settings::guiEnabled;
}

// --- tools ------------------------------------------------------------------------------------------------

MStatus UtilCommand::ActivateContext(const char* tool, const QString& contextCommand, MString& name) {
    if (!RequireWindow(tool)) {
        return MS::kFailure;
    }
    // Create the context again if it no longer exists, as after unloading the plug-in.
    if (name.length() > 0 && MayaUtil::ContextExists(name) && MayaUtil::SetContext(name)) {
        return MS::kSuccess;
    }
    return Result(MayaUtil::CreateContext(MayaUtil::ToMString(contextCommand), name) &&
                  MayaUtil::SetContext(name));
}

MStatus UtilCommand::ActivateDrawContext() {
    static MString name;
    return ActivateContext("draw tool", Settings::DRAW_CONTEXT_COMMAND_NAME, name);
}

MStatus UtilCommand::ActivateTransformContext() {
    static MString name;
    return ActivateContext("transform tool", Settings::TRANSFORM_CONTEXT_COMMAND_NAME, name);
}

MStatus UtilCommand::SetActiveTool(ToolType tool) {
    MStatus status = ActivateDrawContext();
    if (status) {
        Settings::activeTool = tool;
        UpdateMainMenu();
        DialogManager::RefreshToolbox();
        DialogManager::RefreshToolOptions();
    }
    return status;
}

MStatus UtilCommand::SetOptions(const ToolRow& tool) const {
    ToolOptions options = Settings::GetToolOptions(tool.type);
    options.size = size_;
    options.opacity = opacity_;
    if (tool.Has(ToolRow::HARDNESS)) {
        options.hardness = hardness_;
    }
    if (tool.Has(ToolRow::PRESSURE)) {
        options.tabletEnabled = tablet_ != 0;
    }
    if (tool.kind == ToolKind::Text) {
        options.fontFamily = text_;
    }
    Settings::SetToolOptions(tool.type, options);
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

MStatus UtilCommand::SetSmoothCurves() const {
    Settings::lineStyle.smoothCurves = number_ != 0;
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

MStatus UtilCommand::SetStabiliser() const {
    const int most = LineStyle::MAX_STABILISER;
    Settings::lineStyle.stabiliser = qBound(0, number_, most);
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

// --- pressure and presets ---------------------------------------------------------------------------------

PressureCurve UtilCommand::GetCurve() const {
    const int first = PressureCurve::MIN_MIDDLE_AT;
    const int last = PressureCurve::MAX_MIDDLE_AT;
    return {qBound(0, least_, 100), qBound(first, middleAt_, last), qBound(0, middle_, 100)};
}

MStatus UtilCommand::SetSizePressure(ToolType tool) const {
    PenPressure pressure = Settings::GetPenPressure(tool);
    pressure.setsSize = number_ != 0;
    pressure.size = GetCurve();
    Settings::SetPenPressure(tool, pressure);
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

MStatus UtilCommand::SetOpacityPressure(ToolType tool) const {
    PenPressure pressure = Settings::GetPenPressure(tool);
    pressure.opacity = GetCurve();
    Settings::SetPenPressure(tool, pressure);
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

bool UtilCommand::HasPreset() const {
    const bool exists = number_ >= 1 && number_ <= BrushPreset::COUNT;
    if (!exists) {
        Logger::Error(QStringLiteral("There is no preset %1. Presets are numbered from 1 to %2.")
                          .arg(number_)
                          .arg(static_cast<int>(BrushPreset::COUNT)));
    }
    return exists;
}

MStatus UtilCommand::ChoosePreset() const {
    if (!HasPreset()) {
        return MS::kFailure;
    }
    // To take the draw tool anew would end the stroke or the text in it.
    MStatus status = BaseNode::IsDrawContextActive() ? MStatus() : ActivateDrawContext();
    if (status) {
        Settings::UseBrush(Settings::brushPresets[static_cast<std::size_t>(number_ - 1)]);
        UpdateMainMenu();
        DialogManager::RefreshToolbox();
        DialogManager::RefreshToolOptions();
    }
    return status;
}

MStatus UtilCommand::SavePreset() const {
    if (!HasPreset()) {
        return MS::kFailure;
    }
    BrushPreset& preset = Settings::brushPresets[static_cast<std::size_t>(number_ - 1)];
    BrushPreset brush = Settings::GetBrush();
    brush.name = preset.name;
    preset = brush;
    return NamePreset();
}

MStatus UtilCommand::NamePreset() const {
    if (!HasPreset()) {
        return MS::kFailure;
    }
    const QString name = BrushPreset::TidyName(text_);
    if (!name.isEmpty()) {
        Settings::brushPresets[static_cast<std::size_t>(number_ - 1)].name = name;
    }
    DialogManager::RefreshToolbox();
    return MS::kSuccess;
}

MStatus UtilCommand::SetPresetKeys() const {
    Settings::presetKeys = number_ != 0;
    return MS::kSuccess;
}

// --- colours and ghosts -----------------------------------------------------------------------------------

bool UtilCommand::GetColor(QColor& color) const {
    if (red_ > 255 || green_ > 255 || blue_ > 255) {
        Logger::Error("Color values must be in the range of 0-255.");
        return false;
    }
    color = QColor(red_, green_, blue_);
    return true;
}

MStatus UtilCommand::SetActiveColor() const {
    if (!GetColor(Settings::activeColor)) {
        return MS::kFailure;
    }
    DialogManager::RefreshToolbox();
    return MS::kSuccess;
}

MStatus UtilCommand::SetGhostColor(QColor& setting) const {
    return GetColor(setting) ? UpdateGhosting() : MStatus(MS::kFailure);
}

MStatus UtilCommand::SwitchGhosts(bool& setting) const {
    setting = switch_ < 0 ? !setting : switch_ > 0;
    return UpdateGhosting();
}

MStatus UtilCommand::SetGhostCount(int& setting) const {
    const int least = Settings::MIN_GHOSTED_FRAMES;
    const int most = Settings::MAX_GHOSTED_FRAMES;
    setting = qBound(least, number_, most);
    return UpdateGhosting();
}

MStatus UtilCommand::SetGhostColorOverride() const {
    Settings::ghostColorOverride = number_ != 0;
    return UpdateGhosting();
}

MStatus UtilCommand::UpdateGhosting() {
    if (BaseNode* const node = BaseNode::GetMaster()) {
        node->UpdateGhosting();
    }
    UpdateMainMenu();
    DialogManager::RefreshToolbox();
    return MS::kSuccess;
}

// --- light table ------------------------------------------------------------------------------------------

MStatus UtilCommand::Flip() const {
    if (steps_ == 0) {
        Flipping::End();
        return MS::kSuccess;
    }
    return Result(Flipping::Show(steps_));
}

MStatus UtilCommand::EndFlip() const {
    Flipping::LetGo(steps_);
    return MS::kSuccess;
}

MStatus UtilCommand::Roll() const {
    if (switch_ == 0) {
        Flipping::End();
        return MS::kSuccess;
    }
    return Result(Flipping::Roll());
}

MStatus UtilCommand::SetFlipAllLayers() const {
    Settings::flipAllLayers = number_ != 0;
    return MS::kSuccess;
}

MStatus UtilCommand::SetRollCount() const {
    const int most = Settings::MAX_ROLLED_DRAWINGS;
    Settings::rollCount = qBound(1, number_, most);
    return MS::kSuccess;
}

MStatus UtilCommand::SetRollRate() const {
    const int most = Settings::MAX_ROLL_RATE;
    Settings::rollRate = qBound(1, number_, most);
    return MS::kSuccess;
}

MStatus UtilCommand::SetGhostLayers() const {
    if (number_ > static_cast<int>(GhostLayers::Visible)) {
        Logger::Error(
            "Invalid choice of ghosted layers: 0 the active one, 1 the marked ones, 2 all visible.");
        return MS::kFailure;
    }
    Settings::ghostLayers = number_;
    return UpdateGhosting();
}

MStatus UtilCommand::MarkLayer() const {
    const ActiveDrawing active;
    if (!active.layer) {
        Logger::Error("An active layer does not exist.");
        return MS::kFailure;
    }
    const LayerId layer = active.layer->GetId();
    active.layers->SetLayerMarked(layer, switch_ < 0 ? !active.IsMarked() : switch_ > 0);
    return MS::kSuccess;
}

MStatus UtilCommand::PinDrawing() const {
    const ActiveDrawing active;
    if (!active.frame) {
        Logger::Error("There is no drawing to pin: the active layer shows none now.");
        return MS::kFailure;
    }
    active.layers->SetPinned(active.GetId(), switch_ < 0 ? !active.IsPinned() : switch_ > 0);
    return MS::kSuccess;
}

MStatus UtilCommand::UnpinAll() {
    const ActiveDrawing active;
    if (active.layers) {
        active.layers->UnpinAll();
    }
    return MS::kSuccess;
}

MStatus UtilCommand::SetHeldKey(const HeldKey& action) const {
    Flipping::End(); // nothing may be bound to the release of a key that is held now
    return Result(HeldKeys::Set(action, text_ == QLatin1String("none") ? QString() : text_));
}

MStatus UtilCommand::SetOtherLayersOpacity() const {
    Settings::otherLayersOpacity = qBound(0, number_, 100);
    return UpdateGhosting();
}

// --- timeline and viewports -------------------------------------------------------------------------------

MStatus UtilCommand::SetTimelineFrameDisplay() const {
    if (number_ > static_cast<int>(TimelineFrameDisplay::Off)) {
        Logger::Error("Invalid timeline frame display option.");
        return MS::kFailure;
    }
    Settings::timelineFrameDisplay = number_;
    BaseNode::UpdateTimeControlOverlay();
    UpdateMainMenu();
    return MS::kSuccess;
}

MStatus UtilCommand::RefreshTimelineDisplay() {
    BaseNode::UpdateTimeControlOverlay();
    return MS::kSuccess;
}

MStatus UtilCommand::CreateFloatingViewport() {
    return Result(RequireWindow("floating viewport") && MayaUtil::CreateFloatingViewport(QString()));
}

MStatus UtilCommand::MoveToFloatingViewport() const {
    if (!RequireWindow("floating viewport")) {
        return MS::kFailure;
    }
    QString camera = text_;
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    if (!cameras.contains(camera)) {
        const BaseNode* const node = BaseNode::GetMaster();
        const int active = node ? cameras.indexOf(node->GetActiveCamera()) : -1;
        bool chosen = false;
        // The trailing spaces make the dialog wide enough for its title.
        camera = QInputDialog::getItem(MQtUtil::mainWindow(), QStringLiteral("Move Layers to View"),
                                       QStringLiteral("Select camera to move layers from:                 "),
                                       cameras, qMax(active, 0), false, &chosen);
        if (!chosen) {
            return MS::kSuccess;
        }
    }
    return Result(MayaUtil::CreateFloatingViewport(camera));
}

// --- panels and dialogs -----------------------------------------------------------------------------------

namespace {

MStatus NotAvailable(const char* what) {
    Logger::Error(QStringLiteral("The %1 is not available.").arg(QString::fromLatin1(what)));
    return MS::kFailure;
}

} // namespace

MStatus UtilCommand::ShowPanel(const PanelRow& panel) {
    if (!RequireWindow(panel.noun)) {
        return MS::kFailure;
    }
    QWidget* const window = DialogManager::GetPanel(panel.panel);
    if (!window) {
        return NotAvailable(panel.noun);
    }
    DialogManager::BringUp(*window);
    return MS::kSuccess;
}

MStatus UtilCommand::ShowLayerManager() {
    const bool isNew = !DialogManager::HasLayerManagerDialog();
    MStatus status = ShowPanel(RowOf(Panel::LayerManager));
    return status && isNew ? RefreshLayerManager() : status;
}

MStatus UtilCommand::RefreshLayerManager() {
    BaseNode::ClearLayerManagerDialog();
    if (BaseNode* const node = BaseNode::GetMaster()) {
        node->UpdateLayerManagerDialog();
    }
    return MS::kSuccess;
}

MStatus UtilCommand::RefreshToolbox() {
    if (!RequireWindow("toolbox")) {
        return MS::kFailure;
    }
    if (!DialogManager::GetToolboxDialog()) {
        return NotAvailable("toolbox");
    }
    const QColor color = DialogManager::GetToolboxColor();
    return Result(!color.isValid() || MayaUtil::SetActiveColor(color));
}

MStatus UtilCommand::ShowDialog(const char* what, bool (*show)()) {
    if (!RequireWindow(what)) {
        return MS::kFailure;
    }
    return show() ? MStatus() : NotAvailable(what);
}

MStatus UtilCommand::ShowLayerProperties() {
    const char* const what = "layer properties dialog";
    if (!RequireWindow(what)) {
        return MS::kFailure;
    }
    const BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        Logger::Error("Node not found");
        return MS::kFailure;
    }
    const QString camera = node->GetActiveCamera();
    const int index = node->GetActiveLayerIndex(camera);
    if (index < 0) {
        Logger::Error("An active layer does not exist.");
        return MS::kFailure;
    }
    return DialogManager::ShowLayerPropertiesDialog(camera, index, nullptr) ? MStatus() : NotAvailable(what);
}

MStatus UtilCommand::ResetPanels() {
    if (!RequireWindow("reset of the user interface")) {
        return MS::kFailure;
    }
    const auto answer = QMessageBox::question(MQtUtil::mainWindow(), QStringLiteral("Reset UI"),
                                              QStringLiteral("Reset user interface elements?"),
                                              QMessageBox::Yes | QMessageBox::No, QMessageBox::NoButton);
    if (answer == QMessageBox::Yes) {
        DialogManager::ResetPanels();
    }
    return MS::kSuccess;
}

} // namespace vellix
