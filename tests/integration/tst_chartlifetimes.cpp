#include "editors/qtcolorbutton.h"
#include "editors/serieseditor.h"
#include "editors/seriespropertiesdialog.h"
#include "model/staticchartmodel.h"
#include "support/boxanswer.h"
#include "support/dialoganswer.h"
#include "support/gatedseries.h"
#include "support/plainseries.h"
#include "support/popupwatcher.h"
#include "support/quietplatform.h"
#include "support/recordingmodel.h"
#include "support/settingsfolder.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QColorDialog>
#include <QContextMenuEvent>
#include <QMainWindow>
#include <QPointer>
#include <QSpinBox>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>
#include <QUndoStack>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace {

constexpr int SeriesCount = 2;
constexpr int NewWidth = 7; // pixels, of a line

/**
 * A chart with two series, each in a pane of its own, and the toolbar, which belongs to nobody.
 * Whatever of it has not died goes with it.
 */
class LivingChart
{
public:
    enum Kind { Editable, Final };

    explicit LivingChart(Kind kind = Editable, QWidget *parent = nullptr,
                         const QString &name = "chart")
        : m_chart(new MultiChart(parent))
        , m_model(new StaticChartModel("QUARVChart5 tests", "tests"))
        , m_toolBar(m_chart->toolBar())
    {
        m_chart->setObjectName(name);
        m_chart->setModel(m_model);
        m_model->m_seriesEditable = kind == Editable;
        for (GatedSeries *&series : m_series) {
            series = new GatedSeries(name);
            series->m_deaths = &m_deaths;
            m_model->addSeries(series);
            m_model->addValues(series, {newValue(0, 10), newValue(1, 20)});
        }
        m_model->m_multiModeAction->trigger();
        m_chart->resize(600, 500);
    }
    Q_DISABLE_COPY_MOVE(LivingChart)
    ~LivingChart()
    {
        delete m_chart;
        delete m_toolBar;
    }

    bool show()
    {
        QWidget *window = m_chart->window();
        window->resize(600, 500);
        window->show();
        window->activateWindow();
        return QTest::qWaitForWindowActive(window) && settled(*m_model);
    }

    /// Opens the editor of the second series, as every way to its sample does.
    SeriesEditor *openEditor()
    {
        const QModelIndex sample = m_model->index(1, AbstractChartModel::LineColumn);
        m_chart->legendView()->setCurrentIndex(sample);
        return qobject_cast<SeriesEditor *>(m_chart->legendView()->indexWidget(sample));
    }

    void closeEditor()
    {
        const QModelIndex sample = m_model->index(1, AbstractChartModel::LineColumn);
        m_chart->legendView()->closePersistentEditor(sample);
    }

    QPointer<MultiChart> m_chart;
    QPointer<StaticChartModel> m_model;
    QPointer<QToolBar> m_toolBar;
    GatedSeries *m_series[SeriesCount] = {};
    int m_deaths = 0; ///< Of series.
};

using Blow = std::function<void(LivingChart &)>;

void killChart(LivingChart &living)
{
    delete living.m_chart;
}

void killModel(LivingChart &living)
{
    delete living.m_model;
}

void killLegend(LivingChart &living)
{
    delete living.m_chart->legendView();
}

void removeSeries(LivingChart &living)
{
    living.m_model->removeSeries(living.m_series[1]);
}

void removeAllSeries(LivingChart &living)
{
    living.m_model->removeAllSeries();
}

/// Feeds a series from another thread until it is told to stop.
class Feeder
{
public:
    Feeder(AbstractChartModel &model, AbstractChartSeries &series)
        : m_thread([this, &model, &series] { run(model, series); })
    {
    }
    ~Feeder()
    {
        m_stop = true;
        m_thread.join();
    }

    bool waitForSamples(int count)
    {
        return QTest::qWaitFor([&] { return m_count >= count; });
    }

private:
    void run(AbstractChartModel &model, AbstractChartSeries &series)
    {
        while (!m_stop) {
            const int x = ++m_count;
            model.addValue(&series, newValue(x, x % 100));
            model.update();
        }
    }

    std::atomic<bool> m_stop{false};
    std::atomic<int> m_count{0};
    std::thread m_thread; // last: it uses what stands above
};

} // namespace

