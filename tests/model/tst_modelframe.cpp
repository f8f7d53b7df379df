#include "model/abstractchartmodel.h"

#include "model/chartmimedata.h"
#include "support/gatedseries.h"
#include "support/paintcounter.h"
#include "support/recordingmodel.h"
#include "undo/scalecommand.h"
#include "views/chartcursor.h"

#include <QAction>
#include <QActionGroup>
#include <QStandardItemModel>
#include <QtTest>
#include <QUndoStack>

#include <functional>

namespace {

constexpr int LineColumn = AbstractChartModel::LineColumn;
constexpr int NameColumn = AbstractChartModel::NameColumn;

/// The library's own answers for every index, with the counts that a test may falsify.
class BareModel : public StaticChartModel
{
public:
    BareModel()
        : StaticChartModel("maker", "plotter")
    {
        m_seriesEditable = false;
    }
    ~BareModel() override
    {
        while (!m_charts.isEmpty()) {
            delete m_charts.takeLast();
        }
    }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return m_rows < 0 ? StaticChartModel::rowCount(parent) : m_rows;
    }
    int columnCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return m_columns < 0 ? StaticChartModel::columnCount(parent) : m_columns;
    }
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override
    {
        return role == Qt::UserRole && m_drags ? QVariant::fromValue(m_drags)
                                               : StaticChartModel::data(index, role);
    }

    using StaticChartModel::createIndex;

    int m_rows = -1;                        ///< Negative for the true count.
    int m_columns = -1;                     ///< Likewise.
    AbstractChartSeries *m_drags = nullptr; ///< What UserRole answers, if not null.
};

/// Tells how many slots listen to its worker's end.
class WatchedSeries : public GatedSeries
{
public:
    using GatedSeries::GatedSeries;

    int listeners() const { return receivers(SIGNAL(updatePointsFinished())); }
};

/// Says something on its death.
class MortalSeries : public GatedSeries
{
public:
    using GatedSeries::GatedSeries;
    ~MortalSeries() override
    {
        if (m_onDeath) {
            m_onDeath();
        }
    }

    std::function<void()> m_onDeath;
};

PlainSeries *addPlain(AbstractChartModel &model, const QString &name)
{
    auto *series = new PlainSeries(name);
    model.addSeries(series);
    return series;
}

/// Two samples, so that a worker has a pair to look at and the X axis the range [0, 10].
void feedPair(AbstractChartModel &model, AbstractChartSeries *series)
{
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
}

/// The type and value of what a table answers: "QString alpha".
QString variantText(const QVariant &variant)
{
    if (!variant.isValid()) {
        return "invalid";
    }
    if (variant.userType() == QMetaType::type("AbstractChartSeries *")) {
        return QString("series %1").arg(variant.value<AbstractChartSeries *>()->m_name);
    }
    if (variant.userType() == QMetaType::QColor) {
        return QString("QColor %1").arg(variant.value<QColor>().name());
    }
    return QString("%1 %2").arg(variant.typeName(), variant.toString());
}

/// The panes by the letters that \p names gives them, "n" for a new one.
QString panesText(const AbstractChartModel &model, const QMap<ChartWidget *, QString> &names)
{
    QString text;
    for (ChartWidget *chart : model.m_charts) {
        text += names.value(chart, "n");
    }
    return text;
}

QString seriesNames(const QList<AbstractChartSeries *> &list)
{
    QStringList names;
    for (const AbstractChartSeries *series : list) {
        names.append(series->m_name);
    }
    return names.join(' ');
}

struct NamedAction
{
    const char *name;
    QAction *AbstractChartModel::*member;
    const char *text;
};

const NamedAction Actions[] = {
    {"remove series", &AbstractChartModel::m_removeSeriesAction, "Remove series"},
    {"remove all", &AbstractChartModel::m_removeAllSeriesAction, "Remove all series"},
    {"clear points", &AbstractChartModel::m_clearPointsAction, "Clear points"},
    {"adjust columns", &AbstractChartModel::m_adjustColumnsAction, "Adjust columns width"},
    {"single mode", &AbstractChartModel::m_singleModeAction, "Combine"},
    {"multi mode", &AbstractChartModel::m_multiModeAction, "Separate"},
    {"add chart", &AbstractChartModel::m_addChartAction, "Add chart"},
    {"remove chart", &AbstractChartModel::m_removeChartAction, "Remove empty charts"},
    {"select mode", &AbstractChartModel::m_selectModeAction, "Select area"},
    {"move mode", &AbstractChartModel::m_moveModeAction, "Move"},
    {"zoom in", &AbstractChartModel::m_zoomInAction, "Zoom in"},
    {"zoom out", &AbstractChartModel::m_zoomOutAction, "Zoom out"},
    {"zoom in x", &AbstractChartModel::m_zoomInXAction, "Zoom in (X axis)"},
    {"zoom out x", &AbstractChartModel::m_zoomOutXAction, "Zoom out (X axis)"},
    {"zoom in y", &AbstractChartModel::m_zoomInYAction, "Zoom in (Y axis)"},
    {"zoom out y", &AbstractChartModel::m_zoomOutYAction, "Zoom out (Y axis)"},
    {"undo zoom", &AbstractChartModel::m_undoZoomAction, "Undo zoom"},
    {"scroll down", &AbstractChartModel::m_scrollDownAction, "Scroll down"},
    {"scroll to begin", &AbstractChartModel::m_scrollToBeginAction, "Scroll to begin"},
    {"scroll back", &AbstractChartModel::m_scrollBackAction, "Scroll backward"},
    {"pause", &AbstractChartModel::m_pauseAction, "Pause"},
    {"scroll forward", &AbstractChartModel::m_scrollForwardAction, "Scroll forward"},
    {"scroll to end", &AbstractChartModel::m_scrollToEndAction, "Scroll to end"},
    {"scroll up", &AbstractChartModel::m_scrollUpAction, "Scroll up"},
    {"adjust size", &AbstractChartModel::m_adjustSizeAction, "Adjust size"},
    {"undo", &AbstractChartModel::m_undoAction, "Undo action"},
    {"redo", &AbstractChartModel::m_redoAction, "Redo action"},
};

} // namespace

