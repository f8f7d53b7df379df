#pragma once

#include "support/plainseries.h"
#include "support/recordingmodel.h"

#include <QVector>

/// Adds a series without a step in the history. Its samples have the Ys given and X from 0 up.
template <typename Series = PlainSeries>
Series *addSeries(AbstractChartModel &model, const QString &name,
                  const QVector<double> &ys = QVector<double>())
{
    auto *series = new Series(name);
    model.completeAddSeries(series);
    for (int i = 0; i < ys.size(); ++i) {
        model.addValue(series, newValue(i, ys.at(i)));
    }
    return series;
}

/// Calculates once more, with the axes as they are now; false if that does not end.
inline bool recalculated(AbstractChartModel &model)
{
    model.updateCharts();
    return settled(model);
}

/// Zooms one axis by hand.
inline void setZoomed(ChartAxis &axis, double min, double max)
{
    axis.assignRange(min, max);
    axis.m_zoomed = true;
}

/// Whether two numbers are equal but for rounding errors.
inline bool isNear(double a, double b)
{
    constexpr double Tolerance = 1e-9;
    return qAbs(a - b) <= Tolerance * qMax(1.0, qMax(qAbs(a), qAbs(b)));
}

/// The same for the range of an axis; prints it if it is another.
inline bool hasRange(const ChartAxis &axis, double min, double max)
{
    if (isNear(axis.m_min, min) && isNear(axis.m_max, max)) {
        return true;
    }
    qInfo("The range is [%.12g,%.12g], not [%.12g,%.12g]", axis.m_min, axis.m_max, min, max);
    return false;
}

/// The part of \p rect that the fractions give, from its top left corner.
inline QRectF partOf(const QRectF &rect, double left, double top, double width, double height)
{
    return QRectF(rect.x() + left * rect.width(), rect.y() + top * rect.height(),
                  width * rect.width(), height * rect.height());
}
