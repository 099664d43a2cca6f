#include "scene/EventBus.h"

#include <algorithm>

namespace lightbox {

namespace {

const char* const EVENTS[] = {
    "DagObjectCreated",
    "DagObjectNameChanged",
    "DisplayPreferenceChanged",
    "NameChanged",
    "NewSceneOpened",
    "PostSceneRead",
    "PostToolChanged",
    "PreFileNewOrOpened",
    "PreNewSceneOpened",
    "PreSceneOpened",
    "PreSceneSaved",
    "RecentCommandChanged",
    "Redo",
    "SceneImported",
    "SceneOpened",
    "SceneSaved",
    "SelectModeChanged",
    "SelectPreferenceChanged",
    "SelectTypeChanged",
    "SelectionChanged",
    "SequencerActiveShotChanged",
    "SetModified",
    "ToolChanged",
    "ToolSettingsChanged",
    "Undo",
    "angularUnitChanged",
    "cameraChange",
    "colorMgtPrefsChanged",
    "deleteAll",
    "flushUndo",
    "idle",
    "idleVeryLow",
    "linearUnitChanged",
    "modelEditorChanged",
    "nameSpaceChanged",
    "playbackByChanged",
    "playbackModeChanged",
    "playbackRangeAboutToChange",
    "playbackRangeChanged",
    "playbackRangeSliderChanged",
    "playbackSpeedChanged",
    "preferencesChanged",
    "quitApplication",
    "selectionConstraintsChanged",
    "timeChanged",
    "timeSliderChanged",
    "timeUnitChanged",
    "workspaceChanged",
};

const char* const CONDITIONS[] = {
    "SomethingSelected", "UndoAvailable", "RedoAvailable", "busy",   "playingBack",
    "readingFile",       "writingFile",   "opening",       "newing", "playblasting",
};

} // namespace

EventBus::EventBus() {
    for (const char* name : EVENTS) {
        events_[name];
    }
    for (const char* name : CONDITIONS) {
        conditions_[name];
    }
}

bool EventBus::HasEvent(const std::string& event) const {
    return events_.count(event) != 0;
}

std::vector<std::string> EventBus::EventNames() const {
    std::vector<std::string> names;
    for (const auto& event : events_) {
        names.push_back(event.first);
    }
    return names;
}

bool EventBus::AddEvent(const std::string& event) {
    return events_.try_emplace(event).second;
}

EventBus::Id EventBus::AddCallback(const std::string& event, Callback callback) {
    return Add(events_, event, [callback = std::move(callback)](bool) { callback(); });
}

void EventBus::Fire(const std::string& event) {
    Call(events_, event, true);
}

bool EventBus::HasCondition(const std::string& condition) const {
    return conditions_.count(condition) != 0;
}

std::vector<std::string> EventBus::ConditionNames() const {
    std::vector<std::string> names;
    for (const auto& condition : conditions_) {
        names.push_back(condition.first);
    }
    return names;
}

bool EventBus::Condition(const std::string& condition) const {
    const auto found = conditions_.find(condition);
    return found != conditions_.end() && found->second.state;
}

void EventBus::SetCondition(const std::string& condition, bool state) {
    Channel& channel = conditions_[condition];
    if (channel.state != state) {
        channel.state = state;
        Call(conditions_, condition, state);
    }
}

EventBus::Id EventBus::AddConditionCallback(const std::string& condition, ConditionCallback callback) {
    return Add(conditions_, condition, std::move(callback));
}

bool EventBus::Remove(Id id) {
    return Erase(events_, id) || Erase(conditions_, id);
}

std::size_t EventBus::CallbackCount() const {
    std::size_t count = 0;
    for (const Channels* channels : {&events_, &conditions_}) {
        for (const auto& channel : *channels) {
            count += channel.second.entries.size();
        }
    }
    return count;
}

EventBus::Id EventBus::Add(Channels& channels, const std::string& name, ConditionCallback callback) {
    const auto channel = channels.find(name);
    if (channel == channels.end()) {
        return 0;
    }
    channel->second.entries.push_back({nextId_, std::make_shared<ConditionCallback>(std::move(callback))});
    return nextId_++;
}

void EventBus::Call(Channels& channels, const std::string& name, bool state) {
    const auto channel = channels.find(name);
    if (channel == channels.end()) {
        return;
    }
    // Callbacks may change the list: a copy is walked, and each is looked up again before it is called.
    const std::vector<Entry> entries = channel->second.entries;
    for (const Entry& entry : entries) {
        const std::vector<Entry>& current = channel->second.entries;
        if (std::any_of(current.begin(), current.end(),
                        [&](const Entry& other) { return other.id == entry.id; })) {
            (*entry.callback)(state);
        }
    }
}

bool EventBus::Erase(Channels& channels, Id id) {
    for (auto& channel : channels) {
        std::vector<Entry>& entries = channel.second.entries;
        const auto found =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.id == id; });
        if (found != entries.end()) {
            entries.erase(found);
            return true;
        }
    }
    return false;
}

} // namespace lightbox
