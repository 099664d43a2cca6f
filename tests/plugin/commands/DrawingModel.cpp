#include "plugin/commands/DrawingModel.h"

#include <iterator>

namespace vellix {
namespace {

constexpr int ANIMATED = 0;
constexpr int STATIC = 1;
constexpr int LOCKED = 2;
/// Where a static layer without a drawing gets one.
constexpr int STATIC_FRAME = -999;

} // namespace

const DrawingModel::Stack& DrawingModel::Layers(const std::string& camera) const {
    static const Stack none;
    const auto found = cameras_.find(camera);
    return found == cameras_.end() ? none : found->second;
}

int DrawingModel::ActiveIndex(const std::string& camera) const {
    const Stack& stack = Layers(camera);
    for (std::size_t i = 0; i < stack.size(); ++i) {
        if (stack[i].isActive) {
            return int(i);
        }
    }
    return -1;
}

std::string DrawingModel::UniqueName(const std::string& wanted) const {
    const auto isTaken = [this](const std::string& name) {
        for (const auto& [camera, stack] : cameras_) {
            for (const ModelLayer& layer : stack) {
                if (layer.name == name) {
                    return true;
                }
            }
        }
        return false;
    };
    std::string name = wanted.empty() ? "Layer" : wanted;
    for (int n = 1; isTaken(name); ++n) {
        name = "Layer " + std::to_string(n);
    }
    return name;
}

DrawingModel::ModelLayer* DrawingModel::Find(const std::string& camera, int index) {
    const auto found = cameras_.find(camera);
    const bool isThere = found != cameras_.end() && index >= 0 && index < int(found->second.size());
    return isThere ? &found->second[std::size_t(index)] : nullptr;
}

DrawingModel::ModelLayer* DrawingModel::Active(const std::string& camera) {
    return Find(camera, ActiveIndex(camera));
}

bool DrawingModel::IsLocked(const std::string& camera) const {
    const int index = ActiveIndex(camera);
    return index >= 0 && Layers(camera)[std::size_t(index)].state == LOCKED;
}

void DrawingModel::SetActive(const std::string& camera, int index) {
    Stack& stack = cameras_[camera];
    for (std::size_t i = 0; i < stack.size(); ++i) {
        stack[i].isActive = int(i) == index;
    }
}

// A camera's first layer makes itself and the camera active.
int DrawingModel::Put(const std::string& camera, int index, ModelLayer layer) {
    Stack& stack = cameras_[camera];
    const int count = int(stack.size());
    const int at = index < 0 || index > count ? count : index;
    stack.insert(stack.begin() + at, std::move(layer));
    if (count == 0) {
        SetActive(camera, 0);
        activeCamera = camera;
    }
    return at;
}

// The layer below an active one that goes becomes active, or the new bottom one.
std::optional<DrawingModel::ModelLayer> DrawingModel::Take(const std::string& camera, int index) {
    const ModelLayer* const found = Find(camera, index);
    if (!found) {
        return std::nullopt;
    }
    ModelLayer layer = *found;
    Stack& stack = cameras_[camera];
    stack.erase(stack.begin() + index);
    if (layer.isActive && !stack.empty()) {
        SetActive(camera, std::max(index - 1, 0));
    }
    return layer;
}

bool DrawingModel::Activate(const std::string& camera, int index) {
    if (!Find(camera, index) || (camera == activeCamera && index == ActiveIndex(camera))) {
        return false;
    }
    SetActive(camera, index);
    activeCamera = camera;
    return true;
}

bool DrawingModel::Insert(const std::string& camera, int index, const std::string& name, int state) {
    ModelLayer layer;
    layer.name = UniqueName(name);
    layer.state = state > LOCKED ? 0 : state;
    Put(camera, index, layer);
    return true;
}

bool DrawingModel::Add(const std::string& camera, const std::string& name, int state) {
    Insert(camera, -1, name, state);
    SetActive(camera, int(Layers(camera).size()) - 1);
    activeCamera = camera;
    return true;
}

bool DrawingModel::Delete(const std::string& camera, int index) {
    return Take(camera, index).has_value();
}

bool DrawingModel::DeleteAll(const std::string& camera) {
    cameras_[camera].clear();
    return true;
}

bool DrawingModel::Move(const std::string& camera, int from, int to) {
    if (!Find(camera, from) || !Find(camera, to)) {
        return false;
    }
    Stack& stack = cameras_[camera];
    ModelLayer layer = stack[std::size_t(from)];
    stack.erase(stack.begin() + from);
    stack.insert(stack.begin() + to, layer);
    return true;
}

bool DrawingModel::MoveAcross(const std::string& camera, int from, const std::string& target, int to) {
    if (camera == target) {
        return Move(camera, from, to);
    }
    const bool isMainLayer = camera == activeCamera && from == ActiveIndex(camera);
    std::optional<ModelLayer> layer = Take(camera, from);
    if (!layer) {
        return false;
    }
    layer->isActive = false;
    const int at = Put(target, to, *layer);
    if (isMainLayer) {
        SetActive(target, at);
        activeCamera = target;
    }
    return true;
}

bool DrawingModel::MoveAll(const std::string& camera, const std::string& target) {
    if (camera == target) {
        return false;
    }
    const bool wasActive = camera == activeCamera;
    const int active = ActiveIndex(camera);
    const int base = int(Layers(target).size());
    while (!Layers(camera).empty()) {
        ModelLayer layer = *Take(camera, int(Layers(camera).size()) - 1);
        layer.isActive = false;
        Put(target, base, layer);
    }
    if (wasActive && active >= 0) {
        SetActive(target, active + base);
        activeCamera = target;
    }
    return true;
}

bool DrawingModel::InsertFrames(const std::string& camera, Range range) {
    if (IsLocked(camera)) {
        return false;
    }
    if (Layers(camera).empty()) {
        Insert(camera, -1, "", 0);
    }
    for (int t = range.first; t < range.second; ++t) {
        Active(camera)->keys.emplace(t, "");
    }
    return true;
}

bool DrawingModel::Duplicate(const std::string& camera) {
    ModelLayer* const layer = Active(camera);
    // A static layer shows what was keyed before, so it has a drawing at the current time or none to copy.
    if (!layer || layer->state != ANIMATED || layer->keys.count(time) > 0) {
        return false;
    }
    const auto later = layer->keys.lower_bound(time);
    if (later == layer->keys.begin()) {
        return false;
    }
    layer->keys[time] = std::prev(later)->second;
    return true;
}

bool DrawingModel::DeleteFrames(const std::string& camera, Range range) {
    if (ModelLayer* const layer = Active(camera)) {
        layer->keys.erase(layer->keys.lower_bound(range.first), layer->keys.lower_bound(range.second));
    }
    return !IsLocked(camera);
}

DrawingModel::Keys DrawingModel::Copied(const std::string& camera, Range range) const {
    Keys copied;
    const int index = ActiveIndex(camera);
    if (index >= 0) {
        for (const auto& [t, picture] : Layers(camera)[std::size_t(index)].keys) {
            if (t >= range.first && t < range.second) {
                copied[t - range.first] = picture;
            }
        }
    }
    return copied;
}

bool DrawingModel::Paste(const std::string& camera, const Keys& copied, int start) {
    if (ModelLayer* const layer = Active(camera)) {
        for (const auto& [t, picture] : copied) {
            layer->keys[start + t] = picture;
        }
    }
    return !IsLocked(camera);
}

bool DrawingModel::ClearFrames(const std::string& camera, Range range) {
    if (ModelLayer* const layer = Active(camera)) {
        for (auto& [t, picture] : layer->keys) {
            if (t >= range.first && t < range.second) {
                picture.clear();
            }
        }
    }
    return true;
}

bool DrawingModel::Step(const std::string& camera, bool forward) {
    const ModelLayer* const layer = Active(camera);
    if (!layer || layer->keys.empty()) {
        return true;
    }
    const Keys& keys = layer->keys;
    if (forward) {
        const auto next = keys.upper_bound(time);
        time = next == keys.end() ? keys.begin()->first : next->first;
    } else {
        const auto here = keys.lower_bound(time);
        time = here == keys.begin() ? keys.rbegin()->first : std::prev(here)->first;
    }
    return true;
}

bool DrawingModel::Retime(const std::string& camera, Range range, int amount, bool relative, bool toNext) {
    ModelLayer* const layer = Active(camera);
    if (!layer || layer->keys.empty()) {
        return false;
    }
    const std::vector<std::pair<int, std::string>> keys(layer->keys.begin(), layer->keys.end());
    int start = range.first;
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        if (key->first <= range.first) {
            start = key->first;
            break;
        }
    }
    int end = range.second;
    for (const auto& key : keys) {
        if (key.first >= range.second) {
            end = key.first;
            break;
        }
    }
    std::size_t target = keys.size() - 1;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].first > start) {
            target = toNext || i == 0 ? i : i - 1;
            break;
        }
    }
    std::vector<int> times;
    int shift = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int old = keys[i].first;
        if (i > 0 && old + shift <= times.back()) {
            shift = times.back() + 1 - old;
        }
        times.push_back(old + shift);
        if (old >= start && old < end && i + 1 < keys.size()) {
            shift += relative ? amount : amount - (keys[i + 1].first - old);
        }
    }
    layer->keys.clear();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        layer->keys[times[i]] = keys[i].second;
    }
    time = times[target];
    return true;
}

