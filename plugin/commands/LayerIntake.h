#pragma once

#include "commands/ActiveLayers.h"
#include "commands/FrameExchange.h"
#include "core/Identity.h"
#include "core/Layer.h"
#include "core/LayerSpot.h"
#include "core/LayerState.h"
#include "paint/NonCopyable.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <memory>
#include <vector>

namespace vellix {

class BaseNode;
class LayerManager;

/// A layer that comes from outside, with its pictures as sound PNG bytes by whole frames.
struct IncomingLayer {
    QString camera;
    QString name;
    bool isVisible = true;
    float opacity = 1.0f;
    LayerState state = LayerState::Animated;
    /// A layer of that name on that camera takes the pictures; else a new one is made in any case.
    bool joins = true;
    /// A new layer comes below all others of its camera, and not on top or between its neighbours.
    bool isReference = false;
    /// It has a picture for every time, as files without holds have; so one that is shown at its time anyway
    /// adds no frame.
    bool hasEveryTime = false;
    std::map<int, QByteArray> pictures;
};

/// Puts layers from outside into a drawing as one step: pictures go into the layers that are to take them,
/// where they replace those at the same times, and other layers are made. Undo and redo act on the very
/// layers and frames of the first run. Each step does everything or, if it is refused or memory is short,
/// nothing.
class LayerIntake : private NonCopyable {
public:
    LayerIntake();
    ~LayerIntake();

    /// Prepares the step; call once, before the first Do. Takes the pictures out of the layers, which come
    /// from the bottom up. Returns false, with the reason in `refusal`, if a layer is locked or a stroke is
    /// being drawn where a picture goes.
    bool Plan(const LayerManager& layers, std::vector<IncomingLayer>& incoming, QString& refusal);
    /// The frames that are put in.
    int FrameCount() const { return frameCount_; }
    /// Whether the drawing stays as it is.
    bool IsEmpty() const { return frameCount_ == 0 && added_.empty(); }

    /// Both return false, with the reason in `refusal`, if they cannot be done.
    bool Do(BaseNode& node, QString& refusal);
    bool Undo(BaseNode& node, QString& refusal);

private:
    /// Frames for a layer that is in the drawing.
    struct Joined {
        LayerId layer;
        std::unique_ptr<FrameExchange> frames;
    };
    /// A layer that is made.
    struct Added {
        LayerId id;
        std::unique_ptr<Layer> layer; ///< while it is outside the drawing
        CameraHandle camera;
        LayerId above = LayerId::None; ///< the layer right below it at the first run; None for on top...
        LayerId below = LayerId::None; ///< ...or right below this one
        LayerSpot spot;                ///< after the first run
    };

    bool PlanJoined(const LayerManager& layers, Layer& layer, IncomingLayer& incoming, QString& refusal);
    void PlanAdded(IncomingLayer& incoming, LayerId above, LayerId below);
    bool Exchange(LayerManager& layers, bool (FrameExchange::*step)(Layer&, QString&),
                  bool (FrameExchange::*back)(Layer&, QString&), QString& refusal);
    int IndexOf(const LayerManager& layers, const Added& added, const QString& camera) const;
    void PutLayers(LayerManager& layers);
    void TakeLayers(LayerManager& layers, std::size_t count);

    bool hasRun_ = false;
    int frameCount_ = 0;
    std::vector<Joined> joined_;
    std::vector<Added> added_; ///< from the bottom up
    ActiveLayers before_;
    std::unique_ptr<const ActiveLayers> after_; ///< what was active after the first run; null if not known
};

} // namespace vellix
