#include "controls/NumberField.h"

#include <QKeyEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lightbox {

NumberField::NumberField(bool isInteger)
    : isInteger_(isInteger)
    , minimum_(isInteger ? std::numeric_limits<int>::min() : std::numeric_limits<double>::lowest())
    , maximum_(isInteger ? std::numeric_limits<int>::max() : std::numeric_limits<double>::max()) {
    Show();
    connect(this, &QLineEdit::editingFinished, this, &NumberField::TakeOver);
    connect(this, &QLineEdit::returnPressed, this, [this] {
        TakeOver();
        Q_EMIT Entered(value_);
    });
}

void NumberField::SetValue(double value) {
    if (!std::isfinite(value)) {
        return;
    }
    value_ = std::clamp(isInteger_ ? std::round(value) : value, minimum_, maximum_);
    Show();
}

void NumberField::SetMinimum(double minimum) {
    minimum_ = minimum;
    maximum_ = std::max(maximum_, minimum_);
    SetValue(value_);
}

void NumberField::SetMaximum(double maximum) {
    maximum_ = maximum;
    minimum_ = std::min(minimum_, maximum_);
    SetValue(value_);
}

void NumberField::SetPrecision(int digits) {
    constexpr int most = 15;
    precision_ = std::clamp(digits, 0, most);
    Show();
}

void NumberField::ShowTrailingZeros(bool on) {
    showsTrailingZeros_ = on;
    Show();
}

void NumberField::Show() {
    QString text = QString::number(value_, 'f', isInteger_ ? 0 : precision_);
    if (!showsTrailingZeros_ && text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0'))) {
            text.chop(1);
        }
        if (text.endsWith(QLatin1Char('.'))) {
            text.chop(1);
        }
    }
    setText(text);
    setModified(false);
}

void NumberField::TakeOver() {
    if (!isModified()) {
        return;
    }
    bool isNumber = false;
    const double typed = text().trimmed().toDouble(&isNumber);
    const double before = value_;
    // Restore the old value when the text is not a number.
    SetValue(isNumber ? typed : before);
    if (value_ != before) {
        Q_EMIT Changed(value_);
    }
}

void NumberField::Step(double distance) {
    TakeOver();
    const double before = value_;
    SetValue(value_ + distance);
    if (value_ != before) {
        Q_EMIT Changed(value_);
    }
}

void NumberField::keyPressEvent(QKeyEvent* event) {
    const bool isStep = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (!isStep || isReadOnly()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    Step(event->key() == Qt::Key_Up ? step : -step);
}

QSize NumberField::sizeHint() const {
    constexpr int usualWidth = 72;
    return {usualWidth, QLineEdit::sizeHint().height()};
}

} // namespace lightbox
