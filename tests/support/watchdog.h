#pragma once

#include <QDir>
#include <QSemaphore>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <execinfo.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

/**
 * Ends the program when one of several parties, threads mostly, makes no progress any more, and
 * says before what every thread of the program does.
 *
 * Each party tells its progress by beat(), and by leave() that it is through. While the watchdog
 * lives it uses the signal SIGUSR1. A program that is linked with its symbols exported
 * (ENABLE_EXPORTS) gives their names.
 */
class Watchdog
{
public:
    using Duration = std::chrono::milliseconds;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr int Slowness = 4; ///< How much longer everything takes in this build.
#else
    static constexpr int Slowness = 1;
#endif

    /// \p parties name who is watched; \p patience is how long one may go without a beat.
    Watchdog(const QStringList &parties, Duration patience)
        : m_parties(parties)
        , m_patience(patience)
        , m_beats(std::size_t(parties.size()))
    {
        void *frame = nullptr;
        backtrace(&frame, 1); // loads what it needs, which a signal handler may not

        struct sigaction action = {};
        action.sa_handler = printOwnStack;
        action.sa_flags = SA_RESTART;
        sigaction(SIGUSR1, &action, &m_previous);
        m_thread = std::thread([this] { watch(); });
    }
    Q_DISABLE_COPY_MOVE(Watchdog)
    ~Watchdog()
    {
        m_isOver.release();
        m_thread.join();
        sigaction(SIGUSR1, &m_previous, nullptr);
    }

    /// To be called by that party alone.
    void beat(int party)
    {
        m_beats[std::size_t(party)].fetch_add(1, std::memory_order_relaxed);
    }

    /// The last beat of that party.
    void leave(int party)
    {
        m_beats[std::size_t(party)].store(Gone, std::memory_order_relaxed);
    }

private:
    using Clock = std::chrono::steady_clock;

    static constexpr quint64 Gone = ~quint64(0);
    static constexpr int LooksPerPatience = 20;

    struct Party
    {
        quint64 beats;
        Clock::time_point since; ///< When that number was first seen.
    };

    void watch()
    {
        std::vector<Party> seen(m_beats.size(), {0, Clock::now()});
        const int interval = int(m_patience.count()) / LooksPerPatience + 1;
        while (!m_isOver.tryAcquire(1, interval)) {
            for (std::size_t i = 0; i < seen.size(); ++i) {
                look(int(i), seen[i]);
            }
        }
    }

    void look(int index, Party &seen)
    {
        const quint64 beats = m_beats[std::size_t(index)].load(std::memory_order_relaxed);
        const Clock::time_point now = Clock::now();
        if (beats == Gone || beats != seen.beats) {
            seen = {beats, now};
        } else if (now - seen.since > m_patience) {
            std::fprintf(stderr, "Watchdog: %s makes no progress\n", qPrintable(m_parties[index]));
            printStacks();
            std::abort();
        }
    }

    static void printStacks()
    {
        const QStringList tasks =
            QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        const auto self = syscall(SYS_gettid);
        for (const QString &task : tasks) {
            const int id = task.toInt();
            if (id != self) {
                printStack(id);
            }
        }
    }

    static void printStack(int task)
    {
        constexpr auto Pause = std::chrono::milliseconds(10);
        constexpr int Pauses = 200; // a thread that does not answer within 2 s is passed over

        std::fprintf(stderr, "Thread %d:\n", task);
        s_isPrinted = false;
        syscall(SYS_tgkill, getpid(), task, SIGUSR1);
        for (int i = 0; i < Pauses && !s_isPrinted; ++i) {
            std::this_thread::sleep_for(Pause);
        }
    }

    static void printOwnStack(int)
    {
        constexpr int Depth = 64;
        void *frames[Depth];
        backtrace_symbols_fd(frames, backtrace(frames, Depth), STDERR_FILENO);
        s_isPrinted = true;
    }

    static inline std::atomic<bool> s_isPrinted{false};

    QStringList m_parties;
    Duration m_patience;
    std::vector<std::atomic<quint64>> m_beats;
    QSemaphore m_isOver;
    struct sigaction m_previous = {};
    std::thread m_thread;
};
