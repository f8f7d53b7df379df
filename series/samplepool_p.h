#pragma once

#include "quarvchart_export.h"

#include <QtGlobal>

/**
 * The memory of samples: cells of the size of one ChartValue, one at a time.
 *
 * Each thread keeps up to two batches of cells for itself, so that most calls are a few
 * instructions without a lock, and exchanges a batch with the one SampleDepot of the process when
 * it has none left or too many. A thread that ends gives back what it kept; what it frees after
 * that goes to the depot at once. The depot is never destroyed, for static objects may free
 * samples.
 *
 * After the magazine layer in J. Bonwick and J. Adams, "Magazines and Vmem: Extending the Slab
 * Allocator to Many CPUs and Arbitrary Resources", USENIX Annual Technical Conference, 2001.
 */
class QUARVCHART_EXPORT SamplePool
{
public:
    /// A cell, of any contents. Null if there is no memory. Any thread.
    static void *allocate() noexcept;

    /// Frees a cell that any thread has allocated. Not null. Any thread.
    static void free(void *cell) noexcept;

    /// The slabs that are held from the system.
    static int slabCount();

    /// The cells that are allocated or kept by threads.
    static qint64 cellsOut();
};
