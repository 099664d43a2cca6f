#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/ReferenceList.h"
#include "formats/SceneFiles.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"

namespace lightbox::mel {
namespace {

/// The reference that a name, a file or one of its nodes stands for.
const FileReference& ReferenceOf(const CommandCall& call, const std::string& text) {
    const ReferenceList& references = call.GetHost().files().references();
    const FileReference* found = references.Find(text);
    if (!found) {
        found = references.Find(NodeNamed(call, text)->reference);
    }
    if (!found) {
        call.Fail("'" + text + "' does not belong to a reference.");
    }
    return *found;
}

Value ReferenceQuery(CommandCall& call) {
    const std::string text = call.Object(0).AsString();
    const ReferenceList& references = call.GetHost().files().references();
    if (call.Has("-isNodeReferenced")) {
        return !NodeNamed(call, text)->reference.empty();
    }
    const FileReference& reference = ReferenceOf(call, text);
    if (call.Has("-filename")) {
        return reference.path;
    }
    if (call.Has("-referenceNode")) {
        return reference.name;
    }
    if (call.Has("-isLoaded")) {
        return reference.isLoaded;
    }
    if (call.Has("-namespace")) {
        return ":" + reference.nameSpace;
    }
    return ShownNames(references.NodesOf(reference.name));
}

} // namespace

void RegisterReferenceQueryCommand(CommandRegistry& registry) {
    registry.Register("referenceQuery",
                      SyntaxBuilder()
                          .Flag("-inr", "-isNodeReferenced")
                          .Flag("-f", "-filename")
                          .Flag("-rfn", "-referenceNode")
                          .Flag("-il", "-isLoaded")
                          .Flag("-ns", "-namespace")
                          .Flag("-n", "-nodes")
                          .Objects(1, 1),
                      ReferenceQuery);
}

} // namespace lightbox::mel
