#include "series/samplepool_p.h"

#include "series/sampledepot_p.h"

#include <algorithm>
#include <new>

namespace {

constexpr int BatchSize = 64; // cells; a batch of fresh ones covers half a page

SampleDepot &depot()
{
    alignas(SampleDepot) static unsigned char place[sizeof(SampleDepot)];
    static auto *const depot = new (place) SampleDepot; // never destroyed
    return *depot;
}

/// The free cells that a thread keeps for itself.
struct Cache
{
    int count;
    int capacity;               ///< 0 while the thread keeps none.
    void *cells[2 * BatchSize]; ///< The last is the next to allocate.
};

/// Where a thread has its cells before its first one and when it ends: it keeps none. Never
/// written.
Cache s_none = {};

/// This thread's cache. The model of access saves a call at each use, and takes no more than this
/// pointer of what the system has for such in libraries that are loaded late.
[[gnu::tls_model("initial-exec")]] thread_local Cache *s_cache = &s_none;

/// The time in which a thread keeps cells.
class Caching
{
public:
    Caching() { s_cache = &m_cache; }
    ~Caching()
    {
        s_cache = &s_none;
        depot().give(m_cache.cells, m_cache.count);
    }
    Q_DISABLE_COPY_MOVE(Caching)

private:
    Cache m_cache{0, 2 * BatchSize, {}};
};

/// Returns whether the thread may keep cells; when it ends it may not any more.
bool isCaching()
{
    static thread_local const Caching caching; // one for each thread: it never begins again
    return s_cache != &s_none;
}

/// Returns a cell for a thread that has none in its cache. Null if there is no memory.
void *allocateAnew()
{
    if (!isCaching()) {
        void *cell = nullptr;
        depot().take(&cell, 1);
        return cell;
    }
    Cache &cache = *s_cache;
    cache.count = depot().take(cache.cells, BatchSize);
    std::reverse(cache.cells, cache.cells + cache.count); // the first in memory are the next
    return cache.count > 0 ? cache.cells[--cache.count] : nullptr;
}

/// Frees a cell for which the thread's cache has no room.
void freeBeyond(void *cell)
{
    if (!isCaching()) {
        depot().give(&cell, 1);
        return;
    }
    Cache &cache = *s_cache;
    if (cache.count == cache.capacity) {
        depot().give(cache.cells, BatchSize); // the oldest
        std::copy(cache.cells + BatchSize, cache.cells + cache.count, cache.cells);
        cache.count -= BatchSize;
    }
    cache.cells[cache.count++] = cell;
}

} // namespace

void *SamplePool::allocate() noexcept
{
    Cache &cache = *s_cache;
    return Q_LIKELY(cache.count > 0) ? cache.cells[--cache.count] : allocateAnew();
}

void SamplePool::free(void *cell) noexcept
{
    Cache &cache = *s_cache;
    if (Q_UNLIKELY(cache.count == cache.capacity)) {
        freeBeyond(cell);
        return;
    }
    cache.cells[cache.count++] = cell;
}

int SamplePool::slabCount()
{
    return depot().slabCount();
}

qint64 SamplePool::cellsOut()
{
    return depot().cellsOut();
}
