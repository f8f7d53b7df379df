#include "axes/horizontalchartaxis.h"

#include "support/gridtext.h"
#include "support/paintcalltext.h"
#include "support/recordingpaintdevice.h"
#include "support/titledseries.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr int Alignment = Qt::AlignHCenter | Qt::AlignVCenter;

const QSize DeviceSize(2000, 400);
const QRectF Frame(100.0, 50.0, 1000.0, 200.0); // its lower edge is at 250, its right one at 1100

/// An axis with its grid.
HorizontalChartAxis axisOfRange(double min, double max, bool dateTime = false)
{
    HorizontalChartAxis axis;
    axis.m_min = min;
    axis.m_max = max;
    axis.m_dateTime = dateTime;
    axis.recalculateGridValues();
    return axis;
}

/// Maps \p min to \p left and one unit to \p scale pixels.
QTransform mapping(double min, double left, double scale)
{
    return QTransform(scale, 0.0, 0.0, -1.0, left - min * scale, 0.0);
}

QPalette testPalette()
{
    QPalette palette;
    palette.setColor(QPalette::All, QPalette::AlternateBase, QColor(10, 20, 30));
    palette.setColor(QPalette::All, QPalette::WindowText, QColor(40, 50, 60));
    return palette;
}

QVector<PaintCall> paintedCalls(HorizontalChartAxis &axis, AbstractChartSeries *series,
                                bool showLabels, const QTransform &transform, const QRectF &frame)
{
    return drawnCalls([&](QPainter &painter) {
        axis.paint(series, painter, frame, transform, testPalette(), showLabels);
    });
}

/// What the axis draws, in the frame of this test unless \p frame says otherwise.
QStringList painted(HorizontalChartAxis &axis, AbstractChartSeries *series, bool showLabels,
                    const QTransform &transform = QTransform(), const QRectF &frame = Frame)
{
    return paintCallTexts(paintedCalls(axis, series, showLabels, transform, frame));
}

/// The texts that it draws, without their places; a label of two lines gives two.
QStringList paintedTexts(HorizontalChartAxis &axis, AbstractChartSeries *series, bool showLabels,
                         const QRectF &frame = Frame)
{
    return labelsOf(paintedCalls(axis, series, showLabels, QTransform(), frame));
}

/// The texts of the calls of painted() that start with \p kind, "line" or "text".
QStringList only(const QString &kind, const QStringList &calls)
{
    return calls.filter(QRegularExpression('^' + kind + ' '));
}

/// The call that draws one line of text centred in \p box.
QString textCall(const QRectF &box, const QString &text)
{
    const QStringList calls = drawn([&](QPainter &painter) {
        painter.setPen(QColor(40, 50, 60));
        painter.drawText(box, Alignment, text);
    });
    return calls.value(0);
}