class TestModelFrame : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutSeriesAndWithOnePane();
    void startsWithTwoColumns();
    void startsWithAnXAxisAtZero();
    void startsWithAnUndoHistoryOfTwentySteps();
    void startsWithModesAndCountersAtZero();
    void startsWithDefaultSettingsAndTheTwoNames();
    void startsWithActions_data();
    void startsWithActions();
    void startsWithActionGroups();

    void countsRowsForAnyParent();
    void answersRoles_data();
    void answersRoles();
    void answersHiddenSeriesUnchecked();
    void answersNameThroughTheVirtual();
    void answersNothingOutsideTheTable_data();
    void answersNothingOutsideTheTable();
    void asksVirtualCounts();
    void answersNothingForMissingSeries();

    void acceptsOnlyTheCheckBox_data();
    void acceptsOnlyTheCheckBox();
    void setsNothingOutsideTheTable();
    void hidesSeriesWithoutDataChanged();

    void answersHeader_data();
    void answersHeader();
    void answersFlags_data();
    void answersFlags();

    void dragsSeriesOfTheNameColumn_data();
    void dragsSeriesOfTheNameColumn();
    void dragsNothingWithAnEmptyObject();
    void dragsWhatTheVirtualDataAnswers();

    void selectsFirstSelectedInRowOrder();
    void takesFirstSeriesWithSamplesForValid();
    void hasNoMainChartWithoutPanes();

    void stepsThroughThePalette();
    void givesFirstColorWhileEmpty();
    void keepsPaletteCounterWhenSeriesLeave();

    void insertsPaneAtPosition_data();
    void insertsPaneAtPosition();
    void connectsPane_data();
    void connectsPane();

    void setsDateTimeScale();
    void updateTellsLegendThenCalculates();
    void repaintsPanesWithoutCalculation();

    void calculatesSeriesInRowOrder();
    void listensOnceToEachSeries();
    void skipsPassOfEmptyModel();
    void runsOneFurtherPassForThreeRequests();
    void endsPassWithLastSeries();

    void appliesSettingsInOrder();
    void appliesSettingsWithoutSeries();
    void appliesAutoScale();
    void appliesDefaultsToSeriesNotCustomized();
    void endsPauseOnlyWithoutDynamicGrid();
    void rewritesHistoryWhenSettingsMoveAxes();

    void panesForgetDeadModel();
    void stopsAllWorkersBeforeFirstSeriesDies();
    void deletesListedSeriesBeforeRemovedOnes();
    void freesWaitingCommands();
};

void TestModelFrame::startsWithoutSeriesAndWithOnePane()
{
    const BareModel model;

    QCOMPARE(model.m_series.size(), 0);
    QCOMPARE(model.m_charts.size(), 1);
    QCOMPARE(model.mainChart(), model.m_charts.first());
    QCOMPARE(model.mainChart()->m_model, &model);
    QCOMPARE(model.selectedSeries(), nullptr);
    QCOMPARE(model.selectedRow(), -1);
    QCOMPARE(model.firstValidSeries(), nullptr);
}

void TestModelFrame::startsWithTwoColumns()
{
    const BareModel model;

    QCOMPARE(model.m_headers.size(), 2);
    QCOMPARE(model.m_headers.value(0), QString("Line view"));
    QCOMPARE(model.m_headers.value(1), QString("Name"));
    QCOMPARE(model.columnCount(), 2);
}

void TestModelFrame::startsWithAnXAxisAtZero()
{
    const BareModel model;

    QVERIFY(model.m_axisX);
    QCOMPARE(axisText(*model.m_axisX), QString("[0,0]"));
    QVERIFY(!model.m_axisX->m_autoScale);
    QVERIFY(!model.m_axisX->m_dateTime);
}

