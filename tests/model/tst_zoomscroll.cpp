#include "model/abstractchartmodel.h"

#include "support/gatedseries.h"
#include "support/limitedseries.h"
#include "support/modelsetup.h"
#include "undo/scalecommand.h"

#include <QAction>
#include <QSignalSpy>
#include <QtTest>
#include <QUndoStack>

#include <limits>

using Action = QAction *AbstractChartModel::*;
using Slot = void (AbstractChartModel::*)();
using Permission = bool LimitedSeries::*;

Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Slot)
Q_DECLARE_METATYPE(Permission)

namespace {

/// Counts its death.
class MortalCommand : public ScaleCommand
{
public:
    MortalCommand(AbstractChartModel *model, int &deaths)
        : ScaleCommand(model)
        , m_deaths(deaths)
    {
    }
    ~MortalCommand() override { ++m_deaths; }

private:
    int &m_deaths;
};

/// A model whose own undoZoom() is counted.
class CountingModel : public OpenModel
{
public:
    void undoZoom() override
    {
        ++m_undoneZooms;
        OpenModel::undoZoom();
    }

    int m_undoneZooms = 0;
};

/// Adds a series with X from 0 to 100, and a map for it; Y reaches from 0 to 100 by default.
template <typename Series = PlainSeries>
Series *addHundred(OpenModel &model, const QString &name = "a")
{
    auto *series = addSeries<Series>(model, name);
    model.addValues(series, {newValue(0.0, 0.0), newValue(100.0, 8.0)});
    return recalculated(model) ? series : nullptr;
}

/// A chart of one series that waits in a calculation for its gate.
struct BusyChart
{
    BusyChart()
        : series(addHundred<GatedSeries>(model))
    {
        series->closeGate();
        model.updateCharts();
        isBusy = series->waitForWorker();
    }

    bool end()
    {
        series->openGate();
        return settled(model);
    }

    OpenModel model;
    GatedSeries *series;
    bool isBusy = false;
};

const ScaleCommand &commandAt(const OpenModel &model, int i)
{
    return dynamic_cast<const ScaleCommand &>(*model.m_undoStack->command(i));
}

QRectF plotOf(const OpenModel &model)
{
    return model.mainChart()->chartRect(QRectF());
}

/// The tests of a model that are true.
QString allowedText(const AbstractChartModel &model)
{
    const QPair<const char *, bool> tests[] = {
        {"in", model.canZoomIn()},     {"out", model.canZoomOut()}, {"inX", model.canZoomInX()},
        {"outX", model.canZoomOutX()}, {"inY", model.canZoomInY()}, {"outY", model.canZoomOutY()},
    };
    QStringList names;
    for (const auto &[name, isTrue] : tests) {
        if (isTrue) {
            names.append(name);
        }
    }
    return names.join(' ');
}

} // namespace

class TestZoomScroll : public QObject
{
    Q_OBJECT

private slots:
    void canZoomAsSoonAsThereIsASeries();
    void testsAskTheAxisAndAllSeries_data();
    void testsAskTheAxisAndAllSeries();
    void nothingCanBeZoomedWithoutSeries();
    void nullEntryEndsTheTests();
    void missingAxisIsNotAsked();
    void spanOfXLimitsZooming_data();
    void spanOfXLimitsZooming();
    void calculationRunsWhileSeriesAreUpdating();

    void stepZoomsThePlot_data();
    void stepZoomsThePlot();
    void stepIsUndoneAndRedone_data() { stepZoomsThePlot_data(); }
    void stepIsUndoneAndRedone();
    void stepWithoutPaneDoesNothing_data() { stepZoomsThePlot_data(); }
    void stepWithoutPaneDoesNothing();
    void stepMarksBothAxesAsZoomed_data() { stepZoomsThePlot_data(); }
    void stepMarksBothAxesAsZoomed();
    void stepBeyondTheLimitsIsNotRefused();

    void codeSaysWhetherAZoomIsAStep_data();
    void codeSaysWhetherAZoomIsAStep();
    void degenerateZoomIsAStepAllTheSame();
    void zoomStartsTheCalculationBeforeItIsPushed();

    void actionNamesTheStep_data();
    void actionNamesTheStep();
    void paneNamesTheZoom();
    void paneNamesNoScroll();
    void actionNamesNoDrag();
    void directCallHasNoName_data();
    void directCallHasNoName();

    void scrollsX_data();
    void scrollsX();
    void scrollOfNoWidthIsAStep_data();
    void scrollOfNoWidthIsAStep();
    void scrollThatFindsItsPlaceIsAStep();
    void scrollPutsReversedRangeInOrder();
    void scrollBeyondAllNumbersStays();
    void scrollsTheAxisAloneWithoutSamples();
    void scrollsToNoEdgeWithoutSamples_data();
    void scrollsToNoEdgeWithoutSamples();
    void edgeOfTheDataIsFinite();
    void scrollIsPushedBeforeTheCalculation();

