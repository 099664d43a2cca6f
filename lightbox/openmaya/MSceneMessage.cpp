#include <maya/MEventMessage.h>
#include <maya/MSceneMessage.h>
#include <maya/MString.h>

namespace {

const char* EventOf(MSceneMessage::Message message) {
    switch (message) {
    case MSceneMessage::kAfterLoadReference:
        return "_referenceLoaded";
    case MSceneMessage::kAfterCreateReference:
        return "_referenceCreated";
    case MSceneMessage::kBeforeSave:
        break;
    }
    return "PreSceneSaved";
}

} // namespace

MCallbackId MSceneMessage::addCallback(Message msg, MBasicFunction func, void* clientData,
                                       MStatus* ReturnStatus) {
    return MEventMessage::addEventCallback(EventOf(msg), func, clientData, ReturnStatus);
}
