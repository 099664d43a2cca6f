#include "node/LightTableMenu.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "node/ActiveDrawing.h"

#include <QAction>
#include <QMenu>
#include <QString>

namespace vellix {

namespace {

QAction* AddSwitch(QMenu& menu, const QString& text, bool isOn, bool (*set)(bool on)) {
    QAction* const action = menu.addAction(text);
    action->setCheckable(true);
    action->setChecked(isOn);
    ConnectGuarded(action, &QAction::triggered, action, [set](bool on) { set(on); });
    return action;
}

} // namespace

void LightTableMenu::Add(QMenu& menu) {
    const ActiveDrawing active;
    menu.addSeparator();
    AddSwitch(menu, QStringLiteral("Pin Drawing"), active.IsPinned(), MayaUtil::SetDrawingPinned)
        ->setEnabled(active.frame != nullptr);
    QAction* const unpin = menu.addAction(QStringLiteral("Unpin All Drawings"));
    unpin->setEnabled(active.HasPins());
    ConnectGuarded(unpin, &QAction::triggered, unpin, [] { MayaUtil::UnpinAllDrawings(); });
    menu.addSeparator();
    AddSwitch(menu, QStringLiteral("Mark Layer"), active.IsMarked(), MayaUtil::SetActiveLayerMarked)
        ->setEnabled(active.layer != nullptr);
}

} // namespace vellix
