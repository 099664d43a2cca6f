#pragma once

#include "commands/ExportCanvas.h"
#include "core/Identity.h"
#include "exchange/LayeredDrawing.h"

#include <QByteArray>
#include <QColor>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <map>
#include <set>
#include <vector>

namespace vellix {

class Frame;
class Layer;
class LayerManager;

/// The layers of a camera in the form in which they travel. Reads the drawing, which must not change
/// meanwhile, and leaves it unchanged. All functions throw std::bad_alloc when memory is short.
class ExportedLayers {
public:
    /// `layers` is borrowed.
    ExportedLayers(const LayerManager& layers, const QString& camera, const ExportCanvas& canvas);

    /// Adds a layer of this colour below the others.
    void SetBackground(const QColor& color) { background_ = color; }

    /// The names of the visible layers, bottom first.
    QStringList VisibleNames() const;
    /// The frames at which a visible layer, or with `hiddenToo` any, is keyed.
    std::set<int> KeyFrames(bool hiddenToo) const;
    /// Makes a range so long that it has all keys. Those of static layers may lie before it.
    void ExtendToKeys(int& first, int& last) const;
    /// What all layers show at a frame; frames with the same answer look the same.
    std::vector<FrameId> ShownAt(int frame) const;
    /// Whether all layers at a frame surely take less than so many bytes, however they are packed, and are
    /// far from too many.
    bool AreSmall(qint64 bytes) const;
    /// All layers with what they show at a frame.
    LayeredDrawing At(int frame);
    /// The visible layers' pictures at a frame as PNG, bottom first. All have the size of the canvas; one
    /// that does not decode is reported, and empty.
    std::vector<QByteArray> VisibleAt(int frame);

    /// An animation that begins at frame 1 or later.
    struct Animation {
        LayeredDrawing drawing;
        int lastFrame = 1;
        int shift = 0; ///< so many frames later than in the scene
    };
    /// All keys of a range. What is held at its start is keyed there.
    Animation Between(int first, int last, double rate);

private:
    PictureLayer Properties(const Layer& layer) const;
    LayeredDrawing WithBackground(int frame);
    QByteArray Png(const Layer& layer, const Frame& frame);
    QByteArray EmptyPng();

    const LayerManager& layers_;
    QString camera_;
    ExportCanvas canvas_;
    QColor background_;

    /// A layer's picture as it was encoded last, since pictures are held.
    struct Encoded {
        qint64 key = 0;
        QByteArray png;
    };
    std::map<LayerId, Encoded> encoded_;
    QByteArray empty_;
};

} // namespace vellix
