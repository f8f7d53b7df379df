#include "model/abstractchartmodel.h"

#include "support/countingaxis.h"
#include "support/modelsetup.h"

#include <QRandomGenerator>
#include <QtTest>
#include <QUndoStack>

#include <algorithm>
#include <cmath>

namespace {

using Range = QPair<double, double>;
using Samples = QVector<double>; ///< The Y values; X counts from 0.

/// Writes down which of the virtual operations of the model run, in order.
class TracingModel : public OpenModel
{
public:
    void adjustAxisY(AbstractChartSeries *series) override
    {
        m_trace.append("Y of " + (series ? series->m_name : QString("all")));
        OpenModel::adjustAxisY(series);
    }
    void adjustAxisY() override
    {
        m_trace.append("all Y");
        OpenModel::adjustAxisY();
    }
    void adjustAxisX() override
    {
        m_trace.append("X");
        OpenModel::adjustAxisX();
    }
    void adjustZoom(AbstractChartSeries *series) override
    {
        m_trace.append("adjustZoom of " + series->m_name);
        OpenModel::adjustZoom(series);
    }
    void undoZoom() override
    {
        m_trace.append("undoZoom");
        OpenModel::undoZoom();
    }
    void updateActions() override
    {
        m_trace.append("updateActions");
        OpenModel::updateActions();
    }

    QString takeTrace()
    {
        const QString trace = m_trace.join(", ");
        m_trace.clear();
        return trace;
    }

    QStringList m_trace;
};

QString rangeText(const Range &range)
{
    return QString("(%1,%2)").arg(range.first).arg(range.second);
}

// What the ranges of Y are, told once more in plain words and without the library's means -----

struct PlainAxis
{
    double min = 0.0;
    double max = 0.0;
    bool zoomed = false;
    bool autoScale = false;
};

struct PlainChart
{
    struct Series
    {
        Samples samples;
        double minimumY = 0.0;
        double maximumY = 0.0;
        PlainAxis axis;
    };

    QVector<Series> all;
    bool individualScale = false;

    static double lowest(const Samples &samples)
    {
        double found = 0.0;
        bool any = false;
        for (const double y : samples) {
            if (qIsFinite(y) && (!any || y < found)) {
                found = y;
                any = true;
            }
        }
        return found;
    }

    static double highest(Samples samples)
    {
        for (double &y : samples) {
            y = -y;
        }
        return -lowest(samples);
    }

    static Range widen(double low, double high)
    {
        if (low == high) {
            low = low == 0.0 ? -0.5 : low / 2.0;
            high = high == 0.0 ? 0.5 : high + high / 2.0;
        }
        return {low, high};
    }

    Range sharedRange() const
    {
        QVector<double> ends;
        bool anySample = false;
        for (const Series &series : all) {
            ends << lowest(series.samples) << highest(series.samples);
            anySample = anySample || !series.samples.isEmpty();
        }
        if (!anySample) {
            return {-0.5, 0.5};
        }
        std::sort(ends.begin(), ends.end());
        return widen(ends.first(), ends.last());
    }

    Range scale(const Series &series) const
    {
        if (!individualScale) {
            return sharedRange();
        }
        return series.axis.autoScale ? widen(lowest(series.samples), highest(series.samples))
                                     : widen(series.minimumY, series.maximumY);
    }

    void adjust(int row)
    {
        for (int i = 0; i < all.size(); ++i) {
            PlainAxis &axis = all[i].axis;
            const bool concerned = !individualScale || row < 0 || row == i;
            if (concerned && !axis.zoomed) {
                const Range range = scale(all.at(i));
                axis.min = qMin(range.first, range.second);
                axis.max = qMax(range.first, range.second);
            }
        }
    }

    QString text() const
    {
        QStringList texts;
        for (const Series &series : all) {
            texts.append(QString("[%1,%2]%3")
                             .arg(series.axis.min, 0, 'g', 12)
                             .arg(series.axis.max, 0, 'g', 12)
                             .arg(series.axis.zoomed ? QString(" zoomed") : QString()));
        }
        return texts.join(' ');
    }

