#include "series/samplepool_p.h"

#include "series/sampledepot_p.h"
#include "support/programrun.h"

#include <QtTest>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

constexpr int CellCount = SampleSlab::cellCount();
constexpr int MostKept = 128; // cells that a thread keeps for itself

using Cells = std::vector<void *>;

Cells allocated(int count)
{
    Cells cells(size_t(count), nullptr);
    std::generate(cells.begin(), cells.end(), SamplePool::allocate);
    return cells;
}

void freeAll(const Cells &cells)
{
    std::for_each(cells.begin(), cells.end(), SamplePool::free);
}

/// Fills a cell with a number.
void mark(void *cell, quint64 number)
{
    std::fill_n(static_cast<quint64 *>(cell), SampleSlab::CellSize / sizeof(number), number);
}

bool isMarked(void *cell, quint64 number)
{
    const quint64 *words = static_cast<quint64 *>(cell);
    return std::all_of(words, words + SampleSlab::CellSize / sizeof(number),
                       [number](quint64 word) { return word == number; });
}

/// Hands cells from one thread to another, by hundreds.
class Belt
{
public:
    void put(Cells cells)
    {
        {
            const std::lock_guard<std::mutex> locker(m_mutex);
            m_loads.push_back(std::move(cells));
        }
        m_hasLoad.notify_one();
    }

    Cells take()
    {
        std::unique_lock<std::mutex> locker(m_mutex);
        m_hasLoad.wait(locker, [this] { return !m_loads.empty(); });
        Cells cells = std::move(m_loads.back());
        m_loads.pop_back();
        return cells;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_hasLoad;
    std::vector<Cells> m_loads; ///< Guarded by m_mutex.
};

/// Frees and allocates in its destructor, which may be the last that a thread or program does.
class LateUser
{
public:
    ~LateUser()
    {
        SamplePool::free(m_cell);
        freeAll(allocated(2 * MostKept));
        if (m_exitCode != 0) {
            std::_Exit(m_exitCode);
        }
    }

    void *m_cell = nullptr;
    int m_exitCode = 0;
};

constexpr int LateExitCode = 42;

/// What this program does as its own child: the static object outlives the main thread's cache.
int freeAtExit()
{
    static LateUser late;
    late.m_exitCode = LateExitCode;
    late.m_cell = SamplePool::allocate();
    return 1;
}

/// Allocates and frees at random and compares with a set of what must be allocated. Returns whether
/// all was right.
bool agreesWithPlainSet(unsigned seed)
{
    constexpr int Steps = 60000;
    constexpr int Wave = 5000; // steps in which more is allocated than freed, and as many back
    std::mt19937 random(seed);
    std::set<void *> twin;
    Cells out;
    bool isRight = true;
    for (int step = 0; step < Steps; ++step) {
        const bool isRising = step / Wave % 2 == 0;
        if (out.empty() || (random() % 8 == 0 ? !isRising : isRising)) {
            void *cell = SamplePool::allocate();
            isRight = isRight && twin.insert(cell).second;
            mark(cell, reinterpret_cast<quintptr>(cell) ^ seed);
            out.push_back(cell);
            continue;
        }
        std::swap(out[random() % out.size()], out.back());
        void *cell = out.back();
        isRight = isRight && isMarked(cell, reinterpret_cast<quintptr>(cell) ^ seed);
        twin.erase(cell);
        out.pop_back();
        SamplePool::free(cell);
    }
    freeAll(out);
    return isRight;
}

} // namespace

class TestSamplePool : public QObject
{
    Q_OBJECT

private slots:
    void cellsOfAFreshSlabFollowEachOther();
    void freedCellIsTheNextToBeAllocated();
    void keepsFewCellsForAThread();
    void givesMemoryBack();
    void threadFreesWhatAnotherHasAllocated();
    void endingThreadGivesItsCellsBack();
    void endedThreadsStillFree();
    void staticObjectsStillFree();
    void agreesWithAPlainSetInEachThread();
};

