#include "scene/UnitConversion.h"

#include "scene/Plug.h"
#include "scene/Scene.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"

namespace lightbox {

namespace {

constexpr double RADIANS_PER_DEGREE = 3.14159265358979323846 / 180.0;
constexpr double TICKS_PER_SECOND = 6000.0;

/// How many internal units make one of ours, for the plug at one end of the conversion.
double InternalUnits(const Scene& scene, const Plug& end) {
    if (!end) {
        return 1.0;
    }
    switch (end.attribute->Kind()) {
    case AttributeKind::Angle:
        return RADIANS_PER_DEGREE;
    case AttributeKind::Time:
        return TICKS_PER_SECOND / RateOf(scene.timeline().Unit()).PerSecond();
    default:
        return 1.0;
    }
}

} // namespace

std::optional<AttributeValue> ComputeUnitConversion(const Node& node, const Attribute& attribute, int) {
    const Scene* scene = node.InScene();
    if (!scene || attribute.LongName() != "output") {
        return std::nullopt;
    }
    const auto plug = [&](const char* name) { return Plug::Of(node, name); };
    const std::vector<Plug> destinations = scene->connections().DestinationsOf(plug("output"));
    const double in = InternalUnits(*scene, scene->connections().SourceOf(plug("input")));
    const double out = InternalUnits(*scene, destinations.empty() ? Plug() : destinations.front());
    return plug("input").Number() * in * plug("conversionFactor").Number() / out;
}

} // namespace lightbox