Q_DECLARE_METATYPE(Blow)
Q_DECLARE_METATYPE(LivingChart::Kind)

/**
 * Parts of a chart die in every order, and while a calculation, a thread, a menu or a dialog still
 * runs: nothing crashes, nothing leaks, and what lives on works on.
 */
class TestChartLifetimes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keepsTwoChartsApart();
    void keepsSettingsOfTwoChartsApart();
    void takesModelAlong();
    void outlivesModel();
    void outlivesLegend();
    void outlivesPaneDeletedByHand();
    void diesDuringCalculation_data();
    void diesDuringCalculation();
    void diesAfterItsFeederHasStopped();
    void toolBarOutlivesChart();
    void outlivesToolBar();
    void closesEditorOfWhatDies_data();
    void closesEditorOfWhatDies();
    void propertiesSurvive_data();
    void propertiesSurvive();
    void propertiesWriteSeriesThatUndoHasBroughtBack();
    void colorDialogSurvives_data();
    void colorDialogSurvives();
    void legendMenuSurvives_data();
    void legendMenuSurvives();
    void paneMenuSurvives();
    void questionSurvives_data();
    void questionSurvives();

private:
    static void addBlows();

    std::unique_ptr<QuietPlatform> m_quiet;
    std::unique_ptr<SettingsFolder> m_settings;
};

void TestChartLifetimes::init()
{
    m_quiet = std::make_unique<QuietPlatform>();
    m_settings = std::make_unique<SettingsFolder>();
}

void TestChartLifetimes::cleanup()
{
    m_settings.reset();
    m_quiet.reset();
}

void TestChartLifetimes::keepsTwoChartsApart()
{
    LivingChart one(LivingChart::Editable, nullptr, "one");
    LivingChart two(LivingChart::Editable, nullptr, "two");
    QVERIFY(one.show());
    QVERIFY(two.show());

    one.m_chart->legendView()->setCurrentIndex(one.m_model->index(1, 1));
    QCOMPARE(one.m_model->selectedSeries(), one.m_series[1]);
    QCOMPARE(two.m_model->selectedSeries(), two.m_series[0]);

    one.m_model->m_singleModeAction->trigger();
    QCOMPARE(one.m_model->m_charts.size(), 1);
    QCOMPARE(one.m_chart->count(), 2);
    QCOMPARE(two.m_model->m_charts.size(), 2);
    QCOMPARE(two.m_chart->count(), 3);

    removeSeries(one);
    QCOMPARE(one.m_model->m_undoStack->count(), 3);
    QCOMPARE(two.m_model->m_undoStack->count(), 2);
    QCOMPARE(two.m_model->m_series.size(), 2);

    two.m_model->m_moveModeAction->trigger();
    QCOMPARE(one.m_model->m_mouseMode, int(ChartWidget::SelectMode));

    killChart(one);
    QCOMPARE(one.m_deaths, SeriesCount);
    QCOMPARE(two.m_deaths, 0);
    two.m_model->updateCharts();
    QVERIFY(settled(*two.m_model));
}

void TestChartLifetimes::keepsSettingsOfTwoChartsApart()
{
    {
        LivingChart one(LivingChart::Editable, nullptr, "one");
        LivingChart two(LivingChart::Editable, nullptr, "two");
        one.m_model->m_settings.visibleInterval = 1;
        two.m_model->m_settings.visibleInterval = 2;
        two.m_chart->saveSettings();
        one.m_chart->saveSettings();
    }
    const LivingChart one(LivingChart::Editable, nullptr, "one");
    const LivingChart two(LivingChart::Editable, nullptr, "two");
    QCOMPARE(one.m_model->m_settings.visibleInterval, 1.0);
    QCOMPARE(two.m_model->m_settings.visibleInterval, 2.0);
}

void TestChartLifetimes::takesModelAlong()
{
    LivingChart living;
    QVERIFY(living.show());
    removeSeries(living); // One series dies in the model, the other in its history.
    const QPointer<ChartWidget> pane = living.m_model->mainChart();

    killChart(living);

    QVERIFY(!living.m_model);
    QVERIFY(!pane);
    QCOMPARE(living.m_deaths, SeriesCount);
}

