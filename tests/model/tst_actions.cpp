#include "model/abstractchartmodel.h"

#include "support/limitedseries.h"
#include "support/modelsetup.h"
#include "support/opendynamicmodel.h"
#include "support/paintcounter.h"
#include "support/popupwatcher.h"
#include "views/chartcursor.h"

#include <QAction>
#include <QActionGroup>
#include <QContextMenuEvent>
#include <QIcon>
#include <QMenu>
#include <QPointer>
#include <QSet>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>
#include <QUndoStack>

#include <iterator>
#include <memory>

using Permission = bool LimitedSeries::*;

Q_DECLARE_METATYPE(Permission)

namespace {

using Model = AbstractChartModel;

struct ActionRow
{
    QAction *Model::*action;
    const char *text;
    const char *image;
    bool checkable;
    bool checked;
    QActionGroup *Model::*group;
    bool enabled;     ///< In a model without series.
    const char *call; ///< What SlotRecorder writes down when it is triggered.
};

constexpr QActionGroup *Model::*NoGroup = nullptr;

const ActionRow Actions[] = {
    {&Model::m_removeSeriesAction, "Remove series", "list-remove.svg", false, false, NoGroup, true,
     "remove series"},
    {&Model::m_removeAllSeriesAction, "Remove all series", "edit-clear.svg", false, false, NoGroup,
     true, "remove all series"},
    {&Model::m_clearPointsAction, "Clear points", "points-clear.svg", false, false, NoGroup, true,
     "clear points"},
    {&Model::m_adjustColumnsAction, "Adjust columns width", "resize-horizontal.svg", false, false,
     NoGroup, true, "resize columns"},
    {&Model::m_singleModeAction, "Combine", "chart.svg", true, true, &Model::m_chartModeGroup, true,
     ""},
    {&Model::m_multiModeAction, "Separate", "chart2x.svg", true, false, &Model::m_chartModeGroup,
     true, "save|charts"},
    {&Model::m_addChartAction, "Add chart", "chart-add.svg", false, false, NoGroup, false,
     "charts"},
    {&Model::m_removeChartAction, "Remove empty charts", "chart-remove.svg", false, false, NoGroup,
     false, "save|charts"},
    {&Model::m_selectModeAction, "Select area", "ftrectangle.svg", true, true,
     &Model::m_mouseModeGroup, true, ""},
    {&Model::m_moveModeAction, "Move", "ftmove.svg", true, false, &Model::m_mouseModeGroup, true,
     ""},
    {&Model::m_zoomInAction, "Zoom in", "zoom_in.svg", false, false, NoGroup, false, "zoom in"},
    {&Model::m_zoomOutAction, "Zoom out", "zoom_out.svg", false, false, NoGroup, false, "zoom out"},
    {&Model::m_zoomInXAction, "Zoom in (X axis)", "zoom_in_x.svg", false, false, NoGroup, false,
     "zoom in x"},
    {&Model::m_zoomOutXAction, "Zoom out (X axis)", "zoom_out_x.svg", false, false, NoGroup, false,
     "zoom out x"},
    {&Model::m_zoomInYAction, "Zoom in (Y axis)", "zoom_in_y.svg", false, false, NoGroup, false,
     "zoom in y"},
    {&Model::m_zoomOutYAction, "Zoom out (Y axis)", "zoom_out_y.svg", false, false, NoGroup, false,
     "zoom out y"},
    {&Model::m_undoZoomAction, "Undo zoom", "zoom_undo.svg", false, false, NoGroup, false,
     "undo zoom"},
    {&Model::m_scrollDownAction, "Scroll down", "go-down.svg", false, false, NoGroup, false,
     "scroll down"},
    {&Model::m_scrollToBeginAction, "Scroll to begin", "go-first.svg", false, false, NoGroup, false,
     "scroll to begin"},
    {&Model::m_scrollBackAction, "Scroll backward", "go-previous.svg", false, false, NoGroup, false,
     "scroll back"},
    {&Model::m_pauseAction, "Pause", "media-playback-pause.svg", true, false, NoGroup, false,
     "pause on"},
    {&Model::m_scrollForwardAction, "Scroll forward", "go-next.svg", false, false, NoGroup, false,
     "scroll forward"},
    {&Model::m_scrollToEndAction, "Scroll to end", "go-last.svg", false, false, NoGroup, false,
     "scroll to end"},
    {&Model::m_scrollUpAction, "Scroll up", "go-up.svg", false, false, NoGroup, false, "scroll up"},
    {&Model::m_adjustSizeAction, "Adjust size", "adjust-y.svg", false, false, NoGroup, false,
     "adjust size"},
    {&Model::m_undoAction, "Undo action", "edit-undo.svg", false, false, NoGroup, false, ""},
    {&Model::m_redoAction, "Redo action", "edit-redo.svg", false, false, NoGroup, false, ""},
};

/// Writes down which slots its actions reach; the virtual ones do nothing else.
class SlotRecorder : public OpenModel
{
public:
    SlotRecorder()
    {
        connect(this, &Model::resizeColumnsToContents, this, [this] { note("resize columns"); });
        connect(this, &Model::adjustSize, this, [this] { note("adjust size"); });
        connect(this, &Model::savePosition, this, [this] { note("save"); });
        connect(this, &Model::chartCountChanged, this, [this] { note("charts"); });
    }

