// A plug-in as others write them: a locator that draws itself with OpenGL, which it has from the headers of
// the host, and in Viewport 2.0 with an override.

#include <maya/MColor.h>
#include <maya/MDagPath.h>
#include <maya/MDrawRegistry.h>
#include <maya/MFnPlugin.h>
#include <maya/MPoint.h>
#include <maya/MPxDrawOverride.h>
#include <maya/MPxLocatorNode.h>
#include <maya/MTypeId.h>

namespace {

class ArrowLocator : public MPxLocatorNode {
public:
    static void* Creator() { return new ArrowLocator; }
    static MStatus Initialize() { return MS::kSuccess; }

    void draw(M3dView& view, const MDagPath& path, M3dView::DisplayStyle, M3dView::DisplayStatus) override {
        const MVector direction = Axis(path, MSpace::kWorld);
        const MColor color(1.0f, 0.5f, 0.0f);
        view.beginGL();
        glPushAttrib(GL_CURRENT_BIT);
        glColor3f(color.r, color.g, color.b);
        glBegin(GL_LINES);
        glVertex3d(0.0, 0.0, 0.0);
        glVertex3d(direction.x, direction.y, direction.z);
        glEnd();
        glPopAttrib();
        view.endGL();
    }

    bool isBounded() const override { return true; }
    MBoundingBox boundingBox() const override {
        MBoundingBox box(MPoint(-1.0, -1.0, -1.0), MPoint(1.0, 1.0, 1.0) + MVector::yAxis);
        return box;
    }

private:
    static MVector Axis(const MDagPath& path, MSpace::Space space) {
        return space == MSpace::kWorld ? MVector::yAxis * path.inclusiveMatrix() : MVector::yAxis;
    }
};

class ArrowOverride : public MHWRender::MPxDrawOverride {
public:
    static MHWRender::MPxDrawOverride* Creator(const MObject& node) { return new ArrowOverride(node); }

    MHWRender::DrawAPI supportedDrawAPIs() const override {
        return (MHWRender::kOpenGL | MHWRender::kDirectX11 | MHWRender::kOpenGLCoreProfile);
    }
    bool isBounded(const MDagPath&, const MDagPath&) const override { return false; }
    MBoundingBox boundingBox(const MDagPath&, const MDagPath&) const override { return MBoundingBox(); }
    MUserData* prepareForDraw(const MDagPath&, const MDagPath&, const MHWRender::MFrameContext& frame,
                              MUserData* data) override {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        frame.getViewportDimensions(x, y, width, height);
        return data;
    }

private:
    explicit ArrowOverride(const MObject& node)
        : MHWRender::MPxDrawOverride(node, nullptr) {}
};

const MTypeId ARROW_ID(0x00102);
const MString ARROW_CLASS("drawdb/geometry/arrowLocator");
const MString ARROW_REGISTRANT("arrowPlugin");

} // namespace

MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "Somebody", "1.0", "Any");
    const MStatus status = plugin.registerNode("arrowLocator", ARROW_ID, ArrowLocator::Creator,
                                               ArrowLocator::Initialize, MPxNode::kLocatorNode, &ARROW_CLASS);
    CHECK_MSTATUS_AND_RETURN_IT(status);
    return MHWRender::MDrawRegistry::registerDrawOverrideCreator(ARROW_CLASS, ARROW_REGISTRANT,
                                                                 ArrowOverride::Creator);
}

MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    CHECK_MSTATUS(MHWRender::MDrawRegistry::deregisterDrawOverrideCreator(ARROW_CLASS, ARROW_REGISTRANT));
    return plugin.deregisterNode(ARROW_ID);
}
