#include "series/pointwalk_p.h"

#include "series/pointthread.h"
#include "support/plainseries.h"
#include "support/plainwalk.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <thread>

namespace {

constexpr double LongAgo = 1.0;   // seconds since the epoch
constexpr int Patience = 20000;   // milliseconds until a wait counts as failed
constexpr int FaultyState = 3;    // of samples that the series calls invalid
constexpr int SmallestStore = 40; // samples from which on there is an index here

/// Has samples of its own that it calls invalid, and counts how often it is asked.
class FaultySeries : public PlainSeries
{
public:
    bool isValid(const ChartValue *value) const override
    {
        ++m_asked;
        return PlainSeries::isValid(value) && value->state != FaultyState;
    }

    mutable int m_asked = 0;
};

/// Shapes of random data.
struct Recipe
{
    enum Order { Ascending, WithTies, Shuffled, Descending, OneColumn };
    enum Shape { Noise, Level, Walk, Spikes };

    Order order = Ascending;
    Shape shape = Noise;
    double originX = 0.0;
    double stepX = 1.0;
    double originY = 0.0;
    double heightY = 1.0;
    int holes = 0; // one sample in so many is no number, or faulty; 0 for none
};

/// Gives samples one after the other.
class Source
{
public:
    Source(QRandomGenerator &random, const Recipe &recipe)
        : m_random(random)
        , m_recipe(recipe)
    {
    }

    ChartValue *next()
    {
        auto *value = newValue(x(), y(), m_random.bounded(3));
        if (m_recipe.holes > 0 && m_random.bounded(m_recipe.holes) == 0) {
            spoil(*value);
        }
        return value;
    }

    /// Somewhere in what has been given.
    ChartValue *late()
    {
        const double back = m_random.bounded(m_given + 1) + (m_random.bounded(2) ? 0.0 : 0.5);
        return newValue(m_recipe.originX + m_recipe.stepX * (m_given - back), y());
    }

    double lowestX() const { return m_recipe.originX; }
    double spanX() const { return m_recipe.stepX * std::max(1, m_given); }

private:
    double x()
    {
        ++m_given;
        switch (m_recipe.order) {
        case Recipe::Ascending:
            break;
        case Recipe::WithTies:
            return m_recipe.originX + m_recipe.stepX * (m_given / 4 * 4);
        case Recipe::Shuffled:
            return m_recipe.originX + m_recipe.stepX * m_random.bounded(200);
        case Recipe::Descending:
            return m_recipe.originX - m_recipe.stepX * m_given;
        case Recipe::OneColumn:
            return m_recipe.originX;
        }
        return m_recipe.originX + m_recipe.stepX * (m_given + 0.5 * m_random.generateDouble());
    }

    double y()
    {
        switch (m_recipe.shape) {
        case Recipe::Noise:
            m_y = m_random.generateDouble();
            break;
        case Recipe::Level:
            m_y = m_random.bounded(30) ? m_y : m_random.generateDouble();
            break;
        case Recipe::Walk:
            m_y += 0.1 * (m_random.generateDouble() - 0.5);
            break;
        case Recipe::Spikes:
            m_y = m_random.bounded(10) ? 0.5 : 3.0 * m_random.generateDouble() - 1.0;
            break;
        }
        return m_recipe.originY + m_recipe.heightY * m_y;
    }

    void spoil(ChartValue &value)
    {
        switch (m_random.bounded(8)) {
        case 0:
            value.y = qInf();
            break;
        case 1:
            value.x = m_random.bounded(20) ? value.x : qQNaN();
            break;
        case 2:
            value.state = FaultyState;
            break;
        default:
            value.y = qQNaN();
        }
    }

