#include "openmaya/ApiBridge.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Node.h"

#include <maya/MNodeMessage.h>
#include <maya/MObjectHandle.h>

using lightbox::ApiBridge;
using lightbox::Host;

MCallbackId MNodeMessage::addNameChangedCallback(MObject& node, MNodeStringFunction func, void* clientData,
                                                 MStatus* ReturnStatus) {
    const bool isAll = node.isNull();
    if (!func || (!isAll && !ApiBridge::GetNode(node))) {
        const char* const fault = func ? "The object is not a node" : "There is no function to call";
        ApiBridge::Report(ReturnStatus, ApiBridge::Fail(MS::kInvalidParameter, fault));
        return 0;
    }
    ApiBridge::Report(ReturnStatus, MS::kSuccess);
    return Host::Get().events().AddRenameCallback([func, isAll, watched = MObjectHandle(node), clientData](
                                                      lightbox::Node& renamed, const std::string& before) {
        MObject object = ApiBridge::Wrap(renamed.Shared());
        if (isAll || watched == object) {
            func(object, ApiBridge::Wrap(before), clientData);
        }
    });
}
