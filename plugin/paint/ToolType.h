#pragma once

#include <QtGlobal>

namespace vellix {

/// The tools. ToolTable has a row for each drawing tool. The numbers are stored in the settings file and must
/// not change, so a new tool goes last.
enum class ToolType : qint32 { Pencil, Brush, Eraser, Text, Line, Arrow, Ellipse, Rectangle, Transform };

} // namespace vellix
