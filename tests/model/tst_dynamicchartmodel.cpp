#include "model/dynamicchartmodel.h"

#include "series/samplepool_p.h"
#include "series/sampleslab_p.h"
#include "support/modelsetup.h"
#include "support/opendynamicmodel.h"

#include <QAction>
#include <QRandomGenerator>
#include <QtTest>
#include <QUndoStack>

#include <atomic>
#include <limits>

#include <malloc.h>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

using Xs = QVector<double>; ///< X of the samples of one series, in the order of entry.

/// Enters samples at these X, each with y = 1.
void addSamples(AbstractChartModel &model, AbstractChartSeries *series, const Xs &xs)
{
    for (const double x : xs) {
        model.addValue(series, newValue(x, 1.0));
    }
}

/// The same, and tells the window after each of them: "[0,100]|[50,150]".
QString windowsAfter(AbstractChartModel &model, AbstractChartSeries *series, const Xs &xs)
{
    QStringList windows;
    for (const double x : xs) {
        addSamples(model, series, {x});
        windows.append(axisText(*model.m_axisX));
    }
    return windows.join('|');
}

QString windowOf(const AbstractChartModel &model)
{
    return axisText(*model.m_axisX);
}

/// Commands on the undo stack, oldest first: "\"Pause\"|\"Undo zoom\"".
QString historyOf(const AbstractChartModel &model)
{
    QStringList texts;
    for (int i = 0; i < model.m_undoStack->count(); ++i) {
        texts.append(model.m_undoStack->text(i));
    }
    return texts.join('|');
}

/// In bytes: that of the heap, and that of the samples.
size_t memoryInUse()
{
    return mallinfo2().uordblks + size_t(SamplePool::slabCount()) * SampleSlab::Size;
}

/// A jumping model whose window is [0,100] and whose interval is as wide.
class JumpingModel : public OpenDynamicModel
{
public:
    JumpingModel()
    {
        m_settings.visibleInterval = 100.0;
        m_axisX->assignRange(0.0, 100.0);
    }

    void undoZoom() override
    {
        ++m_undoZooms;
        OpenDynamicModel::undoZoom();
    }

    int m_undoZooms = 0;
};

/// The same, sliding, with its settings applied and with one series of the samples 10 and 100.
class SlidingModel : public JumpingModel
{
public:
    SlidingModel()
    {
        m_settings.dynamicGrid = true;
        m_axisX->assignRange(-100.0, 0.0);
        applyChartSettings();
        m_fed = ::addSeries(*this, "a");
        addSamples(*this, m_fed, {10.0, 100.0});
        m_undoZooms = 0;
    }

    PlainSeries *m_fed;
};

/// Counts what the model asks it.
class CountingSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    bool isValid(const ChartValue *value) const override
    {
        ++m_questions;
        return PlainSeries::isValid(value);
    }

    mutable std::atomic<int> m_questions{0};
};

/// Takes every sample for a valid one.
class CredulousSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    bool isValid(const ChartValue *) const override { return true; }
};

/// One sample as the plain implementation sees it.
struct PlainSample
{
    double x;
    bool valid;
};

/**
 * The X logic once more, step by step and without regard to speed. The samples of each series stand
 * in the order of their entry.
 */
struct PlainLogic
{
    QVector<QVector<PlainSample>> series;
    double min = 0.0;
    double max = 0.0;
    double interval = 0.0;
    bool autoScale = false;
    bool zoomed = false;
    bool sliding = false;
    bool scrollLocked = false;
    bool jumpPossible = true;

    void assign(double a, double b)
    {
        min = qMin(a, b);
        max = qMax(a, b);
    }

    void move(double a)
    {
        if (a != min) {
            assign(a, (max - min) + a);
        }
    }

    void adjust()
    {
        bool found = false;
        double lo = 0.0;
        double hi = 0.0;
        bool examined = false;
        bool crossed = false;
        for (const QVector<PlainSample> &samples : qAsConst(series)) {
            QVector<double> finite;
            for (const PlainSample &sample : samples) {
                if (qIsFinite(sample.x)) {
                    finite.append(sample.x);
                }
            }
            if (!finite.isEmpty()) {
                lo = found ? qMin(lo, finite.first()) : finite.first();
                hi = found ? qMax(hi, finite.last()) : finite.last();
                found = true;
            }
            const int n = samples.size();
            if (n < 2) {
                continue;
            }
            examined = true;
            const PlainSample &newest = samples.at(n - 1);
            const PlainSample &before = samples.at(n - 2);
            if (!crossed && newest.valid && max >= before.x) {
                crossed = newest.x > max;
            }
        }
        decide(found, lo, hi, examined, crossed);
    }

    void decide(bool found, double lo, double hi, bool examined, bool crossed)
    {
        if (autoScale) {
            if (!zoomed) {
                assign(lo, hi);
            }
        } else if (series.isEmpty()) {
            assign(min, min + interval);
        } else if (!found) {
            // Series without samples: the window stays.
        } else if (sliding) {
            if (!zoomed && !scrollLocked && max != hi) {
                assign(hi - (max - min), hi);
            }
        } else if (!examined) {
            move(hi);
        } else if (crossed && jumpPossible) {
            move(hi - 0.5 * (max - min));
        }
    }

    QString text() const
    {
        return QString("[%1,%2]%3")
            .arg(min, 0, 'g', 12)
            .arg(max, 0, 'g', 12)
            .arg(zoomed ? QStringLiteral(" zoomed") : QString());
    }
};

/// A dynamic model and the plain implementation, to both of which the same happens. The model is
/// started afresh, without panes and workers.
class Twins
{
public:
    Twins(OpenDynamicModel &model, QRandomGenerator &random)
        : m_model(model)
        , m_random(random)
    {
        m_model.m_axisX->m_zoomed = false;
        m_model.m_axisX->m_autoScale = false;
        m_model.m_dynamicGrid = false;
        m_model.m_scrollLocked = false;
        m_model.m_jumpPossible = true;
        const int count = random.bounded(4);
        m_plain.series.resize(count);
        for (int i = 0; i < count; ++i) {
            m_model.m_series.append(new PlainSeries);
        }
        m_plain.interval = random.bounded(-20, 100);
        m_model.m_settings.visibleInterval = m_plain.interval;
        m_story.append(QString("%1 series, interval %2").arg(count).arg(m_plain.interval));
        placeWindow();
    }
    ~Twins()
    {
        qDeleteAll(m_model.m_series);
        m_model.m_series.clear();
    }
    Q_DISABLE_COPY_MOVE(Twins)

