#include "viewport/ViewRefresh.h"

#include "scene/Host.h"
#include "scene/Scene.h"
#include "scene/Timeline.h"
#include "scene/UserInterface.h"
#include "scene/View.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QScopedValueRollback>
#include <QWidget>

#include <algorithm>

namespace lightbox {

namespace {

/// Milliseconds, half a refresh of the usual screen. A sample of the pen takes as long and would otherwise be
/// seen a frame later.
constexpr int AFTER_DRAG = 8;

} // namespace

ViewRefresh::ViewRefresh(Host& host)
    : host_(host)
    , events_(host.events()) {
    for (const char* const event : {"SelectionChanged", "ToolChanged", "timeUnitChanged"}) {
        events_.Add(event, [this] { RedrawAll(false); });
    }
    events_.Add("timeChanged", [this] { OnTimeChanged(); });
    events_.AddCondition("playingBack", [this](bool) { RedrawAll(false); });
    afterDrag_.setSingleShot(true);
    afterDrag_.setTimerType(Qt::PreciseTimer);
    afterDrag_.setInterval(AFTER_DRAG);
    connect(&afterDrag_, &QTimer::timeout, this, &ViewRefresh::UpdateStale);
    // The second one for timers that never let the loop sleep.
    const QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, &ViewRefresh::NoticeScene);
    connect(dispatcher, &QAbstractEventDispatcher::awake, this, &ViewRefresh::NoticeScene);
}

void ViewRefresh::Add(QWidget& view) {
    pictures_.push_back({&view});
    connect(&view, &QObject::destroyed, this, [this, gone = &view] {
        pictures_.erase(std::remove_if(pictures_.begin(), pictures_.end(),
                                       [gone](const Picture& picture) { return picture.view == gone; }),
                        pictures_.end());
    });
}

ViewRefresh::Picture* ViewRefresh::Find(const QWidget& view) {
    const auto found = std::find_if(pictures_.begin(), pictures_.end(),
                                    [&](const Picture& picture) { return picture.view == &view; });
    return found == pictures_.end() ? nullptr : &*found;
}

void ViewRefresh::Redraw(QWidget& view, bool now) {
    Invalidate(view);
    if (!view.isVisible()) {
        return;
    }
    if (now && !drawn_) {
        view.repaint();
    } else {
        Schedule();
    }
}

void ViewRefresh::RedrawAll(bool now) {
    // Drawing one may bring or close another.
    std::vector<QPointer<QWidget>> views;
    for (const Picture& picture : pictures_) {
        views.emplace_back(picture.view);
    }
    for (const QPointer<QWidget>& view : views) {
        if (view) {
            Redraw(*view, now);
        }
    }
}

void ViewRefresh::Invalidate(QWidget& view) {
    if (Picture* const picture = Find(view)) {
        picture->isStale = true;
        picture->isOnlyPresented = false;
    }
}

void ViewRefresh::Present(QWidget& view) {
    Picture* const picture = Find(view);
    if (picture && view.isVisible()) {
        picture->isOnlyPresented = !picture->isStale;
        view.update();
    }
}

void ViewRefresh::DuringDrag(const std::function<void()>& tell) {
    const QScopedValueRollback<bool> dragging(isDragging_, true);
    tell();
}

void ViewRefresh::Draw(QWidget& view, const std::function<void()>& draw) {
    if (Picture* const picture = Find(view)) {
        if (picture->isOnlyPresented) {
            picture->isOnlyPresented = false;
            return;
        }
        picture->isStale = false;
        picture->revision = host_.scene().Revision();
    }
    if (std::none_of(pictures_.begin(), pictures_.end(),
                     [](const Picture& picture) { return picture.isStale && picture.view->isVisible(); })) {
        afterDrag_.stop();
    }
    const QScopedValueRollback<const QWidget*> drawing(drawn_, &view);
    draw();
}

/// All that is stale is drawn: what waits for a drag goes along with other reasons.
void ViewRefresh::Schedule() {
    if (!isDragging_) {
        afterDrag_.stop();
        UpdateStale();
    } else if (!afterDrag_.isActive()) {
        afterDrag_.start();
    }
}

void ViewRefresh::UpdateStale() {
    for (const Picture& picture : pictures_) {
        if (picture.isStale) {
            picture.view->update();
        }
    }
}

/// Once a turn of the event loop, however many changes came with it.
void ViewRefresh::NoticeScene() {
    const std::uint64_t revision = host_.scene().Revision();
    if (revision == noticedRevision_ || afterDrag_.isActive()) {
        return;
    }
    noticedRevision_ = revision;
    for (const Picture& picture : pictures_) {
        if (picture.revision != revision) {
            Redraw(*picture.view, false);
        }
    }
}

void ViewRefresh::OnTimeChanged() {
    const Timeline& time = host_.time();
    View* const active = host_.ui() ? host_.ui()->ActiveView() : nullptr;
    if (time.IsPlaying() && !time.PlaysInAllViews() && active && active->Widget().isVisible()) {
        Redraw(active->Widget(), false);
    } else {
        RedrawAll(false);
    }
}

} // namespace lightbox
