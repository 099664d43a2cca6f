#include "formats/AsciiStatements.h"

#include "formats/FileError.h"
#include "mel/Interpreter.h"
#include "scene/Attribute.h"
#include "scene/DataValue.h"
#include "scene/TimeUnits.h"
#include "text/NumberText.h"
#include "text/Quoted.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string_view>

namespace lightbox::ascii {
namespace {

/// Line length for long arrays, in items.
constexpr std::size_t NUMBERS_PER_LINE = 24;

void WriteFlag(std::ostream& out, const char* name, const std::optional<bool>& state) {
    if (state) {
        out << ' ' << name << (*state ? " on" : " off");
    }
}

void WriteNumbers(std::ostream& out, const PlugSetting& setting) {
    for (std::size_t i = 0; i < setting.numbers.size(); ++i) {
        out << (i > 0 && i % NUMBERS_PER_LINE == 0 ? "\n\t\t" : " ");
        if (setting.isBoolean) {
            out << (setting.numbers[i] != 0.0 ? "yes" : "no");
        } else {
            out << DecimalText(setting.numbers[i]);
        }
    }
}

void WriteData(std::ostream& out, const PlugSetting& setting) {
    out << ' ';
    if (!setting.data->Data().writeASCII(out)) {
        throw FileError("The value of \"" + setting.path + "\", of type \"" + setting.type +
                        "\", could not be written.");
    }
    out << ' ';
}

/// Writes faces as bare words and numbers, each part on its own line.
void WriteFaces(std::ostream& out, const PlugSetting& setting) {
    for (const std::string& face : setting.texts) {
        for (std::size_t begin = 0; begin < face.size();) {
            const std::size_t end = std::min(face.find('\n', begin), face.size());
            out << " \n\t\t" << std::string_view(face).substr(begin, end - begin);
            begin = end + 1;
        }
    }
}

void WriteValue(std::ostream& out, const PlugSetting& setting) {
    if (!setting.type.empty()) {
        out << " -type " << Quoted(setting.type);
    }
    if (setting.data) {
        WriteData(out, setting);
        return;
    }
    if (setting.type == "polyFaces") {
        WriteFaces(out, setting);
        return;
    }
    if (const int perItem = NumbersPerItemOfType(setting.type)) {
        out << ' ' << setting.numbers.size() / static_cast<std::size_t>(perItem);
    } else if (setting.type == "stringArray") {
        out << ' ' << setting.texts.size();
    }
    WriteNumbers(out, setting);
    for (const std::string& text : setting.texts) {
        out << ' ' << Quoted(text);
    }
    if (setting.numbers.size() > 1 || setting.texts.size() > 1) {
        out << ' ';
    }
}

void WriteNumberFlag(std::ostream& out, const char* flag, const std::optional<double>& value) {
    if (value) {
        out << ' ' << flag << ' ' << DecimalText(*value);
    }
}

void WriteEnumFields(std::ostream& out, const Attribute& attribute) {
    std::string fields;
    int expected = 0;
    for (const auto& field : attribute.enumFields) {
        fields += (fields.empty() ? "" : ":") + field.first;
        if (field.second != expected) {
            fields += "=" + std::to_string(field.second);
        }
        expected = field.second + 1;
    }
    out << " -en " << Quoted(fields);
}

/// Writes the attribute's type as -at or -dt.
void WriteType(std::ostream& out, const Attribute& attribute) {
    const bool isTyped =
        attribute.Kind() == AttributeKind::PluginData ||
        (attribute.Kind() >= AttributeKind::String && attribute.Kind() <= AttributeKind::VectorArray);
    out << (isTyped ? " -dt " : " -at ") << Quoted(attribute.TypeName());
}

} // namespace

void WriteSetting(std::ostream& out, const PlugSetting& setting) {
    out << "setAttr";
    if (setting.size) {
        out << " -s " << *setting.size;
    }
    WriteFlag(out, "-l", setting.locked);
    WriteFlag(out, "-k", setting.keyable);
    WriteFlag(out, "-cb", setting.channelBox);
    out << ' ' << Quoted("." + setting.path);
    if (setting.hasValue) {
        WriteValue(out, setting);
    }
    out << ";\n";
}

std::string SettingText(const PlugSetting& setting) {
    std::ostringstream text;
    WriteSetting(text, setting);
    std::string statement = text.str();
    statement.resize(statement.rfind(';'));
    return statement;
}

void WriteAddAttr(std::ostream& out, const Attribute& attribute, const std::string& indent) {
    for (const std::string& text : AddAttrTexts(attribute)) {
        out << indent << text << ";\n";
    }
}

std::vector<std::string> AddAttrTexts(const Attribute& attribute) {
    std::ostringstream out;
    out << "addAttr";
    if (attribute.furtherFlags.find(" -ci ") == std::string::npos) {
        out << " -ci true";
    }
    out << attribute.furtherFlags;
    if (attribute.usedAsColor) {
        out << " -uac";
    }
    WriteFlag(out, "-k", attribute.keyable ? std::optional<bool>(true) : std::nullopt);
    WriteFlag(out, "-h", attribute.hidden ? std::optional<bool>(true) : std::nullopt);
    WriteFlag(out, "-r", attribute.readable ? std::nullopt : std::optional<bool>(false));
    WriteFlag(out, "-w", attribute.writable ? std::nullopt : std::optional<bool>(false));
    WriteFlag(out, "-s", attribute.storable ? std::nullopt : std::optional<bool>(false));
    if (attribute.multi) {
        out << " -m";
    }
    if (!attribute.indexMatters) {
        out << " -im false";
    }
    out << " -sn " << Quoted(attribute.ShortName()) << " -ln " << Quoted(attribute.LongName());
    if (!attribute.niceName.empty()) {
        out << " -nn " << Quoted(attribute.niceName);
    }
    if (const double* number = std::get_if<double>(&attribute.defaultValue); number && *number != 0.0) {
        out << " -dv " << DecimalText(*number);
    }
    WriteNumberFlag(out, "-min", attribute.minimum);
    WriteNumberFlag(out, "-max", attribute.maximum);
    WriteNumberFlag(out, "-smn", attribute.softMinimum);
    WriteNumberFlag(out, "-smx", attribute.softMaximum);
    if (attribute.Kind() == AttributeKind::Enum) {
        WriteEnumFields(out, attribute);
    }
    if (attribute.Parent()) {
        out << " -p " << Quoted(attribute.Parent()->LongName());
    }
    if (attribute.givenType.empty()) {
        WriteType(out, attribute);
    } else {
        out << ' ' << attribute.givenType;
    }
    if (!attribute.Children().empty() && !attribute.HasImpliedChildren()) {
        out << " -nc " << attribute.Children().size();
    }
    std::vector<std::string> texts{out.str()};
    if (attribute.HasImpliedChildren()) {
        return texts;
    }
    for (const auto& child : attribute.Children()) {
        const std::vector<std::string> below = AddAttrTexts(*child);
        texts.insert(texts.end(), below.begin(), below.end());
    }
    return texts;
}

std::string RequiresText(const std::string& plugin, const std::string& version,
                         const std::vector<std::string>& nodeTypes,
                         const std::vector<std::string>& dataTypes) {
    std::string statement = "requires";
    for (const std::string& type : nodeTypes) {
        statement += " -nodeType " + Quoted(type);
    }
    for (const std::string& type : dataTypes) {
        statement += " -dataType " + Quoted(type);
    }
    return statement + " " + Quoted(plugin) + " " + Quoted(version);
}

} // namespace lightbox::ascii