void TestModelFrame::startsWithAnUndoHistoryOfTwentySteps()
{
    const BareModel model;

    QCOMPARE(model.m_undoStack->parent(), &model);
    QCOMPARE(model.m_undoStack->undoLimit(), 20);
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestModelFrame::startsWithModesAndCountersAtZero()
{
    const OpenModel model;

    QCOMPARE(model.m_pendingCommands.size(), 0);
    QCOMPARE(model.m_colorIndex, 0);
    QCOMPARE(model.m_autoScaleY, false);
    QCOMPARE(model.m_seriesEditable, true);
    QCOMPARE(model.m_chartMode, 0);
    QCOMPARE(model.m_mouseMode, 0);
    QCOMPARE(model.m_actions.size(), 0);
    QCOMPARE(model.m_scrollLocked, false);
    QCOMPARE(model.m_moveCommands.size(), 0);
    QCOMPARE(model.m_settingsApplied, false);
    QCOMPARE(model.m_chartsUpdatePending, false);
    QCOMPARE(model.m_updatingSeries.size(), 0);
}

void TestModelFrame::startsWithDefaultSettingsAndTheTwoNames()
{
    const BareModel model;
    const ChartSettings &settings = model.m_settings;

    QCOMPARE(settings.organization, QString("maker"));
    QCOMPARE(settings.application, QString("plotter"));
    QVERIFY(settings.legendState.isEmpty());
    QVERIFY(settings.splitterState.isEmpty());
    QVERIFY(!settings.backgroundColor.isValid());
    QVERIFY(!settings.gridColor.isValid());
    QVERIFY(!settings.cursorLineColor.isValid());
    QCOMPARE(settings.visibleInterval, 600.0);
    QCOMPARE(settings.dynamicGrid, false);
    QCOMPARE(settings.autoRemoveEmptyChart, true);
    QCOMPARE(settings.individualScale, true);
    QCOMPARE(settings.autoScaleX, false);
    QCOMPARE(settings.autoScaleY, false);
    QCOMPARE(settings.seriesSettings.colors[9], defSeriesColors[9]);
    QCOMPARE(settings.seriesSettings.lineWidth, 1);
}

void TestModelFrame::startsWithActions_data()
{
    QTest::addColumn<int>("row");

    int row = 0;
    for (const NamedAction &action : Actions) {
        QTest::newRow(action.name) << row++;
    }
}

void TestModelFrame::startsWithActions()
{
    QFETCH(int, row);
    const BareModel model;

    const QAction *action = model.*Actions[row].member;
    QVERIFY(action);
    QCOMPARE(action->text().trimmed(), QString(Actions[row].text));
}

void TestModelFrame::startsWithActionGroups()
{
    const BareModel model;

    QCOMPARE(model.m_chartModeGroup->actions(),
             (QList<QAction *>{model.m_singleModeAction, model.m_multiModeAction}));
    QCOMPARE(model.m_chartModeGroup->checkedAction(), model.m_singleModeAction);
    QCOMPARE(model.m_mouseModeGroup->actions(),
             (QList<QAction *>{model.m_selectModeAction, model.m_moveModeAction}));
    QCOMPARE(model.m_mouseModeGroup->checkedAction(), model.m_selectModeAction);
}

void TestModelFrame::countsRowsForAnyParent()
{
    BareModel model;
    addPlain(model, "a");
    addPlain(model, "b");

    QCOMPARE(model.rowCount(QModelIndex()), 2);
    QCOMPARE(model.rowCount(model.index(0, 0)), 2);
    QCOMPARE(model.columnCount(model.index(1, 1)), 2);
}

void TestModelFrame::answersRoles_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expected");

    const QMap<QPair<int, int>, QString> answers{
        {{Qt::DisplayRole, NameColumn}, "QString alpha"},
        {{Qt::CheckStateRole, NameColumn}, "int 2"},
        {{Qt::ForegroundRole, LineColumn}, "QColor #ff0000"},
        {{Qt::ForegroundRole, NameColumn}, "QColor #ff0000"},
        {{Qt::UserRole, LineColumn}, "series alpha"},
        {{Qt::UserRole, NameColumn}, "series alpha"},
    };
    const QPair<int, const char *> roles[] = {
        {Qt::DisplayRole, "display"},
        {Qt::DecorationRole, "decoration"},
        {Qt::EditRole, "edit"},
        {Qt::ToolTipRole, "tool tip"},
        {Qt::StatusTipRole, "status tip"},
        {Qt::WhatsThisRole, "what's this"},
        {Qt::FontRole, "font"},
        {Qt::TextAlignmentRole, "text alignment"},
        {Qt::BackgroundRole, "background"},
        {Qt::ForegroundRole, "foreground"},
        {Qt::CheckStateRole, "check state"},
        {Qt::AccessibleTextRole, "accessible text"},
        {Qt::SizeHintRole, "size hint"},
        {Qt::UserRole, "user"},
        {Qt::UserRole + 1, "user + 1"},
        {-1, "negative"},
    };
    for (const auto &[role, name] : roles) {
        QTest::addRow("%s of the line", name)
            << role << LineColumn << answers.value({role, LineColumn}, "invalid");
        QTest::addRow("%s of the name", name)
            << role << NameColumn << answers.value({role, NameColumn}, "invalid");
    }
}

void TestModelFrame::answersRoles()
{
    QFETCH(int, role);
    QFETCH(int, column);
    BareModel model;
    addPlain(model, "alpha");

    QTEST(variantText(model.data(model.index(0, column), role)), "expected");
}

void TestModelFrame::answersHiddenSeriesUnchecked()
{
    BareModel model;
    addPlain(model, "alpha")->m_visible = false;

    const QVariant checked = model.data(model.index(0, NameColumn), Qt::CheckStateRole);
    QCOMPARE(variantText(checked), QString("int 0"));
}

void TestModelFrame::answersNameThroughTheVirtual()
{
    class TitledSeries : public PlainSeries
    {
    public:
        QString name() const override { return "title"; }
    };
    BareModel model;
    model.addSeries(new TitledSeries);

    QCOMPARE(model.data(model.index(0, NameColumn)).toString(), QString("title"));
}

