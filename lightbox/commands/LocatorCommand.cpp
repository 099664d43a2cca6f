// spaceLocator: a cross of three lines that marks a place.

#include "commands/Registration.h"
#include "commands/ShapeArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/DagNode.h"
#include "scene/Edit.h"
#include "scene/Host.h"
#include "scene/Scene.h"

namespace lightbox::mel {
namespace {

Plug PositionOf(const TransformAndShape& locator) {
    return Plug::Of(*locator.shape, "localPosition");
}

/// The place is in the space of the transform. What is there already, `-relative` goes on from.
void SetPosition(const CommandCall& call, const TransformAndShape& locator, bool isRelative) {
    if (!call.Has("-position")) {
        return;
    }
    const AttributeValue before = PositionOf(locator).Get();
    std::vector<double> position = std::get<std::vector<double>>(before);
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double given = call.Float("-position", axis);
        position[axis] = isRelative ? position[axis] + given : given;
    }
    edit::SetPlug(call.GetHost(), PositionOf(locator), position);
}

Value SpaceLocator(CommandCall& call) {
    Host& host = call.GetHost();
    if (call.IsCreate()) {
        const std::string name = call.StringOr("-name", host.scene().FreeNumberedName("locator"));
        const TransformAndShape locator = MakeShape(host, "locator", name);
        SetPosition(call, locator, false);
        edit::Select(host, {locator.transform});
        return ShownNames({locator.transform});
    }
    const TransformAndShape locator = ShapeOfCall(call, "locator");
    if (call.IsQuery()) {
        if (call.Has("-position")) {
            return std::get<std::vector<double>>(PositionOf(locator).Get());
        }
        call.Fail("Nothing was asked for.");
    }
    SetPosition(call, locator, call.Has("-relative"));
    if (call.Has("-name")) {
        edit::Rename(host, *locator.transform, call.String("-name"));
    }
    return {};
}

} // namespace

void RegisterLocatorCommand(CommandRegistry& registry) {
    constexpr auto length = MSyntax::kDistance;
    AddSceneCommand(registry, "spaceLocator",
                    SyntaxBuilder()
                        .Flag("-p", "-position", length, length, length)
                        .Flag("-n", "-name", MSyntax::kString)
                        .Flag("-a", "-absolute")
                        .Flag("-r", "-relative")
                        .Query()
                        .Edit()
                        .Objects(0, 1),
                    SpaceLocator);
}

} // namespace lightbox::mel
