#pragma once

#include "viewport/DisplayOptions.h"

#include <QPointF>
#include <QRectF>

#include <optional>

namespace lightbox {

class Host;
class View;

/// The select tool of a viewport: a click selects what lies under the pointer, a drag what a rectangle
/// touches. With Shift what is picked changes its state, with Ctrl it is taken out, with both it is added.
/// The selection is made by a `select` command. Positions are view pixels from the bottom left, y upward.
class SelectTool {
public:
    explicit SelectTool(Host& host)
        : host_(host) {}

    void Press(const QPointF& position);
    /// True when the rectangle changed, so that the view has to be drawn again.
    bool Drag(const QPointF& position);
    /// Picks in the view, of what the options show.
    void Release(View& view, const QPointF& position, Qt::KeyboardModifiers modifiers,
                 const DisplayOptions& options);
    void Cancel() { press_.reset(); }
    /// The rectangle that is being dragged, to be drawn over the view; empty when there is none.
    QRectF Marquee() const;

private:
    Host& host_;
    std::optional<QPointF> press_;
    QPointF current_;
};

} // namespace lightbox
