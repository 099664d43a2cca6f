#include "mel/ArgumentTokens.h"

#include "mel/Runtime.h"
#include "scene/TimeUnits.h"
#include "text/NumberText.h"

#include <maya/MTime.h>

#include <cmath>
#include <limits>

namespace lightbox::mel {

ArgumentTokens::ArgumentTokens(const CallArguments& arguments) {
    tokens_.reserve(arguments.values.size());
    std::vector<Value> parts;
    for (std::size_t i = 0; i < arguments.values.size(); ++i) {
        const ArgumentForm form = arguments.forms ? arguments.forms->at(i) : ArgumentForm::Computed;
        const Value& value = arguments.values[i];
        if (value.IsNumber() || value.IsString()) {
            tokens_.push_back({value, form});
            continue;
        }
        parts.clear();
        value.Flatten(parts);
        for (Value& part : parts) {
            Add(std::move(part));
        }
    }
}

ArgumentTokens::ArgumentTokens(std::vector<Value> values) {
    tokens_.reserve(values.size());
    for (Value& value : values) {
        Add(std::move(value));
    }
}

MArgList ArgumentTokens::Wrap(ArgumentTokens tokens) {
    MArgList list;
    *list.tokens_ = std::move(tokens);
    return list;
}

bool LooksLikeFlag(const Value& value) {
    if (!value.IsString() || value.Text().size() < 2 || value.Text()[0] != '-') {
        return false;
    }
    const char letter = value.Text()[1];
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool ReadDouble(const Value& value, double& result) {
    if (value.IsNumber()) {
        result = value.AsFloat();
        return true;
    }
    return value.IsString() && IsNumber(value.Text(), result);
}

bool ReadInt(const Value& value, int& result) {
    double number = 0.0;
    if (!ReadDouble(value, number)) {
        return false;
    }
    result = Value(number).AsInt();
    return true;
}

bool ReadUnsigned(const Value& value, unsigned& result) {
    double number = 0.0;
    if (!ReadDouble(value, number) || !(number > -1.0) || number > std::numeric_limits<unsigned>::max()) {
        return false;
    }
    result = static_cast<unsigned>(number);
    return true;
}

bool ReadBool(const Value& value, bool& result) {
    double number = 0.0;
    if (ReadDouble(value, number)) {
        result = number != 0.0;
        return true;
    }
    if (!value.IsString()) {
        return false;
    }
    const std::string& text = value.Text();
    result = text == "on" || text == "true" || text == "yes";
    return result || text == "off" || text == "false" || text == "no";
}

bool ReadTime(const Value& value, MTime& result) {
    double number = 0.0;
    if (ReadDouble(value, number)) {
        result = MTime(number, MTime::uiUnit());
        return true;
    }
    std::string_view rest;
    if (!value.IsString() || !ReadNumber(value.Text(), number, &rest)) {
        return false;
    }
    const MTime::Unit unit = UnitFromName(std::string(rest));
    if (unit == MTime::kInvalid) {
        return false;
    }
    result = MTime(number, unit);
    return true;
}

} // namespace lightbox::mel
