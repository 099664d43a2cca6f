#pragma once

#include <maya/MPoint.h>
#include <maya/MStatus.h>

#include <lightbox/ArrayOf.h>

/// Array of points.
class MPointArray : private lightbox::ArrayOf<MPoint> {
    using Base = lightbox::ArrayOf<MPoint>;

public:
    MPointArray() = default;
    MPointArray(const MPoint src[], unsigned int count)
        : Base(src, count) {}
    explicit MPointArray(unsigned int initialSize, const MPoint& initialValue = MPoint())
        : Base(initialSize, initialValue) {}

    using Base::operator[];
    using Base::length;

    MStatus set(const MPoint& element, unsigned int index) {
        return Assign(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus setLength(unsigned int length) {
        values_.resize(length);
        return MS::kSuccess;
    }
    MStatus remove(unsigned int index) { return Remove(index) ? MS::kSuccess : MS::kFailure; }
    MStatus insert(const MPoint& element, unsigned int index) {
        return Insert(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus append(const MPoint& element) {
        values_.push_back(element);
        return MS::kSuccess;
    }
    MStatus copy(const MPointArray& source) {
        values_ = source.values_;
        return MS::kSuccess;
    }
    MStatus clear() {
        values_.clear();
        return MS::kSuccess;
    }
};

inline std::ostream& operator<<(std::ostream& os, const MPointArray& array) {
    return lightbox::WriteArray(os, array);
}
