#include "model/staticchartmodel.h"

#include "support/modelsetup.h"

#include <QAction>
#include <QRandomGenerator>
#include <QtTest>
#include <QUndoStack>

#include <algorithm>
#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

using Xs = QVector<double>; ///< X of the samples of one series, in the order of entry.

/// A series with samples at these X, entered through the model.
PlainSeries *addSeriesAt(AbstractChartModel &model, const Xs &xs)
{
    auto *series = addSeries(model, "a");
    QList<ChartValue *> values;
    for (const double x : xs) {
        values.append(newValue(x, 1.0));
    }
    model.addValues(series, values);
    return series;
}

/// The extent of all series as one would find it by hand: the ends of each are its first and its
/// last sample with a finite X.
QString plainExtent(const QVector<Xs> &all)
{
    Xs lows;
    Xs highs;
    for (Xs xs : all) {
        xs.erase(std::remove_if(xs.begin(), xs.end(), [](double x) { return !qIsFinite(x); }),
                 xs.end());
        if (!xs.isEmpty()) {
            lows.append(xs.first());
            highs.append(xs.last());
        }
    }
    if (lows.isEmpty()) {
        return "[0,0]";
    }
    const double low = *std::min_element(lows.cbegin(), lows.cend());
    const double high = *std::max_element(highs.cbegin(), highs.cend());
    return QString("[%1,%2]").arg(qMin(low, high)).arg(qMax(low, high));
}

/// An X axis that counts how often its grid is computed.
class CountingAxisX : public HorizontalChartAxis
{
public:
    void recalculateGridValues() override
    {
        ++m_recalculations;
        HorizontalChartAxis::recalculateGridValues();
    }

    int m_recalculations = 0;
};

} // namespace

Q_DECLARE_METATYPE(QVector<Xs>)

class TestStaticChartModel : public QObject
{
    Q_OBJECT

private slots:
    void addsNothingToTheMetaObject();
    void spansTheExtentOfAllSeries_data();
    void spansTheExtentOfAllSeries();
    void agreesWithPlainImplementation();
    void keepsZoomedRangeWhateverTheData_data();
    void keepsZoomedRangeWhateverTheData();
    void fallsBackToZeroWithTheLastSample();
    void returnsToTheFullExtentWhenTheZoomIsUndone();
    void hasNoGridWithoutSpan();
    void assignsOnlyWhatDiffers();
    void takesNoNoticeOfWindowAndAutoScale();
    void passesOverMissingEntries();
    void worksWithoutAxis();
    void startsWithPauseDisabled();
    void pauseFollowsSeriesAndDynamicGrid_data();
    void pauseFollowsSeriesAndDynamicGrid();
    void pauseChangesNothingButItsCheckMark();
    void settingsWithoutDynamicGridReleaseThePause();
};

