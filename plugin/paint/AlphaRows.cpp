#include "paint/AlphaRows.h"

#include "paint/PixelView.h"
#include "paint/VectorClones.h"

namespace vellix {
namespace alpha_rows {

namespace {

// Some compilers do not let a cloned function be called from another file, so the clones stay in this one.
VELLIX_VECTOR_CLONES
void RaiseCloned(quint32* __restrict pixels, const quint8* __restrict coverage, int count) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i];
        const quint32 old = (pixel >> PixelView::ALPHA_SHIFT) & 0xff;
        const quint32 wanted = coverage[i];
        pixels[i] = (pixel & PixelView::COLOR_MASK) | (old > wanted ? old : wanted) << PixelView::ALPHA_SHIFT;
    }
}

VELLIX_VECTOR_CLONES
void AddCloned(quint32* __restrict pixels, const quint8* __restrict coverage, int count, float flow,
               int cap) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i];
        const int old = int((pixel >> PixelView::ALPHA_SHIFT) & 0xff);
        const int room = (cap > old ? cap : old) - old;
        const int more = int(float(coverage[i]) * flow);
        pixels[i] = pixel + (quint32(more < room ? more : room) << PixelView::ALPHA_SHIFT);
    }
}

VELLIX_VECTOR_CLONES
void EraseCloned(quint32* __restrict pixels, const quint8* __restrict coverage, int count) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i];
        pixels[i] = coverage[i] != 0 ? pixel & PixelView::COLOR_MASK : pixel;
    }
}

VELLIX_VECTOR_CLONES
void ScaleCloned(const float* __restrict weights, float opacity, quint8* __restrict coverage, int count) {
    for (int i = 0; i < count; ++i) {
        coverage[i] = quint8(int(weights[i] * opacity * 255.0f));
    }
}

} // namespace

void Raise(quint32* __restrict pixels, const quint8* __restrict coverage, int count) {
    RaiseCloned(pixels, coverage, count);
}

void Add(quint32* __restrict pixels, const quint8* __restrict coverage, int count, float flow, int cap) {
    AddCloned(pixels, coverage, count, flow, cap);
}

void Erase(quint32* __restrict pixels, const quint8* __restrict coverage, int count) {
    EraseCloned(pixels, coverage, count);
}

void Scale(const float* __restrict weights, float opacity, quint8* __restrict coverage, int count) {
    ScaleCloned(weights, opacity, coverage, count);
}

} // namespace alpha_rows
} // namespace vellix
