#include "model/chartmimedata.h"
#include "model/dynamicchartmodel.h"
#include "model/staticchartmodel.h"
#include "support/countedsamples.h"
#include "support/plainseries.h"
#include "support/quietplatform.h"
#include "support/settingsfolder.h"
#include "support/watchdog.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QDropEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QSet>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>
#include <QUndoStack>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr int FeederCount = 4;
constexpr int TargetCount = 10; // series that are fed at a time
constexpr int GuiParty = FeederCount;
constexpr double Epoch = 1.6e9; // seconds, in September 2020: where the samples begin

/// How long feeders and user work on one chart, in seconds.
int sessionLength()
{
    constexpr int ShortForm = 5;
    bool isSet = false;
    const int seconds = qEnvironmentVariableIntValue("QUARVCHART_THREADS_SECONDS", &isSet);
    return isSet ? seconds : ShortForm;
}

/// Knows all of its kind that live. GUI thread.
class FedSeries : public PlainSeries
{
public:
    /// Whether samples come that replace stored ones: then an extreme may be stale.
    enum Kind { Fresh, Replacing };

    FedSeries()
        : PlainSeries(QString("series %1").arg(++s_made))
        , m_kind(Kind(s_made % 2))
    {
        s_living.insert(this);
    }
    ~FedSeries() override { s_living.remove(this); }

    static const QSet<FedSeries *> &living() { return s_living; }
    static int made() { return s_made; }

    const Kind m_kind;

private:
    static inline QSet<FedSeries *> s_living;
    static inline int s_made = 0;
};

/// What a feeder knows of a series. It may have died.
struct Target
{
    AbstractChartSeries *series = nullptr;
    FedSeries::Kind kind = FedSeries::Fresh;
};

/// The series that are to be fed: the GUI thread writes them, the feeders read.
class TargetTable
{
public:
    void write(int index, FedSeries *series)
    {
        // The kind fits into the last bit, which is 0 in an address.
        const auto address = reinterpret_cast<quintptr>(static_cast<AbstractChartSeries *>(series));
        m_targets[std::size_t(index)] = address | quintptr(series->m_kind);
    }

    Target read(int index) const
    {
        const quintptr target = m_targets[std::size_t(index)];
        return {reinterpret_cast<AbstractChartSeries *>(target & ~quintptr(1)),
                FedSeries::Kind(target & 1)};
    }

private:
    std::array<std::atomic<quintptr>, TargetCount> m_targets{};
};

/// Something to do, and how often in proportion to the rest.
struct Choice
{
    int weight;
    std::function<void()> act;
};

/// Draws by weight, the same on each run.
class Script
{
public:
    explicit Script(quint32 seed)
        : m_random(seed)
    {
    }

    void add(int weight, const std::function<void()> &act)
    {
        m_choices.append({weight, act});
        m_weights += weight;
    }

    void step()
    {
        int ticket = m_random.bounded(m_weights);
        auto choice = m_choices.cbegin();
        while (ticket >= choice->weight) {
            ticket -= choice->weight;
            ++choice;
        }
        choice->act();
    }

    /// Whether one of so many tickets wins.
    bool wins(int tickets) { return m_random.bounded(tickets) == 0; }

    QRandomGenerator m_random;

private:
    QVector<Choice> m_choices;
    int m_weights = 0;
};

/**
 * A thread that feeds ten series and goes on feeding them when they are removed, or have died. Now
 * and then it looks which series there are.
 */
class Feeder
{
public:
    Feeder(int index, AbstractChartModel &model, const TargetTable &table, Watchdog &watchdog)
        : m_index(index)
        , m_model(model)
        , m_table(table)
        , m_watchdog(watchdog)
        , m_script(Seed + quint32(index))
    {
        m_script.add(4000, [this] { m_model.addValue(series(), value(nextX())); });
        m_script.add(1500, [this] { m_model.addValues(series(), values()); });
        m_script.add(800, [this] { insertValues(false); });
        m_script.add(800, [this] { insertValues(true); });
        m_script.add(400, [this] { m_model.removeOldValues(series()); });
        m_script.add(8, [this] { m_model.clearValues(series()); });
        m_script.add(1, [this] { m_model.clearValues(); });
        m_script.add(100, [this] { m_model.addValue(series(), nullptr); });
        m_script.add(400, [this] { m_model.update(); });
        m_script.add(400, [this] { m_model.updateCharts(); });
        m_thread = std::thread([this] { run(); });
    }
    Q_DISABLE_COPY_MOVE(Feeder)
    ~Feeder()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    static constexpr quint32 Seed = 4711;
    static constexpr int MostSamples = 12; // of one operation

