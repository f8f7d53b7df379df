#include "model/axeslocker_p.h"
#include "support/countedsamples.h"
#include "support/gatedseries.h"
#include "support/modelsetup.h"
#include "undo/scalecommand.h"

#include <QSemaphore>
#include <QtTest>
#include <QUndoStack>

#include <atomic>
#include <thread>

namespace {

/// The ways of a sample into a series, and out of it.
using Feed = void (*)(AbstractChartModel &model, AbstractChartSeries *series);

constexpr double LongAgo = 1.0; // a second into 1970

constexpr int LongEnough = 30; // ms, for a death that does not wait for the feeder

ChartValue *sampleAt(double x)
{
    return new ChartValue{x, 50.0, 0, LongAgo};
}

void insertValues(AbstractChartModel &model, AbstractChartSeries *series, bool keepAxes)
{
    QQueue<ChartValue *> queue;
    queue.append({sampleAt(20), sampleAt(30)});
    model.insertValues(series, queue, keepAxes);
    if (!queue.isEmpty()) {
        qFatal("Samples are left in the queue");
    }
}

struct NamedFeed
{
    const char *name;
    Feed feed;
};

const NamedFeed Feeds[] = {
    {"addValue", [](AbstractChartModel &model,
                    AbstractChartSeries *series) { model.addValue(series, sampleAt(20)); }},
    {"addValues",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addValues(series, {sampleAt(20), nullptr, sampleAt(10)});
     }},
    {"insertValues", [](AbstractChartModel &model,
                        AbstractChartSeries *series) { insertValues(model, series, false); }},
    {"insertValues keeping axes",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         insertValues(model, series, true);
     }},
    {"clearValues",
     [](AbstractChartModel &model, AbstractChartSeries *series) { model.clearValues(series); }},
    {"removeOldValues",
     [](AbstractChartModel &model, AbstractChartSeries *series) { model.removeOldValues(series); }},
};

/// Where a test has a feeder wait in the midst of an operation. Other threads pass.
class Station
{
public:
    /// Marks this thread as the feeder.
    void enter() { m_feeder = QThread::currentThreadId(); }

    void pass()
    {
        if (QThread::currentThreadId() == m_feeder && !m_hasPassed) {
            m_hasPassed = true;
            m_arrival.release();
            m_gate.acquire();
        }
    }

    bool waitForFeeder() { return m_arrival.tryAcquire(1, Patience); }
    void open() { m_gate.release(); }

private:
    static constexpr int Patience = 10000; // ms

    std::atomic<Qt::HANDLE> m_feeder{nullptr};
    bool m_hasPassed = false; ///< Touched by the feeder only.
    QSemaphore m_arrival;
    QSemaphore m_gate;
};

/// Has its feeder wait where it is asked about a sample, and tells when it dies.
class StationSeries : public PlainSeries
{
public:
    explicit StationSeries(Station &station)
        : m_station(station)
    {
    }
    ~StationSeries() override { m_death->release(); }

    bool isValid(const ChartValue *value) const override
    {
        m_station.pass();
        return PlainSeries::isValid(value);
    }

    Station &m_station;
    QSemaphore *m_death = nullptr; ///< Not owned.
};

/// Has the feeder wait where the axes follow the data.
class StationModel : public OpenModel
{
public:
    explicit StationModel(Station &station)
        : m_station(station)
    {
    }

    void adjustAxisX() override
    {
        m_station.pass();
        OpenModel::adjustAxisX();
    }

    Station &m_station;
};

/// A step of its own, since it leads to a range of X that was not there before.
void pushZoom(AbstractChartModel &model)
{
    auto *command = new ScaleCommand(&model);
    {
        const AxesLocker locker(&model);
        model.m_axisX->m_zoomed = true;
        model.m_axisX->assignRange(0.0, model.m_axisX->m_max + 1.0);
    }
    model.m_undoStack->push(command);
}

/// As many steps as fit behind the two that have brought a series in and out again.
void fillHistory(AbstractChartModel &model)
{
    while (model.m_undoStack->count() < model.m_undoStack->undoLimit()) {
        pushZoom(model);
    }
    pushZoom(model); // the step that has brought it in falls out
}

/// A step that is kept though it ends where the step before it has ended.
class UnmergedCommand : public ScaleCommand
{
public:
    using ScaleCommand::ScaleCommand;

    int id() const override { return -1; }
};

