#include "views/multichart.h"

#include "editors/seriesdelegate.h"
#include "support/modelsetup.h"
#include "support/paintcounter.h"
#include "support/popupwatcher.h"
#include "support/quietplatform.h"
#include "support/settingsfolder.h"

#include <QHeaderView>
#include <QPointer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <numeric>

namespace {

constexpr int LegendHeight = 150; // pixels, more than the legend needs
constexpr int PlotHeight = 50;    // pixels of each plot after unevenHeights()

/// A MultiChart that takes its toolbar with it, which nobody else owns here.
class OwnedMultiChart : public MultiChart
{
public:
    explicit OwnedMultiChart(const QString &name = "panel") { setObjectName(name); }
    ~OwnedMultiChart() override { delete m_toolBar; }

    using QSplitter::moveSplitter;
};

/// A model that writes down what it finds when its actions are asked for.
class WatchfulModel : public OpenModel
{
public:
    explicit WatchfulModel(MultiChart &chart)
        : m_chart(chart)
    {
    }

    void configureActions() override
    {
        m_found = QString("interval %1, layouts %2, actions %3, legend %4")
                      .arg(m_settings.visibleInterval)
                      .arg(m_chart.m_splitterStates.size())
                      .arg(m_chart.toolBar()->actions().size())
                      .arg(m_chart.legendView()->model() ? "full" : "empty");
        OpenModel::configureActions();
    }

    MultiChart &m_chart;
    QString m_found;
};

/// A MultiChart with its model, which has one series, and a number of panes. Hidden at first.
class Stage
{
public:
    explicit Stage(int panes = 1, const QString &name = "panel")
        : m_chart(name)
    {
        m_chart.setModel(m_model);
        m_model->m_chartMode = AbstractChartModel::MultiMode;
        m_series = addSeries(*m_model, "a", {0.0, 8.0}); // first: it would remove empty panes
        while (m_model->m_charts.size() < panes) {
            m_model->slotAddChart();
        }
    }

    /// Gives the panes and the legend these heights.
    bool layOut(const QList<int> &heights)
    {
        const int handles = m_chart.handleWidth() * (heights.size() - 1);
        const int sum = std::accumulate(heights.cbegin(), heights.cend(), handles);
        m_chart.resize(m_chart.width(), sum);
        m_chart.setSizes(heights);
        return m_chart.sizes() == heights;
    }

    bool show()
    {
        m_chart.show();
        return QTest::qWaitForWindowExposed(&m_chart);
    }

    /// Whether \p act makes the charts calculate anew.
    template <typename Act>
    bool recalculates(Act act)
    {
        if (!settled(*m_model)) {
            qWarning("A calculation does not end.");
        }
        act();
        const bool started = m_model->updatePointsInProgress();
        return settled(*m_model) && started;
    }

    QTreeView *legend() const { return m_chart.legendView(); }
    ChartWidget *pane(int i) const { return m_model->m_charts.at(i); }
    int spaceOf(int i) const { return pane(i)->topSpace() + pane(i)->bottomSpace(); }
    int spaces() const
    {
        int sum = 0;
        for (int i = 0; i < m_model->m_charts.size(); ++i) {
            sum += spaceOf(i);
        }
        return sum;
    }

    /// Heights of which the first pane has most, and which divide without a remainder.
    QList<int> unevenHeights() const
    {
        constexpr int LowPane = 20;
        const int panes = m_model->m_charts.size();
        QList<int> heights{spaces() + panes * PlotHeight - (panes - 1) * LowPane};
        while (heights.size() < panes) {
            heights.append(LowPane);
        }
        heights.append(LegendHeight);
        return heights;
    }

    /// What these become.
    QList<int> evenHeights() const
    {
        QList<int> heights;
        for (int i = 0; i < m_model->m_charts.size(); ++i) {
            heights.append(spaceOf(i) + PlotHeight);
        }
        heights.append(LegendHeight);
        return heights;
    }

    QuietPlatform m_quiet; // menus and windows of a limited size
    OwnedMultiChart m_chart;
    OpenModel *m_model = new OpenModel; ///< The chart owns it.
    PlainSeries *m_series = nullptr;
};

/// The widgets of a splitter from top to bottom.
QList<QWidget *> widgetsOf(const QSplitter &splitter)
{
    QList<QWidget *> widgets;
    for (int i = 0; i < splitter.count(); ++i) {
        widgets.append(splitter.widget(i));
    }
    return widgets;
}

/// The panes of the model, then the legend.
QList<QWidget *> expectedWidgets(const MultiChart &chart)
{
    QList<QWidget *> widgets;
    for (ChartWidget *pane : qAsConst(chart.m_model->m_charts)) {
        widgets.append(pane);
    }
    widgets.append(chart.legendView());
    return widgets;
}

int fontHeight(QFont font, int pixels)
{
    font.setPixelSize(pixels);
    return QFontMetrics(font).height();
}

/// Gives two panes the margins 60 + 15 and 5 + 60, or others of the same sums 75 and 65 if no font
/// has these heights.
bool setExampleMargins(Stage &stage)
{
    constexpr int UpperSum = 75;
    constexpr int LowerSum = 65;
    QFont font = stage.pane(0)->font();
    for (int large = 12; large < 40; ++large) {
        for (int small = 1; small < large; ++small) {
            if (fontHeight(font, large) - fontHeight(font, small) != UpperSum - LowerSum) {
                continue;
            }
            font.setPixelSize(large);
            stage.pane(0)->setFont(font);
            font.setPixelSize(small);
            stage.pane(1)->setFont(font);
            stage.m_model->m_axisX->m_size = UpperSum - fontHeight(font, large);
            return stage.spaceOf(0) == UpperSum && stage.spaceOf(1) == LowerSum;
        }
    }
    return false;
}

QList<int> adjusted(MultiChart &chart, QList<int> sizes)
{
    chart.adjustSizes(sizes);
    return sizes;
}

QString textOf(const QList<int> &numbers)
{
    QStringList texts;
    for (const int number : numbers) {
        texts.append(QString::number(number));
    }
    return texts.join(' ');
}

/// The keys of the store, less their group.
QStringList storedNames(const QString &group)
{
    QSettings store = SettingsFolder::store();
    store.beginGroup(group);
    return store.childKeys();
}

void callAllSlots(MultiChart &chart)
{
    chart.slotSaveSettings();
    chart.slotChartCountChanged();
    chart.slotSavePosition();
    chart.slotAdjustSize();
    chart.slotSplitterMoved();
    chart.slotResizeColumnsToContents();
    chart.saveSettings();
    QResizeEvent event(QSize(10, 10), QSize(20, 20));
    QCoreApplication::sendEvent(&chart, &event);
}

} // namespace

