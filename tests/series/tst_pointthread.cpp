#include "series/pointthread.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "support/plainseries.h"
#include "support/plainwalk.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const double NaN = qQNaN();
const QRectF View(0.0, 0.0, 100.0, 100.0); // the map is identity: a data unit is a pixel
constexpr int Patience = 20000;            // milliseconds until a wait counts as failed

/// "x,y" with "*" behind a clipped one, or "gap".
QString pointText(const ChartPoint &point)
{
    if (point.isGap()) {
        return QStringLiteral("gap");
    }
    return QString("%1,%2%3").arg(point.x).arg(point.y).arg(point.clipped ? "*" : "");
}

QString pointsText(const AbstractChartSeries &series)
{
    QStringList texts;
    for (const ChartPoint &point : qAsConst(series.m_pointThread->m_points)) {
        texts.append(pointText(point));
    }
    return texts.join(' ');
}

/// Runs the walk on this thread.
void compute(AbstractChartSeries &series, const QRectF &rect = View)
{
    series.m_pointThread->m_rect = rect;
    series.m_pointThread->m_stop = false;
    series.m_pointThread->run();
}

/// Adds a sample for each point; one at (-1, -1) stands for a null entry.
void addPoints(AbstractChartSeries &series, const QVector<QPointF> &points)
{
    for (const QPointF &point : points) {
        if (point == QPointF(-1, -1)) {
            series.m_values.append(nullptr);
        } else {
            series.addValues({newValue(point.x(), point.y())});
        }
    }
}

/// Lets the worker into isValid() step by step.
class GatedSeries : public PlainSeries
{
public:
    bool isValid(const ChartValue *value) const override
    {
        if (m_gated) {
            m_entered.release();
            m_gate.acquire();
        }
        return PlainSeries::isValid(value);
    }

    bool waitUntilEntered() { return m_entered.tryAcquire(1, Patience); }
    void open() { m_gate.release(1000); }

    bool m_gated = false; ///< Set while no worker runs.

private:
    mutable QSemaphore m_entered;
    mutable QSemaphore m_gate;
};

/// A worker in isValid() goes on when it has been asked to stop, and not before.
class StubbornSeries : public PlainSeries
{
public:
    bool isValid(const ChartValue *value) const override
    {
        if (m_stubborn) {
            m_entered.release();
            while (!m_pointThread->m_stop) {
                QThread::yieldCurrentThread();
            }
        }
        return PlainSeries::isValid(value);
    }

    bool waitUntilEntered() { return m_entered.tryAcquire(1, Patience); }

    bool m_stubborn = false; ///< Set while no worker runs.

private:
    mutable QSemaphore m_entered;
};

/// Notes which samples it is asked about.
class AskedSeries : public PlainSeries
{
public:
    bool isValid(const ChartValue *value) const override
    {
        m_asked.append(QString::number(value->x));
        return PlainSeries::isValid(value);
    }

    mutable QStringList m_asked;
};

} // namespace

class TestPointThread : public QObject
{
    Q_OBJECT

private slots:
    void startsEmptyAndIdle();
    void doesNothingWithoutSeries();
    void walksPairs_data();
    void walksPairs();
    void carriesStateAndUnclippedValue();
    void mapsAndRoundsToPixels();
    void keepsPathWithinOneColumn();
    void givesNothingForEmptyRect_data();
    void givesNothingForEmptyRect();
    void beginsAnewEachTime();
    void keepsCapacityBetweenCalculations();
    void asksForValidityOnceInOrder_data();
    void asksForValidityOnceInOrder();
    void addsSinglePoint_data();
    void addsSinglePoint();
    void looksAtLastPointOnly();

    void runsInItsOwnThread();
    void finishesWithEmptyRect();
    void keepsStopRequestUntilNextStart();
    void stopsIdleWorkerAtOnce();
    void stopsAfterTheCurrentPair();
    void holdsBothLocksWhileItRuns();
    void waitsForBothLocks();
    void stopsWhenDeleted();
};