    void run()
    {
        while (!m_stop) {
            Target &target = m_targets[std::size_t(m_script.m_random.bounded(TargetCount))];
            if (!target.series || m_script.wins(200)) {
                target = m_table.read(m_script.m_random.bounded(TargetCount));
            }
            m_target = target;
            m_script.step();
            m_watchdog.beat(m_index);
        }
        m_watchdog.leave(m_index);
    }

    AbstractChartSeries *series() const { return m_target.series; }

    /// Each X once in all feeders, on a grid that doubles hold exactly.
    double freshX()
    {
        constexpr double Step = 1.0 / 64; // s
        return Epoch + Step * double(FeederCount * m_count++ + m_index);
    }

    double nextX()
    {
        constexpr int Places = 200;
        return m_target.kind == FedSeries::Fresh ? freshX()
                                                 : Epoch + m_script.m_random.bounded(Places);
    }

    ChartValue *value(double x)
    {
        constexpr double LongAgo = 1.0; // a second into 1970
        const double y = m_script.wins(50) ? qQNaN() : m_script.m_random.bounded(100);
        const double expireTime = m_script.wins(10) ? LongAgo : qInf();
        return new ChartValue{x, y, m_script.m_random.bounded(3), expireTime};
    }

    QList<ChartValue *> values()
    {
        QList<ChartValue *> list;
        for (int i = m_script.m_random.bounded(MostSamples); i > 0; --i) {
            list.append(m_script.wins(20) ? nullptr : value(m_script.wins(50) ? qQNaN() : nextX()));
        }
        return list;
    }

    /// Ascending by X.
    void insertValues(bool keepAxes)
    {
        QVector<double> places;
        for (int i = m_script.m_random.bounded(MostSamples); i > 0; --i) {
            places.append(nextX());
        }
        std::sort(places.begin(), places.end());
        QQueue<ChartValue *> queue;
        for (double x : qAsConst(places)) {
            queue.append(value(x));
        }
        m_model.insertValues(series(), queue, keepAxes);
    }

    const int m_index;
    AbstractChartModel &m_model;
    const TargetTable &m_table;
    Watchdog &m_watchdog;
    Script m_script;
    std::array<Target, TargetCount> m_targets{};
    Target m_target;
    qint64 m_count = 0;
    std::atomic<bool> m_stop{false};
    std::thread m_thread; // last: it uses what stands above
};

/// Uses a chart in all ways that open no dialog, one after each turn of the event loop.
class User
{
public:
    User(MultiChart &chart, TargetTable &table, Watchdog &watchdog)
        : m_chart(chart)
        , m_model(*chart.m_model)
        , m_table(table)
        , m_watchdog(watchdog)
        , m_script(Seed)
    {
        addZooming();
        addChangesOfSeries();
        addPanes();
        addSettings();
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_script.step();
            m_watchdog.beat(GuiParty);
        });
    }

    void start()
    {
        for (int i = 0; i < TargetCount; ++i) {
            addSeries(1);
        }
        m_timer.start(0);
    }
    void stop() { m_timer.stop(); }

