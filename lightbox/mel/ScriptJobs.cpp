#include "mel/ScriptJobs.h"

#include "mel/Interpreter.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "text/Quoted.h"

namespace lightbox::mel {

namespace {

const char* FlagOf(ScriptJobs::Trigger trigger) {
    switch (trigger) {
    case ScriptJobs::Trigger::Event:
        return "-event";
    case ScriptJobs::Trigger::Idle:
        return "-idleEvent";
    case ScriptJobs::Trigger::ConditionTrue:
        return "-conditionTrue";
    case ScriptJobs::Trigger::ConditionFalse:
        return "-conditionFalse";
    case ScriptJobs::Trigger::ConditionChange:
        break;
    }
    return "-conditionChange";
}

} // namespace

ScriptJobs::ScriptJobs(Host& host)
    : host_(host)
    , self_(std::make_shared<ScriptJobs*>(this)) {
    for (const char* const event : {"NewSceneOpened", "PreSceneOpened"}) {
        sceneCallbacks_.push_back(host_.events().AddCallback(event, [this] { SceneEnds(); }));
    }
}

ScriptJobs::~ScriptJobs() {
    *self_ = nullptr;
    for (const EventBus::Id callback : sceneCallbacks_) {
        host_.events().Remove(callback);
    }
    KillAll(true);
}

EventBus::Id ScriptJobs::Connect(int id, const Job& job) {
    EventBus& events = host_.events();
    switch (job.trigger) {
    case Trigger::Event:
        return events.AddCallback(job.subject, [this, id] { Triggered(id); });
    case Trigger::Idle:
        return events.AddCallback("idle", [this, id] { Run(id); });
    case Trigger::ConditionTrue:
    case Trigger::ConditionFalse: {
        const bool wanted = job.trigger == Trigger::ConditionTrue;
        return events.AddConditionCallback(job.subject, [this, id, wanted](bool state) {
            if (state == wanted) {
                Triggered(id);
            }
        });
    }
    case Trigger::ConditionChange:
        break;
    }
    return events.AddConditionCallback(job.subject, [this, id](bool) { Triggered(id); });
}

int ScriptJobs::Add(const Job& job) {
    const int id = next_;
    const EventBus::Id callback = Connect(id, job);
    if (callback == 0) {
        return 0;
    }
    Entry& entry = jobs_[id];
    entry.job = job;
    entry.callback = callback;
    ++next_;
    return id;
}

void ScriptJobs::Triggered(int id) {
    const auto found = jobs_.find(id);
    if (found == jobs_.end() || found->second.isPending) {
        return;
    }
    found->second.isPending = true;
    host_.idle().Add([self = self_, id] {
        if (*self) {
            (*self)->Run(id);
        }
    });
}

void ScriptJobs::Run(int id) {
    const auto found = jobs_.find(id);
    if (found == jobs_.end()) {
        return;
    }
    found->second.isPending = false;
    const std::string script = found->second.job.script;
    if (found->second.job.runOnce) {
        Kill(id, true);
    }
    try {
        host_.interpreter().Execute(script);
    } catch (const Error& error) {
        // A job runs whenever something happens, and nobody asked for what was refused.
        if (!error.IsSilent()) {
            host_.interpreter().Report(error);
        }
    }
}

bool ScriptJobs::Kill(int id, bool force) {
    const auto found = jobs_.find(id);
    if (found == jobs_.end() || (found->second.job.isProtected && !force)) {
        return false;
    }
    host_.events().Remove(found->second.callback);
    jobs_.erase(found);
    return true;
}

void ScriptJobs::KillAll(bool force) {
    for (auto job = jobs_.begin(); job != jobs_.end();) {
        const int id = (job++)->first;
        Kill(id, force);
    }
}

void ScriptJobs::KillWithParent(const std::string& parent) {
    for (auto job = jobs_.begin(); job != jobs_.end();) {
        const auto current = job++;
        if (!parent.empty() && current->second.job.parent == parent) {
            Kill(current->first, true);
        }
    }
}

void ScriptJobs::SceneEnds() {
    for (auto job = jobs_.begin(); job != jobs_.end();) {
        const auto current = job++;
        if (current->second.job.killWithScene) {
            Kill(current->first, true);
        }
    }
}

std::vector<std::string> ScriptJobs::Listed() const {
    std::vector<std::string> lines;
    for (const auto& [id, entry] : jobs_) {
        const Job& job = entry.job;
        std::string line = std::to_string(id) + ": ";
        line += job.isProtected ? "-protected " : "";
        line += job.runOnce ? "-runOnce 1 " : "";
        line += job.killWithScene ? "-killWithScene " : "";
        line += job.parent.empty() ? "" : "-parent " + Quoted(job.parent) + " ";
        line += FlagOf(job.trigger);
        line += job.trigger == Trigger::Idle ? "" : " " + Quoted(job.subject);
        lines.push_back(line + " " + Quoted(job.script));
    }
    return lines;
}

} // namespace lightbox::mel
