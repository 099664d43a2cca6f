#include "exchange/PictureBatch.h"

#include "paint/ImageSize.h"
#include "paint/ParallelWork.h"

#include <algorithm>
#include <cstddef>
#include <thread>
#include <utility>

namespace vellix {

namespace {

/// Some pictures wait for each thread, since they take different times.
constexpr std::size_t PICTURES_PER_THREAD = 4;
constexpr qint64 MAX_PIXELS = qint64(MAX_PNG_SIDE) * MAX_PNG_SIDE / 2;

} // namespace

void PictureBatch::Add(qint64 pixels, std::function<void()> work) {
    works_.push_back(std::move(work));
    pixels_ += pixels;
}

bool PictureBatch::IsFull() const {
    const std::size_t threads = std::max(1U, std::thread::hardware_concurrency());
    return works_.size() >= threads * PICTURES_PER_THREAD || pixels_ >= MAX_PIXELS;
}

void PictureBatch::Run() {
    std::vector<std::function<void()>> works;
    works.swap(works_);
    pixels_ = 0;
    DoInParallel(works.size(), [&works](std::size_t i) { works[i](); });
}

} // namespace vellix