void TestChartLifetimes::outlivesModel()
{
    LivingChart living;
    QVERIFY(living.show());
    const QPointer<ChartWidget> pane = living.m_model->mainChart();

    killModel(living);

    QCOMPARE(living.m_deaths, SeriesCount);
    QVERIFY(!living.m_chart->m_model);
    QVERIFY(pane);
    QVERIFY(living.m_toolBar->actions().isEmpty());
    living.m_chart->resize(500, 400);
    living.m_chart->saveSettings();
    living.m_chart->slotChartCountChanged();
    living.m_chart->slotSavePosition();
    living.m_chart->slotAdjustSize();
    living.m_chart->slotSplitterMoved();
    living.m_chart->slotResizeColumnsToContents();
    QTest::mouseMove(pane);
    QTest::mouseClick(pane, Qt::LeftButton);
    QTest::mouseClick(living.m_chart->legendView()->viewport(), Qt::LeftButton);
    living.m_chart->grab();
    killChart(living);
    QVERIFY(!pane);
}

void TestChartLifetimes::outlivesLegend()
{
    LivingChart living;
    QVERIFY(living.show());

    killLegend(living);

    QCOMPARE(living.m_deaths, SeriesCount);
    QVERIFY(!living.m_chart->m_model);
    living.m_chart->resize(500, 400);
    living.m_chart->saveSettings();
    living.m_chart->slotAdjustSize();
    living.m_chart->slotResizeColumnsToContents();
    living.m_chart->grab();
}

void TestChartLifetimes::outlivesPaneDeletedByHand()
{
    LivingChart living;
    QVERIFY(living.show());
    AbstractChartModel &model = *living.m_model;

    delete model.m_charts.at(1);

    QCOMPARE(model.m_charts.size(), 1);
    QCOMPARE(living.m_chart->count(), 2);
    living.m_chart->slotAdjustSize();
    model.updateCharts();
    QVERIFY(settled(model));
    // The series that has lost its pane gets another with the next change.
    auto *third = new PlainSeries("third");
    model.addSeries(third);
    QCOMPARE(model.m_charts.size(), 3);
    QCOMPARE(living.m_chart->count(), 4);
    for (AbstractChartSeries *series : qAsConst(model.m_series)) {
        QVERIFY(model.m_charts.contains(series->m_chart));
    }
    QVERIFY(settled(model));
}

void TestChartLifetimes::diesDuringCalculation_data()
{
    QTest::addColumn<Blow>("blow");

    QTest::newRow("chart") << Blow(killChart);
    QTest::newRow("model") << Blow(killModel);
    QTest::newRow("legend") << Blow(killLegend);
}

void TestChartLifetimes::diesDuringCalculation()
{
    QFETCH(Blow, blow);
    LivingChart living;
    QVERIFY(living.show());
    for (GatedSeries *series : living.m_series) {
        series->closeGate();
    }
    living.m_model->updateCharts();
    for (GatedSeries *series : living.m_series) {
        QVERIFY(series->waitForWorker());
    }

    blow(living);

    QCOMPARE(living.m_deaths, SeriesCount);
    QCoreApplication::processEvents();
}

void TestChartLifetimes::diesAfterItsFeederHasStopped()
{
    LivingChart living;
    QVERIFY(living.show());
    {
        Feeder first(*living.m_model, *living.m_series[0]);
        Feeder second(*living.m_model, *living.m_series[1]);
        QVERIFY(first.waitForSamples(100));
        QVERIFY(second.waitForSamples(100));
    }

    killChart(living); // with what the feeders have posted still on its way

    QCOMPARE(living.m_deaths, SeriesCount);
    QCoreApplication::processEvents();
}

void TestChartLifetimes::toolBarOutlivesChart()
{
    LivingChart living;
    QMainWindow window;
    window.addToolBar(living.m_toolBar);
    window.show();
    QVERIFY(living.show());
    QVERIFY(!living.m_toolBar->actions().isEmpty());

    killChart(living);

    QVERIFY(living.m_toolBar);
    QVERIFY(living.m_toolBar->actions().isEmpty());
    window.grab();
}

void TestChartLifetimes::outlivesToolBar()
{
    LivingChart living;
    QVERIFY(living.show());
    delete living.m_toolBar;

    living.m_model->m_singleModeAction->trigger();
    living.m_model->m_undoAction->trigger();

    QCOMPARE(living.m_model->m_series.size(), 1);
    QVERIFY(settled(*living.m_model));
    living.m_chart->saveSettings();
}