    QString description() const
    {
        QStringList texts{individualScale ? "individual" : "shared"};
        for (const Series &series : all) {
            QStringList ys;
            for (const double y : series.samples) {
                ys.append(QString::number(y));
            }
            texts.append(QString("samples (%1), limits %2 to %3, auto %4, zoomed %5")
                             .arg(ys.join(' '))
                             .arg(series.minimumY)
                             .arg(series.maximumY)
                             .arg(series.axis.autoScale)
                             .arg(series.axis.zoomed));
        }
        return texts.join("; ");
    }
};

/// Whole numbers, so that equal values, zeros and signs of all kinds come up often.
double randomY(QRandomGenerator &random)
{
    return random.bounded(10) == 0 ? qQNaN() : random.bounded(-4, 5);
}

PlainChart randomChart(QRandomGenerator &random)
{
    PlainChart chart;
    chart.individualScale = random.bounded(2) == 0;
    chart.all.resize(random.bounded(5));
    for (PlainChart::Series &series : chart.all) {
        series.samples.resize(random.bounded(4));
        for (double &y : series.samples) {
            y = randomY(random);
        }
        series.minimumY = random.bounded(-3, 4);
        series.maximumY = random.bounded(-3, 4);
        series.axis.autoScale = random.bounded(2) == 0;
        series.axis.zoomed = random.bounded(3) == 0;
        if (series.axis.zoomed) {
            series.axis.min = random.bounded(-9, 0);
            series.axis.max = random.bounded(1, 10);
        }
    }
    return chart;
}

/// Builds the same chart of the library's classes, with axes that have not been adjusted yet.
void build(AbstractChartModel &model, const PlainChart &chart)
{
    model.m_settings.individualScale = chart.individualScale;
    for (const PlainChart::Series &plain : chart.all) {
        auto *series = new PlainSeries;
        series->m_minimumY = plain.minimumY;
        series->m_maximumY = plain.maximumY;
        series->m_axisY->m_autoScale = plain.axis.autoScale;
        series->m_axisY->m_min = plain.axis.min;
        series->m_axisY->m_max = plain.axis.max;
        series->m_axisY->m_zoomed = plain.axis.zoomed;
        QList<ChartValue *> values;
        for (int i = 0; i < plain.samples.size(); ++i) {
            values.append(newValue(i, plain.samples.at(i)));
        }
        series->addValues(values);
        model.m_series.append(series);
    }
}

} // namespace

Q_DECLARE_METATYPE(Range)
Q_DECLARE_METATYPE(QVector<Samples>)

class TestAxisSynchronisation : public QObject
{
    Q_OBJECT

private slots:
    // Ranges of Y
    void sharesTheRangeOfAllSamples_data();
    void sharesTheRangeOfAllSamples();
    void passesOverMissingSeries();
    void scalesASeriesBySettings_data();
    void scalesASeriesBySettings();
    void hasNoScaleWithoutSeriesOrAxis();
    void asksTheAutoScaleFlagTwice();
    void assignsOnlyWhatDiffers();
    void assignsNaNAlways();
    void adjustsOneAxisOfIndividualScales();
    void adjustsAllAxesOfASharedScale();
    void nullSeriesStandsForAll();
    void zoomedAxisKeepsItsRange();
    void passesOverMissingAxis();
    void ordersReversedAndUnorderedRanges();
    void samplesLeaveFixedLimitsAlone();
    void agreesWithPlainImplementation();
    void adjustsYBeforeX();

    // The zoom of a joining series
    void joinsAtTheSamePartOfItsScale_data();
    void joinsAtTheSamePartOfItsScale();
    void joinMarksAnEqualRangeAsZoomed();
    void joinEndsTheZoomWithAutoScale();
    void joinsNothing_data();
    void joinsNothing();
    void autoScaleSetsFlagsOnly();
    void autoScaleWorksWithoutAxisAndSeries();
    void undoZoomReturnsAllAxesToTheData();
};

