#include "tools/TransformContextInputHandler.h"

#include "host/Settings.h"
#include "tools/TransformContext.h"

#include <maya/MQtUtil.h>

#include <QMenu>
#include <QMouseEvent>

namespace vellix {

void TransformContextInputHandler::SetTransformContext(TransformContext* context) {
    context_ = context;
}

void TransformContextInputHandler::SetEventFilterEnabled(bool enabled) {
    if (enabled) {
        InstallEventFilters();
    } else {
        RemoveEventFilters();
    }
}

bool TransformContextInputHandler::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && IsWatchedView(watched)) {
        return ProcessMouseEvent(static_cast<QMouseEvent*>(event));
    }
    if (event->type() == QEvent::KeyPress && IsMainWindow(watched)) {
        return ProcessKeyDownEvent(static_cast<QKeyEvent*>(event));
    }
    if (event->type() == QEvent::KeyRelease && IsMainWindow(watched)) {
        return ProcessKeyUpEvent(static_cast<QKeyEvent*>(event));
    }
    return ViewEventFilter::eventFilter(watched, event);
}

bool TransformContextInputHandler::ProcessKeyDownEvent(QKeyEvent* event) {
    TrackBackslash(*event);
    return false;
}

bool TransformContextInputHandler::ProcessKeyUpEvent(QKeyEvent* event) {
    TrackBackslash(*event);
    return false;
}

bool TransformContextInputHandler::ProcessMouseEvent(QMouseEvent* event) {
    if (!IsPlainRightPress(*event) || IsBackslashHeld() || !Settings::transformToolContextMenu) {
        return false;
    }
    ShowContextMenu(QPoint(qRound(event->localPos().x()), qRound(event->localPos().y())));
    return true;
}

QAction* TransformContextInputHandler::AddItem(QMenu& menu, const char* label, Slot slot) {
    QAction* const item = menu.addAction(QString::fromLatin1(label));
    connect(item, &QAction::triggered, this, slot);
    return item;
}

void TransformContextInputHandler::ShowContextMenu(QPoint position) {
    if (!context_) {
        return;
    }
    using Self = TransformContextInputHandler;
    menuPosition_ = position;
    auto* const menu = new QMenu(MQtUtil::mainWindow());
    if (context_->GetStage() == TransformContext::TRANSFORM_STAGE) {
        AddItem(*menu, "Apply Transform", &Self::Apply);
        AddItem(*menu, "Revert Transform", &Self::Revert);
        menu->addSeparator();
        AddItem(*menu, "Flip Horizontal", &Self::FlipHorizontal);
        AddItem(*menu, "Flip Vertical", &Self::FlipVertical);
    } else {
        AddItem(*menu, "Transform", &Self::Transform);
        AddItem(*menu, "Transform Copy", &Self::TransformCopy);
        menu->addSeparator();
        AddItem(*menu, "Cut", &Self::Cut);
        AddItem(*menu, "Copy", &Self::Copy);
        const bool canPaste = context_->PasteAvailable();
        AddItem(*menu, "Paste", &Self::Paste)->setEnabled(canPaste);
        AddItem(*menu, "Paste and Transform", &Self::PasteAndTransform)->setEnabled(canPaste);
    }
    menu->addSeparator();
    AddItem(*menu, "Cancel", &Self::Cancel);
    ShowMenu(menu);
}

void TransformContextInputHandler::Transform() {
    if (context_) {
        context_->Transform(false);
    }
}

void TransformContextInputHandler::TransformCopy() {
    if (context_) {
        context_->Transform(true);
    }
}

void TransformContextInputHandler::FlipHorizontal() {
    if (context_) {
        context_->FlipHorizontal();
    }
}

void TransformContextInputHandler::FlipVertical() {
    if (context_) {
        context_->FlipVertical();
    }
}

void TransformContextInputHandler::Cut() {
    if (context_) {
        context_->Cut();
    }
}

void TransformContextInputHandler::Copy() {
    if (context_) {
        context_->Copy(false);
    }
}

void TransformContextInputHandler::Paste() {
    if (context_) {
        context_->Paste(false, menuPosition_);
    }
}

void TransformContextInputHandler::PasteAndTransform() {
    if (context_) {
        context_->Paste(true, menuPosition_);
    }
}

void TransformContextInputHandler::Apply() {
    if (context_) {
        context_->completeAction();
    }
}

void TransformContextInputHandler::Revert() {
    if (context_) {
        context_->deleteAction();
    }
}

void TransformContextInputHandler::Cancel() {
    if (context_) {
        context_->abortAction();
    }
}

} // namespace vellix
