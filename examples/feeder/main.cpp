#include "model/dynamicchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QTimer>
#include <QToolBar>

#include <atomic>
#include <chrono>
#include <cmath>
#include <memory>
#include <thread>

class Signal : public AbstractChartSeries
{
    double minimumY() const override { return -1.0; }
    double maximumY() const override { return 1.0; }
    int precision() const override { return 2; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
};

/// Feeds a series from a thread of its own for as long as it lives.
class Feeder
{
public:
    Feeder(AbstractChartModel &model, AbstractChartSeries *series)
        : m_thread([this, &model, series] { run(model, series); })
    {
    }
    ~Feeder()
    {
        m_stop = true;
        m_thread.join();
    }

private:
    void run(AbstractChartModel &model, AbstractChartSeries *series)
    {
        using namespace std::chrono;
        while (!m_stop) {
            const double now = duration<double>(system_clock::now().time_since_epoch()).count();
            // The sample is the library's from here on. It goes after ten minutes.
            model.addValue(series, new ChartValue{now, std::sin(now), 0, now + 600.0});
            std::this_thread::sleep_for(milliseconds(1));
        }
    }

    std::atomic<bool> m_stop{false};
    std::thread m_thread; // last: it uses what stands above
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar()); // not shown here
    auto *model = new DynamicChartModel("Example", "Feeder");
    chart.setModel(model);
    model->setUseDateTimeScaleX(true);
    model->applyChartSettings();
    auto *series = new Signal;
    model->addSeries(series);
    chart.show();

    // The pace of drawing is not that of the samples.
    QTimer pace;
    QObject::connect(&pace, &QTimer::timeout, model, [model, series] {
        model->removeOldValues(series);
        model->update();
    });
    pace.start(40);
    if (argc > 1) {
        QTimer::singleShot(1000 * atoi(argv[1]), &application, &QApplication::quit);
    }
    const Feeder feeder(*model, series); // declared last: it stops before the chart goes
    return application.exec();
}
