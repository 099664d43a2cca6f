#pragma once

#include <QLineEdit>

namespace lightbox {

/// A field for one number, whole or with a fraction. It keeps the number it was given in full and shows it
/// with so many digits. Enter and leaving it take over what was typed; the arrow keys step.
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
    /// Digits behind the point.
    int Precision() const { return precision_; }
    void SetPrecision(int digits);
    bool ShowsTrailingZeros() const { return showsTrailingZeros_; }
    void ShowTrailingZeros(bool on);

Q_SIGNALS:
    /// The user has given another number.
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
