#pragma once

#include "paint/NonCopyable.h"

#include <QtGlobal>

#include <functional>
#include <vector>

namespace vellix {

/// Decodes and packs pictures several at a time. Takes no more together than keep all threads busy, and of
/// large pictures fewer, so that it never needs much more memory than one of the largest size.
class PictureBatch : private NonCopyable {
public:
    /// Adds the work for a picture of so many pixels. It runs on any thread, beside the other pictures.
    void Add(qint64 pixels, std::function<void()> work);
    /// Whether it is time for Run().
    bool IsFull() const;
    /// Does all the work. Rethrows the first exception, when all has ended.
    void Run();

private:
    std::vector<std::function<void()>> works_;
    qint64 pixels_ = 0;
};

} // namespace vellix
