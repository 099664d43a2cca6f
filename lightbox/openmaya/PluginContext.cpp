#include "openmaya/PluginContext.h"

#include "openmaya/ApiBridge.h"
#include "openmaya/ContextState.h"
#include "scene/Host.h"
#include "scene/ToolContexts.h"

namespace lightbox {

PluginContext::PluginContext(const std::string& name, std::string command,
                             std::unique_ptr<MPxContextCommand> maker, std::unique_ptr<MPxContext> context)
    : ToolContext(name, command)
    , command_(std::move(command))
    , maker_(std::move(maker))
    , context_(std::move(context)) {}

PluginContext::~PluginContext() = default;

std::string PluginContext::ClassName() const {
    MString name;
    context_->getClassName(name);
    return name.length() > 0 ? ApiBridge::Text(name) : ToolContext::ClassName();
}

std::string PluginContext::Title() const {
    return ApiBridge::StateOf(*context_).title;
}

std::string PluginContext::Help() const {
    return ApiBridge::StateOf(*context_).help;
}

std::string PluginContext::Image(int index) const {
    return ApiBridge::StateOf(*context_).images.at(static_cast<std::size_t>(index));
}

QCursor PluginContext::Cursor() const {
    return ApiBridge::ToQt(ApiBridge::StateOf(*context_).cursor);
}

void PluginContext::OnSetup() {
    Run([](MPxContext& context) {
        MEvent event;
        context.toolOnSetup(event);
        context.helpStateHasChanged(event);
    });
}

void PluginContext::OffCleanup() {
    Run([](MPxContext& context) { context.toolOffCleanup(); });
}

void PluginContext::Run(const std::function<void(MPxContext&)>& event) {
    ++running_;
    event(*context_);
    --running_;
}

PluginContext* PluginContext::Current() {
    Host* host = Host::Current();
    return host ? dynamic_cast<PluginContext*>(&host->tools().Current()) : nullptr;
}

} // namespace lightbox
