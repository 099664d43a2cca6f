#pragma once

#include <maya/MStatus.h>

namespace MHWRender {

class MPxDrawOverride;

/// Which draw override draws the nodes of a classification ("drawdb/geometry/...").
class MDrawRegistry {
public:
    using DrawOverrideCreator = MPxDrawOverride* (*)(const MObject& obj);

    /// Refused when a classification has an override already.
    static MStatus registerDrawOverrideCreator(const MString& drawClassification, const MString& registrantId,
                                               DrawOverrideCreator creator);
    /// Deletes the overrides that it has made. Refused unless both names are those of one registration.
    static MStatus deregisterDrawOverrideCreator(const MString& drawClassification,
                                                 const MString& registrantId);
};

} // namespace MHWRender
