#pragma once

#include <maya/MColor.h>
#include <maya/MStatus.h>

class QWidget;

/// A viewport. In batch there is none, and every operation fails; so does one on a viewport that has gone.
/// Positions and sizes in view pixels, from the bottom left with y upward.
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

    /// The viewport that was used last.
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
    /// World to camera.
    MStatus modelViewMatrix(MMatrix& modelViewMatrix) const;

    /// Draws this view again, or all of them; with `force` at once.
    MStatus refresh(bool all = false, bool force = false);

    /// The point under the pixel on the near clipping plane, and the direction from there.
    MStatus viewToWorld(short x_pos, short y_pos, MPoint& worldPt, MVector& worldVector) const;
    MStatus viewToWorld(short x_pos, short y_pos, MPoint& nearClipPt, MPoint& farClipPt) const;
    /// Rounded to whole pixels. Answers whether the point is inside the view's frustum.
    bool worldToView(const MPoint& worldPt, short& x_pos, short& y_pos,
                     MStatus* ReturnStatus = nullptr) const;

    /// Between these OpenGL calls go to the view. Nested calls count.
    MStatus beginGL();
    MStatus endGL();
    /// Between these, what is drawn with OpenGL, in view pixels, inverts what is there: drawn twice it is
    /// gone. Lines are stippled on demand. In Viewport 2.0 nothing of it is seen. Without `drawOrthographic`
    /// the unit stays that of the scene, as the camera sees it.
    MStatus beginXorDrawing(bool drawOrthographic = true, bool disableDepthTesting = true,
                            float lineWidth = 1.0f, LineStipplePattern stipplePattern = kStippleNone,
                            const MColor& lineColor = MColor(1, 1, 1));
    MStatus endXorDrawing();
    /// The colour of OpenGL calls.
    MStatus setDrawColor(const MColor& color);

private:
    friend class lightbox::ApiBridge;
    lightbox::View* view_ = nullptr;
};
