#pragma once

#include <memory>
#include <optional>
#include <string>

namespace lightbox {

class EventBus;
class IdleQueue;
class OptionVars;
class Output;
class PluginManager;
class Scene;
class SceneFiles;
class Timeline;
class ToolContexts;
class UndoQueue;
class UserInterface;

namespace mel {
class Interpreter;
}

/// The running host: there is one at a time. It owns everything else.
class Host {
public:
    struct Options {
        bool batch = true;
        /// Folder of the user's preferences.
        std::string prefsFolder;
    };

    /// Makes the host with an empty scene that has the default nodes.
    explicit Host(const Options& options);
    /// Fires "quitApplication", then unloads the plug-ins.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The running host. There must be one.
    static Host& Get();
    /// The running host or null.
    static Host* Current();

    const Options& options() const { return options_; }
    bool IsBatch() const { return options_.batch; }

    /// Asks the program to end with that status, once what runs has come to an end.
    void RequestQuit(int status) { quitStatus_ = status; }
    /// The status to end with, when the end was asked for.
    const std::optional<int>& QuitStatus() const { return quitStatus_; }

    Output& output() { return *output_; }
    EventBus& events() { return *events_; }
    IdleQueue& idle() { return *idle_; }
    UndoQueue& undo() { return *undo_; }
    Timeline& time() { return *time_; }
    Scene& scene() { return *scene_; }
    OptionVars& optionVars() { return *optionVars_; }
    mel::Interpreter& interpreter() { return *interpreter_; }
    PluginManager& plugins() { return *plugins_; }
    SceneFiles& files() { return *files_; }
    ToolContexts& tools() { return *tools_; }
    /// The window; null in batch, and before it stands.
    UserInterface* ui() { return ui_.get(); }
    void SetUserInterface(std::unique_ptr<UserInterface> ui);

private:
    Options options_;
    std::optional<int> quitStatus_;
    std::unique_ptr<Output> output_;
    std::unique_ptr<EventBus> events_;
    std::unique_ptr<IdleQueue> idle_;
    std::unique_ptr<Timeline> time_;
    std::unique_ptr<Scene> scene_;
    std::unique_ptr<UndoQueue> undo_;
    std::unique_ptr<OptionVars> optionVars_;
    std::unique_ptr<ToolContexts> tools_;
    std::unique_ptr<mel::Interpreter> interpreter_;
    std::unique_ptr<SceneFiles> files_;
    std::unique_ptr<PluginManager> plugins_;
    std::unique_ptr<UserInterface> ui_;
};

} // namespace lightbox
