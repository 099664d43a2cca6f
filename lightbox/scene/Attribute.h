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

/// The description of an attribute: names, kind, default, range and flags. It belongs to a node type, or to
/// one node when it was added to that (dynamic). Children of a compound belong to it.
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
    /// A compound whose children are all numbers of one kind, like translate.
    bool IsNumericCompound() const;
    /// The name that setAttr, getAttr and addAttr give the kind: "bool", "double3", "string", "compound", ...
    std::string TypeName() const;

    Attribute* Parent() const { return parent_; }
    const std::vector<std::shared_ptr<Attribute>>& Children() const { return children_; }
    void AddChild(std::shared_ptr<Attribute> child);
    /// Whether this or an attribute above it has elements; plugs of such attributes carry an index.
    bool HasElements() const;
    /// This attribute, or the one above it, that has elements; null when there is none.
    const Attribute* ArrayAttribute() const;

    /// The value as the attribute stores it: whole numbers truncated, booleans 0 or 1, numbers clamped to the
    /// range. Null when a value of that kind cannot be stored here.
    std::optional<AttributeValue> Accept(const AttributeValue& value) const;
    /// The default of a whole compound is its children's.
    AttributeValue Default() const;

    std::string niceName;
    AttributeValue defaultValue;
    std::optional<double> minimum;
    std::optional<double> maximum;
    std::optional<double> softMinimum;
    std::optional<double> softMaximum;
    std::vector<std::pair<std::string, int>> enumFields;
    unsigned dataTypeId = 0; ///< of a PluginData attribute
    std::string dataTypeName;
    bool readable = true;
    bool writable = true;
    bool storable = true;
    bool connectable = true;
    bool keyable = false;
    bool hidden = false;
    bool channelBox = false;
    bool multi = false;
    /// Of an array: its elements are told apart by more than the order in which they came.
    bool indexMatters = true;
    bool usedAsColor = false;
    bool dynamic = false;

private:
    std::string longName_;
    std::string shortName_;
    AttributeKind kind_;
    Attribute* parent_ = nullptr;
    std::vector<std::shared_ptr<Attribute>> children_;
};

/// A compound of numbers: children named after the parent with the suffixes appended ("X", "x" and so on).
std::shared_ptr<Attribute> MakeNumericCompound(const std::string& longName, const std::string& shortName,
                                               AttributeKind kind,
                                               const std::vector<std::string>& longSuffixes,
                                               const std::vector<std::string>& shortSuffixes,
                                               double defaultValue);

} // namespace lightbox
