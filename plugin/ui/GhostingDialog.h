#pragma once

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QKeySequenceEdit;
class QSpinBox;

namespace vellix {

class HostColorField;

/// Sets how many drawings are ghosted, of which layers and in which colours, and how drawings are flipped.
/// Nothing changes before OK.
class GhostingDialog : public QDialog {
    Q_OBJECT

public:
    explicit GhostingDialog(QWidget* parent);

private:
    QWidget* CreateFramesGroup();
    QWidget* CreateColorGroup();
    QWidget* CreateLightTableGroup();
    QWidget* CreateFlipGroup();
    /// Executes the command lines of the five settings of the two first groups, changed or not, and of those
    /// of the others that were changed, and closes.
    void Apply();
    void ApplyLightTable() const;
    void ApplyFlip() const;

    QSpinBox* previousCount_;
    QSpinBox* nextCount_;
    QCheckBox* colorOverride_;
    HostColorField* previousColor_;
    HostColorField* nextColor_;
    QComboBox* ghostLayers_;
    QSpinBox* otherLayers_;
    HostColorField* pinnedColor_;
    QCheckBox* flipAll_;
    std::array<QKeySequenceEdit*, 3> keys_; ///< in the order of HeldKeys::GetAll
    QSpinBox* rollCount_;
    QSpinBox* rollRate_;
};

} // namespace vellix
