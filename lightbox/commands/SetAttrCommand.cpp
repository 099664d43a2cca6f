#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingArguments.h"

#include <string>
#include <vector>

namespace lightbox::mel {
namespace {

/// The arguments without an edit flag at their beginning: setAttr edits in any case. Scripts join it with the
/// flag that follows: "-e-keyable".
std::vector<Value> WithoutEditFlag(const std::vector<Value>& arguments) {
    std::vector<Value> rest = arguments;
    if (rest.empty() || !rest.front().IsString()) {
        return rest;
    }
    const std::string first = rest.front().Text();
    if (first == "-e" || first == "-edit") {
        rest.erase(rest.begin());
    } else if (first.compare(0, 3, "-e-") == 0) {
        rest.front() = first.substr(2);
    }
    return rest;
}

Value SetAttr(CommandCall& call) {
    const std::vector<Value> objects = WithoutEditFlag(call.Objects());
    const CommandCall plain = call.With(objects);
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
