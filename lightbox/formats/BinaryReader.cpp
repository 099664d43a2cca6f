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
#include "scene/DataType.h"
#include "scene/DataValue.h"
#include "scene/Scene.h"
#include "scene/SceneError.h"
#include "scene/ScopeExit.h"
#include "text/Quoted.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace lightbox {
namespace {

/// Limits the nesting of compound attributes against damaged files. Real attributes are far below.
constexpr int MAX_ATTRIBUTE_DEPTH = 16;
constexpr std::size_t MIN_TEXT_BYTES = 8; ///< a text's smallest size: its length prefix

std::string TakeText(ChunkReader& content) {
    return std::string(content.Text());
}

std::vector<std::string> TakeTexts(ChunkReader& content) {
    std::vector<std::string> texts;
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
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

/// True when the attribute has a data type of a plug-in that is not loaded.
bool HasUnknownType(const Attribute& attribute) {
    return attribute.Kind() == AttributeKind::PluginData && attribute.dataTypeId == 0;
}

/// Has a plug-in read its value. Returns false when it cannot read all of it.
bool ReadsWhole(DataValue& value, std::string_view bytes) {
    MemoryStream stream(bytes);
    try {
        return static_cast<bool>(value.Data().readBinary(stream, static_cast<unsigned>(bytes.size())));
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

void BinaryReader::Read(std::string& bytes) {
    ChunkFile file(bytes, [this](const std::string& fault) { builder_.ReportFault(fault); });
    while (const std::optional<Chunk> chunk = file.Next()) {
        ReadChunk(*chunk);
    }
}

void BinaryReader::ReadChunk(const Chunk& chunk) {
    const std::string name =
        "The chunk '" + std::string(chunk.type) + "' at byte " + std::to_string(chunk.position);
    if (!chunk.IsWhole()) {
        const bool isNode =
            chunk.type == binary::NODE || chunk.type == binary::EDIT || chunk.type == binary::DEFAULT_NODE;
        builder_.ReportFault(name + (chunk.isCut ? " is cut off" : " is damaged") +
                             (isNode ? ". What is whole of its node is read." : " and was not read."));
        if (!isNode) {
            return;
        }
    }
    ChunkReader content(chunk);
    try {
        ReadContent(chunk, content);
    } catch (const FileError& error) {
        builder_.ReportFault(name + ": " + error.what());
    } catch (const std::bad_alloc&) {
        throw; // to read on with hardly any memory would only fail again
    } catch (const std::exception& error) {
        builder_.ReportFault(error.what());
    }
}

void BinaryReader::ReadContent(const Chunk& chunk, ChunkReader& content) {
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
        const std::string type(chunk.type);
        builder_.WarnOnce("chunk " + type, "Unknown chunk '" + type + "' from a later version is skipped.");
    }
}

bool BinaryReader::IsDamaged(ChunkReader& content, const std::string& what) {
    const bool isDamaged = content.ReadDamage();
    if (isDamaged) {
        builder_.ReportFault(what + " is damaged and was not read.");
    }
    return isDamaged;
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
    // Older files end here.
    FileReference given;
    for (std::string FileReference::*text :
         {&FileReference::givenPath, &FileReference::options, &FileReference::type, &FileReference::prefix,
          &FileReference::further}) {
        given.*text = content.AtEnd() ? std::string() : TakeText(content);
    }
    references_.NoteStatement(references_.Add(path, nameSpace, name, isDeferred).name, given);
}

void BinaryReader::ReadRequirement(ChunkReader& content) {
    const std::string plugin = TakeText(content);
    const std::string version = TakeText(content);
    const std::vector<std::string> nodeTypes = TakeTexts(content);
    const std::vector<std::string> dataTypes = TakeTexts(content);
    builder_.Require(plugin, version, ascii::RequiresText(plugin, version, nodeTypes, dataTypes));
}

void BinaryReader::ReadNode(ChunkReader& content) {
    builder_.Select({});
    const std::string type = TakeText(content);
    const std::string name = TakeText(content);
    const std::string parent = TakeText(content);
    const std::uint8_t flags = content.Byte();
    const std::string uuid = TakeText(content);
    // All the rest hangs on the head, so a damaged one is used as far as it makes sense.
    const bool isDamaged = content.ReadDamage();
    const std::shared_ptr<Node> node = builder_.CreateNode(type, name, parent, flags & binary::SHARED_NODE);
    const ScopeExit lock([&] { node->locked = node->locked || flags & binary::LOCKED_NODE; });
    if (!isDamaged) {
        builder_.SetUuid(*node, uuid);
    }
    ReadBody(content, node);
}

void BinaryReader::ReadExisting(ChunkReader& content) {
    builder_.Select({});
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
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
        const std::shared_ptr<Attribute> attribute = ReadAttribute(content, 0);
        if (IsDamaged(content, "The attribute \"" + attribute->LongName() + "\"")) {
            continue;
        }
        if (!node || HasUnknownType(*attribute)) {
            KeepAttribute(*attribute);
        } else if (!builder_.IsForeign(*node)) {
            node->AddDynamicAttribute(attribute);
        }
    }
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
        ReadSetting(content, node);
    }
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
        ReadStatement(content);
    }
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
        ReadValue(content, node);
    }
}

