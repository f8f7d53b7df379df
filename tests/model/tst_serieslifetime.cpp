#include "model/abstractchartmodel.h"

#include "support/boxanswer.h"
#include "support/gatedseries.h"
#include "support/recordingmodel.h"
#include "undo/addseriescommand.h"
#include "undo/removeallseriescommand.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QtTest>
#include <QUndoStack>

namespace {

PlainSeries *addPlain(AbstractChartModel &model, const QString &name, int *deaths = nullptr)
{
    auto *series = new PlainSeries(name);
    series->m_deaths = deaths;
    model.addSeries(series);
    return series;
}

/// Series "first", "first + 1", ... up to \p count of them.
QList<AbstractChartSeries *> newSeries(int first, int count, int *deaths = nullptr)
{
    QList<AbstractChartSeries *> list;
    for (int i = 0; i < count; ++i) {
        auto *series = new PlainSeries(QString::number(first + i));
        series->m_deaths = deaths;
        list.append(series);
    }
    return list;
}

GatedSeries *addGated(AbstractChartModel &model, const QString &name)
{
    auto *series = new GatedSeries(name);
    model.addSeries(series);
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    return series;
}

/// Everything that the first attachment writes, as one text.
QString lookText(const PlainSeries &series)
{
    return QString("%1 (%2) width %3 points %4 size %5 image %6 auto %7")
        .arg(series.m_color.name())
        .arg(series.m_colorIndex)
        .arg(series.m_lineWidth)
        .arg(series.m_pointsVisible)
        .arg(series.m_pointSize)
        .arg(series.m_pointImage.width())
        .arg(series.m_axisY->m_autoScale);
}

QString defaultsText(const SeriesSettings &style)
{
    QString text =
        QString("%1 %2 %3").arg(style.lineWidth).arg(style.pointsVisible).arg(style.pointsSize);
    for (const QColor &color : style.colors) {
        text += ' ' + color.name();
    }
    return text;
}

} // namespace

class TestSeriesLifetime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void addsFirstSeriesInOrder();
    void addsLaterSeriesInOrder();
    void addsFinallyInOrder();
    void wrapsSingleSeriesInList();
    void stylesNewSeries();
    void stylesWithoutSymbolsOfOnePixel();
    void keepsStyleOfReturningSeries();
    void attachesAxisAndPane();
    void selectsOnlySeriesOfEmptyModel();
    void ignoresEmptyList_data();
    void ignoresEmptyList();
    void dropsNullsFromList();
    void onlyAnnouncesNullSeries();

    void addsTenOfTwelve();
    void addsTwelveFinally();
    void replacesOldestByEleventh();
    void replacesAllByFifteen();
    void removesNothingUpToTen();
    void keepsNumbersOfOverflow();

    void removesSeriesInOrder();
    void removesLastSeriesInOrder();
    void undoesRemovalInOrder();
    void deletesSeriesRemovedFinally();
    void removesOnlyListedSeries_data();
    void removesOnlyListedSeries();
    void restoresRowSelectionAndPalette();
    void keepsPaletteAfterUndoneAddition();
    void deletesAddedSeriesWithItsUndoneStep();
    void keepsRemovedSeriesWithItsUndoneStep();
    void endsPaneAndWorkerOfRemovedSeries();

    void onlyAnnouncesRemovalOfUnlistedSeries_data();
    void onlyAnnouncesRemovalOfUnlistedSeries();

    void removesAllInOrder();
    void undoesRemovalOfAll();
    void deletesAllRemovedFinally();
    void removesAllOfNone();
    void completesRemovalOfNoneWithoutRows();
    void deletesAfterTheListIsEmpty();

    void restoresInAscendingOrder();
    void restoresBeyondTheEndAtTheEnd();
    void restoresNeitherNullNorNegativeRow();
    void restoresSelectionAndCounterUnlessNegative();

    void namesAdditionAfterItself();
    void namesRemovalAfterItsAction();
    void namesRemovalOfAllAfterItsAction();
    void leavesDirectRemovalsUnnamed();
    void removesNothingWithoutSelection();

    void asksBeforeRemovingAll_data();
    void asksBeforeRemovingAll();
    void asksBeforeClearingPoints_data();
    void asksBeforeClearingPoints();
    void asksOnActiveWindow();
    void survivesDeathUnderTheQuestion();

    void closesPassWithRemovedSeries_data();
    void closesPassWithRemovedSeries();
    void closesPassWhenAllAreRemoved();
    void continuesPassOfRemainingSeries();
    void deletesSeriesWithRunningWorker();
    void ignoresCompletionOfEarlierRun();
    void ignoresLateCompletionOfRemovedSeries();

    void staysAConsistentTable();
};

