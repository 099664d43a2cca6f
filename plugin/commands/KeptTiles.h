#pragma once

#include "paint/NonCopyable.h"

#include <QByteArray>

#include <list>

namespace vellix {

/// Bytes in the undo queue that take a stroke back (TilePatch). When all of them together take up much
/// memory, those that were kept first are squeezed.
class KeptTiles : private NonCopyable {
public:
    KeptTiles();
    ~KeptTiles();

    void Keep(const QByteArray& bytes) noexcept;
    /// Returns the bytes and keeps none.
    QByteArray Take() noexcept;

private:
    using Places = std::list<KeptTiles*>;

    static Places& Plain();
    static void Squeeze() noexcept;

    QByteArray bytes_;
    bool isPlain_ =
        false;       ///< in the list of those that may be squeezed, in the order in which they were kept
    Places outside_; ///< its item of that list while it is not there
    Places::iterator place_;
};

} // namespace vellix
