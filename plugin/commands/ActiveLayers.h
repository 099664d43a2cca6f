#pragma once

#include "core/CameraHandle.h"
#include "core/Identity.h"

#include <QList>
#include <QString>

#include <vector>

namespace vellix {

class BaseNode;

/// Remembers the active camera and the active layers of some cameras, so that undoing a change of layers
/// makes the same ones active again, wherever they are in their stacks by then.
class ActiveLayers {
public:
    /// Stores the active camera with its active layer, and the active layers of the given cameras.
    void Remember(const BaseNode& node, const QList<QString>& cameras);
    /// The same for the active camera and the active layers as they are now, of the cameras that are stored.
    ActiveLayers Now(const BaseNode& node) const;
    /// Makes the stored layers active again, that of the active camera last, and takes the empty places of
    /// cameras away that had none. Passes over a layer that is no
    /// longer on its camera, and over a camera that had no layers: what has come there since stays as it is.
    /// Does what it can when memory is short.
    void Restore(BaseNode& node) const noexcept;

    /// The active camera.
    QString GetCamera() const { return active_.camera.Name(); }
    /// The active layer of the active camera.
    LayerId GetLayer() const { return active_.layer; }

private:
    struct Active {
        CameraHandle camera;
        LayerId layer = LayerId::None;
        bool hadLayers = false;
        bool hadPlace = false;
    };

    static void RestorePlace(const BaseNode& node, const Active& active);
    static Active Find(const BaseNode& node, const QString& camera);
    static bool Activate(BaseNode& node, const Active& active, bool makeCameraActive);

    Active active_;
    std::vector<Active> others_; ///< the other cameras and their active layers
};

} // namespace vellix
