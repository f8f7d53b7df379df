#include "model/abstractchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"

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
        const QList<AbstractChartSeries *> all = m_series;
        for (AbstractChartSeries *series : all) {
            if (series && series->m_axisY) {
                series->m_axisY->m_zoomed = false;
                adjustAxisY(series);
            }
        }
        m_axisX->m_zoomed = false;
        adjustAxisX();
    }
    updateCharts();
}

void AbstractChartModel::slotZoomChanged(const QRectF &, const QRectF &, int) {}

void AbstractChartModel::slotZoomIn() {}

void AbstractChartModel::slotZoomOut() {}

void AbstractChartModel::slotZoomInX() {}

void AbstractChartModel::slotZoomOutX() {}

void AbstractChartModel::slotZoomInY() {}

void AbstractChartModel::slotZoomOutY() {}

void AbstractChartModel::slotUndoZoom() {}

void AbstractChartModel::slotScrollToBegin() {}

void AbstractChartModel::slotScrollToEnd() {}

void AbstractChartModel::slotScrollBack() {}

void AbstractChartModel::slotScrollForward() {}

void AbstractChartModel::slotScrollUp() {}

void AbstractChartModel::slotScrollDown() {}

void AbstractChartModel::slotPause(bool) {}

void AbstractChartModel::slotBeginMove() {}

void AbstractChartModel::slotEndMove() {}