void TestModelFrame::answersNothingOutsideTheTable_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");

    QTest::newRow("row beyond the end") << 1 << NameColumn;
    QTest::newRow("row far beyond the end") << 1000 << NameColumn;
    QTest::newRow("column beyond the end") << 0 << 2;
    QTest::newRow("negative row") << -1 << NameColumn;
    QTest::newRow("negative column") << 0 << -1;
    QTest::newRow("both negative") << -1 << -1;
}

void TestModelFrame::answersNothingOutsideTheTable()
{
    QFETCH(int, row);
    QFETCH(int, column);
    BareModel model;
    addPlain(model, "alpha");
    const QModelIndex index = model.createIndex(row, column);

    for (const int role : {Qt::DisplayRole, Qt::CheckStateRole, Qt::ForegroundRole, Qt::UserRole}) {
        QCOMPARE(variantText(model.data(index, role)), QString("invalid"));
    }
    QVERIFY(!model.setData(index, 0, Qt::CheckStateRole));
}

void TestModelFrame::asksVirtualCounts()
{
    BareModel model;
    addPlain(model, "a");
    addPlain(model, "b");
    const QModelIndex second = model.index(1, NameColumn);
    QCOMPARE(variantText(model.data(second)), QString("QString b"));

    model.m_rows = 1;
    QCOMPARE(variantText(model.data(second)), QString("invalid"));
    QVERIFY(!model.setData(second, 0, Qt::CheckStateRole));

    model.m_rows = -1;
    model.m_columns = 1;
    QCOMPARE(variantText(model.data(second)), QString("invalid"));
    QVERIFY(!model.setData(second, 0, Qt::CheckStateRole));

    // A row that a derived model promises, but has no series for.
    model.m_rows = 3;
    model.m_columns = 2;
    const QModelIndex third = model.createIndex(2, NameColumn);
    QCOMPARE(variantText(model.data(third)), QString("invalid"));
    QVERIFY(!model.setData(third, 0, Qt::CheckStateRole));
}

void TestModelFrame::answersNothingForMissingSeries()
{
    BareModel model;
    model.m_series.append(nullptr);

    for (const int role : {Qt::DisplayRole, Qt::CheckStateRole, Qt::ForegroundRole, Qt::UserRole}) {
        QCOMPARE(variantText(model.data(model.index(0, NameColumn), role)), QString("invalid"));
    }
    QVERIFY(!model.setData(model.index(0, NameColumn), 0, Qt::CheckStateRole));
    QCOMPARE(model.selectedRow(), -1);
    QCOMPARE(model.firstValidSeries(), nullptr);
    const QScopedPointer<QMimeData> drag(model.mimeData({model.index(0, NameColumn)}));
    QVERIFY(qobject_cast<ChartMimeData *>(drag.data())->m_series.isEmpty());
    model.m_series.clear();
}

void TestModelFrame::acceptsOnlyTheCheckBox_data()
{
    QTest::addColumn<bool>("visible");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<bool>("visibleAfter");

    const int check = Qt::CheckStateRole;
    QTest::newRow("0 hides") << true << NameColumn << check << QVariant(0) << true << false;
    QTest::newRow("2 shows") << false << NameColumn << check << QVariant(2) << true << true;
    QTest::newRow("1 shows") << false << NameColumn << check << QVariant(1) << true << true;
    QTest::newRow("-1 shows") << false << NameColumn << check << QVariant(-1) << true << true;
    QTest::newRow("the same again") << true << NameColumn << check << QVariant(2) << true << true;
    QTest::newRow("bool") << true << NameColumn << check << QVariant(false) << false << true;
    QTest::newRow("uint") << true << NameColumn << check << QVariant(0u) << false << true;
    QTest::newRow("double") << true << NameColumn << check << QVariant(0.0) << false << true;
    QTest::newRow("text") << true << NameColumn << check << QVariant("0") << false << true;
    QTest::newRow("invalid value") << true << NameColumn << check << QVariant() << false << true;
    QTest::newRow("line column") << true << LineColumn << check << QVariant(0) << false << true;
    QTest::newRow("edit role") << true << NameColumn << int(Qt::EditRole) << QVariant(0) << false
                               << true;
    QTest::newRow("user role") << true << NameColumn << int(Qt::UserRole) << QVariant(0) << false
                               << true;
}

void TestModelFrame::acceptsOnlyTheCheckBox()
{
    QFETCH(bool, visible);
    QFETCH(int, column);
    QFETCH(int, role);
    QFETCH(QVariant, value);
    QFETCH(bool, accepted);
    BareModel model;
    PlainSeries *series = addPlain(model, "alpha");
    series->m_visible = visible;
    QVERIFY(settled(model));

    QCOMPARE(model.setData(model.index(0, column), value, role), accepted);
    QTEST(series->m_visible, "visibleAfter");
    QCOMPARE(model.updatePointsInProgress(), accepted); // redraws, or leaves all as it was
}

void TestModelFrame::setsNothingOutsideTheTable()
{
    BareModel model;
    PlainSeries *series = addPlain(model, "alpha");
    QVERIFY(settled(model));

    QVERIFY(!model.setData(QModelIndex(), 0, Qt::CheckStateRole));
    QVERIFY(!model.setData(model.createIndex(1, NameColumn), 0, Qt::CheckStateRole));
    QVERIFY(series->m_visible);
    QVERIFY(!model.updatePointsInProgress());

    // Only the place in the table counts, not whose index it is.
    const QStandardItemModel other(1, 2);
    QVERIFY(model.setData(other.index(0, NameColumn), 0, Qt::CheckStateRole));
    QVERIFY(!series->m_visible);
}

