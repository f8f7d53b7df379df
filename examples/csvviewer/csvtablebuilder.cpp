#include "csvtablebuilder.h"

#include "csvtokenizer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr int MaxDecimals = 6;        // as many as read well
constexpr size_t LongestNumber = 128; // characters of a number with a decimal comma
constexpr int LongestQuotation = 40;  // characters of a cell in a message

enum class Kind { Value, Gap, NoNumber, OutOfRange };

/// What a cell says, and how it was written.
struct Number
{
    Kind kind = Kind::NoNumber;
    double value = 0.0;
    int decimals = 0;
    bool exponent = false;
};

Number convert(const char *begin, const char *end)
{
    Number number;
    const auto [stop, problem] = std::from_chars(begin, end, number.value);
    if (problem == std::errc::invalid_argument || stop != end) {
        number.kind = Kind::NoNumber;
    } else if (problem == std::errc::result_out_of_range) {
        number.kind = Kind::OutOfRange;
    } else {
        number.kind = std::isnan(number.value) ? Kind::Gap : Kind::Value;
    }
    return number;
}

Number convertWithComma(const char *begin, const char *end, const char *comma)
{
    std::array<char, LongestNumber> copy;
    if (size_t(end - begin) > copy.size()) {
        return Number();
    }
    std::copy(begin, end, copy.begin());
    copy[size_t(comma - begin)] = '.';
    return convert(copy.data(), copy.data() + (end - begin));
}

/// Passes over a plus, which std::from_chars() does not take, if no other sign follows.
const char *afterPlus(const char *begin, const char *end)
{
    const bool plus = *begin == '+' && begin + 1 != end && begin[1] != '-';
    return plus ? begin + 1 : begin;
}

/// Reads a whole cell as a number. A number with a decimal mark fixes \p decimalMark if that is
/// still NUL; with another mark it is no number.
Number readNumber(const CsvCell &cell, char &decimalMark)
{
    if (cell.begin == cell.end) {
        Number gap;
        gap.kind = Kind::Gap;
        return gap;
    }
    const char *const begin = afterPlus(cell.begin, cell.end);
    const char *const end = cell.end;

    const auto isMark = [](char c) { return c == '.' || c == ','; };
    const auto isExponent = [](char c) { return c == 'e' || c == 'E'; };
    const char *const mark = std::find_if(begin, end, isMark);
    const char *const exponent = std::find_if(mark == end ? begin : mark, end, isExponent);
    if (mark != end && decimalMark != '\0' && decimalMark != *mark) {
        return Number();
    }

    const bool comma = mark != end && *mark == ',';
    Number number = comma ? convertWithComma(begin, end, mark) : convert(begin, end);
    if (number.kind == Kind::Value && mark != end) {
        decimalMark = *mark;
        number.decimals = int(std::min<qint64>(exponent - mark - 1, MaxDecimals));
    }
    number.exponent = exponent != end;
    return number;
}

QString textOf(const CsvCell &cell)
{
    return QString::fromUtf8(cell.begin, int(cell.end - cell.begin));
}

QString quotationOf(const CsvCell &cell)
{
    const QString text = textOf(cell);
    return text.size() <= LongestQuotation ? text : text.left(LongestQuotation) + QChar(0x2026);
}

/// A row is a header if one of its cells is neither a number nor a gap, nor in front a date.
bool isHeader(const CsvTableBuilder::Row &row, bool startsWithDate)
{
    const auto isText = [](const CsvCell &cell) {
        char decimalMark = '\0';
        return readNumber(cell, decimalMark).kind == Kind::NoNumber;
    };
    return std::any_of(row.begin() + (startsWithDate ? 1 : 0), row.end(), isText);
}

void sortByX(QList<ChartValue *> &samples)
{
    std::stable_sort(samples.begin(), samples.end(),
                     [](const ChartValue *a, const ChartValue *b) { return a->x < b->x; });
}

} // namespace

CsvTableBuilder::CsvTableBuilder()
    : m_table(std::make_shared<CsvTable>())
    , m_lastX(-std::numeric_limits<double>::infinity())
{
}

bool CsvTableBuilder::addRow(const Row &row)
{
    if (!m_begun) {
        return begin(row);
    }
    return addValues(row);
}

std::shared_ptr<CsvTable> CsvTableBuilder::finish(qint64 line)
{
    if (!hasValues()) {
        m_error = {line, 1, tr("there is no row of values")};
        return nullptr;
    }
    if (!m_ascending) {
        // All columns have the same X and a stable order, so the rows stay together.
        for (CsvColumn &column : m_table->columns) {
            sortByX(column.samples);
        }
    }
    return std::move(m_table);
}

