#include "commands/CameraArgument.h"

#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

#include <maya/MArgDatabase.h>
#include <maya/MDagPath.h>
#include <maya/MFn.h>
#include <maya/MItDependencyNodes.h>
#include <maya/MStringArray.h>

namespace vellix {

bool CameraArgument::Check(const QString& camera) {
    const bool exists = MayaUtil::CameraExists(camera);
    if (!exists) {
        Logger::Error(QString("Camera does not exist: %1").arg(camera));
    }
    return exists;
}

bool CameraArgument::Find(const QString& camera, MDagPath& shape) {
    for (MItDependencyNodes cameras(MFn::kCamera); !cameras.isDone(); cameras.next()) {
        MDagPath path;
        if (MDagPath::getAPathTo(cameras.thisNode(), path) && MayaUtil::GetCameraName(path) == camera) {
            shape = path;
            return true;
        }
    }
    return false;
}

QString CameraArgument::Require(const MArgDatabase& arguments) {
    return RequireWithLayers(arguments, nullptr);
}

QString CameraArgument::RequireWithLayers(const MArgDatabase& arguments, const BaseNode* node) {
    MStringArray objects;
    arguments.getObjects(objects);
    if (objects.length() == 0) {
        Logger::Error("Camera not specified");
        return QString();
    }
    QString camera = MayaUtil::ToQString(objects[0]);
    const bool hasLayers = node && node->LayerCount(camera) > 0;
    return hasLayers || Check(camera) ? camera : QString();
}

QString CameraArgument::Resolve(const QString& named, const BaseNode* node, const char* missing) {
    if (!named.isEmpty()) {
        return Check(named) ? named : QString();
    }
    QString active = node ? node->GetActiveCamera() : QString();
    if (active.isEmpty()) {
        Logger::Error(missing);
    }
    return active;
}

} // namespace vellix
