#pragma once

#include <maya/MStatus.h>

#include <iosfwd>
#include <string>

/// Text in UTF-8. Lengths and positions count bytes.
class MString {
public:
    MString() = default;
    MString(const char* charString);
    MString(const char* charString, int charLength);

    MString& operator=(const char* other);
    MString& operator=(double value);

    MString& operator+=(const MString& other);
    MString& operator+=(const char* other);
    MString& operator+=(char other);
    MString& operator+=(int other);
    MString& operator+=(unsigned int other);
    MString& operator+=(float other);
    MString& operator+=(double other);

    MString operator+(const MString& other) const;
    MString operator+(const char* other) const;
    MString operator+(int value) const;
    MString operator+(unsigned int value) const;
    MString operator+(float value) const;
    MString operator+(double value) const;

    bool operator==(const MString& other) const { return text_ == other.text_; }
    bool operator==(const char* other) const;
    bool operator!=(const MString& other) const { return text_ != other.text_; }
    bool operator!=(const char* other) const { return !(*this == other); }

    const char* asChar() const { return text_.c_str(); }
    const char* asChar(int& strLength) const;
    const char* asUTF8() const { return text_.c_str(); }
    const char* asUTF8(int& strLength) const { return asChar(strLength); }
    MStatus setUTF8(const char* utf8String);
    MStatus set(const char* charString);
    MStatus set(const char* charString, int charLength);
    MStatus set(double value);
    /// precision is the number of digits after the point.
    MStatus set(double value, int precision);

    unsigned int length() const { return static_cast<unsigned int>(text_.size()); }
    /// Number of characters; length() is the number of bytes.
    unsigned int numChars() const;
    void clear() { text_.clear(); }
    /// The bytes from start to end, both inclusive; empty when they lie outside.
    MString substring(int start, int end) const;
    /// Position of the first, or the last, occurrence; -1 when there is none.
    int index(char c) const;
    int rindex(char c) const;
    /// Splits at every run of the separator; no part is empty.
    MStatus split(char c, MStringArray& result) const;
    MString& toUpperCase();
    MString& toLowerCase();

    bool isInt() const;
    int asInt() const;
    bool isUnsigned() const;
    unsigned int asUnsigned() const;
    bool isFloat() const;
    float asFloat() const;
    bool isDouble() const;
    double asDouble() const;

private:
    friend class lightbox::ApiBridge;
    std::string text_;
};

MString operator+(const char* stringA, const MString& stringB);
bool operator==(const char* stringA, const MString& stringB);
std::ostream& operator<<(std::ostream& os, const MString& string);