void TestStaticChartModel::addsNothingToTheMetaObject()
{
    const QMetaObject &meta = StaticChartModel::staticMetaObject;

    QCOMPARE(meta.className(), "StaticChartModel");
    QCOMPARE(meta.superClass(), &AbstractChartModel::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TestStaticChartModel::spansTheExtentOfAllSeries_data()
{
    QTest::addColumn<QVector<Xs>>("series");
    QTest::addColumn<QString>("axis");

    const double nan = qQNaN();
    const auto row = [](const char *name, const QVector<Xs> &series, const char *axis) {
        QTest::newRow(name) << series << axis;
    };
    row("no series", {}, "[0,0]");
    row("one series without samples", {{}}, "[0,0]");
    row("two series without samples", {{}, {}}, "[0,0]");
    row("one sample", {{3.0}}, "[3,3]");
    row("one series", {{5.0, 6.0, 9.0}}, "[5,9]");
    row("two series", {{5.0, 9.0}, {7.0, 20.0}}, "[5,20]");
    row("one within the other", {{5.0, 30.0}, {7.0, 20.0}}, "[5,30]");
    row("apart", {{-20.0, -10.0}, {7.0, 20.0}}, "[-20,20]");
    row("a series without samples does not count", {{}, {5.0, 9.0}, {}}, "[5,9]");
    row("0 is no starting value", {{5.0, 9.0}, {7.0, 8.0}}, "[5,9]");
    row("entered backwards", {{9.0, 7.0, 5.0}}, "[5,9]");
    row("only the ends count", {{5.0, 100.0, -100.0, 9.0}}, "[5,9]");
    // The lowest of the first X is 5, the highest of the last is 1.
    row("all backwards", {{9.0, 1.0}, {5.0, 0.0}}, "[1,5]");
    row("NaN at both ends", {{nan, 5.0, 9.0, nan, nan}}, "[5,9]");
    row("infinity at both ends", {{-Infinity, 5.0, 9.0, Infinity}}, "[5,9]");
    row("one finite X among others", {{nan, Infinity, 4.0, -Infinity}}, "[4,4]");
    row("no finite X", {{nan, Infinity}}, "[0,0]");
    row("no finite X in the first series", {{nan}, {5.0, 9.0}}, "[5,9]");
}

void TestStaticChartModel::spansTheExtentOfAllSeries()
{
    QFETCH(QVector<Xs>, series);
    QFETCH(QString, axis);
    OpenModel model;

    for (const Xs &xs : qAsConst(series)) {
        addSeriesAt(model, xs);
    }

    QCOMPARE(axisText(*model.m_axisX), axis);
}

void TestStaticChartModel::agreesWithPlainImplementation()
{
    constexpr int Cases = 5000;
    const Xs odd{qQNaN(), Infinity, -Infinity};
    QRandomGenerator random(27);
    OpenModel model;
    for (int i = 0; i < Cases; ++i) {
        QVector<Xs> all(random.bounded(4));
        QString input = QString("case %1:").arg(i);
        for (Xs &xs : all) {
            auto *series = new PlainSeries;
            xs.resize(random.bounded(5));
            for (double &x : xs) {
                x = random.bounded(3) == 0 ? odd.at(random.bounded(odd.size()))
                                           : random.bounded(-9, 10);
                series->addValues({newValue(x, 1.0)});
                input += QString(" %1").arg(x);
            }
            input += ';';
            model.m_series.append(series);
        }

        model.adjustAxisX();

        const QString result = axisText(*model.m_axisX);
        QVERIFY2(result == plainExtent(all), qPrintable(input + " gives " + result));
        qDeleteAll(model.m_series);
        model.m_series.clear();
    }
}

void TestStaticChartModel::keepsZoomedRangeWhateverTheData_data()
{
    QTest::addColumn<QVector<Xs>>("series");

    QTest::newRow("no series") << QVector<Xs>{};
    QTest::newRow("no samples") << QVector<Xs>{{}};
    QTest::newRow("samples") << QVector<Xs>{{5.0, 9.0}};
    QTest::newRow("no finite X") << QVector<Xs>{{qQNaN()}};
}

void TestStaticChartModel::keepsZoomedRangeWhateverTheData()
{
    QFETCH(QVector<Xs>, series);
    OpenModel model;
    setZoomed(*model.m_axisX, 1.0, 2.0);

    for (const Xs &xs : qAsConst(series)) {
        addSeriesAt(model, xs);
    }
    model.adjustAxisX();

    QCOMPARE(axisText(*model.m_axisX), QString("[1,2] zoomed"));
}

void TestStaticChartModel::fallsBackToZeroWithTheLastSample()
{
    OpenModel model;
    PlainSeries *series = addSeriesAt(model, {5.0, 9.0});

    model.clearValues(series);
    QCOMPARE(axisText(*model.m_axisX), QString("[0,0]"));
    model.addValue(series, newValue(3.0, 1.0));
    QCOMPARE(axisText(*model.m_axisX), QString("[3,3]"));
    model.removeAllSeries();
    QCOMPARE(axisText(*model.m_axisX), QString("[0,0]"));
}

void TestStaticChartModel::returnsToTheFullExtentWhenTheZoomIsUndone()
{
    OpenModel model;
    PlainSeries *series = addSeriesAt(model, {5.0, 9.0});
    setZoomed(*model.m_axisX, 6.0, 7.0);

    model.addValue(series, newValue(50.0, 1.0));
    QCOMPARE(axisText(*model.m_axisX), QString("[6,7] zoomed"));
    model.undoZoom();
    QCOMPARE(axisText(*model.m_axisX), QString("[5,50]"));
    model.addValue(series, newValue(60.0, 1.0));
    QCOMPARE(axisText(*model.m_axisX), QString("[5,60]"));
}

void TestStaticChartModel::hasNoGridWithoutSpan()
{
    OpenModel model;
    PlainSeries *series = addSeriesAt(model, {3.0});
    QCOMPARE(model.m_axisX->m_step, 0.0);
    QVERIFY(model.m_axisX->m_gridValues.isEmpty());

    // From 3 to 5 there is one line for each whole number.
    model.addValue(series, newValue(5.0, 1.0));
    QCOMPARE(model.m_axisX->m_step, 1.0);
    QCOMPARE(model.m_axisX->m_gridValues, (QVector<double>{3.0, 4.0, 5.0}));
}

void TestStaticChartModel::assignsOnlyWhatDiffers()
{
    OpenModel model;
    PlainSeries *series = addSeriesAt(model, {5.0, 9.0});
    HorizontalChartAxis *ofModel = model.m_axisX;
    CountingAxisX axis;
    model.m_axisX = &axis;

    model.adjustAxisX();
    QCOMPARE(axis.m_recalculations, 1);
    model.adjustAxisX();
    QCOMPARE(axis.m_recalculations, 1);
    series->m_values.last()->x = 10.0;
    model.adjustAxisX();
    QCOMPARE(axis.m_recalculations, 2);
    QCOMPARE(axisText(axis), QString("[5,10]"));
    model.m_axisX = ofModel;
}

void TestStaticChartModel::takesNoNoticeOfWindowAndAutoScale()
{
    OpenModel model;
    model.m_settings.visibleInterval = 1.0;
    model.m_settings.dynamicGrid = true;
    addSeriesAt(model, {5.0, 9.0});

    model.m_settings.autoScaleX = true;
    model.applyChartSettings();
    QCOMPARE(axisText(*model.m_axisX), QString("[5,9]"));
    model.m_settings.autoScaleX = false;
    model.applyChartSettings();
    QCOMPARE(axisText(*model.m_axisX), QString("[5,9]"));
    QVERIFY(model.m_settingsApplied);
}

void TestStaticChartModel::passesOverMissingEntries()
{
    OpenModel model;
    PlainSeries *series = addSeriesAt(model, {5.0, 9.0});
    series->m_values.prepend(nullptr);
    series->m_values.append(nullptr);
    model.m_series.prepend(nullptr);

    model.adjustAxisX();

    QCOMPARE(axisText(*model.m_axisX), QString("[5,9]"));
    model.m_series.removeFirst();
}

void TestStaticChartModel::worksWithoutAxis()
{
    OpenModel model;
    addSeriesAt(model, {5.0, 9.0});
    HorizontalChartAxis *axis = model.m_axisX;
    model.m_axisX = nullptr;
    axis->m_max = 7.0;

    model.adjustAxisX();

    QCOMPARE(axisText(*axis), QString("[5,7]"));
    model.m_axisX = axis;
}

void TestStaticChartModel::startsWithPauseDisabled()
{
    const OpenModel model;

    QVERIFY(!model.m_pauseAction->isEnabled());
    QVERIFY(model.m_pauseAction->isCheckable());
    QVERIFY(!model.m_pauseAction->isChecked());
}

void TestStaticChartModel::pauseFollowsSeriesAndDynamicGrid_data()
{
    QTest::addColumn<bool>("hasSeries");
    QTest::addColumn<bool>("dynamicGrid");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("neither") << false << false << false;
    QTest::newRow("series") << true << false << false;
    QTest::newRow("dynamic grid") << false << true << false;
    QTest::newRow("both") << true << true << true;
}

void TestStaticChartModel::pauseFollowsSeriesAndDynamicGrid()
{
    QFETCH(bool, hasSeries);
    QFETCH(bool, dynamicGrid);
    QFETCH(bool, enabled);
    OpenModel model;
    model.m_settings.dynamicGrid = dynamicGrid;
    if (hasSeries) {
        addSeries(model, "a");
    }

    model.updateActions();

    QCOMPARE(model.m_pauseAction->isEnabled(), enabled);
    QCOMPARE(model.m_scrollUpAction->isEnabled(), hasSeries);
}

void TestStaticChartModel::pauseChangesNothingButItsCheckMark()
{
    OpenModel model;
    model.m_settings.dynamicGrid = true;
    PlainSeries *series = addSeriesAt(model, {5.0, 9.0});
    QVERIFY(settled(model));

    model.m_pauseAction->trigger();
    QVERIFY(model.m_pauseAction->isChecked());
    QCOMPARE(axesText(model), QString("[5,9] [0,100]"));
    QVERIFY(!model.m_scrollLocked);
    QVERIFY(!model.updatePointsInProgress());
    QCOMPARE(model.m_undoStack->count(), 0);

    // The range goes on following the data.
    model.addValue(series, newValue(20.0, 1.0));
    QCOMPARE(axisText(*model.m_axisX), QString("[5,20]"));
    model.m_pauseAction->trigger();
    QVERIFY(!model.m_pauseAction->isChecked());
}

void TestStaticChartModel::settingsWithoutDynamicGridReleaseThePause()
{
    OpenModel model;
    model.m_settings.dynamicGrid = true;
    addSeriesAt(model, {5.0, 9.0});
    model.m_pauseAction->trigger();

    model.applyChartSettings();
    QVERIFY(model.m_pauseAction->isChecked());
    model.m_settings.dynamicGrid = false;
    model.applyChartSettings();
    QVERIFY(!model.m_pauseAction->isChecked());
}

QTEST_MAIN(TestStaticChartModel)
#include "tst_staticchartmodel.moc"
