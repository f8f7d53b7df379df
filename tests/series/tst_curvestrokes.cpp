#include "series/chartpoint.h"
#include "series/pointthread.h"
#include "series/sampleindex_p.h"
#include "support/paintcalltext.h"
#include "support/plaincurve.h"
#include "support/plainseries.h"
#include "support/recordingpaintdevice.h"

#include <QImage>
#include <QPainter>
#include <QPicture>
#include <QRegion>
#include <QtTest>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace {

constexpr int Columns = 64;
constexpr int Rows = 48;
const QRectF Plot(0.0, 0.0, Columns, Rows);
constexpr int Reach = 15000; // pixels, as far as curves are drawn by strokes

using Random = std::mt19937;

int between(Random &random, int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(random);
}

bool oneIn(Random &random, int count)
{
    return between(random, 1, count) == 1;
}

/// A vertex of a curve in pixels; a gap has no y.
using Curve = QVector<QPointF>;

const double Gap = std::numeric_limits<double>::quiet_NaN();

QString curveText(const Curve &curve)
{
    QStringList texts;
    for (const QPointF &vertex : curve) {
        texts.append(std::isnan(vertex.y())
                         ? QString("gap")
                         : QString("%1,%2").arg(int(vertex.x())).arg(int(vertex.y())));
    }
    return texts.join(' ');
}

/// A series whose samples are pixels, so that the worker makes just these points.
class PixelSeries : public PlainSeries
{
public:
    explicit PixelSeries(const Curve &curve)
    {
        m_color = QColor(200, 30, 77);
        m_lineWidth = 1;
        m_pointsVisible = false;
        for (const QPointF &vertex : curve) {
            m_values.append(newValue(vertex.x(), vertex.y(), int(vertex.x()) & 1));
        }
        constexpr double Far = 1e8;
        m_matrix = QTransform();
        m_pointThread->m_rect = QRectF(-Far, -Far, 2.0 * Far, 2.0 * Far);
        m_pointThread->run();
    }

    void paintOn(QPainter &painter, const QTransform &transform = QTransform())
    {
        QList<CursorValue> values;
        paint(painter, Plot, transform, QLineF(), values, nullptr);
    }
};

/// Curves as they come from data, each kind with its own ways from column to column.
enum Kind {
    Noise,
    Walk,
    Smooth,
    Steps,
    UnsortedX,
    Gaps,
    SingleColumn,
    SingleRow,
    RepeatedColumns,
    Bands,
    Steep,
    Beyond,
    FarBeyond,
    KindCount
};

class CurveMaker
{
public:
    CurveMaker(Random &random, Kind kind)
        : m_random(random)
        , m_kind(kind)
        , m_x(kind == SingleColumn ? between(random, -1, Columns) : between(random, -3, 40))
        , m_y(between(random, 0, Rows - 1))
        , m_perColumn(between(random, 1, 12))
    {
    }

    Curve make()
    {
        Curve curve;
        const int count = between(m_random, 2, oneIn(m_random, 3) ? 300 : 30);
        for (int i = 0; i < count; ++i) {
            step(i);
            const bool isGap = m_kind == Gaps && oneIn(m_random, 8);
            curve.append(QPointF(m_x, isGap ? Gap : m_y));
        }
        return curve;
    }

private:
    void step(int i)
    {
        m_x += i % m_perColumn == 0 && m_kind != SingleColumn ? 1 : 0;
        switch (m_kind) {
        case Noise:
        case Gaps:
        case SingleColumn:
            m_y = between(m_random, 0, Rows - 1);
            break;
        case Walk:
            m_y += between(m_random, -4, 4);
            break;
        case Smooth:
            m_y = int(Rows * (0.5 + 0.5 * std::sin(i * 0.07)));
            break;
        case Steps:
            m_y = i / 17 % 2 == 0 ? 5 : Rows - 8;
            break;
        case SingleRow:
            m_x += between(m_random, 0, 2);
            break;
        case UnsortedX:
            m_x = between(m_random, -3, Columns + 3);
            m_y = between(m_random, -3, Rows + 3);
            break;
        case RepeatedColumns:
            m_x = 20 + between(m_random, 0, 3);
            m_y = between(m_random, 0, Rows - 1);
            break;
        case Bands:
            m_x = 10 + between(m_random, 0, 5);
            m_y = between(m_random, 0, 5) * 9 + between(m_random, 0, 4);
            break;
        case Steep:
            m_x += oneIn(m_random, 2) ? 1 : -1;
            m_y += between(m_random, -3, 3);
            break;
        case Beyond:
            m_y = between(m_random, -100, 150);
            break;
        case FarBeyond:
            stepFar();
            break;
        case KindCount:
            break;
        }
    }

