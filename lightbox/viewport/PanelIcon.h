#pragma once

#include <QIcon>

namespace lightbox {

/// The icons of the viewports' buttons: one family of fine lines, drawn for whatever size is asked for.
class PanelIcon {
public:
    enum class Kind {
        Camera,
        FilmGate,
        ResolutionGate,
        GateMask,
        PanZoom,
        Grid,
        Wireframe,
        Shaded,
        WireOnShaded,
        More
    };

    static QIcon Make(Kind kind);
};

} // namespace lightbox
