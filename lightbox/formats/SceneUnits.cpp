#include "formats/SceneUnits.h"

#include "formats/MeshPlugSettings.h"
#include "formats/PlugSettingApplier.h"
#include "scene/Attribute.h"
#include "scene/Plug.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <vector>

namespace lightbox {
namespace {

constexpr double DEGREES_PER_RADIAN = 57.295779513082320877;

/// The number with the fewest digits that `matches`, among those near `number`; else the number itself.
template <class Matches>
double Shortest(double number, const Matches& matches) {
    constexpr int mostDigits = 17;
    for (int digits = 1; digits <= mostDigits; ++digits) {
        char text[40];
        const auto end =
            std::to_chars(text, text + sizeof text, number, std::chars_format::scientific, digits - 1).ptr;
        double shorter = 0.0;
        std::from_chars(text, end, shorter);
        if (matches(shorter)) {
            return shorter;
        }
    }
    return number;
}

} // namespace

std::optional<double> SceneUnits::LengthOf(const std::string& linear) {
    static const std::map<std::string, double> lengths{
        {"mm", 0.1},   {"millimeter", 0.1}, {"cm", 1.0},      {"centimeter", 1.0},
        {"m", 100.0},  {"meter", 100.0},    {"km", 1e5},      {"kilometer", 1e5},
        {"in", 2.54},  {"inch", 2.54},      {"ft", 30.48},    {"foot", 30.48},
        {"yd", 91.44}, {"yard", 91.44},     {"mi", 160934.4}, {"mile", 160934.4}};
    const auto found = lengths.find(linear);
    return found == lengths.end() ? std::nullopt : std::optional<double>(found->second);
}

double SceneUnits::AngularScale() const {
    return angular == "rad" || angular == "radian" ? DEGREES_PER_RADIAN : 1.0;
}

template <class Convert>
void SceneUnits::ForEachMeasure(const std::shared_ptr<Node>& node, PlugSetting& setting,
                                const Convert& convert) const {
    const double length = LinearScale();
    const double angle = AngularScale();
    if ((length == 1.0 && angle == 1.0) || setting.numbers.empty()) {
        return;
    }
    if (MeshPlugSettings::Handles(*node, setting.path)) {
        if (length != 1.0 && MeshPlugSettings::IsLength(setting.path)) {
            for (double& number : setting.numbers) {
                convert(number, length, true);
            }
        }
        return;
    }
    const Plug plug = PlugSettingApplier::Resolve(node, setting.path, setting.numbers.size()).front();
    // The numbers of one element are consecutive, for example the time and the value of a key.
    std::vector<double> factors;
    const std::function<void(const Attribute&)> addFactors = [&](const Attribute& attribute) {
        for (const std::shared_ptr<Attribute>& child : attribute.Children()) {
            addFactors(*child);
        }
        if (attribute.Children().empty()) {
            factors.push_back(attribute.Kind() == AttributeKind::Distance ? length
                              : attribute.Kind() == AttributeKind::Angle  ? angle
                                                                          : 1.0);
        }
    };
    addFactors(*plug.attribute);
    for (std::size_t i = 0; i < setting.numbers.size(); ++i) {
        const double factor = factors[i % factors.size()];
        if (factor != 1.0) {
            convert(setting.numbers[i], factor, false);
        }
    }
}

void SceneUnits::ToScene(const std::shared_ptr<Node>& node, PlugSetting& setting) const {
    ForEachMeasure(node, setting, [](double& number, double factor, bool) { number *= factor; });
}

void SceneUnits::ToFile(const std::shared_ptr<Node>& node, PlugSetting& setting) const {
    ForEachMeasure(node, setting, [](double& number, double factor, bool isFloat) {
        const double scene = number;
        number = Shortest(scene / factor, [&](double candidate) {
            return isFloat ? static_cast<float>(candidate * factor) == static_cast<float>(scene)
                           : candidate * factor == scene;
        });
    });
}

std::string SceneUnits::Statement() const {
    return "currentUnit -l " + linear + " -a " + angular;
}

} // namespace lightbox
