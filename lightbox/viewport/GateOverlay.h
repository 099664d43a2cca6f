#pragma once

#include "openmaya/DrawList.h"
#include "viewport/ViewOptions.h"

namespace lightbox {

class CameraView;
class DagNode;

/// Makes the camera's overlay over the scene of a viewport: film gate, resolution gate, gate mask, field
/// chart, safe areas, and the camera's name.
class GateOverlay {
public:
    static DrawList Items(const DagNode& cameraShape, const CameraView& cameraView,
                          const ViewOptions& options);
};

} // namespace lightbox
