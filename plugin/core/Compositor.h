#pragma once

#include "core/FlattenedImage.h"
#include "core/Identity.h"
#include "core/MergedPictures.h"
#include "core/PictureCache.h"
#include "paint/Picture.h"

#include <QImage>
#include <QList>
#include <QString>

#include <map>
#include <memory>

namespace vellix {

class Frame;
class Layer;
class StrokePainter;

/// Keeps the composed image of every camera, and the caches that make a rebuild quick. The caller decides
/// when an image is stale. A rebuild compares its pictures with those of the last rebuild and composes only
/// the tiles that differ.
class Compositor {
public:
    /// The input of a rebuild: one camera's layers, with ghosts and stroke.
    struct Scene {
        QString camera;
        QList<Layer*> layers; ///< bottom first; borrowed
        int activeLayer = -1; ///< -1: no ghosts
        bool ghosting = true;
        /// The stroke being drawn, borrowed; null unless the drawing that it belongs to is shown.
        StrokePainter* stroke = nullptr;
        int strokeLayer = -1; ///< the layer that the stroke is drawn on
    };

    /// Gives the camera a transparent image, unless it has one.
    void AddCamera(const QString& camera);
    void RemoveCamera(const QString& camera);
    /// The camera's image goes by another name. Replaces an image that has this name.
    void RenameCamera(const QString& from, const QString& to);
    /// The camera's image, owned here; null for a camera that was not added.
    QImage* GetImage(const QString& camera) const;
    /// Composes the camera's image. Reads every layer with Layer::ReadFrame, which clears the layers' cache
    /// flags. Does nothing for a camera that was not added. Throws std::bad_alloc when memory is short; the
    /// image then shows what it showed or a part of the new picture.
    void Rebuild(const Scene& scene);
    /// Decodes a frame's drawing for a later rebuild. Returns false if there is nothing to decode, or no
    /// room.
    bool ReadAhead(const Frame* frame) { return cache_.ReadAhead(frame); }

private:
    /// The ghosts of the last rebuild. They stay as they are while a stroke is being drawn.
    struct Ghosts {
        QString camera;
        LayerId layer = LayerId::None; ///< None: no ghosts
        int frameIndex = -1;
        PictureStack pictures;
    };

    /// The picture of the frame `offset` keys after the layer's current one. Reports one that does not
    /// decode.
    Picture FindPicture(Layer& layer, int offset);
    PictureStack UpdateGhosts(const Scene& scene);
    void RebuildWithStroke(FlattenedImage& image, const Scene& scene, const PictureStack& stack,
                           std::size_t drawnPicture);

    std::map<QString, std::unique_ptr<FlattenedImage>> images_;
    PictureCache cache_;
    Ghosts ghosts_;
    // The layers under and over the one drawn on, merged; only used while a stroke is drawn.
    std::unique_ptr<MergedPictures> below_;
    std::unique_ptr<MergedPictures> above_;
};

} // namespace vellix
