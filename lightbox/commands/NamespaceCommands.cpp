#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

#include <algorithm>
#include <cctype>

namespace lightbox::mel {
namespace {

/// Returns the full name of a namespace without the leading colon. A name without that colon is relative to
/// the current namespace.
std::string FullName(const Scene& scene, const std::string& given) {
    if (!given.empty() && given[0] == ':') {
        return given.substr(1);
    }
    return scene.currentNamespace.empty() ? given : scene.currentNamespace + ":" + given;
}

/// True when every part of a namespace's full name is valid as a node's name.
bool IsLegal(const std::string& name) {
    bool beginsPart = true;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isLetter = byte < 0x80 && (std::isalpha(byte) || c == '_');
        const bool isDigit = byte < 0x80 && std::isdigit(byte);
        const bool isLegal = isLetter || (!beginsPart && (isDigit || c == ':'));
        if (!isLegal) {
            return false;
        }
        beginsPart = c == ':';
    }
    return !beginsPart;
}

/// True when the name lies in the namespace or, with `isDeep`, in one below it.
bool IsIn(const std::string& nameSpace, const std::string& name, bool isDeep) {
    const std::string own = Scene::NamespaceOf(name);
    return own == nameSpace ||
           (isDeep && (nameSpace.empty() || own.compare(0, nameSpace.size() + 1, nameSpace + ":") == 0));
}

void SetCurrent(Host& host, const std::string& name) {
    Scene& scene = host.scene();
    edit::Replace(host, "namespace", scene.currentNamespace, name,
                  [&scene](const std::string& each) { scene.currentNamespace = each; });
}

Value Namespace(CommandCall& call) {
    Host& host = call.GetHost();
    Scene& scene = host.scene();
    if (call.Has("-exists")) {
        const std::string name = FullName(scene, call.String("-exists"));
        return name.empty() || scene.Namespaces().count(name) > 0;
    }
    if (call.Has("-add")) {
        const std::string& given = call.String("-add");
        const std::string parent = call.StringOr("-parent", "");
        const std::string name = parent.empty()
                                     ? FullName(scene, given)
                                     : FullName(scene, parent == ":" ? ":" + given : parent + ":" + given);
        if (!IsLegal(name)) {
            call.Fail("The name '" + name + "' is not valid for a namespace.");
        }
        edit::AddNamespace(host, name);
        return name;
    }
    if (call.Has("-setNamespace")) {
        const std::string name = FullName(scene, call.String("-setNamespace"));
        if (!name.empty() && scene.Namespaces().count(name) == 0) {
            call.Fail("The namespace '" + name + "' does not exist.");
        }
        SetCurrent(host, name);
        return name;
    }
    if (call.Has("-removeNamespace")) {
        const std::string name = FullName(scene, call.String("-removeNamespace"));
        edit::RemoveNamespace(host, name);
        if (name == scene.currentNamespace) {
            SetCurrent(host, Scene::NamespaceOf(name));
        }
        return name;
    }
    call.Fail("One of -add, -set, -rm and -exists has to be given.");
}

Value NamespaceInfo(CommandCall& call) {
    const Scene& scene = call.GetHost().scene();
    const std::string asked =
        call.Objects().empty() ? scene.currentNamespace : FullName(scene, call.Object(0).AsString());
    if (call.Has("-currentNamespace")) {
        const std::string name = scene.currentNamespace;
        return name.empty() || call.Has("-absoluteName") ? ":" + name : name;
    }
    if (!asked.empty() && scene.Namespaces().count(asked) == 0) {
        call.Fail("The namespace '" + asked + "' does not exist.");
    }
    const bool isDeep = call.Has("-recurse");
    Value::StringArray names;
    if (!call.Has("-listOnlyDependencyNodes")) {
        for (const std::string& name : scene.Namespaces()) {
            if (IsIn(asked, name, isDeep)) {
                names.push_back(name);
            }
        }
    }
    if (!call.Has("-listOnlyNamespaces")) {
        for (const std::shared_ptr<Node>& node : scene.Nodes()) {
            if (IsIn(asked, node->Name(), isDeep)) {
                names.push_back(ShownName(*node));
            }
        }
    }
    if (call.Has("-absoluteName")) {
        std::transform(names.begin(), names.end(), names.begin(),
                       [](const std::string& name) { return ":" + name; });
    }
    return names;
}

} // namespace

void RegisterNamespaceCommands(CommandRegistry& registry) {
    AddSceneCommand(registry, "namespace",
                    SyntaxBuilder()
                        .Flag("-add", "-add", MSyntax::kString)
                        .Flag("-p", "-parent", MSyntax::kString)
                        .Flag("-set", "-setNamespace", MSyntax::kString)
                        .Flag("-rm", "-removeNamespace", MSyntax::kString)
                        .Flag("-ex", "-exists", MSyntax::kString),
                    Namespace);
    AddSceneCommand(registry, "namespaceInfo",
                    SyntaxBuilder()
                        .Flag("-cur", "-currentNamespace")
                        .Flag("-lon", "-listOnlyNamespaces")
                        .Flag("-lod", "-listOnlyDependencyNodes")
                        .Flag("-ls", "-listNamespace")
                        .Flag("-r", "-recurse")
                        .Flag("-an", "-absoluteName")
                        .Objects(0, 1),
                    NamespaceInfo);
}

} // namespace lightbox::mel