class TestMultiChart : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Form
    void isAnEmptyLegendAtFirst();
    void setsUpItsLegend();
    void makesAToolBarOutsideTheTree();
    void doesNothingWithoutAModel();

    // A model comes
    void ignoresNullModel();
    void loadsSettingsUnderItsName();
    void emptyNameStandsForChart();
    void loadsBeforeTheModelIsUsed();
    void restoresColumnsOfTheLegend();
    void keepsColumnsWithoutStoredState();
    void copiesStoredLayouts();
    void showsActionsInTheToolBar();
    void givesTheModelToTheLegend();
    void firstPaneTakesWhatTheLegendLeaves_data();
    void firstPaneTakesWhatTheLegendLeaves();
    void selectionReachesTheSeries();
    void modelSelectsInTheLegend();
    void legendOpensTheMenuOfTheModel();
    void modelAnnouncesPanes();
    void modelSavesPosition();
    void modelAdjustsSize();
    void modelResizesColumns();
    void appliedSettingsReachTheLegend();

    // Panes
    void standInTheOrderOfTheModel();
    void takesBackAPaneThatLeft();
    void removedPanesLeaveBeforeTheNextComes();
    void ignoresNullPanes();
    void newPaneWithoutLayoutIsAdjusted();
    void newPaneWithLayoutIsNotAdjusted();
    void collapsedLegendIsNotLaidOut();
    void refusedLayoutLeavesTheSizes();
    void layoutWithoutVisiblePaneIsAdjusted();
    void layoutOfAWidgetNeverShownIsAdjusted_data();
    void layoutOfAWidgetNeverShownIsAdjusted();
    void layoutWithoutAnythingVisibleStays();
    void divisionComesBackWithTheNumberOfPanes();

    // Heights
    void makesPlotsEquallyHigh_data();
    void makesPlotsEquallyHigh();
    void leavesTooLittleRoomToTheSplitter();
    void adjustsNothingWithoutPanes();
    void sharesOutByTheExample_data();
    void sharesOutByTheExample();
    void sharesOutWithoutAModel();
    void passesOverAPaneThatIsNotInTheSplitter();
    void entryWithoutPaneKeepsItsSize();
    void sharesOutAsThePlainWayDoes();

    // Saving
    void savesPositionIfVisible();
    void savesNoPositionIfHidden();
    void savesSettings();
    void savesLayoutEvenIfHidden();
    void savesBySlot();
    void restoresLayoutOfAnyNumberOfPanes_data();
    void restoresLayoutOfAnyNumberOfPanes();
    void sharesSettingsWithItsNamesakes();

    // Calculations
    void movedSplitterRecalculates();
    void resizeRecalculatesAndKeepsTheDivision();
    void newHeightsRecalculate();

    // Life
    void takesItsModelAlong();
    void forgetsAModelThatDies();
    void outlivesItsLegend_data();
    void outlivesItsLegend();
    void standsBesideAnother();

private:
    std::unique_ptr<SettingsFolder> m_folder;
};

void TestMultiChart::init()
{
    m_folder = std::make_unique<SettingsFolder>();
}

void TestMultiChart::cleanup()
{
    m_folder.reset();
}

void TestMultiChart::isAnEmptyLegendAtFirst()
{
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar());

    QCOMPARE(chart.objectName(), QString("MultiChart"));
    QCOMPARE(chart.size(), QSize(616, 311));
    QCOMPARE(chart.orientation(), Qt::Vertical);
    QCOMPARE(chart.windowTitle(), QString("Chart"));
    QCOMPARE(widgetsOf(chart), QList<QWidget *>{chart.legendView()});
    QVERIFY(!chart.m_model);
    QVERIFY(chart.m_splitterStates.isEmpty());
    QVERIFY(!chart.legendView()->model());

    QWidget parent;
    auto *child = new MultiChart(&parent);
    const std::unique_ptr<QToolBar> childToolBar(child->toolBar());
    QCOMPARE(child->parentWidget(), &parent);
}

