#pragma once

#include "quarvchart_export.h"

#include <QColor>
#include <QRect>
#include <QString>

/**
 * One read-out box of the cursor, filled by a series and placed by the cursor. Pane pixels.
 */
class QUARVCHART_EXPORT CursorValue
{
public:
    /// Orders by y, the greater first, so that the lowest point on the screen comes first. The
    /// reversal is wanted: the cursor stacks its boxes from below.
    bool operator<(const CursorValue &other) const { return y > other.y; }

    QString text;        ///< AbstractChartSeries::stringValue() between two blanks.
    QRect rect;          ///< The box.
    QColor frameColor;   ///< Colour of the series.
    QColor textColor;    ///< AbstractChartSeries::textColor() for the sample's state.
    double y = 0.0;      ///< Y of the point that the box belongs to.
    double pointY = 0.0; ///< The same.
};
