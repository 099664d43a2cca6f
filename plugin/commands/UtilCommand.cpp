#include "commands/UtilCommand.h"

#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "host/ToolOptions.h"
#include "host/panels/DialogManager.h"
#include "node/BaseNode.h"
#include "paint/ToolTable.h"
#include "paint/ToolType.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MIntArray.h>
#include <maya/MQtUtil.h>

#include <QColor>
#include <QInputDialog>
#include <QMessageBox>

#include <array>
#include <iterator>
#include <limits>

namespace vellix {

namespace {

using Util = UtilCommand;

/// Limits are far below; this only keeps a huge number positive.
int ToInt(unsigned int value) {
    constexpr auto most = static_cast<unsigned int>(std::numeric_limits<int>::max());
    return static_cast<int>(qMin(value, most));
}

MStatus Result(bool done) {
    return done ? MS::kSuccess : MS::kFailure;
}

// Without a window there is no menu.
void UpdateMainMenu() {
    if (Settings::guiEnabled) {
        MayaUtil::UpdateMainMenu();
    }
}

} // namespace

// The first flag of the table that is given is the one that is done.
const std::vector<UtilCommand::Operation>& UtilCommand::Operations() {
    static const std::vector<Operation> operations = [] {
        std::vector<Operation> all = {
            {"-d", "-draw", "", [](Util&) { return ActivateDrawContext(); }, nullptr},
            {"-t", "-transform", "", [](Util&) { return ActivateTransformContext(); }, nullptr},
            {"-dc", "-drawColor", "uuu", [](Util& util) { return util.SetActiveColor(); },
             [](Util&) { return Answer(Settings::activeColor); }},
        };
        AddTools(all);
        const Operation others[] = {
            {"-gp", "-ghostPrevious", "i", [](Util& util) { return util.SwitchGhosts(Settings::ghostPrev); },
             [](Util&) { return Answer(Settings::ghostPrev); }},
            {"-gn", "-ghostNext", "i", [](Util& util) { return util.SwitchGhosts(Settings::ghostNext); },
             [](Util&) { return Answer(Settings::ghostNext); }},
            {"-gpc", "-ghostPreviousCount", "u",
             [](Util& util) { return util.SetGhostCount(Settings::ghostPrevCount); },
             [](Util&) { return Answer(Settings::ghostPrevCount); }},
            {"-gnc", "-ghostNextCount", "u",
             [](Util& util) { return util.SetGhostCount(Settings::ghostNextCount); },
             [](Util&) { return Answer(Settings::ghostNextCount); }},
            {"-gco", "-ghostColorOverride", "u", [](Util& util) { return util.SetGhostColorOverride(); },
             [](Util&) { return Answer(Settings::ghostColorOverride); }},
            {"-gcp", "-ghostColorPrevious", "uuu",
             [](Util& util) { return util.SetGhostColor(Settings::ghostColorOverridePrev); },
             [](Util&) { return Answer(Settings::ghostColorOverridePrev); }},
            {"-gcn", "-ghostColorNext", "uuu",
             [](Util& util) { return util.SetGhostColor(Settings::ghostColorOverrideNext); },
             [](Util&) { return Answer(Settings::ghostColorOverrideNext); }},
            {"-tfd", "-timelineFrameDisplay", "u", [](Util& util) { return util.SetTimelineFrameDisplay(); },
             [](Util&) { return Answer(Settings::timelineFrameDisplay); }},
            {"-rtd", "-refreshTimelineDisplay", "", [](Util&) { return RefreshTimelineDisplay(); }, nullptr},
            {"-fv", "-floatingViewport", "", [](Util&) { return CreateFloatingViewport(); }, nullptr},
            {"-fvm", "-floatingViewportMove", "s", [](Util& util) { return util.MoveToFloatingViewport(); },
             nullptr},
            {"-lm", "-layerManager", "", [](Util&) { return ShowLayerManager(); }, nullptr},
            {"-rlm", "-refreshLayerManager", "", [](Util&) { return RefreshLayerManager(); }, nullptr},
            {"-tb", "-toolbox", "",
             [](Util&) { return ShowPanel("toolbox", DialogManager::GetToolboxDialog); }, nullptr},
            {"-to", "-toolOptions", "",
             [](Util&) { return ShowPanel("tool options panel", DialogManager::GetToolOptionsDialog); },
             nullptr},
            {"-rtb", "-refreshToolbox", "", [](Util&) { return RefreshToolbox(); }, nullptr},
            {"-cp", "colorPalette", "",
             [](Util&) { return ShowPanel("color palette", DialogManager::GetColorPaletteDialog); }, nullptr},
            {"-rtt", "retimingTool", "",
             [](Util&) { return ShowPanel("retiming tool", DialogManager::GetRetimingDialog); }, nullptr},
            {"-nl", "-newLayer", "",
             [](Util&) { return ShowDialog("new layer dialog", DialogManager::ShowNewLayerDialog); },
             nullptr},
            {"-lp", "-layerProperties", "", [](Util&) { return ShowLayerProperties(); }, nullptr},
            {"-gs", "-ghostingSettings", "",
             [](Util&) { return ShowDialog("ghosting dialog", DialogManager::ShowGhostingDialog); }, nullptr},
            {"-tvi", "-tavloImport", "",
             [](Util&) { return Logger::Warning("Importing from Tavlo is not done yet."), MStatus(); },
             nullptr},
            {"-rui", "-resetUI", "", [](Util&) { return ResetPanels(); }, nullptr},
            {"-pr", "-preferences", "",
             [](Util&) { return ShowDialog("preferences dialog", DialogManager::ShowPreferencesDialog); },
             nullptr},
            {"-ab", "-about", "",
             [](Util&) { return ShowDialog("about box", DialogManager::ShowAboutDialog); }, nullptr},
        };
        all.insert(all.end(), std::begin(others), std::end(others));
        return all;
    }();
    return operations;
}

// Where several tools are given, text gives way to the others.
void UtilCommand::AddTools(std::vector<Operation>& operations) {
    for (const ToolKind kind : {ToolKind::Freehand, ToolKind::Shape, ToolKind::Text}) {
        for (const ToolRow& tool : AllTools()) {
            if (tool.kind == kind) {
                operations.push_back({tool.shortToolFlag, tool.toolFlag, "",
                                      [&tool](Util&) { return SetActiveTool(tool.type); }, nullptr});
            }
        }
    }
    for (const ToolRow& tool : AllTools()) {
        std::string arguments = "uu";
        arguments += tool.Has(ToolRow::HARDNESS) ? "u" : "";
        arguments += tool.Has(ToolRow::PRESSURE) ? "u" : "";
        arguments += tool.kind == ToolKind::Text ? "s" : "";
        operations.push_back({tool.shortOptionsFlag, tool.optionsFlag, arguments,
                              [&tool](Util& util) { return util.SetOptions(tool); }, nullptr});
    }
}

void* UtilCommand::Creator() {
    return new UtilCommand();
}

MString UtilCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::UTIL_COMMAND_NAME);
}

