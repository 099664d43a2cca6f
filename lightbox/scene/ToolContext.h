#pragma once

#include "scene/NonCopyable.h"

#include <QCursor>

#include <string>
#include <utility>

namespace lightbox {

/// A tool by its name. The host's own tools are no more than that: what they do, the views know. Those of
/// plug-ins derive from it.
class ToolContext : NonCopyable {
public:
    ToolContext(std::string name, std::string contextClass)
        : name_(std::move(name))
        , class_(std::move(contextClass)) {}
    virtual ~ToolContext() = default;

    const std::string& Name() const { return name_; }
    /// What kind it is: the host's name for it, or what a plug-in's context says of itself.
    virtual std::string ClassName() const { return class_; }
    /// The command of a plug-in that made it; empty for the host's own.
    virtual std::string Command() const { return {}; }
    virtual std::string Title() const { return class_; }
    virtual std::string Help() const { return {}; }
    /// File or resource of an icon, number 0 to 2; empty for none.
    virtual std::string Image(int) const { return {}; }
    /// Whether it is in the middle of an event, and must not go.
    virtual bool IsBusy() const { return false; }
    /// Over the views.
    virtual QCursor Cursor() const { return {}; }

    /// It becomes current, and no longer is.
    virtual void OnSetup() {}
    virtual void OffCleanup() {}

private:
    std::string name_;
    std::string class_;
};

} // namespace lightbox
