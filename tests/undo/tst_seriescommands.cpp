#include "undo/addseriescommand.h"
#include "undo/removeallseriescommand.h"
#include "undo/removeseriescommand.h"
#include "undo/scalecommand.h"

#include "series/pointthread.h"
#include "support/gatedseries.h"
#include "support/openmodel.h"
#include "support/plainseries.h"
#include "support/recordingmodel.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QSignalSpy>
#include <QtTest>
#include <QUndoStack>

#include <memory>

namespace {

using Rows = QMap<int, AbstractChartSeries *>;

/// A model under the eyes of Qt's tester, with a legend that selects rows as it is told.
struct Chart
{
    Chart()
        : model(std::make_unique<OpenModel>())
        , tester(model.get())
    {
        QObject::connect(model.get(), &AbstractChartModel::select, [this](const QModelIndex &row) {
            for (AbstractChartSeries *series : qAsConst(model->m_series)) {
                series->m_selected = model->m_series.indexOf(series) == row.row();
            }
        });
    }

    /// A series whose death counts and which nobody owns yet.
    PlainSeries *make(const QString &name)
    {
        auto *series = new PlainSeries(name);
        series->m_deaths = &deaths[name];
        return series;
    }

    PlainSeries *add(const QString &name)
    {
        PlainSeries *series = make(name);
        model->addSeries(series);
        return series;
    }

    QList<AbstractChartSeries *> makeAll(const QStringList &names)
    {
        QList<AbstractChartSeries *> all;
        for (const QString &name : names) {
            all.append(make(name));
        }
        return all;
    }

    /// The names of all that have died, in alphabetical order; "twice" is how a double death shows.
    QString deathsText() const
    {
        QStringList dead;
        for (auto it = deaths.cbegin(); it != deaths.cend(); ++it) {
            if (it.value() > 0) {
                dead.append(it.value() == 1 ? it.key() : it.key() + " twice");
            }
        }
        return dead.join(' ');
    }

    /// A scale step that changes nothing but the X axis.
    void pushScale(double maxX)
    {
        auto *command = new ScaleCommand(model.get());
        model->m_axisX->assignRange(0.0, maxX);
        model->m_axisX->m_zoomed = true;
        model->m_undoStack->push(command);
    }

    QUndoStack &stack() { return *model->m_undoStack; }

    QMap<QString, int> deaths;
    std::unique_ptr<OpenModel> model;
    QAbstractItemModelTester tester;
};

QStringList letters(const QString &text)
{
    return text.split(' ', Qt::SkipEmptyParts);
}

} // namespace

class TestSeriesCommands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void answersWithIdAndType_data();
    void answersWithIdAndType();
    void takesStateOfModelWhenMade();
    void doesOnlyTheScaleHalfWithEmptyMaps();
    void doesNothingWithoutModel();
    void skipsNullSeries();
    void ownsNothingBeforeThePush();

    void addsAndTakesOut();
    void undoOfAddLeavesTheColourCounter();
    void removesAndRestoresRowSelectionAndColourCounter();
    void restoresNoSelectionWhereThereWasNone();
    void restoresEachRowIntoItsGap();
    void removesAllInOneStepAndRestores();
    void removingAllOfAnEmptyModelDoesNothing();
    void removingForeignSeriesPushesNothing();
    void eleventhSeriesPushesOutTheFirst();
    void undoBringsOldSeriesBackBeforeAddedOnesLeave();
    void addsTenOfFifteenAndLeavesTheRestAlone();
    void fifteenReplaceAllTen();
    void seriesReturnsAsItWas();
    void seriesOutOfTheModelHasNoPaneAndNoWorker();
    void axesFollowTheSeries();
    void structuralHalfAloneLeavesTheAxes();
    void namesCommandsAfterWhatCausedThem();

    void mergesOnlyWithAPureScaleStep_data();
    void mergesOnlyWithAPureScaleStep();
    void absorbsScaleStepThatEndsInTheSameState();
    void isNeverAbsorbed();

    void limitDeletesSeriesOfTheOldestRemoval();
    void limitDeletesSeriesPushedOutByAnAdd();
    void pushDiscardsUndoneRemovalAndItsSeriesLives();
    void pushDiscardsUndoneAddAndItsSeriesDies();
    void pushDiscardsUndoneOverflowAndOnlyTheAddedDies();
    void everySeriesDiesOnceWithTheModel_data();
    void everySeriesDiesOnceWithTheModel();
    void withoutHistoryRemovalIsFinal();
};

