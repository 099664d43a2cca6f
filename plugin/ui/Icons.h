#pragma once

#include <QColor>
#include <QIcon>

class QPainter;

namespace vellix {

/// What the plug-in's buttons show.
enum class Icon {
    Pencil,
    Brush,
    Eraser,
    Text,
    Line,
    Arrow,
    Ellipse,
    Rectangle,
    Transform,
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

/// The pictures of the plug-in's buttons: one family, drawn in lines of one width, sharp at every size and
/// scale. They take the colours of the palette as it is when they are shown.
class Icons {
public:
    static QIcon Get(Icon icon);

    /// Draws the icon into a square of 24 units. The accent marks what a button does to the thing it shows.
    static void Draw(Icon icon, QPainter& painter, const QColor& line, const QColor& accent);

    /// The accent that is seen on light and on dark.
    static QColor Accent() { return QColor(58, 150, 214); }
};

} // namespace vellix
