#pragma once

#include "commands/ActiveLayers.h"
#include "commands/FlagTable.h"
#include "commands/FrameExchange.h"
#include "commands/FrameMove.h"
#include "commands/Retiming.h"

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

/// "qmVellixFrame": edits the keyed frames of the active layer of one camera, whose name is the command's
/// object; the active camera without one. Most operations take the frames in the highlighted range of the
/// time slider (the current frame when nothing is highlighted). What an operation found at its first run,
/// range, layer and frames, is what undo and redo work with.
class FrameCommand : public MPxCommand {
public:
    FrameCommand() = default;
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

    // What the first run finds out for Exchange.
    MStatus PlanInsert();
    MStatus PlanDuplicate();
    MStatus PlanPaste();
    /// The frames of the range go out; with `blanks` empty ones come in for them.
    void PlanRemoval(bool blanks);
    MStatus Exchange();
    MStatus ExchangeUndo();
    bool PrepareLayer();
    MStatus StepTo(const Frame* frame);

    /// The layer that the command edits, null for none: the active one at the first run.
    Layer* GetLayer() const;
    /// False, with the refusal logged, when the layer is locked.
    bool CheckUnlocked(const char* refusal) const;

    const Flag* flag_ = nullptr; ///< what is done
    bool undoable_ = false;
    bool hasRun_ = false;
    BaseNode* node_ = nullptr;
    QString camera_;
    int layerIndex_ = -1;

    bool layerCreated_ = false;
    std::unique_ptr<Layer> createdLayer_; ///< the layer that inserting made, while it is undone
    ActiveLayers before_;                 ///< what was active before that

    int amount_ = 0; ///< frames to retime or to move by
    int rangeStart_ = -1;
    int rangeEnd_ = -1;
    bool relative_ = false;
    bool moveToNext_ = false;
    FrameExchange exchange_;
    FrameMove move_;
    Retiming retiming_;
    std::vector<MTime> frameTimes_; ///< before retiming
    MTime previousTime_;            ///< the playback time before stepping or retiming
};

} // namespace vellix
