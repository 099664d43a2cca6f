#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lightbox {

class DataValue;

/// One `setAttr` of a scene file: the flags and the value of a plug, independent of the file format.
struct PlugSetting {
    /// The attribute path below the node, with indexes and ranges: "tx", "w[3]", "ktv[0:4]".
    std::string path;
    std::optional<bool> locked;
    std::optional<bool> keyable;
    std::optional<bool> channelBox;
    /// The number of elements in all, a hint for readers.
    std::optional<unsigned> size;

    /// The argument of -type: "double3", "string", a plug-in's data type. Empty for plain numbers.
    std::string type;
    bool hasValue = false;
    /// True when the numbers are booleans, written as words.
    bool isBoolean = false;
    std::vector<double> numbers;
    std::vector<std::string> texts;
    std::shared_ptr<DataValue> data;
};

/// Returns how many numbers a value of a numeric setAttr type has ("double3": 3, "matrix": 16); 0 for others.
int NumberCountOfType(const std::string& type);
/// Returns how many numbers one item of an array type has ("doubleArray": 1, "vectorArray": 3); 0 for others.
int NumbersPerItemOfType(const std::string& type);

} // namespace lightbox
