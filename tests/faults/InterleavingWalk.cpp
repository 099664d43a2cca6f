#include "faults/InterleavingWalk.h"

#include "core/LayerManager.h"
#include "host/Settings.h"
#include "mel/Error.h"
#include "mel/Value.h"
#include "openmaya/PluginContext.h"
#include "paint/LineStyle.h"
#include "paint/Stroke.h"
#include "scene/IdleQueue.h"
#include "scene/Timeline.h"
#include "scene/ToolContexts.h"
#include "scene/UndoQueue.h"
#include "tools/EventClock.h"
#include "tools/ThreadManager.h"
#include "tools/TransformContext.h"

#include <QCursor>
#include <QFile>
#include <QFileInfo>
#include <QMouseEvent>

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace vellix {

namespace {

constexpr int VIEW_WIDTH = 560;
constexpr int VIEW_HEIGHT = 240;
constexpr int LOCKED = 2;

/// A fault without the names of layers and times, which change when steps are left out.
std::string KindOf(const std::string& fault) {
    return fault.substr(0, fault.find(':'));
}

} // namespace

std::vector<InterleavingWalk::Step> InterleavingWalk::RandomSteps(unsigned seed, std::size_t count) {
    std::mt19937 random(seed);
    std::vector<std::size_t> lots;
    for (std::size_t action = 0; action < Actions().size(); ++action) {
        lots.insert(lots.end(), static_cast<std::size_t>(Actions()[action].weight), action);
    }
    std::vector<Step> steps;
    for (std::size_t i = 0; i < count; ++i) {
        Step step{lots[random() % lots.size()], {}};
        for (unsigned& number : step.numbers) {
            number = static_cast<unsigned>(random());
        }
        steps.push_back(step);
    }
    return steps;
}

std::size_t InterleavingWalk::ActionNamed(const std::string& name) {
    for (std::size_t i = 0; i < Actions().size(); ++i) {
        if (Actions()[i].name == name) {
            return i;
        }
    }
    throw std::runtime_error("no action " + name);
}

InterleavingWalk::Outcome InterleavingWalk::Walk(const std::vector<Step>& steps, const QString& scene) {
    Reset(scene);
    Outcome outcome;
    // A crash leaves its way here.
    std::ofstream trace(prefs_.filePath("walk.txt").toStdString());
    const char* const kept = std::getenv("VELLIX_WALK_TRACE");
    if (kept) {
        trace = std::ofstream(kept);
    }
    for (step_ = 1; step_ <= steps.size(); ++step_) {
        std::string said;
        outcome.fault = Take(steps[step_ - 1], said);
        trace << step_ << " " << said << std::endl;
        outcome.said.push_back(said);
        outcome.steps = step_;
        outcome.opened = openedAt_;
        if (outcome.fault.empty()) {
            continue;
        }
        ++outcome.faults[KindOf(outcome.fault)];
        if (!goesOn_) {
            return outcome;
        }
        ForgetQueue();
    }
    outcome.fault = EndWhatIsPending();
    if (outcome.fault.empty()) {
        outcome.fault = ToTheStartAndBack();
    }
    return outcome;
}

InterleavingWalk::Outcome InterleavingWalk::Shorten(std::vector<Step> steps, const Outcome& found,
                                                    int walks) {
    Outcome shortest = found;
    steps.resize(std::min(steps.size(), found.steps));
    const std::string kind = KindOf(found.fault);
    QString scene;
    if (found.opened > 0 && found.opened < steps.size()) {
        scene = prefs_.filePath("start." + QFileInfo(opened_).suffix());
        QFile::remove(scene);
        QFile::copy(opened_, scene);
        const std::vector<Step> rest(steps.begin() + static_cast<std::ptrdiff_t>(found.opened), steps.end());
        const Outcome outcome = Walk(rest, scene);
        if (KindOf(outcome.fault) == kind) {
            steps = rest;
            shortest = outcome;
        } else {
            scene.clear();
        }
    }
    for (std::size_t size = std::max<std::size_t>(steps.size() / 2, 1); walks > 0; size /= 2) {
        for (std::size_t at = 0; at < steps.size() && walks > 0;) {
            std::vector<Step> fewer(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(at));
            const std::size_t rest = std::min(at + size, steps.size());
            fewer.insert(fewer.end(), steps.begin() + static_cast<std::ptrdiff_t>(rest), steps.end());
            const Outcome outcome = Walk(fewer, scene);
            --walks;
            if (KindOf(outcome.fault) == kind) {
                fewer.resize(std::min(fewer.size(), outcome.steps));
                steps = fewer;
                shortest = outcome;
            } else {
                at += size;
            }
        }
        if (size == 1) {
            break;
        }
    }
    if (!scene.isEmpty()) {
        shortest.said.insert(shortest.said.begin(),
                             "the scene of step " + std::to_string(found.opened) + " is open");
    }
    return shortest;
}

void InterleavingWalk::Reset(const QString& scene) {
    if (isButtonDown_) {
        SendMouse(QEvent::MouseButtonRelease, pointer_, Qt::LeftButton, Qt::NoButton);
        isButtonDown_ = false;
    }
    host_->time().SetPlaying(0);
    Run("setToolTo selectSuperContext");
    Rest();
    Run("file -force -new; undoInfo -state on -infinity on; playbackOptions -min 1 -max 12;"
        "playbackOptions -playbackSpeed 0.0001; currentTime 1; camera -n walkA; camera -n walkB;"
        "setAttr perspShape.filmFit 1; setAttr perspShape.overscan 1;"
        "qmVellixNode -l -ln Rough -c persp; lookThru modelPanel4 persp; flushUndo");
    MakeFiles();
    if (!scene.isEmpty()) {
        Run("file -force -open \"" + scene.toStdString() +
            "\"; undoInfo -infinity on;"
            "playbackOptions -playbackSpeed 0.0001");
    }
    SizeView(VIEW_WIDTH, VIEW_HEIGHT);
    Settings::automaticallyAddFirstLayer = true;
    Settings::alwaysDisplayNewLayerDialog = false;
    Settings::insertDefaultStaticFrame = true;
    Settings::lineStyle = LineStyle();
    // Strokes get their first samples from where the true pointer is.
    QCursor::setPos(View().mapToGlobal(QPoint(VIEW_WIDTH / 2, VIEW_HEIGHT / 2)));
    Settle(30);
    ledger_.Forget();
    pending_.reset();
    ForgetQueue();
    strokes_ = 0;
    step_ = 0;
    openedAt_ = 0;
    FindCameras();
    states_[host_->undo().State()] = {ledger_.Take(NodeIfAny()), 0};
}

/// Files of layers, and another scene, to bring in.
void InterleavingWalk::MakeFiles() {
    if (QFile::exists(prefs_.filePath("other.ma"))) {
        return;
    }
    FindCameras();
    Replay({1, 0, 10, 20}); // persp at 1
    Run("qmVellixLayer -add -n Ink -ls 0 persp");
    Replay({1, 3, 300, 20}); // at 4
    const std::string path = prefs_.path().toStdString();
    Run("qmVellixExport -camera persp -startTime 4 -endTime 4 -layered \"" + path + "/other.ora\"");
    Run("qmVellixExport -camera persp -startTime 1 -endTime 4 -layered \"" + path + "/other.pclx\"");
    Run("file -force -type mayaAscii -exportAll \"" + path + "/other.ma\"");
    Run("undo; undo; undo; flushUndo");
}

/// After what is not in the undo queue, or not as it was when it came there.
void InterleavingWalk::ForgetQueue() {
    states_.clear();
    leftLayers_.clear();
    leftPlaces_.clear();
}

void InterleavingWalk::NoteLeftLayers(const DrawingSnapshot& after) {
    for (const auto& layer : after.layers) {
        if (permission_.leavesLayer && permission_.isRefused && !before_.FindLayer(layer.id)) {
            leftLayers_[layer.id] = step_;
        }
    }
}

void InterleavingWalk::Rest() {
    for (int round = 0; round < 20; ++round) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (host_->idle().IsEmpty() && round > 1) {
            return;
        }
        host_->idle().Drain();
    }
}

