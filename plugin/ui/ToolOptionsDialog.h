#pragma once

#include "host/panels/DialogManager.h"
#include "ui/FloatingPanel.h"

class QCheckBox;
class QFontComboBox;
class QGridLayout;
class QLabel;
class QToolButton;

namespace vellix {

class IconView;
class NumberSlider;
class PressureField;
class PressureStrip;
struct BrushPreset;

/// The options of the active drawing tool. Each change executes one command line at once; while a slider is
/// dragged, a few per second.
class ToolOptionsDialog final : public FloatingPanel, public ToolOptionsPanel {
    Q_OBJECT

public:
    explicit ToolOptionsDialog(QWidget* parent);

    void Refresh() override;

private:
    struct Row {
        QLabel* label;
        QWidget* field;
        void SetShown(bool shown) const;
    };

    QLayout* CreateHeader();
    Row AddRow(QGridLayout& grid, const QString& label, QWidget* field);
    QWidget* CreatePressure();
    void UnfoldPressure();
    /// The active tool as the fields show it.
    BrushPreset ShownBrush() const;
    void ShowFont(const QString& family);
    void OnFontChosen();
    void Send();

    IconView* icon_;
    QLabel* name_;
    NumberSlider* size_;
    NumberSlider* opacity_;
    NumberSlider* hardness_;
    NumberSlider* stabiliser_;
    QCheckBox* pressure_;
    QCheckBox* pressureSize_;
    QCheckBox* smoothCurves_;
    QFontComboBox* font_;
    Row hardnessRow_;
    Row fontRow_;
    Row stabiliserRow_;
    PressureField* opacityCurve_;
    PressureField* sizeCurve_;
    PressureStrip* strip_;
    QWidget* pressureParts_;
    QToolButton* pressureShown_; ///< unfolds pressureParts_
    bool isUnfolded_ = false;    ///< pressureParts_, for the tools that have them
    QString shownFont_;
};

} // namespace vellix
