#pragma once

#include <QtGlobal>

namespace vellix {

/// The drawing tools. The numbers are stored in the settings file and must not change.
enum class ToolType : qint32 { Pencil, Brush, Eraser, Text, Line, Arrow, Ellipse, Rectangle, Transform };

} // namespace vellix
