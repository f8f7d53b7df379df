#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QMainWindow>
#include <QToolBar>

#include <cmath>
#include <limits>

class Trace : public AbstractChartSeries
{
    double minimumY() const override { return -2.0; }
    double maximumY() const override { return 2.0; }
    int precision() const override { return 3; }
    char format() const override { return 'g'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
};

// A million samples of a decaying oscillation, and none of them between 40 and 50.
QList<ChartValue *> recording()
{
    constexpr int Count = 1000000;
    constexpr double Step = 1e-4;
    QList<ChartValue *> values;
    values.reserve(Count);
    for (int i = 0; i < Count; ++i) {
        const double x = i * Step;
        if (x > 40.0 && x < 50.0) {
            continue;
        }
        if (!values.isEmpty() && x - values.last()->x > 1.0) {
            // A sample that is not valid breaks the line.
            values.append(new ChartValue{x, std::numeric_limits<double>::quiet_NaN()});
        }
        values.append(new ChartValue{x, 2.0 * std::exp(-0.03 * x) * std::sin(x)});
    }
    return values;
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto *chart = new MultiChart(&window);
    auto *model = new StaticChartModel("Example", "Finished data");
    chart->setModel(model);
    model->m_settings.autoScaleY = true; // Y follows the data, not minimumY() and maximumY()
    model->applyChartSettings();
    window.setCentralWidget(chart);
    window.addToolBar(chart->toolBar());

    auto *trace = new Trace;
    trace->setName("Trace");
    model->addSeries(trace);
    model->addValues(trace, recording()); // takes the samples over

    window.resize(800, 500);
    window.show(); // draws; what comes later is drawn by model->update()
    const int exitCode = application.exec();
    chart->saveSettings();
    return exitCode;
}
