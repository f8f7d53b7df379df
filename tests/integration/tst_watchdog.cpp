#include "support/watchdog.h"

#include "support/programrun.h"

#include <QMutex>
#include <QtTest>

#include <sys/resource.h>

namespace {

const QString HangArgument = "hang";
constexpr Watchdog::Duration Patience(1000 * Watchdog::Slowness);

} // namespace

/// The watchdog of the tests with threads, which else nobody would ever hear.
class TestWatchdog : public QObject
{
    Q_OBJECT

private slots:
    void isSilentWhileAllMakeProgress();
    void tellsWhereAProgramHangs();

public:
    [[noreturn]] static void hang();
    [[gnu::noinline]] static void waitForEver(QMutex &mutex);
};

/// What this program does as its own child: of two threads one waits for what never comes.
void TestWatchdog::hang()
{
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    Watchdog watchdog({"first", "second"}, Patience);
    QMutex mutex;
    mutex.lock();
    std::thread second([&] {
        watchdog.beat(1);
        waitForEver(mutex);
    });
    while (true) {
        watchdog.beat(0);
        std::this_thread::yield();
    }
}

/// To be found by its name.
void TestWatchdog::waitForEver(QMutex &mutex)
{
    mutex.lock();
    mutex.unlock();
}

void TestWatchdog::isSilentWhileAllMakeProgress()
{
    Watchdog watchdog({"present", "gone"}, Patience);
    watchdog.leave(1);

    const QDeadlineTimer longerThanPatience(3 * Patience / 2);
    while (!longerThanPatience.hasExpired()) {
        watchdog.beat(0);
        std::this_thread::yield();
    }
}

void TestWatchdog::tellsWhereAProgramHangs()
{
    const Outcome outcome = runProgram(QCoreApplication::applicationFilePath(), {HangArgument});

    QVERIFY(outcome.crashed);
    QVERIFY2(outcome.errors.startsWith("Watchdog: second makes no progress\n"),
             qPrintable(outcome.errors));
    QVERIFY(outcome.errors.count("Thread ") >= 2); // the thread sanitizer adds one of its own
#ifndef __SANITIZE_THREAD__ // which keeps signals from a thread that waits within Qt
    QVERIFY2(outcome.errors.contains("waitForEver"), qPrintable(outcome.errors));
#endif
}

int main(int argc, char *argv[])
{
    if (argc == 2 && argv[1] == HangArgument) {
        TestWatchdog::hang();
    }
    QCoreApplication application(argc, argv);
    TestWatchdog test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_watchdog.moc"