std::string InterleavingWalk::Take(const Step& step, std::string& said) {
    before_ = ledger_.Take(NodeIfAny());
    permission_ = Permission();
    isNewStroke_ = false;
    fault_.clear();
    messages_.clear();
    said = (this->*Actions()[step.action].run)(step.numbers);
    Rest();
    const bool isRefusedInTheMiddle =
        pending_ && std::any_of(messages_.begin(), messages_.end(), [](const std::string& text) {
            return text.find(" could not be redone") != std::string::npos ||
                   text.find(" could not be undone") != std::string::npos;
        });
    if (isRefusedInTheMiddle) {
        // What the press added was in the way, as was said. The next try may succeed, so no place in the
        // queue shows one drawing from now on.
        Line("flushUndo");
        permission_.isRefused = false;
        ForgetQueue();
    }
    if (step_ % 100 == 0) {
        ledger_.Forget();
    }
    const bool isVerbose = std::getenv("VELLIX_WALK_VERBOSE") != nullptr;
    if (isVerbose) {
        for (const std::string& message : messages_) {
            said += "\n      " + message;
        }
    }
    const DrawingSnapshot after = ledger_.Take(NodeIfAny());
    if (isVerbose && after.places != before_.places) {
        said += "\n      places: " + after.places.join(" ").toStdString();
    }
    return fault_.empty() ? Judge(after) : fault_;
}

