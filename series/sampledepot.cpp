#include "series/sampledepot_p.h"

#include <utility>

namespace {

using Locker = std::lock_guard<std::mutex>;

/// Destroys the slabs from this one on; the last has no next.
void destroyAll(SampleSlab *slab)
{
    while (slab) {
        SampleSlab::destroy(std::exchange(slab, slab->m_next));
    }
}

} // namespace

SampleDepot::~SampleDepot()
{
    if (m_first) {
        m_first->m_previous->m_next = nullptr; // opens the ring
    }
    destroyAll(m_first);
}

int SampleDepot::take(void **cells, int count) noexcept
{
    int taken = takeListed(cells, count);
    while (taken < count && addSlab()) {
        taken += takeListed(cells + taken, count - taken);
    }
    return taken;
}

int SampleDepot::takeListed(void **cells, int count)
{
    const Locker locker(m_mutex);
    int taken = 0;
    while (taken < count && m_first) {
        SampleSlab *slab = m_first;
        if (slab->isUnused()) {
            --m_unusedCount;
        }
        taken += slab->take(cells + taken, count - taken);
        if (slab->isFull()) {
            remove(slab);
        }
    }
    m_cellsOut += taken;
    return taken;
}

bool SampleDepot::addSlab()
{
    SampleSlab *slab = SampleSlab::create();
    if (!slab) {
        return false;
    }
    const Locker locker(m_mutex);
    append(slab);
    ++m_unusedCount;
    ++m_slabCount;
    return true;
}

void SampleDepot::give(void *const *cells, int count) noexcept
{
    SampleSlab *surplus = nullptr;
    {
        const Locker locker(m_mutex);
        for (int i = 0; i < count; ++i) {
            if (SampleSlab *slab = giveOne(cells[i])) {
                slab->m_next = std::exchange(surplus, slab);
            }
        }
        m_cellsOut -= count;
    }
    destroyAll(surplus);
}

/// Returns the cell's slab if that is to go back to the system.
SampleSlab *SampleDepot::giveOne(void *cell)
{
    SampleSlab *slab = SampleSlab::of(cell);
    if (slab->isFull()) {
        append(slab);
    }
    slab->give(cell);
    if (!slab->isUnused()) {
        return nullptr;
    }
    if (m_unusedCount < SpareLimit) {
        ++m_unusedCount;
        return nullptr;
    }
    remove(slab);
    --m_slabCount;
    return slab;
}

void SampleDepot::append(SampleSlab *slab)
{
    if (!m_first) {
        m_first = slab->m_next = slab->m_previous = slab;
        return;
    }
    SampleSlab *last = m_first->m_previous;
    slab->m_next = m_first;
    slab->m_previous = last;
    last->m_next = slab;
    m_first->m_previous = slab;
}

void SampleDepot::remove(SampleSlab *slab)
{
    if (m_first == slab) {
        m_first = slab->m_next == slab ? nullptr : slab->m_next;
    }
    slab->m_previous->m_next = slab->m_next;
    slab->m_next->m_previous = slab->m_previous;
}

int SampleDepot::slabCount() const
{
    const Locker locker(m_mutex);
    return m_slabCount;
}

qint64 SampleDepot::cellsOut() const
{
    const Locker locker(m_mutex);
    return m_cellsOut;
}
