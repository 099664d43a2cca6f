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
class StrokeRecording;

/// "qmVellixReplay -file F [-camera C] [-frameOffset N]": draws a recording of pen strokes as if they were
/// drawn by hand, on the active layer of the camera (the active camera unless one is named), each at its own
/// frame. Draws all of them or none. The result is the number of strokes. A scene without a drawing node gets
/// one, as when the draw tool is taken up.
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
    bool UndoAll();

    bool hasFile_ = false;
    QString file_;
    QString camera_;
    ActiveLayers before_;
    int frameOffset_ = 0;
    bool undoable_ = false;
    std::unique_ptr<NodeCreation> node_;               // null when the scene had one
    std::vector<std::unique_ptr<StrokeCommit>> drawn_; // one for each frame that was drawn on
};

} // namespace vellix
