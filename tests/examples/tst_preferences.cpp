#include "common/preferences.h"

#include "settings/chartsettings.h"

#include <QPalette>
#include <QtTest>

#include <cmath>

class TestPreferences : public QObject
{
    Q_OBJECT

private slots:
    void choosesColorsByTheWindow_data();
    void choosesColorsByTheWindow();
    void seriesCanBeReadOnChartAndWindow_data();
    void seriesCanBeReadOnChartAndWindow();
    void seriesDifferFromEachOther_data();
    void seriesDifferFromEachOther();
    void cursorStandsOutAndGridStaysBehind_data();
    void cursorStandsOutAndGridStaysBehind();
    void choosesNothingButColors();
    void copiesPreferences();
    void keepsWhatIsNoPreference();
    void copiesARecordToItself();
};

namespace {

constexpr double LeastContrast = 3.0;  // to 1: what WCAG 2 asks of large text and of graphics
constexpr double LeastDistance = 20.0; // in CIELAB; two neighbours on the screen differ from 2 on

const QRgb DarkWindows[] = {0x000000, 0x202020, 0x303030};
const QRgb LightWindows[] = {0xefefef, 0xffffff};

ChartSettings chosenFor(QRgb window)
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(window));
    ChartSettings settings;
    chooseColors(settings, palette);
    return settings;
}

