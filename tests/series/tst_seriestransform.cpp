#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "series/pointthread.h"
#include "support/openmodel.h"
#include "support/plainseries.h"
#include "views/chartwidget.h"

#include <QRandomGenerator>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

const double NaN = qQNaN();
const QRectF Plot(10.0, 20.0, 200.0, 100.0);
constexpr int Patience = 20000; // milliseconds until a wait counts as failed

class CountingAxisX : public HorizontalChartAxis
{
public:
    void recalculateGridValues() override { ++m_recalculations; }

    int m_recalculations = 0;
};

class CountingAxisY : public VerticalChartAxis
{
public:
    using VerticalChartAxis::VerticalChartAxis;
    void recalculateGridValues() override { ++m_recalculations; }

    int m_recalculations = 0;
};

/// A series with the ranges X [0, 100] and Y [0, 50], whose axes count. On Plot that makes
/// x' = 2x + 10 and y' = -2y + 120.
class ZoomSeries : public PlainSeries
{
public:
    ZoomSeries()
    {
        delete m_axisY;
        m_y = new CountingAxisY(this);
        m_axisY = m_y;
        m_axisX = &m_x;
        setRanges(0, 100, 0, 50);
    }

    void setRanges(double minX, double maxX, double minY, double maxY)
    {
        m_x.m_min = minX;
        m_x.m_max = maxX;
        m_y->m_min = minY;
        m_y->m_max = maxY;
    }

    QString ranges() const { return axisText(m_x) + " " + axisText(*m_y); }

    CountingAxisX m_x;
    CountingAxisY *m_y; ///< Owned by the base as m_axisY.
};

/// Whose worker waits in isValid() until it is let go.
class WaitingSeries : public ZoomSeries
{
public:
    bool isValid(const ChartValue *value) const override
    {
        m_entered.release();
        m_gate.acquire();
        return ZoomSeries::isValid(value);
    }

    mutable QSemaphore m_entered;
    mutable QSemaphore m_gate{2}; // for the extremes, as the two samples enter
};

bool isClose(const QPointF &a, const QPointF &b, double tolerance)
{
    return std::abs(a.x() - b.x()) <= tolerance && std::abs(a.y() - b.y()) <= tolerance;
}

} // namespace

class TestSeriesTransform : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutParkedZoom();

    void mapsRangesOntoPlot();
    void buildsMatrix_data();
    void buildsMatrix();
    void leavesMatrixWithoutAxes();
    void mapsPointsAndLines();
    void mapsBack();
    void mapsBackToOriginWithoutInverse();
    void tellsInvertible_data();
    void tellsInvertible();
    void mapsThereAndBackForAnyRange();

    void zoomSetsRanges();
    void zoomSortsMirroredRectangle();
    void zoomToPresentViewMarksOnly();
    void zoomSetsTheAxisThatExists();
    void zoomNeedsInverse_data();
    void zoomNeedsInverse();

    void pendingZoomWaits();
    void pendingZoomNeedsInverse_data();
    void pendingZoomNeedsInverse();
    void pendingZoomWithoutExtentHasFactorOne();
    void pendingZoomsBuildOnOneAnother();
    void pendingZoomIsAppliedOnce();
    void pendingZoomAppliesToTheAxisThatExists();
    void changesNothingWithoutParkedZoom();
    void pendingZoomsEqualImmediateOnes();

    void visibleRectIsALittleWider();
    void visibleRectOrdersRanges();
    void visibleRectNeedsBothAxes();
    void fullRectSpansAllSamples_data();
    void fullRectSpansAllSamples();
    void fullRectIsNullWithNullEnds();
    void fullRectIsNullWithoutExtremes();

    void startsOnGivenRectangle();
    void startsOnRectangleOfItsPane();
    void keepsMatrixWithoutRectangleAndPane();
    void doesNotDisturbRunningCalculation();

    void testsOneMoreZoomStep_data();
    void testsOneMoreZoomStep();
    void refusesMoreThanFourExtraDecimals();
    void asksAxisForZoomInY();
};

void TestSeriesTransform::startsWithoutParkedZoom()
{
    const PendingTransform pending;

    QVERIFY(!pending.valid);
    QVERIFY(pending.transform.isIdentity());
    QCOMPARE(QVector<double>({pending.minX, pending.maxX, pending.minY, pending.maxY}),
             QVector<double>({0, 0, 0, 0}));
}

