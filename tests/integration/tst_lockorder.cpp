#include "series/lockorder_p.h"

#include "series/pointthread.h"
#include "support/modelsetup.h"
#include "support/programrun.h"
#include "views/cursorvalue.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QtTest>
#include <QUndoStack>

#include <algorithm>
#include <functional>
#include <iterator>
#include <sys/resource.h>
#include <thread>
#include <utility>

namespace {

/// Calls back from the hooks that an application writes, once from each.
class HookedSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    ~HookedSeries() override { m_pointThread->stopThread(); }

    bool isValid(const ChartValue *value) const override
    {
        const bool isOnWorker = QThread::currentThread() == m_pointThread;
        callOnce(isOnWorker ? m_onWorker : m_onEntry);
        return PlainSeries::isValid(value);
    }
    QColor textColor(int state) override
    {
        callOnce(m_onPainting);
        return PlainSeries::textColor(state);
    }

    mutable std::function<void()> m_onEntry;
    mutable std::function<void()> m_onWorker;
    std::function<void()> m_onPainting;

private:
    static void callOnce(std::function<void()> &hook)
    {
        if (const std::function<void()> call = std::exchange(hook, nullptr)) {
            call();
        }
    }
};

/// The same for the model.
class HookedModel : public OpenModel
{
public:
    void adjustAxisX() override
    {
        OpenModel::adjustAxisX();
        if (const std::function<void()> call = std::exchange(m_onAxes, nullptr)) {
            call();
        }
    }

    std::function<void()> m_onAxes;
};

/// Two series with a calculated line each, in a model that keeps no removed series.
struct Chart
{
    Chart()
    {
        model.m_seriesEditable = false;
        a = addSeries<HookedSeries>(model, "a", {10.0, 20.0});
        b = addSeries<HookedSeries>(model, "b", {10.0, 20.0});
        recalculated(model);
    }

    void enter(AbstractChartSeries *series) { model.addValue(series, newValue(2, 30)); }

    /// Lets the worker of the series come to its hook.
    void calculate(HookedSeries *series)
    {
        series->updatePoints(QRectF());
        series->m_pointThread->wait();
    }

    void paintPane()
    {
        ChartWidget *pane = model.mainChart();
        const QRectF plot = pane->chartRect(QRectF());
        pane->changeCursorState(plot.center().x(), true); // a read-out asks for its colour
        QImage image(pane->size(), QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        pane->paint(painter, pane->palette(), QRectF());
    }

    void paintSeries(AbstractChartSeries *series)
    {
        QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        QList<CursorValue> values;
        series->paint(painter, image.rect(), QTransform(), QLineF(), values, nullptr);
    }

    HookedModel model;
    HookedSeries *a;
    HookedSeries *b;
};

struct Violation
{
    const char *name;
    void (*commit)(Chart &chart);
    const char *message;
};

// What an application may do in a hook though it should not. Two threads that do the like with the
// two series the other way round would wait for each other.
const Violation Violations[] = {
    {"values under axes",
     [](Chart &chart) {
         chart.model.m_onAxes = [&] { chart.enter(chart.b); };
         chart.model.adjustAxes(nullptr, false);
     },
     "m_valuesMutex is taken under the lock on the axes"},
    {"values under an entry",
     [](Chart &chart) {
         chart.a->m_onEntry = [&] { chart.enter(chart.b); };
         chart.enter(chart.a);
     },
     "m_valuesMutex is taken under the lock on the axes"},
    {"values under values",
     [](Chart &chart) {
         chart.a->m_onWorker = [&] { chart.enter(chart.b); };
         chart.calculate(chart.a);
     },
     "m_valuesMutex is taken under another one"},
    {"points under axes",
     [](Chart &chart) {
         chart.model.m_onAxes = [&] { chart.paintPane(); };
         chart.model.adjustAxes(nullptr, false);
     },
     "m_pointsMutex is taken under the lock on the axes"},
    {"points under values",
     [](Chart &chart) {
         chart.a->m_onWorker = [&] { chart.paintSeries(chart.b); };
         chart.calculate(chart.a);
     },
     "m_pointsMutex is taken under m_valuesMutex"},
    {"points under points",
     [](Chart &chart) {
         chart.a->m_onPainting = [&] { chart.paintSeries(chart.b); };
         chart.paintPane();
     },
     "m_pointsMutex is taken under another one"},
    {"removal under axes",
     [](Chart &chart) {
         chart.model.m_onAxes = [&] { chart.model.removeSeries(chart.b); };
         chart.model.adjustAxes(nullptr, false);
     },
     "a thread waits for another one under the lock on the axes"},
    {"removal under values",
     [](Chart &chart) {
         chart.a->m_onEntry = [&] { chart.model.removeSeries(chart.b); };
         chart.enter(chart.a);
     },
     "a thread waits for another one under m_valuesMutex"},
    {"removal under points",
     [](Chart &chart) {
         chart.a->m_onPainting = [&] { chart.model.removeSeries(chart.b); };
         chart.paintPane();
     },
     "a thread waits for another one under m_pointsMutex"},
};

const Violation *violationOf(const char *name)
{
    const auto hasName = [name](const Violation &one) { return qstrcmp(one.name, name) == 0; };
    const auto found = std::find_if(std::begin(Violations), std::end(Violations), hasName);
    return found == std::end(Violations) ? nullptr : found;
}

/// What this program does as its own child.
int commit(const Violation &violation)
{
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    Chart chart;
    violation.commit(chart);
    return 0;
}

} // namespace

