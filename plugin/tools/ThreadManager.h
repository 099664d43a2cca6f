#pragma once

#include "node/BaseNodePointer.h"
#include "node/ViewPlacement.h"
#include "paint/StrokeSmoother.h"

#include <maya/M3dView.h>

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

class QThread;

namespace vellix {

class InputWorker;
struct Stroke;

/// Runs the input thread of the stroke being drawn, and puts what it samples into the stroke. Main thread
/// only; one instance, made at the first use and kept.
class ThreadManager : public QObject {
    Q_OBJECT

public:
    static ThreadManager* GetInstance();

    /// Starts sampling the pointer over the view into the stroke of the node; an input thread that runs is
    /// stopped first. With neither view, node or stroke nothing starts. All are borrowed, and may go before
    /// the thread is stopped: then samples are ignored.
    void CreateInputThread(QWidget* view, BaseNode* node, Stroke* stroke);
    /// Lets the samples of the press come in, for a click that was over before the thread could take them.
    /// Waits for them, though not for long.
    void AwaitFirstSamples();
    /// Stops it. Samples that are still on their way are dropped. Waits for the thread, though not for long.
    void DestroyInputThread();
    bool IsActive() const { return m_active; }

Q_SIGNALS:
    void RunInputWorker();
    void ShutdownInputWorker();

public Q_SLOTS:
    /// A sample of the input thread: see InputWorker::MousePositionChanged.
    void OnMousePositionChanged(const QPoint& position, int size, float opacity, float hardness);

private:
    ThreadManager();
    ~ThreadManager() override;

    bool StrokeIsThere() const;
    void CatchUp();
    /// The widget's view; the active one when it has none.
    static M3dView FindView(const QWidget& widget);

    BaseNodePointer m_node;
    Stroke* m_stroke = nullptr;
    QPointer<QWidget> m_widget;
    M3dView m_view;
    ViewPlacement m_placement; ///< of the last sample; it outlives the view
    StrokeSmoother m_smoother;
    QTimer m_catchUp;
    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<InputWorker> m_worker;
    bool m_active = false;
    /// Threads that did not end in time; each takes its worker along when it does.
    std::vector<QPointer<QThread>> m_late;
};

} // namespace vellix
