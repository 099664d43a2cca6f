#include "paint/PngFilters.h"

#include "paint/VectorClones.h"

#include <cstdlib>
#include <cstring>

namespace vellix {
namespace png_filters {

namespace {

constexpr std::size_t PIXEL = 4;

// Some compilers do not let a cloned function be called from another file, so the clones stay in this one.
VELLIX_VECTOR_CLONES
quint64 AnyBits(const uchar* bytes, std::size_t words) {
    quint64 any = 0;
    for (std::size_t i = 0; i < words; ++i) {
        quint64 word;
        std::memcpy(&word, bytes + i * sizeof word, sizeof word);
        any |= word;
    }
    return any;
}

VELLIX_VECTOR_CLONES
quint32 Changes(const quint32* pixels, std::size_t count) {
    quint32 changes = 0;
    for (std::size_t i = 1; i < count; ++i) {
        changes += pixels[i] != pixels[i - 1] ? 1 : 0;
    }
    return changes;
}

// The sum of the bytes' distances from 0, with 255 next to it.
VELLIX_VECTOR_CLONES
quint32 Size(const uchar* __restrict bytes, std::size_t count) {
    quint32 sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): has a sign here
        const int value = static_cast<signed char>(bytes[i]);
        sum += quint32(value < 0 ? -value : value);
    }
    return sum;
}

VELLIX_VECTOR_CLONES
void Subtract(const uchar* __restrict bytes, const uchar* __restrict before, std::size_t count,
              uchar* __restrict out) {
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = uchar(bytes[i] - before[i]);
    }
}

VELLIX_VECTOR_CLONES
quint32 DifferenceSize(const uchar* __restrict bytes, const uchar* __restrict before, std::size_t count) {
    quint32 sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): has a sign here
        const int value = static_cast<signed char>(bytes[i] - before[i]);
        sum += quint32(value < 0 ? -value : value);
    }
    return sum;
}

VELLIX_VECTOR_CLONES
void TakeColorsCloned(const quint32* __restrict pixels, uchar* __restrict out, int count) {
    for (int i = 0; i < count; ++i) {
        const quint32 pixel = pixels[i]; // 0xffRRGGBB
        out[3 * i] = uchar(pixel >> 16);
        out[3 * i + 1] = uchar(pixel >> 8);
        out[3 * i + 2] = uchar(pixel);
    }
}

VELLIX_VECTOR_CLONES
void UndoUp(uchar* __restrict row, const uchar* __restrict above, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        row[i] = uchar(row[i] + above[i]);
    }
}

// The sum of four bytes each, without carries from one to the next.
inline quint32 AddBytes(quint32 a, quint32 b) {
    constexpr quint32 low = 0x7f7f7f7fu;
    return ((a & low) + (b & low)) ^ ((a ^ b) & ~low);
}

inline quint32 LoadPixel(const uchar* bytes) {
    quint32 pixel;
    std::memcpy(&pixel, bytes, sizeof pixel);
    return pixel;
}

void UndoSub(uchar* row, std::size_t count) {
    quint32 left = 0;
    for (std::size_t i = 0; i < count; i += PIXEL) {
        left = AddBytes(left, LoadPixel(row + i));
        std::memcpy(row + i, &left, sizeof left);
    }
}

void UndoAverage(uchar* row, const uchar* above, std::size_t count) {
    quint32 left = 0;
    for (std::size_t i = 0; i < count; i += PIXEL) {
        const quint32 up = LoadPixel(above + i);
        // Half the sum of each byte, rounded down: what both have, and half of what one has.
        const quint32 average = (left & up) + (((left ^ up) & 0xfefefefeu) >> 1);
        left = AddBytes(average, LoadPixel(row + i));
        std::memcpy(row + i, &left, sizeof left);
    }
}

inline int Paeth(int left, int up, int leftUp) {
    const int fromLeft = std::abs(up - leftUp);
    const int fromUp = std::abs(left - leftUp);
    const int fromLeftUp = std::abs(left + up - 2 * leftUp);
    const int nearest = fromUp <= fromLeftUp ? up : leftUp;
    return fromLeft <= fromUp && fromLeft <= fromLeftUp ? left : nearest;
}

void UndoPaeth(uchar* row, const uchar* above, std::size_t count) {
    int left[PIXEL] = {};
    int leftUp[PIXEL] = {};
    for (std::size_t i = 0; i < count; i += PIXEL) {
        for (std::size_t channel = 0; channel < PIXEL; ++channel) {
            const int up = above[i + channel];
            left[channel] = uchar(row[i + channel] + Paeth(left[channel], up, leftUp[channel]));
            leftUp[channel] = up;
            row[i + channel] = uchar(left[channel]);
        }
    }
}

} // namespace

bool IsZero(const uchar* bytes, std::size_t count) {
    constexpr std::size_t chunk = 512; // a row with pixels is left early
    std::size_t done = 0;
    for (; done + chunk <= count; done += chunk) {
        if (AnyBits(bytes + done, chunk / sizeof(quint64)) != 0) {
            return false;
        }
    }
    for (; done < count; ++done) {
        if (bytes[done] != 0) {
            return false;
        }
    }
    return true;
}

std::size_t CountChanges(const quint32* pixels, std::size_t count) {
    return Changes(pixels, count);
}

void TakeColors(const quint32* pixels, uchar* out, int count) {
    TakeColorsCloned(pixels, out, count);
}

void Apply(const uchar* row, const uchar* above, std::size_t count, std::size_t pixelBytes, uchar* out) {
    const std::size_t rest = count - pixelBytes;
    const quint32 none = Size(row, count);
    const quint32 sub = Size(row, pixelBytes) + DifferenceSize(row + pixelBytes, row, rest);
    const quint32 up = DifferenceSize(row, above, count);
    out[0] = up < sub && up < none ? UP : sub < none ? SUB : NONE;
    switch (out[0]) {
    case UP:
        Subtract(row, above, count, out + 1);
        break;
    case SUB:
        std::memcpy(out + 1, row, pixelBytes);
        Subtract(row + pixelBytes, row, rest, out + 1 + pixelBytes);
        break;
    default:
        std::memcpy(out + 1, row, count);
    }
}

bool Undo(int filter, uchar* row, const uchar* above, std::size_t count) {
    switch (filter) {
    case NONE:
        return true;
    case SUB:
        UndoSub(row, count);
        return true;
    case UP:
        UndoUp(row, above, count);
        return true;
    case AVERAGE:
        UndoAverage(row, above, count);
        return true;
    case PAETH:
        UndoPaeth(row, above, count);
        return true;
    default:
        return false;
    }
}

} // namespace png_filters
} // namespace vellix