void TestSeriesLifetime::initTestCase()
{
    // So that a QSignalSpy keeps the flags of a selection.
    qRegisterMetaType<QItemSelectionModel::SelectionFlags>("QItemSelectionModel::SelectionFlags");
}

void TestSeriesLifetime::addsFirstSeriesInOrder()
{
    RecordingModel model;
    model.takeCalls();

    addPlain(model, "a");

    // The last entry is the command's, which captures the axes as they became.
    QCOMPARE(model.takeCalls(), QString("inserting 0-0|inserted 0-0|select 0,0 35|y:all|x|zoom:a|"
                                        "savePosition|charts|actions|series*|actions*"));
}

void TestSeriesLifetime::addsLaterSeriesInOrder()
{
    RecordingModel model;
    addPlain(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();

    addPlain(model, "b");

    QCOMPARE(model.takeCalls(), QString("inserting 1-1|inserted 1-1|y:all|x|zoom:b|"
                                        "savePosition|charts|actions|series*|actions*"));
}

void TestSeriesLifetime::addsFinallyInOrder()
{
    RecordingModel model;
    model.m_seriesEditable = false;
    model.takeCalls();

    addPlain(model, "a");

    QCOMPARE(model.takeCalls(), QString("inserting 0-0|inserted 0-0|select 0,0 35|y:all|x|zoom:a|"
                                        "savePosition|charts|actions|series*"));
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSeriesLifetime::wrapsSingleSeriesInList()
{
    class ListModel : public OpenModel
    {
    public:
        using OpenModel::addSeries;
        void addSeries(const QList<AbstractChartSeries *> &series) override { m_list = series; }

        QList<AbstractChartSeries *> m_list;
    };
    ListModel model;
    PlainSeries series;

    model.addSeries(&series);

    QCOMPARE(model.m_list, QList<AbstractChartSeries *>{&series});
}

void TestSeriesLifetime::stylesNewSeries()
{
    OpenModel model;
    model.setAutoScale(false, true);
    SeriesSettings &style = model.m_settings.seriesSettings;
    style.colors[0] = Qt::yellow;
    style.lineWidth = 3;
    style.pointsVisible = true;
    style.pointsSize = 9;

    const PlainSeries *first = addPlain(model, "a");
    const PlainSeries *second = addPlain(model, "b");

    QCOMPARE(lookText(*first), QString("#ffff00 (0) width 3 points 1 size 9 image 9 auto 1"));
    QCOMPARE(lookText(*second), QString("#00ff00 (1) width 3 points 1 size 9 image 9 auto 1"));
    QCOMPARE(defaultsText(first->m_defaults), defaultsText(style));
    QCOMPARE(defaultsText(second->m_defaults), defaultsText(style));
}

void TestSeriesLifetime::stylesWithoutSymbolsOfOnePixel()
{
    OpenModel model;
    model.m_settings.seriesSettings.pointsSize = 1;

    const PlainSeries *series = addPlain(model, "a");

    QCOMPARE(lookText(*series), QString("#ff0000 (0) width 1 points 0 size 5 image 0 auto 0"));
    QCOMPARE(series->m_defaults.pointsSize, 1);
}

void TestSeriesLifetime::keepsStyleOfReturningSeries()
{
    OpenModel model;
    PlainSeries *series = addPlain(model, "a");
    model.addValue(series, newValue(1, 2));
    series->m_color = Qt::yellow;
    series->m_lineWidth = 7;
    model.m_settings.seriesSettings.lineWidth = 4;

    model.m_undoStack->undo();
    QCOMPARE(rowsText(model), QString());
    model.m_undoStack->redo();

    QCOMPARE(model.m_series, QList<AbstractChartSeries *>{series});
    QCOMPARE(lookText(*series), QString("#ffff00 (0) width 7 points 0 size 5 image 5 auto 0"));
    QCOMPARE(series->m_defaults.lineWidth, 1);
    QCOMPARE(storeText(*series), QString("1:2"));
}

void TestSeriesLifetime::attachesAxisAndPane()
{
    OpenModel model;
    const PlainSeries *series = addPlain(model, "a");

    QCOMPARE(series->m_axisX, model.m_axisX);
    QCOMPARE(series->m_chart, model.mainChart());
}

void TestSeriesLifetime::selectsOnlySeriesOfEmptyModel()
{
    OpenModel model;
    const QSignalSpy selections(&model, &AbstractChartModel::select);

    addPlain(model, "a");
    QCOMPARE(selections.count(), 1);
    addPlain(model, "b");
    QCOMPARE(selections.count(), 1);
    model.removeAllSeries();
    model.addSeries(newSeries(0, 2));
    QCOMPARE(selections.count(), 2); // for the first of the two only
}

void TestSeriesLifetime::ignoresEmptyList_data()
{
    QTest::addColumn<bool>("editable");
    QTest::addColumn<int>("nulls");

    QTest::newRow("empty, editable") << true << 0;
    QTest::newRow("empty, not editable") << false << 0;
    QTest::newRow("nulls, editable") << true << 2;
    QTest::newRow("nulls, not editable") << false << 2;
}

void TestSeriesLifetime::ignoresEmptyList()
{
    QFETCH(bool, editable);
    QFETCH(int, nulls);
    RecordingModel model;
    model.m_seriesEditable = editable;
    QList<AbstractChartSeries *> list;
    for (int i = 0; i < nulls; ++i) {
        list.append(nullptr);
    }
    model.takeCalls();

    model.addSeries(list);

    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(model.m_undoStack->count(), 0);
    model.addSeries(static_cast<AbstractChartSeries *>(nullptr));
    QCOMPARE(model.takeCalls(), QString());
}

void TestSeriesLifetime::dropsNullsFromList()
{
    OpenModel model;
    QList<AbstractChartSeries *> list = newSeries(0, 11);
    list.prepend(nullptr);
    list.insert(5, nullptr);
    AbstractChartSeries *eleventh = list.last();

    model.addSeries(list);

    QCOMPARE(rowsText(model), QString("0 1 2 3 4 5 6 7 8 9")); // ten that are there
    delete eleventh;
}

void TestSeriesLifetime::onlyAnnouncesNullSeries()
{
    RecordingModel model;
    model.takeCalls();

    model.completeAddSeries(nullptr);

    QCOMPARE(model.takeCalls(), QString("series"));
    QCOMPARE(model.m_series.size(), 0);
}

void TestSeriesLifetime::addsTenOfTwelve()
{
    int deaths = 0;
    const QList<AbstractChartSeries *> list = newSeries(0, 12, &deaths);
    {
        OpenModel model;
        model.addSeries(list);
        QCOMPARE(rowsText(model), QString("0 1 2 3 4 5 6 7 8 9"));
        QCOMPARE(model.m_undoStack->count(), 1);
    }
    QCOMPARE(deaths, 10); // the two others stay the caller's
    delete list.at(10);
    delete list.at(11);
}

void TestSeriesLifetime::addsTwelveFinally()
{
    OpenModel model;
    model.m_seriesEditable = false;

    model.addSeries(newSeries(0, 12));

    QCOMPARE(rowsText(model), QString("0 1 2 3 4 5 6 7 8 9 10 11"));
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSeriesLifetime::replacesOldestByEleventh()
{
    OpenModel model;
    model.addSeries(newSeries(0, 10));
    model.addValue(model.m_series.first(), newValue(1, 2));
    const QList<AbstractChartSeries *> before = model.m_series;
    QVERIFY(settled(model));
    QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy insertions(&model, &QAbstractItemModel::rowsInserted);

    AbstractChartSeries *eleventh = addPlain(model, "10");
    QCOMPARE(rowsText(model), QString("1 2 3 4 5 6 7 8 9 10"));
    QCOMPARE(removals.takeFirst().at(1).toInt(), 0);
    QCOMPARE(insertions.takeFirst().at(1).toInt(), 9); // after the removal: nine rows

    model.m_undoStack->undo();
    QCOMPARE(model.m_series, before);
    QCOMPARE(storeText(*model.m_series.first()), QString("1:2"));
    QCOMPARE(insertions.takeFirst().at(1).toInt(), 0); // the old comes back first
    QCOMPARE(removals.takeFirst().at(1).toInt(), 10);  // before the new one leaves

    model.m_undoStack->redo();
    QCOMPARE(rowsText(model), QString("1 2 3 4 5 6 7 8 9 10"));
    QCOMPARE(model.m_series.last(), eleventh);
}

void TestSeriesLifetime::replacesAllByFifteen()
{
    int deaths = 0;
    OpenModel model;
    model.addSeries(newSeries(0, 10, &deaths));
    const QList<AbstractChartSeries *> list = newSeries(20, 15, &deaths);

    model.addSeries(list);
    QCOMPARE(rowsText(model), QString("20 21 22 23 24 25 26 27 28 29"));
    model.m_undoStack->undo();
    QCOMPARE(rowsText(model), QString("0 1 2 3 4 5 6 7 8 9"));
    QCOMPARE(deaths, 0);
    qDeleteAll(list.mid(10));
    QCOMPARE(deaths, 5);
}

void TestSeriesLifetime::removesNothingUpToTen()
{
    OpenModel model;
    model.addSeries(newSeries(0, 7));
    const QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);

    model.addSeries(newSeries(7, 3));

    QCOMPARE(model.m_series.size(), 10);
    QCOMPARE(removals.count(), 0);
}

void TestSeriesLifetime::keepsNumbersOfOverflow()
{
    OpenModel model;
    model.addSeries(newSeries(0, 9));

    model.addSeries(newSeries(9, 3)); // 9 + 3 - 10: two leave

    const auto *command = dynamic_cast<const AddSeriesCommand *>(model.m_undoStack->command(1));
    QVERIFY(command);
    QCOMPARE(command->m_removedSeries.keys(), (QList<int>{0, 1}));
    QCOMPARE(command->m_addedSeries.keys(), (QList<int>{7, 8, 9}));
    QCOMPARE(rowsText(model), QString("2 3 4 5 6 7 8 9 10 11"));
}

void TestSeriesLifetime::removesSeriesInOrder()
{
    RecordingModel model;
    addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b");
    addPlain(model, "c");
    QVERIFY(settled(model));
    model.takeCalls();

    model.removeSeries(second);

    QCOMPARE(model.takeCalls(), QString("removing 1-1|removed 1-1|y:all|x|"
                                        "savePosition|charts|actions|series*|actions*"));
    QCOMPARE(rowsText(model), QString("a c"));
}

void TestSeriesLifetime::removesLastSeriesInOrder()
{
    RecordingModel model;
    PlainSeries *series = addPlain(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();

    model.removeSeries(series);

    QCOMPARE(model.takeCalls(), QString("removing 0-0|removed 0-0|y:all|x|"
                                        "savePosition|charts|actions|series|actions"));
}

void TestSeriesLifetime::undoesRemovalInOrder()
{
    RecordingModel model;
    addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b");
    second->m_selected = true;
    model.removeSeries(second);
    QVERIFY(settled(model));
    model.takeCalls();

    model.m_undoStack->undo();

    QCOMPARE(model.takeCalls(), QString("inserting 1-1|inserted 1-1|y:all|x|zoom:b|select 1,0 35|"
                                        "savePosition|charts|actions|series*|actions*"));
}

void TestSeriesLifetime::deletesSeriesRemovedFinally()
{
    int deaths = 0;
    RecordingModel model;
    model.m_seriesEditable = false;
    addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b", &deaths);
    QVERIFY(settled(model));
    model.takeCalls();

    model.removeSeries(second);

    QCOMPARE(deaths, 1);
    QCOMPARE(model.takeCalls(), QString("removing 1-1|removed 1-1|y:all|x|"
                                        "savePosition|charts|actions|series*"));
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSeriesLifetime::removesOnlyListedSeries_data()
{
    QTest::addColumn<bool>("editable");

    QTest::newRow("editable") << true;
    QTest::newRow("not editable") << false;
}

void TestSeriesLifetime::removesOnlyListedSeries()
{
    QFETCH(bool, editable);
    RecordingModel model;
    model.m_seriesEditable = false;
    addPlain(model, "a");
    model.m_seriesEditable = editable;
    QVERIFY(settled(model));
    model.takeCalls();
    PlainSeries stranger("stranger");

    model.removeSeries(&stranger);
    model.removeSeries(nullptr);

    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSeriesLifetime::restoresRowSelectionAndPalette()
{
    OpenModel model;
    model.addSeries(newSeries(0, 4)); // the counter stands at 3
    PlainSeries *selected = static_cast<PlainSeries *>(model.m_series.at(1));
    selected->m_selected = true;
    QSignalSpy selections(&model, &AbstractChartModel::select);

    model.removeSeries(selected);
    model.m_colorIndex = 8;
    model.m_undoStack->undo();

    QCOMPARE(rowsText(model), QString("0 1 2 3"));
    QCOMPARE(selections.count(), 1);
    QCOMPARE(selections.first().at(0).value<QModelIndex>(), model.index(1, 0));
    QCOMPARE(model.m_colorIndex, 3);
    QCOMPARE(addPlain(model, "next")->m_colorIndex, 4);
}

void TestSeriesLifetime::keepsPaletteAfterUndoneAddition()
{
    OpenModel model;
    addPlain(model, "a");
    addPlain(model, "b");

    model.m_undoStack->undo();

    QCOMPARE(model.m_colorIndex, 1);
    QCOMPARE(addPlain(model, "c")->m_colorIndex, 2);
}

void TestSeriesLifetime::deletesAddedSeriesWithItsUndoneStep()
{
    int deaths = 0;
    OpenModel model;
    addPlain(model, "a", &deaths);

    model.m_undoStack->undo();
    QCOMPARE(deaths, 0);
    addPlain(model, "b");
    QCOMPARE(deaths, 1);
    QCOMPARE(rowsText(model), QString("b"));
}

void TestSeriesLifetime::keepsRemovedSeriesWithItsUndoneStep()
{
    int deaths = 0;
    OpenModel model;
    PlainSeries *series = addPlain(model, "a", &deaths);

    model.removeSeries(series);
    model.m_undoStack->undo();
    addPlain(model, "b");
    QCOMPARE(deaths, 0);
    QCOMPARE(rowsText(model), QString("a b"));
}

void TestSeriesLifetime::endsPaneAndWorkerOfRemovedSeries()
{
    OpenModel model;
    GatedSeries *series = addGated(model, "a");
    QVERIFY(settled(model));
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());

    model.removeSeries(series);

    QCOMPARE(series->m_chart, nullptr);
    QVERIFY(!series->m_pointThread->isRunning());
    QVERIFY(model.m_updatingSeries.isEmpty());
}

void TestSeriesLifetime::onlyAnnouncesRemovalOfUnlistedSeries_data()
{
    QTest::addColumn<bool>("null");

    QTest::newRow("null") << true;
    QTest::newRow("not in the model") << false;
}

void TestSeriesLifetime::onlyAnnouncesRemovalOfUnlistedSeries()
{
    QFETCH(bool, null);
    RecordingModel model;
    addPlain(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();
    PlainSeries stranger("stranger");

    model.completeRemoveSeries(null ? nullptr : &stranger);

    QCOMPARE(model.takeCalls(), QString("series"));
    QCOMPARE(rowsText(model), QString("a"));
}

void TestSeriesLifetime::removesAllInOrder()
{
    RecordingModel model;
    model.addSeries(newSeries(0, 3));
    const QList<AbstractChartSeries *> series = model.m_series;
    QVERIFY(settled(model));
    model.takeCalls();

    model.removeAllSeries();

    QCOMPARE(model.takeCalls(), QString("removing 0-2|removed 0-2|y:all|x|"
                                        "savePosition|charts|actions|series|actions"));
    QVERIFY(dynamic_cast<const RemoveAllSeriesCommand *>(model.m_undoStack->command(1)));
    for (const AbstractChartSeries *one : series) {
        QCOMPARE(one->m_chart, nullptr);
        QVERIFY(!one->m_pointThread->isRunning());
    }
}

void TestSeriesLifetime::undoesRemovalOfAll()
{
    RecordingModel model;
    model.addSeries(newSeries(0, 2));
    model.removeAllSeries();
    QVERIFY(settled(model));
    model.takeCalls();

    model.m_undoStack->undo();

    QCOMPARE(model.takeCalls(),
             QString("inserting 0-0|inserted 0-0|y:all|x|zoom:0|"
                     "inserting 1-1|inserted 1-1|y:all|x|zoom:1|"
                     "savePosition|charts|actions|series*|actions*")); // nothing was selected
    QCOMPARE(rowsText(model), QString("0 1"));
    model.m_undoStack->redo();
    QCOMPARE(rowsText(model), QString());
}

void TestSeriesLifetime::deletesAllRemovedFinally()
{
    int deaths = 0;
    OpenModel model;
    model.m_seriesEditable = false;
    model.addSeries(newSeries(0, 3, &deaths));

    model.removeAllSeries();

    QCOMPARE(deaths, 3);
    QCOMPARE(model.m_series.size(), 0);
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSeriesLifetime::removesAllOfNone()
{
    RecordingModel model;
    model.takeCalls();

    model.removeAllSeries();
    model.m_seriesEditable = false;
    model.removeAllSeries();

    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSeriesLifetime::completesRemovalOfNoneWithoutRows()
{
    RecordingModel model;
    model.takeCalls();

    model.completeRemoveAllSeries();

    QCOMPARE(model.takeCalls(), QString("y:all|x|savePosition|charts|actions|series"));
}

void TestSeriesLifetime::deletesAfterTheListIsEmpty()
{
    class LookingSeries : public PlainSeries
    {
    public:
        explicit LookingSeries(const AbstractChartModel *model, int *rows)
            : m_owner(model)
            , m_rows(rows)
        {
        }
        ~LookingSeries() override { *m_rows = m_owner->m_series.size(); }

        const AbstractChartModel *m_owner;
        int *m_rows; ///< The owner's rows at the series' death.
    };
    int rows = -1;
    OpenModel model;
    model.m_seriesEditable = false;
    model.addSeries(new LookingSeries(&model, &rows));

    model.removeAllSeries();

    QCOMPARE(rows, 0);
}

void TestSeriesLifetime::restoresInAscendingOrder()
{
    OpenModel model;
    model.m_seriesEditable = false;
    model.addSeries(newSeries(0, 2));
    const QList<AbstractChartSeries *> back = newSeries(10, 3);

    model.restoreSeries({{4, back.at(2)}, {0, back.at(0)}, {2, back.at(1)}}, -1, -1);

    QCOMPARE(rowsText(model), QString("10 0 11 1 12"));
}

void TestSeriesLifetime::restoresBeyondTheEndAtTheEnd()
{
    RecordingModel model;
    model.m_seriesEditable = false;
    model.addSeries(newSeries(0, 1));
    QVERIFY(settled(model));
    model.takeCalls();

    model.restoreSeries({{7, newSeries(7, 1).first()}}, -1, -1);

    QCOMPARE(rowsText(model), QString("0 7"));
    QCOMPARE(model.takeCalls().section('|', 0, 1), QString("inserting 1-1|inserted 1-1"));
}

void TestSeriesLifetime::restoresNeitherNullNorNegativeRow()
{
    RecordingModel model;
    PlainSeries stranger;
    model.takeCalls();

    model.restoreSeries({{-1, &stranger}, {0, nullptr}}, -1, -1);

    QCOMPARE(model.takeCalls(), QString("savePosition|charts|actions|series"));
    QCOMPARE(model.m_series.size(), 0);
}

void TestSeriesLifetime::restoresSelectionAndCounterUnlessNegative()
{
    OpenModel model;
    model.addSeries(newSeries(0, 3));
    QSignalSpy selections(&model, &AbstractChartModel::select);

    model.m_colorIndex = 5;
    model.restoreSeries({}, -1, -1);
    QCOMPARE(selections.count(), 0);
    QCOMPARE(model.m_colorIndex, 5);

    model.restoreSeries({}, 2, 0);
    QCOMPARE(selections.count(), 1);
    QCOMPARE(selections.first().at(0).value<QModelIndex>(), model.index(2, 0));
    QCOMPARE(int(selections.first().at(1).value<QItemSelectionModel::SelectionFlags>()), 35);
    QCOMPARE(model.m_colorIndex, 0);
}

void TestSeriesLifetime::namesAdditionAfterItself()
{
    OpenModel model;

    addPlain(model, "a");

    QCOMPARE(model.m_undoStack->text(0), QString("\"Add series\""));
}

void TestSeriesLifetime::namesRemovalAfterItsAction()
{
    OpenModel model;
    addPlain(model, "a");
    addPlain(model, "b")->m_selected = true;

    model.m_removeSeriesAction->trigger();
    QCOMPARE(rowsText(model), QString("a"));
    QCOMPARE(model.m_undoStack->text(2), QString("\"Remove series\""));

    model.m_undoStack->undo();
    model.m_removeSeriesAction->setText("Drop 50%1"); // the text is the action's
    model.m_removeSeriesAction->trigger();
    QCOMPARE(model.m_undoStack->text(2), QString("\"Drop 50%1\""));
}

void TestSeriesLifetime::namesRemovalOfAllAfterItsAction()
{
    OpenModel model;
    model.addSeries(newSeries(0, 2));
    const BoxAnswer answer(QMessageBox::Yes);

    model.m_removeAllSeriesAction->trigger();

    QCOMPARE(model.m_series.size(), 0);
    QCOMPARE(model.m_undoStack->text(1), QString("\"Remove all series\""));
}

void TestSeriesLifetime::leavesDirectRemovalsUnnamed()
{
    OpenModel model;
    PlainSeries *series = addPlain(model, "a");
    addPlain(model, "b");

    model.removeSeries(series);
    model.removeAllSeries();

    QCOMPARE(model.m_undoStack->count(), 4);
    QCOMPARE(model.m_undoStack->text(2), QString());
    QCOMPARE(model.m_undoStack->text(3), QString());
}

void TestSeriesLifetime::removesNothingWithoutSelection()
{
    OpenModel model;
    addPlain(model, "a");

    model.m_removeSeriesAction->trigger();

    QCOMPARE(rowsText(model), QString("a"));
    QCOMPARE(model.m_undoStack->count(), 1);
}

void TestSeriesLifetime::asksBeforeRemovingAll_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("rowsAfter");

    QTest::newRow("yes") << int(QMessageBox::Yes) << "";
    QTest::newRow("no") << int(QMessageBox::No) << "0 1";
    QTest::newRow("closed") << int(QMessageBox::Cancel) << "0 1"; // no such button
}

void TestSeriesLifetime::asksBeforeRemovingAll()
{
    QFETCH(int, button);
    OpenModel model;
    model.addSeries(newSeries(0, 2));
    const BoxAnswer answer{QMessageBox::StandardButton(button)};

    model.slotRemoveAllSeries();

    QCOMPARE(answer.m_count, 1);
    QCOMPARE(answer.m_text, QString("Do you really want to remove all series?"));
    QCOMPARE(answer.m_icon, QMessageBox::Question);
    QCOMPARE(answer.m_buttons, QString("Yes No"));
    QTEST(rowsText(model), "rowsAfter");
}

void TestSeriesLifetime::asksBeforeClearingPoints_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("storesAfter");
    QTest::addColumn<bool>("calculates");

    QTest::newRow("yes") << int(QMessageBox::Yes) << "|" << true;
    QTest::newRow("no") << int(QMessageBox::No) << "1:2|3:4" << false;
    QTest::newRow("closed") << int(QMessageBox::Cancel) << "1:2|3:4" << false;
}

void TestSeriesLifetime::asksBeforeClearingPoints()
{
    QFETCH(int, button);
    OpenModel model;
    PlainSeries *first = addPlain(model, "a");
    PlainSeries *second = addPlain(model, "b");
    model.addValue(first, newValue(1, 2));
    model.addValue(second, newValue(3, 4));
    QVERIFY(settled(model));
    const BoxAnswer answer{QMessageBox::StandardButton(button)};

    model.m_clearPointsAction->trigger();

    QCOMPARE(answer.m_count, 1);
    QCOMPARE(answer.m_text, QString("Do you really want to clear points?"));
    QCOMPARE(answer.m_buttons, QString("Yes No"));
    QTEST(storeText(*first) + '|' + storeText(*second), "storesAfter");
    QTEST(model.updatePointsInProgress(), "calculates");
}

void TestSeriesLifetime::asksOnActiveWindow()
{
    OpenModel model;
    BoxAnswer answer(QMessageBox::No);

    QCOMPARE(QApplication::activeWindow(), nullptr);
    model.slotRemoveAllSeries();
    QCOMPARE(answer.m_parent, nullptr);
    QCOMPARE(answer.m_title, QString());

    QWidget window;
    window.setWindowTitle("Plotter");
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    model.slotClearPoints();
    QCOMPARE(answer.m_parent, &window);
    QCOMPARE(answer.m_title, QString("Plotter"));
    QCOMPARE(answer.m_count, 2);
}

void TestSeriesLifetime::survivesDeathUnderTheQuestion()
{
    auto *model = new OpenModel;
    addPlain(*model, "a");
    BoxAnswer answer(QMessageBox::Yes);
    answer.m_beforeAnswer = [model] { delete model; };

    model->slotRemoveAllSeries();

    QCOMPARE(answer.m_count, 1);
}

void TestSeriesLifetime::closesPassWithRemovedSeries_data()
{
    QTest::addColumn<bool>("editable");
    QTest::addColumn<int>("steps");

    QTest::newRow("editable") << true << 4;         // two additions, the removal, the zoom
    QTest::newRow("deleted at once") << false << 1; // and so does not report any more
}

void TestSeriesLifetime::closesPassWithRemovedSeries()
{
    QFETCH(bool, editable);
    QFETCH(int, steps);
    OpenModel model;
    model.m_seriesEditable = editable;
    GatedSeries *staying = addGated(model, "staying");
    GatedSeries *leaving = addGated(model, "leaving");
    QVERIFY(settled(model));
    const QSignalSpy runs(staying, &AbstractChartSeries::updatePointsFinished);

    // Given a pass that waits for one series only, and a zoom that waits for the pass
    leaving->closeGate();
    model.updateCharts();
    QVERIFY(leaving->waitForWorker());
    QTRY_COMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{leaving});
    auto *command = new ScaleCommand(&model);
    model.m_pendingCommands.append(command);
    const QRectF plot = model.mainChart()->chartRect(QRectF());
    staying->zoomPending(plot, QRectF(plot.topLeft(), plot.size() / 2));

    // When that series leaves
    model.removeSeries(leaving);
    QVERIFY(model.m_chartsUpdatePending);

    // Then the pass ends as it would have, outside the push, and the redraw asked for follows
    QCOMPARE(model.m_pendingCommands.size(), 1);
    QTRY_COMPARE(model.m_pendingCommands.size(), 0);
    QVERIFY(settled(model));
    QCOMPARE(runs.count(), 2);
    QCOMPARE(axisText(*staying->m_axisY), QString("[50,100] zoomed"));
    QCOMPARE(model.m_undoStack->count(), steps);
    QCOMPARE(model.m_undoStack->command(steps - 1), command);
}

void TestSeriesLifetime::closesPassWhenAllAreRemoved()
{
    OpenModel model;
    GatedSeries *series = addGated(model, "a");
    QVERIFY(settled(model));
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());
    model.updateCharts();
    model.m_pendingCommands.append(new ScaleCommand(&model));

    model.removeAllSeries();

    QVERIFY(!model.updatePointsInProgress());
    QTRY_COMPARE(model.m_pendingCommands.size(), 0);
    QVERIFY(settled(model));
    QVERIFY(!model.m_chartsUpdatePending);
}

void TestSeriesLifetime::continuesPassOfRemainingSeries()
{
    OpenModel model;
    GatedSeries *staying = addGated(model, "staying");
    GatedSeries *leaving = addGated(model, "leaving");
    QVERIFY(settled(model));
    staying->closeGate();
    leaving->closeGate();
    model.updateCharts();
    QVERIFY(staying->waitForWorker());
    QVERIFY(leaving->waitForWorker());
    model.m_pendingCommands.append(new ScaleCommand(&model));

    model.removeSeries(leaving);
    QCoreApplication::processEvents();
    QCOMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{staying});
    QCOMPARE(model.m_pendingCommands.size(), 1);

    staying->openGate();
    QTRY_COMPARE(model.m_pendingCommands.size(), 0);
    QVERIFY(settled(model));
}

void TestSeriesLifetime::deletesSeriesWithRunningWorker()
{
    OpenModel model;
    model.m_seriesEditable = false;
    GatedSeries *first = addGated(model, "a");
    GatedSeries *second = addGated(model, "b");
    QVERIFY(settled(model));
    for (GatedSeries *series : {first, second}) {
        series->closeGate();
    }
    model.updateCharts();
    for (GatedSeries *series : {first, second}) {
        QVERIFY(series->waitForWorker());
    }

    model.removeSeries(first);
    QCOMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{second});
    model.removeAllSeries();
    QVERIFY(settled(model));
}

void TestSeriesLifetime::ignoresCompletionOfEarlierRun()
{
    OpenModel model;
    GatedSeries *series = addGated(model, "a");
    QVERIFY(settled(model));
    const QSignalSpy runs(series, &AbstractChartSeries::updatePointsFinished);

    // Given a run that a removal has stopped, its completion still on the way
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());
    model.removeSeries(series);
    QCOMPARE(runs.count(), 0);

    // When the series is back and runs again
    model.m_undoStack->undo();
    QVERIFY(series->waitForWorker());
    model.m_chartsUpdatePending = false; // a further pass would hide that this one has ended
    QTRY_COMPARE(runs.count(), 1);

    // Then that completion ends nothing
    QCoreApplication::processEvents();
    QCOMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{series});
    series->openGate();
    QVERIFY(settled(model));
}

