#pragma once

#include "paint/ToolType.h"

#include <QString>

#include <vector>

namespace vellix {

/// How a tool takes up the pointer's samples, and how its stroke is painted.
enum class ToolKind {
    Freehand, ///< along all samples, segment by segment
    Shape,    ///< from the press to the pointer, anew with every sample
    Text,     ///< typed at the pointer, anew with every change
    None,     ///< not a drawing tool
};

/// A drawing tool: everything that commands, settings, recordings, menus and panels have to know of it. A new
/// tool needs a number in ToolType, a row in ToolTable.cpp, its painting in DrawUtil and its icon in
/// IconDrawing.
struct ToolRow {
    enum Trait : unsigned {
        HARDNESS = 1,        ///< its edge can be soft
        PRESSURE = 2,        ///< a pen's pressure can set the opacity
        PRESSURE_ON = 4,     ///< and does so until it is switched off
        SESSION_OPTIONS = 8, ///< the settings file keeps its size alone
    };

    ToolType type;
    const char* word;  ///< in recordings; its keys in the settings file begin with it
    const char* label; ///< in menus and panels
    const char* hint;  ///< what it does, for those who point at it
    // The flag that takes it up, and the one that sets its options.
    const char* shortToolFlag;
    const char* toolFlag;
    const char* shortOptionsFlag;
    const char* optionsFlag;
    ToolKind kind;
    int defaultSize; ///< image pixels, of text points
    int maximumSize; ///< the smallest is 1
    unsigned traits;

    bool Has(Trait trait) const { return (traits & trait) != 0; }
    const char* SizeUnit() const { return kind == ToolKind::Text ? "pt" : "px"; }
};

/// All drawing tools, in the order in which they are shown.
const std::vector<ToolRow>& AllTools();

/// The row of a tool; null when it is not a drawing tool.
const ToolRow* FindTool(ToolType type);
const ToolRow* FindTool(const QString& word);

ToolKind KindOf(ToolType type);

} // namespace vellix
