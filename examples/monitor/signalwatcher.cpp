#include "signalwatcher.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr int WatchedSignals[] = {SIGINT, SIGTERM};

volatile sig_atomic_t s_event = -1; // an eventfd; negative if there is none

/// Writing to a descriptor is about all that a signal handler may do.
void handleSignal(int)
{
    const int error = errno;
    const quint64 one = 1;
    const ssize_t written = write(s_event, &one, sizeof one);
    Q_UNUSED(written) // It fails only if nobody has read the one before.
    errno = error;
}

} // namespace

SignalWatcher::SignalWatcher(QObject *parent)
    : QObject(parent)
{
    s_event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (s_event < 0) {
        return; // The signals end the program as they always do.
    }
    auto *notifier = new QSocketNotifier(s_event, QSocketNotifier::Read, this);
    connect(notifier, SIGNAL(activated(int)), SLOT(slotReadable()));
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART);
    for (int number : WatchedSignals) {
        sigaction(number, &action, nullptr);
    }
}

SignalWatcher::~SignalWatcher()
{
    for (int number : WatchedSignals) {
        std::signal(number, SIG_DFL);
    }
    if (s_event >= 0) {
        close(s_event);
    }
}

void SignalWatcher::slotReadable()
{
    quint64 count = 0;
    if (read(s_event, &count, sizeof count) == ssize_t(sizeof count)) {
        emit interrupted();
    }
}
