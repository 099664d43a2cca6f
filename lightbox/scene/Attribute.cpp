#include "scene/Attribute.h"

#include "scene/DataType.h"
#include "scene/DataValue.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace lightbox {

namespace {

/// The range of an integer kind.
std::pair<double, double> RangeOf(AttributeKind kind) {
    switch (kind) {
    case AttributeKind::Byte:
        return {0.0, 255.0};
    case AttributeKind::Char:
        return {-128.0, 127.0};
    case AttributeKind::Short:
        return {-32768.0, 32767.0};
    case AttributeKind::Int64:
        return {-9007199254740992.0, 9007199254740992.0};
    default:
        return {-2147483648.0, 2147483647.0};
    }
}

const char* KindName(AttributeKind kind) {
    static constexpr std::pair<AttributeKind, const char*> names[] = {
        {AttributeKind::Bool, "bool"},
        {AttributeKind::Byte, "byte"},
        {AttributeKind::Char, "char"},
        {AttributeKind::Short, "short"},
        {AttributeKind::Long, "long"},
        {AttributeKind::Int64, "int64"},
        {AttributeKind::Float, "float"},
        {AttributeKind::Double, "double"},
        {AttributeKind::Angle, "doubleAngle"},
        {AttributeKind::Distance, "doubleLinear"},
        {AttributeKind::Time, "time"},
        {AttributeKind::Enum, "enum"},
        {AttributeKind::String, "string"},
        {AttributeKind::StringArray, "stringArray"},
        {AttributeKind::Matrix, "matrix"},
        {AttributeKind::DoubleArray, "doubleArray"},
        {AttributeKind::IntArray, "Int32Array"},
        {AttributeKind::PointArray, "pointArray"},
        {AttributeKind::VectorArray, "vectorArray"},
        {AttributeKind::Message, "message"},
        {AttributeKind::Mesh, "mesh"},
    };
    const auto* const found = std::find_if(std::begin(names), std::end(names),
                                           [kind](const auto& row) { return row.first == kind; });
    return found == std::end(names) ? "compound" : found->second;
}

/// The number converted to the attribute's kind; null if that is impossible.
std::optional<double> AcceptNumber(const Attribute& attribute, double number) {
    if (!std::isfinite(number)) {
        return std::nullopt;
    }
    if (attribute.minimum) {
        number = std::max(number, *attribute.minimum);
    }
    if (attribute.maximum) {
        number = std::min(number, *attribute.maximum);
    }
    switch (attribute.Kind()) {
    case AttributeKind::Bool:
        return number != 0.0 ? 1.0 : 0.0;
    case AttributeKind::Float:
        return static_cast<double>(
            static_cast<float>(std::clamp(number, -3.4028234663852886e38, 3.4028234663852886e38)));
    case AttributeKind::Double:
    case AttributeKind::Angle:
    case AttributeKind::Distance:
    case AttributeKind::Time:
        return number;
    default: {
        const auto range = RangeOf(attribute.Kind());
        return std::clamp(std::trunc(number), range.first, range.second);
    }
    }
}

template <typename T>
std::optional<AttributeValue> Only(const AttributeValue& value) {
    return std::holds_alternative<T>(value) ? std::optional<AttributeValue>(value) : std::nullopt;
}

} // namespace

Attribute::Attribute(std::string longName, std::string shortName, AttributeKind kind)
    : longName_(std::move(longName))
    , shortName_(std::move(shortName))
    , kind_(kind) {
    if (shortName_.empty()) {
        shortName_ = longName_;
    }
}

MFn::Type Attribute::ApiType() const {
    switch (kind_) {
    case AttributeKind::Angle:
    case AttributeKind::Distance:
    case AttributeKind::Time:
        return MFn::kUnitAttribute;
    case AttributeKind::Enum:
        return MFn::kEnumAttribute;
    case AttributeKind::Matrix:
        return MFn::kMatrixAttribute;
    case AttributeKind::Message:
        return MFn::kMessageAttribute;
    case AttributeKind::Compound:
        return IsNumericCompound() ? MFn::kNumericAttribute : MFn::kCompoundAttribute;
    default:
        return IsNumber() ? MFn::kNumericAttribute : MFn::kTypedAttribute;
    }
}

