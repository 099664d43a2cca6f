#include "tools/TransformContextInputHandler.h"

#include "host/Settings.h"
#include "tools/TransformContext.h"

#include <maya/MQtUtil.h>

#include <QMenu>
#include <QMouseEvent>

namespace vellix {

void TransformContextInputHandler::SetTransformContext(TransformContext* context) {
    m_context = context;
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
    if (m_context == nullptr) {
        return;
    }
    using Self = TransformContextInputHandler;
    m_menuPosition = position;
    auto* const menu = new QMenu(MQtUtil::mainWindow());
    if (m_context->GetStage() == TransformContext::TRANSFORM_STAGE) {
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
        const bool canPaste = m_context->PasteAvailable();
        AddItem(*menu, "Paste", &Self::Paste)->setEnabled(canPaste);
        AddItem(*menu, "Paste and Transform", &Self::PasteAndTransform)->setEnabled(canPaste);
    }
    menu->addSeparator();
    AddItem(*menu, "Cancel", &Self::Cancel);
    ShowMenu(menu);
}

void TransformContextInputHandler::Transform() {
    if (m_context != nullptr) {
        m_context->Transform(false);
    }
}

void TransformContextInputHandler::TransformCopy() {
    if (m_context != nullptr) {
        m_context->Transform(true);
    }
}

void TransformContextInputHandler::FlipHorizontal() {
    if (m_context != nullptr) {
        m_context->FlipHorizontal();
    }
}

void TransformContextInputHandler::FlipVertical() {
    if (m_context != nullptr) {
        m_context->FlipVertical();
    }
}

void TransformContextInputHandler::Cut() {
    if (m_context != nullptr) {
        m_context->Cut();
    }
}

void TransformContextInputHandler::Copy() {
    if (m_context != nullptr) {
        m_context->Copy(false);
    }
}

void TransformContextInputHandler::Paste() {
    if (m_context != nullptr) {
        m_context->Paste(false, m_menuPosition);
    }
}

void TransformContextInputHandler::PasteAndTransform() {
    if (m_context != nullptr) {
        m_context->Paste(true, m_menuPosition);
    }
}

void TransformContextInputHandler::Apply() {
    if (m_context != nullptr) {
        m_context->completeAction();
    }
}

void TransformContextInputHandler::Revert() {
    if (m_context != nullptr) {
        m_context->deleteAction();
    }
}

void TransformContextInputHandler::Cancel() {
    if (m_context != nullptr) {
        m_context->abortAction();
    }
}

} // namespace vellix
