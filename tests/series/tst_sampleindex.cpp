#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "support/indexof.h"
#include "support/openmodel.h"
#include "support/plainseries.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>
#include <iterator>
#include <list>
#include <memory>

namespace {

const double Infinity = qInf();
const double NaN = qQNaN();
constexpr double Due = 0.0;        // an expiry time that has passed
constexpr double FarFuture = 1e12; // one that has not

constexpr int RejectedState = 7; // no sample with it is valid
constexpr int AllowedState = 8;  // every sample with it is valid, even a NaN

bool isValidRecord(const ChartValue &value)
{
    if (value.state == RejectedState || value.state == AllowedState) {
        return value.state == AllowedState;
    }
    return qIsFinite(value.y) && qIsFinite(value.x);
}

/// A series with the range [0, 100] for X and [0, 10] for Y that counts what it is asked.
class IndexedSeries : public PlainSeries
{
public:
    IndexedSeries()
    {
        m_axis.m_max = 100.0;
        m_axisX = &m_axis;
        m_axisY->m_max = 10.0;
    }
    bool isValid(const ChartValue *value) const override
    {
        ++m_asked;
        return value && isValidRecord(*value);
    }

    /// Calls of isValid() since the last time.
    int takeAsked() { return std::exchange(m_asked, 0); }

    mutable int m_asked = 0;

private:
    HorizontalChartAxis m_axis;
};

/// A list of samples, with null entries.
using Samples = QList<ChartValue *>;

void insert(AbstractChartSeries &series, const Samples &samples)
{
    QQueue<ChartValue *> queue;
    queue.append(samples);
    series.insertValues(queue);
    QVERIFY(queue.isEmpty());
}

/// Samples with x and y both from \p from up to \p to, without it.
Samples ramp(int from, int to)
{
    Samples samples;
    for (int x = from; x < to; ++x) {
        samples.append(newValue(x, x));
    }
    return samples;
}

ChartValue *valueAt(const AbstractChartSeries &series, int number)
{
    return *std::next(series.m_values.constBegin(), number);
}

/// The rules of the store followed to the letter, on copies of the samples.
class PlainStore
{
public:
    void append(const Samples &samples)
    {
        for (const ChartValue *value : samples) {
            if (value) {
                updateExtremes(*m_records.insert(m_records.end(), {*value, value}));
            }
        }
    }

    void merge(Samples queue)
    {
        if (queue.isEmpty()) {
            return;
        }
        if (m_records.empty() || descends()) {
            append(queue);
            return;
        }
        auto cursor = m_records.begin();
        while (cursor != m_records.end() && !queue.isEmpty()) {
            const ChartValue *head = queue.first();
            if (!head) {
                queue.removeFirst();
            } else if (!cursor->address || !(cursor->contents.x >= head->x)) {
                ++cursor;
            } else if (cursor->contents.x == head->x) {
                forget(*cursor);
                cursor->contents = *head;
                queue.removeFirst();
            } else {
                cursor = m_records.insert(cursor, {*head, head});
                updateExtremes(*cursor);
                queue.removeFirst();
            }
        }
        append(queue);
        restoreExtremes();
    }

    bool removeOld(const QRectF &visible)
    {
        bool changed = false;
        for (auto record = m_records.begin(); record != m_records.end();) {
            ChartValue &value = record->contents;
            if (!record->address || !(Due >= value.expireTime)) {
                ++record;
                continue;
            }
            forget(*record);
            if (!isValidRecord(value)) {
                record = m_records.erase(record);
                continue;
            }
            changed = changed || visible.contains(value.x, value.y);
            value.y = NaN;
            ++record;
        }
        return restoreExtremes() || changed;
    }

    void rescan()
    {
        m_minimum = nullptr;
        m_maximum = nullptr;
        for (const Record &record : m_records) {
            if (record.address) {
                updateExtremes(record);
            }
        }
    }

    void clear()
    {
        m_records.clear();
        m_minimum = nullptr;
        m_maximum = nullptr;
    }

    // What an application does by itself; rescan() follows.

    void insertDirectly(int number, const ChartValue *value)
    {
        m_records.insert(std::next(m_records.begin(), number),
                         {value ? *value : ChartValue(), value});
    }
    void removeDirectly(int number) { m_records.erase(std::next(m_records.begin(), number)); }
    void changeDirectly(int number, const ChartValue &contents)
    {
        std::next(m_records.begin(), number)->contents = contents;
    }