void TestSeriesCommands::initTestCase()
{
    qRegisterMetaType<QItemSelectionModel::SelectionFlags>(); // for the spies
}

void TestSeriesCommands::answersWithIdAndType_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("type");

    QTest::newRow("scale") << 0 << 3;
    QTest::newRow("remove") << 1 << 1;
    QTest::newRow("remove all") << 2 << 1;
    QTest::newRow("add") << 3 << 2;
}

void TestSeriesCommands::answersWithIdAndType()
{
    QFETCH(int, kind);
    QFETCH(int, type);
    Rows none;
    std::unique_ptr<ChartUndoCommand> command;
    switch (kind) {
    case 0:
        command = std::make_unique<ScaleCommand>(nullptr);
        break;
    case 1:
        command = std::make_unique<RemoveSeriesCommand>(nullptr, none);
        break;
    case 2:
        command = std::make_unique<RemoveAllSeriesCommand>(nullptr, none);
        break;
    default:
        command = std::make_unique<AddSeriesCommand>(nullptr, none, none);
    }

    QCOMPARE(command->id(), 3);
    QCOMPARE(command->type(), type);
}

void TestSeriesCommands::takesStateOfModelWhenMade()
{
    Chart chart;
    Rows removed{{1, chart.add("a")}};
    chart.add("b");
    chart.add("c");
    chart.model->m_series.at(0)->m_selected = false;
    chart.model->m_series.at(2)->m_selected = true;
    Rows added{{0, chart.make("d")}};

    const RemoveSeriesCommand remove(chart.model.get(), removed);
    QCOMPARE(remove.m_selectedRow, 2);
    QCOMPARE(remove.m_colorIndex, 2);
    QCOMPARE(remove.m_removedSeries, removed);
    QVERIFY(!remove.m_ownsRemoved);
    QVERIFY(remove.m_oldParamsX.valid);
    QCOMPARE(remove.m_oldParamsY.size(), 3);

    const AddSeriesCommand add(chart.model.get(), added, removed);
    QCOMPARE(add.m_removedSeries, removed);
    QCOMPARE(add.m_addedSeries, added);
    QVERIFY(!add.m_ownsAdded);
    delete added.first();
}

void TestSeriesCommands::doesOnlyTheScaleHalfWithEmptyMaps()
{
    Chart chart;
    chart.add("a");
    Rows none;
    for (int kind = 0; kind < 3; ++kind) {
        std::unique_ptr<RemoveSeriesCommand> command;
        if (kind == 0) {
            command = std::make_unique<RemoveSeriesCommand>(chart.model.get(), none);
        } else if (kind == 1) {
            command = std::make_unique<RemoveAllSeriesCommand>(chart.model.get(), none);
        } else {
            command = std::make_unique<AddSeriesCommand>(chart.model.get(), none, none);
        }
        chart.model->m_axisX->m_max = 7.0;
        const QSignalSpy changes(chart.model.get(), SIGNAL(seriesCountChanged()));
        static_cast<QUndoCommand &>(*command).redo();
        QVERIFY(command->m_newParamsX.valid);
        static_cast<QUndoCommand &>(*command).undo();

        QCOMPARE(axisText(*chart.model->m_axisX), QString("[0,0]"));
        QCOMPARE(rowsText(*chart.model), QString("a"));
        QCOMPARE(changes.count(), 0);
        QVERIFY(!command->m_ownsRemoved);
    }
}

