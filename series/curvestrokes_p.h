#pragma once

#include <QLineF>

#include <vector>

class QPainter;

/**
 * What the line of a series comes to on the screen: as many strokes as the plot has columns, and
 * not as many as there are points.
 *
 * The worker enters the line while it makes the points. Neighbouring segments that run up and down
 * in one column become one run from the highest to the lowest pixel; all other segments stay as
 * they are. An opaque line of the painter's own pixels is the same pixel for pixel, whichever way
 * it is drawn: all strokes have one colour, so that their order does not show.
 *
 * Coordinates are pane pixels. Guarded by the series' m_pointsMutex.
 */
class CurveStrokes
{
public:
    /// The pixels of one column from top to bottom, both included; top is less than bottom.
    struct Run
    {
        int x;
        int top;
        int bottom;
    };

    /// The line between two points that lie in different columns.
    struct Segment
    {
        int index; ///< Of the first of the two points.
        int x1;
        int y1;
        int x2;
        int y2;
        bool isCovered; ///< Adds no pixel to those of the runs.
    };

    void clear();

    /// Worker; calculation only.
    void addRun(int x, int top, int bottom) { m_runs.push_back({x, top, bottom}); }

    /// Worker; calculation only. The points must lie in different columns.
    void addSegment(int index, int x1, int y1, int x2, int y2)
    {
        m_segments.push_back({index, x1, y1, x2, y2, false});
    }

    /// Brings the runs in order, joins those that meet, and finds the segments that they cover. To
    /// be called when the whole line is entered.
    void finish();

    /// Whether paint() gives the pixels that drawing each segment by itself would give.
    bool canPaint(const QPainter &painter) const;

    /// Draws the line with the painter's pen. canPaint() must hold.
    void paint(QPainter &painter) const;

    /// Index of the first point of the first segment that crosses \p line; -1 if none does. \p line
    /// must be upright and not null: then no run crosses it.
    int firstCrossing(const QLineF &line) const;

private:
    std::vector<Run> m_runs;
    std::vector<Segment> m_segments; ///< In the order of the points.
};