    /// What differs in \p series, if anything does.
    QString difference(const AbstractChartSeries &series) const
    {
        if (series.m_values.size() != int(m_records.size())) {
            return QString("%1 samples, not %2").arg(series.m_values.size()).arg(m_records.size());
        }
        int number = 0;
        auto record = m_records.cbegin();
        for (const ChartValue *value : series.m_values) {
            if (value != record->address || (value && !hasContents(*value, record->contents))) {
                return QString("sample %1 is another").arg(number);
            }
            ++number;
            ++record;
        }
        if (series.m_minValue != addressOf(m_minimum)) {
            return "the minimum is another";
        }
        return series.m_maxValue == addressOf(m_maximum) ? QString() : "the maximum is another";
    }

private:
    struct Record
    {
        ChartValue contents;
        const ChartValue *address; ///< Of the record in the series; null for a null entry.
    };

    static bool isSame(double a, double b) { return a == b || (qIsNaN(a) && qIsNaN(b)); }
    static bool hasContents(const ChartValue &a, const ChartValue &b)
    {
        return isSame(a.x, b.x) && isSame(a.y, b.y) && a.state == b.state &&
               isSame(a.expireTime, b.expireTime);
    }
    static const ChartValue *addressOf(const Record *record)
    {
        return record ? record->address : nullptr;
    }

    bool descends() const
    {
        const Record &first = m_records.front();
        const Record &last = m_records.back();
        return first.address && last.address && first.contents.x > last.contents.x;
    }

    void updateExtremes(const Record &record)
    {
        if (!isValidRecord(record.contents)) {
            return;
        }
        if (!m_minimum || m_minimum->contents.y >= record.contents.y) {
            m_minimum = &record;
        }
        if (!m_maximum || record.contents.y >= m_maximum->contents.y) {
            m_maximum = &record;
        }
    }

    void forget(const Record &record)
    {
        m_minimum = m_minimum == &record ? nullptr : m_minimum;
        m_maximum = m_maximum == &record ? nullptr : m_maximum;
    }

    bool restoreExtremes()
    {
        if (m_records.empty() || (m_minimum && m_maximum)) {
            return false;
        }
        rescan();
        return true;
    }

    std::list<Record> m_records;
    const Record *m_minimum = nullptr;
    const Record *m_maximum = nullptr;
};

/// Whether an index can hold the store: all X finite, and none below the one before.
bool ascends(const AbstractChartSeries &series)
{
    double previous = -Infinity;
    for (const ChartValue *value : series.m_values) {
        if (!value || !qIsFinite(value->x) || value->x < previous) {
            return false;
        }
        previous = value->x;
    }
    return true;
}

/// What a stretch says, found from its samples. \p node moves behind them.
SampleIndex::Stretch plainStretch(ChartValueList::const_iterator &node, int count)
{
    SampleIndex::Stretch stretch;
    stretch.first = node.i;
    stretch.count = count;
    stretch.firstX = (*node)->x;
    for (int i = 0; i < count; ++i, ++node) {
        const ChartValue &value = **node;
        stretch.samples.x[i] = value.x;
        stretch.samples.y[i] = value.y;
        stretch.samples.state[i] = value.state;
        stretch.validMask |= isValidRecord(value) ? 1u << i : 0u;
        stretch.lastX = value.x;
        stretch.isPlain = stretch.isPlain && isValidRecord(value) && qIsFinite(value.y);
        stretch.lowestY = value.y < stretch.lowestY ? value.y : stretch.lowestY;
        stretch.highestY = value.y > stretch.highestY ? value.y : stretch.highestY;
        stretch.dueTime = value.expireTime < stretch.dueTime ? value.expireTime : stretch.dueTime;
    }
    return stretch;
}

/// Whether both hold the same of the first \p count samples; a NaN is one there.
bool areSameSamples(const SampleIndex::Samples &a, const SampleIndex::Samples &b, int count)
{
    for (int i = 0; i < count; ++i) {
        const bool isSameY = a.y[i] == b.y[i] || (qIsNaN(a.y[i]) && qIsNaN(b.y[i]));
        if (a.x[i] != b.x[i] || !isSameY || a.state[i] != b.state[i]) {
            return false;
        }
    }
    return true;
}

bool isSameStretch(const SampleIndex::Stretch &a, const SampleIndex::Stretch &b)
{
    const bool hasSameRange = a.lowestY == b.lowestY && a.highestY == b.highestY;
    return a.first.i == b.first.i && a.count == b.count && a.isPlain == b.isPlain &&
           a.firstX == b.firstX && a.lastX == b.lastX && (!a.isPlain || hasSameRange) &&
           a.dueTime == b.dueTime && a.validMask == b.validMask &&
           areSameSamples(a.samples, b.samples, a.count);
}

/// What the index says that the store does not, if anything.
QString indexError(const SampleIndex &index, const AbstractChartSeries &series)
{
    if (!ascends(series)) {
        return "the store does not ascend";
    }
    int number = 0;
    int left = series.m_values.size();
    auto node = series.m_values.constBegin();
    for (const SampleIndex::Stretch &stretch : index.stretches()) {
        if (stretch.count < 1 || stretch.count > qMin(left, SampleIndex::StretchSize)) {
            return QString("stretch %1 has %2 samples").arg(number).arg(stretch.count);
        }
        left -= stretch.count;
        if (!isSameStretch(stretch, plainStretch(node, stretch.count))) {
            return QString("stretch %1 is wrong").arg(number);
        }
        ++number;
    }
    return left == 0 ? QString() : QString("%1 samples are missing").arg(left);
}

/**
 * A walk of random steps with a series and its twin.
 *
 * Everything in it follows from the seed. What it does is told to a log, if there is one.
 */
class RandomWalk
{
public:
    RandomWalk(AbstractChartModel &model, quint32 seed, QStringList *log = nullptr)
        : m_model(model)
        , m_random(seed)
        , m_log(log)
        , m_isWild(m_random.bounded(3) == 0)
        , m_spoilt(m_random.bounded(3) * 2)
    {
    }
    ~RandomWalk() { m_store.clear(); }

