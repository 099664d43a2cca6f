#include "plugin/FailingAllocation.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <link.h>
#include <unwind.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CAN_FAIL 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CAN_FAIL 0
#endif
#endif
#ifndef CAN_FAIL
#define CAN_FAIL 1
#endif

namespace vellix {

namespace {

struct Range {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

/// The code that allocates for its caller: Qt and the standard library. And this program, with the plug-in.
struct Code {
    std::array<Range, 16> helpers;
    std::size_t helperCount = 0;
    Range program;
};

Code g_code;
bool g_hasFailed = false;
thread_local bool g_isArmed = false;
thread_local bool g_isLooking = false;
thread_local int g_left = 0;
thread_local int g_number = 0;

int AddModule(dl_phdr_info* info, std::size_t, void*) {
    Range range{UINTPTR_MAX, 0};
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        if (info->dlpi_phdr[i].p_type == PT_LOAD) {
            const std::uintptr_t begin = info->dlpi_addr + info->dlpi_phdr[i].p_vaddr;
            range.begin = begin < range.begin ? begin : range.begin;
            range.end = begin + info->dlpi_phdr[i].p_memsz > range.end ? begin + info->dlpi_phdr[i].p_memsz
                                                                       : range.end;
        }
    }
    const char* const name = info->dlpi_name;
    if (!name || *name == 0) {
        g_code.program = range;
    }
    for (const char* const helper : {"libstdc++", "libQt5Core", "libQt5Gui", "libc.so"}) {
        if (name && std::strstr(name, helper) && g_code.helperCount < g_code.helpers.size()) {
            g_code.helpers[g_code.helperCount++] = range;
        }
    }
    return 0;
}

bool Holds(const Range& range, std::uintptr_t address) {
    return address >= range.begin && address < range.end;
}

struct Search {
    std::uintptr_t from; ///< where the allocating function returns to
    bool hasBegun = false;
    bool isProgram = false;
};

_Unwind_Reason_Code Visit(_Unwind_Context* context, void* data) {
    auto& search = *static_cast<Search*>(data);
    const std::uintptr_t address = _Unwind_GetIP(context);
    search.hasBegun = search.hasBegun || address == search.from;
    if (!search.hasBegun) {
        return _URC_NO_REASON;
    }
    for (std::size_t i = 0; i < g_code.helperCount; ++i) {
        if (Holds(g_code.helpers[i], address)) {
            return _URC_NO_REASON;
        }
    }
    search.isProgram = Holds(g_code.program, address);
    return _URC_END_OF_STACK;
}

[[maybe_unused]] bool Fails(void* returnAddress) {
    if (!g_isArmed || g_isLooking) {
        return false;
    }
    g_isLooking = true;
    Search search{reinterpret_cast<std::uintptr_t>(returnAddress)};
    _Unwind_Backtrace(Visit, &search);
    g_isLooking = false;
    if (!search.isProgram || --g_left != 0) {
        return false;
    }
    g_hasFailed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

FailingAllocation::FailingAllocation(int number) {
    if (g_code.helperCount == 0) {
        dl_iterate_phdr(AddModule, nullptr);
        Search warmUp{0};
        _Unwind_Backtrace(Visit, &warmUp); // it allocates the first time
    }
    g_hasFailed = false;
    g_left = g_number = number;
    g_isArmed = true;
}

FailingAllocation::~FailingAllocation() {
    g_isArmed = false;
}

bool FailingAllocation::HasFailed() {
    return g_hasFailed;
}

int FailingAllocation::Count() {
    return g_number - g_left;
}

bool FailingAllocation::IsPossible() {
    return CAN_FAIL != 0;
}

FailingAllocation::Pause::Pause()
    : before_(g_isArmed) {
    g_isArmed = false;
}

FailingAllocation::Pause::~Pause() {
    g_isArmed = before_;
}

} // namespace vellix

#if CAN_FAIL
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming): names of the C library
void* __libc_malloc(std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)

void* malloc(std::size_t size) {
    return vellix::Fails(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}
void* realloc(void* block, std::size_t size) {
    return vellix::Fails(__builtin_return_address(0)) ? nullptr : __libc_realloc(block, size);
}
void* calloc(std::size_t count, std::size_t size) {
    return vellix::Fails(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}
}
#endif
