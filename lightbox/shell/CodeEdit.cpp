#include "shell/CodeEdit.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QTextBlock>

namespace lightbox {

namespace {

constexpr int PADDING = 6;

} // namespace

CodeEdit::CodeEdit()
    : numbers_(new QWidget(this)) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(QPlainTextEdit::NoWrap);
    constexpr int tab = 4;
    setTabStopDistance(tab * fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    numbers_->installEventFilter(this);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &CodeEdit::UpdateMargin);
    connect(this, &QPlainTextEdit::updateRequest, numbers_, [this] { numbers_->update(); });
    UpdateMargin();
}

QString CodeEdit::SelectedText() const {
    QString text = textCursor().selectedText();
    return text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

void CodeEdit::UpdateMargin() {
    const auto digits = static_cast<int>(QString::number(qMax(99, blockCount())).size());
    const int width = digits * fontMetrics().horizontalAdvance(QLatin1Char('9')) + 2 * PADDING;
    setViewportMargins(width, 0, 0, 0);
    numbers_->setGeometry(contentsRect().left(), contentsRect().top(), width, contentsRect().height());
}

void CodeEdit::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    UpdateMargin();
}

bool CodeEdit::eventFilter(QObject* watched, QEvent* event) {
    if (watched == numbers_ && event->type() == QEvent::Paint) {
        PaintNumbers();
        return true;
    }
    return QPlainTextEdit::eventFilter(watched, event);
}

void CodeEdit::PaintNumbers() {
    QPainter painter(numbers_);
    painter.fillRect(numbers_->rect(), palette().color(QPalette::Window));
    painter.setFont(font());
    const int current = textCursor().blockNumber();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
        if (place.top() > numbers_->height()) {
            break;
        }
        const auto group = block.blockNumber() == current ? QPalette::Active : QPalette::Disabled;
        painter.setPen(palette().color(group, QPalette::Text));
        painter.drawText(QRectF(0, place.top(), numbers_->width() - PADDING, fontMetrics().height()),
                         Qt::AlignRight, QString::number(block.blockNumber() + 1));
    }
}

void CodeEdit::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isControl = event->modifiers().testFlag(Qt::ControlModifier);
    if (isReturn && (isControl || event->key() == Qt::Key_Enter)) {
        Q_EMIT RunAsked();
        return;
    }
    if (event->key() == Qt::Key_Tab && !textCursor().hasSelection()) {
        constexpr int tab = 4;
        insertPlainText(QString(tab - textCursor().positionInBlock() % tab, QLatin1Char(' ')));
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

} // namespace lightbox