    /// What went wrong, if anything did.
    QString run()
    {
        constexpr int Steps = 14;
        for (int i = 0; i < Steps; ++i) {
            step();
            const QString error = check();
            if (!error.isEmpty()) {
                return error;
            }
        }
        return QString();
    }

private:
    void step()
    {
        const int kind = m_random.bounded(m_isWild ? 22 : 18);
        if (kind < 5) {
            append(ascending(m_random.bounded(50), lastX(), 3));
        } else if (kind < 8) {
            merge(ascending(m_random.bounded(1, 12), firstX() - 2.0, extent() / 4 + 2));
        } else if (kind < 9) {
            merge(ascending(m_random.bounded(1, 40), lastX() + 1.0, 2));
        } else if (kind < 10) {
            merge(ascending(m_random.bounded(1, 40), firstX() - 60.0, 2));
        } else if (kind < 13) {
            age();
        } else if (kind < 14) {
            tell("look");
            indexOf(m_series).update();
        } else if (kind < 15) {
            copyOrForget();
        } else if (kind < 16) {
            changeDirectly();
        } else if (kind < 17) {
            merge(shuffled(ascending(m_random.bounded(8), firstX() - 2.0, extent() / 4 + 2)));
        } else if (kind < 18) {
            clearOrRescan();
        } else {
            goWild(kind - 18);
        }
    }

    /// What leaves no index.
    void goWild(int kind)
    {
        Samples samples = ascending(m_random.bounded(1, 10), lastX(), 3);
        const double oddXs[] = {NaN, Infinity, -Infinity, lastX() - 3.0};
        samples.at(m_random.bounded(samples.size()))->x = oddXs[m_random.bounded(4)];
        samples.insert(m_random.bounded(samples.size()), nullptr);
        if (kind == 0) {
            append(samples);
        } else if (kind == 1) {
            merge(samples);
        } else if (kind == 2) {
            append(samples);
            insertNullDirectly();
        } else {
            append(samples);
            removeDirectly();
        }
    }

    void append(const Samples &samples)
    {
        tell("append", samples);
        m_store.append(samples);
        m_series.addValues(samples);
    }

    void merge(const Samples &samples)
    {
        tell("merge", samples);
        m_store.merge(samples);
        insert(m_series, samples);
    }

    void age()
    {
        tell("age");
        const bool expected = m_store.removeOld(m_series.visibleRect());
        m_isWrong = m_series.removeOldValues() != expected;
    }

    /// A copy makes the next change give all samples new nodes.
    void copyOrForget()
    {
        m_isCopied = !m_isCopied;
        tell(m_isCopied ? "copy" : "forget the copy");
        m_copy = m_isCopied ? m_series.m_values : ChartValueList();
    }

    void clearOrRescan()
    {
        if (m_random.bounded(4) > 0) {
            tell("rescan");
            m_store.rescan();
            m_series.recalculateMinMax();
            return;
        }
        tell("clear");
        m_isCopied = false;
        m_copy = ChartValueList(); // It would keep dead samples.
        m_store.clear();
        m_model.clearValues(&m_series);
    }

