#include "views/chartwidget.h"

#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/pointthread.h"
#include "support/openmodel.h"
#include "support/paintcalltext.h"
#include "support/recordingpaintdevice.h"
#include "support/titledseries.h"
#include "views/chartcursor.h"
#include "views/cursorvalue.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QRubberBand>
#include <QtTest>

#include <algorithm>
#include <chrono>
#include <future>

namespace {

const QSize PaneSize(640, 480);
const QSize DeviceSize(2000, 1000);
const QColor Background(1, 2, 3);
const QColor Grid(10, 20, 30);

/// The points of a horizontal line in the pane \p chart, at the pixel row \p y.
QVector<ChartPoint> lineAt(const ChartWidget &chart, int y)
{
    const QRectF plot = chart.chartRect(QRectF());
    ChartPoint left;
    left.x = int(plot.x());
    left.y = y;
    ChartPoint right = left;
    right.x = int(plot.x() + plot.width());
    return {left, right};
}

/// Puts a new series into the pane, with axes and map but without samples and worker: the points
/// are a horizontal line in the middle. The model owns it.
TitledSeries *placeSeries(OpenModel &model, ChartWidget *chart)
{
    auto *series = new TitledSeries(QString("series %1").arg(model.m_series.size()));
    series->m_color = QColor(70, 80, 90 + model.m_series.size());
    series->m_chart = chart;
    series->m_axisX = model.m_axisX;
    series->m_axisY->m_max = 10.0;
    series->m_axisY->recalculateGridValues();
    model.m_series.append(series);
    series->updateMatrix(chart->chartRect(QRectF()));
    series->m_pointThread->m_points = lineAt(*chart, int(chart->chartRect(QRectF()).center().y()));
    return series;
}

/// A model with an X axis from 0 to 100 and one pane of the size of these tests.
class PaneModel : public OpenModel
{
public:
    PaneModel()
    {
        m_axisX->assignRange(0.0, 100.0);
        mainChart()->resize(PaneSize);
    }

    ChartWidget *addPane()
    {
        ChartWidget *chart = appendChart(-1);
        chart->resize(PaneSize);
        return chart;
    }
};

/// Counts how often the pane has been painted.
class CountingChart : public ChartWidget
{
public:
    using ChartWidget::ChartWidget;

    int m_paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++m_paints;
        ChartWidget::paintEvent(event);
    }
};

QPalette testPalette()
{
    QPalette palette;
    palette.setColor(QPalette::All, QPalette::Window, Background);
    palette.setColor(QPalette::All, QPalette::AlternateBase, Grid);
    palette.setColor(QPalette::All, QPalette::WindowText, QColor(40, 50, 60));
    return palette;
}

QVector<PaintCall> paintedCalls(ChartWidget &chart, const QRectF &target = QRectF())
{
    return drawnCalls([&](QPainter &painter) { chart.paint(painter, testPalette(), target); });
}

QStringList painted(ChartWidget &chart, const QRectF &target = QRectF())
{
    return paintCallTexts(paintedCalls(chart, target));
}

/// The lines in \p calls that are drawn in \p color.
QVector<QLineF> linesOf(const QColor &color, const QVector<PaintCall> &calls)
{
    QVector<QLineF> lines;
    for (const PaintCall &call : calls) {
        if (call.kind == PaintCall::Line && call.pen.color() == color) {
            lines.append(call.line);
        }
    }
    return lines;
}

QString fillText(const QRectF &rect)
{
    return QString("fill %1, brush %2").arg(rectText(rect), Background.name(QColor::HexArgb));
}

int fontHeight(const ChartWidget &chart)
{
    return QFontMetrics(chart.font()).height();
}

} // namespace

class TestChartWidget : public QObject
{
    Q_OBJECT

private slots:
    void startsIdle();
    void leavesItsModel();

    void keepsDefaultMarginsWithoutModel();
    void placesPlotOnePercentInside();
    void takesGivenRectangleAsFrame();
    void tellsUpperFromLowerPane();
    void reservesLabelRoomAtTheEndsOfTheStack();
    void marginsAreThoseOfTheWidestAxis();
    void leftMarginIsThirtyAtLeast();
    void skipsSeriesWithoutAxis();
    void rightMarginHoldsTheWidestTitle();
    void measuresWithItsOwnFont();
    void framesOfAllPanesLineUp();
    void smallPaneHasNegativeFrame();

    void listsItsOwnSeries();
    void selectsFirstSeriesByDefault();
    void knowsTheAxes();

