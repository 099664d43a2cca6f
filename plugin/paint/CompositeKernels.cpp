#include "paint/CompositeKernels.h"

// The dynamic loader picks the clone; sanitizers cannot run that early.
#if defined(__x86_64__) && defined(__linux__) && defined(__GNUC__) && !defined(__SANITIZE_ADDRESS__) &&      \
    !defined(__SANITIZE_THREAD__)
#if defined(__has_feature)
#if !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer)
#define VELLIX_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#endif
#else
#define VELLIX_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#endif
#endif
#ifndef VELLIX_VECTOR_CLONES
#define VELLIX_VECTOR_CLONES
#endif

namespace vellix {
namespace CompositeKernels {
namespace {

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the alpha byte is the last of a pixel's four");

/// Every channel times a / 255, rounded to nearest, two channels at a time.
inline quint32 Scaled(quint32 pixel, quint32 a) {
    quint32 even = (pixel & 0x00ff00ffu) * a;
    even = ((even + ((even >> 8) & 0x00ff00ffu) + 0x00800080u) >> 8) & 0x00ff00ffu;
    quint32 odd = ((pixel >> 8) & 0x00ff00ffu) * a;
    odd = (odd + ((odd >> 8) & 0x00ff00ffu) + 0x00800080u) & 0xff00ff00u;
    return even | odd;
}

inline quint32 Premultiplied(quint32 pixel) {
    return Scaled(pixel | 0xff000000u, pixel >> 24);
}

/// A channel of 0..255 as it is after rounding.
inline quint32 Byte(float value) {
    return quint32(int(value + 0.5f));
}

/// An alpha to divide by; where it was 0 the result does not matter, but a branch would keep the loop scalar.
inline int AtLeastOne(quint32 a) {
    return int(a + (a == 0 ? 1 : 0));
}

inline quint32 Straight(quint32 pixel) {
    const float factor = 255.0f / float(AtLeastOne(pixel >> 24));
    const quint32 r = Byte(float(int(pixel & 0xffu)) * factor);
    const quint32 g = Byte(float(int((pixel >> 8) & 0xffu)) * factor);
    const quint32 b = Byte(float(int((pixel >> 16) & 0xffu)) * factor);
    return r | g << 8 | b << 16 | (pixel & 0xff000000u);
}

/// Porter and Duff's "over" with both pixels and the result in straight alpha:
/// (cs as + cd ad (1 - as)) / (as + ad (1 - as)).
inline quint32 OverStraight(quint32 target, quint32 source) {
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

VELLIX_VECTOR_CLONES void SourceOverStraight(PixelBlock block, int opacity) {
    const quint32 strength = quint32(opacity);
    for (int y = 0; y < block.rows; ++y) {
        quint32* __restrict target = block.target + y * block.targetStride;
        const quint32* __restrict source = block.source + y * block.sourceStride;
        if (strength == 255) {
            for (int x = 0; x < block.width; ++x) {
                const quint32 pixel = Premultiplied(source[x]);
                target[x] = pixel + Scaled(target[x], 255 - (pixel >> 24));
            }
        } else {
            for (int x = 0; x < block.width; ++x) {
                const quint32 pixel = Scaled(Premultiplied(source[x]), strength);
                target[x] = pixel + Scaled(target[x], 255 - (pixel >> 24));
            }
        }
    }
}

VELLIX_VECTOR_CLONES void SourceOverPremultiplied(PixelBlock block, int opacity) {
    const quint32 strength = quint32(opacity);
    for (int y = 0; y < block.rows; ++y) {
        quint32* __restrict target = block.target + y * block.targetStride;
        const quint32* __restrict source = block.source + y * block.sourceStride;
        for (int x = 0; x < block.width; ++x) {
            const quint32 pixel = Scaled(source[x], strength);
            target[x] = pixel + Scaled(target[x], 255 - (pixel >> 24));
        }
    }
}

VELLIX_VECTOR_CLONES void DestinationOver(PixelBlock block) {
    for (int y = 0; y < block.rows; ++y) {
        quint32* __restrict target = block.target + y * block.targetStride;
        const quint32* __restrict source = block.source + y * block.sourceStride;
        for (int x = 0; x < block.width; ++x) {
            target[x] += Scaled(source[x], 255 - (target[x] >> 24));
        }
    }
}

VELLIX_VECTOR_CLONES void SourceOverOntoStraight(PixelBlock block) {
    for (int y = 0; y < block.rows; ++y) {
        quint32* __restrict target = block.target + y * block.targetStride;
        const quint32* __restrict source = block.source + y * block.sourceStride;
        for (int x = 0; x < block.width; ++x) {
            target[x] = OverStraight(target[x], source[x]);
        }
    }
}

VELLIX_VECTOR_CLONES void Unpremultiply(PixelBlock block) {
    for (int y = 0; y < block.rows; ++y) {
        quint32* __restrict target = block.target + y * block.targetStride;
        const quint32* __restrict source = block.source + y * block.sourceStride;
        for (int x = 0; x < block.width; ++x) {
            target[x] = Straight(source[x]);
        }
    }
}

VELLIX_VECTOR_CLONES void OverrideColor(quint32* target, int count, quint32 color) {
    const quint32 rgb = color & 0x00ffffffu;
    for (int i = 0; i < count; ++i) {
        const quint32 a = target[i] & 0xff000000u;
        target[i] = a == 0 ? target[i] : (a | rgb);
    }
}

VELLIX_VECTOR_CLONES void OverrideColorPremultiplied(quint32* target, int count, quint32 color) {
    const quint32 opaque = color | 0xff000000u;
    for (int i = 0; i < count; ++i) {
        target[i] = Scaled(opaque, target[i] >> 24);
    }
}

VELLIX_VECTOR_CLONES void Gather(const quint32* source, int count, quint32* anyBits, quint32* allBits) {
    const quint32* __restrict pixels = source;
    quint32* __restrict any = anyBits;
    quint32* __restrict all = allBits;
    for (int i = 0; i < count; ++i) {
        any[i] |= pixels[i];
        all[i] &= pixels[i];
    }
}

} // namespace CompositeKernels
} // namespace vellix
