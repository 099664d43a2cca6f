#include "ui/NumberSlider.h"

#include "ui/FieldUndo.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

namespace vellix {

namespace {

/// Interval of Changed() while the slider is dragged.
constexpr int CHANGE_INTERVAL_MS = 60;
constexpr int SLIDER_WIDTH = 80;

} // namespace

NumberSlider::NumberSlider(const QString& name, QWidget* parent)
    : QWidget(parent)
    , slider_(new QSlider(Qt::Horizontal))
    , number_(new QSpinBox) {
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
    connect(&changeTimer_, &QTimer::timeout, this, &NumberSlider::EmitChange);
    connect(slider_, &QSlider::valueChanged, this, &NumberSlider::OnSliderMoved);
    connect(slider_, &QSlider::sliderReleased, this, &NumberSlider::EmitChange);
    connect(number_, static_cast<void (QSpinBox::*)(int)>(&QSpinBox::valueChanged), this,
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

void NumberSlider::SetRange(int least, int most) {
    const QSignalBlocker sliderBlocker(slider_);
    const QSignalBlocker numberBlocker(number_);
    slider_->setRange(least, most);
    slider_->setPageStep(qMax(1, (most - least) / 10));
    number_->setRange(least, most);
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
    return slider_->value();
}

void NumberSlider::SetValue(int value) {
    if (pending_ || value == slider_->value()) {
        return;
    }
    const QSignalBlocker sliderBlocker(slider_);
    const QSignalBlocker numberBlocker(number_);
    slider_->setValue(value);
    number_->setValue(value);
}

void NumberSlider::OnSliderMoved(int value) {
    const QSignalBlocker blocker(number_);
    number_->setValue(value);
    pending_ = true;
    if (!slider_->isSliderDown()) {
        EmitChange();
    } else if (!changeTimer_.isActive()) {
        changeTimer_.start();
    }
}

void NumberSlider::OnNumberChanged(int value) {
    const QSignalBlocker blocker(slider_);
    slider_->setValue(value);
    pending_ = true;
    EmitChange();
}

void NumberSlider::EmitChange() {
    changeTimer_.stop();
    if (pending_) {
        pending_ = false;
        Q_EMIT Changed(slider_->value());
    }
}

} // namespace vellix