void TestModelFrame::hidesSeriesWithoutDataChanged()
{
    BareModel model;
    addPlain(model, "alpha");
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);

    QVERIFY(model.setData(model.index(0, NameColumn), 0, Qt::CheckStateRole));
    QCOMPARE(changes.count(), 0);
}

void TestModelFrame::answersHeader_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("expected");

    const int display = Qt::DisplayRole;
    QTest::newRow("first title") << 0 << Qt::Horizontal << display << "QString Line view";
    QTest::newRow("second title") << 1 << Qt::Horizontal << display << "QString Name";
    QTest::newRow("beyond the end") << 2 << Qt::Horizontal << display << "invalid";
    QTest::newRow("negative") << -1 << Qt::Horizontal << display << "invalid";
    QTest::newRow("vertical") << 0 << Qt::Vertical << display << "invalid";
    QTest::newRow("edit role") << 0 << Qt::Horizontal << int(Qt::EditRole) << "invalid";
    QTest::newRow("alignment") << 1 << Qt::Horizontal << int(Qt::TextAlignmentRole) << "invalid";
}

void TestModelFrame::answersHeader()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, role);
    const BareModel model;

    QTEST(variantText(model.headerData(section, orientation, role)), "expected");
}

void TestModelFrame::answersFlags_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("expected");

    QTest::newRow("line") << 0 << LineColumn << 39;
    QTest::newRow("name") << 0 << NameColumn << 53;
    QTest::newRow("line of no row") << 7 << LineColumn << 39;
    QTest::newRow("name of no row") << -1 << NameColumn << 53;
    QTest::newRow("column beyond the end") << 0 << 2 << 53;
}

void TestModelFrame::answersFlags()
{
    QFETCH(int, row);
    QFETCH(int, column);
    BareModel model;
    addPlain(model, "alpha");

    QTEST(int(model.flags(model.createIndex(row, column))), "expected");
    QCOMPARE(int(model.flags(QModelIndex())), 53);
}

void TestModelFrame::dragsSeriesOfTheNameColumn_data()
{
    using Cells = QVector<QPair<int, int>>;
    QTest::addColumn<Cells>("cells");
    QTest::addColumn<QString>("expected");

    QTest::newRow("both columns of a row") << Cells{{0, 0}, {0, 1}} << "a";
    QTest::newRow("in the order given") << Cells{{2, 1}, {0, 1}, {1, 1}} << "c a b";
    QTest::newRow("line column alone") << Cells{{0, 0}} << "";
    QTest::newRow("the same twice") << Cells{{1, 1}, {1, 1}} << "b b";
    QTest::newRow("negative row") << Cells{{-1, 1}, {1, 1}} << "b";
    QTest::newRow("row beyond the end") << Cells{{3, 1}, {1, 1}} << "b";
    QTest::newRow("invalid") << Cells{{-1, -1}} << "";
    QTest::newRow("none") << Cells{} << "";
}

void TestModelFrame::dragsSeriesOfTheNameColumn()
{
    using Cells = QVector<QPair<int, int>>;
    QFETCH(Cells, cells);
    BareModel model;
    for (const char *name : {"a", "b", "c"}) {
        addPlain(model, name);
    }
    QModelIndexList indexes;
    for (const auto &[row, column] : qAsConst(cells)) {
        indexes.append(model.createIndex(row, column));
    }

    const QScopedPointer<QMimeData> drag(model.mimeData(indexes));
    const auto *series = qobject_cast<ChartMimeData *>(drag.data());
    QVERIFY(series);
    QTEST(seriesNames(series->m_series), "expected");
}

void TestModelFrame::dragsNothingWithAnEmptyObject()
{
    const BareModel model;

    const QScopedPointer<QMimeData> drag(model.mimeData({QModelIndex()}));
    const auto *series = qobject_cast<ChartMimeData *>(drag.data());
    QVERIFY(series);
    QVERIFY(series->m_series.isEmpty());
    QVERIFY(series->formats().isEmpty());
}

void TestModelFrame::dragsWhatTheVirtualDataAnswers()
{
    PlainSeries other("other");
    BareModel model;
    addPlain(model, "a");
    model.m_drags = &other;

    const QScopedPointer<QMimeData> drag(model.mimeData({model.index(0, NameColumn)}));
    QCOMPARE(seriesNames(qobject_cast<ChartMimeData *>(drag.data())->m_series), QString("other"));
}

void TestModelFrame::selectsFirstSelectedInRowOrder()
{
    BareModel model;
    addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b");
    PlainSeries *third = addPlain(model, "c");

    QCOMPARE(model.selectedSeries(), nullptr);
    third->m_selected = true;
    QCOMPARE(model.selectedSeries(), third);
    QCOMPARE(model.selectedRow(), 2);
    second->m_selected = true;
    QCOMPARE(model.selectedSeries(), second);
    QCOMPARE(model.selectedRow(), 1);
}

