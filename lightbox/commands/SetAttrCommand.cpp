#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/FileReader.h"
#include "formats/MeshPlugSettings.h"
#include "formats/PlugSetting.h"
#include "formats/PlugSettingApplier.h"
#include "mel/ArgumentTokens.h"
#include "mel/Interpreter.h"
#include "scene/DataType.h"
#include "scene/DataValue.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "text/NumberText.h"
#include "text/Quoted.h"

#include <maya/MArgList.h>

#include <algorithm>

namespace lightbox::mel {
namespace {

/// The arguments of one setAttr. Maya lets flags stand before, between and after the values, except that
/// behind
/// `-type` and the attribute everything that the type can take belongs to the value.
class SetAttrCall {
public:
    explicit SetAttrCall(const CommandCall& call)
        : call_(call)
        , arguments_(call.Objects()) {}

    Value Run();

private:
    void Parse();
    bool ParseFlag(const std::string& word);
    bool NextBool();
    const Value& Next();
    bool ValueIsComplete() const;
    bool IsDataType() const;

    void Build(const std::shared_ptr<Node>& node);
    void BuildNumbers(std::size_t begin);
    void BuildTexts(std::size_t begin);
    void BuildFaces();
    void BuildData();
    double NumberOf(const Value& value) const;

    void Keep(const std::string& kind, const std::string& warning) const;
    void ApplyReferenceEdits(FileReader& reader) const;

    const CommandCall& call_;
    const std::vector<Value>& arguments_;
    std::size_t position_ = 0;
    std::string plug_;
    PlugSetting setting_;
    std::vector<Value> values_;
    bool hasType_ = false;
    edit::OutOfRange outOfRange_ = edit::OutOfRange::Refuse;
    bool dataIsWhole_ = true;
};

const Value& SetAttrCall::Next() {
    if (position_ >= arguments_.size()) {
        call_.Fail("An argument is missing at the end.");
    }
    return arguments_[position_++];
}

bool SetAttrCall::NextBool() {
    const Value& value = Next();
    if (value.IsString()) {
        return NumberOf(value) != 0.0;
    }
    return value.AsBool();
}

bool SetAttrCall::ParseFlag(const std::string& word) {
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
        // An altered value is one that does not wait for a key; every value here is.
        return is("-av", "-alteredValue");
    }
    return true;
}

bool SetAttrCall::IsDataType() const {
    return hasType_ && setting_.type != "string" && NumberCountOfType(setting_.type) == 0;
}

bool SetAttrCall::ValueIsComplete() const {
    return setting_.type == "string"
               ? !values_.empty()
               : values_.size() >= static_cast<std::size_t>(NumberCountOfType(setting_.type));
}

void SetAttrCall::Parse() {
    while (position_ < arguments_.size()) {
        const Value& value = arguments_[position_];
        const bool belongsToValue = hasType_ && !plug_.empty() && (IsDataType() || !ValueIsComplete());
        if (!belongsToValue && LooksLikeFlag(value)) {
            ++position_;
            if (!ParseFlag(value.Text())) {
                call_.Fail("Invalid flag '" + value.Text() + "'.");
            }
        } else if (plug_.empty()) {
            plug_ = Next().AsString();
        } else if (value.IsArray() || value.GetType() == Type::Vector) {
            Next().Flatten(values_);
        } else {
            values_.push_back(Next());
        }
    }
    if (plug_.empty()) {
        call_.Fail("No attribute was specified.");
    }
}

/// Of a type that the scene does not know, which has been said of the type.
bool IsUnknown(const NodeType& type) {
    return type.IsA("unknown") || type.IsA("unknownDag") || type.IsA("unknownTransform");
}

double SetAttrCall::NumberOf(const Value& value) const {
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
    double number = 0.0;
    if (!IsNumber(text, number)) {
        call_.Fail("A number was expected for '" + plug_ + "', not \"" + text.substr(0, 40) + "\".");
    }
    return number;
}

void SetAttrCall::BuildNumbers(std::size_t begin) {
    for (std::size_t i = begin; i < values_.size(); ++i) {
        setting_.numbers.push_back(NumberOf(values_[i]));
    }
}

void SetAttrCall::BuildTexts(std::size_t begin) {
    for (std::size_t i = begin; i < values_.size(); ++i) {
        setting_.texts.push_back(values_[i].AsString());
    }
}

void SetAttrCall::Build(const std::shared_ptr<Node>& node) {
    setting_.hasValue = !values_.empty() || IsDataType();
    if (!setting_.hasValue) {
        if (hasType_) {
            call_.Fail("No value was given for '" + plug_ + "'.");
        }
        return;
    }
    const int perItem = NumbersPerItemOfType(setting_.type);
    if (!hasType_) {
        // As in Maya, a text needs -type "string".
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
            call_.Fail("The number of values for '" + plug_ + "' is not the one announced.");
        }
        perItem > 0 ? BuildNumbers(1) : BuildTexts(1);
    } else if (setting_.type == "polyFaces") {
        BuildFaces();
    } else {
        PlugSettingApplier::Resolve(node, setting_.path, 1);
        BuildData();
    }
}

