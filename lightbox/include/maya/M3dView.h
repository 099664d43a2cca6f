#pragma once

#include <maya/MColor.h>
#include <maya/MDagPath.h>
#include <maya/MGl.h>
#include <maya/MPoint.h>
#include <maya/MStatus.h>

class QWidget;

/// A viewport. Every operation fails in batch, and on a viewport that was closed. Positions and sizes are
/// view pixels from the bottom left, y upward.
class M3dView {
public:
    enum DisplayStyle { kBoundingBox, kFlatShaded, kGouraudShaded, kWireFrame, kPoints };
    enum DisplayStatus {
        kActive,
        kLive,
        kDormant,
        kInvisible,
        kHilite,
        kTemplate,
        kActiveTemplate,
        kActiveComponent,
        kLead,
        kIntermediateObject,
        kActiveAffected,
        kNoStatus
    };
    enum RendererName {
        kDefaultQualityRenderer,
        kHighQualityRenderer,
        kViewport2Renderer,
        kExternalRenderer
    };
    enum LineStipplePattern { kStippleNone = 0, kStippleDashed };

    M3dView() = default;

    /// The viewport used last.
    static M3dView active3dView(MStatus* ReturnStatus = nullptr);
    static unsigned int numberOf3dViews();
    static MStatus get3dView(unsigned int index, M3dView& view);
    static MStatus getM3dViewFromModelPanel(const MString& modelPaneName, M3dView& view);

    QWidget* widget(MStatus* ReturnStatus = nullptr) const;
    int portWidth(MStatus* ReturnStatus = nullptr) const;
    int portHeight(MStatus* ReturnStatus = nullptr) const;
    bool isVisible(MStatus* ReturnStatus = nullptr) const;
    RendererName getRendererName(MStatus* ReturnStatus = nullptr) const;

    MStatus getCamera(MDagPath& camera) const;
    MStatus setCamera(MDagPath& camera);
    MStatus projectionMatrix(MMatrix& projectionMatrix) const;
    /// The matrix from world to camera space.
    MStatus modelViewMatrix(MMatrix& modelViewMatrix) const;

    /// Redraws this view, or all of them; at once with `force`.
    MStatus refresh(bool all = false, bool force = false);

    /// The point under a pixel on the near clipping plane, and the direction from there.
    MStatus viewToWorld(short x_pos, short y_pos, MPoint& worldPt, MVector& worldVector) const;
    MStatus viewToWorld(short x_pos, short y_pos, MPoint& nearClipPt, MPoint& farClipPt) const;
    /// Rounded to whole pixels. Returns whether the point is inside the view's frustum.
    bool worldToView(const MPoint& worldPt, short& x_pos, short& y_pos,
                     MStatus* ReturnStatus = nullptr) const;

    /// Make the view's OpenGL context current, and end that. Calls nest.
    MStatus beginGL();
    MStatus endGL();
    /// Between these, OpenGL drawing inverts the pixels below it: drawing the same twice removes it. The unit
    /// is the view pixel; without `drawOrthographic`, it stays the scene's unit, seen through the camera.
    /// Lines are stippled on demand. In Viewport 2.0 the drawing is invisible.
    MStatus beginXorDrawing(bool drawOrthographic = true, bool disableDepthTesting = true,
                            float lineWidth = 1.0f, LineStipplePattern stipplePattern = kStippleNone,
                            const MColor& lineColor = MColor(1, 1, 1));
    MStatus endXorDrawing();
    /// Sets the colour of OpenGL calls.
    MStatus setDrawColor(const MColor& color);

private:
    friend class lightbox::ApiBridge;
    lightbox::View* view_ = nullptr;
};
