#pragma once

#include "paint/PenPressure.h"
#include "paint/ToolType.h"

#include <QString>

#include <vector>

namespace vellix {

/// A drawing tool with its options, under a name.
struct BrushPreset {
    /// One for each number key.
    static constexpr int COUNT = 10;
    static constexpr int MAX_NAME_LENGTH = 40;

    QString name;
    ToolType tool = ToolType::Pencil;
    int size = 1;       ///< image pixels; points for text
    int opacity = 100;  ///< percent
    int hardness = 100; ///< percent
    bool pressureSetsOpacity = false;
    PenPressure pressure;

    /// The presets of a new user, COUNT of them.
    static std::vector<BrushPreset> Defaults();
    /// A name as it is kept: without blanks around it and line breaks, and cut to MAX_NAME_LENGTH.
    static QString TidyName(const QString& name);

    /// One line, as settings keep it: the tool's word, size, opacity, hardness, the switch for the opacity,
    /// the numbers of the pressure, and the name.
    QString ToText() const;
    /// Reads what ToText() wrote. Returns false, and leaves `preset` alone, for anything else.
    static bool FromText(const QString& text, BrushPreset& preset);
};

} // namespace vellix
