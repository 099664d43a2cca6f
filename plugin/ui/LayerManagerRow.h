#pragma once

#include <QString>

namespace vellix {

enum class LayerState : qint32;

/// One layer as the layer manager panel lists it; a camera's rows come in stack order, bottom layer first.
struct LayerManagerRow {
    QString camera;
    QString name;
    bool visible;
    LayerState state;
};

} // namespace vellix
