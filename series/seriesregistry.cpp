#include "series/seriesregistry_p.h"

#include "series/abstractchartseries.h"
#include "series/pointthread.h"

#include <array>
#include <cstdint>

namespace {

constexpr int RetiredLimit = 1000; // dead series, of less than a kilobyte each

} // namespace

/**
 * What one thread knows: how many Readers it holds, and some of the series that it has found, so
 * that a feeder asks the set for its series once and not for each sample.
 *
 * What it has found lives until some series leaves; then it forgets all. A series that enters, be
 * it where another one has lived, makes none of it wrong.
 */
class SeriesRegistry::Thread
{
public:
    static Thread &current()
    {
        thread_local Thread thread;
        return thread;
    }

    bool finds(const AbstractChartSeries *series, const SeriesRegistry &registry)
    {
        if (m_departures != registry.m_departures) {
            m_departures = registry.m_departures;
            m_found.fill(nullptr);
        }
        const AbstractChartSeries *&found = m_found[placeOf(series)];
        if (found != series && registry.m_series.contains(series)) {
            found = series;
        }
        return series && found == series;
    }

    int m_readers = 0;

private:
    static constexpr int PlaceBits = 5; // two or three times the series of a full model

    /// Fibonacci hashing: the upper bits of the product depend on all bits of the address.
    static std::size_t placeOf(const AbstractChartSeries *series)
    {
        constexpr std::uint64_t GoldenRatio = 0x9e3779b97f4a7c15; // of 2^64
        return std::size_t((reinterpret_cast<std::uintptr_t>(series) * GoldenRatio) >>
                           (64 - PlaceBits));
    }

    quint64 m_departures = 0; ///< Those of the registry when m_found was last right.
    std::array<const AbstractChartSeries *, 1 << PlaceBits> m_found{};
};

SeriesRegistry &SeriesRegistry::instance()
{
    static SeriesRegistry registry;
    return registry;
}

SeriesRegistry::~SeriesRegistry()
{
    for (void *memory : qAsConst(m_retired)) {
        ::operator delete(memory);
    }
}

void SeriesRegistry::enter(const AbstractChartSeries *series)
{
    const QWriteLocker locker(&m_lock);
    m_series.insert(series);
}

void SeriesRegistry::leave(const AbstractChartSeries *series)
{
    const QWriteLocker locker(&m_lock);
    m_series.remove(series);
    ++m_departures;
}

bool SeriesRegistry::contains(const AbstractChartSeries *series)
{
    return Reader().contains(series);
}

void SeriesRegistry::retire(void *memory)
{
#ifdef __SANITIZE_ADDRESS__
    ::operator delete(memory); // The sanitizer retires it, and tells of whoever touches it then.
#else
    const QWriteLocker locker(&m_lock);
    m_retired.enqueue(memory);
    if (m_retired.size() > RetiredLimit) {
        ::operator delete(m_retired.dequeue());
    }
#endif
}

SeriesRegistry::Reader::Reader()
    : m_thread(Thread::current())
{
    if (m_thread.m_readers++ == 0) {
        instance().m_lock.lockForRead();
    }
}

SeriesRegistry::Reader::~Reader()
{
    if (--m_thread.m_readers == 0) {
        instance().m_lock.unlock();
    }
}

bool SeriesRegistry::Reader::contains(const AbstractChartSeries *series) const
{
    return m_thread.finds(series, instance());
}

void deleteSeries(AbstractChartSeries *series)
{
    if (!series) {
        return;
    }
    // The worker first: it may hold m_valuesMutex, for which a feeder waits that leave() waits for.
    series->m_pointThread->stopThread();
    SeriesRegistry::instance().leave(series);
    delete series;
}
