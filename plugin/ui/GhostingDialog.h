#pragma once

#include <QDialog>

class QCheckBox;
class QSpinBox;

namespace vellix {

class HostColorField;

/// Sets how many drawings are ghosted and in which colours. Nothing changes before OK.
class GhostingDialog : public QDialog {
    Q_OBJECT

public:
    explicit GhostingDialog(QWidget* parent);

private:
    QWidget* CreateFramesGroup();
    QWidget* CreateColorGroup();
    /// Executes the command lines of all five settings, changed or not, and closes.
    void Apply();

    QSpinBox* previousCount_;
    QSpinBox* nextCount_;
    QCheckBox* colorOverride_;
    HostColorField* previousColor_;
    HostColorField* nextColor_;
};

} // namespace vellix
