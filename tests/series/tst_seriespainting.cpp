#include "series/chartpoint.h"
#include "series/pointthread.h"
#include "support/plainseries.h"
#include "support/recordingpaintdevice.h"
#include "views/chartcursor.h"
#include "views/cursorvalue.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QtTest>

#include <algorithm>

namespace {

const QRectF Plot(0.0, 0.0, 1000.0, 500.0);
constexpr int SymbolSize = 4;

ChartPoint point(int x, int y, double value = 0.0, int state = 0)
{
    ChartPoint point;
    point.x = x;
    point.y = y;
    point.value = value;
    point.state = state;
    return point;
}

/// Reads "1,2 gap 3,4*": points, gap markers and points made by the clipper.
QVector<ChartPoint> readPoints(const QString &text)
{
    QVector<ChartPoint> points;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        if (word == "gap") {
            points.append(ChartPoint::gap());
            continue;
        }
        QString numbers = word;
        numbers.remove('*');
        ChartPoint read =
            point(numbers.section(',', 0, 0).toInt(), numbers.section(',', 1).toInt());
        read.clipped = word.endsWith('*');
        points.append(read);
    }
    return points;
}

/// The calls as one text: "1,2-3,4" for a line and "o1,2" for a symbol centred there.
QString callsText(const RecordingPaintDevice &device)
{
    QStringList texts;
    for (const PaintCall &call : device.calls()) {
        if (call.kind == PaintCall::Line) {
            texts.append(QString("%1,%2-%3,%4")
                             .arg(call.line.x1())
                             .arg(call.line.y1())
                             .arg(call.line.x2())
                             .arg(call.line.y2()));
        } else if (call.kind == PaintCall::Image) {
            texts.append(QString("o%1,%2").arg(call.rect.center().x()).arg(call.rect.center().y()));
        } else {
            texts.append("unexpected");
        }
    }
    return texts.join(' ');
}

/// A red series with symbols, whose points a test sets.
class PaintedSeries : public PlainSeries
{
public:
    PaintedSeries()
    {
        m_color = Qt::red;
        m_lineWidth = 3;
        m_pointsVisible = true;
        setPointSize(SymbolSize);
    }

    QString stringValue(double value) const override
    {
        QMutex &points = m_pointThread->m_series->m_pointsMutex;
        m_locked = !points.tryLock();
        if (!m_locked) {
            points.unlock();
        }
        return PlainSeries::stringValue(value);
    }

    void setPoints(const QVector<ChartPoint> &points) { m_pointThread->m_points = points; }

    mutable bool m_locked = false; ///< The points were locked when the read-out asked for a text.
};

/// What one call of paint() gives.
struct Painted
{
    QString calls;
    QList<CursorValue> values;
    int side;
};

Painted paint(AbstractChartSeries &series, const QLineF &cursorLine = QLineF(),
              const QTransform &transform = QTransform(), const QRectF &plot = Plot)
{
    RecordingPaintDevice device(QSize(1000, 500));
    ChartCursor cursor(nullptr);
    cursor.m_side = ChartCursor::Right;
    cursor.m_position = cursorLine.x1();
    Painted painted;
    QPainter painter(&device);
    series.paint(painter, plot, transform, cursorLine, painted.values, &cursor);
    painter.end();
    painted.calls = callsText(device);
    painted.side = cursor.m_side;
    return painted;
}

QLineF cursorAt(double x)
{
    return QLineF(x, -1, x, 501);
}

} // namespace

class TestSeriesPainting : public QObject
{
    Q_OBJECT

private slots:
    void drawsLinesAndSymbols_data();
    void drawsLinesAndSymbols();
    void drawsNoSymbolsUnlessWanted();
    void drawsNoSymbolsWithoutImage();
    void drawsSelectedAndUnselectedAlike();
    void usesPenOfSeries();
    void mapsToDevice();

    void givesNoReadOut_data();
    void givesNoReadOut();
    void readsNearerEnd_data();
    void readsNearerEnd();
    void readsFirstSegmentThatIsCrossed();
    void fillsReadOut();
    void truncatesPlaceOfReadOut();
    void keepsReadOutsOfOtherSeries();
    void turnsBoxesToTheLeft_data();
    void turnsBoxesToTheLeft();
    void readsOutOnTheDevice();
    void holdsPointsWhilePainting();

