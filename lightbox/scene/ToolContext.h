#pragma once

#include "scene/NonCopyable.h"

#include <QCursor>

#include <string>
#include <utility>

namespace lightbox {

/// A tool context. The host's own tools are just this class, and the views know what they do; those of
/// plug-ins derive from it.
class ToolContext : NonCopyable {
public:
    ToolContext(std::string name, std::string contextClass)
        : name_(std::move(name))
        , class_(std::move(contextClass)) {}
    virtual ~ToolContext() = default;

    const std::string& Name() const { return name_; }
    /// The tool's class: the host's name for it, or what a plug-in's context returns.
    virtual std::string ClassName() const { return class_; }
    /// The plug-in command that made it; empty for the host's own tools.
    virtual std::string Command() const { return {}; }
    virtual std::string Title() const { return class_; }
    virtual std::string Help() const { return {}; }
    /// File or resource of icon number 0 to 2; empty for none.
    virtual std::string Image(int) const { return {}; }
    /// Whether it is handling an event and must not be destroyed.
    virtual bool IsBusy() const { return false; }
    /// The pointer's cursor over the views.
    virtual QCursor Cursor() const { return {}; }

    /// Called when the tool becomes current, and when it stops being current.
    virtual void OnSetup() {}
    virtual void OffCleanup() {}

private:
    std::string name_;
    std::string class_;
};

} // namespace lightbox
