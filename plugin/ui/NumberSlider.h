#pragma once

#include <QTimer>
#include <QWidget>

class QSlider;
class QSpinBox;

namespace vellix {

/// A slider and a number for one whole value. While the slider is dragged the number follows at once and
/// changes are told a few times a second; the last one is told when the slider is let go.
class NumberSlider : public QWidget {
    Q_OBJECT

public:
    /// The slider and the number are named after it: "...Slider", "...Number".
    explicit NumberSlider(const QString& name, QWidget* parent = nullptr);

    /// The suffix stands behind the number, and both widgets carry the tooltip and are named by it.
    void SetUp(int least, int most, const QString& suffix, const QString& toolTip);
    void SetRange(int least, int most);

    int GetValue() const;
    /// Shows the value without telling it. What the user is about to change stays as it is.
    void SetValue(int value);

Q_SIGNALS:
    /// The user has chosen another value.
    void Changed(int value);

protected:
    void changeEvent(QEvent* event) override;

private:
    /// Numbers below each other are as wide as each other.
    void FitNumber();
    void OnSliderMoved(int value);
    void OnNumberChanged(int value);
    void Tell();

    QSlider* m_slider;
    QSpinBox* m_number;
    QTimer m_tellTimer;
    bool m_pending = false;
};

} // namespace vellix