std::string InterleavingWalk::Judge(const DrawingSnapshot& after) {
    std::optional<Pending> ended;
    if (pending_ && (!HasStroke() || isNewStroke_)) {
        ended = std::exchange(pending_, std::nullopt);
    }
    if (ended) {
        ended->isTaken =
            permission_.frames.count(ended->frame) > 0 || permission_.layers.count(ended->layer) > 0;
    }
    const std::optional<Pending> concerned = ended ? ended : pending_;
    if (HasStroke() && !pending_) {
        NotePending(after);
    } else if (pending_) {
        // The layer of a step that was undone in the middle goes with the stroke.
        pending_->layerAdded = Node().GetLayerManager()->IsLayerOfStroke(pending_->layer);
        pending_->isSaid = pending_->isSaid || (HasError() && !permission_.isRefused);
    }
    if (concerned) {
        permission_.frames.insert(concerned->frame);
    }
    NoteLeftLayers(after);
    if (!permission_.leavesLayer && permission_.isRefused && !concerned && !pending_) {
        const std::string changed = after.Difference(before_, true);
        if (!changed.empty()) {
            return "A refused line changed the drawing: " + changed;
        }
    }
    if (!permission_.everything) {
        const std::string lost = LostPicture(before_, after, permission_.frames);
        if (!lost.empty()) {
            return "A picture is lost: " + lost;
        }
        for (const auto& layer : before_.layers) {
            const bool wasAdded = concerned && concerned->layerAdded && concerned->layer == layer.id;
            if (!after.FindLayer(layer.id) && permission_.layers.count(layer.id) == 0 && !wasAdded) {
                return "A layer is lost: " + layer.camera.toStdString() + "/" + layer.name.toStdString();
            }
        }
    }
    if (ended) {
        std::string fault = JudgeEnd(*ended, after);
        if (!fault.empty()) {
            return fault;
        }
    }
    const std::string renamed = JudgeRename(after);
    return !renamed.empty() || pending_ ? renamed : JudgeQueue(after);
}

void InterleavingWalk::NotePending(const DrawingSnapshot& after) {
    // The tool may act in another camera than the active one, as in the view of its selection.
    const DrawingId drawing = Node().GetLayerManager()->GetStrokeDrawing();
    const Layer* const layer = Node().FindLayer(drawing.layer).layer;
    const Frame* const frame = layer ? layer->FindFrame(drawing.frame) : nullptr;
    Pending begun;
    begun.tool = TransformTool() ? "transform" : IsTextOpen() ? "text" : "stroke";
    begun.layer = drawing.layer;
    begun.frame = drawing.frame;
    begun.layerAdded = layer && !before_.FindLayer(begun.layer);
    begun.frameAdded = frame && after.FindKey(begun.frame) && !before_.FindKey(begun.frame);
    begun.marks = strokeMarks_;
    strokeMarks_ = false;
    pending_ = begun;
}

