#include "common/samplewriter.h"

#include "csvreader.h"

#include "axes/horizontalchartaxis.h"
#include "support/modelsetup.h"
#include "support/titledseries.h"

#include <QBuffer>
#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <future>
#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

QByteArray written(const AbstractChartModel &model)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeVisibleSamples(model, buffer) ? buffer.data() : QByteArray("failed");
}

CsvResult read(QByteArray text)
{
    const std::atomic<bool> cancel{false};
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return CsvReader().read(buffer, cancel);
}

void addSamples(AbstractChartModel &model, AbstractChartSeries &series,
                const QVector<QPointF> &samples)
{
    for (const QPointF &sample : samples) {
        model.addValue(&series, newValue(sample.x(), sample.y()));
    }
}

/// A double of any size and sign; its bits are random.
double anyNumber(QRandomGenerator &random)
{
    double number = Nan;
    while (!std::isfinite(number)) {
        const quint64 bits = random.generate64();
        std::memcpy(&number, &bits, sizeof(number));
    }
    return number;
}

bool haveSameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}

/// Of some numbers that are not in order those within the range, in order.
QVector<double> sortedWithin(QVector<double> numbers, double minimum, double maximum)
{
    std::sort(numbers.begin(), numbers.end());
    QVector<double> within;
    std::copy_if(numbers.cbegin(), numbers.cend(), std::back_inserter(within),
                 [=](double number) { return number >= minimum && number <= maximum; });
    return within;
}

/// A series in which what is below zero is a gap.
class PositiveSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    bool isValid(const ChartValue *value) const override
    {
        return PlainSeries::isValid(value) && value->y >= 0.0;
    }
};

/// A device that takes so many bytes.
class FullDevice : public QIODevice
{
public:
    explicit FullDevice(qint64 room)
        : m_room(room)
    {
        open(QIODevice::WriteOnly);
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override
    {
        const qint64 taken = qMin(size, m_room);
        m_room -= taken;
        return taken > 0 ? taken : -1;
    }

private:
    qint64 m_room;
};

} // namespace

class TestSampleWriter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void writesHeaderOnlyForEmptyModel();
    void writesRowForEachX();
    void writesWindowWithBothEnds();
    void leavesHiddenSeriesOut();
    void titlesFirstColumn_data();
    void titlesFirstColumn();
    void quotesHeader_data();
    void quotesHeader();
    void leavesGapsEmpty();
    void leavesOutSamplesWithoutFiniteX();
    void givesEqualXsRowsOfTheirOwn();
    void sortsSamplesStably();
    void writesNumbers_data();
    void writesNumbers();
    void writesDates_data();
    void writesDates();
    void writesNumbersWhereDatesFail_data();
    void writesNumbersWhereDatesFail();
    void roundTripsNumbers();
    void roundTripsDates();
    void roundTripsSeveralColumns();
    void writesWhileSamplesArrive();
    void failsWhenDeviceIsFull_data();
    void failsWhenDeviceIsFull();
    void failsWhenDiskIsFull();
    void savesFile();
    void keepsFileThatCannotBeReplaced();
};

void TestSampleWriter::initTestCase()
{
    // UTC is written, whatever the local time.
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();
}

void TestSampleWriter::writesHeaderOnlyForEmptyModel()
{
    OpenModel model;
    QCOMPARE(written(model), QByteArray("X\n"));

    addSeries(model, "alpha");
    QCOMPARE(written(model), QByteArray("X,alpha\n"));
}

void TestSampleWriter::writesRowForEachX()
{
    OpenModel model;
    addSamples(model, *addSeries(model, "a"), {{1.0, 10.0}, {2.0, 20.0}, {4.0, 40.0}});
    addSamples(model, *addSeries(model, "b"), {{0.5, -5.0}, {2.0, -20.0}});

    QCOMPARE(written(model), QByteArray("X,a,b\n0.5,,-5\n1,10,\n2,20,-20\n4,40,\n"));
}

