#include "model/abstractchartmodel.h"

#include "support/gatedseries.h"
#include "support/recordingmodel.h"
#include "undo/scalecommand.h"

#include <QRandomGenerator>
#include <QtTest>
#include <QUndoStack>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <thread>
#include <vector>

namespace {

const QStringList Operations{"addValue",          "addValues",   "insertValues",
                             "insertValues keep", "clearValues", "removeOldValues"};

/// Says when the axes are adjusted, and what it finds then.
class ProbingModel : public RecordingModel
{
public:
    void adjustAxisX() override
    {
        if (m_onAdjustAxisX) {
            m_onAdjustAxisX();
        }
        RecordingModel::adjustAxisX();
    }

    std::function<void()> m_onAdjustAxisX;
};

/// Says when it is asked about a sample.
class ProbingSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    bool isValid(const ChartValue *value) const override
    {
        if (m_onIsValid) {
            m_onIsValid();
        }
        return PlainSeries::isValid(value);
    }

    std::function<void()> m_onIsValid;
};

/// Series for a model without steps of its own on the undo stack.
template <typename Series = PlainSeries>
Series *addFinally(AbstractChartModel &model, const QString &name)
{
    auto *series = new Series(name);
    model.m_seriesEditable = false;
    model.addSeries(series);
    model.m_seriesEditable = true;
    return series;
}

QQueue<ChartValue *> queueOf(const QList<ChartValue *> &values)
{
    QQueue<ChartValue *> queue;
    for (ChartValue *value : values) {
        queue.enqueue(value);
    }
    return queue;
}

/// Enters a sample at \p x by the operation of that name, or takes samples out.
void enter(AbstractChartModel &model, AbstractChartSeries *series, const QString &operation,
           double x = 20)
{
    if (operation == "addValue") {
        model.addValue(series, newValue(x, 50));
    } else if (operation == "addValues") {
        model.addValues(series, {newValue(x, 50)});
    } else if (operation == "insertValues" || operation == "insertValues keep") {
        QQueue<ChartValue *> queue = queueOf({newValue(x, 50)});
        model.insertValues(series, queue, operation == "insertValues keep");
    } else if (operation == "clearValues") {
        model.clearValues(series);
    } else {
        model.removeOldValues(series);
    }
}

void addOperationRows()
{
    QTest::addColumn<QString>("operation");
    for (const QString &operation : Operations) {
        QTest::newRow(qPrintable(operation)) << operation;
    }
}

/// Whether another thread could take the mutex at this moment.
bool isFree(QMutex &mutex)
{
    bool taken = false;
    std::thread([&] {
        taken = mutex.tryLock();
        if (taken) {
            mutex.unlock();
        }
    }).join();
    return taken;
}

/// The X ranges that a step remembers: "[0,10]>[0,20]".
QString stepText(const QUndoStack &stack, int index)
{
    const auto *command = dynamic_cast<const ScaleCommand *>(stack.command(index));
    return QString("[%1,%2]>[%3,%4]")
        .arg(command->m_oldParamsX.min)
        .arg(command->m_oldParamsX.max)
        .arg(command->m_newParamsX.min)
        .arg(command->m_newParamsX.max);
}

/// A step that zooms X into the range.
void pushZoom(AbstractChartModel &model, double min, double max)
{
    auto *command = new ScaleCommand(&model);
    model.m_axisX->assignRange(min, max);
    model.m_axisX->m_zoomed = true;
    model.m_undoStack->push(command);
}

QString extremesText(const PlainSeries &series)
{
    const auto text = [](const ChartValue *value) {
        return value ? QString("%1:%2").arg(value->x).arg(value->y) : QStringLiteral("none");
    };
    return text(series.m_minValue) + ' ' + text(series.m_maxValue);
}

} // namespace

class TestSampleEntry : public QObject
{
    Q_OBJECT

private slots:
    void appendsSampleAndAdjustsAxes();
    void updatesExtremesByOneSample();
    void adjustsAxesForMissingSample();
    void appendsSamplesInListOrder();
    void mergesSamplesByX();
    void keepsAxesOnRequest();
    void clearsStoreAndExtremes();
    void clearsAllSeriesThroughTheVirtual();
    void keepsDrawnLineUntilNextUpdate();
    void agesSamplesOutWithoutAxes();
    void ignoresMissingSeries();

