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
#include "paint/ScopeExit.h"

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
#include <utility>
#include <vector>

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
        Flag("-f", "-file", {&E::pattern_}),
        Flag("-c", "-camera", {&E::camera_}),
        Flag("-st", "-startTime", {&E::startTime_}),
        Flag("-et", "-endTime", {&E::endTime_}),
        Flag("-g", "-ghosting", {&E::ghosting_}),
        Flag("-bg", "-background", {&E::red_, &E::green_, &E::blue_}).Sets(&E::hasBackground_),
        Flag("-cs", "-contactSheet", {&E::contactSheet_}),
        Flag("-mv", "-movie", {&E::movie_}),
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
    camera_ = CameraArgument::Resolve(camera_, node);
    if (camera_.isEmpty()) {
        return MS::kFailure;
    }
    if (layers->LayerCount(camera_) == 0) {
        Logger::Error(QString("The camera %1 has no layers. Name one that has with -camera.").arg(camera_));
        return MS::kFailure;
    }
    if (!CheckRange() || !CheckFiles() || !WriteAll(*layers)) {
        return MS::kFailure;
    }
    MStringArray result;
    for (const QString& file : files_) {
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
    startTime_ = MayaUtil::GetPlaybackRangeStart();
    endTime_ = MayaUtil::GetPlaybackRangeEnd();
    Flags().Read(*this, arguments);
    return CheckTimes() && CheckBackground();
}

bool ExportCommand::CheckTimes() {
    const double limit = 1e9; // beyond any timeline, but within the range of an int
    for (const double frame : {startTime_.as(MTime::uiUnit()), endTime_.as(MTime::uiUnit())}) {
        if (!(frame >= -limit && frame <= limit)) {
            return RefuseExport("The frame range is not on the timeline. Check -startTime and -endTime.");
        }
    }
    start_ = ToWholeFrames(startTime_);
    end_ = ToWholeFrames(endTime_);
    return true;
}

bool ExportCommand::CheckBackground() const {
    for (const int component : {red_, green_, blue_}) {
        if (component < 0 || component > 255) {
            return RefuseExport("A background is three numbers from 0 to 255: red, green and blue.");
        }
    }
    return true;
}

bool ExportCommand::CheckRange() const {
    if (end_ < start_) {
        return RefuseExport(
            QString("There are no frames from %1 to %2. Let -endTime not be before -startTime.")
                .arg(start_)
                .arg(end_));
    }
    const int limit = contactSheet_.isEmpty() ? MAX_FRAMES : ContactSheet::MAX_COUNT;
    if (end_ - start_ >= limit) {
        return RefuseExport(
            QString("The range from %1 to %2 is too long: at most %3 frames %4.")
                .arg(start_)
                .arg(end_)
                .arg(limit)
                .arg(contactSheet_.isEmpty() ? "are exported at a time" : "fit on a contact sheet"));
    }
    return true;
}

bool ExportCommand::CheckFiles() const {
    if (pattern_.isEmpty() && movie_.isEmpty()) {
        return RefuseExport(
            "No file. Name the frames with -file, for example \"frames/walk.####.png\", or a movie "
            "with -movie.");
    }
    if (!pattern_.isEmpty() && !ImageSequence(pattern_).HasNumber() && end_ > start_) {
        return RefuseExport(
            QString("\"%1\" would be written by every frame. Put a run of # where the frame number goes, "
                    "for example \"walk.####.png\".")
                .arg(pattern_));
    }
    return (pattern_.isEmpty() || CheckPicture(pattern_)) &&
           (contactSheet_.isEmpty() || CheckPicture(contactSheet_)) && (movie_.isEmpty() || CheckMovie());
}

bool ExportCommand::CheckMovie() const {
    if (!MovieWriter::SUFFIXES.contains(QFileInfo(movie_).suffix(), Qt::CaseInsensitive)) {
        return RefuseExport(QString("A movie is a .%1 file. Let \"%2\" end in one of these.")
                                .arg(MovieWriter::SUFFIXES.join(", ."), movie_));
    }
    if (MovieWriter::FindEncoder().isEmpty()) {
        return RefuseExport(
            "Movies are written by ffmpeg, which is not installed. Install it (the package ffmpeg, or "
            "from ffmpeg.org) so that it is on the PATH, or write pictures with -file.");
    }
    return CheckFolder(movie_);
}

// --- writing ----------------------------------------------------------------------------------------------

QImage ExportCommand::Compose(const LayerManager& layers, int frame) const {
    QImage drawing = layers.ComposeFrame(camera_, frame, ghosting_);
    if (!hasBackground_) {
        return drawing;
    }
    QImage opaque(drawing.size(), QImage::Format_RGB32);
    opaque.fill(QColor(red_, green_, blue_));
    QPainter(&opaque).drawImage(0, 0, drawing);
    return opaque;
}

bool ExportCommand::WriteAll(const LayerManager& layers) {
    FrameOutputs outputs;
    if (!pattern_.isEmpty()) {
        outputs.AddPictures(pattern_);
    }
    if (!contactSheet_.isEmpty()) {
        outputs.AddContactSheet(contactSheet_, end_ - start_ + 1,
                                QString("%1, frames %2 to %3").arg(camera_).arg(start_).arg(end_));
    }
    if (!movie_.isEmpty()) {
        outputs.AddMovie(movie_, SceneRate());
    }
    MComputation computation;
    computation.beginComputation(true);
    const ScopeExit ended([&computation] { computation.endComputation(); });
    computation.setProgressRange(start_, end_ + 1);
    computation.setProgressStatus("Exporting frames");
    int frame = start_;
    QImage image;
    std::vector<FrameId> shown; // in the image
    for (bool going = true; frame <= end_ && going; ++frame) {
        std::vector<FrameId> wanted = layers.GetShownFrames(camera_, frame);
        if (image.isNull() || wanted != shown) {
            image = Compose(layers, frame);
            shown = std::move(wanted);
        }
        going = outputs.Write(image, frame);
        computation.setProgress(frame + 1);
        going = going && !computation.isInterruptRequested();
    }
    const bool all = frame > end_;
    const QString fault = outputs.Finish(all);
    if (!fault.isEmpty()) {
        return RefuseExport(fault);
    }
    files_ = outputs.Files();
    return all || RefuseExport(QString("Interrupted after %1 frames.").arg(frame - start_));
}

} // namespace vellix
