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

/// The arguments of one `setAttr`, typed or in a scene file. Maya lets flags stand before, between and after
/// the values, except that behind `-type` and the attribute everything that the type can take belongs to the
/// value.
class PlugSettingArguments {
public:
    /// Throws mel::Error when the arguments make no sense. The call has to outlive this.
    explicit PlugSettingArguments(const mel::CommandCall& call);

    /// "node.attribute" or ".attribute", as given.
    const std::string& PlugName() const { return plug_; }
    /// The plug below its node.
    const std::string& Path() const { return setting_.path; }
    /// As after `-type`.
    const std::string& Type() const { return setting_.type; }
    const std::vector<mel::Value>& Values() const { return values_; }
    edit::OutOfRange outOfRange() const { return outOfRange_; }

    /// The setting, for that node; to be asked for once. Throws mel::Error for a value that does not fit its
    /// type, UnknownAttributeError for a type, or data in an attribute, that is not known here.
    const PlugSetting& SettingFor(const std::shared_ptr<Node>& node);
    /// Throws mel::Error when a plug-in's data could only be read in part.
    void CheckIsWhole() const;

private:
    bool ParseFlag(const std::string& word);
    bool NextBool();
    const mel::Value& Next();
    bool ValueIsComplete() const;
    bool IsDataType() const;

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
};

} // namespace lightbox