    void adjustsInOrder_data();
    void adjustsInOrder();
    void drawsNothing_data();
    void drawsNothing();

    void holdsStore_data();
    void holdsStore();
    void holdsAxes();
    void locksOneStoreAtATime();
    void waitsForRunningWorker();

    void leavesDeletedSeriesAlone_data();
    void leavesDeletedSeriesAlone();
    void fillsRemovedSeries();

    void rewritesNeighboursInHistory_data();
    void rewritesNeighboursInHistory();
    void keepsHistoryWithoutMovedAxis_data();
    void keepsHistoryWithoutMovedAxis();
    void keepsUndoneFirstStep();
    void keepsEmptyHistory();
    void keepsHistoryInSeriesChanges();
    void undoesToWhereTheDataIs();

    void movesAxesAtOnceFromThread_data();
    void movesAxesAtOnceFromThread();
    void postsHistoryOnceFromThread();
    void postsUpdateOnceFromThread();
    void postsUpdateOfChartsOnceFromThread();
    void dropsPostsOfDeadModel();
    void takesSamplesOfManyThreadsThroughChanges();
};

void TestSampleEntry::appendsSampleAndAdjustsAxes()
{
    OpenModel model;
    model.setAutoScale(false, true);
    PlainSeries *series = addFinally(model, "a");

    model.addValue(series, newValue(10, 4));
    model.addValue(series, newValue(30, 6));
    model.addValue(series, newValue(20, 5)); // not sorted by this way

    QCOMPARE(storeText(*series), QString("10:4 30:6 20:5"));
    QCOMPARE(axisText(*series->m_axisY), QString("[4,6]"));
    QCOMPARE(axisText(*model.m_axisX), QString("[10,20]"));
}

void TestSampleEntry::updatesExtremesByOneSample()
{
    OpenModel model;
    PlainSeries *series = addFinally(model, "a");

    model.addValue(series, newValue(0, qQNaN()));
    QCOMPARE(extremesText(*series), QString("none none"));
    model.addValue(series, newValue(1, 5));
    QCOMPARE(extremesText(*series), QString("1:5 1:5"));
    model.addValue(series, newValue(2, 5)); // of equal ones the last
    QCOMPARE(extremesText(*series), QString("2:5 2:5"));
    model.addValue(series, newValue(3, 9));
    model.addValue(series, newValue(4, 1));
    QCOMPARE(extremesText(*series), QString("4:1 3:9"));
}

void TestSampleEntry::adjustsAxesForMissingSample()
{
    RecordingModel model;
    PlainSeries *series = addFinally(model, "a");
    series->m_maximumY = 40;
    QVERIFY(settled(model));
    model.takeCalls();

    model.addValue(series, nullptr);

    QCOMPARE(model.takeCalls(), QString("y:a|x"));
    QCOMPARE(axisText(*series->m_axisY), QString("[0,40]"));
    QCOMPARE(storeText(*series), QString());
}

void TestSampleEntry::appendsSamplesInListOrder()
{
    OpenModel model;
    PlainSeries *series = addFinally(model, "a");

    model.addValues(series, {newValue(5, 1), nullptr, newValue(2, 7), newValue(9, 3)});
    model.addValues(series, {});

    QCOMPARE(storeText(*series), QString("5:1 2:7 9:3"));
    QCOMPARE(extremesText(*series), QString("5:1 2:7"));
    QCOMPARE(axisText(*model.m_axisX), QString("[5,9]"));
}

void TestSampleEntry::mergesSamplesByX()
{
    OpenModel model;
    PlainSeries *series = addFinally(model, "a");
    model.addValues(series, {newValue(0, 1), newValue(10, 2)});

    QQueue<ChartValue *> queue = queueOf({newValue(5, 8), newValue(10, 9), newValue(20, 3)});
    model.insertValues(series, queue, false);

    QVERIFY(queue.isEmpty());
    QCOMPARE(storeText(*series), QString("0:1 5:8 10:9 20:3"));
    QCOMPARE(axisText(*model.m_axisX), QString("[0,20]"));
}

