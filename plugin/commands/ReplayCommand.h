#pragma once

#include "commands/ActiveLayers.h"
#include "commands/FlagTable.h"
#include "commands/StrokeCommit.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <QString>

#include <memory>
#include <vector>

namespace vellix {

class NodeCreation;
class StrokePlayer;
class StrokeRecording;
struct RecordedStroke;

/// "qmVellixReplay -file F [-camera C] [-frameOffset N]": draws a recording of pen strokes as the draw tool
/// would, on the active layer of the camera (by default the active camera), each stroke at its own frame.
/// Draws all of them or none. The result is the number of strokes. Creates a drawing node if the scene has
/// none, as activating the draw tool does.
class ReplayCommand : public MPxCommand {
public:
    ReplayCommand();
    ~ReplayCommand() override;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return undoable_; }

private:
    static const FlagTable<ReplayCommand>& Flags();
    bool ReadArguments(const MArgList& args);
    bool ReadRecording(StrokeRecording& recording) const;
    bool ProvideNode();
    bool DrawAll(const StrokeRecording& recording);
    bool Draw(StrokePlayer& player, const RecordedStroke& recorded, int time);
    void TakeBack();
    void UndoNode();
    bool UndoStrokes();
    bool RedoStrokes();

    bool hasFile_ = false;
    QString file_;
    QString camera_;
    ActiveLayers before_;
    int frameOffset_ = 0;
    bool undoable_ = false;
    bool isDone_ = false;
    std::unique_ptr<NodeCreation> node_;               // null if the scene already had one
    std::vector<std::unique_ptr<StrokeCommit>> drawn_; // one for each frame that was drawn on, in order
};

} // namespace vellix
