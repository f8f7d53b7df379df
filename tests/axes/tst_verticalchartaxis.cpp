#include "axes/verticalchartaxis.h"

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

namespace {

constexpr int Alignment = Qt::AlignRight | Qt::AlignVCenter;

const QSize DeviceSize(400, 2000);
const QRectF Frame(100.0, 50.0, 200.0, 1000.0); // its right edge is at 300, its lower one at 1050
const QColor SeriesColor(70, 80, 90);

/// Gives the series' own axis a range with its grid.
void setRange(AbstractChartSeries &series, double min, double max)
{
    series.m_axisY->m_min = min;
    series.m_axisY->m_max = max;
    series.m_axisY->recalculateGridValues();
}

/// Maps \p max to the pixel \p top and one unit to \p scale pixels, the greater values above.
QTransform mapping(double max, double top, double scale)
{
    return QTransform(1.0, 0.0, 0.0, -scale, 0.0, top + max * scale);
}

QPalette testPalette()
{
    QPalette palette;
    palette.setColor(QPalette::All, QPalette::AlternateBase, QColor(10, 20, 30));
    return palette;
}

QVector<PaintCall> paintedCalls(AbstractChartSeries &series, bool showLabels,
                                const QTransform &transform, const QRectF &frame)
{
    return drawnCalls([&](QPainter &painter) {
        series.m_axisY->paint(&series, painter, frame, transform, testPalette(), showLabels);
    });
}

/// What the axis of \p series draws, in the frame of this test unless \p frame says otherwise.
QStringList painted(AbstractChartSeries &series, bool showLabels,
                    const QTransform &transform = QTransform(), const QRectF &frame = Frame)
{
    return paintCallTexts(paintedCalls(series, showLabels, transform, frame));
}

/// The texts that it draws, without their places.
QStringList paintedTexts(AbstractChartSeries &series, bool showLabels = true,
                         const QRectF &frame = Frame)
{
    return labelsOf(paintedCalls(series, showLabels, QTransform(), frame));
}

/// The texts of the calls of painted() that start with \p kind, "line" or "text".
QStringList only(const QString &kind, const QStringList &calls)
{
    return calls.filter(QRegularExpression('^' + kind + ' '));
}

/// The call that draws one line of text at the right of \p box.
QString textCall(const QRectF &box, const QString &text)
{
    const QStringList calls = drawn([&](QPainter &painter) {
        painter.setPen(SeriesColor);
        painter.drawText(box, Alignment, text);
    });
    return calls.value(0);
}

/// The painting of the axis written down once more, step by step.
void paintPlainly(const TitledSeries &series, QPainter &painter, const QRectF &frame,
                  const QTransform &transform, bool showLabels)
{
    const QFontMetrics fm = painter.fontMetrics();
    painter.setPen(series.m_color);
    painter.drawText(QRectF(0, 0, frame.x() - 5, frame.y()), Alignment, series.m_labelY);
    double previousTop = 0.0;
    bool hasPrevious = false;
    for (const double value : series.m_axisY->m_gridValues) {
        const double y = transform.map(series.m_matrix.map(QPointF(0.0, value))).y();
        if (y <= frame.y() || y >= frame.y() + frame.height()) {
            continue;
        }
        painter.setPen(
            QPen(QBrush(QColor(10, 20, 30)), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawLine(QPointF(frame.x(), y), QPointF(frame.x() + frame.width(), y));
        const QString text = series.scaleString(value);
        const double width = fm.horizontalAdvance(text);
        double top = y + fm.height() / 2 - fm.height();
        if (top < frame.y()) {
            top = frame.y();
        }
        const bool isFree = !hasPrevious || previousTop > top + fm.height();
        if (!showLabels || width <= 0 || !isFree) {
            continue;
        }
        painter.setPen(series.m_color);
        painter.drawText(QRectF(frame.x() - 5 - width, top, width, fm.height()), Alignment, text);
        previousTop = top;
        hasPrevious = true;
    }
}

} // namespace

class TestVerticalChartAxis : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutSize();
    void laysGridValuesAroundTheRange_data();
    void laysGridValuesAroundTheRange();
    void laysTheGridOfPlainMultiples();
    void keepsSizeAndPrecisionOfEmptyRange();
    void laysGridWithoutSeries();
    void limitsZoomAsTheBaseClass();

    void choosesPrecisionThatTellsLabelsApart_data();
    void choosesPrecisionThatTellsLabelsApart();
    void startsPrecisionAnew();
    void stopsAtFiveDecimalsForStubbornSeries();
    void choosesThePrecisionOfPlainTrial();
    void asksForPrecisionOfEqualLabels_data();
    void asksForPrecisionOfEqualLabels();
    void asksForNoPrecisionWithoutSeries();

    void sizesForTheWidestLabel();
    void sizesForTheLabelAboveTheRange();
    void sizesForTheTitle();
    void shrinksAgain();

    void formatsByTheSeries();
    void formatsNothingWithoutSeries();

    void paintsNothingForNoOrHiddenSeries();
    void paintsDottedLinesInsideTheFrame();
    void leavesOutLinesOnTheFrame();
    void paintsTitleInTheCorner();
    void paintsLabelsLeftOfTheFrame();
    void hidesLabelsButNeitherLinesNorTitle();
    void pushesTopmostLabelDown();
    void leavesLowestLabelBelowTheFrame();
    void thinsDenseLabelsFromBelow();
    void skipsEmptyLabels();
    void measuresWithThePaintersFont();
    void mapsThroughTheTransform();
    void paintsWhatThePlainRulesSay();
};

void TestVerticalChartAxis::startsWithoutSize()
{
    PlainSeries series;
    const VerticalChartAxis axis(&series);

    QCOMPARE(axis.m_series, &series);
    QCOMPARE(axis.m_size, 0);
    QCOMPARE(axis.m_step, 0.0);
    QVERIFY(axis.m_gridValues.isEmpty());
}

void TestVerticalChartAxis::laysGridValuesAroundTheRange_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<QString>("values");

