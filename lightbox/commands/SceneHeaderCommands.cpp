#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/SceneFiles.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/PluginLoader.h"

namespace lightbox::mel {
namespace {

Value Requires(CommandCall& call) {
    const std::string plugin = call.Object(0).AsString();
    if (plugin != "maya") {
        call.GetHost().plugins().Load(plugin);
    }
    return {};
}

Value FileInfo(CommandCall& call) {
    SceneFiles& files = call.GetHost().files();
    const std::vector<std::string> words = call.ObjectNames();
    if (call.IsQuery()) {
        Value::StringArray answer;
        for (const auto& [key, value] : files.fileInfo()) {
            if (words.empty()) {
                answer.push_back(key);
                answer.push_back(value);
            } else if (words.front() == key) {
                answer.push_back(value);
            }
        }
        return answer;
    }
    const auto before = files.fileInfo();
    if (call.Has("-remove")) {
        files.RemoveFileInfo(call.String("-remove"));
    } else if (words.size() == 2) {
        files.SetFileInfo(words[0], words[1]);
    } else {
        call.Fail("A keyword and a value have to be given.");
    }
    if (files.fileInfo() != before) {
        files.SetModified(true);
    }
    return {};
}

} // namespace

void RegisterSceneHeaderCommands(CommandRegistry& registry) {
    registry.Register("requires",
                      SyntaxBuilder()
                          .Flag("-nt", "-nodeType", MSyntax::kString)
                          .MultiUse()
                          .Flag("-dt", "-dataType", MSyntax::kString)
                          .MultiUse()
                          .Objects(1, 2),
                      Requires);
    registry.Register(
        "fileInfo", SyntaxBuilder().Flag("-rm", "-remove", MSyntax::kString).Query().Objects(0, 2), FileInfo);
}

} // namespace lightbox::mel