void TestMultiChart::setsUpItsLegend()
{
    const OwnedMultiChart chart;
    const QTreeView *legend = chart.legendView();

    QCOMPARE(legend->objectName(), QString("legendView"));
    QVERIFY(!legend->rootIsDecorated());
    QVERIFY(!legend->itemsExpandable());
    QVERIFY(!legend->header()->sectionsMovable());
    QCOMPARE(legend->contextMenuPolicy(), Qt::CustomContextMenu);
    QVERIFY(legend->dragEnabled());
    QCOMPARE(legend->editTriggers(), QAbstractItemView::AllEditTriggers);
    const auto *delegate = qobject_cast<SeriesDelegate *>(legend->itemDelegate());
    QVERIFY(delegate);
    QCOMPARE(delegate->parent(), static_cast<const QObject *>(&chart));
}

void TestMultiChart::makesAToolBarOutsideTheTree()
{
    const OwnedMultiChart chart;

    QCOMPARE(chart.toolBar(), chart.m_toolBar);
    QCOMPARE(chart.toolBar()->objectName(), QString("chartToolBar"));
    QCOMPARE(chart.toolBar()->windowTitle(), QString("Chart toolbar"));
    QVERIFY(!chart.toolBar()->parent());
    QVERIFY(chart.toolBar()->actions().isEmpty());
}

void TestMultiChart::doesNothingWithoutAModel()
{
    const QuietPlatform quiet;
    OwnedMultiChart chart;
    callAllSlots(chart);
    chart.show();
    chart.resize(300, 200);
    callAllSlots(chart);

    QCOMPARE(widgetsOf(chart), QList<QWidget *>{chart.legendView()});
    QVERIFY(chart.m_splitterStates.isEmpty());
    QVERIFY(SettingsFolder::store().allKeys().isEmpty());
}

void TestMultiChart::ignoresNullModel()
{
    OwnedMultiChart chart;
    chart.setModel(nullptr);
    QVERIFY(!chart.m_model);
    QVERIFY(!chart.legendView()->model());

    Stage stage;
    stage.m_chart.setModel(nullptr);
    QCOMPARE(stage.m_chart.m_model, stage.m_model);
    QCOMPARE(stage.legend()->model(), stage.m_model);
}

void TestMultiChart::loadsSettingsUnderItsName()
{
    SettingsFolder::store().setValue("panel/visibleInterval", 7.25);
    SettingsFolder::store().setValue("MultiChart/visibleInterval", 8.5);

    QCOMPARE(Stage(1, "panel").m_model->m_settings.visibleInterval, 7.25);
    QCOMPARE(Stage(1, "MultiChart").m_model->m_settings.visibleInterval, 8.5);
    QCOMPARE(Stage(1, "other").m_model->m_settings.visibleInterval, 600.0);
}

void TestMultiChart::emptyNameStandsForChart()
{
    SettingsFolder::store().setValue("chart/visibleInterval", 7.25);
    Stage stage(1, QString());

    QCOMPARE(stage.m_model->m_settings.visibleInterval, 7.25);
    stage.m_model->m_settings.visibleInterval = 9.0;
    stage.m_chart.saveSettings();
    QCOMPARE(SettingsFolder::store().value("chart/visibleInterval"), QVariant(9.0));
    QCOMPARE(SettingsFolder::store().childGroups(), QStringList("chart"));
}

void TestMultiChart::loadsBeforeTheModelIsUsed()
{
    SettingsFolder::store().setValue("panel/visibleInterval", 7.25);
    SettingsFolder::store().setValue("panel/splitterState4", QByteArray("layout"));
    OwnedMultiChart chart;
    auto *model = new WatchfulModel(chart);
    chart.setModel(model);

    QCOMPARE(model->m_found, QString("interval 7.25, layouts 1, actions 0, legend empty"));
}

void TestMultiChart::restoresColumnsOfTheLegend()
{
    {
        Stage stage;
        stage.legend()->header()->resizeSection(0, 123);
        stage.m_chart.saveSettings();
    }
    QVERIFY(m_folder->moveStore());

    const Stage namesake;
    QCOMPARE(namesake.legend()->header()->sectionSize(0), 123);
    const Stage other(1, "other");
    QVERIFY(other.legend()->header()->sectionSize(0) != 123);
}

void TestMultiChart::keepsColumnsWithoutStoredState()
{
    OwnedMultiChart chart;
    chart.legendView()->header()->setDefaultSectionSize(77);
    chart.setModel(new OpenModel);

    QCOMPARE(chart.legendView()->header()->sectionSize(0), 77);
}

void TestMultiChart::copiesStoredLayouts()
{
    SettingsFolder::store().setValue("panel/splitterState4", QByteArray("four"));
    SettingsFolder::store().setValue("panel/splitterState7", QByteArray("seven"));
    Stage stage;
    const QMap<int, QByteArray> expected{{4, "four"}, {7, "seven"}};

    QCOMPARE(stage.m_chart.m_splitterStates, expected);
    stage.m_model->m_settings.splitterState.clear();
    QCOMPARE(stage.m_chart.m_splitterStates, expected);
}

void TestMultiChart::showsActionsInTheToolBar()
{
    const Stage stage;

    QCOMPARE(actionsText(stage.m_chart.toolBar()->actions()),
             QString("Combine, Separate, |, Add chart, Remove empty charts, Adjust size, |, "
                     "Select area, Move, |, Zoom in, Zoom out, Zoom in (X axis), "
                     "Zoom out (X axis), Zoom in (Y axis), Zoom out (Y axis), Undo zoom, "
                     "Scroll down, Scroll to begin, Scroll backward, Pause, Scroll forward, "
                     "Scroll to end, Scroll up, |, Undo action, Redo action"));

    QMenu paneMenu;
    paneMenu.addActions(stage.m_model->m_actions);
    QCOMPARE(stage.m_chart.toolBar()->actions(), paneMenu.actions());
}

