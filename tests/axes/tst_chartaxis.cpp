#include "axes/chartaxis.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

/// Only what the base class does.
class PlainAxis : public ChartAxis
{
public:
    void paint(AbstractChartSeries *, QPainter &, QRectF const &, QTransform const &,
               QPalette const &, bool) override
    {
    }
    void valueTextAndRect(double, QPainter const &, QString &, QRectF &, int) const override {}
    void recalculateGridValues() override {}
};

PlainAxis axisOfSpan(double span, bool dateTime)
{
    PlainAxis axis;
    axis.m_max = span;
    axis.m_dateTime = dateTime;
    return axis;
}

/// The search for a numeric step as one would do it by hand.
double plainNumericStep(double span)
{
    double step;
    double intervals;
    if (span >= 1) {
        step = 1;
        intervals = span;
        while (intervals > 10) {
            step *= 10;
            intervals = span / step;
        }
    } else {
        step = 0.1;
        intervals = span / 0.1;
        while (1 > intervals) {
            step /= 10;
            intervals = span / step;
        }
    }
    return 2 > intervals ? step / 5 : step;
}

/// The search for a date-time step as a walk over all multiples of the unit.
double plainDateTimeStep(double span)
{
    if (60 > span) {
        double step = 1;
        while (span / step > 10) {
            step += 1;
        }
        return step;
    }
    const double unit = 3600 > span ? 60 : 3600;
    double step = unit;
    double intervals = span / step;
    while (intervals > 10) {
        step += unit;
        intervals = span / step;
    }
    return 2 > intervals ? step / 3 : step;
}

/// A random span between 10^low and 10^high, evenly spread over the powers of ten.
double randomSpan(QRandomGenerator &random, double low, double high)
{
    return std::pow(10.0, low + random.generateDouble() * (high - low));
}

QString mismatch(double span, double step, double expected)
{
    return QString("span %1 gives %2, not %3")
        .arg(span, 0, 'g', 17)
        .arg(step, 0, 'g', 17)
        .arg(expected, 0, 'g', 17);
}

} // namespace

class TestChartAxis : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutRangeAndGrid();
    void findsStep_data();
    void findsStep();
    void findsStepAtAnyOffset();
    void keepsNumericStepBetweenTwoAndTenIntervals();
    void findsNumericStepOfPlainSearch();
    void findsDateTimeStepOfPlainWalk();
    void findsDateTimeStepOfPlainWalkAtTheEdges();
    void endsForExtremeSpans_data();
    void endsForExtremeSpans();
    void searchesStepWithoutChange();
    void limitsZoom_data();
    void limitsZoom();
};

void TestChartAxis::startsWithoutRangeAndGrid()
{
    const PlainAxis axis;

    QCOMPARE(axis.m_min, 0.0);
    QCOMPARE(axis.m_max, 0.0);
    QCOMPARE(axis.m_step, 0.0);
    QCOMPARE(axis.m_size, 0);
    QCOMPARE(axis.m_zoomed, false);
    QCOMPARE(axis.m_autoScale, false);
    QCOMPARE(axis.m_dateTime, false);
    QVERIFY(axis.m_gridValues.isEmpty());
}

