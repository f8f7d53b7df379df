#include "model/abstractchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"
#include "undo/scalecommand.h"
#include "views/chartwidget.h"

#include <QAction>
#include <QUndoStack>

#include <cmath>
#include <memory>

namespace {

constexpr double StepIn = 0.5;  // of what is shown, after one step in
constexpr double StepOut = 2.0; // of what is shown, after one step out
constexpr double Same = 1.0;

/// A rectangle with the same centre whose sides are longer or shorter by the factors.
QRectF scaled(const QRectF &rect, double factorX, double factorY)
{
    const double width = factorX * rect.width();
    const double height = factorY * rect.height();
    return QRectF(rect.x() + 0.5 * (rect.width() - width),
                  rect.y() + 0.5 * (rect.height() - height), width, height);
}

} // namespace

bool AbstractChartModel::canZoom() const
{
    return !m_series.isEmpty();
}

bool AbstractChartModel::updatePointsInProgress() const
{
    return !m_updatingSeries.isEmpty();
}

bool AbstractChartModel::allSeries(bool (AbstractChartSeries::*test)()) const
{
    if (m_series.isEmpty()) {
        return false;
    }
    for (AbstractChartSeries *series : m_series) {
        if (!series || !(series->*test)()) {
            return false;
        }
    }
    return true;
}

bool AbstractChartModel::canZoomIn() const
{
    return canZoomInX() && canZoomInY();
}

bool AbstractChartModel::canZoomOut() const
{
    const AxesLocker locker(this);
    return (!m_axisX || m_axisX->canZoomOut()) && allSeries(&AbstractChartSeries::canZoomOut);
}

bool AbstractChartModel::canZoomInX() const
{
    const AxesLocker locker(this);
    return (!m_axisX || m_axisX->canZoomIn()) && allSeries(&AbstractChartSeries::canZoomInX);
}

bool AbstractChartModel::canZoomOutX() const
{
    const AxesLocker locker(this);
    return (!m_axisX || m_axisX->canZoomOut()) && allSeries(&AbstractChartSeries::canZoomOutX);
}

bool AbstractChartModel::canZoomInY() const
{
    const AxesLocker locker(this);
    return allSeries(&AbstractChartSeries::canZoomInY);
}

bool AbstractChartModel::canZoomOutY() const
{
    const AxesLocker locker(this);
    return allSeries(&AbstractChartSeries::canZoomOutY);
}

void AbstractChartModel::undoZoom()
{
    {
        const AxesLocker locker(this);
        followYAxes();
        m_axisX->m_zoomed = false;
        adjustAxisX();
    }
    updateCharts();
}

/// Lets the automatic range logic have all Y axes again.
void AbstractChartModel::followYAxes()
{
    const QList<AbstractChartSeries *> all = m_series;
    for (AbstractChartSeries *series : all) {
        if (series && series->m_axisY) {
            series->m_axisY->m_zoomed = false;
            adjustAxisY(series);
        }
    }
}

void AbstractChartModel::slotZoomChanged(const QRectF &chartRect, const QRectF &zoomRect,
                                         int zoomType)
{
    const bool busy = updatePointsInProgress();
    if (zoomType == ChartWidget::ZoomTransient) {
        changeZoom(chartRect, zoomRect, busy);
        return;
    }
    auto *command = new ScaleCommand(this);
    changeZoom(chartRect, zoomRect, busy);
    nameAfterSender(*command);
    if (busy) {
        m_pendingCommands.append(command); // The axes get there only when the calculation ends.
    } else {
        m_undoStack->push(command);
    }
}

void AbstractChartModel::nameAfterSender(ScaleCommand &command) const
{
    if (const auto *action = qobject_cast<const QAction *>(sender())) {
        command.setText(commandText(action->text()));
    } else if (const auto *chart = qobject_cast<const ChartWidget *>(sender())) {
        command.setText(commandText(chart->m_commandText));
    }
}

/// Zooms all panes as the main one is to be: its plot is to show what \p target covers now.
void AbstractChartModel::zoomMainChart(QRectF (*targetOf)(const QRectF &plot))
{
    if (const ChartWidget *main = mainChart()) {
        const QRectF plot = main->chartRect(QRectF());
        slotZoomChanged(plot, targetOf(plot), ChartWidget::ZoomUndoable);
    }
}