void TestMultiChart::givesTheModelToTheLegend()
{
    const Stage stage;

    QCOMPARE(stage.m_chart.m_model, stage.m_model);
    QCOMPARE(stage.legend()->model(), stage.m_model);
    QCOMPARE(static_cast<QObject *>(stage.m_model)->parent(), stage.legend());
    QCOMPARE(widgetsOf(stage.m_chart), expectedWidgets(stage.m_chart));
    QCOMPARE(stage.m_chart.count(), 2);
}

void TestMultiChart::firstPaneTakesWhatTheLegendLeaves_data()
{
    QTest::addColumn<bool>("isShownFirst");

    QTest::newRow("model comes to a shown widget") << true;
    QTest::newRow("widget is shown with its model") << false;
}

void TestMultiChart::firstPaneTakesWhatTheLegendLeaves()
{
    QFETCH(const bool, isShownFirst);
    const QuietPlatform quiet;
    OwnedMultiChart chart;
    if (isShownFirst) {
        chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&chart));
    }
    chart.setModel(new OpenModel);
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart));
    chart.slotAdjustSize();

    const QList<int> sizes = chart.sizes();
    QCOMPARE(sizes.size(), 2);
    QVERIFY2(sizes.at(0) > 0 && sizes.at(1) > 0, qPrintable(textOf(sizes)));
    QCOMPARE(sizes.at(0) + chart.handleWidth() + sizes.at(1), chart.height());
    QCOMPARE(chart.widget(0)->height(), sizes.at(0));
}

void TestMultiChart::selectionReachesTheSeries()
{
    const Stage stage;
    const PlainSeries *second = addSeries(*stage.m_model, "b");
    QItemSelectionModel *selection = stage.legend()->selectionModel();
    const auto rows = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;

    selection->select(stage.m_model->index(1, 0), rows);
    QVERIFY(!stage.m_series->m_selected);
    QVERIFY(second->m_selected);

    selection->select(stage.m_model->index(0, 0), rows);
    QVERIFY(stage.m_series->m_selected);
    QVERIFY(!second->m_selected);
}

void TestMultiChart::modelSelectsInTheLegend()
{
    const Stage stage;
    const PlainSeries *second = addSeries(*stage.m_model, "b");

    emit stage.m_model->select(stage.m_model->index(1, 0),
                               QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);

    QCOMPARE(stage.legend()->currentIndex(), stage.m_model->index(1, 0));
    QVERIFY(second->m_selected);
    QVERIFY(!stage.m_series->m_selected);
}

void TestMultiChart::legendOpensTheMenuOfTheModel()
{
    Stage stage;
    QVERIFY(stage.show());
    PopupWatcher watcher;
    const QPoint place(7, 9);

    emit stage.legend()->customContextMenuRequested(place);

    QCOMPARE(watcher.m_text,
             QString("Remove series, Remove all series, Clear points, |, Adjust columns width"));
    QCOMPARE(watcher.m_pos, stage.legend()->viewport()->mapToGlobal(place));
}

void TestMultiChart::modelAnnouncesPanes()
{
    const Stage stage;
    ChartWidget *pane = stage.m_model->appendChart(-1);
    QCOMPARE(stage.m_chart.indexOf(pane), -1);

    emit stage.m_model->chartCountChanged();

    QCOMPARE(stage.m_chart.indexOf(pane), 1);
}

void TestMultiChart::modelSavesPosition()
{
    Stage stage;
    QVERIFY(stage.show());
    QVERIFY(stage.m_chart.m_splitterStates.isEmpty());

    emit stage.m_model->savePosition();

    QCOMPARE(stage.m_chart.m_splitterStates.keys(), QList<int>{1});
    QCOMPARE(stage.m_chart.m_splitterStates.value(1), stage.m_chart.saveState());
}

void TestMultiChart::modelAdjustsSize()
{
    Stage stage(2);
    QVERIFY(stage.layOut(stage.unevenHeights()));

    stage.m_model->m_adjustSizeAction->trigger();

    QCOMPARE(stage.m_chart.sizes(), stage.evenHeights());
}

void TestMultiChart::modelResizesColumns()
{
    const Stage stage;
    QHeaderView *header = stage.legend()->header();
    header->setStretchLastSection(false);
    const int columns = stage.m_model->columnCount();
    QCOMPARE(columns, 2);
    QList<int> expected;
    for (int i = 0; i < columns; ++i) {
        stage.legend()->resizeColumnToContents(i);
        expected.append(header->sectionSize(i));
        header->resizeSection(i, 400 + i);
    }

    stage.m_model->m_adjustColumnsAction->trigger();

    QCOMPARE((QList<int>{header->sectionSize(0), header->sectionSize(1)}), expected);
    QVERIFY2(expected.at(0) < 400 && expected.at(1) < 400, qPrintable(textOf(expected)));
}

void TestMultiChart::appliedSettingsReachTheLegend()
{
    Stage stage;
    addSeries(*stage.m_model, "b");
    QVERIFY(stage.show());
    QVERIFY(settled(*stage.m_model));
    PaintCounter paints(stage.legend()->viewport());
    paints.take();
    QSignalSpy changes(stage.m_model, &QAbstractItemModel::dataChanged);

    stage.m_model->applyChartSettings();

    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex(), stage.m_model->index(0, 0));
    QCOMPARE(changes.at(0).at(1).toModelIndex(), stage.m_model->index(1, 1));
    QVERIFY(paints.take() > 0);
}

