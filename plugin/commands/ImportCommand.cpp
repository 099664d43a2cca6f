#include "commands/ImportCommand.h"

#include "commands/CameraArgument.h"
#include "commands/ForeignScene.h"
#include "commands/NodeCreation.h"
#include "core/LayerManager.h"
#include "host/FrameTime.h"
#include "host/Guarded.h"
#include "host/HostCallbacks.h"
#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "node/OpenText.h"
#include "node/ViewPlacement.h"
#include "paint/NonCopyable.h"
#include "paint/ScopeExit.h"

#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MComputation.h>
#include <maya/MEventMessage.h>
#include <maya/MSelectionList.h>

#include <QScopedValueRollback>

namespace vellix {

namespace {

bool RefuseImport(const QString& message) {
    Logger::Error(message);
    return false;
}

bool ToFitMode(const QString& name, CanvasFit::Mode& mode) {
    const struct {
        const char* name;
        CanvasFit::Mode mode;
    } modes[] = {
        {"", CanvasFit::Mode::Automatic},    {"gate", CanvasFit::Mode::Gate},
        {"width", CanvasFit::Mode::Width},   {"height", CanvasFit::Mode::Height},
        {"square", CanvasFit::Mode::Square},
    };
    for (const auto& known : modes) {
        if (name == QLatin1String(known.name)) {
            mode = known.mode;
            return true;
        }
    }
    return false;
}

} // namespace

/// Notices that the scene is closed while it exists.
class SceneWatch : private NonCopyable {
public:
    SceneWatch() {
        for (const char* event : {"NewSceneOpened", "SceneOpened"}) {
            callbacks_.Add([this, event](MStatus* status) {
                return MEventMessage::addEventCallback(event, &SceneWatch::OnReplaced, this, status);
            });
        }
    }
    bool IsReplaced() const { return isReplaced_; }

private:
    static void OnReplaced(void* watch) { static_cast<SceneWatch*>(watch)->isReplaced_ = true; }

