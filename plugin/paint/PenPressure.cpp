#include "paint/PenPressure.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace vellix {

namespace {

constexpr int NUMBERS = 7;

bool IsPercent(int value) {
    return value >= 0 && value <= 100;
}

/// The slope at an end of the curve (Fritsch and Butland, "A Method for Constructing Local Monotone Piecewise
/// Cubic Interpolants", 1984; the ends as Moler, "Numerical Computing with MATLAB", section 3.6).
double EndSlope(double width, double otherWidth, double chord, double otherChord) {
    const double slope = ((2.0 * width + otherWidth) * chord - width * otherChord) / (width + otherWidth);
    return std::min(std::max(slope, 0.0), 3.0 * chord);
}

/// The slope at the middle point, which keeps the curve from falling (same source).
double MiddleSlope(double before, double after, double slopeBefore, double slopeAfter) {
    if (slopeBefore <= 0.0 || slopeAfter <= 0.0) {
        return 0.0;
    }
    const double first = 2.0 * after + before;
    const double second = after + 2.0 * before;
    return (first + second) / (first / slopeBefore + second / slopeAfter);
}

/// Hermite's cubic from `from` to `to` over a width of `width`.
double Cubic(double u, double width, double from, double to, double slopeFrom, double slopeTo) {
    const double v = 1.0 - u;
    return v * v * (1.0 + 2.0 * u) * from + u * u * (3.0 - 2.0 * u) * to +
           width * u * v * (v * slopeFrom - u * slopeTo);
}

} // namespace

bool PressureCurve::IsValid() const {
    return IsPercent(least) && IsPercent(middle) && middleAt >= MIN_MIDDLE_AT && middleAt <= MAX_MIDDLE_AT;
}

float PressureCurve::At(float pressure) const {
    if (IsStraight()) {
        return pressure;
    }
    const double p = std::min(std::max(static_cast<double>(pressure), 0.0), 1.0);
    const double before = middleAt / 100.0;
    const double after = 1.0 - before;
    const double y = middle / 100.0;
    const double chordBefore = y / before;
    const double chordAfter = (1.0 - y) / after;
    const double slope = MiddleSlope(before, after, chordBefore, chordAfter);
    const double value = p < before ? Cubic(p / before, before, 0.0, y,
                                            EndSlope(before, after, chordBefore, chordAfter), slope)
                                    : Cubic((p - before) / after, after, y, 1.0, slope,
                                            EndSlope(after, before, chordAfter, chordBefore));
    const double floor = least / 100.0;
    return static_cast<float>(floor + (1.0 - floor) * value);
}

int PenPressure::SizeAt(int full, float pressure) const {
    return setsSize ? std::max(1, static_cast<int>(std::lround(full * size.At(pressure)))) : full;
}

QString PenPressure::ToText() const {
    QStringList numbers = {QString::number(setsSize ? 1 : 0)};
    for (const PressureCurve& curve : {opacity, size}) {
        for (const int value : {curve.least, curve.middleAt, curve.middle}) {
            numbers.append(QString::number(value));
        }
    }
    return numbers.join(QLatin1Char(' '));
}

bool PenPressure::FromText(const QString& text, PenPressure& pressure) {
    const QStringList words = text.split(QLatin1Char(' '));
    if (words.size() != NUMBERS) {
        return false;
    }
    int numbers[NUMBERS] = {};
    for (int i = 0; i < NUMBERS; ++i) {
        bool isNumber = false;
        numbers[i] = words.at(i).toInt(&isNumber);
        if (!isNumber) {
            return false;
        }
    }
    PenPressure read;
    read.setsSize = numbers[0] == 1;
    read.opacity = {numbers[1], numbers[2], numbers[3]};
    read.size = {numbers[4], numbers[5], numbers[6]};
    if (numbers[0] < 0 || numbers[0] > 1 || !read.opacity.IsValid() || !read.size.IsValid()) {
        return false;
    }
    pressure = read;
    return true;
}

} // namespace vellix
