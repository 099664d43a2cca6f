#pragma once

#include <maya/MSpace.h>
#include <maya/MStatus.h>
#include <maya/MVector.h>

#include <iosfwd>

/// A colour with straight alpha. RGB components are from 0 to 1.
class MColor {
public:
    enum MColorType { kRGB, kHSV, kCMY, kCMYK };

    /// Opaque black.
    MColor() = default;
    MColor(MColorType colorModel, float c1, float c2, float c3, float alpha = 1.0f);
    MColor(const float c[4])
        : r(c[0])
        , g(c[1])
        , b(c[2])
        , a(c[3]) {}
    MColor(float rr, float gg = 0.0f, float bb = 0.0f, float aa = 1.0f)
        : r(rr)
        , g(gg)
        , b(bb)
        , a(aa) {}

    float operator[](unsigned int i) const { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }
    float& operator[](unsigned int i) { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }
    MColor operator*(float factor) const { return MColor(r * factor, g * factor, b * factor, a); }
    bool operator==(const MColor& other) const {
        return r == other.r && g == other.g && b == other.b && a == other.a;
    }
    bool operator!=(const MColor& other) const { return !(*this == other); }

    float r = 0.0f;
    float g = 0.0f;
    float b = 0.0f;
    float a = 1.0f;
};

std::ostream& operator<<(std::ostream& os, const MColor& color);
