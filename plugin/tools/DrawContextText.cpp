// DrawContext: the text that is typed after the release.

#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "node/ViewPlacement.h"
#include "paint/Stroke.h"
#include "paint/TextCaret.h"
#include "tools/DrawContext.h"

#include <maya/M3dView.h>
#include <maya/MPoint.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QWidget>

namespace vellix {

namespace {

struct CaretKey {
    QKeySequence::StandardKey key;
    TypedText::Move move;
};

const CaretKey* FindCaretKey(const QKeyEvent& event) {
    using Move = TypedText::Move;
    static const CaretKey keys[] = {
        {QKeySequence::MoveToNextChar, Move::NextCharacter},
        {QKeySequence::MoveToPreviousChar, Move::PreviousCharacter},
        {QKeySequence::MoveToNextWord, Move::NextWord},
        {QKeySequence::MoveToPreviousWord, Move::PreviousWord},
        {QKeySequence::MoveToNextLine, Move::NextLine},
        {QKeySequence::MoveToPreviousLine, Move::PreviousLine},
        {QKeySequence::MoveToStartOfLine, Move::StartOfLine},
        {QKeySequence::MoveToEndOfLine, Move::EndOfLine},
        {QKeySequence::MoveToStartOfDocument, Move::Start},
        {QKeySequence::MoveToEndOfDocument, Move::End},
    };
    for (const CaretKey& key : keys) {
        if (event.matches(key.key)) {
            return &key;
        }
    }
    return nullptr;
}

} // namespace

bool DrawContext::IsTyping() const {
    const Stroke* const stroke = ActiveStroke();
    return stroke != nullptr && stroke->tool == ToolType::Text;
}

void DrawContext::EndTextDraw() {
    CommitOrDrop(&DrawContext::PushStroke);
}

bool DrawContext::ProcessKeyDownEvent(QKeyEvent* event) {
    if (!IsTyping()) {
        return false;
    }
    if (event->key() == Qt::Key_Escape) {
        EndTextDraw();
        return true;
    }
    EditText(*event);
    ShowText();
    return true;
}

void DrawContext::EditText(const QKeyEvent& event) {
    const CaretKey* const caretKey = FindCaretKey(event);
    if (event.matches(QKeySequence::Undo)) {
        text_.Undo();
    } else if (event.matches(QKeySequence::Redo)) {
        text_.Redo();
    } else if (event.matches(QKeySequence::Paste)) {
        Warn(text_.Paste(QGuiApplication::clipboard()->text()));
    } else if (caretKey) {
        text_.MoveCaret(caretKey->move);
    } else if (event.key() == Qt::Key_Backspace) {
        text_.DropBefore();
    } else if (event.key() == Qt::Key_Delete) {
        text_.DropAfter();
    } else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        Warn(text_.Type(QStringLiteral("\n")));
    } else {
        Warn(text_.Type(event.text()));
    }
}

bool DrawContext::EditsText(const QKeyEvent& event) {
    return event.matches(QKeySequence::Undo) || event.matches(QKeySequence::Redo) ||
           event.matches(QKeySequence::Paste) || FindCaretKey(event) != nullptr;
}

void DrawContext::ProcessInputMethodEvent(const QInputMethodEvent& event) {
    text_.Drop(event.replacementStart(), event.replacementLength());
    Warn(text_.Type(event.commitString()));
    int caret = event.preeditString().size();
    for (const QInputMethodEvent::Attribute& attribute : event.attributes()) {
        caret = attribute.type == QInputMethodEvent::Cursor ? attribute.start : caret;
    }
    text_.Compose(event.preeditString(), caret);
    ShowText();
}

void DrawContext::AnswerInputMethod(QInputMethodQueryEvent& query) const {
    if (query.queries().testFlag(Qt::ImEnabled)) {
        query.setValue(Qt::ImEnabled, true);
    }
    if (query.queries().testFlag(Qt::ImSurroundingText)) {
        query.setValue(Qt::ImSurroundingText, text_.Get());
    }
    if (query.queries().testFlag(Qt::ImCursorPosition)) {
        query.setValue(Qt::ImCursorPosition, text_.Caret());
    }
    if (query.queries().testFlag(Qt::ImCursorRectangle) && view_ && !stroke_->points.isEmpty()) {
        QImage image(1, 1, QImage::Format_RGBA8888);
        const QRectF caret = TextCaret::Place(*stroke_, image);
        const ViewPlacement placement = ViewPlacement::For(M3dView::active3dView());
        const MPoint top = placement.ToView(caret.topLeft());
        const MPoint bottom = placement.ToView(caret.bottomLeft());
        const QPointF corner(top.x, view_->height() - top.y);
        query.setValue(Qt::ImCursorRectangle, QRectF(corner, QSizeF(1.0, top.y - bottom.y)).toRect());
    }
}

/// Brings the text that is typed, and the caret, into the stroke and onto the screen.
void DrawContext::ShowText() {
    const QString shown = text_.Shown();
    if (stroke_->text != shown) {
        stroke_->text = shown;
        // Nothing of the text is in an undo step yet, but it must not get lost when the scene is left.
        isUnsaved_ = isUnsaved_ || MayaUtil::MarkSceneModified();
    }
    stroke_->caret = text_.ShownCaret();
    stroke_->changed = true;
    RefreshView();
    QGuiApplication::inputMethod()->update(Qt::ImQueryInput); // its list of words follows the caret
}

/// Types what an input method is still composing: it is shown, and would be lost.
void DrawContext::EndComposition() {
    if (!IsTyping() || text_.Composition().isEmpty()) {
        return;
    }
    QGuiApplication::inputMethod()->commit();
    const QString left = text_.Composition();
    if (IsTyping() && !left.isEmpty()) {
        text_.Compose(QString(), 0);
        Warn(text_.Type(left));
        ShowText();
    }
}

void DrawContext::Warn(bool fits) {
    if (!fits) {
        Logger::Warning(QStringLiteral("A text has at most %1 characters.").arg(TypedText::MAX_LENGTH));
    }
}

} // namespace vellix