void TestAxisSynchronisation::sharesTheRangeOfAllSamples_data()
{
    QTest::addColumn<QVector<Samples>>("series");
    QTest::addColumn<Range>("range");
    QTest::addColumn<QString>("axis");

    const double nan = qQNaN();
    const auto row = [](const char *name, const QVector<Samples> &series, const Range &range,
                        const char *axis) { QTest::newRow(name) << series << range << axis; };
    row("no series", {}, {-0.5, 0.5}, "");
    row("series without samples", {{}}, {-0.5, 0.5}, "[-0.5,0.5]");
    row("all 0", {{0.0, 0.0}, {0.0}}, {-0.5, 0.5}, "[-0.5,0.5]");
    row("all 4", {{4.0, 4.0}, {4.0}}, {2.0, 6.0}, "[2,6]");
    row("all -2 give a reversed pair", {{-2.0, -2.0}, {-2.0}}, {-1.0, -3.0}, "[-3,-1]");
    row("one series", {{5.0, 9.0, 7.0}}, {5.0, 9.0}, "[5,9]");
    row("two series", {{1.0, 3.0}, {2.0, 7.0}}, {1.0, 7.0}, "[1,7]");
    row("an empty one counts as 0", {{5.0, 9.0}, {}}, {0.0, 9.0}, "[0,9]");
    row("an empty one before", {{}, {5.0, 9.0}}, {0.0, 9.0}, "[0,9]");
    row("an empty one above", {{-9.0, -5.0}, {}}, {-9.0, 0.0}, "[-9,0]");
    row("invalid samples only", {{nan, nan}}, {-0.5, 0.5}, "[-0.5,0.5]");
    row("invalid samples count as 0", {{5.0, 9.0}, {nan}}, {0.0, 9.0}, "[0,9]");
    row("invalid samples before", {{nan}, {5.0, 9.0}}, {0.0, 9.0}, "[0,9]");
    row("invalid sample among valid ones", {{5.0, nan, 9.0}}, {5.0, 9.0}, "[5,9]");
}

void TestAxisSynchronisation::sharesTheRangeOfAllSamples()
{
    QFETCH(QVector<Samples>, series);
    QFETCH(Range, range);
    QFETCH(QString, axis);
    OpenModel model;
    model.m_settings.individualScale = false;
    for (const Samples &samples : qAsConst(series)) {
        addSeries(model, "a", samples);
    }

    QCOMPARE(rangeText(model.minMaxY()), rangeText(range));
    for (const AbstractChartSeries *one : qAsConst(model.m_series)) {
        QCOMPARE(axisText(*one->m_axisY), axis);
        QCOMPARE(rangeText(model.scale(one)), rangeText(range));
    }
    QCOMPARE(rangeText(model.scale(nullptr)), rangeText(range));
}

void TestAxisSynchronisation::passesOverMissingSeries()
{
    OpenModel model;
    const PlainSeries *series = addSeries(model, "a", {5.0, 9.0});
    model.m_series.prepend(nullptr);

    model.m_settings.individualScale = false;
    QCOMPARE(rangeText(model.minMaxY()), QString("(5,9)"));
    model.adjustAxes(nullptr, false);
    QCOMPARE(axisText(*series->m_axisY), QString("[5,9]"));

    model.m_settings.individualScale = true;
    model.adjustAxes(nullptr, false);
    QCOMPARE(axisText(*series->m_axisY), QString("[0,100]"));
    model.m_series.removeFirst();
}

void TestAxisSynchronisation::scalesASeriesBySettings_data()
{
    QTest::addColumn<bool>("autoScale");
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<Range>("limits");
    QTest::addColumn<Range>("range");

    const auto row = [](const char *name, bool autoScale, const Samples &samples,
                        const Range &limits, const Range &range) {
        QTest::newRow(name) << autoScale << samples << limits << range;
    };
    const Range limits(10.0, 30.0);
    row("samples", true, {5.0, 9.0}, limits, {5.0, 9.0});
    row("no samples", true, {}, limits, {-0.5, 0.5});
    row("equal samples", true, {4.0}, limits, {2.0, 6.0});
    row("equal negative samples", true, {-2.0}, limits, {-1.0, -3.0});
    row("limits", false, {5.0, 9.0}, limits, {10.0, 30.0});
    row("equal limits", false, {5.0, 9.0}, {4.0, 4.0}, {2.0, 6.0});
    row("equal negative limits", false, {5.0, 9.0}, {-2.0, -2.0}, {-1.0, -3.0});
    row("limits of 0", false, {5.0, 9.0}, {0.0, 0.0}, {-0.5, 0.5});
    row("reversed limits stay so", false, {5.0, 9.0}, {30.0, 10.0}, {30.0, 10.0});
}