    QTest::newRow("ends on the grid") << 0.0 << 10.0 << "0 1 2 3 4 5 6 7 8 9 10 11";
    QTest::newRow("ends between") << 0.5 << 1.5 << "0.4 0.6 0.8 1 1.2 1.4 1.6";
    QTest::newRow("around zero") << -1.5 << 1.5 << "-2 -1 0 1 2";
    QTest::newRow("below zero") << -11.0 << -0.5 << "-12 -10 -8 -6 -4 -2 0";
    QTest::newRow("empty range") << 7.0 << 7.0 << "";
    QTest::newRow("reversed range") << 7.0 << 6.0 << "";
    QTest::newRow("NaN") << qQNaN() << 6.0 << "";
}

void TestVerticalChartAxis::laysGridValuesAroundTheRange()
{
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(QString, values);
    PlainSeries series;
    setRange(series, 0.0, 100.0); // leaves a former grid

    setRange(series, min, max);

    QCOMPARE(gridText(*series.m_axisY), values);
}

void TestVerticalChartAxis::laysTheGridOfPlainMultiples()
{
    QRandomGenerator random(21);
    VerticalChartAxis axis(nullptr);
    for (int i = 0; i < 20000; ++i) {
        const double span = std::pow(10.0, random.generateDouble() * 12.0 - 6.0);
        axis.m_min = (random.generateDouble() - 0.5) * span * 100.0;
        axis.m_max = axis.m_min + span;
        axis.recalculateGridValues();
        // The last multiple at or below the minimum, found by a walk.
        double multiple = std::ceil(axis.m_min / axis.m_step) + 2.0;
        while (multiple > axis.m_min / axis.m_step) {
            multiple -= 1.0;
        }
        QVector<double> expected;
        const double first = multiple * axis.m_step;
        int k = 0;
        for (; first + k * axis.m_step <= axis.m_max; ++k) {
            expected.append(first + k * axis.m_step);
        }
        expected.append(first + k * axis.m_step);
        QVERIFY2(axis.m_step == axis.gridStep() && axis.m_gridValues == expected,
                 qPrintable(QString("range %1 to %2").arg(axis.m_min).arg(axis.m_max)));
    }
}

void TestVerticalChartAxis::keepsSizeAndPrecisionOfEmptyRange()
{
    PlainSeries series;
    setRange(series, 0.0, 1.0);
    const int size = series.m_axisY->m_size;

    setRange(series, 1e6, 1e6);

    QVERIFY(size > 0);
    QCOMPARE(series.m_axisY->m_size, size);
    QCOMPARE(series.m_extraPrecision, 1);
    QCOMPARE(series.m_axisY->m_step, 0.0);
    QVERIFY(series.m_axisY->m_gridValues.isEmpty());
}

