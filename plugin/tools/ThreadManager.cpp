#include "tools/ThreadManager.h"

#include "host/Guarded.h"
#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "node/BaseNode.h"
#include "paint/Stroke.h"
#include "paint/ToolTable.h"
#include "tools/EventClock.h"
#include "tools/InputWorker.h"
#include "tools/LateSamples.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QLineF>
#include <QScopedValueRollback>
#include <QThread>

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

namespace vellix {

namespace {

constexpr unsigned long MAX_WAIT_MS = 250;
// So many samples of the pointer without one of the pen: the tablet sends none.
constexpr int MOST_ASIDE = 8;
// View pixels between the end of a stroke as the pen and as the button tells it.
constexpr int END_TOLERANCE = 2;

QRect PlaceOnScreen(const QWidget& view) {
    return QRect(view.mapToGlobal(QPoint(0, 0)), view.size());
}

MDagPath CameraOf(const M3dView& view) {
    MDagPath camera;
    view.getCamera(camera);
    return camera;
}

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
    samples_ = 0;
    isShort_ = false;
    source_ = Source::Pointer;
    penTime_ = 0;
    if (!view || !node || !stroke) {
        return;
    }
    widget_ = view;
    view_ = FindView(*view);
    place_ = PlaceOnScreen(*view);
    camera_ = CameraOf(view_);
    node_ = BaseNodePointer(node);
    stroke_ = stroke;
    stroke->tool = Settings::tabletEraserEnabled ? ToolType::Eraser : Settings::activeTool;
    stroke->color = Settings::activeColor;
    style_ = Settings::lineStyle;
    style_.sizeVaries = Settings::GetPenPressure(stroke->tool).setsSize;
    smoother_.Reset(style_);
    if (isPenDown_ && Settings::lineStyle.smoothCurves && KindOf(stroke->tool) == ToolKind::Freehand) {
        source_ = Source::PenAwaited;
    }

