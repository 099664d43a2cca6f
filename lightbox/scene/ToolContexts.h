#pragma once

#include "scene/NonCopyable.h"
#include "scene/ToolContext.h"

#include <map>
#include <memory>
#include <string>

namespace lightbox {

class EventBus;

/// The tool contexts by name, and the current one. There always is a current one: the selection tool at the
/// start and after the current one is removed.
class ToolContexts : NonCopyable {
public:
    explicit ToolContexts(EventBus& events);
    ~ToolContexts();

    static constexpr const char* SELECTION_TOOL = "selectSuperContext";

    /// Returns null when there is none.
    ToolContext* Find(const std::string& name) const;
    /// Returns false when the name is taken.
    bool Add(std::unique_ptr<ToolContext> context);
    /// Returns false for the current one, for one that is busy and for the host's own.
    bool Remove(const std::string& name);
    /// Removes every context that a plug-in's command made. Switches off the current one first.
    void RemoveMadeBy(const std::string& command);
    /// Whether a context of that command is handling an event.
    bool IsBusy(const std::string& command) const;
    /// The base with the lowest free number.
    std::string FreeName(const std::string& base) const;

    ToolContext& Current() const { return *current_; }
    /// Switches the current context off and the named one on, also when both are the same. Fires
    /// "ToolChanged" and "PostToolChanged". Returns false for an unknown name.
    bool SetCurrent(const std::string& name);
    /// Shows the current context's help and cursor in the window. Contexts call it when these change.
    void ShowCurrent();

private:
    EventBus& events_;
    std::map<std::string, std::unique_ptr<ToolContext>> contexts_;
    ToolContext* current_;
};

} // namespace lightbox
