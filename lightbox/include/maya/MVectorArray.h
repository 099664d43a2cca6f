#pragma once

#include <maya/MStatus.h>
#include <maya/MVector.h>

#include <lightbox/ArrayOf.h>

/// Array of vectors.
class MVectorArray : private lightbox::ArrayOf<MVector> {
    using Base = lightbox::ArrayOf<MVector>;

public:
    MVectorArray() = default;
    MVectorArray(const MVector src[], unsigned int count)
        : Base(src, count) {}
    explicit MVectorArray(unsigned int initialSize, const MVector& initialValue = MVector())
        : Base(initialSize, initialValue) {}

    using Base::operator[];
    using Base::length;

    MStatus set(const MVector& element, unsigned int index) {
        return Assign(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus setLength(unsigned int length) {
        values_.resize(length);
        return MS::kSuccess;
    }
    MStatus remove(unsigned int index) { return Remove(index) ? MS::kSuccess : MS::kFailure; }
    MStatus insert(const MVector& element, unsigned int index) {
        return Insert(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus append(const MVector& element) {
        values_.push_back(element);
        return MS::kSuccess;
    }
    MStatus copy(const MVectorArray& source) {
        values_ = source.values_;
        return MS::kSuccess;
    }
    MStatus clear() {
        values_.clear();
        return MS::kSuccess;
    }
};

inline std::ostream& operator<<(std::ostream& os, const MVectorArray& array) {
    return lightbox::WriteArray(os, array);
}
