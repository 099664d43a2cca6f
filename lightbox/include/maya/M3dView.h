#pragma once

#include <maya/MStatus.h>

class MDagPath;

/// A viewport. In batch there is none, and every operation fails.
class M3dView {
public:
    static M3dView active3dView(MStatus* ReturnStatus = nullptr);
    static unsigned int numberOf3dViews();

    MStatus getCamera(MDagPath& camera);
    MStatus refresh(bool all = false, bool force = false);
};