    void fillsTheFrameWithoutModel();
    void fillsTheFrameWithoutSeries();
    void fillsTheFrameWithoutAxis_data();
    void fillsTheFrameWithoutAxis();
    void paintsNothingWithoutRoom();
    void paintsInOrder();
    void paintsSelectedSeriesOnTop();
    void leavesOutHiddenSeries();
    void paintsGridXOfHiddenSelectedSeries();
    void labelsXInTheLowestPaneOnly();
    void clipsSeriesButNotAxes();
    void restoresThePainter();
    void scalesToTheGivenRectangle();
    void paintsSeriesWithoutTheLockOnTheAxes();

    void paintsCursorWithReadOuts();
    void hidesCursor();
    void paintsNoCursorInEmptyPane();
    void paintsTimeLabelInTheUpperPaneOnly();
    void keepsTimeLabelThatCannotBeMapped();
    void turnsBoxesOfOnePaneToTheLeft();
    void stacksReadOutsFromTheLowest();

    void takesColorsFromTheSettings_data();
    void takesColorsFromTheSettings();
    void leavesMarginsToTheWidget();

    void repaintsWhenTheCursorChanges_data();
    void repaintsWhenTheCursorChanges();
    void restoresCursorOfTheMode_data();
    void restoresCursorOfTheMode();
    void leavesCursorWithoutModel();
};

void TestChartWidget::startsIdle()
{
    QWidget parent;
    const ChartWidget chart(nullptr, &parent, Qt::SubWindow);

    QCOMPARE(chart.parentWidget(), &parent);
    QCOMPARE(chart.windowType(), Qt::SubWindow);
    QVERIFY(chart.m_cursor);
    QCOMPARE(chart.m_cursor->m_visible, false);
    QCOMPARE(chart.m_rubberBand->parentWidget(), &chart);
    QCOMPARE(chart.m_rubberBand->shape(), QRubberBand::Rectangle);
    QVERIFY(chart.m_rubberBand->isHidden());
    QVERIFY(!chart.m_rubberBand->geometry().isValid());
    QCOMPARE(chart.m_lastPoint, QPoint(0, 0));
    QVERIFY(chart.m_commandText.isEmpty());
    QCOMPARE(chart.m_model, nullptr);
    QVERIFY(chart.hasMouseTracking());
    QVERIFY(chart.acceptDrops());
}

void TestChartWidget::leavesItsModel()
{
    PaneModel model;
    ChartWidget *other = model.addPane();
    ChartWidget *dying = model.addPane();
    const TitledSeries *staying = placeSeries(model, other);
    const TitledSeries *left = placeSeries(model, dying);
    QCOMPARE(dying->m_cursor->m_model, &model);

    delete dying;

    QCOMPARE(model.m_charts, (QList<ChartWidget *>{model.mainChart(), other}));
    QCOMPARE(staying->m_chart, other);
    QCOMPARE(left->m_chart, nullptr);
}

void TestChartWidget::keepsDefaultMarginsWithoutModel()
{
    ChartWidget chart(nullptr);
    chart.resize(PaneSize);
    const int h = fontHeight(chart);

    QCOMPARE(chart.rightSpace(), 30);
    QCOMPARE(chart.axisYSize(), 0);
    QCOMPARE(chart.topSpace(), h);
    QCOMPARE(chart.bottomSpace(), h);
    QCOMPARE(chart.isUpper(), false);
    QCOMPARE(chart.isLower(), false);
    QCOMPARE(chart.fullChartRect(QRectF()), QRectF(30.0, h, 640.0 - 60.0, 480.0 - 2 * h));
}

void TestChartWidget::placesPlotOnePercentInside()
{
    ChartWidget chart(nullptr);
    const int h = fontHeight(chart);
    chart.resize(160, 200 + 2 * h); // a frame of 100 by 200

    QCOMPARE(chart.chartRect(QRectF()), QRectF(31.0, h + 2.0, 98.0, 196.0));
}

void TestChartWidget::takesGivenRectangleAsFrame()
{
    ChartWidget chart(nullptr);
    chart.resize(PaneSize);
    const int h = fontHeight(chart);

    QCOMPARE(chart.fullChartRect(QRectF(1000.0, 2000.0, 800.0, 600.0)),
             QRectF(1030.0, 2000.0 + h, 740.0, 600.0 - 2 * h));
    QCOMPARE(chart.chartRect(QRectF(1000.0, 2000.0, 800.0, 600.0)),
             QRectF(1008.0, 2006.0, 784.0, 588.0));

    for (const QRectF &empty : {QRectF(5.0, 5.0, 0.0, 10.0), QRectF(5.0, 5.0, 10.0, -1.0)}) {
        QCOMPARE(chart.fullChartRect(empty), chart.fullChartRect(QRectF()));
        QCOMPARE(chart.chartRect(empty), chart.chartRect(QRectF()));
    }
}

