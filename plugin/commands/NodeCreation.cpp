#include "commands/NodeCreation.h"

#include "host/Logger.h"
#include "node/BaseNode.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

namespace vellix {

MStatus NodeCreation::Prepare() {
    MGlobal::getActiveSelectionList(selection_);
    MStatus status;
    transform_ = modifier_.createNode("transform", MObject::kNullObj, &status);
    if (!status || !modifier_.renameNode(transform_, "vellix")) {
        Logger::Error("Failed to create transform");
        return MS::kFailure;
    }
    const MObject shape = modifier_.createNode(BaseNode::GetTypeID(), transform_, &status);
    if (!status || !modifier_.renameNode(shape, "vellixShape")) {
        Logger::Error("Failed to create shape");
        return MS::kFailure;
    }
    prepared_ = true;
    return MS::kSuccess;
}

MStatus NodeCreation::Do() {
    if (!prepared_) {
        MStatus status = Prepare();
        if (!status) {
            return status;
        }
    }
    try {
        MStatus status = modifier_.doIt();
        if (!status) {
            return status;
        }
        for (const char* channel : {"translate", "rotate", "scale"}) {
            for (const char* axis : {"X", "Y", "Z"}) {
                BaseNode::LockAndHideAttribute(transform_, MString(channel) + axis);
            }
        }
        if (!BaseNode::GetMaster()) { // it was too short of memory to get a drawing
            Undo();
            return MS::kFailure;
        }
        return MGlobal::clearSelectionList();
    } catch (...) {
        Undo();
        throw;
    }
}

void NodeCreation::Undo() {
    modifier_.undoIt();
    MGlobal::setActiveSelectionList(selection_);
}

} // namespace vellix