void TestSampleWriter::writesWindowWithBothEnds()
{
    OpenModel model;
    addSeries(model, "a", {0.0, 1.0, 2.0, 3.0, 4.0, 5.0});
    setZoomed(*model.m_axisX, 1.0, 3.0);
    QCOMPARE(written(model), QByteArray("X,a\n1,1\n2,2\n3,3\n"));

    setZoomed(*model.m_axisX, std::nextafter(1.0, 2.0), std::nextafter(3.0, 2.0));
    QCOMPARE(written(model), QByteArray("X,a\n2,2\n"));

    setZoomed(*model.m_axisX, 7.0, 8.0);
    QCOMPARE(written(model), QByteArray("X,a\n"));
}

void TestSampleWriter::leavesHiddenSeriesOut()
{
    OpenModel model;
    addSeries(model, "a", {1.0})->m_visible = false;
    addSeries(model, "b", {2.0, 3.0});
    addSeries(model, "c", {4.0, 5.0, 6.0})->m_visible = false;

    QCOMPARE(written(model), QByteArray("X,b\n0,2\n1,3\n")); // X 2 is that of c only.
}

void TestSampleWriter::titlesFirstColumn_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("none") << "" << false << QByteArray("X,a\n");
    QTest::newRow("none, dates") << "" << true << QByteArray("Time,a\n");
    QTest::newRow("own") << "Depth" << false << QByteArray("Depth,a\n");
    QTest::newRow("own, dates") << "Clock, UTC" << true << QByteArray("\"Clock, UTC\",a\n");
}

void TestSampleWriter::titlesFirstColumn()
{
    QFETCH(QString, title);
    QFETCH(bool, dateTime);

    OpenModel model;
    model.setUseDateTimeScaleX(dateTime);
    addSeries<TitledSeries>(model, "hidden")->m_visible = false;
    addSeries<TitledSeries>(model, "a")->m_labelX = title;
    QTEST(written(model), "expected");
}

void TestSampleWriter::quotesHeader_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("plain") << "a b" << QByteArray("a b");
    QTest::newRow("not ASCII") << QString(QChar(0x394)) << QByteArray("\xCE\x94");
    QTest::newRow("comma") << "a,b" << QByteArray("\"a,b\"");
    QTest::newRow("semicolon") << "a;b" << QByteArray("\"a;b\"");
    QTest::newRow("tab") << "a\tb" << QByteArray("\"a\tb\"");
    QTest::newRow("quotes") << "a \"b\"" << QByteArray("\"a \"\"b\"\"\"");
    QTest::newRow("line break") << "a\nb" << QByteArray("\"a\nb\"");
    QTest::newRow("carriage return") << "a\rb" << QByteArray("\"a\rb\"");
    QTest::newRow("blanks at the ends") << " a " << QByteArray("\" a \"");
    QTest::newRow("empty") << "" << QByteArray();
}

void TestSampleWriter::quotesHeader()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, expected);

    OpenModel model;
    addSeries(model, name, {1.0});
    const QByteArray text = written(model);
    QCOMPARE(text, "X," + expected + "\n0,1\n");

    const CsvResult result = read(text);
    QVERIFY(result.table);
    QCOMPARE(result.table->columns.front().name, name.isEmpty() ? QString("Column 2") : name);
}

void TestSampleWriter::leavesGapsEmpty()
{
    OpenModel model;
    addSeries(model, "a", {1.0, Nan, Infinity, -Infinity, 5.0});
    addSeries<PositiveSeries>(model, "b", {1.0, 2.0, -3.0, 4.0, Nan});

    QCOMPARE(written(model), QByteArray("X,a,b\n0,1,1\n1,,2\n2,,\n3,,4\n4,5,\n"));
}

void TestSampleWriter::leavesOutSamplesWithoutFiniteX()
{
    OpenModel model;
    addSamples(model, *addSeries(model, "a"),
               {{0.0, 1.0}, {Nan, 2.0}, {Infinity, 3.0}, {-Infinity, 4.0}, {5.0, 6.0}});

    QCOMPARE(written(model), QByteArray("X,a\n0,1\n5,6\n"));
}

