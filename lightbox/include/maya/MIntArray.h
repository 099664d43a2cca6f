#pragma once

#include <maya/MStatus.h>

#include <lightbox/ArrayOf.h>

/// Array of integers.
class MIntArray : private lightbox::ArrayOf<int> {
    using Base = lightbox::ArrayOf<int>;

public:
    MIntArray() = default;
    MIntArray(const int src[], unsigned int count)
        : Base(src, count) {}
    explicit MIntArray(unsigned int initialSize, int initialValue = 0)
        : Base(initialSize, initialValue) {}

    using Base::operator[];
    using Base::length;

    MStatus set(int element, unsigned int index) {
        return Assign(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus setLength(unsigned int length) {
        values_.resize(length);
        return MS::kSuccess;
    }
    MStatus remove(unsigned int index) { return Remove(index) ? MS::kSuccess : MS::kFailure; }
    MStatus insert(int element, unsigned int index) {
        return Insert(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus append(int element) {
        values_.push_back(element);
        return MS::kSuccess;
    }
    MStatus copy(const MIntArray& source) {
        values_ = source.values_;
        return MS::kSuccess;
    }
    MStatus clear() {
        values_.clear();
        return MS::kSuccess;
    }
    /// Copies the values to the caller's array, which must hold length() of them.
    MStatus get(int array[]) const {
        for (unsigned int i = 0; i < length(); ++i) {
            array[i] = values_[i];
        }
        return MS::kSuccess;
    }
};

inline std::ostream& operator<<(std::ostream& os, const MIntArray& array) {
    return lightbox::WriteArray(os, array);
}
