#pragma once

#include "series/chartvalue.h"

#include <QList>
#include <QMetaType>
#include <QString>

#include <memory>
#include <vector>

/// One column of values: a series to be.
struct CsvColumn
{
    explicit CsvColumn(const QString &columnName)
        : name(columnName)
    {
    }

    /// Frees the samples that nobody has taken.
    ~CsvColumn();
    CsvColumn(CsvColumn &&other) noexcept = default;
    CsvColumn &operator=(CsvColumn &&) = delete;

    /// Gives up the samples: the caller owns them, and the column has none.
    QList<ChartValue *> takeSamples();

    QString name;
    QList<ChartValue *> samples; ///< Owned; X ascends. A gap has a NaN for y.
    int decimals = 0;            ///< Most digits seen behind a decimal mark.
    bool exponents = false;      ///< A number with an exponent was seen.
};

/// What a CSV file holds: an X of all rows and the columns of values over it.
struct CsvTable
{
    QString nameX;         ///< Header of the first column; empty without a header.
    bool dateTime = false; ///< X is seconds since the epoch, and not just a number.
    std::vector<CsvColumn> columns;
};

/// Why a file could not be read, and where.
struct CsvError
{
    /// "FILE:LINE:CELL: message", as compilers put it, or "FILE: message" if there is no place.
    QString text(const QString &fileName) const;

    qint64 line = 0; ///< From 1; 0 if the error has no place in the file.
    int cell = 0;    ///< Number of the cell in its row, from 1.
    QString message;
};

/// How reading a file has ended: with a table, with an error, or neither if it was cancelled.
struct CsvResult
{
    std::shared_ptr<CsvTable> table; ///< Null unless the whole file has been read.
    CsvError error;
    bool cancelled = false;
};
Q_DECLARE_METATYPE(CsvResult)
