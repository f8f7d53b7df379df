#include "series/seriesregistry_p.h"

#include "series/abstractchartseries.h"
#include "series/lockorder_p.h"
#include "series/pointthread.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

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
    static Thread &current();

    /// Under m_mutex.
    bool finds(const AbstractChartSeries *series, SeriesRegistry &registry)
    {
        // Under the mutex through which each leave() goes after it has counted itself.
        const quint64 departures = registry.m_departures.load(std::memory_order_relaxed);
        if (m_departures != departures) {
            m_departures = departures;
            m_found.fill(nullptr);
        }
        const AbstractChartSeries *&found = m_found[placeOf(series)];
        if (found != series && registry.contains(series)) {
            found = series;
        }
        return series && found == series;
    }

    InlineMutex m_mutex; ///< Held while the thread holds a Reader.
    int m_readers = 0;   ///< Of this thread, which alone looks at it.

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

SeriesRegistry::Thread &SeriesRegistry::Thread::current()
{
    // A plain pointer, so that asking for it costs little, and so that it may still be asked for
    // when the thread's other objects are destroyed: one of them may hand in its last samples.
    thread_local Thread *known = nullptr;
    struct End
    {
        ~End() { instance().dismiss(std::exchange(known, nullptr)); }
    };
    if (!known) {
        thread_local const End end;
        known = instance().admit();
    }
    return *known;
}

SeriesRegistry &SeriesRegistry::instance()
{
    // Never destroyed: a QThread that has been waited for may still be at its very end, where it
    // takes its leave here, when the program's statics go.
    static SeriesRegistry &registry = *new SeriesRegistry;
    return registry;
}

SeriesRegistry::Thread *SeriesRegistry::admit()
{
    const QMutexLocker locker(&m_mutex);
    m_threads.push_back(std::make_shared<Thread>());
    return m_threads.back().get();
}

void SeriesRegistry::dismiss(const Thread *thread)
{
    const auto isIt = [thread](const auto &one) { return one.get() == thread; };
    const QMutexLocker locker(&m_mutex);
    m_threads.erase(std::remove_if(m_threads.begin(), m_threads.end(), isIt), m_threads.end());
}

void SeriesRegistry::enter(const AbstractChartSeries *series)
{
    const QMutexLocker locker(&m_mutex);
    m_series.insert(series);
}

void SeriesRegistry::leave(const AbstractChartSeries *series)
{
    std::vector<std::shared_ptr<Thread>> threads;
    {
        const QMutexLocker locker(&m_mutex);
        m_series.remove(series);
        m_departures.fetch_add(1, std::memory_order_relaxed);
        threads = m_threads;
    }
    // Whoever reads from now on finds the series gone; who has begun before is waited for.
    for (const std::shared_ptr<Thread> &thread : threads) {
        const QMutexLocker locker(&thread->m_mutex);
    }
}

bool SeriesRegistry::contains(const AbstractChartSeries *series)
{
    const QMutexLocker locker(&m_mutex);
    return m_series.contains(series);
}

void SeriesRegistry::retire(void *memory)
{
#ifdef __SANITIZE_ADDRESS__
    ::operator delete(memory); // The sanitizer retires it, and tells of whoever touches it then.
#else
    const QMutexLocker locker(&m_mutex);
    m_retired.enqueue(memory);
    if (m_retired.size() > RetiredLimit) {
        ::operator delete(m_retired.dequeue());
    }
#endif
}

SeriesRegistry::Reader::Reader(const AbstractChartSeries *series)
    : m_thread(Thread::current())
{
    if (m_thread.m_readers++ == 0) {
        m_thread.m_mutex.lock();
    }
    m_lives = m_thread.finds(series, instance());
}

SeriesRegistry::Reader::~Reader()
{
    if (--m_thread.m_readers == 0) {
        m_thread.m_mutex.unlock();
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
