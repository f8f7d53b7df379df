#pragma once

#include <QMutex>
#include <QQueue>
#include <QSet>

#include <atomic>
#include <memory>
#include <vector>

class AbstractChartSeries;

/**
 * The series that live in this process.
 *
 * A feeder may hold a pointer to a series that the undo history has deleted meanwhile. It asks here
 * before it touches the series, and keeps the series alive for as long as it holds a Reader.
 * Invariant: a series is entered from its constructor until leave(), in its destructor at the
 * latest.
 *
 * Reading is for each sample and leaving is rare, so each thread reads under a mutex of its own,
 * which it takes from no one, and leave() goes through those of all threads (a big-reader lock).
 */
class SeriesRegistry
{
public:
    static SeriesRegistry &instance();

    void enter(const AbstractChartSeries *series);

    /// Takes \p series out and returns when no Reader is held any more that has found it. A series
    /// that is out already is no error. Not while the calling thread holds a Reader.
    void leave(const AbstractChartSeries *series);

    /// Whether \p series lives. The answer holds for as long as the caller holds a Reader; on the
    /// GUI thread, which alone deletes series, until it deletes one.
    bool contains(const AbstractChartSeries *series);

    /// Takes the memory of a dead series, and frees it when some hundred more have died. Else the
    /// next series would often live at this very address, and those who feed the dead one would
    /// feed it, even while it is being constructed.
    void retire(void *memory);

    class Thread;

    /// Keeps all series alive while it exists. One thread may hold several: only its first takes
    /// the lock.
    class Reader
    {
    public:
        explicit Reader(const AbstractChartSeries *series);
        ~Reader();
        Q_DISABLE_COPY_MOVE(Reader)

        /// Whether the series lives, and stays alive for as long as this exists.
        bool lives() const { return m_lives; }

    private:
        Thread &m_thread; ///< The one that made this, and that alone may use it.
        bool m_lives;
    };

private:
    Thread *admit();
    void dismiss(const Thread *thread);

    QMutex m_mutex; ///< Guards all of this; nobody takes another lock or waits under it.
    QSet<const AbstractChartSeries *> m_series;
    std::atomic<quint64> m_departures{0}; ///< Calls of leave() so far; changed under m_mutex.
    QQueue<void *> m_retired;             ///< Oldest first.
    std::vector<std::shared_ptr<Thread>> m_threads; ///< All that have read.
};

/**
 * Deletes a series of the library's own: first its worker ends and every feeder has left it, so
 * that nothing calls the derived class while its destructor runs. Null does nothing. GUI thread,
 * without locks.
 */
void deleteSeries(AbstractChartSeries *series);
