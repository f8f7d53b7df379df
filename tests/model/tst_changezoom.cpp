#include "model/abstractchartmodel.h"

#include "support/modelsetup.h"
#include "support/titledseries.h"

#include <QtTest>

class TestChangeZoom : public QObject
{
    Q_OBJECT

private slots:
    void degenerateRectangleChangesNothing_data();
    void degenerateRectangleChangesNothing();
    void zoomsAllSeriesOfAPane();
    void zoomsPanesOfDifferentSizeAlike();
    void zoomCountsFromTheRectangleOfThePaneItCameFrom();
    void seriesWithoutPaneIsNotZoomed();
    void zoomOfTheLastSeriesLeavesTheRangeOfX();
    void zoomBuildsMissingMaps();
    void zoomIsNotBentByLabelsThatItWidens();
    void pendingZoomWaitsInTheSeries();
};

void TestChangeZoom::degenerateRectangleChangesNothing_data()
{
    QTest::addColumn<QRectF>("from");
    QTest::addColumn<QRectF>("to");

    const QRectF good(10.0, 10.0, 50.0, 50.0);
    const double nan = qQNaN();
    const QPair<const char *, QRectF> bad[] = {
        {"null", QRectF()},
        {"no width", QRectF(10.0, 10.0, 0.0, 50.0)},
        {"no height", QRectF(10.0, 10.0, 50.0, 0.0)},
        {"negative width", QRectF(10.0, 10.0, -5.0, 50.0)},
        {"negative height", QRectF(10.0, 10.0, 50.0, -5.0)},
        {"NaN as width", QRectF(10.0, 10.0, nan, 50.0)},
    };
    for (const auto &[name, rect] : bad) {
        QTest::addRow("from: %s", name) << rect << good;
        QTest::addRow("to: %s", name) << good << rect;
    }
}

void TestChangeZoom::degenerateRectangleChangesNothing()
{
    QFETCH(QRectF, from);
    QFETCH(QRectF, to);
    OpenModel model;
    const PlainSeries *series = addSeries(model, "a", {0.0, 8.0});
    QVERIFY(settled(model));

    model.changeZoom(from, to, false);
    model.changeZoom(from, to, true);

    QCOMPARE(axesText(model), QString("[0,1] [0,100]"));
    QVERIFY(!series->m_pending.valid);
    QVERIFY(!model.updatePointsInProgress());
}

void TestChangeZoom::zoomsAllSeriesOfAPane()
{
    OpenModel model;
    const PlainSeries *a = addSeries(model, "a", {0.0, 8.0});
    PlainSeries *b = addSeries(model, "b", {0.0, 8.0});
    b->m_maximumY = 40.0;
    model.adjustAxes(nullptr, false);
    QVERIFY(recalculated(model));
    const QRectF plot = model.mainChart()->chartRect(QRectF());

    // The left half, and a quarter of the height from the top: the upper quarter of the values.
    model.changeZoom(plot, partOf(plot, 0.0, 0.0, 0.5, 0.25), false);

    QVERIFY(hasRange(*model.m_axisX, 0.0, 0.5));
    QVERIFY(hasRange(*a->m_axisY, 75.0, 100.0));
    QVERIFY(hasRange(*b->m_axisY, 30.0, 40.0));
    QVERIFY(model.m_axisX->m_zoomed && a->m_axisY->m_zoomed && b->m_axisY->m_zoomed);
    QVERIFY(model.updatePointsInProgress());
}

void TestChangeZoom::zoomsPanesOfDifferentSizeAlike()
{
    OpenModel model;
    const PlainSeries *a = addSeries(model, "a", {0.0, 8.0});
    const PlainSeries *b = addSeries(model, "b", {0.0, 8.0});
    model.slotMultiMode();
    model.m_charts.at(0)->resize(400, 300);
    model.m_charts.at(1)->resize(800, 200);
    QVERIFY(recalculated(model));
    QVERIFY(a->m_chart != b->m_chart);
    QVERIFY(a->m_chart->chartRect(QRectF()).width() != b->m_chart->chartRect(QRectF()).width());

    const QRectF plot = b->m_chart->chartRect(QRectF());
    model.changeZoom(plot, partOf(plot, 0.25, 0.5, 0.25, 0.4), false);

    QVERIFY(hasRange(*model.m_axisX, 0.25, 0.5));
    QVERIFY(hasRange(*a->m_axisY, 10.0, 50.0));
    QVERIFY(hasRange(*b->m_axisY, 10.0, 50.0));
}

void TestChangeZoom::zoomCountsFromTheRectangleOfThePaneItCameFrom()
{
    OpenModel model;
    const PlainSeries *series = addSeries(model, "a", {0.0, 8.0});
    QVERIFY(recalculated(model));

    // The middle of some plot that is nowhere on the screen.
    model.changeZoom(QRectF(-1000.0, 5000.0, 10.0, 1.0), QRectF(-997.5, 5000.25, 5.0, 0.5), false);

    QVERIFY(hasRange(*model.m_axisX, 0.25, 0.75));
    QVERIFY(hasRange(*series->m_axisY, 25.0, 75.0));
}

