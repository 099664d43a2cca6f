#pragma once

#include "ui/IconButton.h"

namespace vellix {

struct BrushPreset;

/// A button of the toolbox for a preset. Its picture is a stroke drawn with the preset.
class PresetButton : public IconButton {
    Q_OBJECT

public:
    /// `number` counts from 1; its last digit is the preset's key. `size` as for IconButton.
    PresetButton(int number, int size, QWidget* parent = nullptr);

    void SetPreset(const BrushPreset& preset);

private:
    int number_;
    QString shown_;
};

} // namespace vellix
