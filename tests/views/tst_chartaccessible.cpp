#include "editors/serieseditor.h"
#include "support/modelsetup.h"
#include "views/chartcursor.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAccessible>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {

QString textOf(QWidget &widget, QAccessible::Text type)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(type);
}

QString nameOf(QWidget &widget)
{
    return textOf(widget, QAccessible::Name);
}

QString descriptionOf(QWidget &widget)
{
    return textOf(widget, QAccessible::Description);
}

/// A series from 0,0 to 100,100: so far go both axes.
PlainSeries *addDiagonal(AbstractChartModel &model, const QString &name)
{
    auto *series = addSeries(model, name);
    model.addValue(series, newValue(0.0, 0.0));
    model.addValue(series, newValue(100.0, 100.0));
    return series;
}

/// A pane of an application's own class.
class OwnPane : public ChartWidget
{
    Q_OBJECT

public:
    using ChartWidget::ChartWidget;
};

} // namespace

class TestChartAccessible : public QObject
{
    Q_OBJECT

private slots:
    void paneIsAChartThatTakesFocus();
    void paneIsNamedAfterItsVisibleSeries();
    void eachPaneNamesItsOwnSeries();
    void describesTheRanges();
    void describesDatesInOneLine();
    void describesAWindowWithoutSpan();
    void hiddenSeriesHasNoRangeOfY();
    void namesMayHoldPlaceholders();
    void describesThePlaceOfTheCursorLine();
    void emptyPaneHasNoSeries();
    void textsOfTheApplicationGoFirst();
    void derivedPaneIsToldOfAsWell();
    void legendAndToolBarHaveNames();
    void buttonsOfTheEditorHaveNamesAndShowNoText();
};

void TestChartAccessible::paneIsAChartThatTakesFocus()
{
    ChartWidget pane(nullptr);
    const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(&pane);
    QCOMPARE(accessible->role(), QAccessible::Chart);
    QVERIFY(accessible->state().focusable);
}

void TestChartAccessible::paneIsNamedAfterItsVisibleSeries()
{
    OpenModel model;
    ChartWidget &pane = *model.mainChart();
    QCOMPARE(nameOf(pane), QString("Chart"));
    addDiagonal(model, "Load");
    PlainSeries *cpu = addDiagonal(model, "CPU %");
    addDiagonal(model, "");
    QCOMPARE(nameOf(pane), QString("Chart: Load, CPU %"));
    cpu->m_visible = false;
    QCOMPARE(nameOf(pane), QString("Chart: Load"));
    cpu->setName("Processor");
    cpu->m_visible = true;
    QCOMPARE(nameOf(pane), QString("Chart: Load, Processor"));
}

void TestChartAccessible::eachPaneNamesItsOwnSeries()
{
    OpenModel model;
    addDiagonal(model, "a");
    addDiagonal(model, "b");
    model.slotMultiMode();
    QVERIFY(settled(model));
    QCOMPARE(nameOf(*model.m_charts.at(0)), QString("Chart: a"));
    QCOMPARE(nameOf(*model.m_charts.at(1)), QString("Chart: b"));
}

void TestChartAccessible::describesTheRanges()
{
    OpenModel model;
    ChartWidget &pane = *model.mainChart();
    addDiagonal(model, "Load");
    PlainSeries *heat = addDiagonal(model, "Heat");
    // A step of 10 has no decimals; there is one more than in the ticks.
    QCOMPARE(descriptionOf(pane), QString("X from 0.0 to 100.0, Y of Load from 0 to 100"));

    heat->m_selected = true;
    heat->m_axisY->assignRange(20.0, 40.0);
    model.m_axisX->assignRange(100.0, 200.0);
    QCOMPARE(descriptionOf(pane), QString("X from 100.0 to 200.0, Y of Heat from 20 to 40"));
}

