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

/// Scripts attached to events and conditions. A script runs when the host is next idle, once however often
/// its event fired until then. A script of the idle event runs at once.
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
        /// The control whose deletion kills the job; empty for none.
        std::string parent;
    };

    explicit ScriptJobs(Host& host);
    ~ScriptJobs();

    /// Adds a job and returns its number, from 1; 0 for an unknown event or condition.
    int Add(const Job& job);
    bool Exists(int id) const { return jobs_.count(id) != 0; }
    /// Returns false for an unknown job, and for a protected one without `force`.
    bool Kill(int id, bool force);
    void KillAll(bool force);
    /// Called when a control is deleted.
    void KillWithParent(const std::string& parent);
    /// One line per job, as -listJobs shows it.
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
    /// Expires with this object: work on the idle queue may outlive it.
    std::shared_ptr<ScriptJobs*> self_;
};

} // namespace lightbox::mel
