#pragma once

#include <maya/M3dView.h>
#include <maya/MBoundingBox.h>
#include <maya/MPxNode.h>

/// Base of locator nodes that plug-ins define: shapes under a transform, drawn by the plug-in.
class MPxLocatorNode : public MPxNode {
public:
    MPxLocatorNode();
    ~MPxLocatorNode() override;

    Type type() const override;

    /// Draws it in the legacy viewport, with OpenGL between M3dView::beginGL() and endGL().
    virtual void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle style,
                      M3dView::DisplayStatus status);
    /// Whether boundingBox() says how much space the locator takes.
    virtual bool isBounded() const;
    virtual MBoundingBox boundingBox() const;
    /// Whether the locator is hidden together with all locators of a view.
    virtual bool excludeAsLocator() const;
    virtual bool isTransparent() const;
    virtual bool drawLast() const;
};
