#pragma once

/**
 * What one thread has written before handOver() of an object, another one sees after takeOver() of
 * it.
 *
 * Qt makes it so, by the queue of events and by the end of a thread, but out of sight of the thread
 * sanitizer, which knows nothing of the locks within Qt. These tell it. They order nothing
 * themselves, and are nothing in other builds.
 */
#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>

inline void handOver(const void *object)
{
    __tsan_release(const_cast<void *>(object));
}
inline void takeOver(const void *object)
{
    __tsan_acquire(const_cast<void *>(object));
}
#else
inline void handOver(const void *) {}
inline void takeOver(const void *) {}
#endif
