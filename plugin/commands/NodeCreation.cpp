#include "commands/NodeCreation.h"

#include "host/Logger.h"
#include "node/BaseNode.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

namespace vellix {

MStatus NodeCreation::Prepare() {
    MGlobal::getActiveSelectionList(m_selection);
    MStatus status;
    m_transform = m_modifier.createNode("transform", MObject::kNullObj, &status);
    if (!status || !m_modifier.renameNode(m_transform, "vellix")) {
        Logger::Error("Failed to create transform");
        return MS::kFailure;
    }
    const MObject shape = m_modifier.createNode(BaseNode::GetTypeID(), m_transform, &status);
    if (!status || !m_modifier.renameNode(shape, "vellixShape")) {
        Logger::Error("Failed to create shape");
        return MS::kFailure;
    }
    m_prepared = true;
    return MS::kSuccess;
}

MStatus NodeCreation::Do() {
    if (!m_prepared) {
        MStatus status = Prepare();
        if (!status) {
            return status;
        }
    }
    MStatus status = m_modifier.doIt();
    if (!status) {
        return status;
    }
    for (const char* channel : {"translate", "rotate", "scale"}) {
        for (const char* axis : {"X", "Y", "Z"}) {
            BaseNode::LockAndHideAttribute(m_transform, MString(channel) + axis);
        }
    }
    return MGlobal::clearSelectionList();
}

void NodeCreation::Undo() {
    m_modifier.undoIt();
    MGlobal::setActiveSelectionList(m_selection);
}

} // namespace vellix
