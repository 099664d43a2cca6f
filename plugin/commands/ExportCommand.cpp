#include "commands/ExportCommand.h"

#include "commands/CameraArgument.h"
#include "commands/FlagArgument.h"
#include "commands/FrameOutputs.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/ContactSheet.h"
#include "paint/ImageSequence.h"
#include "paint/MovieWriter.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MComputation.h>
#include <maya/MStringArray.h>
#include <maya/MTime.h>

#include <QDir>
#include <QFileInfo>
#include <QPainter>

#include <memory>

namespace vellix {

namespace {

bool RefuseExport(const QString& message) {
    Logger::Error(message);
    return false;
}

/// A folder that is missing is made: a render of that name is what was asked for.
bool CheckFolder(const QString& path) {
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder)) {
        return RefuseExport(
            QString("The folder \"%1\" cannot be made. Choose another with -file.").arg(folder));
    }
    if (!QFileInfo(folder).isWritable()) {
        return RefuseExport(QString("The folder \"%1\" cannot be written to. Choose another.").arg(folder));
    }
    return true;
}

bool CheckPicture(const QString& path) {
    if (!path.endsWith(".png", Qt::CaseInsensitive)) {
        return RefuseExport(QString("Frames are written as PNG files. Let \"%1\" end in .png.").arg(path));
    }
    return CheckFolder(path);
}

/// Frames a second of the scene's time unit.
double SceneRate() {
    return MTime(1, MTime::kSeconds).as(MTime::uiUnit());
}

} // namespace

void* ExportCommand::Creator() {
    return new ExportCommand();
}

MString ExportCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::EXPORT_COMMAND_NAME);
}

MSyntax ExportCommand::CommandSyntax() {
    MSyntax syntax;
    syntax.addFlag("-f", "-file", MSyntax::kString);
    syntax.addFlag("-c", "-camera", MSyntax::kString);
    syntax.addFlag("-st", "-startTime", MSyntax::kTime);
    syntax.addFlag("-et", "-endTime", MSyntax::kTime);
    syntax.addFlag("-g", "-ghosting", MSyntax::kBoolean);
    syntax.addFlag("-bg", "-background", MSyntax::kLong, MSyntax::kLong, MSyntax::kLong);
    syntax.addFlag("-cs", "-contactSheet", MSyntax::kString);
    syntax.addFlag("-mv", "-movie", MSyntax::kString);
    return syntax;
}

MStatus ExportCommand::doIt(const MArgList& args) {
    if (!ReadArguments(args)) {
        return MS::kFailure;
    }
    const BaseNode* const node = BaseNode::GetMaster();
    const std::shared_ptr<LayerManager> layers = node ? node->GetLayerManager() : nullptr;
    if (!layers) {
        Logger::Error("There is no drawing in the scene.");
        return MS::kFailure;
    }
    m_camera = CameraArgument::Resolve(m_camera, node);
    if (m_camera.isEmpty()) {
        return MS::kFailure;
    }
    if (layers->LayerCount(m_camera) == 0) {
        Logger::Error(QString("The camera %1 has no layers. Name one that has with -camera.").arg(m_camera));
        return MS::kFailure;
    }
    if (!CheckRange() || !CheckFiles() || !WriteAll(*layers)) {
        return MS::kFailure;
    }
    MStringArray result;
    for (const QString& file : m_files) {
        result.append(MayaUtil::ToMString(file));
    }
    setResult(result);
    return MS::kSuccess;
}

// --- the arguments ----------------------------------------------------------------------------------------

bool ExportCommand::ReadArguments(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return false;
    }
    m_pattern = FlagArgument::String(arguments, "-f");
    m_camera = FlagArgument::String(arguments, "-c");
    m_contactSheet = FlagArgument::String(arguments, "-cs");
    m_movie = FlagArgument::String(arguments, "-mv");
    if (arguments.isFlagSet("-g")) {
        arguments.getFlagArgument("-g", 0, m_ghosting);
    }
    return ReadRange(arguments) && ReadBackground(arguments);
}

bool ExportCommand::ReadRange(const MArgDatabase& arguments) {
    MTime start = MayaUtil::GetPlaybackRangeStart();
    MTime end = MayaUtil::GetPlaybackRangeEnd();
    if (arguments.isFlagSet("-st")) {
        arguments.getFlagArgument("-st", 0, start);
    }
    if (arguments.isFlagSet("-et")) {
        arguments.getFlagArgument("-et", 0, end);
    }
    const double limit = 1e9; // far beyond every timeline, and still an int
    for (const double frame : {start.as(MTime::uiUnit()), end.as(MTime::uiUnit())}) {
        if (!(frame >= -limit && frame <= limit)) {
            return RefuseExport("The frame range is not on the timeline. Check -startTime and -endTime.");
        }
    }
    m_start = ToWholeFrames(start);
    m_end = ToWholeFrames(end);
    return true;
}