void TestPointThread::startsEmptyAndIdle()
{
    PlainSeries series;
    const PointThread *thread = series.m_pointThread;

    QCOMPARE(thread->m_series, &series);
    QVERIFY(!thread->parent());
    QVERIFY(thread->m_points.isEmpty());
    QVERIFY(!thread->m_stop);
    QVERIFY(thread->m_rect.isNull());
    QVERIFY(!thread->isRunning());
}

void TestPointThread::doesNothingWithoutSeries()
{
    QObject parent;
    PointThread thread(nullptr, &parent);
    thread.m_rect = View;
    thread.run();

    QCOMPARE(thread.parent(), &parent);
    QVERIFY(thread.m_points.isEmpty());
}

void TestPointThread::walksPairs_data()
{
    QTest::addColumn<QVector<QPointF>>("samples");
    QTest::addColumn<QString>("points");

    using P = QVector<QPointF>;
    const QPointF null(-1, -1);
    QTest::newRow("no sample") << P{} << "";
    QTest::newRow("one sample") << P{{5, 5}} << "";
    QTest::newRow("two in view") << P{{10, 20}, {30, 40}} << "10,20 30,40";
    QTest::newRow("three are joined") << P{{10, 20}, {30, 40}, {50, 20}} << "10,20 30,40 50,20";
    QTest::newRow("two on one pixel") << P{{10, 20}, {10.3, 20.4}} << "";
    QTest::newRow("many on one pixel, then away")
        << P{{10, 20}, {10.1, 20}, {10.2, 20}, {30, 40}} << "10,20 30,40";
    QTest::newRow("there and back") << P{{10, 20}, {30, 40}, {10, 20}} << "10,20 30,40 10,20";
    QTest::newRow("on the edges") << P{{0, 0}, {100, 100}} << "0,0 100,100";

    QTest::newRow("invalid between two valid")
        << P{{10, 20}, {20, NaN}, {30, 40}} << "10,20 gap 30,40";
    QTest::newRow("several invalid give one gap")
        << P{{10, 20}, {20, NaN}, {21, NaN}, {30, 40}} << "10,20 gap 30,40";
    QTest::newRow("line, gap, line")
        << P{{10, 20}, {20, 20}, {25, NaN}, {30, 40}, {40, 40}} << "10,20 20,20 gap 30,40 40,40";
    QTest::newRow("invalid first") << P{{10, NaN}, {20, 20}, {30, 20}} << "20,20 30,20";
    QTest::newRow("invalid last") << P{{10, 20}, {20, 20}, {30, NaN}} << "10,20 20,20 gap";
    QTest::newRow("all invalid") << P{{10, NaN}, {20, NaN}} << "";
    QTest::newRow("invalid between two out of sight") << P{{10, 200}, {20, NaN}, {30, 200}} << "";
    QTest::newRow("same pixel on both sides of an invalid one")
        << P{{10, 20}, {10, NaN}, {10, 20}} << "10,20 gap 10,20";

    QTest::newRow("first out of sight") << P{{-10, 50}, {50, 50}} << "0,50* 50,50";
    QTest::newRow("second out of sight") << P{{50, 50}, {50, 150}} << "50,50 50,100*";
    QTest::newRow("through from outside to outside") << P{{-10, 50}, {110, 50}} << "0,50* 100,50*";
    QTest::newRow("segment out of sight at first") << P{{10, 200}, {20, 200}} << "";
    QTest::newRow("long run out of sight")
        << P{{10, 10}, {20, 10}, {20, 200}, {30, 200}, {40, 200}, {50, 200}, {50, 10}, {60, 10}}
        << "10,10 20,10 20,100* gap 50,100* 50,10 60,10";

    QTest::newRow("null entry breaks both pairs and leaves no gap")
        << P{{10, 10}, {20, 20}, null, {30, 30}, {40, 40}} << "10,10 20,20 30,30 40,40";
    QTest::newRow("null entries around one sample") << P{null, {10, 10}, null} << "";
}

