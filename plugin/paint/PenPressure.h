#pragma once

#include <QString>

namespace vellix {

/// How one property of a stroke answers to the pressure of a pen: a curve of three points that never falls,
/// from (0, 0) through a middle point to (100, 100), in the room above a least value. All are percent.
struct PressureCurve {
    static constexpr int MIN_MIDDLE_AT = 5;
    static constexpr int MAX_MIDDLE_AT = 95;

    int least = 0;     ///< the value without pressure, 0..100
    int middleAt = 50; ///< pressure of the middle point, MIN_MIDDLE_AT..MAX_MIDDLE_AT
    int middle = 50;   ///< value of the middle point, 0..100

    bool IsStraight() const { return least == 0 && middleAt == middle; }
    /// Whether all three are within their limits.
    bool IsValid() const;
    /// The value for a pressure, both 0..1. A straight curve gives the pressure itself.
    float At(float pressure) const;

    bool operator==(const PressureCurve& other) const {
        return least == other.least && middleAt == other.middleAt && middle == other.middle;
    }
};

/// What a pen's pressure does to the strokes of a tool, besides the tool's tablet switch: that decides
/// whether pressure sets the opacity.
struct PenPressure {
    bool setsSize = false; ///< pressure sets the size
    PressureCurve opacity;
    PressureCurve size;

    /// The size for a pressure of 0..1, image pixels, at least 1. `size` itself unless pressure sets the
    /// size.
    int SizeAt(int full, float pressure) const;

    /// Seven numbers, as settings keep them: setsSize, then least, middleAt and middle of both curves.
    QString ToText() const;
    /// Reads what ToText() wrote. Returns false, and leaves `pressure` alone, for anything else.
    static bool FromText(const QString& text, PenPressure& pressure);

    bool operator==(const PenPressure& other) const {
        return setsSize == other.setsSize && opacity == other.opacity && size == other.size;
    }
};

} // namespace vellix