void TestChangeZoom::seriesWithoutPaneIsNotZoomed()
{
    OpenModel model;
    PlainSeries *a = addSeries(model, "a", {0.0, 8.0});
    PlainSeries *b = addSeries(model, "b", {0.0, 8.0});
    QVERIFY(recalculated(model));
    b->m_chart = nullptr;
    model.m_series.append(nullptr);
    const QRectF all(0.0, 0.0, 10.0, 10.0);

    // The null entry must be gone before panes look at the list.
    a->m_chart = nullptr;
    model.changeZoom(all, QRectF(0.0, 0.0, 5.0, 5.0), false);
    QCOMPARE(axisText(*a->m_axisY), QString("[0,100]"));
    model.m_series.removeLast();
    QVERIFY(settled(model));

    a->m_chart = model.mainChart();
    model.changeZoom(all, QRectF(0.0, 0.0, 5.0, 5.0), false);
    QVERIFY(hasRange(*a->m_axisY, 50.0, 100.0));
    QCOMPARE(axisText(*b->m_axisY), QString("[0,100]"));
}

void TestChangeZoom::zoomOfTheLastSeriesLeavesTheRangeOfX()
{
    OpenModel model;
    addSeries(model, "a", {0.0, 8.0});
    PlainSeries *b = addSeries(model, "b", {0.0, 8.0});
    QVERIFY(recalculated(model));
    const QRectF plot = model.mainChart()->chartRect(QRectF());
    // As if the last calculation of the second series had seen X from 0 to 100.
    b->m_matrix =
        QTransform(plot.width() / 100.0, 0.0, 0.0, b->m_matrix.m22(), plot.x(), b->m_matrix.dy());

    model.changeZoom(plot, partOf(plot, 0.0, 0.0, 0.5, 1.0), false);

    QVERIFY(hasRange(*model.m_axisX, 0.0, 50.0));
}

void TestChangeZoom::zoomBuildsMissingMaps()
{
    OpenModel model;
    const PlainSeries *a = addSeries(model, "a", {0.0, 8.0});
    QVERIFY(settled(model));
    model.updateCharts();
    // The second series comes while a calculation runs, which leaves it out.
    const PlainSeries *b = addSeries(model, "b", {0.0, 8.0});
    QVERIFY(!a->m_matrix.isIdentity());
    QVERIFY(b->m_matrix.isIdentity());
    const QRectF plot = model.mainChart()->chartRect(QRectF());

    // Its map is built before the first zoom moves the X axis: half is not halved once more.
    model.changeZoom(plot, partOf(plot, 0.0, 0.0, 0.5, 0.5), false);

    QVERIFY(hasRange(*model.m_axisX, 0.0, 0.5));
    QVERIFY(hasRange(*a->m_axisY, 50.0, 100.0));
    QVERIFY(hasRange(*b->m_axisY, 50.0, 100.0));
}

void TestChangeZoom::zoomIsNotBentByLabelsThatItWidens()
{
    OpenModel model;
    auto *a = addSeries<TitledSeries>(model, "a", {0.0, 8.0});
    const PlainSeries *b = addSeries(model, "b", {0.0, 8.0});
    // A grid value of [0,5] that [0,100] does not have, wider than the margin that all need.
    a->m_labels.insert(1.0, QString(60, 'W'));
    QVERIFY(recalculated(model));
    const QRectF plot = model.mainChart()->chartRect(QRectF());

    model.changeZoom(plot, partOf(plot, 0.0, 0.95, 0.5, 0.05), false);

    QVERIFY(model.mainChart()->chartRect(QRectF()).x() > plot.x());
    QVERIFY(hasRange(*model.m_axisX, 0.0, 0.5));
    QVERIFY(hasRange(*a->m_axisY, 0.0, 5.0));
    QVERIFY(hasRange(*b->m_axisY, 0.0, 5.0));
}

void TestChangeZoom::pendingZoomWaitsInTheSeries()
{
    OpenModel model;
    PlainSeries *series = addSeries(model, "a", {0.0, 8.0});
    QVERIFY(recalculated(model));
    const QRectF plot = model.mainChart()->chartRect(QRectF());

    model.changeZoom(plot, partOf(plot, 0.0, 0.5, 0.5, 0.5), true);
    QCOMPARE(axesText(model), QString("[0,1] [0,100]"));
    QVERIFY(series->m_pending.valid);
    QVERIFY(isNear(series->m_pending.maxX, 0.5));
    QVERIFY(isNear(series->m_pending.maxY, 50.0));

    QVERIFY(model.updatePointsInProgress());
    QVERIFY(settled(model));
    QVERIFY(!series->m_pending.valid);
    QVERIFY(hasRange(*model.m_axisX, 0.0, 0.5));
    QVERIFY(hasRange(*series->m_axisY, 0.0, 50.0));
    QVERIFY(model.m_axisX->m_zoomed && series->m_axisY->m_zoomed);
}

QTEST_MAIN(TestChangeZoom)
#include "tst_changezoom.moc"