void TestChartWidget::tellsUpperFromLowerPane()
{
    PaneModel model;
    const ChartWidget *upper = model.mainChart();
    QVERIFY(upper->isUpper() && upper->isLower());

    const ChartWidget *middle = model.addPane();
    const ChartWidget *lower = model.addPane();

    QVERIFY(upper->isUpper() && !upper->isLower());
    QVERIFY(!middle->isUpper() && !middle->isLower());
    QVERIFY(!lower->isUpper() && lower->isLower());
}

void TestChartWidget::reservesLabelRoomAtTheEndsOfTheStack()
{
    PaneModel model;
    const ChartWidget *upper = model.mainChart();
    const ChartWidget *middle = model.addPane();
    const ChartWidget *lower = model.addPane();
    const int h = fontHeight(*upper);
    model.m_axisX->m_size = 77;

    QCOMPARE(upper->topSpace(), 77);
    QCOMPARE(upper->bottomSpace(), h);
    QCOMPARE(middle->topSpace(), h);
    QCOMPARE(middle->bottomSpace(), h);
    QCOMPARE(lower->topSpace(), h);
    QCOMPARE(lower->bottomSpace(), 77);

    HorizontalChartAxis *axis = model.m_axisX;
    model.m_axisX = nullptr;
    QCOMPARE(upper->topSpace(), h);
    QCOMPARE(lower->bottomSpace(), h);
    model.m_axisX = axis;
}

void TestChartWidget::marginsAreThoseOfTheWidestAxis()
{
    PaneModel model;
    const ChartWidget *chart = model.mainChart();
    ChartWidget *other = model.addPane();
    placeSeries(model, other)->m_axisY->m_size = 50;
    placeSeries(model, other)->m_axisY->m_size = 123;
    placeSeries(model, other)->m_axisY->m_size = 60;

    QCOMPARE(chart->axisYSize(), 123);
    QCOMPARE(chart->fullChartRect(QRectF()).x(), 123.0);
}

void TestChartWidget::leftMarginIsThirtyAtLeast()
{
    PaneModel model;
    const ChartWidget *chart = model.mainChart();
    placeSeries(model, model.mainChart())->m_axisY->m_size = 29;

    QCOMPARE(chart->axisYSize(), 29);
    QCOMPARE(chart->fullChartRect(QRectF()).x(), 30.0);
}

void TestChartWidget::skipsSeriesWithoutAxis()
{
    PaneModel model;
    TitledSeries *series = placeSeries(model, model.mainChart());
    placeSeries(model, model.mainChart())->m_axisY->m_size = 50;
    delete series->m_axisY;
    series->m_axisY = nullptr;

    QCOMPARE(model.mainChart()->axisYSize(), 50);
}

void TestChartWidget::rightMarginHoldsTheWidestTitle()
{
    PaneModel model;
    const ChartWidget *chart = model.mainChart();
    ChartWidget *other = model.addPane();
    QCOMPARE(chart->rightSpace(), 30);
    placeSeries(model, other);
    QCOMPARE(chart->rightSpace(), 30); // no title: 20 pixels would do

    placeSeries(model, other)->m_labelX = "a very wide title of X";
    placeSeries(model, other)->m_labelX = "title";

    const QFontMetrics fm(chart->font());
    QCOMPARE(chart->rightSpace(), fm.horizontalAdvance("a very wide title of X") + 20);
}

void TestChartWidget::measuresWithItsOwnFont()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    model.addPane();
    placeSeries(model, chart)->m_labelX = "a very wide title of X";
    const int rightSpace = chart->rightSpace();
    const int bottomSpace = chart->bottomSpace();
    QFont larger = chart->font();
    larger.setPointSize(3 * larger.pointSize());

    chart->setFont(larger);

    const QFontMetrics fm(larger);
    QCOMPARE(chart->rightSpace(), fm.horizontalAdvance("a very wide title of X") + 20);
    QCOMPARE(chart->bottomSpace(), fm.height());
    QVERIFY(chart->rightSpace() > rightSpace);
    QVERIFY(chart->bottomSpace() > bottomSpace);
}

