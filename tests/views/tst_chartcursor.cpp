#include "views/chartcursor.h"

#include "support/openmodel.h"
#include "support/paintcalltext.h"
#include "support/recordingpaintdevice.h"
#include "views/cursorvalue.h"

#include <QPainter>
#include <QPalette>
#include <QtTest>

#include <algorithm>

namespace {

const QSize DeviceSize(1000, 800);
const QRectF Frame(100.0, 50.0, 400.0, 300.0); // from 100 to 500 and from 50 to 350
const QLineF Line(300.0, 52.0, 300.0, 348.0);
constexpr int BoxHeight = 20;
constexpr int Alignment = Qt::AlignHCenter | Qt::AlignVCenter;

/// A record as a series delivers it: the box stands on the point, right of the line.
CursorValue valueAt(double y, int width = 40, int height = BoxHeight)
{
    CursorValue value;
    value.text = "1.5";
    value.rect = QRect(305, int(y) - height + 1, width, height);
    value.frameColor = QColor(70, 80, 90);
    value.textColor = QColor(100, 110, 120);
    value.y = y;
    value.pointY = y;
    return value;
}

QList<CursorValue> valuesAt(const QList<double> &positions)
{
    QList<CursorValue> values;
    for (const double y : positions) {
        values.append(valueAt(y));
    }
    return values;
}

QList<int> tops(const QList<CursorValue> &values)
{
    QList<int> result;
    for (const CursorValue &value : values) {
        result.append(value.rect.top());
    }
    return result;
}

QPalette testPalette()
{
    QPalette palette;
    palette.setColor(QPalette::All, QPalette::WindowText, QColor(40, 50, 60));
    return palette;
}

/// What the cursor draws.
QStringList painted(ChartCursor &cursor, QList<CursorValue> &values, bool showTime = false,
                    const QRectF &frame = Frame, const QLineF &line = Line)
{
    return drawn([&](QPainter &painter) {
        cursor.paint(painter, line, values, frame, showTime, testPalette());
    });
}

void drawBox(QPainter &painter, const QRectF &box)
{
    painter.setBrush(QColor(Qt::darkGray));
    painter.setPen(
        QPen(QBrush(QColor(70, 80, 90)), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.drawRect(box);
    painter.setPen(QColor(100, 110, 120));
    painter.drawText(box, Alignment, "1.5");
}

/// The tops of the boxes, by the rule for each box alone: as low as the stack allows, then as high
/// as its point, the box above and the frame allow.
QList<int> plainTops(const QList<CursorValue> &values, const QRectF &frame)
{
    QList<int> lowest;
    double foot = frame.y() + frame.height();
    for (const CursorValue &value : values) {
        lowest.append(int(foot) - value.rect.height() + 1);
        foot = lowest.last() - 5;
    }
    QList<int> result = lowest;
    for (int i = values.size() - 1; i >= 0; --i) {
        double limit = qMax(frame.y(), values.at(i).y);
        if (i + 1 < values.size()) {
            const int bottomOfNext = result.at(i + 1) + values.at(i + 1).rect.height() - 1;
            limit = qMax(limit, bottomOfNext + 5.0);
        }
        if (lowest.at(i) > limit) {
            result[i] = int(limit);
        }
    }
    return result;
}

} // namespace

class TestChartCursor : public QObject
{
    Q_OBJECT

private slots:
    void startsHidden();
    void paintsLineInTheModelsColor_data();
    void paintsLineInTheModelsColor();

    void placesBoxes_data();
    void placesBoxes();
    void placesBoxesOfDifferentHeights();
    void placesBoxesInSmallFrame();
    void placesBoxesByThePlainRule();

    void paintsFilledBoxesWithCentredText();
    void keepsBoxesRightOfTheLine_data();
    void keepsBoxesRightOfTheLine();
    void alignsBoxesLeftOfTheLine();

    void placesTimeLabel_data();
    void placesTimeLabel();
    void paintsTimeLabelOutsideTheClip();
    void paintsNoTimeLabelWithoutSize_data();
    void paintsNoTimeLabelWithoutSize();
    void keepsClipWithoutTimeLabel();
};

void TestChartCursor::startsHidden()
{
    const ChartCursor cursor(nullptr);

    QCOMPARE(cursor.m_model, nullptr);
    QCOMPARE(cursor.m_side, 0);
    QCOMPARE(cursor.m_visible, false);
    QCOMPARE(cursor.m_timeText, QString());
    QCOMPARE(cursor.m_timeRect, QRectF());
    QCOMPARE(cursor.m_position, 0.0);
}

void TestChartCursor::paintsLineInTheModelsColor_data()
{
    QTest::addColumn<bool>("hasModel");
    QTest::addColumn<QColor>("setting");
    QTest::addColumn<QColor>("color");

    QTest::newRow("no model") << false << QColor() << QColor(255, 170, 0);
    QTest::newRow("color of the settings") << true << QColor(1, 2, 3) << QColor(1, 2, 3);
    QTest::newRow("invalid color") << true << QColor() << QColor(255, 170, 0);
}

void TestChartCursor::paintsLineInTheModelsColor()
{
    QFETCH(bool, hasModel);
    QFETCH(QColor, setting);
    QFETCH(QColor, color);
    OpenModel model;
    model.m_settings.cursorLineColor = setting;
    ChartCursor cursor(hasModel ? &model : nullptr);
    QList<CursorValue> none;

    const QStringList expected = drawn([&](QPainter &painter) {
        painter.setPen(color);
        painter.drawLine(Line);
    });
    QCOMPARE(painted(cursor, none), expected);
}

void TestChartCursor::placesBoxes_data()
{
    QTest::addColumn<QList<double>>("points");
    QTest::addColumn<QList<int>>("tops");

    // Points from the lowest on the screen to the highest. A box of 20 at the foot, 350, begins at
    // 331; the next one ends five higher, at 326, and begins at 307; then 283.
    QTest::newRow("middle") << QList<double>{200.0} << QList<int>{200};
    QTest::newRow("fraction") << QList<double>{200.9} << QList<int>{200};
    QTest::newRow("three apart") << QList<double>{203.0, 200.0} << QList<int>{224, 200};
    QTest::newRow("just far enough") << QList<double>{224.0, 200.0} << QList<int>{224, 200};
    QTest::newRow("equal") << QList<double>{200.0, 200.0} << QList<int>{224, 200};
    QTest::newRow("far apart") << QList<double>{300.0, 100.0} << QList<int>{300, 100};
    QTest::newRow("near the foot")
        << QList<double>{345.0, 344.0, 343.0} << QList<int>{331, 307, 283};
    QTest::newRow("foot and middle") << QList<double>{345.0, 200.0} << QList<int>{331, 200};
    QTest::newRow("below the frame") << QList<double>{1000.0} << QList<int>{331};
    QTest::newRow("above the frame") << QList<double>{-30.0} << QList<int>{50};
    QTest::newRow("two above the frame") << QList<double>{-20.0, -30.0} << QList<int>{74, 50};
}

void TestChartCursor::placesBoxes()
{
    QFETCH(QList<double>, points);
    QFETCH(QList<int>, tops);
    ChartCursor cursor(nullptr);
    QList<CursorValue> values = valuesAt(points);

    painted(cursor, values);

    QCOMPARE(::tops(values), tops);
    for (const CursorValue &value : qAsConst(values)) {
        QCOMPARE(value.rect.left(), 305);
        QCOMPARE(value.rect.size(), QSize(40, BoxHeight));
    }
}

void TestChartCursor::placesBoxesOfDifferentHeights()
{
    ChartCursor cursor(nullptr);
    QList<CursorValue> values{valueAt(349.0, 40, 10), valueAt(348.0, 40, 30),
                              valueAt(347.0, 40, 20)};

    painted(cursor, values);

    // 350 - 9 = 341; from 336 up 307; from 302 up 283.
    QCOMPARE(tops(values), (QList<int>{341, 307, 283}));
}

void TestChartCursor::placesBoxesInSmallFrame()
{
    ChartCursor cursor(nullptr);
    QList<CursorValue> values = valuesAt({80.0, 70.0, 65.0, 60.0});

    painted(cursor, values, false, QRectF(100.0, 50.0, 400.0, 50.0));

    // The stack from the foot at 100 runs above the frame, and no box is pushed down again.
    QCOMPARE(tops(values), (QList<int>{81, 57, 33, 9}));
}

void TestChartCursor::placesBoxesByThePlainRule()
{
    QRandomGenerator random(31);
    for (int i = 0; i < 5000; ++i) {
        const QRectF frame(100.0, random.generateDouble() * 100.0, 400.0,
                           1.0 + random.generateDouble() * 500.0);
        QList<CursorValue> values;
        for (int count = random.bounded(9); count > 0; --count) {
            const double y = frame.y() + (random.generateDouble() * 1.4 - 0.2) * frame.height();
            values.append(
                valueAt(random.bounded(2) == 1 ? y : qRound(y), 40, 10 + random.bounded(20)));
        }
        std::sort(values.begin(), values.end());
        const QList<int> expected = plainTops(values, frame);
        QStringList points;
        for (const CursorValue &value : qAsConst(values)) {
            points.append(QString("%1 (%2 high)").arg(value.y).arg(value.rect.height()));
        }

        ChartCursor cursor(nullptr);
        painted(cursor, values, false, frame);

        QVERIFY2(tops(values) == expected,
                 qPrintable(QString("frame %1, points %2").arg(rectText(frame), points.join(' '))));
    }
}

void TestChartCursor::paintsFilledBoxesWithCentredText()
{
    ChartCursor cursor(nullptr);
    cursor.m_side = ChartCursor::Right;
    QList<CursorValue> values = valuesAt({250.0, 150.0});

    const QStringList expected = drawn([](QPainter &painter) {
        painter.setPen(QColor(255, 170, 0));
        painter.drawLine(Line);
        drawBox(painter, QRectF(305.0, 250.0, 40.0, 20.0));
        drawBox(painter, QRectF(305.0, 150.0, 40.0, 20.0));
    });
    QCOMPARE(painted(cursor, values), expected);
}

void TestChartCursor::keepsBoxesRightOfTheLine_data()
{
    QTest::addColumn<int>("side");

    QTest::newRow("right") << int(ChartCursor::Right);
    QTest::newRow("never painted") << 0;
    QTest::newRow("no side") << 7;
}

void TestChartCursor::keepsBoxesRightOfTheLine()
{
    QFETCH(int, side);
    ChartCursor cursor(nullptr);
    cursor.m_side = side;
    QList<CursorValue> values = valuesAt({200.0});

    const QStringList expected =
        drawn([](QPainter &painter) { drawBox(painter, QRectF(305.0, 200.0, 40.0, 20.0)); });
    QCOMPARE(painted(cursor, values).mid(1), expected);
}

void TestChartCursor::alignsBoxesLeftOfTheLine()
{
    ChartCursor cursor(nullptr);
    cursor.m_side = ChartCursor::Left;
    QList<CursorValue> values{valueAt(250.0, 40), valueAt(150.0, 60)};

    // Both end at 295, five pixels left of the line.
    const QStringList expected = drawn([](QPainter &painter) {
        drawBox(painter, QRectF(255.0, 250.0, 40.0, 20.0));
        drawBox(painter, QRectF(235.0, 150.0, 60.0, 20.0));
    });
    QCOMPARE(painted(cursor, values).mid(1), expected);
}

void TestChartCursor::placesTimeLabel_data()
{
    QTest::addColumn<double>("position");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("left");

    QTest::newRow("centred") << 300.0 << 60.0 << 270.0;
    QTest::newRow("left edge of the frame") << 110.0 << 60.0 << 100.0;
    QTest::newRow("just at the left edge") << 130.0 << 60.0 << 100.0;
    QTest::newRow("right edge of the frame") << 490.0 << 60.0 << 440.0;
    QTest::newRow("just at the right edge") << 470.0 << 60.0 << 440.0;
    QTest::newRow("wider than the frame") << 300.0 << 500.0 << 100.0;
    QTest::newRow("wider than the frame, at its right edge") << 480.0 << 500.0 << 0.0;
}

void TestChartCursor::placesTimeLabel()
{
    QFETCH(double, position);
    QFETCH(double, width);
    QFETCH(double, left);
    ChartCursor cursor(nullptr);
    cursor.m_timeText = "12:00";
    cursor.m_timeRect = QRectF(7.0, 8.0, width, 30.0);
    const QLineF line(position, 52.0, position, 348.0);
    QList<CursorValue> none;

    const QStringList calls = painted(cursor, none, true, Frame, line);

    const QRectF box(left, 15.0, width, 30.0); // ends five above the frame
    QCOMPARE(cursor.m_timeRect, box);
    const QStringList expected = drawn([&](QPainter &painter) {
        painter.setPen(QColor(40, 50, 60));
        painter.drawText(box, Alignment, "12:00");
    });
    QCOMPARE(calls.mid(1), expected);
}

void TestChartCursor::paintsTimeLabelOutsideTheClip()
{
    ChartCursor cursor(nullptr);
    cursor.m_timeText = "12:00";
    cursor.m_timeRect = QRectF(0.0, 0.0, 60.0, 30.0);
    QList<CursorValue> values = valuesAt({200.0});
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);
    painter.setClipRect(Frame);

    cursor.paint(painter, Line, values, Frame, true, testPalette());

    QVERIFY(!painter.hasClipping());
    QCOMPARE(device.texts(), (QStringList{"1.5", "12:00"}));
    QVERIFY(device.calls(PaintCall::Line).first().clipped);
    QVERIFY(device.calls(PaintCall::Rect).first().clipped);
    QVERIFY(!device.calls(PaintCall::Text).last().clipped);
}

void TestChartCursor::paintsNoTimeLabelWithoutSize_data()
{
    QTest::addColumn<QRectF>("box");

    QTest::newRow("null") << QRectF();
    QTest::newRow("no width") << QRectF(7.0, 8.0, 0.0, 30.0);
    QTest::newRow("no height") << QRectF(7.0, 8.0, 60.0, 0.0);
}

void TestChartCursor::paintsNoTimeLabelWithoutSize()
{
    QFETCH(QRectF, box);
    ChartCursor cursor(nullptr);
    cursor.m_timeText = "12:00";
    cursor.m_timeRect = box;
    QList<CursorValue> none;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);
    painter.setClipRect(Frame);

    cursor.paint(painter, Line, none, Frame, true, testPalette());

    QCOMPARE(device.texts(), QStringList());
    QCOMPARE(cursor.m_timeRect, box);
    QVERIFY(!painter.hasClipping());
    QCOMPARE(painter.pen().color(), QColor(40, 50, 60));
}

void TestChartCursor::keepsClipWithoutTimeLabel()
{
    ChartCursor cursor(nullptr);
    cursor.m_timeText = "12:00";
    cursor.m_timeRect = QRectF(7.0, 8.0, 60.0, 30.0);
    QList<CursorValue> none;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);
    painter.setClipRect(Frame);

    cursor.paint(painter, Line, none, Frame, false, testPalette());

    QCOMPARE(device.texts(), QStringList());
    QVERIFY(painter.hasClipping());
    QCOMPARE(cursor.m_timeRect, QRectF(7.0, 8.0, 60.0, 30.0));
}

QTEST_MAIN(TestChartCursor)
#include "tst_chartcursor.moc"