void SetAttrCall::BuildFaces() {
    for (const Value& value : values_) {
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

void SetAttrCall::BuildData() {
    const auto type = call_.GetHost().scene().types().FindDataType(setting_.type);
    if (!type) {
        throw UnknownAttributeError("Unknown data type '" + setting_.type + "'.");
    }
    setting_.data = TypeRegistry::MakeData(type);
    if (!setting_.data) {
        call_.Fail("The plug-in could not make a value of type '" + setting_.type + "'.");
    }
    const MArgList tokens = ArgumentTokens::Wrap(ArgumentTokens(std::move(values_)));
    unsigned element = 0;
    dataIsWhole_ = static_cast<bool>(setting_.data->Data().readASCII(tokens, element));
}

void SetAttrCall::Keep(const std::string& kind, const std::string& warning) const {
    FileReader& reader = *ReaderOf(call_);
    if (plug_[0] == '.') {
        reader.KeepForCurrent(kind, warning + "; it is kept and written back.");
    } else {
        reader.KeepForFile(kind, warning + "; it is kept and written back.");
    }
}

/// What other programs note about the nodes of a reference: among much else, a 2 followed by a node, an
/// attribute and what setAttr is to be given. The note itself is kept.
void SetAttrCall::ApplyReferenceEdits(FileReader& reader) const {
    const auto isText = [this](std::size_t i) { return i < values_.size() && values_[i].IsString(); };
    for (std::size_t i = 0; i + 3 < values_.size(); ++i) {
        const bool isSetting = values_[i].IsNumber() && values_[i].AsFloat() == 2.0 && isText(i + 1) &&
                               isText(i + 2) && isText(i + 3);
        if (isSetting && reader.Find(values_[i + 1].Text())) {
            reader.RunStatement("setAttr " + Quoted(values_[i + 1].Text() + "." + values_[i + 2].Text()) +
                                values_[i + 3].Text());
        }
    }
}

Value SetAttrCall::Run() {
    Parse();
    FileReader* reader = ReaderOf(call_);
    const std::size_t dot = plug_.find('.');
    const std::string path = dot == std::string::npos ? plug_ : plug_.substr(dot + 1);
    std::shared_ptr<Node> node;
    if (!reader) {
        node = NodeOfPlug(call_, plug_);
    } else if (node = dot == 0 ? reader->Current() : reader->Find(plug_.substr(0, dot)); !node) {
        const std::string missing = dot == 0 ? reader->MissingDefault() : plug_.substr(0, dot);
        Keep("node " + missing, "No object matches name: " + missing);
        return {};
    }
    if (reader && reader->IsForeign(*node)) {
        return {};
    }
    setting_.path = path;
    try {
        Build(node);
        if (reader) {
            reader->Apply(node, setting_);
        } else if (dataIsWhole_) {
            PlugSettingApplier(call_.GetHost(), PlugSettingApplier::ApplyMode::Edit, outOfRange_)
                .Apply(node, setting_);
        }
    } catch (const UnknownAttributeError& error) {
        if (!reader) {
            throw;
        }
        const std::string name = path.substr(0, path.find_first_of("[."));
        const bool isReference = node->Type().IsA("reference");
        if (isReference || IsUnknown(node->Type()) || MeshPlugSettings::IsCarriedAlong(*node, path)) {
            reader->KeepForNode(*node, "", "");
            if (isReference && setting_.type == "dataReferenceEdits") {
                ApplyReferenceEdits(*reader);
            }
            return {};
        }
        Keep(node->Type().Name() + "." + name + setting_.type, error.what());
    }
    if (!dataIsWhole_) {
        // In a file, what could be read of it stands; the fault is an error all the same.
        call_.Fail("The value of '" + plug_ + "', of type '" + setting_.type + "', could not be read whole.");
    }
    return {};
}

} // namespace

void RegisterSetAttrCommand(CommandRegistry& registry) {
    AddRawSceneCommand(registry, "setAttr", [](CommandCall& call) { return SetAttrCall(call).Run(); });
}

} // namespace lightbox::mel