bool ExportCommand::ReadBackground(const MArgDatabase& arguments) {
    if (!arguments.isFlagSet("-bg")) {
        return true;
    }
    int rgb[3] = {};
    for (unsigned int i = 0; i < 3; ++i) {
        arguments.getFlagArgument("-bg", i, rgb[i]);
        if (rgb[i] < 0 || rgb[i] > 255) {
            return RefuseExport("A background is three numbers from 0 to 255: red, green and blue.");
        }
    }
    m_background = QColor(rgb[0], rgb[1], rgb[2]);
    return true;
}

bool ExportCommand::CheckRange() const {
    if (m_end < m_start) {
        return RefuseExport(
            QString("There are no frames from %1 to %2. Let -endTime not be before -startTime.")
                .arg(m_start)
                .arg(m_end));
    }
    const int limit = m_contactSheet.isEmpty() ? MAX_FRAMES : ContactSheet::MAX_COUNT;
    if (m_end - m_start >= limit) {
        return RefuseExport(
            QString("The range from %1 to %2 is too long: at most %3 frames %4.")
                .arg(m_start)
                .arg(m_end)
                .arg(limit)
                .arg(m_contactSheet.isEmpty() ? "are exported at a time" : "fit on a contact sheet"));
    }
    return true;
}

bool ExportCommand::CheckFiles() const {
    if (m_pattern.isEmpty() && m_movie.isEmpty()) {
        return RefuseExport(
            "No file. Name the frames with -file, for example \"frames/walk.####.png\", or a movie "
            "with -movie.");
    }
    if (!m_pattern.isEmpty() && !ImageSequence(m_pattern).HasNumber() && m_end > m_start) {
        return RefuseExport(
            QString("\"%1\" would be written by every frame. Put a run of # where the frame number goes, "
                    "for example \"walk.####.png\".")
                .arg(m_pattern));
    }
    return (m_pattern.isEmpty() || CheckPicture(m_pattern)) &&
           (m_contactSheet.isEmpty() || CheckPicture(m_contactSheet)) && (m_movie.isEmpty() || CheckMovie());
}

bool ExportCommand::CheckMovie() const {
    if (!MovieWriter::SUFFIXES.contains(QFileInfo(m_movie).suffix(), Qt::CaseInsensitive)) {
        return RefuseExport(QString("A movie is a .%1 file. Let \"%2\" end in one of these.")
                                .arg(MovieWriter::SUFFIXES.join(", ."), m_movie));
    }
    if (MovieWriter::FindEncoder().isEmpty()) {
        return RefuseExport(
            "Movies are written by ffmpeg, which is not installed. Install it (the package ffmpeg, or "
            "from ffmpeg.org) so that it is on the PATH, or write pictures with -file.");
    }
    return CheckFolder(m_movie);
}

// --- writing ----------------------------------------------------------------------------------------------

QImage ExportCommand::Compose(const LayerManager& layers, int frame) const {
    QImage drawing = layers.ComposeFrame(m_camera, frame, m_ghosting);
    if (!m_background.isValid()) {
        return drawing;
    }
    QImage opaque(drawing.size(), QImage::Format_RGB32);
    opaque.fill(m_background);
    QPainter(&opaque).drawImage(0, 0, drawing);
    return opaque;
}

bool ExportCommand::WriteAll(const LayerManager& layers) {
    FrameOutputs outputs;
    if (!m_pattern.isEmpty()) {
        outputs.AddPictures(m_pattern);
    }
    if (!m_contactSheet.isEmpty()) {
        outputs.AddContactSheet(m_contactSheet, m_end - m_start + 1,
                                QString("%1, frames %2 to %3").arg(m_camera).arg(m_start).arg(m_end));
    }
    if (!m_movie.isEmpty()) {
        outputs.AddMovie(m_movie, SceneRate());
    }
    MComputation computation;
    computation.beginComputation(true);
    computation.setProgressRange(m_start, m_end + 1);
    computation.setProgressStatus("Exporting frames");
    int frame = m_start;
    for (bool going = true; frame <= m_end && going; ++frame) {
        going = outputs.Write(Compose(layers, frame), frame);
        computation.setProgress(frame + 1);
        going = going && !computation.isInterruptRequested();
    }
    const bool all = frame > m_end;
    const QString fault = outputs.Finish(all);
    computation.endComputation();
    if (!fault.isEmpty()) {
        return RefuseExport(fault);
    }
    m_files = outputs.Files();
    return all || RefuseExport(QString("Interrupted after %1 frames.").arg(frame - m_start));
}

} // namespace vellix
