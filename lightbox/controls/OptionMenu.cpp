#include "controls/OptionMenu.h"

#include <QAction>
#include <QActionEvent>
#include <QStandardItemModel>

namespace lightbox {

OptionMenu::OptionMenu() {
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        if (QAction* const action = actions().value(index)) {
            action->trigger();
        }
    });
}

void OptionMenu::actionEvent(QActionEvent* event) {
    QComboBox::actionEvent(event);
    Fill();
}

void OptionMenu::Fill() {
    const int current = currentIndex();
    const bool wasBlocked = blockSignals(true);
    clear();
    auto* const entries = qobject_cast<QStandardItemModel*>(model());
    for (const QAction* const action : actions()) {
        const QString text = action->text();
        addItem(action->icon(), QString(text).replace(QLatin1String("&&"), QLatin1String("&")));
        if (entries) {
            entries->item(count() - 1)->setEnabled(action->isEnabled());
        }
    }
    setCurrentIndex(current < 0 || current >= count() ? 0 : current);
    blockSignals(wasBlocked);
}

} // namespace lightbox
