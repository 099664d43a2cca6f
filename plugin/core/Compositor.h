#pragma once

#include "core/FlattenedImage.h"
#include "core/MergedPictures.h"
#include "core/PictureCache.h"
#include "paint/Picture.h"

#include <QImage>
#include <QList>
#include <QString>

#include <map>
#include <memory>

namespace vellix {

class Layer;
class StrokePainter;

/// The composed images of all cameras and what is kept to make them quickly. Whether an image is stale is for
/// the caller to know; a rebuild then compares what goes into the image with what went into it the last time,
/// and composes only the tiles that differ.
class Compositor {
public:
    /// What a rebuild composes.
    struct Scene {
        QString camera;
        QList<Layer*> layers; ///< bottom first
        int activeLayer = -1; ///< -1: no ghosts
        bool ghosting = true;
        StrokePainter* stroke = nullptr; ///< when one is drawn on this camera
    };

    /// The camera's image, transparent.
    void AddCamera(const QString& camera);
    void RemoveCamera(const QString& camera);
    /// Owned here; null for a camera that was not added.
    QImage* GetImage(const QString& camera) const;
    /// Composes the camera's image and reads every layer's picture.
    void Rebuild(const Scene& scene);

private:
    /// What a stroke that is under way keeps showing.
    struct Ghosts {
        QString camera;
        const Layer* layer = nullptr; ///< null: no ghosts
        int frameIndex = -1;
        PictureStack pictures;
    };

    PictureStack UpdateGhosts(const Scene& scene);
    void RebuildWithStroke(FlattenedImage& image, const Scene& scene, const PictureStack& stack,
                           std::size_t drawnOn);

    std::map<QString, std::unique_ptr<FlattenedImage>> images_;
    PictureCache cache_;
    Ghosts ghosts_;
    // While a stroke is drawn, what lies under and over its layer.
    std::unique_ptr<MergedPictures> below_;
    std::unique_ptr<MergedPictures> above_;
};

} // namespace vellix
