#include "ui/CameraMenu.h"

#include "core/CameraHandle.h"
#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/MenuText.h"

#include <QMenu>
#include <QStringList>

namespace vellix {

void CameraMenu::Add(QMenu& menu, const QString& title, const QString& except,
                     const std::function<void(const QString& camera)>& choose) {
    QMenu* const list = menu.addMenu(title);
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    for (const QString& camera : cameras) {
        if (camera != except) {
            const CameraHandle chosen(camera);
            ConnectGuarded(list->addAction(MenuText(camera)), &QAction::triggered, list,
                           [choose, chosen] { choose(chosen.Name()); });
        }
    }
    list->setEnabled(!list->isEmpty());
}

} // namespace vellix
