#pragma once

#include "common/namedseries.h"

struct CsvColumn;

/**
 * A column of a CSV file as a series.
 *
 * Prints numbers as the file does: with as many decimals, or with exponents if it has any.
 */
class CsvSeries : public NamedSeries
{
    Q_OBJECT

public:
    /// Takes over how \p column is named and written, but none of its samples: they enter through
    /// the model. \p nameX becomes the title of a numeric X axis, cut if it is long.
    CsvSeries(const CsvColumn &column, const QString &nameX);

    /// Whether a series made for this column would look the same: name, numbers and title of X.
    bool fits(const CsvColumn &column, const QString &nameX) const;

    QString labelX() const override;

private:
    const QString m_titleX;
};
