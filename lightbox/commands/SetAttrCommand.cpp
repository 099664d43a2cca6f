#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingArguments.h"

#include <string>
#include <vector>

namespace lightbox::mel {
namespace {

/// Whether the arguments begin with an edit flag. Then `rest` receives the others: setAttr edits in any case.
/// Scripts join the flag with the one that follows: "-e-keyable".
bool TakeEditFlag(const std::vector<Value>& arguments, std::vector<Value>& rest) {
    if (arguments.empty() || !arguments.front().IsString()) {
        return false;
    }
    const std::string& first = arguments.front().Text();
    const bool isAlone = first == "-e" || first == "-edit";
    if (!isAlone && first.compare(0, 3, "-e-") != 0) {
        return false;
    }
    if (!isAlone) {
        rest.emplace_back(first.substr(2));
    }
    rest.insert(rest.end(), arguments.begin() + 1, arguments.end());
    return true;
}

/// The change and its undo are edit::SetPlug and its item in scene/EditItems.
Value SetAttr(CommandCall& call) {
    std::vector<Value> rest;
    const CommandCall plain = TakeEditFlag(call.Objects(), rest) ? call.With(rest) : call;
    PlugSettingArguments arguments(plain);
    const std::shared_ptr<Node> node = NodeOfPlug(call, arguments.PlugName());
    const PlugSetting& setting = arguments.SettingFor(node);
    arguments.CheckIsWhole();
    PlugSettingApplier(call.GetHost(), PlugSettingApplier::ApplyMode::Edit, arguments.OutOfRange())
        .Apply(node, setting);
    return {};
}

} // namespace

void RegisterSetAttrCommand(CommandRegistry& registry) {
    AddRawSceneCommand(registry, "setAttr", SetAttr);
}

} // namespace lightbox::mel
