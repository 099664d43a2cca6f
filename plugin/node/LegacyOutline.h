#pragma once

#include <maya/MApiNamespace.h>

namespace vellix {

/// An outline that a tool draws in the legacy viewport, where every redraw of a view erases it.
class LegacyOutline {
public:
    virtual ~LegacyOutline() = default;

    /// Called while the view is being drawn, after the drawing itself. Draws the outline again, with OpenGL
    /// in view pixels. Lines are one pixel wide, and invert the bits of their colour in what is below them.
    virtual void OnViewDrawn(const M3dView& view) = 0;
};

} // namespace vellix
