#include "model/staticchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "model/axeslocker_p.h"

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
    const QPair<double, double> range = dataExtentX().value_or(qMakePair(0.0, 0.0));
    m_axisX->assignRange(range.first, range.second);
}