void TestVerticalChartAxis::laysGridWithoutSeries()
{
    VerticalChartAxis axis(nullptr);
    axis.m_max = 2.0;

    axis.recalculateGridValues();

    QCOMPARE(gridText(axis), QString("0 1 2 3"));
    QCOMPARE(axis.m_size, 0);
}

void TestVerticalChartAxis::limitsZoomAsTheBaseClass()
{
    VerticalChartAxis axis(nullptr);
    axis.m_max = 1e-9;
    QCOMPARE(axis.canZoomIn(), false);
    QCOMPARE(axis.canZoomOut(), true);

    axis.m_max = 1e9;
    QCOMPARE(axis.canZoomIn(), true);
    QCOMPARE(axis.canZoomOut(), false);
}

void TestVerticalChartAxis::choosesPrecisionThatTellsLabelsApart_data()
{
    QTest::addColumn<int>("precision");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("extra");

    QTest::newRow("whole numbers") << 0 << 0.0 << 10.0 << 0;
    QTest::newRow("step 0.2") << 0 << 0.0 << 1.0 << 1;
    QTest::newRow("step 0.2, one decimal already") << 1 << 0.0 << 1.0 << 0;
    QTest::newRow("step 0.01") << 0 << 5.0 << 5.1 << 2;
    QTest::newRow("step 0.01, one decimal already") << 1 << 5.0 << 5.1 << 1;
    QTest::newRow("step 0.00001") << 0 << 5.0 << 5.0001 << 5;
    QTest::newRow("too narrow for five decimals") << 0 << 5.0 << 5.000001 << 5;
}

void TestVerticalChartAxis::choosesPrecisionThatTellsLabelsApart()
{
    QFETCH(int, precision);
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(int, extra);
    PlainSeries series;
    series.m_precision = precision;

    setRange(series, min, max);

    QCOMPARE(series.m_extraPrecision, extra);
}

void TestVerticalChartAxis::startsPrecisionAnew()
{
    PlainSeries series;
    setRange(series, 5.0, 5.1);
    QCOMPARE(series.m_extraPrecision, 2);

    setRange(series, 0.0, 10.0);

    QCOMPARE(series.m_extraPrecision, 0);
}

void TestVerticalChartAxis::stopsAtFiveDecimalsForStubbornSeries()
{
    TitledSeries series;
    for (int value = 0; value <= 11; ++value) {
        series.m_labels.insert(value, "same");
    }

    setRange(series, 0.0, 10.0);

    QCOMPARE(series.m_extraPrecision, 5);
}

void TestVerticalChartAxis::choosesThePrecisionOfPlainTrial()
{
    QRandomGenerator random(22);
    for (int i = 0; i < 3000; ++i) {
        PlainSeries series;
        series.m_precision = random.bounded(4);
        const double span = std::pow(10.0, random.generateDouble() * 10.0 - 8.0);
        const double min = random.generateDouble() * 10.0;
        setRange(series, min, min + span);

        int extra = 0;
        for (; extra < 5; ++extra) {
            QSet<QString> texts;
            for (const double value : qAsConst(series.m_axisY->m_gridValues)) {
                texts.insert(QString::number(value, 'f', series.m_precision + extra));
            }
            if (texts.size() == series.m_axisY->m_gridValues.size()) {
                break;
            }
        }
        QVERIFY2(series.m_extraPrecision == extra,
                 qPrintable(QString("precision %1, range %2 + %3 gives %4, not %5")
                                .arg(series.m_precision)
                                .arg(min)
                                .arg(span)
                                .arg(series.m_extraPrecision)
                                .arg(extra)));
    }
}

void TestVerticalChartAxis::asksForPrecisionOfEqualLabels_data()
{
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<int>("extra");
    QTest::addColumn<bool>("needed");

    QTest::newRow("no labels") << QStringList() << 0 << false;
    QTest::newRow("one") << QStringList{"a"} << 0 << false;
    QTest::newRow("different") << QStringList{"a", "b", "c"} << 0 << false;
    QTest::newRow("neighbours") << QStringList{"a", "b", "b"} << 0 << true;
    QTest::newRow("ends") << QStringList{"a", "b", "a"} << 0 << true;
    QTest::newRow("different in case only") << QStringList{"a", "A"} << 0 << false;
    QTest::newRow("four decimals more already") << QStringList{"a", "a"} << 4 << true;
    QTest::newRow("five decimals more already") << QStringList{"a", "a"} << 5 << false;
}