/// A thread that takes locks in an order in which two could wait for each other is told at once.
class TestLockOrder : public QObject
{
    Q_OBJECT

private slots:
    void endsAProgramThatLeavesTheOrder_data();
    void endsAProgramThatLeavesTheOrder();
    void allowsTheLockOnTheAxesAgain();
    void allowsASession();
    void countsForEachThread();
};

void TestLockOrder::endsAProgramThatLeavesTheOrder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");

    for (const Violation &violation : Violations) {
        QTest::newRow(violation.name) << violation.name << violation.message;
    }
}

void TestLockOrder::endsAProgramThatLeavesTheOrder()
{
#ifdef QT_NO_DEBUG
    QSKIP("The order is looked at in debug builds only");
#endif
    QFETCH(QString, name);
    QFETCH(QString, message);

    const Outcome outcome = runProgram(QCoreApplication::applicationFilePath(), {name});

    QVERIFY(outcome.crashed);
    QVERIFY2(outcome.errors.contains("Lock order: " + message), qPrintable(outcome.errors));
}

void TestLockOrder::allowsTheLockOnTheAxesAgain()
{
    Chart chart;
    chart.model.m_onAxes = [&] { chart.model.adjustAxes(nullptr, false); };

    chart.enter(chart.a);

    QVERIFY(!chart.model.m_onAxes);
    QVERIFY(hasRange(*chart.model.m_axisX, 0.0, 2.0));
}

void TestLockOrder::allowsASession()
{
    Chart chart;
    OpenModel &model = chart.model;
    model.m_seriesEditable = true;
    std::thread feeder([&] {
        chart.enter(chart.a);
        model.removeOldValues(chart.a);
        model.clearValues();
        model.update();
    });
    model.slotMultiMode();
    model.slotZoomIn(); // waits for the calculation, if one runs
    model.slotScrollBack();
    model.removeSeries(chart.b);
    model.m_undoStack->undo();
    model.applyChartSettings();
    feeder.join();
    chart.paintPane();
    QVERIFY(settled(model));

    model.removeAllSeries();
    model.m_undoStack->clear();
    QVERIFY(settled(model));
}

void TestLockOrder::countsForEachThread()
{
    // Given a thread that holds the last lock of the order, another one may take the first.
    Chart chart;
    chart.model.m_onAxes = [&] { std::thread([&] { chart.paintSeries(chart.b); }).join(); };

    chart.model.adjustAxes(nullptr, false);

    QVERIFY(!chart.model.m_onAxes);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (const Violation *violation = argc == 2 ? violationOf(argv[1]) : nullptr) {
        return commit(*violation);
    }
    TestLockOrder test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lockorder.moc"
