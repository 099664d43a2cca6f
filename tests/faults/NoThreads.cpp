// Makes every start of a thread fail, as where a user has as many as the system allows. Preloaded into
// programs (LD_PRELOAD).

#include <cerrno>
#include <pthread.h>

extern "C" int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*) noexcept {
    return EAGAIN;
}
