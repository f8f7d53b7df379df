#pragma once

#include "quarvchart_export.h"

#include <QList>
#include <QRectF>
#include <QString>

class AbstractChartModel;
class CursorValue;
class QLineF;
class QPainter;
class QPalette;

/**
 * The cursor of one pane: a vertical line, a read-out box for each series that it crosses, and in
 * the upper pane a time label above the frame.
 *
 * The pane writes the members; the model keeps the positions of all panes equal. GUI thread only.
 */
class QUARVCHART_EXPORT ChartCursor
{
public:
    /// Where the boxes stand; 0 is the value before the first paint and acts as Right.
    enum Side { Left = 1, Right = 2 };

    /// \p model supplies the colour of the line; not owned, may be null.
    explicit ChartCursor(AbstractChartModel *model);
    virtual ~ChartCursor() = default;

    /**
     * Draws the line, the boxes and, if \p showTime, the time label.
     *
     * \p values must be sorted and get their new positions; \p rect is the pane's frame, in which
     * the boxes are kept as far as they fit. With \p showTime the painter's clipping is switched
     * off.
     */
    void paint(QPainter &painter, QLineF const &line, QList<CursorValue> &values,
               QRectF const &rect, bool showTime, QPalette const &palette);

    AbstractChartModel *m_model; ///< Not owned; may be null.
    int m_side = 0;              ///< Side of the line on which the boxes stand.
    bool m_visible = false;      ///< The cursor is shown.
    QString m_timeText;          ///< Time label as last computed.
    QRectF m_timeRect;           ///< Its box; the size counts, paint() sets the position.
    double m_position = 0.0;     ///< X of the line, in pane pixels.

private:
    void paintLine(QPainter &painter, const QLineF &line) const;
    void paintBoxes(QPainter &painter, const QLineF &line, const QList<CursorValue> &values) const;
    void paintTimeLabel(QPainter &painter, const QLineF &line, const QRectF &rect,
                        const QPalette &palette);
};
