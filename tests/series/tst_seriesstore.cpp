#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "support/plainseries.h"

#include <QDateTime>
#include <QMutexLocker>
#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

const double Infinity = qInf();
const double NaN = qQNaN();
constexpr double Due = 0.0;        // an expiry time that has passed
constexpr double FarFuture = 1e12; // one that has not
constexpr double RangeMax = 10.0;  // of both axes; their range begins at 0

QString sampleText(const ChartValue &value)
{
    return QString("%1:%2:%3:%4").arg(value.x).arg(value.y).arg(value.state).arg(value.expireTime);
}

QString markedText(const ChartValue &value, bool isMinimum, bool isMaximum)
{
    return sampleText(value) + (isMinimum ? "<" : "") + (isMaximum ? ">" : "");
}

/// The whole store as one text, with "<" behind the minimum and ">" behind the maximum.
QString stateText(const AbstractChartSeries &series)
{
    QStringList samples;
    bool minimumFound = false;
    bool maximumFound = false;
    for (const ChartValue *value : series.m_values) {
        if (!value) {
            samples.append("null");
            continue;
        }
        const bool isMinimum = value == series.m_minValue;
        const bool isMaximum = value == series.m_maxValue;
        minimumFound = minimumFound || isMinimum;
        maximumFound = maximumFound || isMaximum;
        samples.append(markedText(*value, isMinimum, isMaximum));
    }
    if ((series.m_minValue && !minimumFound) || (series.m_maxValue && !maximumFound)) {
        samples.append("an extreme lies outside of the store");
    }
    return samples.join(' ');
}

/// The extremes as "x:y..x:y" with "-" for none.
QString extremes(const AbstractChartSeries &series)
{
    const auto one = [](const ChartValue *value) {
        return value ? QString("%1:%2").arg(value->x).arg(value->y) : QString("-");
    };
    return one(series.m_minValue) + ".." + one(series.m_maxValue);
}

/// Samples of a list, with null entries where there is no value.
using Samples = std::vector<std::optional<ChartValue>>;

/**
 * A second store: copies of the samples in a vector, with the numbers of the extremes.
 *
 * Samples are told apart by a number of their own, which stays when the contents are replaced.
 */
class PlainStore
{
public:
    void append(const Samples &samples)
    {
        for (const auto &sample : samples) {
            if (sample) {
                insertAt(m_records.size(), *sample);
            }
        }
    }

    void appendNull() { m_records.push_back({std::nullopt, -1}); }

    void insert(const Samples &queue)
    {
        if (queue.empty()) {
            return;
        }
        if (m_records.empty() || descends()) {
            append(queue);
            return;
        }
        size_t place = 0;
        for (const auto &sample : queue) {
            if (sample) {
                place = insertSorted(place, *sample);
            }
        }
        if (m_minimum < 0 || m_maximum < 0) {
            rescan();
        }
    }

    void rescan()
    {
        m_minimum = -1;
        m_maximum = -1;
        for (const Record &record : m_records) {
            if (record.value) {
                updateExtremes(record);
            }
        }
    }

    bool removeOld(const QRectF &visible)
    {
        bool changed = false;
        std::vector<Record> kept;
        for (Record record : m_records) {
            if (!record.value || !(record.value->expireTime <= Due)) {
                kept.push_back(record);
                continue;
            }
            forget(record.number);
            if (isValid(*record.value)) {
                changed = changed || visible.contains(record.value->x, record.value->y);
                record.value->y = NaN;
                kept.push_back(record);
            }
        }
        m_records = kept;
        if (m_records.empty() || (m_minimum >= 0 && m_maximum >= 0)) {
            return changed;
        }
        rescan();
        return true;
    }

    QString text() const
    {
        QStringList samples;
        for (const Record &record : m_records) {
            samples.append(record.value ? markedText(*record.value, record.number == m_minimum,
                                                     record.number == m_maximum)
                                        : QString("null"));
        }
        return samples.join(' ');
    }

private:
    struct Record
    {
        std::optional<ChartValue> value;
        int number;
    };

    static bool isValid(const ChartValue &value)
    {
        return qIsFinite(value.x) && qIsFinite(value.y);
    }

    bool descends() const
    {
        const Record &first = m_records.front();
        const Record &last = m_records.back();
        return first.value && last.value && first.value->x > last.value->x;
    }

