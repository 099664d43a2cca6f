#include "ui/LayerFormDialog.h"

#include "core/LayerState.h"
#include "host/MayaUtil.h"
#include "ui/DialogParts.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>

namespace vellix {

namespace {

const int WIDTH = 300;

struct StateText {
    const char* label;
    const char* toolTip;
};

StateText TextOf(LayerState state) {
    switch (state) {
    case LayerState::Static:
        return {"Static", "One drawing for all times"};
    case LayerState::Locked:
        return {"Locked", "Shown, but not drawn on"};
    case LayerState::Animated:
        break;
    }
    return {"Anim", "Drawings keyed along the timeline"};
}

} // namespace

LayerFormDialog::LayerFormDialog(const QString& title, QWidget* parent)
    : QDialog(parent)
    , m_form(new QFormLayout(this))
    , m_name(new QLineEdit(this))
    , m_camera(new QComboBox(this)) {
    setWindowTitle(title);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setAttribute(Qt::WA_WindowPropagation);
    setMinimumWidth(WIDTH);
    m_name->setToolTip(QStringLiteral("The layer's name"));
    m_camera->setToolTip(QStringLiteral("The camera that the layer belongs to"));
    m_camera->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_camera->setMinimumContentsLength(12);
    m_form->setContentsMargins(10, 10, 10, 10);
    m_form->setHorizontalSpacing(8);
    m_form->setVerticalSpacing(8);
    m_form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->addRow(QStringLiteral("Name:"), m_name);
    m_form->addRow(QStringLiteral("Camera:"), m_camera);
}

void LayerFormDialog::AddStates(const QString& label, const QList<LayerState>& states) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(12);
    for (const LayerState state : states) {
        const StateText text = TextOf(state);
        auto* const button = new QRadioButton(QLatin1String(text.label), this);
        button->setToolTip(QLatin1String(text.toolTip));
        row->addWidget(button);
        m_states.append({state, button});
    }
    row->addStretch(1);
    m_form->addRow(label, row);
}

void LayerFormDialog::AddButtons() {
    QHBoxLayout* const row = CreateDialogButtons(*this, [this] {
        Apply();
        accept();
    });
    m_form->addRow(row);
    m_name->setFocus();
}

void LayerFormDialog::SetLayerName(const QString& name) {
    m_name->setText(name);
    m_name->selectAll();
}

void LayerFormDialog::SetCameras(const QStringList& cameras, const QString& current) {
    m_camera->clear();
    m_camera->addItems(cameras);
    SelectCamera(current);
}

void LayerFormDialog::FollowScene() {
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    SetCameras(cameras, GetCamera());
}

void LayerFormDialog::SetLayerState(LayerState state) {
    // Selects the first state, animated, for a state that is not on offer.
    for (const StateButton& entry : m_states) {
        if (entry.state == state || &entry == &m_states.first()) {
            entry.button->setChecked(true);
        }
    }
}

QString LayerFormDialog::GetLayerName() const {
    return m_name->text();
}

QString LayerFormDialog::GetCamera() const {
    return m_camera->currentText();
}

void LayerFormDialog::SelectCamera(const QString& camera) {
    const int index = m_camera->findText(camera);
    if (index >= 0) {
        m_camera->setCurrentIndex(index);
    }
}

LayerState LayerFormDialog::GetLayerState() const {
    for (const StateButton& entry : m_states) {
        if (entry.button->isChecked()) {
            return entry.state;
        }
    }
    return LayerState::Animated;
}

} // namespace vellix
