#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <cstdint>

/**
 * A piece of memory that is cut into cells, each of the size of one ChartValue.
 *
 * It lies at a multiple of its size, so that the address of a cell tells its slab. What is free is
 * kept as one bit for each cell, at the slab's begin: giving a cell back leaves the cell itself
 * untouched, which saves a cache miss for each record of a store that is cleared, and cells are
 * always taken in the order of their addresses.
 *
 * No locks: the one of the depot that has the slab guards it.
 */
class SampleSlab
{
public:
    static constexpr std::size_t Size = 256 * 1024; ///< In bytes.
    static constexpr std::size_t CellSize = 32;     ///< In bytes.

    /// A slab fresh from the system, with all cells free. Null if there is no memory.
    static SampleSlab *create() noexcept;

    /// Gives the slab back to the system, cells and all.
    static void destroy(SampleSlab *slab) noexcept;

    /// The slab that \p cell lies in.
    static SampleSlab *of(void *cell)
    {
        return reinterpret_cast<SampleSlab *>(reinterpret_cast<std::uintptr_t>(cell) &
                                              ~std::uintptr_t(Size - 1));
    }

    /// The number of cells in each slab.
    static constexpr int cellCount()
    {
        constexpr int headerPlaces = int((sizeof(SampleSlab) + CellSize - 1) / CellSize);
        return PlaceCount - headerPlaces;
    }

    bool isFull() const { return m_freeCount == 0; }
    bool isUnused() const { return m_freeCount == cellCount(); }

    /// Takes the first free cells, up to \p count, into \p cells in ascending order; returns how
    /// many.
    int take(void **cells, int count) noexcept;

    /// Takes a cell back. Ends the program if the cell is free already.
    void give(void *cell) noexcept;

    SampleSlab *m_next = nullptr;     ///< For the depot's lists.
    SampleSlab *m_previous = nullptr; ///< For the depot's lists.

private:
    static constexpr int PlaceCount = int(Size / CellSize); ///< Cells, and what the header covers.
    static constexpr int WordBits = 64;
    static constexpr int WordCount = PlaceCount / WordBits;

    SampleSlab();

    void *place(int number) { return reinterpret_cast<char *>(this) + number * CellSize; }

    int m_freeCount;
    int m_firstWord = 0;         ///< None before it has a bit set.
    quint64 m_isFree[WordCount]; ///< A bit for each place. Those under the header stay 0.
};

// Inline, for it runs under the lock.
inline void SampleSlab::give(void *cell) noexcept
{
    const auto number =
        int(std::size_t(static_cast<char *>(cell) - static_cast<char *>(place(0))) / CellSize);
    const int word = number / WordBits;
    const quint64 bit = quint64(1) << number % WordBits;
    if (m_isFree[word] & bit) {
        qFatal("A sample is freed twice");
    }
    m_isFree[word] |= bit;
    m_firstWord = std::min(m_firstWord, word);
    ++m_freeCount;
}