    void stepFar()
    {
        const int far = oneIn(m_random, 4) ? 40 * Reach : Reach - 10;
        m_x = oneIn(m_random, 5) ? between(m_random, -far, far) : m_x;
        m_y = oneIn(m_random, 2) ? between(m_random, -far, far) : between(m_random, 0, Rows);
    }

    Random &m_random;
    const Kind m_kind;
    int m_x;
    int m_y;
    const int m_perColumn;
};

Curve randomCurve(Random &random)
{
    return CurveMaker(random, Kind(between(random, 0, KindCount - 1))).make();
}

/// How a picture is to be painted.
struct Setup
{
    QImage::Format format = QImage::Format_ARGB32_Premultiplied;
    int ratio = 1; ///< Of device pixels to pixels.
    int width = 1; ///< Of the pen.
    QColor color = QColor(200, 30, 77);
    QImage background; ///< Null for one colour.
    std::function<void(QPainter &)> prepare = [](QPainter &) {};
};

} // namespace

Q_DECLARE_METATYPE(Setup)
Q_DECLARE_METATYPE(QPaintEngine::Type)

namespace {

/// What is left to chance: where the painter stands, and what it may paint on.
struct Place
{
    QPoint offset;
    QRegion clip; ///< Empty for none.
};

Place randomPlace(Random &random)
{
    Place place;
    if (oneIn(random, 3)) {
        place.offset = QPoint(between(random, -9, 9), between(random, -9, 9));
    }
    const int rects = between(random, 0, 2);
    for (int i = 0; i < rects; ++i) {
        place.clip |= QRect(between(random, -5, 50), between(random, -5, 40),
                            between(random, 1, 50), between(random, 1, 40));
    }
    return place;
}

/// Pixels of all shades and of fine steps, as transparent as the format allows.
QImage motley(const QSize &size, QImage::Format format)
{
    Random random(5);
    QImage image(size, QImage::Format_RGBA64);
    for (int y = 0; y < size.height(); ++y) {
        auto *pixels = reinterpret_cast<quint16 *>(image.scanLine(y));
        std::generate(pixels, pixels + 4 * size.width(), [&random] { return quint16(random()); });
    }
    return image.convertToFormat(format);
}

/// Without a painter, which would round them.
void copyPixels(const QImage &source, QImage &target)
{
    for (int y = 0; y < source.height(); ++y) {
        std::copy_n(source.constScanLine(y), source.bytesPerLine(), target.scanLine(y));
    }
}

template <typename Draw>
QImage painted(const Setup &setup, const Place &place, Draw draw)
{
    QImage image(QSize(Columns, Rows) * setup.ratio, setup.format);
    image.setDevicePixelRatio(setup.ratio);
    image.fill(QColor(20, 230, 120));
    copyPixels(setup.background, image);
    QPainter painter(&image);
    painter.translate(place.offset);
    if (!place.clip.isEmpty()) {
        painter.setClipRegion(place.clip);
    }
    setup.prepare(painter);
    draw(painter);
    return image;
}

/// The read-out as one text.
QString valuesText(const QList<CursorValue> &values, const ChartCursor &cursor)
{
    QString text = QString("side %1").arg(cursor.m_side);
    for (const CursorValue &value : values) {
        text += QString(",%1, %2 %3 %4, %5 %6")
                    .arg(value.text, rectText(value.rect), value.frameColor.name(),
                         value.textColor.name())
                    .arg(value.y)
                    .arg(value.pointY);
    }
    return text;
}

template <typename Paint>
QStringList recorded(QPaintEngine::Type type, const std::function<void(QPainter &)> &prepare,
                     Paint paint)
{
    RecordingPaintDevice device(QSize(Columns, Rows), type);
    QPainter painter(&device);
    prepare(painter);
    paint(painter);
    painter.end();
    return paintCallTexts(device.calls());
}

/// Draws on a part of its window only.
class CurveWidget : public QWidget
{
public:
    CurveWidget(std::function<void(QPainter &)> draw, QWidget *parent)
        : QWidget(parent)
        , m_draw(std::move(draw))
    {
        setGeometry(20, 30, Columns, Rows);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setClipRect(QRect(2, 3, Columns - 8, Rows - 9));
        m_draw(painter);
    }

private:
    const std::function<void(QPainter &)> m_draw;
};

QImage paintedOnWidget(const std::function<void(QPainter &)> &draw)
{
    QWidget window;
    window.resize(120, 100);
    CurveWidget widget(draw, &window);
    QWidget neighbour(&window);
    neighbour.setAutoFillBackground(true);
    neighbour.setGeometry(30, 40, 10, 10);
    return window.grab().toImage();
}

/// Up and down from edge to edge in each column.
Curve denseCurve()
{
    constexpr int PerColumn = 20;
    Curve curve;
    for (int i = 0; i < Columns * PerColumn; ++i) {
        curve.append(QPointF(i / PerColumn, i % 2 == 0 ? 0 : Rows - 1));
    }
    return curve;
}

} // namespace

