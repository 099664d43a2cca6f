#include "app/LightboxHost.h"

#include "app/PluginManager.h"
#include "commands/Registration.h"
#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "scene/EventBus.h"
#include "scene/IdleQueue.h"
#include "scene/OptionVars.h"
#include "scene/Output.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"
#include "scene/ToolContexts.h"
#include "scene/UndoQueue.h"
#include "scene/UserInterface.h"

namespace lightbox {

/// The parts in the order of their dependencies: each is destroyed before the parts that it uses.
struct LightboxHost::Owned {
    explicit Owned(const std::string& prefsFolder)
        : optionVars(prefsFolder) {}

    Output output;
    EventBus events;
    IdleQueue idle{events};
    Timeline time{events};
    Scene scene{events, time};
    UndoQueue undo{events};
    OptionVars optionVars;
    ToolContexts tools{events};
    // These use the host, so they are made after the host has the parts above.
    std::unique_ptr<mel::Interpreter> interpreter;
    std::unique_ptr<SceneFiles> files;
    std::unique_ptr<PluginManager> plugins;
};

LightboxHost::LightboxHost(const Options& options)
    : Host(options)
    , owned_(std::make_unique<Owned>(options.prefsFolder)) {
    parts_.output = &owned_->output;
    parts_.events = &owned_->events;
    parts_.idle = &owned_->idle;
    parts_.undo = &owned_->undo;
    parts_.time = &owned_->time;
    parts_.scene = &owned_->scene;
    parts_.optionVars = &owned_->optionVars;
    parts_.tools = &owned_->tools;
    owned_->scene.New();
    owned_->interpreter = std::make_unique<mel::Interpreter>(*this);
    parts_.interpreter = owned_->interpreter.get();
    owned_->files = std::make_unique<SceneFiles>(*this);
    parts_.files = owned_->files.get();
    owned_->plugins = std::make_unique<PluginManager>(*this);
    parts_.plugins = owned_->plugins.get();
    mel::RegisterSceneCommands(owned_->interpreter->Commands());
}

LightboxHost::~LightboxHost() {
    events().Fire("quitApplication");
    idle().Clear();
    undo().Flush();
    plugins().UnloadAll();
    SetUserInterface(nullptr);
    const std::string fault = optionVars().Save();
    if (!fault.empty()) {
        output().Warning(fault);
    }
    Retire();
}

PluginManager& LightboxHost::plugins() const {
    return *owned_->plugins;
}

} // namespace lightbox
