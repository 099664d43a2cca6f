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
    , m_slider(new QSlider(Qt::Horizontal))
    , m_number(new QSpinBox) {
    setObjectName(name);
    m_slider->setObjectName(name + QStringLiteral("Slider"));
    m_number->setObjectName(name + QStringLiteral("Number"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_slider, 1);
    row->addWidget(m_number);
    m_slider->setMinimumWidth(SLIDER_WIDTH);
    m_slider->setFocusPolicy(Qt::StrongFocus);
    m_number->setAlignment(Qt::AlignRight);
    m_number->setButtonSymbols(QAbstractSpinBox::NoButtons);
    // Takes the number when it is complete, not with every digit.
    m_number->setKeyboardTracking(false);
    m_number->setAccelerated(true);
    setFocusProxy(m_slider);
    new FieldUndo(*m_number, [this] {
        return m_number->text() !=
               m_number->prefix() + m_number->locale().toString(m_number->value()) + m_number->suffix();
    });

    m_changeTimer.setSingleShot(true);
    m_changeTimer.setInterval(CHANGE_INTERVAL_MS);
    connect(&m_changeTimer, &QTimer::timeout, this, &NumberSlider::EmitChange);
    connect(m_slider, &QSlider::valueChanged, this, &NumberSlider::OnSliderMoved);
    connect(m_slider, &QSlider::sliderReleased, this, &NumberSlider::EmitChange);
    connect(m_number, static_cast<void (QSpinBox::*)(int)>(&QSpinBox::valueChanged), this,
            &NumberSlider::OnNumberChanged);
}

void NumberSlider::SetUp(int least, int most, const QString& suffix, const QString& toolTip) {
    // Setting the suffix again would discard text that is being typed.
    if (suffix != m_number->suffix()) {
        m_number->setSuffix(suffix);
    }
    SetRange(least, most);
    FitNumber();
    for (QWidget* part : {static_cast<QWidget*>(m_slider), static_cast<QWidget*>(m_number)}) {
        part->setToolTip(toolTip);
        part->setAccessibleName(toolTip);
    }
}

void NumberSlider::SetRange(int least, int most) {
    const QSignalBlocker sliderBlocker(m_slider);
    const QSignalBlocker numberBlocker(m_number);
    m_slider->setRange(least, most);
    m_slider->setPageStep(qMax(1, (most - least) / 10));
    m_number->setRange(least, most);
}

void NumberSlider::FitNumber() {
    const QFontMetrics metrics = m_number->fontMetrics();
    const auto widthOf = [&metrics](const QString& text) {
        return metrics.size(Qt::TextSingleLine, text).width();
    };
    const QString widest = QString::number(m_number->maximum()) + m_number->suffix();
    const int around = m_number->sizeHint().width() - widthOf(widest);
    m_number->setMinimumWidth(around + widthOf(QStringLiteral("100 px")));
}

void NumberSlider::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        FitNumber();
    }
}

int NumberSlider::GetValue() const {
    return m_slider->value();
}

void NumberSlider::SetValue(int value) {
    if (m_pending || value == m_slider->value()) {
        return;
    }
    const QSignalBlocker sliderBlocker(m_slider);
    const QSignalBlocker numberBlocker(m_number);
    m_slider->setValue(value);
    m_number->setValue(value);
}

void NumberSlider::OnSliderMoved(int value) {
    const QSignalBlocker blocker(m_number);
    m_number->setValue(value);
    m_pending = true;
    if (!m_slider->isSliderDown()) {
        EmitChange();
    } else if (!m_changeTimer.isActive()) {
        m_changeTimer.start();
    }
}

void NumberSlider::OnNumberChanged(int value) {
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(value);
    m_pending = true;
    EmitChange();
}

void NumberSlider::EmitChange() {
    m_changeTimer.stop();
    if (m_pending) {
        m_pending = false;
        Q_EMIT Changed(m_slider->value());
    }
}

} // namespace vellix
