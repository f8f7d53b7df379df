#include "csvtokenizer.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QtTest>

#include <cstring>

namespace {

constexpr int SmallBlock = 100;   // bytes: longer than any row that is made at random here
constexpr int LargeBlock = 10000; // bytes: longer than any text

/// Gives its data out in pieces of one to a few bytes, as a slow pipe does.
class DrippingDevice : public QIODevice
{
public:
    DrippingDevice(const QByteArray &data, quint32 seed)
        : m_data(data)
        , m_random(seed)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *to, qint64 size) override
    {
        constexpr int LargestPiece = 5;
        const qint64 piece = 1 + m_random.bounded(LargestPiece);
        const qint64 left = m_data.size() - m_position;
        const int count = int(qMin(size, qMin(piece, left)));
        std::memcpy(to, m_data.constData() + m_position, size_t(count));
        m_position += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_data;
    int m_position = 0;
    QRandomGenerator m_random;
};

QByteArray textOf(const CsvCell &cell)
{
    return QByteArray(cell.begin, int(cell.end - cell.begin));
}

/// All that a tokenizer gives as one text: cells in brackets, rows on lines, then the error.
QByteArray cellsOf(QIODevice &device, int blockSize)
{
    CsvTokenizer tokenizer(device, blockSize);
    QByteArray all;
    while (tokenizer.next()) {
        for (const CsvCell &cell : tokenizer.row()) {
            all += '[' + textOf(cell) + ']';
        }
        all += '\n';
    }
    if (tokenizer.failed()) {
        all += tokenizer.error().text("FILE").toUtf8();
    }
    return all;
}

QByteArray cellsOf(QByteArray text, int blockSize = LargeBlock)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return cellsOf(buffer, blockSize);
}

QByteArray randomCell(QRandomGenerator &random)
{
    const QByteArray alphabet = "ab1.\",;\t\r\n ";
    QByteArray cell;
    for (int size = random.bounded(6); size > 0; --size) {
        cell += alphabet.at(random.bounded(alphabet.size()));
    }
    return cell;
}

/// A cell as RFC 4180 wants it: in quotes, and those inside doubled.
QByteArray quoted(QByteArray cell)
{
    return '"' + cell.replace('"', "\"\"") + '"';
}

} // namespace

class TestCsvTokenizer : public QObject
{
    Q_OBJECT

private slots:
    void cutsRowsIntoCells_data();
    void cutsRowsIntoCells();
    void findsSeparator_data();
    void findsSeparator();
    void tellsWhatIsWrongAndWhere_data();
    void tellsWhatIsWrongAndWhere();
    void readsBackWhatWasQuoted();
    void doesNotSeeHowTheDataArrives();
    void readsRowsAcrossBlocks();
    void refusesRowLongerThanBlock_data();
    void refusesRowLongerThanBlock();
    void findsBinaryDataBehindTheFirstBlock();
    void knowsLineOfEachCell();
};

void TestCsvTokenizer::cutsRowsIntoCells_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("nothing") << QByteArray("") << QByteArray("");
    QTest::newRow("one row") << QByteArray("a,b\n") << QByteArray("[a][b]\n");
    QTest::newRow("no line end at the end") << QByteArray("a,b") << QByteArray("[a][b]\n");
    QTest::newRow("CRLF") << QByteArray("a,b\r\n1,2\r\n") << QByteArray("[a][b]\n[1][2]\n");
    QTest::newRow("CRLF, last one missing")
        << QByteArray("a,b\r\n1,2") << QByteArray("[a][b]\n[1][2]\n");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                   "a,b\n")
                                     << QByteArray("[a][b]\n");
    QTest::newRow("byte order mark alone") << QByteArray("\xEF\xBB\xBF") << QByteArray("");
    QTest::newRow("empty cells") << QByteArray(",a,\n,,\n") << QByteArray("[][a][]\n[][][]\n");
    QTest::newRow("empty cell at the very end") << QByteArray("a,") << QByteArray("[a][]\n");
    QTest::newRow("empty lines") << QByteArray("\na,b\n\r\n \n1,2\n\n")
                                 << QByteArray("[a][b]\n[1][2]\n");
    QTest::newRow("blanks around cells")
        << QByteArray("a,b\n 1 ,\t2 c\t\n") << QByteArray("[a][b]\n[1][2 c]\n");
    QTest::newRow("quotes") << QByteArray("\"a\",\"b\"\n") << QByteArray("[a][b]\n");
    QTest::newRow("quotes around nothing") << QByteArray("\"\",a\n") << QByteArray("[][a]\n");
    QTest::newRow("quoted separator") << QByteArray("\"a,b\",c\n") << QByteArray("[a,b][c]\n");
    QTest::newRow("quoted line end") << QByteArray("\"a\nb\",c\n") << QByteArray("[a\nb][c]\n");
    QTest::newRow("quoted blanks") << QByteArray("\" a \",c\n") << QByteArray("[ a ][c]\n");
    QTest::newRow("doubled quotes")
        << QByteArray("\"\"\"a\"\" b\",\"\"\"\"\n") << QByteArray("[\"a\" b][\"]\n");
    QTest::newRow("blanks around quotes")
        << QByteArray(" \"a\" , \"b\" \r\n") << QByteArray("[a][b]\n");
    QTest::newRow("quoted cell ends the data") << QByteArray("a,\"b\"") << QByteArray("[a][b]\n");
    QTest::newRow("quote inside a plain cell")
        << QByteArray("a,5\" disk\n") << QByteArray("[a][5\" disk]\n");
}