    /// Lets something happen; returns whether both windows agree after it.
    bool step()
    {
        constexpr int Happenings = 14;
        switch (m_random.bounded(Happenings)) {
        case 0:
            toggle("zoomed", m_plain.zoomed, m_model.m_axisX->m_zoomed);
            break;
        case 1:
            toggle("sliding", m_plain.sliding, m_model.m_dynamicGrid);
            break;
        case 2:
            toggle("locked", m_plain.scrollLocked, m_model.m_scrollLocked);
            break;
        case 3:
            toggle("jump possible", m_plain.jumpPossible, m_model.m_jumpPossible);
            break;
        case 4:
            toggle("auto scale", m_plain.autoScale, m_model.m_axisX->m_autoScale);
            break;
        case 5:
            placeWindow();
            break;
        default:
            addSample();
            break;
        }
        m_model.adjustAxisX();
        m_plain.adjust();
        return windowOf(m_model) == m_plain.text();
    }

    QString story() const
    {
        return m_story.join(", ") +
               QString(" gives %1, not %2").arg(windowOf(m_model), m_plain.text());
    }

private:
    void toggle(const char *name, bool &plain, bool &tested)
    {
        plain = !plain;
        tested = plain;
        m_story.append(QString("%1 %2").arg(name).arg(plain));
    }

    void placeWindow()
    {
        const double left = m_now + m_random.bounded(-60, 60);
        const double right = left + m_random.bounded(60);
        m_plain.assign(left, right);
        m_model.m_axisX->assignRange(left, right);
        m_story.append(QString("window %1 to %2").arg(left).arg(right));
    }

    void addSample()
    {
        if (m_plain.series.isEmpty()) {
            return;
        }
        const Xs odd{qQNaN(), Infinity, -Infinity, m_now - 40.0};
        m_now += m_random.bounded(20);
        const bool isOdd = m_random.bounded(8) == 0;
        const double x = isOdd ? odd.at(m_random.bounded(odd.size())) : m_now;
        const double y = m_random.bounded(6) == 0 ? qQNaN() : 1.0;
        const int row = m_random.bounded(m_plain.series.size());
        m_plain.series[row].append({x, qIsFinite(x) && qIsFinite(y)});
        m_model.m_series.at(row)->addValues({newValue(x, y)});
        m_story.append(QString("%1:%2 into %3").arg(x).arg(y).arg(row));
    }

    OpenDynamicModel &m_model;
    QRandomGenerator &m_random;
    PlainLogic m_plain;
    double m_now = 0.0;
    QStringList m_story;
};

} // namespace

Q_DECLARE_METATYPE(QVector<Xs>)
Q_DECLARE_METATYPE(QAction *AbstractChartModel::*)

class TestDynamicChartModel : public QObject
{
    Q_OBJECT

private slots:
    void addsPauseToTheMetaObject();
    void startsWithTheDefaultInterval();

    void followsInOneOfThreeWays_data();
    void followsInOneOfThreeWays();
    void agreesWithPlainImplementation();

    void jumpsWhenACurveLeavesTheWindow_data();
    void jumpsWhenACurveLeavesTheWindow();
    void jumpsForTheNewestOfAllSeries_data();
    void jumpsForTheNewestOfAllSeries();
    void doesNotJumpForAnInvalidSample();
    void doesNotMakeUpForAJumpThatWasNotPossible();
    void asksOnlyTheFirstSeriesThatCrosses();
    void leavesAWindowBeforeTheData();
    void waitsInAWindowBeyondTheData();

    void slidesToTheNewestSample_data();
    void slidesToTheNewestSample();
    void slidesWithTheWidthThatTheWindowHas();
    void zoomStopsTheSlidingWindow();
    void scrollLockHoldsTheSlidingWindow();

    void showsTheWholeDataOnAutoScale_data();
    void showsTheWholeDataOnAutoScale();

    void returnsToTheIntervalWithoutSeries();
    void seriesWithoutSamplesLeaveTheWindow();
    void passesOverMissingEntries();
    void worksWithoutAxis();
    void neverAssignsABoundThatIsNotFinite();
    void intervalThatIsNotFiniteMovesNothing();

    void undoZoomReturnsToTheLiveWindow_data();
    void undoZoomReturnsToTheLiveWindow();
    void undoZoomFreesAllAxes();
    void dateTimeScaleChangesNothing();

    void dynamicGridMovesNothing();

    void pauseFreezesTheView();
    void pauseWithoutPaneDoesNothing();
    void zoomOrScrollStopsTheWindowLikeAPause_data();
    void zoomOrScrollStopsTheWindowLikeAPause();
    void viewMovesDuringAPause();
    void undoZoomDuringAPauseLeavesTheCheckMark();
    void undoDuringAPauseLeavesTheCheckMark();
    void settingsWithoutDynamicGridEndThePause();
    void pauseIsForTheSlidingWindowOnly();

    void firstApplicationOfSettingsLeavesNoStep();
    void laterApplicationsOfSettingsAreSteps();
    void settingsLeaveAZoomedWindow();
    void settingsChooseTheWay();

    void takesNoMoreMemoryInAnHourThanInMinutes();
};

void TestDynamicChartModel::addsPauseToTheMetaObject()
{
    const QMetaObject &meta = DynamicChartModel::staticMetaObject;

    QCOMPARE(meta.className(), "DynamicChartModel");
    QCOMPARE(meta.superClass(), &AbstractChartModel::staticMetaObject);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.methodCount(), meta.methodOffset() + 1);
    const QMetaMethod pause = meta.method(meta.methodOffset());
    QCOMPARE(pause.methodSignature(), QByteArray("slotPause(bool)"));
    QCOMPARE(pause.methodType(), QMetaMethod::Slot);
    QCOMPARE(pause.access(), QMetaMethod::Protected);
}