QList<AbstractChartSeries *> newSeries(int count)
{
    QList<AbstractChartSeries *> series;
    for (int i = 0; i < count; ++i) {
        series.append(new PlainSeries(QString("new %1").arg(i)));
    }
    return series;
}

/// One way in which a series dies: what comes before, and the step that kills it.
struct Death
{
    const char *name;
    void (*prepare)(AbstractChartModel &model, AbstractChartSeries *series);
    void (*die)(AbstractChartModel &model, AbstractChartSeries *series);
};

void pushOneZoom(AbstractChartModel &model, AbstractChartSeries *)
{
    pushZoom(model);
}

void addFinally(AbstractChartModel &model, AbstractChartSeries *series)
{
    model.m_seriesEditable = false;
    model.addSeries(series);
}

const Death Deaths[] = {
    {"limit of the history after a removal",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(series);
         model.removeSeries(series);
         fillHistory(model);
     },
     pushOneZoom},
    {"limit of the history after an eleventh series",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(series);
         model.addSeries(newSeries(10));
         fillHistory(model);
     },
     pushOneZoom},
    {"discarded addition",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(series);
         model.m_undoStack->undo();
     },
     pushOneZoom},
    {"discarded eleventh series",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(newSeries(10));
         model.addSeries(series);
         model.m_undoStack->undo();
     },
     pushOneZoom},
    {"cleared history",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(series);
         model.removeAllSeries();
     },
     [](AbstractChartModel &model, AbstractChartSeries *) { model.m_undoStack->clear(); }},
    {"final removal", addFinally,
     [](AbstractChartModel &model, AbstractChartSeries *series) { model.removeSeries(series); }},
    {"final removal of all", addFinally,
     [](AbstractChartModel &model, AbstractChartSeries *) { model.removeAllSeries(); }},
};

/// One way in which a series leaves its model by a step that is not its own.
struct Exit
{
    const char *name;
    void (*prepare)(AbstractChartModel &model, AbstractChartSeries *series);
    void (*leave)(AbstractChartModel &model);
};

const Exit Exits[] = {
    {"undone addition",
     [](AbstractChartModel &model, AbstractChartSeries *series) { model.addSeries(series); },
     [](AbstractChartModel &model) { model.m_undoStack->undo(); }},
    {"repeated removal",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(series);
         model.removeSeries(series);
         model.m_undoStack->undo();
     },
     [](AbstractChartModel &model) { model.m_undoStack->redo(); }},
    {"eleventh series",
     [](AbstractChartModel &model, AbstractChartSeries *series) {
         model.addSeries(series);
         model.addSeries(newSeries(9));
     },
     [](AbstractChartModel &model) { model.addSeries(new PlainSeries("eleventh")); }},
};

} // namespace

Q_DECLARE_METATYPE(const NamedFeed *)
Q_DECLARE_METATYPE(const Death *)
Q_DECLARE_METATYPE(const Exit *)

/// Series leave and die while threads that know nothing of it feed them.
class TestFeeding : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void deadSeriesTakesNothing_data();
    void deadSeriesTakesNothing();
    void newSeriesAreNotTakenForDeadOnes();
    void seriesLivesUntilItsFeederHasLeft_data();
    void seriesLivesUntilItsFeederHasLeft();
    void seriesDiesWhoseFeederWaitsForTheWorker_data();
    void seriesDiesWhoseFeederWaitsForTheWorker();
    void clearingGoesOnWhereSeriesHaveDied();
    void feedersOfOtherSeriesNeedNotWaitForADeath();
    void threadFeedsToItsVeryEnd();
    void passEndsThoughItsLastSeriesLeaves_data();
    void passEndsThoughItsLastSeriesLeaves();
    void updateOfAThreadDuringAPassLeadsToOneMore();
    void historyThatIsGoneFollowsNoData();

private:
    static void addDeathRows();

    qint64 m_aliveBefore = 0;
};

void TestFeeding::init()
{
    m_aliveBefore = CountedSamples::alive();
}

void TestFeeding::cleanup()
{
    QCOMPARE(CountedSamples::alive(), m_aliveBefore);
}

/// Every death with every way in.
void TestFeeding::addDeathRows()
{
    QTest::addColumn<const Death *>("death");
    QTest::addColumn<const NamedFeed *>("feed");

    for (const Death &death : Deaths) {
        for (const NamedFeed &feed : Feeds) {
            QTest::addRow("%s, %s", death.name, feed.name) << &death << &feed;
        }
    }
}

void TestFeeding::deadSeriesTakesNothing_data()
{
    addDeathRows();
}

