#include "shell/ProgressDisplay.h"

#include "scene/ScopeExit.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

namespace lightbox {

namespace {

constexpr int PATIENCE = 500;       ///< before the panel opens, milliseconds
constexpr int EVENTS_INTERVAL = 40; ///< between two looks at what the user does, milliseconds
constexpr int PANEL_WIDTH = 360;    ///< pixels

bool IsInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

ProgressPanel::ProgressPanel(QWidget& parent)
    : QDialog(&parent)
    , what_(new QLabel(this))
    , bar_(new QProgressBar(this)) {
    setObjectName("progressPanel");
    setWindowTitle(tr("Progress"));
    setWindowModality(Qt::ApplicationModal);
    what_->setTextFormat(Qt::PlainText);
    bar_->setRange(0, 100);
    auto* const cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName("progressCancel");
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(what_);
    layout->addWidget(bar_);
    layout->addLayout(buttons);
    setMinimumWidth(PANEL_WIDTH);
}

void ProgressPanel::SetProgress(const QString& what, int percent) {
    what_->setText(what);
    bar_->setValue(percent);
}

ProgressDisplay::ProgressDisplay(QWidget& parent)
    : QObject(&parent)
    , parent_(parent) {}

ProgressDisplay::~ProgressDisplay() = default;

void ProgressDisplay::Show(const QString& what, int percent) {
    if (!isRunning_) {
        isRunning_ = true;
        isInterrupted_ = false;
        sinceBegin_.start();
        sinceEvents_.start();
    }
    what_ = what;
    percent_ = percent;
    if (panel_) {
        panel_->SetProgress(what_, percent_);
    }
}

bool ProgressDisplay::IsInterruptRequested() {
    if (isRunning_ && !isInterrupted_ && sinceBegin_.hasExpired(PATIENCE) &&
        sinceEvents_.hasExpired(EVENTS_INTERVAL)) {
        ReceiveEvents();
        sinceEvents_.start();
    }
    return isInterrupted_;
}

void ProgressDisplay::End() {
    isRunning_ = false;
    panel_.reset();
}

void ProgressDisplay::ReceiveEvents() {
    if (!panel_) {
        panel_ = std::make_unique<ProgressPanel>(parent_);
        connect(panel_.get(), &QDialog::rejected, this, [this] { isInterrupted_ = true; });
        panel_->SetProgress(what_, percent_);
        panel_->show();
    }
    qApp->installEventFilter(this);
    const ScopeExit removed([this] { qApp->removeEventFilter(this); });
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

bool ProgressDisplay::BelongsToPanel(const QObject* object) const {
    if (object == panel_->windowHandle()) {
        return true;
    }
    while (object && object != panel_.get()) {
        object = object->parent();
    }
    return object != nullptr;
}

// What is held back comes again: a timer and a socket stay due until they are received.
bool ProgressDisplay::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        isInterrupted_ = true;
        return true;
    }
    const bool isHeldBack = type == QEvent::Timer || type == QEvent::SockAct || type == QEvent::SockClose;
    return (isHeldBack || IsInput(type)) && !BelongsToPanel(watched);
}

} // namespace lightbox
