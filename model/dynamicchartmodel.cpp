#include "model/dynamicchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "model/storeends_p.h"
#include "series/abstractchartseries.h"
#include "views/chartwidget.h"

#include <QAction>

#include <cmath>
#include <iterator>

DynamicChartModel::DynamicChartModel(const QString &organization, const QString &application,
                                     QObject *parent)
    : AbstractChartModel(organization, application, parent)
{
    {
        const AxesLocker locker(this);
        assignWindow(0.0, visibleInterval());
    }
    m_pauseAction->setEnabled(false);
}

void DynamicChartModel::applyChartSettings()
{
    const bool wasApplied = m_settingsApplied;
    setDynamicGrid(m_settings.dynamicGrid);
    AbstractChartModel::applyChartSettings();

    bool hasOtherWidth = false;
    {
        const AxesLocker locker(this);
        hasOtherWidth =
            m_axisX && !m_axisX->m_zoomed && m_axisX->m_max - m_axisX->m_min != visibleInterval();
    }
    if (!hasOtherWidth) {
        return;
    }
    if (wasApplied) {
        m_undoZoomAction->activate(QAction::Trigger); // so that the user can take it back
    } else {
        undoZoom();
    }
}

void DynamicChartModel::adjustAxisX()
{
    const AxesLocker locker(this);
    if (!m_axisX) {
        return;
    }
    if (m_axisX->m_autoScale) {
        if (!m_axisX->m_zoomed) {
            const QPair<double, double> range = dataExtentX().value_or(qMakePair(0.0, 0.0));
            m_axisX->assignRange(range.first, range.second);
        }
        return;
    }
    if (m_series.isEmpty()) {
        restoreWidth();
        return;
    }
    if (m_dynamicGrid) {
        slide();
    } else {
        jump();
    }
}

/// The upper end of dataExtentX().
std::optional<double> DynamicChartModel::newestX() const
{
    std::optional<double> newest;
    for (const AbstractChartSeries *series : m_series) {
        const std::optional<double> last = series ? lastFiniteX(series->m_values) : std::nullopt;
        if (last) {
            newest = newest ? qMax(*newest, *last) : *last;
        }
    }
    return newest;
}

/// An interval that nobody has validated, or the width of an enormous window, may lead to a bound
/// that is not finite: then the window stays.
void DynamicChartModel::assignWindow(double a, double b)
{
    if (std::isfinite(a) && std::isfinite(b)) {
        m_axisX->assignRange(a, b);
    }
}

/// The left edge stays and the width is the set one again, whatever zoom there was.
void DynamicChartModel::restoreWidth()
{
    assignWindow(m_axisX->m_min, m_axisX->m_min + visibleInterval());
}

/// Lets the window end at the newest sample, with the width that it has. Before the first sample it
/// waits.
void DynamicChartModel::slide()
{
    if (m_axisX->m_zoomed || m_scrollLocked) {
        return;
    }
    const std::optional<double> newest = newestX();
    if (newest && m_axisX->m_max != *newest) {
        assignWindow(*newest - (m_axisX->m_max - m_axisX->m_min), *newest);
    }
}

/// Moves the window only when a curve leaves it, and then for a zoomed axis too: a window that the
/// user has placed stays as long as no curve crosses its right edge. Before the first sample it
/// waits.
void DynamicChartModel::jump()
{
    const NewestStep step = newestStep();
    if (step.examined && !step.crossed) {
        return; // as after nearly each sample
    }
    const std::optional<double> newest = newestX();
    if (!newest) {
        return;
    }
    if (!step.examined) {
        moveWindow(*newest); // The very first sample becomes the left edge.
    } else if (isPossibleJumpCurrentTime()) {
        moveWindow(*newest - 0.5 * (m_axisX->m_max - m_axisX->m_min));
    }
}

DynamicChartModel::NewestStep DynamicChartModel::newestStep() const
{
    const double edge = m_axisX->m_max;
    NewestStep step;
    for (const AbstractChartSeries *series : m_series) {
        if (!series || series->m_values.size() < 2) {
            continue;
        }
        const ChartValue *newest = series->m_values.last();
        const bool isBeyond = newest && newest->x > edge;
        if (step.examined && !isBeyond) {
            continue; // as after nearly each sample
        }
        const ChartValue *before = *std::prev(series->m_values.cend(), 2);
        if (!newest || !before || series->m_values.first() == newest) {
            continue;
        }
        step.examined = true;
        // A step that began beyond the edge has crossed it earlier, and does not call a window back
        // that the user has scrolled away.
        if (isBeyond && edge >= before->x && series->isValid(newest)) {
            step.crossed = true;
            return step;
        }
    }
    return step;
}

void DynamicChartModel::undoZoom()
{
    {
        const AxesLocker locker(this);
        followYAxes();
        m_axisX->m_zoomed = false;
        const std::optional<QPair<double, double>> extent = dataExtentX();
        const double newest = extent ? extent->second : 0.0;
        const double interval = visibleInterval();
        if (m_dynamicGrid) {
            assignWindow(newest - interval, newest);
        } else {
            assignWindow(newest - 0.5 * interval, newest + 0.5 * interval);
        }
        adjustAxisX();
    }
    updateCharts();
}

void DynamicChartModel::setDynamicGrid(bool on)
{
    {
        const AxesLocker locker(this);
        m_dynamicGrid = on;
    }
    m_pauseAction->setEnabled(on);
}

bool DynamicChartModel::dynamicGrid() const
{
    return m_dynamicGrid;
}

void DynamicChartModel::slotPause(bool paused)
{
    if (!paused) {
        slotUndoZoom();
        return;
    }
    // A zoom to exactly what is shown: nothing moves, but all axes are marked as zoomed and stand.
    if (const ChartWidget *main = mainChart()) {
        const QRectF plot = main->chartRect(QRectF());
        slotZoomChanged(plot, plot, ChartWidget::ZoomTransient);
    }
}

bool DynamicChartModel::isPossibleJumpCurrentTime() const
{
    return true;
}
