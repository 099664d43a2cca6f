#pragma once

#include "scene/ToolContext.h"

#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>

#include <functional>
#include <memory>
#include <string>

namespace lightbox {

/// A plug-in's tool context, with the command instance that made it.
class PluginContext : public ToolContext {
public:
    PluginContext(const std::string& name, std::string command, std::unique_ptr<MPxContextCommand> maker,
                  std::unique_ptr<MPxContext> context);
    ~PluginContext() override;

    MPxContext& Context() const { return *context_; }
    MPxContextCommand& Maker() const { return *maker_; }

    std::string ClassName() const override;
    std::string Command() const override { return command_; }
    std::string Title() const override;
    std::string Help() const override;
    std::string Image(int index) const override;
    QCursor Cursor() const override;
    bool IsBusy() const override { return running_ > 0; }
    void OnSetup() override;
    void OffCleanup() override;

    /// Calls a function with the context, which cannot be removed meanwhile.
    void Run(const std::function<void(MPxContext&)>& event);
    /// The current tool if it is a plug-in's; null otherwise.
    static PluginContext* Current();

private:
    std::string command_;
    std::unique_ptr<MPxContextCommand> maker_;
    std::unique_ptr<MPxContext> context_;
    int running_ = 0;
};

} // namespace lightbox
