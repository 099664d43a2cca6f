#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "formats/PlugSettingApplier.h"
#include "formats/PlugSettingArguments.h"

namespace lightbox::mel {
namespace {

Value SetAttr(CommandCall& call) {
    PlugSettingArguments arguments(call);
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
