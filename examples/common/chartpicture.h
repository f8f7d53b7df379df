#pragma once

#include <QSize>

class MultiChart;
class QPainter;

/**
 * What a MultiChart shows as one picture: its panes from top to bottom, as high as on the screen,
 * and one legend of the visible series under them.
 *
 * In pixels of the screen, whatever the device: one that is finer than the screen is given a scale
 * by the caller. The chart must live as long as the picture.
 */
class ChartPicture
{
public:
    explicit ChartPicture(const MultiChart &chart);

    /// Empty if the chart shows no pane.
    QSize size() const;

    /// Paints from (0, 0) to size(). Waits for running calculations. The painter is restored.
    void paint(QPainter &painter) const;

private:
    const MultiChart &m_chart;
};
