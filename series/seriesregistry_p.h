#pragma once

#include <QQueue>
#include <QReadWriteLock>
#include <QSet>

class AbstractChartSeries;

/**
 * The series that live in this process.
 *
 * A feeder may hold a pointer to a series that the undo history has deleted meanwhile. It asks here
 * before it touches the series, and keeps the series alive for as long as it holds a Reader.
 * Invariant: a series is entered from its constructor until leave(), in its destructor at the
 * latest.
 */
class SeriesRegistry
{
public:
    static SeriesRegistry &instance();
    ~SeriesRegistry();

    void enter(const AbstractChartSeries *series);

    /// Takes \p series out and returns when no Reader is held any more. A series that is out
    /// already is no error.
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
    /// the lock. (Qt's recursive mode would allocate for each sample.)
    class Reader
    {
    public:
        Reader();
        ~Reader();
        Q_DISABLE_COPY_MOVE(Reader)

        /// As the registry's, for as long as this exists.
        bool contains(const AbstractChartSeries *series) const;

    private:
        Thread &m_thread; ///< The one that made this, and that alone may use it.
    };

private:
    QReadWriteLock m_lock;
    QSet<const AbstractChartSeries *> m_series; ///< Guarded by m_lock.
    quint64 m_departures = 0;                   ///< Calls of leave() so far. Guarded by m_lock.
    QQueue<void *> m_retired;                   ///< Oldest first. Guarded by m_lock.
};

/**
 * Deletes a series of the library's own: first its worker ends and every feeder has left it, so
 * that nothing calls the derived class while its destructor runs. Null does nothing. GUI thread,
 * without locks.
 */
void deleteSeries(AbstractChartSeries *series);