    void changeDirectly()
    {
        if (m_series.m_values.isEmpty()) {
            return;
        }
        const int number = m_random.bounded(m_series.m_values.size());
        ChartValue *value = valueAt(m_series, number);
        if (!value) {
            return;
        }
        tell(QString("change sample %1").arg(number));
        *value = randomValue(value->x);
        m_store.changeDirectly(number, *value);
        m_store.rescan();
        m_series.recalculateMinMax();
    }

    void insertNullDirectly()
    {
        const int number = m_random.bounded(m_series.m_values.size() + 1);
        tell(QString("null before sample %1").arg(number));
        m_store.insertDirectly(number, nullptr);
        m_store.rescan();
        m_series.m_values.insert(std::next(m_series.m_values.begin(), number), nullptr);
        m_series.recalculateMinMax();
    }

    void removeDirectly()
    {
        const int number = m_random.bounded(m_series.m_values.size());
        tell(QString("remove sample %1").arg(number));
        m_store.removeDirectly(number);
        m_store.rescan();
        const auto node = std::next(m_series.m_values.begin(), number);
        delete *node;
        m_series.m_values.erase(node);
        m_series.recalculateMinMax();
    }

    /// The store after each step, and the index after most.
    QString check()
    {
        const QString difference = m_store.difference(m_series);
        if (!difference.isEmpty() || m_isWrong) {
            return m_isWrong ? "the age-out tells a wrong result" : difference;
        }
        if (m_random.bounded(4) == 0) {
            return QString();
        }
        SampleIndex &index = indexOf(m_series);
        if (index.update()) {
            return indexError(index, m_series);
        }
        const bool isFit =
            m_series.m_values.size() >= SampleIndex::smallestStore() && ascends(m_series);
        if (isFit && m_random.bounded(2) == 0) {
            index.clear(); // It may have been put off.
            return index.update() ? indexError(index, m_series) : "there is no index";
        }
        return QString();
    }

    double firstX() const { return finiteX(0); }
    double lastX() const { return finiteX(m_series.m_values.size() - 1); }
    int extent() const { return int(qMax(0.0, lastX() - firstX())); }

    double finiteX(int number) const
    {
        if (m_series.m_values.isEmpty()) {
            return 0.0;
        }
        const ChartValue *value =
            number == 0 ? m_series.m_values.first() : m_series.m_values.last();
        return value && qIsFinite(value->x) ? value->x : 0.0;
    }

    /// Samples whose X begins at \p x and grows by less than \p step each time.
    Samples ascending(int count, double x, int step)
    {
        Samples samples;
        for (int i = 0; i < count; ++i) {
            samples.append(new ChartValue(randomValue(x)));
            x += m_random.bounded(step);
        }
        return samples;
    }

    Samples shuffled(Samples samples)
    {
        for (int i = samples.size() - 1; i > 0; --i) {
            samples.swapItemsAt(i, m_random.bounded(i + 1));
        }
        return samples;
    }

    /// Few different values of y, so that there are many equal ones.
    ChartValue randomValue(double x)
    {
        const double oddYs[] = {NaN, Infinity, -Infinity};
        const int oddStates[] = {RejectedState, AllowedState};
        const double expiries[] = {FarFuture, Infinity, NaN, Due, -Infinity};
        ChartValue value;
        value.x = x;
        const bool isSpoilt = m_random.bounded(100) < m_spoilt;
        value.y = isSpoilt && m_random.bounded(3) > 0 ? oddYs[m_random.bounded(3)]
                                                      : m_random.bounded(-2, 13);
        value.state = isSpoilt && m_random.bounded(2) == 0 ? oddStates[m_random.bounded(2)] : 0;
        value.expireTime = expiries[m_random.bounded(m_random.bounded(6) == 0 ? 5 : 3)];
        return value;
    }

    void tell(const QString &step, const Samples &samples = Samples())
    {
        if (!m_log) {
            return;
        }
        QString text = step;
        for (const ChartValue *value : samples) {
            text += value ? QString(" %1:%2:%3:%4")
                                .arg(value->x)
                                .arg(value->y)
                                .arg(value->state)
                                .arg(value->expireTime)
                          : QString(" null");
        }
        m_log->append(text);
    }

    AbstractChartModel &m_model;
    QRandomGenerator m_random;
    QStringList *m_log;
    const bool m_isWild;
    const int m_spoilt; ///< Percent of the values that are odd.
    IndexedSeries m_series;
    PlainStore m_store;
    ChartValueList m_copy;
    bool m_isCopied = false;
    bool m_isWrong = false;
};

} // namespace

