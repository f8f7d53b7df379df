#include "csvreader.h"
#include "csvtokenizer.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

CsvResult read(QByteArray text)
{
    const std::atomic<bool> cancel{false};
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return CsvReader().read(buffer, cancel);
}

QString samplesText(const CsvColumn &column)
{
    QStringList samples;
    for (const ChartValue *value : column.samples) {
        samples.append(QStringLiteral("%1:%2").arg(value->x, 0, 'g', 12).arg(value->y));
    }
    return samples.join(' ');
}

/// A result as one text: the name of X, then "name=x:y x:y" for each column; or the error.
QString resultText(const CsvResult &result)
{
    if (!result.table) {
        return result.error.text("FILE");
    }
    QStringList parts{result.table->nameX};
    for (const CsvColumn &column : result.table->columns) {
        parts.append(column.name + '=' + samplesText(column));
    }
    return parts.join('|');
}

/// A device on which reading fails.
class BrokenDevice : public QIODevice
{
public:
    BrokenDevice()
    {
        open(QIODevice::ReadOnly);
        setErrorString("the disk has gone");
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64) override { return -1; }
};

} // namespace

class TestCsvReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void readsTable_data();
    void readsTable();
    void readsNumber_data();
    void readsNumber();
    void readsNumbersLikeQt();
    void tellsWhatIsWrongAndWhere_data();
    void tellsWhatIsWrongAndWhere();
    void shortensLongCellInMessage();
    void tellsDateTimeFromNumbers_data();
    void tellsDateTimeFromNumbers();
    void seesHowNumbersAreWritten_data();
    void seesHowNumbersAreWritten();
    void sortsRowsLikeStableSort();
    void givesColumnsBySeveralHundreds();
    void reportsErrorOfDevice();
    void stopsWhenCancelled();
    void stopsWhenCancelledOnTheWay();
    void reportsProgress();
    void givesSamplesUp();
};

