#include "ui/GhostingDialog.h"

#include "host/GuardedConnect.h"
#include "host/HeldKeys.h"
#include "host/MayaUtil.h"
#include "host/Settings.h"
#include "ui/DialogParts.h"
#include "ui/HostColorField.h"

#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cstddef>

namespace vellix {

namespace {

constexpr int GHOSTING_MARGIN = 6;
constexpr int GHOSTING_LEAST_WIDTH = 300;

QSpinBox* CreateCount(int count, const QString& toolTip) {
    const int least = Settings::MIN_GHOSTED_FRAMES;
    const int most = Settings::MAX_GHOSTED_FRAMES;
    auto* box = new QSpinBox;
    box->setRange(least, most);
    box->setValue(count);
    box->setAlignment(Qt::AlignRight);
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    box->setToolTip(toolTip);
    return box;
}

HostColorField* CreateColor(const QString& name, const QColor& color, const QString& toolTip) {
    auto* field = new HostColorField(name, QSize(24, 18), toolTip);
    field->SetColor(color);
    return field;
}

/// Creates a row with a widget each for "Previous:" and "Next:". Rows whose widgets are at most `width` wide
/// stand one below the other.
QGridLayout* CreateRow(QWidget* previous, QWidget* next, int width) {
    auto* row = new QGridLayout;
    row->setHorizontalSpacing(GHOSTING_MARGIN);
    int column = 0;
    for (QWidget* const field : {previous, next}) {
        auto* const label =
            new QLabel(field == previous ? QStringLiteral("Previous:") : QStringLiteral("Next:"));
        label->setBuddy(field);
        row->addWidget(label, 0, column++);
        row->setColumnMinimumWidth(column, width + GHOSTING_MARGIN);
        row->addWidget(field, 0, column++, Qt::AlignLeft | Qt::AlignVCenter);
    }
    row->setColumnStretch(column, 1);
    return row;
}

QSpinBox* CreateNumber(int least, int most, int value, const QString& suffix, const QString& toolTip) {
    auto* box = new QSpinBox;
    box->setRange(least, most);
    box->setValue(value);
    box->setSuffix(suffix);
    box->setAlignment(Qt::AlignRight);
    box->setToolTip(toolTip);
    return box;
}

/// The last of the keys that were typed, since one key is held.
QKeySequence LastKey(const QKeySequence& keys) {
    return keys.count() > 1 ? QKeySequence(keys[static_cast<uint>(keys.count()) - 1]) : keys;
}

/// Takes one key with its modifiers, since a key is held and no sequence typed.
QKeySequenceEdit* CreateKey(const HeldKey& action) {
    auto* edit = new QKeySequenceEdit(QKeySequence::fromString(action.keys, QKeySequence::PortableText));
    QString name = QLatin1String(action.flag + 1);
    name[0] = name[0].toUpper();
    edit->setObjectName(QStringLiteral("qmVxGhosting") + name);
    edit->setToolTip(QLatin1String(action.label));
    ConnectGuarded(edit, &QKeySequenceEdit::keySequenceChanged, edit,
                   [edit](const QKeySequence& keys) { edit->setKeySequence(LastKey(keys)); });
    return edit;
}

QWidget* WithClearButton(QKeySequenceEdit* edit) {
    auto* field = new QWidget;
    auto* row = new QHBoxLayout(field);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(GHOSTING_MARGIN);
    auto* clear = new QPushButton(QStringLiteral("None"));
    clear->setAutoDefault(false);
    clear->setToolTip(QStringLiteral("No key: ") + edit->toolTip());
    ConnectGuarded(clear, &QPushButton::clicked, edit, [edit] { edit->clear(); });
    row->addWidget(edit, 1);
    row->addWidget(clear);
    return field;
}

QFormLayout* CreateForm(QWidget* group) {
    auto* form = new QFormLayout(group);
    form->setHorizontalSpacing(GHOSTING_MARGIN);
    form->setVerticalSpacing(GHOSTING_MARGIN);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    return form;
}

/// The control's colour, or the current setting when the host has no control.
QColor ColorOf(const HostColorField& field, const QColor& setting) {
    const QColor color = field.GetColor();
    return color.isValid() ? color : setting;
}

} // namespace

GhostingDialog::GhostingDialog(QWidget* parent)
    : QDialog(parent)
    , previousCount_(
          CreateCount(Settings::ghostPrevCount, QStringLiteral("Number of earlier drawings shown")))
    , nextCount_(CreateCount(Settings::ghostNextCount, QStringLiteral("Number of later drawings shown")))
    , colorOverride_(new QCheckBox(QStringLiteral("Enable Color Override")))
    , previousColor_(CreateColor(QStringLiteral("qmGhostPrevOverrideColorBtn"),
                                 Settings::ghostColorOverridePrev,
                                 QStringLiteral("Color of the earlier drawings")))
    , nextColor_(CreateColor(QStringLiteral("qmGhostNextOverrideColorBtn"), Settings::ghostColorOverrideNext,
                             QStringLiteral("Color of the later drawings")))
    , ghostLayers_(new QComboBox)
    , otherLayers_(CreateNumber(0, 100, Settings::otherLayersOpacity, QStringLiteral(" %"),
                                QStringLiteral("How strongly the layers that are not active are shown")))
    , pinnedColor_(CreateColor(QStringLiteral("qmPinnedColorBtn"), Settings::pinnedColor,
                               QStringLiteral("Color of the pinned drawings")))
    , flipAll_(new QCheckBox(QStringLiteral("Flip All Layers")))
    , rollCount_(CreateNumber(1, int(Settings::MAX_ROLLED_DRAWINGS), Settings::rollCount, QString(),
                              QStringLiteral("Drawings rolled on each side of the current one")))
    , rollRate_(CreateNumber(1, int(Settings::MAX_ROLL_RATE), Settings::rollRate, QString(),
                             QStringLiteral("Drawings rolled in a second"))) {
    setObjectName(QStringLiteral("qmVxGhosting"));
    setWindowTitle(QStringLiteral("Ghosting Settings"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    previousCount_->setObjectName(QStringLiteral("qmVxGhostingPreviousCount"));
    nextCount_->setObjectName(QStringLiteral("qmVxGhostingNextCount"));
    colorOverride_->setObjectName(QStringLiteral("qmVxGhostingColorOverride"));
    colorOverride_->setChecked(Settings::ghostColorOverride);
    colorOverride_->setToolTip(QStringLiteral("Show ghosts in these colors instead of their own"));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(GHOSTING_MARGIN, GHOSTING_MARGIN, GHOSTING_MARGIN, GHOSTING_MARGIN);
    column->addSpacerItem(new QSpacerItem(GHOSTING_LEAST_WIDTH - 2 * GHOSTING_MARGIN, 0));
    column->addWidget(CreateFramesGroup());
    column->addWidget(CreateColorGroup());
    column->addWidget(CreateLightTableGroup());
    column->addWidget(CreateFlipGroup());
    column->addStretch();
    column->addLayout(CreateDialogButtons(*this, [this] { Apply(); }));
    previousCount_->setFocus();
    previousCount_->selectAll();
}

QWidget* GhostingDialog::CreateFramesGroup() {
    auto* group = new QGroupBox(QStringLiteral("Frames to Display"));
    group->setLayout(CreateRow(previousCount_, nextCount_, previousCount_->sizeHint().width()));
    return group;
}

QWidget* GhostingDialog::CreateColorGroup() {
    auto* group = new QGroupBox(QStringLiteral("Color Override"));
    auto* column = new QVBoxLayout(group);
    column->addWidget(colorOverride_);
    column->addLayout(CreateRow(previousColor_, nextColor_, previousCount_->sizeHint().width()));
    return group;
}

QWidget* GhostingDialog::CreateLightTableGroup() {
    auto* group = new QGroupBox(QStringLiteral("Light Table"));
    QFormLayout* const form = CreateForm(group);
    // In the order of GhostLayers.
    ghostLayers_->addItems({QStringLiteral("Active Layer"), QStringLiteral("Marked Layers"),
                            QStringLiteral("All Visible Layers")});
    ghostLayers_->setCurrentIndex(Settings::ghostLayers);
    ghostLayers_->setToolTip(QStringLiteral("Layers whose earlier and later drawings are shown"));
    form->addRow(QStringLiteral("Ghosts of:"), ghostLayers_);
    form->addRow(QStringLiteral("Other layers:"), otherLayers_);
    auto* pinned = new QHBoxLayout;
    pinned->addWidget(pinnedColor_, 0, Qt::AlignLeft | Qt::AlignVCenter);
    pinned->addStretch(1);
    form->addRow(QStringLiteral("Pinned drawings:"), pinned);
    return group;
}

QWidget* GhostingDialog::CreateFlipGroup() {
    auto* group = new QGroupBox(QStringLiteral("Flip and Roll"));
    QFormLayout* const form = CreateForm(group);
    const char* const labels[] = {"Previous key:", "Next key:", "Roll key:"};
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        keys_[i] = CreateKey(HeldKeys::GetAll()[i]);
        form->addRow(QLatin1String(labels[i]), WithClearButton(keys_[i]));
    }
    auto* roll = new QHBoxLayout;
    roll->setSpacing(GHOSTING_MARGIN);
    roll->addWidget(rollCount_);
    roll->addWidget(new QLabel(QStringLiteral("on each side,")));
    roll->addWidget(rollRate_);
    roll->addWidget(new QLabel(QStringLiteral("a second")));
    roll->addStretch();
    form->addRow(QStringLiteral("Roll:"), roll);
    flipAll_->setChecked(Settings::flipAllLayers);
    flipAll_->setToolTip(QStringLiteral("Show all layers as they are at the other drawing"));
    form->addRow(QString(), flipAll_);
    return group;
}

void GhostingDialog::Apply() {
    MayaUtil::SetGhostPreviousCount(previousCount_->value());
    MayaUtil::SetGhostNextCount(nextCount_->value());
    MayaUtil::SetGhostColorOverrideEnabled(colorOverride_->isChecked());
    MayaUtil::SetGhostColorOverridePrev(ColorOf(*previousColor_, Settings::ghostColorOverridePrev));
    MayaUtil::SetGhostColorOverrideNext(ColorOf(*nextColor_, Settings::ghostColorOverrideNext));
    ApplyLightTable();
    ApplyFlip();
    accept();
}

void GhostingDialog::ApplyLightTable() const {
    if (ghostLayers_->currentIndex() != Settings::ghostLayers) {
        MayaUtil::SetGhostLayers(ghostLayers_->currentIndex());
    }
    if (otherLayers_->value() != Settings::otherLayersOpacity) {
        MayaUtil::SetOtherLayersOpacity(otherLayers_->value());
    }
    const QColor pinned = ColorOf(*pinnedColor_, Settings::pinnedColor);
    if (pinned.rgb() != Settings::pinnedColor.rgb()) {
        MayaUtil::SetPinnedColor(pinned);
    }
}

void GhostingDialog::ApplyFlip() const {
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        const HeldKey& action = HeldKeys::GetAll()[i];
        // The field may still wait for more keys.
        const QString keys = LastKey(keys_[i]->keySequence()).toString(QKeySequence::PortableText);
        if (keys != action.keys) {
            MayaUtil::SetHeldKey(action, keys);
        }
    }
    if (rollCount_->value() != Settings::rollCount) {
        MayaUtil::SetRollCount(rollCount_->value());
    }
    if (rollRate_->value() != Settings::rollRate) {
        MayaUtil::SetRollRate(rollRate_->value());
    }
    if (flipAll_->isChecked() != Settings::flipAllLayers) {
        MayaUtil::SetFlipAllLayers(flipAll_->isChecked());
    }
}

} // namespace vellix
