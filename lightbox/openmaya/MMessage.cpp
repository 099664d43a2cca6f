#include "openmaya/ApiBridge.h"
#include "scene/EventBus.h"
#include "scene/Host.h"

#include <maya/MCallbackIdArray.h>
#include <maya/MMessage.h>

using lightbox::ApiBridge;
using lightbox::Host;

MStatus MMessage::removeCallback(MCallbackId id) {
    return Host::Get().events().Remove(id)
               ? MStatus(MS::kSuccess)
               : ApiBridge::Fail(MS::kFailure, "There is no callback with that id");
}

MStatus MMessage::removeCallbacks(MCallbackIdArray& ids) {
    MStatus status;
    for (unsigned int i = 0; i < ids.length(); ++i) {
        const MStatus removed = removeCallback(ids[i]);
        status = status ? removed : status;
    }
    return status;
}