MSyntax UtilCommand::CommandSyntax() {
    MSyntax syntax;
    syntax.enableQuery(true);
    syntax.enableEdit(true);
    for (const Operation& operation : Operations()) {
        std::array<MSyntax::MArgType, 4> types;
        types.fill(MSyntax::kNoArg);
        for (size_t i = 0; operation.arguments[i] != '\0'; ++i) {
            const char kind = operation.arguments[i];
            types[i] = kind == 'u' ? MSyntax::kUnsigned : kind == 'i' ? MSyntax::kLong : MSyntax::kString;
        }
        syntax.addFlag(operation.shortName, operation.longName, types[0], types[1], types[2], types[3]);
    }
    return syntax;
}

MStatus UtilCommand::doIt(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return status;
    }
    for (const Operation& operation : Operations()) {
        if (arguments.isFlagSet(operation.shortName)) {
            return Run(operation, arguments);
        }
    }
    return Refuse();
}

MStatus UtilCommand::Run(const Operation& operation, const MArgDatabase& arguments) {
    if (operation.query != nullptr) {
        if (arguments.isQuery()) {
            return operation.query(*this);
        }
        if (!arguments.isEdit()) {
            return Refuse();
        }
    }
    return Read(operation, arguments) ? operation.run(*this) : Refuse();
}

/// False when an argument is not there: in a query there are none.
bool UtilCommand::Read(const Operation& operation, const MArgDatabase& arguments) {
    const auto count = static_cast<unsigned int>(operation.arguments.size());
    for (unsigned int i = 0; i < count; ++i) {
        MStatus status;
        MString text;
        switch (operation.arguments[i]) {
        case 'u':
            status = arguments.getFlagArgument(operation.shortName, i, m_values[i]);
            break;
        case 'i':
            status = arguments.getFlagArgument(operation.shortName, i, m_switch);
            break;
        default:
            status = arguments.getFlagArgument(operation.shortName, i, text);
            m_text = MayaUtil::ToQString(text);
        }
        if (!status) {
            return false;
        }
    }
    return true;
}

MStatus UtilCommand::Refuse() {
    Logger::Error("Invalid command parameters");
    return MS::kInvalidParameter;
}

bool UtilCommand::NeedWindow(const char* what) {
    if (!Settings::guiEnabled) {
        Logger::Error(QStringLiteral("The %1 needs a window.").arg(QString::fromLatin1(what)));
    }
    return Settings::guiEnabled;
}

// --- tools ------------------------------------------------------------------------------------------------

