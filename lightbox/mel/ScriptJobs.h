#pragma once

#include "scene/EventBus.h"
#include "scene/NonCopyable.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lightbox {
class Host;
}

namespace lightbox::mel {

/// Scripts tied to events and conditions. A script runs when the host is idle next, once however often its
/// event came until then; a script for the idle event runs then and there.
class ScriptJobs : NonCopyable {
public:
    enum class Trigger { Event, Idle, ConditionTrue, ConditionFalse, ConditionChange };
    struct Job {
        Trigger trigger = Trigger::Event;
        /// Name of the event or condition.
        std::string subject;
        std::string script;
        bool runOnce = false;
        bool isProtected = false;
        bool killWithScene = false;
        /// The control with which it dies; empty for none.
        std::string parent;
    };

    explicit ScriptJobs(Host& host);
    ~ScriptJobs();

    /// The job's number, from 1 on; 0 when there is no such event or condition.
    int Add(const Job& job);
    bool Exists(int id) const { return jobs_.count(id) != 0; }
    /// False when there is no such job, or when it is protected and not `force`.
    bool Kill(int id, bool force);
    void KillAll(bool force);
    /// Called when a control is deleted.
    void KillWithParent(const std::string& parent);
    /// One line a job, as -listJobs shows it.
    std::vector<std::string> Listed() const;

private:
    struct Entry {
        Job job;
        EventBus::Id callback = 0;
        bool isPending = false;
    };

    EventBus::Id Connect(int id, const Job& job);
    void Triggered(int id);
    void Run(int id);
    void SceneEnds();

    Host& host_;
    std::map<int, Entry> jobs_;
    int next_ = 1;
    std::vector<EventBus::Id> sceneCallbacks_;
    /// Gone when this is: work on the idle queue may outlive it.
    std::shared_ptr<ScriptJobs*> self_;
};

} // namespace lightbox::mel
