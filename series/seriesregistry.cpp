#include "series/seriesregistry_p.h"

#include "series/abstractchartseries.h"
#include "series/pointthread.h"

SeriesRegistry &SeriesRegistry::instance()
{
    static SeriesRegistry registry;
    return registry;
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
