#include "model/abstractchartmodel.h"

#include "support/modelsetup.h"

#include <QAction>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

/// "a|b c|": the series of each pane, the panes from top to bottom.
QString panesText(const AbstractChartModel &model)
{
    QStringList panes;
    for (const ChartWidget *chart : qAsConst(model.m_charts)) {
        QStringList names;
        const QList<AbstractChartSeries *> list = chart->seriesList();
        for (const AbstractChartSeries *series : list) {
            names.append(series->m_name);
        }
        panes.append(names.join(' '));
    }
    return panes.join('|');
}

} // namespace

class TestSynchronizeChart : public QObject
{
    Q_OBJECT

private slots:
    void announcesBeforeAndAfter();
    void singleModeMakesAPaneWhereThereIsNone();
    void singleModeKeepsTheFirstPaneOnly();
    void unknownModeOnlyAnnounces();
    void multiModeDropsEmptyPanes_data();
    void multiModeDropsEmptyPanes();
    void multiModeKeepsNullPaneOfTheList();
    void multiModeFillsTheEmptyMainPaneFirst();
    void multiModeInsertsPaneAtTheRow();
    void multiModeAppendsPaneForARowBeyondThePanes();
    void multiModeKeepsSeriesTogether();
    void modesSpreadAndGatherSeries();
    void firstSeriesStaysInTheFirstPane();
    void modeThatIsSetDoesNothing();
    void emptyPanesAreKnownInMultiModeOnly();
    void modeGovernsTheActionsOfPanes();
};

void TestSynchronizeChart::announcesBeforeAndAfter()
{
    RecordingModel model;
    model.appendChart(-1);
    model.appendChart(-1);
    QVector<int> counts;
    const auto count = [&] { counts.append(model.m_charts.size()); };
    QObject::connect(&model, &AbstractChartModel::savePosition, count);
    QObject::connect(&model, &AbstractChartModel::chartCountChanged, count);
    model.takeCalls();

    model.synchronizeChart();

    QCOMPARE(model.takeCalls(), QString("savePosition|charts|actions"));
    QCOMPARE(counts, (QVector<int>{3, 1}));
}

void TestSynchronizeChart::singleModeMakesAPaneWhereThereIsNone()
{
    OpenModel model;
    PlainSeries *a = addSeries(model, "a");
    delete model.mainChart();
    QCOMPARE(model.m_charts.size(), 0);
    QVERIFY(!a->m_chart);

    model.synchronizeChart();

    QCOMPARE(panesText(model), QString("a"));
}

void TestSynchronizeChart::singleModeKeepsTheFirstPaneOnly()
{
    OpenModel model;
    PlainSeries *a = addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    ChartWidget *first = model.mainChart();
    a->m_chart = model.appendChart(-1);
    b->m_chart = model.appendChart(-1);
    const QPointer<ChartWidget> second(a->m_chart);
    const QPointer<ChartWidget> third(b->m_chart);
    model.m_series.append(nullptr);

    model.synchronizeChart();
    model.m_series.removeLast();

    QCOMPARE(model.m_charts, QList<ChartWidget *>{first});
    QCOMPARE(panesText(model), QString("a b"));
    QVERIFY(!second);
    QVERIFY(!third);
}

void TestSynchronizeChart::unknownModeOnlyAnnounces()
{
    OpenModel model;
    addSeries(model, "a");
    model.appendChart(-1);
    model.m_chartMode = 7;
    const QSignalSpy saved(&model, SIGNAL(savePosition()));
    const QSignalSpy changed(&model, SIGNAL(chartCountChanged()));

    model.synchronizeChart();

    QCOMPARE(panesText(model), QString("a|"));
    QCOMPARE(saved.count(), 1);
    QCOMPARE(changed.count(), 1);
}

void TestSynchronizeChart::multiModeDropsEmptyPanes_data()
{
    QTest::addColumn<QString>("used");      // One letter for each pane: is a series in it?
    QTest::addColumn<QString>("survivors"); // Their places in the former list.

    const auto row = [](const char *name, const char *used, const char *survivors) {
        QTest::newRow(name) << QString(used) << QString(survivors);
    };
    row("one empty pane", "-", "0");
    row("one used pane", "x", "0");
    row("used between empty ones", "-x-", "1");
    row("empty between used ones", "x-x", "02");
    row("all used", "xxx", "012");
    row("all empty", "---", "2");
    row("empty ones after a used one", "x---", "0");
    row("used one behind", "---x", "3");
}

void TestSynchronizeChart::multiModeDropsEmptyPanes()
{
    QFETCH(QString, used);
    QFETCH(QString, survivors);
    for (const bool autoRemove : {true, false}) { // Means nothing here.
        OpenModel model;
        model.m_settings.autoRemoveEmptyChart = autoRemove;
        model.m_chartMode = AbstractChartModel::MultiMode;
        while (model.m_charts.size() < used.size()) {
            model.appendChart(-1);
        }
        const QList<ChartWidget *> before = model.m_charts;
        for (int i = 0; i < used.size(); ++i) {
            if (used.at(i) == 'x') {
                auto *series = new PlainSeries;
                series->m_chart = before.at(i);
                model.m_series.append(series);
            }
        }

        model.synchronizeChart();

        QString left;
        for (const ChartWidget *chart : qAsConst(model.m_charts)) {
            left.append(QString::number(before.indexOf(const_cast<ChartWidget *>(chart))));
        }
        QCOMPARE(left, survivors);
    }
}