class TestSampleIndex : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void hasNoneForShortStore();
    void describesSamplesOfStretch();
    void leavesOutNaNExpiry();
    void takesOnlySamplesInAnIndexCanHold_data();
    void takesOnlySamplesInAnIndexCanHold();
    void asksOnlyForAppendedSamples();
    void noticesOtherNodes();
    void noticesOtherNumberOfSamples();
    void noticesSamplesRemovedDirectly();
    void putsOffNewTries();
    void triesAgainAfterClearing();
    void findsStretchLikeLinearSearch();
    void findsLastStretchesWithExtremes();

    void mergeAtTailPassesOverOldSamples();
    void mergeOfLateSamplesPassesOverOthers();
    void lateSamplesAloneBuildNoIndex();
    void lateSampleIsReadWithItsStretchAlone();
    void unsortedQueueEndsIndex();
    void ageOutPassesOverSamplesNotDue();
    void ageOutReadsDueStretchesAlone();
    void rescanPassesOverSamplesWithoutExtremes();
    void rescanBeginsAtFirstValidSample();
    void recalculationLooksAtAllSamples();
    void staysSmallWhenSamplesComeAndGo();

    void followsPlainStore_data();
    void followsPlainStore();
};

void TestSampleIndex::cleanup()
{
    SampleIndex::setSmallestStore(SampleIndex::DefaultSmallestStore);
}

void TestSampleIndex::hasNoneForShortStore()
{
    IndexedSeries series;
    SampleIndex index(&series);
    series.addValues(ramp(0, SampleIndex::DefaultSmallestStore - 1));
    QVERIFY(!index.update());

    series.addValues({newValue(SampleIndex::DefaultSmallestStore, 1)});
    QVERIFY(index.update());
    QCOMPARE(indexError(index, series), QString());

    SampleIndex::setSmallestStore(SampleIndex::DefaultSmallestStore + 1);
    QVERIFY(!index.update());
    QVERIFY(index.stretches().empty());
}

void TestSampleIndex::describesSamplesOfStretch()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex index(&series);
    series.addValues(ramp(0, 40));
    *valueAt(series, 5) = {5, -7, 0, 300};
    *valueAt(series, 33) = {33, NaN, 0, 200};

    QVERIFY(index.update());
    QCOMPARE(int(index.stretches().size()), 2);
    const SampleIndex::Stretch &first = index.stretches().front();
    QCOMPARE(*first.first, series.m_values.first());
    QCOMPARE(first.count, 32);
    QVERIFY(first.isPlain);
    QCOMPARE(first.firstX, 0.0);
    QCOMPARE(first.lastX, 31.0);
    QCOMPARE(first.lowestY, -7.0);
    QCOMPARE(first.highestY, 31.0);
    QCOMPARE(first.dueTime, 300.0);

    const SampleIndex::Stretch &second = index.stretches().back();
    QCOMPARE(*second.first, valueAt(series, 32));
    QCOMPARE(second.count, 8);
    QVERIFY(!second.isPlain);
    QCOMPARE(second.firstX, 32.0);
    QCOMPARE(second.lastX, 39.0);
    QCOMPARE(second.dueTime, 200.0);
}

void TestSampleIndex::leavesOutNaNExpiry()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex index(&series);
    series.addValues({newValue(1, 1, 0, NaN)});
    QVERIFY(index.update());
    QCOMPARE(index.stretches().front().dueTime, Infinity);

    series.addValues({newValue(2, 1, 0, 50), newValue(3, 1, 0, NaN)});
    QVERIFY(index.update());
    QCOMPARE(index.stretches().front().dueTime, 50.0);
}

void TestSampleIndex::takesOnlySamplesInAnIndexCanHold_data()
{
    QTest::addColumn<double>("x"); // between samples with X 39 and 50
    QTest::addColumn<bool>("isIndexed");

    QTest::newRow("above") << 40.0 << true;
    QTest::newRow("equal") << 39.0 << true;
    QTest::newRow("below") << 38.9 << false;
    QTest::newRow("below in the same way as the last") << 51.0 << false;
    QTest::newRow("NaN") << NaN << false;
    QTest::newRow("infinity") << Infinity << false;
    QTest::newRow("minus infinity") << -Infinity << false;
}

void TestSampleIndex::takesOnlySamplesInAnIndexCanHold()
{
    QFETCH(const double, x);
    QFETCH(const bool, isIndexed);
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex index(&series);
    series.addValues(ramp(0, 40));
    QVERIFY(index.update());

    series.addValues({newValue(x, 1), newValue(50, 1)});
    QCOMPARE(index.update(), isIndexed);
    QCOMPARE(index.stretches().empty(), !isIndexed);
}