void TestSampleEntry::keepsAxesOnRequest()
{
    RecordingModel model;
    PlainSeries *series = addFinally(model, "a");
    model.addValues(series, {newValue(0, 1), newValue(10, 2)});
    QVERIFY(settled(model));
    model.takeCalls();

    QQueue<ChartValue *> queue = queueOf({newValue(15, 8), newValue(20, 3)});
    model.insertValues(series, queue, true);

    QVERIFY(queue.isEmpty());
    QCOMPARE(storeText(*series), QString("0:1 10:2 15:8 20:3"));
    QCOMPARE(axisText(*model.m_axisX), QString("[0,10]"));
    QCOMPARE(model.takeCalls(), QString());

    queue = queueOf({newValue(30, 0)});
    model.insertValues(series, queue, false);
    QCOMPARE(axisText(*model.m_axisX), QString("[0,30]"));
    model.insertValues(series, queue, true); // an empty queue has no head to look at
    QCOMPARE(axisText(*model.m_axisX), QString("[0,30]"));
}

void TestSampleEntry::clearsStoreAndExtremes()
{
    OpenModel model;
    model.setAutoScale(false, true);
    PlainSeries *series = addFinally(model, "a");
    model.addValues(series, {newValue(5, 1), newValue(9, 3)});

    model.clearValues(series);

    QCOMPARE(storeText(*series), QString());
    QCOMPARE(extremesText(*series), QString("none none"));
    QCOMPARE(axisText(*model.m_axisX), QString("[0,0]"));
    QCOMPARE(axisText(*series->m_axisY), QString("[-0.5,0.5]"));
}

void TestSampleEntry::clearsAllSeriesThroughTheVirtual()
{
    class ClearingModel : public OpenModel
    {
    public:
        using OpenModel::clearValues;
        void clearValues(AbstractChartSeries *series) override
        {
            m_cleared.append(series->m_name);
            OpenModel::clearValues(series);
        }

        QStringList m_cleared;
    };
    ClearingModel model;
    for (const char *name : {"a", "b", "c"}) {
        model.addValue(addFinally(model, name), newValue(1, 2));
    }
    QVERIFY(settled(model));

    model.clearValues();

    QCOMPARE(model.m_cleared.join(' '), QString("a b c"));
    for (const AbstractChartSeries *series : qAsConst(model.m_series)) {
        QCOMPARE(storeText(*series), QString());
    }
    QVERIFY(!model.updatePointsInProgress());
}

void TestSampleEntry::keepsDrawnLineUntilNextUpdate()
{
    OpenModel model;
    PlainSeries *series = addFinally(model, "a");
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    model.updateCharts();
    QVERIFY(settled(model));
    QCOMPARE(series->m_pointThread->m_points.size(), 2);

    model.clearValues(series);
    QCOMPARE(series->m_pointThread->m_points.size(), 2);

    model.updateCharts();
    QVERIFY(settled(model));
    QCOMPARE(series->m_pointThread->m_points.size(), 0);
}

void TestSampleEntry::agesSamplesOutWithoutAxes()
{
    RecordingModel model;
    PlainSeries *series = addFinally(model, "a");
    constexpr double LongAgo = 1; // a second into 1970
    model.addValues(series, {newValue(0, 20), newValue(10, 80, 0, LongAgo)});
    QVERIFY(settled(model));
    model.takeCalls();

    QVERIFY(model.removeOldValues(series)); // a gap now
    QCOMPARE(storeText(*series), QString("0:20 10:nan"));
    QVERIFY(!model.removeOldValues(series)); // and gone
    QCOMPARE(storeText(*series), QString("0:20"));
    QVERIFY(!model.removeOldValues(series));

    QCOMPARE(axisText(*model.m_axisX), QString("[0,10]"));
    QCOMPARE(model.takeCalls(), QString());
}

