#include "commands/CameraArgument.h"

#include "host/Logger.h"
#include "host/MayaUtil.h"
#include "node/BaseNode.h"

namespace vellix {

QString CameraArgument::Resolve(const QString& named, const BaseNode* node, const char* missing) {
    if (!named.isEmpty()) {
        if (MayaUtil::CameraExists(named)) {
            return named;
        }
        Logger::Error(QString("Camera does not exist: %1").arg(named));
        return QString();
    }
    QString active = node ? node->GetActiveCamera() : QString();
    if (active.isEmpty()) {
        Logger::Error(missing);
    }
    return active;
}

} // namespace vellix