void TestAxisSynchronisation::scalesASeriesBySettings()
{
    QFETCH(bool, autoScale);
    QFETCH(Samples, samples);
    QFETCH(Range, limits);
    QFETCH(Range, range);
    OpenModel model;
    addSeries(model, "other", {-50.0, 50.0});
    PlainSeries *series = addSeries(model, "a", samples);
    series->m_minimumY = limits.first;
    series->m_maximumY = limits.second;
    series->m_axisY->m_autoScale = autoScale;

    QCOMPARE(rangeText(model.scale(series)), rangeText(range));
}

void TestAxisSynchronisation::hasNoScaleWithoutSeriesOrAxis()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a", {5.0, 9.0});
    delete series->m_axisY;
    series->m_axisY = nullptr;

    QCOMPARE(rangeText(model.scale(nullptr)), QString("(0,0)"));
    QCOMPARE(rangeText(model.scale(series)), QString("(0,0)"));
}

void TestAxisSynchronisation::asksTheAutoScaleFlagTwice()
{
    class Turning : public PlainSeries
    {
    public:
        using PlainSeries::PlainSeries;
        double minimumY() const override
        {
            m_axisY->m_autoScale = true;
            return 1.0;
        }
    };
    OpenModel model;
    auto *series = addSeries<Turning>(model, "a", {5.0, 9.0});
    series->m_axisY->m_autoScale = false;

    QCOMPARE(rangeText(model.scale(series)), QString("(1,9)"));
}

void TestAxisSynchronisation::assignsOnlyWhatDiffers()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a", {5.0, 9.0});
    CountingAxis &axis = *installCountingAxis(*series);
    QCOMPARE(axisText(axis), QString("[0,100]"));

    model.adjustAxisY(series);
    axis.assignRange(100.0, 0.0); // The same in another order.
    QCOMPARE(axis.m_recalculations, 0);

    series->m_maximumY = std::nextafter(100.0, 200.0);
    model.adjustAxisY(series);
    QCOMPARE(axis.m_recalculations, 1);
    QCOMPARE(axis.m_max, std::nextafter(100.0, 200.0));

    axis.m_zoomed = true;
    axis.assignRange(3.0, 4.0);
    QCOMPARE(axisText(axis), QString("[3,4] zoomed"));
    QCOMPARE(axis.m_recalculations, 2);
}

void TestAxisSynchronisation::assignsNaNAlways()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a");
    CountingAxis &axis = *installCountingAxis(*series);
    series->m_maximumY = qQNaN();

    model.adjustAxisY(series);
    model.adjustAxisY(series);

    QCOMPARE(axis.m_recalculations, 2);
}

void TestAxisSynchronisation::adjustsOneAxisOfIndividualScales()
{
    TracingModel model;
    PlainSeries *a = addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    a->m_maximumY = 10.0;
    b->m_maximumY = 20.0;
    model.takeTrace();

    model.adjustAxisY(a);

    QCOMPARE(axesText(model), QString("[0,0] [0,10] [0,100]"));
    QCOMPARE(model.takeTrace(), QString("Y of a"));
    model.adjustAxisY();
    QCOMPARE(axesText(model), QString("[0,0] [0,10] [0,20]"));
    QCOMPARE(model.takeTrace(), QString("all Y, Y of a, Y of b"));
}

void TestAxisSynchronisation::adjustsAllAxesOfASharedScale()
{
    TracingModel model;
    model.m_settings.individualScale = false;
    PlainSeries *a = addSeries(model, "a", {1.0});
    PlainSeries *b = addSeries(model, "b", {2.0});
    PlainSeries *zoomed = addSeries(model, "c", {3.0});
    setZoomed(*zoomed->m_axisY, 7.0, 8.0);
    model.takeTrace();

    a->addValues({newValue(5.0, 9.0)}); // Below the model, so that no axis follows yet.
    model.adjustAxisY(b);

    QCOMPARE(axesText(model), QString("[0,0] [1,9] [1,9] [7,8] zoomed"));
    QCOMPARE(model.takeTrace(), QString("Y of b, all Y"));
}

void TestAxisSynchronisation::nullSeriesStandsForAll()
{
    TracingModel model;
    addSeries(model, "a")->m_maximumY = 10.0;
    addSeries(model, "b")->m_maximumY = 20.0;
    model.takeTrace();

    model.adjustAxisY(nullptr);

    QCOMPARE(axesText(model), QString("[0,0] [0,10] [0,20]"));
    QCOMPARE(model.takeTrace(), QString("Y of all, all Y, Y of a, Y of b"));
}