void TestDynamicChartModel::startsWithTheDefaultInterval()
{
    const DynamicChartModel model("some organization", "some application");

    QCOMPARE(windowOf(model), QString("[0,600]"));
    QCOMPARE(model.m_axisX->m_step, 100.0);
    QVERIFY(!model.dynamicGrid());
    QVERIFY(!model.m_pauseAction->isEnabled());
    QVERIFY(!model.m_scrollLocked);
    QVERIFY(model.isPossibleJumpCurrentTime());
    QCOMPARE(model.m_settings.organization, QString("some organization"));
    QCOMPARE(model.m_settings.application, QString("some application"));
    QCOMPARE(model.m_charts.size(), 1);
    delete model.mainChart();
}

void TestDynamicChartModel::followsInOneOfThreeWays_data()
{
    QTest::addColumn<bool>("autoScale");
    QTest::addColumn<bool>("dynamicGrid");
    QTest::addColumn<bool>("zoomed");
    QTest::addColumn<bool>("scrollLocked");
    QTest::addColumn<QString>("window");

    const auto row = [](const char *name, bool autoScale, bool dynamicGrid, bool zoomed,
                        bool scrollLocked, const char *window) {
        QTest::newRow(name) << autoScale << dynamicGrid << zoomed << scrollLocked << window;
    };
    row("whole data", true, false, false, false, "[10,150]");
    row("whole data, dynamic grid", true, true, false, false, "[10,150]");
    row("whole data, locked", true, false, false, true, "[10,150]");
    row("whole data, frozen", true, false, true, false, "[0,100] zoomed");
    row("whole data, dynamic grid, frozen", true, true, true, false, "[0,100] zoomed");
    row("sliding", false, true, false, false, "[50,150]");
    row("sliding, locked", false, true, false, true, "[0,100]");
    row("sliding, frozen", false, true, true, false, "[0,100] zoomed");
    row("jumping", false, false, false, false, "[100,200]");
    row("jumping, zoomed", false, false, true, false, "[100,200] zoomed");
    row("jumping, locked", false, false, false, true, "[100,200]");
}

void TestDynamicChartModel::followsInOneOfThreeWays()
{
    QFETCH(bool, autoScale);
    QFETCH(bool, dynamicGrid);
    QFETCH(bool, zoomed);
    QFETCH(bool, scrollLocked);
    QFETCH(QString, window);
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    addSamples(model, series, {10.0, 90.0});
    model.m_axisX->assignRange(0.0, 100.0);
    model.m_axisX->m_autoScale = autoScale;
    model.m_axisX->m_zoomed = zoomed;
    model.setDynamicGrid(dynamicGrid);
    model.setScrollLocked(scrollLocked);

    addSamples(model, series, {150.0});

    QCOMPARE(windowOf(model), window);
}

void TestDynamicChartModel::agreesWithPlainImplementation()
{
    constexpr int Streams = 3000;
    constexpr int Steps = 25;
    QRandomGenerator random(26);
    OpenDynamicModel model;
    for (int i = 0; i < Streams; ++i) {
        Twins twins(model, random);
        for (int step = 0; step < Steps; ++step) {
            const bool agree = twins.step();
            QVERIFY2(agree, qPrintable(QString("stream %1: ").arg(i) + twins.story()));
        }
    }
}

void TestDynamicChartModel::jumpsWhenACurveLeavesTheWindow_data()
{
    QTest::addColumn<double>("left");
    QTest::addColumn<Xs>("xs");
    QTest::addColumn<QString>("windows");

    const auto row = [](const char *name, double left, const Xs &xs, const char *windows) {
        QTest::newRow(name) << left << xs << windows;
    };
    row("first sample becomes the left edge", 0.0, {1000.0}, "[1000,1100]");
    row("first sample within the window too", 0.0, {30.0}, "[30,130]");
    row("first sample before the window", 1000.0, {-50.0}, "[-50,50]");
    row("stands still within the window", 0.0, {1000.0, 1090.0, 1099.0},
        "[1000,1100]|[1000,1100]|[1000,1100]");
    row("jumps once", 0.0, {1000.0, 1099.0, 1101.0, 1102.0},
        "[1000,1100]|[1000,1100]|[1051,1151]|[1051,1151]");
    row("sample on the right edge is inside", 0.0, {1000.0, 1100.0}, "[1000,1100]|[1000,1100]");
    row("step from the right edge crosses it", 0.0, {1000.0, 1100.0, 1101.0},
        "[1000,1100]|[1000,1100]|[1051,1151]");
    row("jumps with the second sample", 0.0, {1000.0, 5000.0}, "[1000,1100]|[4950,5050]");
    row("jumps again and again", 0.0, {0.0, 110.0, 170.0}, "[0,100]|[60,160]|[120,220]");
    row("step from before the window crosses it", 0.0, {0.0, -500.0, 120.0},
        "[0,100]|[0,100]|[70,170]");
    row("backwards is no crossing", 0.0, {1000.0, 500.0, 400.0},
        "[1000,1100]|[1000,1100]|[1000,1100]");
}

void TestDynamicChartModel::jumpsWhenACurveLeavesTheWindow()
{
    QFETCH(double, left);
    QFETCH(Xs, xs);
    QFETCH(QString, windows);
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    model.m_axisX->assignRange(left, left + 100.0);

    QCOMPARE(windowsAfter(model, series, xs), windows);
}

