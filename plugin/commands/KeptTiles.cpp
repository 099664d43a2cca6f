#include "commands/KeptTiles.h"

#include "paint/TilePatch.h"

#include <new>
#include <utility>

namespace vellix {

namespace {

/// Memory, in bytes, from which on tiles are squeezed. Some fifteen strokes over whole drawings.
constexpr qint64 MAX_PLAIN_BYTES = 64 << 20;

qint64 g_plainBytes = 0;

} // namespace

KeptTiles::Places& KeptTiles::Plain() {
    static Places plain;
    return plain;
}

KeptTiles::KeptTiles()
    : outside_({this})
    , place_(outside_.begin()) {}

KeptTiles::~KeptTiles() {
    Take();
}

void KeptTiles::Keep(const QByteArray& bytes) noexcept {
    Take();
    bytes_ = bytes;
    isPlain_ = true;
    g_plainBytes += bytes_.size();
    Plain().splice(Plain().end(), outside_, place_);
    while (g_plainBytes > MAX_PLAIN_BYTES && Plain().size() > 1) {
        Squeeze();
    }
}

QByteArray KeptTiles::Take() noexcept {
    if (isPlain_) {
        isPlain_ = false;
        g_plainBytes -= bytes_.size();
        outside_.splice(outside_.end(), Plain(), place_);
    }
    return std::exchange(bytes_, QByteArray());
}

/// Squeezes the first one of the list, which leaves it even if nothing is gained.
void KeptTiles::Squeeze() noexcept {
    KeptTiles& first = *Plain().front();
    const QByteArray bytes = first.Take();
    first.bytes_ = bytes;
    try {
        first.bytes_ = TilePatch::Squeezed(bytes);
    } catch (const std::bad_alloc&) {
        // It stays as it is.
    }
}

} // namespace vellix
