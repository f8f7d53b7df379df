#include "axes/horizontalchartaxis.h"
#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QMainWindow>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <cmath>

class Load : public AbstractChartSeries
{
    double minimumY() const override { return 0.0; }
    double maximumY() const override { return 1.0; }
    int precision() const override { return 2; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
    QString name() const override { return "Load"; }
    QString labelX() const override { return "s"; }
};

// X begins at 0 and ends at a full minute: the view grows by a minute at a time.
class FullMinutesModel : public AbstractChartModel
{
public:
    using AbstractChartModel::AbstractChartModel;

    void adjustAxisX() override
    {
        if (m_axisX->m_zoomed) {
            return; // what the user has chosen stays
        }
        const auto extent = dataExtentX(); // nothing without samples
        const double last = extent ? extent->second : 0.0;
        const double minutes = std::max(1.0, std::ceil(last / 60.0));
        m_axisX->assignRange(0.0, 60.0 * minutes); // and the grid that suits it
    }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto *chart = new MultiChart(&window);
    auto *model = new FullMinutesModel("Example", "Own model");
    chart->setModel(model);
    model->applyChartSettings();
    window.setCentralWidget(chart);
    window.addToolBar(chart->toolBar());

    auto *load = new Load;
    model->addSeries(load);

    QTimer time; // runs fast: two seconds in a tenth of one
    double now = 0.0;
    QObject::connect(&time, &QTimer::timeout, model, [model, load, &now] {
        now += 2.0;
        model->addValue(load, new ChartValue{now, 0.5 + 0.4 * std::sin(0.1 * now)});
        model->updateCharts();
    });
    time.start(100);

    window.resize(800, 500);
    window.show();
    const int exitCode = application.exec();
    chart->saveSettings();
    return exitCode;
}