void TestSampleEntry::ignoresMissingSeries()
{
    RecordingModel model;
    addFinally(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();
    ChartValue value; // stays the caller's
    QQueue<ChartValue *> queue = queueOf({&value});

    model.addValue(nullptr, &value);
    model.addValues(nullptr, {&value});
    model.insertValues(nullptr, queue, false);
    model.insertValues(nullptr, queue, true);
    model.clearValues(nullptr);
    QVERIFY(!model.removeOldValues(nullptr));

    QCOMPARE(queue.size(), 1);
    QCOMPARE(model.takeCalls(), QString());
}

void TestSampleEntry::adjustsInOrder_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("expected");

    for (const QString &operation : Operations) {
        const bool adjusts = operation != "insertValues keep" && operation != "removeOldValues";
        QTest::newRow(qPrintable(operation)) << operation << (adjusts ? "y:a|x" : "");
    }
}

void TestSampleEntry::adjustsInOrder()
{
    QFETCH(QString, operation);
    RecordingModel model;
    PlainSeries *series = addFinally(model, "a");
    QVERIFY(settled(model));
    model.takeCalls();

    enter(model, series, operation);

    QTEST(model.takeCalls(), "expected");
}

void TestSampleEntry::drawsNothing_data()
{
    addOperationRows();
}

void TestSampleEntry::drawsNothing()
{
    QFETCH(QString, operation);
    OpenModel model;
    PlainSeries *series = addFinally(model, "a");
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    QVERIFY(settled(model));
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    const QSignalSpy runs(series, &AbstractChartSeries::updatePointsFinished);

    enter(model, series, operation);
    QCoreApplication::processEvents();

    QVERIFY(!model.updatePointsInProgress());
    QVERIFY(!model.m_chartsUpdatePending);
    QCOMPARE(changes.count() + runs.count(), 0);
}

void TestSampleEntry::holdsStore_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("expected");

    QTest::newRow("addValue") << "addValue"
                              << "validity held|axes held";
    QTest::newRow("addValues") << "addValues"
                               << "validity held|axes held";
    QTest::newRow("insertValues") << "insertValues"
                                  << "validity held|axes held";
    QTest::newRow("insertValues keep") << "insertValues keep"
                                       << "validity held";
    QTest::newRow("clearValues") << "clearValues"
                                 << "axes held";
    QTest::newRow("removeOldValues") << "removeOldValues"
                                     << "validity held";
}

void TestSampleEntry::holdsStore()
{
    QFETCH(QString, operation);
    ProbingModel model;
    auto *series = addFinally<ProbingSeries>(model, "a");
    model.addValue(series, newValue(1, 2, 0, 1));
    QVERIFY(settled(model));
    QStringList found;
    const auto look = [&](const char *place) {
        const QString text =
            QString("%1 %2").arg(place, isFree(series->m_valuesMutex) ? "free" : "held");
        if (found.isEmpty() || found.last() != text) {
            found.append(text);
        }
    };
    series->m_onIsValid = [&] { look("validity"); };
    model.m_onAdjustAxisX = [&] { look("axes"); };

    enter(model, series, operation);

    QTEST(found.join('|'), "expected");
    QVERIFY(isFree(series->m_valuesMutex));
    QVERIFY(isFree(series->m_pointsMutex));
    series->m_onIsValid = nullptr;
}

void TestSampleEntry::holdsAxes()
{
    ProbingModel model;
    auto *series = addFinally<ProbingSeries>(model, "a");
    QVERIFY(settled(model));
    std::future<void> reader;
    bool waited = false;
    series->m_onIsValid = [&] {
        reader = std::async(std::launch::async, [&] { model.minMaxY(); });
        waited = reader.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout;
    };

    model.addValue(series, newValue(1, 2));
    series->m_onIsValid = nullptr;

    reader.get();
    QVERIFY(waited); // no one reads the ends and extremes while the store changes
}

void TestSampleEntry::locksOneStoreAtATime()
{
    ProbingModel model;
    PlainSeries *series[] = {addFinally(model, "a"), addFinally(model, "b")};
    QVERIFY(settled(model));
    QStringList found;
    model.m_onAdjustAxisX = [&] {
        for (PlainSeries *one : series) {
            found.append(one->m_name + (isFree(one->m_valuesMutex) ? " free" : " held"));
        }
    };

    model.clearValues();

    QCOMPARE(found.join('|'), QString("a held|b free|a free|b held"));
}

