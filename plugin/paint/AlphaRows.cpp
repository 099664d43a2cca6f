#include "paint/AlphaRows.h"

#include "paint/PixelView.h"
#include "paint/VectorClones.h"

namespace vellix {
namespace alpha_rows {

namespace {

inline int AlphaOf(quint32 pixel) {
    return int((pixel >> PixelView::ALPHA_SHIFT) & 0xff);
}

inline quint32 WithMore(quint32 pixel, int more, int cap) {
    const int old = AlphaOf(pixel);
    const int room = (cap > old ? cap : old) - old;
    return pixel + (quint32(more < room ? more : room) << PixelView::ALPHA_SHIFT);
}

/// The pixels of a run.
inline quint32* PixelsOf(const Stamp& stamp, int y) {
    return stamp.pixels + y * stamp.pixelStride + stamp.runs[y].first;
}

/// What the run has of the coverage or of the one beside.
inline const float* ValuesOf(const Stamp& stamp, const float* coverage, int y) {
    return coverage + y * stamp.coverageStride + stamp.runs[y].first;
}

// Some compilers do not let a cloned function be called from another file, so the clones stay in this one.
VELLIX_VECTOR_CLONES
void RaiseCloned(const Stamp& stamp) {
    for (int y = 0; y < stamp.rowCount; ++y) {
        quint32* __restrict pixels = PixelsOf(stamp, y);
        const float* __restrict coverage = ValuesOf(stamp, stamp.coverage, y);
        const int count = stamp.runs[y].count;
        for (int i = 0; i < count; ++i) {
            const quint32 pixel = pixels[i];
            const int old = AlphaOf(pixel);
            const int wanted = int(coverage[i]);
            pixels[i] = (pixel & PixelView::COLOR_MASK) | quint32(old > wanted ? old : wanted)
                                                              << PixelView::ALPHA_SHIFT;
        }
    }
}

VELLIX_VECTOR_CLONES
void AddCloned(const Stamp& stamp, float flow, int cap) {
    for (int y = 0; y < stamp.rowCount; ++y) {
        quint32* __restrict pixels = PixelsOf(stamp, y);
        const float* __restrict coverage = ValuesOf(stamp, stamp.coverage, y);
        const int count = stamp.runs[y].count;
        for (int i = 0; i < count; ++i) {
            pixels[i] = WithMore(pixels[i], int(coverage[i] * flow), cap);
        }
    }
}

// What both stamps add is bounded by the same cap, so that their sum may be bounded once.
VELLIX_VECTOR_CLONES
void AddTwoCloned(const Stamp& stamp, float flow, float flowBeside, int cap) {
    for (int y = 0; y < stamp.rowCount; ++y) {
        quint32* __restrict pixels = PixelsOf(stamp, y);
        const float* __restrict coverage = ValuesOf(stamp, stamp.coverage, y);
        const float* __restrict beside = ValuesOf(stamp, stamp.beside, y);
        const int count = stamp.runs[y].count;
        for (int i = 0; i < count; ++i) {
            const int more = int(coverage[i] * flow) + int(beside[i] * flowBeside);
            pixels[i] = WithMore(pixels[i], more, cap);
        }
    }
}

VELLIX_VECTOR_CLONES
void EraseCloned(const Stamp& stamp) {
    for (int y = 0; y < stamp.rowCount; ++y) {
        quint32* __restrict pixels = PixelsOf(stamp, y);
        const float* __restrict coverage = ValuesOf(stamp, stamp.coverage, y);
        const int count = stamp.runs[y].count;
        for (int i = 0; i < count; ++i) {
            const quint32 pixel = pixels[i];
            pixels[i] = coverage[i] != 0.0f ? pixel & PixelView::COLOR_MASK : pixel;
        }
    }
}

VELLIX_VECTOR_CLONES
void ScaleCloned(const float* weights, float opacity, float* coverage, std::ptrdiff_t stride, int columns,
                 int rowCount) {
    for (int y = 0; y < rowCount; ++y) {
        const float* __restrict from = weights + y * stride;
        float* __restrict to = coverage + y * stride;
        for (int i = 0; i < columns; ++i) {
            to[i] = float(int(from[i] * opacity * 255.0f));
        }
    }
}

VELLIX_VECTOR_CLONES
void ScaleMirroredCloned(const float* weights, float opacity, float* coverage, float* mirrored,
                         std::ptrdiff_t stride, int columns, int rowCount) {
    for (int y = 0; y < rowCount; ++y) {
        const float* __restrict from = weights + y * stride;
        float* __restrict to = coverage + y * stride;
        float* __restrict below = mirrored - y * stride;
        for (int i = 0; i < columns; ++i) {
            const float scaled = float(int(from[i] * opacity * 255.0f));
            to[i] = scaled;
            below[i] = scaled;
        }
    }
}

} // namespace

void Raise(const Stamp& stamp) {
    RaiseCloned(stamp);
}

void Add(const Stamp& stamp, float flow, int cap) {
    AddCloned(stamp, flow, cap);
}

void AddTwo(const Stamp& stamp, float flow, float flowBeside, int cap) {
    AddTwoCloned(stamp, flow, flowBeside, cap);
}

void Erase(const Stamp& stamp) {
    EraseCloned(stamp);
}

void Scale(const float* weights, float opacity, float* coverage, std::ptrdiff_t stride, int columns,
           int rowCount) {
    ScaleCloned(weights, opacity, coverage, stride, columns, rowCount);
}

void ScaleMirrored(const float* weights, float opacity, float* coverage, float* mirrored,
                   std::ptrdiff_t stride, int columns, int rowCount) {
    ScaleMirroredCloned(weights, opacity, coverage, mirrored, stride, columns, rowCount);
}

} // namespace alpha_rows
} // namespace vellix