void TestAxisSynchronisation::zoomedAxisKeepsItsRange()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a", {5.0, 9.0});
    series->m_axisY->m_autoScale = true;
    setZoomed(*series->m_axisY, 6.0, 7.0);

    model.addValue(series, newValue(2.0, 50.0));
    QCOMPARE(axisText(*series->m_axisY), QString("[6,7] zoomed"));
    model.m_settings.individualScale = false;
    model.addValue(series, newValue(3.0, -50.0));
    QCOMPARE(axisText(*series->m_axisY), QString("[6,7] zoomed"));

    series->m_axisY->m_zoomed = false;
    model.addValue(series, newValue(4.0, 0.0));
    QCOMPARE(axisText(*series->m_axisY), QString("[-50,50]"));
}

void TestAxisSynchronisation::passesOverMissingAxis()
{
    OpenModel model;
    PlainSeries *bare = addSeries(model, "a", {5.0, 9.0});
    PlainSeries *whole = addSeries(model, "b", {1.0});
    delete bare->m_axisY;
    bare->m_axisY = nullptr;

    model.adjustAxisY(bare);
    model.m_settings.individualScale = false;
    model.adjustAxisY();

    QVERIFY(!bare->m_axisY);
    QCOMPARE(axisText(*whole->m_axisY), QString("[1,9]"));
}

void TestAxisSynchronisation::ordersReversedAndUnorderedRanges()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a");
    series->m_minimumY = 30.0;
    series->m_maximumY = 10.0;
    model.adjustAxisY(series);
    QCOMPARE(axisText(*series->m_axisY), QString("[10,30]"));

    // No comparison with NaN holds, so the pair is swapped as if it were reversed.
    series->m_minimumY = qQNaN();
    series->m_maximumY = 5.0;
    model.adjustAxisY(series);
    QCOMPARE(series->m_axisY->m_min, 5.0);
    QVERIFY(qIsNaN(series->m_axisY->m_max));
}

void TestAxisSynchronisation::samplesLeaveFixedLimitsAlone()
{
    OpenModel model;
    PlainSeries *a = addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    a->m_minimumY = 10.0;
    a->m_maximumY = 30.0;
    setZoomed(*b->m_axisY, 1.0, 2.0);

    model.addValues(a, {newValue(0.0, -500.0), newValue(1.0, 500.0)});
    QCOMPARE(axesText(model), QString("[0,1] [10,30] [1,2] zoomed"));

    a->m_axisY->m_autoScale = true;
    model.addValue(a, nullptr);
    QCOMPARE(axesText(model), QString("[0,1] [-500,500] [1,2] zoomed"));
}

void TestAxisSynchronisation::agreesWithPlainImplementation()
{
    constexpr int Cases = 5000;
    QRandomGenerator random(23);
    OpenModel model;
    for (int i = 0; i < Cases; ++i) {
        PlainChart chart = randomChart(random);
        const QString input = QString("case %1: %2").arg(i).arg(chart.description());
        build(model, chart);

        QVERIFY2(rangeText(model.minMaxY()) == rangeText(chart.sharedRange()), qPrintable(input));
        for (int row = 0; row < chart.all.size(); ++row) {
            QVERIFY2(rangeText(model.scale(model.m_series.at(row))) ==
                         rangeText(chart.scale(chart.all.at(row))),
                     qPrintable(input));
        }
        // First one of them or, by null, all; then all.
        const int row = random.bounded(chart.all.size() + 1) - 1;
        model.adjustAxisY(row < 0 ? nullptr : model.m_series.at(row));
        chart.adjust(row);
        QVERIFY2(axesText(model).section(' ', 1) == chart.text(), qPrintable(input));
        model.adjustAxisY();
        chart.adjust(-1);
        QVERIFY2(axesText(model).section(' ', 1) == chart.text(), qPrintable(input));

        qDeleteAll(model.m_series);
        model.m_series.clear();
    }
}

void TestAxisSynchronisation::adjustsYBeforeX()
{
    TracingModel model;
    PlainSeries *a = addSeries(model, "a");
    QCOMPARE(model.takeTrace(),
             QString("Y of all, all Y, Y of a, X, adjustZoom of a, updateActions"));

    model.addValue(a, newValue(0.0, 1.0));
    model.addValues(a, {});
    QQueue<ChartValue *> queue;
    model.insertValues(a, queue, false);
    QCOMPARE(model.takeTrace(), QString("Y of a, X, Y of a, X, Y of a, X"));
    model.clearValues(a);
    QCOMPARE(model.takeTrace(), QString("Y of a, X"));
    model.removeOldValues(a);
    model.insertValues(a, queue, true);
    QCOMPARE(model.takeTrace(), QString());

    model.completeRemoveSeries(a);
    QCOMPARE(model.takeTrace(), QString("Y of all, all Y, X, updateActions"));
    delete a;
}