bool CsvTableBuilder::hasValues() const
{
    return !m_table->columns.empty() && !m_table->columns.front().samples.isEmpty();
}

/// Takes the first row, as header or as values.
bool CsvTableBuilder::begin(const Row &row)
{
    m_begun = true;
    if (row.size() < 2) {
        return fail(row.front(), 1,
                    tr("there is only one column; wanted are X and values, separated by comma, "
                       "semicolon or tab"));
    }
    double x = 0.0;
    const bool startsWithDate = m_isoDateTime.parse(row.front().begin, row.front().end, x);
    const bool header = isHeader(row, startsWithDate);
    nameColumns(row, header);
    return header || addValues(row);
}

void CsvTableBuilder::nameColumns(const Row &row, bool header)
{
    if (header) {
        m_table->nameX = textOf(row.front());
    }
    m_table->columns.reserve(row.size() - 1);
    for (size_t i = 1; i < row.size(); ++i) {
        const QString name = header ? textOf(row[i]) : QString();
        m_table->columns.emplace_back(name.isEmpty() ? tr("Column %1").arg(i + 1) : name);
    }
}

bool CsvTableBuilder::addValues(const Row &row)
{
    const size_t expected = m_table->columns.size() + 1;
    if (row.size() != expected) {
        const size_t wrong = std::min(row.size(), expected); // first cell missing or too many
        return fail(row[std::min(wrong, row.size() - 1)], int(wrong) + 1,
                    tr("cells in this row: %1, in the first: %2").arg(row.size()).arg(expected));
    }
    double x = 0.0;
    if (!parseX(row.front(), x)) {
        return false;
    }
    m_ascending = m_ascending && x >= m_lastX;
    m_lastX = x;
    for (size_t i = 1; i < expected; ++i) {
        CsvColumn &column = m_table->columns[i - 1];
        double y = 0.0;
        if (!parseY(row[i], column, y, int(i) + 1)) {
            return false;
        }
        auto *sample = new ChartValue;
        sample->x = x;
        sample->y = y;
        column.samples.append(sample);
    }
    return true;
}

bool CsvTableBuilder::parseX(const CsvCell &cell, double &x)
{
    if (!hasValues()) {
        m_table->dateTime = m_isoDateTime.parse(cell.begin, cell.end, x);
    }
    return m_table->dateTime ? parseDate(cell, x) : parseNumericX(cell, x);
}

bool CsvTableBuilder::parseDate(const CsvCell &cell, double &x)
{
    if (m_isoDateTime.parse(cell.begin, cell.end, x)) {
        return true;
    }
    const bool missing = cell.begin == cell.end;
    return fail(cell, 1,
                missing ? tr("X is missing")
                        : tr("\"%1\" is no date and time").arg(quotationOf(cell)));
}

bool CsvTableBuilder::parseNumericX(const CsvCell &cell, double &x)
{
    const Number number = readNumber(cell, m_decimalMark);
    x = number.value;
    if (number.kind == Kind::Gap) {
        return fail(cell, 1, tr("X is missing"));
    }
    if (number.kind == Kind::NoNumber && !hasValues()) {
        return fail(cell, 1,
                    tr("\"%1\" is neither a number nor a date and time").arg(quotationOf(cell)));
    }
    if (number.kind != Kind::Value) {
        return rejectNumber(cell, 1, number.kind == Kind::OutOfRange);
    }
    return std::isfinite(x) || fail(cell, 1, tr("X is infinite"));
}

bool CsvTableBuilder::parseY(const CsvCell &cell, CsvColumn &column, double &y, int number)
{
    const Number parsed = readNumber(cell, m_decimalMark);
    if (parsed.kind == Kind::Gap) {
        y = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    if (parsed.kind != Kind::Value) {
        return rejectNumber(cell, number, parsed.kind == Kind::OutOfRange);
    }
    y = parsed.value;
    column.decimals = std::max(column.decimals, parsed.decimals);
    column.exponents = column.exponents || parsed.exponent;
    return true;
}

bool CsvTableBuilder::rejectNumber(const CsvCell &cell, int number, bool outOfRange)
{
    const QString text =
        outOfRange ? tr("\"%1\" is out of the range of numbers") : tr("\"%1\" is no number");
    return fail(cell, number, text.arg(quotationOf(cell)));
}

bool CsvTableBuilder::fail(const CsvCell &cell, int number, const QString &message)
{
    m_error = {cell.line, number, message};
    return false;
}
