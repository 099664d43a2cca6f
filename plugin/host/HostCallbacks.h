#pragma once

#include "paint/NonCopyable.h"

#include <maya/MMessage.h>
#include <maya/MStatus.h>

#include <vector>

namespace vellix {

/// Callbacks that the host calls while this exists. Not for static objects, which may outlive the host.
class HostCallbacks : private NonCopyable {
public:
    ~HostCallbacks() { Clear(); }

    /// Keeps the callback that `add(MStatus*)` adds and whose id it returns. Returns the status. Makes room
    /// first: a callback whose id found no room could never be removed.
    template <typename AddCallback>
    MStatus Add(AddCallback add) {
        ids_.reserve(ids_.size() + 1);
        MStatus status;
        const MCallbackId id = add(&status);
        if (status) {
            ids_.push_back(id);
        }
        return status;
    }
    /// Removes them all. Returns why the last that could not be removed was not.
    MStatus Clear() {
        MStatus result;
        for (const MCallbackId id : ids_) {
            const MStatus status = MMessage::removeCallback(id);
            result = status ? result : status;
        }
        ids_.clear();
        return result;
    }

private:
    std::vector<MCallbackId> ids_;
};

} // namespace vellix
