#pragma once

#include <maya/MStatus.h>

#include <cstdint>

class MCallbackIdArray;
class MObject;
class MString;

/// Id of a callback; 0 for none.
using MCallbackId = std::intptr_t;

/// Base of the message classes.
class MMessage {
public:
    using MBasicFunction = void (*)(void* clientData);
    using MNodeFunction = void (*)(MObject& node, void* clientData);
    using MNodeStringFunction = void (*)(MObject& node, const MString& str, void* clientData);

    /// Fails for an id that is not registered. A callback may be removed while it runs.
    static MStatus removeCallback(MCallbackId id);
    /// Removes all callbacks; fails if one of them was not registered.
    static MStatus removeCallbacks(MCallbackIdArray& ids);
};
