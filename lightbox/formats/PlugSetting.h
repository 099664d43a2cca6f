#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class DataValue;

/// One `setAttr` of a scene file: the flags and the value of a plug, in a form that no file format shows
/// through.
struct PlugSetting {
    /// The plug below its node, with indexes and ranges: "tx", "w[3]", "ktv[0:4]".
    std::string path;
    std::optional<bool> locked;
    std::optional<bool> keyable;
    std::optional<bool> channelBox;
    /// Number of elements that follow, a hint of the file to its reader.
    std::optional<unsigned> size;

    /// As after -type: "double3", "string", a plug-in's data type. Empty for plain numbers.
    std::string type;
    bool hasValue = false;
    /// The numbers are booleans, which are written as words.
    bool isBoolean = false;
    std::vector<double> numbers;
    std::vector<std::string> texts;
    std::shared_ptr<DataValue> data;
};

/// How many numbers a value of one of setAttr's numeric types has ("double3": 3, "matrix": 16); 0 for other
/// types.
int NumberCountOfType(const std::string& type);
/// How many numbers one item of a counted type has ("doubleArray": 1, "vectorArray": 3); 0 for other types.
int NumbersPerItemOfType(const std::string& type);

} // namespace lightbox
