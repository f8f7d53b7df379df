#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/multichart.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolBar>

class Line : public AbstractChartSeries
{
    double minimumY() const override { return 0.0; }
    double maximumY() const override { return 10.0; }
    int precision() const override { return 0; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
    QString name() const override { return "Line"; }
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto *chart = new MultiChart(&window);
    chart->setObjectName("overview"); // before setModel(): the group of the settings
    auto *model = new StaticChartModel("Example", "Settings");
    chart->setModel(model); // loads what the last run has saved, or the defaults
    model->applyChartSettings();
    window.setCentralWidget(chart);
    window.addToolBar(chart->toolBar());

    auto *line = new Line;
    model->addSeries(line);
    for (int i = 0; i <= 10; ++i) {
        model->addValue(line, new ChartValue{double(i), double(i % 4)});
    }

    QAction *paper = window.menuBar()->addMenu("View")->addAction("Dark on light");
    paper->setCheckable(true);
    paper->setChecked(model->m_settings.backgroundColor == QColor(Qt::white));
    QObject::connect(paper, &QAction::triggered, model, [model](bool on) {
        ChartSettings &settings = model->m_settings;
        settings.backgroundColor = on ? Qt::white : ChartSettings::defaultBackgroundColor();
        settings.gridColor = on ? Qt::darkGray : ChartSettings::defaultGridColor();
        settings.seriesSettings.lineWidth = on ? 2 : SeriesSettings::defaultLineWidth();
        model->applyChartSettings(); // a change alone has no effect
    });
    QObject::connect(&application, SIGNAL(aboutToQuit()), chart, SLOT(slotSaveSettings()));

    window.resize(800, 500);
    window.show();
    return application.exec();
}