void TestMultiChart::standInTheOrderOfTheModel()
{
    const Stage stage;
    ChartWidget *first = stage.pane(0);
    ChartWidget *upper = stage.m_model->appendChart(0);
    ChartWidget *lower = stage.m_model->appendChart(-1);
    ChartWidget *middle = stage.m_model->appendChart(1);

    emit stage.m_model->chartCountChanged();

    const QList<QWidget *> expected{upper, middle, first, lower, stage.legend()};
    QCOMPARE(widgetsOf(stage.m_chart), expected);
    emit stage.m_model->chartCountChanged();
    QCOMPARE(widgetsOf(stage.m_chart), expected);
}

void TestMultiChart::takesBackAPaneThatLeft()
{
    const Stage stage(3);
    stage.pane(1)->setParent(nullptr);
    QCOMPARE(stage.m_chart.count(), 3);

    emit stage.m_model->chartCountChanged();

    QCOMPARE(widgetsOf(stage.m_chart), expectedWidgets(stage.m_chart));
}

void TestMultiChart::removedPanesLeaveBeforeTheNextComes()
{
    const Stage stage(4);
    delete stage.pane(1);
    QCOMPARE(widgetsOf(stage.m_chart), expectedWidgets(stage.m_chart));

    stage.m_model->slotAddChart();

    QCOMPARE(stage.m_chart.count(), 5);
    QCOMPARE(widgetsOf(stage.m_chart), expectedWidgets(stage.m_chart));
}

void TestMultiChart::ignoresNullPanes()
{
    Stage stage(2);
    stage.m_model->m_charts.append(nullptr);
    emit stage.m_model->chartCountChanged();
    QCOMPARE(stage.m_chart.count(), 3);

    const QList<int> sizes = adjusted(stage.m_chart, {100, 200});
    const int share = (300 - stage.spaceOf(0) - stage.spaceOf(1)) / 2;
    QCOMPARE(sizes, (QList<int>{stage.spaceOf(0) + share, stage.spaceOf(1) + share}));
    stage.m_model->m_charts.removeLast();
}

void TestMultiChart::newPaneWithoutLayoutIsAdjusted()
{
    Stage stage(2);
    QVERIFY(stage.show());
    QVERIFY(stage.layOut({400, 100, LegendHeight}));
    stage.m_model->slotAddChart();

    QList<int> expected = stage.m_chart.sizes();
    const int legendHeight = expected.takeLast();
    QVERIFY(legendHeight > 0);
    expected = adjusted(stage.m_chart, expected);
    for (int i = 0; i < 3; ++i) {
        const int difference = stage.m_chart.sizes().at(i) - expected.at(i);
        // The remainder of the division goes where the splitter likes.
        QVERIFY2(qAbs(difference) <= 2, qPrintable(textOf(stage.m_chart.sizes())));
    }
}

void TestMultiChart::newPaneWithLayoutIsNotAdjusted()
{
    Stage stage(3);
    QVERIFY(stage.layOut({200, 50, 100, LegendHeight}));
    stage.m_chart.m_splitterStates[3] = stage.m_chart.saveState();
    QVERIFY(stage.layOut({100, 70, 180, LegendHeight}));
    delete stage.pane(2);
    stage.m_model->slotAddChart();

    QCOMPARE(stage.m_chart.sizes(), (QList<int>{200, 50, 100, LegendHeight}));
}

void TestMultiChart::collapsedLegendIsNotLaidOut()
{
    Stage stage(2);
    QVERIFY(stage.show());
    QVERIFY(stage.layOut({250, 50, 0}));
    QVERIFY(!stage.recalculates([&] { stage.m_chart.slotAdjustSize(); }));
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{250, 50, 0}));

    // The same in a splitter that knows nothing of panes.
    QSplitter twin(Qt::Vertical);
    for (int i = 0; i < 3; ++i) {
        twin.addWidget(new QWidget);
    }
    twin.setHandleWidth(stage.m_chart.handleWidth());
    twin.resize(stage.m_chart.size());
    twin.show();
    QVERIFY(QTest::qWaitForWindowExposed(&twin));
    twin.widget(2)->setMinimumHeight(1);
    twin.setSizes({250, 50, 0});
    QCOMPARE(twin.sizes(), stage.m_chart.sizes());

    ChartWidget *added = stage.m_model->appendChart(-1);
    auto *twinAdded = new QWidget;
    twinAdded->resize(added->size());
    twin.insertWidget(2, twinAdded);
    emit stage.m_model->chartCountChanged();

    QCOMPARE(stage.m_chart.sizes().last(), 0);
    QCOMPARE(stage.m_chart.sizes(), twin.sizes());
}

void TestMultiChart::refusedLayoutLeavesTheSizes()
{
    Stage stage(2);
    QVERIFY(stage.layOut({200, 100, LegendHeight}));
    stage.m_chart.m_splitterStates[2] = "no layout";

    stage.m_chart.slotChartCountChanged();

    QCOMPARE(stage.m_chart.sizes(), (QList<int>{200, 100, LegendHeight}));
}

void TestMultiChart::layoutWithoutVisiblePaneIsAdjusted()
{
    Stage stage(2);
    QVERIFY(stage.layOut({0, 0, 600}));
    stage.m_chart.m_splitterStates[2] = stage.m_chart.saveState();
    QVERIFY(setExampleMargins(stage));
    QVERIFY(stage.layOut({200, 250, LegendHeight}));

    QVERIFY(stage.recalculates([&] { stage.m_chart.slotChartCountChanged(); }));

    // A third of 600 for the legend. The rest less the margins of 75 and 65 leaves 130 each.
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{205, 195, 200}));
}