    void centresPointImage_data();
    void centresPointImage();
    void paintsNoPointImageBeforeItIsMade();
    void rendersSymbol_data();
    void rendersSymbol();
    void rendersNothingForEmptySize();
    void setsPointSize_data();
    void setsPointSize();

    void restoresDefaultLook_data();
    void restoresDefaultLook();

    void paintsLineOfLogo_data();
    void paintsLineOfLogo();
    void paintsSymbolOfLogo_data();
    void paintsSymbolOfLogo();
    void paintsLogoWithoutSymbol();
    void restoresPainterOfLogo();
};

void TestSeriesPainting::drawsLinesAndSymbols_data()
{
    QTest::addColumn<QString>("points");
    QTest::addColumn<QString>("calls");

    QTest::newRow("no point") << ""
                              << "";
    QTest::newRow("one point") << "10,20"
                               << "";
    QTest::newRow("line, then symbols") << "10,20 30,40"
                                        << "10,20-30,40 o10,20 o30,40";
    QTest::newRow("inner point gets its symbol twice") << "1,2 3,4 5,6"
                                                       << "1,2-3,4 o1,2 o3,4 3,4-5,6 o3,4 o5,6";
    QTest::newRow("point, gap, point") << "10,20 gap 30,40"
                                       << "o10,20 o30,40";
    QTest::newRow("line, gap, line") << "1,2 3,4 gap 5,6 7,8"
                                     << "1,2-3,4 o1,2 o3,4 o3,4 o5,6 5,6-7,8 o5,6 o7,8";
    QTest::newRow("gap at the end") << "1,2 3,4 gap"
                                    << "1,2-3,4 o1,2 o3,4 o3,4";
    QTest::newRow("gap and nothing else") << "gap gap"
                                          << "";
    QTest::newRow("ends made by the clipper") << "0,5* 10,20 30,0*"
                                              << "0,5-10,20 o10,20 10,20-30,0 o10,20";
    QTest::newRow("both ends made by the clipper") << "0,5* 30,5*"
                                                   << "0,5-30,5";
    QTest::newRow("clipped point between gaps") << "1,2 gap 0,5* gap 3,4"
                                                << "o1,2 o3,4";
    QTest::newRow("one coordinate of -1 is no gap") << "-1,5 5,-1"
                                                    << "-1,5-5,-1 o-1,5 o5,-1";
}

void TestSeriesPainting::drawsLinesAndSymbols()
{
    QFETCH(const QString, points);
    QFETCH(const QString, calls);
    PaintedSeries series;
    series.setPoints(readPoints(points));

    QCOMPARE(paint(series).calls, calls);
}

void TestSeriesPainting::drawsNoSymbolsUnlessWanted()
{
    PaintedSeries series;
    series.m_pointsVisible = false;
    series.setPoints(readPoints("1,2 3,4 gap 5,6 7,8"));

    QCOMPARE(paint(series).calls, QString("1,2-3,4 5,6-7,8"));
}

void TestSeriesPainting::drawsNoSymbolsWithoutImage()
{
    PaintedSeries series;
    series.m_pointImage = QImage();
    series.setPoints(readPoints("1,2 3,4"));

    QCOMPARE(paint(series).calls, QString("1,2-3,4"));
}

void TestSeriesPainting::drawsSelectedAndUnselectedAlike()
{
    PaintedSeries series;
    series.setPoints(readPoints("1,2 3,4"));
    const QString calls = paint(series).calls;
    series.m_selected = true;

    QCOMPARE(paint(series).calls, calls);
}

void TestSeriesPainting::usesPenOfSeries()
{
    PaintedSeries series;
    series.setPoints(readPoints("1,2 3,4"));
    RecordingPaintDevice device(QSize(100, 100));
    ChartCursor cursor(nullptr);
    QList<CursorValue> values;
    QPainter painter(&device);
    const QPainter::RenderHints hints = painter.renderHints();
    series.paint(painter, Plot, QTransform(), QLineF(), values, &cursor);

    const QPen pen = device.calls(PaintCall::Line).first().pen;
    QCOMPARE(pen.color(), QColor(Qt::red));
    QCOMPARE(pen.width(), 3);
    QCOMPARE(pen.style(), Qt::SolidLine);
    // The painter keeps the pen and gets no hint.
    QCOMPARE(painter.pen(), pen);
    QCOMPARE(painter.renderHints(), hints);
}