    QStringList m_calls;

    void slotRemoveSeries() override { note("remove series"); }
    void slotRemoveAllSeries() override { note("remove all series"); }
    void slotClearPoints() override { note("clear points"); }

protected:
    void slotZoomIn() override { note("zoom in"); }
    void slotZoomOut() override { note("zoom out"); }
    void slotZoomInX() override { note("zoom in x"); }
    void slotZoomOutX() override { note("zoom out x"); }
    void slotZoomInY() override { note("zoom in y"); }
    void slotZoomOutY() override { note("zoom out y"); }
    void slotUndoZoom() override { note("undo zoom"); }
    void slotScrollToBegin() override { note("scroll to begin"); }
    void slotScrollToEnd() override { note("scroll to end"); }
    void slotScrollBack() override { note("scroll back"); }
    void slotScrollForward() override { note("scroll forward"); }
    void slotScrollUp() override { note("scroll up"); }
    void slotScrollDown() override { note("scroll down"); }
    void slotPause(bool paused) override { note(paused ? "pause on" : "pause off"); }

private:
    void note(const char *call) { m_calls.append(call); }
};

/// A model whose legend has a menu of its own.
class OwnMenuModel : public OpenModel
{
public:
    void addActionsToContextMenu(QMenu &menu) override
    {
        for (QAction *action : qAsConst(m_menuActions)) {
            menu.addAction(action);
        }
    }

    QList<QAction *> m_menuActions;
};

/// The actions that updateActions() rules, those that are enabled, in the order of its table.
QString ruledText(const Model &model)
{
    const QPair<const char *, QAction *> rules[] = {
        {"remove", model.m_removeChartAction},  {"adjust", model.m_adjustSizeAction},
        {"in", model.m_zoomInAction},           {"inX", model.m_zoomInXAction},
        {"inY", model.m_zoomInYAction},         {"out", model.m_zoomOutAction},
        {"outX", model.m_zoomOutXAction},       {"outY", model.m_zoomOutYAction},
        {"undo", model.m_undoZoomAction},       {"down", model.m_scrollDownAction},
        {"begin", model.m_scrollToBeginAction}, {"back", model.m_scrollBackAction},
        {"pause", model.m_pauseAction},         {"forward", model.m_scrollForwardAction},
        {"end", model.m_scrollToEndAction},     {"up", model.m_scrollUpAction},
    };
    QStringList names;
    for (const auto &[name, action] : rules) {
        if (action->isEnabled()) {
            names.append(name);
        }
    }
    return names.join(' ');
}

/// The series of each pane from the top: "a b|c|".
QString panesText(const Model &model)
{
    QStringList panes;
    for (const ChartWidget *pane : model.m_charts) {
        QStringList names;
        const QList<AbstractChartSeries *> all = pane->seriesList();
        for (const AbstractChartSeries *series : all) {
            names.append(series->m_name);
        }
        panes.append(names.join(' '));
    }
    return panes.join('|');
}

/// A legend as the application has it: the view is the model's parent.
struct Legend
{
    Legend()
    {
        model->setParent(&view);
        view.setGeometry(100, 100, 300, 200);
    }

    QTreeView view;
    OwnMenuModel *model = new OwnMenuModel;
};

const QPoint ClickedPoint(20, 30);

} // namespace

class TestActions : public QObject
{
    Q_OBJECT

private slots:
    void actionLooksAsDesigned_data() { addActionRows(); }
    void actionLooksAsDesigned();
    void actionReachesItsSlot_data() { addActionRows(); }
    void actionReachesItsSlot();
    void pauseTellsItsState();
    void modeActionsExcludeEachOther();
    void undoAndRedoFollowTheStack();
    void dynamicModelStartsWithAllRuledActionsOff();

    void toolBarListIsFilledOnRequest();
    void toolBarShowsFourSeparators();
    void secondConfigurationAppendsAll();

    void ruleEnablesActions_data();
    void ruleEnablesActions();
    void pauseAsksTheSettings_data();
    void pauseAsksTheSettings();
    void firstSeriesTurnsActionsOn_data() { pauseAsksTheSettings_data(); }
    void firstSeriesTurnsActionsOn();
    void legendActionsAreNeverDisabled();
    void addChartFollowsTheMode();
    void samplesLeaveActionsAlone();