void TestFeeding::deadSeriesTakesNothing()
{
    QFETCH(const Death *, death);
    QFETCH(const NamedFeed *, feed);
    int deaths = 0;
    RecordingModel model;
    auto *series = new PlainSeries("a");
    series->m_deaths = &deaths;
    death->prepare(model, series);
    model.addValues(series, {sampleAt(0), sampleAt(10)});
    QCOMPARE(deaths, 0);
    QCOMPARE(CountedSamples::alive(), m_aliveBefore + 2);

    death->die(model, series);
    QCOMPARE(deaths, 1);
    QCOMPARE(CountedSamples::alive(), m_aliveBefore);
    QVERIFY(settled(model));
    const QString axes = axesText(model);
    const QString rows = rowsText(model);
    model.takeCalls();

    feed->feed(model, series);
    std::thread([&] { feed->feed(model, series); }).join();
    QCoreApplication::processEvents();

    QCOMPARE(CountedSamples::alive(), m_aliveBefore);
    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(axesText(model), axes);
    QCOMPARE(rowsText(model), rows);
}

// Memory that is free is soon used again, and best by what is of the same size.
void TestFeeding::newSeriesAreNotTakenForDeadOnes()
{
    constexpr int Rounds = 100;
    OpenModel model;
    for (int i = 0; i < Rounds; ++i) {
        auto *dead = new PlainSeries("dead");
        addFinally(model, dead);
        model.removeSeries(dead);
        auto *living = new PlainSeries("living");
        addFinally(model, living);

        model.addValue(dead, sampleAt(10));

        QVERIFY(living != dead);
        QCOMPARE(storeText(*living), QString());
        model.removeSeries(living);
    }
}

void TestFeeding::seriesLivesUntilItsFeederHasLeft_data()
{
    addDeathRows();
}

void TestFeeding::seriesLivesUntilItsFeederHasLeft()
{
    QFETCH(const Death *, death);
    QFETCH(const NamedFeed *, feed);
    Station station;
    QSemaphore deathBell;
    StationModel model(station);
    auto *series = new StationSeries(station);
    series->m_death = &deathBell;
    death->prepare(model, series);
    model.addValues(series, {sampleAt(0), sampleAt(10)});

    // Given a feeder in the midst of its operation
    std::thread feeder([&] {
        station.enter();
        feed->feed(model, series);
    });
    const bool isInside = station.waitForFeeder();

    // When the series is to die
    bool diedTooEarly = false;
    std::thread opener([&] {
        diedTooEarly = deathBell.tryAcquire(1, LongEnough);
        station.open();
    });
    death->die(model, series);
    opener.join();
    feeder.join();

    // Then that waits for the feeder
    QVERIFY(isInside);
    QVERIFY(!diedTooEarly);
    QCOMPARE(deathBell.available(), 1);
    QCOMPARE(CountedSamples::alive(), m_aliveBefore);
    QVERIFY(settled(model));
}

void TestFeeding::seriesDiesWhoseFeederWaitsForTheWorker_data()
{
    QTest::addColumn<const NamedFeed *>("feed");

    for (const NamedFeed &feed : Feeds) {
        QTest::newRow(feed.name) << &feed;
    }
}

void TestFeeding::seriesDiesWhoseFeederWaitsForTheWorker()
{
    QFETCH(const NamedFeed *, feed);
    int deaths = 0;
    OpenModel model;
    auto *series = new GatedSeries("a");
    series->m_deaths = &deaths;
    addFinally(model, series);
    model.addValues(series, {sampleAt(0), sampleAt(10)});
    QVERIFY(settled(model));
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());

    QSemaphore start;
    std::thread feeder([&] {
        start.release();
        feed->feed(model, series); // the worker holds the store
    });
    start.acquire();
    model.removeSeries(series);
    feeder.join();

    QCOMPARE(deaths, 1);
    QCOMPARE(CountedSamples::alive(), m_aliveBefore);
    QVERIFY(settled(model));
}

void TestFeeding::clearingGoesOnWhereSeriesHaveDied()
{
    class RemovingModel : public OpenModel
    {
    public:
        using OpenModel::clearValues;
        void clearValues(AbstractChartSeries *series) override
        {
            ++m_calls;
            removeAllSeries();
            OpenModel::clearValues(series);
        }

        int m_calls = 0;
    };
    RemovingModel model;
    for (AbstractChartSeries *series : newSeries(3)) {
        addFinally(model, series);
        model.addValue(series, sampleAt(1));
    }
    QVERIFY(settled(model));

    model.clearValues();

    QCOMPARE(model.m_calls, 3);
    QCOMPARE(CountedSamples::alive(), m_aliveBefore);
}

