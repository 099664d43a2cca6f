#include "ui/NumberSlider.h"

#include "host/GuardedConnect.h"
#include "ui/FieldUndo.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include <cmath>

namespace vellix {

namespace {

/// Interval of Changed() while the slider is dragged.
constexpr int CHANGE_INTERVAL_MS = 60;
constexpr int SLIDER_WIDTH = 80;
/// Positions of a curved slider, enough that each value has one.
constexpr int CURVE_STEPS = 10000;

/// Takes a number that is too large as the largest, and not its first digits.
class NumberField : public QSpinBox {
protected:
    QValidator::State validate(QString& text, int& position) const override {
        const QValidator::State state = QSpinBox::validate(text, position);
        return state == QValidator::Invalid && IsTooLarge(text) ? QValidator::Intermediate : state;
    }

    void fixup(QString& text) const override {
        if (IsTooLarge(text)) {
            text = prefix() + locale().toString(maximum()) + suffix();
        } else {
            QSpinBox::fixup(text);
        }
    }

private:
    bool IsTooLarge(const QString& text) const {
        QString number = text;
        if (!suffix().isEmpty() && number.endsWith(suffix())) {
            number.chop(suffix().size());
        }
        bool isNumber = false;
        const double value = number.trimmed().toDouble(&isNumber);
        return isNumber && number.indexOf(QLatin1Char('.')) < 0 && value > maximum();
    }
};

} // namespace

NumberSlider::NumberSlider(const QString& name, QWidget* parent)
    : QWidget(parent)
    , slider_(new QSlider(Qt::Horizontal))
    , number_(new NumberField) {
    setObjectName(name);
    slider_->setObjectName(name + QStringLiteral("Slider"));
    number_->setObjectName(name + QStringLiteral("Number"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(slider_, 1);
    row->addWidget(number_);
    slider_->setMinimumWidth(SLIDER_WIDTH);
    slider_->setFocusPolicy(Qt::StrongFocus);
    number_->setAlignment(Qt::AlignRight);
    number_->setButtonSymbols(QAbstractSpinBox::NoButtons);
    // Takes the number when it is complete, not with every digit.
    number_->setKeyboardTracking(false);
    number_->setAccelerated(true);
    setFocusProxy(slider_);
    new FieldUndo(*number_, [this] {
        return number_->text() !=
               number_->prefix() + number_->locale().toString(number_->value()) + number_->suffix();
    });

    changeTimer_.setSingleShot(true);
    changeTimer_.setInterval(CHANGE_INTERVAL_MS);
    ConnectGuarded(&changeTimer_, &QTimer::timeout, this, &NumberSlider::EmitChange);
    ConnectGuarded(slider_, &QSlider::valueChanged, this, &NumberSlider::OnSliderMoved);
    ConnectGuarded(slider_, &QSlider::actionTriggered, this, &NumberSlider::OnSliderAction);
    ConnectGuarded(slider_, &QSlider::sliderReleased, this, &NumberSlider::EmitChange);
    ConnectGuarded(number_, static_cast<void (QSpinBox::*)(int)>(&QSpinBox::valueChanged), this,
                   &NumberSlider::OnNumberChanged);
}

void NumberSlider::SetUp(int least, int most, const QString& suffix, const QString& toolTip) {
    // Setting the suffix again would discard text that is being typed.
    if (suffix != number_->suffix()) {
        number_->setSuffix(suffix);
    }
    SetRange(least, most);
    FitNumber();
    for (QWidget* part : {static_cast<QWidget*>(slider_), static_cast<QWidget*>(number_)}) {
        part->setToolTip(toolTip);
        part->setAccessibleName(toolTip);
    }
}

void NumberSlider::SetCurved(bool curved) {
    isCurved_ = curved;
    SetRange(number_->minimum(), number_->maximum());
}

void NumberSlider::SetRange(int least, int most) {
    const QSignalBlocker sliderBlocker(slider_);
    const QSignalBlocker numberBlocker(number_);
    number_->setRange(least, most);
    slider_->setRange(isCurved_ ? 0 : least, isCurved_ ? CURVE_STEPS : most);
    slider_->setPageStep(qMax(1, (slider_->maximum() - slider_->minimum()) / 10));
    slider_->setValue(PositionOf(number_->value()));
}

/// A curved slider's value grows with the square of its position, so that a third of the way is a tenth of
/// the range.
int NumberSlider::ValueAt(int position) const {
    if (!isCurved_) {
        return position;
    }
    const double part = static_cast<double>(position) / CURVE_STEPS;
    return number_->minimum() + qRound(part * part * (number_->maximum() - number_->minimum()));
}

int NumberSlider::PositionOf(int value) const {
    const int range = number_->maximum() - number_->minimum();
    return !isCurved_ || range <= 0
               ? value
               : qRound(std::sqrt(static_cast<double>(value - number_->minimum()) / range) * CURVE_STEPS);
}

/// An arrow key changes the value by 1 wherever the slider stands.
void NumberSlider::OnSliderAction(int action) {
    const bool up = action == QAbstractSlider::SliderSingleStepAdd;
    if (isCurved_ && (up || action == QAbstractSlider::SliderSingleStepSub)) {
        const int value = number_->value() + (up ? 1 : -1);
        slider_->setSliderPosition(PositionOf(qBound(number_->minimum(), value, number_->maximum())));
    }
}

void NumberSlider::FitNumber() {
    const QFontMetrics metrics = number_->fontMetrics();
    const auto widthOf = [&metrics](const QString& text) {
        return metrics.size(Qt::TextSingleLine, text).width();
    };
    const QString widest = QString::number(number_->maximum()) + number_->suffix();
    const int around = number_->sizeHint().width() - widthOf(widest);
    number_->setMinimumWidth(around + widthOf(QStringLiteral("100 px")));
}

void NumberSlider::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        FitNumber();
    }
}

int NumberSlider::GetValue() const {
    return number_->value();
}

void NumberSlider::SetValue(int value) {
    if (pending_ || value == number_->value()) {
        return;
    }
    const QSignalBlocker sliderBlocker(slider_);
    const QSignalBlocker numberBlocker(number_);
    number_->setValue(value);
    slider_->setValue(PositionOf(number_->value()));
}

void NumberSlider::OnSliderMoved(int position) {
    const QSignalBlocker blocker(number_);
    number_->setValue(ValueAt(position));
    pending_ = true;
    if (!slider_->isSliderDown()) {
        EmitChange();
    } else if (!changeTimer_.isActive()) {
        changeTimer_.start();
    }
}

void NumberSlider::OnNumberChanged(int value) {
    const QSignalBlocker blocker(slider_);
    slider_->setValue(PositionOf(value));
    pending_ = true;
    EmitChange();
}

void NumberSlider::EmitChange() {
    changeTimer_.stop();
    if (pending_) {
        pending_ = false;
        Q_EMIT Changed(number_->value());
    }
}

} // namespace vellix