    void emptyPanesCountInMultiModeOnly_data();
    void emptyPanesCountInMultiModeOnly();
    void multiModeGivesEachSeriesAPane();
    void firstPaneSurvivesAllModes();
    void multiModeSeparatesGatheredSeries();
    void sameModeAgainChangesNothing_data();
    void sameModeAgainChangesNothing();
    void modeSwitchRedraws_data();
    void modeSwitchRedraws();
    void modeSwitchSetsActions();
    void addChartAppendsAnEmptyPane();
    void addedPaneInSingleModeGoesWithTheNextSynchronization();
    void removeChartTakesEmptyPanes();
    void newSeriesDrivesEmptyPanesOut();
    void newSeriesTakesTheOnlyPane();
    void removedSeriesTakesItsPaneWithIt_data();
    void removedSeriesTakesItsPaneWithIt();
    void settingDecidesOnThePaneThatADropEmpties_data();
    void settingDecidesOnThePaneThatADropEmpties();
    void mouseModeIsSetAndNothingElse();

    void selectionMarksSeries_data();
    void selectionMarksSeries();
    void selectionPassesOverNullEntries();
    void selectionRepaints();
    void cursorStandsInAllPanes();

    void legendMenuShowsSeriesActions();
    void derivedModelChangesTheLegendMenu();
    void legendMenuStaysAway_data();
    void legendMenuStaysAway();
    void paneMenuShowsTheToolBarListWithoutSeries();

private:
    static void addActionRows();
};

void TestActions::addActionRows()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(std::size(Actions)); ++row) {
        QTest::newRow(Actions[row].text) << row;
    }
}

void TestActions::actionLooksAsDesigned()
{
    constexpr int Extent = 48; // pixels
    QFETCH(int, row);
    const ActionRow &expected = Actions[row];
    OpenModel model;
    const QAction *action = model.*expected.action;

    QCOMPARE(action->text().trimmed(), QString(expected.text));
    QVERIFY(!action->icon().isNull());
    const QImage image = action->icon().pixmap(Extent).toImage();
    QVERIFY(!image.isNull());
    QCOMPARE(image, QIcon(QString(":/chart/images/") + expected.image).pixmap(Extent).toImage());
    QCOMPARE(action->isCheckable(), expected.checkable);
    QCOMPARE(action->isChecked(), expected.checked);
    QActionGroup *group = expected.group ? model.*expected.group : nullptr;
    QCOMPARE(action->actionGroup(), group);
    QCOMPARE(action->parent(), group ? static_cast<QObject *>(group) : &model);
    QCOMPARE(action->isEnabled(), expected.enabled);
    QVERIFY(action->shortcut().isEmpty());
    QCOMPARE(action->toolTip().trimmed(), QString(expected.text));
    QCOMPARE(action->statusTip(), QString());
}

void TestActions::actionReachesItsSlot()
{
    QFETCH(int, row);
    const ActionRow &expected = Actions[row];
    SlotRecorder model;
    QAction *action = model.*expected.action;
    action->setEnabled(true);

    action->trigger();

    QCOMPARE(model.m_calls.join('|'), QString(expected.call));
}

void TestActions::pauseTellsItsState()
{
    SlotRecorder model;
    model.m_pauseAction->setEnabled(true);

    model.m_pauseAction->trigger();
    model.m_pauseAction->trigger();

    QCOMPARE(model.m_calls.join('|'), QString("pause on|pause off"));
}

void TestActions::modeActionsExcludeEachOther()
{
    OpenModel model;
    QCOMPARE(model.m_chartModeGroup->parent(), &model);
    QCOMPARE(model.m_mouseModeGroup->parent(), &model);

    model.m_multiModeAction->trigger();
    model.m_moveModeAction->trigger();

    QVERIFY(model.m_multiModeAction->isChecked() && !model.m_singleModeAction->isChecked());
    QVERIFY(model.m_moveModeAction->isChecked() && !model.m_selectModeAction->isChecked());
    model.m_multiModeAction->trigger();
    QVERIFY(model.m_multiModeAction->isChecked());
}

void TestActions::undoAndRedoFollowTheStack()
{
    OpenModel model;
    addSeries(model, "a", {0.0, 8.0});
    QVERIFY(recalculated(model));
    model.m_zoomInAction->setEnabled(true);
    model.m_zoomInAction->trigger();
    QVERIFY(model.m_undoAction->isEnabled() && !model.m_redoAction->isEnabled());
    QCOMPARE(model.m_undoAction->text(), QString("Undo action \"Zoom in\""));

    model.m_undoAction->trigger();
    QVERIFY(!model.m_undoAction->isEnabled() && model.m_redoAction->isEnabled());
    QCOMPARE(model.m_redoAction->text(), QString("Redo action \"Zoom in\""));
    QCOMPARE(axesText(model), QString("[0,1] [0,100]"));

    model.m_redoAction->trigger();
    QVERIFY(hasRange(*model.m_axisX, 0.25, 0.75));
}

