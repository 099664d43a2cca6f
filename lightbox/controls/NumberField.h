#pragma once

#include <QLineEdit>

namespace lightbox {

/// A field for one integer or floating-point number. It keeps the full value and shows it rounded to
/// Precision() digits. Enter or a loss of focus commits the typed text; the arrow keys step.
class NumberField : public QLineEdit {
    Q_OBJECT

public:
    explicit NumberField(bool isInteger);

    bool IsInteger() const { return isInteger_; }
    double Value() const { return value_; }
    void SetValue(double value);
    double Minimum() const { return minimum_; }
    void SetMinimum(double minimum);
    double Maximum() const { return maximum_; }
    void SetMaximum(double maximum);
    double step = 1.0;
    /// Digits after the decimal point.
    int Precision() const { return precision_; }
    void SetPrecision(int digits);
    bool ShowsTrailingZeros() const { return showsTrailingZeros_; }
    void ShowTrailingZeros(bool on);

Q_SIGNALS:
    /// The user changed the value.
    void Changed(double value);
    void Entered(double value);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QSize sizeHint() const override;

private:
    void TakeOver();
    void Step(double distance);
    void Show();

    bool isInteger_;
    bool showsTrailingZeros_ = true;
    int precision_ = 3;
    double value_ = 0.0;
    double minimum_;
    double maximum_;
};

} // namespace lightbox
