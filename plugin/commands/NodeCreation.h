#pragma once

#include <maya/MDagModifier.h>
#include <maya/MObject.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

namespace vellix {

/// Puts the drawing node into the scene: the transform "vellix" with the shape "vellixShape", and the way
/// back. The first run makes the nodes, later ones bring the same nodes back.
class NodeCreation {
public:
    /// Fails, with an error logged, when a node cannot be made. Clears the selection.
    MStatus Do();
    /// Takes both nodes out of the scene and selects what was selected before.
    void Undo();

private:
    MStatus Prepare();

    MDagModifier modifier_;
    MObject transform_;
    MSelectionList selection_;
    bool prepared_ = false;
};

} // namespace vellix
