#include "common/samplewriter.h"

#include "common/wholefile.h"

#include "axes/horizontalchartaxis.h"
#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileDevice>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <mutex>
#include <optional>
#include <vector>

namespace {

constexpr int BlockSize = 1 << 16;   // bytes that are written at once
constexpr size_t LongestNumber = 32; // characters; "-2.2250738585072014e-308" has 24

// The years that are written with four digits, in seconds since the epoch.
constexpr double FirstSecond = -62135596800.0; // 0001-01-01T00:00:00Z
constexpr double EndOfDates = 253402300800.0;  // 10000-01-01T00:00:00Z

constexpr int MostFractionDigits = 15; // more than that are no whole number that a double holds
constexpr int LengthWithoutZone = 19;  // of "2026-11-21T12:34:56"

struct Sample
{
    double x;
    double y;
    bool isGap;
};

/// The samples of one series in view.
using Column = std::vector<Sample>;

/// What is written.
struct Table
{
    QStringList header;
    std::vector<Column> columns; ///< In ascending X.
    bool dateTime = false;       ///< X as dates.
};

QList<AbstractChartSeries *> visibleSeries(const AbstractChartModel &model)
{
    QList<AbstractChartSeries *> list;
    std::copy_if(model.m_series.cbegin(), model.m_series.cend(), std::back_inserter(list),
                 [](const AbstractChartSeries *series) { return series->m_visible; });
    return list;
}

Column copySamples(const AbstractChartSeries &series, double minimum, double maximum)
{
    Column column;
    for (const ChartValue *value : series.m_values) {
        if (value && value->x >= minimum && value->x <= maximum) {
            column.push_back({value->x, value->y, !series.isValid(value)});
        }
    }
    return column;
}

/// Keeps all feeders waiting, and not only those of the visible series: any of them moves the axis.
std::vector<Column> copyColumns(const AbstractChartModel &model)
{
    std::vector<std::unique_lock<QMutex>> locks;
    for (AbstractChartSeries *series : model.m_series) {
        locks.emplace_back(series->m_valuesMutex);
    }
    std::vector<Column> columns;
    for (const AbstractChartSeries *series : visibleSeries(model)) {
        columns.push_back(copySamples(*series, model.m_axisX->m_min, model.m_axisX->m_max));
    }
    return columns;
}

QStringList headerOf(const AbstractChartModel &model)
{
    const QList<AbstractChartSeries *> list = visibleSeries(model);
    const QString own = list.isEmpty() ? QString() : list.first()->labelX();
    const QString usual = model.m_axisX->m_dateTime
                              ? QCoreApplication::translate("SampleWriter", "Time")
                              : QCoreApplication::translate("SampleWriter", "X");
    QStringList header{own.isEmpty() ? usual : own};
    for (const AbstractChartSeries *series : list) {
        header.append(series->name());
    }
    return header;
}

/// The fewest digits behind the decimal mark that give \p seconds back when they are read as a
/// number and added to the whole second \p whole; nothing if no digits do.
std::optional<QByteArray> fractionDigits(double seconds, double whole)
{
    double power = 1.0;
    for (int digits = 0; digits <= MostFractionDigits; ++digits, power *= 10.0) {
        const double numerator = std::round((seconds - whole) * power);
        if (numerator < power && whole + numerator / power == seconds) {
            return digits == 0 ? QByteArray()
                               : QByteArray::number(qint64(numerator)).rightJustified(digits, '0');
        }
    }
    return std::nullopt;
}

/// Date and time in UTC; nothing for a number that no date stands for.
std::optional<QByteArray> dateText(double seconds)
{
    if (seconds < FirstSecond || seconds >= EndOfDates) {
        return std::nullopt;
    }
    const double whole = std::floor(seconds);
    const std::optional<QByteArray> fraction = fractionDigits(seconds, whole);
    if (!fraction) {
        return std::nullopt;
    }
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(qint64(whole), Qt::UTC);
    QByteArray text = moment.toString(Qt::ISODate).left(LengthWithoutZone).toLatin1();
    if (!fraction->isEmpty()) {
        text += '.' + *fraction;
    }
    return text + 'Z';
}

/// Whether each X can be said as a date: a table has dates or numbers, but not both.
bool hasDatesOnly(const std::vector<Column> &columns)
{
    const auto isDate = [](const Sample &sample) { return dateText(sample.x).has_value(); };
    return std::all_of(columns.cbegin(), columns.cend(), [&isDate](const Column &column) {
        return std::all_of(column.cbegin(), column.cend(), isDate);
    });
}

Table tableOf(const AbstractChartModel &model)
{
    Table table{headerOf(model), copyColumns(model), false};
    for (Column &column : table.columns) {
        std::stable_sort(column.begin(), column.end(),
                         [](const Sample &a, const Sample &b) { return a.x < b.x; });
    }
    table.dateTime = model.m_axisX->m_dateTime && hasDatesOnly(table.columns);
    return table;
}

/// The bytes of a table, in blocks for a device.
class TableWriter
{
public:
    TableWriter(const Table &table, QIODevice &device)
        : m_table(table)
        , m_device(device)
        , m_next(table.columns.size(), 0)
    {
    }