void TestDynamicChartModel::jumpsForTheNewestOfAllSeries_data()
{
    QTest::addColumn<QVector<Xs>>("series");
    QTest::addColumn<QString>("window");

    // What the window [0,100] becomes.
    const auto row = [](const char *name, const QVector<Xs> &series, const char *window) {
        QTest::newRow(name) << series << window;
    };
    row("crossing of the first", {{10.0, 120.0}, {10.0, 20.0}}, "[70,170]");
    row("crossing of the last", {{10.0, 20.0}, {10.0, 120.0}}, "[70,170]");
    row("crossing of both", {{10.0, 120.0}, {10.0, 140.0}}, "[90,190]");
    row("a later series takes no crossing back", {{10.0, 120.0}, {10.0, 20.0}, {5.0, 6.0}},
        "[70,170]");
    row("one that crossed earlier sets the place", {{10.0, 120.0}, {400.0, 500.0}}, "[450,550]");
    row("one that crossed earlier does not count", {{10.0, 20.0}, {400.0, 500.0}}, "[0,100]");
    row("single sample beside a curve moves nothing", {{10.0, 20.0}, {500.0}}, "[0,100]");
    row("single samples: the newest is the left edge", {{10.0}, {500.0}, {300.0}}, "[500,600]");
    row("series without samples do not count", {{}, {10.0, 120.0}, {}}, "[70,170]");
    row("newest before 0", {{-500.0}, {-400.0}}, "[-400,-300]");
}

void TestDynamicChartModel::jumpsForTheNewestOfAllSeries()
{
    QFETCH(QVector<Xs>, series);
    QFETCH(QString, window);
    OpenDynamicModel model;
    for (const Xs &xs : qAsConst(series)) {
        addSamples(model, addSeries(model, "a"), xs);
    }
    model.m_axisX->assignRange(0.0, 100.0);

    model.adjustAxisX();

    QCOMPARE(windowOf(model), window);
}

void TestDynamicChartModel::doesNotJumpForAnInvalidSample()
{
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    model.m_axisX->assignRange(1000.0, 1100.0);
    addSamples(model, series, {1000.0, 1099.0});

    model.addValue(series, newValue(1101.0, qQNaN()));

    QCOMPARE(windowOf(model), QString("[1000,1100]"));
    // The next step begins beyond the edge.
    addSamples(model, series, {1102.0});
    QCOMPARE(windowOf(model), QString("[1000,1100]"));
    QCOMPARE(series->m_values.size(), 4);
}

void TestDynamicChartModel::doesNotMakeUpForAJumpThatWasNotPossible()
{
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    model.m_axisX->assignRange(1000.0, 1100.0);
    addSamples(model, series, {1000.0, 1099.0});
    model.m_jumpPossible = false;
    addSamples(model, series, {1101.0});
    QCOMPARE(windowOf(model), QString("[1000,1100]"));

    model.m_jumpPossible = true;
    addSamples(model, series, {1102.0, 5000.0});

    QCOMPARE(windowOf(model), QString("[1000,1100]"));
}

void TestDynamicChartModel::asksOnlyTheFirstSeriesThatCrosses()
{
    OpenDynamicModel model;
    QVector<CountingSeries *> all;
    const QVector<Xs> samples{{10.0, 20.0}, {10.0, 120.0}, {10.0, 130.0}};
    for (const Xs &xs : samples) {
        all.append(addSeries<CountingSeries>(model, "a"));
        addSamples(model, all.last(), xs);
    }
    QVERIFY(settled(model));
    model.m_axisX->assignRange(0.0, 100.0);
    for (CountingSeries *series : qAsConst(all)) {
        series->m_questions = 0;
    }

    model.adjustAxisX();

    QCOMPARE(windowOf(model), QString("[80,180]"));
    QCOMPARE(all.at(0)->m_questions.load(), 0);
    QCOMPARE(all.at(1)->m_questions.load(), 1);
    QCOMPARE(all.at(2)->m_questions.load(), 0);
}

void TestDynamicChartModel::leavesAWindowBeforeTheData()
{
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    addSamples(model, series, {1000.0, 1050.0});

    setZoomed(*model.m_axisX, 0.0, 100.0);
    addSamples(model, series, {1060.0, 2000.0});

    QCOMPARE(windowOf(model), QString("[0,100] zoomed"));
}

void TestDynamicChartModel::waitsInAWindowBeyondTheData()
{
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    addSamples(model, series, {1000.0, 1050.0});

    setZoomed(*model.m_axisX, 2000.0, 2100.0);

    QCOMPARE(windowsAfter(model, series, {1900.0, 2050.0, 2101.0}),
             QString("[2000,2100] zoomed|[2000,2100] zoomed|[2051,2151] zoomed"));
}

void TestDynamicChartModel::slidesToTheNewestSample_data()
{
    QTest::addColumn<Xs>("xs");
    QTest::addColumn<QString>("windows");

    // From the window [0,100].
    const auto row = [](const char *name, const Xs &xs, const char *windows) {
        QTest::newRow(name) << xs << windows;
    };
    row("beyond the right edge", {150.0}, "[50,150]");
    row("within the window", {30.0}, "[-70,30]");
    row("before the window", {-50.0}, "[-150,-50]");
    row("on the right edge", {100.0}, "[0,100]");
    row("sample by sample", {150.0, 151.0, 400.0}, "[50,150]|[51,151]|[300,400]");
    row("backwards", {150.0, 120.0}, "[50,150]|[20,120]");
    row("X that is NaN", {150.0, qQNaN()}, "[50,150]|[50,150]");
    row("infinite X", {150.0, Infinity, -Infinity, 160.0}, "[50,150]|[50,150]|[50,150]|[60,160]");
    row("no finite X", {qQNaN(), Infinity}, "[0,100]|[0,100]");
}

void TestDynamicChartModel::slidesToTheNewestSample()
{
    QFETCH(Xs, xs);
    QFETCH(QString, windows);
    OpenDynamicModel model;
    model.setDynamicGrid(true);
    PlainSeries *series = addSeries(model, "a");
    model.m_axisX->assignRange(0.0, 100.0);

    QCOMPARE(windowsAfter(model, series, xs), windows);
}

