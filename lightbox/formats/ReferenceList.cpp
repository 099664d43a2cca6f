#include "formats/ReferenceList.h"

#include "formats/AsciiStatements.h"
#include "formats/FileError.h"
#include "formats/FileOperation.h"
#include "formats/FileReader.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingCollector.h"
#include "formats/ReferencePath.h"
#include "formats/SceneFiles.h"
#include "scene/DagNode.h"
#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/UndoQueue.h"

#include <QFileInfo>

#include <algorithm>

namespace lightbox {
namespace {

std::size_t HashOf(const PlugSetting& setting) {
    return std::hash<std::string>()(ascii::SettingText(setting));
}

/// Returns the setting that overrides one from the file which the node no longer has.
PlugSetting Reset(const std::shared_ptr<Node>& node, const std::string& path) {
    PlugSetting setting;
    setting.path = path;
    const std::vector<Plug> plugs = PlugSettingApplier::Resolve(node, path, 1);
    const Plug& plug = plugs.front();
    setting.locked = plug.IsLocked();
    setting.keyable = plug.IsKeyable();
    setting.channelBox = plug.IsInChannelBox();
    const AttributeValue value = plug.Get();
    if (const double* number = std::get_if<double>(&value)) {
        setting.hasValue = true;
        setting.numbers = {*number};
    } else if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
        setting.hasValue = true;
        setting.numbers = *numbers;
        setting.type = plug.attribute->TypeName();
    } else if (plug.attribute->Kind() == AttributeKind::String) {
        setting.hasValue = true;
        setting.type = "string";
        setting.texts = {plug.Text()};
    }
    return setting;
}

} // namespace

const FileReference& ReferenceList::Add(const std::string& path, const std::string& nameSpace,
                                        const std::string& name, bool deferred) {
    CheckNotCircular(path);
    const FileReader* reader = host_.files().reader();
    FileReference reference;
    reference.path = path;
    reference.isDeferred = deferred;
    if (reader && reader->source().mode == FileReader::Mode::Reference) {
        reference.parent = reader->source().reference;
    }
    const std::string outer =
        reader && !reader->source().nameSpace.empty() ? reader->source().nameSpace + ":" : "";
    reference.nameSpace = FreeNamespace(outer + nameSpace);
    reference.name = FreeName(name.empty() ? reference.nameSpace + "RN" : outer + name);
    references_.push_back(reference);
    host_.scene().AddNamespace(reference.nameSpace);
    const bool isUnasked = reader && ReferencePath::IsRemote(path) &&
                           !ReferencePath::AreOnSameServer(path, reader->source().path);
    if (!deferred && isUnasked) {
        // Merely looking for the file tells the other computer who is here.
        host_.output().Warning(reader->Place() +
                               "The referenced file is on another computer and was not opened: " + path +
                               ". To read it, run: file -loadReference \"" + reference.name +
                               "\". The changes to its nodes are kept.");
    } else if (!deferred) {
        Read(reference.name);
    }
    return Locate(reference.name);
}

void ReferenceList::Read(const std::string& name) {
    const FileReference reference = Locate(name);
    const auto place = [this] {
        const FileReader* outer = host_.files().reader();
        return outer ? outer->Place() : std::string();
    };
    const auto warnMissing = [&] {
        // Nothing is lost by it: the reference and the changes to its nodes are kept.
        host_.output().Warning(place() + "The referenced file is missing: " + reference.path +
                               ". The changes to its nodes are kept.");
    };
    if (ReferencePath::IsOfOtherSystem(reference.path)) {
        warnMissing();
        return;
    }
    const FileOperationScope scope(host_, FileOperation::Reference);
    // What is wrong with the referenced file is not lost by saving the file that references it.
    const ErrorCollector errors(host_.output());
    FileReader reader(host_, {reference.path, FileReader::Mode::Reference, reference.nameSpace, name});
    try {
        host_.files().RunReader(reader);
    } catch (const FileError& error) {
        if (QFileInfo(QString::fromStdString(reference.path)).exists()) {
            host_.output().Error(place() + "Reference file not read: " + error.what());
        } else {
            warnMissing();
        }
        return;
    }
    Locate(name).isLoaded = true;
    Locate(name).isDeferred = false;
    TakeBaseline(name, reader.NewNodes());
}