    void insertAt(size_t place, const ChartValue &value)
    {
        const Record record = {value, m_nextNumber++};
        m_records.insert(m_records.begin() + int(place), record);
        updateExtremes(record);
    }

    /// Returns the place from which the next sample looks on.
    size_t insertSorted(size_t place, const ChartValue &value)
    {
        const auto isReached = [&value](const Record &record) {
            return record.value && record.value->x >= value.x;
        };
        const auto found = std::find_if(m_records.begin() + int(place), m_records.end(), isReached);
        place = size_t(found - m_records.begin());
        if (found == m_records.end()) {
            insertAt(place, value);
            return place + 1;
        }
        if (found->value->x == value.x) {
            forget(found->number);
            found->value = value;
        } else {
            insertAt(place, value);
        }
        return place;
    }

    void updateExtremes(const Record &record)
    {
        if (!isValid(*record.value)) {
            return;
        }
        if (m_minimum < 0 || yOf(m_minimum) >= record.value->y) {
            m_minimum = record.number;
        }
        if (m_maximum < 0 || record.value->y >= yOf(m_maximum)) {
            m_maximum = record.number;
        }
    }

    double yOf(int number) const
    {
        const auto found =
            std::find_if(m_records.begin(), m_records.end(),
                         [number](const Record &record) { return record.number == number; });
        return found->value->y;
    }

    void forget(int number)
    {
        m_minimum = m_minimum == number ? -1 : m_minimum;
        m_maximum = m_maximum == number ? -1 : m_maximum;
    }

    std::vector<Record> m_records;
    int m_nextNumber = 0;
    int m_minimum = -1;
    int m_maximum = -1;
};

QList<ChartValue *> onHeap(const Samples &samples)
{
    QList<ChartValue *> values;
    for (const auto &sample : samples) {
        values.append(sample ? new ChartValue(*sample) : nullptr);
    }
    return values;
}

void insert(AbstractChartSeries &series, const QList<ChartValue *> &values)
{
    QQueue<ChartValue *> queue;
    queue.append(values);
    series.insertValues(queue);
    QVERIFY(queue.isEmpty());
}

QString inputText(const Samples &samples)
{
    QStringList texts;
    for (const auto &sample : samples) {
        texts.append(sample ? sampleText(*sample) : QString("null"));
    }
    return texts.join(' ');
}

/// Few different values, so that they meet often; now and then a null, a NaN or an infinity.
Samples randomSamples(QRandomGenerator &random, int &state)
{
    Samples samples(size_t(random.bounded(7)));
    const double expiries[] = {Due, -Infinity, FarFuture, Infinity, NaN};
    for (auto &sample : samples) {
        if (random.bounded(12) == 0) {
            continue;
        }
        sample = ChartValue();
        sample->x = random.bounded(20) == 0 ? NaN : random.bounded(-2, 13);
        sample->y =
            random.bounded(10) == 0 ? (random.bounded(2) ? NaN : Infinity) : random.bounded(-2, 13);
        sample->state = ++state;
        sample->expireTime = expiries[random.bounded(5)];
    }
    return samples;
}

void sortByX(Samples &samples)
{
    const auto x = [](const std::optional<ChartValue> &sample) {
        return sample && !qIsNaN(sample->x) ? sample->x : -Infinity;
    };
    std::stable_sort(samples.begin(), samples.end(),
                     [x](const auto &a, const auto &b) { return x(a) < x(b); });
}

/// A series with the range [0, 10] on both axes, whose application may reject a state.
class StoreSeries : public PlainSeries
{
public:
    StoreSeries()
    {
        m_axis.m_max = RangeMax;
        m_axisX = &m_axis;
        m_axisY->m_max = RangeMax;
    }
    bool isValid(const ChartValue *value) const override
    {
        m_askedForNull = m_askedForNull || !value;
        return PlainSeries::isValid(value) && value->state != m_rejectedState;
    }

    int m_rejectedState = -1;
    mutable bool m_askedForNull = false;

private:
    HorizontalChartAxis m_axis;
};

} // namespace

class TestSeriesStore : public QObject
{
    Q_OBJECT

private slots:
    void appendsInListOrder();
    void skipsNullEntriesWhenAppending();
    void followsExtremesWhenAppending();
    void takesLaterOfEqualSamplesAsExtreme();
    void storesInvalidSampleWithoutExtreme_data();
    void storesInvalidSampleWithoutExtreme();
    void asksDerivedClassForValidity();

