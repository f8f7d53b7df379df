#pragma once

#include "support/plainseries.h"

#include <QMap>

/**
 * A series with an X title of its own and, if a test wants them, Y labels out of a table.
 */
class TitledSeries : public PlainSeries
{
public:
    using PlainSeries::PlainSeries;

    QString labelX() const override { return m_labelX; }
    QString scaleString(double value) const override
    {
        return m_labels.contains(value) ? m_labels.value(value) : PlainSeries::scaleString(value);
    }

    QString m_labelX;
    QMap<double, QString> m_labels; ///< Y labels that differ from the plain number.
};