void TestSeriesPainting::mapsToDevice()
{
    PaintedSeries series;
    series.setPoints(readPoints("10,20 31,41 gap 10,20"));

    QCOMPARE(paint(series, QLineF(), QTransform::fromTranslate(5, 6)).calls,
             QString("15,26-36,47 o15,26 o36,47 o36,47 o15,26"));
    // Lines are not rounded; symbols are: 31 * 1.5 is 46.5, half up, and 41 * 1.5 is 61.5.
    QCOMPARE(paint(series, QLineF(), QTransform::fromScale(1.5, 1.5)).calls,
             QString("15,30-46.5,61.5 o15,30 o47,62 o47,62 o15,30"));
}

void TestSeriesPainting::givesNoReadOut_data()
{
    QTest::addColumn<QString>("points");
    QTest::addColumn<QLineF>("cursorLine");

    QTest::newRow("no cursor") << "0,0 100,100" << QLineF();
    QTest::newRow("cursor beside the line") << "0,0 100,100" << cursorAt(101);
    QTest::newRow("cursor line ends before it") << "0,0 100,100" << QLineF(50, 60, 50, 90);
    QTest::newRow("cursor in a gap") << "0,0 gap 100,100" << cursorAt(50);
    QTest::newRow("segment runs along the cursor") << "50,0 50,100" << cursorAt(50);
    QTest::newRow("segment without length") << "50,50 50,50" << cursorAt(50);
    QTest::newRow("one point") << "50,50" << cursorAt(50);
    QTest::newRow("no points") << "" << cursorAt(50);
}

void TestSeriesPainting::givesNoReadOut()
{
    QFETCH(const QString, points);
    QFETCH(const QLineF, cursorLine);
    PaintedSeries series;
    series.setPoints(readPoints(points));
    const Painted painted = paint(series, cursorLine);

    QVERIFY(painted.values.isEmpty());
    QCOMPARE(painted.side, int(ChartCursor::Right));
}

void TestSeriesPainting::readsNearerEnd_data()
{
    QTest::addColumn<double>("cursor");
    QTest::addColumn<bool>("reversed"); // the segment runs to the left
    QTest::addColumn<QString>("text");

    // From (100, 0) with value 1 to (200, 100) with value 2.
    QTest::newRow("near the first") << 149.0 << false << " 1 ";
    QTest::newRow("near the second") << 151.0 << false << " 2 ";
    QTest::newRow("middle goes to the first") << 150.0 << false << " 1 ";
    QTest::newRow("at the first") << 100.0 << false << " 1 ";
    QTest::newRow("at the second") << 200.0 << false << " 2 ";
    QTest::newRow("reversed, near the first") << 151.0 << true << " 2 ";
    QTest::newRow("reversed, near the second") << 149.0 << true << " 1 ";
    QTest::newRow("reversed, middle goes to the first") << 150.0 << true << " 2 ";
}

void TestSeriesPainting::readsNearerEnd()
{
    QFETCH(const double, cursor);
    QFETCH(const bool, reversed);
    QFETCH(const QString, text);
    PaintedSeries series;
    QVector<ChartPoint> points = {point(100, 0, 1.0), point(200, 100, 2.0)};
    if (reversed) {
        std::reverse(points.begin(), points.end());
    }
    series.setPoints(points);
    const Painted painted = paint(series, cursorAt(cursor));

    QCOMPARE(painted.values.size(), 1);
    QCOMPARE(painted.values.first().text, text);
}

void TestSeriesPainting::readsFirstSegmentThatIsCrossed()
{
    PaintedSeries series;
    series.setPoints({point(0, 10, 1.0), point(100, 20, 2.0), point(0, 30, 3.0)});

    const Painted painted = paint(series, cursorAt(40));
    QCOMPARE(painted.values.size(), 1);
    QCOMPARE(painted.values.first().text, QString(" 1 "));
}