void TestCsvTokenizer::cutsRowsIntoCells()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);

    QCOMPARE(cellsOf(text), expected);
}

void TestCsvTokenizer::findsSeparator_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("comma") << QByteArray("a,b\n1,2\n") << QByteArray("[a][b]\n[1][2]\n");
    QTest::newRow("semicolon") << QByteArray("a;b\n1;2\n") << QByteArray("[a][b]\n[1][2]\n");
    QTest::newRow("tab") << QByteArray("a\tb\n1\t2\n") << QByteArray("[a][b]\n[1][2]\n");
    QTest::newRow("semicolon beside decimal commas")
        << QByteArray("a;b\n1,5;2,5\n") << QByteArray("[a][b]\n[1,5][2,5]\n");
    QTest::newRow("decimal commas as regular as the semicolon")
        << QByteArray("1,5;2\n2,5;3\n") << QByteArray("[1,5][2]\n[2,5][3]\n");
    QTest::newRow("tab beside decimal commas")
        << QByteArray("1,5\t2,5\n2,5\t3,5\n") << QByteArray("[1,5][2,5]\n[2,5][3,5]\n");
    QTest::newRow("semicolon in a header of commas")
        << QByteArray("a;b,c\n1,2\n2,3\n") << QByteArray("[a;b][c]\n[1][2]\n[2][3]\n");
    QTest::newRow("empty cells between tabs")
        << QByteArray("a\tb\tc\n1\t\t\n") << QByteArray("[a][b][c]\n[1][][]\n");
    QTest::newRow("separators in quotes do not count")
        << QByteArray("\"a;b\",c\n\"1;2\",3\n") << QByteArray("[a;b][c]\n[1;2][3]\n");
    QTest::newRow("uneven rows") << QByteArray("a,b\n1,2,3\n1,2\n")
                                 << QByteArray("[a][b]\n[1][2][3]\n[1][2]\n");
    QTest::newRow("none") << QByteArray("a\nb\n") << QByteArray("[a]\n[b]\n");
}

void TestCsvTokenizer::findsSeparator()
{
    cutsRowsIntoCells();
}

void TestCsvTokenizer::tellsWhatIsWrongAndWhere_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray notClosed = "the quote is not closed";
    QTest::newRow("quote not closed at the end")
        << QByteArray("a,b\n1,\"2\n3,4\n") << "[a][b]\nFILE:2:2: " + notClosed;
    QTest::newRow("quote and nothing else") << QByteArray("\"") << "FILE:1:1: " + notClosed;
    QTest::newRow("doubled quote at the end")
        << QByteArray("a,\"b\"\"") << "FILE:1:2: " + notClosed;
    QTest::newRow("text behind a quoted cell")
        << QByteArray("a,b\n\"1\"x,2\n")
        << QByteArray("[a][b]\nFILE:2:1: text behind a quoted cell");

    const QByteArray binary = "this is a binary file: it has a NUL byte here";
    QTest::newRow("NUL in a cell") << QByteArray("a,b\n1,\0\n", 8) << "FILE:2:2: " + binary;
    QTest::newRow("NUL in quotes, on their second line")
        << QByteArray("a,\"b\n\0\"\n", 8) << "FILE:2:2: " + binary;
    QTest::newRow("NUL at the end") << QByteArray("a,b\n1,2\n\0", 9) << "FILE:3:1: " + binary;
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n\0\0", 10) << "FILE:3:1: " + binary;
    QTest::newRow("UTF-16") << QByteArray("a\0,\0b\0\n\0", 8) << "FILE:1:1: " + binary;
}

void TestCsvTokenizer::tellsWhatIsWrongAndWhere()
{
    cutsRowsIntoCells();
}