void TestSeriesTransform::mapsRangesOntoPlot()
{
    ZoomSeries series;
    series.updateMatrix(Plot);

    QCOMPARE(series.m_matrix, QTransform(2, 0, 0, -2, 10, 120));
    QCOMPARE(series.map(QPointF(0, 50)), QPointF(10, 20));    // top left
    QCOMPARE(series.map(QPointF(100, 0)), QPointF(210, 120)); // bottom right
}

void TestSeriesTransform::buildsMatrix_data()
{
    QTest::addColumn<QVector<double>>("range"); // X from, to, Y from, to
    QTest::addColumn<QTransform>("matrix");

    using V = QVector<double>;
    QTest::newRow("range off the origin")
        << V{50, 100, 100, 150} << QTransform(4, 0, 0, -2, -190, 320);
    QTest::newRow("no span of X") << V{5, 5, 0, 50} << QTransform(1, 0, 0, -2, 5, 120);
    QTest::newRow("no span of Y") << V{0, 100, 7, 7} << QTransform(2, 0, 0, 1, 10, 13);
    QTest::newRow("no span at all") << V{0, 0, 0, 0} << QTransform(1, 0, 0, 1, 10, 20);
    QTest::newRow("reverse range") << V{100, 0, 0, 50} << QTransform(-2, 0, 0, -2, 210, 120);
}

void TestSeriesTransform::buildsMatrix()
{
    QFETCH(const QVector<double>, range);
    QFETCH(const QTransform, matrix);
    ZoomSeries series;
    series.setRanges(range.at(0), range.at(1), range.at(2), range.at(3));
    series.updateMatrix(Plot);

    QCOMPARE(series.m_matrix, matrix);
    QVERIFY(series.isInvertible(series.m_matrix));
}

void TestSeriesTransform::leavesMatrixWithoutAxes()
{
    ZoomSeries series;
    series.m_matrix = QTransform::fromTranslate(3, 4);
    series.m_axisX = nullptr;
    series.updateMatrix(Plot);
    QCOMPARE(series.m_matrix, QTransform::fromTranslate(3, 4));

    delete series.m_axisY;
    series.m_axisY = nullptr;
    series.m_axisX = &series.m_x;
    series.updateMatrix(Plot);
    QCOMPARE(series.m_matrix, QTransform::fromTranslate(3, 4));
}

void TestSeriesTransform::mapsPointsAndLines()
{
    ZoomSeries series;
    series.updateMatrix(Plot);

    QCOMPARE(series.map(QPointF(10, 20)), QPointF(30, 80));
    QCOMPARE(series.map(QLineF(10, 20, 0.25, 0)), QLineF(30, 80, 10.5, 120)); // not rounded
}

void TestSeriesTransform::mapsBack()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    bool ok = false;

    QCOMPARE(series.mapInverted(QPointF(30, 80), &ok), QPointF(10, 20));
    QVERIFY(ok);
}

void TestSeriesTransform::mapsBackToOriginWithoutInverse()
{
    PlainSeries series;
    series.m_matrix = QTransform(0, 0, 0, 1, 5, 5);
    bool ok = true;

    QCOMPARE(series.mapInverted(QPointF(30, 80), &ok), QPointF(0, 0));
    QVERIFY(!ok);
}

void TestSeriesTransform::tellsInvertible_data()
{
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<bool>("invertible");

    QTest::newRow("identity") << QTransform() << true;
    QTest::newRow("singular") << QTransform(0, 0, 0, 1, 0, 0) << false;
    QTest::newRow("determinant at the limit") << QTransform(1e-12, 0, 0, 1, 0, 0) << false;
    QTest::newRow("negative, at the limit") << QTransform(1e-12, 0, 0, -1, 0, 0) << false;
    QTest::newRow("above the limit") << QTransform(1.1e-12, 0, 0, 1, 0, 0) << true;
    QTest::newRow("negative, beyond the limit") << QTransform(1.1e-12, 0, 0, -1, 0, 0) << true;
    QTest::newRow("NaN") << QTransform(NaN, 0, 0, 1, 0, 0) << true;
}

void TestSeriesTransform::tellsInvertible()
{
    QFETCH(const QTransform, transform);
    QFETCH(const bool, invertible);

    QCOMPARE(PlainSeries().isInvertible(transform), invertible);
}

