#pragma once

#include <QSlider>

namespace lightbox {

/// A slider over a range of numbers, whole ones or fractions.
class ValueSlider : public QSlider {
    Q_OBJECT

public:
    ValueSlider(bool isInteger, Qt::Orientation orientation);

    bool IsInteger() const { return isInteger_; }
    double Value() const { return value_; }
    /// Beyond the range it is the nearest end.
    void SetValue(double value);
    double Minimum() const { return minimum_; }
    double Maximum() const { return maximum_; }
    void SetRange(double minimum, double maximum);
    /// How far an arrow key goes; 0 for a hundredth of the range.
    void SetStep(double step);
    double Step() const { return step_; }

Q_SIGNALS:
    /// The user drags it, and has moved it.
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
