#pragma once

#include "core/ComposedScene.h"
#include "core/FlattenedImage.h"
#include "core/MergedPictures.h"
#include "core/PictureCache.h"
#include "core/SceneGhosts.h"
#include "paint/Picture.h"

#include <QImage>
#include <QString>

#include <map>
#include <memory>

namespace vellix {

class Frame;
class Layer;

/// Keeps the composed image of every camera, and the caches that make a rebuild quick. The caller decides
/// when an image is stale. A rebuild compares its pictures with those of the last rebuild and composes only
/// the tiles that differ.
class Compositor {
public:
    using Scene = ComposedScene;

    /// Gives the camera a transparent image, unless it has one.
    void AddCamera(const QString& camera);
    void RemoveCamera(const QString& camera);
    /// Each of the two cameras gets the other's image. Both have one. Needs no memory.
    void ExchangeImages(const QString& one, const QString& other);
    /// The camera's image, owned here; null for a camera that was not added.
    QImage* GetImage(const QString& camera) const;
    /// Composes the camera's image. Reads every layer with Layer::ReadFrame, which clears the layers' cache
    /// flags. Does nothing for a camera that was not added. Throws std::bad_alloc when memory is short; the
    /// image then shows what it showed or a part of the new picture.
    void Rebuild(const Scene& scene);
    /// The flip that the camera's image shows; 0 for none.
    quint64 ShownFlip(const QString& camera) const;
    /// Decodes a frame's drawing for a later rebuild. Returns false if there is nothing to decode, or no
    /// room.
    bool ReadAhead(const Frame* frame) { return cache_.ReadAhead(frame); }

private:
    /// The picture of the frame `offset` keys after the layer's current one. Reports one that does not
    /// decode.
    Picture FindPicture(Layer& layer, int offset);
    Picture FindFlipped(Layer& layer, const Frame* frame);
    void ReadDrawings(const Scene& scene);
    PictureStack PicturesOfLayers(const Scene& scene);
    void RebuildWithStroke(FlattenedImage& image, const Scene& scene, const PictureStack& stack,
                           std::size_t drawnPicture);

    struct ComposedImage {
        FlattenedImage image;
        quint64 flip = 0; ///< that it shows
    };

    std::map<QString, std::unique_ptr<ComposedImage>> images_;
    PictureCache cache_;
    SceneGhosts ghosts_{cache_};
    // The layers under and over the one drawn on, merged; only used while a stroke is drawn.
    std::unique_ptr<MergedPictures> below_;
    std::unique_ptr<MergedPictures> above_;
};

} // namespace vellix
