#include "openmaya/ApiBridge.h"
#include "scene/EventBus.h"
#include "scene/Host.h"

#include <maya/MEventMessage.h>
#include <maya/MStringArray.h>

using lightbox::ApiBridge;
using lightbox::Host;

MCallbackId MEventMessage::addEventCallback(const MString& event, MBasicFunction func, void* clientData,
                                            MStatus* ReturnStatus) {
    const MCallbackId id = func ? Host::Get().events().AddCallback(ApiBridge::Text(event),
                                                                   [func, clientData] { func(clientData); })
                                : 0;
    ApiBridge::Report(ReturnStatus, id != 0
                                        ? MStatus(MS::kSuccess)
                                        : ApiBridge::Fail(MS::kInvalidParameter, "There is no event named " +
                                                                                     ApiBridge::Text(event)));
    return id;
}

MStatus MEventMessage::getEventNames(MStringArray& names) {
    names.clear();
    for (const std::string& name : Host::Get().events().EventNames()) {
        names.append(ApiBridge::Wrap(name));
    }
    return MS::kSuccess;
}
