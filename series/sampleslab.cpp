#include "series/sampleslab_p.h"

#include <QtAlgorithms>

#include <algorithm>
#include <iterator>
#include <new>

#include <sys/mman.h>

namespace {

void *map(std::size_t size)
{
    void *memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

/// As much memory as a slab takes, at a multiple of its size.
void *mapAligned()
{
    // The system puts one mapping right below another: after the first slab that fits as it is.
    void *exact = map(SampleSlab::Size);
    if (!exact || SampleSlab::of(exact) == exact) {
        return exact;
    }
    munmap(exact, SampleSlab::Size);

    // Twice as much has a place for a slab, and the rest goes back. It is the last such place, for
    // the next slab then fits below it.
    char *wide = static_cast<char *>(map(2 * SampleSlab::Size));
    if (!wide) {
        return nullptr;
    }
    char *aligned = reinterpret_cast<char *>(SampleSlab::of(wide + SampleSlab::Size));
    const auto before = std::size_t(aligned - wide);
    if (before > 0) {
        munmap(wide, before);
    }
    if (before < SampleSlab::Size) {
        munmap(aligned + SampleSlab::Size, SampleSlab::Size - before);
    }
    return aligned;
}

} // namespace

SampleSlab *SampleSlab::create() noexcept
{
    void *memory = mapAligned();
    return memory ? new (memory) SampleSlab : nullptr;
}

void SampleSlab::destroy(SampleSlab *slab) noexcept
{
    munmap(slab, Size);
}

SampleSlab::SampleSlab()
    : m_freeCount(cellCount())
{
    std::fill(std::begin(m_isFree), std::end(m_isFree), ~quint64(0));
    for (int number = 0; number < PlaceCount - cellCount(); ++number) {
        m_isFree[number / WordBits] &= ~(quint64(1) << number % WordBits);
    }
}

int SampleSlab::take(void **cells, int count) noexcept
{
    const int taken = std::min(count, m_freeCount);
    for (int i = 0; i < taken; ++i) {
        while (m_isFree[m_firstWord] == 0) {
            ++m_firstWord;
        }
        quint64 &word = m_isFree[m_firstWord];
        cells[i] = place(m_firstWord * WordBits + int(qCountTrailingZeroBits(word)));
        word &= word - 1; // without its lowest bit
    }
    m_freeCount -= taken;
    return taken;
}