void TestSeriesCommands::doesNothingWithoutModel()
{
    Chart chart;
    Rows added{{0, chart.make("a")}};
    Rows removed{{0, chart.make("b")}};
    {
        AddSeriesCommand add(nullptr, added, removed);
        add.redo();
        add.undo();
        RemoveAllSeriesCommand removeAll(nullptr, removed);
        removeAll.redo();
        removeAll.undo();
        RemoveSeriesCommand remove(nullptr, removed);
        remove.redo();

        QVERIFY(!add.m_ownsAdded);
        QVERIFY(!add.m_ownsRemoved);
        QVERIFY(!removeAll.m_ownsRemoved);
        QVERIFY(!remove.m_ownsRemoved);
        QCOMPARE(remove.m_selectedRow, -1);
        QCOMPARE(remove.m_colorIndex, -1);
    }
    QCOMPARE(chart.deathsText(), QString());
    delete added.first();
    delete removed.first();
}

void TestSeriesCommands::skipsNullSeries()
{
    Chart chart;
    PlainSeries *a = chart.add("a");
    PlainSeries *b = chart.add("b");
    chart.stack().clear();
    Rows removed{{0, nullptr}, {1, b}};
    Rows added{{0, nullptr}, {1, chart.make("c")}};
    const QSignalSpy changes(chart.model.get(), SIGNAL(seriesCountChanged()));

    chart.stack().push(new AddSeriesCommand(chart.model.get(), added, removed));
    QCOMPARE(rowsText(*chart.model), QString("a c"));
    QCOMPARE(changes.count(), 2);
    chart.stack().undo();
    QCOMPARE(rowsText(*chart.model), QString("a b"));

    chart.stack().clear();
    QCOMPARE(chart.deathsText(), QString("c"));
    QCOMPARE(chart.model->m_series, (QList<AbstractChartSeries *>{a, b}));
}

void TestSeriesCommands::ownsNothingBeforeThePush()
{
    Chart chart;
    Rows removed{{0, chart.add("a")}};
    Rows added{{0, chart.make("b")}};

    delete new AddSeriesCommand(chart.model.get(), added, removed);
    delete new RemoveSeriesCommand(chart.model.get(), removed);
    delete new RemoveAllSeriesCommand(chart.model.get(), removed);

    QCOMPARE(chart.deathsText(), QString());
    QCOMPARE(rowsText(*chart.model), QString("a"));
    delete added.first();
}

void TestSeriesCommands::addsAndTakesOut()
{
    Chart chart;
    chart.add("a");
    PlainSeries *b = chart.add("b");
    QCOMPARE(chart.stack().count(), 2);
    const auto &command = dynamic_cast<const AddSeriesCommand &>(*chart.stack().command(1));
    QVERIFY(!command.m_ownsAdded);

    for (int round = 0; round < 3; ++round) {
        chart.stack().undo();
        QCOMPARE(rowsText(*chart.model), QString("a"));
        QVERIFY(command.m_ownsAdded);
        chart.stack().redo();
        QCOMPARE(rowsText(*chart.model), QString("a b"));
        QVERIFY(!command.m_ownsAdded);
        QCOMPARE(chart.model->m_series.at(1), static_cast<AbstractChartSeries *>(b));
    }
    QCOMPARE(chart.deathsText(), QString());
}

void TestSeriesCommands::undoOfAddLeavesTheColourCounter()
{
    Chart chart;
    chart.add("a");
    chart.add("b");
    QCOMPARE(chart.model->m_colorIndex, 1);

    chart.stack().undo();
    QCOMPARE(chart.model->m_colorIndex, 1);

    // The colours are red, green, blue: the second of them is not handed out again.
    const PlainSeries *c = chart.add("c");
    QCOMPARE(c->m_color, QColor(Qt::blue));
    QCOMPARE(chart.deathsText(), QString("b"));
}