void TestMultiChart::layoutOfAWidgetNeverShownIsAdjusted_data()
{
    QTest::addColumn<int>("panes");

    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
    QTest::newRow("three") << 3;
}

void TestMultiChart::layoutOfAWidgetNeverShownIsAdjusted()
{
    QFETCH(const int, panes);
    Stage(panes).m_chart.saveSettings();

    Stage namesake(panes);
    QVERIFY(namesake.m_chart.m_splitterStates.contains(panes));
    QVERIFY(namesake.show());

    const QList<int> sizes = namesake.m_chart.sizes();
    QVERIFY2(*std::min_element(sizes.cbegin(), sizes.cend()) > 0, qPrintable(textOf(sizes)));
}

void TestMultiChart::layoutWithoutAnythingVisibleStays()
{
    Stage stage(2);
    QVERIFY(stage.layOut({100, 200, LegendHeight}));
    stage.m_chart.m_splitterStates[2] = stage.m_chart.saveState();
    const QSize size = stage.m_chart.size();
    stage.m_chart.resize(size.width(), 0);

    stage.m_chart.slotChartCountChanged();
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{0, 0, 0}));
    stage.m_chart.resize(size);
    QVERIFY(stage.show());

    QCOMPARE(stage.m_chart.sizes(), (QList<int>{100, 200, LegendHeight}));
}

void TestMultiChart::divisionComesBackWithTheNumberOfPanes()
{
    Stage stage;
    addSeries(*stage.m_model, "b");
    QCOMPARE(stage.m_model->m_charts.size(), 2);
    QVERIFY(stage.show());
    const QList<int> heights{70, 230, LegendHeight};
    QVERIFY(stage.layOut(heights));

    stage.m_model->slotSingleMode();
    QCOMPARE(stage.m_chart.count(), 2);
    stage.m_model->slotMultiMode();

    QCOMPARE(stage.m_chart.count(), 3);
    QCOMPARE(stage.m_chart.sizes(), heights);
}

void TestMultiChart::makesPlotsEquallyHigh_data()
{
    QTest::addColumn<int>("panes");

    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
    QTest::newRow("three") << 3;
    QTest::newRow("twelve") << 12;
}

void TestMultiChart::makesPlotsEquallyHigh()
{
    QFETCH(const int, panes);
    Stage stage(panes);
    QVERIFY(stage.layOut(stage.unevenHeights()));

    stage.m_chart.slotAdjustSize();

    QCOMPARE(stage.m_chart.sizes(), stage.evenHeights());
}

void TestMultiChart::leavesTooLittleRoomToTheSplitter()
{
    Stage stage(2);
    QVERIFY(setExampleMargins(stage));
    QVERIFY(stage.layOut({0, 80, LegendHeight}));

    stage.m_chart.slotAdjustSize();

    // 60 pixels lack: 75 - 30 and 65 - 30.
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{45, 35, LegendHeight}));
}

void TestMultiChart::adjustsNothingWithoutPanes()
{
    Stage stage;
    delete stage.pane(0);
    QVERIFY(!stage.recalculates([&] { stage.m_chart.slotAdjustSize(); }));
    QCOMPARE(stage.m_chart.count(), 1);

    QCOMPARE(adjusted(stage.m_chart, {}), QList<int>());
}

void TestMultiChart::sharesOutByTheExample_data()
{
    QTest::addColumn<QList<int>>("sizes");
    QTest::addColumn<QList<int>>("expected");

    // The margins of the two panes take 75 and 65 pixels.
    QTest::newRow("60 left, 30 each") << QList<int>{100, 100} << QList<int>{105, 95};
    QTest::newRow("all in one pane") << QList<int>{200, 0} << QList<int>{105, 95};
    QTest::newRow("remainder of 61 is dropped") << QList<int>{100, 101} << QList<int>{105, 95};
    QTest::newRow("nothing left") << QList<int>{100, 40} << QList<int>{75, 65};
    QTest::newRow("one pixel left") << QList<int>{100, 41} << QList<int>{75, 65};
    QTest::newRow("119 lack, 59 each") << QList<int>{10, 11} << QList<int>{16, 6};
    QTest::newRow("nothing at all") << QList<int>{0, 0} << QList<int>{5, -5};
    QTest::newRow("one entry, 25 left") << QList<int>{100} << QList<int>{100};
    QTest::newRow("third entry, 60 left") << QList<int>{90, 90, 20} << QList<int>{95, 85, 40};
}

void TestMultiChart::sharesOutByTheExample()
{
    QFETCH(const QList<int>, sizes);
    QFETCH(const QList<int>, expected);
    Stage stage(2);
    QVERIFY(setExampleMargins(stage));

    QCOMPARE(adjusted(stage.m_chart, sizes), expected);
}

void TestMultiChart::sharesOutWithoutAModel()
{
    OwnedMultiChart chart;

    QCOMPARE(adjusted(chart, {}), QList<int>());
    QCOMPARE(adjusted(chart, {10, 21}), (QList<int>{25, 36})); // 31 / 2 on top
}

void TestMultiChart::passesOverAPaneThatIsNotInTheSplitter()
{
    Stage stage;
    stage.m_model->appendChart(-1);
    const int space = stage.spaceOf(0);
    const int share = (200 - space) / 2;

    QCOMPARE(adjusted(stage.m_chart, {100, 100}), (QList<int>{space + share, 100 + share}));
}

