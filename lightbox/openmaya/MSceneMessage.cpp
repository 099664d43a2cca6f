#include <maya/MEventMessage.h>
#include <maya/MSceneMessage.h>
#include <maya/MString.h>

MCallbackId MSceneMessage::addCallback(Message, MBasicFunction func, void* clientData,
                                       MStatus* ReturnStatus) {
    return MEventMessage::addEventCallback("PreSceneSaved", func, clientData, ReturnStatus);
}