private:
    static constexpr quint32 Seed = 1174;

    void addZooming()
    {
        const QList<QAction *> actions{
            m_model.m_zoomInAction,       m_model.m_zoomOutAction,    m_model.m_zoomInXAction,
            m_model.m_zoomOutXAction,     m_model.m_zoomInYAction,    m_model.m_zoomOutYAction,
            m_model.m_undoZoomAction,     m_model.m_scrollDownAction, m_model.m_scrollToBeginAction,
            m_model.m_scrollBackAction,   m_model.m_pauseAction,      m_model.m_scrollForwardAction,
            m_model.m_scrollToEndAction,  m_model.m_scrollUpAction,   m_model.m_adjustSizeAction,
            m_model.m_adjustColumnsAction};
        for (QAction *action : actions) {
            m_script.add(action == m_model.m_undoZoomAction ? 8 : 2,
                         [action] { action->trigger(); });
        }
        m_script.add(8, [this] { m_model.m_undoStack->undo(); });
        m_script.add(6, [this] { m_model.m_undoStack->redo(); });
        m_script.add(2, [this] { m_model.undoZoom(); });
        m_script.add(4, [this] { drag(); });
        m_script.add(4, [this] { select(); });
    }

    void addChangesOfSeries()
    {
        m_script.add(12, [this] { addSeries(1); });
        m_script.add(1, [this] { addSeries(3); });
        m_script.add(1, [this] { addSeries(12); });
        m_script.add(8, [this] { m_model.removeSeries(anySeries()); });
        m_script.add(1, [this] { m_model.removeAllSeries(); });
        m_script.add(1, [this] { m_model.clearValues(); });
        m_script.add(2, [this] { removeFinally(); });
    }

    void addPanes()
    {
        for (QAction *action :
             {m_model.m_singleModeAction, m_model.m_multiModeAction, m_model.m_addChartAction,
              m_model.m_removeChartAction, m_model.m_selectModeAction, m_model.m_moveModeAction}) {
            m_script.add(2, [action] { action->trigger(); });
        }
        m_script.add(6, [this] { drop(); });
        m_script.add(4, [this] { render(); });
        m_script.add(2, [this] { m_chart.resize(width(), width()); });
        m_script.add(4, [this] { emit anyPane()->cursorStateChanged(width(), !m_script.wins(4)); });
        m_script.add(4, [this] { m_chart.legendView()->setCurrentIndex(anyName()); });
        m_script.add(2, [this] { checkSeries(); });
    }

    void addSettings()
    {
        ChartSettings &settings = m_model.m_settings;
        for (bool *flag : {&settings.individualScale, &settings.dynamicGrid, &settings.autoScaleX,
                           &settings.autoScaleY, &settings.autoRemoveEmptyChart,
                           &settings.seriesSettings.pointsVisible}) {
            m_script.add(1, [this, flag] {
                *flag = !*flag;
                m_model.applyChartSettings();
            });
        }
        m_script.add(1, [this] {
            m_model.m_settings.visibleInterval = width();
            m_model.applyChartSettings();
        });
        m_script.add(1, [this] { m_model.setUseDateTimeScaleX(m_script.wins(2)); });
        m_script.add(4, [this] { m_model.update(); });
        m_script.add(8, [this] { m_model.updateCharts(); });
    }

    /// In pixels, or what else is of that size.
    int width() { return m_script.m_random.bounded(200, 700); }

    AbstractChartSeries *anySeries()
    {
        const QList<AbstractChartSeries *> &all = m_model.m_series;
        return all.isEmpty() ? nullptr : all.at(m_script.m_random.bounded(all.size()));
    }
    ChartWidget *anyPane()
    {
        return m_model.m_charts.at(m_script.m_random.bounded(m_model.m_charts.size()));
    }
    QModelIndex anyName()
    {
        return m_model.index(m_model.m_series.indexOf(anySeries()), AbstractChartModel::NameColumn);
    }

    void addSeries(int count)
    {
        QList<AbstractChartSeries *> added;
        for (int i = 0; i < count; ++i) {
            added.append(new FedSeries);
        }
        m_model.addSeries(added);
        while (added.size() > TargetCount) {
            delete added.takeLast(); // one that the model has not taken
        }
        for (AbstractChartSeries *series : qAsConst(added)) {
            m_table.write(m_script.m_random.bounded(TargetCount), static_cast<FedSeries *>(series));
        }
    }

    /// As in a program without a history of series.
    void removeFinally()
    {
        m_model.m_undoStack->clear(); // which would bring back what is dead
        m_model.m_seriesEditable = false;
        m_model.removeSeries(anySeries());
        m_model.m_seriesEditable = true;
    }

    void select()
    {
        const ChartWidget *pane = anyPane();
        const QRectF plot = pane->chartRect(QRectF());
        const QRectF part(plot.center(), plot.size() / m_script.m_random.bounded(1, 4));
        emit anyPane()->zoomChanged(plot, part, ChartWidget::ZoomUndoable);
    }

    void drag()
    {
        ChartWidget *pane = anyPane();
        const QRectF plot = pane->chartRect(QRectF());
        emit pane->beginMove();
        emit pane->zoomChanged(plot, plot.translated(5, -5), ChartWidget::ZoomTransient);
        emit pane->endMove();
    }

    /// From the legend, where the series may have died during the drag.
    void drop()
    {
        ChartMimeData data;
        data.m_series = {anySeries(), m_table.read(m_script.m_random.bounded(TargetCount)).series};
        QDropEvent event(QPoint(10, 10), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        static_cast<QObject *>(anyPane())->event(&event);
    }

    void render()
    {
        ChartWidget *pane = anyPane();
        QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        pane->paint(painter, pane->palette(), image.rect());
        painter.end();
        m_chart.grab();
    }

    void checkSeries()
    {
        m_model.setData(anyName(), int(m_script.wins(2) ? Qt::Checked : Qt::Unchecked),
                        Qt::CheckStateRole);
    }

    MultiChart &m_chart;
    AbstractChartModel &m_model;
    TargetTable &m_table;
    Watchdog &m_watchdog;
    Script m_script;
    QTimer m_timer;
};

