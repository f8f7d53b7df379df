#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/chartwidget.h"

#include <QApplication>

#include <cmath>
#include <memory>

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
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    StaticChartModel model("Example", "Smallest");
    auto *wave = new Wave; // the model's from here on
    model.addSeries(wave);
    for (int i = 0; i <= 1000; ++i) {
        model.addValue(wave, new ChartValue{0.01 * i, std::sin(0.01 * i)});
    }
    const std::unique_ptr<ChartWidget> chart(model.mainChart());
    chart->setFixedSize(800, 400);
    chart->show();
    model.updateCharts();
    return application.exec();
}