    QRandomGenerator &m_random;
    const Recipe m_recipe;
    int m_given = 0;
    double m_y = 0.5;
};

Recipe randomRecipe(QRandomGenerator &random)
{
    constexpr double Origins[] = {0.0, 0.0, -50.0, 1.6e9, 1e15, -1e-7};
    constexpr double Scales[] = {1.0, 1.0, 1e-9, 1e6, 0.001};
    Recipe recipe;
    recipe.order = random.bounded(2) ? Recipe::Ascending : Recipe::Order(random.bounded(5));
    recipe.shape = Recipe::Shape(random.bounded(4));
    recipe.originX = Origins[random.bounded(6)];
    recipe.stepX = Scales[random.bounded(5)];
    recipe.originY = Origins[random.bounded(6)];
    recipe.heightY = Scales[random.bounded(5)];
    // Further from 0 the map's rounding would leave the integers.
    constexpr double FarthestOrigin = 1e12; // steps
    recipe.originX =
        std::abs(recipe.originX) / recipe.stepX > FarthestOrigin ? 0.0 : recipe.originX;
    recipe.originY =
        std::abs(recipe.originY) / recipe.heightY > FarthestOrigin ? 0.0 : recipe.originY;
    recipe.holes = random.bounded(2) ? 0 : random.bounded(2, 60);
    return recipe;
}

/// The map that carries \p window onto a plot of a few pixels or many.
QTransform randomMap(QRandomGenerator &random, const QRectF &window)
{
    const double width = random.bounded(2) ? 20.0 : 1.0 + random.bounded(400);
    const double height = random.bounded(2) ? 15.0 : 1.0 + random.bounded(300);
    const double sx = width / window.width();
    const double sy = -height / window.height();
    QTransform map(sx, 0.0, 0.0, sy, random.bounded(10) - window.left() * sx,
                   random.bounded(10) - window.bottom() * sy);
    if (random.bounded(20) == 0) {
        map = map * QTransform().rotate(30.0); // nobody sets one, but it would be followed
    }
    return map;
}

/// A part of the data, all of it and more, or none of it.
QRectF randomWindow(QRandomGenerator &random, const Source &source, const Recipe &recipe)
{
    const auto part = [&random](double from, double span) {
        constexpr double Margin = 0.1;
        if (random.bounded(3) == 0) {
            return qMakePair(from - Margin * span, (1.0 + 2.0 * Margin) * span);
        }
        const double start = from + span * (2.0 * random.generateDouble() - 0.5);
        return qMakePair(start, span * std::pow(10.0, -3.0 * random.generateDouble()));
    };
    const QPair<double, double> x = part(source.lowestX(), source.spanX());
    const QPair<double, double> y = part(recipe.originY, recipe.heightY);
    return QRectF(x.first, y.first, x.second, y.second);
}

/// One of the changes that a store knows.
void changeStore(QRandomGenerator &random, FaultySeries &series, Source &source)
{
    switch (random.bounded(8)) {
    case 0: {
        QQueue<ChartValue *> late;
        for (int i = random.bounded(5); i >= 0; --i) {
            late.enqueue(source.late());
        }
        series.insertValues(late);
        return;
    }
    case 1: {
        // The oldest are blanked, and those that are no longer valid go.
        int due = random.bounded(40);
        for (ChartValue *value : qAsConst(series.m_values)) {
            if (value && due-- > 0) {
                value->expireTime = LongAgo;
            }
        }
        series.recalculateMinMax(); // as for any change by hand
        series.removeOldValues();
        return;
    }
    case 2:
        if (random.bounded(5) == 0) {
            qDeleteAll(series.m_values);
            series.m_values.clear();
            series.recalculateMinMax();
        }
        return;
    case 3: {
        const ChartValueList copy = series.m_values; // the next change gives the store new nodes
        series.addValues({source.next()});
        return;
    }
    case 4:
        if (random.bounded(10) == 0) {
            series.m_values.append(nullptr);
        }
        return;
    default:
        for (int i = random.bounded(60); i >= 0; --i) {
            series.addValues({source.next()});
        }
    }
}

QVector<ChartPoint> walked(AbstractChartSeries &series, const QRectF &window)
{
    series.m_pointThread->m_rect = window;
    series.m_pointThread->m_stop = false;
    series.m_pointThread->run();
    return series.m_pointThread->m_points;
}

} // namespace

class TestPointWalk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SampleIndex::setSmallestStore(SmallestStore); }
    void cleanupTestCase() { SampleIndex::setSmallestStore(SampleIndex::DefaultSmallestStore); }

    void walksLikePlainWalk_data();
    void walksLikePlainWalk();
    void walksLikePlainWalkWhileSamplesArrive();
    void asksNoSampleAgain();
    void looksAtVisibleSamplesOnly();
    void endsWithOneGapRightOfWindow();
    void walksPlainlyWithoutFiniteWindow();
    void givesBackCapacityNotNeededForLong();
};

void TestPointWalk::walksLikePlainWalk_data()
{
    QTest::addColumn<int>("seed");

    for (int seed = 1; seed <= 8; ++seed) {
        QTest::addRow("seed %d", seed) << seed;
    }
}

void TestPointWalk::walksLikePlainWalk()
{
    constexpr int Rounds = 1000;
    constexpr int ChangesPerRound = 6; // and a comparison after each
    QFETCH(const int, seed);
    QRandomGenerator random(static_cast<quint32>(seed));
    for (int round = 0; round < Rounds; ++round) {
        const Recipe recipe = randomRecipe(random);
        Source source(random, recipe);
        FaultySeries series;
        for (int i = random.bounded(200); i > 0; --i) {
            series.addValues({source.next()});
        }
        for (int change = 0; change < ChangesPerRound; ++change) {
            changeStore(random, series, source);
            const QRectF window = randomWindow(random, source, recipe);
            series.m_matrix = randomMap(random, window);

            const QVector<ChartPoint> points = walked(series, window);

            const QVector<ChartPoint> expected = PlainWalk::points(series, window);
            if (!arePointsEqual(points, expected)) {
                qInfo("round %d, change %d, order %d, shape %d, window %g %g %g %g: %s", round,
                      change, recipe.order, recipe.shape, window.x(), window.y(), window.width(),
                      window.height(), qPrintable(storeText(series)));
                QCOMPARE(fullText(points), fullText(expected));
                QFAIL("differs in a field that the text rounds");
            }
        }
    }
}