void TestSampleIndex::asksOnlyForAppendedSamples()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex index(&series);
    series.addValues(ramp(0, 1000));
    series.takeAsked();
    QVERIFY(index.update());
    QCOMPARE(series.takeAsked(), 1000);

    QVERIFY(index.update());
    QCOMPARE(series.takeAsked(), 0);

    series.addValues(ramp(1000, 1100));
    series.takeAsked();
    QVERIFY(index.update());
    QCOMPARE(series.takeAsked(), 100);
    QCOMPARE(indexError(index, series), QString());
}

void TestSampleIndex::noticesOtherNodes()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex &index = indexOf(series);
    series.addValues(ramp(0, 100));
    QVERIFY(index.update());

    // A change of a list that has been copied gives it new nodes.
    const ChartValueList copy = series.m_values;
    series.addValues({newValue(100, 1)});
    QVERIFY(index.stretches().empty());
    QVERIFY(index.update());
    QCOMPARE(indexError(index, series), QString());

    // So does a walk that is not const, of which the index hears nothing.
    const ChartValueList secondCopy = series.m_values;
    QVERIFY(series.m_values.begin().i != secondCopy.constBegin().i);
    QVERIFY(index.update());
    QCOMPARE(indexError(index, series), QString());
}

void TestSampleIndex::noticesOtherNumberOfSamples()
{
    SampleIndex::setSmallestStore(1);
    for (const double late : {-1.0, 10.5, 60.5}) {
        IndexedSeries series;
        SampleIndex index(&series); // Not the series' own: nobody tells it.
        series.addValues(ramp(0, 100));
        QVERIFY(index.update());

        insert(series, {newValue(late, 1)});
        QVERIFY(index.update());
        QCOMPARE(indexError(index, series), QString());
    }
}

void TestSampleIndex::noticesSamplesRemovedDirectly()
{
    SampleIndex::setSmallestStore(1);
    for (const int number : {0, 10, 70, 99}) {
        IndexedSeries series;
        SampleIndex &index = indexOf(series);
        series.addValues(ramp(0, 100));
        QVERIFY(index.update());

        const std::unique_ptr<ChartValue> removed(valueAt(series, number));
        series.m_values.erase(std::next(series.m_values.begin(), number));
        series.recalculateMinMax();
        QVERIFY(index.stretches().empty());
        QVERIFY(index.update());
        QCOMPARE(indexError(index, series), QString());
    }
}

void TestSampleIndex::putsOffNewTries()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex index(&series);
    series.addValues(ramp(0, 100));
    series.addValues({newValue(0, 1)});
    series.takeAsked();

    for (int round = 0; round < 3; ++round) {
        QVERIFY(!index.update());
        QCOMPARE(series.takeAsked(), 100);
        for (int i = 1; i < SampleIndex::RetryPeriod; ++i) {
            QVERIFY(!index.update());
            QCOMPARE(series.takeAsked(), 0);
        }
    }
}

void TestSampleIndex::triesAgainAfterClearing()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex &index = indexOf(series);
    series.addValues(ramp(0, 100));
    series.addValues({newValue(0, 1)});
    QVERIFY(!index.update());

    valueAt(series, 100)->x = 100.0;
    QVERIFY(!index.update());
    series.recalculateMinMax();
    QVERIFY(index.update());
    QCOMPARE(indexError(index, series), QString());
}

void TestSampleIndex::findsStretchLikeLinearSearch()
{
    SampleIndex::setSmallestStore(1);
    QRandomGenerator random(21);
    for (int round = 0; round < 200; ++round) {
        IndexedSeries series;
        SampleIndex index(&series);
        double x = 0.0;
        for (int i = random.bounded(1, 1000); i > 0; --i) {
            series.addValues({newValue(x, 1)});
            x += random.bounded(20) == 0 ? random.bounded(1, 50) : 0.0;
        }
        QVERIFY(index.update());
        const auto &stretches = index.stretches();
        for (int i = 0; i < 100; ++i) {
            const double oddXs[] = {NaN, Infinity, -Infinity, 0.0, x};
            const double wanted =
                random.bounded(5) == 0 ? oddXs[random.bounded(5)] : random.bounded(int(x) + 2);
            const int from = random.bounded(int(stretches.size()) + 1);
            int expected = from;
            while (expected < int(stretches.size()) &&
                   !(stretches[size_t(expected)].lastX >= wanted)) {
                ++expected;
            }
            QCOMPARE(index.firstReaching(wanted, from), expected);
        }
    }
}