void TestChartWidget::framesOfAllPanesLineUp()
{
    PaneModel model;
    ChartWidget *upper = model.mainChart();
    ChartWidget *lower = model.addPane();
    placeSeries(model, upper);
    TitledSeries *wide = placeSeries(model, lower);
    wide->m_axisY->m_max = 1e8;
    wide->m_axisY->recalculateGridValues();

    const QRectF upperFrame = upper->fullChartRect(QRectF());
    const QRectF lowerFrame = lower->fullChartRect(QRectF());
    QCOMPARE(upperFrame.x(), double(wide->m_axisY->m_size));
    QCOMPARE(lowerFrame.x(), upperFrame.x());
    QCOMPARE(lowerFrame.width(), upperFrame.width());
}

void TestChartWidget::smallPaneHasNegativeFrame()
{
    ChartWidget chart(nullptr);
    chart.resize(50, 1);

    QCOMPARE(chart.fullChartRect(QRectF()).width(), -10.0);
    QCOMPARE(chart.fullChartRect(QRectF()).height(), 1.0 - 2 * fontHeight(chart));
}

void TestChartWidget::listsItsOwnSeries()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    ChartWidget *other = model.addPane();
    AbstractChartSeries *first = placeSeries(model, chart);
    AbstractChartSeries *second = placeSeries(model, other);
    AbstractChartSeries *third = placeSeries(model, chart);

    QCOMPARE(chart->seriesList(), (QList<AbstractChartSeries *>{first, third}));
    QCOMPARE(other->seriesList(), (QList<AbstractChartSeries *>{second}));
    QVERIFY(!chart->isEmpty());
    QVERIFY(model.addPane()->isEmpty());
    QVERIFY(ChartWidget(nullptr).isEmpty());
}

void TestChartWidget::selectsFirstSeriesByDefault()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    ChartWidget *other = model.addPane();
    QCOMPARE(chart->selectedSeries(), nullptr);
    AbstractChartSeries *foreign = placeSeries(model, other);
    AbstractChartSeries *first = placeSeries(model, chart);
    AbstractChartSeries *second = placeSeries(model, chart);
    AbstractChartSeries *third = placeSeries(model, chart);
    foreign->m_selected = true;

    QCOMPARE(chart->selectedSeries(), first);

    third->m_selected = true;
    QCOMPARE(chart->selectedSeries(), third);
    second->m_selected = true;
    QCOMPARE(chart->selectedSeries(), second);
}

void TestChartWidget::knowsTheAxes()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    QCOMPARE(chart->axisX(), model.m_axisX);
    QCOMPARE(chart->axisY(), nullptr);

    placeSeries(model, chart);
    TitledSeries *second = placeSeries(model, chart);
    second->m_selected = true;

    QCOMPARE(chart->axisY(), second->m_axisY);
    QCOMPARE(ChartWidget(nullptr).axisX(), nullptr);
    QCOMPARE(ChartWidget(nullptr).axisY(), nullptr);
}

void TestChartWidget::fillsTheFrameWithoutModel()
{
    ChartWidget chart(nullptr);
    chart.resize(PaneSize);
    const int h = fontHeight(chart);

    QCOMPARE(painted(chart), QStringList(fillText(QRectF(30.0, h, 580.0, 480.0 - 2 * h))));
}

void TestChartWidget::fillsTheFrameWithoutSeries()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();

    QCOMPARE(painted(*chart), QStringList(fillText(chart->fullChartRect(QRectF()))));
}

void TestChartWidget::fillsTheFrameWithoutAxis_data()
{
    QTest::addColumn<bool>("hasAxisX");

    QTest::newRow("no Y axis") << true;
    QTest::newRow("no X axis") << false;
}

void TestChartWidget::fillsTheFrameWithoutAxis()
{
    QFETCH(bool, hasAxisX);
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    TitledSeries *series = placeSeries(model, chart);
    HorizontalChartAxis *axis = model.m_axisX;
    if (hasAxisX) {
        delete series->m_axisY;
        series->m_axisY = nullptr;
    } else {
        model.m_axisX = nullptr;
    }

    QCOMPARE(painted(*chart), QStringList(fillText(chart->fullChartRect(QRectF()))));

    model.m_axisX = axis;
}

void TestChartWidget::paintsNothingWithoutRoom()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    placeSeries(model, chart);

    chart->resize(20, 480);
    QCOMPARE(painted(*chart), QStringList());
    chart->resize(640, 10);
    QCOMPARE(painted(*chart), QStringList());
}

