#pragma once

#include "ui/FloatingPanel.h"

#include <QList>

class QCheckBox;
class QHBoxLayout;
class QPushButton;

namespace vellix {

/// Sets how long the active layer's drawing at the current time is held: one button for each length, and a
/// few that lengthen or shorten it. Each press executes one command line.
class RetimingDialog : public FloatingPanel {
    Q_OBJECT

public:
    explicit RetimingDialog(QWidget* parent = nullptr);

public Q_SLOTS:
    void RetimeAbsolute();
    void RetimeRelative();
    void OnMoveToNextFrameToggled();

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct FrameButton {
        QPushButton* button;
        int least; ///< minimum width, pixels
    };

    void AddButton(QHBoxLayout* row, const QString& label, const QString& toolTip, int least,
                   void (RetimingDialog::*slot)());
    void Retime(bool relative);
    void FitButtons();

    QList<FrameButton> buttons_;
    QCheckBox* moveToNext_;
};

} // namespace vellix
