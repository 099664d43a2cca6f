#include "formats/AsciiWriter.h"

#include "formats/AsciiStatements.h"
#include "formats/FileError.h"
#include "formats/PreservedContent.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/DagNode.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"
#include "text/Quoted.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cctype>
#include <ostream>

namespace lightbox {
namespace {

constexpr char INDENT[] = "\t";

std::string Now() {
    return QLocale::c().toString(QDateTime::currentDateTime(), "ddd, MMM dd, yyyy hh:mm:ss AP").toStdString();
}

const char* TypeOfFile(const std::string& path) {
    return SceneFiles::FormatName(SceneFiles::FormatOf(path, SceneFormat::MayaAscii));
}

/// Returns a name bare, as Maya writes it here, or in quotes when it has other characters than a plain name.
std::string QuotedIfNeeded(const std::string& name) {
    const bool isPlain = std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return c < 0x80 && (std::isalnum(c) || c == '_' || c == ':' || c == '|');
    });
    return isPlain && !name.empty() ? name : Quoted(name);
}

/// Puts the statement that sets the ranges in front of what the scene's script node holds.
void PutRanges(std::vector<PlugSetting>& settings, const std::string& ranges) {
    const auto found = std::find_if(settings.begin(), settings.end(),
                                    [](const PlugSetting& setting) { return setting.path == "b"; });
    if (found != settings.end() && !found->texts.empty()) {
        const std::string rest = found->texts.front();
        found->texts = {rest.empty() ? ranges : ranges + ";\n" + rest};
        return;
    }
    PlugSetting script;
    script.path = "b";
    script.type = "string";
    script.hasValue = true;
    script.texts = {ranges};
    settings.insert(settings.begin(), script);
}

} // namespace

AsciiWriter::AsciiWriter(const SceneFiles& files, const Timeline& time, std::ostream& out)
    : files_(files)
    , time_(time)
    , out_(out)
    , preserved_(files.preserved()) {}

void AsciiWriter::Write(const SceneContent& content, const std::string& name) {
    WriteHead(content, name);
    for (const std::shared_ptr<Node>& node : content.nodes) {
        WriteNode(node);
    }
    if (content.isWhole) {
        const bool hasScript = std::any_of(content.nodes.begin(), content.nodes.end(), [](const auto& node) {
            return SceneContent::IsSceneScript(*node);
        });
        if (!hasScript) {
            WriteSceneScript();
        }
        WriteEdits(content);
        WriteDefaults(content);
    }
    WriteConnections(content);
    if (content.isWhole) {
        for (const std::string& statement : preserved_.statements) {
            out_ << statement << ";\n";
        }
    }
    out_ << "// End of " << name << "\n";
}

void AsciiWriter::WriteHead(const SceneContent& content, const std::string& name) {
    out_ << "//Maya ASCII 2018 scene\n"
         << "//Name: " << name << "\n"
         << "//Last modified: " << Now() << "\n"
         << "//Codeset: UTF-8\n";
    if (content.isWhole) {
        for (const std::string& comment : preserved_.headComments) {
            out_ << comment << "\n";
        }
    }
    WriteReferences(content);
    WriteRequirements(content);
    out_ << files_.units().Statement() << " -t " << UnitName(time_.Unit()) << ";\n";
    if (content.isWhole) {
        for (const auto& pair : SceneContent::FileInfo(files_)) {
            out_ << "fileInfo " << Quoted(pair.first) << ' ' << Quoted(pair.second) << ";\n";
        }
    }
}

void AsciiWriter::WriteReferences(const SceneContent& content) {
    // As in Maya, all announcements (-rdi) come before the statements that read the files (-r).
    for (const char* instruction : {"-rdi 1", "-r"}) {
        for (const FileReference& reference : content.references) {
            const bool isReading = instruction[2] == '\0';
            const bool hasPrefix = !reference.prefix.empty();
            out_ << "file " << instruction << (hasPrefix ? " -rpr " : " -ns ")
                 << Quoted(hasPrefix ? reference.prefix : reference.nameSpace);
            // The announcement tells whether the file is left unloaded; the other statement always waits for
            // it.
            if (isReading || reference.isDeferred) {
                out_ << " -dr 1";
            }
            out_ << " -rfn " << Quoted(reference.name) << reference.further;
            if (!reference.options.empty()) {
                out_ << " -op " << Quoted(reference.options);
            }
            out_ << " -typ " << Quoted(reference.type.empty() ? TypeOfFile(reference.path) : reference.type)
                 << " " << Quoted(reference.path) << ";\n";
        }
        if (instruction[2] != '\0' && content.isWhole) {
            for (const std::string& statement : preserved_.headStatements) {
                out_ << statement << ";\n";
            }
        }
    }
}

void AsciiWriter::WriteRequirements(const SceneContent& content) {
    out_ << "requires maya \"2018\";\n";
    const auto textOf = [](const SceneContent::Requirement& required) {
        return ascii::RequiresText(required.plugin, required.version, required.nodeTypes, required.dataTypes);
    };
    for (const SceneContent::Requirement& required : content.requirements) {
        out_ << textOf(required) << ";\n";
    }
    for (const PreservedContent::Requirement& kept : preserved_.requirements) {
        const bool isWritten =
            std::any_of(content.requirements.begin(), content.requirements.end(), [&](const auto& required) {
                return required.plugin == kept.plugin &&
                       (!kept.isFurther || textOf(required) == kept.statement);
            });
        if (!isWritten) {
            out_ << kept.statement << ";\n";
        }
    }
}

std::string AsciiWriter::NameOf(const Node& node) {
    return (node.isDefault ? ":" : "") + Scene::ShownName(node);
}