void TestAxisSynchronisation::joinsAtTheSamePartOfItsScale_data()
{
    QTest::addColumn<bool>("individualScale");
    QTest::addColumn<Range>("firstScale");
    QTest::addColumn<Range>("shown");
    QTest::addColumn<Range>("scale");
    QTest::addColumn<QString>("axis");

    const auto row = [](const char *name, bool individual, const Range &firstScale,
                        const Range &shown, const Range &scale, const char *axis) {
        QTest::newRow(name) << individual << firstScale << shown << scale << axis;
    };
    row("lower half", true, {0.0, 10.0}, {0.0, 5.0}, {100.0, 300.0}, "[100,200] zoomed");
    row("upper half", true, {0.0, 10.0}, {5.0, 10.0}, {100.0, 300.0}, "[200,300] zoomed");
    row("twice the scale", true, {0.0, 10.0}, {-5.0, 15.0}, {100.0, 300.0}, "[0,400] zoomed");
    row("beyond the scale", true, {0.0, 10.0}, {20.0, 30.0}, {100.0, 300.0}, "[500,700] zoomed");
    // Equal limits of -2 give the pair (-1, -3). What is shown begins two spans of -2 below... by
    // the rule: lo = 0 - (-1 - -3) * 10 / -2 = 10, hi = 10 / (-2 / 1) + 10 = 5.
    row("first scale reversed", true, {-2.0, -2.0}, {-3.0, -2.0}, {0.0, 10.0}, "[5,10] zoomed");
    // lo = -1 - (0 - 0) * -2 / 10 = -1, hi = -2 / (10 / 5) + -1 = -2.
    row("own scale reversed", true, {0.0, 10.0}, {0.0, 5.0}, {-2.0, -2.0}, "[-2,-1] zoomed");
    // The samples of both lie between 0 and 8; the range of the first is taken over.
    row("shared scale", false, {0.0, 10.0}, {2.0, 3.0}, {100.0, 300.0}, "[2,3] zoomed");
}

void TestAxisSynchronisation::joinsAtTheSamePartOfItsScale()
{
    QFETCH(bool, individualScale);
    QFETCH(Range, firstScale);
    QFETCH(Range, shown);
    QFETCH(Range, scale);
    QFETCH(QString, axis);
    OpenModel model;
    model.m_settings.individualScale = individualScale;
    addSeries(model, "without samples");
    PlainSeries *first = addSeries(model, "first", {0.0, 8.0});
    first->m_minimumY = firstScale.first;
    first->m_maximumY = firstScale.second;
    setZoomed(*first->m_axisY, shown.first, shown.second);

    auto *joining = new PlainSeries("joining");
    joining->m_minimumY = scale.first;
    joining->m_maximumY = scale.second;
    model.completeAddSeries(joining);

    QCOMPARE(axisText(*joining->m_axisY), axis);
    QVERIFY(!model.m_axisX->m_zoomed);
}

void TestAxisSynchronisation::joinMarksAnEqualRangeAsZoomed()
{
    OpenModel model;
    PlainSeries *first = addSeries(model, "first", {0.0, 8.0});
    PlainSeries *joining = addSeries(model, "joining");
    setZoomed(*first->m_axisY, 0.0, 100.0); // All of its scale.
    const CountingAxis &axis = *installCountingAxis(*joining);
    QCOMPARE(axisText(axis), QString("[0,100]"));

    model.adjustZoom(joining);

    QCOMPARE(axisText(axis), QString("[0,100] zoomed"));
    QCOMPARE(axis.m_recalculations, 0);
}

