#include "series/sampledepot_p.h"

#include "support/nomemory.h"
#include "support/programrun.h"

#include <QtTest>

#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace {

using Cells = std::vector<void *>;

constexpr int CellCount = SampleSlab::cellCount();
constexpr int SpareLimit = SampleDepot::SpareLimit;

Cells taken(SampleDepot &depot, int count)
{
    Cells cells(size_t(count), nullptr);
    cells.resize(size_t(depot.take(cells.data(), count)));
    return cells;
}

void give(SampleDepot &depot, const Cells &cells)
{
    depot.give(cells.data(), int(cells.size()));
}

/// Every second one.
Cells halfOf(const Cells &cells)
{
    Cells half;
    for (size_t i = 0; i < cells.size(); i += 2) {
        half.push_back(cells[i]);
    }
    return half;
}

std::ptrdiff_t distance(void *from, void *to)
{
    return static_cast<char *>(to) - static_cast<char *>(from);
}

bool isAligned(void *cell)
{
    return reinterpret_cast<std::uintptr_t>(cell) % SampleSlab::CellSize == 0;
}

/// Fills a cell with what tells it from all others.
void mark(void *cell)
{
    std::fill_n(static_cast<void **>(cell), SampleSlab::CellSize / sizeof(void *), cell);
}

bool isMarked(void *cell)
{
    void **words = static_cast<void **>(cell);
    return std::all_of(words, words + SampleSlab::CellSize / sizeof(void *),
                       [cell](void *word) { return word == cell; });
}

/// What this program does as its own child.
int freeTwice()
{
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    SampleDepot depot;
    const Cells cells = taken(depot, 2);
    depot.give(&cells[0], 1);
    depot.give(&cells[0], 1);
    return 0;
}

} // namespace

class TestSampleDepot : public QObject
{
    Q_OBJECT

private slots:
    void freshCellsFollowEachOther();
    void slabLosesLittleToItsHeader();
    void freedCellsAreTakenInOrder();
    void usesUpOneSlabBeforeTheNext();
    void emptiesSlabsOfTheOldestCells();
    void keepsFewUnusedSlabs();
    void keepsASlabForASingleCell();
    void takesWhatTheSystemHasLeft();
    void endsTheProgramWhereACellIsFreedTwice();
    void agreesWithAPlainSet_data();
    void agreesWithAPlainSet();
    void servesManyThreads();
};

void TestSampleDepot::freshCellsFollowEachOther()
{
    SampleDepot depot;
    Cells cells;
    while (int(cells.size()) < 2 * CellCount) {
        const Cells batch = taken(depot, 64);
        cells.insert(cells.end(), batch.begin(), batch.end());
    }

    int slabs = 1;
    for (size_t i = 1; i < cells.size(); ++i) {
        if (SampleSlab::of(cells[i]) == SampleSlab::of(cells[i - 1])) {
            QCOMPARE(distance(cells[i - 1], cells[i]), std::ptrdiff_t(SampleSlab::CellSize));
        } else {
            ++slabs;
        }
    }
    QCOMPARE(slabs, 3); // two batches of 64 go across their ends
    QCOMPARE(depot.slabCount(), 3);
    QCOMPARE(depot.cellsOut(), qint64(cells.size()));
    give(depot, cells);
    QCOMPARE(depot.cellsOut(), qint64(0));
}

void TestSampleDepot::slabLosesLittleToItsHeader()
{
    constexpr double Places = double(SampleSlab::Size) / SampleSlab::CellSize;
    static_assert(CellCount < Places && CellCount > 0.99 * Places);
    SampleDepot depot;

    const Cells cells = taken(depot, CellCount);

    // The last one is the slab's last, too.
    QCOMPARE(depot.slabCount(), 1);
    QCOMPARE(distance(SampleSlab::of(cells.back()), cells.back()),
             std::ptrdiff_t(SampleSlab::Size - SampleSlab::CellSize));
    give(depot, cells);
}

void TestSampleDepot::freedCellsAreTakenInOrder()
{
    SampleDepot depot;
    const Cells cells = taken(depot, CellCount);
    const Cells half = halfOf(cells);
    Cells shuffled = half;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    give(depot, shuffled);

    QVERIFY(taken(depot, int(half.size())) == half);

    QCOMPARE(depot.slabCount(), 1);
    give(depot, cells);
}

void TestSampleDepot::usesUpOneSlabBeforeTheNext()
{
    SampleDepot depot;
    const Cells first = taken(depot, CellCount);
    const Cells second = taken(depot, CellCount / 2);
    give(depot, halfOf(first));

    const Cells rest = taken(depot, CellCount - CellCount / 2);
    for (void *cell : rest) {
        QVERIFY(SampleSlab::of(cell) == SampleSlab::of(second.front()));
    }

    const Cells reused = taken(depot, int(halfOf(first).size()));
    QVERIFY(reused == halfOf(first));
    QCOMPARE(depot.slabCount(), 2);
    give(depot, first);
    give(depot, second);
    give(depot, rest);
}

// As a live chart does it: the newest comes, the oldest goes.
void TestSampleDepot::emptiesSlabsOfTheOldestCells()
{
    constexpr int Alive = 20 * CellCount;
    SampleDepot depot;
    Cells ring = taken(depot, Alive);
    for (int i = 0; i < 3 * Alive; ++i) {
        void *&oldest = ring[size_t(i % Alive)];
        depot.give(&oldest, 1);
        depot.take(&oldest, 1);
    }

    QVERIFY(depot.slabCount() <= 21);
    give(depot, ring);
}

