#pragma once

// VELLIX_VECTOR_CLONES before a function makes the compiler build it twice, for the base instruction set and
// for AVX2; the loader picks one. It is empty on platforms without this feature. It is also empty under the
// sanitizers, whose runtime is not ready when the loader picks.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define VELLIX_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VELLIX_SANITIZED
#endif

#if defined(__GNUC__) && defined(__x86_64__) && defined(__gnu_linux__) && !defined(VELLIX_SANITIZED) &&      \
    (!defined(__clang__) || __clang_major__ >= 14)
#define VELLIX_VECTOR_CLONES __attribute__((target_clones("default", "avx2")))
#else
#define VELLIX_VECTOR_CLONES
#endif
