#include "undo/scalecommand.h"

#include "support/countingaxis.h"
#include "support/openmodel.h"
#include "support/plainseries.h"
#include "support/recordingmodel.h"

#include <QThread>
#include <QtTest>
#include <QUndoStack>

#include <functional>
#include <memory>

namespace {

/// Counts the updates of the actions and notes whether a calculation ran at the last.
class CountingModel : public OpenModel
{
public:
    void updateActions() override
    {
        OpenModel::updateActions();
        ++m_actionUpdates;
        m_wasCalculating = updatePointsInProgress();
    }

    int m_actionUpdates = 0;
    bool m_wasCalculating = false;
};

/// A model with two series of fixed scales: the axes are [0,10], [0,10] and [0,20].
struct Chart
{
    Chart()
    {
        for (PlainSeries *series : {a, b}) {
            model.addSeries(series);
            model.addValue(series, newValue(0.0, 1.0));
            model.addValue(series, newValue(10.0, 2.0));
        }
        a->m_maximumY = 10.0;
        b->m_maximumY = 20.0;
        model.adjustAxes(nullptr, false);
        model.m_undoStack->clear();
        isIdle = settled(model);
        model.m_actionUpdates = 0;
    }

    /// Zooms X and the first Y axis by hand, as one undo step.
    void pushStep(double minX, double maxX, double minY, double maxY)
    {
        auto *command = new ScaleCommand(&model);
        setAxis(*model.m_axisX, minX, maxX);
        setAxis(*a->m_axisY, minY, maxY);
        model.m_undoStack->push(command);
    }

    static void setAxis(ChartAxis &axis, double min, double max)
    {
        axis.assignRange(min, max);
        axis.m_zoomed = true;
    }