void TestMultiChart::entryWithoutPaneKeepsItsSize()
{
    Stage stage;
    const int space = stage.spaceOf(0);
    const int share = (600 - space) / 3;

    QCOMPARE(adjusted(stage.m_chart, {100, 200, 300}),
             (QList<int>{space + share, 200 + share, 300 + share}));
}

void TestMultiChart::sharesOutAsThePlainWayDoes()
{
    constexpr int Cases = 3000;
    Stage stage(3);
    QRandomGenerator random(1);
    for (int round = 0; round < Cases; ++round) {
        stage.m_model->m_axisX->m_size = random.bounded(120);
        QList<int> sizes;
        for (int i = random.bounded(1, 6); i > 0; --i) {
            sizes.append(random.bounded(-50, 300));
        }

        double left = 0.0;
        QList<int> expected;
        for (int i = 0; i < sizes.size(); ++i) {
            const bool hasPane = i < 3;
            left += sizes.at(i) - (hasPane ? stage.spaceOf(i) : 0);
            expected.append(hasPane ? stage.spaceOf(i) : sizes.at(i));
        }
        for (int &size : expected) {
            size += int(std::trunc(left / sizes.size()));
        }
        QVERIFY2(adjusted(stage.m_chart, sizes) == expected, qPrintable(textOf(sizes)));
    }
}

void TestMultiChart::savesPositionIfVisible()
{
    Stage stage(2);
    QVERIFY(stage.show());
    QVERIFY(stage.layOut({70, 130, LegendHeight}));

    stage.m_chart.slotSavePosition();
    QVERIFY(stage.layOut({100, 100, LegendHeight}));
    stage.m_chart.slotChartCountChanged();

    QCOMPARE(stage.m_chart.m_splitterStates.keys(), QList<int>{2});
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{70, 130, LegendHeight}));
}

void TestMultiChart::savesNoPositionIfHidden()
{
    Stage stage(2);
    stage.m_chart.slotSavePosition();
    QVERIFY(stage.m_chart.m_splitterStates.isEmpty());

    QVERIFY(stage.show());
    stage.m_chart.hide();
    stage.m_chart.slotSavePosition();
    QVERIFY(stage.m_chart.m_splitterStates.isEmpty());
}

void TestMultiChart::savesSettings()
{
    Stage stage(2);
    stage.m_chart.m_splitterStates[5] = "five";
    stage.m_model->m_settings.splitterState[6] = "replaced by the widget's own";
    stage.legend()->header()->resizeSection(0, 123);

    stage.m_chart.saveSettings();

    const ChartSettings &settings = stage.m_model->m_settings;
    QCOMPARE(settings.legendState, stage.legend()->header()->saveState());
    QCOMPARE(settings.splitterState, stage.m_chart.m_splitterStates);
    QCOMPARE(settings.splitterState.keys(), (QList<int>{2, 5}));
    QCOMPARE(settings.splitterState.value(2), stage.m_chart.saveState());
    ChartSettings stored;
    stored.organization = settings.organization;
    stored.application = settings.application;
    stored.loadSettings("panel");
    QCOMPARE(stored.legendState, settings.legendState);
    QCOMPARE(stored.splitterState, settings.splitterState);
}

void TestMultiChart::savesLayoutEvenIfHidden()
{
    Stage stage;
    QVERIFY(!stage.m_chart.isVisible());
    stage.m_chart.saveSettings();

    QCOMPARE(stage.m_chart.m_splitterStates.keys(), QList<int>{1});
    QVERIFY(storedNames("panel").contains("splitterState1"));
}

void TestMultiChart::savesBySlot()
{
    const Stage stage;
    QObject trigger;
    connect(&trigger, SIGNAL(destroyed()), &stage.m_chart, SLOT(slotSaveSettings()));
    QVERIFY(storedNames("panel").isEmpty());

    emit trigger.destroyed();

    // 22 that are always there, the legend's state and one layout.
    QCOMPARE(storedNames("panel").size(), 24);
}

void TestMultiChart::restoresLayoutOfAnyNumberOfPanes_data()
{
    QTest::addColumn<int>("panes");
    for (int panes = 1; panes <= 10; ++panes) {
        QTest::addRow("%d", panes) << panes;
    }
}

void TestMultiChart::restoresLayoutOfAnyNumberOfPanes()
{
    QFETCH(const int, panes);
    QList<int> heights;
    for (int i = 0; i < panes; ++i) {
        heights.append(40 + 3 * i);
    }
    heights.append(LegendHeight);
    QSize size;
    {
        Stage stage(panes);
        QVERIFY(stage.layOut(heights));
        stage.m_chart.saveSettings();
        size = stage.m_chart.size();
    }
    QVERIFY(m_folder->moveStore());

    OwnedMultiChart chart;
    chart.resize(size);
    auto *model = new OpenModel;
    chart.setModel(model);
    while (model->m_charts.size() < panes) {
        model->slotAddChart();
    }
    QCOMPARE(chart.sizes(), heights);
}

void TestMultiChart::sharesSettingsWithItsNamesakes()
{
    Stage first(1, "one");
    first.m_model->m_settings.visibleInterval = 7.25;
    first.m_chart.saveSettings();

    QCOMPARE(Stage(1, "one").m_model->m_settings.visibleInterval, 7.25);
    QCOMPARE(Stage(1, "two").m_model->m_settings.visibleInterval, 600.0);
    QVERIFY(Stage(1, "two").m_chart.m_splitterStates.isEmpty());
}

