#include <maya/MPxLocatorNode.h>

MPxLocatorNode::MPxLocatorNode() = default;
MPxLocatorNode::~MPxLocatorNode() = default;

MPxNode::Type MPxLocatorNode::type() const {
    return kLocatorNode;
}

void MPxLocatorNode::draw(M3dView&, const MDagPath&, M3dView::DisplayStyle, M3dView::DisplayStatus) {}

bool MPxLocatorNode::isBounded() const {
    return false;
}

MBoundingBox MPxLocatorNode::boundingBox() const {
    return MBoundingBox(MPoint(-1, -1, -1), MPoint(1, 1, 1));
}

bool MPxLocatorNode::excludeAsLocator() const {
    return true;
}

bool MPxLocatorNode::isTransparent() const {
    return false;
}

bool MPxLocatorNode::drawLast() const {
    return false;
}