void TestSeriesPainting::fillsReadOut()
{
    PaintedSeries series;
    series.m_precision = 2;
    series.setPoints({point(100, 200, 1.5, 0), point(200, 300, 2.25, 1)});
    const Painted painted = paint(series, cursorAt(190));
    const QFontMetrics metrics(QApplication::font());

    QCOMPARE(painted.values.size(), 1);
    const CursorValue value = painted.values.first();
    QCOMPARE(value.text, QString(" 2.25 "));
    QCOMPARE(value.frameColor, QColor(Qt::red));
    QCOMPARE(value.textColor, QColor(Qt::red)); // PlainSeries' colour of state 1
    QCOMPARE(value.y, 300.0);
    QCOMPARE(value.pointY, 300.0);
    // 5 pixels right of the line; the box stands on the point and is 2 pixels higher than a line.
    QCOMPARE(value.rect.left(), 195);
    QCOMPARE(value.rect.bottom(), 300);
    QCOMPARE(value.rect.width(), metrics.horizontalAdvance(" 2.25 "));
    QCOMPARE(value.rect.height(), metrics.height() + 2);
}

void TestSeriesPainting::truncatesPlaceOfReadOut()
{
    PaintedSeries series;
    series.setPoints(readPoints("100,201 200,201"));
    // On the device: y from 201 to 301.5
    const Painted painted =
        paint(series, QLineF(150.9, 0, 150.9, 500), QTransform::fromScale(1.0, 1.5));

    QCOMPARE(painted.values.first().rect.left(), 155);
    QCOMPARE(painted.values.first().rect.bottom(), 301);
    QCOMPARE(painted.values.first().y, 301.5);
}

void TestSeriesPainting::keepsReadOutsOfOtherSeries()
{
    PaintedSeries series;
    series.setPoints({point(0, 10, 7.0), point(100, 20, 8.0)});
    RecordingPaintDevice device(QSize(100, 100));
    ChartCursor cursor(nullptr);
    CursorValue other;
    other.text = "other";
    QList<CursorValue> values = {other};
    QPainter painter(&device);
    series.paint(painter, Plot, QTransform(), cursorAt(10), values, &cursor);

    QCOMPARE(values.size(), 2);
    QCOMPARE(values.at(0).text, QString("other"));
    QCOMPARE(values.at(1).text, QString(" 7 "));
}

void TestSeriesPainting::turnsBoxesToTheLeft_data()
{
    QTest::addColumn<int>("room"); // pixels between the last one of the box and the plot's end
    QTest::addColumn<int>("side");

    QTest::newRow("fits") << 1 << int(ChartCursor::Right);
    QTest::newRow("reaches the end") << 0 << int(ChartCursor::Right);
    QTest::newRow("reaches beyond") << -1 << int(ChartCursor::Left);
}

void TestSeriesPainting::turnsBoxesToTheLeft()
{
    QFETCH(const int, room);
    QFETCH(const int, side);
    PaintedSeries series;
    series.setPoints(readPoints("100,200 200,300"));
    const int last = 150 + 5 + QFontMetrics(QApplication::font()).horizontalAdvance(" 0 ") - 1;
    const QRectF plot(20, 0, last + room - 20, 500);

    QCOMPARE(paint(series, cursorAt(150), QTransform(), plot).side, side);
}

void TestSeriesPainting::readsOutOnTheDevice()
{
    PaintedSeries series;
    series.setPoints({point(100, 50, 1.0), point(200, 60, 2.0)});
    const QTransform twice = QTransform::fromScale(2.0, 2.0);

    // On the device the segment runs from 200 to 400.
    QVERIFY(paint(series, cursorAt(150), twice).values.isEmpty());
    const Painted painted = paint(series, cursorAt(390), twice);
    QCOMPARE(painted.values.size(), 1);
    QCOMPARE(painted.values.first().text, QString(" 2 "));
    QCOMPARE(painted.values.first().y, 120.0);
}

void TestSeriesPainting::holdsPointsWhilePainting()
{
    PaintedSeries series;
    series.setPoints(readPoints("100,50 200,60"));
    QCOMPARE(paint(series, cursorAt(150)).values.size(), 1);

    QVERIFY(series.m_locked);
    QVERIFY(series.m_pointsMutex.tryLock()); // and left it
    series.m_pointsMutex.unlock();
}

