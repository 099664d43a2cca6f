#pragma once

#include <maya/MStatus.h>

#include <lightbox/ArrayOf.h>

/// Array of doubles.
class MDoubleArray : private lightbox::ArrayOf<double> {
    using Base = lightbox::ArrayOf<double>;

public:
    MDoubleArray() = default;
    MDoubleArray(const double src[], unsigned int count)
        : Base(src, count) {}
    explicit MDoubleArray(unsigned int initialSize, double initialValue = 0.0)
        : Base(initialSize, initialValue) {}

    using Base::operator[];
    using Base::length;

    MStatus set(double element, unsigned int index) {
        return Assign(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus setLength(unsigned int length) {
        values_.resize(length);
        return MS::kSuccess;
    }
    MStatus remove(unsigned int index) { return Remove(index) ? MS::kSuccess : MS::kFailure; }
    MStatus insert(double element, unsigned int index) {
        return Insert(element, index) ? MS::kSuccess : MS::kFailure;
    }
    MStatus append(double element) {
        values_.push_back(element);
        return MS::kSuccess;
    }
    MStatus copy(const MDoubleArray& source) {
        values_ = source.values_;
        return MS::kSuccess;
    }
    MStatus clear() {
        values_.clear();
        return MS::kSuccess;
    }
    /// Copies the values to the caller's array, which must hold length() of them.
    MStatus get(double array[]) const {
        for (unsigned int i = 0; i < length(); ++i) {
            array[i] = values_[i];
        }
        return MS::kSuccess;
    }
};

inline std::ostream& operator<<(std::ostream& os, const MDoubleArray& array) {
    return lightbox::WriteArray(os, array);
}
