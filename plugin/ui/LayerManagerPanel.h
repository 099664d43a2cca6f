#pragma once

#include "ui/LayerManagerRow.h"

#include <QList>

namespace vellix {

/// What the document tells the layer manager panel.
class LayerManagerPanel {
public:
    virtual ~LayerManagerPanel() = default;

    virtual void Clear() = 0;

    /// Replaces everything shown. `activeIndex` is the active layer of the active camera, -1 for none.
    virtual void Fill(const QList<LayerManagerRow>& rows, const QString& activeCamera, int activeIndex) = 0;
};

} // namespace vellix
