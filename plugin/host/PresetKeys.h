#pragma once

#include "paint/BrushPreset.h"

#include <QKeyEvent>

namespace vellix {

/// The preset of a number key, counted from 1, the key 0 being the last; 0 for other keys and with modifiers.
inline int PresetOfKey(const QKeyEvent& event) {
    const int digit = event.key() - Qt::Key_0;
    const bool isPlain = (event.modifiers() & ~Qt::KeypadModifier) == 0;
    return !isPlain || digit < 0 || digit > 9 ? 0 : digit == 0 ? BrushPreset::COUNT : digit;
}

} // namespace vellix
