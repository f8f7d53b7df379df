#include "series/chartvalue.h"

#include "series/samplepool_p.h"
#include "support/nomemory.h"

#include <QtTest>

#include <algorithm>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

static_assert(std::is_aggregate_v<ChartValue>);
static_assert(std::is_standard_layout_v<ChartValue>);
static_assert(std::is_trivially_copyable_v<ChartValue>);
static_assert(std::is_trivially_destructible_v<ChartValue>);
static_assert(!std::is_polymorphic_v<ChartValue>);
static_assert(sizeof(ChartValue) == 32);

namespace {

constexpr int MostKept = 128; // cells that a thread keeps for itself

/// What an application may derive for its own use.
struct NamedValue : ChartValue
{
    const char *name = "";
};

/// Makes records until there is no memory for them, but at most as many as \p records has room for.
template <typename Make>
void makeUntilThereIsNoMemory(std::vector<ChartValue *> &records, Make make)
{
    const NoMemory noMemory;
    while (records.size() < records.capacity()) {
        ChartValue *record = make();
        if (!record) {
            return;
        }
        records.push_back(record);
    }
}

bool isDefault(const ChartValue &value)
{
    return value.x == 0.0 && value.y == 0.0 && value.state == 0 && value.expireTime == qInf();
}

} // namespace

class TestChartValue : public QObject
{
    Q_OBJECT

private slots:
    void beginsWithDefaults();
    void isMadeInAnyPlace();
    void isTightInMemory();
    void leavesArraysToTheHeap();
    void leavesWhatIsDerivedToTheHeap();
    void deletesNull();
    void tellsOfNoMemory();
};

void TestChartValue::beginsWithDefaults()
{
    const std::unique_ptr<ChartValue> plain(new ChartValue{});
    const std::unique_ptr<ChartValue> quiet(new (std::nothrow) ChartValue{});
    const auto made = std::make_unique<ChartValue>();
    const std::unique_ptr<ChartValue> filled(new ChartValue{1.0, 2.0, 3, 4.0});

    QVERIFY(isDefault(*plain));
    QVERIFY(isDefault(*quiet));
    QVERIFY(isDefault(*made));
    QCOMPARE(filled->x, 1.0);
    QCOMPARE(filled->y, 2.0);
    QCOMPARE(filled->state, 3);
    QCOMPARE(filled->expireTime, 4.0);
}

void TestChartValue::isMadeInAnyPlace()
{
    const qint64 before = SamplePool::cellsOut();
    alignas(ChartValue) unsigned char place[sizeof(ChartValue)];

    auto *value = new (place) ChartValue{1.0, 2.0};

    QCOMPARE(static_cast<void *>(value), static_cast<void *>(place));
    QCOMPARE(value->y, 2.0);
    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestChartValue::isTightInMemory()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("A sanitizer gets each record by itself.");
#endif
    constexpr int Count = 10000;
    const qint64 before = SamplePool::cellsOut();
    std::vector<std::unique_ptr<ChartValue>> records;
    int neighbours = 0;
    for (int i = 0; i < Count; ++i) {
        records.emplace_back(i % 2 ? new ChartValue{} : new (std::nothrow) ChartValue{});
        if (i > 0 && records[size_t(i)].get() == records[size_t(i) - 1].get() + 1) {
            ++neighbours;
        }
    }

    QVERIFY(SamplePool::cellsOut() >= before - MostKept + Count);
    QVERIFY(SamplePool::cellsOut() <= before + MostKept + Count);
    QVERIFY2(neighbours > Count - MostKept - 10, qPrintable(QString::number(neighbours)));
    records.clear();
    QVERIFY(SamplePool::cellsOut() <= before + MostKept);
}

void TestChartValue::leavesArraysToTheHeap()
{
    const qint64 before = SamplePool::cellsOut();

    const std::unique_ptr<ChartValue[]> values(new ChartValue[1000]);

    QVERIFY(std::all_of(values.get(), values.get() + 1000, isDefault));
    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestChartValue::leavesWhatIsDerivedToTheHeap()
{
    static_assert(sizeof(NamedValue) > sizeof(ChartValue));
    const qint64 before = SamplePool::cellsOut();
    std::vector<std::unique_ptr<NamedValue>> values;
    for (int i = 0; i < 1000; ++i) {
        values.emplace_back(i % 2 ? new NamedValue : new (std::nothrow) NamedValue);
    }

    QVERIFY(isDefault(*values.back()));
    QCOMPARE(SamplePool::cellsOut(), before);
    values.clear();
    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestChartValue::deletesNull()
{
    const qint64 before = SamplePool::cellsOut();
    ChartValue *null = nullptr;

    delete null;
    ChartValue::operator delete(null, sizeof(ChartValue)); // which a compiler may call for it

    QCOMPARE(SamplePool::cellsOut(), before);
}

void TestChartValue::tellsOfNoMemory()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("A sanitizer needs memory for itself.");
#endif
    std::vector<ChartValue *> records;
    records.reserve(1000000);

    makeUntilThereIsNoMemory(records, [] { return new (std::nothrow) ChartValue{}; });
    const size_t first = records.size();
    bool isThrown = false;
    makeUntilThereIsNoMemory(records, [&isThrown]() -> ChartValue * {
        try {
            return new ChartValue{};
        } catch (const std::bad_alloc &) {
            isThrown = true;
            return nullptr;
        }
    });

    QVERIFY(first < records.capacity());
    QCOMPARE(records.size(), first);
    QVERIFY(isThrown);
    const std::unique_ptr<ChartValue> again(new ChartValue{}); // memory is back
    QVERIFY(isDefault(*again));
    qDeleteAll(records);
}

QTEST_APPLESS_MAIN(TestChartValue)
#include "tst_chartvalue.moc"
