#include "tools/TransformContextInputHandler.h"

#include "host/Guarded.h"
#include "host/GuardedConnect.h"
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

bool TransformContextInputHandler::ProcessEvent(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && IsWatchedView(watched)) {
        return ProcessMouseEvent(static_cast<QMouseEvent*>(event));
    }
    if (event->type() == QEvent::KeyPress && IsMainWindow(watched)) {
        return ProcessKeyDownEvent(static_cast<QKeyEvent*>(event));
    }
    if (event->type() == QEvent::KeyRelease && IsMainWindow(watched)) {
        return ProcessKeyUpEvent(static_cast<QKeyEvent*>(event));
    }
    return ViewEventFilter::ProcessEvent(watched, event);
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
    ConnectGuarded(item, &QAction::triggered, this, slot);
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

/// Has the tool do something. If that throws, the error is reported, and what is half done dropped.
template <typename Action>
void TransformContextInputHandler::Tell(Action action) {
    TransformContext* const context = context_;
    if (!context) {
        return;
    }
    const bool isDone = RunGuarded("The transform", [&] { action(*context); });
    if (!isDone && context_) {
        RunGuarded("Dropping the transform", [&] { context->DropUnfinished(); });
    }
}

void TransformContextInputHandler::Transform() {
    Tell([](TransformContext& context) { context.Transform(false); });
}

void TransformContextInputHandler::TransformCopy() {
    Tell([](TransformContext& context) { context.Transform(true); });
}

void TransformContextInputHandler::FlipHorizontal() {
    Tell([](TransformContext& context) { context.FlipHorizontal(); });
}

void TransformContextInputHandler::FlipVertical() {
    Tell([](TransformContext& context) { context.FlipVertical(); });
}

void TransformContextInputHandler::Cut() {
    Tell([](TransformContext& context) { context.Cut(); });
}

void TransformContextInputHandler::Copy() {
    Tell([](TransformContext& context) { context.Copy(false); });
}

void TransformContextInputHandler::Paste() {
    Tell([this](TransformContext& context) { context.Paste(false, menuPosition_); });
}

void TransformContextInputHandler::PasteAndTransform() {
    Tell([this](TransformContext& context) { context.Paste(true, menuPosition_); });
}

void TransformContextInputHandler::Apply() {
    Tell([](TransformContext& context) { context.completeAction(); });
}

void TransformContextInputHandler::Revert() {
    Tell([](TransformContext& context) { context.deleteAction(); });
}

void TransformContextInputHandler::Cancel() {
    Tell([](TransformContext& context) { context.abortAction(); });
}

} // namespace vellix
