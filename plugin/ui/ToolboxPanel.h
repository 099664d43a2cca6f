#pragma once

#include <QColor>

namespace vellix {

/// What the toolbox is told and asked.
class ToolboxPanel {
public:
    virtual ~ToolboxPanel() = default;

    /// Shows the active tool, the active colour, the ghost switches and the options.
    virtual void Refresh() = 0;
    /// Shows the active tool's size and opacity.
    virtual void RefreshOptions() = 0;
    /// The colour of its colour control; invalid when that cannot be asked.
    virtual QColor GetColor() const = 0;
};

} // namespace vellix