void TestDynamicChartModel::slidesWithTheWidthThatTheWindowHas()
{
    SlidingModel model;
    QVERIFY(settled(model));
    // A narrow window that is not zoomed, and a step away from it.
    model.m_axisX->assignRange(90.0, 100.0);
    model.m_undoZoomAction->trigger();
    QCOMPARE(windowOf(model), QString("[0,100]"));

    model.m_undoStack->undo();
    QCOMPARE(windowOf(model), QString("[90,100]"));
    addSamples(model, model.m_fed, {105.0, 200.0});

    QCOMPARE(windowOf(model), QString("[190,200]"));
}

void TestDynamicChartModel::zoomStopsTheSlidingWindow()
{
    SlidingModel model;
    setZoomed(*model.m_axisX, 20.0, 40.0);

    addSamples(model, model.m_fed, {150.0, 300.0});
    QCOMPARE(windowOf(model), QString("[20,40] zoomed"));
    QCOMPARE(storeText(*model.m_fed), QString("10:1 100:1 150:1 300:1"));

    model.m_undoZoomAction->trigger();
    QCOMPARE(windowOf(model), QString("[200,300]"));
    QCOMPARE(historyOf(model), QString("\"Undo zoom\""));
}

void TestDynamicChartModel::scrollLockHoldsTheSlidingWindow()
{
    SlidingModel model;

    model.setScrollLocked(true);
    QVERIFY(model.m_scrollLocked);
    addSamples(model, model.m_fed, {150.0});
    QCOMPARE(windowOf(model), QString("[0,100]"));

    model.setScrollLocked(false);
    QVERIFY(!model.m_scrollLocked);
    QCOMPARE(windowOf(model), QString("[0,100]"));
    addSamples(model, model.m_fed, {160.0});
    QCOMPARE(windowOf(model), QString("[60,160]"));
}

void TestDynamicChartModel::showsTheWholeDataOnAutoScale_data()
{
    QTest::addColumn<QVector<Xs>>("series");
    QTest::addColumn<QString>("window");

    const auto row = [](const char *name, const QVector<Xs> &series, const char *window) {
        QTest::newRow(name) << series << window;
    };
    row("no series", {}, "[0,0]");
    row("no samples", {{}}, "[0,0]");
    row("one sample", {{7.0}}, "[7,7]");
    row("one series", {{5.0, 6.0, 9.0}}, "[5,9]");
    row("two series", {{5.0, 9.0}, {7.0, 20.0}}, "[5,20]");
    row("entered backwards", {{9.0, 5.0}}, "[5,9]");
    row("ends that are not finite", {{qQNaN(), 5.0, 9.0, Infinity}}, "[5,9]");
    row("no finite X", {{qQNaN()}}, "[0,0]");
}

void TestDynamicChartModel::showsTheWholeDataOnAutoScale()
{
    QFETCH(QVector<Xs>, series);
    QFETCH(QString, window);
    OpenDynamicModel model;
    model.setAutoScale(true, false);
    for (const Xs &xs : qAsConst(series)) {
        addSamples(model, addSeries(model, "a"), xs);
    }

    model.adjustAxisX();

    QCOMPARE(windowOf(model), window);
    QCOMPARE(model.m_axisX->m_step == 0.0, model.m_axisX->m_min == model.m_axisX->m_max);
    setZoomed(*model.m_axisX, 1.0, 2.0);
    model.adjustAxisX();
    QCOMPARE(windowOf(model), QString("[1,2] zoomed"));
}

void TestDynamicChartModel::returnsToTheIntervalWithoutSeries()
{
    OpenDynamicModel model;
    addSamples(model, addSeries(model, "a"), {10.0, 20.0});
    addSeries(model, "b");

    setZoomed(*model.m_axisX, 50.0, 60.0);
    model.removeAllSeries();
    QCOMPARE(windowOf(model), QString("[50,650] zoomed"));

    // A negative interval leaves the axis in order.
    model.m_settings.visibleInterval = -600.0;
    model.adjustAxisX();
    QCOMPARE(windowOf(model), QString("[-550,50] zoomed"));
}

void TestDynamicChartModel::seriesWithoutSamplesLeaveTheWindow()
{
    for (const bool dynamicGrid : {false, true}) {
        OpenDynamicModel model;
        model.setDynamicGrid(dynamicGrid);
        model.m_axisX->assignRange(50.0, 60.0);

        PlainSeries *series = addSeries(model, "a");
        addSeries(model, "b");
        QCOMPARE(windowOf(model), QString("[50,60]"));
        addSamples(model, series, {55.0, 58.0});
        model.m_axisX->assignRange(50.0, 60.0);
        model.clearValues(series);

        QCOMPARE(windowOf(model), QString("[50,60]"));
    }
}

void TestDynamicChartModel::passesOverMissingEntries()
{
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    addSamples(model, series, {10.0, 120.0});
    QVERIFY(settled(model));
    series->m_values.prepend(nullptr);
    model.m_series.prepend(nullptr);
    model.m_axisX->assignRange(0.0, 100.0);

    model.adjustAxisX();
    QCOMPARE(windowOf(model), QString("[70,170]"));

    // Without a record there is no last step.
    series->m_values.append(nullptr);
    model.m_axisX->assignRange(0.0, 100.0);
    model.adjustAxisX();
    QCOMPARE(windowOf(model), QString("[120,220]"));

    model.m_series = {nullptr};
    model.adjustAxisX();
    QCOMPARE(windowOf(model), QString("[120,220]"));
    model.m_series = {series};
}

void TestDynamicChartModel::worksWithoutAxis()
{
    OpenDynamicModel model;
    PlainSeries *series = addSeries(model, "a");
    HorizontalChartAxis *axis = model.m_axisX;
    model.m_axisX = nullptr;

    addSamples(model, series, {10.0, 1000.0});
    model.m_settings.visibleInterval = 50.0;
    model.applyChartSettings();
    model.applyChartSettings();

    QCOMPARE(axisText(*axis), QString("[0,600]"));
    QVERIFY(model.m_settingsApplied);
    model.m_axisX = axis;
}

