#include "csvseries.h"
#include "csvtable.h"

#include "axes/horizontalchartaxis.h"

#include <QtTest>

namespace {

CsvColumn columnWith(int decimals, bool exponents)
{
    CsvColumn column("Load");
    column.decimals = decimals;
    column.exponents = exponents;
    return column;
}

} // namespace

class TestCsvSeries : public QObject
{
    Q_OBJECT

private slots:
    void printsNumbersLikeTheFile_data();
    void printsNumbersLikeTheFile();
    void isNamedAfterItsColumn();
    void titlesAxisX_data();
    void titlesAxisX();
    void takesGapForInvalid();
};

void TestCsvSeries::printsNumbersLikeTheFile_data()
{
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("exponents");
    QTest::addColumn<QString>("expected");

    QTest::newRow("integers") << 0 << false << "1235";
    QTest::newRow("one decimal") << 1 << false << "1234.6";
    QTest::newRow("three decimals") << 3 << false << "1234.560";
    QTest::newRow("exponents") << 3 << true << "1234.56";
}

void TestCsvSeries::printsNumbersLikeTheFile()
{
    QFETCH(int, decimals);
    QFETCH(bool, exponents);

    const CsvSeries series(columnWith(decimals, exponents), QString());
    QTEST(series.stringValue(1234.56), "expected");
}

void TestCsvSeries::isNamedAfterItsColumn()
{
    const CsvSeries series(columnWith(0, false), "Hz");

    QCOMPARE(series.name(), QString("Load"));
    QCOMPARE(series.labelY(), QString("Load"));
}

void TestCsvSeries::titlesAxisX_data()
{
    QTest::addColumn<QString>("nameX");
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no header") << "" << false << "";
    QTest::newRow("header") << "Hz" << false << "Hz";
    QTest::newRow("date-time") << "Stamp" << true << "Time";
    QTest::newRow("16 characters") << "0123456789abcdef" << false << "0123456789abcdef";
    QTest::newRow("17 characters")
        << "0123456789abcdefg" << false << QString("0123456789abcde") + QChar(0x2026);
}

void TestCsvSeries::titlesAxisX()
{
    QFETCH(QString, nameX);
    QFETCH(bool, dateTime);

    HorizontalChartAxis axis;
    axis.m_dateTime = dateTime;
    CsvSeries series(columnWith(0, false), nameX);
    series.m_axisX = &axis;
    QTEST(series.labelX(), "expected");
}

void TestCsvSeries::takesGapForInvalid()
{
    const CsvSeries series(columnWith(0, false), QString());
    const ChartValue value{1.0, 2.0};
    const ChartValue gap{1.0, qQNaN()};

    QVERIFY(series.isValid(&value));
    QVERIFY(!series.isValid(&gap));
}

QTEST_MAIN(TestCsvSeries)
#include "tst_csvseries.moc"