void TestCsvTokenizer::readsBackWhatWasQuoted()
{
    QRandomGenerator random(20261121);
    for (int round = 0; round < 5000; ++round) {
        // Two cells a row and a first row without riddles, so that the separator is plain.
        const char separator = ",;\t"[random.bounded(3)];
        QByteArray text = QByteArray("head") + separator + "line\n";
        QByteArray expected = "[head][line]\n";
        for (int row = random.bounded(20); row > 0; --row) {
            const QByteArray first = randomCell(random);
            const QByteArray second = randomCell(random);
            text += quoted(first) + separator + quoted(second);
            text += random.bounded(2) ? "\n" : "\r\n";
            expected += '[' + first + "][" + second + "]\n";
        }
        const QByteArray got = cellsOf(text);
        const QByteArray gotInBlocks = cellsOf(text, SmallBlock);
        QVERIFY2(got == expected, "text: " + text + "\ngot: " + got);
        QVERIFY2(gotInBlocks == expected, "text: " + text + "\nin blocks: " + gotInBlocks);
    }
}

void TestCsvTokenizer::doesNotSeeHowTheDataArrives()
{
    QRandomGenerator random(20261122);
    for (int round = 0; round < 5000; ++round) {
        // Any nonsense has one reading, errors included. Lines of at most 50 bytes, of which a
        // quote can join two.
        QByteArray text = "head,line\n";
        for (int line = random.bounded(8); line > 0; --line) {
            for (int cell = random.bounded(6); cell > 0; --cell) {
                text += randomCell(random).replace('"', "") + ",\n"[random.bounded(2)];
            }
            text += "\"\n,"[random.bounded(3)] + QByteArray("x\"\n");
        }
        DrippingDevice device(text, quint32(round));
        const QByteArray whole = cellsOf(text);
        const QByteArray dripping = cellsOf(device, LargeBlock);
        QVERIFY2(dripping == whole, "text: " + text + "\nwhole: " + whole + "\ngot: " + dripping);
        const QByteArray inBlocks = cellsOf(text, SmallBlock);
        QVERIFY2(inBlocks == whole, "text: " + text + "\nwhole: " + whole + "\ngot: " + inBlocks);
    }
}

void TestCsvTokenizer::readsRowsAcrossBlocks()
{
    // 7 bytes a row, which divide no block: each block ends at another place in the row.
    constexpr int Rows = 1000;
    QByteArray text = QByteArray("12,345\n").repeated(Rows);
    for (int blockSize = 7; blockSize < 50; ++blockSize) {
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CsvTokenizer tokenizer(buffer, blockSize);
        int rows = 0;
        for (; tokenizer.next(); ++rows) {
            QCOMPARE(int(tokenizer.row().size()), 2);
            QCOMPARE(textOf(tokenizer.row().front()), QByteArray("12"));
            QCOMPARE(textOf(tokenizer.row().back()), QByteArray("345"));
        }
        QCOMPARE(rows, Rows);
        QCOMPARE(tokenizer.bytesRead(), qint64(text.size()));
        QCOMPARE(tokenizer.line(), qint64(Rows) + 1);
    }
}

void TestCsvTokenizer::refusesRowLongerThanBlock_data()
{
    QTest::addColumn<QByteArray>("longRow");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray message = "the row is longer than 100 bytes; is a quote not closed?";
    const QByteArray filling(SmallBlock, 'x');
    QTest::newRow("plain") << "1," + filling + "\n"
                           << "[a][b]\nFILE:2:2: " + message;
    QTest::newRow("quote never closed") << "\"" + filling + "\n"
                                        << "[a][b]\nFILE:2:1: " + message;
    QTest::newRow("as long as a block") << "1," + filling.left(SmallBlock - 3) + "\n"
                                        << "[a][b]\n[1][" + filling.left(SmallBlock - 3) + "]\n";
}

void TestCsvTokenizer::refusesRowLongerThanBlock()
{
    QFETCH(QByteArray, longRow);
    QFETCH(QByteArray, expected);

    QCOMPARE(cellsOf("a,b\n" + longRow, SmallBlock), expected);
}

void TestCsvTokenizer::findsBinaryDataBehindTheFirstBlock()
{
    const QByteArray text = QByteArray("1,2\n").repeated(SmallBlock) + QByteArray("3,\0", 3);
    const QByteArray expected = QByteArray("[1][2]\n").repeated(SmallBlock) +
                                "FILE:101:2: this is a binary file: it has a NUL byte here";

    QCOMPARE(cellsOf(text, SmallBlock), expected);
}

void TestCsvTokenizer::knowsLineOfEachCell()
{
    QByteArray text = "a,b\n\"1\n\n\",2\n3,4\n";
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    CsvTokenizer tokenizer(buffer);

    QStringList lines;
    while (tokenizer.next()) {
        for (const CsvCell &cell : tokenizer.row()) {
            lines.append(QString::number(cell.line));
        }
    }
    QCOMPARE(lines.join(' '), QString("1 1 2 4 5 5"));
}

QTEST_MAIN(TestCsvTokenizer)
#include "tst_csvtokenizer.moc"