void TestCsvReader::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void TestCsvReader::readsTable_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("header") << QByteArray("t,a,b\n1,2,3\n4,5,6\n") << "t|a=1:2 4:5|b=1:3 4:6";
    QTest::newRow("no header") << QByteArray("1,2,3\n4,5,6\n")
                               << "|Column 2=1:2 4:5|Column 3=1:3 4:6";
    QTest::newRow("no header, dates")
        << QByteArray("1970-01-01T00:01:00,2\n1970-01-01T00:02:00,3\n") << "|Column 2=60:2 120:3";
    QTest::newRow("no header, a gap in the first row")
        << QByteArray("1,,3\n4,5,6\n") << "|Column 2=1:nan 4:5|Column 3=1:3 4:6";
    QTest::newRow("one row") << QByteArray("1,2") << "|Column 2=1:2";
    QTest::newRow("header without names") << QByteArray("t,,b\n1,2,3\n") << "t|Column 2=1:2|b=1:3";
    QTest::newRow("header without a name for X") << QByteArray(",a\n1,2\n") << "|a=1:2";
    QTest::newRow("header in UTF-8")
        << QByteArray("t,\xC2\xB5V\n1,2\n") << QString("t|%1V=1:2").arg(QChar(0xB5));
    QTest::newRow("header of numbers but one") << QByteArray("t,2026\n1,2\n") << "t|2026=1:2";
    QTest::newRow("quoted header")
        << QByteArray("\"t\",\"a, \"\"b\"\"\"\n1,2\n") << "t|a, \"b\"=1:2";
    QTest::newRow("quoted numbers") << QByteArray("t,a\n\"1\",\"2.5\"\n") << "t|a=1:2.5";
    QTest::newRow("equal names") << QByteArray("t,a,a\n1,2,3\n") << "t|a=1:2|a=1:3";

    QTest::newRow("semicolon and decimal comma")
        << QByteArray("t;a\n0,5;1,25\n1;2\n") << "t|a=0.5:1.25 1:2";
    QTest::newRow("tab and decimal comma") << QByteArray("t\ta\n0,5\t1,25\n") << "t|a=0.5:1.25";
    QTest::newRow("decimal comma in quotes")
        << QByteArray("t,a\n\"0,5\",\"1,25\"\n") << "t|a=0.5:1.25";
    QTest::newRow("decimal comma, first seen late")
        << QByteArray("t;a\n1;2\n2;3\n3;4,5\n") << "t|a=1:2 2:3 3:4.5";
    QTest::newRow("decimal comma without a header")
        << QByteArray("0,5;1,5\n1,5;2,5\n") << "|Column 2=0.5:1.5 1.5:2.5";
    QTest::newRow("semicolon and decimal point") << QByteArray("t;a\n0.5;1.25\n") << "t|a=0.5:1.25";
    QTest::newRow("byte order mark, CRLF")
        << QByteArray("\xEF\xBB\xBFt,a\r\n1,2\r\n3,4\r\n") << "t|a=1:2 3:4";

    QTest::newRow("gaps") << QByteArray("t,a\n1,\n2,nan\n3,NaN\n4,NAN\n5,-nan\n6,\"\"\n7,8\n")
                          << "t|a=1:nan 2:nan 3:nan 4:nan 5:nan 6:nan 7:8";
    QTest::newRow("infinity is entered and not drawn")
        << QByteArray("t,a\n1,inf\n2,-Infinity\n") << "t|a=1:inf 2:-inf";
    QTest::newRow("dates") << QByteArray("t,a\n1970-01-01 00:01,2\n1970-01-01T00:02:00.5Z,3\n"
                                         "1970-01-01T01:03+01:00,4\n1970-01-02,5\n")
                           << "t|a=60:2 120.5:3 180:4 86400:5";

    QTest::newRow("X stays") << QByteArray("t,a\n1,5\n1,3\n1,4\n") << "t|a=1:5 1:3 1:4";
    QTest::newRow("X descends") << QByteArray("t,a,b\n3,1,4\n2,2,5\n1,3,6\n")
                                << "t|a=1:3 2:2 3:1|b=1:6 2:5 3:4";
    QTest::newRow("X descends once, equal ones keep their order")
        << QByteArray("t,a\n2,1\n2,2\n1,3\n2,4\n1,5\n") << "t|a=1:3 1:5 2:1 2:2 2:4";
}

void TestCsvReader::readsTable()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);

    QCOMPARE(resultText(read(text)), expected);
}

void TestCsvReader::readsNumber_data()
{
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<double>("expected");

    QTest::newRow("integer") << QByteArray("12") << 12.0;
    QTest::newRow("negative") << QByteArray("-12") << -12.0;
    QTest::newRow("plus") << QByteArray("+12") << 12.0;
    QTest::newRow("nothing before the mark") << QByteArray(".5") << 0.5;
    QTest::newRow("nothing behind the mark") << QByteArray("5.") << 5.0;
    QTest::newRow("sign before the mark") << QByteArray("-.5") << -0.5;
    QTest::newRow("exponent") << QByteArray("1.5e3") << 1500.0;
    QTest::newRow("large E") << QByteArray("15E-1") << 1.5;
    QTest::newRow("leading zeros") << QByteArray("007") << 7.0;
    QTest::newRow("blanks around") << QByteArray("  7 ") << 7.0;
    QTest::newRow("smallest") << QByteArray("2.2250738585072014e-308") << 2.2250738585072014e-308;
    QTest::newRow("largest") << QByteArray("1.7976931348623157e308") << 1.7976931348623157e308;
}

void TestCsvReader::readsNumber()
{
    QFETCH(QByteArray, cell);
    QFETCH(double, expected);

    const CsvResult result = read("t;a\n1;" + cell + "\n");
    QVERIFY(result.table);
    QVERIFY(result.table->columns.front().samples.constFirst()->y == expected);

    const CsvResult withComma = read("t;a\n1;" + cell.replace('.', ',') + "\n");
    QVERIFY(withComma.table);
    QVERIFY(withComma.table->columns.front().samples.constFirst()->y == expected);
}