void TestActions::dynamicModelStartsWithAllRuledActionsOff()
{
    const OpenDynamicModel model;

    QCOMPARE(ruledText(model), QString());
    QVERIFY(model.m_singleModeAction->isChecked());
    QVERIFY(model.m_selectModeAction->isChecked());
    QVERIFY(!model.m_pauseAction->isChecked());
}

void TestActions::toolBarListIsFilledOnRequest()
{
    OpenModel model;
    QVERIFY(model.m_actions.isEmpty());

    model.configureActions();

    QCOMPARE(model.m_actions.size(), 28);
    QCOMPARE(actionsText(model.m_actions),
             QString("Combine, Separate, |, Add chart, Remove empty charts, Adjust size, |, "
                     "Select area, Move, |, Zoom in, Zoom out, Zoom in (X axis), "
                     "Zoom out (X axis), Zoom in (Y axis), Zoom out (Y axis), Undo zoom, |, "
                     "Scroll down, Scroll to begin, Scroll backward, Pause, Scroll forward, "
                     "Scroll to end, Scroll up, |, %1, %2")
                 .arg(model.m_undoAction->text(), model.m_redoAction->text()));
    QSet<QAction *> separators;
    for (QAction *action : qAsConst(model.m_actions)) {
        if (action->isSeparator()) {
            separators.insert(action);
            QCOMPARE(action->parent(), &model);
        }
    }
    QCOMPARE(separators.size(), 4);
    QCOMPARE(model.m_actions.at(17), model.m_actions.at(25));
    QCOMPARE(model.m_actions.at(0), model.m_singleModeAction);
    QCOMPARE(model.m_actions.at(20), model.m_scrollBackAction);
    QCOMPARE(model.m_actions.at(26), model.m_undoAction);
    QCOMPARE(model.m_actions.at(27), model.m_redoAction);
}

void TestActions::toolBarShowsFourSeparators()
{
    OpenModel model;
    model.configureActions();
    QToolBar bar;

    bar.addActions(model.m_actions);

    QList<int> places;
    const QList<QAction *> shown = bar.actions();
    for (int i = 0; i < shown.size(); ++i) {
        if (shown.at(i)->isSeparator()) {
            places.append(i);
        }
    }
    QCOMPARE(shown.size(), 27);
    QCOMPARE(places, (QList<int>{2, 6, 9, 24}));
    QCOMPARE(shown.at(16), model.m_undoZoomAction);
    QCOMPARE(shown.at(17), model.m_scrollDownAction);
    QCOMPARE(shown.at(25), model.m_undoAction);
}

void TestActions::secondConfigurationAppendsAll()
{
    OpenModel model;
    model.configureActions();
    model.configureActions();

    QCOMPARE(model.m_actions.size(), 56);
    QCOMPARE(actionsText(model.m_actions.mid(28)), actionsText(model.m_actions.mid(0, 28)));
}

void TestActions::ruleEnablesActions_data()
{
    QTest::addColumn<double>("span");
    QTest::addColumn<Permission>("missing");
    QTest::addColumn<QString>("enabled");

    const Permission none = nullptr;
    const QString scroll = " undo down begin back forward end up";
    QTest::newRow("all") << 1.0 << none << "in inX inY out outX outY" + scroll;
    QTest::newRow("X too narrow") << 0.0 << none << "inY out outX outY" + scroll;
    QTest::newRow("X too wide") << 1e9 << none << "in inX inY outY" + scroll;
    QTest::newRow("not in X") << 1.0 << &LimitedSeries::m_allowsInX << "inY out outX outY" + scroll;
    QTest::newRow("not in Y") << 1.0 << &LimitedSeries::m_allowsInY << "inX out outX outY" + scroll;
    QTest::newRow("not out") << 1.0 << &LimitedSeries::m_allowsOut
                             << "in inX inY outX outY" + scroll;
    QTest::newRow("not out X") << 1.0 << &LimitedSeries::m_allowsOutX
                               << "in inX inY out outY" + scroll;
    QTest::newRow("not out Y") << 1.0 << &LimitedSeries::m_allowsOutY
                               << "in inX inY out outX" + scroll;
}

void TestActions::ruleEnablesActions()
{
    QFETCH(double, span);
    QFETCH(Permission, missing);
    QFETCH(QString, enabled);
    OpenModel model;
    auto *series = addSeries<LimitedSeries>(model, "a");
    model.m_axisX->assignRange(0.0, span);
    if (missing) {
        series->*missing = false;
    }

    model.updateActions();

    QCOMPARE(ruledText(model), enabled);
}