void TestSynchronizeChart::multiModeKeepsNullPaneOfTheList()
{
    OpenModel model;
    model.m_chartMode = AbstractChartModel::MultiMode;
    model.appendChart(-1);
    model.m_charts.prepend(nullptr);

    model.synchronizeChart();

    QCOMPARE(model.m_charts, QList<ChartWidget *>{nullptr});
}

void TestSynchronizeChart::multiModeFillsTheEmptyMainPaneFirst()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    for (AbstractChartSeries *series : qAsConst(model.m_series)) {
        series->m_chart = nullptr;
    }
    ChartWidget *main = model.mainChart();
    model.m_chartMode = AbstractChartModel::MultiMode;

    model.synchronizeChart();

    QCOMPARE(panesText(model), QString("a|b|c"));
    QCOMPARE(model.mainChart(), main);
}

void TestSynchronizeChart::multiModeInsertsPaneAtTheRow()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    model.slotMultiMode();
    model.m_series.at(0)->m_chart = model.m_series.at(2)->m_chart;
    model.synchronizeChart();
    QCOMPARE(panesText(model), QString("b|a c"));

    // The main pane is in use, so the new one stands at the row of its series, the first.
    model.m_series.at(0)->m_chart = nullptr;
    model.synchronizeChart();
    QCOMPARE(panesText(model), QString("a|b|c"));
}

void TestSynchronizeChart::multiModeAppendsPaneForARowBeyondThePanes()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c", "d"}) {
        addSeries(model, name);
    }
    model.m_chartMode = AbstractChartModel::MultiMode;
    model.m_series.at(3)->m_chart = nullptr;

    model.synchronizeChart();

    QCOMPARE(panesText(model), QString("a b c|d"));
}

void TestSynchronizeChart::multiModeKeepsSeriesTogether()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    model.slotMultiMode();
    model.m_series.at(2)->m_chart = model.m_series.at(0)->m_chart;

    model.synchronizeChart();
    QCOMPARE(panesText(model), QString("a c|b"));
    addSeries(model, "d");
    QCOMPARE(panesText(model), QString("a c|b|d"));
}

void TestSynchronizeChart::modesSpreadAndGatherSeries()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    ChartWidget *first = model.mainChart();
    QVERIFY(settled(model));

    model.slotMultiMode();
    QCOMPARE(panesText(model), QString("a|b|c"));
    QVERIFY(model.updatePointsInProgress());
    QCOMPARE(model.m_chartMode, int(AbstractChartModel::MultiMode));

    model.slotSingleMode();
    QCOMPARE(panesText(model), QString("a b c"));
    QCOMPARE(model.m_chartMode, int(AbstractChartModel::SingleMode));

    model.slotMultiMode();
    QCOMPARE(panesText(model), QString("a|b|c"));
    QCOMPARE(model.mainChart(), first);
}

void TestSynchronizeChart::firstSeriesStaysInTheFirstPane()
{
    OpenModel model;
    addSeries(model, "a");
    addSeries(model, "b");
    ChartWidget *first = model.mainChart();
    model.appendChart(-1); // Empty, so that it goes.

    model.slotMultiMode();

    QCOMPARE(panesText(model), QString("a|b"));
    QCOMPARE(model.mainChart(), first);
}

void TestSynchronizeChart::modeThatIsSetDoesNothing()
{
    OpenModel model;
    const QSignalSpy saved(&model, SIGNAL(savePosition()));
    model.slotSingleMode();
    QCOMPARE(saved.count(), 0);

    model.slotMultiMode();
    QCOMPARE(saved.count(), 1);
    model.slotMultiMode();
    QCOMPARE(saved.count(), 1);
}

void TestSynchronizeChart::emptyPanesAreKnownInMultiModeOnly()
{
    OpenModel model;
    addSeries(model, "a");
    model.appendChart(-1);
    QVERIFY(!model.hasEmptyCharts());

    model.m_chartMode = AbstractChartModel::MultiMode;
    QVERIFY(model.hasEmptyCharts());
    delete model.m_charts.last();
    QVERIFY(!model.hasEmptyCharts());
    addSeries(model, "b"); // With a pane of its own.
    QCOMPARE(panesText(model), QString("a|b"));
    QVERIFY(!model.hasEmptyCharts());
    while (!model.m_charts.isEmpty()) {
        delete model.m_charts.last();
    }
    QVERIFY(!model.hasEmptyCharts());
}

void TestSynchronizeChart::modeGovernsTheActionsOfPanes()
{
    OpenModel model;
    addSeries(model, "a");
    QVERIFY(!model.m_adjustSizeAction->isEnabled());
    QVERIFY(!model.m_removeChartAction->isEnabled());

    model.slotMultiMode();
    QVERIFY(model.m_adjustSizeAction->isEnabled());
    QVERIFY(!model.m_removeChartAction->isEnabled());
    model.appendChart(-1);
    model.updateActions();
    QVERIFY(model.m_removeChartAction->isEnabled());

    model.slotSingleMode();
    QVERIFY(!model.m_adjustSizeAction->isEnabled());
    QVERIFY(!model.m_removeChartAction->isEnabled());
}

QTEST_MAIN(TestSynchronizeChart)
#include "tst_synchronizechart.moc"
