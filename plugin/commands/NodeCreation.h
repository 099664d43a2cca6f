#pragma once

#include <maya/MDagModifier.h>
#include <maya/MObject.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

namespace vellix {

/// Adds the drawing node to the scene, as the transform "vellix" with the shape "vellixShape", and removes it
/// again. The first run creates the nodes; a redo brings the same nodes back.
class NodeCreation {
public:
    /// Adds the nodes and clears the selection. Fails, and logs an error, if a node cannot be created.
    MStatus Do();
    /// Removes both nodes and restores the selection from before the first Do.
    void Undo();

private:
    MStatus Prepare();

    MDagModifier modifier_;
    MObject transform_;
    MSelectionList selection_;
    bool prepared_ = false;
};

} // namespace vellix
