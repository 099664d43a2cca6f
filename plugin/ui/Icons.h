#pragma once

#include "paint/ToolType.h"

#include <QColor>
#include <QIcon>

class QPainter;

namespace vellix {

/// Identifies an icon of the plug-in: a tool, or one of the names.
class Icon {
public:
    enum Name {
        GhostPrevious,
        GhostNext,
        InsertFrame,
        DuplicateFrame,
        DeleteFrame,
        StepBack,
        StepForward,
        NewLayer,
        DeleteLayer,
        MoveLayerUp,
        MoveLayerDown,
        LayerManager,
        Refresh,
        Palette,
        Options,
    };

    Icon(Name name)
        : m_name(name) {}
    Icon(ToolType tool)
        : m_isTool(true)
        , m_tool(tool) {}

    bool IsTool() const { return m_isTool; }
    ToolType GetTool() const { return m_tool; }
    Name GetName() const { return m_name; }

    bool operator!=(const Icon& other) const {
        return m_isTool != other.m_isTool || m_tool != other.m_tool || m_name != other.m_name;
    }

private:
    bool m_isTool = false;
    ToolType m_tool = ToolType::Pencil;
    Name m_name = GhostPrevious;
};

/// The icons of the plug-in's buttons. All are drawn with lines of one width, sharp at every size and scale.
/// They use the palette's colours at the time they are painted.
class Icons {
public:
    static QIcon Get(Icon icon);

    /// Draws the icon into a square of 24 by 24 units. The accent marks what the button does to the thing it
    /// shows.
    static void Draw(Icon icon, QPainter& painter, const QColor& line, const QColor& accent);

    /// An accent colour that is visible on light and on dark backgrounds.
    static QColor Accent() { return QColor(58, 150, 214); }
};

} // namespace vellix