/**
 * Leaves out one warning while it lives: a zoom that has waited for the end of a calculation knows
 * the rows of the moment when it was asked for, and says so when it is undone after series have
 * changed meanwhile. That is wanted, and happens here or not as threads run.
 */
class QuietSizes
{
public:
    QuietSizes() { s_previous = qInstallMessageHandler(passOn); }
    ~QuietSizes() { qInstallMessageHandler(s_previous); }
    Q_DISABLE_COPY_MOVE(QuietSizes)

private:
    static void passOn(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (!message.startsWith(QLatin1String("Size error "))) {
            s_previous(type, context, message);
        }
    }

    static inline QtMessageHandler s_previous = nullptr;
};

/// A chart in a window, for a session of feeders and a user.
class Session
{
public:
    explicit Session(AbstractChartModel *model)
        : m_watchdog({"feeder 1", "feeder 2", "feeder 3", "feeder 4", "event loop"}, Patience)
        , m_chart(std::make_unique<MultiChart>())
        , m_toolBar(m_chart->toolBar())
        , m_model(*model)
    {
        m_chart->setModel(model);
        m_chart->resize(600, 500);
        m_chart->show();
    }
    Q_DISABLE_COPY_MOVE(Session)

    void run(int seconds)
    {
        User user(*m_chart, m_table, m_watchdog);
        user.start();
        {
            std::vector<std::unique_ptr<Feeder>> feeders;
            for (int i = 0; i < FeederCount; ++i) {
                feeders.push_back(std::make_unique<Feeder>(i, m_model, m_table, m_watchdog));
            }
            QEventLoop loop;
            QTimer::singleShot(std::chrono::seconds(seconds), &loop, &QEventLoop::quit);
            loop.exec();
            user.stop();
        }
        m_watchdog.leave(GuiParty);
    }

    /// Whether no calculation runs and none is to come, or that comes true in time.
    bool comesToRest() const
    {
        constexpr int Limit = 20000 * Watchdog::Slowness; // ms
        QCoreApplication::processEvents();                // what the feeders have posted
        const auto isAtRest = [this] {
            return !m_model.updatePointsInProgress() && !m_model.m_chartsUpdatePending;
        };
        return QTest::qWaitFor(isAtRest, Limit) && m_model.m_pendingCommands.isEmpty();
    }

    void end()
    {
        m_chart.reset();
        m_toolBar.reset();
    }

private:
    static constexpr std::chrono::seconds Patience{30 * Watchdog::Slowness};

    Watchdog m_watchdog;
    TargetTable m_table;
    std::unique_ptr<MultiChart> m_chart;
    std::unique_ptr<QToolBar> m_toolBar;
    AbstractChartModel &m_model;
};

