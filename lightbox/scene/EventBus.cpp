#include "scene/EventBus.h"

#include <algorithm>
#include <iterator>

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

/// Events for plug-ins alone. MEL does not list them.
const char* const API_EVENTS[] = {"_referenceCreated", "_referenceLoaded"};

const char* const CONDITIONS[] = {
    "SomethingSelected", "UndoAvailable", "RedoAvailable", "busy",   "playingBack",
    "readingFile",       "writingFile",   "opening",       "newing", "playblasting",
};

} // namespace

EventBus::EventBus() {
    for (const char* name : EVENTS) {
        events_[name];
    }
    for (const char* name : API_EVENTS) {
        events_[name];
    }
    for (const char* name : CONDITIONS) {
        conditions_[name];
    }
}

std::vector<std::string> EventBus::EventNames() const {
    std::vector<std::string> names;
    for (const auto& event : events_) {
        if (std::find(std::begin(API_EVENTS), std::end(API_EVENTS), event.first) == std::end(API_EVENTS)) {
            names.push_back(event.first);
        }
    }
    return names;
}

EventBus::Id EventBus::AddCallback(const std::string& event, Callback callback) {
    const auto found = events_.find(event);
    if (found == events_.end()) {
        return 0;
    }
    found->second.Add(nextId_, std::move(callback));
    return nextId_++;
}

void EventBus::Fire(const std::string& event) {
    const auto found = events_.find(event);
    if (found != events_.end()) {
        found->second.Call();
    }
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
    Conditional& conditional = conditions_[condition];
    if (conditional.state != state) {
        conditional.state = state;
        conditional.callbacks.Call(state);
    }
}

EventBus::Id EventBus::AddConditionCallback(const std::string& condition, ConditionCallback callback) {
    const auto found = conditions_.find(condition);
    if (found == conditions_.end()) {
        return 0;
    }
    found->second.callbacks.Add(nextId_, std::move(callback));
    return nextId_++;
}

EventBus::Id EventBus::AddNodeCallback(NodeEvent event, NodeCallback callback) {
    nodes_[event].Add(nextId_, std::move(callback));
    return nextId_++;
}

void EventBus::FireNode(NodeEvent event, Node& node) {
    nodes_[event].Call(node);
}

EventBus::Id EventBus::AddRenameCallback(RenameCallback callback) {
    renames_.Add(nextId_, std::move(callback));
    return nextId_++;
}

void EventBus::FireRename(Node& node, const std::string& before) {
    renames_.Call(node, before);
}

bool EventBus::Remove(Id id) {
    const auto removed = [id](auto& entry) { return entry.second.Remove(id); };
    return std::any_of(events_.begin(), events_.end(), removed) ||
           std::any_of(conditions_.begin(), conditions_.end(),
                       [id](auto& entry) { return entry.second.callbacks.Remove(id); }) ||
           std::any_of(nodes_.begin(), nodes_.end(), removed) || renames_.Remove(id);
}

std::size_t EventBus::CallbackCount() const {
    std::size_t count = 0;
    for (const auto& event : events_) {
        count += event.second.Count();
    }
    for (const auto& condition : conditions_) {
        count += condition.second.callbacks.Count();
    }
    for (const auto& nodes : nodes_) {
        count += nodes.second.Count();
    }
    return count + renames_.Count();
}

} // namespace lightbox
