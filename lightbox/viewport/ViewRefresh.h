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

/// Decides which views are redrawn, and when. It notices some changes itself; callers, plug-ins among them,
/// report the others:
///
///     reason                            views                            when
///     change of the scene (noticed)     all that do not show it yet      once a turn of the event loop
///     time (noticed)                    all; while playback plays in     once a turn
///                                       one view, the active one
///     time unit, selection, tool,       all                              once a turn
///     begin and end of playback
///     (noticed)
///     camera, options, marquee          the one                          once a turn
///     requested refresh                 one or all                       at once, or once a turn
///     drag of a tool                    those that the tool refreshes    with the next other reason, or
///                                                                        after 8 ms
///
/// A hidden view is drawn when it is shown. While one view is being drawn, requests to draw another at once
/// wait for the event loop.
class ViewRefresh : public QObject {
    Q_OBJECT
public:
    explicit ViewRefresh(Host& host);

    /// Starts to redraw the view whenever there is a reason, until the view is deleted.
    void Add(QWidget& view);

    /// Marks the view as out of date and draws it at once, or when the event loop runs next.
    void Redraw(QWidget& view, bool now);
    void RedrawAll(bool now);
    /// Marks the view as out of date without scheduling a redraw, because Qt will paint it anyway.
    void Invalidate(QWidget& view);
    /// Shows what others drew into the view's framebuffer. Draws the view only if it is out of date.
    void Present(QWidget& view);
    /// Calls `tell`, which sends a drag event to a tool. Redraws that the tool requests wait up to 8 ms, so
    /// that changes that come with the drag, such as another pen sample, are in the same frame.
    void DuringDrag(const std::function<void()>& tell);

    /// Calls `draw` to draw the view, unless the view only has to be presented.
    void Draw(QWidget& view, const std::function<void()>& draw);
    /// Whether the view is being drawn right now.
    bool IsDrawing(const QWidget& view) const { return drawn_ == &view; }

private:
    /// The state of a view's picture.
    struct Picture {
        QWidget* view;
        bool isStale = true;
        bool isOnlyPresented = false;
        /// The revision of the scene in the picture.
        std::uint64_t revision = 0;
    };

    Picture* Find(const QWidget& view);
    void Schedule();
    void UpdateStale();
    void NoticeScene();
    void OnTimeChanged();

    Host& host_;
    EventSubscriptions events_;
    /// In the order of Add().
    std::vector<Picture> pictures_;
    std::uint64_t noticedRevision_ = 0;
    const QWidget* drawn_ = nullptr;
    bool isDragging_ = false;
    /// Runs while redraws that a drag requested wait.
    QTimer afterDrag_;
};

} // namespace lightbox
