#include "openmaya/Access.h"
#include "scene/EventBus.h"
#include "scene/Host.h"

#include <maya/MEventMessage.h>
#include <maya/MStringArray.h>

using lightbox::Access;
using lightbox::Host;

MCallbackId MEventMessage::addEventCallback(const MString& event, MBasicFunction func, void* clientData,
                                            MStatus* ReturnStatus) {
    const MCallbackId id =
        func ? Host::Get().events().AddCallback(Access::Text(event), [func, clientData] { func(clientData); })
             : 0;
    Access::Report(ReturnStatus, id != 0
                                     ? MStatus(MS::kSuccess)
                                     : Access::Fail(MS::kInvalidParameter,
                                                    "There is no event of the name " + Access::Text(event)));
    return id;
}

MStatus MEventMessage::getEventNames(MStringArray& names) {
    names.clear();
    for (const std::string& name : Host::Get().events().EventNames()) {
        names.append(Access::Wrap(name));
    }
    return MS::kSuccess;
}