// The points are those of the samples that were there when the walk began, of which only the number
// is unknown.
void TestPointWalk::walksLikePlainWalkWhileSamplesArrive()
{
    constexpr int Count = 4000;
    constexpr int Block = 20;
    FaultySeries series;
    const QRectF window(Count / 2.0, 0.1, Count, 0.8);
    series.m_matrix = QTransform(0.01, 0.0, 0.0, -10.0, 5.0, 12.0);
    std::thread feeder([&series] {
        QRandomGenerator random(5);
        for (int i = 0; i < Count; i += Block) {
            const QMutexLocker locker(&series.m_valuesMutex);
            for (int k = 0; k < Block; ++k) {
                series.addValues({newValue(i + k, random.generateDouble())});
            }
        }
    });
    QSignalSpy finished(&series, SIGNAL(updatePointsFinished()));
    int held = 0;
    while (held < Count) {
        {
            const QMutexLocker locker(&series.m_valuesMutex);
            held = series.m_values.size();
        }
        series.m_pointThread->startThread(window);
        QVERIFY(finished.wait(Patience));

        const QMutexLocker locker(&series.m_valuesMutex);
        const QVector<ChartPoint> points = series.m_pointThread->m_points;
        int count = held;
        while (count <= series.m_values.size() &&
               !arePointsEqual(points, PlainWalk::points(series, window, count))) {
            count += Block;
        }
        QVERIFY(count <= series.m_values.size());
    }
    feeder.join();
}

void TestPointWalk::asksNoSampleAgain()
{
    constexpr int Count = 1000;
    FaultySeries series;
    for (int i = 0; i < Count; ++i) {
        series.addValues({newValue(i, i % 7)});
    }
    const QRectF window(0.0, 0.0, Count, 10.0);
    walked(series, window);

    series.m_asked = 0;
    walked(series, window);
    QCOMPARE(series.m_asked, 0);

    series.addValues({newValue(Count, 1.0)});
    series.m_asked = 0;
    walked(series, window);
    QCOMPARE(series.m_asked, 1); // the new one
}

// A record that is out of sight may hold anything: it is not read again.
void TestPointWalk::looksAtVisibleSamplesOnly()
{
    constexpr int Count = 1000;
    const QRectF window(500.0, 0.0, 100.0, 10.0);
    FaultySeries series;
    for (int i = 0; i < Count; ++i) {
        series.addValues({newValue(i, i % 7)});
    }
    const QVector<ChartPoint> expected = walked(series, window);

    int number = 0;
    for (ChartValue *value : qAsConst(series.m_values)) {
        if (number < 400 || number >= 700) {
            value->x = 550.0;
            value->y = 3.5;
        }
        ++number;
    }

    QVERIFY(!expected.isEmpty());
    QVERIFY(arePointsEqual(walked(series, window), expected));
    series.recalculateMinMax(); // tells of the change
    QVERIFY(!arePointsEqual(walked(series, window), expected));
}

void TestPointWalk::endsWithOneGapRightOfWindow()
{
    constexpr int Count = 1000;
    FaultySeries series;
    for (int i = 0; i < Count; ++i) {
        series.addValues({newValue(i, 5.0 * (i % 2))});
    }

    const QVector<ChartPoint> points = walked(series, QRectF(100.5, -1.0, 10.0, 10.0));

    // 100.5 to 110.5: the ends of the first and the last line, and ten samples between them.
    QCOMPARE(points.size(), 12 + 1);
    QVERIFY(points.first().clipped);
    QVERIFY(points.at(11).clipped);
    QVERIFY(points.last().isGap());
}

void TestPointWalk::walksPlainlyWithoutFiniteWindow()
{
    FaultySeries series;
    for (int i = 0; i < 100; ++i) {
        series.addValues({newValue(i, 5.0 * (i % 2))});
    }
    const QRectF window(qQNaN(), -1.0, 10.0, 10.0);

    const QVector<ChartPoint> points = walked(series, window);

    QVERIFY(!points.isEmpty());
    QVERIFY(arePointsEqual(points, PlainWalk::points(series, window)));
}

void TestPointWalk::givesBackCapacityNotNeededForLong()
{
    constexpr int Many = 100000;
    constexpr int EnoughPasses = 100;
    FaultySeries series;
    for (int i = 0; i < Many; ++i) {
        series.addValues({newValue(i, i % 2)});
    }
    const QRectF all(0.0, -1.0, Many, 10.0);
    const QRectF few(0.0, -1.0, 10.0, 10.0);
    QCOMPARE(walked(series, all).size(), Many);

    walked(series, few);
    QVERIFY(series.m_pointThread->m_points.capacity() >= Many); // may soon be needed again
    for (int pass = 0; pass < EnoughPasses; ++pass) {
        walked(series, few);
    }

    QVERIFY(series.m_pointThread->m_points.capacity() < Many / 10);
    QVERIFY(arePointsEqual(walked(series, few), PlainWalk::points(series, few)));
    QCOMPARE(walked(series, all).size(), Many);
}

QTEST_MAIN(TestPointWalk)
#include "tst_pointwalk.moc"
