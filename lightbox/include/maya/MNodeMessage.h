#pragma once

#include <maya/MMessage.h>

class MObject;
class MString;

/// Callbacks for changes of single nodes.
class MNodeMessage : public MMessage {
public:
    /// Calls the function after each change of the node's name, also by undo, redo, namespaces and moves in
    /// the DAG, with the name from before. A null object stands for every node in the scene. Registering
    /// fails and returns 0 without a function or for an object that is not a node.
    static MCallbackId addNameChangedCallback(MObject& node, MNodeStringFunction func,
                                              void* clientData = nullptr, MStatus* ReturnStatus = nullptr);
};
