#include "commands/ExportCommand.h"

#include "commands/CameraArgument.h"
#include "commands/ExportedLayers.h"
#include "commands/FrameOutputs.h"
#include "commands/LayerOutputs.h"
#include "core/LayerManager.h"
#include "exchange/PclxWriter.h"
#include "exchange/ZipWriter.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"
#include "node/ViewPlacement.h"
#include "paint/Composite.h"
#include "paint/ContactSheet.h"
#include "paint/Ffmpeg.h"
#include "paint/ImageSequence.h"
#include "paint/ImageSize.h"
#include "paint/MovieWriter.h"
#include "paint/NonCopyable.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MCommonRenderSettingsData.h>
#include <maya/MComputation.h>
#include <maya/MDagPath.h>
#include <maya/MRenderUtil.h>
#include <maya/MStringArray.h>
#include <maya/MTime.h>

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numeric>
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

bool CheckSuffix(const QString& path) {
    return path.endsWith(".png", Qt::CaseInsensitive) ||
           RefuseExport(QString("Frames are written as PNG files. Let \"%1\" end in .png.").arg(path));
}

bool CheckPicture(const QString& path) {
    return CheckSuffix(path) && CheckFolder(path);
}

bool RefuseRange(int first, int last, int limit, const char* limited) {
    return RefuseExport(QString("The range from %1 to %2 is too long: at most %3 frames %4.")
                            .arg(first)
                            .arg(last)
                            .arg(limit)
                            .arg(limited));
}

/// The host's progress bar, or its lines in batch.
class ExportProgress : private NonCopyable {
public:
    ExportProgress(const char* status, int first, int last) {
        computation_.beginComputation(true);
        computation_.setProgressRange(first, last);
        computation_.setProgressStatus(status);
    }
    ~ExportProgress() { computation_.endComputation(); }

    /// Returns false once the user has interrupted.
    bool Show(int amount) {
        computation_.setProgress(amount);
        isInterrupted_ = isInterrupted_ || computation_.isInterruptRequested();
        return !isInterrupted_;
    }
    bool IsInterrupted() const { return isInterrupted_; }

private:
    MComputation computation_;
    bool isInterrupted_ = false;
};

} // namespace

