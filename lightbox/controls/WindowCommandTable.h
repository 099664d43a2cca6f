#pragma once

#include "controls/ControlType.h"

#include <functional>
#include <string>

class MSyntax;

namespace lightbox {

class ControlRegistry;
class Host;

namespace mel {
class CommandRegistry;
}

/// How the groups of window commands add theirs.
class WindowCommandTable {
public:
    WindowCommandTable(Host& host, ControlRegistry* controls)
        : host_(host)
        , controls_(controls) {}

    /// Null in batch: then no command gets so far as to use it.
    ControlRegistry* Controls() const { return controls_; }
    /// The command of a kind of control: makes, edits, queries one.
    void Add(ControlType type);
    /// Any other command.
    void Add(const std::string& name, const MSyntax& syntax,
             std::function<mel::Value(mel::CommandCall&, ControlRegistry&)> function);

private:
    Host& host_;
    ControlRegistry* controls_;
};

} // namespace lightbox
