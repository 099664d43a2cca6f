#pragma once

#include "host/Guarded.h"

#include <QEvent>

namespace vellix {

/// A widget of the kind `Widget` whose exceptions become errors: what its event functions throw must not get
/// into the event loop.
template <typename Widget>
class GuardedWidget : public Widget {
public:
    using Widget::Widget;

protected:
    bool event(QEvent* event) final {
        bool isHandled = false;
        RunGuarded("The panel", [&] { isHandled = HandleEvent(event); });
        return isHandled;
    }
    /// What event() is elsewhere.
    virtual bool HandleEvent(QEvent* event) { return Widget::event(event); }
};

} // namespace vellix
