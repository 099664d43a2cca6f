#include "ui/HostColorField.h"

#include "host/MayaUtil.h"

#include <QHBoxLayout>

namespace vellix {

HostColorField::HostColorField(const QString& controlName, const QSize& size, const QString& toolTip,
                               QWidget* parent)
    : QWidget(parent)
    , name_(controlName) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    if (QWidget* control = MayaUtil::CreateColorSliderGrp(controlName, size.width(), size.height())) {
        isMade_ = true;
        row->addWidget(control);
        control->show();
        setToolTip(toolTip);
        if (auto* swatch = control->findChild<QWidget*>(QStringLiteral("port"))) {
            swatch->setToolTip(toolTip);
            swatch->setAccessibleName(toolTip);
            setFocusProxy(swatch);
        }
    }
}

void HostColorField::SetColor(const QColor& color) {
    if (isMade_ && color.isValid() && GetColor().rgb() != color.rgb()) {
        MayaUtil::SetColorSliderGrpColor(name_, color);
    }
}

QColor HostColorField::GetColor() const {
    return isMade_ ? MayaUtil::GetColorSliderGrpColor(name_) : QColor();
}

void HostColorField::SetChangeCommand(const QString& command) {
    if (isMade_) {
        MayaUtil::SetColorSliderGrpChangeCommand(name_, command);
    }
}

} // namespace vellix
