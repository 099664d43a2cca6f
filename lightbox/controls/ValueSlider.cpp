#include "controls/ValueSlider.h"

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

/// The number of slider positions: more than any screen has pixels.
constexpr int POSITIONS = 10000;

} // namespace

ValueSlider::ValueSlider(bool isInteger, Qt::Orientation orientation)
    : QSlider(orientation)
    , isInteger_(isInteger) {
    setRange(0, POSITIONS);
    UpdateSteps();
    connect(this, &QSlider::valueChanged, this, [this](int position) {
        if (isSetting_) {
            return;
        }
        const double raw = minimum_ + (maximum_ - minimum_) * position / POSITIONS;
        value_ = isInteger_ ? std::round(raw) : raw;
        isSliderDown() ? Dragged(value_) : Changed(value_);
    });
    connect(this, &QSlider::sliderReleased, this, [this] {
        SetValue(value_);
        Q_EMIT Changed(value_);
    });
}

void ValueSlider::SetValue(double value) {
    if (!std::isfinite(value)) {
        return;
    }
    value_ = std::clamp(isInteger_ ? std::round(value) : value, minimum_, maximum_);
    const double width = maximum_ - minimum_;
    isSetting_ = true;
    setSliderPosition(width > 0.0 ? static_cast<int>(std::lround((value_ - minimum_) / width * POSITIONS))
                                  : 0);
    isSetting_ = false;
}

void ValueSlider::SetRange(double minimum, double maximum) {
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    UpdateSteps();
    SetValue(value_);
}

void ValueSlider::SetStep(double step) {
    step_ = step;
    UpdateSteps();
}

void ValueSlider::UpdateSteps() {
    const double width = std::max(maximum_ - minimum_, 1e-12);
    const double least = isInteger_ ? 1.0 : width / 100.0;
    const double step = step_ > 0.0 ? step_ : least;
    const int positions = static_cast<int>(std::clamp(step / width * POSITIONS, 1.0, 1.0 * POSITIONS));
    setSingleStep(positions);
    setPageStep(std::min(POSITIONS, positions * 10));
}

} // namespace lightbox