void TestSampleWriter::givesEqualXsRowsOfTheirOwn()
{
    OpenModel model;
    addSamples(model, *addSeries(model, "a"), {{1.0, 1.0}, {1.0, 2.0}, {1.0, 3.0}, {2.0, 4.0}});
    addSamples(model, *addSeries(model, "b"), {{1.0, 10.0}, {1.0, 20.0}, {2.0, 40.0}});

    QCOMPARE(written(model), QByteArray("X,a,b\n1,1,10\n1,2,20\n1,3,\n2,4,40\n"));
}

void TestSampleWriter::sortsSamplesStably()
{
    OpenModel model;
    addSamples(model, *addSeries(model, "a"), {{0.0, 0.0}, {2.0, 7.0}, {1.0, 5.0}, {2.0, 6.0}});
    setZoomed(*model.m_axisX, 0.0, 3.0);

    QCOMPARE(written(model), QByteArray("X,a\n0,0\n1,5\n2,7\n2,6\n"));
}

void TestSampleWriter::writesNumbers_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("zero") << 0.0 << QByteArray("0");
    QTest::newRow("negative zero") << -0.0 << QByteArray("-0");
    QTest::newRow("integer") << 1234567.0 << QByteArray("1234567");
    QTest::newRow("tenth") << 0.1 << QByteArray("0.1");
    QTest::newRow("sum of tenths") << 0.1 + 0.2 << QByteArray("0.30000000000000004");
    QTest::newRow("negative") << -2.5 << QByteArray("-2.5");
    QTest::newRow("large") << 1e300 << QByteArray("1e+300");
    QTest::newRow("smallest") << std::numeric_limits<double>::denorm_min() << QByteArray("5e-324");
    QTest::newRow("largest") << std::numeric_limits<double>::max()
                             << QByteArray("1.7976931348623157e+308");
}

void TestSampleWriter::writesNumbers()
{
    QFETCH(double, number);
    QFETCH(QByteArray, expected);

    OpenModel model;
    addSeries(model, "a", {number});
    const QByteArray text = written(model);
    QCOMPARE(text, "X,a\n0," + expected + '\n');

    const CsvResult result = read(text);
    QVERIFY(result.table);
    QVERIFY(haveSameBits(result.table->columns.front().samples.first()->y, number));
}

void TestSampleWriter::writesDates_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("epoch") << 0.0 << QByteArray("1970-01-01T00:00:00Z");
    QTest::newRow("day") << 86400.0 << QByteArray("1970-01-02T00:00:00Z");
    QTest::newRow("summer") << 1782864000.0 << QByteArray("2026-07-01T00:00:00Z");
    QTest::newRow("half") << 86400.5 << QByteArray("1970-01-02T00:00:00.5Z");
    QTest::newRow("millisecond") << 1782864000.025 << QByteArray("2026-07-01T00:00:00.025Z");
    QTest::newRow("microsecond") << 1782864000.000001 << QByteArray("2026-07-01T00:00:00.000001Z");
    QTest::newRow("last fraction")
        << std::nextafter(1782864001.0, 0.0) << QByteArray("2026-07-01T00:00:00.9999998Z");
    QTest::newRow("before the epoch") << -0.5 << QByteArray("1969-12-31T23:59:59.5Z");
    QTest::newRow("first") << -62135596800.0 << QByteArray("0001-01-01T00:00:00Z");
    QTest::newRow("last") << 253402300799.5 << QByteArray("9999-12-31T23:59:59.5Z");
}

void TestSampleWriter::writesDates()
{
    QFETCH(double, seconds);
    QFETCH(QByteArray, expected);

    OpenModel model;
    model.setUseDateTimeScaleX(true);
    addSamples(model, *addSeries(model, "a"), {{seconds, 1.0}});
    const QByteArray text = written(model);
    QCOMPARE(text, "Time,a\n" + expected + ",1\n");

    const CsvResult result = read(text);
    QVERIFY(result.table);
    QVERIFY(result.table->dateTime);
    QCOMPARE(result.table->columns.front().samples.first()->x, seconds);
}