void TestSampleEntry::waitsForRunningWorker()
{
    OpenModel model;
    auto *series = addFinally<GatedSeries>(model, "a");
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    QVERIFY(settled(model));
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());

    std::atomic<bool> entered{false};
    std::thread feeder([&] {
        model.addValue(series, newValue(20, 50));
        entered = true;
    });
    const bool workerHolds = !isFree(series->m_valuesMutex);
    const bool enteredTooEarly = entered;
    series->openGate();
    feeder.join();

    QVERIFY(workerHolds);
    QVERIFY(!enteredTooEarly);
    QCOMPARE(storeText(*series), QString("0:20 10:80 20:50"));
    QVERIFY(settled(model));
}

void TestSampleEntry::leavesDeletedSeriesAlone_data()
{
    addOperationRows();
}

// That the samples are freed, the leak sanitizer sees.
void TestSampleEntry::leavesDeletedSeriesAlone()
{
    QFETCH(QString, operation);
    int deaths = 0;
    RecordingModel model;
    auto *dead = new PlainSeries("dead");
    dead->m_deaths = &deaths;
    auto *living = new PlainSeries("living");
    model.addSeries(dead);
    model.m_undoStack->undo();
    model.addSeries(living); // deletes the undone step, and with it the series
    QCOMPARE(deaths, 1);
    model.addValues(living, {newValue(0, 20), newValue(10, 80)});
    QVERIFY(settled(model));
    const QString step = stepText(*model.m_undoStack, 0);
    model.takeCalls();

    enter(model, dead, operation);
    std::thread([&] { enter(model, dead, operation); }).join();
    QCoreApplication::processEvents();

    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(axisText(*model.m_axisX), QString("[0,10]"));
    QCOMPARE(storeText(*living), QString("0:20 10:80"));
    QCOMPARE(stepText(*model.m_undoStack, 0), step);
    QVERIFY(!model.removeOldValues(dead));
    QQueue<ChartValue *> queue = queueOf({newValue(1, 1), newValue(2, 2)});
    model.insertValues(dead, queue, true);
    QVERIFY(queue.isEmpty()); // nothing is left that the caller could free once more
}

void TestSampleEntry::fillsRemovedSeries()
{
    OpenModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    model.removeSeries(series);

    model.addValue(series, newValue(3, 4));
    model.addValue(series, newValue(5, 6));
    QCOMPARE(axisText(*model.m_axisX), QString("[0,0]")); // not in the chart

    model.m_undoStack->undo();
    QCOMPARE(storeText(*series), QString("3:4 5:6"));
    QCOMPARE(model.m_series, QList<AbstractChartSeries *>{series});
}

void TestSampleEntry::rewritesNeighboursInHistory_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("done");
    QTest::addColumn<QString>("undone");
    QTest::addColumn<QString>("calls");

    // The sample at 20 moves X from [0,10] to [0,20]; clearing moves it to [0,0].
    for (const char *operation : {"addValue", "addValues", "insertValues"}) {
        QTest::newRow(operation) << operation << "[0,0]>[0,20]"
                                 << "[0,20]>[2,4]"
                                 << "y:a|x|actions";
    }
    QTest::newRow("clearValues") << "clearValues"
                                 << "[0,0]>[0,0]"
                                 << "[0,0]>[2,4]"
                                 << "y:a|x|actions";
    for (const char *operation : {"insertValues keep", "removeOldValues"}) {
        QTest::newRow(operation) << operation << "[0,0]>[0,10]"
                                 << "[0,10]>[2,4]"
                                 << "";
    }
}

void TestSampleEntry::rewritesNeighboursInHistory()
{
    QFETCH(QString, operation);
    RecordingModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    pushZoom(model, 2, 4);
    model.m_undoStack->undo();
    QVERIFY(settled(model));
    QCOMPARE(stepText(*model.m_undoStack, 0), QString("[0,0]>[0,10]"));
    QCOMPARE(stepText(*model.m_undoStack, 1), QString("[0,10]>[2,4]"));
    model.takeCalls();

    enter(model, series, operation);

    QTEST(stepText(*model.m_undoStack, 0), "done");
    QTEST(stepText(*model.m_undoStack, 1), "undone");
    QTEST(model.takeCalls(), "calls");
}

