#include "openmaya/Access.h"

#include <maya/M3dView.h>

using lightbox::Access;

namespace {

MStatus NoView() {
    return Access::Fail(MS::kFailure, "There is no 3d view");
}

} // namespace

M3dView M3dView::active3dView(MStatus* ReturnStatus) {
    Access::Report(ReturnStatus, NoView());
    return M3dView();
}

unsigned int M3dView::numberOf3dViews() {
    return 0;
}

MStatus M3dView::getCamera(MDagPath&) {
    return NoView();
}

MStatus M3dView::refresh(bool, bool) {
    return NoView();
}
