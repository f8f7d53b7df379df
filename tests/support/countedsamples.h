#pragma once

#include "series/chartvalue.h"
#include "series/handover_p.h"

#include <QtGlobal>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif

/**
 * Knows of every sample that makeCounted() has made whether it lives, whoever frees it, and ends
 * the program when one is freed twice.
 *
 * To be included by one source of a program: it replaces the program's operator new and delete.
 * Memory is used again as late as possible. Any thread; it orders no two threads but the one that
 * frees a sample and the one that gets its memory.
 */
class CountedSamples
{
public:
    static constexpr quint32 SlotCount = 1u << 21; // 64 MB, of which the system gives what is used

    static qint64 made() { return s_made; }
    static qint64 freed() { return s_freed; }
    static qint64 alive() { return made() - freed(); }

    /// The number of the slot that \p value lives in; -1 if it was not made here or is dead.
    static int slotOf(const ChartValue *value)
    {
        const std::uintptr_t offset = offsetOf(value);
        if (offset >= sizeof(s_memory) || offset % sizeof(ChartValue) != 0) {
            return -1;
        }
        const auto slot = quint32(offset / sizeof(ChartValue));
        return s_isAlive[slot] ? int(slot) : -1;
    }

    // For operator new and delete

    static bool isMaking(std::size_t size) { return s_isMaking && size == sizeof(ChartValue); }

    static void *take()
    {
        for (quint32 tries = 0; tries < SlotCount; ++tries) {
            const quint32 slot = s_next.fetch_add(1, std::memory_order_relaxed) % SlotCount;
            bool isAlive = false;
            if (s_isAlive[slot].compare_exchange_strong(isAlive, true, std::memory_order_acquire,
                                                        std::memory_order_relaxed)) {
                s_made.fetch_add(1, std::memory_order_relaxed);
                setReadable(slot, true);
                return s_memory + slot * sizeof(ChartValue);
            }
        }
        fail("More samples live than there is room for");
    }

    /// Returns whether the memory is that of a sample, and now free.
    static bool give(void *memory)
    {
        const std::uintptr_t offset = offsetOf(memory);
        if (offset >= sizeof(s_memory)) {
            return false;
        }
        const auto slot = quint32(offset / sizeof(ChartValue));
        setReadable(slot, false);
        if (!s_isAlive[slot].exchange(false, std::memory_order_release)) {
            fail("A sample is freed twice");
        }
        s_freed.fetch_add(1, std::memory_order_relaxed);
        return true;
    }

private:
    friend ChartValue *makeCounted(const ChartValue &contents);

    static std::uintptr_t offsetOf(const void *memory)
    {
        return reinterpret_cast<std::uintptr_t>(memory) -
               reinterpret_cast<std::uintptr_t>(s_memory);
    }

    [[noreturn]] static void fail(const char *text)
    {
        std::fprintf(stderr, "%s\n", text);
        std::abort();
    }

    static void setReadable(quint32 slot, bool on)
    {
#ifdef __SANITIZE_ADDRESS__
        void *memory = s_memory + slot * sizeof(ChartValue);
        if (on) {
            ASAN_UNPOISON_MEMORY_REGION(memory, sizeof(ChartValue));
        } else {
            ASAN_POISON_MEMORY_REGION(memory, sizeof(ChartValue));
        }
#else
        Q_UNUSED(slot)
        Q_UNUSED(on)
#endif
    }

    alignas(ChartValue) static inline unsigned char s_memory[SlotCount * sizeof(ChartValue)];
    static inline std::atomic<bool> s_isAlive[SlotCount];
    static inline std::atomic<quint32> s_next{0};
    static inline std::atomic<qint64> s_made{0};
    static inline std::atomic<qint64> s_freed{0};
    static inline thread_local bool s_isMaking = false;
};

/// A sample with these contents, as the entry operations take it, that is counted.
inline ChartValue *makeCounted(const ChartValue &contents)
{
    CountedSamples::s_isMaking = true;
    auto *value = new ChartValue(contents);
    CountedSamples::s_isMaking = false;
    return value;
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    if (CountedSamples::isMaking(size)) {
        return CountedSamples::take();
    }
    void *memory = std::malloc(size);
    handOver(memory); // Qt frees in one thread what it takes in another.
    return memory;
}

void *operator new(std::size_t size)
{
    if (void *memory = operator new(size, std::nothrow)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    if (!CountedSamples::give(memory)) {
        takeOver(memory);
        std::free(memory);
    }
}

void operator delete(void *memory, std::size_t) noexcept
{
    operator delete(memory);
}

void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    operator delete(memory);
}
