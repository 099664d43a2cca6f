#pragma once

#include "paint/ToolType.h"

#include <QtGlobal>

namespace vellix {

/// The stamp of the freehand tools: 102 x 102 coverage bytes.
class BrushGrid {
public:
    static constexpr int SIDE = 102; ///< columns and rows
    quint8 Cell(int column, int row) const { return m_cells[row][column]; }

private:
    quint8 m_cells[SIDE][SIDE] = {};
};

} // namespace vellix
