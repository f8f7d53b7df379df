#pragma once

#include "axes/chartaxis.h"

/**
 * The Y axis of one series.
 *
 * Grid values bracket the range: they may begin below it and always end above it. Its recalculation
 * also chooses the series' m_extraPrecision, so that labels differ, and sets m_size to the width of
 * the widest label or the title plus a font height.
 */
class QUARVCHART_EXPORT VerticalChartAxis : public ChartAxis
{
public:
    /// \p series is not owned and may be null: such an axis has a grid and no labels.
    explicit VerticalChartAxis(AbstractChartSeries *series);

    /// Paints nothing for a hidden series.
    void paint(AbstractChartSeries *series, QPainter &painter, QRectF const &rect,
               QTransform const &transform, QPalette const &palette, bool showLabels) override;

    void valueTextAndRect(double value, QPainter const &painter, QString &text, QRectF &rect,
                          int precision) const override;

    void recalculateGridValues() override;

    /// Whether two grid values print alike and one more decimal may still help: at most five do.
    bool needIncreasePrecision() const;

    AbstractChartSeries *m_series; ///< Not owned; null for an axis without labels.

private:
    Label placedLabel(double value, double y, const QPainter &painter, const QRectF &frame) const;
};