void TestCsvReader::readsNumbersLikeQt()
{
    QRandomGenerator random(20261121);
    QByteArray text = "t,a\n";
    QVector<double> expected;
    for (int i = 0; i < 20000; ++i) {
        const double value = (random.generateDouble() - 0.5) * std::pow(10.0, random.bounded(20));
        const QByteArray cell = QByteArray::number(value, "feg"[i % 3], random.bounded(18));
        text += QByteArray::number(i) + ',' + cell + '\n';
        expected.append(cell.toDouble());
    }

    const CsvResult result = read(text);
    QVERIFY2(result.table, qPrintable(result.error.text("FILE")));
    const QList<ChartValue *> &samples = result.table->columns.front().samples;
    QCOMPARE(samples.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QVERIFY2(samples.at(i)->y == expected.at(i), qPrintable(QString("row %1").arg(i)));
    }
}

void TestCsvReader::tellsWhatIsWrongAndWhere_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    const QString noRow = "there is no row of values";
    QTest::newRow("empty") << QByteArray("") << "FILE:1:1: " + noRow;
    QTest::newRow("empty lines") << QByteArray("\n\n") << "FILE:3:1: " + noRow;
    QTest::newRow("header alone") << QByteArray("t,a\n") << "FILE:2:1: " + noRow;
    QTest::newRow("header alone, no line end") << QByteArray("t,a") << "FILE:2:1: " + noRow;
    QTest::newRow("one column")
        << QByteArray("t\n1\n")
        << "FILE:1:1: there is only one column; wanted are X and values, separated by comma, "
           "semicolon or tab";

    QTest::newRow("no number") << QByteArray("t,a,b\n1,2,3\n4,5,x\n")
                               << "FILE:3:3: \"x\" is no number";
    QTest::newRow("no number, line after a quoted line end")
        << QByteArray("t,\"a\nb\"\n1,x\n") << "FILE:3:2: \"x\" is no number";
    QTest::newRow("text behind a number")
        << QByteArray("t,a\n1,2 V\n") << "FILE:2:2: \"2 V\" is no number";
    QTest::newRow("hexadecimal") << QByteArray("t,a\n1,0x10\n")
                                 << "FILE:2:2: \"0x10\" is no number";
    QTest::newRow("two signs") << QByteArray("t,a\n1,+-2\n") << "FILE:2:2: \"+-2\" is no number";
    QTest::newRow("sign alone") << QByteArray("t,a\n1,-\n") << "FILE:2:2: \"-\" is no number";
    QTest::newRow("two marks") << QByteArray("t;a\n1;1.2.3\n")
                               << "FILE:2:2: \"1.2.3\" is no number";
    QTest::newRow("thousands separators")
        << QByteArray("t;a\n1;1.234,5\n") << "FILE:2:2: \"1.234,5\" is no number";
    QTest::newRow("decimal point after decimal commas")
        << QByteArray("t;a\n1;2,5\n2;3.5\n") << "FILE:3:2: \"3.5\" is no number";
    QTest::newRow("decimal comma after decimal points")
        << QByteArray("t;a\n1;2.5\n2;3,5\n") << "FILE:3:2: \"3,5\" is no number";
    QTest::newRow("out of range") << QByteArray("t,a\n1,1e999\n")
                                  << "FILE:2:2: \"1e999\" is out of the range of numbers";

    QTest::newRow("row too short")
        << QByteArray("t,a,b\n1,2,3\n4,5\n") << "FILE:3:3: cells in this row: 2, in the first: 3";
    QTest::newRow("row of one cell")
        << QByteArray("t,a,b\n1,2,3\n4\n") << "FILE:3:2: cells in this row: 1, in the first: 3";
    QTest::newRow("row too long") << QByteArray("t,a\n1,2\n3,4,5,6\n")
                                  << "FILE:3:3: cells in this row: 4, in the first: 2";

    QTest::newRow("X missing") << QByteArray("t,a\n,2\n") << "FILE:2:1: X is missing";
    QTest::newRow("X missing in the first row") << QByteArray(",2\n") << "FILE:1:1: X is missing";
    QTest::newRow("X nan") << QByteArray("t,a\n1,2\nnan,3\n") << "FILE:3:1: X is missing";
    QTest::newRow("X infinite") << QByteArray("t,a\ninf,2\n") << "FILE:2:1: X is infinite";
    QTest::newRow("X out of range")
        << QByteArray("t,a\n-1e999,2\n") << "FILE:2:1: \"-1e999\" is out of the range of numbers";
    QTest::newRow("date missing") << QByteArray("t,a\n2026-11-21,2\n,3\n")
                                  << "FILE:3:1: X is missing";
    QTest::newRow("X neither number nor date")
        << QByteArray("t,a\n21.11.2026,2\n")
        << "FILE:2:1: \"21.11.2026\" is neither a number nor a date and time";
    QTest::newRow("number among dates")
        << QByteArray("t,a\n2026-11-21,2\n5,3\n") << "FILE:3:1: \"5\" is no date and time";
    QTest::newRow("date among numbers")
        << QByteArray("t,a\n5,2\n2026-11-21,3\n") << "FILE:3:1: \"2026-11-21\" is no number";

    QTest::newRow("quote not closed")
        << QByteArray("t,a\n1,\"2\n3,4\n") << "FILE:2:2: the quote is not closed";
    QTest::newRow("binary") << QByteArray("t,a\n1,2\0\n", 9)
                            << "FILE:2:2: this is a binary file: it has a NUL byte here";
}