MStatus UtilCommand::ActivateContext(const char* tool, const QString& contextCommand, MString& name) {
    if (!NeedWindow(tool)) {
        return MS::kFailure;
    }
    // A context that went, with the plug-in unloaded in between, is made again.
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
    const unsigned int* value = m_values;
    options.size = ToInt(*value++);
    options.opacity = ToInt(*value++);
    if (tool.Has(ToolRow::HARDNESS)) {
        options.hardness = ToInt(*value++);
    }
    if (tool.Has(ToolRow::PRESSURE)) {
        options.tabletEnabled = *value != 0;
    }
    if (tool.kind == ToolKind::Text) {
        options.fontFamily = m_text;
    }
    Settings::SetToolOptions(tool.type, options);
    DialogManager::RefreshToolOptions();
    return MS::kSuccess;
}

// --- colours and ghosts -----------------------------------------------------------------------------------

bool UtilCommand::GetColor(QColor& color) const {
    if (m_values[0] > 255 || m_values[1] > 255 || m_values[2] > 255) {
        Logger::Error("Color values must be in the range of 0-255.");
        return false;
    }
    color = QColor(ToInt(m_values[0]), ToInt(m_values[1]), ToInt(m_values[2]));
    return true;
}

MStatus UtilCommand::Answer(const QColor& color) {
    MIntArray components;
    for (const int component : {color.red(), color.green(), color.blue()}) {
        components.append(component);
    }
    setResult(components);
    return MS::kSuccess;
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
    setting = m_switch < 0 ? !setting : m_switch > 0;
    return UpdateGhosting();
}

MStatus UtilCommand::SetGhostCount(int& setting) const {
    const int least = Settings::MIN_GHOSTED_FRAMES;
    const int most = Settings::MAX_GHOSTED_FRAMES;
    setting = qBound(least, ToInt(m_values[0]), most);
    return UpdateGhosting();
}

MStatus UtilCommand::SetGhostColorOverride() const {
    Settings::ghostColorOverride = m_values[0] != 0;
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

// --- timeline and viewports -------------------------------------------------------------------------------

MStatus UtilCommand::SetTimelineFrameDisplay() const {
    if (m_values[0] > static_cast<unsigned int>(TimelineFrameDisplay::Off)) {
        Logger::Error("Invalid timeline frame display option.");
        return MS::kFailure;
    }
    Settings::timelineFrameDisplay = ToInt(m_values[0]);
    BaseNode::UpdateTimeControlOverlay();
    UpdateMainMenu();
    return MS::kSuccess;
}

MStatus UtilCommand::RefreshTimelineDisplay() {
    BaseNode::UpdateTimeControlOverlay();
    return MS::kSuccess;
}

MStatus UtilCommand::CreateFloatingViewport() {
    return Result(NeedWindow("floating viewport") && MayaUtil::CreateFloatingViewport(QString()));
}

MStatus UtilCommand::MoveToFloatingViewport() const {
    if (!NeedWindow("floating viewport")) {
        return MS::kFailure;
    }
    QString camera = m_text;
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    if (!cameras.contains(camera)) {
        const BaseNode* const node = BaseNode::GetMaster();
        const int active = node != nullptr ? cameras.indexOf(node->GetActiveCamera()) : -1;
        bool chosen = false;
        // The blanks make the dialog wide enough for its title.
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

MStatus UtilCommand::ShowPanel(const char* what, QWidget* (*get)()) {
    if (!NeedWindow(what)) {
        return MS::kFailure;
    }
    QWidget* const panel = get();
    if (panel == nullptr) {
        return NotAvailable(what);
    }
    DialogManager::BringUp(*panel);
    return MS::kSuccess;
}

MStatus UtilCommand::ShowLayerManager() {
    const bool isNew = !DialogManager::HasLayerManagerDialog();
    MStatus status = ShowPanel("layer manager", DialogManager::GetLayerMangerDialog);
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
    if (!NeedWindow("toolbox")) {
        return MS::kFailure;
    }
    if (DialogManager::GetToolboxDialog() == nullptr) {
        return NotAvailable("toolbox");
    }
    const QColor color = DialogManager::GetToolboxColor();
    return Result(!color.isValid() || MayaUtil::SetActiveColor(color));
}

MStatus UtilCommand::ShowDialog(const char* what, bool (*show)()) {
    if (!NeedWindow(what)) {
        return MS::kFailure;
    }
    return show() ? MStatus() : NotAvailable(what);
}

MStatus UtilCommand::ShowLayerProperties() {
    const char* const what = "layer properties dialog";
    if (!NeedWindow(what)) {
        return MS::kFailure;
    }
    const BaseNode* const node = BaseNode::GetMaster();
    if (node == nullptr) {
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
    if (!NeedWindow("reset of the user interface")) {
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