void TestChartWidget::paintsInOrder()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    TitledSeries *series = placeSeries(model, chart);
    series->m_labelY = "volt";
    series->m_labelX = "Distance";
    series->m_axisY->recalculateGridValues();
    series->updateMatrix(chart->chartRect(QRectF()));

    const QRectF full = chart->fullChartRect(QRectF());
    const QVector<PaintCall> expected = drawnCalls([&](QPainter &painter) {
        painter.fillRect(full, Background);
        series->m_axisY->paint(series, painter, full, QTransform(), testPalette(), true);
        model.m_axisX->paint(series, painter, full, QTransform(), testPalette(), true);
        QList<CursorValue> values;
        series->paint(painter, chart->chartRect(QRectF()), QTransform(), QLineF(), values,
                      chart->m_cursor);
        painter.setPen(Grid);
        painter.setBrush(QBrush(Qt::transparent));
        painter.drawRect(full);
    });
    QCOMPARE(painted(*chart), paintCallTexts(expected));
    QCOMPARE(expected.last().kind, PaintCall::Rect);
    QCOMPARE(linesOf(series->m_color, expected).size(), 1);
}

void TestChartWidget::paintsSelectedSeriesOnTop()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    const TitledSeries *first = placeSeries(model, chart);
    TitledSeries *second = placeSeries(model, chart);
    const TitledSeries *third = placeSeries(model, chart);
    second->m_selected = true;

    QList<QColor> colors;
    for (const PaintCall &call : paintedCalls(*chart)) {
        if (call.kind == PaintCall::Line && call.pen.color() != Grid) {
            colors.append(call.pen.color());
        }
    }

    QCOMPARE(colors, (QList<QColor>{first->m_color, third->m_color, second->m_color}));
}

void TestChartWidget::leavesOutHiddenSeries()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    const TitledSeries *first = placeSeries(model, chart);
    TitledSeries *second = placeSeries(model, chart);
    second->m_visible = false;

    const QVector<PaintCall> calls = paintedCalls(*chart);

    QCOMPARE(linesOf(first->m_color, calls).size(), 1);
    QCOMPARE(linesOf(second->m_color, calls).size(), 0);
}

void TestChartWidget::paintsGridXOfHiddenSelectedSeries()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    TitledSeries *series = placeSeries(model, chart);
    series->m_visible = false;

    const QVector<PaintCall> calls = paintedCalls(*chart);

    const QVector<QLineF> lines = linesOf(Grid, calls);
    QCOMPARE(lines.size(), 11); // 0, 10 ... 100
    for (const QLineF &line : lines) {
        QCOMPARE(line.x1(), line.x2());
    }
    QCOMPARE(linesOf(series->m_color, calls).size(), 0);
    QCOMPARE(calls.last().rect, chart->fullChartRect(QRectF()));
}

void TestChartWidget::labelsXInTheLowestPaneOnly()
{
    PaneModel model;
    ChartWidget *upper = model.mainChart();
    ChartWidget *lower = model.addPane();
    for (ChartWidget *chart : {upper, lower}) {
        TitledSeries *series = placeSeries(model, chart);
        series->m_axisY->m_gridValues.clear();
    }

    QCOMPARE(labelsOf(paintedCalls(*upper)), QStringList());
    QVERIFY(labelsOf(paintedCalls(*lower)).contains("50"));
}

void TestChartWidget::clipsSeriesButNotAxes()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    const TitledSeries *series = placeSeries(model, chart);
    const QRectF full = chart->fullChartRect(QRectF());

    for (const PaintCall &call : paintedCalls(*chart)) {
        if (call.kind != PaintCall::Line) {
            continue;
        }
        const bool isSeries = call.pen.color() == series->m_color;
        QCOMPARE(call.clipped, isSeries);
        if (isSeries) {
            QCOMPARE(call.clip, full.adjusted(0.0, 0.0, 1.0, 1.0));
        }
    }
}

void TestChartWidget::restoresThePainter()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    placeSeries(model, chart);
    chart->changeCursorState(300.0, true);
    RecordingPaintDevice device(DeviceSize);
    QPainter painter(&device);
    const QPen pen(QColor(9, 8, 7), 3.0);
    const QBrush brush(QColor(6, 5, 4));
    const QRectF clip(10.0, 10.0, 900.0, 900.0);
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.setClipRect(clip);

    chart->paint(painter, testPalette(), QRectF());

    QCOMPARE(painter.pen(), pen);
    QCOMPARE(painter.brush(), brush);
    QVERIFY(painter.hasClipping());
    QCOMPARE(painter.clipBoundingRect(), clip);
}

