#include "csvtokenizer.h"

#include <QIODevice>

#include <array>
#include <cstring>

namespace {

constexpr char Quote = '"';
constexpr char ByteOrderMark[] = "\xEF\xBB\xBF";
constexpr int ByteOrderMarkSize = 3;

/// In order of preference: a decimal comma may well be as regular as the semicolon beside it.
constexpr std::array<char, 3> Separators{'\t', ';', ','};
constexpr int RowsLookedAt = 50; // to find the separator

bool isBlank(char c, char separator)
{
    return c == ' ' || (c == '\t' && separator != '\t');
}

/// Counts the separators of one row.
class SeparatorCount
{
public:
    void add(char c)
    {
        for (size_t i = 0; i < Separators.size(); ++i) {
            m_count[i] += c == Separators[i] ? 1 : 0;
        }
    }
    int of(size_t separator) const { return m_count[separator]; }

private:
    std::array<int, Separators.size()> m_count{};
};

/// The first rows of the data. The last one may be cut off, and is left out unless it is the only
/// one.
std::vector<SeparatorCount> countSeparators(const char *begin, const char *end)
{
    std::vector<SeparatorCount> rows(1);
    bool quoted = false;
    for (const char *p = begin; p != end && rows.size() <= RowsLookedAt; ++p) {
        quoted = quoted != (*p == Quote);
        if (quoted) {
            continue;
        }
        if (*p == '\n') {
            rows.emplace_back();
        } else {
            rows.back().add(*p);
        }
    }
    if (rows.size() > 1) {
        rows.pop_back();
    }
    return rows;
}

/// The separator of which most rows have as many as the first one has.
char findSeparator(const char *begin, const char *end)
{
    const std::vector<SeparatorCount> rows = countSeparators(begin, end);
    char best = ',';
    int bestRows = 0;
    for (size_t i = 0; i < Separators.size(); ++i) {
        const int wanted = rows.front().of(i);
        int evenRows = 0;
        for (const SeparatorCount &row : rows) {
            evenRows += wanted > 0 && row.of(i) == wanted ? 1 : 0;
        }
        if (evenRows > bestRows) {
            best = Separators[i];
            bestRows = evenRows;
        }
    }
    return best;
}

/// Replaces each pair of quotes by one.
void unescape(CsvCell &cell)
{
    char *to = cell.begin;
    for (const char *from = cell.begin; from != cell.end; ++from) {
        *to++ = *from;
        from += *from == Quote ? 1 : 0;
    }
    cell.end = to;
    cell.escaped = false;
}

} // namespace

CsvTokenizer::CsvTokenizer(QIODevice &device, int blockSize)
    : m_device(device)
    , m_blockSize(blockSize)
    , m_buffer(new char[size_t(blockSize) + 1])
    , m_next(m_buffer.get())
    , m_end(m_buffer.get())
{
    *m_end = '\0';
}

bool CsvTokenizer::next()
{
    if (!m_started) {
        start();
    }
    return !failed() && fetchRow();
}

void CsvTokenizer::start()
{
    m_started = true;
    refill();
    if (m_end - m_next >= ByteOrderMarkSize &&
        std::memcmp(m_next, ByteOrderMark, ByteOrderMarkSize) == 0) {
        m_next += ByteOrderMarkSize;
    }
    m_separator = findSeparator(m_next, m_end);
    if (std::memchr(m_next, '\0', size_t(m_end - m_next))) {
        // What a binary file begins with may pass for a strange header. Going on to the NUL says
        // what is really wrong, and where.
        while (fetchRow()) {
        }
    }
}

/// Moves the unfinished row to the front of the buffer and fills the rest of it. False if that has
/// failed; at the end of the device it succeeds with less data or none.
bool CsvTokenizer::refill()
{
    const qint64 kept = m_end - m_next;
    std::memmove(m_buffer.get(), m_next, size_t(kept));
    m_next = m_buffer.get();
    m_end = m_next + kept;

    const char *const bufferEnd = m_buffer.get() + m_blockSize;
    while (!m_atEnd && m_end != bufferEnd) { // A pipe gives its data in small pieces.
        const qint64 count = m_device.read(m_end, bufferEnd - m_end);
        if (count < 0) {
            m_error.message = m_device.errorString();
            return false;
        }
        m_atEnd = count == 0;
        m_end += count;
        m_bytesRead += count;
    }
    *m_end = '\0';
    return true;
}

