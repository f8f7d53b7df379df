#include "proccounters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QByteArray Stat = "cpu  10 20 30 400 50 6 7 8 900 1000\n"
                        "cpu0 1 2 3 40 5 6 7 8 9 10\n"
                        "cpu2 2 0 0 8 0 0 0 0 0 0\n"
                        "intr 12345 0 0\n"
                        "ctxt 99\n";
const QByteArray MemInfo = "MemTotal:        4096 kB\n"
                           "MemFree:          512 kB\n"
                           "MemAvailable:    1024 kB\n";
const QByteArray NetDev =
    "Inter-|   Receive                              |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets\n"
    "    lo:  5000  31 0 0 0 0 0 0  5000  31 0 0 0 0 0 0\n"
    "  eth0:  1000  10 0 0 0 0 0 0   200   2 0 0 0 0 0 0\n"
    "wlan0:4000000000 10 0 0 0 0 0 0 30 3 0 0 0 0 0 0\n";
const QByteArray DiskStats = "   8       0 sda 100 1 10 50 200 2 20 60 0 0 0\n"
                             "   8       1 sda1 100 1 10 50 200 2 20 60 0 0 0\n"
                             "   7       0 loop0 100 1 77 50 200 2 77 60 0 0 0\n"
                             " 259       0 nvme0n1 100 1 1 50 200 2 2 60 0 0 0\n"
                             " 259       1 nvme0n1p1 100 1 1 50 200 2 2 60 0 0 0\n";

QString text(const std::optional<double> &value)
{
    return value ? QString::number(*value) : QStringLiteral("none");
}

QString text(const std::optional<CpuTime> &time)
{
    return time ? QString("%1/%2").arg(time->busy).arg(time->total) : QStringLiteral("none");
}

QString text(const std::optional<Traffic> &traffic)
{
    return traffic ? QString("%1/%2").arg(traffic->in).arg(traffic->out) : QStringLiteral("none");
}

/// "cpu=81/531 0=27/72": all cores, then each of them.
QString cpuText(const ProcReading &reading)
{
    QStringList cores{"cpu=" + text(reading.cpu)};
    for (auto core = reading.cores.cbegin(); core != reading.cores.cend(); ++core) {
        cores.append(QString("%1=%2").arg(core.key()).arg(text(std::make_optional(*core))));
    }
    return cores.join(' ');
}

} // namespace

class TestProcCounters : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void parsesStat_data();
    void parsesStat();
    void parsesMemInfo_data();
    void parsesMemInfo();
    void parsesNetDev_data();
    void parsesNetDev();
    void parsesDiskStats_data();
    void parsesDiskStats();
    void parsesLoadAvg_data();
    void parsesLoadAvg();
    void readsFolder();
    void leavesOutWhatItCannotRead();
    void notesEachMissingFileOnce();
    void computesBusyPercent_data();
    void computesBusyPercent();
    void hasNoBusyPercentWithoutBothReadings();
    void computesKibPerSecond_data();
    void computesKibPerSecond();

private:
    bool write(const QString &name, const QByteArray &contents);
    bool writeAll();

    QTemporaryDir m_folder;
};

void TestProcCounters::initTestCase()
{
    QVERIFY(m_folder.isValid() && QDir(m_folder.path()).mkdir("net"));
}

bool TestProcCounters::write(const QString &name, const QByteArray &contents)
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

bool TestProcCounters::writeAll()
{
    return write("stat", Stat) && write("meminfo", MemInfo) && write("net/dev", NetDev) &&
           write("diskstats", DiskStats) && write("loadavg", "0.25 0.5 0.75 1/100 1234\n");
}

void TestProcCounters::parsesStat_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("expected");

    // Total is the sum of the first eight; busy lacks the fourth and fifth, idle and iowait.
    QTest::newRow("cores with a gap") << Stat << "cpu=81/531 0=27/72 2=2/10";
    QTest::newRow("no cores") << QByteArray("cpu  1 0 0 9 0 0 0 0\n") << "cpu=1/10";
    QTest::newRow("empty") << QByteArray() << "cpu=none";
    QTest::newRow("too few numbers") << QByteArray("cpu  1 2 3 4 5 6 7\n") << "cpu=none";
    QTest::newRow("a word for a number") << QByteArray("cpu  1 2 3 x 5 6 7 8\n") << "cpu=none";
    QTest::newRow("a negative number") << QByteArray("cpu  1 2 3 -4 5 6 7 8\n") << "cpu=none";
    QTest::newRow("other names") << QByteArray("cpux 1 2 3 4 5 6 7 8\n"
                                               "gpu0 1 2 3 4 5 6 7 8\n")
                                 << "cpu=none";
    QTest::newRow("binary") << QByteArray("\0\xff\n\n\x01 cpu", 8) << "cpu=none";
}

