#include "model/staticchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"

#include <QAction>

StaticChartModel::StaticChartModel(const QString &organization, const QString &application,
                                   QObject *parent)
    : AbstractChartModel(organization, application, parent)
{
    m_pauseAction->setEnabled(false);
}

void StaticChartModel::adjustAxisX()
{
    const AxesLocker locker(this);
    if (!m_axisX || m_axisX->m_zoomed) {
        return;
    }
    std::optional<QPair<double, double>> extent;
    for (const AbstractChartSeries *series : qAsConst(m_series)) {
        const auto ends = series ? finiteEndsX(*series) : std::nullopt;
        if (!ends) {
            continue;
        }
        if (!extent) {
            extent = ends;
        }
        extent->first = qMin(extent->first, ends->first);
        extent->second = qMax(extent->second, ends->second);
    }
    const QPair<double, double> range = extent.value_or(qMakePair(0.0, 0.0));
    m_axisX->assignRange(range.first, range.second);
}
