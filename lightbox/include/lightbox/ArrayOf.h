#pragma once

#include <ostream>
#include <vector>

namespace lightbox {

/// The operations common to all array classes of OpenMaya. operator[] does not check indices, as in
/// std::vector; insert() and remove() return false for an index out of range.
template <typename T>
class ArrayOf {
public:
    ArrayOf() = default;
    ArrayOf(const T source[], unsigned int count)
        : values_(source, source + count) {}
    explicit ArrayOf(unsigned int initialSize, const T& initialValue = T())
        : values_(initialSize, initialValue) {}

    const T& operator[](unsigned int index) const { return values_[index]; }
    T& operator[](unsigned int index) { return values_[index]; }
    unsigned int length() const { return static_cast<unsigned int>(values_.size()); }

protected:
    bool Assign(const T& value, unsigned int index) {
        if (index >= values_.size()) {
            return false;
        }
        values_[index] = value;
        return true;
    }
    bool Insert(const T& value, unsigned int index) {
        if (index > values_.size()) {
            return false;
        }
        values_.insert(values_.begin() + index, value);
        return true;
    }
    bool Remove(unsigned int index) {
        if (index >= values_.size()) {
            return false;
        }
        values_.erase(values_.begin() + index);
        return true;
    }

    std::vector<T> values_;
};

/// Writes the values between square brackets, separated by commas and blanks.
template <typename Array>
std::ostream& WriteArray(std::ostream& os, const Array& array) {
    os << '[';
    for (unsigned int i = 0; i < array.length(); ++i) {
        os << (i ? ", " : "") << array[i];
    }
    return os << ']';
}

} // namespace lightbox
