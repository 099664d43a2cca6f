#include "timeline/TimeScale.h"

#include "scene/TimeUnits.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

/// View pixels; ticks at a smaller distance would merge into a grey band.
constexpr double MIN_TICK_DISTANCE = 4.0;

} // namespace

double TimeScale::FrameAt(double x) const {
    return start_ + std::floor((x - margin_) / perFrame_);
}

double TimeScale::FrameWithin(double x) const {
    const double last = start_ + std::floor(end_ - start_);
    return std::clamp(FrameAt(x), start_, last);
}

double TimeScale::LabelStep(double labelWidth) const {
    double decade = 1.0;
    for (int digits = 1; digits <= 12; ++digits, decade *= 10.0) {
        for (const double step : {1.0, 2.0, 5.0}) {
            if (step * decade * perFrame_ >= labelWidth) {
                return step * decade;
            }
        }
    }
    return decade;
}

double TimeScale::TickStep(double labelStep) const {
    for (const double parts : {labelStep, 10.0, 5.0, 2.0}) {
        const double step = labelStep / parts;
        if (parts > 1.0 && step >= 1.0 && step == std::floor(step) && step * perFrame_ >= MIN_TICK_DISTANCE) {
            return step;
        }
    }
    return labelStep;
}

QString FrameLabel(double frame) {
    return QString::fromStdString(DecimalText(std::round(frame * 100.0) / 100.0));
}

} // namespace lightbox
