#include "support/programrun.h"

#include <QCoreApplication>
#include <QMutex>
#include <QReadWriteLock>
#include <QSemaphore>
#include <QTest>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

/*
 * Watches the watch: that the thread sanitizer sees races in programs of this repository, and what
 * Qt's locks and threads order. The scenes below are played by a child, which dies of its races.
 */

namespace {

/// Two threads that come at the very same moment pass each other unseen; of so many times, not all.
constexpr int Rounds = 1000;

volatile int s_counter = 0; ///< What the two threads of a scene share.

void count()
{
    s_counter = s_counter + 1;
}

void repeat(const std::function<void()> &call)
{
    for (int i = 0; i < Rounds; ++i) {
        call();
    }
}

/// Waits for the other thread to come here too, and orders nothing.
void meet()
{
    static std::atomic<int> arrivals{0};
    constexpr int Threads = 2;
    const int arrived = arrivals.fetch_add(1, std::memory_order_relaxed);
    const int all = (arrived / Threads + 1) * Threads;
    while (arrivals.load(std::memory_order_relaxed) < all) {
        QThread::yieldCurrentThread();
    }
}

/// Both threads live all the while: of one that has ended the sanitizer keeps no history.
void callBesideOther(const std::function<void()> &call)
{
    meet();
    call();
    meet();
}

/// Lets another thread and this one run at once, and waits for the other one.
void runBoth(const std::function<void()> &there, const std::function<void()> &here)
{
    const std::unique_ptr<QThread> other(QThread::create(callBesideOther, there));
    other->start();
    callBesideOther(here);
    other->wait();
}

void runTwice(const std::function<void()> &call)
{
    runBoth(call, call);
}

void countWith(const std::function<void()> &lock, const std::function<void()> &unlock)
{
    runTwice([&] {
        repeat([&] {
            lock();
            count();
            unlock();
        });
    });
}

void countUnguarded()
{
    countWith([] {}, [] {});
}

void countUnderReadLocks()
{
    QReadWriteLock lock;
    countWith([&] { lock.lockForRead(); }, [&] { lock.unlock(); });
}

/// Each thread has a mutex of its own, which guards nothing.
void countUnderDifferentMutexes()
{
    runTwice([] {
        repeat([] {
            QMutex own;
            const QMutexLocker locker(&own);
            count();
        });
    });
}

void lockInBothOrders()
{
    QMutex first;
    QMutex second;
    const auto lockBoth = [](QMutex &outer, QMutex &inner) {
        const QMutexLocker outerLocker(&outer);
        const QMutexLocker innerLocker(&inner);
    };
    lockBoth(first, second);
    lockBoth(second, first);
}

void countUnderMutex()
{
    QMutex mutex;
    countWith([&] { mutex.lock(); }, [&] { mutex.unlock(); });
}

void countUnderTriedMutex()
{
    QMutex mutex;
    countWith(
        [&] {
            while (!mutex.tryLock(1)) {
            }
        },
        [&] { mutex.unlock(); });
}

void countUnderRecursiveMutex()
{
    QRecursiveMutex mutex;
    countWith(
        [&] {
            mutex.lock();
            mutex.lock();
            mutex.unlock();
        },
        [&] { mutex.unlock(); });
}

void countUnderWriteLock()
{
    QReadWriteLock lock;
    countWith([&] { lock.lockForWrite(); }, [&] { lock.unlock(); });
}

/// The other thread reads while this one writes.
void readAndWrite()
{
    QReadWriteLock lock;
    int sum = 0;
    const auto read = [&] {
        const QReadLocker locker(&lock);
        sum += s_counter;
    };
    const auto write = [&] {
        const QWriteLocker locker(&lock);
        count();
    };
    runBoth([&] { repeat(read); }, [&] { repeat(write); });
}

void countUnderSemaphore()
{
    QSemaphore semaphore(1);
    countWith([&] { semaphore.acquire(); }, [&] { semaphore.release(); });
}

void countUnderTriedSemaphore()
{
    QSemaphore semaphore(1);
    countWith(
        [&] {
            while (!semaphore.tryAcquire(1, 1)) {
            }
        },
        [&] { semaphore.release(); });
}

void awaitCondition()
{
    QMutex mutex;
    QWaitCondition condition;
    const std::unique_ptr<QThread> other(QThread::create([&] {
        const QMutexLocker locker(&mutex);
        count();
        condition.wakeAll();
    }));
    const QMutexLocker locker(&mutex);
    other->start();
    while (s_counter == 0) {
        condition.wait(&mutex);
    }
    other->wait();
}

void readAfterThread()
{
    const std::unique_ptr<QThread> thread(QThread::create(count));
    thread->start();
    thread->wait();
    count();
}

void readAfterLookingForEnd()
{
    const std::unique_ptr<QThread> thread(QThread::create(count));
    thread->start();
    while (thread->isRunning()) {
        QThread::yieldCurrentThread();
    }
    count();
    thread->wait();
}

/// Counts, and then says so, in a thread of its own.
class Teller : public QThread
{
    Q_OBJECT

public:
    using QThread::QThread;
    ~Teller() override { wait(); }

signals:
    void counted();

protected:
    void run() override
    {
        count();
        emit counted();
    }
};

void readAfterQueuedSignal()
{
    Teller teller;
    QObject receiver;
    QObject::connect(&teller, &Teller::counted, &receiver, [] {
        count();
        QCoreApplication::quit();
    });
    teller.start();
    QCoreApplication::exec();
}

class Counter : public QThread
{
public:
    using QThread::QThread;
    ~Counter() override { wait(); }

protected:
    void run() override
    {
        callBesideOther([] { repeat(count); });
    }
};

void countBesideThread()
{
    Counter counter;
    counter.start();
    callBesideOther([] { repeat(count); });
}

/// The thread reads what may be gone.
void deleteBesideThread()
{
    const auto *const shared = new volatile int(0);
    runBoth([&] { repeat([&] { s_counter = *shared; }); }, [&] { delete shared; });
}

/// One block of memory is written as a whole by both.
void copyBesideThread()
{
    std::vector<char> target(Rounds);
    const std::vector<char> source(Rounds);
    runTwice([&] { repeat([&] { std::memcpy(target.data(), source.data(), source.size()); }); });
}

struct Scene
{
    const char *name;
    void (*play)();
    const char *report; ///< What the sanitizer says of it; empty for nothing.
};

constexpr const char *Race = "ThreadSanitizer: data race";

const Scene Scenes[] = {
    {"unguarded", countUnguarded, Race},
    {"unguarded, class of threads", countBesideThread, Race},
    {"deleted", deleteBesideThread, "ThreadSanitizer: "},
    {"copied", copyBesideThread, Race},
    {"read locks", countUnderReadLocks, Race},
    {"different mutexes", countUnderDifferentMutexes, Race},
    {"both orders", lockInBothOrders, "ThreadSanitizer: lock-order-inversion"},
    {"mutex", countUnderMutex, ""},
    {"tried mutex", countUnderTriedMutex, ""},
    {"recursive mutex", countUnderRecursiveMutex, ""},
    {"write lock", countUnderWriteLock, ""},
    {"read and write lock", readAndWrite, ""},
    {"semaphore", countUnderSemaphore, ""},
    {"tried semaphore", countUnderTriedSemaphore, ""},
    {"condition", awaitCondition, ""},
    {"end of a thread", readAfterThread, ""},
    {"look for the end of a thread", readAfterLookingForEnd, ""},
    {"queued signal", readAfterQueuedSignal, ""},
};

} // namespace

class TestRaceWatch : public QObject
{
    Q_OBJECT

private slots:
    void reportsRacesAndNothingElse_data();
    void reportsRacesAndNothingElse();
};

void TestRaceWatch::reportsRacesAndNothingElse_data()
{
    QTest::addColumn<QString>("report");
    for (const Scene &scene : Scenes) {
        QTest::newRow(scene.name) << QString(scene.report);
    }
}

void TestRaceWatch::reportsRacesAndNothingElse()
{
    QFETCH(const QString, report);
    const Outcome outcome =
        runProgram(QCoreApplication::applicationFilePath(), {"play", QTest::currentDataTag()});

    if (report.isEmpty()) {
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.exitCode, 0);
        return;
    }
    QVERIFY2(outcome.errors.contains(report), qPrintable(outcome.errors));
    QVERIFY(outcome.exitCode != 0);
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "play") == 0) {
        for (const Scene &scene : Scenes) {
            if (qstrcmp(argv[2], scene.name) == 0) {
                scene.play();
            }
        }
        return 0;
    }
    TestRaceWatch test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_racewatch.moc"
