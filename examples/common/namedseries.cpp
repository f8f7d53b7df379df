#include "namedseries.h"

#include <QColor>

NamedSeries::NamedSeries(const QString &name, char format, int precision)
    : m_format(format)
    , m_precision(precision)
{
    setName(name);
}

void NamedSeries::setFixedScale(double minimum, double maximum)
{
    m_minimumY = minimum;
    m_maximumY = maximum;
    setAutoScale(false);
}

double NamedSeries::minimumY() const
{
    return m_minimumY;
}

double NamedSeries::maximumY() const
{
    return m_maximumY;
}

int NamedSeries::precision() const
{
    return m_precision;
}

char NamedSeries::format() const
{
    return m_format;
}

QColor NamedSeries::textColor(int)
{
    return Qt::white; // The examples know only one state.
}

bool NamedSeries::isValid(const ChartValue *value) const
{
    return AbstractChartSeries::isValid(value);
}

QString NamedSeries::labelY() const
{
    return name();
}
