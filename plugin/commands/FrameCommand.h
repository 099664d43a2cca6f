#pragma once

#include "commands/ActiveLayers.h"
#include "commands/FlagTable.h"
#include "commands/FrameExchange.h"
#include "commands/FrameSchedule.h"
#include "commands/Retiming.h"
#include "core/Identity.h"
#include "core/LayerSpot.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

#include <QString>

#include <memory>
#include <vector>

namespace vellix {

class BaseNode;
class Frame;

/// "qmVellixFrame": edits the keyed frames of one camera's active layer. The camera is the command's object;
/// by default the active camera. Most operations apply to the highlighted range of the time slider (the
/// current frame if nothing is highlighted). Undo and redo act on the very layer and frames of the first run.
/// If one is gone they log an error and change nothing.
class FrameCommand : public MPxCommand {
public:
    FrameCommand();
    ~FrameCommand() override;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return undoable_; }

private:
    using Flag = FlagRow<FrameCommand>;

    static const FlagTable<FrameCommand>& Flags();
    MStatus Parse(const MArgList& args);

    MStatus InsertFrame();
    MStatus InsertFrameUndo();
    MStatus DuplicateFrame();
    MStatus DuplicateFrameUndo();
    MStatus DeleteFrames();
    MStatus CutFrames();
    MStatus CopyFrames();
    MStatus PasteFrames();
    MStatus ClearFrames();
    MStatus StepForward();
    MStatus StepBack();
    MStatus StepUndo();
    MStatus RetimeFrames();
    MStatus RetimeFramesUndo();
    MStatus MoveFrames();
    MStatus MoveFramesUndo();

    MStatus Run(const Flag::Step& step);
    // Each plans, at the first run, what is then done and undone.
    MStatus PlanInsert();
    MStatus PlanDuplicate();
    MStatus PlanPaste();
    /// Removes the frames of the range; with `blanks`, empty frames replace them.
    void PlanRemoval(bool blanks);
    MStatus PlanRetiming();
    MStatus Exchange();
    MStatus ExchangeUndo();
    MStatus Exchange(bool (FrameExchange::*step)(Layer& layer, QString& refusal));
    MStatus Reschedule(bool (FrameSchedule::*step)(Layer& layer, QString& refusal) const);
    bool CreateLayer();
    MStatus StepTo(const Frame* frame);
    void TakeOutCreatedLayer();
    MStatus PutBackCreatedLayer();
    void RefreshHostTicks() const;
    static void FollowTo(const MTime& time);

    /// The layer that was active at the first run, which the command edits; borrowed, null for none.
    Layer* GetLayer() const;
    /// Logs why the step cannot be done, and fails.
    MStatus Refuse(const QString& reason) const;
    /// Returns false, and logs an error, if the layer of the first run is gone.
    bool CheckLayerExists() const;
    /// Returns false, and logs `refusal`, if the layer is locked.
    bool CheckUnlocked(const char* refusal) const;
    bool CheckNotOfStroke() const;

    const Flag* flag_ = nullptr; ///< the flag whose action runs; null for none
    bool undoable_ = false;
    bool hasRun_ = false; ///< the first run has chosen the layer and the frames
    bool isDone_ = false; ///< and they are as it left them
    BaseNode* node_ = nullptr;
    QString camera_;
    LayerId layer_ = LayerId::None;

    bool layerCreated_ = false;
    std::unique_ptr<Layer> createdLayer_; ///< the layer that inserting added, while it is undone
    LayerSpot createdSpot_;               ///< and its place
    ActiveLayers before_;                 ///< the active layers before that

    int amount_ = 0; ///< frames to retime or move by
    int rangeStart_ = -1;
    int rangeEnd_ = -1;
    bool relative_ = false;
    bool moveToNext_ = false;
    FrameExchange exchange_;
    FrameSchedule schedule_;
    FrameId duplicate_ = FrameId::None;
    MTime previousTime_; ///< the playback time before stepping or retiming
    MTime targetTime_;   ///< and after it
};

} // namespace vellix
