#include "formats/BinaryReader.h"

#include "formats/AsciiStatements.h"
#include "formats/AttributeFactory.h"
#include "formats/BinaryFormat.h"
#include "formats/ChunkFile.h"
#include "formats/FileError.h"
#include "formats/MemoryStream.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PreservedContent.h"
#include "formats/ReferenceList.h"
#include "formats/SceneBuilder.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/DataType.h"
#include "scene/DataValue.h"
#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "text/Quoted.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lightbox {
namespace {

/// Levels of compound attributes; no real one comes near.
constexpr int MAX_ATTRIBUTE_DEPTH = 16;
constexpr std::size_t TEXT_BYTES = 8; ///< the least that a text takes

std::string TakeText(ChunkReader& content) {
    return std::string(content.Text());
}

std::vector<std::string> TakeTexts(ChunkReader& content) {
    std::vector<std::string> texts;
    for (std::uint32_t i = content.CountOf(TEXT_BYTES); i > 0; --i) {
        texts.push_back(TakeText(content));
    }
    return texts;
}

std::optional<bool> TakeFlag(ChunkReader& content) {
    const auto state = static_cast<binary::FlagState>(content.Byte());
    return state == binary::FlagState::On    ? std::optional<bool>(true)
           : state == binary::FlagState::Off ? std::optional<bool>(false)
                                             : std::nullopt;
}

std::optional<double> TakeOptional(ChunkReader& content) {
    const bool isThere = content.Byte() != 0;
    const double number = content.Number();
    return isThere ? std::optional<double>(number) : std::nullopt;
}

/// Whether it, or an attribute below it, is of a data type that no loaded plug-in has.
bool HasUnknownType(const Attribute& attribute) {
    return (attribute.Kind() == AttributeKind::PluginData && attribute.dataTypeId == 0) ||
           std::any_of(attribute.Children().begin(), attribute.Children().end(),
                       [](const auto& child) { return HasUnknownType(*child); });
}

} // namespace

void BinaryReader::Read(std::string_view bytes) {
    try {
        ChunkFile file(bytes);
        while (const std::optional<Chunk> chunk = file.Next()) {
            ReadChunk(*chunk);
        }
    } catch (const FileError& error) {
        builder_.ReportFault(std::string(error.what()) + " What came before was read.");
    }
}

void BinaryReader::ReadChunk(const Chunk& chunk) {
    ChunkReader content(chunk.content);
    try {
        if (chunk.type == binary::HEAD) {
            ReadHead(content);
        } else if (chunk.type == binary::REFERENCE) {
            ReadReference(content);
        } else if (chunk.type == binary::REQUIREMENT) {
            ReadRequirement(content);
        } else if (chunk.type == binary::UNITS) {
            const std::string linear = TakeText(content);
            const std::string angular = TakeText(content);
            builder_.SetUnits(linear, angular, TakeText(content));
        } else if (chunk.type == binary::INFO) {
            const std::string key = TakeText(content);
            builder_.SetFileInfo(key, TakeText(content));
        } else if (chunk.type == binary::NODE) {
            ReadNode(content);
        } else if (chunk.type == binary::CONFIGURATION) {
            builder_.RunConfiguration(TakeText(content));
        } else if (chunk.type == binary::EDIT || chunk.type == binary::DEFAULT_NODE) {
            ReadExisting(content);
        } else if (chunk.type == binary::CONNECTION || chunk.type == binary::BROKEN) {
            ReadConnection(content, chunk.type == binary::BROKEN);
        } else if (chunk.type == binary::STATEMENT) {
            builder_.RunStatement(TakeText(content));
        } else if (chunk.type != binary::DONE) {
            builder_.WarnOnce("chunk " + std::string(chunk.type),
                              "Unknown chunk '" + std::string(chunk.type) +
                                  "', from a later version, is passed over.");
        }
    } catch (const FileError& error) {
        builder_.ReportFault("In a chunk '" + std::string(chunk.type) + "': " + error.what());
    } catch (const SceneError& error) {
        builder_.ReportFault(error.what());
    }
}

void BinaryReader::ReadHead(ChunkReader& content) {
    const std::uint32_t version = content.Count();
    if (version > binary::VERSION) {
        builder_.ReportFault("The file is of version " + std::to_string(version) +
                             "; this program reads version " + std::to_string(binary::VERSION) + ".");
    }
}

