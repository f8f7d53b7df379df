#pragma once

#include "series/abstractchartseries.h"

#include <QCoreApplication>
#include <QPointF>
#include <QVector>

#include <limits>

/**
 * The smallest series: its hooks answer with members that a test sets before it starts a worker.
 */
class PlainSeries : public AbstractChartSeries
{
public:
    explicit PlainSeries(const QString &name = QString()) { m_name = name; }

    /// Counts itself in m_deaths, if a test has set it.
    ~PlainSeries() override
    {
        if (m_deaths) {
            ++*m_deaths;
        }
    }

    double minimumY() const override { return m_minimumY; }
    double maximumY() const override { return m_maximumY; }
    int precision() const override { return m_precision; }
    char format() const override { return m_format; }
    QColor textColor(int state) override
    {
        return state == 0 ? QColor(Qt::white) : QColor(Qt::red);
    }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
    QString labelY() const override { return m_labelY; }

    double m_minimumY = 0.0;
    double m_maximumY = 100.0;
    int m_precision = 0;
    char m_format = 'f';
    QString m_labelY;
    int *m_deaths = nullptr; ///< Not owned.
};

/// A sample on the heap, as the entry operations take it.
inline ChartValue *newValue(double x, double y, int state = 0,
                            double expireTime = std::numeric_limits<double>::infinity())
{
    return new ChartValue{x, y, state, expireTime};
}

/// The store as one text, "x:y x:y ...", for comparison in one step.
inline QString storeText(const AbstractChartSeries &series)
{
    QStringList samples;
    for (const ChartValue *value : series.m_values) {
        samples.append(value ? QString("%1:%2").arg(value->x).arg(value->y) : QString("null"));
    }
    return samples.join(' ');
}
