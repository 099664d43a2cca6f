#pragma once

#include <maya/MBoundingBox.h>
#include <maya/MDagPath.h>
#include <maya/MFrameContext.h>
#include <maya/MMatrix.h>
#include <maya/MUserData.h>
#include <maya/MViewport2Renderer.h>

namespace MHWRender {

class MDrawContext;
class MUIDrawManager;

/// Base class of the overrides that draw a plug-in's nodes in Viewport 2.0. The host makes and owns one
/// instance per node and view.
class MPxDrawOverride {
public:
    using GeometryDrawOverrideCb = void (*)(const MDrawContext& context, const MUserData* data);

    /// Lightbox prepares every node for each drawing of a view, as if isAlwaysDirty were true, and draws the
    /// items of addUIDrawables(). It has no draw context, so it never calls the callback.
    MPxDrawOverride(const MObject& obj, GeometryDrawOverrideCb callback, bool isAlwaysDirty = true);
    virtual ~MPxDrawOverride();
    MPxDrawOverride(const MPxDrawOverride&) = delete;
    MPxDrawOverride& operator=(const MPxDrawOverride&) = delete;

    virtual DrawAPI supportedDrawAPIs() const;
    virtual MMatrix transform(const MDagPath& objPath, const MDagPath& cameraPath) const;
    virtual bool isBounded(const MDagPath& objPath, const MDagPath& cameraPath) const;
    virtual MBoundingBox boundingBox(const MDagPath& objPath, const MDagPath& cameraPath) const;

    /// Reads the data for drawing from the node. The host owns the returned data and passes it as `oldData`
    /// the next time, unless it is deleted after use.
    virtual MUserData* prepareForDraw(const MDagPath& objPath, const MDagPath& cameraPath,
                                      const MFrameContext& frameContext, MUserData* oldData) = 0;
    virtual bool hasUIDrawables() const;
    virtual void addUIDrawables(const MDagPath& objPath, MUIDrawManager& drawManager,
                                const MFrameContext& frameContext, const MUserData* data);
};

} // namespace MHWRender