void TestSeriesCommands::removesAndRestoresRowSelectionAndColourCounter()
{
    Chart chart;
    for (const QString &name : letters("a b c")) {
        chart.add(name);
    }
    AbstractChartSeries *b = chart.model->m_series.at(1);
    chart.model->m_series.at(0)->m_selected = false;
    b->m_selected = true;
    const QSignalSpy selections(
        chart.model.get(),
        SIGNAL(select(const QModelIndex &, QItemSelectionModel::SelectionFlags)));

    chart.model->removeSeries(b);
    QCOMPARE(rowsText(*chart.model), QString("a c"));
    const auto &command = dynamic_cast<const RemoveSeriesCommand &>(*chart.stack().command(3));
    QVERIFY(command.m_ownsRemoved);
    chart.model->m_colorIndex = 7; // As if more series had come.
    QCOMPARE(selections.count(), 0);

    chart.stack().undo();
    QCOMPARE(rowsText(*chart.model), QString("a b c"));
    QVERIFY(!command.m_ownsRemoved);
    QCOMPARE(selections.count(), 1);
    QCOMPARE(selections.first().first().toModelIndex(), chart.model->index(1, 0));
    QCOMPARE(chart.model->selectedSeries(), b);
    QCOMPARE(chart.model->m_colorIndex, 2);
    QCOMPARE(chart.add("d")->m_color, QColor(Qt::cyan));
}

void TestSeriesCommands::restoresNoSelectionWhereThereWasNone()
{
    Chart chart;
    PlainSeries *a = chart.add("a");
    a->m_selected = false;
    const QSignalSpy selections(
        chart.model.get(),
        SIGNAL(select(const QModelIndex &, QItemSelectionModel::SelectionFlags)));

    chart.model->removeSeries(a);
    chart.stack().undo();

    QCOMPARE(rowsText(*chart.model), QString("a"));
    QCOMPARE(selections.count(), 0);
}

void TestSeriesCommands::restoresEachRowIntoItsGap()
{
    Chart chart;
    for (const QString &name : letters("a b c d e")) {
        chart.add(name);
    }
    Rows removed;
    for (const int row : {0, 2, 3}) {
        removed.insert(row, chart.model->m_series.at(row));
    }

    chart.stack().push(new RemoveSeriesCommand(chart.model.get(), removed));
    QCOMPARE(rowsText(*chart.model), QString("b e"));
    chart.stack().undo();
    QCOMPARE(rowsText(*chart.model), QString("a b c d e"));
}

void TestSeriesCommands::removesAllInOneStepAndRestores()
{
    Chart chart;
    for (const QString &name : letters("a b c")) {
        chart.add(name);
    }
    const QList<AbstractChartSeries *> before = chart.model->m_series;
    const QSignalSpy removals(chart.model.get(),
                              SIGNAL(rowsRemoved(const QModelIndex &, int, int)));

    chart.model->removeAllSeries();
    QCOMPARE(rowsText(*chart.model), QString());
    QCOMPARE(removals.count(), 1);
    QCOMPARE(removals.first().at(1).toInt(), 0);
    QCOMPARE(removals.first().at(2).toInt(), 2);
    QCOMPARE(chart.stack().count(), 4);

    chart.stack().undo();
    QCOMPARE(chart.model->m_series, before);
    chart.stack().redo();
    QCOMPARE(rowsText(*chart.model), QString());
    QCOMPARE(removals.count(), 2);
    QCOMPARE(chart.deathsText(), QString());
}

void TestSeriesCommands::removingAllOfAnEmptyModelDoesNothing()
{
    Chart chart;
    const QSignalSpy changes(chart.model.get(), SIGNAL(seriesCountChanged()));

    chart.model->removeAllSeries();

    QCOMPARE(chart.stack().count(), 0);
    QCOMPARE(changes.count(), 0);
}

void TestSeriesCommands::removingForeignSeriesPushesNothing()
{
    Chart chart;
    PlainSeries foreign;

    chart.model->removeSeries(&foreign);
    chart.model->removeSeries(nullptr);

    QCOMPARE(chart.stack().count(), 0);
}