void TestSamplePool::cellsOfAFreshSlabFollowEachOther()
{
    Cells before;
    for (const int slabs = SamplePool::slabCount(); SamplePool::slabCount() == slabs;) {
        before.push_back(SamplePool::allocate());
    }
    const Cells batch = allocated(MostKept); // what comes from the slab before
    const Cells cells = allocated(CellCount / 2);

    for (size_t i = 1; i < cells.size(); ++i) {
        void *next = static_cast<char *>(cells[i - 1]) + SampleSlab::CellSize;
        QCOMPARE(cells[i], next);
    }
    freeAll(before);
    freeAll(batch);
    freeAll(cells);
}

void TestSamplePool::freedCellIsTheNextToBeAllocated()
{
    void *cell = SamplePool::allocate();
    for (int i = 0; i < 3 * MostKept; ++i) {
        SamplePool::free(cell);
        QCOMPARE(SamplePool::allocate(), cell);
    }
    SamplePool::free(cell);
}

void TestSamplePool::keepsFewCellsForAThread()
{
    const qint64 before = SamplePool::cellsOut();
    for (const int count : {1, MostKept, 1000, 100000}) {
        const Cells cells = allocated(count);
        QVERIFY(SamplePool::cellsOut() >= count);
        QVERIFY(SamplePool::cellsOut() <= before + count + MostKept);
        freeAll(cells);
        QVERIFY(SamplePool::cellsOut() <= before + MostKept);
    }
}

void TestSamplePool::givesMemoryBack()
{
    constexpr int Millions = 3000000;
    const int before = SamplePool::slabCount();

    const Cells cells = allocated(Millions);
    QVERIFY(SamplePool::slabCount() >= Millions / CellCount);
    freeAll(cells);

    QVERIFY(SamplePool::slabCount() <= before + SampleDepot::SpareLimit);
}

void TestSamplePool::threadFreesWhatAnotherHasAllocated()
{
    constexpr int Loads = 1000;
    constexpr int LoadSize = 100;
    const qint64 before = SamplePool::cellsOut();
    Belt belt;
    bool isWhole = true;

    std::thread producer([&belt] {
        for (int i = 0; i < Loads; ++i) {
            Cells cells = allocated(LoadSize);
            for (void *cell : cells) {
                mark(cell, reinterpret_cast<quintptr>(cell));
            }
            belt.put(std::move(cells));
        }
    });
    std::thread consumer([&belt, &isWhole] {
        for (int i = 0; i < Loads; ++i) {
            for (void *cell : belt.take()) {
                isWhole = isWhole && isMarked(cell, reinterpret_cast<quintptr>(cell));
                mark(cell, 0);
                SamplePool::free(cell);
            }
        }
    });
    producer.join();
    consumer.join();

    QVERIFY(isWhole);
    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestSamplePool::endingThreadGivesItsCellsBack()
{
    const qint64 before = SamplePool::cellsOut();
    qint64 within = 0;

    std::thread([&within] {
        freeAll(allocated(10));
        within = SamplePool::cellsOut();
    }).join();

    QVERIFY(within > before);
    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestSamplePool::endedThreadsStillFree()
{
    const qint64 before = SamplePool::cellsOut();

    std::thread([] {
        static thread_local LateUser late; // made before the cache, and so destroyed after it
        late.m_cell = SamplePool::allocate();
    }).join();

    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestSamplePool::staticObjectsStillFree()
{
    const Outcome outcome = runProgram(QCoreApplication::applicationFilePath(), {"free at exit"});

    QVERIFY2(outcome.exitCode == LateExitCode, qPrintable(outcome.errors));
}

void TestSamplePool::agreesWithAPlainSetInEachThread()
{
    const qint64 before = SamplePool::cellsOut();
    bool isRight[4] = {};
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 4; ++i) {
        threads.emplace_back([i, &isRight] { isRight[i] = agreesWithPlainSet(i + 1); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }

    for (int i = 0; i < 4; ++i) {
        QVERIFY2(isRight[i], qPrintable(QString("seed %1").arg(i + 1)));
    }
    QCOMPARE(SamplePool::cellsOut(), before);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "free at exit") == 0) {
        return freeAtExit();
    }
    TestSamplePool test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_samplepool.moc"
