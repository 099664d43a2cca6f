#include "host/MayaUtil.h"

#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/PanelTable.h"
#include "host/Settings.h"
#include "paint/ToolTable.h"

#include <maya/M3dView.h>
#include <maya/MAnimControl.h>
#include <maya/MCommandResult.h>
#include <maya/MDagPath.h>
#include <maya/MDoubleArray.h>
#include <maya/MFileIO.h>
#include <maya/MFn.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MObject.h>
#include <maya/MQtUtil.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

#include <QFile>
#include <QPointer>
#include <QScopedValueRollback>
#include <QStringList>
#include <QWidget>

namespace vellix {

namespace {

template <typename Value>
bool ExecuteForResult(const MString& command, MCommandResult::Type type, Value& out, bool displayEnabled,
                      bool undoEnabled) {
    MCommandResult result;
    if (!MGlobal::executeCommand(command, result, displayEnabled, undoEnabled)) {
        return false;
    }
    if (result.resultType() != type) {
        return false;
    }
    Value value;
    if (!result.getResult(value)) {
        return false;
    }
    out = value;
    return true;
}

bool g_refreshingTimeControl = false;

QString GetTransformName(const MDagPath& camera) {
    MObject transform = camera.transform();
    return MayaUtil::ToQString(MFnDependencyNode(transform).name());
}

} // namespace

bool MayaUtil::ExecuteMel(const MString& command, bool displayEnabled, bool undoEnabled) {
    return MGlobal::executeCommand(command, displayEnabled, undoEnabled) == MStatus::kSuccess;
}

bool MayaUtil::ExecuteMel(const QString& command, bool displayEnabled, bool undoEnabled) {
    return ExecuteMel(ToMString(command), displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelIntResult(const MString& command, int& out, bool displayEnabled, bool undoEnabled) {
    return ExecuteForResult(command, MCommandResult::kInt, out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelIntResult(const QString& command, int& out, bool displayEnabled, bool undoEnabled) {
    return ExecuteMelIntResult(ToMString(command), out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelDoubleResult(const MString& command, double& out, bool displayEnabled,
                                      bool undoEnabled) {
    return ExecuteForResult(command, MCommandResult::kDouble, out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelDoubleResult(const QString& command, double& out, bool displayEnabled,
                                      bool undoEnabled) {
    return ExecuteMelDoubleResult(ToMString(command), out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelDoubleArrayResult(const MString& command, MDoubleArray& out, bool displayEnabled,
                                           bool undoEnabled) {
    return ExecuteForResult(command, MCommandResult::kDoubleArray, out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelDoubleArrayResult(const QString& command, MDoubleArray& out, bool displayEnabled,
                                           bool undoEnabled) {
    return ExecuteMelDoubleArrayResult(ToMString(command), out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelStringResult(const MString& command, MString& out, bool displayEnabled,
                                      bool undoEnabled) {
    return ExecuteForResult(command, MCommandResult::kString, out, displayEnabled, undoEnabled);
}

bool MayaUtil::ExecuteMelStringResult(const QString& command, QString& out, bool displayEnabled,
                                      bool undoEnabled) {
    MString result;
    if (!ExecuteMelStringResult(ToMString(command), result, displayEnabled, undoEnabled)) {
        return false;
    }
    out = ToQString(result);
    return true;
}

QString MayaUtil::ToQString(const MString& text) {
    return MQtUtil::toQString(text);
}

MString MayaUtil::ToMString(const QString& text) {
    return MQtUtil::toMString(text);
}

QString MayaUtil::EscapeString(const QString& text) {
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar character : text) {
        switch (character.unicode()) {
        case 0:
            return escaped;
        case '"':
        case '\\':
            escaped += QLatin1Char('\\');
            escaped += character;
            break;
        case '\n':
            escaped += QLatin1String("\\n");
            break;
        case '\r':
            escaped += QLatin1String("\\r");
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

namespace {

/// Appends the line once for each tool.
void AppendForEachTool(QStringList& lines, const QString& line) {
    for (const ToolRow& tool : AllTools()) {
        lines.append(
            QString(line)
                .replace(QLatin1String("{TOOL_LABEL}"), QLatin1String(tool.label))
                .replace(QLatin1String("{TOOL_FLAG}"), QLatin1String(tool.toolFlag))
                .replace(QLatin1String("{TOOL_NUMBER}"), QString::number(static_cast<int>(tool.type))));
    }
}

/// Appends the line once for each panel that has an item in the main menu.
void AppendForEachPanel(QStringList& lines, const QString& line) {
    for (const PanelRow& panel : PANELS) {
        if (panel.isInMenu) {
            lines.append(QString(line)
                             .replace(QLatin1String("{PANEL_TITLE}"), QLatin1String(panel.title))
                             .replace(QLatin1String("{PANEL_NAME}"), QLatin1String(panel.Name())));
        }
    }
}

/// Repeats every line that contains the label of a tool for each tool, and every line that contains the title
/// of a panel for each panel in the menu.
QString RepeatLines(const QString& script) {
    QStringList lines;
    for (const QString& line : script.split(QLatin1Char('\n'))) {
        if (line.contains(QLatin1String("{TOOL_LABEL}"))) {
            AppendForEachTool(lines, line);
        } else if (line.contains(QLatin1String("{PANEL_TITLE}"))) {
            AppendForEachPanel(lines, line);
        } else {
            lines.append(line);
        }
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

bool MayaUtil::SourceScripts() {
    QFile file(QStringLiteral(":/scripts/Vellix.mel"));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray data = file.readAll();
    if (data.isNull()) {
        return false;
    }
    // Like any script, the text ends at the first NUL.
    return ExecuteMel(ParseScript(QString::fromUtf8(data.constData())), false, false);
}

QString MayaUtil::ParseScript(const QString& text) {
    struct Placeholder {
        const char* token;
        QString value;
    };
    const Placeholder placeholders[] = {
        {"{MAIN_MENU_NAME}", Settings::mainMenuName},
        {"{NODE_CMD}", Settings::NODE_COMMAND_NAME},
        {"{LAYER_CMD}", Settings::LAYER_COMMAND_NAME},
        {"{FRAME_CMD}", Settings::FRAME_COMMAND_NAME},
        {"{UTIL_CMD}", Settings::UTIL_COMMAND_NAME},
        {"{REPLAY_CMD}", Settings::REPLAY_COMMAND_NAME},
        {"{EXPORT_CMD}", Settings::EXPORT_COMMAND_NAME},
        {"{IMPORT_CMD}", Settings::IMPORT_COMMAND_NAME},
        {"{FUNC_CREATE_MAIN_MENU}", Settings::CREATE_MAIN_MENU_FUNC_NAME},
        {"{FUNC_DELETE_MAIN_MENU}", Settings::DELETE_MAIN_MENU_FUNC_NAME},
        {"{FUNC_UPDATE_MAIN_MENU}", Settings::UPDATE_MAIN_MENU_FUNC_NAME},
        {"{FUNC_CREATE_FLOATING_VIEWPORT}", Settings::CREATE_FLOATING_VIEWPORT_FUNC_NAME},
        {"{FUNC_VIEWPORT_LOOK_THROUGH}", Settings::VIEWPORT_LOOK_THROUGH_FUNC_NAME},
        {"{FUNC_VIEWPORT_CREATE_CAMERA}", Settings::VIEWPORT_CREATE_CAMERA_FUNC},
        {"{FUNC_DELETE_ACTIVE_LAYER}", Settings::DELETE_ACTIVE_LAYER_FUNC},
        {"{FUNC_DELETE_ACTIVE_CAMERA_LAYERS}", Settings::DELETE_ACTIVE_CAMERA_LAYERS_FUNC},
        {"{FUNC_DELETE_ALL_NODES}", Settings::DELETE_ALL_NODES_FUNC},
        {"{NODE_TYPE_NAME}", QString::fromLatin1(Settings::NODE_TYPE_NAME)},
    };
    QString parsed = RepeatLines(text);
    for (const Placeholder& placeholder : placeholders) {
        parsed.replace(QLatin1String(placeholder.token), placeholder.value, Qt::CaseSensitive);
    }
    return parsed;
}

bool MayaUtil::SetContext(const MString& context) {
    return ExecuteMel(MString("setToolTo ") + context, false, false);
}

bool MayaUtil::ContextExists(const MString& context) {
    return ExecuteMel(MString("contextInfo -exists ") + context, false, false);
}

bool MayaUtil::CreateContext(const MString& command, MString& name) {
    return ExecuteMelStringResult(command, name, false, false);
}

bool MayaUtil::CurrentContext(MString& name) {
    return ExecuteMelStringResult(MString("currentCtx"), name, false, false);
}

bool MayaUtil::IsBatchMode() {
    int batch = 0;
    return ExecuteMelIntResult(MString("about -batch"), batch, false, false) && batch != 0;
}

QString MayaUtil::GetMayaPrefsDirectory() {
    QString folder;
    ExecuteMelStringResult(QStringLiteral("internalVar -userPrefDir"), folder, false, false);
    return folder;
}

bool MayaUtil::IsTimeSliderRangeVisible() {
    int visible = 0;
    ExecuteMelIntResult(MString("timeControl -q -rangeVisible $gPlayBackSlider"), visible, false, false);
    return visible != 0;
}

bool MayaUtil::GetTimeSliderRange(MDoubleArray& range) {
    return ExecuteMelDoubleArrayResult(MString("timeControl -q -rangeArray $gPlayBackSlider"), range, false,
                                       false);
}

QWidget* MayaUtil::GetTimeControlWidget() {
    static QPointer<QWidget> timeControl;
    if (timeControl) {
        return timeControl;
    }
    MString name;
    if (!ExecuteMelStringResult(MString("$tempVar = $gPlayBackSlider"), name, false, false)) {
        Logger::Error("Failed to get time control name");
        return nullptr;
    }
    if (name.length() == 0) {
        return nullptr;
    }
    timeControl = MQtUtil::findControl(name);
    return timeControl;
}

bool MayaUtil::IsReadingScene() {
    return MFileIO::isOpeningFile() || MFileIO::isImportingFile() || MFileIO::isReferencingFile();
}

bool MayaUtil::IsPlaying() {
    return MAnimControl::isPlaying();
}

MTime MayaUtil::GetPlaybackTime() {
    return MAnimControl::currentTime();
}

int MayaUtil::GetPlaybackTimeValue() {
    return ToWholeFrames(GetPlaybackTime());
}

void MayaUtil::SetPlaybackTime(const MTime& time) {
    MAnimControl::setCurrentTime(time);
}

void MayaUtil::SetPlaybackTime(int frame) {
    SetPlaybackTime(FromWholeFrames(frame));
}

MTime MayaUtil::GetPlaybackRangeStart() {
    return MAnimControl::minTime();
}

MTime MayaUtil::GetPlaybackRangeEnd() {
    return MAnimControl::maxTime();
}

bool MayaUtil::CachedPlaybackEnabled() {
    return MGlobal::optionVarIntValue("cachedPlaybackEnable") != 0;
}

void MayaUtil::GetCameras(QStringList& names) {
    for (MItDependencyNodes cameras(MFn::kCamera); !cameras.isDone(); cameras.next()) {
        MDagPath path;
        if (MDagPath::getAPathTo(cameras.thisNode(), path)) {
            names.append(GetTransformName(path));
        }
    }
}

bool MayaUtil::CameraExists(const QString& name) {
    QStringList names;
    GetCameras(names);
    return names.contains(name);
}

QString MayaUtil::GetCameraName(const MDagPath& camera) {
    return GetTransformName(camera);
}

QString MayaUtil::GetCameraName(M3dView& view) {
    MDagPath camera;
    return view.getCamera(camera) ? GetTransformName(camera) : QString();
}

QString MayaUtil::GetActive3dViewCameraName() {
    MStatus status;
    M3dView view = M3dView::active3dView(&status);
    return status ? GetCameraName(view) : QString();
}

bool MayaUtil::IsRefreshingTimeControl() {
    return g_refreshingTimeControl;
}

void MayaUtil::RefreshTimeControl(const MObject& node) {
    const QScopedValueRollback<bool> refreshing(g_refreshingTimeControl, true);
    MSelectionList selected;
    MGlobal::getActiveSelectionList(selected);
    if (!selected.isEmpty()) {
        MGlobal::clearSelectionList();
    } else {
        MSelectionList alone;
        alone.add(node);
        MGlobal::setActiveSelectionList(alone);
    }
    MGlobal::setActiveSelectionList(selected);
}

} // namespace vellix
