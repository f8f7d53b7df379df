#pragma once

#include "quarvchart_export.h"

#include <QMutex>

/// The locks of this library in the order in which a thread may take them.
enum class LockRank {
    Points, ///< m_pointsMutex of a series.
    Values, ///< m_valuesMutex of a series.
    Axes    ///< The model's lock on the axes, the only one that a thread may take again.
};

/**
 * Ends the program when a thread takes locks in a wrong order, in debug builds.
 *
 * A wrong order hangs only when two threads meet, which may be never on the machine of whoever
 * wrote it. Here the first thread that does it is enough. Each thread keeps count of its own locks;
 * there is nothing to share.
 */
class QUARVCHART_EXPORT LockOrder
{
public:
#ifdef QT_NO_DEBUG
    static void enter(LockRank) {}
    static void leave(LockRank) {}
    static void expectNone() {}
#else
    /// To be called before a lock of this rank is taken, so that it tells before it hangs.
    static void enter(LockRank rank);

    static void leave(LockRank rank);

    /// To be called before the thread waits for another one, which may want any of the locks.
    static void expectNone();
#endif
};

/// A QMutex, locked and unlocked inline, which the entry of one sample does three times. The thread
/// sanitizer knows of Qt's locks only what is called.
#ifdef __SANITIZE_THREAD__
using InlineMutex = QMutex;
#else
using InlineMutex = QBasicMutex;
#endif

/// Holds a mutex of a series for its own lifetime, in its place of the order.
template <LockRank rank>
class RankedLocker
{
public:
    explicit RankedLocker(InlineMutex *mutex)
        : m_mutex(mutex)
    {
        LockOrder::enter(rank);
        m_mutex->lock();
    }
    ~RankedLocker()
    {
        m_mutex->unlock();
        LockOrder::leave(rank);
    }
    Q_DISABLE_COPY_MOVE(RankedLocker)

private:
    InlineMutex *m_mutex;
};

using PointsLocker = RankedLocker<LockRank::Points>;
using ValuesLocker = RankedLocker<LockRank::Values>;
