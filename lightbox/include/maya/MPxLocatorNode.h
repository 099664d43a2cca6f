#pragma once

#include <maya/M3dView.h>
#include <maya/MBoundingBox.h>
#include <maya/MGl.h>
#include <maya/MPxNode.h>

/// Base class of plug-in locators: shapes under a transform that the plug-in draws.
class MPxLocatorNode : public MPxNode {
public:
    MPxLocatorNode();
    ~MPxLocatorNode() override;

    Type type() const override;

    /// Draws the locator in the legacy viewport, with OpenGL between M3dView::beginGL() and endGL().
    virtual void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
                      M3dView::DisplayStatus status);
    /// Whether boundingBox() returns the locator's extent.
    virtual bool isBounded() const;
    virtual MBoundingBox boundingBox() const;
    /// Whether the locator is hidden when a view hides all locators.
    virtual bool excludeAsLocator() const;
    virtual bool isTransparent() const;
    virtual bool drawLast() const;
};