void TestDynamicChartModel::neverAssignsABoundThatIsNotFinite()
{
    constexpr double Huge = std::numeric_limits<double>::max();
    OpenDynamicModel model;
    // An infinite X that the series takes for valid crosses the edge: the newest finite one counts.
    auto *series = addSeries<CredulousSeries>(model, "a");
    model.m_axisX->assignRange(0.0, 100.0);
    addSamples(model, series, {50.0, 80.0, Infinity});
    QCOMPARE(windowOf(model), QString("[30,130]"));

    // A span that no double holds.
    model.setDynamicGrid(true);
    model.m_axisX->m_min = -Huge;
    model.m_axisX->m_max = Huge;
    model.adjustAxisX();
    QCOMPARE(model.m_axisX->m_min, -Huge);
    QCOMPARE(model.m_axisX->m_max, Huge);
}

void TestDynamicChartModel::intervalThatIsNotFiniteMovesNothing()
{
    for (const double interval : {qQNaN(), Infinity}) {
        for (const bool dynamicGrid : {false, true}) {
            OpenDynamicModel model;
            PlainSeries *series = addSeries(model, "a");
            model.m_axisX->assignRange(0.0, 80.0);
            model.m_settings.visibleInterval = interval;
            model.setDynamicGrid(dynamicGrid);

            model.undoZoom();
            QCOMPARE(windowOf(model), QString("[0,80]"));
            model.removeSeries(series);
            QCOMPARE(windowOf(model), QString("[0,80]"));
        }
    }
}

void TestDynamicChartModel::undoZoomReturnsToTheLiveWindow_data()
{
    QTest::addColumn<bool>("dynamicGrid");
    QTest::addColumn<double>("interval");
    QTest::addColumn<QVector<Xs>>("series");
    QTest::addColumn<QString>("window");

    const auto row = [](const char *name, bool dynamicGrid, double interval,
                        const QVector<Xs> &series, const char *window) {
        QTest::newRow(name) << dynamicGrid << interval << series << window;
    };
    const QVector<Xs> some{{400.0, 1000.0}};
    row("jumping", false, 600.0, some, "[700,1300]");
    row("sliding", true, 600.0, some, "[400,1000]");
    row("jumping, no series", false, 600.0, {}, "[-300,300]");
    row("sliding, no series", true, 600.0, {}, "[-600,0]");
    row("jumping, no samples", false, 600.0, {{}}, "[-300,300]");
    row("sliding, no samples", true, 600.0, {{}}, "[-600,0]");
    // The X logic that follows makes it the left edge.
    row("jumping, one sample", false, 600.0, {{1000.0}}, "[1000,1600]");
    row("sliding, one sample", true, 600.0, {{1000.0}}, "[400,1000]");
    row("jumping, newest of all", false, 600.0, {{0.0, 10.0}, {0.0, 50.0}, {}}, "[-250,350]");
    row("sliding, newest of all", true, 600.0, {{0.0, 50.0}, {0.0, 10.0}}, "[-550,50]");
    row("sliding, newest below 0", true, 600.0, {{-90.0, -80.0}}, "[-680,-80]");
    row("jumping, negative interval", false, -600.0, some, "[700,1300]");
    // [1000,1600] at first, which then slides.
    row("sliding, negative interval", true, -600.0, some, "[400,1000]");
    row("sliding, negative interval, no samples", true, -600.0, {{}}, "[0,600]");
    row("jumping, NaN at the end", false, 600.0, {{400.0, 1000.0, qQNaN()}}, "[700,1300]");
    row("sliding, no interval", true, 0.0, some, "[1000,1000]");
}

void TestDynamicChartModel::undoZoomReturnsToTheLiveWindow()
{
    QFETCH(bool, dynamicGrid);
    QFETCH(double, interval);
    QFETCH(QVector<Xs>, series);
    QFETCH(QString, window);
    OpenDynamicModel model;
    model.m_settings.visibleInterval = interval;
    model.setDynamicGrid(dynamicGrid);
    for (const Xs &xs : qAsConst(series)) {
        addSamples(model, addSeries(model, "a"), xs);
    }
    setZoomed(*model.m_axisX, 5.0, 6.0);

    model.undoZoom();

    QCOMPARE(windowOf(model), window);
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestDynamicChartModel::undoZoomFreesAllAxes()
{
    OpenDynamicModel model;
    PlainSeries *a = addSeries(model, "a");
    PlainSeries *b = addSeries(model, "b");
    addSamples(model, a, {400.0, 1000.0});
    QVERIFY(settled(model));
    setZoomed(*model.m_axisX, 5.0, 6.0);
    setZoomed(*a->m_axisY, 7.0, 8.0);
    setZoomed(*b->m_axisY, 7.0, 8.0);

    model.undoZoom();

    QCOMPARE(axesText(model), QString("[700,1300] [0,100] [0,100]"));
    QVERIFY(model.updatePointsInProgress());
    QVERIFY(settled(model));

    // The whole data, if that is wanted.
    model.setAutoScale(true, true);
    setZoomed(*model.m_axisX, 5.0, 6.0);
    model.undoZoom();
    QCOMPARE(axesText(model), QString("[400,1000] [0.5,1.5] [-0.5,0.5]"));
}

void TestDynamicChartModel::dateTimeScaleChangesNothing()
{
    OpenDynamicModel model;
    model.setUseDateTimeScaleX(true);
    QVERIFY(model.m_axisX->m_dateTime);
    QCOMPARE(model.m_axisX->m_step, 100.0); // that of numbers, until the range changes
    PlainSeries *series = addSeries(model, "a");

    QCOMPARE(windowsAfter(model, series, {1200.0, 1700.0, 1860.0}),
             QString("[1200,1800]|[1200,1800]|[1560,2160]"));
    QCOMPARE(model.m_axisX->m_step, 60.0); // ten minutes: a line each minute
    model.setUseDateTimeScaleX(false);
    QVERIFY(!model.m_axisX->m_dateTime);
}

void TestDynamicChartModel::dynamicGridMovesNothing()
{
    OpenDynamicModel model;
    addSamples(model, addSeries(model, "a"), {10.0, 20.0});
    model.m_axisX->assignRange(0.0, 100.0);

    model.setDynamicGrid(true);
    QVERIFY(model.dynamicGrid());
    QVERIFY(model.m_dynamicGrid);
    QVERIFY(model.m_pauseAction->isEnabled());
    QVERIFY(!model.m_settings.dynamicGrid);
    QCOMPARE(windowOf(model), QString("[0,100]"));

    model.setDynamicGrid(false);
    QVERIFY(!model.dynamicGrid());
    QVERIFY(!model.m_pauseAction->isEnabled());
    QCOMPARE(windowOf(model), QString("[0,100]"));
}

void TestDynamicChartModel::pauseFreezesTheView()
{
    SlidingModel model;
    QVERIFY(recalculated(model));

    model.m_pauseAction->trigger();
    QVERIFY(model.m_pauseAction->isChecked());
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
    QVERIFY(hasRange(*model.m_fed->m_axisY, 0.0, 100.0));
    QVERIFY(model.m_axisX->m_zoomed && model.m_fed->m_axisY->m_zoomed);
    QCOMPARE(historyOf(model), QString());

    // Samples go on being stored.
    addSamples(model, model.m_fed, {150.0});
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
    QCOMPARE(model.m_fed->m_values.size(), 3);

    model.m_pauseAction->trigger();
    QVERIFY(!model.m_pauseAction->isChecked());
    QCOMPARE(axesText(model), QString("[50,150] [0,100]"));
    QCOMPARE(historyOf(model), QString("\"Pause\""));
}

void TestDynamicChartModel::pauseWithoutPaneDoesNothing()
{
    SlidingModel model;
    QVERIFY(recalculated(model));
    delete model.mainChart();
    QVERIFY(!model.mainChart());

    model.m_pauseAction->trigger();

    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));
    QVERIFY(model.m_pauseAction->isChecked());
}

