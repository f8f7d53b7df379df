#include "support/programrun.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

Outcome run(const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    return runProgram(CSVVIEWER, arguments, environment);
}

int countPixels(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class TestCsvViewer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void writesPicture_data();
    void writesPicture();
    void writesPictureWithoutDisplay();
    void drawsCurveFromCornerToCorner();
    void replacesFormerPicture();
    void tellsWhatIsWrongWithFile_data();
    void tellsWhatIsWrongWithFile();
    void tellsWhatIsWrongWithoutPicture();
    void tellsWhatIsWrongWithArguments_data();
    void tellsWhatIsWrongWithArguments();
    void tellsThatThereIsNoDisplay();
    void helpsWithoutDisplay();
    void tellsItsVersion();

private:
    QString write(const QString &name, const QByteArray &text);

    QTemporaryDir m_folder;
};

void TestCsvViewer::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QString TestCsvViewer::write(const QString &name, const QByteArray &text)
{
    const QString path = m_folder.filePath(name);
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    return written ? path : QString();
}

void TestCsvViewer::writesPicture_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QSize>("expected");

    QTest::newRow("default size") << QStringList{} << QSize(1200, 1000);
    QTest::newRow("size asked for") << QStringList{"--size", "640x480"} << QSize(640, 480);
    QTest::newRow("smallest size") << QStringList{"--size", "200x200"} << QSize(200, 200);
    QTest::newRow("separate") << QStringList{"--separate"} << QSize(1200, 1000);
    QTest::newRow("combined") << QStringList{"--combine"} << QSize(1200, 1000);
}

void TestCsvViewer::writesPicture()
{
    QFETCH(QStringList, arguments);
    QFETCH(QSize, expected);

    const QString file = write("file.csv", "t,a,b\n2026-11-21T14:00,2,30\n2026-11-21T15:00,4,10\n");
    const QString picture = m_folder.filePath("picture.png");
    QFile::remove(picture);
    const Outcome outcome = run(QStringList{file, "--screenshot", picture} + arguments);

    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    const QImage image(picture, "png");
    QCOMPARE(image.size(), expected);
    QVERIFY(countPixels(image, image.pixelColor(image.rect().center())) <
            image.width() * image.height());
}

void TestCsvViewer::writesPictureWithoutDisplay()
{
    const QString file = write("file.csv", "1,2\n3,4\n");
    const QString picture = m_folder.filePath("headless.png");
    const Outcome outcome = run({file, "--screenshot", picture}, withoutDisplay());

    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QCOMPARE(QImage(picture).size(), QSize(1200, 1000));
}

void TestCsvViewer::drawsCurveFromCornerToCorner()
{
    const QString file = write("line.csv", "t,a\n0,0\n10,1\n");
    const QString picture = m_folder.filePath("line.png");
    const Outcome outcome = run({file, "--screenshot", picture, "--size", "800x600"});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));

    // The plot is the first white area below the toolbar; the legend comes after a grey margin,
    // which is higher than a line of the grid.
    constexpr int BelowToolBar = 70;
    constexpr int LeastMargin = 20;
    const QImage image(picture);
    QRect plot;
    for (int y = BelowToolBar; y < image.height(); ++y) {
        QRect row;
        for (int x = 0; x < image.width(); ++x) {
            row |= image.pixelColor(x, y) == QColor(Qt::white) ? QRect(x, y, 1, 1) : QRect();
        }
        if (row.width() > 300) {
            plot |= row;
        } else if (plot.isValid() && y > plot.bottom() + LeastMargin) {
            break;
        }
    }
    QVERIFY2(plot.width() > 300 && plot.height() > 200,
             qPrintable(QString("%1x%2").arg(plot.width()).arg(plot.height())));
    const auto isColourfulNear = [&image](const QPoint &point) {
        for (int dy = -4; dy <= 4; ++dy) {
            if (image.pixelColor(point.x(), point.y() + dy).saturation() > 100) {
                return true;
            }
        }
        return false;
    };
    QVERIFY(isColourfulNear(plot.center()));
    QVERIFY(isColourfulNear(plot.topLeft() + QPoint(plot.width() / 4, plot.height() * 3 / 4)));
    QVERIFY(isColourfulNear(plot.topLeft() + QPoint(plot.width() * 3 / 4, plot.height() / 4)));
    QVERIFY(!isColourfulNear(plot.topLeft() + QPoint(plot.width() / 4, plot.height() / 4)));
}

void TestCsvViewer::replacesFormerPicture()
{
    const QString file = write("file.csv", "1,2\n3,4\n");
    const QString picture = write("former.png", "no picture");
    QCOMPARE(run({file, "--screenshot", picture}).exitCode, 0);

    QCOMPARE(QImage(picture).size(), QSize(1200, 1000));
}

