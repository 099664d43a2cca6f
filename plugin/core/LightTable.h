#pragma once

#include "core/Identity.h"

#include <QString>
#include <QtGlobal>

#include <set>
#include <vector>

namespace vellix {

/// What the user has put on the light table of a drawing: the marked layers, the pinned drawings, and the
/// drawing that is shown while a flip lasts. It belongs to the view: nothing of it is stored with the scene,
/// undone, copied or exported. A layer or frame that leaves the drawing is not shown until it comes back.
class LightTable {
public:
    /// Shows drawings of another time in place of the current ones.
    struct Flip {
        quint64 number = 0; ///< another one for each flip; 0: none
        QString camera;
        LayerId layer = LayerId::None; ///< the layer that is flipped; None: all layers
        int time = 0;                  ///< the whole frame that is shown
    };

    bool IsMarked(LayerId layer) const { return marked_.count(layer) != 0; }
    void SetMarked(LayerId layer, bool marked);

    /// The pinned drawings, in the order in which they were pinned.
    const std::vector<DrawingId>& GetPins() const { return pins_; }
    bool IsPinned(const DrawingId& drawing) const;
    void SetPinned(const DrawingId& drawing, bool pinned);
    void UnpinAll() { pins_.clear(); }

    const Flip& GetFlip() const { return flip_; }
    bool IsFlipped() const { return flip_.number != 0; }
    /// Returns false if it shows that already.
    bool SetFlip(const QString& camera, LayerId layer, int time);
    void EndFlip() { flip_ = Flip(); }

private:
    std::set<LayerId> marked_;
    std::vector<DrawingId> pins_;
    Flip flip_;
    quint64 lastFlip_ = 0;
};

} // namespace vellix