/// The samples of all stores, as they are found one by one.
class StoreCensus
{
public:
    StoreCensus()
        : m_isFound(CountedSamples::SlotCount, false)
    {
    }

    /// Takes the samples of one store; returns what is wrong with it, or nothing.
    QString faultOf(const FedSeries &series)
    {
        bool hasMinimum = false;
        bool hasMaximum = false;
        for (const ChartValue *value : series.m_values) {
            const int slot = CountedSamples::slotOf(value);
            if (slot < 0 || m_isFound[std::size_t(slot)]) {
                return slot < 0 ? "stores a dead sample"
                                : "stores a sample that is stored elsewhere";
            }
            m_isFound[std::size_t(slot)] = true;
            ++m_count;
            hasMinimum = hasMinimum || value == series.m_minValue;
            hasMaximum = hasMaximum || value == series.m_maxValue;
        }
        if ((series.m_minValue && !hasMinimum) || (series.m_maxValue && !hasMaximum)) {
            return "has an extreme that it does not store";
        }
        return series.m_kind == FedSeries::Fresh ? extremesFault(series) : QString();
    }

    qint64 count() const { return m_count; }

private:
    static QString extremesFault(const FedSeries &series)
    {
        QVector<double> ys;
        for (const ChartValue *value : series.m_values) {
            if (series.isValid(value)) {
                ys.append(value->y);
            }
        }
        if (ys.isEmpty()) {
            return series.m_minValue || series.m_maxValue ? "has an extreme of nothing" : QString();
        }
        const auto ends = std::minmax_element(ys.cbegin(), ys.cend());
        const bool isRight = series.m_minValue && series.m_maxValue &&
                             series.m_minValue->y == *ends.first &&
                             series.m_maxValue->y == *ends.second;
        return isRight ? QString() : "has other extremes than its samples";
    }

    std::vector<bool> m_isFound; ///< By slot.
    qint64 m_count = 0;
};

} // namespace

Q_DECLARE_METATYPE(std::function<AbstractChartModel *()>)

/**
 * Four threads feed ten series in all ways while a user does with the chart whatever there is to
 * do, removing series as well, up to their deletion by the history. No sample is lost, freed twice
 * or stored twice, and nothing hangs.
 *
 * QUARVCHART_THREADS_SECONDS in the environment is how long each session lasts.
 */
class TestThreads : public QObject
{
    Q_OBJECT

private slots:
    void feedsAndUsesAChart_data();
    void feedsAndUsesAChart();
};

void TestThreads::feedsAndUsesAChart_data()
{
    using ModelMaker = std::function<AbstractChartModel *()>;
    QTest::addColumn<ModelMaker>("newModel");

    QTest::newRow("live window on a date-time scale") << ModelMaker([] {
        auto *model = new DynamicChartModel("QUARVChart5 tests", "threads");
        model->setUseDateTimeScaleX(true);
        return model;
    });
    QTest::newRow("finished data")
        << ModelMaker([] { return new StaticChartModel("QUARVChart5 tests", "threads"); });
}

void TestThreads::feedsAndUsesAChart()
{
    QFETCH(std::function<AbstractChartModel *()>, newModel);
    const SettingsFolder settings;
    const QuietPlatform quietPlatform;
    const QuietSizes quietSizes;
    Session session(newModel());

    session.run(sessionLength());
    QVERIFY(session.comesToRest());

    StoreCensus census;
    for (const FedSeries *series : FedSeries::living()) {
        const QString fault = census.faultOf(*series);
        QVERIFY2(fault.isEmpty(), qPrintable(series->m_name + ' ' + fault));
    }
    QCOMPARE(CountedSamples::alive(), census.count());
    const int dead = FedSeries::made() - FedSeries::living().size();
    qInfo("Until now %lld samples were made, and %d series died", CountedSamples::made(), dead);
    QVERIFY(dead > 0); // for a user who does nothing would prove little

    session.end();
    QVERIFY(FedSeries::living().isEmpty());
    QCOMPARE(CountedSamples::alive(), qint64(0));
}

QTEST_MAIN(TestThreads)
#include "tst_threads.moc"