class TestCurveStrokes : public QObject
{
    Q_OBJECT

private slots:
    // So that curves of usual length take the ways of long ones too.
    void initTestCase() { SampleIndex::setSmallestStore(20); }
    void cleanupTestCase() { SampleIndex::setSmallestStore(SampleIndex::DefaultSmallestStore); }

    void paintsWhatSegmentsGive_data();
    void paintsWhatSegmentsGive();
    void paintsSymbolsOverLines();
    void paintsOnTransformedTargetWhatSegmentsGive();
    void paintsOnWidgetWhatSegmentsGive();
    void paintsPointsOfOthersAsSegments();
    void followsEachCalculation();
    void breaksLineAtPixelOfMarker();

    void drawsFewStrokes();
    void drawsCoveredSegmentsOfBroadLines();
    void drawsEachSegmentWhereStrokesDiffer_data();
    void drawsEachSegmentWhereStrokesDiffer();
    void drawsEachSegmentFarOutside_data();
    void drawsEachSegmentFarOutside();
    void playsSegmentsBackFromPicture();
    void leavesPainterAsSegmentsDo();

    void readsWhatSegmentsGive_data();
    void readsWhatSegmentsGive();
    void crossesNothingUpright();
};

void TestCurveStrokes::paintsWhatSegmentsGive_data()
{
    QTest::addColumn<Setup>("setup");

    QTest::newRow("screen") << Setup();
    for (const QImage::Format format :
         {QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB32, QImage::Format_ARGB32,
          QImage::Format_RGBA8888, QImage::Format_RGB16, QImage::Format_RGB888,
          QImage::Format_RGB30, QImage::Format_A2BGR30_Premultiplied, QImage::Format_RGBA64,
          QImage::Format_ARGB8565_Premultiplied, QImage::Format_Mono, QImage::Format_Grayscale8}) {
        for (const int ratio : {1, 2}) {
            Setup setup;
            setup.format = format;
            setup.ratio = ratio;
            setup.background = motley(QSize(Columns, Rows) * ratio, format);
            QTest::addRow("format %d, ratio %d", int(format), ratio) << setup;
        }
    }
    for (const int ratio : {1, 2, 3, 4}) {
        for (const int width : {0, 1, 2, 3, 4, 5, 6}) {
            Setup setup;
            setup.ratio = ratio;
            setup.width = width;
            QTest::addRow("ratio %d, width %d", ratio, width) << setup;
        }
    }

    Setup setup;
    const QVector<QPair<const char *, QColor>> colors = {
        {"lucent", QColor(200, 30, 77, 100)},
        {"clear", Qt::transparent},
        {"none", QColor()},
        {"of hue", QColor::fromHsvF(0.777, 0.345, 0.567)},
        {"of fine steps", QColor::fromRgba64(0xc700, 0x8000, 0xe000)},
        {"for print", QColor::fromCmykF(0.1, 0.333, 0.7, 0.123)}};
    for (const auto &named : colors) {
        setup = Setup();
        setup.color = named.second;
        QTest::addRow("colour %s", named.first) << setup;
    }

    setup = Setup();
    setup.format = QImage::Format_RGBA64;
    setup.color = QColor::fromRgba64(51000, 7000, 19000, 0xfff0);
    QTest::newRow("all but opaque") << setup;

    using Prepare = std::function<void(QPainter &)>;
    const QVector<QPair<const char *, Prepare>> states = {
        {"opacity", [](QPainter &p) { p.setOpacity(0.4); }},
        {"antialiasing", [](QPainter &p) { p.setRenderHint(QPainter::Antialiasing); }},
        {"old rounding", [](QPainter &p) { p.setRenderHint(QPainter::Qt4CompatiblePainting); }},
        {"smooth images", [](QPainter &p) { p.setRenderHint(QPainter::SmoothPixmapTransform); }},
        {"xor", [](QPainter &p) { p.setCompositionMode(QPainter::RasterOp_SourceXorDestination); }},
        {"multiply", [](QPainter &p) { p.setCompositionMode(QPainter::CompositionMode_Multiply); }},
        {"dashed pen before", [](QPainter &p) { p.setPen(QPen(Qt::blue, 3, Qt::DashLine)); }},
        {"brush", [](QPainter &p) { p.setBrush(Qt::Dense4Pattern); }},
        {"quarter turn", [](QPainter &p) { p.rotate(90); }},
        {"slant", [](QPainter &p) { p.shear(0.3, 0.1); }},
        {"mirrored", [](QPainter &p) { p.scale(-1, 1); }},
        {"upside down", [](QPainter &p) { p.scale(1, -1); }},
        {"half", [](QPainter &p) { p.scale(0.5, 0.5); }},
        {"twice", [](QPainter &p) { p.scale(2, 2); }},
        {"thrice", [](QPainter &p) { p.scale(3, 3); }},
        {"one and a half", [](QPainter &p) { p.scale(1.5, 1.5); }},
        {"twice as wide", [](QPainter &p) { p.scale(2, 1); }},
        {"half a pixel off", [](QPainter &p) { p.translate(0.5, 0.0); }},
        {"a quarter down", [](QPainter &p) { p.translate(0.0, 0.25); }},
        {"window", [](QPainter &p) { p.setWindow(0, 0, Columns / 2, Rows / 2); }},
        {"clip switched off", [](QPainter &p) { p.setClipping(false); }}};
    for (const auto &state : states) {
        for (const int width : {1, 2}) {
            setup = Setup();
            setup.width = width;
            setup.prepare = state.second;
            QTest::addRow("%s, width %d", state.first, width) << setup;
        }
    }
}

