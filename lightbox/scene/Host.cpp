#include "scene/Host.h"

#include "formats/SceneFiles.h"
#include "mel/Interpreter.h"
#include "mel/SceneCommands.h"
#include "scene/EventBus.h"
#include "scene/IdleQueue.h"
#include "scene/OptionVars.h"
#include "scene/Output.h"
#include "scene/PluginManager.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"
#include "scene/ToolContexts.h"
#include "scene/UndoQueue.h"
#include "scene/UserInterface.h"

#include <stdexcept>

namespace lightbox {

namespace {

Host* g_host = nullptr;

} // namespace

Host::Host(const Options& options)
    : options_(options)
    , output_(std::make_unique<Output>())
    , events_(std::make_unique<EventBus>())
    , idle_(std::make_unique<IdleQueue>(*events_))
    , time_(std::make_unique<Timeline>(*events_))
    , scene_(std::make_unique<Scene>(*events_, *time_))
    , undo_(std::make_unique<UndoQueue>(*events_)) {
    if (g_host) {
        throw std::logic_error("A host is running already.");
    }
    g_host = this;
    scene_->New();
    optionVars_ = std::make_unique<OptionVars>(options_.prefsFolder);
    tools_ = std::make_unique<ToolContexts>(*events_);
    interpreter_ = std::make_unique<mel::Interpreter>(*this);
    files_ = std::make_unique<SceneFiles>(*this);
    plugins_ = std::make_unique<PluginManager>(*this);
    mel::RegisterSceneCommands(interpreter_->Commands());
}

Host::~Host() {
    events_->Fire("quitApplication");
    idle_->Clear();
    undo_->Flush();
    plugins_->UnloadAll();
    ui_.reset();
    optionVars_->Save();
    g_host = nullptr;
}

Host& Host::Get() {
    if (!g_host) {
        throw std::logic_error("No host is running.");
    }
    return *g_host;
}

Host* Host::Current() {
    return g_host;
}

void Host::SetUserInterface(std::unique_ptr<UserInterface> ui) {
    ui_ = std::move(ui);
}

} // namespace lightbox