void BinaryReader::ReadReference(ChunkReader& content) {
    const std::string path = TakeText(content);
    const std::string nameSpace = TakeText(content);
    const std::string name = TakeText(content);
    const bool isDeferred = content.Byte() != 0;
    // Scenes from before have no more.
    const std::string givenPath = content.AtEnd() ? std::string() : TakeText(content);
    const std::string options = content.AtEnd() ? std::string() : TakeText(content);
    ReferenceList& references = host_.files().references();
    references.NoteStatement(references.Add(path, nameSpace, name, isDeferred).name, givenPath, options);
}

void BinaryReader::ReadRequirement(ChunkReader& content) {
    const std::string plugin = TakeText(content);
    const std::string version = TakeText(content);
    const std::vector<std::string> nodeTypes = TakeTexts(content);
    const std::vector<std::string> dataTypes = TakeTexts(content);
    builder_.Require(plugin, version, ascii::RequiresText(plugin, version, nodeTypes, dataTypes));
}

void BinaryReader::ReadNode(ChunkReader& content) {
    const std::string type = TakeText(content);
    const std::string name = TakeText(content);
    const std::string parent = TakeText(content);
    const std::uint8_t flags = content.Byte();
    const std::string uuid = TakeText(content);
    const std::shared_ptr<Node> node = builder_.CreateNode(type, name, parent, flags & binary::SHARED_NODE);
    builder_.SetUuid(*node, uuid);
    ReadBody(content, node);
    node->locked = node->locked || flags & binary::LOCKED_NODE;
}

void BinaryReader::ReadExisting(ChunkReader& content) {
    const std::string name = TakeText(content);
    builder_.Select(name);
    ReadBody(content, builder_.Current());
}

void BinaryReader::ReadConnection(ChunkReader& content, bool isBroken) {
    const std::string source = TakeText(content);
    const std::string destination = TakeText(content);
    if (isBroken) {
        builder_.RunStatement("disconnectAttr " + Quoted(source) + " " + Quoted(destination));
    } else {
        builder_.Connect(source, destination, TakeText(content));
    }
}

void BinaryReader::ReadBody(ChunkReader& content, const std::shared_ptr<Node>& node) {
    for (std::uint32_t i = content.CountOf(TEXT_BYTES); i > 0; --i) {
        const std::shared_ptr<Attribute> attribute = ReadAttribute(content, 0);
        if (!node || HasUnknownType(*attribute)) {
            KeepAttribute(*attribute);
        } else if (!builder_.IsForeign(*node)) {
            node->AddDynamicAttribute(attribute);
        }
    }
    for (std::uint32_t i = content.CountOf(TEXT_BYTES); i > 0; --i) {
        ReadSetting(content, node);
    }
    for (const std::string& statement : TakeTexts(content)) {
        builder_.RunStatement(statement);
    }
    for (std::uint32_t i = content.CountOf(TEXT_BYTES); i > 0; --i) {
        PlugSetting setting;
        setting.path = TakeText(content);
        setting.type = TakeText(content);
        setting.hasValue = true;
        const std::string_view bytes = content.Text();
        if (node) {
            ApplyBytes(node, setting, bytes);
        }
    }
}

std::shared_ptr<Attribute> BinaryReader::ReadAttribute(ChunkReader& content, int depth) {
    const std::string longName = TakeText(content);
    const std::string shortName = TakeText(content);
    const std::string niceName = TakeText(content);
    const std::string type = TakeText(content);
    if (depth > MAX_ATTRIBUTE_DEPTH || !AttributeFactory::IsName(longName) ||
        !AttributeFactory::IsName(shortName)) {
        throw FileError("The attribute '" + longName + "' cannot be.");
    }
    std::shared_ptr<Attribute> attribute = AttributeFactory::Make(host_.scene(), type, longName, shortName);
    if (!attribute) {
        attribute = std::make_shared<Attribute>(longName, shortName, AttributeKind::PluginData);
        attribute->dataTypeName = type;
    }
    attribute->niceName = niceName;
    const std::uint32_t flags = content.Count();
    attribute->readable = flags & binary::READABLE;
    attribute->writable = flags & binary::WRITABLE;
    attribute->storable = flags & binary::STORABLE;
    attribute->connectable = flags & binary::CONNECTABLE;
    attribute->keyable = flags & binary::KEYABLE;
    attribute->hidden = flags & binary::HIDDEN;
    attribute->channelBox = flags & binary::CHANNEL_BOX;
    attribute->multi = flags & binary::MULTI;
    attribute->usedAsColor = flags & binary::COLOR;
    const double number = content.Number();
    if (attribute->IsNumber()) {
        attribute->defaultValue = number;
    }
    attribute->minimum = TakeOptional(content);
    attribute->maximum = TakeOptional(content);
    attribute->softMinimum = TakeOptional(content);
    attribute->softMaximum = TakeOptional(content);
    for (std::uint32_t i = content.CountOf(TEXT_BYTES); i > 0; --i) {
        const std::string field = TakeText(content);
        const double value = content.Number();
        attribute->enumFields.emplace_back(field, std::abs(value) < 1e9 ? static_cast<int>(value) : 0);
    }
    for (std::uint32_t i = content.CountOf(TEXT_BYTES); i > 0; --i) {
        attribute->AddChild(ReadAttribute(content, depth + 1));
    }
    return attribute;
}