void TestActions::pauseAsksTheSettings_data()
{
    QTest::addColumn<bool>("dynamicGrid");

    QTest::newRow("sliding") << true;
    QTest::newRow("jumping") << false;
}

void TestActions::pauseAsksTheSettings()
{
    QFETCH(bool, dynamicGrid);
    OpenDynamicModel model;
    // Removed below without a command that would own it.
    const std::unique_ptr<PlainSeries> series(addSeries(model, "a"));
    model.m_settings.dynamicGrid = dynamicGrid;
    model.setDynamicGrid(!dynamicGrid); // Not what the rule looks at.

    model.updateActions();
    QCOMPARE(model.m_pauseAction->isEnabled(), dynamicGrid);

    model.completeRemoveAllSeries();
    QVERIFY(!model.m_pauseAction->isEnabled());
    model.m_undoStack->clear();
}

void TestActions::firstSeriesTurnsActionsOn()
{
    QFETCH(bool, dynamicGrid);
    OpenModel model;
    model.m_settings.dynamicGrid = dynamicGrid;

    model.addSeries(new PlainSeries("a"));

    // X has no width yet, so it cannot be zoomed into.
    QCOMPARE(ruledText(model), QString("inY out outX outY undo down begin back %1forward end up")
                                   .arg(dynamicGrid ? "pause " : ""));
}

void TestActions::legendActionsAreNeverDisabled()
{
    OpenModel model;
    const auto allEnabled = [&model] {
        return model.m_removeSeriesAction->isEnabled() &&
               model.m_removeAllSeriesAction->isEnabled() &&
               model.m_clearPointsAction->isEnabled() && model.m_adjustColumnsAction->isEnabled();
    };
    QVERIFY(allEnabled());
    addSeries(model, "a");
    QVERIFY(allEnabled());
    model.slotMultiMode();
    model.removeAllSeries();
    QVERIFY(allEnabled());
}

void TestActions::addChartFollowsTheMode()
{
    OpenModel model;
    addSeries(model, "a");
    model.updateActions();
    QVERIFY(!model.m_addChartAction->isEnabled());

    model.m_multiModeAction->trigger();
    QVERIFY(model.m_addChartAction->isEnabled());
    model.m_addChartAction->setEnabled(false);
    model.updateActions(); // No rule of its table.
    QVERIFY(!model.m_addChartAction->isEnabled());
    model.m_addChartAction->setEnabled(true);

    model.m_singleModeAction->trigger();
    QVERIFY(!model.m_addChartAction->isEnabled());
}

void TestActions::samplesLeaveActionsAlone()
{
    RecordingModel model;
    PlainSeries *series = addSeries(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();

    model.addValue(series, newValue(5.0, 1.0));
    QCOMPARE(model.takeCalls(), QString("y:a|x"));

    // With a step on the stack that is rewritten they are looked at.
    model.slotScrollToEnd();
    model.undoZoom();
    QVERIFY(settled(model));
    model.takeCalls();
    model.addValue(series, newValue(6.0, 1.0));
    QCOMPARE(model.takeCalls(), QString("y:a|x|actions"));
}

void TestActions::emptyPanesCountInMultiModeOnly_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("hasSeries");
    QTest::addColumn<int>("panes");
    QTest::addColumn<bool>("hasEmpty");

    const int single = Model::SingleMode;
    const int multi = Model::MultiMode;
    QTest::newRow("single, one with series") << single << true << 1 << false;
    QTest::newRow("single, two") << single << true << 2 << false;
    QTest::newRow("multi, none") << multi << false << 0 << false;
    QTest::newRow("multi, one with series") << multi << true << 1 << false;
    QTest::newRow("multi, one without") << multi << false << 1 << false;
    QTest::newRow("multi, two") << multi << true << 2 << true;
    QTest::newRow("multi, two without series") << multi << false << 2 << true;
}

void TestActions::emptyPanesCountInMultiModeOnly()
{
    QFETCH(int, mode);
    QFETCH(bool, hasSeries);
    QFETCH(int, panes);
    QFETCH(bool, hasEmpty);
    OpenModel model;
    if (hasSeries) {
        addSeries(model, "a");
    }
    model.m_chartMode = mode;
    while (model.m_charts.size() < panes) {
        model.appendChart(-1);
    }
    while (model.m_charts.size() > panes) {
        delete model.m_charts.takeLast();
    }

    QCOMPARE(model.hasEmptyCharts(), hasEmpty);
    model.updateActions();
    QCOMPARE(model.m_removeChartAction->isEnabled(), hasEmpty);
}

void TestActions::multiModeGivesEachSeriesAPane()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    QCOMPARE(panesText(model), QString("a b c"));
    ChartWidget *first = model.mainChart();

    model.m_multiModeAction->trigger();

    QCOMPARE(model.m_chartMode, int(Model::MultiMode));
    QCOMPARE(panesText(model), QString("a|b|c"));
    QCOMPARE(model.mainChart(), first);
}

