#include "model/dynamicchartmodel.h"
#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QMainWindow>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>

#include <cmath>

class Curve : public AbstractChartSeries
{
    double minimumY() const override { return -1.0; }
    double maximumY() const override { return 1.0; }
    int precision() const override { return 1; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
};

// A page with a chart and its toolbar.
void addPage(QTabWidget &tabs, const QString &title, const QString &objectName,
             AbstractChartModel *model, AbstractChartSeries *series)
{
    auto *page = new QMainWindow;
    auto *chart = new MultiChart(page);
    chart->setObjectName(objectName); // each keeps settings of its own
    chart->setModel(model);
    model->applyChartSettings();
    series->setName(title);
    model->addSeries(series);
    page->setCentralWidget(chart);
    page->addToolBar(chart->toolBar());
    tabs.addTab(page, title);
    QObject::connect(qApp, SIGNAL(aboutToQuit()), chart, SLOT(slotSaveSettings()));
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QTabWidget tabs;

    auto *liveModel = new DynamicChartModel("Example", "Several charts");
    auto *live = new Curve;
    addPage(tabs, "Live", "liveChart", liveModel, live);

    auto *recordModel = new StaticChartModel("Example", "Several charts");
    auto *record = new Curve;
    addPage(tabs, "Record", "recordChart", recordModel, record);
    for (int i = 0; i <= 1000; ++i) {
        recordModel->addValue(record, new ChartValue{0.1 * i, std::cos(0.05 * i)});
    }

    QTimer pace;
    double now = 0.0;
    QObject::connect(&pace, &QTimer::timeout, liveModel, [liveModel, live, &now] {
        now += 1.0;
        liveModel->addValue(live, new ChartValue{now, std::sin(0.05 * now)});
        liveModel->updateCharts();
    });
    pace.start(40);

    tabs.resize(800, 500);
    tabs.show();
    return application.exec();
}
