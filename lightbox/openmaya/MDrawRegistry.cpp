#include "openmaya/ApiBridge.h"
#include "openmaya/DrawOverrides.h"

#include <maya/MDrawRegistry.h>

using lightbox::ApiBridge;
using lightbox::DrawOverrides;

namespace MHWRender {

MStatus MDrawRegistry::registerDrawOverrideCreator(const MString& drawClassification,
                                                   const MString& registrantId, DrawOverrideCreator creator) {
    return DrawOverrides::Get().Register(ApiBridge::Text(drawClassification), ApiBridge::Text(registrantId),
                                         creator)
               ? MStatus()
               : ApiBridge::Fail(MS::kFailure, "The classification has a draw override already");
}

MStatus MDrawRegistry::deregisterDrawOverrideCreator(const MString& drawClassification,
                                                     const MString& registrantId) {
    return DrawOverrides::Get().Deregister(ApiBridge::Text(drawClassification), ApiBridge::Text(registrantId))
               ? MStatus()
               : ApiBridge::Fail(MS::kFailure, "There is no such draw override");
}

} // namespace MHWRender