void TestCurveStrokes::paintsWhatSegmentsGive()
{
    QFETCH(const Setup, setup);
    constexpr int Curves = 250;
    Random random(20250131);
    for (int i = 0; i < Curves; ++i) {
        const Curve curve = randomCurve(random);
        const Place place = randomPlace(random);
        PixelSeries series(curve);
        series.m_color = setup.color;
        series.m_lineWidth = setup.width;

        const QImage image = painted(setup, place, [&](QPainter &p) { series.paintOn(p); });
        const QImage expected =
            painted(setup, place, [&](QPainter &p) { PlainCurve(series).draw(p); });
        if (image != expected) {
            qInfo() << "curve" << curveText(curve) << "at" << place.offset << "in" << place.clip;
        }
        QVERIFY(image == expected);
    }
}

void TestCurveStrokes::paintsSymbolsOverLines()
{
    Random random(1);
    for (int i = 0; i < 300; ++i) {
        const Curve curve = randomCurve(random);
        PixelSeries series(curve);
        series.setPointSize(5);
        series.m_pointsVisible = true;
        series.m_color = Qt::black; // another colour than the symbols'

        const QImage image = painted(Setup(), Place(), [&](QPainter &p) { series.paintOn(p); });
        const QImage expected =
            painted(Setup(), Place(), [&](QPainter &p) { PlainCurve(series).draw(p); });
        QVERIFY2(image == expected, qPrintable(curveText(curve)));
    }
}

