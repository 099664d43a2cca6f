#include "openmaya/ApiBridge.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Node.h"

#include <maya/MDGMessage.h>

using lightbox::ApiBridge;
using lightbox::EventBus;
using lightbox::Host;

namespace {

MCallbackId Add(EventBus::NodeEvent event, MMessage::MNodeFunction func, const MString& nodeType,
                void* clientData, MStatus* status) {
    if (!func) {
        ApiBridge::Report(status, ApiBridge::Fail(MS::kInvalidParameter, "There is no function to call"));
        return 0;
    }
    ApiBridge::Report(status, MS::kSuccess);
    return Host::Get().events().AddNodeCallback(
        event, [func, type = ApiBridge::Text(nodeType), clientData](lightbox::Node& node) {
            if (type == kDefaultNodeType || node.Type().IsA(type)) {
                MObject object = ApiBridge::Wrap(node.Shared());
                func(object, clientData);
            }
        });
}

} // namespace

MCallbackId MDGMessage::addNodeAddedCallback(MNodeFunction func, const MString& nodeType, void* clientData,
                                             MStatus* ReturnStatus) {
    return Add(EventBus::NodeEvent::Added, func, nodeType, clientData, ReturnStatus);
}

MCallbackId MDGMessage::addNodeRemovedCallback(MNodeFunction func, const MString& nodeType, void* clientData,
                                               MStatus* ReturnStatus) {
    return Add(EventBus::NodeEvent::Removed, func, nodeType, clientData, ReturnStatus);
}