/// Moves to the next row that is not empty.
bool CsvTokenizer::fetchRow()
{
    Scan scan = Scan::Partial;
    do {
        scan = scanRow();
        while (scan == Scan::Partial && !m_atEnd && refill()) {
            scan = scanRow();
        }
    } while (scan == Scan::Complete && isEmptyLine());
    return scan == Scan::Complete;
}

bool CsvTokenizer::isEmptyLine() const
{
    return m_row.size() == 1 && m_row.front().begin == m_row.front().end;
}

/// Finds the cells up to the end of the line. A row of which the buffer holds only a part leaves
/// everything as it was: it will be scanned again from its begin.
CsvTokenizer::Scan CsvTokenizer::scanRow()
{
    if (m_next == m_end) {
        return Scan::Partial;
    }
    m_row.clear();
    char *next = m_next;
    qint64 line = m_line;
    do {
        const Scan scan = scanCell(next, line);
        if (scan != Scan::Complete) {
            return scan;
        }
    } while (*next++ == m_separator);

    // At the end of the data the last line may go without a line end.
    m_next = qMin(next, m_end);
    m_line = line + 1;
    for (CsvCell &cell : m_row) {
        if (cell.escaped) {
            unescape(cell);
        }
    }
    return Scan::Complete;
}

/// Appends the cell at \p next to the row and moves to the byte that ends it: a separator, a line
/// feed, or the end of all data.
CsvTokenizer::Scan CsvTokenizer::scanCell(char *&next, qint64 &line)
{
    while (isBlank(*next, m_separator)) {
        ++next;
    }
    m_row.emplace_back();
    m_row.back().line = line;
    return *next == Quote ? scanQuotedCell(next, line) : scanPlainCell(next, line);
}

CsvTokenizer::Scan CsvTokenizer::scanPlainCell(char *&next, qint64 line)
{
    char *p = next;
    while (*p != m_separator && *p != '\n' && *p != '\0') {
        ++p;
    }
    if (*p == '\0') {
        const Scan scan = endOfData(p, line);
        if (scan != Scan::Complete) {
            return scan;
        }
    }

    CsvCell &cell = m_row.back();
    cell.begin = next;
    cell.end = p;
    while (cell.end != cell.begin && (isBlank(cell.end[-1], m_separator) || cell.end[-1] == '\r')) {
        --cell.end;
    }
    next = p;
    return Scan::Complete;
}

CsvTokenizer::Scan CsvTokenizer::scanQuotedCell(char *&next, qint64 &line)
{
    char *p = next + 1;
    const Scan scan = findClosingQuote(p, line);
    if (scan != Scan::Complete) {
        return scan;
    }
    m_row.back().begin = next + 1;
    m_row.back().end = p;

    do {
        ++p;
    } while (isBlank(*p, m_separator) || *p == '\r');
    if (*p == '\0') {
        // Of the data in the buffer: the quote may yet turn out to be the first of two.
        const Scan scanBehind = endOfData(p, line);
        if (scanBehind != Scan::Complete) {
            return scanBehind;
        }
    } else if (*p != m_separator && *p != '\n') {
        return fail(line, tr("text behind a quoted cell"));
    }
    next = p;
    return Scan::Complete;
}

/// Moves from inside a quoted cell to the quote that ends it, which is one that stands alone.
CsvTokenizer::Scan CsvTokenizer::findClosingQuote(char *&next, qint64 &line)
{
    for (; *next != Quote || next[1] == Quote; ++next) {
        if (*next == Quote) {
            m_row.back().escaped = true;
            ++next;
        } else if (*next == '\n') {
            ++line;
        } else if (*next == '\0') {
            const Scan scan = endOfData(next, line);
            return scan != Scan::Complete ? scan
                                          : fail(m_row.back().line, tr("the quote is not closed"));
        }
    }
    return Scan::Complete;
}

/// What the NUL at \p at means: the end of all data, of that in the buffer, or a binary file.
CsvTokenizer::Scan CsvTokenizer::endOfData(const char *at, qint64 line)
{
    if (at != m_end) {
        return fail(line, tr("this is a binary file: it has a NUL byte here"));
    }
    if (m_atEnd) {
        return Scan::Complete;
    }
    if (m_end - m_next == m_blockSize) {
        return fail(m_row.back().line,
                    tr("the row is longer than %1 bytes; is a quote not closed?").arg(m_blockSize));
    }
    return Scan::Partial;
}

CsvTokenizer::Scan CsvTokenizer::fail(qint64 line, const QString &message)
{
    m_error.line = line;
    m_error.cell = int(m_row.size());
    m_error.message = message;
    return Scan::Failed;
}