/// The painting of the axis written down once more, step by step.
void paintPlainly(const HorizontalChartAxis &axis, const TitledSeries &series, QPainter &painter,
                  const QRectF &frame, const QTransform &transform, bool showLabels)
{
    const QFontMetrics fm = painter.fontMetrics();
    const QColor grid(10, 20, 30);
    const QColor textColor(40, 50, 60);
    const double right = frame.x() + frame.width();
    const double bottom = frame.y() + frame.height();
    double previousEnd = 0.0;
    bool hasPrevious = false;
    for (const double value : axis.m_gridValues) {
        const double x = transform.map(series.m_matrix.map(QPointF(value, 0.0))).x();
        painter.setPen(QPen(QBrush(grid), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawLine(QPointF(x, frame.y()), QPointF(x, bottom));
        QString text;
        double width = 0.0;
        if (axis.m_dateTime) {
            const QDateTime time = QDateTime::fromSecsSinceEpoch(qint64(value));
            const QString upper = time.toString("hh:mm:ss");
            const QString lower = time.toString("dd.MM.yyyy");
            text = upper + '\n' + lower;
            width = qMax(fm.horizontalAdvance(upper), fm.horizontalAdvance(lower));
        } else {
            int decimals = 0;
            // 0.9 leaves room for the rounding of the products.
            for (double step = axis.m_step; step < 0.9; step *= 10.0) {
                ++decimals;
            }
            text = QString::number(value, 'f', decimals);
            width = fm.horizontalAdvance(text);
        }
        double left = x - width / 2;
        if (left + width > right) {
            left = right - width;
        }
        if (!showLabels || (hasPrevious && left <= previousEnd)) {
            continue;
        }
        painter.setPen(textColor);
        painter.drawText(QRectF(left, bottom + 5, width, 2 * fm.height()), Alignment, text);
        previousEnd = left + width;
        hasPrevious = true;
    }
    if (axis.m_dateTime && !showLabels) {
        return;
    }
    painter.setPen(textColor);
    const double top = showLabels ? bottom + 5 : bottom;
    const double height = hasPrevious ? 2 * fm.height() : fm.height();
    painter.drawText(QRectF(right + 10, top, fm.horizontalAdvance(series.m_labelX), height),
                     Alignment, series.m_labelX);
}

} // namespace

class TestHorizontalChartAxis : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void reservesTwoLinesAtConstruction();
    void keepsItsSizeWhenTheFontChanges();
    void laysGridValuesInsideTheRange_data();
    void laysGridValuesInsideTheRange();
    void laysTheGridOfPlainMultiples();
    void laysGridBeyondWholeNumbers();
    void limitsZoom_data();
    void limitsZoom();

    void formatsNumbers_data();
    void formatsNumbers();
    void leavesTextWithoutStep();
    void formatsDates_data();
    void formatsDates();
    void makesRoomForTheWiderLineOfADate();

    void paintsNothingWithoutSeries();
    void paintsDottedLinesOverTheHeightOfTheFrame();
    void centresLabelsBelowTheirLines();
    void paintsGridAndLabelsOfHiddenSeries();
    void hidesLabelsButNoLines();
    void pushesLastLabelInside();
    void dropsPushedLabelThatHitsItsNeighbour();
    void thinsWideLabelsFromTheLeft();
    void dropsLabelThatTouchesItsNeighbour();
    void lowersTitleToTheLabels();
    void paintsTitleOfNumbersWithoutLabels();
    void hidesTitleOfDatesWithoutLabels();
    void paintsTitleWithoutGrid();
    void paintsTheWordTime();
    void mapsThroughTheTransform();
    void paintsWhatThePlainRulesSay();
};

void TestHorizontalChartAxis::initTestCase()
{
    qputenv("TZ", "UTC");
    tzset();
}

void TestHorizontalChartAxis::reservesTwoLinesAtConstruction()
{
    const HorizontalChartAxis axis;

    QCOMPARE(axis.m_size, 2 * QFontMetrics(QApplication::font()).height() + 10);
    QCOMPARE(axis.m_dateTime, false);
}

void TestHorizontalChartAxis::keepsItsSizeWhenTheFontChanges()
{
    HorizontalChartAxis axis;
    const int size = axis.m_size;
    const QFont font = QApplication::font();
    QFont larger = font;
    larger.setPointSize(3 * font.pointSize());

    QApplication::setFont(larger);
    axis.m_max = 10.0;
    axis.recalculateGridValues();
    QApplication::setFont(font);

    QCOMPARE(axis.m_size, size);
}

void TestHorizontalChartAxis::laysGridValuesInsideTheRange_data()
{
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("step");
    QTest::addColumn<QString>("values");

    QTest::newRow("ends on the grid") << false << 0.0 << 10.0 << 1.0 << "0 1 2 3 4 5 6 7 8 9 10";
    QTest::newRow("ends between") << false << 0.5 << 1.5 << 0.2 << "0.6 0.8 1 1.2 1.4";
    QTest::newRow("around zero") << false << -1.5 << 1.5 << 1.0 << "-1 0 1";
    QTest::newRow("below zero") << false << -11.0 << -0.5 << 2.0 << "-10 -8 -6 -4 -2";
    QTest::newRow("empty range") << false << 7.0 << 7.0 << 0.0 << "";
    QTest::newRow("reversed range") << false << 7.0 << 6.0 << 0.0 << "";
    QTest::newRow("infinite range") << false << 0.0 << Infinity << 0.0 << "";
    QTest::newRow("half a second with a second in it") << true << 9.75 << 10.25 << 1.0 << "10";
    QTest::newRow("half a second between seconds") << true << 10.25 << 10.75 << 1.0 << "";
    QTest::newRow("a minute") << true << 30.0 << 90.0 << 20.0 << "40 60 80";
}

void TestHorizontalChartAxis::laysGridValuesInsideTheRange()
{
    QFETCH(bool, dateTime);
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(double, step);
    QFETCH(QString, values);
    HorizontalChartAxis axis = axisOfRange(0.0, 10.0); // leaves a former grid

    axis.m_dateTime = dateTime;
    axis.m_min = min;
    axis.m_max = max;
    axis.recalculateGridValues();

    QCOMPARE(axis.m_step, step);
    QCOMPARE(gridText(axis), values);
}