void ReferenceList::TakeBaseline(const std::string& name, const std::vector<std::shared_ptr<Node>>& nodes) {
    for (const std::shared_ptr<Node>& node : nodes) {
        Baseline& baseline = baselines_[node->Serial()];
        for (const PlugSetting& setting : PlugSettingCollector::Collect(node)) {
            baseline.settings[setting.path] = HashOf(setting);
        }
        for (const auto& attribute : node->DynamicAttributes()) {
            baseline.attributes.insert(attribute->LongName());
        }
    }
    for (const Connection& connection : host_.scene().connections().All()) {
        if ((connection.source.node->reference == name || connection.destination.node->reference == name) &&
            !IsFromFile(connection)) {
            connections_.emplace(connection.destination, connection.source);
        }
    }
}

void ReferenceList::NoteStatement(const std::string& name, const FileReference& given) {
    FileReference& reference = Locate(name);
    reference.givenPath = given.givenPath;
    reference.options = given.options;
    reference.type = given.type;
    reference.prefix = given.prefix;
    reference.further = given.further;
}

void ReferenceList::Load(const std::string& name) {
    const FileReference reference = Locate(name);
    if (!reference.isLoaded) {
        {
            const UndoQueue::Pause pause(host_.undo());
            Read(reference.name);
        }
        host_.events().Fire("_referenceLoaded");
    }
}

void ReferenceList::Unload(const std::string& name) {
    const std::string own = Locate(name).name;
    RemoveNodes(own);
    Locate(own).isLoaded = false;
    Locate(own).isDeferred = true;
}

void ReferenceList::Remove(const std::string& name) {
    Unload(name);
    const FileReference removed = Locate(name);
    references_.erase(std::remove_if(references_.begin(), references_.end(),
                                     [&](const FileReference& other) { return other.name == removed.name; }),
                      references_.end());
    host_.scene().RemoveNamespace(removed.nameSpace);
}

void ReferenceList::RemoveNodes(const std::string& name) {
    for (std::size_t i = 0; i < references_.size(); ++i) {
        if (references_[i].parent == name) {
            Remove(std::string(references_[i].name));
            i = static_cast<std::size_t>(-1);
        }
    }
    Scene& scene = host_.scene();
    host_.undo().Flush();
    std::vector<std::shared_ptr<Node>> nodes = NodesOf(name);
    // A file lists parents before children, so the nodes go in reverse order. Nodes that the user parented
    // below them move to the world.
    for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
        if (auto* dag = dynamic_cast<DagNode*>(node->get())) {
            const std::vector<DagNode*> children = dag->Children();
            for (DagNode* child : children) {
                scene.Rename(*child, scene.FreeName(child->Name(), *child, &scene.world()));
                scene.Move(*child, scene.world());
            }
        }
        baselines_.erase((*node)->Serial());
        scene.Detach(**node);
    }
    DropConnections([](const Plug& source, const Plug& destination) {
        return !source.node->InScene() || !destination.node->InScene();
    });
}

void ReferenceList::MakeLocal(const std::string& name) {
    const FileReference reference = Locate(name);
    for (const std::shared_ptr<Node>& node : NodesOf(reference.name)) {
        node->reference = reference.parent;
        baselines_.erase(node->Serial());
    }
    DropConnections([](const Plug& source, const Plug& destination) {
        return source.node->reference.empty() && destination.node->reference.empty();
    });
    for (FileReference& other : references_) {
        if (other.parent == reference.name) {
            other.parent = reference.parent;
        }
    }
    references_.erase(
        std::remove_if(references_.begin(), references_.end(),
                       [&](const FileReference& other) { return other.name == reference.name; }),
        references_.end());
}