void TestCsvReader::tellsWhatIsWrongAndWhere()
{
    readsTable();
}

void TestCsvReader::shortensLongCellInMessage()
{
    const QString expected =
        QString("FILE:2:2: \"%1%2\" is no number").arg(QString(40, 'x'), QChar(0x2026));

    QCOMPARE(resultText(read("t,a\n1," + QByteArray(1000, 'x') + '\n')), expected);
}

void TestCsvReader::tellsDateTimeFromNumbers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("expected");

    QTest::newRow("numbers") << QByteArray("t,a\n1,2\n") << false;
    QTest::newRow("dates") << QByteArray("t,a\n2026-11-21,2\n") << true;
    QTest::newRow("dates, no header") << QByteArray("2026-11-21,2\n") << true;
    QTest::newRow("date in a header of numbers") << QByteArray("2026-11-21,a\n1,2\n") << false;
}

void TestCsvReader::tellsDateTimeFromNumbers()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, expected);

    const CsvResult result = read(text);
    QVERIFY(result.table);
    QCOMPARE(result.table->dateTime, expected);
}

void TestCsvReader::seesHowNumbersAreWritten_data()
{
    QTest::addColumn<QByteArray>("cells");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("exponents");

    QTest::newRow("integers") << QByteArray("1 20 300") << 0 << false;
    QTest::newRow("most decimals count") << QByteArray("1 2.5 3.25 4.5") << 2 << false;
    QTest::newRow("zeros at the end count") << QByteArray("1.500") << 3 << false;
    QTest::newRow("six at most") << QByteArray("1.123456789") << 6 << false;
    QTest::newRow("nothing behind the mark") << QByteArray("1.") << 0 << false;
    QTest::newRow("exponent") << QByteArray("1 2e5 3") << 0 << true;
    QTest::newRow("decimals before an exponent") << QByteArray("2.25e5") << 2 << true;
    QTest::newRow("gaps") << QByteArray("nan nan") << 0 << false;
}

void TestCsvReader::seesHowNumbersAreWritten()
{
    QFETCH(QByteArray, cells);

    QByteArray text = "t,a,b\n";
    for (const QByteArray &cell : cells.split(' ')) {
        text += "1.12345," + cell + ",1.1\n";
    }
    const CsvResult result = read(text);
    QVERIFY(result.table);
    QTEST(result.table->columns.front().decimals, "decimals");
    QTEST(result.table->columns.front().exponents, "exponents");
    QCOMPARE(result.table->columns.back().decimals, 1);
}

