#pragma once

#include "axes/chartaxis.h"

/**
 * The X axis, one for all series and panes of a model; numbers or dates with times.
 *
 * Grid values lie inside the range. m_size is the room for a label of two lines, taken from the
 * application's font at construction.
 */
class QUARVCHART_EXPORT HorizontalChartAxis : public ChartAxis
{
public:
    /// Needs the application object, for its font.
    HorizontalChartAxis();

    /// On a date-time scale the span must exceed a millisecond.
    bool canZoomIn() const override;
    /// On a date-time scale the span must be below ten years of 365 days.
    bool canZoomOut() const override;

    void paint(AbstractChartSeries *series, QPainter &painter, QRectF const &rect,
               QTransform const &transform, QPalette const &palette, bool showLabels) override;

    /// A date-time label has two lines, local time over date, and whole seconds. A numeric one has
    /// one line in a box as high as two. A numeric axis without a step leaves \p text as it is.
    void valueTextAndRect(double value, QPainter const &painter, QString &text, QRectF &rect,
                          int precision) const override;

    void recalculateGridValues() override;

private:
    Label placedLabel(double value, double x, const QPainter &painter, const QRectF &frame) const;
    void paintTitle(const AbstractChartSeries &series, QPainter &painter, const QRectF &frame,
                    const QRectF &lastLabel, bool showLabels) const;
};
