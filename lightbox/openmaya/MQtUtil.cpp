#include "openmaya/ApiBridge.h"
#include "scene/UserInterface.h"

#include <maya/MQtUtil.h>

#include <QWidget>

using lightbox::ApiBridge;

QString MQtUtil::toQString(const MString& mstr) {
    return QString::fromStdString(ApiBridge::Text(mstr));
}

MString MQtUtil::toMString(const QString& qstr) {
    return ApiBridge::Wrap(qstr.toStdString());
}

QWidget* MQtUtil::mainWindow() {
    lightbox::UserInterface* ui = ApiBridge::Ui();
    return ui ? &ui->MainWindow() : nullptr;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the published signature
QWidget* MQtUtil::findControl(MString controlName, const QWidget* ancestor) {
    lightbox::UserInterface* ui = ApiBridge::Ui();
    if (!ui || controlName.length() == 0) {
        return nullptr;
    }
    QWidget* control = ui->FindControl(ApiBridge::Text(controlName));
    return control && (!ancestor || ancestor == control || ancestor->isAncestorOf(control)) ? control
                                                                                            : nullptr;
}