void TestCsvReader::sortsRowsLikeStableSort()
{
    QRandomGenerator random(20261121);
    for (int round = 0; round < 2000; ++round) {
        QVector<QPair<int, int>> rows;
        QByteArray text = "t,a,b\n";
        for (int i = random.bounded(1, 12); i > 0; --i) {
            rows.append({random.bounded(6), i});
            const QByteArray number = QByteArray::number(i);
            text +=
                QByteArray::number(rows.constLast().first) + ',' + number + ",1" + number + '\n';
        }
        std::stable_sort(rows.begin(), rows.end(),
                         [](const auto &a, const auto &b) { return a.first < b.first; });
        QStringList a;
        QStringList b;
        for (const auto &row : qAsConst(rows)) {
            a.append(QString("%1:%2").arg(row.first).arg(row.second));
            b.append(QString("%1:1%2").arg(row.first).arg(row.second));
        }
        const QString got = resultText(read(text));
        QVERIFY2(got == "t|a=" + a.join(' ') + "|b=" + b.join(' '), text + "gave\n" + got.toUtf8());
    }
}

void TestCsvReader::givesColumnsBySeveralHundreds()
{
    constexpr int Columns = 500;
    QByteArray text = "0";
    for (int i = 1; i <= Columns; ++i) {
        text += ',' + QByteArray::number(i);
    }

    const CsvResult result = read(text);
    QVERIFY(result.table);
    QCOMPARE(int(result.table->columns.size()), Columns);
    QCOMPARE(result.table->columns.back().name, QString("Column 501"));
    QCOMPARE(result.table->columns.back().samples.constFirst()->y, 500.0);
}

void TestCsvReader::reportsErrorOfDevice()
{
    const std::atomic<bool> cancel{false};
    BrokenDevice device;
    const CsvResult result = CsvReader().read(device, cancel);

    QVERIFY(!result.table);
    QVERIFY(!result.cancelled);
    QCOMPARE(result.error.text("FILE"), QString("FILE: the disk has gone"));
}

void TestCsvReader::stopsWhenCancelled()
{
    const std::atomic<bool> cancel{true};
    QByteArray text = "t,a\n1,2\n";
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    const CsvResult result = CsvReader().read(buffer, cancel);

    QVERIFY(!result.table);
    QVERIFY(result.cancelled);
    QVERIFY(result.error.message.isEmpty());
}

void TestCsvReader::stopsWhenCancelledOnTheWay()
{
    QByteArray text = QByteArray("1,2\n").repeated(CsvTokenizer::UsualBlockSize); // four blocks
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    std::atomic<bool> cancel{false};
    qint64 lastBytes = 0;
    const CsvResult result = CsvReader().read(buffer, cancel, [&](qint64 bytesRead) {
        lastBytes = bytesRead;
        cancel = bytesRead > CsvTokenizer::UsualBlockSize;
    });

    QVERIFY(!result.table);
    QVERIFY(result.cancelled);
    QCOMPARE(lastBytes, qint64(2) * CsvTokenizer::UsualBlockSize);
}

void TestCsvReader::reportsProgress()
{
    QByteArray text = QByteArray("1,2\n").repeated(CsvTokenizer::UsualBlockSize / 2); // two blocks
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    const std::atomic<bool> cancel{false};
    QStringList reported;
    const CsvResult result = CsvReader().read(
        buffer, cancel, [&](qint64 bytesRead) { reported.append(QString::number(bytesRead)); });

    QVERIFY(result.table);
    QCOMPARE(reported.join(' '), QString("1048576 2097152"));
}

void TestCsvReader::givesSamplesUp()
{
    const CsvResult result = read("t,a\n1,2\n3,4\n");
    QVERIFY(result.table);
    const QList<ChartValue *> taken = result.table->columns.front().takeSamples();

    QCOMPARE(taken.size(), 2);
    QVERIFY(result.table->columns.front().samples.isEmpty());
    qDeleteAll(taken);
}

QTEST_MAIN(TestCsvReader)
#include "tst_csvreader.moc"
