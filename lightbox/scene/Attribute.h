#pragma once

#include "scene/AttributeValue.h"
#include "scene/Object.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lightbox {

enum class AttributeKind {
    Bool,
    Byte,
    Char,
    Short,
    Long,
    Int64,
    Float,
    Double,
    Angle,
    Distance,
    Time,
    Enum,
    String,
    StringArray,
    Matrix,
    DoubleArray,
    IntArray,
    PointArray,
    VectorArray,
    Compound,
    PluginData,
    Message,
    Mesh
};

/// Describes an attribute: names, kind, default, range and flags. Belongs to a node type, or to one node if
/// it was added to that node (dynamic). A compound owns its children.
class Attribute : public Object {
public:
    Attribute(std::string longName, std::string shortName, AttributeKind kind);

    MFn::Type ApiType() const override;
    bool HasFn(MFn::Type type) const override;

    const std::string& LongName() const { return longName_; }
    const std::string& ShortName() const { return shortName_; }
    bool HasName(const std::string& name) const { return name == longName_ || name == shortName_; }
    AttributeKind Kind() const { return kind_; }
    bool IsNumber() const { return kind_ <= AttributeKind::Enum; }
    bool IsCompound() const { return kind_ == AttributeKind::Compound; }
    /// Whether it is a compound whose children are all numbers of one kind, like translate.
    bool IsNumericCompound() const;
    /// The kind's name in setAttr, getAttr and addAttr: "bool", "double3", "string", "compound", ...
    std::string TypeName() const;

    Attribute* Parent() const { return parent_; }
    const std::vector<std::shared_ptr<Attribute>>& Children() const { return children_; }
    void AddChild(std::shared_ptr<Attribute> child);
    /// Whether this attribute or an ancestor is an array; the plugs of such attributes carry an index.
    bool HasElements() const;
    /// The array attribute among this one and its ancestors; null when there is none.
    const Attribute* ArrayAttribute() const;

    /// Converts a value to what the attribute stores: whole numbers truncated, booleans 0 or 1, numbers
    /// clamped to the range. Null when the attribute cannot hold a value of that type.
    std::optional<AttributeValue> Accept(const AttributeValue& value) const;
    /// The default value; of a numeric compound its children's defaults.
    AttributeValue Default() const;

    std::string niceName;
    AttributeValue defaultValue;
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<double> softMinimum;
    std::optional<double> softMaximum;
    std::vector<std::pair<std::string, int>> enumFields;
    unsigned dataTypeId = 0; ///< MTypeId of the data type of a PluginData attribute
    std::string dataTypeName;
    bool readable = true;
    bool writable = true;
    bool storable = true;
    bool connectable = true;
    bool keyable = false;
    bool hidden = false;
    bool channelBox = false;
    bool multi = false;
    /// For arrays: whether an element's index has a meaning beyond the order of connection.
    bool indexMatters = true;
    bool usedAsColor = false;
    bool dynamic = false;
    /// Flags with which `addAttr` made it and which mean nothing here, as text: " -dcb 2 -is true".
    std::string furtherFlags;
    /// The type with which `addAttr` made it, as text, where its kind alone would not give it back: `-at
    /// "fltMatrix"`. Of a compound whose children `addAttr` made itself, it is a `-dt`.
    std::string givenType;
    bool HasImpliedChildren() const { return IsCompound() && givenType.compare(0, 3, "-dt") == 0; }

private:
    std::string longName_;
    std::string shortName_;
    AttributeKind kind_;
    Attribute* parent_ = nullptr;
    std::vector<std::shared_ptr<Attribute>> children_;
};

/// Makes a compound of numbers. Its children are named after it, with the suffixes appended ("X", "x" and so
/// on).
std::shared_ptr<Attribute> MakeNumericCompound(const std::string& longName, const std::string& shortName,
                                               AttributeKind kind,
                                               const std::vector<std::string>& longSuffixes,
                                               const std::vector<std::string>& shortSuffixes,
                                               double defaultValue);

} // namespace lightbox
