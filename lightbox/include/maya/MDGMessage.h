#pragma once

#include <maya/MMessage.h>
#include <maya/MString.h>

class MObject;

/// The type that all nodes derive from.
#define kDefaultNodeType "dependNode"

/// Callbacks for the coming and going of nodes. Only nodes of the type, or of one that derives from it, are
/// told of; undo and redo bring and take nodes too. A node that is removed is still in the scene while its
/// callback runs. Both fail, and return 0, without a function.
class MDGMessage : public MMessage {
public:
    static MCallbackId addNodeAddedCallback(MNodeFunction func, const MString& nodeType = kDefaultNodeType,
                                            void* clientData = nullptr, MStatus* ReturnStatus = nullptr);
    static MCallbackId addNodeRemovedCallback(MNodeFunction func, const MString& nodeType = kDefaultNodeType,
                                              void* clientData = nullptr, MStatus* ReturnStatus = nullptr);
};