void TestHorizontalChartAxis::laysTheGridOfPlainMultiples()
{
    QRandomGenerator random(11);
    for (int i = 0; i < 20000; ++i) {
        const double span = std::pow(10.0, random.generateDouble() * 12.0 - 6.0);
        const double min = (random.generateDouble() - 0.5) * span * 100.0;
        const HorizontalChartAxis axis = axisOfRange(min, min + span, random.bounded(2) == 1);
        // The first multiple at or above the minimum, found by a walk.
        double multiple = std::floor(axis.m_min / axis.m_step) - 2.0;
        while (multiple < axis.m_min / axis.m_step) {
            multiple += 1.0;
        }
        QVector<double> expected;
        const double first = multiple * axis.m_step;
        for (int k = 0; first + k * axis.m_step <= axis.m_max; ++k) {
            expected.append(first + k * axis.m_step);
        }
        QVERIFY2(axis.m_step == axis.gridStep() && axis.m_gridValues == expected,
                 qPrintable(QString("range %1 to %2").arg(axis.m_min).arg(axis.m_max)));
    }
}

void TestHorizontalChartAxis::laysGridBeyondWholeNumbers()
{
    // 1e18 / 200 exceeds 2^52: the quotient is taken as it is. Doubles are 128 apart here.
    const HorizontalChartAxis axis = axisOfRange(1e18, 1e18 + 1024.0);

    QCOMPARE(axis.m_step, 200.0);
    QCOMPARE(axis.m_gridValues.first(), 1e18);
    QCOMPARE(axis.m_gridValues.size(), 6); // 0, 200 ... 1000 above it
    QVERIFY(axis.m_gridValues.last() <= axis.m_max);
}

void TestHorizontalChartAxis::limitsZoom_data()
{
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<double>("span");
    QTest::addColumn<bool>("in");
    QTest::addColumn<bool>("out");

    QTest::newRow("least number") << false << 1e-9 << false << true;
    QTest::newRow("above the least number") << false << 1.1e-9 << true << true;
    QTest::newRow("below the greatest number") << false << 0.99e9 << true << true;
    QTest::newRow("greatest number") << false << 1e9 << true << false;
    QTest::newRow("millisecond of numbers") << false << 0.001 << true << true;
    QTest::newRow("no time") << true << 0.0 << false << true;
    QTest::newRow("millisecond") << true << 0.001 << false << true;
    QTest::newRow("above a millisecond") << true << 0.0011 << true << true;
    QTest::newRow("below ten years") << true << 315359999.0 << true << true;
    QTest::newRow("ten years") << true << 315360000.0 << true << false;
}

void TestHorizontalChartAxis::limitsZoom()
{
    QFETCH(bool, dateTime);
    QFETCH(double, span);
    QFETCH(bool, in);
    QFETCH(bool, out);
    HorizontalChartAxis axis;
    axis.m_dateTime = dateTime;
    axis.m_max = span;

    QCOMPARE(axis.canZoomIn(), in);
    QCOMPARE(axis.canZoomOut(), out);
}

void TestHorizontalChartAxis::formatsNumbers_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("precision");
    QTest::addColumn<QString>("text");

    QTest::newRow("tick, step 5") << 5.0 << 12.34 << 0 << "12";
    QTest::newRow("tick, step 1") << 1.0 << 12.34 << 0 << "12";
    QTest::newRow("tick, step 0.2") << 0.2 << 0.4 << 0 << "0.4";
    QTest::newRow("tick, step 0.1") << 0.1 << 0.4 << 0 << "0.4";
    QTest::newRow("tick, step 0.02") << 0.02 << 0.4 << 0 << "0.40";
    QTest::newRow("tick, step 0.01") << 0.01 << 0.4 << 0 << "0.40";
    QTest::newRow("tick, step 0.002") << 0.002 << 0.4 << 0 << "0.400";
    QTest::newRow("cursor, step 5") << 5.0 << 12.34 << 1 << "12.3";
    QTest::newRow("cursor, step 0.2") << 0.2 << 0.4 << 1 << "0.40";
    QTest::newRow("cursor, step 0.02") << 0.02 << 0.4 << 1 << "0.400";
    QTest::newRow("negative") << 0.1 << -1.5 << 0 << "-1.5";
}

