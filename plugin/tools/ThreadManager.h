#pragma once

#include "node/BaseNodePointer.h"
#include "node/ViewPlacement.h"
#include "paint/LineStyle.h"
#include "paint/Stroke.h"
#include "paint/StrokeSmoother.h"

#include <maya/M3dView.h>
#include <maya/MDagPath.h>

#include <QList>
#include <QObject>
#include <QPoint>
#include <QPointF>
#include <QPointer>
#include <QRect>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

class QThread;

namespace vellix {

class InputWorker;

/// Runs the input thread of the stroke being drawn and adds its samples to the stroke. Main thread only. One
/// instance, created at the first use and kept.
class ThreadManager : public QObject {
    Q_OBJECT

public:
    static ThreadManager* GetInstance();

    /// Starts sampling the pointer over `view` into `stroke` of `node`. Stops an input thread that is still
    /// running. Starts nothing if an argument is null. Borrows all three; samples are ignored once one of
    /// them is gone, or the view has another place, size or camera.
    void CreateInputThread(QWidget* view, BaseNode* node, Stroke* stroke);
    /// Ends the sampling of a stroke that is shown, and adds the samples which the thread took before the
    /// release, and the place of the release (screen pixels). Takes back what it added of the pointer's way
    /// after the release, which was delivered late; `releaseTime` is as in EventClock::TimeOf. Does nothing
    /// for a click that is still without samples.
    void TakeRest(const QPoint& release, qint64 releaseTime);
    /// Waits, at most 250 ms, for the first samples of a click that ended before the thread delivered any.
    void AwaitFirstSamples();
    /// Draws what the line style holds back: the line reaches the pen. Adds nothing to a plain line.
    void FinishLine();
    /// Stops the input thread, waiting at most 250 ms, and drops samples not yet delivered.
    void DestroyInputThread();
    bool IsActive() const { return active_; }

    /// A tablet's pen touches or leaves the tablet. Strokes begun meanwhile that are drawn as curves take the
    /// pen's own samples.
    void SetPenDown(bool isDown) { isPenDown_ = isDown; }
    /// Receives a sample of the pen itself: its place on the screen, which may lie between two pixels, and
    /// the tablet's time in milliseconds; 0 if unknown. Keeps the sampling period of the pointer, except for
    /// the `last` one.
    void OnPenMoved(const QPointF& onScreen, unsigned long time, bool last);

Q_SIGNALS:
    void RunInputWorker();
    void ShutdownInputWorker();
    /// The view has another place, size or camera than at the press. The stroke gets no more samples.
    void ViewChanged();

public Q_SLOTS:
    /// Receives a sample; see InputWorker::MousePositionChanged.
    void OnMousePositionChanged(const QPoint& position, int size, float opacity, float hardness, qint64 time);

private:
    ThreadManager();
    ~ThreadManager() override;

    /// What the input thread sends; see InputWorker::MousePositionChanged.
    struct Sample {
        QPoint position;
        int size = 1;
        float opacity = 1.0f;
        float hardness = 1.0f;
        QPointF exact;   ///< the position, between pixels if it is known so exactly
        qint64 time = 0; ///< see EventClock
    };

    /// A sample that was added to the stroke, as the smoother received it.
    struct Added {
        Sample sample;
        StrokePoint point;
        QPointF exact; ///< image pixels
    };

    /// Where the samples of the stroke come from.
    enum class Source {
        Pointer,
        PenAwaited, ///< the pen, once it has told something; those of the pointer are kept aside
        Pen,
    };

    bool StrokeIsThere() const;
    bool ViewIsAsAtPress() const;
    bool HasFirstSamples() const;
    void TakeAside();
    void TakeBackAfter(const QPoint& release, qint64 releaseTime);
    void TakeRelease(const QPoint& release);
    bool EndThread();
    void Take(const Sample& sample);
    void AddSample(const Sample& sample);
    void CatchUp();
    /// The widget's view; the active one when it has none.
    static M3dView FindView(const QWidget& widget);

    BaseNodePointer node_;
    Stroke* stroke_ = nullptr;
    QPointer<QWidget> widget_;
    M3dView view_;
    QRect place_;             ///< of the view on the screen, at the press
    MDagPath camera_;         ///< of the view at the press
    ViewPlacement placement_; ///< of the last sample; it outlives the view
    LineStyle style_;
    StrokeSmoother smoother_;
    std::vector<Added> added_; ///< to the stroke
    QTimer catchUp_;
    std::unique_ptr<QThread> thread_;
    std::unique_ptr<InputWorker> worker_;
    bool active_ = false;
    bool isLate_ = false; ///< samples come after the release, and are kept aside
    QList<Sample> late_;
    Sample last_;     ///< added to the stroke
    int samples_ = 0; ///< of the stroke, so far
    bool isPenDown_ = false;
    Source source_ = Source::Pointer;
    QList<Sample> aside_;       ///< of the pointer, while the pen is awaited
    unsigned long penTime_ = 0; ///< of the pen's last sample, milliseconds
    bool isShort_ = false;      ///< of memory, as was reported for this stroke
    /// Threads that did not end in time. Each deletes itself and its worker when it finishes.
    std::vector<QPointer<QThread>> lateThreads_;
};

} // namespace vellix