void TestChartLifetimes::addBlows()
{
    QTest::addColumn<LivingChart::Kind>("kind");
    QTest::addColumn<Blow>("blow");
    QTest::addColumn<int>("deaths");

    QTest::newRow("chart") << LivingChart::Editable << Blow(killChart) << 2;
    QTest::newRow("model") << LivingChart::Editable << Blow(killModel) << 2;
    QTest::newRow("legend") << LivingChart::Editable << Blow(killLegend) << 2;
    QTest::newRow("series, undoable") << LivingChart::Editable << Blow(removeSeries) << 0;
    QTest::newRow("series, for good") << LivingChart::Final << Blow(removeSeries) << 1;
    QTest::newRow("all series, undoable") << LivingChart::Editable << Blow(removeAllSeries) << 0;
    QTest::newRow("all series, for good") << LivingChart::Final << Blow(removeAllSeries) << 2;
}

void TestChartLifetimes::closesEditorOfWhatDies_data()
{
    addBlows();
}

void TestChartLifetimes::closesEditorOfWhatDies()
{
    QFETCH(LivingChart::Kind, kind);
    QFETCH(Blow, blow);
    QFETCH(int, deaths);
    LivingChart living(kind);
    QVERIFY(living.show());
    const QPointer<SeriesEditor> editor = living.openEditor();
    QVERIFY(editor);

    QTimer::singleShot(0, this, [&] { blow(living); });

    QTRY_VERIFY(!editor);
    QCOMPARE(living.m_deaths, deaths);
}

void TestChartLifetimes::propertiesSurvive_data()
{
    addBlows();
    QTest::newRow("editor") << LivingChart::Editable << Blow(&LivingChart::closeEditor) << 0;
}

void TestChartLifetimes::propertiesSurvive()
{
    QFETCH(LivingChart::Kind, kind);
    QFETCH(Blow, blow);
    QFETCH(int, deaths);
    for (const bool accepts : {true, false}) {
        LivingChart living(kind);
        QVERIFY(living.show());
        const QPointer<SeriesEditor> editor = living.openEditor();
        QVERIFY(editor);
        DialogAnswer<SeriesPropertiesDialog> answer{
            [&](SeriesPropertiesDialog &) { blow(living); },
            [&](SeriesPropertiesDialog &) { QTRY_VERIFY(!editor); },
            [&](SeriesPropertiesDialog &dialog) {
                dialog.findChild<QSpinBox *>("lineWidthSpinBox")->setValue(NewWidth);
                accepts ? dialog.accept() : dialog.reject();
            }};

        editor->m_seriesButton->click();

        QVERIFY(answer.isDone());
        QCOMPARE(living.m_deaths, deaths);
        if (deaths == 0) { // It stays in the history, or in the model, and can be written.
            QCOMPARE(living.m_series[1]->m_lineWidth, accepts ? NewWidth : 1);
            QCOMPARE(living.m_series[1]->m_customized, accepts);
        }
        killChart(living);
        QCOMPARE(living.m_deaths, SeriesCount);
    }
}

void TestChartLifetimes::propertiesWriteSeriesThatUndoHasBroughtBack()
{
    LivingChart living;
    QVERIFY(living.show());
    const QPointer<SeriesEditor> editor = living.openEditor();
    QVERIFY(editor);
    DialogAnswer<SeriesPropertiesDialog> answer{
        [&](SeriesPropertiesDialog &) { removeAllSeries(living); },
        [&](SeriesPropertiesDialog &) { living.m_model->m_undoAction->trigger(); },
        [&](SeriesPropertiesDialog &dialog) {
            dialog.findChild<QSpinBox *>("lineWidthSpinBox")->setValue(NewWidth);
            dialog.accept();
        }};

    editor->m_seriesButton->click();

    QVERIFY(answer.isDone());
    QCOMPARE(living.m_model->m_series.value(1), living.m_series[1]);
    QCOMPARE(living.m_series[1]->m_lineWidth, NewWidth);
    QVERIFY(living.m_series[1]->m_customized);
    SeriesEditor *next = living.openEditor();
    QVERIFY(next);
    QCOMPARE(next->m_series, living.m_series[1]);
    QVERIFY(settled(*living.m_model));
}

