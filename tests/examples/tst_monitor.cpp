#include "csvreader.h"
#include "support/programrun.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>

#include <signal.h>

namespace {

Outcome run(const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    return runProgram(MONITOR, arguments, environment);
}

bool isOfOneColor(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0)) {
                return false;
            }
        }
    }
    return true;
}

/// Reads a recording as csvviewer does.
CsvResult readTable(const QString &fileName)
{
    QFile file(fileName);
    const std::atomic<bool> cancel{false};
    return file.open(QIODevice::ReadOnly) ? CsvReader().read(file, cancel) : CsvResult();
}

QString columnsOf(const CsvTable &table)
{
    QStringList names;
    for (const CsvColumn &column : table.columns) {
        names.append(column.name);
    }
    return names.join('|');
}

} // namespace

class TestMonitor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void writesPicture_data();
    void writesPicture();
    void recordsTableForTheViewer();
    void recordsWithoutDisplay();
    void saysWhatTheMachineDoesNotCount();
    void failsWhereNothingIsCounted();
    void endsCleanlyWhenInterrupted_data();
    void endsCleanlyWhenInterrupted();
    void tellsWhatIsWrongWithArguments_data();
    void tellsWhatIsWrongWithArguments();
    void tellsThatThereIsNoDisplay();
    void helpsWithoutDisplay();
    void tellsItsVersion();

private:
    bool write(const QString &name, const QByteArray &text);

    QTemporaryDir m_folder;
};

void TestMonitor::initTestCase()
{
    QVERIFY(m_folder.isValid());
    // A machine that tells its memory and its load only.
    QVERIFY(write("meminfo", "MemTotal: 4096 kB\nMemAvailable: 1024 kB\n"));
    QVERIFY(write("loadavg", "0.25 0 0 1/2 3\n"));
}

bool TestMonitor::write(const QString &name, const QByteArray &text)
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

void TestMonitor::writesPicture_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QSize>("expected");

    QTest::newRow("size asked for")
        << QStringList{"--seconds", "2", "--size", "640x480"} << QSize(640, 480);
    QTest::newRow("separate, default size")
        << QStringList{"--seconds", "1", "--separate"} << QSize(1200, 1000);
}

void TestMonitor::writesPicture()
{
    QFETCH(QStringList, arguments);
    QFETCH(QSize, expected);

    const QString picture = m_folder.filePath("picture.png");
    QFile::remove(picture);
    const Outcome outcome =
        run(QStringList{"--interval", "50", "--screenshot", picture} + arguments, withoutDisplay());
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    const QImage image(picture, "png");
    QCOMPARE(image.size(), expected);
    QVERIFY(!isOfOneColor(image));
    // The chart itself: more than its black ground.
    QVERIFY(!isOfOneColor(image.copy(
        QRect(QPoint(), expected / 2).translated(expected.width() / 4, expected.height() / 4))));
}

void TestMonitor::recordsTableForTheViewer()
{
    const QString recording = m_folder.filePath("record.csv");
    const Outcome outcome = run(
        {"--seconds", "2", "--interval", "50", "--record", recording, "--proc", m_folder.path()});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));

    const CsvResult result = readTable(recording);
    QVERIFY2(result.table, qPrintable(result.error.text(recording)));
    QVERIFY(result.table->dateTime);
    QCOMPARE(result.table->nameX, QString("Time"));
    QCOMPARE(columnsOf(*result.table), QString("Load|Memory MiB"));
    const QList<ChartValue *> &samples = result.table->columns.front().samples;
    QVERIFY(samples.size() >= 5);
    for (int i = 0; i < samples.size(); ++i) {
        QCOMPARE(samples.at(i)->y, 0.25);
        QVERIFY(i == 0 || samples.at(i)->x > samples.at(i - 1)->x);
    }
    QCOMPARE(result.table->columns.back().samples.constFirst()->y, 3.0);
}

void TestMonitor::recordsWithoutDisplay()
{
    const QString recording = m_folder.filePath("headless.csv");
    const Outcome outcome =
        run({"--seconds", "1", "--interval", "50", "--record", recording}, withoutDisplay());

    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QVERIFY(readTable(recording).table);
}

void TestMonitor::saysWhatTheMachineDoesNotCount()
{
    const Outcome outcome = run({"--seconds", "1", "--proc", m_folder.path(), "--screenshot",
                                 m_folder.filePath("two.png")});

    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.errors, QString("monitor: %1/stat: No such file or directory\n"
                                     "monitor: %1/net/dev: No such file or directory\n"
                                     "monitor: %1/diskstats: No such file or directory\n")
                                 .arg(m_folder.path()));
}

