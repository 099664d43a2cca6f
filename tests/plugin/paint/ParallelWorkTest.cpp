#include "paint/ParallelWork.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace vellix {
namespace {

// Run a second time where no thread can be started.
TEST(ParallelWorkTest, DoesEachPartOnceAndThenTellsWhatFailed) {
    constexpr std::size_t count = 300;
    for (const bool fails : {false, true}) {
        std::vector<std::atomic<int>> calls(count);
        std::atomic<int> running{0};
        const auto work = [&](std::size_t i) {
            ++running;
            std::this_thread::sleep_for(std::chrono::microseconds(i % 7 * 20));
            ++calls[i];
            --running;
            if (fails && i % 50 == 3) {
                throw std::runtime_error("part");
            }
        };
        if (fails) {
            EXPECT_THROW(DoInParallel(count, work), std::runtime_error);
        } else {
            DoInParallel(count, work);
        }
        EXPECT_EQ(running, 0) << "ended before it returned";
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_EQ(calls[i], 1) << i;
        }
    }
    DoInParallel(0, [](std::size_t) { FAIL() << "nothing to do"; });
}

TEST(ParallelWorkTest, WorkWithinWorkStartsNoMoreThreads) {
    DoInParallel(8, [](std::size_t) {
        const std::thread::id outer = std::this_thread::get_id();
        std::atomic<int> calls{0};
        DoInParallel(20, [&](std::size_t) {
            EXPECT_EQ(std::this_thread::get_id(), outer);
            ++calls;
        });
        EXPECT_EQ(calls, 20);
    });
}

} // namespace
} // namespace vellix