    void undoZoomLetsAllAxesFollow();
    void undoZoomPassesOverSeriesWithoutAxis();
    void undoZoomIsAStepOfItsOwn();

    void dragIsOneStep();
    void secondBeginForgetsTheFirst();
    void endPassesOverNullCommands();
    void endWithoutBeginDoesNothing();
    void endPushesDuringACalculation();

    void parkedZoomWaitsForTheLastSeries();
    void parkedTransientZoomLeavesNoStep();
    void parkedZoomsArriveInOrder();
    void parkedZoomsKeepTheirNames();
    void scrollDoesNotWaitForACalculation_data();
    void scrollDoesNotWaitForACalculation();
    void undoZoomDoesNotWaitForACalculation();
};

void TestZoomScroll::canZoomAsSoonAsThereIsASeries()
{
    OpenModel model;
    QVERIFY(!model.canZoom());

    addSeries(model, "a"); // Without samples.
    QVERIFY(model.canZoom());

    QVERIFY(settled(model));
    model.m_series.prepend(nullptr);
    QVERIFY(model.canZoom());
    model.m_series.removeFirst();
}

void TestZoomScroll::testsAskTheAxisAndAllSeries_data()
{
    QTest::addColumn<double>("span");
    QTest::addColumn<Permission>("missing");
    QTest::addColumn<QString>("allowed");

    const Permission none = nullptr;
    QTest::newRow("all") << 1.0 << none << "in out inX outX inY outY";
    QTest::newRow("X too narrow") << 1e-9 << none << "out outX inY outY";
    QTest::newRow("X too wide") << 1e9 << none << "in inX inY outY";
    // The tests of both directions are no twins: out is asked for by itself.
    QTest::newRow("not in X") << 1.0 << &LimitedSeries::m_allowsInX << "out outX inY outY";
    QTest::newRow("not in Y") << 1.0 << &LimitedSeries::m_allowsInY << "out inX outX outY";
    QTest::newRow("not out") << 1.0 << &LimitedSeries::m_allowsOut << "in inX outX inY outY";
    QTest::newRow("not out X") << 1.0 << &LimitedSeries::m_allowsOutX << "in out inX inY outY";
    QTest::newRow("not out Y") << 1.0 << &LimitedSeries::m_allowsOutY << "in out inX outX inY";
}

void TestZoomScroll::testsAskTheAxisAndAllSeries()
{
    QFETCH(double, span);
    QFETCH(Permission, missing);
    QFETCH(QString, allowed);
    OpenModel model;
    addSeries<LimitedSeries>(model, "a");
    auto *series = addSeries<LimitedSeries>(model, "b");
    model.m_axisX->assignRange(0.0, span);
    if (missing) {
        series->*missing = false;
    }

    QCOMPARE(allowedText(model), allowed);
}

void TestZoomScroll::nothingCanBeZoomedWithoutSeries()
{
    OpenModel model;
    model.m_axisX->assignRange(0.0, 1.0);

    QCOMPARE(allowedText(model), QString());
}

void TestZoomScroll::nullEntryEndsTheTests()
{
    OpenModel model;
    addSeries<LimitedSeries>(model, "a");
    model.m_axisX->assignRange(0.0, 1.0);
    QVERIFY(settled(model));

    model.m_series.append(nullptr);
    const QString allowed = allowedText(model);
    model.m_series.removeLast();

    QCOMPARE(allowed, QString());
}

void TestZoomScroll::missingAxisIsNotAsked()
{
    OpenModel model;
    addSeries<LimitedSeries>(model, "a");
    QVERIFY(settled(model));
    HorizontalChartAxis *axis = model.m_axisX;

    model.m_axisX = nullptr;
    const QString allowed = allowedText(model);
    model.m_axisX = axis;

    QCOMPARE(allowed, QString("in out inX outX inY outY"));
}

void TestZoomScroll::spanOfXLimitsZooming_data()
{
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<double>("span");
    QTest::addColumn<bool>("in");
    QTest::addColumn<bool>("out");

    QTest::newRow("number, shortest") << false << 1e-9 << false << true;
    QTest::newRow("number, a little more") << false << 1.1e-9 << true << true;
    QTest::newRow("number, a little less") << false << 0.999e9 << true << true;
    QTest::newRow("number, longest") << false << 1e9 << true << false;
    QTest::newRow("time, a millisecond") << true << 0.001 << false << true;
    QTest::newRow("time, a little more") << true << 0.0011 << true << true;
    QTest::newRow("time, almost ten years") << true << 3.1535e8 << true << true;
    QTest::newRow("time, ten years") << true << 3.1536e8 << true << false;
}

