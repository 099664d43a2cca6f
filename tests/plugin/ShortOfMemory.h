#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QFontDatabase>

#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace vellix {

/// Leaves the process with hardly any memory to allocate while it exists: the address space is limited, and
/// what is free in it is taken, in blocks of 16 KB and more.
class ShortOfMemory {
public:
    ShortOfMemory() {
        // Whoever looks for fonts without memory for it would leave a list without fonts to all programs.
        if (QCoreApplication::instance()) {
            static_cast<void>(QFontDatabase().families());
        }
        blocks_.reserve(MAX_BLOCKS);
        getrlimit(RLIMIT_AS, &before_);
        rlimit limit = before_;
        limit.rlim_cur = AddressSpace() + (1 << 20);
        isShort_ = !IsSanitized() && setrlimit(RLIMIT_AS, &limit) == 0;
        for (std::size_t size = 1 << 20; isShort_ && size >= SMALLEST; size /= 2) {
            void* block = nullptr;
            while (blocks_.size() < MAX_BLOCKS && (block = std::malloc(size)) != nullptr) {
                blocks_.push_back(block);
            }
        }
        isShort_ = isShort_ && blocks_.size() < MAX_BLOCKS;
    }
    ShortOfMemory(const ShortOfMemory&) = delete;
    ShortOfMemory& operator=(const ShortOfMemory&) = delete;
    ~ShortOfMemory() {
        setrlimit(RLIMIT_AS, &before_);
        for (void* block : blocks_) {
            std::free(block);
        }
    }

    /// False where memory cannot be limited, as under the sanitizers.
    bool IsShort() const { return isShort_; }

private:
    static constexpr std::size_t SMALLEST = 16 << 10;
    static constexpr std::size_t MAX_BLOCKS = 100000;

    static bool IsSanitized() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return true;
#elif defined(__has_feature)
        return __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
        return false;
#endif
    }
    static rlim_t AddressSpace() {
        QFile sizes("/proc/self/statm");
        sizes.open(QIODevice::ReadOnly);
        return sizes.readAll().split(' ').value(0).toULongLong() * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
    }

    rlimit before_ = {};
    bool isShort_ = false;
    std::vector<void*> blocks_;
};

} // namespace vellix
