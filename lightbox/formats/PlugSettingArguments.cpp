#include "formats/PlugSettingArguments.h"

#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "mel/ArgumentTokens.h"
#include "mel/CommandCall.h"
#include "mel/Error.h"
#include "scene/DataType.h"
#include "scene/DataValue.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "text/NumberText.h"

#include <maya/MArgList.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace lightbox {

PlugSettingArguments::PlugSettingArguments(const mel::CommandCall& call)
    : call_(call)
    , arguments_(call.Objects()) {
    while (position_ < arguments_.size()) {
        const mel::Value& value = arguments_[position_];
        const bool belongsToValue = hasType_ && !plug_.empty() && (IsDataType() || !ValueIsComplete());
        if (!belongsToValue && mel::LooksLikeFlag(value) && !NotFiniteNumber(value.Text())) {
            ++position_;
            if (!ParseFlag(value.Text())) {
                throw mel::Error("Invalid flag '" + value.Text() + "'.", mel::Error::Kind::InvalidFlag);
            }
        } else if (plug_.empty()) {
            plug_ = Next().AsString();
        } else if (value.IsArray() || value.GetType() == mel::Type::Vector) {
            Next().Flatten(values_);
        } else {
            values_.push_back(Next());
        }
    }
    if (plug_.empty()) {
        call_.Fail("No attribute was specified.");
    }
    const std::size_t dot = plug_.find('.');
    setting_.path = dot == std::string::npos ? plug_ : plug_.substr(dot + 1);
}

const mel::Value& PlugSettingArguments::Next() {
    if (position_ >= arguments_.size()) {
        call_.Fail("An argument is missing at the end.");
    }
    return arguments_[position_++];
}

bool PlugSettingArguments::NextBool() {
    const mel::Value& value = Next();
    if (value.IsString()) {
        return NumberOf(value) != 0.0;
    }
    return value.AsBool();
}

bool PlugSettingArguments::ParseFlag(const std::string& word) {
    const auto is = [&](const char* shortName, const char* longName) {
        return word == shortName || word == longName;
    };
    if (is("-typ", "-type")) {
        setting_.type = Next().AsString();
        hasType_ = true;
    } else if (is("-l", "-lock")) {
        setting_.locked = NextBool();
    } else if (is("-k", "-keyable")) {
        setting_.keyable = NextBool();
    } else if (is("-cb", "-channelBox")) {
        setting_.channelBox = NextBool();
    } else if (is("-s", "-size")) {
        setting_.size = static_cast<unsigned>(std::max(0, Next().AsInt()));
    } else if (is("-ch", "-capacityHint")) {
        Next();
    } else if (is("-ca", "-caching")) {
        NextBool();
    } else if (is("-c", "-clamp")) {
        outOfRange_ = edit::OutOfRange::Clamp;
    } else {
        // -alteredValue is accepted and has no effect: every value is stored in the same way.
        return is("-av", "-alteredValue");
    }
    return true;
}

bool PlugSettingArguments::IsDataType() const {
    return hasType_ && setting_.type != "string" && NumberCountOfType(setting_.type) == 0;
}

bool PlugSettingArguments::ValueIsComplete() const {
    return setting_.type == "string"
               ? !values_.empty()
               : values_.size() >= static_cast<std::size_t>(NumberCountOfType(setting_.type));
}

void PlugSettingArguments::UseType(const std::string& type) {
    if (!type.empty() && !hasType_ && !values_.empty()) {
        setting_.type = type;
        hasType_ = true;
    }
}

void PlugSettingArguments::CheckIsKnown(const std::shared_ptr<Node>& node) const {
    if (MeshPlugSettings::Handles(*node, setting_.path)) {
        return;
    }
    try {
        PlugSettingApplier::Resolve(node, setting_.path, 1);
    } catch (const UnknownAttributeError&) {
        throw;
    } catch (const SceneError&) {
        // It is known; another thing is wrong.
    }
}

