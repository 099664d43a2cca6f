#pragma once

#include "scene/ToolContext.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace lightbox {

class EventBus;

/// The tool contexts by name, and which one is current. There always is one: selection at first, and again
/// when the current one goes.
class ToolContexts {
public:
    explicit ToolContexts(EventBus& events);
    ~ToolContexts();
    ToolContexts(const ToolContexts&) = delete;
    ToolContexts& operator=(const ToolContexts&) = delete;

    static constexpr const char* SelectionTool = "selectSuperContext";

    /// Null when there is none.
    ToolContext* Find(const std::string& name) const;
    /// False when the name is taken.
    bool Add(std::unique_ptr<ToolContext> context);
    /// A current one is switched off first. The host's own stay.
    bool Remove(const std::string& name);
    /// Removes every context that a command of a plug-in has made.
    void RemoveMadeBy(const std::string& command);
    /// The base with the lowest free number.
    std::string FreeName(const std::string& base) const;

    ToolContext& Current() const { return *current_; }
    /// Switches the current context off and this one on, also when it is the same; fires "ToolChanged" and
    /// "PostToolChanged". False when there is none of that name.
    bool SetCurrent(const std::string& name);
    /// Told after every change of the current tool, or of what it shows of itself (help, cursor).
    void SetObserver(std::function<void(const ToolContext&)> observer);
    void NotifyChanged(const ToolContext& context);

private:
    void MakeCurrent(ToolContext& context);

    EventBus& events_;
    std::map<std::string, std::unique_ptr<ToolContext>> contexts_;
    ToolContext* current_;
    std::function<void(const ToolContext&)> observer_;
};

} // namespace lightbox