void TestDynamicChartModel::zoomOrScrollStopsTheWindowLikeAPause_data()
{
    using Action = QAction *AbstractChartModel::*;
    QTest::addColumn<Action>("action");

    const auto row = [](const char *name, Action action) { QTest::newRow(name) << action; };
    row("zoom in", &AbstractChartModel::m_zoomInAction);
    row("zoom out", &AbstractChartModel::m_zoomOutAction);
    row("zoom in X", &AbstractChartModel::m_zoomInXAction);
    row("zoom out X", &AbstractChartModel::m_zoomOutXAction);
    row("zoom in Y", &AbstractChartModel::m_zoomInYAction);
    row("zoom out Y", &AbstractChartModel::m_zoomOutYAction);
    row("scroll up", &AbstractChartModel::m_scrollUpAction);
    row("scroll down", &AbstractChartModel::m_scrollDownAction);
    row("scroll to begin", &AbstractChartModel::m_scrollToBeginAction);
    row("scroll back", &AbstractChartModel::m_scrollBackAction);
    row("scroll forward", &AbstractChartModel::m_scrollForwardAction);
    row("scroll to end", &AbstractChartModel::m_scrollToEndAction);
}

void TestDynamicChartModel::zoomOrScrollStopsTheWindowLikeAPause()
{
    QFETCH(QAction * AbstractChartModel::*, action);
    SlidingModel model;
    QVERIFY(recalculated(model));

    (model.*action)->trigger();
    QVERIFY(model.m_axisX->m_zoomed);
    const QString frozen = windowOf(model);
    addSamples(model, model.m_fed, {150.0, 900.0});

    QCOMPARE(windowOf(model), frozen);
    QVERIFY(!model.m_pauseAction->isChecked());
    model.undoZoom();
    QCOMPARE(windowOf(model), QString("[800,900]"));
}

void TestDynamicChartModel::viewMovesDuringAPause()
{
    SlidingModel model;
    QVERIFY(recalculated(model));
    model.m_pauseAction->trigger();
    QVERIFY(recalculated(model));

    model.m_scrollBackAction->trigger();
    QVERIFY(recalculated(model));
    QVERIFY(hasRange(*model.m_axisX, -100.0, 0.0));
    model.m_zoomInAction->trigger();
    QVERIFY(hasRange(*model.m_axisX, -75.0, -25.0));
    addSamples(model, model.m_fed, {150.0});

    QVERIFY(hasRange(*model.m_axisX, -75.0, -25.0));
    QVERIFY(model.m_axisX->m_zoomed);
    QVERIFY(model.m_pauseAction->isChecked());
    QCOMPARE(historyOf(model), QString("\"Scroll backward\"|\"Zoom in\""));
}

void TestDynamicChartModel::undoZoomDuringAPauseLeavesTheCheckMark()
{
    SlidingModel model;
    QVERIFY(recalculated(model));
    model.m_pauseAction->trigger();

    model.m_undoZoomAction->trigger();
    QVERIFY(model.m_pauseAction->isChecked());
    addSamples(model, model.m_fed, {150.0});
    QCOMPARE(windowOf(model), QString("[50,150]"));
    QCOMPARE(model.m_undoZooms, 1);

    // The next trigger takes the mark away, and with it undoes the zoom once more.
    model.m_pauseAction->trigger();
    QVERIFY(!model.m_pauseAction->isChecked());
    QCOMPARE(model.m_undoZooms, 2);
    QCOMPARE(windowOf(model), QString("[50,150]"));
}

void TestDynamicChartModel::undoDuringAPauseLeavesTheCheckMark()
{
    SlidingModel model;
    QVERIFY(recalculated(model));
    model.m_zoomInAction->trigger();
    QVERIFY(recalculated(model));
    model.m_pauseAction->trigger();
    QVERIFY(recalculated(model));

    model.m_undoStack->undo();
    QCOMPARE(axesText(model), QString("[0,100] [0,100]"));
    QVERIFY(model.m_pauseAction->isChecked());

    model.m_undoStack->redo();
    QVERIFY(hasRange(*model.m_axisX, 25.0, 75.0));
    QVERIFY(model.m_axisX->m_zoomed);
    QVERIFY(model.m_pauseAction->isChecked());

    model.m_undoStack->undo();
    addSamples(model, model.m_fed, {150.0});
    QCOMPARE(windowOf(model), QString("[50,150]"));
}