void TestActions::firstPaneSurvivesAllModes()
{
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    model.slotMultiMode();
    const QPointer<ChartWidget> first = model.m_charts.at(0);
    const QPointer<ChartWidget> second = model.m_charts.at(1);

    model.m_singleModeAction->setChecked(false);
    model.m_singleModeAction->trigger();
    QCOMPARE(model.m_chartMode, int(Model::SingleMode));
    QCOMPARE(panesText(model), QString("a b c"));
    QVERIFY(first && !second);

    model.slotMultiMode();
    QCOMPARE(panesText(model), QString("a|b|c"));
    QCOMPARE(model.mainChart(), first.data());
}

void TestActions::multiModeSeparatesGatheredSeries()
{
    OpenModel model;
    addSeries(model, "a");
    AbstractChartSeries *b = addSeries(model, "b");
    model.slotMultiMode();
    AbstractChartSeries *c = addSeries(model, "c");
    b->m_chart = c->m_chart;
    model.slotRemoveChart();
    QCOMPARE(panesText(model), QString("a|b c")); // Left alone as the user gathered them.

    model.slotSingleMode();
    model.slotMultiMode();

    QCOMPARE(panesText(model), QString("a|b|c"));
}

void TestActions::sameModeAgainChangesNothing_data()
{
    QTest::addColumn<bool>("multi");

    QTest::newRow("single") << false;
    QTest::newRow("multi") << true;
}

void TestActions::sameModeAgainChangesNothing()
{
    QFETCH(bool, multi);
    RecordingModel model;
    addSeries(model, "a");
    addSeries(model, "b");
    if (multi) {
        model.slotMultiMode();
    }
    QVERIFY(settled(model));
    const QList<ChartWidget *> panes = model.m_charts;
    model.takeCalls();

    if (multi) {
        model.slotMultiMode();
    } else {
        model.slotSingleMode();
    }

    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(model.m_charts, panes);
    QVERIFY(!model.updatePointsInProgress());
}

void TestActions::modeSwitchRedraws_data()
{
    sameModeAgainChangesNothing_data();
}

void TestActions::modeSwitchRedraws()
{
    QFETCH(bool, multi);
    RecordingModel model;
    addSeries(model, "a");
    addSeries(model, "b");
    if (!multi) {
        model.slotMultiMode();
    }
    QVERIFY(settled(model));
    model.takeCalls();

    if (multi) {
        model.slotMultiMode();
    } else {
        model.slotSingleMode();
    }

    QCOMPARE(model.takeCalls(), QString("savePosition|charts|actions"));
    QVERIFY(model.updatePointsInProgress());
}

void TestActions::modeSwitchSetsActions()
{
    OpenModel model;
    addSeries(model, "a");
    addSeries(model, "b");
    const auto statesText = [&model] {
        return QString("add %1, remove %2, adjust %3")
            .arg(model.m_addChartAction->isEnabled())
            .arg(model.m_removeChartAction->isEnabled())
            .arg(model.m_adjustSizeAction->isEnabled());
    };
    QCOMPARE(statesText(), QString("add 0, remove 0, adjust 0"));

    model.m_multiModeAction->trigger();
    QCOMPARE(statesText(), QString("add 1, remove 0, adjust 1"));
    model.m_addChartAction->trigger();
    QCOMPARE(statesText(), QString("add 1, remove 1, adjust 1"));

    model.m_singleModeAction->trigger();
    QCOMPARE(statesText(), QString("add 0, remove 0, adjust 0"));
}

void TestActions::addChartAppendsAnEmptyPane()
{
    RecordingModel model;
    addSeries(model, "a");
    addSeries(model, "b");
    model.slotMultiMode();
    QVERIFY(settled(model));
    model.takeCalls();

    model.slotAddChart();

    QCOMPARE(panesText(model), QString("a|b|"));
    QCOMPARE(model.takeCalls(), QString("charts|actions"));
    QVERIFY(model.updatePointsInProgress());
}

void TestActions::addedPaneInSingleModeGoesWithTheNextSynchronization()
{
    OpenModel model;
    addSeries(model, "a");

    model.slotAddChart();
    QCOMPARE(panesText(model), QString("a|"));

    model.synchronizeChart();
    QCOMPARE(panesText(model), QString("a"));
}

void TestActions::removeChartTakesEmptyPanes()
{
    RecordingModel model;
    addSeries(model, "a");
    addSeries(model, "b");
    model.slotMultiMode();
    model.appendChart(0);
    model.slotAddChart();
    QVERIFY(settled(model));
    QCOMPARE(panesText(model), QString("|a|b|"));
    model.takeCalls();

    model.m_removeChartAction->trigger();

    QCOMPARE(panesText(model), QString("a|b"));
    QCOMPARE(model.takeCalls(), QString("savePosition|charts|actions"));
    QVERIFY(model.updatePointsInProgress());
    QVERIFY(!model.m_removeChartAction->isEnabled());
}

