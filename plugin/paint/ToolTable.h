#pragma once

#include "paint/ToolType.h"

#include <QString>

#include <vector>

namespace vellix {

/// How a tool uses the pointer's samples and when its stroke is painted.
enum class ToolKind {
    Freehand, ///< painted along all samples, segment by segment
    Shape,    ///< spans from the press to the pointer; repainted with every sample
    Text,     ///< typed at the pointer; repainted with every change
    None,     ///< not a drawing tool
};

/// A drawing tool: all that commands, settings, recordings, menus and panels know about it. A new tool needs
/// a number in ToolType, a row in ToolTable.cpp, its painting in DrawUtil or FreehandPainter and its icon in
/// Icons.
struct ToolRow {
    enum Trait : unsigned {
        HARDNESS = 1,        ///< its edge can be soft
        PRESSURE = 2,        ///< a pen's pressure can set the opacity
        PRESSURE_ON = 4,     ///< pen pressure is on by default
        SESSION_OPTIONS = 8, ///< the settings file keeps only its size
    };

    ToolType type;
    const char* word;  ///< its name in recordings and the prefix of its keys in the settings file
    const char* label; ///< in menus and panels
    const char* hint;  ///< what it does, for the tooltip
    // The command flags that activate the tool and that set its options, short and long.
    const char* shortToolFlag;
    const char* toolFlag;
    const char* shortOptionsFlag;
    const char* optionsFlag;
    ToolKind kind;
    int defaultSize; ///< image pixels; points for text
    int maximumSize; ///< the minimum is 1
    unsigned traits;
    /// The flags for what a pen's pressure does to size and opacity, each short and long; null for tools
    /// without pressure.
    const char* shortSizePressureFlag = nullptr;
    const char* sizePressureFlag = nullptr;
    const char* shortOpacityPressureFlag = nullptr;
    const char* opacityPressureFlag = nullptr;

    bool Has(Trait trait) const { return (traits & trait) != 0; }
    const char* SizeUnit() const { return kind == ToolKind::Text ? "pt" : "px"; }
};

/// All drawing tools, in display order.
const std::vector<ToolRow>& AllTools();

/// Returns the row of a tool; null if it is not a drawing tool.
const ToolRow* FindTool(ToolType type);
const ToolRow* FindTool(const QString& word);

ToolKind KindOf(ToolType type);

} // namespace vellix