void TestZoomScroll::spanOfXLimitsZooming()
{
    QFETCH(bool, dateTime);
    QFETCH(double, span);
    QFETCH(bool, in);
    QFETCH(bool, out);
    OpenModel model;
    addSeries<LimitedSeries>(model, "a");
    model.setUseDateTimeScaleX(dateTime);
    model.m_axisX->assignRange(0.0, span);

    QCOMPARE(model.canZoomIn(), in);
    QCOMPARE(model.canZoomInX(), in);
    QCOMPARE(model.canZoomOut(), out);
    QCOMPARE(model.canZoomOutX(), out);
}

void TestZoomScroll::calculationRunsWhileSeriesAreUpdating()
{
    BusyChart chart;
    QVERIFY(chart.isBusy);
    QVERIFY(chart.model.updatePointsInProgress());

    QVERIFY(chart.end());
    QVERIFY(!chart.model.updatePointsInProgress());
}

void TestZoomScroll::stepZoomsThePlot_data()
{
    QTest::addColumn<Slot>("step");
    QTest::addColumn<QRectF>("target"); // in a plot of 400 by 200 at (10, 20)
    QTest::addColumn<QPair<double, double>>("x");
    QTest::addColumn<QPair<double, double>>("y");

    using Range = QPair<double, double>;
    const Range all(0.0, 100.0);
    const Range half(25.0, 75.0);
    const Range twice(-50.0, 150.0);
    const auto addRow = [](const char *name, Slot step, const QRectF &target, const Range &x,
                           const Range &y) { QTest::newRow(name) << step << target << x << y; };
    addRow("zoom in", &OpenModel::slotZoomIn, QRectF(110, 70, 200, 100), half, half);
    addRow("zoom out", &OpenModel::slotZoomOut, QRectF(-190, -80, 800, 400), twice, twice);
    addRow("zoom in x", &OpenModel::slotZoomInX, QRectF(110, 20, 200, 200), half, all);
    addRow("zoom out x", &OpenModel::slotZoomOutX, QRectF(-190, 20, 800, 200), twice, all);
    addRow("zoom in y", &OpenModel::slotZoomInY, QRectF(10, 70, 400, 100), all, half);
    addRow("zoom out y", &OpenModel::slotZoomOutY, QRectF(10, -80, 400, 400), all, twice);
    addRow("scroll up", &OpenModel::slotScrollUp, QRectF(10, -180, 400, 200), all,
           Range(100.0, 200.0));
    addRow("scroll down", &OpenModel::slotScrollDown, QRectF(10, 220, 400, 200), all,
           Range(-100.0, 0.0));
}

void TestZoomScroll::stepZoomsThePlot()
{
    QFETCH(Slot, step);
    QFETCH(QRectF, target);
    using Range = QPair<double, double>;
    QFETCH(Range, x);
    QFETCH(Range, y);
    OpenModel model;
    const PlainSeries *series = addHundred(model);
    const QRectF plot = plotOf(model);
    const QTransform map = series->m_matrix;

    (model.*step)();

    const QTransform fromTable(plot.width() / 400.0, 0.0, 0.0, plot.height() / 200.0,
                               plot.x() - 10.0 * plot.width() / 400.0,
                               plot.y() - 20.0 * plot.height() / 200.0);
    const QRectF expected = fromTable.mapRect(target);
    // What is shown now, in the pixels of before.
    const QPointF leftTop = map.map(QPointF(model.m_axisX->m_min, series->m_axisY->m_max));
    const QPointF rightBottom = map.map(QPointF(model.m_axisX->m_max, series->m_axisY->m_min));
    QVERIFY(isNear(leftTop.x(), expected.x()));
    QVERIFY(isNear(leftTop.y(), expected.y()));
    QVERIFY(isNear(rightBottom.x(), expected.x() + expected.width()));
    QVERIFY(isNear(rightBottom.y(), expected.y() + expected.height()));
    QVERIFY(hasRange(*model.m_axisX, x.first, x.second));
    QVERIFY(hasRange(*series->m_axisY, y.first, y.second));
    QVERIFY(model.updatePointsInProgress());
}

void TestZoomScroll::stepIsUndoneAndRedone()
{
    QFETCH(Slot, step);
    OpenModel model;
    QVERIFY(addHundred(model));
    (model.*step)();
    const QString after = axesText(model);
    QCOMPARE(model.m_undoStack->count(), 1);

    model.m_undoStack->undo();
    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));

    model.m_undoStack->redo();
    QCOMPARE(axesText(model), after);
}

void TestZoomScroll::stepWithoutPaneDoesNothing()
{
    QFETCH(Slot, step);
    OpenModel model;
    QVERIFY(addHundred(model));
    delete model.mainChart();
    QVERIFY(!model.mainChart());

    (model.*step)();

    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));
    QCOMPARE(model.m_undoStack->count(), 0);
    QVERIFY(!model.updatePointsInProgress());
}

