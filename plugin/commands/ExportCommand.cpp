#include "commands/ExportCommand.h"

#include "commands/CameraArgument.h"
#include "commands/FlagArgument.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/ContactSheet.h"
#include "paint/ImageSequence.h"
#include "paint/PngWriter.h"

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

bool Refuse(const QString& message) {
    Logger::Error(message);
    return false;
}

/// A folder that is missing is made: a render of that name is what was asked for.
bool CheckFile(const QString& path) {
    if (!path.endsWith(".png", Qt::CaseInsensitive)) {
        return Refuse(QString("Frames are written as PNG files. Let \"%1\" end in .png.").arg(path));
    }
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder)) {
        return Refuse(QString("The folder \"%1\" cannot be made. Choose another with -file.").arg(folder));
    }
    if (!QFileInfo(folder).isWritable()) {
        return Refuse(QString("The folder \"%1\" cannot be written to. Choose another.").arg(folder));
    }
    return true;
}

/// Hands frames on to be written, those that look alike one after the other as one image: drawings are held.
class HeldFrames {
public:
    explicit HeldFrames(PngWriter& writer)
        : m_writer(writer) {}

    /// False once a file could not be written.
    bool Add(const QImage& image, const QString& path) {
        const bool written = image == m_image || Flush();
        m_image = image;
        m_paths.append(path);
        return written;
    }

    bool Flush() {
        const bool written = m_paths.isEmpty() || m_writer.Write(m_image, m_paths);
        m_paths.clear();
        return written;
    }

private:
    PngWriter& m_writer;
    QImage m_image;
    QStringList m_paths;
};

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
            return Refuse("The frame range is not on the timeline. Check -startTime and -endTime.");
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
            return Refuse("A background is three numbers from 0 to 255: red, green and blue.");
        }
    }
    m_background = QColor(rgb[0], rgb[1], rgb[2]);
    return true;
}

bool ExportCommand::CheckRange() const {
    if (m_end < m_start) {
        return Refuse(QString("There are no frames from %1 to %2. Let -endTime not be before -startTime.")
                          .arg(m_start)
                          .arg(m_end));
    }
    const int limit = m_contactSheet.isEmpty() ? MAX_FRAMES : ContactSheet::MAX_COUNT;
    if (m_end - m_start >= limit) {
        return Refuse(
            QString("The range from %1 to %2 is too long: at most %3 frames %4.")
                .arg(m_start)
                .arg(m_end)
                .arg(limit)
                .arg(m_contactSheet.isEmpty() ? "are exported at a time" : "fit on a contact sheet"));
    }
    return true;
}

bool ExportCommand::CheckFiles() const {
    if (m_pattern.isEmpty()) {
        return Refuse("No file. Name the frames with -file, for example \"frames/walk.####.png\".");
    }
    if (!ImageSequence(m_pattern).HasNumber() && m_end > m_start) {
        return Refuse(
            QString("\"%1\" would be written by every frame. Put a run of # where the frame number goes, "
                    "for example \"walk.####.png\".")
                .arg(m_pattern));
    }
    return CheckFile(m_pattern) && (m_contactSheet.isEmpty() || CheckFile(m_contactSheet));
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
    const ImageSequence sequence(m_pattern);
    std::unique_ptr<ContactSheet> sheet;
    if (!m_contactSheet.isEmpty()) {
        const QString title = QString("%1, frames %2 to %3").arg(m_camera).arg(m_start).arg(m_end);
        sheet.reset(new ContactSheet(m_end - m_start + 1, title));
    }
    PngWriter writer;
    HeldFrames held(writer);
    MComputation computation;
    computation.beginComputation(true);
    computation.setProgressRange(m_start, m_end + 1);
    computation.setProgressStatus("Exporting frames");
    bool going = true;
    for (int frame = m_start; frame <= m_end && going; ++frame) {
        const QImage image = Compose(layers, frame);
        m_files.append(sequence.GetPath(frame));
        going = held.Add(image, m_files.last());
        if (sheet) {
            sheet->Add(image, QString::number(frame));
        }
        computation.setProgress(frame + 1);
        going = going && !computation.isInterruptRequested();
    }
    held.Flush();
    if (sheet && going) {
        m_files.append(m_contactSheet);
        writer.Write(sheet->GetImage(), {m_contactSheet});
    }
    const QString fault = writer.Finish();
    computation.endComputation();
    if (!fault.isEmpty()) {
        return Refuse(fault);
    }
    return going || Refuse(QString("Interrupted after %1 frames.").arg(m_files.size()));
}

} // namespace vellix