void TestActions::newSeriesDrivesEmptyPanesOut()
{
    OpenModel model;
    addSeries(model, "a");
    model.slotMultiMode();
    model.slotAddChart();
    const QPointer<ChartWidget> empty = model.m_charts.last();

    addSeries(model, "b");

    QCOMPARE(panesText(model), QString("a|b"));
    QVERIFY(!empty);
}

void TestActions::newSeriesTakesTheOnlyPane()
{
    OpenModel model;
    model.slotMultiMode();
    ChartWidget *only = model.mainChart();

    addSeries(model, "a");

    QCOMPARE(panesText(model), QString("a"));
    QCOMPARE(model.mainChart(), only);
}

void TestActions::removedSeriesTakesItsPaneWithIt_data()
{
    QTest::addColumn<bool>("autoRemove");

    QTest::newRow("setting on") << true;
    QTest::newRow("setting off") << false;
}

void TestActions::removedSeriesTakesItsPaneWithIt()
{
    QFETCH(bool, autoRemove);
    OpenModel model;
    model.m_settings.autoRemoveEmptyChart = autoRemove;
    PlainSeries *a = addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    model.slotMultiMode();

    model.removeSeries(a);
    QCOMPARE(panesText(model), QString("b"));
    QCOMPARE(model.m_charts.size(), 1);

    model.removeSeries(b);
    QCOMPARE(panesText(model), QString());
    QCOMPARE(model.m_charts.size(), 1);
}

void TestActions::settingDecidesOnThePaneThatADropEmpties_data()
{
    QTest::addColumn<bool>("autoRemove");
    QTest::addColumn<QString>("panes");
    QTest::addColumn<QString>("calls");
    QTest::addColumn<bool>("canRemove");

    // The redraw comes before the last look at the actions.
    QTest::newRow("on") << true << "a b"
                        << "savePosition|charts|actions|actions*" << false;
    QTest::newRow("off") << false << "a b|"
                         << "actions*" << true;
}

void TestActions::settingDecidesOnThePaneThatADropEmpties()
{
    QFETCH(bool, autoRemove);
    QFETCH(QString, panes);
    QFETCH(QString, calls);
    QFETCH(bool, canRemove);
    RecordingModel model;
    model.m_settings.autoRemoveEmptyChart = autoRemove;
    addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    model.slotMultiMode();
    QVERIFY(settled(model));
    model.takeCalls();

    b->m_chart = model.mainChart();
    emit model.mainChart()->seriesParentChanged();

    QCOMPARE(model.takeCalls(), calls);
    QCOMPARE(panesText(model), panes);
    QCOMPARE(model.m_removeChartAction->isEnabled(), canRemove);
}