void TestChartAccessible::describesDatesInOneLine()
{
    OpenModel model;
    addDiagonal(model, "Load");
    model.setUseDateTimeScaleX(true);
    model.m_axisX->recalculateGridValues();
    QCOMPARE(descriptionOf(*model.mainChart()),
             QString("X from 00:00:00 01.01.1970 to 00:01:40 01.01.1970, Y of Load from 0 to 100"));
}

void TestChartAccessible::describesAWindowWithoutSpan()
{
    OpenModel model;
    addDiagonal(model, "Load");
    model.m_axisX->assignRange(7.5, 7.5);
    QCOMPARE(descriptionOf(*model.mainChart()),
             QString("X from 7.5 to 7.5, Y of Load from 0 to 100"));
}

void TestChartAccessible::hiddenSeriesHasNoRangeOfY()
{
    OpenModel model;
    addDiagonal(model, "Load")->m_visible = false;
    QCOMPARE(nameOf(*model.mainChart()), QString("Chart"));
    QCOMPARE(descriptionOf(*model.mainChart()), QString("X from 0.0 to 100.0"));
}

void TestChartAccessible::namesMayHoldPlaceholders()
{
    OpenModel model;
    addDiagonal(model, "%1 %2");
    QCOMPARE(nameOf(*model.mainChart()), QString("Chart: %1 %2"));
    QCOMPARE(descriptionOf(*model.mainChart()),
             QString("X from 0.0 to 100.0, Y of %1 %2 from 0 to 100"));
}

void TestChartAccessible::describesThePlaceOfTheCursorLine()
{
    OpenModel model;
    ChartWidget &pane = *model.mainChart();
    pane.resize(400, 300);
    PlainSeries *load = addDiagonal(model, "Load");
    load->updateMatrix(QRectF(50.0, 50.0, 200.0, 100.0)); // 2 pixels for 1 of X
    pane.changeCursorState(100.0, true);
    const QString ranges = "X from 0.0 to 100.0, Y of Load from 0 to 100";
    QCOMPARE(descriptionOf(pane), ranges + ", cursor at 25.0");

    load->m_matrix = QTransform::fromScale(0.0, 0.0);
    QCOMPARE(descriptionOf(pane), ranges);
    pane.changeCursorState(100.0, false);
    QCOMPARE(descriptionOf(pane), ranges);
}

void TestChartAccessible::emptyPaneHasNoSeries()
{
    OpenModel model;
    QCOMPARE(descriptionOf(*model.mainChart()), QString("No series"));

    ChartWidget pane(nullptr);
    QCOMPARE(nameOf(pane), QString("Chart"));
    QCOMPARE(descriptionOf(pane), QString("No series"));
}

void TestChartAccessible::textsOfTheApplicationGoFirst()
{
    OpenModel model;
    ChartWidget &pane = *model.mainChart();
    addDiagonal(model, "Load");
    pane.setAccessibleName("Engine");
    pane.setAccessibleDescription("The load of the engine");
    QCOMPARE(nameOf(pane), QString("Engine"));
    QCOMPARE(descriptionOf(pane), QString("The load of the engine"));
}

void TestChartAccessible::derivedPaneIsToldOfAsWell()
{
    OwnPane pane(nullptr);
    QCOMPARE(nameOf(pane), QString("Chart"));
}

void TestChartAccessible::legendAndToolBarHaveNames()
{
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar());
    QCOMPARE(nameOf(*chart.legendView()), QString("Legend"));
    QCOMPARE(nameOf(*toolBar), QString("Chart toolbar"));
}

void TestChartAccessible::buttonsOfTheEditorHaveNamesAndShowNoText()
{
    SeriesEditor editor(nullptr);
    QCOMPARE(nameOf(*editor.m_seriesButton), QString("Series properties"));
    QCOMPARE(nameOf(*editor.m_resetButton), QString("Restore defaults"));
    for (const QToolButton *button : {editor.m_seriesButton, editor.m_resetButton}) {
        QVERIFY(button->text().isEmpty());
        QVERIFY(button->toolTip().isEmpty());
    }
}

QTEST_MAIN(TestChartAccessible)
#include "tst_chartaccessible.moc"
