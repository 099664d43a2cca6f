#include "ui/RetimingDialog.h"

#include "host/GuardedConnect.h"
#include "host/MayaUtil.h"
#include "host/PanelTable.h"
#include "host/Settings.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace vellix {

namespace {

const int ABSOLUTE_WIDTH = 30;
const int RELATIVE_WIDTH = 36;
const int LONGEST_HOLD = 7;

QString Frames(int count) {
    return count == 1 ? QStringLiteral("1 frame") : QStringLiteral("%1 frames").arg(count);
}

} // namespace

RetimingDialog::RetimingDialog(QWidget* parent)
    : FloatingPanel(Panel::Retiming, parent)
    , moveToNext_(new QCheckBox(QStringLiteral("Move to Next Frame"), this)) {
    setObjectName(QStringLiteral("qmVxRetimingTool"));
    auto* const absolute = new QHBoxLayout;
    absolute->setSpacing(2);
    for (int frames = 1; frames <= LONGEST_HOLD; ++frames) {
        AddButton(absolute, QStringLiteral("%1f").arg(frames),
                  QStringLiteral("Hold the drawing for %1").arg(Frames(frames)), ABSOLUTE_WIDTH,
                  &RetimingDialog::RetimeAbsolute);
    }
    auto* const relative = new QHBoxLayout;
    relative->setSpacing(2);
    for (const int frames : {-2, -1}) {
        AddButton(relative, QStringLiteral("%1f").arg(frames),
                  QStringLiteral("Hold the drawing %1 less").arg(Frames(-frames)), RELATIVE_WIDTH,
                  &RetimingDialog::RetimeRelative);
    }
    relative->addStretch(1);
    for (const int frames : {1, 2}) {
        AddButton(relative, QStringLiteral("+%1f").arg(frames),
                  QStringLiteral("Hold the drawing %1 longer").arg(Frames(frames)), RELATIVE_WIDTH,
                  &RetimingDialog::RetimeRelative);
    }
    moveToNext_->setObjectName(objectName() + QStringLiteral("MoveToNextFrame"));
    moveToNext_->setToolTip(QStringLiteral("After each press go on to the drawing that follows"));
    ConnectGuarded(moveToNext_, &QCheckBox::toggled, this, &RetimingDialog::OnMoveToNextFrameToggled);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(2);
    layout->addLayout(absolute);
    layout->addLayout(relative);
    layout->addWidget(moveToNext_);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    FitButtons();
    RestorePlace();
}

void RetimingDialog::AddButton(QHBoxLayout* row, const QString& label, const QString& toolTip, int least,
                               void (RetimingDialog::*slot)()) {
    auto* const button = new QPushButton(label, this);
    button->setObjectName(objectName() + label);
    button->setToolTip(toolTip);
    button->setAutoDefault(false);
    ConnectGuarded(button, &QPushButton::clicked, this, slot);
    row->addWidget(button);
    buttons_.append({button, least});
}

void RetimingDialog::FitButtons() {
    for (const FrameButton& entry : buttons_) {
        const int text = entry.button->fontMetrics().size(Qt::TextSingleLine, entry.button->text()).width();
        entry.button->setFixedWidth(qMax(entry.least, text + 12));
    }
}

void RetimingDialog::RetimeAbsolute() {
    Retime(false);
}

void RetimingDialog::RetimeRelative() {
    Retime(true);
}

void RetimingDialog::Retime(bool relative) {
    const auto* const button = qobject_cast<QPushButton*>(sender());
    if (!button) {
        return;
    }
    QString text = button->text();
    text.chop(1);
    bool isNumber = false;
    const int frames = text.toInt(&isNumber);
    if (isNumber) {
        MayaUtil::RetimeFrames(frames, relative, moveToNext_->isChecked());
    }
}

void RetimingDialog::OnMoveToNextFrameToggled() {
    Settings::retimeMoveToNextFrame = moveToNext_->isChecked();
}

void RetimingDialog::showEvent(QShowEvent* event) {
    const QSignalBlocker blocker(moveToNext_);
    moveToNext_->setChecked(Settings::retimeMoveToNextFrame);
    FloatingPanel::showEvent(event);
}

void RetimingDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        FitButtons();
    }
    FloatingPanel::changeEvent(event);
}

} // namespace vellix