const FlagTable<ExportCommand>& ExportCommand::Flags() {
    using Flag = FlagRow<ExportCommand>;
    using E = ExportCommand;
    static const FlagTable<E> flags({
        Flag("-f", "-file", {&E::pattern_}),
        Flag("-c", "-camera", {&E::camera_}),
        Flag("-st", "-startTime", {&E::startTime_}).Sets(&E::hasStart_),
        Flag("-et", "-endTime", {&E::endTime_}).Sets(&E::hasEnd_),
        Flag("-g", "-ghosting", {&E::ghosting_}),
        Flag("-bg", "-background", {&E::red_, &E::green_, &E::blue_}).Sets(&E::hasBackground_),
        Flag("-cs", "-contactSheet", {&E::contactSheet_}),
        Flag("-mv", "-movie", {&E::movie_}),
        Flag("-ly", "-layered", {&E::layered_}),
        Flag("-lf", "-layerFiles", {&E::layerFiles_}),
        Flag("-d", "-drawings").Sets(&E::drawingsOnly_),
        Flag("-sz", "-size", {&E::width_, &E::height_}).Sets(&E::hasSize_),
        Flag("-rs", "-renderSize").Sets(&E::hasRenderSize_),
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
    OpenText::Commit(); // what is seen goes out; an undo step, as before saving
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
    if (!CheckRange() || !CheckSize() || !WriteAll(*layers)) {
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
    return end_ - start_ < limit ||
           RefuseRange(start_, end_, limit,
                       contactSheet_.isEmpty() ? "are exported at a time" : "fit on a contact sheet");
}

bool ExportCommand::CheckSize() {
    if (!hasSize_ && !hasRenderSize_) {
        return true;
    }
    if (hasSize_ && hasRenderSize_) {
        return RefuseExport("Give either -size or -renderSize.");
    }
    if (hasRenderSize_) {
        MCommonRenderSettingsData settings;
        MRenderUtil::getCommonRenderSettings(settings);
        width_ = static_cast<int>(std::min<unsigned>(settings.width, MAX_PNG_SIDE + 1));
        height_ = static_cast<int>(std::min<unsigned>(settings.height, MAX_PNG_SIDE + 1));
    }
    if (std::min(width_, height_) < 1 || std::max(width_, height_) > MAX_PNG_SIDE) {
        return RefuseExport(
            QString("A picture is 1 to %1 pixels wide and high. Choose another -size.").arg(MAX_PNG_SIDE));
    }
    MDagPath camera;
    if (!CameraArgument::Find(camera_, camera)) {
        return RefuseExport(
            QString("The camera %1 is not in the scene, so its gate is not known. Leave out -size.")
                .arg(camera_));
    }
    canvas_ = ExportCanvas(QSize(width_, height_), ViewPlacement::SideOnRender(camera, width_, height_));
    return true;
}

bool ExportCommand::ChooseFrames(const ExportedLayers& layers) {
    if (!drawingsOnly_) {
        const int count = end_ - start_ + 1;
        frames_.resize(static_cast<std::size_t>(count));
        std::iota(frames_.begin(), frames_.end(), start_);
        return true;
    }
    if (!movie_.isEmpty()) {
        return RefuseExport("A movie has every frame of the range. Leave out -drawings, or -movie.");
    }
    for (const int frame : layers.KeyFrames(!layered_.isEmpty())) {
        if (frame >= start_ && frame <= end_) {
            frames_.push_back(frame);
        }
    }
    return !frames_.empty() || !WantsFrames() ||
           RefuseExport(
               QString("No layer has a key from %1 to %2. Choose another range, or leave out -drawings.")
                   .arg(start_)
                   .arg(end_));
}

/// Several frames need a number in their names.
bool ExportCommand::CheckNumber(const QString& pattern, const char* example) const {
    return ImageSequence(pattern).HasNumber() || frames_.size() <= 1 ||
           RefuseExport(
               QString("\"%1\" would be written by every frame. Put a run of # where the frame number goes, "
                       "for example \"%2\".")
                   .arg(pattern, example));
}

bool ExportCommand::CheckFiles(const ExportedLayers& layers) const {
    if (pattern_.isEmpty() && movie_.isEmpty() && layered_.isEmpty() && layerFiles_.isEmpty()) {
        return RefuseExport(
            "No file. Name the frames with -file, for example \"frames/walk.####.png\", or a movie "
            "with -movie.");
    }
    if (ghosting_ && !(layered_.isEmpty() && layerFiles_.isEmpty())) {
        return RefuseExport(
            "Ghosts belong to no layer. Leave out -ghosting, or write pictures with -file alone.");
    }
    return (pattern_.isEmpty() || (CheckNumber(pattern_, "walk.####.png") && CheckPicture(pattern_))) &&
           (contactSheet_.isEmpty() || CheckPicture(contactSheet_)) && (movie_.isEmpty() || CheckMovie()) &&
           (layered_.isEmpty() || CheckLayered()) && (layerFiles_.isEmpty() || CheckLayerFiles(layers));
}

bool ExportCommand::IsAnimation() const {
    return layered_.endsWith(QLatin1String(".pclx"), Qt::CaseInsensitive);
}

bool ExportCommand::WantsFrames() const {
    return !IsAnimation() || !pattern_.isEmpty() || !contactSheet_.isEmpty() || !movie_.isEmpty() ||
           !layerFiles_.isEmpty();
}

bool ExportCommand::CheckLayered() const {
    static const QStringList suffixes = {"ora", "psd", "pclx"};
    if (!suffixes.contains(QFileInfo(layered_).suffix(), Qt::CaseInsensitive)) {
        return RefuseExport(
            QString("Layers are written together as a .%1 file. Let \"%2\" end in one of these.")
                .arg(suffixes.join(", ."), layered_));
    }
    return (IsAnimation() || CheckNumber(layered_, "walk.####.ora")) && CheckFolder(layered_);
}

bool ExportCommand::CheckLayerFiles(const ExportedLayers& layers) const {
    const int count = layers.VisibleNames().size();
    if (count == 0) {
        return RefuseExport(QString("The camera %1 has no visible layers. Show one first.").arg(camera_));
    }
    if (hasBackground_) {
        return RefuseExport("The files of single layers are transparent. Leave out -background.");
    }
    if (count > 1 && !layerFiles_.contains(LayerOutputs::LAYER)) {
        return RefuseExport(
            QString("\"%1\" would be written by every layer. Put {layer} where the layer's name goes, "
                    "for example \"{layer}.####.png\".")
                .arg(layerFiles_));
    }
    if (!CheckNumber(layerFiles_, "{layer}.####.png")) {
        return false;
    }
    // The folder of a layer is made with its first file.
    const int layer = layerFiles_.indexOf(LayerOutputs::LAYER);
    const int folder = layerFiles_.lastIndexOf(QLatin1Char('/'), layer);
    return layer >= 0 ? CheckSuffix(layerFiles_) && CheckFolder(layerFiles_.left(folder + 1) + "layer.png")
                      : CheckPicture(layerFiles_);
}

bool ExportCommand::CheckMovie() const {
    if (!MovieWriter::SUFFIXES.contains(QFileInfo(movie_).suffix(), Qt::CaseInsensitive)) {
        return RefuseExport(QString("A movie is a .%1 file. Let \"%2\" end in one of these.")
                                .arg(MovieWriter::SUFFIXES.join(", ."), movie_));
    }
    if (ffmpeg::Find().isEmpty()) {
        return RefuseExport(
            "Movies are written by ffmpeg, which is not installed. Install it (the package ffmpeg, or "
            "from ffmpeg.org) so that it is on the PATH, or write pictures with -file.");
    }
    return CheckFolder(movie_);
}

// --- writing ----------------------------------------------------------------------------------------------

QImage ExportCommand::Compose(const LayerManager& layers, int frame) const {
    QImage drawing = canvas_.Place(composite::OrBadAlloc(layers.ComposeFrame(camera_, frame, ghosting_)));
    if (!hasBackground_) {
        return drawing;
    }
    QImage opaque = composite::OrBadAlloc(QImage(drawing.size(), QImage::Format_RGB32));
    opaque.fill(QColor(red_, green_, blue_));
    QPainter(&opaque).drawImage(0, 0, drawing);
    return opaque;
}

bool ExportCommand::WriteAll(const LayerManager& layers) {
    ExportedLayers exported(layers, camera_, canvas_);
    if (hasBackground_) {
        exported.SetBackground(QColor(red_, green_, blue_));
    }
    if (!ChooseFrames(exported) || !CheckFiles(exported)) {
        return false;
    }
    if ((IsAnimation() && !WriteAnimation(exported)) || (WantsFrames() && !WriteFrames(layers, exported))) {
        return false;
    }
    if (IsAnimation()) {
        files_.append(layered_);
    }
    return true;
}

bool ExportCommand::WriteAnimation(ExportedLayers& layers) {
    int first = start_;
    int last = end_;
    if (!hasStart_ && !hasEnd_) {
        layers.ExtendToKeys(first, last);
    }
    if (static_cast<qint64>(last) - first >= MAX_FRAMES) {
        return RefuseRange(first, last, MAX_FRAMES, "are exported at a time");
    }
    const double rate = FrameRate();
    const ExportedLayers::Animation animation = layers.Between(first, last, rate);
    const ZipWriter archive = PclxWriter::Archive(animation.drawing, animation.lastFrame);
    ExportProgress progress("Exporting layers", 0, 100);
    QString fault =
        archive.Write(layered_, [&progress](double share) { return progress.Show(int(100 * share)); });
    if (progress.IsInterrupted()) {
        return RefuseExport(QString("Interrupted. \"%1\" was not written.").arg(layered_));
    }
    if (!fault.isEmpty()) {
        return RefuseExport(QString("\"%1\" cannot be written: %2.").arg(layered_, fault));
    }
    progress.Show(100);
    if (animation.shift > 0) {
        Logger::Warning(QString("Frames count from 1 in \"%1\": all are %2 later there than in the scene.")
                            .arg(layered_)
                            .arg(animation.shift));
    }
    const int whole = PclxWriter::RateOf(animation.drawing);
    if (std::abs(whole - rate) > 1e-3) {
        Logger::Warning(
            QString("Frame rates are whole numbers in \"%1\": it has %2 frames per second instead of %3.")
                .arg(layered_)
                .arg(whole)
                .arg(rate, 0, 'f', 3));
    }
    return true;
}

void ExportCommand::AddOutputs(FrameOutputs& frames, LayerOutputs& layers) const {
    if (!pattern_.isEmpty()) {
        frames.AddPictures(pattern_);
    }
    if (!contactSheet_.isEmpty()) {
        frames.AddContactSheet(contactSheet_, static_cast<int>(frames_.size()),
                               QString("%1, frames %2 to %3").arg(camera_).arg(start_).arg(end_));
    }
    if (!movie_.isEmpty()) {
        frames.AddMovie(movie_, FrameRate(), hasBackground_);
    }
    if (!layered_.isEmpty() && !IsAnimation()) {
        layers.AddLayered(layered_);
    }
    if (!layerFiles_.isEmpty()) {
        layers.AddLayerFiles(layerFiles_);
    }
}

bool ExportCommand::WriteFrames(const LayerManager& layers, ExportedLayers& exported) {
    FrameOutputs outputs;
    LayerOutputs layerOutputs(exported);
    AddOutputs(outputs, layerOutputs);
    const bool needsImage = outputs.NeedsImages() || layerOutputs.NeedsImage();
    const QString refusal = layerOutputs.Refusal(frames_);
    if (!refusal.isEmpty()) {
        return RefuseExport(refusal);
    }
    const int count = static_cast<int>(frames_.size());
    ExportProgress progress("Exporting frames", 0, count);
    int done = 0;
    QImage image;
    std::vector<FrameId> shown; // in the image
    QString layerFault;
    for (bool going = true; done < count && going; ++done) {
        const int frame = frames_[static_cast<std::size_t>(done)];
        std::vector<FrameId> wanted = layers.GetShownFrames(camera_, frame);
        if (needsImage && (image.isNull() || wanted != shown)) {
            image = Compose(layers, frame);
            shown = std::move(wanted);
        }
        going = outputs.Write(image, frame);
        layerFault = layerOutputs.Write(image, frame);
        going = progress.Show(done + 1) && going && layerFault.isEmpty();
    }
    const bool all = done == count && layerFault.isEmpty();
    const QString fault = outputs.Finish(all);
    if (!fault.isEmpty() || !layerFault.isEmpty()) {
        return RefuseExport(fault.isEmpty() ? layerFault : fault);
    }
    files_ = outputs.Files() + layerOutputs.Files();
    return all || RefuseExport(QString("Interrupted after %1 frames.").arg(done));
}

} // namespace vellix