void TestHorizontalChartAxis::formatsNumbers()
{
    QFETCH(double, step);
    QFETCH(double, value);
    QFETCH(int, precision);
    QFETCH(QString, text);
    HorizontalChartAxis axis;
    axis.m_step = step;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);

    QString label("before");
    QRectF box(3.0, 4.0, 5.0, 6.0);
    axis.valueTextAndRect(value, painter, label, box, precision);

    const QFontMetrics fm = painter.fontMetrics();
    QCOMPARE(label, text);
    QCOMPARE(box, QRectF(0.0, 0.0, fm.horizontalAdvance(text), 2 * fm.height()));
}

void TestHorizontalChartAxis::leavesTextWithoutStep()
{
    const HorizontalChartAxis axis;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);

    QString label("before");
    QRectF box(3.0, 4.0, 5.0, 6.0);
    axis.valueTextAndRect(1.0, painter, label, box, 1);

    QCOMPARE(label, QString("before"));
    QCOMPARE(box, QRectF(3.0, 4.0, 5.0, 2 * painter.fontMetrics().height()));
}

void TestHorizontalChartAxis::formatsDates_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");

    // 1000 s are 16 min 40 s; 2^32 s end on 2106-02-07 at 06:28:16.
    QTest::newRow("epoch") << 0.0 << "00:00:00\n01.01.1970";
    QTest::newRow("fraction") << 1000.7 << "00:16:40\n01.01.1970";
    QTest::newRow("last of a day") << 86399.999 << "23:59:59\n01.01.1970";
    QTest::newRow("1e9") << 1e9 << "01:46:40\n09.09.2001";
    QTest::newRow("beyond 31 bits") << 2147483648.0 << "03:14:08\n19.01.2038";
    QTest::newRow("last of 32 bits") << 4294967295.0 << "06:28:15\n07.02.2106";
    QTest::newRow("2^32") << 4294967296.0 << "00:00:00\n01.01.1970";
    QTest::newRow("2^32 + 1000") << 4294968296.5 << "00:16:40\n01.01.1970";
    QTest::newRow("small negative") << -0.5 << "00:00:00\n01.01.1970";
    QTest::newRow("-1") << -1.0 << "06:28:15\n07.02.2106";
    QTest::newRow("-2^32") << -4294967296.0 << "00:00:00\n01.01.1970";
    QTest::newRow("beyond 64 bits") << std::ldexp(1.0, 100) << "00:00:00\n01.01.1970";
    QTest::newRow("infinity") << Infinity << "00:00:00\n01.01.1970";
    QTest::newRow("NaN") << qQNaN() << "00:00:00\n01.01.1970";
}

void TestHorizontalChartAxis::formatsDates()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    HorizontalChartAxis axis;
    axis.m_dateTime = true;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);

    QString label("before");
    QRectF box;
    axis.valueTextAndRect(value, painter, label, box, 1);

    QCOMPARE(label, text);
}

void TestHorizontalChartAxis::makesRoomForTheWiderLineOfADate()
{
    HorizontalChartAxis axis;
    axis.m_dateTime = true;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);

    QString label;
    QRectF box(3.0, 4.0, 5.0, 6.0);
    axis.valueTextAndRect(1000.0, painter, label, box, 0);

    const QFontMetrics fm = painter.fontMetrics();
    const int width = qMax(fm.horizontalAdvance("00:16:40"), fm.horizontalAdvance("01.01.1970"));
    QCOMPARE(box, QRectF(3.0, 4.0, width, 2 * fm.height())); // the position is left alone
}

void TestHorizontalChartAxis::paintsNothingWithoutSeries()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 10.0);

    QCOMPARE(painted(axis, nullptr, true), QStringList());
}

void TestHorizontalChartAxis::paintsDottedLinesOverTheHeightOfTheFrame()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    PlainSeries series;
    series.m_matrix = mapping(0.0, 100.0, 500.0);

    const QPen pen(QBrush(QColor(10, 20, 30)), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin);
    const QStringList expected = drawn([&](QPainter &painter) {
        painter.setPen(pen);
        painter.drawLine(QLineF(100.0, 50.0, 100.0, 250.0));
        painter.drawLine(QLineF(600.0, 50.0, 600.0, 250.0));
        painter.drawLine(QLineF(1100.0, 50.0, 1100.0, 250.0));
    });
    QCOMPARE(only("line", painted(axis, &series, true)), expected);
}

