#pragma once

#include <maya/MMessage.h>
#include <maya/MStatus.h>

#include <lightbox/ArrayOf.h>

/// Ids of callbacks, in the order they were added.
class MCallbackIdArray : private lightbox::ArrayOf<MCallbackId> {
    using Base = lightbox::ArrayOf<MCallbackId>;

public:
    MCallbackIdArray() = default;
    MCallbackIdArray(const MCallbackId src[], unsigned int count)
        : Base(src, count) {}
    explicit MCallbackIdArray(unsigned int initialSize, MCallbackId initialValue = 0)
        : Base(initialSize, initialValue) {}

    using Base::operator[];
    using Base::length;

    MStatus set(MCallbackId element, unsigned int index) {
        return Assign(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus setLength(unsigned int length) {
        values_.resize(length);
        return MS::kSuccess;
    }
    MStatus remove(unsigned int index) { return Remove(index) ? MS::kSuccess : MS::kFailure; }
    MStatus insert(MCallbackId element, unsigned int index) {
        return Insert(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus append(MCallbackId element) {
        values_.push_back(element);
        return MS::kSuccess;
    }
    MStatus copy(const MCallbackIdArray& source) {
        values_ = source.values_;
        return MS::kSuccess;
    }
    MStatus clear() {
        values_.clear();
        return MS::kSuccess;
    }
};

inline std::ostream& operator<<(std::ostream& os, const MCallbackIdArray& array) {
    return lightbox::WriteArray(os, array);
}