std::string AsciiWriter::PlugName(const Plug& plug) {
    return Quoted(NameOf(*plug.node) + "." + plug.AttributeName(false));
}

void AsciiWriter::WriteNode(const std::shared_ptr<Node>& node) {
    out_ << "createNode " << node->Type().Name() << (node->isShared ? " -s" : "") << " -n "
         << Quoted(node->Name());
    const auto* dag = dynamic_cast<const DagNode*>(node.get());
    if (dag && !dag->Parent()->IsWorld()) {
        out_ << " -p " << Quoted(Scene::ShownName(*dag->Parent()));
    }
    out_ << ";\n" << INDENT << "rename -uid \"" << node->Uuid() << "\";\n";
    WriteNodeBody(node);
}

void AsciiWriter::WriteNodeBody(const std::shared_ptr<Node>& node) {
    static const PreservedContent::NodeContent nothing;
    const PreservedContent::NodeContent* const found = preserved_.Find(*node);
    const PreservedContent::NodeContent& kept = found ? *found : nothing;
    for (const auto& attribute : node->DynamicAttributes()) {
        ascii::WriteAddAttr(out_, *attribute, INDENT);
    }
    // Attributes come before values, also those that are kept.
    WriteStatements(kept, true);
    std::vector<PlugSetting> settings = SceneContent::Settings(node, files_.units());
    if (SceneContent::IsSceneScript(*node)) {
        PutRanges(settings, SceneContent::ConfigurationScript(time_));
    }
    for (const PlugSetting& setting : settings) {
        out_ << INDENT;
        ascii::WriteSetting(out_, setting);
    }
    WritePreserved(kept);
    if (node->locked || !kept.lockFlags.empty()) {
        out_ << INDENT << "lockNode -l " << (node->locked ? 1 : 0)
             << (kept.lockFlags.empty() ? " " : kept.lockFlags) << ";\n";
    }
}

void AsciiWriter::WritePreserved(const PreservedContent::NodeContent& kept) {
    if (!kept.values.empty()) {
        throw FileError(
            "The scene holds data of type \"" + kept.values.front().dataType +
            "\" in the binary form, which only its plug-in can turn into text. Load the plug-in and "
            "open the scene again, or save it as lightboxBinary.");
    }
    const bool isInOtherUnits = kept.units != files_.units();
    const bool hasNumbers =
        std::any_of(kept.statements.begin(), kept.statements.end(),
                    [](const std::string& statement) { return statement.compare(0, 7, "setAttr") == 0; });
    if (isInOtherUnits && hasNumbers) {
        out_ << INDENT << kept.units.Statement() << ";\n";
    }
    WriteStatements(kept, false);
    if (isInOtherUnits && hasNumbers) {
        out_ << INDENT << files_.units().Statement() << ";\n";
    }
}

void AsciiWriter::WriteStatements(const PreservedContent::NodeContent& kept, bool areAttributes) {
    for (const std::string& statement : kept.statements) {
        if ((statement.compare(0, 7, "addAttr") == 0) == areAttributes) {
            out_ << INDENT << statement << ";\n";
        }
    }
}

void AsciiWriter::WriteSceneScript() {
    out_ << "createNode script -n " << Quoted(SceneContent::SCENE_SCRIPT) << ";\n"
         << INDENT << "setAttr \".b\" -type \"string\" " << Quoted(SceneContent::ConfigurationScript(time_))
         << ";\n"
         << INDENT << "setAttr \".st\" 6;\n";
}

void AsciiWriter::WriteEdits(const SceneContent& content) {
    for (const ReferenceEdit& edit : content.edits) {
        out_ << "select -ne " << Quoted(NameOf(*edit.node)) << ";\n";
        for (const auto& attribute : edit.addedAttributes) {
            ascii::WriteAddAttr(out_, *attribute, INDENT);
        }
        for (const PlugSetting& setting : edit.settings) {
            out_ << INDENT;
            ascii::WriteSetting(out_, setting);
        }
    }
}

void AsciiWriter::WriteDefaults(const SceneContent& content) {
    for (const std::shared_ptr<Node>& node : content.defaults) {
        out_ << "select -ne " << NameOf(*node) << ";\n";
        if (node->Type().Name() == "time") {
            out_ << INDENT << "setAttr \".o\" " << DecimalText(time_.CurrentTime()) << ";\n";
        }
        WriteNodeBody(node);
    }
    for (const PreservedContent::DefaultBlock& block : preserved_.defaultBlocks) {
        out_ << "select -ne " << QuotedIfNeeded(block.node) << ";\n";
        WriteStatements(block.content, true);
        WritePreserved(block.content);
    }
}

void AsciiWriter::WriteConnections(const SceneContent& content) {
    for (const Connection& connection : content.broken) {
        out_ << "disconnectAttr " << PlugName(connection.source) << ' ' << PlugName(connection.destination)
             << ";\n";
    }
    for (const Connection& connection : content.connections) {
        const auto [to, flags] = SceneContent::Target(connection);
        out_ << "connectAttr " << PlugName(connection.source) << ' ' << PlugName(to) << flags << ";\n";
    }
    if (!content.isWhole) {
        return;
    }
    for (const PreservedContent::Connection& kept : preserved_.connections) {
        const auto source = kept.source.lock();
        const auto destination = kept.destination.lock();
        if (source && destination && source->InScene() && destination->InScene()) {
            out_ << "connectAttr " << Quoted(NameOf(*source) + "." + kept.sourceAttribute) << ' '
                 << Quoted(NameOf(*destination) + "." + kept.destinationAttribute) << kept.flags << ";\n";
        }
    }
}

} // namespace lightbox
