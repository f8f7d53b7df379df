#pragma once

#include "series/chartvalue.h"

#include <QtGlobal>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/asan_interface.h>
#endif
#ifdef __SANITIZE_THREAD__
#include "series/handover_p.h"
#endif

/**
 * Knows of every sample of a program whether it lives, whoever frees it, and ends the program when
 * one is freed twice.
 *
 * To be included by one source of a program: it defines the operators new and delete of ChartValue
 * anew, and the program's definitions go before those of the library, for the library's own calls
 * too. Memory is used again as late as possible. Any thread; it orders no two threads but the one
 * that frees a sample and the one that gets its memory.
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

    // For the operators of ChartValue

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

    static void give(void *memory)
    {
        const std::uintptr_t offset = offsetOf(memory);
        if (offset >= sizeof(s_memory)) {
            fail("What is freed is no sample");
        }
        const auto slot = quint32(offset / sizeof(ChartValue));
        setReadable(slot, false);
        if (!s_isAlive[slot].exchange(false, std::memory_order_release)) {
            fail("A sample is freed twice");
        }
        s_freed.fetch_add(1, std::memory_order_relaxed);
    }

private:
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
};

void *ChartValue::operator new(std::size_t)
{
    return CountedSamples::take();
}

void *ChartValue::operator new(std::size_t, const std::nothrow_t &) noexcept
{
    return CountedSamples::take();
}

void ChartValue::operator delete(void *memory, std::size_t) noexcept
{
    if (memory) {
        CountedSamples::give(memory);
    }
}

// Qt frees in one thread what it takes in another: the sanitizer is told of the order of the two.
#ifdef __SANITIZE_THREAD__

void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    void *memory = std::malloc(size);
    handOver(memory);
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
    takeOver(memory);
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    operator delete(memory);
}

void operator delete(void *memory, const std::nothrow_t &) noexcept
{
    operator delete(memory);
}

#endif