void ReferenceList::DropConnections(const std::function<bool(const Plug&, const Plug&)>& isDropped) {
    for (auto connection = connections_.begin(); connection != connections_.end();) {
        connection = isDropped(connection->second, connection->first) ? connections_.erase(connection)
                                                                      : std::next(connection);
    }
}

void ReferenceList::Clear() {
    references_.clear();
    baselines_.clear();
    connections_.clear();
}

const FileReference* ReferenceList::Find(const std::string& nameOrPath) const {
    for (const FileReference& reference : references_) {
        if (reference.name == nameOrPath || reference.path == nameOrPath) {
            return &reference;
        }
    }
    return nullptr;
}

FileReference& ReferenceList::Locate(const std::string& nameOrPath) {
    const FileReference* reference = Find(nameOrPath);
    if (!reference) {
        throw FileError("There is no reference \"" + nameOrPath + "\".");
    }
    return const_cast<FileReference&>(*reference);
}

std::vector<std::shared_ptr<Node>> ReferenceList::NodesOf(const std::string& name) const {
    std::vector<std::shared_ptr<Node>> nodes;
    for (const std::shared_ptr<Node>& node : host_.scene().Nodes()) {
        if (node->reference == name) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

std::vector<ReferenceEdit> ReferenceList::Edits() const {
    std::vector<ReferenceEdit> edits;
    for (const std::shared_ptr<Node>& node : host_.scene().Nodes()) {
        const auto baseline = baselines_.find(node->Serial());
        if (baseline == baselines_.end()) {
            continue;
        }
        ReferenceEdit edit{node, {}, {}};
        for (const auto& attribute : node->DynamicAttributes()) {
            if (baseline->second.attributes.count(attribute->LongName()) == 0) {
                edit.addedAttributes.push_back(attribute);
            }
        }
        std::set<std::string> present;
        for (PlugSetting& setting : PlugSettingCollector::Collect(node)) {
            present.insert(setting.path);
            const auto before = baseline->second.settings.find(setting.path);
            if (before == baseline->second.settings.end() || before->second != HashOf(setting)) {
                edit.settings.push_back(std::move(setting));
            }
        }
        for (const auto& before : baseline->second.settings) {
            // A missing range was split into other ranges, which are among the settings.
            const bool isRange = before.first.find(':') != std::string::npos;
            if (present.count(before.first) == 0 && !isRange) {
                edit.settings.push_back(Reset(node, before.first));
            }
        }
        if (!edit.settings.empty() || !edit.addedAttributes.empty()) {
            edits.push_back(std::move(edit));
        }
    }
    return edits;
}

bool ReferenceList::IsFromFile(const Connection& connection) const {
    const auto found = connections_.find(connection.destination);
    return found != connections_.end() && found->second == connection.source;
}

std::vector<Connection> ReferenceList::BrokenConnections() const {
    std::vector<Connection> broken;
    for (const auto& [destination, source] : connections_) {
        if (host_.scene().connections().SourceOf(destination) != source) {
            broken.push_back({source, destination});
        }
    }
    return broken;
}

void ReferenceList::CheckNotCircular(const std::string& path) const {
    const SceneFiles& files = host_.files();
    bool isCircular = path == files.SceneName() && !files.Running(FileOperation::Import);
    for (const FileReader* reader : files.readers()) {
        isCircular = isCircular || reader->source().path == path;
    }
    if (isCircular) {
        throw FileError("The file \"" + path + "\" references itself.");
    }
}

std::string ReferenceList::FreeName(const std::string& wanted) const {
    std::string name = wanted;
    for (int number = 1; Find(name); ++number) {
        name = wanted + std::to_string(number);
    }
    return name;
}

std::string ReferenceList::FreeNamespace(const std::string& wanted) const {
    std::string name = wanted;
    for (int number = 1; host_.scene().Namespaces().count(name) > 0; ++number) {
        name = wanted + std::to_string(number);
    }
    return name;
}

} // namespace lightbox
