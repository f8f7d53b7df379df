#include "support/modelsetup.h"
#include "support/opendynamicmodel.h"

#include <QtTest>
#include <QUndoStack>

#include <cstdlib>
#include <memory>
#include <thread>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define COUNTS_BLOCKS
#endif

namespace {

/// Blocks of memory that this thread has asked for, be it by malloc() or by way of operator new.
thread_local qint64 s_blocks = 0;

} // namespace

#ifdef COUNTS_BLOCKS

// In the place of the C library's, for all libraries of the program. Its own ones have these names
// too, so nothing has to be looked up, which would allocate.
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);

void *malloc(size_t size)
{
    ++s_blocks;
    return __libc_malloc(size);
}
void *calloc(size_t count, size_t size)
{
    ++s_blocks;
    return __libc_calloc(count, size);
}
void *realloc(void *memory, size_t size)
{
    ++s_blocks;
    return __libc_realloc(memory, size);
}
}

#endif

namespace {

constexpr int WarmUp = 300;  // samples; each series has seen all of its Ys then
constexpr int Counted = 100; // samples
constexpr int Period = 50;   // samples until Y repeats
constexpr double WideWindow = 1e6;

using Model = std::unique_ptr<AbstractChartModel>;

template <typename Class>
Model withSeries(int count)
{
    auto model = std::make_unique<Class>();
    model->m_seriesEditable = false;
    model->m_settings.autoScaleY = true;
    model->applyChartSettings();
    for (int i = 0; i < count; ++i) {
        addSeries(*model, QString::number(i), {0.0, Period});
    }
    return model;
}

Model zoomed(int count)
{
    Model model = withSeries<OpenModel>(count);
    setZoomed(*model->m_axisX, 0.0, WideWindow);
    return model;
}

Model zoomedWithCommonScale(int count)
{
    Model model = zoomed(count);
    model->m_settings.individualScale = false;
    return model;
}

Model jumping(int count)
{
    Model model = withSeries<OpenDynamicModel>(count);
    model->m_axisX->assignRange(0.0, WideWindow);
    return model;
}

Model sliding(int count)
{
    auto model = withSeries<OpenDynamicModel>(count);
    static_cast<OpenDynamicModel &>(*model).setDynamicGrid(true);
    return model;
}

Model growing(int count)
{
    return withSeries<OpenModel>(count);
}

struct Kind
{
    const char *name;
    Model (*make)(int count);
    bool moves; ///< The X axis does, with each sample.
};

const Kind Kinds[] = {
    {"static, zoomed", zoomed, false},
    {"static, zoomed, common scale", zoomedWithCommonScale, false},
    {"dynamic, jumping", jumping, false},
    {"dynamic, sliding", sliding, true},
    {"static, growing", growing, true},
};

/// As many samples as asked for, from \p x on.
QList<ChartValue *> newSamples(double &x, int count)
{
    QList<ChartValue *> samples;
    samples.reserve(count);
    for (int i = 0; i < count; ++i) {
        samples.append(newValue(x, i % Period));
        x += 1.0;
    }
    return samples;
}

void enterOneByOne(AbstractChartModel &model, AbstractChartSeries *series,
                   const QList<ChartValue *> &samples)
{
    for (ChartValue *sample : samples) {
        model.addValue(series, sample);
    }
}

void enterAsBlock(AbstractChartModel &model, AbstractChartSeries *series,
                  const QList<ChartValue *> &samples)
{
    model.addValues(series, samples);
}

using Enter = void (*)(AbstractChartModel &model, AbstractChartSeries *series,
                       const QList<ChartValue *> &samples);

/// Blocks that the entry of samples takes, which have been made before. All series have had samples
/// until then, from this very thread.
qint64 blocksOf(AbstractChartModel &model, Enter enter)
{
    double x = Period;
    for (AbstractChartSeries *series : qAsConst(model.m_series)) {
        enter(model, series, newSamples(x, WarmUp));
    }
    const QList<ChartValue *> samples = newSamples(x, Counted);
    AbstractChartSeries *series = model.m_series.last();
    const qint64 before = s_blocks;
    enter(model, series, samples);
    return s_blocks - before;
}

} // namespace

Q_DECLARE_METATYPE(const Kind *)
Q_DECLARE_METATYPE(Enter)

/// The entry of a sample asks for the memory of the list's node, and for no more.
class TestEntryAllocations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void countsBlocks();
    void takesOneNodeForEachSample_data();
    void takesOneNodeForEachSample();
};

void TestEntryAllocations::initTestCase()
{
#ifndef COUNTS_BLOCKS
    QSKIP("Only glibc's own malloc can be counted; a sanitizer has another one in its place.");
#endif
}

void TestEntryAllocations::countsBlocks()
{
    const qint64 before = s_blocks;
    const std::unique_ptr<ChartValue> sample(newValue(0, 0));
    const qint64 forSample = s_blocks - before;
    ChartValueList list;
    list.append(sample.get());
    const qint64 forList = s_blocks - before - forSample;

    QCOMPARE(forSample, qint64(1));
    QCOMPARE(forList, qint64(2)); // with the first node comes the list's head
}

void TestEntryAllocations::takesOneNodeForEachSample_data()
{
    QTest::addColumn<const Kind *>("kind");
    QTest::addColumn<int>("series");
    QTest::addColumn<Enter>("enter");
    QTest::addColumn<bool>("onThread");

    for (const Kind &kind : Kinds) {
        for (const int series : {1, 10}) {
            for (const bool onThread : {false, true}) {
                const char *where = onThread ? "a feeder's thread" : "the GUI thread";
                QTest::addRow("%s, %d series, one by one on %s", kind.name, series, where)
                    << &kind << series << Enter(enterOneByOne) << onThread;
                QTest::addRow("%s, %d series, as a block on %s", kind.name, series, where)
                    << &kind << series << Enter(enterAsBlock) << onThread;
            }
        }
    }
}

void TestEntryAllocations::takesOneNodeForEachSample()
{
    QFETCH(const Kind *, kind);
    QFETCH(int, series);
    QFETCH(Enter, enter);
    QFETCH(bool, onThread);
    const Model model = kind->make(series);
    QVERIFY(settled(*model));
    const QString before = axisText(*model->m_axisX);

    qint64 blocks = 0;
    if (onThread) {
        std::thread([&] { blocks = blocksOf(*model, enter); }).join();
    } else {
        blocks = blocksOf(*model, enter);
    }

    QCOMPARE(blocks, qint64(Counted));
    QCOMPARE(axisText(*model->m_axisX) != before, kind->moves);
    QCOMPARE(model->m_undoStack->count(), 0);
}

QTEST_MAIN(TestEntryAllocations)
#include "tst_entryallocations.moc"
