#include "monitorwindow.h"

#include "common/namedseries.h"
#include "common/preferences.h"
#include "model/dynamicchartmodel.h"

#include <QAction>
#include <QCoreApplication>
#include <QSysInfo>
#include <QTimer>
#include <QUndoStack>

namespace {

constexpr int UpdateInterval = 100; // milliseconds: smooth enough, whatever the pace of the samples

} // namespace

MonitorWindow::MonitorWindow(const std::vector<Quantity> &quantities,
                             std::optional<double> visibleSeconds, bool separate)
    : m_model(new DynamicChartModel(QCoreApplication::organizationName(),
                                    QCoreApplication::applicationName()))
{
    setWindowTitle(
        tr("%1 - %2").arg(QSysInfo::machineHostName(), QCoreApplication::applicationName()));
    createModel(visibleSeconds);
    createMenus({});
    if (separate) {
        m_model->m_multiModeAction->trigger();
    }
    createSeries(quantities);

    auto *timer = new QTimer(this);
    connect(timer, SIGNAL(timeout()), SLOT(slotUpdate()));
    timer->start(UpdateInterval);
}

void MonitorWindow::createModel(std::optional<double> visibleSeconds)
{
    ChartSettings defaults;
    chooseColors(defaults, palette());
    defaults.visibleInterval = DefaultVisibleSeconds;
    defaults.dynamicGrid = true;     // The view slides, and so it can pause.
    defaults.individualScale = true; // Percents, MiB and KiB/s have no scale in common.
    defaults.autoScaleY = true;
    m_model->setUseDateTimeScaleX(true);
    setModel(m_model, defaults);
    if (visibleSeconds) {
        m_model->m_settings.visibleInterval = *visibleSeconds;
    }
    m_model->applyChartSettings();
}

double MonitorWindow::visibleSeconds() const
{
    return m_model->m_settings.visibleInterval;
}

void MonitorWindow::createSeries(const std::vector<Quantity> &quantities)
{
    QList<NamedSeries *> percentages;
    for (const Quantity &quantity : quantities) {
        auto *series = new NamedSeries(quantity.name, 'f', quantity.decimals);
        m_series.append(series);
        if (quantity.percentage) {
            percentages.append(series);
        }
    }
    m_model->addSeries(m_series);
    for (NamedSeries *series : qAsConst(percentages)) {
        series->setFixedScale(0.0, 100.0);
    }
    // That was an undo step. The user's own steps begin here; to take back the first of them must
    // not empty the chart.
    m_model->m_undoStack->clear();
}

/// The chart's pace, which is not that of the samples: ages the old ones out and draws the rest.
void MonitorWindow::slotUpdate()
{
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        m_model->removeOldValues(series);
    }
    m_model->update();
}
