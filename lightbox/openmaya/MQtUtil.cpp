#include "openmaya/Access.h"
#include "scene/Host.h"

#include <maya/MQtUtil.h>

#include <QApplication>
#include <QWidget>

using lightbox::Access;
using lightbox::Host;

namespace {

bool HasWidgets() {
    return !Host::Get().IsBatch() && qobject_cast<QApplication*>(QCoreApplication::instance());
}

QWidget* FindIn(QWidget& widget, const QString& name) {
    return widget.objectName() == name ? &widget : widget.findChild<QWidget*>(name);
}

} // namespace

QString MQtUtil::toQString(const MString& mstr) {
    return QString::fromStdString(Access::Text(mstr));
}

MString MQtUtil::toMString(const QString& qstr) {
    return Access::Wrap(qstr.toStdString());
}

QWidget* MQtUtil::mainWindow() {
    return findControl("MayaWindow");
}

QWidget* MQtUtil::findControl(const MString& name, const QWidget* in) {
    if (!HasWidgets() || name.length() == 0) {
        return nullptr;
    }
    // A control may be named by its whole path through the layouts.
    const QString last = toQString(name).section(QLatin1Char('|'), -1);
    if (in) {
        return FindIn(*const_cast<QWidget*>(in), last);
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (QWidget* found = FindIn(*window, last)) {
            return found;
        }
    }
    return nullptr;
}