void TestVerticalChartAxis::asksForPrecisionOfEqualLabels()
{
    QFETCH(QStringList, labels);
    QFETCH(int, extra);
    QFETCH(bool, needed);
    TitledSeries series;
    for (int i = 0; i < labels.size(); ++i) {
        series.m_labels.insert(i, labels.at(i));
        series.m_axisY->m_gridValues.append(i);
    }
    series.m_extraPrecision = extra;

    QCOMPARE(series.m_axisY->needIncreasePrecision(), needed);
}

void TestVerticalChartAxis::asksForNoPrecisionWithoutSeries()
{
    VerticalChartAxis axis(nullptr);
    axis.m_gridValues = {0.0, 0.0};

    QCOMPARE(axis.needIncreasePrecision(), false);
}

void TestVerticalChartAxis::sizesForTheWidestLabel()
{
    TitledSeries series;
    series.m_labels.insert(3.0, "a wide label");

    setRange(series, 0.0, 10.0);

    const QFontMetrics fm(QApplication::font());
    QCOMPARE(series.m_axisY->m_size, fm.horizontalAdvance("a wide label") + fm.height());
}

void TestVerticalChartAxis::sizesForTheLabelAboveTheRange()
{
    TitledSeries series;
    series.m_labels.insert(11.0, "a wide label");

    setRange(series, 0.0, 10.0);

    const QFontMetrics fm(QApplication::font());
    QCOMPARE(series.m_axisY->m_size, fm.horizontalAdvance("a wide label") + fm.height());
}

void TestVerticalChartAxis::sizesForTheTitle()
{
    PlainSeries series;
    series.m_labelY = "a wide title";

    setRange(series, 0.0, 10.0);

    const QFontMetrics fm(QApplication::font());
    QCOMPARE(series.m_axisY->m_size, fm.horizontalAdvance("a wide title") + fm.height());
}

void TestVerticalChartAxis::shrinksAgain()
{
    PlainSeries series;
    setRange(series, 0.0, 1e8);

    setRange(series, 0.0, 1.0); // labels from 0.0 to 1.2, with one extra decimal

    const QFontMetrics fm(QApplication::font());
    int width = 0;
    for (const char *text : {"0.0", "0.2", "0.4", "0.6", "0.8", "1.0", "1.2"}) {
        width = qMax(width, fm.horizontalAdvance(text));
    }
    QCOMPARE(series.m_axisY->m_size, width + fm.height());
}

void TestVerticalChartAxis::formatsByTheSeries()
{
    PlainSeries series;
    series.m_precision = 1;
    series.m_extraPrecision = 2;
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);

    QString text("before");
    QRectF box(3.0, 4.0, 5.0, 6.0);
    series.m_axisY->valueTextAndRect(1.5, painter, text, box, 7);

    const QFontMetrics fm = painter.fontMetrics();
    QCOMPARE(text, QString("1.500")); // 1 + 2 decimals; the 7 has no effect
    QCOMPARE(box, QRectF(0.0, 0.0, fm.horizontalAdvance("1.500"), fm.height()));
}

void TestVerticalChartAxis::formatsNothingWithoutSeries()
{
    const VerticalChartAxis axis(nullptr);
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);

    QString text("before");
    QRectF box(3.0, 4.0, 5.0, 6.0);
    axis.valueTextAndRect(1.5, painter, text, box, 0);

    QCOMPARE(text, QString());
    QCOMPARE(box, QRectF(0.0, 0.0, 0.0, painter.fontMetrics().height()));
}

void TestVerticalChartAxis::paintsNothingForNoOrHiddenSeries()
{
    PlainSeries series;
    series.m_labelY = "volt";
    setRange(series, 0.0, 10.0);
    series.m_matrix = mapping(10.0, 60.0, 90.0);
    QVERIFY(!painted(series, true).isEmpty());

    series.m_visible = false;
    QCOMPARE(painted(series, true), QStringList());

    const QStringList calls = drawn([&](QPainter &painter) {
        series.m_axisY->paint(nullptr, painter, Frame, QTransform(), testPalette(), true);
    });
    QCOMPARE(calls, QStringList());
}

