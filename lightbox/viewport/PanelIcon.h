#pragma once

#include <QIcon>

namespace lightbox {

/// The icons of the viewports' buttons, drawn as thin lines at the requested size.
class PanelIcon {
public:
    enum class Symbol {
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

    static QIcon Make(Symbol symbol);
};

} // namespace lightbox