    bool isReplaced_ = false;
    HostCallbacks callbacks_;
};

ImportCommand::ImportCommand() = default;
ImportCommand::~ImportCommand() = default;

const FlagTable<ImportCommand>& ImportCommand::Flags() {
    using Flag = FlagRow<ImportCommand>;
    using I = ImportCommand;
    using Value = Flag::Value;
    static const FlagTable<I> flags({
        Flag("-f", "-file", {&I::files_}),
        Flag("-mv", "-movie", {&I::movie_}),
        Flag("-ev", "-every", {&I::every_}).Sets(&I::hasEvery_),
        Flag("-sc", "-scene", {&I::scene_}),
        Flag("-n", "-node", {&I::otherNode_}),
        Flag("-fc", "-fromCamera", {&I::fromCamera_}),
        Flag("-c", "-camera", {&I::camera_}),
        Flag("-l", "-layer", {&I::layerName_}),
        Flag("-st", "-startTime", {&I::startTime_}).Sets(&I::hasStart_),
        Flag("-ho", "-hold", {&I::hold_}).Sets(&I::hasHold_),
        Flag("-fi", "-fit", {&I::fit_}),
        Flag("-sg", "-strength", {&I::strength_}),
        Flag("-ls", "-layerState", {Value::Whole(&I::layerState_)}),
        Flag("-fo", "-force").Sets(&I::force_),
    });
    return flags;
}

void* ImportCommand::Creator() {
    return new ImportCommand();
}

MString ImportCommand::GetCommandName() {
    return MayaUtil::ToMString(Settings::IMPORT_COMMAND_NAME);
}

MSyntax ImportCommand::CommandSyntax() {
    return Flags().GetSyntax();
}

MStatus ImportCommand::doIt(const MArgList& args) {
    ImportCollector::Options options;
    if (!ReadArguments(args) || !CheckArguments()) {
        return MS::kFailure;
    }
    OpenText::Commit(); // as a step of its own
    undoable_ = true;   // what an undoable command runs leaves no step
    if (!CheckCamera() || !MakeOptions(options)) {
        return MS::kFailure;
    }
    const SceneWatch scene;
    MComputation computation;
    computation.beginComputation(true);
    const ScopeExit ended([&computation] { computation.endComputation(); });
    computation.setProgressStatus("Importing pictures");
    ImportCollector collector(
        options,
        [this, &scene](qint64 pictures, qint64 bytes, QString& refusal) {
            return MayReadMany(scene, pictures, bytes, refusal);
        },
        [&computation](int done, int all) {
            computation.setProgressRange(0, all);
            computation.setProgress(done);
            return !computation.isInterruptRequested();
        });
    // The document is not touched before all is read.
    if (!Collect(collector) || !Take(collector.Layers())) {
        return MS::kFailure;
    }
    for (const QString& warning : collector.Warnings()) {
        Logger::Warning(warning);
    }
    undoable_ = isDone_;
    setResult(intake_.FrameCount());
    return MS::kSuccess;
}

// --- the arguments ----------------------------------------------------------------------------------------

bool ImportCommand::ReadArguments(const MArgList& args) {
    MStatus status;
    const MArgDatabase arguments(syntax(), args, &status);
    if (!status) {
        return false;
    }
    Flags().Read(*this, arguments);
    files_.removeAll(QString());
    return true;
}

bool ImportCommand::CheckArguments() const {
    if (!CheckSource()) {
        return false;
    }
    if (strength_ < 1 || strength_ > 100) {
        return RefuseImport("-strength is a number from 1 to 100.");
    }
    CanvasFit::Mode mode;
    if (!ToFitMode(fit_, mode)) {
        return RefuseImport("-fit is gate, width, height or square.");
    }
    return layerState_ < 0 || IsLayerState(layerState_) ||
           RefuseImport(QString("Invalid state value: %1").arg(layerState_));
}

bool ImportCommand::CheckSource() const {
    int sources = 0;
    for (const bool isGiven :
         {!files_.isEmpty(), !movie_.isEmpty(), !scene_.isEmpty(), !otherNode_.isEmpty()}) {
        sources += isGiven ? 1 : 0;
    }
    if (sources != 1) {
        return RefuseImport(
            "Name one thing to import: pictures with -file, for example \"ref/walk.####.png\", or -movie, "
            "-scene or -node.");
    }
    const bool isDrawing = !scene_.isEmpty() || !otherNode_.isEmpty();
    if (isDrawing && (hasStart_ || hasHold_ || !fit_.isEmpty())) {
        return RefuseImport(
            "Layers of a drawing keep their times and places: leave out -startTime, -hold and -fit.");
    }
    if (!isDrawing && !fromCamera_.isEmpty()) {
        return RefuseImport("-fromCamera is for layers of another drawing: give -scene or -node.");
    }
    if (every_ < 1 || (hasEvery_ && movie_.isEmpty())) {
        return RefuseImport("-every is a number of frames from 1, of a movie.");
    }
    if (hold_ < 1 || (hasHold_ && !movie_.isEmpty())) {
        return RefuseImport("-hold is a number of frames from 1, for pictures; a movie takes -every.");
    }
    return true;
}

/// Finds the camera that takes what comes. For a drawing none has to be named.
bool ImportCommand::CheckCamera() {
    if (!scene_.isEmpty() || !otherNode_.isEmpty()) {
        return camera_.isEmpty() || CameraArgument::Check(camera_);
    }
    camera_ = CameraArgument::Resolve(camera_, BaseNode::GetMaster());
    return !camera_.isEmpty();
}

bool ImportCommand::MakeOptions(ImportCollector::Options& options) const {
    options.camera = camera_;
    options.layerName = layerName_;
    ToFitMode(fit_, options.fit.mode);
    options.fit.gateAspect = ViewPlacement::GateAspect();
    options.fit.strength = strength_ / 100.0;
    options.hasState = layerState_ >= 0;
    options.state = ToLayerState(layerState_);
    options.rate = FrameRate();
    options.now = MayaUtil::GetPlaybackTimeValue();
    // A distance without a start begins now.
    options.hasStart = hasStart_ || hasHold_;
    options.start = hasStart_ ? ToWholeFrames(startTime_) : options.now;
    options.hold = hold_;
    return true;
}

/// Cameras can be deleted while the user is asked.
bool ImportCommand::CheckCameras(const std::vector<IncomingLayer>& layers) const {
    for (const IncomingLayer& layer : layers) {
        if (!MayaUtil::CameraExists(layer.camera)) {
            return Refuse(
                QString("\"%1\": the camera \"%2\" is no longer in the scene").arg(What(), layer.camera));
        }
    }
    return true;
}

bool ImportCommand::MayReadMany(const SceneWatch& scene, qint64 pictures, qint64 bytes, QString& refusal) {
    if (force_ || (pictures <= MANY_PICTURES && bytes <= MANY_BYTES)) {
        return true;
    }
    const QString amount = QString("%1 pictures (%2 MB)").arg(pictures).arg(bytes / 1000000);
    if (!Settings::guiEnabled) {
        refusal = QString("there are %1; import so many with -force").arg(amount);
        return false;
    }
    force_ = AsksForMany(amount); // a movie would ask again and again
    if (force_ && scene.IsReplaced()) {
        refusal = QStringLiteral("another scene was opened meanwhile");
        return false;
    }
    refusal = QStringLiteral("cancelled");
    return force_;
}

/// Events go on while the user is asked, and what runs then has to leave its own undo steps.
bool ImportCommand::AsksForMany(const QString& amount) {
    const QScopedValueRollback<bool> notYet(undoable_, false);
    QString answer;
    MayaUtil::ExecuteMelStringResult(
        QString(
            "confirmDialog -title \"Import\" -message \"There are %1. Import all of them?\" -button "
            "\"Import\" "
            "-button \"Cancel\" -defaultButton \"Import\" -cancelButton \"Cancel\" -dismissString \"Cancel\"")
            .arg(amount),
        answer, false, false);
    return answer == QLatin1String("Import");
}

// --- the step ---------------------------------------------------------------------------------------------

QString ImportCommand::What() const {
    if (files_.size() > 1) {
        return QStringLiteral("%1 and %2 more").arg(files_.first()).arg(files_.size() - 1);
    }
    return files_.value(0) + movie_ + scene_ + otherNode_; // only one of them is given
}

bool ImportCommand::Refuse(const QString& reason) const {
    return RefuseImport(QString("Cannot import %1. Nothing was changed.").arg(reason));
}

bool ImportCommand::Collect(ImportCollector& collector) {
    if (!scene_.isEmpty()) {
        return CollectScene(collector);
    }
    if (!otherNode_.isEmpty()) {
        return CollectNode(collector);
    }
    const bool isRead = files_.isEmpty() ? collector.ReadMovie(movie_, every_) : collector.ReadFiles(files_);
    return isRead || Refuse(collector.Fault());
}

bool ImportCommand::CollectScene(ImportCollector& collector) {
    const ForeignScene scene(scene_);
    if (!scene.Drawing()) {
        return Refuse(QString("\"%1\": %2").arg(scene_, scene.Fault()));
    }
    const std::shared_ptr<LayerManager> layers = scene.Drawing()->GetLayerManager(); // outlives its node
    const auto nameOf = [&scene](const QString& camera) { return scene.NameThere(camera); };
    return collector.ReadDrawing(scene_, *layers, fromCamera_, nameOf) || Refuse(collector.Fault());
}

bool ImportCommand::CollectNode(ImportCollector& collector) {
    MSelectionList found;
    found.add(MayaUtil::ToMString(otherNode_));
    const BaseNode* const other = BaseNode::GetFromSelectionList(found);
    const std::shared_ptr<LayerManager> layers = other ? other->GetLayerManager() : nullptr;
    if (!layers) {
        return Refuse(QString("\"%1\": it is no drawing node").arg(otherNode_));
    }
    if (other == BaseNode::GetMaster()) {
        return Refuse(QString("\"%1\": it is the drawing that is edited already").arg(otherNode_));
    }
    const auto nameOf = [](const QString& camera) { return camera; };
    return collector.ReadDrawing(otherNode_, *layers, fromCamera_, nameOf) || Refuse(collector.Fault());
}

/// Puts the layers into the drawing, in which they are the first change.
bool ImportCommand::Take(std::vector<IncomingLayer>& layers) {
    if (!CheckCameras(layers)) {
        return false;
    }
    if (!BaseNode::GetMaster()) {
        node_ = std::make_unique<NodeCreation>();
        if (!node_->Do()) {
            return false;
        }
    }
    const ScopeExit takeOut([this] {
        if (!isDone_ && node_) {
            node_->Undo();
        }
    });
    BaseNode& node = *BaseNode::GetMaster();
    QString refusal;
    if (!intake_.Plan(*node.GetLayerManager(), layers, refusal)) {
        return Refuse(QString("\"%1\": %2").arg(What(), refusal));
    }
    if (intake_.IsEmpty()) {
        return true; // all of it is there already
    }
    if (!intake_.Do(node, refusal)) {
        return Refuse(QString("\"%1\": %2").arg(What(), refusal));
    }
    isDone_ = true;
    RunGuarded("Refreshing the time slider", [&node] { MayaUtil::RefreshTimeControl(node.thisMObject()); });
    return true;
}

MStatus ImportCommand::Step(bool (LayerIntake::*step)(BaseNode& node, QString& refusal), const char* verb) {
    BaseNode* const node = BaseNode::GetMaster();
    QString refusal = QStringLiteral("the drawing node no longer exists");
    if (!node || !node->GetLayerManager() || !(intake_.*step)(*node, refusal)) {
        Logger::Error(QString("Cannot %1: %2").arg(verb, refusal));
        return MS::kFailure;
    }
    RunGuarded("Refreshing the time slider", [node] { MayaUtil::RefreshTimeControl(node->thisMObject()); });
    return MS::kSuccess;
}

// A step that was refused changed nothing. The next step the other way then has nothing to do either.
MStatus ImportCommand::undoIt() {
    if (!isDone_) {
        return MS::kSuccess;
    }
    MStatus status = Step(&LayerIntake::Undo, "undo");
    isDone_ = !status;
    if (status && node_) {
        node_->Undo();
    }
    return status;
}

MStatus ImportCommand::redoIt() {
    if (isDone_) {
        return MS::kSuccess;
    }
    if (node_) {
        MStatus created = node_->Do();
        if (!created) {
            return created;
        }
    }
    const ScopeExit takeOut([this] {
        if (!isDone_ && node_) { // also for lack of memory
            node_->Undo();
        }
    });
    MStatus status = Step(&LayerIntake::Do, "redo");
    isDone_ = bool(status);
    return status;
}

} // namespace vellix