void TestSeriesTransform::mapsThereAndBackForAnyRange()
{
    constexpr int Rounds = 2000;
    constexpr double Tolerance = 1e-6; // pixels
    QRandomGenerator random(14);
    ZoomSeries series;
    for (int round = 0; round < Rounds; ++round) {
        const double minX = random.generateDouble() * 2000 - 1000;
        const double minY = random.generateDouble() * 2000 - 1000;
        const double maxX = minX + 0.1 + random.generateDouble() * 1000;
        const double maxY = minY + 0.1 + random.generateDouble() * 1000;
        series.setRanges(minX, maxX, minY, maxY);
        series.updateMatrix(Plot);

        QVERIFY2(isClose(series.map(QPointF(minX, maxY)), Plot.topLeft(), Tolerance),
                 qPrintable(series.ranges()));
        QVERIFY2(isClose(series.map(QPointF(maxX, minY)), Plot.bottomRight(), Tolerance),
                 qPrintable(series.ranges()));
        bool ok = false;
        const QPointF pixel(random.bounded(300), random.bounded(200));
        QVERIFY2(isClose(series.map(series.mapInverted(pixel, &ok)), pixel, Tolerance),
                 qPrintable(series.ranges()));
        QVERIFY(ok);
    }
}

void TestSeriesTransform::zoomSetsRanges()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoom(QRectF(), QRectF(60, 40, 100, 50));

    // X from (60 - 10) / 2, 100 / 2 wide; Y up to (120 - 40) / 2, 50 / 2 high
    QCOMPARE(series.ranges(), QString("[25,75] zoomed [15,40] zoomed"));
    QCOMPARE(series.m_x.m_recalculations, 1);
    QCOMPARE(series.m_y->m_recalculations, 1);
    QCOMPARE(series.m_matrix, QTransform(2, 0, 0, -2, 10, 120));
    QVERIFY(!series.m_pending.valid);
}

void TestSeriesTransform::zoomSortsMirroredRectangle()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoom(QRectF(), QRectF(160, 90, -100, -50));

    QCOMPARE(series.ranges(), QString("[25,75] zoomed [15,40] zoomed"));
}

void TestSeriesTransform::zoomToPresentViewMarksOnly()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoom(Plot, Plot);

    QCOMPARE(series.ranges(), QString("[0,100] zoomed [0,50] zoomed"));
    QCOMPARE(series.m_x.m_recalculations, 0);
    QCOMPARE(series.m_y->m_recalculations, 0);
}

void TestSeriesTransform::zoomSetsTheAxisThatExists()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.m_axisX = nullptr;
    series.zoom(QRectF(), QRectF(60, 40, 100, 50));

    QCOMPARE(series.ranges(), QString("[0,100] [15,40] zoomed"));

    delete series.m_axisY;
    series.m_axisY = nullptr;
    series.zoom(QRectF(), QRectF(60, 40, 100, 50)); // does nothing
}

void TestSeriesTransform::zoomNeedsInverse_data()
{
    QTest::addColumn<QTransform>("matrix");

    QTest::newRow("singular") << QTransform(0, 0, 0, 1, 0, 0);
    QTest::newRow("determinant too small") << QTransform(1e-7, 0, 0, -1e-6, 0, 0);
    QTest::newRow("determinant suffices, one factor is too small")
        << QTransform(1e-13, 0, 0, -1e3, 0, 0);
}

void TestSeriesTransform::zoomNeedsInverse()
{
    QFETCH(const QTransform, matrix);
    ZoomSeries series;
    series.m_matrix = matrix;
    series.zoom(Plot, QRectF(60, 40, 100, 50));

    QCOMPARE(series.ranges(), QString("[0,100] [0,50]"));
}

void TestSeriesTransform::pendingZoomWaits()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoomPending(Plot, QRectF(60, 40, 100, 50));

    QCOMPARE(series.ranges(), QString("[0,100] [0,50]"));
    QCOMPARE(series.m_matrix, QTransform(2, 0, 0, -2, 10, 120));
    const PendingTransform &pending = series.m_pending;
    QVERIFY(pending.valid);
    QCOMPARE(QVector<double>({pending.minX, pending.maxX, pending.minY, pending.maxY}),
             QVector<double>({25, 75, 15, 40}));
    // 200 / 50 and -100 / 25; 10 - 25 * 4 and 20 + 40 * 4
    QCOMPARE(pending.transform, QTransform(4, 0, 0, -4, -90, 180));
}