void TestSampleEntry::keepsHistoryWithoutMovedAxis_data()
{
    addOperationRows();
}

void TestSampleEntry::keepsHistoryWithoutMovedAxis()
{
    QFETCH(QString, operation);
    RecordingModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    pushZoom(model, 2, 4); // X stays there, whatever comes
    QVERIFY(settled(model));
    model.m_axisX->m_gridValues.clear(); // a range that is assigned gets a new grid
    model.takeCalls();

    enter(model, series, operation);

    QVERIFY(!model.takeCalls().contains("actions"));
    QVERIFY(model.m_axisX->m_gridValues.isEmpty());
    QCOMPARE(stepText(*model.m_undoStack, 0), QString("[0,0]>[0,10]"));
    QCOMPARE(stepText(*model.m_undoStack, 1), QString("[0,10]>[2,4]"));
}

void TestSampleEntry::keepsUndoneFirstStep()
{
    RecordingModel model;
    PlainSeries *series = addFinally(model, "a");
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    pushZoom(model, 2, 4);
    model.m_undoStack->undo();
    QVERIFY(settled(model));
    model.takeCalls();

    model.addValue(series, newValue(20, 50));

    QCOMPARE(model.takeCalls(), QString("y:a|x"));
    QCOMPARE(stepText(*model.m_undoStack, 0), QString("[0,10]>[2,4]"));
}

void TestSampleEntry::keepsEmptyHistory()
{
    OpenModel model;
    PlainSeries *series = addFinally(model, "a");

    model.addValue(series, newValue(20, 50));

    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestSampleEntry::keepsHistoryInSeriesChanges()
{
    OpenModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    auto *wide = new PlainSeries("b");
    wide->m_values.append(newValue(50, 1));

    model.addSeries(wide);

    QCOMPARE(axisText(*model.m_axisX), QString("[0,50]"));
    QCOMPARE(stepText(*model.m_undoStack, 0), QString("[0,0]>[0,10]"));
    QCOMPARE(stepText(*model.m_undoStack, 1), QString("[0,10]>[0,50]"));
}

void TestSampleEntry::undoesToWhereTheDataIs()
{
    OpenModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    pushZoom(model, 2, 4);

    model.m_undoStack->undo();
    model.addValue(series, newValue(20, 50));
    model.m_undoStack->redo();
    QCOMPARE(axisText(*model.m_axisX), QString("[2,4] zoomed"));
    model.m_undoStack->undo();
    QCOMPARE(axisText(*model.m_axisX), QString("[0,20]"));
}

void TestSampleEntry::movesAxesAtOnceFromThread_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("axis");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    // Before and after: what the step in the history says until and once the GUI thread runs on.
    for (const char *operation : {"addValue", "addValues", "insertValues"}) {
        QTest::newRow(operation) << operation << "[0,20]"
                                 << "[0,0]>[0,10]"
                                 << "[0,0]>[0,20]";
    }
    QTest::newRow("clearValues") << "clearValues"
                                 << "[0,0]"
                                 << "[0,0]>[0,10]"
                                 << "[0,0]>[0,0]";
    for (const char *operation : {"insertValues keep", "removeOldValues"}) {
        QTest::newRow(operation) << operation << "[0,10]"
                                 << "[0,0]>[0,10]"
                                 << "[0,0]>[0,10]";
    }
}

void TestSampleEntry::movesAxesAtOnceFromThread()
{
    QFETCH(QString, operation);
    OpenModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    model.addValues(series, {newValue(0, 20), newValue(10, 80)});
    QVERIFY(settled(model));

    std::thread([&] { enter(model, series, operation); }).join();

    QTEST(axisText(*model.m_axisX), "axis");
    QTEST(stepText(*model.m_undoStack, 0), "before");
    QCoreApplication::processEvents();
    QTEST(stepText(*model.m_undoStack, 0), "after");
}