void TestSeriesCommands::eleventhSeriesPushesOutTheFirst()
{
    Chart chart;
    const QString ten = "a b c d e f g h i j";
    chart.model->addSeries(chart.makeAll(letters(ten)));
    AbstractChartSeries *first = chart.model->m_series.first();
    chart.model->addValue(first, newValue(1.0, 2.0));

    PlainSeries *eleventh = chart.add("k");
    chart.model->addValue(eleventh, newValue(3.0, 4.0));
    for (int round = 0; round < 3; ++round) {
        QCOMPARE(rowsText(*chart.model), QString("b c d e f g h i j k"));
        QCOMPARE(chart.model->m_series.last(), static_cast<AbstractChartSeries *>(eleventh));
        QCOMPARE(storeText(*eleventh), QString("3:4"));
        chart.stack().undo();
        QCOMPARE(rowsText(*chart.model), ten);
        QCOMPARE(chart.model->m_series.first(), first);
        QCOMPARE(storeText(*first), QString("1:2"));
        chart.stack().redo();
    }
    QCOMPARE(chart.deathsText(), QString());
}

void TestSeriesCommands::undoBringsOldSeriesBackBeforeAddedOnesLeave()
{
    Chart chart;
    chart.model->addSeries(chart.makeAll(letters("a b c d e f g h i j")));
    QStringList changes;
    QObject::connect(chart.model.get(), &QAbstractItemModel::rowsInserted,
                     [&](const QModelIndex &, int row) {
                         changes.append(QString("+%1 of %2").arg(row).arg(chart.model->rowCount()));
                     });
    QObject::connect(chart.model.get(), &QAbstractItemModel::rowsRemoved,
                     [&](const QModelIndex &, int row) {
                         changes.append(QString("-%1 of %2").arg(row).arg(chart.model->rowCount()));
                     });

    chart.add("k");
    QCOMPARE(changes.join(", "), QString("-0 of 9, +9 of 10"));
    changes.clear();
    chart.stack().undo();
    QCOMPARE(changes.join(", "), QString("+0 of 11, -10 of 10"));
    changes.clear();
    chart.stack().redo();
    QCOMPARE(changes.join(", "), QString("-0 of 9, +9 of 10"));
}

void TestSeriesCommands::addsTenOfFifteenAndLeavesTheRestAlone()
{
    Chart chart;
    const QList<AbstractChartSeries *> fifteen =
        chart.makeAll(letters("a b c d e f g h i j k l m n o"));

    chart.model->addSeries(fifteen);
    QCOMPARE(rowsText(*chart.model), QString("a b c d e f g h i j"));
    chart.stack().undo();
    chart.model.reset();

    QCOMPARE(chart.deathsText(), QString("a b c d e f g h i j"));
    qDeleteAll(fifteen.mid(10));
}

void TestSeriesCommands::fifteenReplaceAllTen()
{
    Chart chart;
    chart.model->addSeries(chart.makeAll(letters("0 1 2 3 4 5 6 7 8 9")));
    const QList<AbstractChartSeries *> fifteen =
        chart.makeAll(letters("a b c d e f g h i j k l m n o"));

    chart.model->addSeries(fifteen);
    QCOMPARE(rowsText(*chart.model), QString("a b c d e f g h i j"));
    chart.stack().undo();
    QCOMPARE(rowsText(*chart.model), QString("0 1 2 3 4 5 6 7 8 9"));
    chart.stack().redo();
    QCOMPARE(rowsText(*chart.model), QString("a b c d e f g h i j"));

    QCOMPARE(chart.deathsText(), QString());
    qDeleteAll(fifteen.mid(10));
}