    CountingModel model;
    PlainSeries *a = new PlainSeries("a");
    PlainSeries *b = new PlainSeries("b");
    bool isIdle = false; ///< No calculation ran when the chart was made.
};

QString recordText(const UndoAxisParams &params)
{
    if (!params.valid) {
        return "none";
    }
    return QString("[%1,%2]%3")
        .arg(params.min)
        .arg(params.max)
        .arg(params.zoomed ? QString(" zoomed") : QString());
}

QString stateText(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y)
{
    QStringList texts{recordText(x)};
    for (auto it = y.cbegin(); it != y.cend(); ++it) {
        texts.append(QString("%1:%2").arg(it.key()).arg(recordText(it.value())));
    }
    return texts.join(' ');
}

QString oldText(const ScaleCommand &command)
{
    return stateText(command.m_oldParamsX, command.m_oldParamsY);
}

QString newText(const ScaleCommand &command)
{
    return stateText(command.m_newParamsX, command.m_newParamsY);
}

const ScaleCommand &commandAt(const AbstractChartModel &model, int i)
{
    return *dynamic_cast<const ScaleCommand *>(model.m_undoStack->command(i));
}

UndoAxisParams record(double min, double max, bool zoomed = false)
{
    UndoAxisParams params;
    params.min = min;
    params.max = max;
    params.zoomed = zoomed;
    params.valid = true;
    return params;
}

using Change = std::function<void(Chart &)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class TestScaleCommand : public QObject
{
    Q_OBJECT

private slots:
    void capturesOldStateWhenMade();
    void handsParentToTheBaseClass();
    void firstRedoCapturesAndChangesNothing();
    void goesBackAndForth();
    void updatesChartsAndThenActionsWhenApplied();
    void returnsAxisToTheDataOnUndo();
    void restoresZoomedOfAnEqualRange();
    void recalculatesGridOnlyOfAChangedRange();
    void leavesOtherFlagsOfAxesAlone();
    void appliesReversedRecordInAscendingOrder();
    void storesNaNBoundAgainEachTime();
    void keepsRowsOfSeriesThatLeft();
    void capturesRowsOfSeriesOnly();
    void warnsOfFewerSeriesAndAppliesTheRowsThatExist();
    void warnsOfMoreSeriesAndAppliesTheRowsThatExist();
    void skipsWhatHasNoAxisOrRecord();
    void doesNothingWithoutModel();

    void isValidOnceAnAxisDiffers_data();
    void isValidOnceAnAxisDiffers();
    void isValidWithNaNBoundThoughNothingChanged();
    void isValidIgnoresTheNewState();

    void mergesOnlyWithAStepToTheSameState_data();
    void mergesOnlyWithAStepToTheSameState();
    void neverMergesWithForeignCommand();
    void neverMergesStatesWithNaN();
    void stackDropsStepThatEndsWhereTheLastOneEnded();

    void dataMovesNoCommandOfAnEmptyStack();
    void dataMovesNoCommandAtIndexZero();
    void dataMovesCommandsNextToTheIndex_data();
    void dataMovesCommandsNextToTheIndex();
    void seriesChangesMoveNoCommand();
    void dataThatMovesNoAxisMovesNoCommand();
    void dataFromAnotherThreadMovesCommandsThroughTheEventLoop();
};

void TestScaleCommand::capturesOldStateWhenMade()
{
    Chart chart;
    chart.b->m_axisY->m_zoomed = true;

    const ScaleCommand command(&chart.model);

    QCOMPARE(oldText(command), QString("[0,10] 0:[0,10] 1:[0,20] zoomed"));
    QCOMPARE(newText(command), QString("none"));
    QCOMPARE(command.m_model, static_cast<AbstractChartModel *>(&chart.model));
    QCOMPARE(chart.model.m_actionUpdates, 0);
}

void TestScaleCommand::handsParentToTheBaseClass()
{
    Chart chart;
    QUndoCommand parent;

    const auto *command = new ScaleCommand(&chart.model, &parent);

    QCOMPARE(parent.childCount(), 1);
    QCOMPARE(parent.child(0), command);
}

void TestScaleCommand::firstRedoCapturesAndChangesNothing()
{
    Chart chart;
    QVERIFY(chart.isIdle);
    ScaleCommand command(&chart.model);
    Chart::setAxis(*chart.model.m_axisX, 2.0, 4.0);

    command.redo();

    QCOMPARE(axesText(chart.model), QString("[2,4] zoomed [0,10] [0,20]"));
    QCOMPARE(newText(command), QString("[2,4] zoomed 0:[0,10] 1:[0,20]"));
    QCOMPARE(oldText(command), QString("[0,10] 0:[0,10] 1:[0,20]"));
    QCOMPARE(chart.model.m_actionUpdates, 1);
    QVERIFY(!chart.model.updatePointsInProgress());
}

void TestScaleCommand::goesBackAndForth()
{
    Chart chart;
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    chart.pushStep(3.0, 3.5, 5.0, 5.5);
    QUndoStack &stack = *chart.model.m_undoStack;

    for (int round = 0; round < 3; ++round) {
        stack.undo();
        QCOMPARE(axesText(chart.model), QString("[2,4] zoomed [5,6] zoomed [0,20]"));
        stack.undo();
        QCOMPARE(axesText(chart.model), QString("[0,10] [0,10] [0,20]"));
        stack.redo();
        QCOMPARE(axesText(chart.model), QString("[2,4] zoomed [5,6] zoomed [0,20]"));
        stack.redo();
        QCOMPARE(axesText(chart.model), QString("[3,3.5] zoomed [5,5.5] zoomed [0,20]"));
    }
}

void TestScaleCommand::updatesChartsAndThenActionsWhenApplied()
{
    Chart chart;
    QVERIFY(chart.isIdle);
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    chart.model.m_actionUpdates = 0;

    chart.model.m_undoStack->undo();

    QCOMPARE(chart.model.m_actionUpdates, 1);
    QVERIFY(chart.model.m_wasCalculating);
}

void TestScaleCommand::returnsAxisToTheDataOnUndo()
{
    Chart chart;
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    chart.model.addValue(chart.a, newValue(20.0, 3.0));
    QCOMPARE(axisText(*chart.model.m_axisX), QString("[2,4] zoomed"));

    // No axis has moved, so the step still leads back to the state in which it was made; the next
    // sample then moves the axis that follows again.
    chart.model.m_undoStack->undo();
    QCOMPARE(axisText(*chart.model.m_axisX), QString("[0,10]"));
    chart.model.addValue(chart.a, newValue(30.0, 3.0));
    QCOMPARE(axisText(*chart.model.m_axisX), QString("[0,30]"));

    chart.a->m_maximumY = 12.0;
    chart.model.adjustAxes(nullptr, false);
    QCOMPARE(axisText(*chart.a->m_axisY), QString("[0,12]"));
}

void TestScaleCommand::restoresZoomedOfAnEqualRange()
{
    Chart chart;
    const CountingAxis &axis = *installCountingAxis(*chart.a);
    chart.pushStep(0.0, 10.0, 0.0, 10.0);
    QCOMPARE(axesText(chart.model), QString("[0,10] zoomed [0,10] zoomed [0,20]"));

    chart.model.m_undoStack->undo();
    QCOMPARE(axesText(chart.model), QString("[0,10] [0,10] [0,20]"));

    chart.model.m_undoStack->redo();
    QCOMPARE(axesText(chart.model), QString("[0,10] zoomed [0,10] zoomed [0,20]"));
    QCOMPARE(axis.m_recalculations, 0);
}

void TestScaleCommand::recalculatesGridOnlyOfAChangedRange()
{
    Chart chart;
    const CountingAxis &changed = *installCountingAxis(*chart.a);
    const CountingAxis &same = *installCountingAxis(*chart.b);
    ScaleCommand command(&chart.model);

    command.setParams(record(0.0, 5.0), {{0, record(0.0, 4.0)}, {1, record(0.0, 20.0)}});

    QCOMPARE(axesText(chart.model), QString("[0,5] [0,4] [0,20]"));
    QCOMPARE(changed.m_recalculations, 1);
    QCOMPARE(same.m_recalculations, 0);
    // Up to 5 the step is 1; up to 4 as well, and the grid of Y ends above the range.
    QCOMPARE(chart.model.m_axisX->m_gridValues, (QVector<double>{0.0, 1.0, 2.0, 3.0, 4.0, 5.0}));
    QCOMPARE(changed.m_gridValues, (QVector<double>{0.0, 1.0, 2.0, 3.0, 4.0, 5.0}));
}

void TestScaleCommand::leavesOtherFlagsOfAxesAlone()
{
    Chart chart;
    ScaleCommand command(&chart.model);
    command.redo();
    chart.model.setAutoScale(true, true);
    chart.model.setUseDateTimeScaleX(true);

    command.undo();

    QVERIFY(chart.model.m_axisX->m_autoScale);
    QVERIFY(chart.model.m_axisX->m_dateTime);
    QVERIFY(chart.a->m_axisY->m_autoScale);
}

void TestScaleCommand::appliesReversedRecordInAscendingOrder()
{
    Chart chart;
    ScaleCommand command(&chart.model);

    command.setParams(record(8.0, 3.0, true), {{0, record(7.0, -2.0)}, {1, record(5.0, 5.0)}});

    QCOMPARE(axesText(chart.model), QString("[3,8] zoomed [-2,7] [5,5]"));
}

void TestScaleCommand::storesNaNBoundAgainEachTime()
{
    Chart chart;
    const CountingAxis &axis = *installCountingAxis(*chart.a);
    ScaleCommand command(&chart.model);
    const QMap<int, UndoAxisParams> y{{0, record(qQNaN(), 5.0)}, {1, record(0.0, 20.0)}};

    command.setParams(record(0.0, 10.0), y);
    command.setParams(record(0.0, 10.0), y);

    // No comparison with NaN holds, so the bounds swap as if they were reversed.
    QCOMPARE(axis.m_min, 5.0);
    QVERIFY(qIsNaN(axis.m_max));
    QCOMPARE(axis.m_recalculations, 2);
}

void TestScaleCommand::keepsRowsOfSeriesThatLeft()
{
    Chart chart;
    ScaleCommand command(&chart.model);
    command.setNewParams();
    chart.model.completeRemoveSeries(chart.a);
    Chart::setAxis(*chart.b->m_axisY, 1.0, 2.0);

    command.setOldParams();
    command.setNewParams();

    // The series that stays has moved to row 0; row 1 stands for it as it was.
    QCOMPARE(oldText(command), QString("[0,10] 0:[1,2] zoomed 1:[0,20]"));
    QCOMPARE(newText(command), QString("[0,10] 0:[1,2] zoomed 1:[0,20]"));
    delete chart.a;
}

void TestScaleCommand::capturesRowsOfSeriesOnly()
{
    Chart chart;
    chart.model.m_series.insert(1, nullptr);
    delete chart.a->m_axisY;
    chart.a->m_axisY = nullptr;

    const ScaleCommand command(&chart.model);

    QCOMPARE(oldText(command), QString("[0,10] 0:none 2:[0,20]"));
    QVERIFY(!command.isValid());
    chart.model.m_series.removeAt(1);
}

void TestScaleCommand::warnsOfFewerSeriesAndAppliesTheRowsThatExist()
{
    Chart chart;
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    chart.model.completeRemoveSeries(chart.b);

    QTest::ignoreMessage(QtWarningMsg, "Size error 1 2");
    chart.model.m_undoStack->undo();

    QCOMPARE(axesText(chart.model), QString("[0,10] [0,10]"));
    delete chart.b;
}

void TestScaleCommand::warnsOfMoreSeriesAndAppliesTheRowsThatExist()
{
    Chart chart;
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    auto *third = new PlainSeries("c");
    chart.model.completeAddSeries(third);
    Chart::setAxis(*third->m_axisY, 7.0, 8.0);

    QTest::ignoreMessage(QtWarningMsg, "Size error 3 2");
    chart.model.m_undoStack->undo();

    QCOMPARE(axesText(chart.model), QString("[0,10] [0,10] [0,20] [7,8] zoomed"));
}

void TestScaleCommand::skipsWhatHasNoAxisOrRecord()
{
    Chart chart;
    delete chart.b->m_axisY;
    chart.b->m_axisY = nullptr;
    ScaleCommand command(&chart.model);

    command.setParams(UndoAxisParams(), {{0, UndoAxisParams()}, {1, record(1.0, 2.0)}});
    QCOMPARE(axisText(*chart.model.m_axisX), QString("[0,10]"));
    QCOMPARE(axisText(*chart.a->m_axisY), QString("[0,10]"));

    // As many records as series, but none for row 0.
    command.setParams(record(0.0, 5.0), {{1, record(1.0, 2.0)}, {2, record(3.0, 4.0)}});
    QCOMPARE(axisText(*chart.model.m_axisX), QString("[0,5]"));
    QCOMPARE(axisText(*chart.a->m_axisY), QString("[0,10]"));
}

void TestScaleCommand::doesNothingWithoutModel()
{
    ScaleCommand command(nullptr);

    command.redo();
    command.undo();
    command.setOldParams();
    command.setNewParams();
    command.setParams(record(1.0, 2.0), {{0, record(1.0, 2.0)}});

    QVERIFY(!command.isValid());
    QCOMPARE(oldText(command), QString("none"));
    QCOMPARE(newText(command), QString("none"));
}

void TestScaleCommand::isValidOnceAnAxisDiffers_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("valid");

