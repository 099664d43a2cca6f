#include "commands/Registration.h"
#include "commands/SceneArguments.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/ToolContexts.h"

namespace lightbox::mel {
namespace {

[[noreturn]] void FailUnknown(const CommandCall& call, const std::string& name) {
    call.Fail("There is no tool context \"" + name + "\".");
}

Value SetToolTo(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    if (!call.GetHost().tools().SetCurrent(name)) {
        FailUnknown(call, name);
    }
    return {};
}

Value ContextInfo(CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    const ToolContext* context = call.GetHost().tools().Find(name);
    if (call.Has("-exists")) {
        return context != nullptr;
    }
    if (!context) {
        FailUnknown(call, name);
    }
    if (call.Has("-title")) {
        return context->Title();
    }
    const char* const images[] = {"-image1", "-image2", "-image3"};
    for (int image = 0; image < 3; ++image) {
        if (call.Has(images[image])) {
            return context->Image(image);
        }
    }
    return context->ClassName();
}

} // namespace

void RegisterToolCommands(CommandRegistry& registry) {
    registry.RegisterRaw("currentCtx", 0, 0,
                         [](CommandCall& call) { return Value(call.GetHost().tools().Current().Name()); });
    registry.RegisterRaw("setToolTo", 1, 1, SetToolTo);
    registry.Register("contextInfo",
                      SyntaxBuilder()
                          .Flag("-ex", "-exists")
                          .Flag("-c", "-class")
                          .Flag("-t", "-title")
                          .Flag("-i1", "-image1")
                          .Flag("-i2", "-image2")
                          .Flag("-i3", "-image3")
                          .Objects(1, 1),
                      ContextInfo);
}

} // namespace lightbox::mel
