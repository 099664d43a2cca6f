#include "paint/CompositeKernels.h"

#include "paint/VectorClones.h"

#include <cstring>

namespace vellix {
namespace composite_kernels {
namespace {

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the alpha byte is the highest of a pixel's word");

constexpr int WIDTH = TileMask::TILE_WIDTH;
constexpr quint16 FULL = 255 * 255;

/// The upper 16 bits of the product, a * b / 65536.
inline quint16 High(quint16 a, quint16 b) {
    return quint16((quint32(a) * quint32(b)) >> 16);
}

/// The factor, for High(), that scales sums lying under a coverage of 0..FULL. The shift approximates the
/// scaling from FULL to 65536.
inline quint16 Remaining(quint16 coverage) {
    const quint16 rest = quint16(FULL - coverage);
    return quint16(rest + (rest >> 7));
}

/// Rounds a channel to 0..255. std::lround would keep the loops from being vectorised.
inline quint32 Byte(float value) {
    return quint32(int(value + 0.5f)); // NOLINT(bugprone-incorrect-roundings): never below 0
}

/// Makes a value safe to divide by. The result does not matter where the value was 0, but a branch would keep
/// the loop from being vectorised.
inline int AtLeastOne(quint32 value) {
    return int(value + (value == 0 ? 1 : 0));
}

/// Porter and Duff's "over" ("Compositing Digital Images", 1984), with both pixels and the result in straight
/// alpha: (cs as + cd ad (1 - as)) / (as + ad (1 - as)).
inline quint32 Over(quint32 target, quint32 source) {
    const float as = float(AtLeastOne(source >> 24));
    const float below = float(int(target >> 24)) * (255.0f - as) * (1.0f / 255.0f);
    const float a = as + below;
    const float ws = as / a;
    const float wd = below / a;
    const quint32 r = Byte(float(int(source & 0xffu)) * ws + float(int(target & 0xffu)) * wd);
    const quint32 g = Byte(float(int((source >> 8) & 0xffu)) * ws + float(int((target >> 8) & 0xffu)) * wd);
    const quint32 b = Byte(float(int((source >> 16) & 0xffu)) * ws + float(int((target >> 16) & 0xffu)) * wd);
    const quint32 mixed = r | g << 8 | b << 16 | Byte(a) << 24;
    const quint32 keep = source >> 24 == 0 ? ~quint32(0) : 0;
    return (target & keep) | (mixed & ~keep);
}

} // namespace

VELLIX_VECTOR_CLONES void SplitTile(quint8* bytes, const quint32* pixels, std::ptrdiff_t stride) {
    quint32 tile[TILE_PIXELS];
    for (int y = 0; y < WIDTH; ++y) {
        std::memcpy(tile + y * WIDTH, pixels + y * stride, WIDTH * sizeof(quint32));
    }
    quint8* __restrict planes = bytes;
    for (int i = 0; i < TILE_PIXELS; ++i) {
        planes[i] = quint8(tile[i]);
        planes[i + TILE_PIXELS] = quint8(tile[i] >> 8);
        planes[i + 2 * TILE_PIXELS] = quint8(tile[i] >> 16);
        planes[i + 3 * TILE_PIXELS] = quint8(tile[i] >> 24);
    }
}

VELLIX_VECTOR_CLONES void SplitAlphas(quint8* alphas, const quint32* pixels, std::ptrdiff_t stride) {
    for (int y = 0; y < WIDTH; ++y) {
        const quint32* __restrict source = pixels + y * stride;
        quint8* __restrict target = alphas + y * WIDTH;
        for (int x = 0; x < WIDTH; ++x) {
            target[x] = quint8(source[x] >> 24);
        }
    }
}

VELLIX_VECTOR_CLONES bool IsFlat(const quint32* pixels, std::ptrdiff_t stride, quint32 color) {
    quint32 differences = 0;
    for (int y = 0; y < WIDTH; ++y) {
        const quint32* __restrict row = pixels + y * stride;
        for (int x = 0; x < WIDTH; ++x) {
            const quint32 visible = row[x] >> 24 == 0 ? 0 : 0x00ffffffu;
            differences |= (row[x] ^ color) & visible;
        }
    }
    return differences == 0;
}

VELLIX_VECTOR_CLONES void PaintTile(quint16* sums, const quint8* bytes) {
    quint16* __restrict target = sums;
    const quint8* __restrict source = bytes;
    for (int i = 0; i < TILE_PIXELS; ++i) {
        const quint16 alpha = source[i + 3 * TILE_PIXELS];
        const quint16 coverage = quint16(alpha * 255);
        const quint16 remaining = Remaining(coverage);
        target[i] = quint16(source[i] * alpha + High(target[i], remaining));
        target[i + TILE_PIXELS] =
            quint16(source[i + TILE_PIXELS] * alpha + High(target[i + TILE_PIXELS], remaining));
        target[i + 2 * TILE_PIXELS] =
            quint16(source[i + 2 * TILE_PIXELS] * alpha + High(target[i + 2 * TILE_PIXELS], remaining));
        target[i + 3 * TILE_PIXELS] = quint16(coverage + High(target[i + 3 * TILE_PIXELS], remaining));
    }
}

VELLIX_VECTOR_CLONES void PaintFadedTile(quint16* sums, const quint8* bytes, int opacity) {
    quint16* __restrict target = sums;
    const quint8* __restrict source = bytes;
    const quint16 strength = quint16(opacity);
    for (int i = 0; i < TILE_PIXELS; ++i) {
        const quint16 coverage = quint16(source[i + 3 * TILE_PIXELS] * strength);
        const quint16 remaining = Remaining(coverage);
        // High(257 v, coverage) is v coverage / 255.
        target[i] = quint16(High(quint16(source[i] * 257), coverage) + High(target[i], remaining));
        target[i + TILE_PIXELS] = quint16(High(quint16(source[i + TILE_PIXELS] * 257), coverage) +
                                          High(target[i + TILE_PIXELS], remaining));
        target[i + 2 * TILE_PIXELS] = quint16(High(quint16(source[i + 2 * TILE_PIXELS] * 257), coverage) +
                                              High(target[i + 2 * TILE_PIXELS], remaining));
        target[i + 3 * TILE_PIXELS] = quint16(coverage + High(target[i + 3 * TILE_PIXELS], remaining));
    }
}

VELLIX_VECTOR_CLONES void PaintFlatTile(quint16* sums, const quint8* alphas, quint32 color) {
    quint16* __restrict target = sums;
    const quint8* __restrict source = alphas;
    const quint16 red = color & 0xffu;
    const quint16 green = (color >> 8) & 0xffu;
    const quint16 blue = (color >> 16) & 0xffu;
    for (int i = 0; i < TILE_PIXELS; ++i) {
        const quint16 alpha = source[i];
        const quint16 coverage = quint16(alpha * 255);
        const quint16 remaining = Remaining(coverage);
        target[i] = quint16(red * alpha + High(target[i], remaining));
        target[i + TILE_PIXELS] = quint16(green * alpha + High(target[i + TILE_PIXELS], remaining));
        target[i + 2 * TILE_PIXELS] = quint16(blue * alpha + High(target[i + 2 * TILE_PIXELS], remaining));
        target[i + 3 * TILE_PIXELS] = quint16(coverage + High(target[i + 3 * TILE_PIXELS], remaining));
    }
}

VELLIX_VECTOR_CLONES void PaintFadedFlatTile(quint16* sums, const quint8* alphas, quint32 color,
                                             int opacity) {
    quint16* __restrict target = sums;
    const quint8* __restrict source = alphas;
    const quint16 strength = quint16(opacity);
    const quint16 red = quint16((color & 0xffu) * 257);
    const quint16 green = quint16(((color >> 8) & 0xffu) * 257);
    const quint16 blue = quint16(((color >> 16) & 0xffu) * 257);
    for (int i = 0; i < TILE_PIXELS; ++i) {
        const quint16 coverage = quint16(source[i] * strength);
        const quint16 remaining = Remaining(coverage);
        target[i] = quint16(High(red, coverage) + High(target[i], remaining));
        target[i + TILE_PIXELS] = quint16(High(green, coverage) + High(target[i + TILE_PIXELS], remaining));
        target[i + 2 * TILE_PIXELS] =
            quint16(High(blue, coverage) + High(target[i + 2 * TILE_PIXELS], remaining));
        target[i + 3 * TILE_PIXELS] = quint16(coverage + High(target[i + 3 * TILE_PIXELS], remaining));
    }
}

VELLIX_VECTOR_CLONES void PaintSums(quint16* sums, const quint16* source) {
    quint16* __restrict target = sums;
    const quint16* __restrict over = source;
    for (int i = 0; i < TILE_PIXELS; ++i) {
        const quint16 remaining = Remaining(over[i + 3 * TILE_PIXELS]);
        target[i] = quint16(over[i] + High(target[i], remaining));
        target[i + TILE_PIXELS] = quint16(over[i + TILE_PIXELS] + High(target[i + TILE_PIXELS], remaining));
        target[i + 2 * TILE_PIXELS] =
            quint16(over[i + 2 * TILE_PIXELS] + High(target[i + 2 * TILE_PIXELS], remaining));
        target[i + 3 * TILE_PIXELS] =
            quint16(over[i + 3 * TILE_PIXELS] + High(target[i + 3 * TILE_PIXELS], remaining));
    }
}

VELLIX_VECTOR_CLONES void WriteTile(quint32* pixels, std::ptrdiff_t stride, const quint16* sums) {
    for (int y = 0; y < WIDTH; ++y) {
        quint32* __restrict row = pixels + y * stride;
        const quint16* __restrict source = sums + y * WIDTH;
        for (int x = 0; x < WIDTH; ++x) {
            const quint32 coverage = source[x + 3 * TILE_PIXELS];
            const float factor = 255.0f / float(AtLeastOne(coverage));
            const quint32 r = Byte(float(int(source[x])) * factor);
            const quint32 g = Byte(float(int(source[x + TILE_PIXELS])) * factor);
            const quint32 b = Byte(float(int(source[x + 2 * TILE_PIXELS])) * factor);
            const quint32 a = Byte(float(int(coverage)) * (1.0f / 255.0f));
            const quint32 visible = a == 0 ? 0 : ~quint32(0);
            row[x] = (r | g << 8 | b << 16 | a << 24) & visible;
        }
    }
}

VELLIX_VECTOR_CLONES void SourceOver(quint32* target, const quint32* source, int count) {
    quint32* __restrict below = target;
    const quint32* __restrict above = source;
    for (int i = 0; i < count; ++i) {
        below[i] = Over(below[i], above[i]);
    }
}

VELLIX_VECTOR_CLONES void OverrideColor(quint32* pixels, int count, quint32 color) {
    const quint32 rgb = color & 0x00ffffffu;
    for (int i = 0; i < count; ++i) {
        const quint32 a = pixels[i] & 0xff000000u;
        pixels[i] = a == 0 ? pixels[i] : (a | rgb);
    }
}

VELLIX_VECTOR_CLONES void CopyVisible(quint32* tile, const quint32* pixels, std::ptrdiff_t stride,
                                      quint32 keep, quint32 set) {
    for (int y = 0; y < TileMask::TILE_WIDTH; ++y) {
        const quint32* __restrict source = pixels + y * stride;
        quint32* __restrict target = tile + y * TileMask::TILE_WIDTH;
        for (int x = 0; x < TileMask::TILE_WIDTH; ++x) {
            const quint32 made = (source[x] & keep) | set;
            target[x] = (source[x] >> 24) == 0 ? 0 : made;
        }
    }
}

VELLIX_VECTOR_CLONES void Gather(const quint32* pixels, int count, quint32* anyBits, quint32* allBits) {
    const quint32* __restrict source = pixels;
    quint32* __restrict any = anyBits;
    quint32* __restrict all = allBits;
    for (int i = 0; i < count; ++i) {
        any[i] |= source[i];
        all[i] &= source[i];
    }
}

} // namespace composite_kernels
} // namespace vellix