    bool write();

private:
    void addHeader();
    bool addRow();
    std::optional<double> nextX() const;
    void addX(double x);
    void addCell(size_t column, double x);
    bool writeBlock();

    const Table &m_table;
    QIODevice &m_device;
    std::vector<size_t> m_next; ///< By column: the first sample that has not been written.
    QByteArray m_block;
};

bool TableWriter::write()
{
    addHeader();
    while (addRow()) {
        if (m_block.size() >= BlockSize && !writeBlock()) {
            return false;
        }
    }
    if (!writeBlock()) {
        return false;
    }
    auto *file = qobject_cast<QFileDevice *>(&m_device);
    return !file || file->flush(); // Only then is it known whether the disk has had the room.
}

QByteArray quoted(const QString &text)
{
    return '"' + QString(text).replace('"', QLatin1String("\"\"")).toUtf8() + '"';
}

/// A cell of the header. Blanks at its ends, and what other programs separate cells by, are
/// protected too.
QByteArray headerCell(const QString &text)
{
    const auto isSpecial = [](QChar c) { return QLatin1String(",;\t\"\r\n").contains(c); };
    const bool protect =
        text != text.trimmed() || std::any_of(text.cbegin(), text.cend(), isSpecial);
    return protect ? quoted(text) : text.toUtf8();
}

void TableWriter::addHeader()
{
    for (const QString &title : m_table.header) {
        m_block += headerCell(title) + ',';
    }
    m_block.back() = '\n';
}

/// Adds the row of the lowest X that is left; false if none is.
bool TableWriter::addRow()
{
    const std::optional<double> x = nextX();
    if (!x) {
        return false;
    }
    addX(*x);
    for (size_t column = 0; column < m_next.size(); ++column) {
        addCell(column, *x);
    }
    m_block += '\n';
    return true;
}

std::optional<double> TableWriter::nextX() const
{
    std::optional<double> lowest;
    for (size_t i = 0; i < m_next.size(); ++i) {
        const Column &column = m_table.columns[i];
        if (m_next[i] < column.size() && (!lowest || column[m_next[i]].x < *lowest)) {
            lowest = column[m_next[i]].x;
        }
    }
    return lowest;
}

/// The shortest text that is read back to the same number.
QByteArray numberText(double number)
{
    std::array<char, LongestNumber> text;
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    return QByteArray(text.data(), int(result.ptr - text.data()));
}

void TableWriter::addX(double x)
{
    m_block += m_table.dateTime ? *dateText(x) : numberText(x);
}

/// One sample at most: the next one at the same X gets the next row.
void TableWriter::addCell(size_t column, double x)
{
    m_block += ',';
    const Column &samples = m_table.columns[column];
    size_t &next = m_next[column];
    if (next == samples.size() || samples[next].x != x) {
        return;
    }
    if (!samples[next].isGap) {
        m_block += numberText(samples[next].y);
    }
    ++next;
}

bool TableWriter::writeBlock()
{
    const bool written = writeAll(m_device, m_block);
    m_block.clear();
    return written;
}

} // namespace

bool writeVisibleSamples(const AbstractChartModel &model, QIODevice &device)
{
    const Table table = tableOf(model);
    return TableWriter(table, device).write();
}

bool saveVisibleSamples(const AbstractChartModel &model, const QString &fileName, QString *problem)
{
    const auto write = [&model](QIODevice &device) { return writeVisibleSamples(model, device); };
    return writeWholeFile(fileName, write, problem);
}
