#pragma once

#include "core/GhostImage.h"
#include "core/MergedImage.h"
#include "paint/Composite.h"

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
    /// Whose ghosts are held.
    struct GhostOwner {
        QString camera;
        const Layer* layer = nullptr;
        int frameIndex = -1;

        bool operator==(const GhostOwner& other) const {
            return camera == other.camera && layer == other.layer && frameIndex == other.frameIndex;
        }
    };

    Picture Ghosts(const Scene& scene);
    void RebuildWithStroke(MergedImage& image, const Scene& scene, const PictureStack& stack);

    std::map<QString, std::unique_ptr<MergedImage>> m_images;
    GhostImage m_ghosts;
    GhostOwner m_ghostOwner; ///< without a layer: none
    // While a stroke is drawn, what lies under and over its layer.
    std::unique_ptr<MergedImage> m_below;
    std::unique_ptr<MergedImage> m_above;
};

} // namespace vellix
