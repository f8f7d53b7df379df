#include "series/chartpoint.h"

#include <QtTest>

class TestChartPoint : public QObject
{
    Q_OBJECT

private slots:
    void startsAsZeroes();
    void gapHasItsOwnContents();
    void isGapOnlyIfBothCoordinatesSaySo_data();
    void isGapOnlyIfBothCoordinatesSaySo();
};

void TestChartPoint::startsAsZeroes()
{
    const ChartPoint point;

    QCOMPARE(point.x, 0);
    QCOMPARE(point.y, 0);
    QCOMPARE(point.state, 0);
    QCOMPARE(point.value, 0.0);
    QCOMPARE(point.clipped, false);
}

void TestChartPoint::gapHasItsOwnContents()
{
    const ChartPoint gap = ChartPoint::gap();

    QCOMPARE(gap.x, -1);
    QCOMPARE(gap.y, -1);
    QCOMPARE(gap.state, 0);
    QCOMPARE(gap.value, 0.0);
    QCOMPARE(gap.clipped, true);
}

void TestChartPoint::isGapOnlyIfBothCoordinatesSaySo_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<bool>("gap");

    QTest::newRow("both") << -1 << -1 << true;
    QTest::newRow("x alone, left of the pane") << -1 << 5 << false;
    QTest::newRow("y alone, above the pane") << 5 << -1 << false;
    QTest::newRow("neither") << 0 << 0 << false;
}

void TestChartPoint::isGapOnlyIfBothCoordinatesSaySo()
{
    QFETCH(const int, x);
    QFETCH(const int, y);
    QFETCH(const bool, gap);
    ChartPoint point;
    point.x = x;
    point.y = y;

    QCOMPARE(point.isGap(), gap);
}

QTEST_APPLESS_MAIN(TestChartPoint)
#include "tst_chartpoint.moc"