bool Attribute::HasFn(MFn::Type type) const {
    return type == ApiType() || type == MFn::kAttribute || type == MFn::kBase ||
           (type == MFn::kCompoundAttribute && IsCompound());
}

bool Attribute::IsNumericCompound() const {
    if (!IsCompound() || children_.size() < 2 || children_.size() > 4) {
        return false;
    }
    return std::all_of(children_.begin(), children_.end(), [&](const std::shared_ptr<Attribute>& child) {
        return child->IsNumber() && child->Kind() == children_.front()->Kind() && !child->multi;
    });
}

std::string Attribute::TypeName() const {
    if (kind_ == AttributeKind::PluginData) {
        return dataTypeName;
    }
    if (!IsNumericCompound()) {
        return KindName(kind_);
    }
    const AttributeKind kind = children_.front()->Kind();
    const bool isUnit = kind == AttributeKind::Angle || kind == AttributeKind::Distance;
    return (isUnit ? "double" : KindName(kind)) + std::to_string(children_.size());
}

void Attribute::AddChild(std::shared_ptr<Attribute> child) {
    child->parent_ = this;
    children_.push_back(std::move(child));
}

const Attribute* Attribute::ArrayAttribute() const {
    for (const Attribute* attribute = this; attribute; attribute = attribute->parent_) {
        if (attribute->multi) {
            return attribute;
        }
    }
    return nullptr;
}

bool Attribute::HasElements() const {
    return ArrayAttribute() != nullptr;
}

std::optional<AttributeValue> Attribute::Accept(const AttributeValue& value) const {
    if (IsNumber()) {
        const double* number = std::get_if<double>(&value);
        const std::optional<double> accepted = number ? AcceptNumber(*this, *number) : std::nullopt;
        return accepted ? std::optional<AttributeValue>(*accepted) : std::nullopt;
    }
    switch (kind_) {
    case AttributeKind::String:
        return Only<std::string>(value);
    case AttributeKind::StringArray:
        return Only<std::vector<std::string>>(value);
    case AttributeKind::Matrix: {
        const auto* cells = std::get_if<std::vector<double>>(&value);
        return cells && cells->size() == 16 ? std::optional<AttributeValue>(value) : std::nullopt;
    }
    case AttributeKind::DoubleArray:
    case AttributeKind::IntArray:
    case AttributeKind::PointArray:
    case AttributeKind::VectorArray:
        return Only<std::vector<double>>(value);
    case AttributeKind::PluginData: {
        const auto* data = std::get_if<std::shared_ptr<DataValue>>(&value);
        return data && *data && (*data)->Type()->id == dataTypeId ? std::optional<AttributeValue>(value)
                                                                  : std::nullopt;
    }
    case AttributeKind::Mesh:
        return Only<std::shared_ptr<const MeshData>>(value);
    default:
        return std::nullopt;
    }
}

AttributeValue Attribute::Default() const {
    if (IsNumericCompound()) {
        std::vector<double> numbers;
        for (const std::shared_ptr<Attribute>& child : children_) {
            numbers.push_back(std::get<double>(child->Default()));
        }
        return numbers;
    }
    if (!std::holds_alternative<std::monostate>(defaultValue)) {
        return defaultValue;
    }
    if (IsNumber()) {
        return 0.0;
    }
    if (kind_ == AttributeKind::Matrix) {
        return std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    }
    return {};
}

std::shared_ptr<Attribute> MakeNumericCompound(const std::string& longName, const std::string& shortName,
                                               AttributeKind kind,
                                               const std::vector<std::string>& longSuffixes,
                                               const std::vector<std::string>& shortSuffixes,
                                               double defaultValue) {
    auto compound = std::make_shared<Attribute>(longName, shortName, AttributeKind::Compound);
    for (std::size_t i = 0; i < longSuffixes.size(); ++i) {
        auto child =
            std::make_shared<Attribute>(longName + longSuffixes[i], shortName + shortSuffixes[i], kind);
        child->defaultValue = defaultValue;
        compound->AddChild(std::move(child));
    }
    return compound;
}

} // namespace lightbox
