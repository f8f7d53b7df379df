#include "series/chartvalue.h"

#include "series/samplepool_p.h"
#include "series/sampleslab_p.h"

namespace {

static_assert(sizeof(ChartValue) == SampleSlab::CellSize, "A record fills a cell");

// A sanitizer follows each piece of the heap by itself: it tells of a record that is used after its
// end or never freed, and where it was made. In a pool it would see none of that.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool UsesPool = false;
#else
constexpr bool UsesPool = true;
#endif

/// What an application has derived for its own use is bigger, and comes here too.
constexpr bool isPooled(std::size_t size)
{
    return UsesPool && size == sizeof(ChartValue);
}

void *allocate(std::size_t size) noexcept
{
    return isPooled(size) ? SamplePool::allocate() : ::operator new(size, std::nothrow);
}

} // namespace

void *ChartValue::operator new(std::size_t size)
{
    if (void *memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void *ChartValue::operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    return allocate(size);
}

void ChartValue::operator delete(void *memory, std::size_t size) noexcept
{
    if (!memory) {
        return;
    }
    if (isPooled(size)) {
        SamplePool::free(memory);
    } else {
        ::operator delete(memory);
    }
}
