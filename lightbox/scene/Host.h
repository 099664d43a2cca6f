#pragma once

#include "scene/NonCopyable.h"

#include <memory>
#include <optional>
#include <string>

namespace lightbox {

class EventBus;
class IdleQueue;
class OptionVars;
class Output;
class PluginLoader;
class Scene;
class SceneFiles;
class Timeline;
class ToolContexts;
class UndoQueue;
class UserInterface;

namespace mel {
class Interpreter;
}

/// The running host; there is at most one. Gives access to the parts of the program to callers that need
/// several of them. app/LightboxHost makes and owns the parts.
class Host : NonCopyable {
public:
    struct Options {
        bool batch = true;
        /// Folder of the user's preferences.
        std::string prefsFolder;
    };

    /// The running host, which must exist.
    static Host& Get();
    /// The running host, or null.
    static Host* Current();

    const Options& options() const { return options_; }
    bool IsBatch() const { return options_.batch; }

    /// Asks the program to exit with that status once the current work is done.
    void RequestQuit(int status) { quitStatus_ = status; }
    /// The requested exit status; null while nobody has asked to quit.
    const std::optional<int>& QuitStatus() const { return quitStatus_; }

    Output& output() const { return *parts_.output; }
    EventBus& events() const { return *parts_.events; }
    IdleQueue& idle() const { return *parts_.idle; }
    UndoQueue& undo() const { return *parts_.undo; }
    Timeline& time() const { return *parts_.time; }
    Scene& scene() const { return *parts_.scene; }
    OptionVars& optionVars() const { return *parts_.optionVars; }
    ToolContexts& tools() const { return *parts_.tools; }
    mel::Interpreter& interpreter() const { return *parts_.interpreter; }
    SceneFiles& files() const { return *parts_.files; }
    PluginLoader& plugins() const { return *parts_.plugins; }
    /// The user interface; null in batch and before the window exists.
    UserInterface* ui() const { return ui_.get(); }
    void SetUserInterface(std::unique_ptr<UserInterface> ui);

protected:
    struct Parts {
        Output* output = nullptr;
        EventBus* events = nullptr;
        IdleQueue* idle = nullptr;
        UndoQueue* undo = nullptr;
        Timeline* time = nullptr;
        Scene* scene = nullptr;
        OptionVars* optionVars = nullptr;
        ToolContexts* tools = nullptr;
        mel::Interpreter* interpreter = nullptr;
        SceneFiles* files = nullptr;
        PluginLoader* plugins = nullptr;
    };

    /// Becomes the running host. The owner sets the members of `parts_` as it makes the parts.
    explicit Host(const Options& options);
    ~Host();
    /// Ends being the running host. The owner calls it before it destroys the parts.
    static void Retire();

    Parts parts_;

private:
    Options options_;
    std::optional<int> quitStatus_;
    std::unique_ptr<UserInterface> ui_;
};

} // namespace lightbox