void TestHorizontalChartAxis::centresLabelsBelowTheirLines()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    PlainSeries series;
    series.m_matrix = mapping(0.0, 200.0, 300.0); // lines at 200, 500 and 800

    const QFontMetrics fm = painterMetrics();
    QStringList expected;
    for (const int value : {0, 1, 2}) {
        const QString text = QString::number(value);
        const double width = fm.horizontalAdvance(text);
        const double left = 200.0 + 300.0 * value - width / 2;
        expected.append(textCall(QRectF(left, 255.0, width, 2 * fm.height()), text));
    }
    QCOMPARE(only("text", painted(axis, &series, true)), expected);
}

void TestHorizontalChartAxis::paintsGridAndLabelsOfHiddenSeries()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    PlainSeries series;
    series.m_matrix = mapping(0.0, 200.0, 300.0);
    const QStringList visible = painted(axis, &series, true);

    series.m_visible = false;

    QCOMPARE(painted(axis, &series, true), visible);
    QCOMPARE(visible.size(), 6); // three lines, three labels
}

void TestHorizontalChartAxis::hidesLabelsButNoLines()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    PlainSeries series;
    series.m_matrix = mapping(0.0, 200.0, 300.0);

    const QStringList calls = painted(axis, &series, false);

    QCOMPARE(only("line", calls).size(), 3);
    QCOMPARE(only("text", calls), QStringList());
}

void TestHorizontalChartAxis::pushesLastLabelInside()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    PlainSeries series;
    series.m_matrix = mapping(0.0, 100.0, 500.0); // the last line is the frame's right edge

    const QFontMetrics fm = painterMetrics();
    const double width = fm.horizontalAdvance("2");
    const QStringList labels = only("text", painted(axis, &series, true));
    QCOMPARE(labels.size(), 3);
    QCOMPARE(labels.last(), textCall(QRectF(1100.0 - width, 255.0, width, 2 * fm.height()), "2"));
}

void TestHorizontalChartAxis::dropsPushedLabelThatHitsItsNeighbour()
{
    HorizontalChartAxis axis = axisOfRange(10.0, 12.0, true);
    PlainSeries series;
    // Two pixels between the labels, until the last one is pushed left by half its width.
    const QFontMetrics fm = painterMetrics();
    const int width = qMax(fm.horizontalAdvance("00:00:10"), fm.horizontalAdvance("01.01.1970"));
    const double interval = width + 2.0;
    series.m_matrix = mapping(10.0, 1100.0 - 2.0 * interval, interval);
    const QRectF wider = Frame.adjusted(0.0, 0.0, width, 0.0);

    QCOMPARE(paintedTexts(axis, &series, true),
             (QStringList{"00:00:10", "01.01.1970", "00:00:11", "01.01.1970"}));
    QCOMPARE(paintedTexts(axis, &series, true, wider),
             (QStringList{"00:00:10", "01.01.1970", "00:00:11", "01.01.1970", "00:00:12",
                          "01.01.1970"}));
    QCOMPARE(only("line", painted(axis, &series, true)).size(), 3);
}

void TestHorizontalChartAxis::thinsWideLabelsFromTheLeft()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 6.0, true);
    PlainSeries series;
    const QFontMetrics fm = painterMetrics();
    const int width = qMax(fm.horizontalAdvance("00:00:00"), fm.horizontalAdvance("01.01.1970"));
    series.m_matrix = mapping(0.0, 200.0, 0.4 * width); // a label covers two and a half intervals

    QCOMPARE(paintedTexts(axis, &series, true),
             (QStringList{"00:00:00", "01.01.1970", "00:00:03", "01.01.1970", "00:00:06",
                          "01.01.1970"}));
    QCOMPARE(only("line", painted(axis, &series, true)).size(), 7);
}

void TestHorizontalChartAxis::dropsLabelThatTouchesItsNeighbour()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0, true);
    PlainSeries series;
    const QFontMetrics fm = painterMetrics();
    const int width = qMax(fm.horizontalAdvance("00:00:00"), fm.horizontalAdvance("01.01.1970"));

    series.m_matrix = mapping(0.0, 200.0, width);
    QCOMPARE(paintedTexts(axis, &series, true),
             (QStringList{"00:00:00", "01.01.1970", "00:00:02", "01.01.1970"}));

    series.m_matrix = mapping(0.0, 200.0, width + 1.0);
    QCOMPARE(paintedTexts(axis, &series, true).size(), 6);
}

void TestHorizontalChartAxis::lowersTitleToTheLabels()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    TitledSeries series;
    series.m_labelX = "Distance";
    series.m_matrix = mapping(0.0, 200.0, 300.0);

    const QFontMetrics fm = painterMetrics();
    const QRectF box(1110.0, 255.0, fm.horizontalAdvance("Distance"), 2 * fm.height());
    QCOMPARE(painted(axis, &series, true).last(), textCall(box, "Distance"));
}