void TestProcCounters::parsesStat()
{
    QFETCH(QByteArray, contents);

    ProcReading reading;
    ProcCounters::parseStat(contents, reading);
    QTEST(cpuText(reading), "expected");
}

void TestProcCounters::parsesMemInfo_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("expected");

    QTest::newRow("4 MiB less 1 MiB") << MemInfo << "3";
    QTest::newRow("nothing used") << QByteArray("MemTotal: 8 kB\nMemAvailable: 8 kB\n") << "0";
    QTest::newRow("empty") << QByteArray() << "none";
    QTest::newRow("no total") << QByteArray("MemAvailable: 8 kB\n") << "none";
    QTest::newRow("nothing available") << QByteArray("MemTotal: 8 kB\n") << "none";
    QTest::newRow("no number") << QByteArray("MemTotal: a lot\nMemAvailable: 8 kB\n") << "none";
    QTest::newRow("more available than there is")
        << QByteArray("MemTotal: 8 kB\nMemAvailable: 9 kB\n") << "none";
}

void TestProcCounters::parsesMemInfo()
{
    QFETCH(QByteArray, contents);
    QTEST(text(ProcCounters::parseMemInfo(contents)), "expected");
}

void TestProcCounters::parsesNetDev_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("expected");

    // 1000 + 4000000000 and 200 + 30; the loopback does not count.
    QTest::newRow("two interfaces") << NetDev << "4000001000/230";
    QTest::newRow("loopback only") << QByteArray("lo: 5 0 0 0 0 0 0 0 6\n") << "none";
    QTest::newRow("empty") << QByteArray() << "none";
    QTest::newRow("too few numbers") << QByteArray("eth0: 1 2 3 4 5 6 7 8\n") << "none";
    QTest::newRow("one interface of garbage")
        << QByteArray("eth0: a b\neth1: 1 0 0 0 0 0 0 0 2\n") << "1/2";
}

void TestProcCounters::parsesNetDev()
{
    QFETCH(QByteArray, contents);
    QTEST(text(ProcCounters::parseNetDev(contents)), "expected");
}

void TestProcCounters::parsesDiskStats_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("expected");

    // 11 and 22 sectors of 512 bytes; partitions and loop devices do not count.
    QTest::newRow("two disks") << DiskStats << "5632/11264";
    QTest::newRow("virtual disk") << QByteArray("254 0 vda 0 0 2 0 0 0 4") << "1024/2048";
    QTest::newRow("memory card") << QByteArray("179 0 mmcblk0 0 0 2 0 0 0 4") << "1024/2048";
    QTest::newRow("no disks") << QByteArray("7 0 loop0 0 0 2 0 0 0 4") << "none";
    QTest::newRow("empty") << QByteArray() << "none";
    QTest::newRow("too few numbers") << QByteArray("8 0 sda 1 1 1 1 1 1") << "none";
}

void TestProcCounters::parsesDiskStats()
{
    QFETCH(QByteArray, contents);
    QTEST(text(ProcCounters::parseDiskStats(contents)), "expected");
}

void TestProcCounters::parsesLoadAvg_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("expected");

    QTest::newRow("first of three") << QByteArray("0.25 0.5 0.75 1/100 1234\n") << "0.25";
    QTest::newRow("empty") << QByteArray() << "none";
    QTest::newRow("word") << QByteArray("high 0.5\n") << "none";
    QTest::newRow("not finite") << QByteArray("inf 0.5\n") << "none";
}

void TestProcCounters::parsesLoadAvg()
{
    QFETCH(QByteArray, contents);
    QTEST(text(ProcCounters::parseLoadAvg(contents)), "expected");
}

void TestProcCounters::readsFolder()
{
    QVERIFY(writeAll());

    ProcCounters counters(m_folder.path());
    const ProcReading reading = counters.read();
    QCOMPARE(counters.problems(), QStringList());
    QCOMPARE(cpuText(reading), QString("cpu=81/531 0=27/72 2=2/10"));
    QCOMPARE(text(reading.memoryUsed), QString("3"));
    QCOMPARE(text(reading.network), QString("4000001000/230"));
    QCOMPARE(text(reading.disk), QString("5632/11264"));
    QCOMPARE(text(reading.load), QString("0.25"));
}