void TestZoomScroll::stepMarksBothAxesAsZoomed()
{
    QFETCH(Slot, step);
    OpenModel model;
    const PlainSeries *series = addHundred(model);

    (model.*step)();

    QVERIFY(model.m_axisX->m_zoomed);
    QVERIFY(series->m_axisY->m_zoomed);
}

void TestZoomScroll::stepBeyondTheLimitsIsNotRefused()
{
    OpenModel model;
    auto *series = addHundred<LimitedSeries>(model);
    series->m_allowsInX = false;
    QVERIFY(!model.canZoomIn());

    model.slotZoomIn();

    QVERIFY(hasRange(*model.m_axisX, 25.0, 75.0));
    QCOMPARE(model.m_undoStack->count(), 1);
}

void TestZoomScroll::codeSaysWhetherAZoomIsAStep_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("steps");

    QTest::newRow("transient") << int(ChartWidget::ZoomTransient) << 0;
    QTest::newRow("undoable") << int(ChartWidget::ZoomUndoable) << 1;
    QTest::newRow("two") << 2 << 1;
    QTest::newRow("negative") << -1 << 1;
}

void TestZoomScroll::codeSaysWhetherAZoomIsAStep()
{
    QFETCH(int, code);
    QFETCH(int, steps);
    OpenModel model;
    const PlainSeries *series = addHundred(model);
    const QRectF plot = plotOf(model);

    model.slotZoomChanged(plot, partOf(plot, 0.0, 0.0, 0.5, 0.25), code);

    QVERIFY(hasRange(*model.m_axisX, 0.0, 50.0));
    QVERIFY(hasRange(*series->m_axisY, 75.0, 100.0));
    QCOMPARE(model.m_undoStack->count(), steps);
    QVERIFY(model.m_pendingCommands.isEmpty());
}

void TestZoomScroll::degenerateZoomIsAStepAllTheSame()
{
    OpenModel model;
    QVERIFY(addHundred(model));

    model.slotZoomChanged(plotOf(model), QRectF(), ChartWidget::ZoomUndoable);

    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));
    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(!model.updatePointsInProgress());
}

void TestZoomScroll::zoomStartsTheCalculationBeforeItIsPushed()
{
    RecordingModel model;
    QVERIFY(addHundred(model));
    model.takeCalls();

    model.slotZoomIn();

    QCOMPARE(model.takeCalls(), QString("actions*"));
}

void TestZoomScroll::actionNamesTheStep_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QString>("text");

    using Model = AbstractChartModel;
    const auto addRow = [](const char *text, Action action) {
        QTest::newRow(text) << action << QString(text);
    };
    addRow("\"Zoom in\"", &Model::m_zoomInAction);
    addRow("\"Zoom out\"", &Model::m_zoomOutAction);
    addRow("\"Zoom in (X axis)\"", &Model::m_zoomInXAction);
    addRow("\"Zoom out (X axis)\"", &Model::m_zoomOutXAction);
    addRow("\"Zoom in (Y axis)\"", &Model::m_zoomInYAction);
    addRow("\"Zoom out (Y axis)\"", &Model::m_zoomOutYAction);
    addRow("\"Undo zoom\"", &Model::m_undoZoomAction);
    addRow("\"Scroll down\"", &Model::m_scrollDownAction);
    addRow("\"Scroll to begin\"", &Model::m_scrollToBeginAction);
    addRow("\"Scroll backward\"", &Model::m_scrollBackAction);
    addRow("\"Scroll forward\"", &Model::m_scrollForwardAction);
    addRow("\"Scroll to end\"", &Model::m_scrollToEndAction);
    addRow("\"Scroll up\"", &Model::m_scrollUpAction);
}

void TestZoomScroll::actionNamesTheStep()
{
    QFETCH(Action, action);
    QFETCH(QString, text);
    OpenModel model;
    QVERIFY(addHundred(model));
    model.updateActions();
    QVERIFY((model.*action)->isEnabled());

    (model.*action)->trigger();

    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->text(0), text);
    QCOMPARE(model.m_undoAction->text(), "Undo action " + text);
}

void TestZoomScroll::paneNamesTheZoom()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    ChartWidget *pane = model.mainChart();
    pane->m_commandText = "Select area";

    emit pane->zoomChanged(plotOf(model), partOf(plotOf(model), 0.0, 0.0, 0.5, 0.5), 1);
    QCOMPARE(model.m_undoStack->text(0), QString("\"Select area\""));

    QVERIFY(settled(model));
    pane->m_commandText = "Move";
    emit pane->beginMove();
    emit pane->zoomChanged(plotOf(model), partOf(plotOf(model), 0.5, 0.0, 1.0, 1.0), 0);
    emit pane->endMove();
    QCOMPARE(model.m_undoStack->text(1), QString("\"Move\""));
}