    void leavesEverythingForEmptyQueue();
    void appendsQueueToEmptySeriesUnsorted();
    void appendsQueueToDescendingStore();
    void doesNotRescanAfterAppending();
    void mergesByX_data();
    void mergesByX();
    void replacesSampleWithEqualX();
    void rescansWhenMaximumIsReplacedByLowerY();
    void rescansWhenMinimumIsReplacedByHigherY();
    void leavesStaleExtremeUntilRescan();
    void findsExtremeThatReplacementMadeValid();
    void followsExtremesWhenMerging();
    void skipsNullsWhenMerging();
    void skipsNullsInQueueForEmptySeries();
    void mergesIfAnEndOfTheStoreIsNull();

    void rescansAllSamples();
    void rescanAsksOnlyForSamples();
    void rescanTakesLastOfEqualSamples();
    void rescanFindsNothingWithoutValidSamples();

    void blanksFirstAndDeletesLater();
    void deletesInvalidSampleAtOnce();
    void reportsChange_data();
    void reportsChange();
    void rescansWhenExtremeExpires();
    void deletesExtremeThatIsNoLongerValid();
    void emptiesStoreWithoutRescan();
    void reportsChangeWhileExtremeIsMissing();
    void keepsSampleThatIsNotDue_data();
    void keepsSampleThatIsNotDue();
    void comparesExpiryWithPresentSeconds();
    void passesOverNullsWhenAgeing();

    void setsAutoScaleOfItsAxis();
    void takesNoLockOfItsOwn();

    void mergesLikePlainStore();
    void agesLikePlainStore();
};

void TestSeriesStore::appendsInListOrder()
{
    PlainSeries series;
    series.addValues({newValue(3, 1), newValue(1, 2)});
    series.addValues({newValue(2, 3)});

    QCOMPARE(storeText(series), QString("3:1 1:2 2:3"));
}

void TestSeriesStore::skipsNullEntriesWhenAppending()
{
    PlainSeries series;
    const QList<ChartValue *> values = {nullptr, newValue(1, 1), nullptr};
    series.addValues(values);

    QCOMPARE(storeText(series), QString("1:1"));
    QCOMPARE(values.size(), 3); // the list itself is not consumed
}

void TestSeriesStore::followsExtremesWhenAppending()
{
    PlainSeries series;
    series.addValues({newValue(1, 5)});
    QCOMPARE(extremes(series), QString("1:5..1:5"));
    series.addValues({newValue(2, 7)});
    QCOMPARE(extremes(series), QString("1:5..2:7"));
    series.addValues({newValue(3, 6), newValue(4, -1)});
    QCOMPARE(extremes(series), QString("4:-1..2:7"));
}

void TestSeriesStore::takesLaterOfEqualSamplesAsExtreme()
{
    PlainSeries series;
    series.addValues({newValue(1, 5), newValue(2, 5)});

    QCOMPARE(extremes(series), QString("2:5..2:5"));
}

void TestSeriesStore::storesInvalidSampleWithoutExtreme_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");

    QTest::newRow("y is NaN") << 2.0 << NaN;
    QTest::newRow("y is infinite") << 2.0 << Infinity;
    QTest::newRow("y is infinite below") << 2.0 << -Infinity;
    QTest::newRow("x is NaN") << NaN << 99.0;
    QTest::newRow("x is infinite") << Infinity << 99.0;
}

void TestSeriesStore::storesInvalidSampleWithoutExtreme()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    PlainSeries series;
    series.addValues({newValue(1, 5), newValue(x, y)});

    QCOMPARE(series.m_values.size(), 2);
    QCOMPARE(extremes(series), QString("1:5..1:5"));
}

void TestSeriesStore::asksDerivedClassForValidity()
{
    StoreSeries series;
    series.m_rejectedState = 7;
    series.addValues({newValue(1, 5), newValue(2, 9, 7)});

    QCOMPARE(storeText(series), QString("1:5 2:9"));
    QCOMPARE(extremes(series), QString("1:5..1:5"));
}