void TestAxisSynchronisation::joinEndsTheZoomWithAutoScale()
{
    TracingModel model;
    PlainSeries *first = addSeries(model, "a", {0.0, 8.0});
    model.setAutoScale(false, true);
    setZoomed(*first->m_axisY, 2.0, 3.0);
    setZoomed(*model.m_axisX, 0.5, 0.6);

    addSeries(model, "b");

    QCOMPARE(axesText(model), QString("[0,1] [0,8] [-0.5,0.5]"));
    QCOMPARE(model.m_trace.count("undoZoom"), 1);
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestAxisSynchronisation::joinsNothing_data()
{
    QTest::addColumn<QString>("lack");

    for (const char *lack :
         {"series", "samples", "axis of the first", "own axis", "zoom", "span"}) {
        QTest::newRow(lack) << lack;
    }
}

void TestAxisSynchronisation::joinsNothing()
{
    QFETCH(QString, lack);
    TracingModel model;
    PlainSeries *first = addSeries(model, "a", lack == "samples" ? Samples() : Samples{0.0, 8.0});
    PlainSeries *joining = addSeries(model, "b");
    setZoomed(*first->m_axisY, 2.0, lack == "span" ? 2.0 : 3.0);
    first->m_axisY->m_zoomed = lack != "zoom";
    // Also what happens with automatic scaling comes after these tests.
    for (const bool autoScale : {false, true}) {
        model.setAutoScale(false, autoScale);
        if (lack == "axis of the first" && first->m_axisY) {
            delete first->m_axisY;
            first->m_axisY = nullptr;
        }
        if (lack == "own axis" && joining->m_axisY) {
            delete joining->m_axisY;
            joining->m_axisY = nullptr;
        }
        model.takeTrace();

        if (lack == "series") {
            model.OpenModel::adjustZoom(nullptr);
        } else {
            model.OpenModel::adjustZoom(joining);
        }

        QCOMPARE(model.takeTrace(), QString());
        QVERIFY(!joining->m_axisY || axisText(*joining->m_axisY) == "[0,100]");
        QVERIFY(!first->m_axisY || first->m_axisY->m_min == 2.0);
    }
}

void TestAxisSynchronisation::autoScaleSetsFlagsOnly()
{
    TracingModel model;
    PlainSeries *series = addSeries(model, "a", {0.0, 8.0});
    QVERIFY(settled(model));
    model.takeTrace();

    model.setAutoScale(true, true);
    QVERIFY(model.m_axisX->m_autoScale);
    QVERIFY(model.m_autoScaleY);
    QVERIFY(series->m_axisY->m_autoScale);
    QCOMPARE(axesText(model), QString("[0,1] [0,100]"));
    QCOMPARE(model.takeTrace(), QString());
    QVERIFY(!model.updatePointsInProgress());

    model.setAutoScale(true, false);
    QVERIFY(model.m_axisX->m_autoScale);
    QVERIFY(!model.m_autoScaleY);
    QVERIFY(!series->m_axisY->m_autoScale);
    model.setAutoScale(false, true);
    QVERIFY(!model.m_axisX->m_autoScale);
    QVERIFY(addSeries(model, "b")->m_axisY->m_autoScale);
}

void TestAxisSynchronisation::autoScaleWorksWithoutAxisAndSeries()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a");
    HorizontalChartAxis *axisX = model.m_axisX;
    model.m_axisX = nullptr;
    model.m_series.prepend(nullptr);

    model.setAutoScale(true, true);

    QVERIFY(series->m_axisY->m_autoScale);
    QVERIFY(!axisX->m_autoScale);
    model.m_axisX = axisX;
    model.m_series.removeFirst();
}

void TestAxisSynchronisation::undoZoomReturnsAllAxesToTheData()
{
    for (const bool individualScale : {true, false}) {
        TracingModel model;
        model.m_settings.individualScale = individualScale;
        PlainSeries *a = addSeries(model, "a", {1.0, 4.0});
        PlainSeries *b = addSeries(model, "b", {2.0, 8.0});
        QVERIFY(settled(model));
        setZoomed(*a->m_axisY, 5.0, 6.0);
        setZoomed(*b->m_axisY, 7.0, 8.0);
        setZoomed(*model.m_axisX, 0.5, 0.6);

        model.undoZoom();

        QCOMPARE(axesText(model),
                 individualScale ? QString("[0,1] [0,100] [0,100]") : QString("[0,1] [1,8] [1,8]"));
        QCOMPARE(model.m_undoStack->count(), 0);
        QVERIFY(model.updatePointsInProgress());
    }
}

QTEST_MAIN(TestAxisSynchronisation)
#include "tst_axissynchronisation.moc"
