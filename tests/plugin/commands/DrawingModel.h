#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellix {

/// A plain model of what the commands do to a drawing, to compare the plug-in with. It has no pixels: a
/// picture is the sorted names of the strokes drawn into it, "" for an empty one. Each operation returns
/// whether it is allowed. A refused operation may leave the model half changed, so try it on a copy.
class DrawingModel {
public:
    using Keys = std::map<int, std::string>;

    struct ModelLayer {
        std::string name;
        bool isVisible = true;
        double opacity = 1.0;
        int state = 0;
        bool isActive = false;
        Keys keys;
    };
    using Stack = std::vector<ModelLayer>;
    /// First frame, and the frame after the last.
    using Range = std::pair<int, int>;

    const Stack& Layers(const std::string& camera) const;
    int ActiveIndex(const std::string& camera) const;
    std::string UniqueName(const std::string& wanted) const;

    bool Activate(const std::string& camera, int index);
    bool Add(const std::string& camera, const std::string& name, int state);
    bool Insert(const std::string& camera, int index, const std::string& name, int state);
    bool Delete(const std::string& camera, int index);
    bool DeleteAll(const std::string& camera);
    bool Move(const std::string& camera, int from, int to);
    bool MoveAcross(const std::string& camera, int from, const std::string& target, int to);
    bool MoveAll(const std::string& camera, const std::string& target);
    /// The layer, or null.
    ModelLayer* Find(const std::string& camera, int index);

    bool InsertFrames(const std::string& camera, Range range);
    bool Duplicate(const std::string& camera);
    bool DeleteFrames(const std::string& camera, Range range);
    /// The keys that a copy takes. Their times count from the start of the range.
    Keys Copied(const std::string& camera, Range range) const;
    bool Paste(const std::string& camera, const Keys& copied, int start);
    bool ClearFrames(const std::string& camera, Range range);
    bool Step(const std::string& camera, bool forward);
    bool Retime(const std::string& camera, Range range, int amount, bool relative, bool toNext);
    bool MoveFrames(const std::string& camera, int offset, int first, int last);
    bool Draw(const std::string& camera, int frame, char stroke);

    std::string activeCamera;
    int time = 1;

private:
    ModelLayer* Active(const std::string& camera);
    bool IsLocked(const std::string& camera) const;
    int Put(const std::string& camera, int index, ModelLayer layer);
    std::optional<ModelLayer> Take(const std::string& camera, int index);
    void SetActive(const std::string& camera, int index);

    std::map<std::string, Stack> cameras_;
};

} // namespace vellix
