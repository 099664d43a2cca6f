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
    bool isUndoable() const override { return m_undoable; }

private:
    using Flag = FlagRow<NodeCommand>;

    static const FlagTable<NodeCommand>& Flags();
    MStatus AnswerExists();
    MStatus Refresh();
    MStatus RefreshGhosting();
    MStatus AnswerCamera();
    void AddFirstLayer(BaseNode& node);
    void AddFrames(BaseNode& node, const QString& camera);
    void RefreshPanels(const BaseNode& node);

    NodeCreation m_creation;
    bool m_undoable = false;
    bool m_hasRun = false;
    bool m_layer = false;
    bool m_frame = false;
    QString m_layerName;
    QString m_camera;
    int m_layerState = -1; ///< negative when none was given
};

} // namespace vellix
