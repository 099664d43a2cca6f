#pragma once

#include <maya/MStatus.h>

namespace MHWRender {

class MPxDrawOverride;

/// Registers the draw override for the nodes of a classification ("drawdb/geometry/...").
class MDrawRegistry {
public:
    using DrawOverrideCreator = MPxDrawOverride* (*)(const MObject& obj);

    /// Fails when the classification has an override already.
    static MStatus registerDrawOverrideCreator(const MString& drawClassification, const MString& registrantId,
                                               DrawOverrideCreator creator);
    /// Deletes the overrides that the creator has made. Fails unless both names belong to one registration.
    static MStatus deregisterDrawOverrideCreator(const MString& drawClassification,
                                                 const MString& registrantId);
};

} // namespace MHWRender