void TestSeriesStore::leavesEverythingForEmptyQueue()
{
    PlainSeries series;
    series.addValues({newValue(1, 5), newValue(2, 6)});
    series.m_minValue = nullptr; // a rescan would mend it
    insert(series, {});

    QCOMPARE(storeText(series), QString("1:5 2:6"));
    QCOMPARE(extremes(series), QString("-..2:6"));
}

void TestSeriesStore::appendsQueueToEmptySeriesUnsorted()
{
    PlainSeries series;
    insert(series, {newValue(3, 1), newValue(1, 9), newValue(2, 5)});

    QCOMPARE(storeText(series), QString("3:1 1:9 2:5"));
    QCOMPARE(extremes(series), QString("3:1..1:9"));
}

void TestSeriesStore::appendsQueueToDescendingStore()
{
    PlainSeries series;
    series.addValues({newValue(5, 1), newValue(1, 2)});
    insert(series, {newValue(1, 7), newValue(3, 8)});

    QCOMPARE(storeText(series), QString("5:1 1:2 1:7 3:8"));
    QCOMPARE(extremes(series), QString("5:1..3:8"));
}

void TestSeriesStore::doesNotRescanAfterAppending()
{
    PlainSeries series;
    series.addValues({newValue(5, 1), newValue(1, 2)});
    series.m_minValue = nullptr;
    insert(series, {newValue(0, 3)});

    // The missing minimum is the new sample, though there is a lower one.
    QCOMPARE(extremes(series), QString("0:3..0:3"));

    series.m_minValue = nullptr;
    insert(series, {newValue(0, NaN)});
    QCOMPARE(extremes(series), QString("-..0:3"));
}

void TestSeriesStore::mergesByX_data()
{
    QTest::addColumn<QList<double>>("stored");
    QTest::addColumn<QList<double>>("queued");
    QTest::addColumn<QString>("merged"); // stored samples have y = 0, queued ones y = 1

    using X = QList<double>;
    QTest::newRow("before the first") << X{5, 6} << X{1, 2} << "1:1 2:1 5:0 6:0";
    QTest::newRow("between") << X{1, 5} << X{2, 3} << "1:0 2:1 3:1 5:0";
    QTest::newRow("beyond the last") << X{1, 2} << X{3, 4} << "1:0 2:0 3:1 4:1";
    QTest::newRow("all over") << X{2, 4, 6} << X{1, 3, 5, 7} << "1:1 2:0 3:1 4:0 5:1 6:0 7:1";
    QTest::newRow("all equal") << X{1, 2, 3} << X{1, 2, 3} << "1:1 2:1 3:1";
    QTest::newRow("equal to the last, then beyond") << X{1, 2} << X{2, 3} << "1:0 2:1 3:1";
    QTest::newRow("twice the same, not stored yet") << X{1, 3} << X{2, 2} << "1:0 2:1 3:0";
    QTest::newRow("twice the same, beyond the last") << X{1} << X{2, 2} << "1:0 2:1 2:1";
    QTest::newRow("the same stored twice") << X{1, 2, 2, 3} << X{2} << "1:0 2:1 2:0 3:0";
    QTest::newRow("one stored sample") << X{2} << X{1, 2, 3} << "1:1 2:1 3:1";
    QTest::newRow("zero of the other sign is equal") << X{0, 1} << X{-0.0} << "0:1 1:0";
    QTest::newRow("close is not equal") << X{1} << X{0.9999999} << "1:1 1:0";
    // Each head is compared with the node that was inserted last.
    QTest::newRow("descending queue") << X{5, 6} << X{3, 2, 1} << "1:1 2:1 3:1 5:0 6:0";
    QTest::newRow("queue that returns behind the cursor")
        << X{1, 5} << X{4, 0} << "1:0 0:1 4:1 5:0";
    QTest::newRow("NaN in the queue runs to the end")
        << X{1, 5} << X{NaN, 2} << "1:0 5:0 nan:1 2:1";
    QTest::newRow("NaN in the store is passed")
        << X{1, NaN, 5} << X{0, 3} << "0:1 1:0 nan:0 3:1 5:0";
    QTest::newRow("NaN at the end of the store") << X{5, NaN} << X{1} << "1:1 5:0 nan:0";
}

void TestSeriesStore::mergesByX()
{
    QFETCH(const QList<double>, stored);
    QFETCH(const QList<double>, queued);
    QFETCH(const QString, merged);
    PlainSeries series;
    for (const double x : stored) {
        series.addValues({newValue(x, 0)});
    }
    QList<ChartValue *> queue;
    for (const double x : queued) {
        queue.append(newValue(x, 1));
    }

    insert(series, queue);

    QCOMPARE(storeText(series).replace("-0:", "0:"), merged);
}