void TestSampleDepot::keepsFewUnusedSlabs()
{
    constexpr int Slabs = 3 * SpareLimit;
    SampleDepot depot;
    Cells cells = taken(depot, Slabs * CellCount);
    QCOMPARE(depot.slabCount(), Slabs);
    std::shuffle(cells.begin(), cells.end(), std::mt19937(1));

    give(depot, cells);

    QCOMPARE(depot.slabCount(), SpareLimit);

    // And they are used before the system is asked again.
    const Cells again = taken(depot, SpareLimit * CellCount);
    QCOMPARE(depot.slabCount(), SpareLimit);
    give(depot, again);
    QCOMPARE(depot.slabCount(), SpareLimit);
}

void TestSampleDepot::keepsASlabForASingleCell()
{
    constexpr int Slabs = 2 * SpareLimit;
    SampleDepot depot;
    Cells cells = taken(depot, Slabs * CellCount);
    void *kept = cells[CellCount / 2];
    mark(kept);
    cells.erase(cells.begin() + CellCount / 2);

    give(depot, cells);

    QCOMPARE(depot.slabCount(), SpareLimit + 1);
    QCOMPARE(depot.cellsOut(), qint64(1));
    QVERIFY(isMarked(kept));
    depot.give(&kept, 1);
    QCOMPARE(depot.slabCount(), SpareLimit);
}

void TestSampleDepot::takesWhatTheSystemHasLeft()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("A sanitizer needs memory for itself.");
#endif
    SampleDepot depot;
    Cells cells(2 * CellCount, nullptr);
    int count = depot.take(cells.data(), 10);
    int last = 0;
    {
        const NoMemory noMemory;
        count += depot.take(cells.data() + count, 2 * CellCount - count);
        last = depot.take(cells.data(), 1);
    }
    QCOMPARE(count, CellCount);
    QCOMPARE(last, 0);
    QCOMPARE(depot.cellsOut(), qint64(CellCount));
    QCOMPARE(depot.take(cells.data() + count, 1), 1);
    depot.give(cells.data(), count + 1);
}

void TestSampleDepot::endsTheProgramWhereACellIsFreedTwice()
{
    const Outcome outcome = runProgram(QCoreApplication::applicationFilePath(), {"free twice"});

    QVERIFY(outcome.crashed);
    QVERIFY2(outcome.errors.contains("A sample is freed twice"), qPrintable(outcome.errors));
}

void TestSampleDepot::agreesWithAPlainSet_data()
{
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("largest");

    QTest::newRow("some cells, one by one") << 1000 << 1;
    QTest::newRow("up to some slabs, by batches") << 5 * CellCount << 64;
    QTest::newRow("up to many slabs, by more than a slab") << 40 * CellCount << 2 * CellCount;
}

void TestSampleDepot::agreesWithAPlainSet()
{
    QFETCH(int, limit);
    QFETCH(int, largest);
    constexpr int Steps = 30000;
    constexpr int MostMoved = 600000; // cells, in all steps
    std::mt19937 random(1);
    SampleDepot depot;
    std::set<void *> twin;
    Cells out; // the same, in an order from which any can be drawn
    int moved = 0;
    for (int step = 0; step < Steps && moved < MostMoved; ++step) {
        const int count = 1 + int(random() % unsigned(largest));
        moved += count;
        // Waves, so that slabs fill and empty.
        const bool isRising = moved / limit % 2 == 0;
        const QByteArray place = "step " + QByteArray::number(step);
        if (random() % 4 == 0 ? !isRising : isRising) {
            for (void *cell : taken(depot, count)) {
                QVERIFY2(isAligned(cell), place);
                QVERIFY2(twin.insert(cell).second, place);
                mark(cell);
                out.push_back(cell);
            }
        } else {
            Cells back;
            while (int(back.size()) < count && !out.empty()) {
                std::swap(out[random() % out.size()], out.back());
                QVERIFY2(isMarked(out.back()), place);
                back.push_back(out.back());
                twin.erase(out.back());
                out.pop_back();
            }
            give(depot, back);
        }
        QVERIFY2(depot.cellsOut() == qint64(twin.size()), place);
        QVERIFY2(qint64(depot.slabCount()) * CellCount >= qint64(twin.size()), place);
    }
    give(depot, out);
    QVERIFY(depot.slabCount() <= SpareLimit);
}

void TestSampleDepot::servesManyThreads()
{
    constexpr int Rounds = 500;
    SampleDepot depot;
    bool isWhole[4] = {true, true, true, true};
    std::vector<std::thread> threads;
    for (bool &whole : isWhole) {
        threads.emplace_back([&depot, &whole] {
            std::mt19937 random(1);
            for (int i = 0; i < Rounds; ++i) {
                const Cells cells = taken(depot, 1 + int(random() % 1000));
                std::for_each(cells.begin(), cells.end(), mark);
                whole = whole && std::all_of(cells.begin(), cells.end(), isMarked);
                give(depot, cells);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }

    QVERIFY(std::all_of(std::begin(isWhole), std::end(isWhole), [](bool whole) { return whole; }));
    QCOMPARE(depot.cellsOut(), qint64(0));
    QVERIFY(depot.slabCount() <= SpareLimit);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "free twice") == 0) {
        return freeTwice();
    }
    TestSampleDepot test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sampledepot.moc"