void TestVerticalChartAxis::paintsDottedLinesInsideTheFrame()
{
    PlainSeries series;
    setRange(series, 0.5, 2.5); // grid values 0 to 3
    series.m_matrix = mapping(2.5, 50.0, 500.0);

    // 2.5 is the upper edge, so 2 lies 250 below it and 1 lies 750 below it; 0 and 3 are outside.
    const QStringList expected = drawn([](QPainter &painter) {
        painter.setPen(
            QPen(QBrush(QColor(10, 20, 30)), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawLine(QLineF(100.0, 800.0, 300.0, 800.0));
        painter.drawLine(QLineF(100.0, 300.0, 300.0, 300.0));
    });
    QCOMPARE(only("line", painted(series, true)), expected);
}

void TestVerticalChartAxis::leavesOutLinesOnTheFrame()
{
    PlainSeries series;
    setRange(series, 0.0, 2.0);
    series.m_matrix = mapping(2.0, 50.0, 500.0); // 0 and 2 on the edges

    QCOMPARE(only("line", painted(series, true)).size(), 1);
    QCOMPARE(paintedTexts(series), QStringList("1"));
}

void TestVerticalChartAxis::paintsTitleInTheCorner()
{
    PlainSeries series;
    series.m_color = SeriesColor;
    series.m_labelY = "volt";

    QCOMPARE(painted(series, true), QStringList(textCall(QRectF(0.0, 0.0, 95.0, 50.0), "volt")));
}

void TestVerticalChartAxis::paintsLabelsLeftOfTheFrame()
{
    PlainSeries series;
    series.m_color = SeriesColor;
    setRange(series, 0.5, 2.5);
    series.m_matrix = mapping(2.5, 50.0, 500.0); // lines at 800 and 300

    const QFontMetrics fm = painterMetrics();
    const int height = fm.height();
    const double width1 = fm.horizontalAdvance("1");
    const double width2 = fm.horizontalAdvance("2");
    const QStringList expected{
        textCall(QRectF(95.0 - width1, 800.0 + height / 2 - height, width1, height), "1"),
        textCall(QRectF(95.0 - width2, 300.0 + height / 2 - height, width2, height), "2")};
    QCOMPARE(only("text", painted(series, true)), expected);
}

void TestVerticalChartAxis::hidesLabelsButNeitherLinesNorTitle()
{
    PlainSeries series;
    series.m_labelY = "volt";
    setRange(series, 0.5, 2.5);
    series.m_matrix = mapping(2.5, 50.0, 500.0);

    QCOMPARE(only("line", painted(series, false)).size(), 2);
    QCOMPARE(paintedTexts(series, false), QStringList("volt"));
}

void TestVerticalChartAxis::pushesTopmostLabelDown()
{
    PlainSeries series;
    series.m_color = SeriesColor;
    setRange(series, 0.0, 2.0);
    series.m_matrix = mapping(2.0, 51.0, 500.0); // 2 lies one pixel below the upper edge

    const QFontMetrics fm = painterMetrics();
    const double width = fm.horizontalAdvance("2");
    QCOMPARE(painted(series, true).last(),
             textCall(QRectF(95.0 - width, 50.0, width, fm.height()), "2"));
}

void TestVerticalChartAxis::leavesLowestLabelBelowTheFrame()
{
    PlainSeries series;
    series.m_color = SeriesColor;
    setRange(series, 0.0, 2.0);
    series.m_matrix = mapping(2.0, 49.0, 500.0); // 0 lies one pixel above the lower edge

    const QFontMetrics fm = painterMetrics();
    const double width = fm.horizontalAdvance("0");
    const double top = 1049.0 + fm.height() / 2 - fm.height();
    QCOMPARE(only("text", painted(series, true)).first(),
             textCall(QRectF(95.0 - width, top, width, fm.height()), "0"));
}

void TestVerticalChartAxis::thinsDenseLabelsFromBelow()
{
    PlainSeries series;
    setRange(series, 0.0, 10.0); // 0 and 10 lie on the frame, 1 to 9 inside
    const double height = painterMetrics().height();

    // A label needs more than its height: every second one, and with less room every third one.
    series.m_matrix = mapping(10.0, 50.0, 0.6 * height);
    const QRectF frame(100.0, 50.0, 200.0, 6.0 * height);
    QCOMPARE(paintedTexts(series, true, frame), (QStringList{"1", "3", "5", "7", "9"}));
    QCOMPARE(only("line", painted(series, true, QTransform(), frame)).size(), 9);

    series.m_matrix = mapping(10.0, 50.0, 0.5 * height);
    const QRectF smaller(100.0, 50.0, 200.0, 5.0 * height);
    QCOMPARE(paintedTexts(series, true, smaller), (QStringList{"1", "4", "7"}));
    QCOMPARE(only("line", painted(series, true, QTransform(), smaller)).size(), 9);
}

void TestVerticalChartAxis::skipsEmptyLabels()
{
    TitledSeries series;
    series.m_labels.insert(1.0, "");
    setRange(series, 0.5, 2.5);
    series.m_matrix = mapping(2.5, 50.0, 500.0);

    QCOMPARE(paintedTexts(series), QStringList("2"));
    QCOMPARE(only("line", painted(series, true)).size(), 2);
}

void TestVerticalChartAxis::measuresWithThePaintersFont()
{
    PlainSeries series;
    series.m_color = SeriesColor;
    setRange(series, 0.5, 1.5);
    const int size = series.m_axisY->m_size;
    series.m_axisY->m_gridValues = {1.0};
    series.m_extraPrecision = 0;
    series.m_matrix = mapping(1.5, 50.0, 1000.0); // the line at 550
    QFont larger = QApplication::font();
    larger.setPointSize(3 * larger.pointSize());

    const QStringList calls = drawn([&](QPainter &painter) {
        painter.setFont(larger);
        series.m_axisY->paint(&series, painter, Frame, QTransform(), testPalette(), true);
    });

    const QStringList expected = drawn([&](QPainter &painter) {
        painter.setFont(larger);
        const QFontMetrics fm = painter.fontMetrics();
        const double width = fm.horizontalAdvance("1");
        const double top = 550.0 + fm.height() / 2 - fm.height();
        painter.setPen(SeriesColor);
        painter.drawText(QRectF(95.0 - width, top, width, fm.height()), Alignment, "1");
    });
    QCOMPARE(only("text", calls), expected);
    QCOMPARE(series.m_axisY->m_size, size); // measured with the application's font
}

void TestVerticalChartAxis::mapsThroughTheTransform()
{
    PlainSeries series;
    setRange(series, 0.5, 2.5);
    series.m_matrix = mapping(2.5, 50.0, 200.0); // 2 at 150 and 1 at 350 of the pane

    const QTransform doubled(1.0, 0.0, 0.0, 2.0, 0.0, 5.0);
    const QStringList expected = drawn([](QPainter &painter) {
        painter.setPen(
            QPen(QBrush(QColor(10, 20, 30)), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawLine(QLineF(100.0, 705.0, 300.0, 705.0));
        painter.drawLine(QLineF(100.0, 305.0, 300.0, 305.0));
    });
    QCOMPARE(only("line", painted(series, true, doubled)), expected);
}

void TestVerticalChartAxis::paintsWhatThePlainRulesSay()
{
    QRandomGenerator random(23);
    for (int i = 0; i < 3000; ++i) {
        TitledSeries series;
        series.m_color = SeriesColor;
        series.m_labelY = random.bounded(2) == 1 ? "volt" : "";
        const double span = std::pow(10.0, random.generateDouble() * 8.0 - 4.0);
        const double min = (random.generateDouble() - 0.5) * 20.0 * span;
        setRange(series, min, min + span);
        if (random.bounded(3) == 0) {
            series.m_labels.insert(series.m_axisY->m_gridValues.value(2), "");
        }
        const double height = 5.0 + random.generateDouble() * 500.0;
        const QRectF frame(100.0, 50.0, 200.0, height);
        series.m_matrix = mapping(min + span, 50.0, height / span);
        const bool scaled = random.bounded(2) == 1;
        const QTransform transform =
            scaled ? QTransform(1.0, 0.0, 0.0, 1.25, 0.0, -30.0) : QTransform();
        const bool showLabels = random.bounded(4) > 0;

        const QStringList expected = drawn([&](QPainter &painter) {
            paintPlainly(series, painter, frame, transform, showLabels);
        });
        const QStringList calls = painted(series, showLabels, transform, frame);
        QVERIFY2(calls == expected,
                 qPrintable(QString("case %1: range %2 + %3, height %4\n%5\nexpected\n%6")
                                .arg(i)
                                .arg(min)
                                .arg(span)
                                .arg(height)
                                .arg(calls.join('\n'), expected.join('\n'))));
    }
}

QTEST_MAIN(TestVerticalChartAxis)
#include "tst_verticalchartaxis.moc"