void TestMonitor::failsWhereNothingIsCounted()
{
    const Outcome outcome = run({"--seconds", "1", "--proc", m_folder.filePath("nowhere")});

    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.errors.count('\n'), 6);
    QVERIFY2(outcome.errors.endsWith("monitor: there is nothing to show\n"),
             qPrintable(outcome.errors));
}

void TestMonitor::endsCleanlyWhenInterrupted_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("Ctrl-C") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void TestMonitor::endsCleanlyWhenInterrupted()
{
    QFETCH(int, number);

    const QString recording = m_folder.filePath("interrupted.csv");
    QFile::remove(recording);
    QProcess process;
    process.start(MONITOR, {"--interval", "50", "--record", recording, "--proc", m_folder.path()});
    QVERIFY(process.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(QFile(recording).size() > 100, ProgramTimeLimit); // It is feeding.
    ::kill(pid_t(process.processId()), number);

    const Outcome outcome = outcomeOf(process);
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QVERIFY(readTable(recording).table); // without half a row at its end
}

void TestMonitor::tellsWhatIsWrongWithArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");

    const auto badNumber = [](const char *name, const char *option, const QString &value,
                              const char *range) {
        QTest::newRow(name) << QStringList{QString("--") + option, value}
                            << QString("--%1 wants a whole number from %2, and not \"%3\"")
                                   .arg(option, range, value);
    };
    badNumber("interval: zero", "interval", "0", "50 to 60000");
    badNumber("interval: short", "interval", "49", "50 to 60000");
    badNumber("interval: long", "interval", "60001", "50 to 60000");
    badNumber("interval: word", "interval", "fast", "50 to 60000");
    badNumber("interval: fraction", "interval", "99.5", "50 to 60000");
    badNumber("interval: nothing", "interval", "", "50 to 60000");
    badNumber("window: zero", "window", "0", "1 to 604800");
    badNumber("window: negative", "window", "-5", "1 to 604800");
    badNumber("keep: zero", "keep", "0", "1 to 604800");
    badNumber("keep: too long", "keep", "604801", "1 to 604800");
    badNumber("seconds: zero", "seconds", "0", "1 to 604800");
    badNumber("seconds: word", "seconds", "many", "1 to 604800");

    const QString picture = m_folder.filePath("never.png");
    QTest::newRow("keep less than window")
        << QStringList{"--window", "20", "--keep", "10"}
        << "--keep must not be less than --window: the view would be half empty";
    QTest::newRow("size") << QStringList{"--size", "big"}
                          << "--size wants WxH, each from 200 to 8192, and not \"big\"";
    QTest::newRow("picture of no time")
        << QStringList{"--screenshot", picture}
        << "--screenshot needs a file to write, and --seconds to say when";
    QTest::newRow("picture without a name")
        << QStringList{"--screenshot", "", "--seconds", "1"}
        << "--screenshot needs a file to write, and --seconds to say when";
    QTest::newRow("recording without a name")
        << QStringList{"--record", ""} << "--record needs a file to write";
    QTest::newRow("unknown option") << QStringList{"--wrong"} << "Unknown option 'wrong'.";
    QTest::newRow("argument") << QStringList{"file.csv"} << "unknown argument: file.csv";

    // These two come up only when it does its work.
    const QStringList quietly{"--seconds", "1"};
    const QString nowhere = m_folder.filePath("missing/file");
    QTest::newRow("unwritable recording")
        << quietly + QStringList{"--record", nowhere} << nowhere + ": No such file or directory";
    QTest::newRow("unwritable picture")
        << quietly + QStringList{"--screenshot", nowhere}
        << nowhere + ": Cannot open device for writing: No such file or directory";
}

void TestMonitor::tellsWhatIsWrongWithArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);

    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.endsWith("monitor: " + expected + '\n'), qPrintable(outcome.errors));
}

void TestMonitor::tellsThatThereIsNoDisplay()
{
    const Outcome outcome = run({"--seconds", "1"}, withoutDisplay());

    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.errors, QString("monitor: there is no display; --screenshot writes a picture, "
                                     "--record a table\n"));
}

void TestMonitor::helpsWithoutDisplay()
{
    const Outcome outcome = run({"--help"}, withoutDisplay());

    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains("--record"), qPrintable(outcome.output));
}

void TestMonitor::tellsItsVersion()
{
    const Outcome outcome = run({"--version"});

    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.startsWith("monitor "), qPrintable(outcome.output));
}

QTEST_APPLESS_MAIN(TestMonitor)
#include "tst_monitor.moc"
