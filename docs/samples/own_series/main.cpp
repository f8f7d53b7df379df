#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QMainWindow>
#include <QToolBar>

#include <cmath>

// A boiler's temperature, with what the controller said about each reading.
class Temperature : public AbstractChartSeries
{
public:
    enum State { Normal = 0, Warning = 1, Alarm = 2, SensorBroken = 3 };

    static State stateOf(double celsius)
    {
        return celsius > 90.0 ? Alarm : celsius > 75.0 ? Warning : Normal;
    }

    // The Y axis, unless it follows the data.
    double minimumY() const override { return 0.0; }
    double maximumY() const override { return 120.0; }

    // Numbers are written as QString::number(value, 'f', 1) does it.
    int precision() const override { return 1; }
    char format() const override { return 'f'; }

    // The read-out of the cursor: its text, and its colour by the state of the sample.
    QString stringValue(double value) const override
    {
        return AbstractChartSeries::stringValue(value) + QString::fromUtf8(" °C");
    }
    QColor textColor(int state) override
    {
        switch (state) {
        case Warning:
            return Qt::yellow;
        case Alarm:
            return Qt::red;
        default:
            return Qt::white;
        }
    }

    // What the broken sensor says is neither drawn nor part of the range: the line has a gap.
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value) && value->state != SensorBroken;
    }

    QString name() const override { return "Boiler"; }
    QString labelX() const override { return "min"; }
    QString labelY() const override { return QString::fromUtf8("°C"); }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto *chart = new MultiChart(&window);
    auto *model = new StaticChartModel("Example", "Own series");
    chart->setModel(model);
    model->applyChartSettings();
    window.setCentralWidget(chart);
    window.addToolBar(chart->toolBar());

    auto *boiler = new Temperature;
    model->addSeries(boiler);
    for (int minute = 0; minute <= 240; ++minute) {
        const bool isBroken = minute > 100 && minute < 110;
        const double celsius = isBroken ? 850.0 : 60.0 + 40.0 * std::sin(0.05 * minute);
        const int state = isBroken ? Temperature::SensorBroken : Temperature::stateOf(celsius);
        model->addValue(boiler, new ChartValue{double(minute), celsius, state});
    }
    window.resize(800, 500);
    window.show();
    const int exitCode = application.exec();
    chart->saveSettings();
    return exitCode;
}