void TestSampleWriter::writesNumbersWhereDatesFail_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("before the first") << -62135596801.0 << QByteArray("-62135596801,2\n0,1\n");
    QTest::newRow("behind the last") << 253402300800.0 << QByteArray("0,1\n253402300800,2\n");
    QTest::newRow("far") << 1e300 << QByteArray("0,1\n1e+300,2\n");
    QTest::newRow("too fine") << 1e-20 << QByteArray("0,1\n1e-20,2\n");
}

void TestSampleWriter::writesNumbersWhereDatesFail()
{
    QFETCH(double, seconds);
    QFETCH(QByteArray, expected);

    OpenModel model;
    model.setUseDateTimeScaleX(true);
    addSamples(model, *addSeries(model, "a"), {{0.0, 1.0}, {seconds, 2.0}});
    setZoomed(*model.m_axisX, qMin(0.0, seconds), qMax(0.0, seconds));
    QCOMPARE(written(model), "Time,a\n" + expected);
}

void TestSampleWriter::roundTripsNumbers()
{
    constexpr int Count = 5000;
    QRandomGenerator random(20261121);
    OpenModel model;
    PlainSeries *series = addSeries(model, "a");
    QVector<double> xs;
    QList<ChartValue *> samples;
    for (int i = 0; i < Count; ++i) {
        xs.append(anyNumber(random));
        samples.append(newValue(xs.last(), -xs.last()));
    }
    model.addValues(series, samples);
    const double lowest = -1e250;
    const double highest = 1e280;
    setZoomed(*model.m_axisX, lowest, highest);
    const QVector<double> expected = sortedWithin(xs, lowest, highest);

    const CsvResult result = read(written(model));
    QVERIFY(result.table);
    const QList<ChartValue *> &got = result.table->columns.front().samples;
    QCOMPARE(got.size(), expected.size());
    QVERIFY(got.size() > Count / 2);
    for (int i = 0; i < got.size(); ++i) {
        const QByteArray number = QByteArray::number(expected.at(i), 'g', 17);
        QVERIFY2(haveSameBits(got.at(i)->x, expected.at(i)), number);
        QVERIFY2(haveSameBits(got.at(i)->y, -expected.at(i)), number);
    }
}

void TestSampleWriter::roundTripsDates()
{
    constexpr int Count = 5000;
    constexpr double Span = 4e9; // seconds from 1970 to 2096
    QRandomGenerator random(20261121);
    OpenModel model;
    model.setUseDateTimeScaleX(true);
    PlainSeries *series = addSeries(model, "a");
    QVector<double> xs;
    QList<ChartValue *> samples;
    for (int i = 0; i < Count; ++i) {
        xs.append(Span * random.generateDouble() - (i % 2 == 0 ? 0.0 : Span));
        samples.append(newValue(xs.last(), i));
    }
    model.addValues(series, samples);
    setZoomed(*model.m_axisX, -Span, Span);
    const QVector<double> expected = sortedWithin(xs, -Span, Span);

    const CsvResult result = read(written(model));
    QVERIFY(result.table);
    QVERIFY(result.table->dateTime);
    const QList<ChartValue *> &got = result.table->columns.front().samples;
    QCOMPARE(got.size(), Count);
    for (int i = 0; i < got.size(); ++i) {
        QVERIFY2(got.at(i)->x == expected.at(i), QByteArray::number(expected.at(i), 'g', 17));
    }
}

