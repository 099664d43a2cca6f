#pragma once

#include <maya/MApiNamespace.h>

namespace vellix {

/// An outline that a tool shows in the legacy viewport, where every drawing of a view wipes it out.
class LegacyOutline {
public:
    virtual ~LegacyOutline() = default;

    /// The view is being drawn and the drawing is in it: the place to draw the outline anew, with OpenGL in
    /// view pixels.
    virtual void OnViewDrawn(const M3dView& view) = 0;
};

} // namespace vellix