bool DrawingModel::MoveFrames(const std::string& camera, int offset, int first, int last) {
    ModelLayer* const layer = Active(camera);
    if (!layer || offset == 0) {
        return true;
    }
    Keys moved;
    Keys rest;
    for (const auto& [t, picture] : layer->keys) {
        if (t >= first && t <= last) {
            moved[t + offset] = picture;
        } else {
            rest[t] = picture;
        }
    }
    for (const auto& [t, picture] : moved) {
        if (!rest.emplace(t, picture).second) {
            return false;
        }
    }
    layer->keys = rest;
    return true;
}

bool DrawingModel::Draw(const std::string& camera, int frame, char stroke) {
    if (Layers(camera).empty()) {
        Insert(camera, 0, "", 0);
    }
    ModelLayer& layer = *Active(camera);
    if (!layer.isVisible || layer.state == LOCKED) {
        return false;
    }
    auto key = layer.keys.find(frame);
    if (layer.state == STATIC) {
        const auto later = layer.keys.upper_bound(frame);
        key = later == layer.keys.begin() ? layer.keys.emplace(STATIC_FRAME, "").first : std::prev(later);
    } else if (key == layer.keys.end()) {
        key = layer.keys.emplace(frame, "").first;
    }
    std::string& picture = key->second;
    picture.insert(std::lower_bound(picture.begin(), picture.end(), stroke), stroke);
    return true;
}

} // namespace vellix
