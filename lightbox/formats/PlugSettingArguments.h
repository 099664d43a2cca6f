#pragma once

#include "formats/PlugSetting.h"
#include "mel/Value.h"
#include "scene/Edit.h"

#include <memory>
#include <string>
#include <vector>

namespace lightbox {

class Node;

namespace mel {
class CommandCall;
}

/// Parses the arguments of one `setAttr`, typed or in a scene file. As in Maya, flags may stand before,
/// between and after the values. After `-type` and the attribute, however, all arguments that the type can
/// take belong to the value.
class PlugSettingArguments {
public:
    /// Throws mel::Error for invalid arguments. The call has to outlive this object.
    explicit PlugSettingArguments(const mel::CommandCall& call);

    /// "node.attribute" or ".attribute", as given.
    const std::string& PlugName() const { return plug_; }
    /// The attribute path below the node.
    const std::string& Path() const { return setting_.path; }
    /// The argument of `-type`, or empty.
    const std::string& Type() const { return setting_.type; }
    /// Takes the value as one of that type, as if `-type` had been given. Does nothing for an empty type or
    /// when there is no value.
    void UseType(const std::string& type);
    /// Reads numbers that are infinite or no numbers as 0.
    void MendNumbers() { mends_ = true; }
    int MendedCount() const { return mended_; }
    const std::vector<mel::Value>& Values() const { return values_; }
    /// True for a value that is neither a text nor of a fixed number of numbers: that of a plug-in, or a
    /// list.
    bool IsDataType() const;
    edit::OutOfRange OutOfRange() const { return outOfRange_; }

    /// Throws UnknownAttributeError when the node does not have the attribute.
    void CheckIsKnown(const std::shared_ptr<Node>& node) const;
    /// Builds the setting for the node. Call it once. Throws mel::Error for a value that does not fit its
    /// type, and UnknownAttributeError for an unknown data type or for data in an unknown attribute.
    const PlugSetting& SettingFor(const std::shared_ptr<Node>& node);
    /// Throws mel::Error when the plug-in could read only a part of its data.
    void CheckIsWhole() const;

private:
    bool ParseFlag(const std::string& word);
    bool NextBool();
    const mel::Value& Next();
    bool ValueIsComplete() const;

    void BuildNumbers(std::size_t begin);
    void BuildTexts(std::size_t begin);
    void BuildFaces();
    void BuildData();
    double NumberOf(const mel::Value& value) const;

    const mel::CommandCall& call_;
    const std::vector<mel::Value>& arguments_;
    std::size_t position_ = 0;
    std::string plug_;
    PlugSetting setting_;
    std::vector<mel::Value> values_;
    bool hasType_ = false;
    edit::OutOfRange outOfRange_ = edit::OutOfRange::Refuse;
    bool dataIsWhole_ = true;
    bool mends_ = false;
    int mended_ = 0;
};

} // namespace lightbox
