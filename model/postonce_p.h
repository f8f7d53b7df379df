#pragma once

#include <QMetaObject>
#include <QObject>

#include <atomic>

/// Runs \p call on the receiver's thread, unless such a call is on its way already.
template <typename Call>
void postOnce(QObject *receiver, std::atomic<bool> &posted, Call call)
{
    if (posted.exchange(true)) {
        return;
    }
    const auto run = [&posted, call] {
        posted = false;
        call();
    };
    QMetaObject::invokeMethod(receiver, run, Qt::QueuedConnection);
}