void TestChartWidget::scalesToTheGivenRectangle()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    TitledSeries *series = placeSeries(model, chart);
    const QRectF target(50.0, 60.0, 2.0 * PaneSize.width(), PaneSize.height());

    const QVector<PaintCall> calls = paintedCalls(*chart, target);

    // The margins keep their pixels, so the frame is wider by the whole added width.
    const QRectF screenFull = chart->fullChartRect(QRectF());
    const QRectF full(screenFull.x() + 50.0, screenFull.y() + 60.0,
                      screenFull.width() + PaneSize.width(), screenFull.height());
    QCOMPARE(paintCallText(calls.first()), fillText(full));
    QCOMPARE(calls.last().rect, full);

    // The same fraction of the plot, on the screen and in the target.
    const QRectF screen = chart->chartRect(QRectF());
    const QRectF plot = chart->chartRect(full);
    const auto scaled = [&](const ChartPoint &point) {
        return QPointF(plot.x() + (point.x - screen.x()) / screen.width() * plot.width(),
                       plot.y() + (point.y - screen.y()) / screen.height() * plot.height());
    };
    const QVector<QLineF> lines = linesOf(series->m_color, calls);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(pointText(lines.first().p1()),
             pointText(scaled(series->m_pointThread->m_points.at(0))));
    QCOMPARE(pointText(lines.first().p2()),
             pointText(scaled(series->m_pointThread->m_points.at(1))));

    // Grid lines of X run from the left edge of the plot, 0, to its right one, 100.
    QStringList positions;
    for (const QLineF &line : linesOf(Grid, calls)) {
        if (line.x1() == line.x2()) {
            positions.append(numberText(line.x1()));
        }
    }
    QStringList expected;
    for (int i = 0; i <= 10; ++i) {
        expected.append(numberText(plot.x() + plot.width() * i / 10.0));
    }
    QCOMPARE(positions, expected);
}

/// Asks, while it is painted, whether another thread can take the lock on the axes.
class ProbingSeries : public PlainSeries
{
public:
    explicit ProbingSeries(const AbstractChartModel &model)
        : m_probed(model)
    {
    }

    QString stringValue(double) const override
    {
        m_probe = std::async(std::launch::async, [this] { const AxesLocker locker(&m_probed); });
        m_isFree = m_probe.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
        return "probed";
    }

    const AbstractChartModel &m_probed;
    mutable std::future<void> m_probe;
    mutable bool m_isFree = false;
};

void TestChartWidget::paintsSeriesWithoutTheLockOnTheAxes()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    auto *series = new ProbingSeries(model);
    series->m_chart = chart;
    series->m_axisX = model.m_axisX;
    model.m_series.append(series);
    series->m_pointThread->m_points = lineAt(*chart, 200);
    chart->changeCursorState(300.0, true);

    QVERIFY(labelsOf(paintedCalls(*chart)).contains(" probed "));

    QVERIFY(series->m_isFree);
}

void TestChartWidget::paintsCursorWithReadOuts()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    TitledSeries *series = placeSeries(model, chart);
    model.m_settings.cursorLineColor = QColor(200, 100, 50);
    series->m_pointThread->m_points = lineAt(*chart, 200);
    series->m_pointThread->m_points[0].value = 5.0;
    chart->changeCursorState(310.0, true);

    const QVector<PaintCall> calls = paintedCalls(*chart);

    const QRectF plot = chart->chartRect(QRectF());
    QCOMPARE(linesOf(QColor(200, 100, 50), calls),
             QVector<QLineF>{QLineF(310.0, plot.y() - 1.0, 310.0, plot.y() + plot.height() + 1.0)});
    QVector<QRectF> boxes;
    for (const PaintCall &call : calls) {
        if (call.kind == PaintCall::Rect) {
            boxes.append(call.rect);
        }
    }
    QCOMPARE(boxes.size(), 2); // the read-out, and last the frame
    QCOMPARE(boxes.at(0).topLeft(), QPointF(315.0, 200.0));
    QCOMPARE(boxes.at(1), chart->fullChartRect(QRectF()));
    QCOMPARE(calls.last().rect, chart->fullChartRect(QRectF()));
    QVERIFY(labelsOf(calls).contains(" 5 ")); // the text of the nearer end
    QCOMPARE(chart->m_cursor->m_side, int(ChartCursor::Right));
}

void TestChartWidget::hidesCursor()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    placeSeries(model, chart);
    const QStringList withoutCursor = painted(*chart);
    chart->m_cursor->m_timeText = "before";

    chart->changeCursorState(310.0, true);
    chart->changeCursorState(310.0, false);

    QCOMPARE(painted(*chart), withoutCursor);
    QCOMPARE(chart->m_cursor->m_timeText, QString("before"));
}

void TestChartWidget::paintsNoCursorInEmptyPane()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();

    chart->changeCursorState(310.0, true);

    QCOMPARE(painted(*chart), QStringList(fillText(chart->fullChartRect(QRectF()))));
}

