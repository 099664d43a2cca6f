#pragma once

#include <maya/MMessage.h>

/// Callbacks around what happens to the scene as a whole.
class MSceneMessage : public MMessage {
public:
    enum Message {
        /// Before the scene is saved, also under another name. What a callback changes is saved too.
        kBeforeSave = 12,
        /// After the file of a reference that was there unloaded was read.
        kAfterLoadReference = 37,
        /// After a reference was made and its file read. A reference that is read while a scene opens has no
        /// message of its own.
        kAfterCreateReference = 45,
    };

    /// Fails and returns 0 without a function.
    static MCallbackId addCallback(Message msg, MBasicFunction func, void* clientData = nullptr,
                                   MStatus* ReturnStatus = nullptr);
};
