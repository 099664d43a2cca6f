#include "tools/ThreadManager.h"

#include "host/Guarded.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "tools/InputWorker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QThread>

#include <new>

namespace vellix {

namespace {

constexpr unsigned long MAX_WAIT_MS = 250;

} // namespace

ThreadManager::ThreadManager() {
    catchUp_.setSingleShot(true);
    catchUp_.setInterval(0);
    connect(&catchUp_, &QTimer::timeout, this, &ThreadManager::CatchUp);
}

ThreadManager::~ThreadManager() {
    DestroyInputThread();
    // Their code is unloaded with the plug-in.
    for (const QPointer<QThread>& thread : lateThreads_) {
        if (thread) {
            thread->wait();
        }
    }
}

ThreadManager* ThreadManager::GetInstance() {
    static ThreadManager instance;
    return &instance;
}

void ThreadManager::CreateInputThread(QWidget* view, BaseNode* node, Stroke* stroke) {
    DestroyInputThread();
    smoother_.Reset();
    isShort_ = false;
    if (!view || !node || !stroke) {
        return;
    }
    widget_ = view;
    view_ = FindView(*view);
    node_ = BaseNodePointer(node);
    stroke_ = stroke;
    stroke->tool = Settings::tabletEraserEnabled ? ToolType::Eraser : Settings::activeTool;
    stroke->color = Settings::activeColor;

    thread_ = std::make_unique<QThread>();
    worker_ = std::make_unique<InputWorker>(*view, stroke->tool);
    connect(this, &ThreadManager::RunInputWorker, worker_.get(), &InputWorker::Run);
    connect(this, &ThreadManager::ShutdownInputWorker, worker_.get(), &InputWorker::Shutdown);
    connect(worker_.get(), &InputWorker::MousePositionChanged, this, &ThreadManager::OnMousePositionChanged);
    worker_->moveToThread(thread_.get());
    thread_->start(QThread::InheritPriority);
    active_ = true;
    Q_EMIT RunInputWorker();
}

void ThreadManager::AwaitFirstSamples() {
    if (!active_ || !StrokeIsThere()) {
        return;
    }
    const int least = stroke_->tool == ToolType::Text ? 1 : 2;
    QElapsedTimer timer;
    timer.start();
    while (stroke_->points.size() < least && !timer.hasExpired(MAX_WAIT_MS)) {
        QThread::msleep(1);
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

void ThreadManager::DestroyInputThread() {
    active_ = false;
    catchUp_.stop();
    if (thread_) {
        Q_EMIT ShutdownInputWorker();
        const bool ended = thread_->wait(MAX_WAIT_MS);
        disconnect(worker_.get(), nullptr, this, nullptr);
        disconnect(this, nullptr, worker_.get(), nullptr);
        // Queued samples would otherwise be added to the next stroke.
        QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
        if (!ended) {
            // A running thread must not be deleted, so it deletes itself when it finishes.
            QThread* const late = thread_.release();
            connect(late, &QThread::finished, worker_.release(), &QObject::deleteLater);
            connect(late, &QThread::finished, late, &QObject::deleteLater);
            lateThreads_.emplace_back(late);
        }
    }
    worker_.reset();
    thread_.reset();
    node_ = BaseNodePointer();
    stroke_ = nullptr;
    widget_.clear();
    view_ = M3dView();
}

void ThreadManager::OnMousePositionChanged(const QPoint& position, int size, float opacity, float hardness) {
    if (!active_ || !StrokeIsThere()) {
        return;
    }
    try {
        AddSample(position, size, opacity, hardness);
    } catch (const std::bad_alloc& reason) {
        if (!isShort_) {
            LogFailure("A part of the stroke", reason);
        }
        isShort_ = true;
    }
}

void ThreadManager::AddSample(const QPoint& position, int size, float opacity, float hardness) {
    if (widget_) {
        worker_->SetView(*widget_);
        placement_ = ViewPlacement::For(view_);
    }
    StrokePoint sample;
    sample.size = size;
    sample.opacity = opacity;
    sample.hardness = hardness;
    sample.position = placement_.ToImage(position);
    const StrokeSmoother::Outcome outcome = smoother_.Receive(*stroke_, sample, Settings::textFontFamily);
    if (outcome.firstSegment) {
        node_->RefreshActiveView();
    } else if (outcome.changed) {
        catchUp_.start();
    }
}

/// Redraws the view for the last samples of a drag. The tool's drag events redraw it for the samples before,
/// but none follows once the pointer rests.
void ThreadManager::CatchUp() {
    RunGuarded("Refreshing the view", [this] {
        if (active_ && StrokeIsThere() && stroke_->changed) {
            node_->RefreshActiveView();
        }
    });
}

/// Returns false when the node has left the scene or a command has committed or dropped the stroke.
bool ThreadManager::StrokeIsThere() const {
    return node_ && node_->HasActiveStroke() && node_->GetActiveStroke(QString(), false) == stroke_;
}

M3dView ThreadManager::FindView(const QWidget& widget) {
    for (unsigned int index = 0; index < M3dView::numberOf3dViews(); ++index) {
        M3dView view;
        if (M3dView::get3dView(index, view) && view.widget() == &widget) {
            return view;
        }
    }
    return M3dView::active3dView();
}

} // namespace vellix
