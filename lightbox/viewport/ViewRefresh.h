#pragma once

#include "scene/EventSubscriptions.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <vector>

class QWidget;

namespace lightbox {

class Host;

/// Decides which views are drawn, and when. Whoever changes what a view shows tells it so, or it notices:
///
///     reason                            views                            when
///     change of the scene (noticed)     all that do not show it yet      once a turn of the event loop
///     time (noticed)                    all; while playback plays in     once a turn
///                                       one view, the active one
///     time unit, selection, tool,       all                              once a turn
///     begin and end of playback
///     (noticed)
///     camera, options, marquee          the one                          once a turn
///     refresh that is asked for         one or all                       at once, or once a turn
///     drag of a tool                    those that the tool refreshes    with the next other reason, or
///                                                                        after 8 ms
///
/// A hidden view is drawn when it is shown. While a view is drawn, none is drawn at once: each waits for the
/// event loop.
class ViewRefresh : public QObject {
    Q_OBJECT
public:
    explicit ViewRefresh(Host& host);

    /// From now on the view is drawn when there is a reason, until it goes.
    void Add(QWidget& view);

    /// What the view shows is out of date: draws it at once, or once the event loop comes to it.
    void Redraw(QWidget& view, bool now);
    void RedrawAll(bool now);
    /// The view's pixels are lost, and Qt draws it without being asked to.
    void Invalidate(QWidget& view);
    /// Shows what was drawn into the view's pixels from outside. Draws the view only if it is out of date.
    void Present(QWidget& view);
    /// Calls `tell`, which tells a tool of a drag. What the tool wants redrawn waits up to 8 ms, so that what
    /// comes with the drag, such as a sample of the pen, is in the same frame.
    void DuringDrag(const std::function<void()>& tell);

    /// Calls `draw`, which draws the view, unless all there is to do is to present it.
    void Draw(QWidget& view, const std::function<void()>& draw);
    /// Whether it is this view that is drawn just now.
    bool IsDrawing(const QWidget& view) const { return drawn_ == &view; }

private:
    /// What is known of a view's picture.
    struct Picture {
        QWidget* view;
        bool isStale = true;
        bool isOnlyPresented = false;
        /// The scene's revision that it shows.
        std::uint64_t revision = 0;
    };

    Picture* Find(const QWidget& view);
    void Schedule();
    void UpdateStale();
    void NoticeScene();
    void OnTimeChanged();

    Host& host_;
    EventSubscriptions events_;
    /// In the order in which the views were made.
    std::vector<Picture> pictures_;
    std::uint64_t noticedRevision_ = 0;
    const QWidget* drawn_ = nullptr;
    bool isDragging_ = false;
    /// Runs while what a drag wants redrawn waits.
    QTimer afterDrag_;
};

} // namespace lightbox