void TestZoomScroll::paneNamesNoScroll()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    ChartWidget *pane = model.mainChart();
    pane->m_commandText = "Move";
    connect(pane, SIGNAL(beginMove()), &model, SLOT(slotScrollBack()));

    emit pane->beginMove();

    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->text(0), QString());
}

void TestZoomScroll::actionNamesNoDrag()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    QAction action("End", nullptr);
    connect(&action, SIGNAL(triggered()), &model, SLOT(slotEndMove()));
    model.slotBeginMove();

    action.trigger();

    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->text(0), QString());
}

void TestZoomScroll::directCallHasNoName_data()
{
    QTest::addColumn<Slot>("step");

    const auto addRow = [](const char *name, Slot step) { QTest::newRow(name) << step; };
    addRow("zoom", &OpenModel::slotZoomIn);
    addRow("vertical scroll", &OpenModel::slotScrollUp);
    addRow("undo zoom", &OpenModel::slotUndoZoom);
    addRow("scroll back", &OpenModel::slotScrollBack);
    addRow("scroll forward", &OpenModel::slotScrollForward);
    addRow("scroll to begin", &OpenModel::slotScrollToBegin);
    addRow("scroll to end", &OpenModel::slotScrollToEnd);
}

void TestZoomScroll::directCallHasNoName()
{
    QFETCH(Slot, step);
    OpenModel model;
    QVERIFY(addHundred(model));

    (model.*step)();

    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->text(0), QString());
}

void TestZoomScroll::scrollsX_data()
{
    QTest::addColumn<Slot>("scroll");
    QTest::addColumn<QString>("axes");

    const auto addRow = [](const char *name, Slot scroll, const char *axes) {
        QTest::newRow(name) << scroll << QString(axes);
    };
    // Y rests, and goes on following the data.
    addRow("back", &OpenModel::slotScrollBack, "[-100,0] zoomed [0,100] [0,100] [0,100]");
    addRow("forward", &OpenModel::slotScrollForward, "[100,200] zoomed [0,100] [0,100] [0,100]");
    addRow("to begin", &OpenModel::slotScrollToBegin, "[10,110] zoomed [0,100] [0,100] [0,100]");
    addRow("to end", &OpenModel::slotScrollToEnd, "[450,550] zoomed [0,100] [0,100] [0,100]");
}

void TestZoomScroll::scrollsX()
{
    QFETCH(Slot, scroll);
    QFETCH(QString, axes);
    OpenModel model;
    addSeries(model, "empty");
    PlainSeries *a = addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    model.addValues(a, {newValue(20.0, 1.0), newValue(500.0, 2.0)});
    model.addValues(b, {newValue(10.0, 1.0), newValue(300.0, 2.0)});
    QVERIFY(settled(model));
    model.m_axisX->assignRange(0.0, 100.0);

    (model.*scroll)();

    QCOMPARE(axesText(model), axes);
    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(model.updatePointsInProgress());
    model.m_undoStack->undo();
    QCOMPARE(axesText(model), QString("[0,100] [0,100] [0,100] [0,100]"));
    model.m_undoStack->redo();
    QCOMPARE(axesText(model), axes);
}

void TestZoomScroll::scrollOfNoWidthIsAStep_data()
{
    QTest::addColumn<Slot>("scroll");

    QTest::newRow("back") << Slot(&OpenModel::slotScrollBack);
    QTest::newRow("forward") << Slot(&OpenModel::slotScrollForward);
}

void TestZoomScroll::scrollOfNoWidthIsAStep()
{
    QFETCH(Slot, scroll);
    OpenModel model;
    addSeries(model, "a");
    QCOMPARE(axisText(*model.m_axisX), QString("[0,0]"));

    (model.*scroll)();

    QCOMPARE(axisText(*model.m_axisX), QString("[0,0] zoomed"));
    QCOMPARE(model.m_undoStack->count(), 1);
}

void TestZoomScroll::scrollThatFindsItsPlaceIsAStep()
{
    OpenModel model;
    QVERIFY(addHundred(model));

    model.slotScrollToBegin();

    QCOMPARE(axesText(model), QString("[0,100] zoomed [0,100]"));
    QCOMPARE(model.m_undoStack->count(), 1);
}

void TestZoomScroll::scrollPutsReversedRangeInOrder()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    model.m_axisX->m_min = 10.0;
    model.m_axisX->m_max = 0.0;

    // Back by a span of -10: the lower bound would be 20, the upper one 10.
    model.slotScrollBack();

    QCOMPARE(axisText(*model.m_axisX), QString("[10,20] zoomed"));
}

