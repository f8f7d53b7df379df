#include "series/abstractchartseries.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "series/pointthread.h"
#include "support/plainseries.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <type_traits>

class TestAbstractChartSeries : public QObject
{
    Q_OBJECT

private slots:
    void sampleIsAPlainRecord();
    void startsWithEmptyStore();
    void startsWithDefaultLook();
    void startsDetached();
    void ownsAxisAndWorker();
    void reportsWorkersEndOnItsThread();
    void callsAValueValid_data();
    void callsAValueValid();
    void writesValuesWithItsPrecision_data();
    void writesValuesWithItsPrecision();
    void writesScaleWithExtraPrecision();
    void namesItself();
    void changesNameWithoutSignal();
    void hasNoTitleOfY();
    void titlesXAsTimeOnDateTimeScale();
    void travelsInAVariant();
    void deletesItsSamples();
    void leavesTheSharedAxisAlone();
    void diesWithWorkDone();
};

void TestAbstractChartSeries::sampleIsAPlainRecord()
{
    const ChartValue value;

    QCOMPARE(value.x, 0.0);
    QCOMPARE(value.y, 0.0);
    QCOMPARE(value.state, 0);
    QCOMPARE(value.expireTime, qInf());
    QVERIFY(!std::is_polymorphic<ChartValue>::value);
    QVERIFY(std::is_trivially_destructible<ChartValue>::value);
}

void TestAbstractChartSeries::startsWithEmptyStore()
{
    const PlainSeries series;

    QVERIFY(series.m_values.isEmpty());
    QVERIFY(!series.m_minValue);
    QVERIFY(!series.m_maxValue);
}

void TestAbstractChartSeries::startsWithDefaultLook()
{
    const PlainSeries series;

    QVERIFY(series.m_visible);
    QVERIFY(!series.m_selected);
    QVERIFY(!series.m_color.isValid());
    QCOMPARE(series.m_lineWidth, 1);
    QCOMPARE(series.m_pointsVisible, false);
    QCOMPARE(series.m_pointSize, 5);
    QCOMPARE(series.m_customized, false);
    QCOMPARE(series.m_colorIndex, 0);
    QVERIFY(series.m_pointImage.isNull());
    QCOMPARE(series.m_defaults.colors[9], QColor(Qt::darkMagenta));
    QCOMPARE(series.m_defaults.lineWidth, 1);
    QCOMPARE(series.m_defaults.pointsVisible, false);
    QCOMPARE(series.m_defaults.pointsSize, 5);
}

void TestAbstractChartSeries::startsDetached()
{
    const PlainSeries series;

    QVERIFY(!series.parent());
    QVERIFY(!series.m_axisX);
    QVERIFY(!series.m_chart);
    QVERIFY(series.m_matrix.isIdentity());
    QVERIFY(!series.m_pending.valid);
    QCOMPARE(series.m_extraPrecision, 0);
    QVERIFY(series.m_name.isEmpty());
}

void TestAbstractChartSeries::ownsAxisAndWorker()
{
    const PlainSeries series;

    QVERIFY(series.m_axisY);
    QCOMPARE(series.m_axisY->m_series, &series);
    QCOMPARE(series.m_axisY->m_min, 0.0);
    QCOMPARE(series.m_axisY->m_max, 0.0);
    QVERIFY(!series.m_axisY->m_zoomed);
    QVERIFY(series.m_pointThread);
    QCOMPARE(series.m_pointThread->m_series, &series);
    QVERIFY(!series.m_pointThread->parent());
    QVERIFY(!series.m_pointThread->isRunning());
}

void TestAbstractChartSeries::reportsWorkersEndOnItsThread()
{
    constexpr int Patience = 20000; // milliseconds
    PlainSeries series;
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    QThread *thread = nullptr;
    connect(
        &series, &AbstractChartSeries::updatePointsFinished, &series,
        [&thread] { thread = QThread::currentThread(); }, Qt::DirectConnection);

    series.updatePoints(QRectF());
    QVERIFY(series.m_pointThread->wait());
    QCOMPARE(finished.count(), 0); // it waits in the event queue
    QVERIFY(finished.wait(Patience));

    QCOMPARE(finished.count(), 1);
    QCOMPARE(thread, QThread::currentThread());
}

void TestAbstractChartSeries::callsAValueValid_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("valid");

    QTest::newRow("finite") << 1.0 << -2.0 << true;
    QTest::newRow("y NaN") << 1.0 << qQNaN() << false;
    QTest::newRow("x NaN") << qQNaN() << 1.0 << false;
    QTest::newRow("y infinite") << 1.0 << qInf() << false;
    QTest::newRow("y infinite below") << 1.0 << -qInf() << false;
    QTest::newRow("x infinite") << qInf() << 1.0 << false;
    QTest::newRow("x infinite below") << -qInf() << 1.0 << false;
}

