#include "feeder.h"

#include "axes/horizontalchartaxis.h"
#include "common/namedseries.h"
#include "recorder.h"
#include "support/opendynamicmodel.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr std::chrono::milliseconds Short{1};
constexpr std::chrono::milliseconds AnHour{3600000};
constexpr double Keep = 5.0; // seconds

/// A model with one series, which gets the load of a machine whose files are in a folder.
struct Chart
{
    explicit Chart(const QString &folder)
        : series(new NamedSeries("Load", 'f', 2))
        , counters(folder)
        , quantities(quantitiesOf(counters.read(), 1))
    {
        model.addSeries(series);
    }

    std::unique_ptr<Feeder> newFeeder(std::chrono::milliseconds interval,
                                      Recorder *recorder = nullptr)
    {
        return std::make_unique<Feeder>(model, QList<AbstractChartSeries *>{series}, counters,
                                        quantities, Feeder::Options{interval, Keep}, recorder);
    }

    int sampleCount()
    {
        const QMutexLocker locker(&series->m_valuesMutex);
        return series->m_values.size();
    }

    OpenDynamicModel model;
    NamedSeries *series; ///< The model's.
    ProcCounters counters;
    std::vector<Quantity> quantities;
};

} // namespace

class TestFeeder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void feedsSamplesOfRisingTime();
    void feedsFirstSampleAtOnce();
    void stopsWhileItWaits();
    void endsWithoutHavingStarted();
    void feedsGapWhenCounterGoesAway();
    void recordsWhatItFeeds();
    void goesOnWithoutRecorderThatFails();

private:
    bool writeLoad(const QByteArray &load);

    QTemporaryDir m_folder;
};

void TestFeeder::initTestCase()
{
    QVERIFY(m_folder.isValid() && writeLoad("0.25 0 0\n"));
}

bool TestFeeder::writeLoad(const QByteArray &load)
{
    QFile file(m_folder.filePath("loadavg"));
    return file.open(QIODevice::WriteOnly) && file.write(load) == load.size();
}

void TestFeeder::feedsSamplesOfRisingTime()
{
    Chart chart(m_folder.path());
    const double start = double(QDateTime::currentMSecsSinceEpoch() - 1) / 1000.0;
    const auto feeder = chart.newFeeder(Short);
    feeder->start();
    QTRY_VERIFY(chart.sampleCount() >= 10);
    feeder->stop();
    QVERIFY(feeder->isFinished());

    double before = start;
    for (const ChartValue *sample : qAsConst(chart.series->m_values)) {
        QVERIFY(sample->x > before);
        QCOMPARE(sample->y, 0.25);
        QCOMPARE(sample->expireTime, sample->x + Keep);
        before = sample->x;
    }
}

void TestFeeder::feedsFirstSampleAtOnce()
{
    Chart chart(m_folder.path());
    const auto feeder = chart.newFeeder(AnHour);
    feeder->start();
    QTRY_COMPARE(chart.sampleCount(), 1);
}

void TestFeeder::stopsWhileItWaits()
{
    Chart chart(m_folder.path());
    const auto feeder = chart.newFeeder(AnHour);
    feeder->start();
    QTRY_COMPARE(chart.sampleCount(), 1); // The next would come in an hour.
    feeder->stop();

    QVERIFY(feeder->isFinished());
    QCOMPARE(chart.sampleCount(), 1);
}

void TestFeeder::endsWithoutHavingStarted()
{
    Chart chart(m_folder.path());
    chart.newFeeder(Short).reset();
    QCOMPARE(chart.sampleCount(), 0);
}

void TestFeeder::feedsGapWhenCounterGoesAway()
{
    Chart chart(m_folder.path());
    QVERIFY(writeLoad("gone\n"));
    const auto feeder = chart.newFeeder(AnHour);
    feeder->start();
    QTRY_COMPARE(chart.sampleCount(), 1);
    feeder->stop();
    QVERIFY(writeLoad("0.25 0 0\n"));

    QVERIFY(qIsNaN(chart.series->m_values.first()->y));
}

void TestFeeder::recordsWhatItFeeds()
{
    Chart chart(m_folder.path());
    Recorder recorder;
    const QString fileName = m_folder.filePath("record.csv");
    QVERIFY(recorder.open(fileName, {{"Load", 2}}));
    const auto feeder = chart.newFeeder(Short, &recorder);
    feeder->start();
    QTRY_VERIFY(chart.sampleCount() >= 3);
    feeder->stop();

    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QCOMPARE(lines.size(), chart.sampleCount() + 2); // the header, and nothing behind the last
    for (int i = 1; i <= chart.sampleCount(); ++i) {
        QVERIFY2(lines.at(i).endsWith("Z,0.25"), lines.at(i).constData());
    }
}

void TestFeeder::goesOnWithoutRecorderThatFails()
{
    Chart chart(m_folder.path());
    Recorder recorder;
    QVERIFY(!recorder.open("/dev/full", {{"Load", 2}}));
    const auto feeder = chart.newFeeder(Short, &recorder);
    QSignalSpy failed(feeder.get(), SIGNAL(recordingFailed(QString)));
    feeder->start();
    QTRY_VERIFY(chart.sampleCount() >= 3);
    feeder->stop();

    QTRY_COMPARE(failed.count(), 1);
    QCOMPARE(failed.constFirst().constFirst().toString(),
             QString("/dev/full: No space left on device"));
}

QTEST_MAIN(TestFeeder)
#include "tst_feeder.moc"
