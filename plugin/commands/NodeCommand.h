#pragma once

#include "commands/NodeCreation.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>

#include <QString>

namespace vellix {

class BaseNode;

/// qmVellixNode: creates the drawing node, with a first layer on request, and answers questions about it.
/// Only a creation can be undone.
class NodeCommand : public MPxCommand {
public:
    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override;

private:
    MStatus ParseArguments(const MArgList& args);
    MStatus Query();
    MStatus CreateNode();
    void AddFirstLayer(BaseNode& node);
    void AddFrames(BaseNode& node, const QString& camera);
    void RefreshPanels(const BaseNode& node);

    NodeCreation m_creation;
    bool m_undoable = false;
    bool m_hasRun = false;
    bool m_edit = false;
    bool m_query = false;
    bool m_exists = false;
    bool m_refresh = false;
    bool m_refreshGhosting = false;
    bool m_layer = false;
    bool m_frame = false;
    bool m_queryCamera = false;
    QString m_layerName;
    QString m_camera;
    int m_layerState = -1; ///< negative when none was given
};

} // namespace vellix
