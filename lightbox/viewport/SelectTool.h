#pragma once

#include "viewport/DisplayOptions.h"

#include <QPointF>
#include <QRectF>

#include <optional>

namespace lightbox {

class Host;
class View;

/// The select tool of a viewport: a click selects what lies under the pointer, a drag what a rectangle
/// touches. Shift toggles the picked objects, Ctrl deselects them, and both add them to the selection. The
/// selection is made by a `select` command. Positions are view pixels from the bottom left, y upward.
class SelectTool {
public:
    explicit SelectTool(Host& host)
        : host_(host) {}

    void Press(const QPointF& position);
    /// True when the rectangle changed and the view has to be redrawn.
    bool Drag(const QPointF& position);
    /// Picks from the objects that the options show in the view, and selects them.
    void Release(View& view, const QPointF& position, Qt::KeyboardModifiers modifiers,
                 const DisplayOptions& options);
    void Cancel() { press_.reset(); }
    /// The rectangle being dragged, to be drawn over the view; empty when there is none.
    QRectF Marquee() const;

private:
    Host& host_;
    std::optional<QPointF> press_;
    QPointF current_;
};

} // namespace lightbox