void TestChartWidget::paintsTimeLabelInTheUpperPaneOnly()
{
    PaneModel model;
    ChartWidget *upper = model.mainChart();
    ChartWidget *lower = model.addPane();
    for (ChartWidget *chart : {upper, lower}) {
        placeSeries(model, chart);
        const QRectF plot = chart->chartRect(QRectF());
        chart->changeCursorState(plot.x() + 0.25 * plot.width(), true);
    }

    const QVector<PaintCall> upperCalls = paintedCalls(*upper);
    const QVector<PaintCall> lowerCalls = paintedCalls(*lower);

    // A quarter of 0 to 100; the step of 10 has no decimals, the cursor one more.
    QCOMPARE(upper->m_cursor->m_timeText, QString("25.0"));
    QVERIFY(labelsOf(upperCalls).contains("25.0"));
    QCOMPARE(lower->m_cursor->m_timeText, QString("25.0"));
    QVERIFY(!labelsOf(lowerCalls).contains("25.0"));
    QVERIFY(!upperCalls.last().clipped);
    QVERIFY(lowerCalls.last().clipped);

    const QFontMetrics fm = painterMetrics();
    QCOMPARE(upper->m_cursor->m_timeRect.size(),
             QSizeF(fm.horizontalAdvance("25.0"), 2 * fm.height()));
    QCOMPARE(upper->m_cursor->m_timeRect.bottom(), upper->topSpace() - 5.0);
}

void TestChartWidget::keepsTimeLabelThatCannotBeMapped()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    TitledSeries *series = placeSeries(model, chart);
    const QRectF plot = chart->chartRect(QRectF());
    chart->changeCursorState(plot.x() + 0.25 * plot.width(), true);
    paintedCalls(*chart);

    series->m_matrix = QTransform(0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
    chart->changeCursorState(plot.x() + 0.5 * plot.width(), true);

    QVERIFY(labelsOf(paintedCalls(*chart)).contains("25.0"));
}

void TestChartWidget::turnsBoxesOfOnePaneToTheLeft()
{
    PaneModel model;
    ChartWidget *upper = model.mainChart();
    ChartWidget *lower = model.addPane();
    TitledSeries *wide = placeSeries(model, upper);
    wide->m_precision = 60; // a read-out that no pane could hold on the right
    TitledSeries *narrow = placeSeries(model, upper);
    narrow->m_pointThread->m_points = lineAt(*upper, 100);
    placeSeries(model, lower);
    upper->changeCursorState(400.0, true);
    lower->changeCursorState(400.0, true);

    const QVector<PaintCall> upperCalls = paintedCalls(*upper);
    paintedCalls(*lower);

    QCOMPARE(upper->m_cursor->m_side, int(ChartCursor::Left));
    QCOMPARE(lower->m_cursor->m_side, int(ChartCursor::Right));
    QList<double> rightEdges;
    for (const PaintCall &call : upperCalls) {
        if (call.kind == PaintCall::Rect) {
            rightEdges.append(call.rect.x() + call.rect.width());
        }
    }
    QCOMPARE(rightEdges.mid(0, 2), (QList<double>{395.0, 395.0}));

    wide->m_precision = 0;
    paintedCalls(*upper);
    QCOMPARE(upper->m_cursor->m_side, int(ChartCursor::Right));
}

void TestChartWidget::stacksReadOutsFromTheLowest()
{
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    const int rows[] = {300, 100, 200}; // the first one is painted last
    QList<TitledSeries *> list;
    for (const int row : rows) {
        list.append(placeSeries(model, chart));
        list.last()->m_pointThread->m_points = lineAt(*chart, row);
    }
    chart->changeCursorState(310.0, true);

    QList<double> boxTops;
    for (const PaintCall &call : paintedCalls(*chart)) {
        if (call.kind == PaintCall::Rect) {
            boxTops.append(call.rect.y());
        }
    }

    QCOMPARE(boxTops.mid(0, 3), (QList<double>{300.0, 200.0, 100.0}));
}

void TestChartWidget::takesColorsFromTheSettings_data()
{
    QTest::addColumn<bool>("hasModel");
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("grid");
    QTest::addColumn<QColor>("frameColor");
    QTest::addColumn<QColor>("fillColor");

    const QColor none;
    QTest::newRow("settings") << true << QColor(1, 2, 3) << QColor(4, 5, 6) << QColor(4, 5, 6)
                              << QColor(1, 2, 3);
    QTest::newRow("invalid colors")
        << true << none << none << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("no model: no frame")
        << false << none << none << QColor(Qt::black) << QColor(Qt::black);
}