std::string InterleavingWalk::JudgeEnd(const Pending& ended, const DrawingSnapshot& after) const {
    const auto* key = after.FindKey(ended.frame);
    const auto* keyBefore = before_.FindKey(ended.frame);
    const bool isCommitted = key && keyBefore && key->hash != keyBefore->hash;
    if (isCommitted || !ended.marks || permission_.everything || permission_.endsQuietly) {
        return {};
    }
    if (ended.tool == "text" && ended.isTaken && !key) {
        return {}; // it was committed as a step of its own first
    }
    const auto* layer = after.FindLayer(ended.layer);
    const auto* layerBefore = before_.FindLayer(ended.layer);
    const auto takes = [](const DrawingSnapshot::LayerRow* row) {
        return row && row->isVisible && row->state != LOCKED;
    };
    if (key && takes(layer) && takes(layerBefore) && ended.tool != "transform") {
        return "A " + ended.tool + " was not kept though its drawing is there";
    }
    if (!HasError() && !ended.isSaid) {
        return "A " + ended.tool + " ended without a word";
    }
    if (ended.frameAdded && key && key->hash.isEmpty()) {
        return "A " + ended.tool + " that was not kept left its key";
    }
    if (ended.layerAdded && layer) {
        return "A " + ended.tool + " that was not kept left its layer";
    }
    return {};
}

std::string InterleavingWalk::JudgeRename(const DrawingSnapshot& after) const {
    if (permission_.isRefused || permission_.renamedTo.isEmpty()) {
        return {};
    }
    for (const auto& layer : before_.layers) {
        const auto* now = after.FindLayer(layer.id);
        const bool isOther = layer.camera != permission_.renamedFrom;
        // The layers of a deleted camera stand aside when another one with layers takes its name.
        const bool standsAside = now && isOther && layer.camera == permission_.renamedTo &&
                                 std::find(cameras_.begin(), cameras_.end(), now->camera) == cameras_.end();
        if (now && !standsAside && now->camera != (isOther ? layer.camera : permission_.renamedTo)) {
            return "A renamed camera left its layers: " + now->camera.toStdString() + "/" +
                   now->name.toStdString();
        }
    }
    return {};
}

std::string InterleavingWalk::JudgeQueue(const DrawingSnapshot& after) {
    for (const auto& layer : after.layers) {
        if (leftLayers_.count(layer.id) > 0) {
            leftPlaces_.insert(layer.camera);
        }
    }
    const std::uint64_t state = host_->undo().State();
    const auto known = states_.find(state);
    if (known == states_.end()) {
        states_[state] = {after, step_};
        return {};
    }
    // A layer that a refused insert left is in no undo step, nor is its place among the others, nor that of
    // its camera.
    const auto compared = [&](const DrawingSnapshot& drawing) {
        DrawingSnapshot rows;
        std::map<LayerId, DrawingSnapshot::LayerRow> left;
        for (const auto& layer : drawing.layers) {
            const auto found = leftLayers_.find(layer.id);
            if (found == leftLayers_.end()) {
                rows.layers.push_back(layer);
            } else if (found->second <= known->second.step) {
                left.emplace(layer.id, layer);
            }
        }
        for (const auto& layer : left) {
            rows.layers.push_back(layer.second);
        }
        for (const QString& camera : drawing.places) {
            if (leftPlaces_.count(camera) == 0) {
                rows.places.append(camera);
            }
        }
        return rows;
    };
    const std::string difference = compared(after).Difference(compared(known->second.drawing), false);
    if (difference.empty()) {
        return {};
    }
    return "Not the drawing of this place in the undo queue: " + difference + ", since step " +
           std::to_string(known->second.step);
}

std::string InterleavingWalk::EndWhatIsPending() {
    before_ = ledger_.Take(NodeIfAny());
    if (isButtonDown_) {
        SendMouse(QEvent::MouseButtonRelease, pointer_, Qt::LeftButton, Qt::NoButton);
        isButtonDown_ = false;
    }
    permission_ = Permission();
    permission_.endsQuietly = TransformTool() != nullptr;
    messages_.clear();
    host_->time().SetPlaying(0);
    Line("setToolTo selectSuperContext");
    Rest();
    return Judge(ledger_.Take(NodeIfAny()));
}