void TestChartAxis::findsStep_data()
{
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<double>("span");
    QTest::addColumn<double>("step");

    const bool numeric = false;
    const bool dateTime = true;
    QTest::newRow("numeric 0") << numeric << 0.0 << 0.0;
    QTest::newRow("numeric 0.15") << numeric << 0.15 << 0.02;
    QTest::newRow("numeric 0.5") << numeric << 0.5 << 0.1;
    QTest::newRow("numeric 1") << numeric << 1.0 << 0.2;
    QTest::newRow("numeric 2") << numeric << 2.0 << 1.0;
    QTest::newRow("numeric 10") << numeric << 10.0 << 1.0;
    QTest::newRow("numeric 11") << numeric << 11.0 << 2.0;
    QTest::newRow("numeric 100") << numeric << 100.0 << 10.0;
    QTest::newRow("numeric 150") << numeric << 150.0 << 20.0;
    QTest::newRow("numeric 2500") << numeric << 2500.0 << 1000.0;
    QTest::newRow("numeric 1e9") << numeric << 1e9 << 1e8;
    QTest::newRow("numeric negative") << numeric << -1.0 << 0.0;
    QTest::newRow("numeric small negative") << numeric << -0.001 << 0.0;
    QTest::newRow("numeric infinite") << numeric << Infinity << 0.0;
    QTest::newRow("numeric NaN") << numeric << qQNaN() << 0.0;

    QTest::newRow("date-time 0") << dateTime << 0.0 << 0.0;
    QTest::newRow("date-time, least")
        << dateTime << std::numeric_limits<double>::denorm_min() << 1.0;
    QTest::newRow("date-time 0.5") << dateTime << 0.5 << 1.0;
    QTest::newRow("date-time 9") << dateTime << 9.0 << 1.0;
    QTest::newRow("date-time 10") << dateTime << 10.0 << 1.0;
    QTest::newRow("date-time 10.1") << dateTime << 10.1 << 2.0;
    QTest::newRow("date-time 45") << dateTime << 45.0 << 5.0;
    QTest::newRow("date-time 59") << dateTime << 59.0 << 6.0;
    QTest::newRow("date-time 60") << dateTime << 60.0 << 20.0;
    QTest::newRow("date-time 119") << dateTime << 119.0 << 20.0;
    QTest::newRow("date-time 120") << dateTime << 120.0 << 60.0;
    QTest::newRow("date-time 600") << dateTime << 600.0 << 60.0;
    QTest::newRow("date-time 900") << dateTime << 900.0 << 120.0;
    QTest::newRow("date-time 3599") << dateTime << 3599.0 << 360.0;
    QTest::newRow("date-time 3600") << dateTime << 3600.0 << 1200.0;
    QTest::newRow("date-time 7200") << dateTime << 7200.0 << 3600.0;
    QTest::newRow("date-time 36000") << dateTime << 36000.0 << 3600.0;
    QTest::newRow("date-time 86400") << dateTime << 86400.0 << 10800.0;
    QTest::newRow("date-time ten years") << dateTime << 315360000.0 << 31536000.0;
    QTest::newRow("date-time negative") << dateTime << -100.0 << 0.0;
    QTest::newRow("date-time infinite") << dateTime << Infinity << 0.0;
    QTest::newRow("date-time NaN") << dateTime << qQNaN() << 0.0;
}

void TestChartAxis::findsStep()
{
    QFETCH(bool, dateTime);
    QFETCH(double, span);
    QFETCH(double, step);

    QCOMPARE(axisOfSpan(span, dateTime).gridStep(), step);
}

void TestChartAxis::findsStepAtAnyOffset()
{
    PlainAxis axis;
    axis.m_min = -1000.0;
    axis.m_max = -850.0;

    QCOMPARE(axis.gridStep(), 20.0); // a span of 150
}

void TestChartAxis::keepsNumericStepBetweenTwoAndTenIntervals()
{
    QRandomGenerator random(1);
    for (int i = 0; i < 10000; ++i) {
        const double span = randomSpan(random, -12.0, 12.0);
        const double intervals = span / axisOfSpan(span, false).gridStep();
        QVERIFY2(intervals >= 2.0 && intervals <= 10.0 * (1.0 + 1e-12),
                 qPrintable(mismatch(span, span / intervals, 0.0)));
    }
}

void TestChartAxis::findsNumericStepOfPlainSearch()
{
    QRandomGenerator random(2);
    for (int i = 0; i < 20000; ++i) {
        const double span = randomSpan(random, -15.0, 15.0);
        const double step = axisOfSpan(span, false).gridStep();
        const double expected = plainNumericStep(span);
        QVERIFY2(step == expected, qPrintable(mismatch(span, step, expected)));
    }
}

