#include "ui/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace vellix {

ElidedLabel::ElidedLabel(QWidget* parent)
    : GuardedWidget(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::SetTextColor(const QColor& color) {
    textColor_ = color;
    update();
}

QSize ElidedLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    return {fontMetrics().size(Qt::TextSingleLine, OneLine()).width() + margins.left() + margins.right(),
            fontMetrics().height() + margins.top() + margins.bottom()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().size(Qt::TextSingleLine, QStringLiteral("M...")).width(), sizeHint().height()};
}

/// The text with blanks instead of what would break the line.
QString ElidedLabel::OneLine() const {
    QString line = text();
    std::replace_if(
        line.begin(), line.end(),
        [](QChar sign) {
            return sign.category() == QChar::Other_Control || sign.category() == QChar::Separator_Line ||
                   sign.category() == QChar::Separator_Paragraph;
        },
        QLatin1Char(' '));
    return line;
}

bool ElidedLabel::IsShortened() const {
    return fontMetrics().size(Qt::TextSingleLine, OneLine()).width() > contentsRect().width();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString shown = fontMetrics().elidedText(OneLine(), Qt::ElideRight, contentsRect().width());
    if (textColor_.isValid()) {
        painter.setPen(textColor_);
    }
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
                          shown, textColor_.isValid() ? QPalette::NoRole : foregroundRole());
}

bool ElidedLabel::HandleEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip && IsShortened()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text().toHtmlEscaped(), this);
        return true;
    }
    return GuardedWidget::HandleEvent(event);
}

} // namespace vellix
