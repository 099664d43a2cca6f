#pragma once

#include "commands/FlagTable.h"
#include "commands/NodeCreation.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <QString>

namespace vellix {

class BaseNode;

/// "qmVellixNode": creates the drawing node, with a first layer on request, and answers queries about it.
/// Only a creation can be undone.
class NodeCommand : public MPxCommand {
public:
    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return undoable_; }

private:
    using Flag = FlagRow<NodeCommand>;

    static const FlagTable<NodeCommand>& Flags();
    MStatus Create();
    MStatus AnswerExists();
    MStatus Refresh();
    MStatus RefreshGhosting();
    MStatus AnswerCamera();
    void AddFirstLayer(BaseNode& node);
    void AddFrames(BaseNode& node, const QString& camera);

    NodeCreation creation_;
    bool undoable_ = false;
    bool hasRun_ = false;
    bool isDone_ = false;
    bool layer_ = false;
    bool frame_ = false;
    QString layerName_;
    QString camera_;
    int layerState_ = -1; ///< negative when none was given
};

} // namespace vellix