void TestSeriesStore::replacesSampleWithEqualX()
{
    PlainSeries series;
    series.addValues({newValue(1, 1), newValue(2, 5, 3, 44), newValue(3, 9)});
    const ChartValue *record = *std::next(series.m_values.constBegin());
    insert(series, {newValue(2, 6, 4, 55)});

    // Every field is new; the record and its place are the old ones.
    QCOMPARE(stateText(series), QString("1:1:0:inf< 2:6:4:55 3:9:0:inf>"));
    QCOMPARE(*std::next(series.m_values.constBegin()), record);
}

void TestSeriesStore::rescansWhenMaximumIsReplacedByLowerY()
{
    PlainSeries series;
    series.addValues({newValue(1, 1), newValue(2, 9), newValue(3, 5)});
    insert(series, {newValue(2, 3)});

    QCOMPARE(storeText(series), QString("1:1 2:3 3:5"));
    QCOMPARE(extremes(series), QString("1:1..3:5"));
}

void TestSeriesStore::rescansWhenMinimumIsReplacedByHigherY()
{
    PlainSeries series;
    series.addValues({newValue(1, 1), newValue(2, 9), newValue(3, 5)});
    insert(series, {newValue(1, 7)});

    QCOMPARE(extremes(series), QString("3:5..2:9"));
}

void TestSeriesStore::leavesStaleExtremeUntilRescan()
{
    PlainSeries series;
    series.addValues({newValue(1, 1), newValue(2, 5), newValue(3, 9)});
    insert(series, {newValue(2, 50)});
    QCOMPARE(extremes(series), QString("1:1..3:9"));

    series.recalculateMinMax();
    QCOMPARE(extremes(series), QString("1:1..2:50"));
}

void TestSeriesStore::findsExtremeThatReplacementMadeValid()
{
    PlainSeries series;
    series.addValues({newValue(1, NaN), newValue(2, NaN)});
    insert(series, {newValue(2, 4)});

    QCOMPARE(extremes(series), QString("2:4..2:4"));
}

void TestSeriesStore::followsExtremesWhenMerging()
{
    PlainSeries series;
    series.addValues({newValue(1, 3), newValue(5, 6)});
    insert(series, {newValue(2, 3), newValue(3, 8), newValue(6, 2)});

    QCOMPARE(storeText(series), QString("1:3 2:3 3:8 5:6 6:2"));
    QCOMPARE(extremes(series), QString("6:2..3:8"));
}

void TestSeriesStore::skipsNullsWhenMerging()
{
    PlainSeries series;
    series.addValues({newValue(1, 1)});
    series.m_values.append(nullptr);
    series.addValues({newValue(5, 2)});
    insert(series, {nullptr, newValue(3, 3), nullptr, newValue(5, 4), nullptr, newValue(6, 5)});

    QCOMPARE(storeText(series), QString("1:1 null 3:3 5:4 6:5"));
}

void TestSeriesStore::skipsNullsInQueueForEmptySeries()
{
    PlainSeries series;
    insert(series, {nullptr, newValue(1, 1), nullptr});
    QCOMPARE(storeText(series), QString("1:1"));

    PlainSeries untouched;
    insert(untouched, {nullptr});
    QCOMPARE(storeText(untouched), QString());
}

void TestSeriesStore::mergesIfAnEndOfTheStoreIsNull()
{
    PlainSeries series;
    series.m_values.append(nullptr);
    series.addValues({newValue(9, 0), newValue(1, 0)});
    insert(series, {newValue(5, 1)});

    QCOMPARE(storeText(series), QString("null 5:1 9:0 1:0"));
}

void TestSeriesStore::rescansAllSamples()
{
    PlainSeries series;
    series.addValues({newValue(1, 5), newValue(2, NaN), newValue(3, 7), newValue(4, 6)});
    series.m_values.prepend(nullptr);
    series.m_minValue = nullptr;
    series.m_maxValue = nullptr;
    series.recalculateMinMax();

    QCOMPARE(extremes(series), QString("1:5..3:7"));
}