void TestZoomScroll::scrollBeyondAllNumbersStays()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    const double largest = std::numeric_limits<double>::max();
    model.m_axisX->assignRange(-largest, largest);

    model.slotScrollForward();

    QCOMPARE(model.m_axisX->m_min, -largest);
    QCOMPARE(model.m_axisX->m_max, largest);
    QVERIFY(model.m_axisX->m_zoomed);
    QCOMPARE(model.m_undoStack->count(), 1);
}

void TestZoomScroll::scrollsTheAxisAloneWithoutSamples()
{
    OpenModel model;
    addSeries(model, "a");
    model.m_axisX->assignRange(0.0, 100.0);

    model.slotScrollBack();
    QCOMPARE(axesText(model), QString("[-100,0] zoomed [0,100]"));
    model.slotScrollForward();
    QCOMPARE(axesText(model), QString("[0,100] zoomed [0,100]"));
}

void TestZoomScroll::scrollsToNoEdgeWithoutSamples_data()
{
    QTest::addColumn<Slot>("scroll");

    QTest::newRow("begin") << Slot(&OpenModel::slotScrollToBegin);
    QTest::newRow("end") << Slot(&OpenModel::slotScrollToEnd);
}

void TestZoomScroll::scrollsToNoEdgeWithoutSamples()
{
    QFETCH(Slot, scroll);
    OpenModel model;
    addSeries(model, "a");
    QVERIFY(settled(model));
    model.m_axisX->assignRange(1000.0, 1100.0);

    (model.*scroll)();

    QCOMPARE(axesText(model), QString("[1000,1100] [0,100]"));
    QCOMPARE(model.m_undoStack->count(), 0);
    QVERIFY(!model.updatePointsInProgress());
}

void TestZoomScroll::edgeOfTheDataIsFinite()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a");
    model.addValues(series, {newValue(-qInf(), 1.0), newValue(20.0, 1.0), newValue(60.0, 1.0),
                             newValue(qQNaN(), 1.0)});
    model.m_axisX->assignRange(0.0, 40.0);

    model.slotScrollToBegin();
    QCOMPARE(axisText(*model.m_axisX), QString("[20,60] zoomed"));
    model.slotScrollToEnd();
    QCOMPARE(axisText(*model.m_axisX), QString("[40,80] zoomed"));
}

void TestZoomScroll::scrollIsPushedBeforeTheCalculation()
{
    RecordingModel model;
    QVERIFY(addHundred(model));
    model.takeCalls();

    model.slotScrollBack();

    QCOMPARE(model.takeCalls(), QString("actions"));
    QVERIFY(model.updatePointsInProgress());
}

void TestZoomScroll::undoZoomLetsAllAxesFollow()
{
    RecordingModel model;
    PlainSeries *a = addHundred(model);
    PlainSeries *b = addHundred(model, "b");
    setZoomed(*model.m_axisX, 10.0, 20.0);
    setZoomed(*a->m_axisY, 30.0, 40.0);
    setZoomed(*b->m_axisY, 50.0, 60.0);
    model.takeCalls();

    model.undoZoom();

    QCOMPARE(axesText(model), QString("[0,100] [0,100] [0,100]"));
    QCOMPARE(model.takeCalls(), QString("y:a|y:b|x"));
    QCOMPARE(model.m_undoStack->count(), 0);
    QVERIFY(model.updatePointsInProgress());
}

void TestZoomScroll::undoZoomPassesOverSeriesWithoutAxis()
{
    RecordingModel model;
    PlainSeries *a = addHundred(model);
    PlainSeries *b = addHundred(model, "b");
    setZoomed(*b->m_axisY, 50.0, 60.0);
    delete a->m_axisY;
    a->m_axisY = nullptr;
    model.m_series.prepend(nullptr);
    model.takeCalls();

    model.undoZoom();
    model.m_series.removeFirst();

    QCOMPARE(axisText(*b->m_axisY), QString("[0,100]"));
    QCOMPARE(model.takeCalls(), QString("y:b|x"));
    QVERIFY(settled(model));
}

void TestZoomScroll::undoZoomIsAStepOfItsOwn()
{
    CountingModel model;
    QVERIFY(addHundred(model));
    model.slotZoomIn();
    const QString zoomed = axesText(model);
    QCOMPARE(model.m_undoneZooms, 0);

    model.m_undoZoomAction->trigger();
    QCOMPARE(model.m_undoneZooms, 1);
    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));
    QCOMPARE(model.m_undoStack->count(), 2);
    QCOMPARE(model.m_undoStack->text(1), QString("\"Undo zoom\""));

    model.m_undoAction->trigger();
    QCOMPARE(axesText(model), zoomed);
}

