#include "openmaya/Access.h"
#include "openmaya/DrawOverrides.h"

#include <maya/MDrawRegistry.h>

using lightbox::Access;
using lightbox::DrawOverrides;

namespace MHWRender {

MStatus MDrawRegistry::registerDrawOverrideCreator(const MString& drawClassification,
                                                   const MString& registrantId, DrawOverrideCreator creator) {
    return DrawOverrides::Get().Register(Access::Text(drawClassification), Access::Text(registrantId),
                                         creator)
               ? MStatus()
               : Access::Fail(MS::kFailure, "The classification has a draw override already");
}

MStatus MDrawRegistry::deregisterDrawOverrideCreator(const MString& drawClassification,
                                                     const MString& registrantId) {
    return DrawOverrides::Get().Deregister(Access::Text(drawClassification), Access::Text(registrantId))
               ? MStatus()
               : Access::Fail(MS::kFailure, "There is no such draw override");
}

} // namespace MHWRender
