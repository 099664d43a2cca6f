#pragma once

#include "faults/DrawingLedger.h"
#include "plugin/ui/DrawingFixture.h"

#include <array>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace vellix {

class TransformContext;

/// A random way through everything that a person, a script and the host do with a drawing, one in the middle
/// of the other: strokes, text, the transform tool, commands, time, playback, cameras, undo and files. A
/// ledger of every picture is compared after each step: what no step may take away stays, what a step refuses
/// stays as it was, and each state of the undo queue always shows the same drawing.
class InterleavingWalk : public DrawingFixture {
protected:
    /// What to do, and four numbers that say with what. It means something in every state, so that a part of
    /// a way is a way too.
    struct Step {
        std::size_t action;
        std::array<unsigned, 4> numbers;
    };
    struct Outcome {
        std::string fault;                 ///< empty when all went well
        std::size_t steps = 0;             ///< taken, the faulty one included
        std::vector<std::string> said;     ///< each step, as it was meant in its place
        std::map<std::string, int> faults; ///< how often each kind was found
        std::size_t opened = 0;            ///< the step that saved and opened the scene last; 0 for none
    };

    static std::vector<Step> RandomSteps(unsigned seed, std::size_t count);
    /// The index of an action, for a way that is written down.
    static std::size_t ActionNamed(const std::string& name);
    /// Goes the way in a new scene, or in one that was kept, up to the first fault, then to the start of the
    /// undo queue and back.
    Outcome Walk(const std::vector<Step>& steps, const QString& scene = QString());
    /// Leaves out steps as long as the same fault comes, for at most so many walks. Begins with the scene
    /// that was opened last if the fault comes from there, too; the first step says so.
    Outcome Shorten(std::vector<Step> steps, const Outcome& found, int walks);

    /// Whether a walk goes on after a fault, to count them.
    bool goesOn_ = false;

private:
    using Numbers = std::array<unsigned, 4>;
    struct Action {
        const char* name;
        int weight;
        std::string (InterleavingWalk::*run)(const Numbers& numbers);
    };
    static const std::vector<Action>& Actions();

    /// A stroke, text or transform that has begun and not ended.
    struct Pending {
        std::string tool;
        LayerId layer = LayerId::None;
        FrameId frame = FrameId::None;
        bool layerAdded = false;
        bool frameAdded = false;
        bool marks = false;   ///< the picture differs when it is committed
        bool isSaid = false;  ///< a message came in the middle
        bool isTaken = false; ///< the step that ended it may take its picture away
    };
    /// What a step may take away.
    struct Permission {
        std::set<FrameId> frames;
        std::set<LayerId> layers;
        bool everything = false;  ///< undo and redo: the queue's states say what there must be
        bool endsQuietly = false; ///< the person gives the stroke up
        bool isRefused = false;   ///< the line failed
        bool leavesLayer = false; ///< a refused insert leaves its layer
        QString renamedFrom, renamedTo;
    };
    struct QueueState {
        DrawingSnapshot drawing;
        std::size_t step;
    };

    void Reset(const QString& scene);
    void MakeFiles();
    void Rest();
    void ForgetQueue();
    void NoteLeftLayers(const DrawingSnapshot& after);
    std::string Take(const Step& step, std::string& said);
    std::string Judge(const DrawingSnapshot& after);
    std::string JudgeEnd(const Pending& ended, const DrawingSnapshot& after) const;
    std::string JudgeQueue(const DrawingSnapshot& after);
    std::string JudgeRename(const DrawingSnapshot& after) const;
    void NotePending(const DrawingSnapshot& after);
    std::string ToTheStartAndBack();
    std::string EndWhatIsPending();

    static BaseNode* NodeIfAny() { return BaseNode::GetMaster(); }
    bool HasStroke() const;
    bool IsTextOpen() const;
    TransformContext* TransformTool() const;
    bool HasError() const;
    bool Line(const std::string& mel);
    QString CameraAt(unsigned number);
    QString CameraOfView();
    void FindCameras();
    QPoint InView(unsigned x, unsigned y);
    void Sample(const QPoint& position);
    void SendMouse(QEvent::Type type, const QPoint& position, Qt::MouseButton button, Qt::MouseButtons held,
                   Qt::KeyboardModifiers keys = {});
    void PermitKeysAt(const QString& camera, int time);
    void PermitActiveKeys(const QString& camera, int first, int last);

    // The actions.
    std::string UseDrawTool(const Numbers& n);
    std::string UseOtherTool(const Numbers& n);
    std::string Press(const Numbers& n);
    std::string Drag(const Numbers& n);
    std::string Release(const Numbers& n);
    std::string TypeText(const Numbers& n);
    std::string PressKey(const Numbers& n);
    std::string PasteText(const Numbers& n);
    std::string TransformStep(const Numbers& n);
    std::string TransformWhole(const Numbers& n);
    std::string SetTime(const Numbers& n);
    std::string Play(const Numbers& n);
    std::string LookThrough(const Numbers& n);
    std::string StackLine(const Numbers& n);
    std::string PropertyLine(const Numbers& n);
    std::string FrameLine(const Numbers& n);
    std::string RefusedLine(const Numbers& n);
    std::string LightTableLine(const Numbers& n);
    std::string CommitByScript(const Numbers& n);
    std::string Replay(const Numbers& n);
    std::string Import(const Numbers& n);
    std::string ImportLayers(const Numbers& n);
    std::string TakeLayers(const Numbers& n);
    std::string Export(const Numbers& n);
    std::string LineStyleLine(const Numbers& n);
    std::string CameraLine(const Numbers& n);
    std::string SceneLine(const Numbers& n);
    std::string Undo(const Numbers& n);
    std::string Redo(const Numbers& n);
    std::string SaveAndReopen(const Numbers& n);
    std::string DeleteNode(const Numbers& n);

    DrawingLedger ledger_;
    DrawingSnapshot before_;
    Permission permission_;
    std::optional<Pending> pending_;
    bool isNewStroke_ = false;
    bool strokeMarks_ = false;
    bool isWholeSelected_ = false;
    std::string fault_; ///< found by the action itself
    std::map<std::uint64_t, QueueState> states_;
    std::map<LayerId, std::size_t> leftLayers_; ///< by refused inserts, and at which step
    std::set<QString> leftPlaces_;              ///< of the cameras that these layers were on
    std::size_t step_ = 0;
    std::size_t openedAt_ = 0;
    QString opened_; ///< a copy of the scene that was opened then
    unsigned strokes_ = 0;
    bool isButtonDown_ = false;
    QPoint pointer_;
    std::vector<QString> cameras_;
};

} // namespace vellix
