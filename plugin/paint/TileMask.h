#pragma once

#include "paint/ImageSize.h"

#include <QRect>
#include <QtAlgorithms>

#include <algorithm>
#include <array>

namespace vellix {

/// A set of tiles of a layer image: squares of 16 x 16 pixels, 64 x 64 of them, one bit each.
class TileMask {
public:
    static constexpr int TILE_WIDTH = 16; ///< pixels
    static constexpr int COUNT = IMAGE_WIDTH / TILE_WIDTH;
    static_assert(COUNT == 64, "a row of tiles is one 64-bit word");

    /// Returns the tiles that the rectangle (image pixels) touches.
    static TileMask Touching(const QRect& rectangle) {
        TileMask mask;
        const QRect inside = rectangle & QRect(0, 0, IMAGE_WIDTH, IMAGE_WIDTH);
        if (!inside.isEmpty()) {
            const quint64 bits = RunBits(inside.left() / TILE_WIDTH, inside.right() / TILE_WIDTH + 1);
            for (int row = inside.top() / TILE_WIDTH; row <= inside.bottom() / TILE_WIDTH; ++row) {
                mask.rows_[row] = bits;
            }
        }
        return mask;
    }

    static TileMask All() { return Touching(QRect(0, 0, IMAGE_WIDTH, IMAGE_WIDTH)); }

    quint64 Row(int row) const { return rows_[row]; }
    void SetRow(int row, quint64 bits) { rows_[row] = bits; }

    bool Contains(int row, int column) const { return (rows_[row] >> column & 1) != 0; }
    void Add(int row, int column) { rows_[row] |= quint64(1) << column; }

    /// The number of tiles.
    int Size() const {
        int size = 0;
        for (const quint64 row : rows_) {
            size += int(qPopulationCount(row));
        }
        return size;
    }

    bool IsEmpty() const {
        return std::all_of(rows_.begin(), rows_.end(), [](quint64 row) { return row == 0; });
    }

    TileMask& operator|=(const TileMask& other) {
        for (int row = 0; row < COUNT; ++row) {
            rows_[row] |= other.rows_[row];
        }
        return *this;
    }

    TileMask& Remove(const TileMask& other) {
        for (int row = 0; row < COUNT; ++row) {
            rows_[row] &= ~other.rows_[row];
        }
        return *this;
    }

    friend TileMask operator|(TileMask a, const TileMask& b) { return a |= b; }
    friend bool operator==(const TileMask& a, const TileMask& b) { return a.rows_ == b.rows_; }

    /// Calls `visit(begin, end)` for every run of adjacent tiles in a row's bits; `end` is exclusive.
    template <typename Visit>
    static void ForEachRun(quint64 bits, Visit visit) {
        while (bits != 0) {
            const int begin = int(qCountTrailingZeroBits(bits));
            const quint64 open = ~(bits >> begin);
            const int end = open == 0 ? COUNT : std::min(+COUNT, begin + int(qCountTrailingZeroBits(open)));
            visit(begin, end);
            bits &= ~RunBits(begin, end);
        }
    }

    /// Calls `visit(row, column)` for every tile, row by row.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (int row = 0; row < COUNT; ++row) {
            for (quint64 bits = rows_[row]; bits != 0; bits &= bits - 1) {
                visit(row, int(qCountTrailingZeroBits(bits)));
            }
        }
    }

private:
    static quint64 RunBits(int begin, int end) {
        const quint64 upTo = end == COUNT ? ~quint64(0) : (quint64(1) << end) - 1;
        return upTo & ~((quint64(1) << begin) - 1);
    }

    std::array<quint64, COUNT> rows_{};
};

} // namespace vellix