void TestZoomScroll::dragIsOneStep()
{
    OpenModel model;
    const PlainSeries *series = addHundred(model);
    ChartWidget *pane = model.mainChart();
    const QRectF plot = plotOf(model);

    emit pane->beginMove();
    for (int i = 0; i < 3; ++i) {
        // A tenth to the right, a fifth up.
        emit pane->zoomChanged(plot, partOf(plot, 0.1, -0.2, 1.0, 1.0), ChartWidget::ZoomTransient);
        QVERIFY(settled(model));
        QCOMPARE(model.m_undoStack->count(), 0);
    }
    emit pane->endMove();

    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(model.m_moveCommands.isEmpty());
    QVERIFY(hasRange(*model.m_axisX, 30.0, 130.0));
    QVERIFY(hasRange(*series->m_axisY, 60.0, 160.0));
    const QString after = axesText(model);
    model.m_undoStack->undo();
    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));
    model.m_undoStack->redo();
    QCOMPARE(axesText(model), after);
}

void TestZoomScroll::secondBeginForgetsTheFirst()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    const QRectF plot = plotOf(model);
    int deaths = 0;

    model.slotBeginMove();
    model.m_moveCommands.append(new MortalCommand(&model, deaths));
    model.slotZoomChanged(plot, partOf(plot, 0.0, 0.0, 0.5, 1.0), ChartWidget::ZoomTransient);
    QVERIFY(settled(model));
    const QString between = axesText(model);
    QCOMPARE(deaths, 0);

    model.slotBeginMove();
    QCOMPARE(deaths, 1);
    QCOMPARE(model.m_moveCommands.size(), 1);
    model.slotZoomChanged(plot, partOf(plot, 0.0, 0.0, 0.5, 1.0), ChartWidget::ZoomTransient);
    model.slotEndMove();

    QCOMPARE(model.m_undoStack->count(), 1);
    model.m_undoStack->undo();
    QCOMPARE(axesText(model), between);
}

void TestZoomScroll::endPassesOverNullCommands()
{
    OpenModel model;
    QVERIFY(addHundred(model));
    model.m_moveCommands.append(nullptr);
    model.m_moveCommands.append(new ScaleCommand(&model));
    model.m_moveCommands.append(nullptr);

    model.slotEndMove();

    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(model.m_moveCommands.isEmpty());
}