void TestSampleEntry::postsHistoryOnceFromThread()
{
    RecordingModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    QVERIFY(settled(model));

    for (int round = 1; round <= 2; ++round) { // once more after the first has been delivered
        model.takeCalls();
        std::thread([&] {
            for (int i = 0; i < 100; ++i) {
                model.addValue(series, newValue(100 * round + i, 50));
            }
        }).join();
        QVERIFY(!model.takeCalls().contains("actions"));
        QCoreApplication::processEvents();
        QCOMPARE(model.takeCalls(), QString("actions"));
    }
    QCOMPARE(stepText(*model.m_undoStack, 0), QString("[0,0]>[100,299]"));
}

void TestSampleEntry::postsUpdateOnceFromThread()
{
    OpenModel model;
    addFinally(model, "a");
    QVERIFY(settled(model));
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);

    for (int round = 1; round <= 2; ++round) {
        std::thread([&] {
            for (int i = 0; i < 3; ++i) {
                model.update();
            }
        }).join();
        QCOMPARE(changes.count(), round - 1);
        QVERIFY(!model.updatePointsInProgress());
        QTRY_COMPARE(changes.count(), round);
        QVERIFY(settled(model));
        QCOMPARE(changes.count(), round);
    }
}

void TestSampleEntry::postsUpdateOfChartsOnceFromThread()
{
    OpenModel model;
    auto *series = addFinally(model, "a");
    QVERIFY(settled(model));
    const QSignalSpy runs(series, &AbstractChartSeries::updatePointsFinished);

    for (int round = 1; round <= 2; ++round) {
        std::thread([&] {
            for (int i = 0; i < 3; ++i) {
                model.updateCharts();
            }
        }).join();
        QVERIFY(!model.updatePointsInProgress());
        QTRY_COMPARE(runs.count(), round);
        QVERIFY(settled(model));
        QCOMPARE(runs.count(), round);
    }
}

void TestSampleEntry::dropsPostsOfDeadModel()
{
    auto *model = new OpenModel;
    auto *series = new PlainSeries("a");
    model->addSeries(series);
    std::thread([&] {
        model->addValue(series, newValue(10, 50));
        model->update();
        model->updateCharts();
    }).join();

    delete model;
    QCoreApplication::processEvents();
}

void TestSampleEntry::takesSamplesOfManyThreadsThroughChanges()
{
    constexpr int Threads = 3;
    constexpr int Samples = 2000;
    constexpr quint32 Seed = 20260;
    OpenModel model;
    QList<PlainSeries *> series;
    for (int i = 0; i < Threads; ++i) {
        series.append(new PlainSeries(QString::number(i)));
        model.addSeries(series.last());
    }
    std::atomic<int> running{Threads};
    std::vector<std::thread> feeders;
    for (PlainSeries *one : qAsConst(series)) {
        feeders.emplace_back([&model, &running, one] {
            for (int i = 0; i < Samples; ++i) {
                model.addValue(one, newValue(i, i % 100));
            }
            --running;
        });
    }

    // Meanwhile the user takes the series out and brings them back.
    QRandomGenerator random(Seed);
    while (running > 0) {
        if (!model.m_series.isEmpty() && random.bounded(2) == 0) {
            model.removeSeries(model.m_series.at(random.bounded(model.m_series.size())));
        } else if (model.m_undoStack->index() > Threads) {
            model.m_undoStack->undo();
        }
        model.update();
        QCoreApplication::processEvents();
    }
    for (std::thread &feeder : feeders) {
        feeder.join();
    }
    while (model.m_undoStack->index() > Threads) {
        model.m_undoStack->undo();
    }
    model.addValue(series.first(), nullptr); // from the range of the last undo to that of the data

    QVERIFY(settled(model));
    QCOMPARE(rowsText(model), QString("0 1 2"));
    for (const PlainSeries *one : qAsConst(series)) {
        QCOMPARE(one->m_values.size(), Samples);
        QCOMPARE(extremesText(*one), QString("1900:0 1999:99"));
    }
    QCOMPARE(axisText(*model.m_axisX), QString("[0,1999]"));
}

QTEST_MAIN(TestSampleEntry)
#include "tst_sampleentry.moc"
