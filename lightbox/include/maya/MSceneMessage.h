#pragma once

#include <maya/MMessage.h>

/// Callbacks around what happens to the scene as a whole.
class MSceneMessage : public MMessage {
public:
    enum Message {
        /// Before the scene is saved, also under another name. What a callback changes is saved too.
        kBeforeSave = 12,
    };

    /// Fails and returns 0 without a function.
    static MCallbackId addCallback(Message msg, MBasicFunction func, void* clientData = nullptr,
                                   MStatus* ReturnStatus = nullptr);
};