void TestCurveStrokes::paintsOnTransformedTargetWhatSegmentsGive()
{
    Random random(2);
    for (int i = 0; i < 600; ++i) {
        const Curve curve = randomCurve(random);
        PixelSeries series(curve);
        const QTransform target = i % 3 == 0 ? QTransform::fromTranslate(3, 4)
                                             : QTransform::fromScale(0.5 * (i % 5 + 1), 1.5);

        const QImage image =
            painted(Setup(), Place(), [&](QPainter &p) { series.paintOn(p, target); });
        const QImage expected =
            painted(Setup(), Place(), [&](QPainter &p) { PlainCurve(series, target).draw(p); });
        QVERIFY2(image == expected, qPrintable(curveText(curve)));
    }
}

void TestCurveStrokes::paintsOnWidgetWhatSegmentsGive()
{
    Random random(4);
    for (int i = 0; i < 100; ++i) {
        const Curve curve = i == 0 ? denseCurve() : randomCurve(random);
        PixelSeries series(curve);
        series.m_lineWidth = i % 3;

        const QImage image = paintedOnWidget([&](QPainter &p) { series.paintOn(p); });
        const QImage expected = paintedOnWidget([&](QPainter &p) { PlainCurve(series).draw(p); });
        QVERIFY2(image == expected, qPrintable(curveText(curve)));
    }
}

void TestCurveStrokes::paintsPointsOfOthersAsSegments()
{
    PixelSeries series(denseCurve());
    series.m_pointThread->m_points = PixelSeries({{5, 5}, {30, 20}}).m_pointThread->m_points;

    const QImage image = painted(Setup(), Place(), [&](QPainter &p) { series.paintOn(p); });
    const QImage expected =
        painted(Setup(), Place(), [&](QPainter &p) { PlainCurve(series).draw(p); });
    QVERIFY(image == expected);
}

void TestCurveStrokes::followsEachCalculation()
{
    PixelSeries series(denseCurve());
    qDeleteAll(series.m_values);
    series.m_values.clear();
    for (const auto &vertex : Curve{{3, 3}, {3, 9}, {4, 5}, {4, 6}}) {
        series.m_values.append(newValue(vertex.x(), vertex.y()));
    }
    series.m_pointThread->run();

    const QImage image = painted(Setup(), Place(), [&](QPainter &p) { series.paintOn(p); });
    const QImage expected =
        painted(Setup(), Place(), [&](QPainter &p) { PlainCurve(series).draw(p); });
    QVERIFY(image == expected);
}

// A sample that falls on the pixel by which markers are known is one, in the midst of a run.
void TestCurveStrokes::breaksLineAtPixelOfMarker()
{
    Curve curve;
    for (int i = 0; i < 40; ++i) {
        curve.append({-1.0, i == 20 ? -1.0 : i % 2 == 0 ? 3.0 : 12.0});
    }
    PixelSeries series(curve);

    const QImage image = painted(Setup(), Place(), [&](QPainter &p) {
        p.translate(10, 10);
        series.paintOn(p);
    });
    const QImage expected = painted(Setup(), Place(), [&](QPainter &p) {
        p.translate(10, 10);
        PlainCurve(series).draw(p);
    });
    QCOMPARE(series.m_pointThread->m_points.size(), 40);
    QVERIFY(image == expected);
}

void TestCurveStrokes::drawsFewStrokes()
{
    PixelSeries series(denseCurve());
    const auto prepare = [](QPainter &) {};
    for (const int width : {0, 1, 2, 4}) {
        series.m_lineWidth = width;
        // One run for each column; they cover the segments between the columns.
        const QStringList calls =
            recorded(QPaintEngine::Raster, prepare, [&](QPainter &p) { series.paintOn(p); });
        QCOMPARE(calls.size(), Columns);
        QVERIFY(calls.first().startsWith("line 0,0 to 0,47"));
        QVERIFY(calls.last().startsWith("line 63,0 to 63,47"));
    }
}

void TestCurveStrokes::drawsCoveredSegmentsOfBroadLines()
{
    PixelSeries series(denseCurve());
    series.m_lineWidth = 6;
    const auto prepare = [](QPainter &) {};

    QCOMPARE(
        recorded(QPaintEngine::Raster, prepare, [&](QPainter &p) { series.paintOn(p); }).size(),
        Columns + Columns - 1);
}

