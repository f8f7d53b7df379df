#include "undo/undoaxisparams.h"

#include "axes/verticalchartaxis.h"

#include <QtTest>

#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

UndoAxisParams record(double min, double max, bool zoomed, bool valid)
{
    UndoAxisParams params;
    params.min = min;
    params.max = max;
    params.zoomed = zoomed;
    params.valid = valid;
    return params;
}

} // namespace

Q_DECLARE_METATYPE(UndoAxisParams)

class TestUndoAxisParams : public QObject
{
    Q_OBJECT

private slots:
    void isInvalidWithoutAxis();
    void copiesStateOfAxis();
    void keepsReversedBoundsAsTheyAre();
    void doesNotFollowTheAxis();
    void comparesFieldByField_data();
    void comparesFieldByField();
};

void TestUndoAxisParams::isInvalidWithoutAxis()
{
    const UndoAxisParams ofNone(nullptr);

    QCOMPARE(ofNone.min, 0.0);
    QCOMPARE(ofNone.max, 0.0);
    QVERIFY(!ofNone.zoomed);
    QVERIFY(!ofNone.valid);
    QVERIFY(ofNone == UndoAxisParams());
}

void TestUndoAxisParams::copiesStateOfAxis()
{
    VerticalChartAxis axis(nullptr);
    axis.m_min = -2.0;
    axis.m_max = 7.0;
    axis.m_zoomed = true;

    const UndoAxisParams params(&axis);

    QCOMPARE(params.min, -2.0);
    QCOMPARE(params.max, 7.0);
    QVERIFY(params.zoomed);
    QVERIFY(params.valid);
}

void TestUndoAxisParams::keepsReversedBoundsAsTheyAre()
{
    VerticalChartAxis axis(nullptr);
    axis.m_min = 7.0;
    axis.m_max = -2.0;

    const UndoAxisParams params(&axis);

    QCOMPARE(params.min, 7.0);
    QCOMPARE(params.max, -2.0);
}

void TestUndoAxisParams::doesNotFollowTheAxis()
{
    VerticalChartAxis axis(nullptr);
    const UndoAxisParams params(&axis);

    axis.m_max = 5.0;
    axis.m_zoomed = true;

    QVERIFY(params == record(0.0, 0.0, false, true));
}

void TestUndoAxisParams::comparesFieldByField_data()
{
    QTest::addColumn<UndoAxisParams>("a");
    QTest::addColumn<UndoAxisParams>("b");
    QTest::addColumn<bool>("equal");

    const double nan = qQNaN();
    const UndoAxisParams base = record(1.0, 2.0, true, true);
    QTest::newRow("same") << base << base << true;
    QTest::newRow("min") << base << record(1.5, 2.0, true, true) << false;
    QTest::newRow("max") << base << record(1.0, 2.5, true, true) << false;
    QTest::newRow("zoomed") << base << record(1.0, 2.0, false, true) << false;
    QTest::newRow("valid") << base << record(1.0, 2.0, true, false) << false;
    QTest::newRow("bounds swapped") << base << record(2.0, 1.0, true, true) << false;
    QTest::newRow("next double") << base << record(1.0, std::nextafter(2.0, 3.0), true, true)
                                 << false;
    QTest::newRow("zeros of both signs")
        << record(0.0, -0.0, false, true) << record(-0.0, 0.0, false, true) << true;
    QTest::newRow("infinities") << record(-Infinity, Infinity, false, true)
                                << record(-Infinity, Infinity, false, true) << true;
    QTest::newRow("min is NaN") << record(nan, 2.0, true, true) << record(nan, 2.0, true, true)
                                << false;
    QTest::newRow("max is NaN") << record(1.0, nan, true, true) << record(1.0, nan, true, true)
                                << false;
}

void TestUndoAxisParams::comparesFieldByField()
{
    QFETCH(UndoAxisParams, a);
    QFETCH(UndoAxisParams, b);
    QFETCH(bool, equal);

    QCOMPARE(a == b, equal);
    QCOMPARE(b == a, equal);
    QCOMPARE(a != b, !equal);
}

QTEST_MAIN(TestUndoAxisParams)
#include "tst_undoaxisparams.moc"
