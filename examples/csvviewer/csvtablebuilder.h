#pragma once

#include "csvtable.h"
#include "isodatetime.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

struct CsvCell;

/**
 * Makes a table of the rows of a CSV file, the header included.
 *
 * The rules are those that CsvReader tells. After an error the builder is of no more use.
 */
class CsvTableBuilder
{
    Q_DECLARE_TR_FUNCTIONS(CsvTableBuilder)

public:
    using Row = std::vector<CsvCell>;

    CsvTableBuilder();

    /// Adds the next row. Returns false after an error.
    bool addRow(const Row &row);

    /// Gives up the table. Null after an error, which it is too if no row had values; \p line is
    /// where one was missed.
    std::shared_ptr<CsvTable> finish(qint64 line);

    const CsvError &error() const { return m_error; }

private:
    bool hasValues() const;
    bool begin(const Row &row);
    void nameColumns(const Row &row, bool header);
    bool addValues(const Row &row);
    bool parseX(const CsvCell &cell, double &x);
    bool parseDate(const CsvCell &cell, double &x);
    bool parseNumericX(const CsvCell &cell, double &x);
    bool parseY(const CsvCell &cell, CsvColumn &column, double &y, int number);
    bool rejectNumber(const CsvCell &cell, int number, bool outOfRange);
    bool fail(const CsvCell &cell, int number, const QString &message);

    std::shared_ptr<CsvTable> m_table;
    IsoDateTime m_isoDateTime;
    char m_decimalMark = '\0'; ///< NUL until one has been seen.
    bool m_begun = false;      ///< The first row has been here.
    bool m_ascending = true;   ///< X has not descended.
    double m_lastX;            ///< Of the last row of values.
    CsvError m_error;
};