    thread_ = std::make_unique<QThread>();
    worker_ = std::make_unique<InputWorker>(*view, stroke->tool);
    connect(this, &ThreadManager::RunInputWorker, worker_.get(), &InputWorker::Run);
    connect(this, &ThreadManager::ShutdownInputWorker, worker_.get(), &InputWorker::Shutdown);
    ConnectGuarded(worker_.get(), &InputWorker::MousePositionChanged, this,
                   &ThreadManager::OnMousePositionChanged);
    worker_->moveToThread(thread_.get());
    thread_->start(QThread::InheritPriority);
    active_ = true;
    Q_EMIT RunInputWorker();
}

void ThreadManager::TakeRest(const QPoint& release, qint64 releaseTime) {
    if (!active_ || !StrokeIsThere() || !HasFirstSamples() || !EndThread()) {
        return;
    }
    {
        const QScopedValueRollback<bool> late(isLate_, true);
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
    QList<Sample> rest;
    std::swap(rest, late_);
    const QPoint end = worker_->ToView(release);
    if (source_ == Source::Pen) {
        if ((last_.position - end).manhattanLength() > END_TOLERANCE) {
            TakeRelease(end);
        }
        return;
    }
    TakeAside();
    TakeBackAfter(end, releaseTime);
    QList<QPoint> positions;
    for (const Sample& sample : rest) {
        positions.append(sample.position);
    }
    const int count = CountBeforeRelease(last_.position, positions, end);
    for (int i = 0; i < count && active_; ++i) {
        Take(rest.at(i));
    }
    TakeRelease(end);
}

/// Ends the stroke where the button was released (view pixels).
void ThreadManager::TakeRelease(const QPoint& release) {
    if (active_ && last_.position != release) {
        Sample sample = last_;
        sample.position = release;
        sample.exact = release;
        sample.time = EventClock::Now();
        Take(sample);
    }
}

/// Takes back the samples that were added before the release (view pixels) was delivered, but taken after it.
void ThreadManager::TakeBackAfter(const QPoint& release, qint64 releaseTime) {
    if (!active_) {
        return;
    }
    try {
        std::vector<DatedSample> samples;
        for (const Added& added : added_) {
            samples.push_back({added.sample.position, added.sample.time});
        }
        const auto count = static_cast<std::size_t>(CountBeforeRelease(samples, release, releaseTime));
        if (count >= added_.size()) {
            return;
        }
        Stroke shorter = *stroke_;
        shorter.points.clear();
        StrokeSmoother smoother;
        smoother.Reset(style_);
        for (std::size_t i = 0; i < count; ++i) {
            smoother.Receive(shorter, added_[i].point, added_[i].exact,
                             static_cast<double>(added_[i].sample.time), Settings::textFontFamily);
        }
        stroke_->points.swap(shorter.points);
        stroke_->tail.clear();
        stroke_->changed = true;
        stroke_->restarted = true;
        std::swap(smoother_, smoother);
        last_ = added_[count - 1].sample;
    } catch (const std::bad_alloc&) {
        // the stroke stays as long as it is
    }
}

/// The pen tells nothing: the pointer's samples are the stroke's.
void ThreadManager::TakeAside() {
    source_ = Source::Pointer;
    QList<Sample> aside;
    std::swap(aside, aside_);
    for (const Sample& sample : aside) {
        if (active_) {
            Take(sample);
        }
    }
}

void ThreadManager::AwaitFirstSamples() {
    if (!active_ || !StrokeIsThere()) {
        return;
    }
    QElapsedTimer timer;
    timer.start();
    while (active_ && !HasFirstSamples() && !timer.hasExpired(MAX_WAIT_MS)) {
        QThread::msleep(1);
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}

/// Whether the stroke can be seen.
bool ThreadManager::HasFirstSamples() const {
    return samples_ >= (stroke_->tool == ToolType::Text ? 1 : 2);
}

void ThreadManager::FinishLine() {
    if (stroke_ && StrokeIsThere()) {
        TakeAside();
        smoother_.Finish(*stroke_);
        node_->SetPenString(QString(), QLineF());
    }
}

/// Returns false if the thread has not ended after 250 ms.
bool ThreadManager::EndThread() {
    Q_EMIT ShutdownInputWorker();
    return thread_->wait(MAX_WAIT_MS);
}

void ThreadManager::DestroyInputThread() {
    active_ = false;
    catchUp_.stop();
    if (thread_) {
        const bool ended = EndThread();
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
    if (node_) {
        node_->SetPenString(QString(), QLineF());
    }
    node_ = BaseNodePointer();
    stroke_ = nullptr;
    widget_.clear();
    view_ = M3dView();
    camera_ = MDagPath();
    late_.clear();
    aside_.clear();
    added_.clear();
}

void ThreadManager::OnMousePositionChanged(const QPoint& position, int size, float opacity, float hardness,
                                           qint64 time) {
    if (!active_ || !StrokeIsThere()) {
        return;
    }
    const Sample sample = {position, size, opacity, hardness, position, time};
    if (isLate_ || source_ == Source::Pointer || !HasFirstSamples()) {
        Take(sample);
    } else if (source_ == Source::PenAwaited) {
        aside_.append(sample);
        if (aside_.size() >= MOST_ASIDE) {
            TakeAside();
        }
    }
}

void ThreadManager::OnPenMoved(const QPointF& onScreen, unsigned long time, bool last) {
    if (!active_ || source_ == Source::Pointer || !StrokeIsThere() || !HasFirstSamples()) {
        return;
    }
    if (!last && source_ == Source::Pen && time != 0 && time < penTime_ + InputWorker::SAMPLE_PERIOD) {
        return;
    }
    source_ = Source::Pen;
    aside_.clear();
    penTime_ = time;
    const InputWorker::Values values = worker_->ValuesNow();
    const QPointF exact = worker_->ToView(onScreen);
    const qint64 known = EventClock::TimeOf(time);
    Take({exact.toPoint(), values.size, values.opacity, values.hardness, exact,
          known == EventClock::UNKNOWN ? EventClock::Now() : known});
}

void ThreadManager::Take(const Sample& sample) {
    try {
        if (isLate_) {
            late_.append(sample);
        } else if (ViewIsAsAtPress()) {
            AddSample(sample);
        } else {
            active_ = false;
            Q_EMIT ViewChanged();
        }
    } catch (const std::bad_alloc& reason) {
        if (!isShort_) {
            LogFailure("A part of the stroke", reason);
        }
        isShort_ = true;
    }
}

void ThreadManager::AddSample(const Sample& sample) {
    if (widget_) {
        placement_ = ViewPlacement::For(view_);
    }
    StrokePoint point;
    point.size = sample.size;
    point.opacity = sample.opacity;
    point.hardness = sample.hardness;
    point.position = placement_.ToImage(sample.position);
    const QPointF exact =
        source_ == Source::Pen ? placement_.ToImageExactly(sample.exact) : QPointF(point.position);
    if (source_ != Source::Pen) {
        added_.push_back({sample, point, exact});
    }
    const StrokeSmoother::Outcome outcome =
        smoother_.Receive(*stroke_, point, exact, static_cast<double>(sample.time), Settings::textFontFamily);
    last_ = sample;
    ++samples_;
    const bool hasTail = smoother_.DrawTail(*stroke_);
    if (smoother_.HasString() && !stroke_->points.isEmpty()) {
        // From the end of the line, which curves hold back a little behind the brush.
        node_->SetPenString(MayaUtil::GetCameraName(camera_),
                            QLineF(stroke_->points.last().position, smoother_.String().p2()));
    }
    if (outcome.firstSegment) {
        node_->RefreshActiveView();
    } else if (outcome.changed || hasTail || smoother_.HasString()) {
        catchUp_.start();
    }
}

/// Redraws the view for the last samples of a drag. The tool's drag events redraw it for the samples before,
/// but none follows once the pointer rests.
void ThreadManager::CatchUp() {
    RunGuarded("Refreshing the view", [this] {
        if (active_ && StrokeIsThere() && (stroke_->changed || smoother_.HasString())) {
            node_->RefreshActiveView();
        }
    });
}

/// Returns false when the node has left the scene or a command has committed or dropped the stroke.
bool ThreadManager::StrokeIsThere() const {
    return node_ && node_->HasActiveStroke() && node_->GetActiveStroke(QString(), false) == stroke_;
}

/// Otherwise the pointer's positions would be taken for others, or those of another camera.
bool ThreadManager::ViewIsAsAtPress() const {
    return !widget_ || (PlaceOnScreen(*widget_) == place_ && CameraOf(view_) == camera_);
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