void TestSeriesTransform::pendingZoomNeedsInverse_data()
{
    zoomNeedsInverse_data();
}

void TestSeriesTransform::pendingZoomNeedsInverse()
{
    QFETCH(const QTransform, matrix);
    ZoomSeries series;
    series.m_matrix = matrix;
    series.zoomPending(Plot, QRectF(60, 40, 100, 50));
    QVERIFY(!series.m_pending.valid);

    // The same for a zoom upon a parked one, which stays.
    series.m_matrix = QTransform();
    series.m_pending.valid = true;
    series.m_pending.transform = matrix;
    series.m_pending.maxX = 8;
    series.zoomPending(Plot, QRectF(60, 40, 100, 50));
    QVERIFY(series.m_pending.valid);
    QCOMPARE(series.m_pending.transform, matrix);
    QCOMPARE(series.m_pending.maxX, 8.0);
}

void TestSeriesTransform::pendingZoomWithoutExtentHasFactorOne()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoomPending(Plot, QRectF(60, 40, 0, 0)); // data (25, 40)

    QVERIFY(series.m_pending.valid);
    QCOMPARE(series.m_pending.transform, QTransform(1, 0, 0, 1, -15, -20));
}

void TestSeriesTransform::pendingZoomsBuildOnOneAnother()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    const QRectF rightHalf(110, 20, 100, 100);
    series.zoomPending(Plot, rightHalf);
    series.zoomPending(Plot, rightHalf);
    series.setPendingParameters();

    QVERIFY(!series.m_pending.valid);
    QCOMPARE(series.ranges(), QString("[75,100] zoomed [0,50] zoomed"));
    QCOMPARE(series.m_matrix, QTransform(8, 0, 0, -2, -590, 120));
}

void TestSeriesTransform::pendingZoomIsAppliedOnce()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoomPending(Plot, QRectF(60, 20, 100, 100)); // leaves Y as it is
    series.setPendingParameters();

    QCOMPARE(series.ranges(), QString("[25,75] zoomed [0,50] zoomed"));
    QCOMPARE(series.m_x.m_recalculations, 1);
    QCOMPARE(series.m_y->m_recalculations, 0);
    QCOMPARE(series.m_matrix, QTransform(4, 0, 0, -2, -90, 120));
    const PendingTransform &pending = series.m_pending;
    QVERIFY(!pending.valid);
    QVERIFY(pending.transform.isIdentity());
    QCOMPARE(QVector<double>({pending.minX, pending.maxX, pending.minY, pending.maxY}),
             QVector<double>({0, 0, 0, 0}));

    series.setRanges(1, 2, 3, 4);
    series.setPendingParameters();
    QCOMPARE(series.ranges(), QString("[1,2] zoomed [3,4] zoomed"));
}

void TestSeriesTransform::pendingZoomAppliesToTheAxisThatExists()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.zoomPending(Plot, QRectF(60, 40, 100, 50));
    series.m_axisX = nullptr;
    series.setPendingParameters();

    QCOMPARE(series.ranges(), QString("[0,100] [15,40] zoomed"));
    QCOMPARE(series.m_matrix, QTransform(4, 0, 0, -4, -90, 180));
}

void TestSeriesTransform::changesNothingWithoutParkedZoom()
{
    ZoomSeries series;
    series.updateMatrix(Plot);
    series.m_pending.maxX = 5; // of no meaning while nothing is parked
    series.setPendingParameters();

    QCOMPARE(series.ranges(), QString("[0,100] [0,50]"));
    QCOMPARE(series.m_x.m_recalculations, 0);
    QCOMPARE(series.m_matrix, QTransform(2, 0, 0, -2, 10, 120));
}

