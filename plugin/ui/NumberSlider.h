#pragma once

#include <QTimer>
#include <QWidget>

class QSlider;
class QSpinBox;

namespace vellix {

/// A slider and a number field for one integer. While the slider is dragged, the number follows at once and
/// Changed() is emitted a few times a second; the last value is emitted when the slider is released. A number
/// that is too large becomes the largest.
class NumberSlider : public QWidget {
    Q_OBJECT

public:
    /// `name` is the prefix of the parts' object names: "...Slider" and "...Number".
    explicit NumberSlider(const QString& name, QWidget* parent = nullptr);

    /// Sets the range, the number's suffix, and the tooltip and accessible name of both parts.
    void SetUp(int least, int most, const QString& suffix, const QString& toolTip);
    void SetRange(int least, int most);
    /// Whether the slider is finer for small values. At first it is not.
    void SetCurved(bool curved);

    int GetValue() const;
    /// Shows the value without emitting Changed(). Does nothing while a change by the user is pending.
    void SetValue(int value);

Q_SIGNALS:
    /// Emitted when the user has chosen another value.
    void Changed(int value);

protected:
    void changeEvent(QEvent* event) override;

private:
    /// Gives all number fields one width, so that they line up in a column.
    void FitNumber();
    int ValueAt(int position) const;
    int PositionOf(int value) const;
    void OnSliderMoved(int position);
    void OnSliderAction(int action);
    void OnNumberChanged(int value);
    void EmitChange();

    QSlider* slider_;
    QSpinBox* number_;
    QTimer changeTimer_;
    bool pending_ = false;
    bool isCurved_ = false;
};

} // namespace vellix
