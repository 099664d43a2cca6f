#include "ui/LayerFormDialog.h"

#include "core/LayerState.h"
#include "host/MayaUtil.h"
#include "ui/DialogParts.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QStringList>

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
    , form_(new QFormLayout(this))
    , name_(new QLineEdit(this))
    , camera_(new QComboBox(this)) {
    setWindowTitle(title);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setAttribute(Qt::WA_WindowPropagation);
    setMinimumWidth(WIDTH);
    name_->setToolTip(QStringLiteral("The layer's name"));
    camera_->setToolTip(QStringLiteral("The camera that the layer belongs to"));
    camera_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    camera_->setMinimumContentsLength(12);
    form_->setContentsMargins(10, 10, 10, 10);
    form_->setHorizontalSpacing(8);
    form_->setVerticalSpacing(8);
    form_->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form_->addRow(QStringLiteral("Name:"), name_);
    form_->addRow(QStringLiteral("Camera:"), camera_);
}

void LayerFormDialog::AddStates(const QString& label, const QList<LayerState>& states) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(12);
    for (const LayerState state : states) {
        const StateText text = TextOf(state);
        auto* const button = new QRadioButton(QLatin1String(text.label), this);
        button->setToolTip(QLatin1String(text.toolTip));
        row->addWidget(button);
        states_.append({state, button});
    }
    row->addStretch(1);
    form_->addRow(label, row);
}

void LayerFormDialog::AddButtons() {
    QHBoxLayout* const row = CreateDialogButtons(*this, [this] {
        Apply();
        accept();
    });
    form_->addRow(row);
    name_->setFocus();
}

void LayerFormDialog::SetLayerName(const QString& name) {
    name_->setText(name);
    name_->selectAll();
}

void LayerFormDialog::SetCameras(const QStringList& cameras, const QString& current) {
    camera_->clear();
    camera_->addItems(cameras);
    SelectCamera(current);
}

void LayerFormDialog::FollowScene() {
    QStringList cameras;
    MayaUtil::GetCameras(cameras);
    SetCameras(cameras, GetCamera());
}

void LayerFormDialog::SetLayerState(LayerState state) {
    // Selects the first state, animated, for a state that is not on offer.
    for (const StateButton& entry : states_) {
        if (entry.state == state || &entry == &states_.first()) {
            entry.button->setChecked(true);
        }
    }
}

QString LayerFormDialog::GetLayerName() const {
    return name_->text();
}

QString LayerFormDialog::GetCamera() const {
    return camera_->currentText();
}

void LayerFormDialog::SelectCamera(const QString& camera) {
    const int index = camera_->findText(camera);
    if (index >= 0) {
        camera_->setCurrentIndex(index);
    }
}

LayerState LayerFormDialog::GetLayerState() const {
    for (const StateButton& entry : states_) {
        if (entry.button->isChecked()) {
            return entry.state;
        }
    }
    return LayerState::Animated;
}

} // namespace vellix