void TestActions::mouseModeIsSetAndNothingElse()
{
    RecordingModel model;
    addSeries(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();
    QCOMPARE(model.m_mouseMode, int(ChartWidget::SelectMode));

    model.m_moveModeAction->trigger();
    QCOMPARE(model.m_mouseMode, int(ChartWidget::MoveMode));
    model.m_selectModeAction->trigger();
    QCOMPARE(model.m_mouseMode, int(ChartWidget::SelectMode));

    QCOMPARE(model.takeCalls(), QString());
    QVERIFY(!model.updatePointsInProgress());
}

void TestActions::selectionMarksSeries_data()
{
    QTest::addColumn<int>("firstRow");
    QTest::addColumn<int>("lastRow");
    QTest::addColumn<int>("firstColumn");
    QTest::addColumn<QString>("selected");

    QTest::newRow("one") << 1 << 1 << 0 << "b";
    QTest::newRow("several") << 1 << 2 << 0 << "b c";
    QTest::newRow("another column only") << 1 << 1 << 1 << "";
}

void TestActions::selectionMarksSeries()
{
    QFETCH(int, firstRow);
    QFETCH(int, lastRow);
    QFETCH(int, firstColumn);
    QFETCH(QString, selected);
    OpenModel model;
    for (const char *name : {"a", "b", "c"}) {
        addSeries(model, name);
    }
    model.m_series.first()->m_selected = true;
    const QItemSelection selection(model.index(firstRow, firstColumn), model.index(lastRow, 1));
    // Not looked at: what is not in the latest selection is not selected.
    const QItemSelection deselection(model.index(0, 0), model.index(2, 1));

    model.slotSelectionChanged(selection, deselection);

    QStringList names;
    for (const AbstractChartSeries *series : qAsConst(model.m_series)) {
        if (series->m_selected) {
            names.append(series->m_name);
        }
    }
    QCOMPARE(names.join(' '), selected);
    model.slotSelectionChanged(QItemSelection(), QItemSelection());
    QVERIFY(!model.selectedSeries());
}

void TestActions::selectionPassesOverNullEntries()
{
    OpenModel model;
    const PlainSeries *series = addSeries(model, "a");
    QVERIFY(settled(model));
    model.m_series.prepend(nullptr);

    model.slotSelectionChanged(QItemSelection(model.index(1, 0), model.index(1, 1)),
                               QItemSelection());
    model.m_series.removeFirst();

    QVERIFY(series->m_selected);
}

void TestActions::selectionRepaints()
{
    OpenModel model;
    addSeries(model, "a");
    PaintCounter counter(model.mainChart());
    model.mainChart()->show();
    QTRY_VERIFY(counter.m_paints > 0);
    QVERIFY(settled(model));
    QCoreApplication::processEvents();
    counter.m_paints = 0;

    model.slotSelectionChanged(QItemSelection(), QItemSelection());

    QTRY_VERIFY(counter.m_paints > 0);
    QVERIFY(!model.updatePointsInProgress());
}

void TestActions::cursorStandsInAllPanes()
{
    OpenModel model;
    model.appendChart(-1);
    model.appendChart(-1);
    model.m_charts.insert(1, nullptr); // Passed over.

    emit model.m_charts.at(2)->cursorStateChanged(50.0, true);
    model.m_charts.removeAt(1);

    for (const ChartWidget *pane : qAsConst(model.m_charts)) {
        QVERIFY(pane->m_cursor->m_visible);
        QCOMPARE(pane->m_cursor->m_position, 50.0);
    }
    model.slotCursorStateChanged(20.0, false);
    for (const ChartWidget *pane : qAsConst(model.m_charts)) {
        QVERIFY(!pane->m_cursor->m_visible);
    }
}

void TestActions::legendMenuShowsSeriesActions()
{
    QTreeView view;
    view.setGeometry(100, 100, 300, 200);
    auto *model = new OpenModel;
    model->setParent(&view);
    addSeries(*model, "a");
    PopupWatcher watcher;

    model->slotContextMenuRequested(ClickedPoint);

    QCOMPARE(watcher.m_count, 1);
    QCOMPARE(watcher.m_text,
             QString("Remove series, Remove all series, Clear points, |, Adjust columns width"));
    QCOMPARE(watcher.m_actions.at(0), model->m_removeSeriesAction);
    QCOMPARE(watcher.m_actions.at(4), model->m_adjustColumnsAction);
    QCOMPARE(watcher.m_pos, view.viewport()->mapToGlobal(ClickedPoint));
}

void TestActions::derivedModelChangesTheLegendMenu()
{
    Legend legend;
    addSeries(*legend.model, "a");
    legend.model->m_menuActions.append(legend.model->m_clearPointsAction);
    PopupWatcher watcher;

    legend.model->slotContextMenuRequested(ClickedPoint);

    QCOMPARE(watcher.m_text, QString("Clear points"));
}

void TestActions::legendMenuStaysAway_data()
{
    QTest::addColumn<bool>("hasSeries");
    QTest::addColumn<bool>("isEditable");
    QTest::addColumn<bool>("hasView");
    QTest::addColumn<bool>("hasActions");

    QTest::newRow("no series") << false << true << true << true;
    QTest::newRow("series not editable") << true << false << true << true;
    QTest::newRow("no view as parent") << true << true << false << true;
    QTest::newRow("nothing to show") << true << true << true << false;
}

void TestActions::legendMenuStaysAway()
{
    QFETCH(bool, hasSeries);
    QFETCH(bool, isEditable);
    QFETCH(bool, hasView);
    QFETCH(bool, hasActions);
    Legend legend;
    QWidget noView;
    if (hasSeries) {
        addSeries(*legend.model, "a");
    }
    legend.model->m_seriesEditable = isEditable;
    if (!hasView) {
        legend.model->setParent(&noView);
    }
    if (hasActions) {
        legend.model->m_menuActions.append(legend.model->m_removeSeriesAction);
    }
    PopupWatcher watcher;

    legend.model->slotContextMenuRequested(ClickedPoint);

    QCOMPARE(watcher.m_count, 0);
}

void TestActions::paneMenuShowsTheToolBarListWithoutSeries()
{
    OpenModel model;
    model.configureActions();
    QToolBar bar;
    bar.addActions(model.m_actions);
    PopupWatcher watcher;

    QContextMenuEvent event(QContextMenuEvent::Mouse, ClickedPoint, ClickedPoint);
    QCoreApplication::sendEvent(model.mainChart(), &event);

    QCOMPARE(watcher.m_count, 1);
    QCOMPARE(watcher.m_actions, bar.actions());
}

QTEST_MAIN(TestActions)
#include "tst_actions.moc"