void TestSeriesPainting::centresPointImage_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QRectF>("target");

    QTest::newRow("even") << 4 << QRectF(8, 18, 4, 4);
    QTest::newRow("odd") << 5 << QRectF(7.5, 17.5, 5, 5);
}

void TestSeriesPainting::centresPointImage()
{
    QFETCH(const int, size);
    QFETCH(const QRectF, target);
    PaintedSeries series;
    series.setPointSize(size);
    RecordingPaintDevice device(QSize(100, 100));
    QPainter painter(&device);
    series.paintPointImage(painter, QPoint(10, 20));

    QCOMPARE(device.calls().size(), 1);
    QCOMPARE(device.calls(PaintCall::Image).first().rect, target);
}

void TestSeriesPainting::paintsNoPointImageBeforeItIsMade()
{
    PlainSeries series;
    RecordingPaintDevice device(QSize(100, 100));
    QPainter painter(&device);
    series.paintPointImage(painter, QPoint(10, 20));

    QVERIFY(device.calls().isEmpty());
}

void TestSeriesPainting::rendersSymbol_data()
{
    QTest::addColumn<int>("size");

    QTest::newRow("odd") << 9;
    QTest::newRow("even") << 10;
}

void TestSeriesPainting::rendersSymbol()
{
    QFETCH(const int, size);
    PlainSeries series;
    series.m_color = QColor(0, 200, 100);
    series.m_pointSize = size;
    series.updatePointImage();
    const QImage image = series.m_pointImage;
    const QRgb color = series.m_color.rgb();

    QCOMPARE(image.size(), QSize(size, size));
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    // A disc: filled, as wide and as high as the image, with empty corners.
    const int middle = size / 2;
    const int last = size - 1;
    for (const QPoint &inside : {QPoint(middle, middle), QPoint(0, middle), QPoint(last, middle),
                                 QPoint(middle, 0), QPoint(middle, last)}) {
        QCOMPARE(image.pixel(inside), color);
    }
    for (const QPoint &corner :
         {QPoint(0, 0), QPoint(last, 0), QPoint(0, last), QPoint(last, last)}) {
        QCOMPARE(qAlpha(image.pixel(corner)), 0);
    }
    // Not smoothed: nothing between colour and empty.
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            QVERIFY(image.pixel(x, y) == color || image.pixel(x, y) == 0);
        }
    }
}

void TestSeriesPainting::rendersNothingForEmptySize()
{
    PaintedSeries series;
    for (const int size : {0, -5}) {
        series.m_pointSize = size;
        series.updatePointImage();
        QVERIFY(series.m_pointImage.isNull());
    }
}

void TestSeriesPainting::setsPointSize_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("expected");

    QTest::newRow("negative is ignored") << -3 << SymbolSize;
    QTest::newRow("0 is ignored") << 0 << SymbolSize;
    QTest::newRow("1 is ignored") << 1 << SymbolSize;
    QTest::newRow("2 is the smallest") << 2 << 2;
    QTest::newRow("large") << 25 << 25;
}

void TestSeriesPainting::setsPointSize()
{
    QFETCH(const int, size);
    QFETCH(const int, expected);
    PaintedSeries series;
    series.setPointSize(size);

    QCOMPARE(series.m_pointSize, expected);
    QCOMPARE(series.m_pointImage.size(), QSize(expected, expected));
}

void TestSeriesPainting::restoresDefaultLook_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QColor>("color");

    QTest::newRow("first") << 0 << QColor(1, 2, 3);
    QTest::newRow("another") << 2 << QColor(Qt::blue);
    QTest::newRow("last") << 9 << QColor(Qt::darkMagenta);
    QTest::newRow("10 keeps the colour") << 10 << QColor(Qt::white);
    QTest::newRow("negative keeps the colour") << -1 << QColor(Qt::white);
}

