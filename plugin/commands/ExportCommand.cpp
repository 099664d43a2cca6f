#include "commands/ExportCommand.h"

#include "commands/CameraArgument.h"
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

#include <QColor>
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

/// Creates a missing folder. Returns false, and logs an error, if the folder cannot be written to.
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

/// The frame rate of the scene's time unit, in frames per second.
double SceneRate() {
    return MTime(1, MTime::kSeconds).as(MTime::uiUnit());
}

} // namespace

const FlagTable<ExportCommand>& ExportCommand::Flags() {
    using Flag = FlagRow<ExportCommand>;
    using E = ExportCommand;
    static const FlagTable<E> flags({
        Flag("-f", "-file", {&E::m_pattern}),
        Flag("-c", "-camera", {&E::m_camera}),
        Flag("-st", "-startTime", {&E::m_startTime}),
        Flag("-et", "-endTime", {&E::m_endTime}),
        Flag("-g", "-ghosting", {&E::m_ghosting}),
        Flag("-bg", "-background", {&E::m_red, &E::m_green, &E::m_blue}).Sets(&E::m_hasBackground),
        Flag("-cs", "-contactSheet", {&E::m_contactSheet}),
        Flag("-mv", "-movie", {&E::m_movie}),
    });
    return flags;
}

void* ExportCommand::Creator() {
    return new ExportCommand();
}

MString ExportCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::EXPORT_COMMAND_NAME);
}

MSyntax ExportCommand::CommandSyntax() {
    return Flags().GetSyntax();
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
    m_startTime = MayaUtil::GetPlaybackRangeStart();
    m_endTime = MayaUtil::GetPlaybackRangeEnd();
    Flags().Read(*this, arguments);
    return CheckTimes() && CheckBackground();
}

bool ExportCommand::CheckTimes() {
    const double limit = 1e9; // beyond any timeline, but within the range of an int
    for (const double frame : {m_startTime.as(MTime::uiUnit()), m_endTime.as(MTime::uiUnit())}) {
        if (!(frame >= -limit && frame <= limit)) {
            return RefuseExport("The frame range is not on the timeline. Check -startTime and -endTime.");
        }
    }
    m_start = ToWholeFrames(m_startTime);
    m_end = ToWholeFrames(m_endTime);
    return true;
}

bool ExportCommand::CheckBackground() const {
    for (const int component : {m_red, m_green, m_blue}) {
        if (component < 0 || component > 255) {
            return RefuseExport("A background is three numbers from 0 to 255: red, green and blue.");
        }
    }
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
    if (!m_hasBackground) {
        return drawing;
    }
    QImage opaque(drawing.size(), QImage::Format_RGB32);
    opaque.fill(QColor(m_red, m_green, m_blue));
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
