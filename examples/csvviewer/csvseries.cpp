#include "csvseries.h"

#include "csvtable.h"

namespace {

constexpr int DigitsWithExponent = 6; // as many as format 'g' has by default
constexpr int LongestTitleX = 16;     // characters: it stands beside the plot, in every pane

QString shortened(const QString &title)
{
    return title.size() <= LongestTitleX ? title : title.left(LongestTitleX - 1) + QChar(0x2026);
}

} // namespace

CsvSeries::CsvSeries(const CsvColumn &column, const QString &nameX)
    : NamedSeries(column.name, column.exponents ? 'g' : 'f',
                  column.exponents ? DigitsWithExponent : column.decimals)
    , m_titleX(shortened(nameX))
{
}

QString CsvSeries::labelX() const
{
    const QString time = AbstractChartSeries::labelX();
    return time.isEmpty() ? m_titleX : time;
}