void AbstractChartModel::slotZoomIn()
{
    zoomMainChart([](const QRectF &plot) { return scaled(plot, StepIn, StepIn); });
}

void AbstractChartModel::slotZoomOut()
{
    zoomMainChart([](const QRectF &plot) { return scaled(plot, StepOut, StepOut); });
}

void AbstractChartModel::slotZoomInX()
{
    zoomMainChart([](const QRectF &plot) { return scaled(plot, StepIn, Same); });
}

void AbstractChartModel::slotZoomOutX()
{
    zoomMainChart([](const QRectF &plot) { return scaled(plot, StepOut, Same); });
}

void AbstractChartModel::slotZoomInY()
{
    zoomMainChart([](const QRectF &plot) { return scaled(plot, Same, StepIn); });
}

void AbstractChartModel::slotZoomOutY()
{
    zoomMainChart([](const QRectF &plot) { return scaled(plot, Same, StepOut); });
}

// The screen's y grows downward: what lies a plot's height above has the larger values.

void AbstractChartModel::slotScrollUp()
{
    zoomMainChart([](const QRectF &plot) { return plot.translated(0.0, -plot.height()); });
}

void AbstractChartModel::slotScrollDown()
{
    zoomMainChart([](const QRectF &plot) { return plot.translated(0.0, plot.height()); });
}

void AbstractChartModel::slotUndoZoom()
{
    auto *command = new ScaleCommand(this);
    undoZoom();
    pushNamedAfterAction(command);
}

void AbstractChartModel::moveWindow(double minimum)
{
    const AxesLocker locker(this);
    const double maximum = (m_axisX->m_max - m_axisX->m_min) + minimum;
    if (minimum != m_axisX->m_min && std::isfinite(minimum) && std::isfinite(maximum)) {
        m_axisX->assignRange(minimum, maximum);
    }
}

/// Scrolls to the lower bound that \p minimumOf finds for the axis as it is; without one nothing
/// happens. A window that does not move is a step all the same.
void AbstractChartModel::scrollX(
    const std::function<std::optional<double>(const ChartAxis &axis)> &minimumOf)
{
    auto command = std::make_unique<ScaleCommand>(this);
    {
        const AxesLocker locker(this);
        const std::optional<double> minimum = minimumOf(*m_axisX);
        if (!minimum) {
            return;
        }
        moveWindow(*minimum);
        m_axisX->m_zoomed = true;
    }
    pushNamedAfterAction(command.release());
    updateCharts();
}

void AbstractChartModel::slotScrollToBegin()
{
    scrollX([this](const ChartAxis &) -> std::optional<double> {
        const auto extent = dataExtentX();
        return extent ? std::make_optional(extent->first) : std::nullopt;
    });
}

void AbstractChartModel::slotScrollToEnd()
{
    // The end of the data stands in the middle: there is room for what comes.
    scrollX([this](const ChartAxis &axis) -> std::optional<double> {
        const auto extent = dataExtentX();
        return extent ? std::make_optional(extent->second - 0.5 * (axis.m_max - axis.m_min))
                      : std::nullopt;
    });
}

void AbstractChartModel::slotScrollBack()
{
    scrollX([](const ChartAxis &axis) { return axis.m_min - (axis.m_max - axis.m_min); });
}

void AbstractChartModel::slotScrollForward()
{
    scrollX([](const ChartAxis &axis) { return (axis.m_max - axis.m_min) + axis.m_min; });
}

void AbstractChartModel::slotPause(bool)
{
    // Only a window that moves can pause.
}

void AbstractChartModel::slotBeginMove()
{
    qDeleteAll(m_moveCommands); // Of a drag that never ended.
    m_moveCommands.clear();
    m_moveCommands.append(new ScaleCommand(this));
}

void AbstractChartModel::slotEndMove()
{
    while (!m_moveCommands.isEmpty()) {
        ScaleCommand *command = m_moveCommands.takeFirst();
        if (!command) {
            continue;
        }
        if (const auto *chart = qobject_cast<const ChartWidget *>(sender())) {
            command->setText(commandText(chart->m_commandText));
        }
        m_undoStack->push(command);
    }
}