void TestCurveStrokes::drawsEachSegmentWhereStrokesDiffer_data()
{
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<QPaintEngine::Type>("engine");

    Setup setup;
    QTest::newRow("other engine") << setup << QPaintEngine::User;
    QTest::newRow("paper") << setup << QPaintEngine::Pdf;
    setup.color = QColor(200, 30, 77, 254);
    QTest::newRow("lucent colour") << setup << QPaintEngine::Raster;
    setup = Setup();
    setup.width = 3;
    QTest::newRow("odd width") << setup << QPaintEngine::Raster;

    using Prepare = std::function<void(QPainter &)>;
    const QVector<QPair<const char *, Prepare>> states = {
        {"opacity", [](QPainter &p) { p.setOpacity(0.99); }},
        {"antialiasing", [](QPainter &p) { p.setRenderHint(QPainter::Antialiasing); }},
        {"old rounding", [](QPainter &p) { p.setRenderHint(QPainter::Qt4CompatiblePainting); }},
        {"xor", [](QPainter &p) { p.setCompositionMode(QPainter::CompositionMode_Xor); }},
        {"turn", [](QPainter &p) { p.rotate(90); }},
        {"half pixel", [](QPainter &p) { p.translate(0.5, 0); }},
        {"odd scale", [](QPainter &p) { p.scale(3, 3); }},
        {"broken scale", [](QPainter &p) { p.scale(2.5, 2.5); }},
        {"uneven scale", [](QPainter &p) { p.scale(2, 4); }},
        {"far translation", [](QPainter &p) { p.translate(Reach, 0); }}};
    for (const auto &state : states) {
        setup = Setup();
        setup.prepare = state.second;
        QTest::newRow(state.first) << setup << QPaintEngine::Raster;
    }
}

void TestCurveStrokes::drawsEachSegmentWhereStrokesDiffer()
{
    QFETCH(const Setup, setup);
    QFETCH(const QPaintEngine::Type, engine);
    PixelSeries series(denseCurve());
    series.m_lineWidth = setup.width;
    series.m_color = setup.color;

    const QStringList calls =
        recorded(engine, setup.prepare, [&](QPainter &p) { series.paintOn(p); });
    QCOMPARE(calls,
             recorded(engine, setup.prepare, [&](QPainter &p) { PlainCurve(series).draw(p); }));
    QCOMPARE(calls.size(), series.m_pointThread->m_points.size() - 1);
}

void TestCurveStrokes::drawsEachSegmentFarOutside_data()
{
    QTest::addColumn<int>("far");
    QTest::addColumn<int>("calls");

    // Four segments in one column, one from and one to another one
    QTest::newRow("at the limit") << Reach - 1 << 3;
    QTest::newRow("beyond") << Reach << 6;
    QTest::newRow("at the limit above") << 1 - Reach << 3;
    QTest::newRow("beyond above") << -Reach << 6;
    QTest::newRow("far beyond") << 100000000 << 6;
}

void TestCurveStrokes::drawsEachSegmentFarOutside()
{
    QFETCH(const int, far);
    QFETCH(const int, calls);
    PixelSeries series({{1, 1}, {2, 2}, {2, double(far)}, {2, 3}, {2, 6}, {2, 4}, {9, 9}});
    const auto prepare = [](QPainter &) {};

    QCOMPARE(
        recorded(QPaintEngine::Raster, prepare, [&](QPainter &p) { series.paintOn(p); }).size(),
        calls);
}

void TestCurveStrokes::playsSegmentsBackFromPicture()
{
    PixelSeries series(denseCurve());
    QPicture picture;
    QPainter recorder(&picture);
    series.paintOn(recorder);
    recorder.end();
    QPicture expectedPicture;
    QPainter expectedRecorder(&expectedPicture);
    PlainCurve(series).draw(expectedRecorder);
    expectedRecorder.end();

    QCOMPARE(QByteArray(picture.data(), int(picture.size())),
             QByteArray(expectedPicture.data(), int(expectedPicture.size())));
}