void TestModelFrame::takesFirstSeriesWithSamplesForValid()
{
    BareModel model;
    PlainSeries *first = addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b");
    addPlain(model, "c");

    QCOMPARE(model.firstValidSeries(), nullptr);
    model.addValue(second, newValue(0, qQNaN())); // a sample, though not a valid one
    QCOMPARE(model.firstValidSeries(), second);
    first->m_values.append(nullptr);
    QCOMPARE(model.firstValidSeries(), second);
    first->m_values.clear();
    model.addValue(first, newValue(0, 1));
    QCOMPARE(model.firstValidSeries(), first);
}

void TestModelFrame::hasNoMainChartWithoutPanes()
{
    BareModel model;

    delete model.mainChart();
    QCOMPARE(model.mainChart(), nullptr);
}

void TestModelFrame::stepsThroughThePalette()
{
    BareModel model;
    const QStringList palette{"#ff0000", "#00ff00", "#0000ff", "#00ffff", "#ff00ff", "#800000",
                              "#008000", "#000080", "#008080", "#800080", "#c0c0c0"};

    for (int i = 0; i < 25; ++i) {
        const PlainSeries *series = addPlain(model, QString::number(i));
        QCOMPARE(model.m_colorIndex, i % 11); // ten colours and the step past the last
        QCOMPARE(series->m_colorIndex, i % 11);
        QCOMPARE(series->m_color.name(), palette.at(i % 11));
    }
}

void TestModelFrame::givesFirstColorWhileEmpty()
{
    BareModel model;
    model.m_settings.seriesSettings.colors[0] = Qt::yellow;

    for (const int counter : {0, 5, 9, 10, 0}) {
        model.m_colorIndex = counter;
        QCOMPARE(model.newSeriesColor(), QColor(Qt::yellow));
        QCOMPARE(model.m_colorIndex, 0);
    }
}

void TestModelFrame::keepsPaletteCounterWhenSeriesLeave()
{
    BareModel model;
    addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b");

    model.removeSeries(second);
    QCOMPARE(model.m_colorIndex, 1);
    QCOMPARE(addPlain(model, "c")->m_colorIndex, 2);
    model.removeAllSeries();
    QCOMPARE(model.m_colorIndex, 2);
    QCOMPARE(addPlain(model, "d")->m_colorIndex, 0);
}

void TestModelFrame::insertsPaneAtPosition_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("expected");

    QTest::newRow("first") << 0 << "nAB";
    QTest::newRow("between") << 1 << "AnB";
    QTest::newRow("at the end") << 2 << "ABn";
    QTest::newRow("past the end") << 3 << "ABn";
    QTest::newRow("far past the end") << 1000 << "ABn";
    QTest::newRow("-1") << -1 << "ABn";
    QTest::newRow("negative") << -5 << "ABn";
}

void TestModelFrame::insertsPaneAtPosition()
{
    QFETCH(int, position);
    BareModel model;
    const QMap<ChartWidget *, QString> names{{model.mainChart(), "A"}, {model.appendChart(1), "B"}};

    ChartWidget *chart = model.appendChart(position);

    QTEST(panesText(model, names), "expected");
    QVERIFY(!names.contains(chart));
    QCOMPARE(chart->m_model, &model);
    QCOMPARE(chart->parentWidget(), nullptr);
}

void TestModelFrame::connectsPane_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("slot");

    const auto addRow = [](const char *name, const char *signal, const char *slot) {
        QTest::newRow(name) << QByteArray(signal) << QByteArray(slot);
    };
    addRow("drop", SIGNAL(seriesParentChanged()), SLOT(slotSeriesParentChanged()));
    addRow("zoom", SIGNAL(zoomChanged(QRectF, QRectF, int)),
           SLOT(slotZoomChanged(QRectF, QRectF, int)));
    addRow("cursor", SIGNAL(cursorStateChanged(double, bool)),
           SLOT(slotCursorStateChanged(double, bool)));
    addRow("begin of a move", SIGNAL(beginMove()), SLOT(slotBeginMove()));
    addRow("end of a move", SIGNAL(endMove()), SLOT(slotEndMove()));
}

void TestModelFrame::connectsPane()
{
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);
    BareModel model;

    // Tells whether there was a connection.
    QVERIFY(QObject::disconnect(model.mainChart(), signal, &model, slot));
    QVERIFY(QObject::disconnect(model.appendChart(-1), signal, &model, slot));
}

void TestModelFrame::setsDateTimeScale()
{
    BareModel model;

    model.setUseDateTimeScaleX(true);
    QVERIFY(model.m_axisX->m_dateTime);
    model.setUseDateTimeScaleX(false);
    QVERIFY(!model.m_axisX->m_dateTime);
}

void TestModelFrame::updateTellsLegendThenCalculates()
{
    RecordingModel model;
    addPlain(model, "a");
    QVERIFY(settled(model));
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.takeCalls();

    model.update();

    QCOMPARE(model.takeCalls(), QString("data -1,-1--1,-1")); // no star: not yet calculating
    QVERIFY(model.updatePointsInProgress());
    QCOMPARE(changes.count(), 1);
    QVERIFY(changes.first().at(2).value<QVector<int>>().isEmpty());
}

