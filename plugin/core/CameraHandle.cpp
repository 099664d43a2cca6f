#include "core/CameraHandle.h"

#include "host/MayaUtil.h"

#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MObject.h>

namespace vellix {

CameraHandle::CameraHandle(const QString& name)
    : name_(name) {
    for (MItDependencyNodes cameras(MFn::kCamera); !cameras.isDone(); cameras.next()) {
        MDagPath path;
        if (MDagPath::getAPathTo(cameras.thisNode(), path) && MayaUtil::GetCameraName(path) == name) {
            transform_ = MObjectHandle(path.transform());
            return;
        }
    }
}

QString CameraHandle::Name() const {
    if (transform_.isValid()) {
        MObject transform = transform_.object();
        name_ = MayaUtil::ToQString(MFnDependencyNode(transform).name());
    }
    return name_;
}

} // namespace vellix
