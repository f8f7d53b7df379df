#pragma once

#include "quarvchart_export.h"
#include "series/sampleslab_p.h"

#include <QtGlobal>

#include <mutex>

/**
 * The cells that belong to no thread, in slabs; hands them out and takes them back by many.
 *
 * A slab of which all cells are free goes back to the system, but for a few that are kept: a page
 * fresh from the system costs more than the cells on it, and a store may go up and down. Slabs with
 * free cells stand in line: the first is used up before the next, and one of which cells come back
 * stands last, so that a store that loses its oldest samples empties whole slabs.
 *
 * Any thread. The lock is the last in every order: nothing is called under it, the system neither.
 */
class QUARVCHART_EXPORT SampleDepot
{
public:
    /// Unused slabs that are kept: 4 MiB, which have room for 130 thousand samples.
    static constexpr int SpareLimit = 16;

    SampleDepot() = default;

    /// All cells must have come back.
    ~SampleDepot();

    Q_DISABLE_COPY_MOVE(SampleDepot)

    /// Takes \p count cells into \p cells, those of one slab in ascending order. Returns how many
    /// it were: fewer if the system has no more memory.
    int take(void **cells, int count) noexcept;

    /// Takes back \p count cells that any thread has taken here.
    void give(void *const *cells, int count) noexcept;

    /// The slabs that are held from the system.
    int slabCount() const;

    /// The cells that are taken.
    qint64 cellsOut() const;

private:
    int takeListed(void **cells, int count);
    bool addSlab();
    SampleSlab *giveOne(void *cell);
    void append(SampleSlab *slab);
    void remove(SampleSlab *slab);

    mutable std::mutex m_mutex; ///< Guards all below, and what is in the slabs but for their cells.
    SampleSlab *m_first = nullptr; ///< Slabs that are not full, in a ring.
    int m_unusedCount = 0;         ///< Those of them that have all cells.
    int m_slabCount = 0;
    qint64 m_cellsOut = 0;
};