    const auto row = [](const char *name, bool valid, const Change &change) {
        QTest::newRow(name) << change << valid;
    };
    row("nothing", false, [](Chart &) {});
    row("lower bound of X", true, [](Chart &chart) { chart.model.m_axisX->m_min = 1.0; });
    row("upper bound of X", true, [](Chart &chart) { chart.model.m_axisX->m_max = 11.0; });
    row("zoomed of X", true, [](Chart &chart) { chart.model.m_axisX->m_zoomed = true; });
    row("lower bound of Y", true, [](Chart &chart) { chart.a->m_axisY->m_min = 1.0; });
    row("upper bound of Y", true, [](Chart &chart) { chart.b->m_axisY->m_max = 11.0; });
    row("zoomed of Y", true, [](Chart &chart) { chart.b->m_axisY->m_zoomed = true; });
    row("X becomes NaN", true, [](Chart &chart) { chart.model.m_axisX->m_max = qQNaN(); });
    row("fewer series", true, [](Chart &chart) {
        chart.model.completeRemoveSeries(chart.b);
        delete chart.b;
    });
    row("other flags", false, [](Chart &chart) { chart.model.setAutoScale(true, true); });
    row("grid", false, [](Chart &chart) { chart.a->m_axisY->m_gridValues.clear(); });
}