void TestPointThread::walksPairs()
{
    QFETCH(const QVector<QPointF>, samples);
    QFETCH(const QString, points);
    PlainSeries series;
    addPoints(series, samples);

    compute(series);

    QCOMPARE(pointsText(series), points);
}

void TestPointThread::carriesStateAndUnclippedValue()
{
    PlainSeries series;
    series.addValues({newValue(50, 50, 3), newValue(50, 150, 4)});
    compute(series);

    const QVector<ChartPoint> points = series.m_pointThread->m_points;
    QCOMPARE(fullText(points.at(0)), QString("(50 50 3 50 0)"));
    QCOMPARE(fullText(points.at(1)), QString("(50 100 4 150 1)"));
}

void TestPointThread::mapsAndRoundsToPixels()
{
    PlainSeries series;
    // x' = 2x + 10, y' = -y + 120
    series.m_matrix = QTransform(2, 0, 0, -1, 10, 120);
    series.addValues(
        {newValue(20, 20.4), newValue(30.25, 80.5), newValue(40.2, NaN), newValue(50.2, 10.6)});
    compute(series);

    // 120 - 20.4 is 99.6; 2 * 30.25 + 10 is 70.5, half up; 120 - 80.5 is 39.5, half up;
    // 2 * 50.2 + 10 is 110.4; 120 - 10.6 is 109.4.
    QCOMPARE(pointsText(series), QString("50,100 71,40 gap 110,109"));
}

void TestPointThread::keepsPathWithinOneColumn()
{
    PlainSeries series;
    addPoints(series, {{10, 10}, {10.1, 90}, {10.2, 10}, {10.3, 90}});
    compute(series);

    QCOMPARE(pointsText(series), QString("10,10 10,90 10,10 10,90"));
}

void TestPointThread::givesNothingForEmptyRect_data()
{
    QTest::addColumn<QRectF>("rect");

    QTest::newRow("null") << QRectF();
    QTest::newRow("no width") << QRectF(0, 0, 0, 100);
    QTest::newRow("no height") << QRectF(0, 0, 100, 0);
    QTest::newRow("negative width") << QRectF(100, 0, -100, 100);
    QTest::newRow("negative height") << QRectF(0, 100, 100, -100);
    QTest::newRow("NaN width") << QRectF(0, 0, NaN, 100);
    QTest::newRow("NaN height") << QRectF(0, 0, 100, NaN);
}

void TestPointThread::givesNothingForEmptyRect()
{
    QFETCH(const QRectF, rect);
    PlainSeries series;
    addPoints(series, {{0, 0}, {10, 10}});
    compute(series);
    QCOMPARE(series.m_pointThread->m_points.size(), 2);

    compute(series, rect);
    QVERIFY(series.m_pointThread->m_points.isEmpty());
}

void TestPointThread::beginsAnewEachTime()
{
    PlainSeries series;
    addPoints(series, {{10, 10}, {20, 20}});
    compute(series);
    compute(series);
    QCOMPARE(pointsText(series), QString("10,10 20,20"));

    addPoints(series, {{30, 10}});
    compute(series);
    QCOMPARE(pointsText(series), QString("10,10 20,20 30,10"));
}

void TestPointThread::keepsCapacityBetweenCalculations()
{
    PlainSeries series;
    for (int i = 0; i < 1000; ++i) {
        series.addValues({newValue(i % 100, i % 2)});
    }
    compute(series);
    const int capacity = series.m_pointThread->m_points.capacity();
    QVERIFY(capacity >= 1000);

    compute(series, QRectF());
    QVERIFY(series.m_pointThread->m_points.isEmpty());
    QCOMPARE(series.m_pointThread->m_points.capacity(), capacity);
}

void TestPointThread::asksForValidityOnceInOrder_data()
{
    QTest::addColumn<double>("firstY");
    QTest::addColumn<double>("secondY");

    QTest::newRow("all valid") << 10.0 << 20.0;
    QTest::newRow("first invalid") << NaN << 20.0;
    QTest::newRow("second invalid") << 10.0 << NaN;
}