void BinaryReader::ReadStatement(ChunkReader& content) {
    const std::string statement = TakeText(content);
    if (!IsDamaged(content, "A statement that was kept with the node")) {
        builder_.RunStatement(statement);
    }
}

void BinaryReader::ReadValue(ChunkReader& content, const std::shared_ptr<Node>& node) {
    PlugSetting setting;
    setting.path = TakeText(content);
    setting.type = TakeText(content);
    setting.hasValue = true;
    ApplyBytes(node, setting, content.TextSoFar());
}

std::shared_ptr<Attribute> BinaryReader::ReadAttribute(ChunkReader& content, int depth) {
    const std::string longName = TakeText(content);
    const std::string shortName = TakeText(content);
    const std::string niceName = TakeText(content);
    const std::string type = TakeText(content);
    if (depth > MAX_ATTRIBUTE_DEPTH || !AttributeFactory::IsName(longName) ||
        !AttributeFactory::IsName(shortName)) {
        throw FileError("The attribute '" + longName + "' has an invalid name or is nested too deeply.");
    }
    std::shared_ptr<Attribute> attribute = AttributeFactory::Make(scene_, type, longName, shortName);
    if (!attribute) {
        attribute = AttributeFactory::MakeUnknown(type, longName, shortName);
    }
    attribute->niceName = niceName;
    const std::uint32_t allFlags = content.Count();
    attribute->indexMatters = !(allFlags & binary::ANY_INDEX);
    std::uint32_t flags = allFlags;
    for (bool Attribute::*flag : binary::ATTRIBUTE_FLAGS) {
        (*attribute).*flag = flags & 1;
        flags >>= 1;
    }
    const double number = content.Number();
    if (attribute->IsNumber()) {
        attribute->defaultValue = number;
    }
    attribute->minimum = TakeOptional(content);
    attribute->maximum = TakeOptional(content);
    attribute->softMinimum = TakeOptional(content);
    attribute->softMaximum = TakeOptional(content);
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
        const std::string field = TakeText(content);
        const double value = content.Number();
        attribute->enumFields.emplace_back(field, std::abs(value) < 1e9 ? static_cast<int>(value) : 0);
    }
    for (std::uint32_t i = content.CountOf(MIN_TEXT_BYTES); i > 0; --i) {
        attribute->AddChild(ReadAttribute(content, depth + 1));
    }
    if (allFlags & binary::HAS_TEXTS) {
        attribute->furtherFlags = TakeText(content);
        attribute->givenType = TakeText(content);
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
    if (kind == binary::ValueKind::Data) {
        // The plug-in can tell what of a damaged value is whole.
        ApplyBytes(node, setting, content.TextSoFar());
        content.ReadDamage();
        return;
    }
    if (kind == binary::ValueKind::Texts) {
        setting.texts = TakeTexts(content);
    } else if (setting.hasValue) {
        for (std::uint32_t i = content.CountOf(sizeof(double)); i > 0; --i) {
            setting.numbers.push_back(content.Number());
        }
    }
    if (!IsDamaged(content, "The value of \"" + setting.path + "\"")) {
        ApplyOrKeep(node, setting);
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
    if (node && builder_.IsForeign(*node)) {
        return;
    }
    const auto type = scene_.types().FindDataType(setting.type);
    if (!type) {
        builder_.KeepForCurrent({setting.path, setting.type, std::string(bytes)}, "data type " + setting.type,
                                "Unknown data type '" + setting.type +
                                    "'; its values are kept and written back.");
        return;
    }
    const std::string value = "The value of \"" + setting.path + "\", of type \"" + setting.type + "\", ";
    PlugSetting filled = setting;
    filled.data = TypeRegistry::MakeData(type);
    if (!filled.data || bytes.size() > std::numeric_limits<unsigned>::max()) {
        builder_.ReportFault(value + "cannot be read.");
        return;
    }
    const bool isRead = ReadsWhole(*filled.data, bytes);
    // A damaged value is stored too: the plug-in may have read a part of it.
    try {
        ApplyOrKeep(node, filled);
    } catch (const FileError&) {
        // The plug-in cannot write it as text.
        builder_.KeepForCurrent({setting.path, setting.type, std::string(bytes)}, "attribute " + setting.path,
                                "Unknown attribute '" + setting.path + "'; it is kept and written back.");
    }
    if (!isRead) {
        builder_.ReportFault(value + "could not be read completely.");
    }
}

} // namespace lightbox
