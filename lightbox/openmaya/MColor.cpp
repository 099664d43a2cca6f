#include <maya/MColor.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

/// Hue in degrees, saturation and value from 0 to 1.
/// https://en.wikipedia.org/wiki/HSL_and_HSV#HSV_to_RGB_alternative
float HsvChannel(float number, float hue, float saturation, float value) {
    const float k = std::fmod(number + hue / 60.0f + 6.0f, 6.0f);
    return value - value * saturation * std::max(0.0f, std::min({k, 4.0f - k, 1.0f}));
}

} // namespace

MColor::MColor(MColorType colorModel, float c1, float c2, float c3, float alpha)
    : a(alpha) {
    switch (colorModel) {
    case kHSV:
        r = HsvChannel(5.0f, c1, c2, c3);
        g = HsvChannel(3.0f, c1, c2, c3);
        b = HsvChannel(1.0f, c1, c2, c3);
        break;
    case kCMY:
        r = 1.0f - c1;
        g = 1.0f - c2;
        b = 1.0f - c3;
        break;
    case kCMYK: // the fourth component is black; the colour is opaque
        r = (1.0f - c1) * (1.0f - alpha);
        g = (1.0f - c2) * (1.0f - alpha);
        b = (1.0f - c3) * (1.0f - alpha);
        a = 1.0f;
        break;
    case kRGB:
        r = c1;
        g = c2;
        b = c3;
        break;
    }
}

std::ostream& operator<<(std::ostream& os, const MColor& color) {
    return os << '(' << color.r << ", " << color.g << ", " << color.b << ", " << color.a << ')';
}
