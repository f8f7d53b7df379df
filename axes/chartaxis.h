#pragma once

#include "quarvchart_export.h"

#include <QRectF>
#include <QString>
#include <QVector>

class AbstractChartSeries;
class QPainter;
class QPalette;
class QPen;
class QPointF;
class QTransform;

/**
 * A range of data with the grid that suits it and the pixels that its labels need.
 *
 * Its members are read and written directly by the model, the series and the undo commands. Whoever
 * changes the range calls recalculateGridValues() afterwards: until then m_step and m_gridValues
 * describe the former range. Invariant: m_min <= m_max.
 *
 * Guarded by the model's lock on the axes, which every caller here is expected to hold once the
 * axis belongs to a model; the class takes no lock itself. Painting belongs to the GUI thread.
 */
class QUARVCHART_EXPORT ChartAxis
{
public:
    ChartAxis() = default;
    virtual ~ChartAxis() = default;

    /// Whether the span may shrink further: it exceeds 1e-9.
    virtual bool canZoomIn() const;
    /// Whether the span may grow further: it is below 1e9.
    virtual bool canZoomOut() const;

    /**
     * Draws grid lines, tick labels and title, before any series is drawn.
     *
     * \p series supplies the mapping, \p rect is the pane's frame in device coordinates and
     * \p transform the map from pane pixels to the device, identity on screen. Grid colour is the
     * role AlternateBase of \p palette. \p showLabels false leaves the tick labels out. The painter
     * is left with other pens.
     */
    virtual void paint(AbstractChartSeries *series, QPainter &painter, QRectF const &rect,
                       QTransform const &transform, QPalette const &palette, bool showLabels) = 0;

    /// Gives the label of \p value and the size of its box, measured with the painter's font. The
    /// caller places the box. \p precision is the number of decimals on a numeric X axis.
    virtual void valueTextAndRect(double value, QPainter const &painter, QString &text,
                                  QRectF &rect, int precision) const = 0;

    /// Computes m_step and m_gridValues for the present range.
    virtual void recalculateGridValues() = 0;

    /**
     * Returns the grid step for the present range: two to ten intervals over the span.
     *
     * Numeric: one or two times a power of ten. Date-time: whole seconds, minutes or hours, or a
     * third of one. 0 for a span that is 0, negative or not finite. Changes nothing.
     */
    double gridStep() const;

    /// Stores a range in ascending order and recalculates the grid; nothing if the axis has exactly
    /// this range. A NaN is never the same. Leaves m_zoomed alone.
    void assignRange(double a, double b);

    double m_min = 0.0;       ///< Lower bound in data units; seconds since the epoch on date-time.
    double m_max = 0.0;       ///< Upper bound.
    double m_step = 0.0;      ///< Grid step; 0 means no grid.
    int m_size = 0;           ///< Pixels needed: height under the plot (X), width left of it (Y).
    bool m_zoomed = false;    ///< Set by a zoom or scroll, not by the data.
    bool m_autoScale = false; ///< Follows the data.
    bool m_dateTime = false;  ///< Date-time scale; X axis only.
    QVector<double> m_gridValues; ///< Ascending.

protected:
    /// A tick label with its box, in device coordinates once it has been placed.
    struct Label
    {
        QString text; ///< May have two lines.
        QRectF box;   ///< Sized for the text.
    };

    /// The multiple of m_step next to m_min; \p rounding says on which side, by std::ceil or
    /// std::floor. m_step must not be 0.
    double firstGridValue(double (*rounding)(double)) const;

    /// Appends \p first, \p first + m_step, ... up to m_max, and returns the first value above it.
    double appendGridValues(double first);

    /// The text of \p value on the axis, in a box of the right size at no particular place.
    Label measuredLabel(double value, const QPainter &painter) const;

    /// The device position of a grid line; each axis uses one of its coordinates.
    static QPointF devicePosition(const AbstractChartSeries &series, double value,
                                  const QTransform &transform);

    /// A dotted line of one device pixel at every scale.
    static QPen gridPen(const QPalette &palette);
};