void TestScaleCommand::isValidOnceAnAxisDiffers()
{
    QFETCH(Change, change);
    QFETCH(bool, valid);
    Chart chart;
    const ScaleCommand command(&chart.model);

    change(chart);

    QCOMPARE(command.isValid(), valid);
}

void TestScaleCommand::isValidWithNaNBoundThoughNothingChanged()
{
    Chart chart;
    chart.a->m_axisY->m_max = qQNaN();
    const ScaleCommand withY(&chart.model);
    QVERIFY(withY.isValid());

    chart.a->m_axisY->m_max = 10.0;
    chart.model.m_axisX->m_min = qQNaN();
    const ScaleCommand withX(&chart.model);
    QVERIFY(withX.isValid());
}

void TestScaleCommand::isValidIgnoresTheNewState()
{
    Chart chart;
    ScaleCommand command(&chart.model);
    chart.model.m_axisX->m_max = 11.0;
    command.redo();
    QVERIFY(command.isValid());

    chart.model.m_axisX->m_max = 10.0;

    QVERIFY(!command.isValid());
}

void TestScaleCommand::mergesOnlyWithAStepToTheSameState_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("merges");

    const auto row = [](const char *name, bool merges, const Change &change) {
        QTest::newRow(name) << change << merges;
    };
    row("same state", true, [](Chart &) {});
    row("there and back", true, [](Chart &chart) {
        chart.model.m_axisX->m_max = 99.0;
        chart.model.m_axisX->m_max = 10.0;
    });
    row("other X", false, [](Chart &chart) { chart.model.m_axisX->m_max = 11.0; });
    row("X zoomed", false, [](Chart &chart) { chart.model.m_axisX->m_zoomed = true; });
    row("other Y", false, [](Chart &chart) { chart.b->m_axisY->m_max = 11.0; });
    row("Y zoomed", false, [](Chart &chart) { chart.b->m_axisY->m_zoomed = true; });
    row("other rows", false, [](Chart &chart) {
        chart.model.completeRemoveSeries(chart.b);
        delete chart.b;
    });
}

