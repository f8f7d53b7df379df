#include "model/dynamicchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QDateTime>
#include <QMainWindow>
#include <QTimer>
#include <QToolBar>

#include <cmath>

class Level : public AbstractChartSeries
{
    double minimumY() const override { return 0.0; }
    double maximumY() const override { return 100.0; }
    int precision() const override { return 1; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
    QString name() const override { return "Level"; }
    QString labelY() const override { return "%"; }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto *chart = new MultiChart(&window);
    auto *model = new DynamicChartModel("Example", "Live data");
    chart->setModel(model);            // loads the settings; the model is the chart's from here on
    model->setUseDateTimeScaleX(true); // x is in seconds since 1970
    model->m_settings.visibleInterval = 30.0; // seconds in view
    model->m_settings.dynamicGrid = true;     // the window slides
    model->applyChartSettings();
    window.setCentralWidget(chart);
    window.addToolBar(chart->toolBar());

    auto *level = new Level;
    model->addSeries(level); // the series is the model's from here on

    QTimer sensor; // a hundred samples a second
    QObject::connect(&sensor, &QTimer::timeout, model, [model, level] {
        const double now = QDateTime::currentMSecsSinceEpoch() / 1000.0;
        const double percent = 50.0 + 40.0 * std::sin(now);
        model->addValue(level, new ChartValue{now, percent, 0, now + 600.0}); // for ten minutes
    });
    sensor.start(10);

    QTimer pace; // 25 pictures a second
    QObject::connect(&pace, &QTimer::timeout, model, [model, level] {
        model->removeOldValues(level);
        model->updateCharts();
    });
    pace.start(40);

    window.resize(800, 500);
    window.show();
    const int exitCode = application.exec();
    chart->saveSettings();
    return exitCode;
}
