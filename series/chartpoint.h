#pragma once

#include "quarvchart_export.h"

#include <QtGlobal>

/**
 * One computed point of a curve, in pane pixels.
 *
 * Between two neighbours runs a line, unless one of them is a gap marker: x and y of -1.
 */
class QUARVCHART_EXPORT ChartPoint
{
public:
    virtual ~ChartPoint() = default;

    /// A point that breaks the line: state 0, value 0, clipped.
    static ChartPoint gap();

    /// Whether no line is drawn to or from this point.
    bool isGap() const { return x == GapCoordinate && y == GapCoordinate; }

    int x = 0;            ///< Pixel column.
    int y = 0;            ///< Pixel row.
    int state = 0;        ///< State of the sample that the point comes from.
    double value = 0.0;   ///< Unclipped Y of that sample, for the read-out.
    bool clipped = false; ///< Not the sample itself but the edge of the view; gets no symbol.

private:
    static constexpr int GapCoordinate = -1;
};

Q_DECLARE_TYPEINFO(ChartPoint, Q_MOVABLE_TYPE);