void TestScaleCommand::mergesOnlyWithAStepToTheSameState()
{
    QFETCH(Change, change);
    QFETCH(bool, merges);
    Chart chart;
    ScaleCommand first(&chart.model);
    first.setText("first");
    first.redo();
    const QString before = oldText(first) + newText(first);

    ScaleCommand second(&chart.model);
    change(chart);
    second.redo();

    QCOMPARE(first.mergeWith(&second), merges);
    QCOMPARE(oldText(first) + newText(first), before);
    QCOMPARE(first.text(), QString("first"));
}

void TestScaleCommand::neverMergesWithForeignCommand()
{
    // Also a command of another kind that answers with the type of a scale command is foreign.
    class Foreign : public ChartUndoCommand
    {
    public:
        int type() const override { return ScaleType; }
    };
    Chart chart;
    ScaleCommand command(&chart.model);
    command.redo();
    const QUndoCommand plain;
    const Foreign foreign;

    QVERIFY(!command.mergeWith(nullptr));
    QVERIFY(!command.mergeWith(&plain));
    QVERIFY(!command.mergeWith(&foreign));
}

void TestScaleCommand::neverMergesStatesWithNaN()
{
    Chart chart;
    chart.a->m_axisY->m_max = qQNaN();
    ScaleCommand first(&chart.model);
    first.redo();
    ScaleCommand second(&chart.model);
    second.redo();

    QVERIFY(!first.mergeWith(&second));
}

void TestScaleCommand::stackDropsStepThatEndsWhereTheLastOneEnded()
{
    class Mortal : public ScaleCommand
    {
    public:
        Mortal(AbstractChartModel *model, int &deaths)
            : ScaleCommand(model)
            , m_deaths(deaths)
        {
        }
        ~Mortal() override { ++m_deaths; }

    private:
        int &m_deaths;
    };
    Chart chart;
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    int deaths = 0;

    chart.model.m_undoStack->push(new Mortal(&chart.model, deaths));
    QCOMPARE(chart.model.m_undoStack->count(), 1);
    QCOMPARE(deaths, 1);

    chart.model.m_undoStack->undo();
    QCOMPARE(axesText(chart.model), QString("[0,10] [0,10] [0,20]"));
    chart.model.m_undoStack->redo();
    QCOMPARE(axesText(chart.model), QString("[2,4] zoomed [5,6] zoomed [0,20]"));
}

void TestScaleCommand::dataMovesNoCommandOfAnEmptyStack()
{
    Chart chart;

    chart.model.addValue(chart.a, newValue(20.0, 3.0));

    QCOMPARE(axisText(*chart.model.m_axisX), QString("[0,20]"));
    QCOMPARE(chart.model.m_undoStack->count(), 0);
}