// An end of one pair is the start of the next, and is not asked about again.
void TestPointThread::asksForValidityOnceInOrder()
{
    QFETCH(const double, firstY);
    QFETCH(const double, secondY);
    AskedSeries series;
    series.addValues({newValue(1, firstY), newValue(2, secondY), newValue(3, 30)});
    series.m_asked.clear();

    compute(series);

    QCOMPARE(series.m_asked.join(' '), QString("1 2 3"));
}

void TestPointThread::addsSinglePoint_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<QString>("alone");
    QTest::addColumn<QString>("afterPoint"); // with a point at 1,2 before it
    QTest::addColumn<QString>("afterGap");   // with a gap behind that

    QTest::newRow("in sight") << 5.0 << 6.0 << "5,6"
                              << "1,2 5,6"
                              << "1,2 gap 5,6";
    QTest::newRow("on the edge") << 100.0 << 100.0 << "100,100"
                                 << "1,2 100,100"
                                 << "1,2 gap 100,100";
    QTest::newRow("same pixel") << 1.2 << 2.2 << "1,2"
                                << "1,2"
                                << "1,2 gap 1,2";
    QTest::newRow("out of sight") << 5.0 << 101.0 << ""
                                  << "1,2 gap"
                                  << "1,2 gap";
    QTest::newRow("invalid") << 5.0 << NaN << ""
                             << "1,2 gap"
                             << "1,2 gap";
}

void TestPointThread::addsSinglePoint()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    QFETCH(const QString, alone);
    QFETCH(const QString, afterPoint);
    QFETCH(const QString, afterGap);
    PlainSeries series;
    PointThread &thread = *series.m_pointThread;
    thread.m_rect = View;
    const ChartValue value = {x, y, 0, 0.0};
    ChartPoint before;
    before.x = 1;
    before.y = 2;

    thread.addSinglePoint(nullptr);
    thread.addSinglePoint(&value);
    QCOMPARE(pointsText(series), alone);

    thread.m_points = {before};
    thread.addSinglePoint(nullptr);
    thread.addSinglePoint(&value);
    QCOMPARE(pointsText(series), afterPoint);

    thread.m_points = {before, ChartPoint::gap()};
    thread.addSinglePoint(&value);
    QCOMPARE(pointsText(series), afterGap);
}

void TestPointThread::looksAtLastPointOnly()
{
    PlainSeries series;
    PointThread &thread = *series.m_pointThread;
    ChartPoint first;
    first.x = 1;
    ChartPoint last;
    last.x = 2;
    QVERIFY(!thread.containsPoint(first));

    thread.m_points = {first, last};
    last.state = 7;
    last.clipped = true;
    QVERIFY(thread.containsPoint(last)); // the pixel alone counts
    QVERIFY(!thread.containsPoint(first));
}

void TestPointThread::runsInItsOwnThread()
{
    HorizontalChartAxis axisX;
    axisX.m_max = 100;
    PlainSeries series;
    series.m_axisX = &axisX;
    series.m_axisY->m_max = 100;
    addPoints(series, {{0, 0}, {50, 100}, {100, 0}});
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));

    series.updatePoints(QRectF(0, 0, 200, 100));
    QVERIFY(finished.wait(Patience));

    QCOMPARE(finished.count(), 1);
    QCOMPARE(pointsText(series), QString("0,100 100,0 200,100"));
    // With the signal the worker has gone and left both locks.
    QVERIFY(!series.m_pointThread->isRunning());
    QVERIFY(series.m_pointsMutex.tryLock());
    QVERIFY(series.m_valuesMutex.tryLock());
    series.m_pointsMutex.unlock();
    series.m_valuesMutex.unlock();

    series.updatePoints(QRectF(0, 0, 100, 100));
    QVERIFY(finished.wait(Patience));
    QCOMPARE(pointsText(series), QString("0,100 50,0 100,100"));
}

