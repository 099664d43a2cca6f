#pragma once

namespace vellix {

/// What the tool options panel is told.
class ToolOptionsPanel {
public:
    virtual ~ToolOptionsPanel() = default;

    /// Shows the options of the active tool as they are now.
    virtual void Refresh() = 0;
};

} // namespace vellix
