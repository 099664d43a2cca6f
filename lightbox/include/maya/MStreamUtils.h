#pragma once

#include <maya/MStatus.h>

#include <iosfwd>

/// Reads and writes the values that a plug-in keeps in a scene: as bytes in the order of this machine, or as
/// text, numbers between blanks. The functions fail at the end of the stream and when the stream does.
class MStreamUtils {
public:
    /// Standard output and standard error.
    static std::ostream& stdOutStream();
    static std::ostream& stdErrorStream();

    static MStatus readChar(std::istream& in, char& value, bool binary = false);
    /// Reads `length` characters, as they are, into the caller's array, which has to hold as many.
    static MStatus readCharBuffer(std::istream& in, char*& value, unsigned int length, bool binary = false);
    static MStatus readInt(std::istream& in, int& value, bool binary = false);
    static MStatus readFloat(std::istream& in, float& value, bool binary = false);
    static MStatus readDouble(std::istream& in, double& value, bool binary = false);

    static MStatus writeChar(std::ostream& out, const char value, bool binary = false);
    /// Writes a text without the zero at its end.
    static MStatus writeCharBuffer(std::ostream& out, const char* value, bool binary = false);
    static MStatus writeInt(std::ostream& out, const int value, bool binary = false);
    static MStatus writeFloat(std::ostream& out, const float value, bool binary = false);
    static MStatus writeDouble(std::ostream& out, const double value, bool binary = false);
};
