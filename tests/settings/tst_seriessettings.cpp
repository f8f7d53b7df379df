#include "settings/seriessettings.h"

#include <QtTest>

namespace {

/// Asks for the colours before main() runs, as a static object of an application may.
const SeriesSettings EarlySettings;

} // namespace

class TestSeriesSettings : public QObject
{
    Q_OBJECT

private slots:
    void offersTenColorsInOrder_data();
    void offersTenColorsInOrder();
    void offersTenColors();
    void leavesYellowOut();
    void hasColorsBeforeMain();
    void startsWithDefaults();
    void keepsCopiesApart();
};

void TestSeriesSettings::offersTenColorsInOrder_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QColor>("byName");
    QTest::addColumn<QRgb>("byValue");

    QTest::newRow("red") << 0 << QColor(Qt::red) << qRgb(255, 0, 0);
    QTest::newRow("green") << 1 << QColor(Qt::green) << qRgb(0, 255, 0);
    QTest::newRow("blue") << 2 << QColor(Qt::blue) << qRgb(0, 0, 255);
    QTest::newRow("cyan") << 3 << QColor(Qt::cyan) << qRgb(0, 255, 255);
    QTest::newRow("magenta") << 4 << QColor(Qt::magenta) << qRgb(255, 0, 255);
    QTest::newRow("dark red") << 5 << QColor(Qt::darkRed) << qRgb(128, 0, 0);
    QTest::newRow("dark green") << 6 << QColor(Qt::darkGreen) << qRgb(0, 128, 0);
    QTest::newRow("dark blue") << 7 << QColor(Qt::darkBlue) << qRgb(0, 0, 128);
    QTest::newRow("dark cyan") << 8 << QColor(Qt::darkCyan) << qRgb(0, 128, 128);
    QTest::newRow("dark magenta") << 9 << QColor(Qt::darkMagenta) << qRgb(128, 0, 128);
}

void TestSeriesSettings::offersTenColorsInOrder()
{
    QFETCH(const int, index);
    QFETCH(const QColor, byName);
    QFETCH(const QRgb, byValue);

    QCOMPARE(defSeriesColors[index], byName);
    QCOMPARE(defSeriesColors[index].rgb(), byValue);
    QCOMPARE(SeriesSettings().colors[index], byName);
}

void TestSeriesSettings::offersTenColors()
{
    QCOMPARE(int(std::size(defSeriesColors)), 10);
    QCOMPARE(int(std::size(SeriesSettings().colors)), 10);
}

void TestSeriesSettings::leavesYellowOut()
{
    for (const QColor &color : defSeriesColors) {
        QVERIFY(color != QColor(Qt::yellow));
        QVERIFY(color != QColor(Qt::darkYellow));
    }
}

void TestSeriesSettings::hasColorsBeforeMain()
{
    QCOMPARE(EarlySettings.colors[0], QColor(Qt::red));
    QCOMPARE(EarlySettings.colors[9], QColor(Qt::darkMagenta));
}

void TestSeriesSettings::startsWithDefaults()
{
    QCOMPARE(SeriesSettings::defaultLineWidth(), 1);
    QCOMPARE(SeriesSettings::defaultPointsVisible(), false);
    QCOMPARE(SeriesSettings::defaultPointsSize(), 5);

    const SeriesSettings settings;
    QCOMPARE(settings.lineWidth, 1);
    QCOMPARE(settings.pointsVisible, false);
    QCOMPARE(settings.pointsSize, 5);
}

void TestSeriesSettings::keepsCopiesApart()
{
    SeriesSettings first;
    const SeriesSettings second = first;
    first.colors[0] = Qt::black;

    QCOMPARE(second.colors[0], QColor(Qt::red));
    QCOMPARE(SeriesSettings().colors[0], QColor(Qt::red));
}

QTEST_APPLESS_MAIN(TestSeriesSettings)
#include "tst_seriessettings.moc"