void TestSeriesStore::rescanAsksOnlyForSamples()
{
    StoreSeries series;
    series.addValues({newValue(1, 5)});
    series.m_values.append(nullptr);
    series.recalculateMinMax();

    QVERIFY(!series.m_askedForNull);
}

void TestSeriesStore::rescanTakesLastOfEqualSamples()
{
    PlainSeries series;
    series.addValues({newValue(1, 5), newValue(2, 5), newValue(3, 5)});
    series.m_minValue = series.m_values.first();
    series.m_maxValue = series.m_values.first();
    series.recalculateMinMax();

    QCOMPARE(extremes(series), QString("3:5..3:5"));
}

void TestSeriesStore::rescanFindsNothingWithoutValidSamples()
{
    PlainSeries series;
    series.recalculateMinMax();
    QCOMPARE(extremes(series), QString("-..-"));

    series.addValues({newValue(1, 5)});
    series.m_values.first()->y = NaN;
    series.recalculateMinMax();
    QCOMPARE(extremes(series), QString("-..-"));
}

void TestSeriesStore::blanksFirstAndDeletesLater()
{
    StoreSeries series;
    series.addValues({newValue(1, 1), newValue(2, 5, 0, Due), newValue(3, 9)});

    QVERIFY(series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:1 2:nan 3:9"));

    QVERIFY(!series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:1 3:9"));
}

void TestSeriesStore::deletesInvalidSampleAtOnce()
{
    StoreSeries series;
    series.addValues({newValue(1, NaN, 0, Due), newValue(2, 5), newValue(3, NaN)});

    QVERIFY(!series.removeOldValues());
    QCOMPARE(storeText(series), QString("2:5 3:nan"));
}

void TestSeriesStore::reportsChange_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("hasAxes");
    QTest::addColumn<bool>("changed");

    // The other two samples, at Y -100 and 100, are the extremes. What is seen reaches 0.98% beyond
    // the range [0, 10]: from -0.098 to 10.098.
    QTest::newRow("in sight") << 5.0 << 5.0 << true << true;
    QTest::newRow("in sight beside the range") << -0.09 << 10.09 << true << true;
    QTest::newRow("too far left") << -0.1 << 5.0 << true << false;
    QTest::newRow("too far up") << 5.0 << 10.1 << true << false;
    QTest::newRow("without axes") << 5.0 << 5.0 << false << false;
}

void TestSeriesStore::reportsChange()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    QFETCH(const bool, hasAxes);
    QFETCH(const bool, changed);
    StoreSeries series;
    if (!hasAxes) {
        series.m_axisX = nullptr;
    }
    series.addValues({newValue(1, -100), newValue(x, y, 0, Due), newValue(3, 100)});

    QCOMPARE(series.removeOldValues(), changed);
    QCOMPARE(series.m_values.size(), 3);
    QVERIFY(qIsNaN((*std::next(series.m_values.constBegin()))->y));
}