void TestDynamicChartModel::settingsWithoutDynamicGridEndThePause()
{
    SlidingModel model;
    QVERIFY(recalculated(model));
    model.m_pauseAction->trigger();

    model.m_settings.dynamicGrid = false;
    model.applyChartSettings();

    QVERIFY(!model.m_pauseAction->isChecked());
    QVERIFY(!model.m_pauseAction->isEnabled());
    QCOMPARE(model.m_undoZooms, 1);
    // The newest sample is at 100, and the window jumps from now on.
    QCOMPARE(axesText(model), QString("[50,150] [0,100]"));
    QCOMPARE(historyOf(model), QString("\"Pause\""));
}

void TestDynamicChartModel::pauseIsForTheSlidingWindowOnly()
{
    JumpingModel model;
    addSeries(model, "a");
    QVERIFY(!model.m_pauseAction->isEnabled());

    model.m_settings.dynamicGrid = true;
    model.applyChartSettings();
    QVERIFY(model.m_pauseAction->isEnabled());
    model.updateActions();
    QVERIFY(model.m_pauseAction->isEnabled());

    model.m_settings.dynamicGrid = false;
    model.applyChartSettings();
    QVERIFY(!model.m_pauseAction->isEnabled());
}

void TestDynamicChartModel::firstApplicationOfSettingsLeavesNoStep()
{
    OpenDynamicModel model;
    addSeries(model, "a");
    model.m_settings.visibleInterval = 300.0;

    model.applyChartSettings();

    QCOMPARE(windowOf(model), QString("[-150,150]"));
    QCOMPARE(historyOf(model), QString());
    QVERIFY(model.m_settingsApplied);
}

void TestDynamicChartModel::laterApplicationsOfSettingsAreSteps()
{
    JumpingModel model;
    addSeries(model, "a");
    model.applyChartSettings();
    QCOMPARE(model.m_undoZooms, 0); // the window is as wide as it should be
    QCOMPARE(windowOf(model), QString("[0,100]"));
    model.applyChartSettings();
    QCOMPARE(historyOf(model), QString());

    model.m_settings.visibleInterval = 200.0;
    model.applyChartSettings();
    QCOMPARE(windowOf(model), QString("[-100,100]"));
    QCOMPARE(historyOf(model), QString("\"Undo zoom\""));

    model.m_undoStack->undo();
    QCOMPARE(windowOf(model), QString("[0,100]"));
}

void TestDynamicChartModel::settingsLeaveAZoomedWindow()
{
    OpenDynamicModel model;
    addSamples(model, addSeries(model, "a"), {10.0, 20.0});
    setZoomed(*model.m_axisX, 5.0, 6.0);
    model.m_settings.visibleInterval = 300.0;

    model.applyChartSettings();
    QCOMPARE(windowOf(model), QString("[5,6] zoomed"));
    model.applyChartSettings();
    QCOMPARE(windowOf(model), QString("[5,6] zoomed"));
    QCOMPARE(historyOf(model), QString());
}

void TestDynamicChartModel::settingsChooseTheWay()
{
    JumpingModel model;
    PlainSeries *series = addSeries(model, "a");
    addSamples(model, series, {0.0, 60.0});
    QCOMPARE(windowOf(model), QString("[0,100]"));
    model.applyChartSettings();

    // Sliding, which the axes follow at once.
    model.m_settings.dynamicGrid = true;
    model.applyChartSettings();
    QVERIFY(model.dynamicGrid());
    QCOMPARE(windowOf(model), QString("[-40,60]"));

    model.m_settings.autoScaleX = true;
    model.applyChartSettings();
    QVERIFY(model.m_axisX->m_autoScale);
    QCOMPARE(windowOf(model), QString("[0,60]"));

    model.m_settings.autoScaleX = false;
    model.m_settings.dynamicGrid = false;
    model.applyChartSettings();
    QVERIFY(!model.dynamicGrid());
    QCOMPARE(windowOf(model), QString("[10,110]"));
}

/// A feeder in fast motion: what happens in an hour, without the clock. A sample's time comes when
/// its expireTime is put into the past; each second the feeder ages them out.
void TestDynamicChartModel::takesNoMoreMemoryInAnHourThanInMinutes()
{
    constexpr int Rate = 280; // samples per second: a million in the hour
    constexpr int Hour = 3600;
    constexpr int Steady = 120; // seconds until nothing should grow any more
    constexpr int Lifetime = 10;
    constexpr double Past = 0.0;
    SlidingModel model;
    model.clearValues(model.m_fed);
    QVERIFY(settled(model));
    QVector<ChartValue *> alive(Rate * Lifetime, nullptr); // a ring, of the series' records
    size_t atSteady = 0;

    for (int second = 0; second < Hour; ++second) {
        for (int i = 0; i < Rate; ++i) {
            ChartValue *value = newValue(second + double(i) / Rate, i % 100);
            model.addValue(model.m_fed, value);
            ChartValue *&oldest = alive[(second * Rate + i) % alive.size()];
            if (oldest) {
                oldest->expireTime = Past;
            }
            oldest = value;
        }
        model.removeOldValues(model.m_fed);
        if (second == Steady) {
            atSteady = memoryInUse();
        }
    }
    const size_t atEnd = memoryInUse();

    // Those that live, and those of the last second that have become gaps.
    QCOMPARE(model.m_fed->m_values.size(), Rate * (Lifetime + 1));
    const double newest = Hour - 1.0 / Rate;
    QVERIFY(hasRange(*model.m_axisX, newest - 100.0, newest));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    Q_UNUSED(atSteady)
    Q_UNUSED(atEnd)
    QSKIP("A sanitizer's own malloc does not count.");
#else
    QVERIFY(atSteady > 0);
    QVERIFY2(atEnd <= atSteady + atSteady / 100,
             qPrintable(QString("%1 bytes, then %2").arg(atSteady).arg(atEnd)));
#endif
}

QTEST_MAIN(TestDynamicChartModel)
#include "tst_dynamicchartmodel.moc"
