#pragma once

#include "paint/PixelView.h"
#include "paint/ToolType.h"

#include <QtGlobal>

namespace vellix {

/// The stamp of the freehand tools: a disc of 102 x 102 coverage bytes, and the ways of stamping it into an
/// image.
///
/// Where the disc stands: the centre cell c is the radius truncated, one more for the pencil. With a stamp
/// rectangle that starts at x0, cell i falls on column x0 - 1 + i. As the tools choose their rectangles this
/// puts the disc's centre
///  - pencil: on the sample for even sizes, one pixel left and above for odd ones;
///  - eraser: one pixel left and above for even sizes, two for odd ones;
///  - brush above size 19: as the eraser; up to 19, where it is one pixel wider: as the pencil.
/// (A pencil or eraser of size 2 is the square of the sample and the pixels left of and above it.)
class BrushGrid {
public:
    static constexpr int SIDE = 102;           ///< columns and rows
    static constexpr float MAX_RADIUS = 51.5f; ///< larger discs are built as this one, which fills the grid

    /// Fills the grid with a disc of `radius` pixels. The pencil's has an anti-aliased rim one cell outside
    /// the radius, the brush's falls off from `hardness` (pixels from the centre) to 0 at the radius, that of
    /// the other tools is flat with a hard rim. A radius of exactly 1 gives a square of 2 x 2 cells. Does
    /// nothing if that is the grid already.
    void UpdateGridWu(float hardness, float radius, float opacity, ToolType tool);

    /// The grid of a soft brush: sizes up to 19 are drawn one pixel wider and at 40 % of the opacity, to keep
    /// thin strokes from looking heavy.
    void UpdateBrushGrid(int size, float radius, float opacity, ToolType tool);

    /// Coverage 0..255.
    quint8 Cell(int column, int row) const { return m_cells[row][column]; }

    /// \name Stamping
    /// The grid covers the columns x0 - 1 .. x1 - 1 and the rows y0 - 1 .. y1 - 1; what lies outside the
    /// image is dropped.
    /// @{

    /// Raises every alpha to the coverage.
    void Raise(const PixelView& view, int x0, int y0, int x1, int y1) const;

    /// Adds coverage * flow to every alpha, up to cap (0..1); never lowers an alpha.
    void Add(const PixelView& view, int x0, int y0, int x1, int y1, float cap, float flow) const;

    /// Add around (x, y): from x - radius to x + radius + 1 and the same in y, truncated toward zero.
    void AddAround(const PixelView& view, int x, int y, float radius, float flow, float cap) const;

    /// Clears every alpha under the grid.
    void Erase(const PixelView& view, int x0, int y0, int x1, int y1) const;

    /// @}

private:
    // The disc at full opacity; only this depends on the shape, so that a change of opacity alone is one
    // multiplication a cell.
    void BuildShape(float hardness, float radius, ToolType tool);
    void BuildOctants(float hardness, float radius, ToolType tool);
    void OutlineGridWu(int x, int y, float radius, float weight, ToolType tool);
    void FillGridWu(int xmax, int y, float hardness, float radius, ToolType tool);
    void SetMirrored(float centre, int x, int y, float weight);
    void FindSpans();

    template <typename RowFunction>
    void ForEachRow(const PixelView& view, int x0, int y0, int x1, int y1, RowFunction function) const;

    struct Span {
        int first = 0;
        int end = 0;
    };

    // Rows are painted in whole vectors, which may run past the last column: the cells there stay empty.
    static constexpr int STRIDE = 128;

    quint8 m_cells[SIDE][STRIDE] = {};
    float m_weights[SIDE][STRIDE] = {};
    Span m_spans[SIDE]; // the columns of each row that are not empty

    // What the grid holds; nothing at first.
    float m_hardness = 0.0f;
    float m_radius = -1.0f;
    float m_opacity = -1.0f;
    ToolType m_tool = ToolType::Pencil;
};

} // namespace vellix