void TestMultiChart::movedSplitterRecalculates()
{
    Stage stage(2);
    QVERIFY(stage.show());
    QVERIFY(stage.layOut({100, 100, LegendHeight}));

    QVERIFY(stage.recalculates([&] { stage.m_chart.moveSplitter(150, 1); }));
    QCOMPARE(stage.m_chart.sizes().at(0), 150);
    QVERIFY(stage.recalculates([&] { stage.m_chart.slotSplitterMoved(); }));
}

void TestMultiChart::resizeRecalculatesAndKeepsTheDivision()
{
    Stage stage(2);
    QVERIFY(stage.show());
    QVERIFY(stage.layOut({400, 100, LegendHeight}));

    QVERIFY(stage.recalculates(
        [&] { stage.m_chart.resize(stage.m_chart.width(), stage.m_chart.height() + 650); }));
    // Twice as high, all in proportion.
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{800, 200, 2 * LegendHeight}));

    QVERIFY(stage.recalculates([&] { stage.m_chart.resize(400, stage.m_chart.height()); }));
    QCOMPARE(stage.m_chart.sizes(), (QList<int>{800, 200, 2 * LegendHeight}));
}

void TestMultiChart::newHeightsRecalculate()
{
    Stage stage(2);
    QVERIFY(stage.layOut({400, 100, LegendHeight}));
    QVERIFY(stage.recalculates([&] { stage.m_chart.slotAdjustSize(); }));

    stage.m_chart.m_splitterStates[2] = stage.m_chart.saveState();
    QVERIFY(stage.recalculates([&] { stage.m_chart.slotChartCountChanged(); }));
    stage.m_chart.m_splitterStates.clear();
    QVERIFY(stage.recalculates([&] { stage.m_chart.slotChartCountChanged(); }));
}

void TestMultiChart::takesItsModelAlong()
{
    int deaths = 0;
    auto stage = std::make_unique<Stage>(2);
    stage->m_series->m_deaths = &deaths;
    const QPointer<AbstractChartModel> model = stage->m_model;
    const QPointer<ChartWidget> pane = stage->pane(1);
    QVERIFY(stage->show());

    stage.reset();

    QVERIFY(!model);
    QVERIFY(!pane);
    QCOMPARE(deaths, 1);
}

void TestMultiChart::forgetsAModelThatDies()
{
    const QuietPlatform quiet;
    OwnedMultiChart chart;
    auto *model = new StaticChartModel("QUARVChart5 tests", "tests");
    chart.setModel(model);
    addSeries(*model, "a", {0.0, 8.0});
    addSeries(*model, "b", {0.0, 8.0});
    model->m_multiModeAction->trigger();
    chart.show();
    QVERIFY(QTest::qWaitForWindowExposed(&chart));
    const QList<ChartWidget *> panes = model->m_charts;
    QCOMPARE(panes.size(), 2);
    const QMap<int, QByteArray> states = chart.m_splitterStates;

    delete model;

    QVERIFY(!chart.m_model);
    QVERIFY(chart.toolBar()->actions().isEmpty());
    QCOMPARE(widgetsOf(chart), (QList<QWidget *>{panes.at(0), panes.at(1), chart.legendView()}));
    QVERIFY(!chart.legendView()->model());
    QVERIFY(!panes.at(0)->m_model);
    callAllSlots(chart);
    chart.resize(300, 600);
    chart.moveSplitter(100, 1);
    QCOMPARE(chart.m_splitterStates, states);
    QVERIFY(SettingsFolder::store().allKeys().isEmpty());
    QCOMPARE(adjusted(chart, {10, 20}), (QList<int>{25, 35}));

    QCoreApplication::processEvents(); // paints what is left
}

void TestMultiChart::outlivesItsLegend_data()
{
    QTest::addColumn<bool>("modelGoesWithIt");

    QTest::newRow("model dies with it") << true;
    QTest::newRow("model dies later") << false;
}

void TestMultiChart::outlivesItsLegend()
{
    QFETCH(const bool, modelGoesWithIt);
    Stage stage(2);
    QVERIFY(stage.show());
    const QPointer<OpenModel> model = stage.m_model;
    if (!modelGoesWithIt) {
        model->QObject::setParent(nullptr);
    }

    delete stage.legend();
    QCOMPARE(model.isNull(), modelGoesWithIt);
    delete model;

    QVERIFY(!stage.m_chart.m_model);
    callAllSlots(stage.m_chart);
    QCoreApplication::processEvents();
}

void TestMultiChart::standsBesideAnother()
{
    Stage left(2, "left");
    auto right = std::make_unique<Stage>(3, "right");
    QCOMPARE(widgetsOf(left.m_chart), expectedWidgets(left.m_chart));
    QCOMPARE(widgetsOf(right->m_chart), expectedWidgets(right->m_chart));
    QVERIFY(left.layOut({70, 130, LegendHeight}));
    QVERIFY(right->layOut(right->unevenHeights()));

    emit right->m_model->adjustSize();
    QCOMPARE(right->m_chart.sizes(), right->evenHeights());
    right->m_model->slotAddChart();
    right.reset();

    QCOMPARE(left.m_chart.sizes(), (QList<int>{70, 130, LegendHeight}));
    QCOMPARE(widgetsOf(left.m_chart), expectedWidgets(left.m_chart));
    QVERIFY(left.recalculates([&] { left.m_chart.slotAdjustSize(); }));
}

QTEST_MAIN(TestMultiChart)
#include "tst_multichart.moc"
