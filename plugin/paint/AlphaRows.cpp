#include "paint/AlphaRows.h"

#include "paint/PixelView.h"
#include "paint/VectorClones.h"

namespace vellix {
namespace AlphaRows {

VELLIX_VECTOR_CLONES
void Raise(quint32* __restrict pixels, const quint8* __restrict coverage, int count) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i];
        const quint32 old = (pixel >> PixelView::ALPHA_SHIFT) & 0xff;
        const quint32 wanted = coverage[i];
        pixels[i] = (pixel & PixelView::COLOR_MASK) | (old > wanted ? old : wanted) << PixelView::ALPHA_SHIFT;
    }
}

VELLIX_VECTOR_CLONES
void Add(quint32* __restrict pixels, const quint8* __restrict coverage, int count, float flow, int cap) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i];
        const int old = int((pixel >> PixelView::ALPHA_SHIFT) & 0xff);
        const int room = (cap > old ? cap : old) - old;
        const int more = int(float(coverage[i]) * flow);
        pixels[i] = pixel + (quint32(more < room ? more : room) << PixelView::ALPHA_SHIFT);
    }
}

VELLIX_VECTOR_CLONES
void Erase(quint32* __restrict pixels, const quint8* __restrict coverage, int count) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i];
        pixels[i] = coverage[i] != 0 ? pixel & PixelView::COLOR_MASK : pixel;
    }
}

VELLIX_VECTOR_CLONES
void Scale(const float* __restrict weights, float opacity, quint8* __restrict coverage, int count) {
    for (int i = 0; i < count; ++i) {
        coverage[i] = quint8(int(weights[i] * opacity * 255.0f));
    }
}

} // namespace AlphaRows
} // namespace vellix