void TestSeriesCommands::seriesReturnsAsItWas()
{
    Chart chart;
    chart.add("a");
    PlainSeries *b = chart.add("b");
    chart.model->addValue(b, newValue(1.0, 2.0));
    b->m_color = QColor(Qt::yellow);
    b->m_lineWidth = 4;
    b->m_pointsVisible = true;
    b->setPointSize(9);
    b->m_axisY->m_autoScale = true;
    const int colorIndex = b->m_colorIndex;

    const auto check = [b, colorIndex] {
        QCOMPARE(storeText(*b), QString("1:2"));
        QCOMPARE(b->m_color, QColor(Qt::yellow));
        QCOMPARE(b->m_lineWidth, 4);
        QVERIFY(b->m_pointsVisible);
        QCOMPARE(b->m_pointSize, 9);
        QVERIFY(b->m_axisY->m_autoScale);
        QCOMPARE(b->m_colorIndex, colorIndex);
    };
    chart.stack().undo();
    check();
    chart.stack().redo(); // By an add.
    check();
    chart.model->removeSeries(b);
    check();
    chart.stack().undo(); // By a removal.
    check();
}

void TestSeriesCommands::seriesOutOfTheModelHasNoPaneAndNoWorker()
{
    Chart chart;
    auto *held = new GatedSeries("held");
    held->m_deaths = &chart.deaths["held"];
    chart.model->addSeries(held);
    chart.model->addValues(held, {newValue(0.0, 1.0), newValue(1.0, 2.0)});
    QVERIFY(settled(*chart.model));
    held->closeGate();
    chart.model->updateCharts();
    QVERIFY(held->waitForWorker());
    QVERIFY(held->m_chart);

    // The removal asks the worker to stop and waits for it.
    chart.model->removeSeries(held);

    QVERIFY(!held->m_chart);
    QVERIFY(!held->m_pointThread->isRunning());
    QVERIFY(!chart.model->m_updatingSeries.contains(held));
    held->openGate();
    chart.stack().undo();
    QCOMPARE(held->m_chart, chart.model->mainChart());
    QVERIFY(settled(*chart.model));
}

void TestSeriesCommands::axesFollowTheSeries()
{
    Chart chart;
    PlainSeries *a = chart.add("a");
    chart.model->addValues(a, {newValue(0.0, 1.0), newValue(10.0, 2.0)});
    PlainSeries *b = chart.add("b");
    chart.model->addValues(b, {newValue(5.0, 1.0), newValue(20.0, 2.0)});
    QCOMPARE(axesText(*chart.model), QString("[0,20] [0,100] [0,100]"));

    chart.model->removeSeries(a);
    QCOMPARE(axesText(*chart.model), QString("[5,20] [0,100]"));
    chart.stack().undo();
    QCOMPARE(axesText(*chart.model), QString("[0,20] [0,100] [0,100]"));
    chart.stack().undo(); // The adding of the second.
    QCOMPARE(axesText(*chart.model), QString("[0,10] [0,100]"));
    chart.stack().redo();
    QCOMPARE(axesText(*chart.model), QString("[0,20] [0,100] [0,100]"));
    chart.stack().redo();
    QCOMPARE(axesText(*chart.model), QString("[5,20] [0,100]"));
    chart.model->removeAllSeries();
    QCOMPARE(axesText(*chart.model), QString("[0,0]"));
}

void TestSeriesCommands::structuralHalfAloneLeavesTheAxes()
{
    Chart chart;
    Rows removed{{0, chart.add("a")}};
    chart.model->m_axisX->m_zoomed = true;
    RemoveSeriesCommand command(chart.model.get(), removed);

    command.redo(false);
    QCOMPARE(rowsText(*chart.model), QString());
    QVERIFY(command.m_ownsRemoved);
    QVERIFY(!command.m_newParamsX.valid);

    chart.model->m_axisX->m_max = 5.0;
    command.undo(false);
    QCOMPARE(rowsText(*chart.model), QString("a"));
    QVERIFY(!command.m_ownsRemoved);
    QCOMPARE(axisText(*chart.model->m_axisX), QString("[0,5] zoomed"));
}

void TestSeriesCommands::namesCommandsAfterWhatCausedThem()
{
    Chart chart;
    chart.add("a");
    chart.add("b");
    QCOMPARE(chart.stack().text(0), QString("\"Add series\""));
    QCOMPARE(chart.model->m_undoAction->text(), QString("Undo action \"Add series\""));

    chart.model->m_removeSeriesAction->trigger(); // The first is selected.
    QCOMPARE(rowsText(*chart.model), QString("b"));
    QCOMPARE(chart.stack().text(2), QString("\"Remove series\""));

    chart.model->removeAllSeries();
    QCOMPARE(chart.stack().text(3), QString());
}

