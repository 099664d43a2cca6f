#include <maya/MStreamUtils.h>

#include <cstring>
#include <iostream>
#include <limits>

namespace {

MStatus StateOf(const std::ios& stream) {
    return stream.fail() ? MS::kFailure : MS::kSuccess;
}

/// Leaves the value as it is when the stream fails.
template <class T>
MStatus ReadFrom(std::istream& in, T& value, bool binary) {
    T read = T();
    if (binary) {
        char bytes[sizeof(T)] = {};
        in.read(bytes, sizeof bytes);
        std::memcpy(&read, bytes, sizeof bytes);
    } else {
        in >> read;
    }
    if (!in.fail()) {
        value = read;
    }
    return StateOf(in);
}

template <class T>
MStatus WriteTo(std::ostream& out, T value, bool binary) {
    if (binary) {
        char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof bytes);
        out.write(bytes, sizeof bytes);
    } else {
        const auto digits = out.precision(std::numeric_limits<T>::max_digits10);
        out << value << ' ';
        out.precision(digits);
    }
    return StateOf(out);
}

} // namespace

std::ostream& MStreamUtils::stdOutStream() {
    return std::cout;
}

std::ostream& MStreamUtils::stdErrorStream() {
    return std::cerr;
}

MStatus MStreamUtils::readChar(std::istream& in, char& value, bool /*binary*/) {
    char read = 0;
    if (in.get(read)) {
        value = read;
    }
    return StateOf(in);
}

MStatus MStreamUtils::readCharBuffer(std::istream& in, char*& value, unsigned int length, bool /*binary*/) {
    if (!value) {
        return MS::kInvalidParameter;
    }
    in.read(value, length);
    return StateOf(in);
}

MStatus MStreamUtils::readInt(std::istream& in, int& value, bool binary) {
    return ReadFrom(in, value, binary);
}

MStatus MStreamUtils::readFloat(std::istream& in, float& value, bool binary) {
    return ReadFrom(in, value, binary);
}

MStatus MStreamUtils::readDouble(std::istream& in, double& value, bool binary) {
    return ReadFrom(in, value, binary);
}

MStatus MStreamUtils::writeChar(std::ostream& out, const char value, bool /*binary*/) {
    out.put(value);
    return StateOf(out);
}

MStatus MStreamUtils::writeCharBuffer(std::ostream& out, const char* value, bool /*binary*/) {
    if (!value) {
        return MS::kInvalidParameter;
    }
    out << value;
    return StateOf(out);
}

MStatus MStreamUtils::writeInt(std::ostream& out, const int value, bool binary) {
    return WriteTo(out, value, binary);
}

MStatus MStreamUtils::writeFloat(std::ostream& out, const float value, bool binary) {
    return WriteTo(out, value, binary);
}

MStatus MStreamUtils::writeDouble(std::ostream& out, const double value, bool binary) {
    return WriteTo(out, value, binary);
}