void TestSeriesLifetime::ignoresLateCompletionOfRemovedSeries()
{
    OpenModel model;
    GatedSeries *staying = addGated(model, "staying");
    GatedSeries *leaving = addGated(model, "leaving");
    QVERIFY(settled(model));
    const QSignalSpy lateRuns(leaving, &AbstractChartSeries::updatePointsFinished);

    leaving->closeGate();
    model.updateCharts();
    QVERIFY(leaving->waitForWorker());
    staying->closeGate();
    model.removeSeries(leaving);
    model.updateCharts(); // may start the next pass already, which waits for the other series
    QTRY_COMPARE(lateRuns.count(), 1);
    QVERIFY(staying->waitForWorker());

    QCOMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{staying});
    staying->openGate();
    QVERIFY(settled(model));
}

void TestSeriesLifetime::staysAConsistentTable()
{
    OpenModel model;
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);

    model.addSeries(newSeries(0, 4));
    addPlain(model, "4");
    model.removeSeries(model.m_series.at(2));
    model.addSeries(newSeries(10, 8)); // two of the four leave
    model.removeAllSeries();
    addPlain(model, "last");
    QCOMPARE(rowsText(model), QString("last"));
    while (model.m_undoStack->canUndo()) {
        model.m_undoStack->undo();
    }
    QCOMPARE(rowsText(model), QString());
    while (model.m_undoStack->canRedo()) {
        model.m_undoStack->redo();
    }
    QCOMPARE(rowsText(model), QString("last"));
    model.setData(model.index(0, AbstractChartModel::NameColumn), 0, Qt::CheckStateRole);
    model.applyChartSettings();

    model.m_seriesEditable = false;
    model.addSeries(newSeries(20, 12));
    model.removeSeries(model.m_series.at(6));
    model.removeAllSeries();
    QVERIFY(settled(model));
}

QTEST_MAIN(TestSeriesLifetime)
#include "tst_serieslifetime.moc"
