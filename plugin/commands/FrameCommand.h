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

/// "qmVellixFrame": edits the keyed frames of one camera's active layer. The camera is the command's object;
/// by default the active camera. Most operations apply to the highlighted range of the time slider (the
/// current frame if nothing is highlighted). Undo and redo reuse the range, layer and frames that the first
/// run found.
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
    bool isUndoable() const override { return m_undoable; }

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

    // Each plans, at the first run, what Exchange then does.
    MStatus PlanInsert();
    MStatus PlanDuplicate();
    MStatus PlanPaste();
    /// Removes the frames of the range; with `blanks`, empty frames replace them.
    void PlanRemoval(bool blanks);
    MStatus Exchange();
    MStatus ExchangeUndo();
    bool PrepareLayer();
    MStatus StepTo(const Frame* frame);

    /// The layer that was active at the first run, which the command edits; borrowed, null for none.
    Layer* GetLayer() const;
    /// Returns false, and logs `refusal`, if the layer is locked.
    bool CheckUnlocked(const char* refusal) const;

    const Flag* m_flag = nullptr; ///< the flag whose action runs; null for none
    bool m_undoable = false;
    bool m_hasRun = false;
    BaseNode* m_node = nullptr;
    QString m_camera;
    int m_layerIndex = -1;

    bool m_layerCreated = false;
    std::unique_ptr<Layer> m_createdLayer; ///< the layer that inserting added, while it is undone
    ActiveLayers m_before;                 ///< the active layers before that

    int m_amount = 0; ///< frames to retime or move by
    int m_rangeStart = -1;
    int m_rangeEnd = -1;
    bool m_relative = false;
    bool m_moveToNext = false;
    FrameExchange m_exchange;
    FrameMove m_move;
    Retiming m_retiming;
    std::vector<MTime> m_frameTimes; ///< before retiming
    MTime m_previousTime;            ///< the playback time before stepping or retiming
};

} // namespace vellix
