#pragma once

#include <maya/MBoundingBox.h>
#include <maya/MDagPath.h>
#include <maya/MMatrix.h>
#include <maya/MUserData.h>
#include <maya/MViewport2Renderer.h>

namespace MHWRender {

class MDrawContext;
class MFrameContext;
class MUIDrawManager;

/// Base of what draws nodes of a plug-in's type in Viewport 2.0. The host makes an instance for a node in a
/// view and owns it.
class MPxDrawOverride {
public:
    using GeometryDrawOverrideCb = void (*)(const MDrawContext& context, const MUserData* data);

    /// Lightbox prepares every node anew whenever a view is drawn, as others do for one that is always dirty,
    /// and draws what addUIDrawables() hands over. It has no draw context to call the callback with.
    MPxDrawOverride(const MObject& obj, GeometryDrawOverrideCb callback, bool isAlwaysDirty = true);
    virtual ~MPxDrawOverride();
    MPxDrawOverride(const MPxDrawOverride&) = delete;
    MPxDrawOverride& operator=(const MPxDrawOverride&) = delete;

    virtual DrawAPI supportedDrawAPIs() const;
    virtual MMatrix transform(const MDagPath& objPath, const MDagPath& cameraPath) const;
    virtual bool isBounded(const MDagPath& objPath, const MDagPath& cameraPath) const;
    virtual MBoundingBox boundingBox(const MDagPath& objPath, const MDagPath& cameraPath) const;

    /// Reads from the node what drawing needs. The answer is owned by the host, which hands it back as
    /// `oldData` the next time unless it is to be deleted after use.
    virtual MUserData* prepareForDraw(const MDagPath& objPath, const MDagPath& cameraPath,
                                      const MFrameContext& frameContext, MUserData* oldData) = 0;
    virtual bool hasUIDrawables() const;
    virtual void addUIDrawables(const MDagPath& objPath, MUIDrawManager& drawManager,
                                const MFrameContext& frameContext, const MUserData* data);
};

} // namespace MHWRender