/// Undoes the gamma of sRGB.
double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Relative luminance by WCAG 2: 0 for black, 1 for white.
double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Contrast ratio by WCAG 2, from 1 to 21.
double contrast(const QColor &a, const QColor &b)
{
    const double darker = qMin(luminance(a), luminance(b));
    const double lighter = qMax(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

struct Lab
{
    double l;
    double a;
    double b;
};

/// CIELAB for the white of sRGB, in which equal distances look about equally different.
Lab toLab(const QColor &color)
{
    const double r = linear(color.redF());
    const double g = linear(color.greenF());
    const double b = linear(color.blueF());
    const double x = std::cbrt((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.9505);
    const double y = std::cbrt(0.2126 * r + 0.7152 * g + 0.0722 * b);
    const double z = std::cbrt((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.0890);
    return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

double distance(const QColor &first, const QColor &second)
{
    const Lab p = toLab(first);
    const Lab q = toLab(second);
    return std::hypot(p.l - q.l, p.a - q.a, p.b - q.b);
}

/// A record in which every field differs from what it is made with.
ChartSettings otherSettings()
{
    ChartSettings settings;
    settings.organization = "other organization";
    settings.application = "other application";
    settings.legendState = "other legend";
    settings.splitterState.insert(3, "three panes");
    settings.backgroundColor = Qt::red;
    settings.gridColor = Qt::green;
    settings.cursorLineColor = Qt::blue;
    settings.visibleInterval = 42.0;
    settings.dynamicGrid = true;
    settings.autoRemoveEmptyChart = false;
    settings.individualScale = false;
    settings.autoScaleX = true;
    settings.autoScaleY = true;
    for (int i = 0; i < SeriesColorCount; ++i) {
        settings.seriesSettings.colors[i] = QColor(i, i, i);
    }
    settings.seriesSettings.lineWidth = 3;
    settings.seriesSettings.pointsVisible = true;
    settings.seriesSettings.pointsSize = 7;
    return settings;
}

void addWindowRows()
{
    QTest::addColumn<QRgb>("window");
    for (const QRgb window : DarkWindows) {
        QTest::addRow("dark window %06x", window) << window;
    }
    for (const QRgb window : LightWindows) {
        QTest::addRow("light window %06x", window) << window;
    }
}

} // namespace

void TestPreferences::choosesColorsByTheWindow_data()
{
    QTest::addColumn<QRgb>("window");
    QTest::addColumn<bool>("dark");

    QTest::newRow("black") << QRgb(0x000000) << true;
    QTest::newRow("lightness 127") << QRgb(0x7f7f7f) << true;
    QTest::newRow("lightness 128") << QRgb(0x808080) << false;
    QTest::newRow("white") << QRgb(0xffffff) << false;
    QTest::newRow("dark blue, lightness 64") << QRgb(0x000080) << true;
    QTest::newRow("pink, lightness 191") << QRgb(0xff8080) << false;
}

void TestPreferences::choosesColorsByTheWindow()
{
    QFETCH(QRgb, window);
    QFETCH(bool, dark);

    const ChartSettings settings = chosenFor(window);

    QCOMPARE(settings.backgroundColor, dark ? QColor(0x101010) : QColor(Qt::white));
}

void TestPreferences::seriesCanBeReadOnChartAndWindow_data()
{
    addWindowRows();
}

void TestPreferences::seriesCanBeReadOnChartAndWindow()
{
    QFETCH(QRgb, window);

    const ChartSettings settings = chosenFor(window);

    for (const QColor &color : settings.seriesSettings.colors) {
        QVERIFY2(contrast(color, QColor(window)) >= LeastContrast, qPrintable(color.name()));
        QVERIFY2(contrast(color, settings.backgroundColor) >= LeastContrast,
                 qPrintable(color.name()));
    }
}

void TestPreferences::seriesDifferFromEachOther_data()
{
    addWindowRows();
}

void TestPreferences::seriesDifferFromEachOther()
{
    QFETCH(QRgb, window);

    const ChartSettings settings = chosenFor(window);

    const QColor *colors = settings.seriesSettings.colors;
    for (int i = 0; i < SeriesColorCount; ++i) {
        for (int j = 0; j < i; ++j) {
            QVERIFY2(distance(colors[i], colors[j]) >= LeastDistance,
                     qPrintable(colors[i].name() + " and " + colors[j].name()));
        }
    }
}

void TestPreferences::cursorStandsOutAndGridStaysBehind_data()
{
    addWindowRows();
}

void TestPreferences::cursorStandsOutAndGridStaysBehind()
{
    QFETCH(QRgb, window);

    const ChartSettings settings = chosenFor(window);

    const QColor background = settings.backgroundColor;
    QVERIFY(contrast(settings.cursorLineColor, background) >= LeastContrast);
    for (const QColor &color : settings.seriesSettings.colors) {
        QVERIFY2(contrast(settings.gridColor, background) < contrast(color, background),
                 qPrintable(color.name()));
    }
}

void TestPreferences::choosesNothingButColors()
{
    ChartSettings settings;
    settings.application = "application";
    settings.visibleInterval = 42.0;
    settings.seriesSettings.lineWidth = 3;
    settings.autoScaleX = true;

    chooseColors(settings, QPalette(Qt::white));

    QCOMPARE(settings.application, QString("application"));
    QCOMPARE(settings.visibleInterval, 42.0);
    QCOMPARE(settings.seriesSettings.lineWidth, 3);
    QVERIFY(settings.autoScaleX);
}

void TestPreferences::copiesPreferences()
{
    const ChartSettings from = otherSettings();
    ChartSettings to;

    copyPreferences(from, to);

    QCOMPARE(to.backgroundColor, QColor(Qt::red));
    QCOMPARE(to.gridColor, QColor(Qt::green));
    QCOMPARE(to.cursorLineColor, QColor(Qt::blue));
    QCOMPARE(to.visibleInterval, 42.0);
    QVERIFY(to.dynamicGrid);
    QVERIFY(!to.autoRemoveEmptyChart);
    QVERIFY(!to.individualScale);
    QVERIFY(to.autoScaleX);
    QVERIFY(to.autoScaleY);
    for (int i = 0; i < SeriesColorCount; ++i) {
        QCOMPARE(to.seriesSettings.colors[i], QColor(i, i, i));
    }
    QCOMPARE(to.seriesSettings.lineWidth, 3);
    QVERIFY(to.seriesSettings.pointsVisible);
    QCOMPARE(to.seriesSettings.pointsSize, 7);
}

void TestPreferences::keepsWhatIsNoPreference()
{
    ChartSettings to;
    to.organization = "organization";
    to.application = "application";
    to.legendState = "legend";
    to.splitterState.insert(2, "two panes");

    copyPreferences(otherSettings(), to);

    QCOMPARE(to.organization, QString("organization"));
    QCOMPARE(to.application, QString("application"));
    QCOMPARE(to.legendState, QByteArray("legend"));
    QCOMPARE(to.splitterState, (QMap<int, QByteArray>{{2, "two panes"}}));
}

void TestPreferences::copiesARecordToItself()
{
    ChartSettings settings = otherSettings();

    copyPreferences(settings, settings);

    QCOMPARE(settings.application, QString("other application"));
    QCOMPARE(settings.legendState, QByteArray("other legend"));
    QCOMPARE(settings.visibleInterval, 42.0);
    QCOMPARE(settings.seriesSettings.colors[9], QColor(9, 9, 9));
}

QTEST_MAIN(TestPreferences)
#include "tst_preferences.moc"
