#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QMainWindow>
#include <QToolBar>

#include <cmath>

class Wave : public AbstractChartSeries
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
    QString name() const override { return "Wave"; }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto *chart = new MultiChart(&window);
    auto *model = new StaticChartModel("Example", "Smallest");
    chart->setModel(model); // loads the settings; the model is the chart's from here on
    model->applyChartSettings();
    window.setCentralWidget(chart);
    window.addToolBar(chart->toolBar());

    auto *wave = new Wave;
    model->addSeries(wave); // the series is the model's from here on
    for (int i = 0; i <= 1000; ++i) {
        model->addValue(wave, new ChartValue{0.01 * i, std::sin(0.01 * i)});
    }
    window.resize(800, 500);
    window.show();
    const int exitCode = application.exec();
    chart->saveSettings();
    return exitCode;
}
