#include "ui/HostColorField.h"

#include "host/MayaUtil.h"

#include <QHBoxLayout>

namespace vellix {

HostColorField::HostColorField(const QString& controlName, const QSize& size, const QString& toolTip,
                               QWidget* parent)
    : QWidget(parent)
    , m_name(controlName) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    if (QWidget* control = MayaUtil::CreateColorSliderGrp(controlName, size.width(), size.height())) {
        m_isMade = true;
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
    if (m_isMade && color.isValid() && GetColor().rgb() != color.rgb()) {
        MayaUtil::SetColorSliderGrpColor(m_name, color);
    }
}

QColor HostColorField::GetColor() const {
    return m_isMade ? MayaUtil::GetColorSliderGrpColor(m_name) : QColor();
}

void HostColorField::SetChangeCommand(const QString& command) {
    if (m_isMade) {
        MayaUtil::SetColorSliderGrpChangeCommand(m_name, command);
    }
}

} // namespace vellix