void TestSeriesTransform::pendingZoomsEqualImmediateOnes()
{
    constexpr int Rounds = 2000;
    QRandomGenerator random(15);
    for (int round = 0; round < Rounds; ++round) {
        ZoomSeries parked;
        ZoomSeries immediate;
        parked.updateMatrix(Plot);
        for (int step = random.bounded(1, 5); step > 0; --step) {
            const QRectF rect(random.bounded(10, 110), random.bounded(20, 70),
                              random.bounded(20, 101), random.bounded(20, 51));
            parked.zoomPending(Plot, rect);
            immediate.updateMatrix(Plot);
            immediate.zoom(Plot, rect);
        }
        parked.setPendingParameters();
        immediate.updateMatrix(Plot);

        QCOMPARE(parked.ranges(), immediate.ranges());
        for (const QPointF &corner : {QPointF(0, 0), QPointF(100, 50)}) {
            QVERIFY2(isClose(parked.map(corner), immediate.map(corner), 1e-6),
                     qPrintable(parked.ranges()));
        }
    }
}

void TestSeriesTransform::visibleRectIsALittleWider()
{
    ZoomSeries series;
    const QRectF visible = series.visibleRect();

    // 0.98% of 100 and of 50 on each side
    QCOMPARE(visible.left(), -0.98);
    QCOMPARE(visible.width(), 101.96);
    QCOMPARE(visible.top(), -0.49);
    QCOMPARE(visible.height(), 50.98);
}

void TestSeriesTransform::visibleRectOrdersRanges()
{
    ZoomSeries series;
    series.setRanges(100, 0, 7, 7);

    QCOMPARE(series.visibleRect(), QRectF(-0.98, 7, 101.96, 0));
}

void TestSeriesTransform::visibleRectNeedsBothAxes()
{
    ZoomSeries series;
    series.m_axisX = nullptr;
    QVERIFY(series.visibleRect().isNull());

    series.m_axisX = &series.m_x;
    delete series.m_axisY;
    series.m_axisY = nullptr;
    QVERIFY(series.visibleRect().isNull());
}

void TestSeriesTransform::fullRectSpansAllSamples_data()
{
    QTest::addColumn<QVector<QPointF>>("samples");
    QTest::addColumn<QRectF>("rect");

    using P = QVector<QPointF>;
    QTest::newRow("no samples") << P{} << QRectF();
    QTest::newRow("one sample") << P{{3, 4}} << QRectF(3, 4, 0, 0);
    QTest::newRow("several") << P{{1, 5}, {2, 9}, {3, -1}, {8, 4}} << QRectF(1, -1, 7, 10);
    QTest::newRow("ends count, not the widest X")
        << P{{1, 0}, {50, 1}, {8, 2}} << QRectF(1, 0, 7, 2);
    QTest::newRow("descending") << P{{8, 2}, {1, 0}} << QRectF(1, 0, 7, 2);
    QTest::newRow("invalid ends count for X")
        << P{{0, NaN}, {1, 3}, {9, NaN}} << QRectF(0, 3, 9, 0);
    QTest::newRow("nothing valid") << P{{1, NaN}, {2, NaN}} << QRectF();
}

void TestSeriesTransform::fullRectSpansAllSamples()
{
    QFETCH(const QVector<QPointF>, samples);
    QFETCH(const QRectF, rect);
    PlainSeries series;
    for (const QPointF &sample : samples) {
        series.addValues({newValue(sample.x(), sample.y())});
    }

    QCOMPARE(series.fullRect(), rect);
}

void TestSeriesTransform::fullRectIsNullWithNullEnds()
{
    PlainSeries series;
    series.addValues({newValue(1, 2), newValue(3, 4)});
    series.m_values.prepend(nullptr);
    QCOMPARE(series.fullRect(), QRectF());

    series.m_values.removeFirst();
    series.m_values.append(nullptr);
    QCOMPARE(series.fullRect(), QRectF());
}

void TestSeriesTransform::fullRectIsNullWithoutExtremes()
{
    PlainSeries series;
    series.addValues({newValue(1, 2), newValue(3, 4)});
    series.m_minValue = nullptr;
    QCOMPARE(series.fullRect(), QRectF());

    series.recalculateMinMax();
    series.m_maxValue = nullptr;
    QCOMPARE(series.fullRect(), QRectF());
}

void TestSeriesTransform::startsOnGivenRectangle()
{
    ZoomSeries series;
    ChartWidget pane(nullptr);
    series.m_chart = &pane; // not asked
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    series.updatePoints(Plot);
    QVERIFY(finished.wait(Patience));

    QCOMPARE(series.m_matrix, QTransform(2, 0, 0, -2, 10, 120));
    QCOMPARE(series.m_pointThread->m_rect, series.visibleRect());
}

