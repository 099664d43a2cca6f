#pragma once

#include <QSlider>

namespace lightbox {

/// A slider over a range of integers or floating-point numbers.
class ValueSlider : public QSlider {
    Q_OBJECT

public:
    ValueSlider(bool isInteger, Qt::Orientation orientation);

    bool IsInteger() const { return isInteger_; }
    double Value() const { return value_; }
    /// Clamps the value to the range; ignores infinity and NaN.
    void SetValue(double value);
    double Minimum() const { return minimum_; }
    double Maximum() const { return maximum_; }
    void SetRange(double minimum, double maximum);
    /// The step of an arrow key; 0 for a hundredth of the range.
    void SetStep(double step);
    double Step() const { return step_; }

Q_SIGNALS:
    /// Sent while the user drags the slider, and after the user has moved it.
    void Dragged(double value);
    void Changed(double value);

private:
    void UpdateSteps();

    bool isInteger_;
    double minimum_ = 0.0;
    double maximum_ = 100.0;
    double value_ = 0.0;
    double step_ = 0.0;
    bool isSetting_ = false;
};

} // namespace lightbox