std::string InterleavingWalk::ToTheStartAndBack() {
    for (const std::string line : {"undo", "redo"}) {
        while (line == "undo" ? host_->undo().CanUndo() : host_->undo().CanRedo()) {
            // A step whose layer or frame is not there may say so; the drawing must be the same as ever.
            Line(line);
            Rest();
            const std::string fault = JudgeQueue(ledger_.Take(NodeIfAny()));
            if (!fault.empty()) {
                return (line + " on the way back. ").append(fault);
            }
        }
    }
    return {};
}

// Helpers of the actions.

bool InterleavingWalk::HasStroke() const {
    const BaseNode* const node = NodeIfAny();
    return node && node->HasActiveStroke();
}

bool InterleavingWalk::IsTextOpen() const {
    return HasStroke() && Node().GetActiveStroke(Node().GetActiveCamera(), false)->tool == ToolType::Text;
}

TransformContext* InterleavingWalk::TransformTool() const {
    auto* const plugin = lightbox::PluginContext::Current();
    return plugin ? dynamic_cast<TransformContext*>(&plugin->Context()) : nullptr;
}

bool InterleavingWalk::HasError() const {
    return std::any_of(messages_.begin(), messages_.end(), [](const std::string& text) {
        return text.find("Error") != std::string::npos || text.find("Warning") != std::string::npos;
    });
}

bool InterleavingWalk::Line(const std::string& mel) {
    try {
        Run(mel);
        return true;
    } catch (const lightbox::mel::Error&) {
        permission_.isRefused = true;
        return false;
    }
}

void InterleavingWalk::FindCameras() {
    cameras_.clear();
    const lightbox::mel::Value found = Run("listRelatives -parent `ls -type camera`");
    for (const std::string& name : found.Strings()) {
        cameras_.push_back(QString::fromStdString(name));
    }
    std::sort(cameras_.begin(), cameras_.end());
}

QString InterleavingWalk::CameraAt(unsigned number) {
    // Mostly few of them, so that things meet.
    const QString common[] = {"persp", "persp", "walkA", "walkA", "walkB", "top"};
    const QString name = number % 5 == 0 ? cameras_[number / 5 % cameras_.size()] : common[number / 5 % 6];
    return std::find(cameras_.begin(), cameras_.end(), name) == cameras_.end() ? cameras_.front() : name;
}

QString InterleavingWalk::CameraOfView() {
    return QString::fromStdString(Run("modelPanel -q -camera modelPanel4").AsString()).section('|', -1);
}

QPoint InterleavingWalk::InView(unsigned x, unsigned y) {
    return QPoint(20 + static_cast<int>(x % (VIEW_WIDTH - 40)),
                  20 + static_cast<int>(y % (VIEW_HEIGHT - 40)));
}

/// Gives the stroke in progress a sample, as the thread that follows the pointer does. The true pointer
/// rests.
void InterleavingWalk::Sample(const QPoint& position) {
    ThreadManager::GetInstance()->OnMousePositionChanged(
        QPoint(position.x() + 1, VIEW_HEIGHT - 1 - position.y() + 2), 3 + static_cast<int>(strokes_ % 20),
        1.0f, 1.0f, EventClock::Now());
}

void InterleavingWalk::SendMouse(QEvent::Type type, const QPoint& position, Qt::MouseButton button,
                                 Qt::MouseButtons held, Qt::KeyboardModifiers keys) {
    QMouseEvent event(type, position, View().mapToGlobal(position), button, held, keys);
    QApplication::sendEvent(&View(), &event);
}

void InterleavingWalk::PermitKeysAt(const QString& camera, int time) {
    for (const auto* layer : before_.LayersOf(camera)) {
        for (const auto& key : layer->keys) {
            if (key.time == time) {
                permission_.frames.insert(key.id);
            }
        }
    }
}

void InterleavingWalk::PermitActiveKeys(const QString& camera, int first, int last) {
    if (const auto* layer = before_.ActiveLayer(camera)) {
        for (const auto& key : layer->keys) {
            if (key.time >= first && key.time <= last) {
                permission_.frames.insert(key.id);
            }
        }
    }
}

} // namespace vellix