/// Several blocks of rows, in which columns have samples at some Xs only.
void TestSampleWriter::roundTripsSeveralColumns()
{
    constexpr int Rows = 20000;
    QRandomGenerator random(20261121);
    OpenModel model;
    QVector<QString> expected;
    for (const QString name : {"a", "b", "c"}) {
        PlainSeries *series = addSeries(model, name);
        QList<ChartValue *> samples{newValue(0.0, 0.0)};
        QString text = "0:0 ";
        for (int x = 1; x < Rows; ++x) {
            if (random.bounded(2) == 0) {
                const int y = random.bounded(1000);
                samples.append(newValue(x, y));
                text += QString("%1:%2 ").arg(x).arg(y);
            }
        }
        model.addValues(series, samples);
        expected.append(text);
    }

    const CsvResult result = read(written(model));
    QVERIFY(result.table);
    QCOMPARE(int(result.table->columns.size()), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QString text;
        for (const ChartValue *value : result.table->columns[size_t(i)].samples) {
            if (!std::isnan(value->y)) {
                text += QString("%1:%2 ").arg(value->x).arg(value->y);
            }
        }
        QVERIFY(text == expected.at(i));
    }
}

void TestSampleWriter::writesWhileSamplesArrive()
{
    constexpr int Rows = 20000;
    OpenModel model;
    AbstractChartSeries *first = addSeries(model, "a", {0.0, 1.0});
    AbstractChartSeries *second = addSeries(model, "b", {0.0, 1.0});
    auto feeder = std::async(std::launch::async, [&] {
        for (int x = 2; x < Rows; ++x) {
            model.addValue(first, newValue(x, x));
            model.addValue(second, newValue(x, x));
        }
    });
    int size = 0;
    while (feeder.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        const CsvResult result = read(written(model));
        QVERIFY(result.table);
        const QList<ChartValue *> &samples = result.table->columns.front().samples;
        QVERIFY(samples.size() >= size);
        size = samples.size();
        QCOMPARE(samples.last()->x, double(size - 1));
    }

    const CsvResult result = read(written(model));
    QVERIFY(result.table);
    QCOMPARE(result.table->columns.front().samples.size(), Rows);
}

void TestSampleWriter::failsWhenDeviceIsFull_data()
{
    QTest::addColumn<int>("missing");
    QTest::addColumn<bool>("expected");

    QTest::newRow("nothing is missing") << 0 << true;
    QTest::newRow("the last byte") << 1 << false;
    QTest::newRow("the last block") << 10000 << false;
    QTest::newRow("all but the first block") << 100000 << false;
    QTest::newRow("everything") << 1000000000 << false;
}

void TestSampleWriter::failsWhenDeviceIsFull()
{
    QFETCH(int, missing);

    OpenModel model;
    addSeries(model, "a", QVector<double>(20000, 0.125));
    const int size = written(model).size();
    QVERIFY(size > 100000);
    FullDevice device(qMax(0, size - missing));
    QTEST(writeVisibleSamples(model, device), "expected");
}

void TestSampleWriter::failsWhenDiskIsFull()
{
    QFile disk("/dev/full");
    if (!disk.exists() || !disk.open(QIODevice::WriteOnly)) {
        QSKIP("This system has no /dev/full.");
    }
    OpenModel model;
    addSeries(model, "a", {1.0});

    QVERIFY(!writeVisibleSamples(model, disk));
}

void TestSampleWriter::savesFile()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    OpenModel model;
    addSeries(model, "a", {1.0, 2.0});
    const QString fileName = folder.filePath("samples.csv");
    QString problem;
    for (int i = 0; i < 2; ++i) { // The second time the file is there.
        QVERIFY(saveVisibleSamples(model, fileName, &problem));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), written(model));
    }
    QVERIFY(problem.isEmpty());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("samples.csv"));
}

void TestSampleWriter::keepsFileThatCannotBeReplaced()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString fileName = folder.filePath("samples.csv");
    QVERIFY(QDir(folder.path()).mkdir("samples.csv"));
    OpenModel model;
    addSeries(model, "a", {1.0});
    QString problem;

    QVERIFY(!saveVisibleSamples(model, fileName, &problem));
    QVERIFY2(problem.startsWith(fileName + ": "), qPrintable(problem));
    QVERIFY(QFileInfo(fileName).isDir());
}

QTEST_MAIN(TestSampleWriter)
#include "tst_samplewriter.moc"
