// A program of somebody who uses the library as it is installed or built in: it must compile, link,
// find the images and draw.
#include <QUARVChart5/MultiChart>
#include <QUARVChart5/StaticChartModel>
#include <quarvchart_version.h>
#include <series/abstractchartseries.h>

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QTextStream>
#include <QToolBar>

#include <cstring>
#include <memory>

namespace {

class Series : public AbstractChartSeries
{
public:
    double minimumY() const override { return 0.0; }
    double maximumY() const override { return 1.0; }
    int precision() const override { return 1; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
};

int fail(const char *what)
{
    QTextStream(stderr) << "consumer: " << what << '\n';
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (std::strcmp(quarvchartVersion(), QUARVCHART_VERSION_STR) != 0) {
        return fail("header and library differ in their version");
    }
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar());
    auto *model = new StaticChartModel("QUARVChart5 tests", "consumer");
    chart.setModel(model);
    auto *series = new Series;
    model->addSeries(series);
    for (int i = 0; i < 100; ++i) {
        model->addValue(series, new ChartValue{double(i), i % 2 ? 1.0 : 0.0});
    }
    chart.setAttribute(Qt::WA_DontShowOnScreen);
    chart.show();
    if (!QFile::exists(QStringLiteral(":/chart/images/zoom_in.svg"))) {
        return fail("the images are missing");
    }
    if (chart.grab().toImage().isNull() || toolBar->actions().size() < 20) {
        return fail("there is no chart");
    }
    return 0;
}
