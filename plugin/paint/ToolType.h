#pragma once

#include <QtGlobal>

namespace vellix {

/// The tools; ToolTable has a row for each that draws. The numbers are stored in the settings file and must
/// not change: a new tool comes last.
enum class ToolType : qint32 { Pencil, Brush, Eraser, Text, Line, Arrow, Ellipse, Rectangle, Transform };

} // namespace vellix
