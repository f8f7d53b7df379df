#pragma once

#include "series/handover_p.h"

#include <QMetaObject>
#include <QObject>

#include <atomic>

/// Runs \p call on the receiver's thread, unless such a call is on its way already.
template <typename Call>
void postOnce(QObject *receiver, std::atomic<bool> &posted, Call call)
{
    handOver(&posted);
    if (posted.exchange(true)) {
        return;
    }
    const auto run = [&posted, call] {
        takeOver(&posted);
        posted = false;
        call();
    };
    QMetaObject::invokeMethod(receiver, run, Qt::QueuedConnection);
}
