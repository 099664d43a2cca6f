// A plug-in as others write them: a locator that draws itself with OpenGL, which it has from the headers of
// the host.

#include <maya/MColor.h>
#include <maya/MDagPath.h>
#include <maya/MFnPlugin.h>
#include <maya/MPoint.h>
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

const MTypeId ARROW_ID(0x00102);

} // namespace

MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "Somebody", "1.0", "Any");
    return plugin.registerNode("arrowLocator", ARROW_ID, ArrowLocator::Creator, ArrowLocator::Initialize,
                               MPxNode::kLocatorNode);
}

MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    return plugin.deregisterNode(ARROW_ID);
}
