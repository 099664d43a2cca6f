#include "ui/DrawingMenu.h"

#include "core/LayerManager.h"
#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/MenuText.h"
#include "node/BaseNode.h"

#include <QMenu>
#include <QString>

#include <memory>

namespace vellix {

void DrawingMenu::Add(QMenu& menu) {
    QMenu* list = nullptr;
    const BaseNode* const master = BaseNode::GetMaster();
    for (const BaseNode* node : BaseNode::GetAll()) {
        const std::shared_ptr<LayerManager> layers = node->GetLayerManager();
        if (node == master || !layers || layers->TotalLayerCount() == 0) {
            continue;
        }
        if (!list) {
            list = menu.addMenu(QStringLiteral("Take layers of"));
        }
        const QString path = node->GetPath();
        ConnectGuarded(list->addAction(MenuText(path)), &QAction::triggered, list,
                       [path] { MayaUtil::TakeLayers(path); });
    }
}

} // namespace vellix