void TestSeriesCommands::mergesOnlyWithAPureScaleStep_data()
{
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("merges");

    QTest::newRow("none") << "none" << false;
    QTest::newRow("foreign command") << "foreign" << false;
    QTest::newRow("scale step to the same state") << "same" << true;
    QTest::newRow("scale step to another state") << "elsewhere" << false;
    QTest::newRow("removal to the same state") << "remove" << false;
    QTest::newRow("removal of all to the same state") << "remove all" << false;
    QTest::newRow("adding to the same state") << "add" << false;
}

void TestSeriesCommands::mergesOnlyWithAPureScaleStep()
{
    QFETCH(QString, other);
    QFETCH(bool, merges);
    Chart chart;
    chart.add("a");
    Rows none;
    RemoveSeriesCommand remove(chart.model.get(), none);
    RemoveAllSeriesCommand removeAll(chart.model.get(), none);
    AddSeriesCommand add(chart.model.get(), none, none);
    const QList<RemoveSeriesCommand *> commands{&remove, &removeAll, &add};
    for (RemoveSeriesCommand *command : commands) {
        static_cast<QUndoCommand *>(command)->redo();
    }

    std::unique_ptr<QUndoCommand> next;
    if (other == "foreign") {
        next = std::make_unique<QUndoCommand>();
    } else if (other == "same" || other == "elsewhere") {
        next = std::make_unique<ScaleCommand>(chart.model.get());
    } else if (other == "remove") {
        next = std::make_unique<RemoveSeriesCommand>(chart.model.get(), none);
    } else if (other == "remove all") {
        next = std::make_unique<RemoveAllSeriesCommand>(chart.model.get(), none);
    } else if (other == "add") {
        next = std::make_unique<AddSeriesCommand>(chart.model.get(), none, none);
    }
    if (other == "elsewhere") {
        chart.model->m_axisX->m_max = 7.0;
    }
    if (next) {
        next->redo();
    }

    for (RemoveSeriesCommand *command : commands) {
        QCOMPARE(command->mergeWith(next.get()), merges);
    }
}

void TestSeriesCommands::absorbsScaleStepThatEndsInTheSameState()
{
    Chart chart;
    chart.add("a");
    PlainSeries *b = chart.add("b");
    chart.model->removeSeries(b);
    QCOMPARE(chart.stack().count(), 3);

    chart.stack().push(new ScaleCommand(chart.model.get()));
    QCOMPARE(chart.stack().count(), 3);
    chart.pushScale(5.0);
    QCOMPARE(chart.stack().count(), 4);
}

void TestSeriesCommands::isNeverAbsorbed()
{
    Chart chart;
    chart.add("a");
    Rows none;
    chart.pushScale(5.0);
    const int count = chart.stack().count();

    chart.stack().push(new RemoveSeriesCommand(chart.model.get(), none));
    chart.stack().push(new RemoveAllSeriesCommand(chart.model.get(), none));
    chart.stack().push(new AddSeriesCommand(chart.model.get(), none, none));

    QCOMPARE(chart.stack().count(), count + 3);
}

void TestSeriesCommands::limitDeletesSeriesOfTheOldestRemoval()
{
    Chart chart;
    chart.add("a");
    chart.add("b");
    chart.stack().clear();
    chart.model->removeSeries(chart.model->m_series.first());
    for (int i = 1; i <= 19; ++i) {
        chart.pushScale(i);
    }
    QCOMPARE(chart.stack().count(), 20);
    QCOMPARE(chart.deathsText(), QString());

    chart.pushScale(20.0);
    QCOMPARE(chart.stack().count(), 20);
    QCOMPARE(chart.deathsText(), QString("a"));

    for (int i = 0; i < 20; ++i) {
        QVERIFY(chart.stack().canUndo());
        chart.stack().undo();
    }
    QVERIFY(!chart.stack().canUndo());
    QCOMPARE(rowsText(*chart.model), QString("b"));
    QCOMPARE(axisText(*chart.model->m_axisX), QString("[0,0]"));
}

