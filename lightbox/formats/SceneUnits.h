#pragma once

#include "formats/PlugSetting.h"

#include <memory>
#include <optional>
#include <string>

namespace lightbox {

class Node;

/// The units of length and angle of a scene file, named as in `currentUnit`. The scene itself is always in
/// centimetres and degrees; a file keeps the units in which it was made.
struct SceneUnits {
    std::string linear = "centimeter";
    std::string angular = "degree";

    bool operator==(const SceneUnits& other) const {
        return linear == other.linear && angular == other.angular;
    }
    bool operator!=(const SceneUnits& other) const { return !(*this == other); }

    /// The length of a unit in centimetres; null for an unknown one.
    static std::optional<double> LengthOf(const std::string& linear);

    /// Converts the numbers of a node's setting from these units to the scene's. Throws as
    /// PlugSettingApplier::Resolve() does.
    void ToScene(const std::shared_ptr<Node>& node, PlugSetting& setting) const;
    /// The other way, so that ToScene() gives the same numbers again wherever there are such, with few
    /// digits.
    void ToFile(const std::shared_ptr<Node>& node, PlugSetting& setting) const;
    /// The statement that sets these units: "currentUnit -l meter -a degree".
    std::string Statement() const;

private:
    template <class Convert>
    void ForEachMeasure(const std::shared_ptr<Node>& node, PlugSetting& setting,
                        const Convert& convert) const;
    double LinearScale() const { return LengthOf(linear).value_or(1.0); }
    double AngularScale() const;
};

} // namespace lightbox