void TestAbstractChartSeries::callsAValueValid()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    QFETCH(const bool, valid);
    const PlainSeries series;
    const ChartValue value = {x, y, 99, -1.0}; // state and expiry do not count

    QCOMPARE(series.isValid(&value), valid);
    QVERIFY(!series.isValid(nullptr));
}

void TestAbstractChartSeries::writesValuesWithItsPrecision_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<char>("format");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("text");

    QTest::newRow("whole") << 12.4 << 'f' << 0 << "12";
    QTest::newRow("two decimals") << 12.4 << 'f' << 2 << "12.40";
    QTest::newRow("exponent") << 1234.5 << 'e' << 1 << "1.2e+03";
    QTest::newRow("significant digits") << 1234.5 << 'g' << 2 << "1.2e+03";
    QTest::newRow("NaN") << qQNaN() << 'f' << 2 << "nan";
}

void TestAbstractChartSeries::writesValuesWithItsPrecision()
{
    QFETCH(const double, value);
    QFETCH(const char, format);
    QFETCH(const int, precision);
    QFETCH(const QString, text);
    PlainSeries series;
    series.m_format = format;
    series.m_precision = precision;

    QCOMPARE(series.stringValue(value), text);
    QCOMPARE(series.scaleString(value), text);
}

void TestAbstractChartSeries::writesScaleWithExtraPrecision()
{
    PlainSeries series;
    series.m_precision = 1;
    series.m_extraPrecision = 2;

    QCOMPARE(series.scaleString(1.5), QString("1.500"));
    QCOMPARE(series.stringValue(1.5), QString("1.5"));
}

void TestAbstractChartSeries::namesItself()
{
    PlainSeries series("pressure");
    QCOMPARE(series.name(), QString("pressure"));

    series.m_name = "level";
    QCOMPARE(series.name(), QString("level"));
}

void TestAbstractChartSeries::changesNameWithoutSignal()
{
    PlainSeries series("pressure");
    QSignalSpy renamed(&series, SIGNAL(objectNameChanged(QString)));
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    series.setName("level");

    QCOMPARE(series.m_name, QString("level"));
    QCOMPARE(renamed.count() + finished.count(), 0);
}

void TestAbstractChartSeries::hasNoTitleOfY()
{
    const PlainSeries series;

    QCOMPARE(series.AbstractChartSeries::labelY(), QString());
}

void TestAbstractChartSeries::titlesXAsTimeOnDateTimeScale()
{
    HorizontalChartAxis axis;
    PlainSeries series;
    QCOMPARE(series.labelX(), QString()); // without an axis

    series.m_axisX = &axis;
    QCOMPARE(series.labelX(), QString());

    axis.m_dateTime = true;
    QCOMPARE(series.labelX(), QString("Time"));
}

void TestAbstractChartSeries::travelsInAVariant()
{
    PlainSeries series;
    const QVariant variant = QVariant::fromValue<AbstractChartSeries *>(&series);

    QCOMPARE(variant.typeName(), "AbstractChartSeries*");
    QCOMPARE(variant.value<AbstractChartSeries *>(), &series);
}

void TestAbstractChartSeries::deletesItsSamples()
{
    // The leak checker counts the samples; null entries must do no harm.
    PlainSeries series;
    series.addValues({newValue(1, 2), newValue(3, 4)});
    series.m_values.append(nullptr);

    QCOMPARE(series.m_values.size(), 3);
}

void TestAbstractChartSeries::leavesTheSharedAxisAlone()
{
    HorizontalChartAxis axis;
    axis.m_min = 1;
    axis.m_max = 2;
    {
        PlainSeries series;
        series.m_axisX = &axis;
    }

    QCOMPARE(axis.m_min, 1.0);
    QCOMPARE(axis.m_max, 2.0);
}

void TestAbstractChartSeries::diesWithWorkDone()
{
    // A report that is still in the event queue dies with the series.
    int deaths = 0;
    auto series = std::make_unique<PlainSeries>();
    series->m_deaths = &deaths;
    series->updatePoints(QRectF());
    QVERIFY(series->m_pointThread->wait());

    series.reset();
    QCoreApplication::processEvents();

    QCOMPARE(deaths, 1);
}

QTEST_MAIN(TestAbstractChartSeries)
#include "tst_abstractchartseries.moc"