void TestPointThread::finishesWithEmptyRect()
{
    PlainSeries series;
    addPoints(series, {{0, 0}, {50, 100}});
    compute(series);
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));

    series.m_pointThread->startThread(QRectF(0, 0, 0, 100));
    QVERIFY(finished.wait(Patience));

    QVERIFY(series.m_pointThread->m_points.isEmpty());
}

void TestPointThread::keepsStopRequestUntilNextStart()
{
    PlainSeries series;
    addPoints(series, {{0, 0}, {50, 100}});
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    QVERIFY(series.m_pointThread->stopThread());
    QVERIFY(series.m_pointThread->m_stop);

    series.m_pointThread->startThread(View);
    QCOMPARE(series.m_pointThread->m_rect, View);
    QVERIFY(!series.m_pointThread->m_stop);
    QVERIFY(finished.wait(Patience));
    QCOMPARE(pointsText(series), QString("0,0 50,100"));
}

void TestPointThread::stopsIdleWorkerAtOnce()
{
    PlainSeries series;
    addPoints(series, {{0, 0}, {50, 100}});
    compute(series);

    QVERIFY(series.m_pointThread->stopThread());
    QCOMPARE(pointsText(series), QString("0,0 50,100")); // what has been computed stays
}

void TestPointThread::stopsAfterTheCurrentPair()
{
    StubbornSeries series;
    addPoints(series, {{0, 0}, {50, 100}, {60, 0}, {70, 100}});
    series.m_stubborn = true;
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    series.m_pointThread->startThread(View);
    QVERIFY(series.waitUntilEntered());

    QVERIFY(series.m_pointThread->stopThread());

    QVERIFY(series.m_pointThread->isFinished());
    QCOMPARE(pointsText(series), QString("0,0 50,100"));
    // The end comes as after any run.
    QVERIFY(finished.wait(Patience));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(pointsText(series), QString("0,0 50,100"));
}

void TestPointThread::holdsBothLocksWhileItRuns()
{
    GatedSeries series;
    addPoints(series, {{0, 0}, {50, 100}});
    series.m_gated = true;
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    series.m_pointThread->startThread(View);
    QVERIFY(series.waitUntilEntered());

    const bool pointsFree = series.m_pointsMutex.tryLock();
    const bool valuesFree = series.m_valuesMutex.tryLock();
    series.open();
    QVERIFY(finished.wait(Patience));

    QVERIFY(!pointsFree);
    QVERIFY(!valuesFree);
    QCOMPARE(pointsText(series), QString("0,0 50,100"));
}

void TestPointThread::waitsForBothLocks()
{
    PlainSeries series;
    addPoints(series, {{0, 0}, {50, 100}});
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));

    series.m_valuesMutex.lock();
    series.m_pointThread->startThread(View);
    // It takes m_pointsMutex first and keeps it while it waits for the other one.
    QTRY_VERIFY([&series] {
        const bool isFree = series.m_pointsMutex.tryLock();
        if (isFree) {
            series.m_pointsMutex.unlock();
        }
        return !isFree;
    }());
    QVERIFY(series.m_pointThread->isRunning());
    series.m_valuesMutex.unlock();

    QVERIFY(finished.wait(Patience));
    QCOMPARE(pointsText(series), QString("0,0 50,100"));
}

void TestPointThread::stopsWhenDeleted()
{
    StubbornSeries series;
    addPoints(series, {{0, 0}, {50, 100}, {60, 0}});
    series.m_stubborn = true;
    PointThread *original = series.m_pointThread;
    auto worker = std::make_unique<PointThread>(&series);
    series.m_pointThread = worker.get(); // isValid() looks at its stop flag
    worker->startThread(View);
    QVERIFY(series.waitUntilEntered());

    worker.reset(); // comes back when the worker has ended

    series.m_pointThread = original;
    QVERIFY(series.m_pointsMutex.tryLock());
    series.m_pointsMutex.unlock();
}

QTEST_MAIN(TestPointThread)
#include "tst_pointthread.moc"