void TestChartAxis::findsDateTimeStepOfPlainWalk()
{
    QRandomGenerator random(3);
    for (int i = 0; i < 20000; ++i) {
        const double span = randomSpan(random, -4.0, 8.6); // beyond ten years
        const double step = axisOfSpan(span, true).gridStep();
        const double expected = plainDateTimeStep(span);
        QVERIFY2(step == expected, qPrintable(mismatch(span, step, expected)));
    }
}

void TestChartAxis::findsDateTimeStepOfPlainWalkAtTheEdges()
{
    // Where exactly ten intervals fit, the last bit of the span decides.
    QRandomGenerator random(4);
    for (int i = 0; i < 10000; ++i) {
        const double units[] = {1.0, 60.0, 3600.0};
        const int limits[] = {6, 60, 90000};
        const int unit = random.bounded(3);
        const double span = 10.0 * units[unit] * (1 + random.bounded(limits[unit]));
        for (const double near :
             {span, std::nextafter(span, 0.0), std::nextafter(span, Infinity)}) {
            const double step = axisOfSpan(near, true).gridStep();
            const double expected = plainDateTimeStep(near);
            QVERIFY2(step == expected, qPrintable(mismatch(near, step, expected)));
        }
    }
}

void TestChartAxis::endsForExtremeSpans_data()
{
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<double>("span");

    // A walk over hours would not end in the second and the last row.
    QTest::newRow("numeric, greatest") << false << std::numeric_limits<double>::max();
    QTest::newRow("date-time, greatest") << true << std::numeric_limits<double>::max();
    QTest::newRow("numeric, least normal") << false << std::numeric_limits<double>::min();
    QTest::newRow("numeric, least") << false << std::numeric_limits<double>::denorm_min();
    QTest::newRow("date-time, beyond whole numbers") << true << 1e25;
}

void TestChartAxis::endsForExtremeSpans()
{
    QFETCH(bool, dateTime);
    QFETCH(double, span);

    const double step = axisOfSpan(span, dateTime).gridStep();

    QVERIFY(std::isfinite(step));
    QVERIFY(step >= 0.0);
}

void TestChartAxis::searchesStepWithoutChange()
{
    PlainAxis axis;
    axis.m_min = 1.0;
    axis.m_max = 11.0;
    axis.m_step = 3.0;
    axis.m_gridValues = {3.0, 6.0};

    axis.gridStep();

    QCOMPARE(axis.m_min, 1.0);
    QCOMPARE(axis.m_max, 11.0);
    QCOMPARE(axis.m_step, 3.0);
    QCOMPARE(axis.m_gridValues, (QVector<double>{3.0, 6.0}));
}

void TestChartAxis::limitsZoom_data()
{
    QTest::addColumn<double>("span");
    QTest::addColumn<bool>("in");
    QTest::addColumn<bool>("out");

    QTest::newRow("no span") << 0.0 << false << true;
    QTest::newRow("least span") << 1e-9 << false << true;
    QTest::newRow("above the least span") << 1.1e-9 << true << true;
    QTest::newRow("middle") << 100.0 << true << true;
    QTest::newRow("below the greatest span") << 0.99e9 << true << true;
    QTest::newRow("greatest span") << 1e9 << true << false;
    QTest::newRow("NaN") << qQNaN() << false << false;
}

void TestChartAxis::limitsZoom()
{
    QFETCH(double, span);
    QFETCH(bool, in);
    QFETCH(bool, out);

    const PlainAxis axis = axisOfSpan(span, false);

    QCOMPARE(axis.canZoomIn(), in);
    QCOMPARE(axis.canZoomOut(), out);
}

QTEST_MAIN(TestChartAxis)
#include "tst_chartaxis.moc"
