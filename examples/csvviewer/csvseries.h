#pragma once

#include "series/abstractchartseries.h"

struct CsvColumn;

/**
 * A column of a CSV file as a series.
 *
 * Prints numbers as the file does: with as many decimals, or with exponents if it has any. Its name
 * is the title of its Y axis too.
 */
class CsvSeries : public AbstractChartSeries
{
    Q_OBJECT

public:
    /// Takes over how \p column is named and written, but none of its samples: they enter through
    /// the model. \p nameX becomes the title of a numeric X axis, cut if it is long.
    CsvSeries(const CsvColumn &column, const QString &nameX);

    double minimumY() const override;
    double maximumY() const override;
    int precision() const override;
    char format() const override;
    QColor textColor(int state) override;
    bool isValid(const ChartValue *value) const override;
    QString labelX() const override;
    QString labelY() const override;

private:
    const QString m_titleX;
    const char m_format;
    const int m_precision;
};
