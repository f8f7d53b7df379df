#include "csvseries.h"

#include "csvtable.h"

namespace {

constexpr int DigitsWithExponent = 6; // as many as format 'g' has by default
constexpr int LongestTitleX = 16;     // characters: it stands beside the plot, in every pane

QString shortened(const QString &title)
{
    return title.size() <= LongestTitleX ? title : title.left(LongestTitleX - 1) + QChar(0x2026);
}

char formatOf(const CsvColumn &column)
{
    return column.exponents ? 'g' : 'f';
}

int precisionOf(const CsvColumn &column)
{
    return column.exponents ? DigitsWithExponent : column.decimals;
}

} // namespace

CsvSeries::CsvSeries(const CsvColumn &column, const QString &nameX)
    : NamedSeries(column.name, formatOf(column), precisionOf(column))
    , m_titleX(shortened(nameX))
{
}

bool CsvSeries::fits(const CsvColumn &column, const QString &nameX) const
{
    return name() == column.name && format() == formatOf(column) &&
           precision() == precisionOf(column) && m_titleX == shortened(nameX);
}

QString CsvSeries::labelX() const
{
    const QString time = AbstractChartSeries::labelX();
    return time.isEmpty() ? m_titleX : time;
}
