#pragma once

#include "paint/ToolType.h"

#include <QColor>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QtGlobal>

namespace vellix {

/// One sample of a stroke.
struct StrokePoint {
    qint32 size = 1;       ///< tool size in image pixels: diameter, pen width of a shape, point size of text
    float opacity = 1.0f;  ///< 0..1, tablet pressure included
    float hardness = 1.0f; ///< 0..1, part of the sample; painting does not use it
    QPoint position;       ///< image pixels, y down
};

/// A drawing gesture in progress: the pointer's samples and the tool's settings.
struct Stroke {
    ToolType tool = ToolType::Pencil;
    QColor color = QColor(255, 255, 255, 255);
    QList<StrokePoint> points; ///< shapes use the first two (start and current end), text the first
    /// From the last point to the pen, as the line would go if it ended there. It is shown until later
    /// samples settle that part, and is never committed.
    QList<StrokePoint> tail;
    QString text;
    QString fontFamily;
    qint32 caret = -1; ///< place in `text`, in units of UTF-16, while it is typed; negative: none is shown

    QRect selection;      ///< lifted by the transform tool, image pixels, edges included; left 0, top 0,
                          ///< right -1, bottom -1 while empty; may be inverted while it is dragged out
    qint32 offsetX = 0;   ///< translation of the lifted region, image pixels
    qint32 offsetY = 0;   ///< translation of the lifted region, image pixels
    float rotation = 0.f; ///< degrees, clockwise as seen (y down)
    double scaleX = 1.0;
    double scaleY = 1.0;

    bool freshSelection = false;     ///< the selected region still has to be lifted
    bool liftedImageEmptied = false; ///< the lifted image is left empty (a cut)
    bool copyToClipboard = false;    ///< the lifted region also goes to the clipboard
    bool pasted = false;             ///< the lifted image is drawn untransformed
    bool changed = false;            ///< the composed image must be rebuilt
    bool restarted = false; ///< points were taken back: it must be painted from its first point again
};

} // namespace vellix
