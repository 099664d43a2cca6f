#pragma once

#include "paint/AlphaRows.h"
#include "paint/PixelView.h"
#include "paint/ToolType.h"

#include <QtGlobal>

namespace vellix {

/// The stamp of the freehand tools: a disc in a grid of 102 x 102 coverage bytes, and the operations that
/// stamp it into an image.
///
/// The disc's centre is cell c: the radius truncated, plus one for the pencil. With a stamp rectangle that
/// starts at x0, cell i covers column x0 - 1 + i. The tools choose their rectangles so that the disc's centre
/// lies
///  - pencil: on the sample for even sizes, one pixel left and above for odd ones;
///  - eraser: one pixel left and above for even sizes, two for odd ones;
///  - brush above size 19: as the eraser; up to 19, where the disc is one pixel wider: as the pencil.
/// (A pencil or eraser of size 2 covers the sample's pixel and the pixels left of and above it.)
class BrushGrid {
public:
    static constexpr int SIDE = 102;               ///< columns and rows
    static constexpr int LARGEST_SMALL_BRUSH = 19; ///< larger ones are drawn as wide as they are
    static constexpr float MAX_RADIUS = 51.5f;     ///< fills the grid; larger radii are clamped to this

    /// Fills the grid with a disc of `radius` pixels. The pencil's disc has an anti-aliased rim one cell
    /// outside the radius. The brush's falls off from `hardness` (pixels from the centre) to 0 at the radius.
    /// Other tools get a flat disc with a hard rim. A radius of exactly 1 gives a square of 2 x 2 cells. Does
    /// nothing if the grid already holds this disc.
    void UpdateGridWu(float hardness, float radius, float opacity, ToolType tool);

    /// Fills the grid for a soft brush. Sizes up to 19 are drawn one pixel wider and at 40 % of the opacity,
    /// so that thin strokes do not look heavy.
    void UpdateBrushGrid(int size, float radius, float opacity, ToolType tool);

    /// The coverage of a cell, 0..255.
    quint8 Cell(int column, int row) const { return quint8(Cells(row)[column]); }

    /// \name Stamping
    /// The grid covers the columns x0 - 1 .. x1 - 1 and the rows y0 - 1 .. y1 - 1; the part outside
    /// the image is dropped.
    /// @{

    /// Raises every alpha to the coverage.
    void Raise(const PixelView& view, int x0, int y0, int x1, int y1) const;

    /// Adds coverage * flow to every alpha, up to cap (0..1); never lowers an alpha.
    void Add(const PixelView& view, int x0, int y0, int x1, int y1, float cap, float flow) const;

    /// Add() on the square around (x, y): from x - radius to x + radius + 1 and the same in y, truncated
    /// toward zero.
    void AddAround(const PixelView& view, int x, int y, float radius, float flow, float cap) const;

    /// AddAround() on (x, y) with `flow` and then on the pixel beside it, below or (`isRight`) to the right,
    /// with `flowBeside`. Takes little longer than one of them.
    void AddAroundTwo(const PixelView& view, int x, int y, bool isRight, float radius, float flow,
                      float flowBeside, float cap) const;

    /// Clears every alpha under the grid.
    void Erase(const PixelView& view, int x0, int y0, int x1, int y1) const;

    /// @}

private:
    // Builds the disc at full opacity. Only this step depends on the shape, so a change of opacity alone
    // costs one multiplication per cell.
    void BuildShape(float hardness, float radius, ToolType tool);
    void BuildOctants(float hardness, float radius, ToolType tool);
    void OutlineGridWu(int x, int y, float radius, float weight, ToolType tool);
    void FillGridWu(int xmax, int y, float hardness, float radius, ToolType tool);
    void SetMirrored(float centre, int x, int y, float weight);
    void FindSpans();
    void FindRuns();
    void ScaleRows();

    struct Span {
        int first = 0;
        int end = 0;
    };

    // The rectangle of a stamp, as the grid's cells and where the first of them lies in the image.
    struct Place {
        int left;
        int top;
        int columns;
        int rows;
    };
    static Place PlaceOf(int x0, int y0, int x1, int y1);
    static Place PlaceAround(int x, int y, float radius);
    alpha_rows::Stamp StampOn(const PixelView& view, const Place& place, int firstRow,
                              const alpha_rows::Run* runs, int rowCount) const;
    // The rows of a stamp that is cut.
    struct CutRows {
        alpha_rows::Run rows[SIDE];
    };
    alpha_rows::Stamp FindRows(const PixelView& view, const Place& place, CutRows& cut) const;
    bool FindRowsOfTwo(const PixelView& view, const Place& place, bool isRight,
                       alpha_rows::Stamp& stamp) const;
    bool IsWhole(const PixelView& view, const Place& place) const;
    void Add(const PixelView& view, const Place& place, float flow, float cap) const;

    // Rows are painted in whole vectors, which may run past the last column. The cells around the disc stay
    // empty: a row above and one below, and columns on both sides.
    static constexpr int STRIDE = 128;
    static constexpr int MARGIN = 8;

    float* Cells(int row) { return cells_[row + 1] + MARGIN; }
    const float* Cells(int row) const { return cells_[row + 1] + MARGIN; }

    float cells_[SIDE + 2][STRIDE] = {}; // whole numbers, 0..255
    float weights_[SIDE][STRIDE] = {};
    Span spans_[SIDE]; // the filled columns of each row
    Span filledRows_;
    Span filledColumns_;
    bool isMirrored_ = false; // whether the lower filled rows are those above the middle, upside down
    // What a whole stamp changes in the filled rows: alone, with one below it, and with one to its right.
    alpha_rows::Run runs_[SIDE];
    alpha_rows::Run runsWithBelow_[SIDE + 1];
    alpha_rows::Run runsWithRight_[SIDE];

    // The arguments of the disc that the grid holds. The negative values stand for "none yet".
    float hardness_ = 0.0f;
    float radius_ = -1.0f;
    float opacity_ = -1.0f;
    ToolType tool_ = ToolType::Pencil;
};

} // namespace vellix
