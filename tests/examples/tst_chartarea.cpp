#include "common/chartarea.h"

#include "common/screenshot.h"
#include "model/staticchartmodel.h"
#include "support/modelsetup.h"
#include "support/quietplatform.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QHeaderView>
#include <QScrollBar>
#include <QSettings>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {

constexpr int LowestPlot = 60; // pixels, as a pane has at least
const QSize AreaSize(600, 800);

/// An area with a model of its own and so many series in it, each in a pane if \p separate says so.
struct Area
{
    explicit Area(int seriesCount, bool separate = false)
        : model(new StaticChartModel("QUARVChart5 tests", "area"))
        , toolBar(area.chart().toolBar())
    {
        model->m_seriesEditable = false; // as many as a test wants
        area.resize(AreaSize);
        area.setModel(model);
        for (int i = 0; i < seriesCount; ++i) {
            addSeries(*model, QString::number(i), {1.0, 2.0});
        }
        if (separate) {
            model->m_multiModeAction->trigger();
        }
    }

    void show()
    {
        const QuietPlatform quiet;
        area.show();
    }

    int legendHeight() const { return area.chart().sizes().constLast(); }

    ChartArea area;
    StaticChartModel *model; ///< The area's.
    std::unique_ptr<QToolBar> toolBar;
};

} // namespace

class TestChartArea : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void givesLegendTheHeightOfItsRows_data();
    void givesLegendTheHeightOfItsRows();
    void leavesChartTheGreaterPart();
    void fitsLegendWhenSeriesCome();
    void keepsHeightsThatUserHasChosen();
    void keepsHeightsOfEarlierTime();
    void givesHeightOfWindowToPanes();
    void scrollsPanesThatDoNotFit();
    void tellsWhenChartsAreReady();
    void survivesDeathOfModel();
};

void TestChartArea::init()
{
    QSettings("QUARVChart5 tests", "area").clear();
}

void TestChartArea::givesLegendTheHeightOfItsRows_data()
{
    QTest::addColumn<int>("rows");

    QTest::newRow("three rows") << 3;
    QTest::newRow("six rows") << 6;
}

void TestChartArea::givesLegendTheHeightOfItsRows()
{
    QFETCH(int, rows);

    Area area(rows);
    area.show();
    const QTreeView *legend = area.area.chart().legendView();
    QCOMPARE(area.legendHeight(), legend->header()->height() + rows * legend->sizeHintForRow(0) +
                                      2 * legend->frameWidth());
    QVERIFY(!legend->verticalScrollBar()->isVisible());
}

void TestChartArea::leavesChartTheGreaterPart()
{
    Area area(40);
    area.show();
    QCOMPARE(area.legendHeight(), AreaSize.height() / 3);
}

void TestChartArea::fitsLegendWhenSeriesCome()
{
    Area area(3);
    area.show();
    const int before = area.legendHeight();
    addSeries(*area.model, "one more");
    addSeries(*area.model, "and another");

    QCOMPARE(area.legendHeight(), before + 2 * area.area.chart().legendView()->sizeHintForRow(0));
}

void TestChartArea::keepsHeightsThatUserHasChosen()
{
    Area area(3);
    area.show();
    // A handle that is dragged announces itself so.
    area.area.chart().setSizes({500, 300});
    emit area.area.chart().splitterMoved(500, 1);
    const QList<int> chosen = area.area.chart().sizes();
    addSeries(*area.model, "one more");

    QCOMPARE(area.area.chart().sizes(), chosen);
}

void TestChartArea::keepsHeightsOfEarlierTime()
{
    QList<int> chosen;
    {
        Area area(3);
        area.show();
        area.area.chart().setSizes({400, 400});
        chosen = area.area.chart().sizes();
        area.area.chart().saveSettings();
    }
    Area area(3);
    area.show();
    QCOMPARE(area.area.chart().sizes(), chosen);
}

void TestChartArea::givesHeightOfWindowToPanes()
{
    Area area(3);
    area.show();
    const int before = area.legendHeight();
    area.area.resize(AreaSize.width(), AreaSize.height() + 200);

    QCOMPARE(area.legendHeight(), before);
}

void TestChartArea::scrollsPanesThatDoNotFit()
{
    Area area(20, true);
    area.show();

    for (const ChartWidget *pane : qAsConst(area.model->m_charts)) {
        QVERIFY(pane->fullChartRect(QRectF()).height() >= LowestPlot);
    }
    QTRY_VERIFY(area.area.verticalScrollBar()->isVisible());
}

void TestChartArea::tellsWhenChartsAreReady()
{
    Area area(2);
    QSignalSpy ready(&area.area, SIGNAL(chartsReady()));
    showOffScreen(area.area);
    QVERIFY(ready.wait());

    const AbstractChartSeries &series = *area.model->m_series.constFirst();
    const QRectF plot = series.m_chart->chartRect(QRectF());
    QCOMPARE(series.map(QPointF(1.0, 0.0)).x(), plot.x() + plot.width());
}

void TestChartArea::survivesDeathOfModel()
{
    Area area(2);
    area.show();
    delete area.model;
    area.area.resize(400, 400);
    area.area.hide();
    area.show();
    QVERIFY(!area.area.chart().m_model);
}

QTEST_MAIN(TestChartArea)
#include "tst_chartarea.moc"
