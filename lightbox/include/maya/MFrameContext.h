#pragma once

#include <maya/MDagPath.h>
#include <maya/MMatrix.h>
#include <maya/MPoint.h>

#include <memory>

namespace MHWRender {

/// The view being drawn, in Viewport 2.0. Positions are view pixels from the bottom left, y upward.
class MFrameContext {
public:
    enum MatrixType {
        kWorldMtx = 0,
        kWorldTransposeMtx,
        kWorldInverseMtx,
        kWorldTranspInverseMtx,
        kViewMtx,
        kViewTransposeMtx,
        kViewInverseMtx,
        kViewTranspInverseMtx,
        kProjectionMtx,
        kProjectionTranposeMtx,
        kProjectionInverseMtx,
        kProjectionTranspInverseMtx,
        kViewProjMtx,
        kViewProjTranposeMtx,
        kViewProjInverseMtx,
        kViewProjTranspInverseMtx,
        kWorldViewMtx,
        kWorldViewTransposeMtx,
        kWorldViewInverseMtx,
        kWorldViewTranspInverseMtx,
        kWorldViewProjMtx,
        kWorldViewProjTransposeMtx,
        kWorldViewProjInverseMtx,
        kWorldViewProjTranspInverseMtx
    };
    enum RenderingDestination { k3dViewport, k2dViewport, kImage };

    virtual ~MFrameContext();
    MFrameContext(const MFrameContext&) = delete;
    MFrameContext& operator=(const MFrameContext&) = delete;

    /// The view matrix, the projection matrix and their product. Fails for object matrices, which only exist
    /// at draw time.
    MMatrix getMatrix(MatrixType mtype, MStatus* ReturnStatus = nullptr) const;
    MStatus getViewportDimensions(int& originX, int& originY, int& width, int& height) const;
    MDagPath getCurrentCameraPath(MStatus* ReturnStatus = nullptr) const;
    /// `destination` is the name of the panel.
    RenderingDestination renderingDestination(MString& destination) const;

    /// Not rounded. A point behind the eye comes out mirrored.
    MStatus worldToViewport(const MPoint& worldPoint, double& x, double& y) const;
    /// The points under a pixel on the near and the far clipping plane.
    MStatus viewportToWorld(double x, double y, MPoint& nearPoint, MPoint& farPoint) const;

private:
    friend class lightbox::ApiBridge;
    struct State;
    explicit MFrameContext(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace MHWRender