void TestSeriesCommands::limitDeletesSeriesPushedOutByAnAdd()
{
    Chart chart;
    chart.model->addSeries(chart.makeAll(letters("a b c d e f g h i j")));
    chart.stack().clear();
    chart.model->addSeries(chart.makeAll(letters("k l")));
    for (int i = 1; i <= 20; ++i) {
        QCOMPARE(chart.deathsText(), QString());
        chart.pushScale(i);
    }

    QCOMPARE(chart.deathsText(), QString("a b"));
    QCOMPARE(rowsText(*chart.model), QString("c d e f g h i j k l"));
}

void TestSeriesCommands::pushDiscardsUndoneRemovalAndItsSeriesLives()
{
    Chart chart;
    PlainSeries *a = chart.add("a");
    chart.model->removeSeries(a);
    chart.stack().undo();

    chart.pushScale(5.0);

    QCOMPARE(chart.stack().count(), 2);
    QCOMPARE(chart.deathsText(), QString());
    QCOMPARE(rowsText(*chart.model), QString("a"));
}

void TestSeriesCommands::pushDiscardsUndoneAddAndItsSeriesDies()
{
    Chart chart;
    chart.add("a");
    chart.add("b");
    chart.stack().undo();
    QCOMPARE(chart.deathsText(), QString());

    chart.pushScale(5.0);

    QCOMPARE(chart.stack().count(), 2);
    QCOMPARE(chart.deathsText(), QString("b"));
    QCOMPARE(rowsText(*chart.model), QString("a"));
}

void TestSeriesCommands::pushDiscardsUndoneOverflowAndOnlyTheAddedDies()
{
    Chart chart;
    chart.model->addSeries(chart.makeAll(letters("a b c d e f g h i j")));
    chart.add("k");
    chart.stack().undo();

    chart.pushScale(5.0);

    QCOMPARE(chart.deathsText(), QString("k"));
    QCOMPARE(rowsText(*chart.model), QString("a b c d e f g h i j"));
}

void TestSeriesCommands::everySeriesDiesOnceWithTheModel_data()
{
    QTest::addColumn<int>("undone");

    // Of five steps: add a to j, add k (a leaves), remove b, add l, remove all.
    for (int undone = 0; undone <= 5; ++undone) {
        QTest::addRow("%d of 5 undone", undone) << undone;
    }
}

void TestSeriesCommands::everySeriesDiesOnceWithTheModel()
{
    QFETCH(int, undone);
    Chart chart;
    chart.model->addSeries(chart.makeAll(letters("a b c d e f g h i j")));
    chart.add("k");
    chart.model->removeSeries(chart.model->m_series.first());
    chart.add("l");
    chart.model->removeAllSeries();
    QCOMPARE(chart.stack().count(), 5);
    for (int i = 0; i < undone; ++i) {
        chart.stack().undo();
    }
    QCOMPARE(chart.deathsText(), QString());

    chart.model.reset();

    QCOMPARE(chart.deathsText(), QString("a b c d e f g h i j k l"));
}

void TestSeriesCommands::withoutHistoryRemovalIsFinal()
{
    Chart chart;
    chart.model->m_seriesEditable = false;
    chart.model->addSeries(chart.makeAll(letters("a b c d e f g h i j k l")));
    QCOMPARE(chart.model->rowCount(), 12);

    chart.model->removeSeries(chart.model->m_series.at(1));
    QCOMPARE(chart.deathsText(), QString("b"));
    chart.model->removeAllSeries();
    QCOMPARE(chart.deathsText(), QString("a b c d e f g h i j k l"));
    QCOMPARE(chart.stack().count(), 0);
}

QTEST_MAIN(TestSeriesCommands)
#include "tst_seriescommands.moc"