void TestScaleCommand::dataMovesNoCommandAtIndexZero()
{
    Chart chart;
    chart.pushStep(2.0, 4.0, 5.0, 6.0);
    chart.model.m_undoStack->undo();
    const ScaleCommand &command = commandAt(chart.model, 0);

    chart.model.addValue(chart.a, newValue(20.0, 3.0));
    QCOMPARE(axisText(*chart.model.m_axisX), QString("[0,20]"));
    QCOMPARE(oldText(command), QString("[0,10] 0:[0,10] 1:[0,20]"));
    QCOMPARE(newText(command), QString("[2,4] zoomed 0:[5,6] zoomed 1:[0,20]"));

    chart.model.m_undoStack->redo();
    QCOMPARE(axesText(chart.model), QString("[2,4] zoomed [5,6] zoomed [0,20]"));
}

void TestScaleCommand::dataMovesCommandsNextToTheIndex_data()
{
    QTest::addColumn<int>("undone");
    QTest::addColumn<QString>("newStates");
    QTest::addColumn<QString>("oldStates");

    // Three steps that zoom the X axis to [0,1], [0,2] and [0,3] and leave Y alone. Then the scale
    // of the second series moves from 20 to 40, which is [0,40] in the states that follow.
    const auto row = [](const char *name, int undone, const char *newEnds, const char *oldEnds) {
        QTest::newRow(name) << undone << QString(newEnds) << QString(oldEnds);
    };
    row("all done", 0, "20 20 40", "20 20 20");
    row("one undone", 1, "20 40 20", "20 20 40");
    row("two undone", 2, "40 20 20", "20 40 20");
    row("all undone", 3, "20 20 20", "20 20 20");
}

void TestScaleCommand::dataMovesCommandsNextToTheIndex()
{
    QFETCH(int, undone);
    QFETCH(QString, newStates);
    QFETCH(QString, oldStates);
    Chart chart;
    for (int i = 1; i <= 3; ++i) {
        chart.pushStep(0.0, i, 0.0, 10.0);
    }
    for (int i = 0; i < undone; ++i) {
        chart.model.m_undoStack->undo();
    }
    const QString axisX = axisText(*chart.model.m_axisX);

    chart.b->m_maximumY = 40.0;
    chart.model.addValue(chart.b, nullptr);

    QStringList newEnds;
    QStringList oldEnds;
    for (int i = 0; i < 3; ++i) {
        newEnds.append(QString::number(commandAt(chart.model, i).m_newParamsY.value(1).max));
        oldEnds.append(QString::number(commandAt(chart.model, i).m_oldParamsY.value(1).max));
    }
    QCOMPARE(newEnds.join(' '), newStates);
    QCOMPARE(oldEnds.join(' '), oldStates);
    QCOMPARE(axisText(*chart.model.m_axisX), axisX);
}

void TestScaleCommand::seriesChangesMoveNoCommand()
{
    Chart chart;
    chart.pushStep(0.0, 1.0, 0.0, 10.0);
    const QString before = newText(commandAt(chart.model, 0));
    chart.b->m_maximumY = 40.0;

    chart.model.adjustAxes(nullptr, false);

    QCOMPARE(axisText(*chart.b->m_axisY), QString("[0,40]"));
    QCOMPARE(newText(commandAt(chart.model, 0)), before);
}

void TestScaleCommand::dataThatMovesNoAxisMovesNoCommand()
{
    Chart chart;
    chart.pushStep(0.0, 1.0, 0.0, 10.0);
    chart.model.m_axisX->m_max = 1.5; // Not by the data: only a rewriting would notice.
    const QString before = newText(commandAt(chart.model, 0));

    chart.model.addValue(chart.a, newValue(5.0, 5.0));

    QCOMPARE(newText(commandAt(chart.model, 0)), before);
}

void TestScaleCommand::dataFromAnotherThreadMovesCommandsThroughTheEventLoop()
{
    Chart chart;
    chart.pushStep(0.0, 1.0, 0.0, 10.0);
    chart.b->m_maximumY = 40.0;

    const std::unique_ptr<QThread> feeder(QThread::create([&chart] {
        chart.model.addValue(chart.b, nullptr);
        chart.model.addValue(chart.b, nullptr);
    }));
    feeder->start();
    QVERIFY(feeder->wait());

    QCOMPARE(axisText(*chart.b->m_axisY), QString("[0,40]"));
    const ScaleCommand &command = commandAt(chart.model, 0);
    QCOMPARE(command.m_newParamsY.value(1).max, 20.0);
    QTRY_COMPARE(command.m_newParamsY.value(1).max, 40.0);
}

QTEST_MAIN(TestScaleCommand)
#include "tst_scalecommand.moc"
