#pragma once

#include "core/Identity.h"
#include "core/MergedPictures.h"
#include "core/StackMemory.h"
#include "paint/Picture.h"

#include <QString>

#include <list>
#include <vector>

namespace vellix {

class Frame;
class Layer;
class LightTable;
class PictureCache;
struct ComposedScene;

/// Builds what lies under the layers of a camera's image: the ghosts of the active layer or of several, as
/// the user's settings ask, and over them the pinned drawings.
class SceneGhosts {
public:
    /// Borrows the cache of the drawings.
    explicit SceneGhosts(PictureCache& cache)
        : cache_(cache) {}

    /// Whether the user's settings ask for the layer's ghosts. Without a light table no layer is marked.
    static bool AreWanted(const Layer& layer, bool isActive, const LightTable* lightTable);
    /// Adds the frames whose drawings an update may show as ghosts of layers, borrowed, some of them null.
    static void AppendFrames(const ComposedScene& scene, std::vector<const Frame*>& frames);
    /// The pictures, bottom first. They are valid until the next call.
    PictureStack Update(const ComposedScene& scene);
    void RemoveCamera(const QString& camera);
    /// Each of the two cameras gets the other's ghosts. Needs no memory.
    void ExchangeCameras(const QString& one, const QString& other);

private:
    /// The active layer's ghosts of the last rebuild. They stay as they are while a stroke is being drawn.
    struct ActiveGhosts {
        QString camera;
        LayerId layer = LayerId::None; ///< None: no ghosts
        int frameIndex = -1;
        PictureStack pictures;
    };
    void AppendGhosts(const ComposedScene& scene, PictureStack& stack);
    void AppendActive(const ComposedScene& scene, PictureStack& stack);
    void AppendSeveral(const ComposedScene& scene, PictureStack& stack);
    void AppendPins(const ComposedScene& scene, PictureStack& stack);
    /// Ghosts of several layers that were shown.
    struct ShownGhosts {
        StackMemory memory; ///< tells whether others are the same
        MergedPictures merged;
        bool isMerged = false;
    };
    ShownGhosts& FindShown(const PictureStack& ghosts, bool& isNew);
    PictureStack GhostsOf(Layer& layer, const LightTable* lightTable);

    PictureCache& cache_;
    ActiveGhosts active_;
    /// The last used first. Merged when they are shown again, since they stay as they are while the current
    /// drawings change or the time goes back and forth. Merging takes more time than it saves where each is
    /// shown once, as while the user goes from drawing to drawing.
    std::list<ShownGhosts> shown_;
};

} // namespace vellix