void BinaryReader::ReadSetting(ChunkReader& content, const std::shared_ptr<Node>& node) {
    PlugSetting setting;
    setting.path = TakeText(content);
    setting.locked = TakeFlag(content);
    setting.keyable = TakeFlag(content);
    setting.channelBox = TakeFlag(content);
    setting.type = TakeText(content);
    const auto kind = static_cast<binary::ValueKind>(content.Byte());
    setting.hasValue = kind != binary::ValueKind::None;
    setting.isBoolean = kind == binary::ValueKind::Booleans;
    std::string_view bytes;
    if (kind == binary::ValueKind::Data) {
        bytes = content.Text();
    } else if (kind == binary::ValueKind::Texts) {
        setting.texts = TakeTexts(content);
    } else if (setting.hasValue) {
        for (std::uint32_t i = content.CountOf(sizeof(double)); i > 0; --i) {
            setting.numbers.push_back(content.Number());
        }
    }
    if (kind != binary::ValueKind::Data) {
        ApplyOrKeep(node, setting);
    } else if (node) {
        ApplyBytes(node, setting, bytes);
    }
}

void BinaryReader::ApplyOrKeep(const std::shared_ptr<Node>& node, const PlugSetting& setting) {
    try {
        if (node) {
            builder_.Apply(node, setting);
            return;
        }
    } catch (const UnknownAttributeError&) {
        // Kept below.
    } catch (const SceneError& error) {
        builder_.ReportFault(error.what());
        return;
    }
    builder_.KeepForCurrent(ascii::SettingText(setting), "attribute " + setting.path,
                            "Unknown attribute '" + setting.path + "'; it is kept and written back.");
}

void BinaryReader::KeepAttribute(const Attribute& attribute) {
    for (const std::string& text : ascii::AddAttrTexts(attribute)) {
        builder_.KeepForCurrent(text, "attribute " + attribute.LongName(),
                                "Unknown attribute '" + attribute.LongName() +
                                    "'; it is kept and written back.");
    }
}

void BinaryReader::ApplyBytes(const std::shared_ptr<Node>& node, const PlugSetting& setting,
                              std::string_view bytes) {
    if (builder_.IsForeign(*node)) {
        return;
    }
    const auto type = host_.scene().types().FindDataType(setting.type);
    if (!type || !node->FindAttribute(setting.path.substr(0, setting.path.find('[')))) {
        builder_.WarnOnce("data type " + setting.type,
                          "Unknown data type '" + setting.type + "'; its values are kept and written back.");
        host_.files().preserved().Of(*node).values.push_back(
            {setting.path, setting.type, std::string(bytes)});
        return;
    }
    PlugSetting filled = setting;
    filled.data = TypeRegistry::MakeData(type);
    if (!filled.data || bytes.size() > std::numeric_limits<unsigned>::max()) {
        builder_.ReportFault("The value of \"" + setting.path + "\", of type \"" + setting.type +
                             "\", cannot be read.");
        return;
    }
    MemoryStream stream(bytes);
    const bool isRead = filled.data->Data().readBinary(stream, static_cast<unsigned>(bytes.size()));
    // What a damaged value still yields is worth having.
    try {
        builder_.Apply(node, filled);
    } catch (const SceneError& error) {
        builder_.ReportFault(error.what());
    }
    if (!isRead) {
        builder_.ReportFault("The value of \"" + setting.path + "\", of type \"" + setting.type +
                             "\", could not be read whole.");
    }
}

} // namespace lightbox