void TestModelFrame::repaintsPanesWithoutCalculation()
{
    BareModel model;
    addPlain(model, "a");
    QVERIFY(settled(model));
    ChartWidget *panes[] = {model.mainChart(), model.appendChart(-1)};
    PaintCounter counters[] = {PaintCounter(panes[0]), PaintCounter(panes[1])};
    for (int i = 0; i < 2; ++i) {
        panes[i]->show();
        QVERIFY(QTest::qWaitForWindowExposed(panes[i]));
        QTRY_VERIFY(counters[i].m_paints > 0);
    }
    QCoreApplication::processEvents();
    const int before[] = {counters[0].m_paints, counters[1].m_paints};

    model.repaintCharts();

    QVERIFY(!model.updatePointsInProgress());
    QTRY_COMPARE(counters[0].m_paints, before[0] + 1);
    QTRY_COMPARE(counters[1].m_paints, before[1] + 1);
}

void TestModelFrame::calculatesSeriesInRowOrder()
{
    BareModel model;
    for (const char *name : {"a", "b", "c"}) {
        addPlain(model, name);
    }
    QVERIFY(settled(model));

    model.updateCharts();

    QCOMPARE(seriesNames(model.m_updatingSeries), QString("a b c"));
    QVERIFY(settled(model));
}

void TestModelFrame::listensOnceToEachSeries()
{
    BareModel model;
    auto *series = new WatchedSeries("a");
    model.addSeries(series);
    QVERIFY(settled(model));

    for (int i = 0; i < 3; ++i) {
        model.updateCharts();
        QCOMPARE(series->listeners(), 1);
        QVERIFY(settled(model));
    }
    QVERIFY(QObject::disconnect(series, SIGNAL(updatePointsFinished()), &model,
                                SLOT(slotUpdatePointsCompleted())));
}

void TestModelFrame::skipsPassOfEmptyModel()
{
    BareModel model;

    model.updateCharts();

    QVERIFY(!model.updatePointsInProgress());
    QVERIFY(!model.m_chartsUpdatePending);
}

void TestModelFrame::runsOneFurtherPassForThreeRequests()
{
    BareModel model;
    auto *series = new GatedSeries("a");
    model.addSeries(series);
    feedPair(model, series);
    QVERIFY(settled(model));
    const QSignalSpy runs(series, &AbstractChartSeries::updatePointsFinished);

    // Given a pass that runs
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());
    QVERIFY(series->m_pointThread->isRunning());

    // When charts are asked for three times
    for (int i = 0; i < 3; ++i) {
        model.updateCharts();
        QVERIFY(model.m_chartsUpdatePending);
        QCOMPARE(seriesNames(model.m_updatingSeries), QString("a"));
    }
    series->openGate();

    // Then one more pass follows, and no other
    QTRY_COMPARE(runs.count(), 2);
    QVERIFY(settled(model));
    QCOMPARE(runs.count(), 2);
    QVERIFY(!series->m_pointThread->isRunning());
}

void TestModelFrame::endsPassWithLastSeries()
{
    BareModel model;
    auto *quick = new GatedSeries("quick");
    auto *slow = new GatedSeries("slow");
    model.addSeries({quick, slow});
    feedPair(model, quick);
    feedPair(model, slow);
    QVERIFY(settled(model));
    auto *command = new ScaleCommand(&model);

    slow->closeGate();
    model.updateCharts();
    model.m_pendingCommands.append(command);
    QVERIFY(slow->waitForWorker());
    QTRY_COMPARE(seriesNames(model.m_updatingSeries), QString("slow"));
    QCOMPARE(model.m_undoStack->count(), 0); // the pass is not over

    slow->openGate();
    QTRY_COMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->command(0), command);
    QVERIFY(model.m_pendingCommands.isEmpty());
    QVERIFY(!model.updatePointsInProgress());
}

void TestModelFrame::appliesSettingsInOrder()
{
    class LateModel : public RecordingModel
    {
    public:
        void adjustAxisX() override
        {
            record(m_settingsApplied ? "applied" : "applying");
            RecordingModel::adjustAxisX();
        }
    };
    LateModel model;
    addPlain(model, "a");
    addPlain(model, "b");
    QVERIFY(settled(model));
    model.m_pauseAction->setEnabled(true);
    model.m_pauseAction->setChecked(true);
    model.m_settings.autoScaleY = true;
    model.takeCalls();

    model.applyChartSettings();

    QCOMPARE(model.takeCalls().section('|', 0, 4),
             QString("data 0,0-1,1|pause off|y:all|applying|x"));
    QVERIFY(model.updatePointsInProgress());
    QVERIFY(model.m_settingsApplied);
    model.takeCalls();
    model.applyChartSettings();
    QCOMPARE(model.takeCalls().section('|', 0, 3), QString("data 0,0-1,1*|y:all*|applied*|x*"));
}

void TestModelFrame::appliesSettingsWithoutSeries()
{
    RecordingModel model;

    model.takeCalls();
    model.applyChartSettings();

    QCOMPARE(model.takeCalls(), QString("y:all|x"));
    QVERIFY(model.m_settingsApplied);
    QVERIFY(!model.updatePointsInProgress());
}

void TestModelFrame::appliesAutoScale()
{
    BareModel model;
    const PlainSeries *series = addPlain(model, "a");
    const auto flags = [&] {
        return QString("%1%2%3")
            .arg(model.m_axisX->m_autoScale)
            .arg(model.m_autoScaleY)
            .arg(series->m_axisY->m_autoScale);
    };

    QCOMPARE(flags(), QString("000"));
    model.m_settings.autoScaleX = true;
    model.applyChartSettings();
    QCOMPARE(flags(), QString("100"));
    model.m_settings.autoScaleX = false;
    model.m_settings.autoScaleY = true;
    model.applyChartSettings();
    QCOMPARE(flags(), QString("011"));
}

