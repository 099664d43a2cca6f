#pragma once

#include "scene/NonCopyable.h"
#include "scene/ToolContext.h"

#include <map>
#include <memory>
#include <string>

namespace lightbox {

class EventBus;

/// The tool contexts by name, and which one is current. There always is one: selection at first, and again
/// when the current one goes.
class ToolContexts : NonCopyable {
public:
    explicit ToolContexts(EventBus& events);
    ~ToolContexts();

    static constexpr const char* SELECTION_TOOL = "selectSuperContext";

    /// Null when there is none.
    ToolContext* Find(const std::string& name) const;
    /// False when the name is taken.
    bool Add(std::unique_ptr<ToolContext> context);
    /// Refused for the current one, one that is busy, and the host's own.
    bool Remove(const std::string& name);
    /// Removes every context that a command of a plug-in has made, a current one after it is switched off.
    void RemoveMadeBy(const std::string& command);
    /// Whether a context of that command is in the middle of an event.
    bool IsBusy(const std::string& command) const;
    /// The base with the lowest free number.
    std::string FreeName(const std::string& base) const;

    ToolContext& Current() const { return *current_; }
    /// Switches the current context off and this one on, also when it is the same; fires "ToolChanged" and
    /// "PostToolChanged". False when there is none of that name.
    bool SetCurrent(const std::string& name);
    /// Shows help and cursor of the current context in the window. Contexts call it when theirs change.
    void ShowCurrent();

private:
    EventBus& events_;
    std::map<std::string, std::unique_ptr<ToolContext>> contexts_;
    ToolContext* current_;
};

} // namespace lightbox