void TestCsvViewer::tellsWhatIsWrongWithFile_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("expected");

    const auto badFile = [this](const char *name, const QByteArray &text, const QString &expected) {
        const QString path = write(QString(name).replace(' ', '-'), text);
        QTest::newRow(name) << path << path + expected;
    };
    badFile("empty", "", ":1:1: there is no row of values");
    badFile("header alone", "t,a\n", ":2:1: there is no row of values");
    badFile("no number", "t,a,b\n1,2,3\n4,5,x\n", ":3:3: \"x\" is no number");
    badFile("uneven rows", "t,a,b\n1,2,3\n4,5\n", ":3:3: cells in this row: 2, in the first: 3");
    badFile("X missing", "t,a\n,2\n", ":2:1: X is missing");
    badFile("binary", QByteArray("t,a\n1,\0\n", 8),
            ":2:2: this is a binary file: it has a NUL byte here");
    badFile("quote not closed", "t,a\n1,\"2\n", ":2:2: the quote is not closed");

    const QString missing = m_folder.filePath("missing.csv");
    QTest::newRow("no such file") << missing << missing + ": No such file or directory";
    QTest::newRow("directory") << m_folder.path()
                               << m_folder.path() + ": file to open is a directory";
    // Can be opened, also by root, but not read at its begin.
    QTest::newRow("unreadable") << "/proc/self/mem"
                                << "/proc/self/mem: Input/output error";
}

void TestCsvViewer::tellsWhatIsWrongWithFile()
{
    QFETCH(QString, fileName);
    QFETCH(QString, expected);

    const QString picture = m_folder.filePath("never.png");
    const Outcome outcome = run({fileName, "--screenshot", picture});
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.errors, expected + '\n');
    QVERIFY(!QFile::exists(picture));
}

void TestCsvViewer::tellsWhatIsWrongWithoutPicture()
{
    const QString file = write("bad.csv", "t,a\n1,x\n");
    const Outcome outcome = run({file});

    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.errors, file + ":2:2: \"x\" is no number\n");
}

void TestCsvViewer::tellsWhatIsWrongWithArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");

    const QString file = write("file.csv", "1,2\n3,4\n");
    const QString picture = m_folder.filePath("never.png");
    const auto badSize = [&](const char *name, const QString &size) {
        QTest::newRow(name) << QStringList{file, "--screenshot", picture, "--size", size}
                            << QString("csvviewer: --size wants WxH, each from 200 to 8192, and "
                                       "not \"%1\"")
                                   .arg(size);
    };
    badSize("size: nothing", "");
    badSize("size: one number", "800");
    badSize("size: three numbers", "800x600x400");
    badSize("size: words", "widexhigh");
    badSize("size: negative", "800x-600");
    badSize("size: too small", "800x199");
    badSize("size: too large", "8193x600");

    const QString unwritable = m_folder.filePath("missing/picture.png");
    QTest::newRow("unwritable picture")
        << QStringList{file, "--screenshot", unwritable}
        << unwritable + ": Cannot open device for writing: No such file or directory";
    QTest::newRow("picture of nothing")
        << QStringList{"--screenshot", picture}
        << "csvviewer: --screenshot needs a file to show and a file to write";
    QTest::newRow("picture without a name")
        << QStringList{file, "--screenshot", ""}
        << "csvviewer: --screenshot needs a file to show and a file to write";
    QTest::newRow("separate and combine")
        << QStringList{file, "--separate", "--combine"}
        << "csvviewer: --separate and --combine exclude each other";
    QTest::newRow("two files") << QStringList{file, "other.csv"}
                               << "csvviewer: more than one file: " + file + " other.csv";
    QTest::newRow("unknown option")
        << QStringList{"--wrong"} << "csvviewer: Unknown option 'wrong'.";
}

void TestCsvViewer::tellsWhatIsWrongWithArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);

    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.errors, expected + '\n');
}

void TestCsvViewer::tellsThatThereIsNoDisplay()
{
    const Outcome outcome = run({write("file.csv", "1,2\n")}, withoutDisplay());

    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.errors,
             QString("csvviewer: there is no display; --screenshot writes a picture\n"));
}

void TestCsvViewer::helpsWithoutDisplay()
{
    const Outcome outcome = run({"--help"}, withoutDisplay());

    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains("--screenshot"), qPrintable(outcome.output));
}

void TestCsvViewer::tellsItsVersion()
{
    const Outcome outcome = run({"--version"});

    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.startsWith("csvviewer "), qPrintable(outcome.output));
}

QTEST_MAIN(TestCsvViewer)
#include "tst_csvviewer.moc"