void TestChartWidget::takesColorsFromTheSettings()
{
    QFETCH(bool, hasModel);
    QFETCH(QColor, background);
    QFETCH(QColor, grid);
    QFETCH(QColor, frameColor);
    QFETCH(QColor, fillColor);
    PaneModel model;
    model.m_settings.backgroundColor = background;
    model.m_settings.gridColor = grid;
    ChartWidget single(nullptr);
    single.resize(PaneSize);
    ChartWidget &chart = hasModel ? *model.mainChart() : single;
    if (hasModel) {
        placeSeries(model, &chart)->m_axisY->m_gridValues.clear();
        model.m_axisX->m_gridValues.clear();
    }

    const QImage image = chart.grab().toImage();

    const QPoint corner = chart.fullChartRect(QRectF()).topLeft().toPoint();
    QCOMPARE(image.pixelColor(corner), frameColor);
    QCOMPARE(image.pixelColor(corner + QPoint(3, 3)), fillColor);
}

void TestChartWidget::leavesMarginsToTheWidget()
{
    ChartWidget chart(nullptr);
    chart.resize(PaneSize);
    QPalette palette = chart.palette();
    palette.setColor(QPalette::Window, QColor(200, 0, 0));
    chart.setPalette(palette);

    const QImage image = chart.grab().toImage();

    const QRect full = chart.fullChartRect(QRectF()).toRect();
    QCOMPARE(image.pixelColor(full.topLeft()), QColor(Qt::black));
    QCOMPARE(image.pixelColor(full.bottomRight()), QColor(Qt::black));
    QCOMPARE(image.pixelColor(full.topLeft() - QPoint(1, 1)), QColor(200, 0, 0));
    QCOMPARE(image.pixelColor(full.bottomRight() + QPoint(1, 1)), QColor(200, 0, 0));
}

void TestChartWidget::repaintsWhenTheCursorChanges_data()
{
    QTest::addColumn<double>("oldPosition");
    QTest::addColumn<bool>("wasVisible");
    QTest::addColumn<double>("position");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("repaints");

    QTest::newRow("appears") << 5.0 << false << 7.0 << true << true;
    QTest::newRow("appears where it was") << 5.0 << false << 5.0 << true << true;
    QTest::newRow("moves") << 5.0 << true << 7.0 << true << true;
    QTest::newRow("stays") << 5.0 << true << 5.0 << true << false;
    QTest::newRow("vanishes") << 5.0 << true << 7.0 << false << true;
    QTest::newRow("moves hidden") << 5.0 << false << 7.0 << false << false;
    QTest::newRow("stays hidden") << 5.0 << false << 5.0 << false << false;
}

void TestChartWidget::repaintsWhenTheCursorChanges()
{
    QFETCH(double, oldPosition);
    QFETCH(bool, wasVisible);
    QFETCH(double, position);
    QFETCH(bool, visible);
    QFETCH(bool, repaints);
    CountingChart chart(nullptr);
    chart.resize(PaneSize);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart));
    QTRY_VERIFY(chart.m_paints > 0);
    QCoreApplication::processEvents();
    chart.m_cursor->m_position = oldPosition;
    chart.m_cursor->m_visible = wasVisible;
    chart.m_paints = 0;

    chart.changeCursorState(position, visible);

    QCoreApplication::processEvents();
    QCOMPARE(chart.m_paints, repaints ? 1 : 0);
    QCOMPARE(chart.m_cursor->m_position, position);
    QCOMPARE(chart.m_cursor->m_visible, visible);
}

void TestChartWidget::restoresCursorOfTheMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("shape");

    QTest::newRow("select") << 0 << int(Qt::CrossCursor);
    QTest::newRow("move") << 1 << int(Qt::OpenHandCursor);
    QTest::newRow("neither") << 2 << int(Qt::ForbiddenCursor);
}

void TestChartWidget::restoresCursorOfTheMode()
{
    QFETCH(int, mode);
    QFETCH(int, shape);
    PaneModel model;
    ChartWidget *chart = model.mainChart();
    chart->setCursor(Qt::ForbiddenCursor);
    model.m_mouseMode = mode;

    chart->restoreCursor();

    QCOMPARE(int(chart->cursor().shape()), shape);
}

void TestChartWidget::leavesCursorWithoutModel()
{
    ChartWidget chart(nullptr);
    chart.setCursor(Qt::ForbiddenCursor);

    chart.restoreCursor();

    QCOMPARE(chart.cursor().shape(), Qt::ForbiddenCursor);
}

QTEST_MAIN(TestChartWidget)
#include "tst_chartwidget.moc"
