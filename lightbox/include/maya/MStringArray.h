#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>

#include <lightbox/ArrayOf.h>

/// Array of strings.
class MStringArray : private lightbox::ArrayOf<MString> {
    using Base = lightbox::ArrayOf<MString>;

public:
    MStringArray() = default;
    MStringArray(const MString src[], unsigned int count)
        : Base(src, count) {}
    explicit MStringArray(unsigned int initialSize, const MString& initialValue = MString())
        : Base(initialSize, initialValue) {}

    using Base::operator[];
    using Base::length;

    MStatus set(const MString& element, unsigned int index) {
        return Assign(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus setLength(unsigned int length) {
        values_.resize(length);
        return MS::kSuccess;
    }
    MStatus remove(unsigned int index) { return Remove(index) ? MS::kSuccess : MS::kFailure; }
    MStatus insert(const MString& element, unsigned int index) {
        return Insert(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus append(const MString& element) {
        values_.push_back(element);
        return MS::kSuccess;
    }
    MStatus copy(const MStringArray& source) {
        values_ = source.values_;
        return MS::kSuccess;
    }
    MStatus clear() {
        values_.clear();
        return MS::kSuccess;
    }
};

inline std::ostream& operator<<(std::ostream& os, const MStringArray& array) {
    return lightbox::WriteArray(os, array);
}
