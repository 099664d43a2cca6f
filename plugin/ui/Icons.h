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
        : name_(name) {}
    Icon(ToolType tool)
        : isTool_(true)
        , tool_(tool) {}

    bool IsTool() const { return isTool_; }
    ToolType GetTool() const { return tool_; }
    Name GetName() const { return name_; }

    bool operator!=(const Icon& other) const {
        return isTool_ != other.isTool_ || tool_ != other.tool_ || name_ != other.name_;
    }

private:
    bool isTool_ = false;
    ToolType tool_ = ToolType::Pencil;
    Name name_ = GhostPrevious;
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