void TestZoomScroll::endWithoutBeginDoesNothing()
{
    OpenModel model;
    QVERIFY(addHundred(model));

    model.slotEndMove();

    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestZoomScroll::endPushesDuringACalculation()
{
    BusyChart chart;
    QVERIFY(chart.isBusy);
    const QRectF plot = plotOf(chart.model);

    chart.model.slotBeginMove();
    chart.model.slotZoomChanged(plot, partOf(plot, 0.5, 0.0, 1.0, 1.0), ChartWidget::ZoomTransient);
    chart.model.slotEndMove();

    // The parked step is not in the state that the command has.
    QCOMPARE(chart.model.m_undoStack->count(), 1);
    QCOMPARE(commandAt(chart.model, 0).m_newParamsX.min, 0.0);
    QVERIFY(chart.end());
    QVERIFY(hasRange(*chart.model.m_axisX, 50.0, 150.0));
    QCOMPARE(commandAt(chart.model, 0).m_newParamsX.min, 0.0);
    QCOMPARE(chart.model.m_undoStack->count(), 1);
}

void TestZoomScroll::parkedZoomWaitsForTheLastSeries()
{
    OpenModel model;
    auto *a = addHundred<GatedSeries>(model);
    auto *b = addHundred<GatedSeries>(model, "b");
    a->closeGate();
    b->closeGate();
    model.updateCharts();
    QVERIFY(a->waitForWorker() && b->waitForWorker());
    const QString before = axesText(model);

    model.slotZoomIn();
    QCOMPARE(axesText(model), before);
    QCOMPARE(model.m_undoStack->count(), 0);
    QCOMPARE(model.m_pendingCommands.size(), 1);

    QSignalSpy finished(a, SIGNAL(updatePointsFinished()));
    a->openGate();
    QVERIFY(finished.wait());
    QCOMPARE(axesText(model), before);
    QCOMPARE(model.m_undoStack->count(), 0);

    b->openGate();
    QTRY_COMPARE(model.m_undoStack->count(), 1);
    QVERIFY(hasRange(*model.m_axisX, 25.0, 75.0));
    QVERIFY(hasRange(*a->m_axisY, 25.0, 75.0));
    QVERIFY(hasRange(*b->m_axisY, 25.0, 75.0));
    QVERIFY(settled(model));
    QVERIFY(model.m_pendingCommands.isEmpty());
    QCOMPARE(model.m_undoStack->count(), 1);
    model.m_undoStack->undo();
    QCOMPARE(axesText(model), before);
}

void TestZoomScroll::parkedTransientZoomLeavesNoStep()
{
    BusyChart chart;
    QVERIFY(chart.isBusy);
    const QRectF plot = plotOf(chart.model);

    chart.model.slotZoomChanged(plot, partOf(plot, 0.0, 0.0, 0.5, 1.0), ChartWidget::ZoomTransient);
    QCOMPARE(axesText(chart.model), QString("[0,100] [0,100]"));
    QVERIFY(chart.model.m_pendingCommands.isEmpty());

    QVERIFY(chart.end());
    QVERIFY(hasRange(*chart.model.m_axisX, 0.0, 50.0));
    QCOMPARE(chart.model.m_undoStack->count(), 0);
}

void TestZoomScroll::parkedZoomsArriveInOrder()
{
    BusyChart chart;
    QVERIFY(chart.isBusy);

    // Up, then twice as much about the centre of what is there then; the other way round the range
    // of Y would be [150,350].
    chart.model.slotScrollUp();
    chart.model.slotZoomOutY();
    chart.model.slotZoomInX();
    QCOMPARE(axesText(chart.model), QString("[0,100] [0,100]"));
    QCOMPARE(chart.model.m_pendingCommands.size(), 3);
    QCOMPARE(chart.model.m_undoStack->count(), 0);

    QVERIFY(chart.end());
    QVERIFY(hasRange(*chart.model.m_axisX, 25.0, 75.0));
    QVERIFY(hasRange(*chart.series->m_axisY, 50.0, 250.0));
    // All end in one state, so that they are one step.
    QCOMPARE(chart.model.m_undoStack->count(), 1);
    chart.model.m_undoStack->undo();
    QCOMPARE(axesText(chart.model), QString("[0,100] [0,100]"));
}

void TestZoomScroll::parkedZoomsKeepTheirNames()
{
    BusyChart chart;
    QVERIFY(chart.isBusy);
    OpenModel &model = chart.model;
    model.updateActions();

    model.m_zoomInAction->trigger();
    model.mainChart()->m_commandText = "Select area";
    emit model.mainChart()->zoomChanged(plotOf(model), partOf(plotOf(model), 0.0, 0.0, 0.5, 0.5),
                                        1);
    model.slotZoomOut();

    QStringList texts;
    for (const ScaleCommand *command : qAsConst(model.m_pendingCommands)) {
        texts.append(command->text());
    }
    QCOMPARE(texts, (QStringList{"\"Zoom in\"", "\"Select area\"", ""}));
    QVERIFY(chart.end());
    QCOMPARE(model.m_undoStack->text(0), QString("\"Zoom in\""));
}

void TestZoomScroll::scrollDoesNotWaitForACalculation_data()
{
    QTest::addColumn<Slot>("scroll");
    QTest::addColumn<QString>("axes");

    const auto addRow = [](const char *name, Slot scroll, const char *axes) {
        QTest::newRow(name) << scroll << QString(axes);
    };
    addRow("back", &OpenModel::slotScrollBack, "[-100,0] zoomed [0,100]");
    addRow("forward", &OpenModel::slotScrollForward, "[100,200] zoomed [0,100]");
    addRow("to begin", &OpenModel::slotScrollToBegin, "[0,100] zoomed [0,100]");
    addRow("to end", &OpenModel::slotScrollToEnd, "[50,150] zoomed [0,100]");
}

void TestZoomScroll::scrollDoesNotWaitForACalculation()
{
    QFETCH(Slot, scroll);
    QFETCH(QString, axes);
    BusyChart chart;
    QVERIFY(chart.isBusy);
    const QTransform matrix = chart.series->m_matrix;

    (chart.model.*scroll)();

    QCOMPARE(axesText(chart.model), axes);
    QCOMPARE(chart.model.m_undoStack->count(), 1);
    QVERIFY(chart.model.m_pendingCommands.isEmpty());
    QVERIFY(chart.model.m_chartsUpdatePending);
    QCOMPARE(chart.series->m_matrix, matrix);
    QVERIFY(chart.end());
    QCOMPARE(axesText(chart.model), axes);
}

void TestZoomScroll::undoZoomDoesNotWaitForACalculation()
{
    BusyChart chart;
    QVERIFY(chart.isBusy);
    setZoomed(*chart.model.m_axisX, 10.0, 20.0);
    setZoomed(*chart.series->m_axisY, 30.0, 40.0);

    chart.model.slotUndoZoom();

    QCOMPARE(axesText(chart.model), QString("[0,100] [0,100]"));
    QCOMPARE(chart.model.m_undoStack->count(), 1);
    QVERIFY(chart.model.m_chartsUpdatePending);
    QVERIFY(chart.end());
}

QTEST_MAIN(TestZoomScroll)
#include "tst_zoomscroll.moc"