void TestFeeding::feedersOfOtherSeriesNeedNotWaitForADeath()
{
    int deaths = 0;
    Station station;
    StationModel model(station);
    OpenModel elsewhere;
    auto *other = ::addSeries(elsewhere, "b");
    auto *series = new PlainSeries("a"); // of no model: only its end waits for the feeder
    series->m_deaths = &deaths;
    std::thread feeder([&] {
        station.enter();
        model.addValue(series, sampleAt(10));
    });
    const bool isInside = station.waitForFeeder();

    // When a new thread feeds what lives, while a death waits for its last feeder
    std::thread opener([&] {
        QSemaphore().tryAcquire(1, LongEnough);
        elsewhere.addValue(other, sampleAt(20));
        station.open();
    });
    delete series;
    opener.join();
    feeder.join();

    QVERIFY(isInside);
    QCOMPARE(deaths, 1);
    QCOMPARE(other->m_values.size(), 1);
}

// What a thread keeps for itself may hand in what it has gathered when the thread ends, after all
// that was made later, with the first sample, is gone.
void TestFeeding::threadFeedsToItsVeryEnd()
{
    struct LastWords
    {
        ~LastWords()
        {
            if (model) {
                model->addValue(series, sampleAt(20));
                model->addValue(nullptr, nullptr);
                model->addValue(series, sampleAt(30));
            }
        }
        AbstractChartModel *model = nullptr;
        AbstractChartSeries *series = nullptr;
    };
    OpenModel model;
    AbstractChartSeries *series = ::addSeries(model, "a");

    std::thread([&] {
        thread_local LastWords words;
        words.series = series;
        words.model = &model;
        model.addValue(series, sampleAt(10));
    }).join();

    QCOMPARE(series->m_values.size(), 3);
    model.removeSeries(series); // waits for no one who has gone
    QCOMPARE(model.m_series.size(), 0);
}

void TestFeeding::passEndsThoughItsLastSeriesLeaves_data()
{
    QTest::addColumn<const Exit *>("exit");

    for (const Exit &exit : Exits) {
        QTest::newRow(exit.name) << &exit;
    }
}

void TestFeeding::passEndsThoughItsLastSeriesLeaves()
{
    QFETCH(const Exit *, exit);
    OpenModel model;
    auto *series = new GatedSeries("leaving");
    exit->prepare(model, series);
    model.addValues(series, {sampleAt(0), sampleAt(10)});
    QVERIFY(settled(model));

    // Given a pass that waits for this series only, and a step that waits for the pass
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());
    QTRY_COMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{series});
    auto *command = new UnmergedCommand(&model);
    model.m_pendingCommands.append(command);

    exit->leave(model);

    QTRY_VERIFY(model.m_pendingCommands.isEmpty());
    QCOMPARE(model.m_undoStack->command(model.m_undoStack->count() - 1), command);
    QVERIFY(settled(model));
}

void TestFeeding::updateOfAThreadDuringAPassLeadsToOneMore()
{
    OpenModel model;
    auto *series = addSeries<GatedSeries>(model, "a", {0.0, 8.0});
    QVERIFY(settled(model));
    QSignalSpy runs(series, SIGNAL(updatePointsFinished()));
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());

    std::thread([&] {
        for (int i = 0; i < 3; ++i) {
            model.update();
            model.updateCharts();
        }
    }).join();
    QVERIFY(!model.m_chartsUpdatePending);
    QCoreApplication::processEvents();
    QVERIFY(model.m_chartsUpdatePending);

    series->openGate();
    QVERIFY(runs.wait());
    QVERIFY(settled(model));
    QCOMPARE(runs.count(), 2);
}

void TestFeeding::historyThatIsGoneFollowsNoData()
{
    RecordingModel model;
    auto *series = new PlainSeries("a");
    model.addSeries(series);
    QVERIFY(settled(model));
    std::thread([&] { model.addValues(series, {sampleAt(0), sampleAt(10)}); }).join();

    model.m_undoStack->clear(); // what the thread has posted is still on its way
    model.takeCalls();
    QCoreApplication::processEvents();

    QCOMPARE(model.takeCalls(), QString());
    QCOMPARE(axisText(*model.m_axisX), QString("[0,10]"));
}

QTEST_MAIN(TestFeeding)
#include "tst_feeding.moc"
