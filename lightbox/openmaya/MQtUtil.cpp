#include "openmaya/Access.h"
#include "scene/UserInterface.h"

#include <maya/MQtUtil.h>

#include <QWidget>

using lightbox::Access;

QString MQtUtil::toQString(const MString& mstr) {
    return QString::fromStdString(Access::Text(mstr));
}

MString MQtUtil::toMString(const QString& qstr) {
    return Access::Wrap(qstr.toStdString());
}

QWidget* MQtUtil::mainWindow() {
    lightbox::UserInterface* ui = Access::Ui();
    return ui ? &ui->MainWindow() : nullptr;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the published signature
QWidget* MQtUtil::findControl(MString controlName, const QWidget* ancestor) {
    lightbox::UserInterface* ui = Access::Ui();
    if (!ui || controlName.length() == 0) {
        return nullptr;
    }
    QWidget* control = ui->FindControl(Access::Text(controlName));
    return control && (!ancestor || ancestor == control || ancestor->isAncestorOf(control)) ? control
                                                                                            : nullptr;
}
