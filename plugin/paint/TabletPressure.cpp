#include "paint/TabletPressure.h"

namespace vellix {

namespace {

constexpr float CURVE_START = 0.5f;
constexpr float DEAD_ZONE = 0.08f;
constexpr float FLOOR = 0.15f;
constexpr float SATURATION = 0.98f;

} // namespace

float TabletPressure::Curve(double raw, float previous) {
    if (raw == 0.0 || raw != raw) {
        return previous;
    }
    float pressure = float(raw);
    if (pressure > CURVE_START) {
        const float rest = 2.0f * (1.0f - pressure);
        pressure = 1.0f - 0.5f * (rest * rest);
    }
    if (pressure < DEAD_ZONE) {
        return 0.0f;
    }
    if (pressure < FLOOR) {
        return FLOOR;
    }
    return pressure > SATURATION ? 1.0f : pressure;
}

} // namespace vellix
