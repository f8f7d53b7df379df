#pragma once

#include "series/abstractchartseries.h"

/**
 * A series with a name, which is the title of its Y axis too, and a way to print its numbers.
 *
 * Its Y axis does as the chart's settings say until it is given a fixed scale.
 */
class NamedSeries : public AbstractChartSeries
{
    Q_OBJECT

public:
    /// \p format and \p precision are those of QString::number().
    NamedSeries(const QString &name, char format, int precision);

    /// Fixes the scale from \p minimum to \p maximum. To be called when the series is in a model:
    /// that gives new series its own setting.
    void setFixedScale(double minimum, double maximum);

    double minimumY() const override;
    double maximumY() const override;
    int precision() const override;
    char format() const override;
    QColor textColor(int state) override;
    bool isValid(const ChartValue *value) const override;
    QString labelY() const override;

private:
    const char m_format;
    const int m_precision;
    double m_minimumY = 0.0;
    double m_maximumY = 1.0;
};
