#pragma once

#include "openmaya/DrawList.h"
#include "viewport/ViewOptions.h"

namespace lightbox {

class CameraView;
class DagNode;

/// What lies over the scene in a viewport and is no part of it: film gate, resolution gate with its mask,
/// field chart, safe areas, the camera's name.
class GateOverlay {
public:
    static DrawList Items(const DagNode& cameraShape, const CameraView& cameraView,
                          const ViewOptions& options);
};

} // namespace lightbox