void TestHorizontalChartAxis::paintsTitleOfNumbersWithoutLabels()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    TitledSeries series;
    series.m_labelX = "Distance";
    series.m_matrix = mapping(0.0, 200.0, 300.0);

    const QFontMetrics fm = painterMetrics();
    const QRectF box(1110.0, 250.0, fm.horizontalAdvance("Distance"), fm.height());
    QCOMPARE(only("text", painted(axis, &series, false)), QStringList(textCall(box, "Distance")));
}

void TestHorizontalChartAxis::hidesTitleOfDatesWithoutLabels()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0, true);
    TitledSeries series;
    series.m_labelX = "Distance";
    series.m_matrix = mapping(0.0, 200.0, 300.0);

    QCOMPARE(paintedTexts(axis, &series, false), QStringList());
    QCOMPARE(paintedTexts(axis, &series, true).last(), QString("Distance"));
}

void TestHorizontalChartAxis::paintsTitleWithoutGrid()
{
    HorizontalChartAxis axis = axisOfRange(5.0, 5.0);
    TitledSeries series;
    series.m_labelX = "Distance";

    const QFontMetrics fm = painterMetrics();
    const QRectF box(1110.0, 255.0, fm.horizontalAdvance("Distance"), fm.height());
    QCOMPARE(painted(axis, &series, true), QStringList(textCall(box, "Distance")));
}

void TestHorizontalChartAxis::paintsTheWordTime()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0, true);
    PlainSeries series;
    series.m_axisX = &axis;
    series.m_matrix = mapping(0.0, 200.0, 300.0);

    QCOMPARE(paintedTexts(axis, &series, true).last(), QString("Time"));
}

void TestHorizontalChartAxis::mapsThroughTheTransform()
{
    HorizontalChartAxis axis = axisOfRange(0.0, 2.0);
    PlainSeries series;
    series.m_matrix = mapping(0.0, 100.0, 100.0); // lines at 100, 200 and 300 of the pane

    const QPen pen(QBrush(QColor(10, 20, 30)), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin);
    const QStringList expected = drawn([&](QPainter &painter) {
        painter.setPen(pen);
        painter.drawLine(QLineF(210.0, 50.0, 210.0, 250.0));
        painter.drawLine(QLineF(410.0, 50.0, 410.0, 250.0));
        painter.drawLine(QLineF(610.0, 50.0, 610.0, 250.0));
    });
    const QTransform doubled(2.0, 0.0, 0.0, 2.0, 10.0, 0.0);
    QCOMPARE(only("line", painted(axis, &series, true, doubled)), expected);
}

void TestHorizontalChartAxis::paintsWhatThePlainRulesSay()
{
    QRandomGenerator random(12);
    for (int i = 0; i < 3000; ++i) {
        const bool dateTime = random.bounded(2) == 1;
        const double span = std::pow(10.0, random.generateDouble() * 6.0 - 2.0);
        const double min = random.generateDouble() * 1000.0 * span;
        HorizontalChartAxis axis = axisOfRange(min, min + span, dateTime);
        TitledSeries series;
        series.m_labelX = random.bounded(2) == 1 ? "Distance" : "";
        const double width = 10.0 + random.generateDouble() * 1200.0;
        const QRectF frame(100.0, 50.0, width, 200.0);
        series.m_matrix = mapping(min, 100.0, width / span);
        const bool scaled = random.bounded(2) == 1;
        const QTransform transform =
            scaled ? QTransform(1.25, 0.0, 0.0, 1.0, -30.0, 0.0) : QTransform();
        const bool showLabels = random.bounded(4) > 0;

        const QStringList expected = drawn([&](QPainter &painter) {
            paintPlainly(axis, series, painter, frame, transform, showLabels);
        });
        const QStringList calls = painted(axis, &series, showLabels, transform, frame);
        QVERIFY2(calls == expected,
                 qPrintable(QString("case %1: range %2 + %3, width %4, dates %5\n%6\nexpected\n%7")
                                .arg(i)
                                .arg(min)
                                .arg(span)
                                .arg(width)
                                .arg(dateTime)
                                .arg(calls.join('\n'), expected.join('\n'))));
    }
}

QTEST_MAIN(TestHorizontalChartAxis)
#include "tst_horizontalchartaxis.moc"
