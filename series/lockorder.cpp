#include "series/lockorder_p.h"

#ifndef QT_NO_DEBUG

namespace {

constexpr int RankCount = 3;

/// Locks that this thread holds, by rank.
thread_local int s_held[RankCount] = {};

const char *const Names[RankCount] = {"m_pointsMutex", "m_valuesMutex", "the lock on the axes"};

} // namespace

void LockOrder::enter(LockRank rank)
{
    const int own = int(rank);
    for (int later = own + 1; later < RankCount; ++later) {
        if (s_held[later] > 0) {
            qFatal("Lock order: %s is taken under %s", Names[own], Names[later]);
        }
    }
    if (rank != LockRank::Axes && s_held[own] > 0) {
        qFatal("Lock order: %s is taken under another one", Names[own]);
    }
    ++s_held[own];
}

void LockOrder::leave(LockRank rank)
{
    --s_held[int(rank)];
}

void LockOrder::expectNone()
{
    for (int rank = 0; rank < RankCount; ++rank) {
        if (s_held[rank] > 0) {
            qFatal("Lock order: a thread waits for another one under %s", Names[rank]);
        }
    }
}

#endif