void TestSeriesPainting::restoresDefaultLook()
{
    QFETCH(const int, index);
    QFETCH(const QColor, color);
    PaintedSeries series;
    series.m_defaults.colors[0] = QColor(1, 2, 3);
    series.m_defaults.lineWidth = 4;
    series.m_defaults.pointsVisible = false;
    series.m_defaults.pointsSize = 7;
    series.m_color = Qt::white;
    series.m_colorIndex = index;
    series.m_customized = true;

    series.restoreDefault();

    QCOMPARE(series.m_color, color);
    QCOMPARE(series.m_customized, false);
    QCOMPARE(series.m_lineWidth, 4);
    QCOMPARE(series.m_pointsVisible, false);
    QCOMPARE(series.m_pointSize, 7);
    QCOMPARE(series.m_pointImage.size(), QSize(7, 7));
    QCOMPARE(QColor(series.m_pointImage.pixel(3, 3)), color);
}

void TestSeriesPainting::paintsLineOfLogo_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QLineF>("line");

    // Of [0, 99] the middle is 49, of [0, 19] it is 9.
    QTest::newRow("wide") << QRect(0, 0, 100, 20) << QLineF(29, 9, 69, 9);
    QTest::newRow("41 wide") << QRect(0, 0, 41, 21) << QLineF(0, 10, 40, 10);
    QTest::newRow("40 wide") << QRect(0, 0, 40, 21) << QLineF(-1, 10, 39, 10);
    QTest::newRow("21 wide") << QRect(0, 0, 21, 21) << QLineF(0, 10, 20, 10);
    QTest::newRow("elsewhere") << QRect(10, 30, 21, 11) << QLineF(10, 35, 30, 35);
}

void TestSeriesPainting::paintsLineOfLogo()
{
    QFETCH(const QRect, rect);
    QFETCH(const QLineF, line);
    PaintedSeries series;
    series.m_pointsVisible = false;
    RecordingPaintDevice device(QSize(100, 100));
    QPainter painter(&device);
    series.paintLogo(&painter, rect);

    QCOMPARE(device.calls().size(), 1);
    const PaintCall call = device.calls(PaintCall::Line).first();
    QCOMPARE(call.line, line);
    QCOMPARE(call.pen.color(), QColor(Qt::red));
    QCOMPARE(call.pen.width(), 3);
}

void TestSeriesPainting::paintsSymbolOfLogo_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QRectF>("target");

    // Around (49, 9): half of size - 1, rounded down, to the left and above.
    QTest::newRow("odd") << 5 << QRectF(47, 7, 5, 5);
    QTest::newRow("even") << 6 << QRectF(47, 7, 6, 6);
    QTest::newRow("smallest") << 2 << QRectF(49, 9, 2, 2);
}

void TestSeriesPainting::paintsSymbolOfLogo()
{
    QFETCH(const int, size);
    QFETCH(const QRectF, target);
    PaintedSeries series;
    series.setPointSize(size);
    RecordingPaintDevice device(QSize(100, 100));
    QPainter painter(&device);
    series.paintLogo(&painter, QRect(0, 0, 100, 20));

    QCOMPARE(device.calls().size(), 2);
    QCOMPARE(device.calls().at(0).kind, PaintCall::Line);
    const PaintCall symbol = device.calls().at(1);
    QCOMPARE(symbol.kind, PaintCall::Image);
    QCOMPARE(symbol.rect, target);
    QCOMPARE(symbol.brush, QBrush(Qt::red, Qt::SolidPattern));
}

void TestSeriesPainting::paintsLogoWithoutSymbol()
{
    PaintedSeries series;
    series.m_pointImage = QImage();
    RecordingPaintDevice device(QSize(100, 100));
    QPainter painter(&device);
    series.paintLogo(&painter, QRect(0, 0, 100, 20));

    QCOMPARE(callsText(device), QString("29,9-69,9"));
}

void TestSeriesPainting::restoresPainterOfLogo()
{
    PaintedSeries series;
    RecordingPaintDevice device(QSize(100, 100));
    QPainter painter(&device);
    painter.setPen(Qt::green);
    painter.setBrush(Qt::blue);
    series.paintLogo(&painter, QRect(0, 0, 100, 20));

    QCOMPARE(painter.pen(), QPen(Qt::green));
    QCOMPARE(painter.brush(), QBrush(Qt::blue));
}

QTEST_MAIN(TestSeriesPainting)
#include "tst_seriespainting.moc"
