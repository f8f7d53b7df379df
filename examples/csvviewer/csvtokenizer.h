#pragma once

#include "csvtable.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

class QIODevice;

/// The bytes of one cell, without quotes and without blanks around them.
struct CsvCell
{
    char *begin = nullptr;
    char *end = nullptr;
    qint64 line = 0;      ///< Where the cell begins, from 1.
    bool escaped = false; ///< Still has its quotes doubled; never so in what row() gives.
};

/**
 * Cuts a CSV file into rows of cells, reading it in big blocks.
 *
 * Cells are separated by comma, semicolon or tab: the one that divides the first rows most evenly.
 * A cell may stand in double quotes, in which separators and line ends count as text and two quotes
 * stand for one (RFC 4180). Lines end with LF or CRLF; empty ones are passed over, and so is the
 * mark with which a file in UTF-8 may begin. A NUL byte, a quote that is not closed and a row
 * longer than a block are errors.
 *
 * One object reads one device from its present position to its end.
 */
class CsvTokenizer
{
    Q_DECLARE_TR_FUNCTIONS(CsvTokenizer)

public:
    static constexpr int UsualBlockSize = 1 << 20;

    /// \p device is open, waits for data when it has none, and outlives the tokenizer.
    /// \p blockSize is how many bytes are read at once, and the length of the longest row.
    explicit CsvTokenizer(QIODevice &device, int blockSize = UsualBlockSize);

    /// Moves to the next row; false at the end and after an error.
    bool next();

    /// The cells of the row that next() has moved to, at least one; valid until the next call.
    const std::vector<CsvCell> &row() const { return m_row; }

    bool failed() const { return !m_error.message.isEmpty(); }
    const CsvError &error() const { return m_error; }

    qint64 bytesRead() const { return m_bytesRead; } ///< So far, from the device.
    qint64 line() const { return m_line; }           ///< The line behind the present row, from 1.

private:
    enum class Scan { Complete, Partial, Failed };

    void start();
    bool refill();
    bool fetchRow();
    bool isEmptyLine() const;
    Scan scanRow();
    Scan scanCell(char *&next, qint64 &line);
    Scan scanQuotedCell(char *&next, qint64 &line);
    Scan findClosingQuote(char *&next, qint64 &line);
    Scan scanPlainCell(char *&next, qint64 line);
    Scan endOfData(const char *at, qint64 line);
    Scan fail(qint64 line, const QString &message);

    QIODevice &m_device;
    const int m_blockSize;
    const std::unique_ptr<char[]> m_buffer;
    char *m_next = nullptr; ///< First byte behind the present row.
    char *m_end = nullptr;  ///< End of the data in the buffer; a NUL stands here.
    bool m_started = false;
    bool m_atEnd = false; ///< The device has no more.
    qint64 m_bytesRead = 0;
    qint64 m_line = 1; ///< Of m_next.
    char m_separator = ',';
    std::vector<CsvCell> m_row;
    CsvError m_error;
};