double PlugSettingArguments::NumberOf(const mel::Value& value) const {
    if (!value.IsString()) {
        return value.AsFloat();
    }
    const std::string& text = value.Text();
    if (text == "yes" || text == "on" || text == "true") {
        return 1.0;
    }
    if (text == "no" || text == "off" || text == "false") {
        return 0.0;
    }
    if (const std::optional<double> number = NotFiniteNumber(text)) {
        return *number;
    }
    double number = 0.0;
    if (!IsNumber(text, number)) {
        call_.Fail("A number was expected for '" + plug_ + "', not \"" + text.substr(0, 40) + "\".");
    }
    return number;
}

void PlugSettingArguments::BuildNumbers(std::size_t begin) {
    for (std::size_t i = begin; i < values_.size(); ++i) {
        const double number = NumberOf(values_[i]);
        const bool isMended = mends_ && !std::isfinite(number);
        mended_ += isMended ? 1 : 0;
        setting_.numbers.push_back(isMended ? 0.0 : number);
    }
}

void PlugSettingArguments::BuildTexts(std::size_t begin) {
    for (std::size_t i = begin; i < values_.size(); ++i) {
        setting_.texts.push_back(values_[i].AsString());
    }
}

const PlugSetting& PlugSettingArguments::SettingFor(const std::shared_ptr<Node>& node) {
    setting_.hasValue = !values_.empty() || IsDataType();
    if (!setting_.hasValue) {
        if (hasType_) {
            call_.Fail("No value was given for '" + plug_ + "'.");
        }
        return setting_;
    }
    const int perItem = NumbersPerItemOfType(setting_.type);
    if (!hasType_) {
        // As in Maya, only -type "string" takes a text.
        BuildNumbers(0);
    } else if (setting_.type == "string") {
        BuildTexts(0);
    } else if (NumberCountOfType(setting_.type) > 0) {
        if (values_.front().IsString() && values_.front().Text() == "xform") {
            throw UnknownAttributeError("A matrix in parts cannot be read: " + plug_);
        }
        BuildNumbers(0);
    } else if (perItem > 0 || setting_.type == "stringArray") {
        const double count = values_.empty() ? 0.0 : NumberOf(values_.front());
        const std::size_t items = (values_.size() - std::min<std::size_t>(1, values_.size()));
        if (count * std::max(1, perItem) != static_cast<double>(items)) {
            call_.Fail("The number of values for '" + plug_ + "' does not match the count before them.");
        }
        perItem > 0 ? BuildNumbers(1) : BuildTexts(1);
    } else if (setting_.type == "polyFaces") {
        BuildFaces();
    } else {
        PlugSettingApplier::Resolve(node, setting_.path, 1);
        BuildData();
    }
    return setting_;
}

void PlugSettingArguments::BuildFaces() {
    for (const mel::Value& value : values_) {
        if (value.IsString() && value.Text() == "f") {
            setting_.texts.emplace_back("f");
        } else if (setting_.texts.empty()) {
            call_.Fail("A face of '" + plug_ + "' does not begin with \"f\".");
        } else {
            setting_.texts.back() += ' ';
            setting_.texts.back() += value.AsString();
        }
    }
}

void PlugSettingArguments::BuildData() {
    const auto type = call_.GetHost().scene().types().FindDataType(setting_.type);
    if (!type) {
        throw UnknownAttributeError("Unknown data type '" + setting_.type + "'.");
    }
    setting_.data = TypeRegistry::MakeData(type);
    if (!setting_.data) {
        call_.Fail("The plug-in could not make a value of type '" + setting_.type + "'.");
    }
    const MArgList tokens = mel::ArgumentTokens::Wrap(mel::ArgumentTokens(std::move(values_)));
    unsigned element = 0;
    try {
        dataIsWhole_ = static_cast<bool>(setting_.data->Data().readASCII(tokens, element));
    } catch (const std::exception&) {
        // The part of the value that was read before is stored.
        dataIsWhole_ = false;
    }
}

void PlugSettingArguments::CheckIsWhole() const {
    if (!dataIsWhole_) {
        call_.Fail("The value of '" + plug_ + "', of type '" + setting_.type +
                   "', could not be read completely.");
    }
}

} // namespace lightbox