void TestModelFrame::appliesDefaultsToSeriesNotCustomized()
{
    BareModel model;
    PlainSeries *plain = addPlain(model, "a");
    PlainSeries *custom = addPlain(model, "b");
    custom->m_customized = true;
    SeriesSettings &style = model.m_settings.seriesSettings;
    style.colors[0] = Qt::yellow;
    style.colors[1] = Qt::white;
    style.lineWidth = 3;
    style.pointsVisible = true;
    style.pointsSize = 9;

    model.applyChartSettings();

    const auto look = [](const PlainSeries *series) {
        return QString("%1 %2 %3 %4")
            .arg(series->m_color.name())
            .arg(series->m_lineWidth)
            .arg(series->m_pointsVisible)
            .arg(series->m_pointSize);
    };
    QCOMPARE(look(plain), QString("#ffff00 3 1 9"));
    QCOMPARE(look(custom), QString("#00ff00 1 0 5"));
    for (const PlainSeries *series : {plain, custom}) {
        QCOMPARE(series->m_defaults.colors[1], QColor(Qt::white));
        QCOMPARE(series->m_defaults.lineWidth, 3);
        QCOMPARE(series->m_defaults.pointsVisible, true);
        QCOMPARE(series->m_defaults.pointsSize, 9);
    }
}

void TestModelFrame::endsPauseOnlyWithoutDynamicGrid()
{
    RecordingModel model;
    model.m_pauseAction->setEnabled(true);
    model.m_pauseAction->setChecked(true);

    model.m_settings.dynamicGrid = true;
    model.applyChartSettings();
    QVERIFY(model.m_pauseAction->isChecked());

    model.m_settings.dynamicGrid = false;
    model.takeCalls();
    model.applyChartSettings();
    QVERIFY(!model.m_pauseAction->isChecked());
    QCOMPARE(model.takeCalls(), QString("pause off|y:all|x"));

    model.applyChartSettings();
    QCOMPARE(model.takeCalls(), QString("y:all|x"));
}

void TestModelFrame::rewritesHistoryWhenSettingsMoveAxes()
{
    OpenModel model;
    PlainSeries *series = addPlain(model, "a");
    feedPair(model, series);
    const auto *command = dynamic_cast<const ScaleCommand *>(model.m_undoStack->command(0));
    QCOMPARE(command->m_newParamsY.value(0).max, 100.0); // the fixed scale

    model.m_settings.autoScaleY = true;
    model.applyChartSettings();

    QCOMPARE(axisText(*series->m_axisY), QString("[20,80]"));
    QCOMPARE(command->m_newParamsY.value(0).max, 80.0);
}

void TestModelFrame::panesForgetDeadModel()
{
    auto *model = new StaticChartModel("maker", "plotter");
    addPlain(*model, "a");
    const QList<ChartWidget *> panes{model->mainChart(), model->appendChart(-1)};

    delete model;

    for (ChartWidget *pane : panes) {
        QCOMPARE(pane->m_model, nullptr);
        QCOMPARE(pane->m_cursor->m_model, nullptr);
        QVERIFY(pane->seriesList().isEmpty());
        delete pane;
    }
}

void TestModelFrame::stopsAllWorkersBeforeFirstSeriesDies()
{
    auto *model = new OpenModel;
    auto *first = new MortalSeries("first");
    auto *second = new MortalSeries("second");
    model->addSeries({first, second});
    for (MortalSeries *series : {first, second}) {
        feedPair(*model, series);
    }
    QVERIFY(settled(*model));
    for (MortalSeries *series : {first, second}) {
        series->closeGate();
    }
    model->updateCharts();
    for (MortalSeries *series : {first, second}) {
        QVERIFY(series->waitForWorker());
    }
    bool secondRan = true;
    first->m_onDeath = [&] { secondRan = second->m_pointThread->isRunning(); };

    delete model;

    QVERIFY(!secondRan);
}

void TestModelFrame::deletesListedSeriesBeforeRemovedOnes()
{
    QStringList deaths;
    auto *model = new OpenModel;
    MortalSeries *series[] = {new MortalSeries("a"), new MortalSeries("b"), new MortalSeries("c")};
    for (MortalSeries *one : series) {
        one->m_onDeath = [&deaths, one] { deaths.append(one->m_name); };
        model->addSeries(one);
    }
    model->removeSeries(series[0]);

    delete model;

    QCOMPARE(deaths.join(' '), QString("b c a"));
}

void TestModelFrame::freesWaitingCommands()
{
    class CountedCommand : public ScaleCommand
    {
    public:
        CountedCommand(AbstractChartModel *model, int *deaths)
            : ScaleCommand(model)
            , m_deaths(deaths)
        {
        }
        ~CountedCommand() override { ++*m_deaths; }

        int *m_deaths;
    };
    int deaths = 0;
    {
        BareModel model;
        model.m_pendingCommands.append(new CountedCommand(&model, &deaths));
        model.m_moveCommands.append(new CountedCommand(&model, &deaths));
    }
    QCOMPARE(deaths, 2);
}

QTEST_MAIN(TestModelFrame)
#include "tst_modelframe.moc"
