#include "formats/BinaryWriter.h"

#include "formats/BinaryFormat.h"
#include "formats/ChunkFile.h"
#include "formats/FileError.h"
#include "formats/PreservedContent.h"
#include "formats/SceneFiles.h"
#include "scene/DagNode.h"
#include "scene/DataValue.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"

#include <ostream>

namespace lightbox {
namespace {

binary::FlagState StateOf(const std::optional<bool>& flag) {
    return !flag ? binary::FlagState::Unset : *flag ? binary::FlagState::On : binary::FlagState::Off;
}

void PutTexts(ChunkWriter& chunk, const std::vector<std::string>& texts) {
    chunk.Count(static_cast<std::uint32_t>(texts.size()));
    for (const std::string& text : texts) {
        chunk.Text(text);
    }
}

void PutNumber(ChunkWriter& chunk, const std::optional<double>& number) {
    chunk.Byte(number ? 1 : 0);
    chunk.Number(number.value_or(0.0));
}

std::string NameOf(const Node& node) {
    return (node.isDefault ? ":" : "") + Scene::ShownName(node);
}

std::string PlugName(const Plug& plug) {
    return NameOf(*plug.node) + "." + plug.AttributeName(false);
}

/// Writes the last two lists of a body.
void PutPreserved(ChunkWriter& chunk, const PreservedContent::NodeContent& kept, const Node* node,
                  const SceneUnits& units) {
    // The statements come first: they may add the attributes that the values belong to.
    std::vector<std::string> statements = kept.statements;
    if (kept.units != units && !statements.empty()) {
        statements.insert(statements.begin(), kept.units.Statement());
        statements.push_back(units.Statement());
    }
    if (node && (!kept.lockFlags.empty() || (node->isDefault && node->locked))) {
        statements.push_back("lockNode -l " + std::string(node->locked ? "1" : "0") + kept.lockFlags);
    }
    PutTexts(chunk, statements);
    chunk.Count(static_cast<std::uint32_t>(kept.values.size()));
    for (const PreservedContent::BinaryValue& value : kept.values) {
        chunk.Text(value.path);
        chunk.Text(value.dataType);
        chunk.Text(value.bytes);
    }
}

std::uint32_t FlagsOf(const Attribute& attribute) {
    std::uint32_t bits = 0;
    std::uint32_t bit = 1;
    for (bool Attribute::*flag : binary::ATTRIBUTE_FLAGS) {
        bits |= attribute.*flag ? bit : 0;
        bit <<= 1;
    }
    const bool hasTexts = !attribute.furtherFlags.empty() || !attribute.givenType.empty();
    return bits | (hasTexts ? binary::HAS_TEXTS : 0) | (attribute.indexMatters ? 0 : binary::ANY_INDEX);
}

} // namespace

BinaryWriter::BinaryWriter(const SceneFiles& files, const Timeline& time, std::ostream& out)
    : files_(files)
    , time_(time)
    , out_(out)
    , preserved_(files.preserved()) {}

void BinaryWriter::Write(const SceneContent& content, const std::string& name) {
    ChunkFile::WriteSignature(out_);
    WriteHead(content, name);
    WriteReferences(content);
    WriteRequirements(content);
    for (const std::shared_ptr<Node>& node : content.nodes) {
        WriteNode(node);
    }
    if (content.isWhole) {
        ChunkWriter script;
        script.Text(SceneContent::ConfigurationScript(time_));
        ChunkFile::WriteChunk(out_, binary::CONFIGURATION, script.Bytes());
        WriteEdits(content);
        WriteDefaults(content);
    }
    WriteConnections(content);
    if (content.isWhole) {
        WritePreserved();
    }
    ChunkFile::WriteChunk(out_, binary::DONE, {});
}

void BinaryWriter::WriteHead(const SceneContent& content, const std::string& name) {
    ChunkWriter head;
    head.Count(binary::VERSION);
    head.Text("Lightbox");
    head.Text(name);
    ChunkFile::WriteChunk(out_, binary::HEAD, head.Bytes());

    ChunkWriter units;
    units.Text(files_.units().linear);
    units.Text(files_.units().angular);
    units.Text(UnitName(time_.Unit()));
    ChunkFile::WriteChunk(out_, binary::UNITS, units.Bytes());
    if (content.isWhole) {
        for (const auto& pair : SceneContent::FileInfo(files_)) {
            ChunkWriter info;
            info.Text(pair.first);
            info.Text(pair.second);
            ChunkFile::WriteChunk(out_, binary::INFO, info.Bytes());
        }
    }
}

void BinaryWriter::WriteReferences(const SceneContent& content) {
    for (const FileReference& reference : content.references) {
        ChunkWriter chunk;
        chunk.Text(reference.path);
        chunk.Text(reference.nameSpace);
        chunk.Text(reference.name);
        chunk.Byte(reference.isDeferred ? 1 : 0);
        chunk.Text(reference.givenPath);
        chunk.Text(reference.options);
        chunk.Text(reference.type);
        chunk.Text(reference.prefix);
        chunk.Text(reference.further);
        ChunkFile::WriteChunk(out_, binary::REFERENCE, chunk.Bytes());
    }
}

void BinaryWriter::WriteRequirements(const SceneContent& content) {
    for (const SceneContent::Requirement& required : content.requirements) {
        ChunkWriter chunk;
        chunk.Text(required.plugin);
        chunk.Text(required.version);
        PutTexts(chunk, required.nodeTypes);
        PutTexts(chunk, required.dataTypes);
        ChunkFile::WriteChunk(out_, binary::REQUIREMENT, chunk.Bytes());
    }
    for (const PreservedContent::Requirement& kept : preserved_.requirements) {
        ChunkWriter chunk;
        chunk.Text(kept.statement);
        ChunkFile::WriteChunk(out_, binary::STATEMENT, chunk.Bytes());
    }
}

void BinaryWriter::WriteNode(const std::shared_ptr<Node>& node) {
    ChunkWriter chunk;
    chunk.Text(node->Type().Name());
    chunk.Text(node->Name());
    const auto* dag = dynamic_cast<const DagNode*>(node.get());
    chunk.Text(dag && !dag->Parent()->IsWorld() ? Scene::ShownName(*dag->Parent()) : std::string());
    chunk.Byte(static_cast<std::uint8_t>((node->isShared ? binary::SHARED_NODE : 0) |
                                         (node->locked ? binary::LOCKED_NODE : 0)));
    chunk.Text(node->Uuid());
    PutBody(chunk, node);
    ChunkFile::WriteChunk(out_, binary::NODE, chunk.Bytes());
}

void BinaryWriter::PutBody(ChunkWriter& chunk, const std::shared_ptr<Node>& node,
                           std::vector<PlugSetting> settings) const {
    const auto& attributes = node->DynamicAttributes();
    chunk.Count(static_cast<std::uint32_t>(attributes.size()));
    for (const auto& attribute : attributes) {
        PutAttribute(chunk, *attribute);
    }
    const std::vector<PlugSetting> own = SceneContent::Settings(node, files_.units());
    settings.insert(settings.end(), own.begin(), own.end());
    chunk.Count(static_cast<std::uint32_t>(settings.size()));
    for (const PlugSetting& setting : settings) {
        PutSetting(chunk, setting);
    }
    static const PreservedContent::NodeContent nothing;
    const PreservedContent::NodeContent* kept = preserved_.Find(*node);
    PutPreserved(chunk, kept ? *kept : nothing, node.get(), files_.units());
}

void BinaryWriter::PutAttribute(ChunkWriter& chunk, const Attribute& attribute) {
    chunk.Text(attribute.LongName());
    chunk.Text(attribute.ShortName());
    chunk.Text(attribute.niceName);
    chunk.Text(attribute.IsCompound() ? "compound" : attribute.TypeName());
    chunk.Count(FlagsOf(attribute));
    const double* number = std::get_if<double>(&attribute.defaultValue);
    chunk.Number(number ? *number : 0.0);
    PutNumber(chunk, attribute.minimum);
    PutNumber(chunk, attribute.maximum);
    PutNumber(chunk, attribute.softMinimum);
    PutNumber(chunk, attribute.softMaximum);
    chunk.Count(static_cast<std::uint32_t>(attribute.enumFields.size()));
    for (const auto& field : attribute.enumFields) {
        chunk.Text(field.first);
        chunk.Number(field.second);
    }
    chunk.Count(static_cast<std::uint32_t>(attribute.Children().size()));
    for (const auto& child : attribute.Children()) {
        PutAttribute(chunk, *child);
    }
    if (FlagsOf(attribute) & binary::HAS_TEXTS) {
        chunk.Text(attribute.furtherFlags);
        chunk.Text(attribute.givenType);
    }
}

void BinaryWriter::PutSetting(ChunkWriter& chunk, const PlugSetting& setting) {
    chunk.Text(setting.path);
    for (const auto& flag : {setting.locked, setting.keyable, setting.channelBox}) {
        chunk.Byte(static_cast<std::uint8_t>(StateOf(flag)));
    }
    chunk.Text(setting.type);
    const auto put = [&](binary::ValueKind kind) { chunk.Byte(static_cast<std::uint8_t>(kind)); };
    if (!setting.hasValue) {
        put(binary::ValueKind::None);
    } else if (setting.data) {
        put(binary::ValueKind::Data);
        MPxData& data = setting.data->Data();
        if (!chunk.Streamed(
                [&](std::ostream& out) { return data.writeBinary(out).statusCode() == MS::kSuccess; })) {
            throw FileError("The value of \"" + setting.path + "\", of type \"" + setting.type +
                            "\", could not be written.");
        }
    } else if (setting.type == "string" || setting.type == "stringArray" || setting.type == "polyFaces") {
        put(binary::ValueKind::Texts);
        PutTexts(chunk, setting.texts);
    } else {
        put(setting.isBoolean ? binary::ValueKind::Booleans : binary::ValueKind::Numbers);
        chunk.Count(static_cast<std::uint32_t>(setting.numbers.size()));
        for (const double number : setting.numbers) {
            chunk.Number(number);
        }
    }
}

void BinaryWriter::WriteEdits(const SceneContent& content) {
    for (const ReferenceEdit& edit : content.edits) {
        ChunkWriter chunk;
        chunk.Text(NameOf(*edit.node));
        chunk.Count(static_cast<std::uint32_t>(edit.addedAttributes.size()));
        for (const auto& attribute : edit.addedAttributes) {
            PutAttribute(chunk, *attribute);
        }
        chunk.Count(static_cast<std::uint32_t>(edit.settings.size()));
        for (const PlugSetting& setting : edit.settings) {
            PutSetting(chunk, setting);
        }
        chunk.Count(0);
        chunk.Count(0);
        ChunkFile::WriteChunk(out_, binary::EDIT, chunk.Bytes());
    }
}

void BinaryWriter::WriteDefaults(const SceneContent& content) {
    for (const std::shared_ptr<Node>& node : content.defaults) {
        ChunkWriter chunk;
        chunk.Text(NameOf(*node));
        std::vector<PlugSetting> settings;
        if (node->Type().Name() == "time") {
            PlugSetting now;
            now.path = "o";
            now.hasValue = true;
            now.numbers = {time_.CurrentTime()};
            settings.push_back(std::move(now));
        }
        PutBody(chunk, node, std::move(settings));
        ChunkFile::WriteChunk(out_, binary::DEFAULT_NODE, chunk.Bytes());
    }
}

void BinaryWriter::WriteConnections(const SceneContent& content) {
    const auto write = [this](std::string_view type, const std::string& source,
                              const std::string& destination, const std::string& flags) {
        ChunkWriter chunk;
        chunk.Text(source);
        chunk.Text(destination);
        chunk.Text(flags);
        ChunkFile::WriteChunk(out_, type, chunk.Bytes());
    };
    for (const Connection& connection : content.broken) {
        write(binary::BROKEN, PlugName(connection.source), PlugName(connection.destination), {});
    }
    for (const Connection& connection : content.connections) {
        const auto [to, flags] = SceneContent::Target(connection);
        write(binary::CONNECTION, PlugName(connection.source), PlugName(to), flags);
    }
    if (!content.isWhole) {
        return;
    }
    for (const PreservedContent::Connection& kept : preserved_.connections) {
        const auto source = kept.source.lock();
        const auto destination = kept.destination.lock();
        if (source && destination && source->InScene() && destination->InScene()) {
            write(binary::CONNECTION, NameOf(*source) + "." + kept.sourceAttribute,
                  NameOf(*destination) + "." + kept.destinationAttribute, kept.flags);
        }
    }
}

void BinaryWriter::WritePreserved() {
    for (const PreservedContent::DefaultBlock& block : preserved_.defaultBlocks) {
        ChunkWriter chunk;
        chunk.Text(block.node);
        chunk.Count(0);
        chunk.Count(0);
        PutPreserved(chunk, block.content, nullptr, files_.units());
        ChunkFile::WriteChunk(out_, binary::DEFAULT_NODE, chunk.Bytes());
    }
    for (const auto* texts : {&preserved_.headComments, &preserved_.headStatements, &preserved_.statements}) {
        for (const std::string& statement : *texts) {
            ChunkWriter chunk;
            chunk.Text(statement);
            ChunkFile::WriteChunk(out_, binary::STATEMENT, chunk.Bytes());
        }
    }
}

} // namespace lightbox
