#include "series/seriesregistry_p.h"

#include "series/abstractchartseries.h"
#include "series/pointthread.h"

namespace {

constexpr int RetiredLimit = 1000; // dead series, of less than a kilobyte each

} // namespace

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
}

bool SeriesRegistry::contains(const AbstractChartSeries *series)
{
    const Reader reader;
    return m_series.contains(series);
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

int &SeriesRegistry::Reader::depth()
{
    thread_local int depth = 0;
    return depth;
}

SeriesRegistry::Reader::Reader()
{
    if (depth()++ == 0) {
        instance().m_lock.lockForRead();
    }
}

SeriesRegistry::Reader::~Reader()
{
    if (--depth() == 0) {
        instance().m_lock.unlock();
    }
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