void TestCurveStrokes::leavesPainterAsSegmentsDo()
{
    const auto state = [](const std::function<void(QPainter &)> &paint) {
        QImage image(QSize(Columns, Rows) * 2, QImage::Format_RGB32);
        image.setDevicePixelRatio(2);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.translate(2, 3);
        painter.setBrush(Qt::Dense3Pattern);
        painter.setPen(Qt::DashLine);
        painter.setClipRect(QRect(1, 2, 30, 40));
        paint(painter);
        QString text;
        QDebug(&text) << painter.pen() << painter.brush() << painter.worldTransform()
                      << painter.deviceTransform() << painter.clipRegion() << painter.hasClipping()
                      << painter.renderHints() << painter.compositionMode() << painter.opacity();
        return text;
    };
    PixelSeries series(denseCurve());

    QCOMPARE(state([&](QPainter &p) { series.paintOn(p); }),
             state([&](QPainter &p) { PlainCurve(series).draw(p); }));
}

void TestCurveStrokes::readsWhatSegmentsGive_data()
{
    QTest::addColumn<double>("rise"); // pixels by which the line leans
    QTest::addColumn<double>("top");  // of the cursor line
    QTest::addColumn<double>("bottom");
    QTest::addColumn<QTransform>("transform");

    QTest::newRow("upright") << 0.0 << -1.0 << Rows + 1.0 << QTransform();
    QTest::newRow("upright, from below") << 0.0 << Rows + 1.0 << -1.0 << QTransform();
    QTest::newRow("short") << 0.0 << 10.0 << 20.0 << QTransform();
    QTest::newRow("shortest") << 0.0 << 10.0 << 11.0 << QTransform();
    QTest::newRow("shorter than a pixel") << 0.0 << 10.0 << 10.4 << QTransform();
    QTest::newRow("next to nothing") << 0.0 << 0.0 << 1e-308 << QTransform();
    QTest::newRow("nothing") << 0.0 << 10.0 << 10.0 << QTransform();
    QTest::newRow("endless") << 0.0 << 0.0 << std::numeric_limits<double>::infinity()
                             << QTransform();
    QTest::newRow("nowhere") << 0.0 << 0.0 << Gap << QTransform();
    QTest::newRow("leaning") << 7.0 << -1.0 << Rows + 1.0 << QTransform();
    QTest::newRow("leaning by a trace") << 1e-9 << -1.0 << Rows + 1.0 << QTransform();
    QTest::newRow("other target") << 0.0 << -1.0 << Rows + 1.0 << QTransform::fromScale(0.5, 0.7);
}

void TestCurveStrokes::readsWhatSegmentsGive()
{
    QFETCH(const double, rise);
    QFETCH(const double, top);
    QFETCH(const double, bottom);
    QFETCH(const QTransform, transform);
    Random random(3);
    QImage image(1, 1, QImage::Format_RGB32);
    QPainter painter(&image);
    for (int i = 0; i < 100; ++i) {
        const Curve curve = randomCurve(random);
        PixelSeries series(curve);
        const PlainCurve plain(series, transform);
        for (double x = -4.0; x <= Columns + 4.0; x += i % 2 == 0 ? 0.5 : 0.7) {
            const QLineF line(x, top, x + rise, bottom);
            ChartCursor cursor(nullptr);
            cursor.m_position = x;
            QList<CursorValue> values;
            series.paint(painter, Plot, transform, line, values, &cursor);
            ChartCursor expectedCursor(nullptr);
            expectedCursor.m_position = x;
            QList<CursorValue> expected;
            plain.read(Plot, line, expected, expectedCursor);
            if (valuesText(values, cursor) != valuesText(expected, expectedCursor)) {
                qInfo() << "cursor at" << x << "curve" << curveText(curve);
            }
            QCOMPARE(valuesText(values, cursor), valuesText(expected, expectedCursor));
        }
    }
}

// That runs need not be searched for the cursor rests on this.
void TestCurveStrokes::crossesNothingUpright()
{
    const QLineF cursor(10.0, -1.0, 10.0, Rows + 1.0);
    for (const double x : {9.0, 10.0, 10.0 + 1e-15, 11.0, double(Reach)}) {
        QCOMPARE(QLineF(x, 5.0, x, 20.0).intersects(cursor, nullptr), QLineF::NoIntersection);
        QCOMPARE(QLineF(x, 20.0, x, -5.0).intersects(cursor, nullptr), QLineF::NoIntersection);
    }
}

QTEST_MAIN(TestCurveStrokes)
#include "tst_curvestrokes.moc"
