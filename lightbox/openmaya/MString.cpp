#include "scene/TimeUnits.h"
#include "text/NumberText.h"

#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <ostream>

using lightbox::DecimalText;

namespace {

/// Reads a text that is one number; returns false for any other text.
bool ReadWhole(const std::string& text, double& number) {
    // Not strtod(), whose decimal point depends on the locale.
    const std::size_t begin = std::min(text.find_first_not_of(" \t\n"), text.size());
    const bool isSigned = begin + 1 < text.size() && text[begin] == '+' && text[begin + 1] != '-';
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data() + begin + isSigned, end, number);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(number);
}

/// The shortest digits that identify a float, fewer than those of the same double.
std::string FloatText(float value) {
    char buffer[40];
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof(buffer), value).ptr);
}

bool ReadInteger(const std::string& text, long long least, long long most, long long& number) {
    char* end = nullptr;
    errno = 0;
    number = std::strtoll(text.c_str(), &end, 10);
    return !text.empty() && end == text.c_str() + text.size() && errno == 0 && number >= least &&
           number <= most;
}

} // namespace

MString::MString(const char* charString)
    : text_(charString ? charString : "") {}

MString::MString(const char* charString, int charLength)
    : text_(charString ? std::string(charString, static_cast<std::size_t>(std::max(charLength, 0)))
                       : std::string()) {}

MString& MString::operator=(const char* other) {
    text_ = other ? other : "";
    return *this;
}

MString& MString::operator=(double value) {
    text_ = DecimalText(value);
    return *this;
}

MString& MString::operator+=(const MString& other) {
    text_ += other.text_;
    return *this;
}

MString& MString::operator+=(const char* other) {
    text_ += other ? other : "";
    return *this;
}

MString& MString::operator+=(char other) {
    text_ += other;
    return *this;
}

MString& MString::operator+=(int other) {
    text_ += std::to_string(other);
    return *this;
}

MString& MString::operator+=(unsigned int other) {
    text_ += std::to_string(other);
    return *this;
}

MString& MString::operator+=(float other) {
    text_ += FloatText(other);
    return *this;
}

MString& MString::operator+=(double other) {
    text_ += DecimalText(other);
    return *this;
}

MString MString::operator+(const MString& other) const {
    return MString(*this) += other;
}
MString MString::operator+(const char* other) const {
    return MString(*this) += other;
}
MString MString::operator+(int value) const {
    return MString(*this) += value;
}
MString MString::operator+(unsigned int value) const {
    return MString(*this) += value;
}
MString MString::operator+(float value) const {
    return MString(*this) += value;
}
MString MString::operator+(double value) const {
    return MString(*this) += value;
}

bool MString::operator==(const char* other) const {
    return text_ == (other ? other : "");
}

const char* MString::asChar(int& strLength) const {
    strLength = static_cast<int>(text_.size());
    return text_.c_str();
}

MStatus MString::setUTF8(const char* utf8String) {
    return set(utf8String);
}

MStatus MString::set(const char* charString) {
    *this = charString;
    return charString ? MS::kSuccess : MS::kInvalidParameter;
}

MStatus MString::set(const char* charString, int charLength) {
    *this = MString(charString, charLength);
    return charString ? MS::kSuccess : MS::kInvalidParameter;
}

MStatus MString::set(double value) {
    *this = value;
    return MS::kSuccess;
}

MStatus MString::set(double value, int precision) {
    char buffer[512];
    const std::to_chars_result result = std::to_chars(
        buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, std::clamp(precision, 0, 100));
    text_.assign(buffer, result.ptr);
    return MS::kSuccess;
}

unsigned int MString::numChars() const {
    return static_cast<unsigned int>(
        std::count_if(text_.begin(), text_.end(), [](unsigned char byte) { return (byte & 0xc0) != 0x80; }));
}

MString MString::substring(int start, int end) const {
    const int last = std::min(end, static_cast<int>(text_.size()) - 1);
    return start < 0 || last < start ? MString() : MString(text_.c_str() + start, last - start + 1);
}

int MString::index(char c) const {
    const std::size_t position = text_.find(c);
    return position == std::string::npos ? -1 : static_cast<int>(position);
}

int MString::rindex(char c) const {
    const std::size_t position = text_.rfind(c);
    return position == std::string::npos ? -1 : static_cast<int>(position);
}

MStatus MString::split(char c, MStringArray& result) const {
    result.clear();
    for (std::size_t begin = 0; begin < text_.size();) {
        const std::size_t end = std::min(text_.find(c, begin), text_.size());
        if (end > begin) {
            result.append(substring(static_cast<int>(begin), static_cast<int>(end) - 1));
        }
        begin = end + 1;
    }
    return MS::kSuccess;
}

MString& MString::toUpperCase() {
    std::transform(text_.begin(), text_.end(), text_.begin(),
                   [](unsigned char c) { return static_cast<char>(c < 0x80 ? std::toupper(c) : c); });
    return *this;
}

MString& MString::toLowerCase() {
    std::transform(text_.begin(), text_.end(), text_.begin(),
                   [](unsigned char c) { return static_cast<char>(c < 0x80 ? std::tolower(c) : c); });
    return *this;
}

bool MString::isInt() const {
    long long number = 0;
    return ReadInteger(text_, INT_MIN, INT_MAX, number);
}

int MString::asInt() const {
    long long number = 0;
    return ReadInteger(text_, INT_MIN, INT_MAX, number) ? static_cast<int>(number) : 0;
}

bool MString::isUnsigned() const {
    long long number = 0;
    return ReadInteger(text_, 0, UINT_MAX, number);
}

unsigned int MString::asUnsigned() const {
    long long number = 0;
    return ReadInteger(text_, 0, UINT_MAX, number) ? static_cast<unsigned int>(number) : 0;
}

bool MString::isFloat() const {
    return isDouble();
}

float MString::asFloat() const {
    return static_cast<float>(asDouble());
}

bool MString::isDouble() const {
    double number = 0.0;
    return ReadWhole(text_, number);
}

double MString::asDouble() const {
    double number = 0.0;
    return ReadWhole(text_, number) ? number : 0.0;
}

MString operator+(const char* stringA, const MString& stringB) {
    return MString(stringA) + stringB;
}

bool operator==(const char* stringA, const MString& stringB) {
    return stringB == stringA;
}

std::ostream& operator<<(std::ostream& os, const MString& string) {
    return os.write(string.asChar(), static_cast<std::streamsize>(string.length()));
}
