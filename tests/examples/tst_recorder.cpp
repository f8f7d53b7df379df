#include "recorder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <ctime>
#include <limits>

#include <sys/resource.h>

namespace {

const std::vector<Recorder::Column> TwoColumns = {{"CPU %", 1}, {"Load", 2}};
constexpr double Infinity = std::numeric_limits<double>::infinity();

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "cannot be read";
}

/// Files of this program are at most so long while it lives, as if the disk were full then.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_formerHandler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limit{bytes, m_former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_formerHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_former{};
    void (*m_formerHandler)(int);
};

} // namespace

class TestRecorder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void writesHeaderAtOnce();
    void writesEachRowAtOnce();
    void writesRow_data();
    void writesRow();
    void writesLocalTimeWithZone();
    void replacesFormerRecording();
    void tellsWhyItCannotOpen_data();
    void tellsWhyItCannotOpen();
    void tellsWhyItCannotGoOn();

private:
    QString fileName() const { return m_folder.filePath("record.csv"); }

    QTemporaryDir m_folder;
};

void TestRecorder::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

void TestRecorder::init()
{
    QFile::remove(fileName());
    qputenv("TZ", "UTC");
    tzset();
}

void TestRecorder::writesHeaderAtOnce()
{
    Recorder recorder;

    QVERIFY(recorder.open(fileName(), TwoColumns));
    QCOMPARE(contents(fileName()), QByteArray("Time,CPU %,Load\n"));
}

void TestRecorder::writesEachRowAtOnce()
{
    Recorder recorder;
    QVERIFY(recorder.open(fileName(), TwoColumns));
    QByteArray expected = contents(fileName());

    for (int i = 0; i < 5; ++i) {
        QVERIFY(recorder.addRow(i, {1.0, 2.0}));
        expected += QString("1970-01-01T00:00:0%1.000Z,1.0,2.00\n").arg(i).toUtf8();
        QCOMPARE(contents(fileName()), expected);
    }
}

void TestRecorder::writesRow_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<double>("value");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, double time, double value, const QByteArray &expected) {
        QTest::newRow(name) << time << value << expected;
    };
    row("epoch", 0.0, 0.0, "1970-01-01T00:00:00.000Z,0.0,7.00\n");
    row("milliseconds", 86400.25, 12.34, "1970-01-02T00:00:00.250Z,12.3,7.00\n");
    row("time is rounded", 0.0009, 1.0, "1970-01-01T00:00:00.001Z,1.0,7.00\n");
    row("no exponent", 0.0, 1e9, "1970-01-01T00:00:00.000Z,1000000000.0,7.00\n");
    row("negative", 0.0, -2.5, "1970-01-01T00:00:00.000Z,-2.5,7.00\n");
    row("gap", 0.0, qQNaN(), "1970-01-01T00:00:00.000Z,,7.00\n");
    row("infinite", 0.0, Infinity, "1970-01-01T00:00:00.000Z,,7.00\n");
}

void TestRecorder::writesRow()
{
    QFETCH(double, time);
    QFETCH(double, value);
    QFETCH(QByteArray, expected);

    Recorder recorder;
    QVERIFY(recorder.open(fileName(), TwoColumns));
    QVERIFY(recorder.addRow(time, {value, 7.0}));
    QCOMPARE(contents(fileName()), "Time,CPU %,Load\n" + expected);
}

void TestRecorder::writesLocalTimeWithZone()
{
    qputenv("TZ", "IST-5:30");
    tzset();
    Recorder recorder;

    QVERIFY(recorder.open(fileName(), {{"Load", 0}}));
    QVERIFY(recorder.addRow(0.5, {1.0}));
    QCOMPARE(contents(fileName()), QByteArray("Time,Load\n1970-01-01T05:30:00.500+05:30,1\n"));
}

void TestRecorder::replacesFormerRecording()
{
    {
        Recorder former;
        QVERIFY(former.open(fileName(), TwoColumns));
        QVERIFY(former.addRow(0.0, {1.0, 2.0}));
    }
    Recorder recorder;
    QVERIFY(recorder.open(fileName(), {{"a", 0}}));
    QCOMPARE(contents(fileName()), QByteArray("Time,a\n"));
}

void TestRecorder::tellsWhyItCannotOpen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    const QString missing = m_folder.filePath("missing/record.csv");
    QTest::newRow("no such folder") << missing << missing + ": No such file or directory";
    QTest::newRow("full disk") << "/dev/full"
                               << "/dev/full: No space left on device";
}

void TestRecorder::tellsWhyItCannotOpen()
{
    QFETCH(QString, name);

    Recorder recorder;
    QVERIFY(!recorder.open(name, TwoColumns));
    QTEST(recorder.problem(), "expected");
}

void TestRecorder::tellsWhyItCannotGoOn()
{
    Recorder recorder;
    QVERIFY(recorder.open(fileName(), {{"a", 0}}));
    const QByteArray before = contents(fileName());
    {
        const FileSizeLimit limit(rlim_t(before.size()));
        QVERIFY(!recorder.addRow(0.0, {1.0}));
    }

    QCOMPARE(recorder.problem(), fileName() + ": File too large");
    QCOMPARE(contents(fileName()), before);
}

QTEST_APPLESS_MAIN(TestRecorder)
#include "tst_recorder.moc"
