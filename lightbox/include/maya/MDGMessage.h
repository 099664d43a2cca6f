#pragma once

#include <maya/MMessage.h>
#include <maya/MString.h>

class MObject;

/// The type that all nodes derive from.
#define kDefaultNodeType "dependNode"

/// Callbacks for added and removed nodes of a type and its derived types. Undo and redo add and remove nodes
/// too. A removed node is still in the scene while its callback runs. Registering fails and returns 0 without
/// a function.
class MDGMessage : public MMessage {
public:
    static MCallbackId addNodeAddedCallback(MNodeFunction func, const MString& nodeType = kDefaultNodeType,
                                            void* clientData = nullptr, MStatus* ReturnStatus = nullptr);
    static MCallbackId addNodeRemovedCallback(MNodeFunction func, const MString& nodeType = kDefaultNodeType,
                                              void* clientData = nullptr, MStatus* ReturnStatus = nullptr);
};