void TestProcCounters::leavesOutWhatItCannotRead()
{
    QVERIFY(writeAll() && write("stat", "garbage\n"));
    QVERIFY(QFile::remove(m_folder.filePath("net/dev")));

    ProcCounters counters(m_folder.path());
    const ProcReading reading = counters.read();
    QCOMPARE(counters.problems(),
             (QStringList{m_folder.filePath("stat") + ": no counters that are known here",
                          m_folder.filePath("net/dev") + ": No such file or directory"}));
    QCOMPARE(cpuText(reading), QString("cpu=none"));
    QCOMPARE(text(reading.network), QString("none"));
    QCOMPARE(text(reading.load), QString("0.25"));

    // And back they are.
    QVERIFY(writeAll());
    QCOMPARE(text(counters.read().network), QString("4000001000/230"));
    QCOMPARE(counters.problems(), QStringList());
}

void TestProcCounters::notesEachMissingFileOnce()
{
    ProcCounters counters(m_folder.filePath("nowhere"));
    const ProcReading reading = counters.read();

    QCOMPARE(counters.problems().size(), 5);
    QVERIFY(!reading.cpu && !reading.memoryUsed && !reading.network && !reading.disk &&
            !reading.load);
}

void TestProcCounters::computesBusyPercent_data()
{
    QTest::addColumn<quint64>("busyBefore");
    QTest::addColumn<quint64>("totalBefore");
    QTest::addColumn<quint64>("busyAfter");
    QTest::addColumn<quint64>("totalAfter");
    QTest::addColumn<double>("expected");

    const auto row = [](const char *name, quint64 busyBefore, quint64 totalBefore,
                        quint64 busyAfter, quint64 totalAfter, double expected) {
        QTest::newRow(name) << busyBefore << totalBefore << busyAfter << totalAfter << expected;
    };
    row("a quarter", 10, 100, 15, 120, 25.0);
    row("idle", 10, 100, 10, 120, 0.0);
    row("all the time", 10, 100, 30, 120, 100.0);
    row("no time", 10, 100, 10, 100, qQNaN());
    row("busy goes back", 10, 100, 9, 120, qQNaN());
    row("total goes back", 10, 100, 12, 90, qQNaN());
    row("idle goes back", 10, 100, 40, 120, qQNaN());
    row("both start anew", 10, 100, 1, 2, qQNaN());
}

void TestProcCounters::computesBusyPercent()
{
    QFETCH(quint64, busyBefore);
    QFETCH(quint64, totalBefore);
    QFETCH(quint64, busyAfter);
    QFETCH(quint64, totalAfter);
    QTEST(busyPercent(CpuTime{busyBefore, totalBefore}, CpuTime{busyAfter, totalAfter}),
          "expected");
}

void TestProcCounters::hasNoBusyPercentWithoutBothReadings()
{
    QVERIFY(qIsNaN(busyPercent(std::nullopt, CpuTime{1, 2})));
    QVERIFY(qIsNaN(busyPercent(CpuTime{1, 2}, std::nullopt)));
}

void TestProcCounters::computesKibPerSecond_data()
{
    QTest::addColumn<quint64>("before");
    QTest::addColumn<quint64>("after");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("expected");

    QTest::newRow("a KiB in half a second") << quint64(5) << quint64(1029) << 0.5 << 2.0;
    QTest::newRow("nothing") << quint64(5) << quint64(5) << 0.5 << 0.0;
    QTest::newRow("counter goes back") << quint64(5) << quint64(4) << 0.5 << qQNaN();
    QTest::newRow("counter wraps") << ~quint64(0) << quint64(1023) << 1.0 << qQNaN();
    QTest::newRow("no time") << quint64(5) << quint64(6) << 0.0 << qQNaN();
    QTest::newRow("time goes back") << quint64(5) << quint64(6) << -1.0 << qQNaN();
}

void TestProcCounters::computesKibPerSecond()
{
    QFETCH(quint64, before);
    QFETCH(quint64, after);
    QFETCH(double, seconds);
    QTEST(kibPerSecond(before, after, seconds), "expected");
}

QTEST_APPLESS_MAIN(TestProcCounters)
#include "tst_proccounters.moc"
