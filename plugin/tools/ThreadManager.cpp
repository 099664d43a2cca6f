#include "tools/ThreadManager.h"

#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "tools/InputWorker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QThread>

namespace vellix {

namespace {

constexpr unsigned long MAX_WAIT_MS = 250;

} // namespace

ThreadManager::ThreadManager() {
    m_catchUp.setSingleShot(true);
    m_catchUp.setInterval(0);
    connect(&m_catchUp, &QTimer::timeout, this, &ThreadManager::CatchUp);
}

ThreadManager::~ThreadManager() {
    DestroyInputThread();
    // Their code is unloaded with the plug-in.
    for (const QPointer<QThread>& thread : m_lateThreads) {
        if (thread != nullptr) {
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
    m_smoother.Reset();
    if (view == nullptr || node == nullptr || stroke == nullptr) {
        return;
    }
    m_widget = view;
    m_view = FindView(*view);
    m_node = BaseNodePointer(node);
    m_stroke = stroke;
    stroke->tool = Settings::tabletEraserEnabled ? ToolType::Eraser : Settings::activeTool;
    stroke->color = Settings::activeColor;

    m_thread = std::make_unique<QThread>();
    m_worker = std::make_unique<InputWorker>(*view, stroke->tool);
    connect(this, &ThreadManager::RunInputWorker, m_worker.get(), &InputWorker::Run);
    connect(this, &ThreadManager::ShutdownInputWorker, m_worker.get(), &InputWorker::Shutdown);
    connect(m_worker.get(), &InputWorker::MousePositionChanged, this, &ThreadManager::OnMousePositionChanged);
    m_worker->moveToThread(m_thread.get());
    m_thread->start(QThread::InheritPriority);
    m_active = true;
    Q_EMIT RunInputWorker();
}

void ThreadManager::AwaitFirstSamples() {
    if (!m_active || !StrokeIsThere()) {
        return;
    }
    const int least = m_stroke->tool == ToolType::Text ? 1 : 2;
    QElapsedTimer timer;
    timer.start();
    while (m_stroke->points.size() < least && !timer.hasExpired(MAX_WAIT_MS)) {
        QThread::msleep(1);
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

void ThreadManager::DestroyInputThread() {
    m_active = false;
    m_catchUp.stop();
    if (m_thread != nullptr) {
        Q_EMIT ShutdownInputWorker();
        const bool ended = m_thread->wait(MAX_WAIT_MS);
        disconnect(m_worker.get(), nullptr, this, nullptr);
        disconnect(this, nullptr, m_worker.get(), nullptr);
        // Queued samples would otherwise be added to the next stroke.
        QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
        if (!ended) {
            // A running thread must not be deleted, so it deletes itself when it finishes.
            QThread* const late = m_thread.release();
            connect(late, &QThread::finished, m_worker.release(), &QObject::deleteLater);
            connect(late, &QThread::finished, late, &QObject::deleteLater);
            m_lateThreads.emplace_back(late);
        }
    }
    m_worker.reset();
    m_thread.reset();
    m_node = BaseNodePointer();
    m_stroke = nullptr;
    m_widget.clear();
    m_view = M3dView();
}

void ThreadManager::OnMousePositionChanged(const QPoint& position, int size, float opacity, float hardness) {
    if (!m_active || !StrokeIsThere()) {
        return;
    }
    if (m_widget != nullptr) {
        m_worker->SetView(*m_widget);
        m_placement = ViewPlacement::For(m_view);
    }
    StrokePoint sample;
    sample.size = size;
    sample.opacity = opacity;
    sample.hardness = hardness;
    sample.position = m_placement.ToImage(position);
    const StrokeSmoother::Outcome outcome = m_smoother.Receive(*m_stroke, sample, Settings::textFontFamily);
    if (outcome.firstSegment) {
        m_node->RefreshActiveView();
    } else if (outcome.changed) {
        m_catchUp.start();
    }
}

/// Redraws the view for the last samples of a drag. The tool's drag events redraw it for the samples before,
/// but none follows once the pointer rests.
void ThreadManager::CatchUp() {
    if (m_active && StrokeIsThere() && m_stroke->changed) {
        m_node->RefreshActiveView();
    }
}

/// Returns false when the node has left the scene or a command has committed or dropped the stroke.
bool ThreadManager::StrokeIsThere() const {
    return m_node && m_node->HasActiveStroke() && m_node->GetActiveStroke(QString(), false) == m_stroke;
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
