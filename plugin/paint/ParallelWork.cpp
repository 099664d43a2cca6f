#include "paint/ParallelWork.h"

#include "paint/NonCopyable.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace vellix {
namespace {

// Whether this thread does part of a work that others do the rest of.
thread_local bool g_isAtWork = false;

class SharedWork : private NonCopyable {
public:
    SharedWork(std::size_t count, const std::function<void(std::size_t)>& work)
        : count_(count)
        , work_(work) {}
    ~SharedWork() { JoinHelpers(); }

    /// A lack of threads or of memory for them only makes it slower.
    void StartHelpers() {
        if (g_isAtWork) {
            return;
        }
        const std::size_t processors = std::max(1u, std::thread::hardware_concurrency());
        try {
            for (std::size_t i = 1; i < std::min(processors, count_); ++i) {
                helpers_.emplace_back([this] { DoRest(); });
            }
        } catch (const std::system_error&) {
            return;
        } catch (const std::bad_alloc&) {
            return;
        }
    }

    /// Takes on what nobody has begun, until nothing is left.
    void DoRest() {
        const QScopedValueRollback<bool> rollback(g_isAtWork, g_isAtWork || count_ > 1);
        for (std::size_t i = next_++; i < count_; i = next_++) {
            try {
                work_(i);
            } catch (...) {
                const std::lock_guard<std::mutex> lock(mutex_);
                if (!exception_) {
                    exception_ = std::current_exception();
                }
            }
        }
    }

    void JoinHelpers() {
        for (std::thread& helper : helpers_) {
            helper.join();
        }
        helpers_.clear();
    }

    void Rethrow() const {
        if (exception_) {
            std::rethrow_exception(exception_);
        }
    }

private:
    const std::size_t count_;
    const std::function<void(std::size_t)>& work_;
    std::atomic<std::size_t> next_{0};
    std::vector<std::thread> helpers_;
    std::mutex mutex_;
    std::exception_ptr exception_;
};

} // namespace

void DoInParallel(std::size_t count, const std::function<void(std::size_t)>& work) {
    SharedWork shared(count, work);
    shared.StartHelpers();
    shared.DoRest();
    shared.JoinHelpers();
    shared.Rethrow();
}

} // namespace vellix
