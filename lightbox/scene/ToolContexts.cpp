#include "scene/ToolContexts.h"

#include "scene/EventBus.h"
#include "scene/Host.h"
#include "scene/UserInterface.h"
#include "scene/View.h"

#include <QWidget>

#include <algorithm>

namespace lightbox {

ToolContexts::ToolContexts(EventBus& events)
    : events_(events) {
    for (const auto& [name, contextClass] :
         {std::pair(SELECTION_TOOL, "select"), std::pair("moveSuperContext", "manipMove"),
          std::pair("RotateSuperContext", "manipRotate"), std::pair("scaleSuperContext", "manipScale")}) {
        Add(std::make_unique<ToolContext>(name, contextClass));
    }
    current_ = Find(SELECTION_TOOL);
}

ToolContexts::~ToolContexts() = default;

ToolContext* ToolContexts::Find(const std::string& name) const {
    const auto found = contexts_.find(name);
    return found == contexts_.end() ? nullptr : found->second.get();
}

bool ToolContexts::Add(std::unique_ptr<ToolContext> context) {
    std::string name = context->Name();
    return contexts_.try_emplace(std::move(name), std::move(context)).second;
}

bool ToolContexts::Remove(const std::string& name) {
    const ToolContext* context = Find(name);
    if (!context || context == current_ || context->IsBusy() || context->Command().empty()) {
        return false;
    }
    contexts_.erase(name);
    return true;
}

void ToolContexts::RemoveMadeBy(const std::string& command) {
    if (current_->Command() == command) {
        SetCurrent(SELECTION_TOOL);
    }
    for (auto context = contexts_.begin(); context != contexts_.end();) {
        context = context->second->Command() == command ? contexts_.erase(context) : std::next(context);
    }
}

bool ToolContexts::IsBusy(const std::string& command) const {
    return std::any_of(contexts_.begin(), contexts_.end(), [&](const auto& entry) {
        return entry.second->IsBusy() && entry.second->Command() == command;
    });
}

std::string ToolContexts::FreeName(const std::string& base) const {
    int number = 1;
    while (Find(base + std::to_string(number))) {
        ++number;
    }
    return base + std::to_string(number);
}

bool ToolContexts::SetCurrent(const std::string& name) {
    ToolContext* context = Find(name);
    if (!context) {
        return false;
    }
    current_->OffCleanup();
    current_ = context;
    context->OnSetup();
    ShowCurrent();
    events_.Fire("ToolChanged");
    events_.Fire("PostToolChanged");
    return true;
}

void ToolContexts::ShowCurrent() {
    Host* host = Host::Current();
    UserInterface* ui = host ? host->ui() : nullptr;
    if (!ui) {
        return;
    }
    ui->ShowHelp(current_->Help());
    for (View* view : ui->Views()) {
        view->Widget().setCursor(current_->Cursor());
    }
}

} // namespace lightbox