void TestSampleIndex::findsLastStretchesWithExtremes()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    SampleIndex index(&series);
    QCOMPARE(index.extremes().lowest, -1);
    QCOMPARE(index.extremes().highest, -1);

    for (int x = 0; x < 320; ++x) {
        series.addValues({newValue(x, 5)});
    }
    valueAt(series, 40)->y = 1.0;   // stretch 1
    valueAt(series, 100)->y = 1.0;  // stretch 3
    valueAt(series, 200)->y = 9.0;  // stretch 6
    valueAt(series, 290)->y = -1.0; // stretch 9, which is not plain
    valueAt(series, 291)->y = NaN;
    QVERIFY(index.update());
    QCOMPARE(index.extremes().lowest, 3);
    QCOMPARE(index.extremes().highest, 6);
}

// In the tests below samples are marked, without a word to the index, so that an operation that
// looked at them would do what it must not.

void TestSampleIndex::mergeAtTailPassesOverOldSamples()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());
    for (int number = 1; number < 20000; number += 97) {
        valueAt(series, number)->x = Infinity; // Nothing could pass it.
    }
    series.takeAsked();

    insert(series, ramp(20000, 20100));
    QCOMPARE(series.takeAsked(), 100); // for the extremes
    QCOMPARE(series.m_values.last()->x, 20099.0);
    insert(series, ramp(20100, 20200));
    QCOMPARE(series.takeAsked(), 200); // and 100 are new to the index
    QCOMPARE(series.m_values.last()->x, 20199.0);
}

void TestSampleIndex::mergeOfLateSamplesPassesOverOthers()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());
    for (const int number : {1, 5000, 9000, 11000, 15000}) {
        valueAt(series, number)->x = Infinity;
    }

    insert(series, {newValue(10000.5, 1), newValue(12000.5, 2)});
    QCOMPARE(valueAt(series, 10001)->x, 10000.5);
    QCOMPARE(valueAt(series, 12002)->x, 12000.5);
}

void TestSampleIndex::lateSamplesAloneBuildNoIndex()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    series.takeAsked();

    insert(series, {newValue(10000.5, 1)});
    QCOMPARE(series.takeAsked(), 1);
    insert(series, {newValue(20000, 1)});
    QCOMPARE(series.takeAsked(), 20001 + 1);
}

void TestSampleIndex::lateSampleIsReadWithItsStretchAlone()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());
    series.takeAsked();

    insert(series, {newValue(10000.5, 1)});
    QVERIFY(indexOf(series).update());
    QCOMPARE(series.takeAsked(), 1 + SampleIndex::StretchSize + 1); // for the extremes; the stretch
    QCOMPARE(indexError(indexOf(series), series), QString());

    insert(series, {newValue(-1, -1)});
    QVERIFY(indexOf(series).update());
    QCOMPARE(series.takeAsked(), 1 + SampleIndex::StretchSize + 1);
    QCOMPARE(indexError(indexOf(series), series), QString());
}

void TestSampleIndex::unsortedQueueEndsIndex()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());

    insert(series, {newValue(12000.5, 1), newValue(100.5, 1)}); // Both go before 12001.
    QCOMPARE(valueAt(series, 12001)->x, 100.5);
    QVERIFY(!indexOf(series).update());
}

void TestSampleIndex::ageOutPassesOverSamplesNotDue()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());
    for (int number = 0; number < 20000; number += 97) {
        valueAt(series, number)->expireTime = Due;
    }
    series.takeAsked();

    QVERIFY(!series.removeOldValues());
    QCOMPARE(series.takeAsked(), 0);
    QCOMPARE(series.m_values.first()->y, 0.0);
}

void TestSampleIndex::ageOutReadsDueStretchesAlone()
{
    // With the minimum before them they reach into the second stretch. Each due sample is asked
    // for, and at most each of the two stretches.
    constexpr int DueSamples = 40;
    constexpr int MostAsked = DueSamples + 2 * SampleIndex::StretchSize;
    IndexedSeries series;
    series.addValues({newValue(-1, -5)});
    for (int x = 0; x < 20000; ++x) {
        series.addValues({newValue(x, x, 0, x < DueSamples ? Due : FarFuture)});
    }
    QVERIFY(indexOf(series).update());
    series.takeAsked();

    QVERIFY(series.removeOldValues()); // Some are in sight.
    QVERIFY(series.takeAsked() <= MostAsked);
    QVERIFY(indexOf(series).update());
    QCOMPARE(series.takeAsked(), 0);
    QCOMPARE(indexError(indexOf(series), series), QString());

    QVERIFY(!series.removeOldValues());
    QVERIFY(series.takeAsked() <= MostAsked);
    QCOMPARE(series.m_values.size(), 20001 - DueSamples);
    QVERIFY(indexOf(series).update());
    QCOMPARE(series.takeAsked(), 0);
    QCOMPARE(indexError(indexOf(series), series), QString());
}