void TestSeriesStore::rescansWhenExtremeExpires()
{
    StoreSeries series;
    series.addValues({newValue(1, 2), newValue(99, 50, 0, Due), newValue(3, 7)});

    QVERIFY(series.removeOldValues()); // out of sight, but the maximum
    QCOMPARE(extremes(series), QString("1:2..3:7"));
    QVERIFY(!series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:2 3:7"));
}

void TestSeriesStore::deletesExtremeThatIsNoLongerValid()
{
    StoreSeries series;
    series.addValues({newValue(1, 2), newValue(2, 9, 7, Due), newValue(3, 5)});
    series.m_rejectedState = 7; // the application has changed its mind

    QVERIFY(series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:2 3:5"));
    QCOMPARE(extremes(series), QString("1:2..3:5"));
}

void TestSeriesStore::emptiesStoreWithoutRescan()
{
    StoreSeries series;
    series.addValues({newValue(1, 2, 0, Due), newValue(2, 3, 0, Due)});

    QVERIFY(series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:nan 2:nan"));
    QCOMPARE(extremes(series), QString("-..-"));

    QVERIFY(!series.removeOldValues());
    QVERIFY(series.m_values.isEmpty());
    QCOMPARE(extremes(series), QString("-..-"));
}

void TestSeriesStore::reportsChangeWhileExtremeIsMissing()
{
    StoreSeries series;
    series.addValues({newValue(1, NaN)});

    QVERIFY(series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:nan"));
}

void TestSeriesStore::keepsSampleThatIsNotDue_data()
{
    QTest::addColumn<double>("expireTime");

    QTest::newRow("never") << Infinity;
    QTest::newRow("NaN") << NaN;
    QTest::newRow("far future") << FarFuture;
}

void TestSeriesStore::keepsSampleThatIsNotDue()
{
    QFETCH(const double, expireTime);
    StoreSeries series;
    series.addValues({newValue(1, 2, 0, expireTime)});

    QVERIFY(!series.removeOldValues());
    QVERIFY(!series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:2"));
}

void TestSeriesStore::comparesExpiryWithPresentSeconds()
{
    constexpr double Hour = 3600.0; // far more than this test takes
    const double now = double(QDateTime::currentSecsSinceEpoch());
    StoreSeries series;
    series.addValues({newValue(1, 2, 0, now - Hour), newValue(2, 3, 0, now + Hour)});

    QVERIFY(series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:nan 2:3"));
}

void TestSeriesStore::passesOverNullsWhenAgeing()
{
    StoreSeries series;
    series.addValues({newValue(1, 2)});
    series.m_values.prepend(nullptr);
    series.m_values.append(nullptr);

    QVERIFY(!series.removeOldValues());
    QCOMPARE(storeText(series), QString("null 1:2 null"));
}

void TestSeriesStore::setsAutoScaleOfItsAxis()
{
    PlainSeries series;
    series.setAutoScale(true);
    QVERIFY(series.m_axisY->m_autoScale);
    series.setAutoScale(false);
    QVERIFY(!series.m_axisY->m_autoScale);

    delete series.m_axisY;
    series.m_axisY = nullptr;
    series.setAutoScale(true); // does nothing
}

void TestSeriesStore::takesNoLockOfItsOwn()
{
    StoreSeries series;
    const QMutexLocker pointsLocker(&series.m_pointsMutex);
    const QMutexLocker valuesLocker(&series.m_valuesMutex);

    // The caller holds them; taking one again would never return.
    series.addValues({newValue(1, 2)});
    insert(series, {newValue(2, 3)});
    series.recalculateMinMax();
    QVERIFY(!series.removeOldValues());
    QCOMPARE(storeText(series), QString("1:2 2:3"));
}

void TestSeriesStore::mergesLikePlainStore()
{
    constexpr int Rounds = 4000;
    QRandomGenerator random(11);
    int state = 0;
    for (int round = 0; round < Rounds; ++round) {
        PlainSeries series;
        PlainStore store;
        QStringList input;
        const bool sorted = random.bounded(4) > 0;
        for (int step = 0; step < 4; ++step) {
            Samples samples = randomSamples(random, state);
            if (sorted) {
                sortByX(samples);
            }
            const bool appends = random.bounded(5) == 0;
            input.append((appends ? "append " : "insert ") + inputText(samples));
            if (appends) {
                series.addValues(onHeap(samples));
                series.m_values.append(nullptr);
                store.append(samples);
                store.appendNull();
            } else {
                insert(series, onHeap(samples));
                store.insert(samples);
            }
            if (stateText(series) != store.text()) {
                qInfo("%s", qPrintable(input.join('\n')));
                QCOMPARE(stateText(series), store.text());
            }
        }
        series.recalculateMinMax();
        store.rescan();
        QCOMPARE(stateText(series), store.text());
    }
}

void TestSeriesStore::agesLikePlainStore()
{
    constexpr int Rounds = 4000;
    QRandomGenerator random(12);
    int state = 0;
    for (int round = 0; round < Rounds; ++round) {
        StoreSeries series;
        PlainStore store;
        const QRectF visible(-0.098, -0.098, 10.196, 10.196); // no sample lies on its edge
        QStringList input;
        for (int step = 0; step < 3; ++step) {
            const Samples samples = randomSamples(random, state);
            input.append(inputText(samples));
            series.addValues(onHeap(samples));
            store.append(samples);
            const bool changed = series.removeOldValues();
            const bool expected = store.removeOld(visible);
            if (changed != expected || stateText(series) != store.text()) {
                qInfo("%s", qPrintable(input.join('\n')));
                QCOMPARE(stateText(series), store.text());
                QCOMPARE(changed, expected);
            }
        }
    }
}

QTEST_MAIN(TestSeriesStore)
#include "tst_seriesstore.moc"
