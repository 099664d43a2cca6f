#pragma once

#include "paint/Picture.h"
#include "paint/Stroke.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <memory>

namespace vellix {

class Frame;

/// The stroke being drawn and the images that it is painted into, until it is committed to a frame or
/// dropped. Freehand strokes are painted as they grow; shapes, text and transforms anew each time. Also keeps
/// what the transform tool has copied, from one stroke to the next.
class StrokePainter {
public:
    bool HasStroke() const;
    /// Owned here; null while nothing is drawn.
    Stroke* GetStroke() const;
    /// The camera that the stroke is drawn for.
    const QString& GetCamera() const;

    void Begin(const QString& camera);
    /// Forgets the stroke. `frame`: the one it was drawn on, for a copy that was asked for and is not
    /// taken yet; may be null.
    void Cancel(Frame* frame);
    /// Paints the stroke into the frame and forgets it. `undo` receives the picture before it as PNG bytes;
    /// false, with nothing changed, when they cannot be made. With null nobody wants them.
    bool Commit(Frame& frame, QByteArray* undo);

    /// Paints what is new, and appends the layer that is drawn on with its stroke to the stack. `drawing`:
    /// what the layer shows without the stroke; `frame`: the frame that it belongs to, or null. `changed`
    /// receives the tiles that changed since the last time, as the pictures keep their keys while a stroke
    /// grows.
    void AppendTo(PictureStack& stack, const Picture& drawing, Frame* frame, TileMask& changed);

    /// Has the transform tool copied something that can be pasted?
    bool HasPasteImage() const;

private:
    /// An image, where it has pixels, and a key that it keeps as long as the stroke lasts.
    struct Canvas {
        QImage image;
        TileCoverage coverage;
        qint64 key = 0;

        Picture AsPicture() const;
        void Replace(const QImage& with, TileMask& changed);
    };

    void Paint(Frame* frame, bool editing, TileMask& changed);
    void PaintFreehand(Frame* frame, TileMask& changed);
    QImage FreehandGround(Frame* frame) const;
    void PaintTransform(Frame& frame, TileMask& changed);
    void LiftSelection(Frame& frame, bool isFirst, TileMask& changed);
    bool SelectionIsUsable() const;
    void Forget();

    std::unique_ptr<Stroke> stroke_;
    QString camera_;
    Canvas work_;  ///< the stroke so far; for the eraser and the transform tool the layer's new picture
    Canvas moved_; ///< the lifted region where the transform puts it
    bool begun_ = false;
    bool pastes_ = false;    ///< does the transform bring in what was copied, and lift nothing?
    qint64 ground_ = 0;      ///< what the stroke was begun on: a colour, or the picture that it changes
    int lastRasterised_ = 0; ///< index of the last stroke point that is in the work image
    QImage lifted_;          ///< the region lifted by the transform tool
    QImage copied_;          ///< what was cut or copied, to be pasted
};

} // namespace vellix
