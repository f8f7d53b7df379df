#include "csvseries.h"

#include "csvtable.h"

#include <QColor>

namespace {

constexpr int DigitsWithExponent = 6; // as many as format 'g' has by default
constexpr int LongestTitleX = 16;     // characters: it stands beside the plot, in every pane

QString shortened(const QString &title)
{
    return title.size() <= LongestTitleX ? title : title.left(LongestTitleX - 1) + QChar(0x2026);
}

} // namespace

CsvSeries::CsvSeries(const CsvColumn &column, const QString &nameX)
    : m_titleX(shortened(nameX))
    , m_format(column.exponents ? 'g' : 'f')
    , m_precision(column.exponents ? DigitsWithExponent : column.decimals)
{
    setName(column.name);
}

// The two ends of the scale for a chart that does not follow the data; the viewer's charts do.

double CsvSeries::minimumY() const
{
    return 0.0;
}

double CsvSeries::maximumY() const
{
    return 1.0;
}

int CsvSeries::precision() const
{
    return m_precision;
}

char CsvSeries::format() const
{
    return m_format;
}

QColor CsvSeries::textColor(int)
{
    return Qt::white; // A CSV file knows only one state.
}

bool CsvSeries::isValid(const ChartValue *value) const
{
    return AbstractChartSeries::isValid(value);
}

QString CsvSeries::labelX() const
{
    const QString time = AbstractChartSeries::labelX();
    return time.isEmpty() ? m_titleX : time;
}

QString CsvSeries::labelY() const
{
    return name();
}
