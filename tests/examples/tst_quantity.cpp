#include "quantity.h"

#include "proccounters.h"

#include <QtTest>

namespace {

constexpr int Ten = 10;

/// A machine with everything and so many cores.
ProcReading readingWith(int cores)
{
    ProcReading reading;
    reading.cpu = CpuTime{50, 100};
    for (int i = 0; i < cores; ++i) {
        reading.cores.insert(i, CpuTime{50, 100});
    }
    reading.memoryUsed = 512.0;
    reading.network = Traffic{1024, 2048};
    reading.disk = Traffic{4096, 8192};
    reading.load = 0.5;
    return reading;
}

QString namesOf(const std::vector<Quantity> &quantities)
{
    QStringList names;
    for (const Quantity &quantity : quantities) {
        names.append(quantity.name);
    }
    return names.join('|');
}

} // namespace

class TestQuantity : public QObject
{
    Q_OBJECT

private slots:
    void choosesWhatFits_data();
    void choosesWhatFits();
    void leavesOutWhatIsMissing();
    void computesFromTwoReadings();
    void hasNoValueWhenCounterGoesAway();
};

void TestQuantity::choosesWhatFits_data()
{
    QTest::addColumn<int>("cores");
    QTest::addColumn<int>("most");
    QTest::addColumn<QString>("expected");

    const QString machine = "CPU %|Load|Memory MiB|Net in KiB/s|Net out KiB/s|Disk read KiB/s|"
                            "Disk write KiB/s";
    QTest::newRow("no cores told") << 0 << Ten << machine;
    QTest::newRow("one core says what all say") << 1 << Ten << machine;
    QTest::newRow("two cores") << 2 << Ten << machine + "|CPU 0 %|CPU 1 %";
    QTest::newRow("three cores make ten") << 3 << Ten << machine + "|CPU 0 %|CPU 1 %|CPU 2 %";
    QTest::newRow("as many cores as fit") << 64 << Ten << machine + "|CPU 0 %|CPU 1 %|CPU 2 %";
    QTest::newRow("two") << 2 << 2 << "CPU %|Load";
}

void TestQuantity::choosesWhatFits()
{
    QFETCH(int, cores);
    QFETCH(int, most);
    QTEST(namesOf(quantitiesOf(readingWith(cores), most)), "expected");
}

void TestQuantity::leavesOutWhatIsMissing()
{
    ProcReading reading = readingWith(4);
    reading.network.reset();
    reading.load.reset();

    QCOMPARE(namesOf(quantitiesOf(reading, Ten)),
             QString("CPU %|Memory MiB|Disk read KiB/s|Disk write KiB/s|CPU 0 %|CPU 1 %|CPU 2 %|"
                     "CPU 3 %"));
    QCOMPARE(namesOf(quantitiesOf(ProcReading(), Ten)), QString());
}

void TestQuantity::computesFromTwoReadings()
{
    const ProcReading before = readingWith(2);
    ProcReading after = before;
    after.cpu = CpuTime{55, 120};               // 5 of 20
    after.cores.insert(1, CpuTime{60, 110});    // 10 of 10
    after.network = Traffic{1024 + 1024, 2048}; // 1 KiB in, none out
    after.disk = Traffic{4096, 8192 + 4096};    // none read, 4 KiB written
    after.memoryUsed = 600.0;
    after.load = 0.75;

    QStringList values;
    for (const Quantity &quantity : quantitiesOf(before, Ten)) {
        values.append(QString::number(quantity.value(before, after, 2.0)));
    }
    QCOMPARE(values.join(' '), QString("25 0.75 600 0.5 0 0 2 nan 100"));
}

void TestQuantity::hasNoValueWhenCounterGoesAway()
{
    const ProcReading before = readingWith(2);
    for (const Quantity &quantity : quantitiesOf(before, Ten)) {
        QVERIFY2(qIsNaN(quantity.value(before, ProcReading(), 1.0)), qPrintable(quantity.name));
    }
}

QTEST_APPLESS_MAIN(TestQuantity)
#include "tst_quantity.moc"
