#pragma once

#include "quarvchart_export.h"

#include <QList>
#include <QMimeData>

class AbstractChartSeries;

/**
 * A drag of series within the process, recognised by its class and not by a format.
 */
class QUARVCHART_EXPORT ChartMimeData : public QMimeData
{
    Q_OBJECT

public:
    QList<AbstractChartSeries *> m_series; ///< Not owned.
};
