#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QToolBar>

#include <cmath>
#include <memory>

class Wave : public AbstractChartSeries
{
    double minimumY() const override { return -1.0; }
    double maximumY() const override { return 1.0; }
    int precision() const override { return 1; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::black; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
    QString name() const override { return "Wave"; }
};

// Paints the panes of the model one below the other, as wide as the page.
void print(const AbstractChartModel &model, QPagedPaintDevice &page)
{
    QPainter painter(&page);
    const ChartWidget *main = model.mainChart();
    const double scale = double(page.width()) / main->width();
    painter.scale(scale, scale); // pixels of the screen from here on
    painter.setFont(main->font());

    QPalette palette = main->palette();
    palette.setColor(QPalette::Window, Qt::white);       // background
    palette.setColor(QPalette::AlternateBase, Qt::gray); // grid and frame
    palette.setColor(QPalette::WindowText, Qt::black);   // labels of X
    for (ChartWidget *pane : model.m_charts) {
        pane->paint(painter, palette, QRectF());
        painter.translate(0, pane->height());
    }
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar()); // not shown here
    auto *model = new StaticChartModel("Example", "Paper");
    chart.setModel(model);
    model->applyChartSettings();
    auto *wave = new Wave;
    model->addSeries(wave);
    for (int i = 0; i <= 10000; ++i) {
        model->addValue(wave, new ChartValue{0.001 * i, std::sin(0.005 * i)});
    }

    // A chart has points to paint once it has a size and their calculation has ended.
    chart.setAttribute(Qt::WA_DontShowOnScreen);
    chart.resize(1000, 600);
    chart.show();
    while (model->updatePointsInProgress()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QPdfWriter page(argc > 1 ? argv[1] : "chart.pdf");
    page.setPageSize(QPageSize(QPageSize::A4));
    page.setPageOrientation(QPageLayout::Landscape);
    page.setResolution(chart.logicalDpiX()); // fonts are as large as the room that is left for them
    print(*model, page);
    return 0;
}