void TestSampleIndex::rescanPassesOverSamplesWithoutExtremes()
{
    // The stretch of the sample that is replaced is read anew, and those with the first sample and
    // with either extreme are walked.
    constexpr int MostAsked = 4 * SampleIndex::StretchSize;
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());
    series.takeAsked();

    insert(series, {newValue(0, 100)});
    QCOMPARE(series.m_minValue, valueAt(series, 1));
    QCOMPARE(series.m_maxValue, valueAt(series, 19999));
    QVERIFY(series.takeAsked() <= MostAsked);

    insert(series, {newValue(19999, 2)});
    QCOMPARE(series.m_minValue, valueAt(series, 1));
    QCOMPARE(series.m_maxValue, valueAt(series, 19998));
    QVERIFY(series.takeAsked() <= MostAsked);
}

void TestSampleIndex::rescanBeginsAtFirstValidSample()
{
    SampleIndex::setSmallestStore(1);
    IndexedSeries series;
    for (int x = 0; x < 200; ++x) {
        series.addValues({newValue(x, x == 150 ? 9 : x == 190 ? 1 : 5)});
    }
    *valueAt(series, 64) = {64, NaN, AllowedState}; // Would stay an extreme if it was met first.
    series.recalculateMinMax();
    QVERIFY(indexOf(series).update());

    insert(series, {newValue(190, 2)});
    QCOMPARE(series.m_minValue, valueAt(series, 190));
    QCOMPARE(series.m_maxValue, valueAt(series, 150));
}

void TestSampleIndex::recalculationLooksAtAllSamples()
{
    IndexedSeries series;
    series.addValues(ramp(0, 20000));
    QVERIFY(indexOf(series).update());
    valueAt(series, 10000)->y = -1.0;
    valueAt(series, 15000)->y = 1e6;
    series.recalculateMinMax();

    QCOMPARE(series.m_minValue, valueAt(series, 10000));
    QCOMPARE(series.m_maxValue, valueAt(series, 15000));
}

void TestSampleIndex::staysSmallWhenSamplesComeAndGo()
{
    // For each sample; if all stretches are full it is 22.75.
    constexpr int MaximumBytes = 35;
    constexpr int StretchBytes = sizeof(SampleIndex::Stretch);
    IndexedSeries series;
    SampleIndex &index = indexOf(series);
    QRandomGenerator random(22);
    for (int x = 0; x < 30000; ++x) {
        series.addValues({newValue(x, 1, 0, random.bounded(2) == 0 ? Due : FarFuture)});
    }
    for (int i = 0; i < 2000; ++i) {
        insert(series, {newValue(random.bounded(30000) + 0.5, 1)});
        QVERIFY(index.update());
        QVERIFY(int(index.stretches().size()) * StretchBytes <=
                MaximumBytes * series.m_values.size());
    }
    QCOMPARE(indexError(index, series), QString());

    series.removeOldValues();
    series.removeOldValues();
    QVERIFY(index.update());
    QVERIFY(int(index.stretches().size()) * StretchBytes <= MaximumBytes * series.m_values.size());
    QCOMPARE(indexError(index, series), QString());
}

void TestSampleIndex::followsPlainStore_data()
{
    QTest::addColumn<int>("smallestStore");

    QTest::newRow("always indexed") << 1;
    QTest::newRow("from five samples on") << 5;
    QTest::newRow("from forty samples on") << 40;
    QTest::newRow("never indexed") << SampleIndex::DefaultSmallestStore;
}

void TestSampleIndex::followsPlainStore()
{
    constexpr quint32 Walks = 6000;
    QFETCH(const int, smallestStore);
    SampleIndex::setSmallestStore(smallestStore);
    OpenModel model;
    for (quint32 seed = 0; seed < Walks; ++seed) {
        const QString error = RandomWalk(model, seed).run();
        if (error.isEmpty()) {
            continue;
        }
        QStringList log;
        RandomWalk(model, seed, &log).run();
        qInfo("%s", qPrintable(log.join('\n')));
        QCOMPARE(error, QString());
    }
}

QTEST_MAIN(TestSampleIndex)
#include "tst_sampleindex.moc"
