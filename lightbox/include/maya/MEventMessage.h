#pragma once

#include <maya/MMessage.h>
#include <maya/MString.h>

/// Callbacks for the host's named events.
class MEventMessage : public MMessage {
public:
    /// Fails and returns 0 for an unknown event.
    static MCallbackId addEventCallback(const MString& event, MBasicFunction func, void* clientData = nullptr,
                                        MStatus* ReturnStatus = nullptr);
    static MStatus getEventNames(MStringArray& names);
};