void TestSeriesTransform::startsOnRectangleOfItsPane()
{
    ZoomSeries series;
    ZoomSeries expected;
    ChartWidget pane(nullptr);
    pane.resize(400, 300);
    series.m_chart = &pane;
    expected.updateMatrix(pane.chartRect(QRectF()));
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    for (const QRectF &empty : {QRectF(), QRectF(0, 0, 100, 0), QRectF(0, 0, 0, 100)}) {
        series.m_matrix = QTransform();
        series.updatePoints(empty);
        QVERIFY(finished.wait(Patience));
        QCOMPARE(series.m_matrix, expected.m_matrix);
    }
}

void TestSeriesTransform::keepsMatrixWithoutRectangleAndPane()
{
    ZoomSeries series;
    series.m_matrix = QTransform::fromTranslate(3, 4);
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    series.updatePoints(QRectF());
    QVERIFY(finished.wait(Patience));

    QCOMPARE(series.m_matrix, QTransform::fromTranslate(3, 4));
}

void TestSeriesTransform::doesNotDisturbRunningCalculation()
{
    WaitingSeries series;
    series.addValues({newValue(0, 0), newValue(100, 50)});
    QVERIFY(series.m_entered.tryAcquire(2));
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    series.updatePoints(Plot);
    QVERIFY(series.m_entered.tryAcquire(1, Patience));

    const QRectF clip = series.m_pointThread->m_rect;
    series.setRanges(0, 1, 0, 1);
    series.updatePoints(QRectF(0, 0, 500, 500));
    const QTransform matrix = series.m_matrix;
    const QRectF clipMeanwhile = series.m_pointThread->m_rect;
    series.m_gate.release(2);
    QVERIFY(finished.wait(Patience));

    QCOMPARE(matrix, QTransform(2, 0, 0, -2, 10, 120));
    QCOMPARE(clipMeanwhile, clip);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(series.m_pointThread->m_points.size(), 2);
    QCOMPARE(series.m_pointThread->m_points.at(1).x, 210);
}

void TestSeriesTransform::testsOneMoreZoomStep_data()
{
    QTest::addColumn<double>("determinant");
    QTest::addColumn<QString>("possible");

    // A transform is usable above 1e-12; a step changes the determinant by 10 or 100.
    QTest::newRow("plenty") << 1.0 << "in X, in Y, out, out X, out Y";
    QTest::newRow("out twice is too far") << 3e-11 << "in X, in Y, out X, out Y";
    QTest::newRow("out once is too far") << 3e-12 << "in X, in Y";
    QTest::newRow("in makes it usable") << 3e-13 << "in X, in Y";
    QTest::newRow("in does not suffice") << 3e-14 << "";
}

void TestSeriesTransform::testsOneMoreZoomStep()
{
    QFETCH(const double, determinant);
    QFETCH(const QString, possible);
    ZoomSeries series;
    const QTransform matrix(determinant, 0, 0, -1, 3, 4);
    series.m_matrix = matrix;

    QStringList steps;
    const auto add = [&steps](bool can, const char *step) {
        if (can) {
            steps.append(step);
        }
    };
    add(series.canZoomInX(), "in X");
    add(series.canZoomInY(), "in Y");
    add(series.canZoomOut(), "out");
    add(series.canZoomOutX(), "out X");
    add(series.canZoomOutY(), "out Y");

    QCOMPARE(steps.join(", "), possible);
    QCOMPARE(series.m_matrix, matrix);
}

void TestSeriesTransform::refusesMoreThanFourExtraDecimals()
{
    ZoomSeries series;
    series.m_extraPrecision = 4;
    QVERIFY(series.canZoomInY());

    series.m_extraPrecision = 5;
    QVERIFY(!series.canZoomInY());
    QVERIFY(series.canZoomInX());
    QVERIFY(series.canZoomOutY());
}

void TestSeriesTransform::asksAxisForZoomInY()
{
    ZoomSeries series;
    series.setRanges(0, 100, 0, 1e-9);
    QVERIFY(!series.canZoomInY());
    series.setRanges(0, 100, 0, 2e-9);
    QVERIFY(series.canZoomInY());

    delete series.m_axisY;
    series.m_axisY = nullptr;
    QVERIFY(series.canZoomInY());
}

QTEST_MAIN(TestSeriesTransform)
#include "tst_seriestransform.moc"