void TestChartLifetimes::colorDialogSurvives_data()
{
    propertiesSurvive_data();
}

void TestChartLifetimes::colorDialogSurvives()
{
    QFETCH(LivingChart::Kind, kind);
    QFETCH(Blow, blow);
    QFETCH(int, deaths);
    const QColor chosen(1, 2, 3);
    LivingChart living(kind);
    QVERIFY(living.show());
    const QPointer<SeriesEditor> editor = living.openEditor();
    QVERIFY(editor);
    DialogAnswer<QColorDialog> colors{[&](QColorDialog &) { blow(living); },
                                      [&](QColorDialog &) { QTRY_VERIFY(!editor); },
                                      [&](QColorDialog &dialog) {
                                          dialog.setCurrentColor(chosen);
                                          dialog.accept();
                                      }};
    DialogAnswer<SeriesPropertiesDialog> properties{
        [](SeriesPropertiesDialog &dialog) { dialog.findChild<QtColorButton *>()->click(); },
        [&](SeriesPropertiesDialog &dialog) {
            QCOMPARE(dialog.findChild<QtColorButton *>()->color(), chosen);
            dialog.accept();
        }};

    editor->m_seriesButton->click();

    QVERIFY(colors.isDone());
    QVERIFY(properties.isDone());
    QCOMPARE(living.m_deaths, deaths);
    if (deaths == 0) {
        QCOMPARE(living.m_series[1]->m_color, chosen);
    }
}

void TestChartLifetimes::legendMenuSurvives_data()
{
    addBlows();
}

void TestChartLifetimes::legendMenuSurvives()
{
    QFETCH(LivingChart::Kind, kind);
    QFETCH(Blow, blow);
    QFETCH(int, deaths);
    LivingChart living(kind);
    QVERIFY(living.show());
    living.m_model->m_seriesEditable = true; // else there is no menu
    PopupWatcher menus;
    menus.m_beforeClose = [&] {
        living.m_model->m_seriesEditable = kind == LivingChart::Editable;
        blow(living);
    };
    QWidget *viewport = living.m_chart->legendView()->viewport();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                            viewport->mapToGlobal(QPoint(5, 5)));

    QApplication::sendEvent(viewport, &event);

    QCOMPARE(menus.m_count, 1);
    QCOMPARE(living.m_deaths, deaths);
}

void TestChartLifetimes::paneMenuSurvives()
{
    LivingChart living;
    QVERIFY(living.show());
    PopupWatcher menus;
    menus.m_beforeClose = [&] { killChart(living); };
    ChartWidget *pane = living.m_model->mainChart();
    QContextMenuEvent event(QContextMenuEvent::Mouse, pane->rect().center(),
                            pane->mapToGlobal(pane->rect().center()));

    QApplication::sendEvent(pane, &event);

    QCOMPARE(menus.m_count, 1);
    QCOMPARE(living.m_deaths, SeriesCount);
}

void TestChartLifetimes::questionSurvives_data()
{
    QTest::addColumn<bool>("isWindow");
    QTest::addColumn<Blow>("blow");
    QTest::addColumn<int>("deaths");

    QTest::newRow("chart in a window") << false << Blow(killChart) << 2;
    QTest::newRow("chart that is the window") << true << Blow(killChart) << 2;
    QTest::newRow("model") << true << Blow(killModel) << 2;
    QTest::newRow("series") << true << Blow(removeSeries) << 0;
    QTest::newRow("all series") << true << Blow(removeAllSeries) << 0;
}

void TestChartLifetimes::questionSurvives()
{
    QFETCH(bool, isWindow);
    QFETCH(Blow, blow);
    QFETCH(int, deaths);
    for (const bool clears : {true, false}) {
        QWidget window;
        LivingChart living(LivingChart::Editable, isWindow ? nullptr : &window);
        QVERIFY(living.show());
        BoxAnswer answer(QMessageBox::Yes);
        answer.m_beforeAnswer = [&] { blow(living); };

        (clears ? living.m_model->m_clearPointsAction : living.m_model->m_removeAllSeriesAction)
            ->trigger();

        QCOMPARE(answer.m_count, 1);
        QCOMPARE(living.m_deaths, deaths);
    }
}

QTEST_MAIN(TestChartLifetimes)
#include "tst_chartlifetimes.moc"
