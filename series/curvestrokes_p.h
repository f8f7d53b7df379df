#pragma once

#include <QLineF>
#include <QtGlobal>

#include <vector>

class QPainter;
class QRect;

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

    /// Whether paint() gives the pixels that drawing each segment by itself would give: a matter of
    /// the device, of the painter's state and its pen, and of how far the line reaches.
    bool canPaint(const QPainter &painter) const;

    /// Draws the line with the painter's pen, and leaves the painter as it was. canPaint() must
    /// hold. The time goes with the columns and with the pixels that the runs fill.
    void paint(QPainter &painter) const;

    /// Index of the first point of the first segment that crosses \p line; -1 if none does. \p line
    /// must be upright and at least a pixel long: then no run crosses it.
    int firstCrossing(const QLineF &line) const;

private:
    class Nib;
    class RowPainter;

    /// An end of a run.
    struct End
    {
        int y;
        int x;
    };

    qint64 reach() const;
    void joinRuns();
    void sortEnds();
    bool isCovered(const Segment &segment) const;
    bool covers(int x, int top, int bottom) const;
    bool isDense(const Nib &nib) const;
    void paintSegments(QPainter &painter, bool withCovered) const;
    void paintRuns(QPainter &painter) const;
    void paintRows(QPainter &painter, const Nib &nib, const QRect &device) const;

    std::vector<Run> m_runs;         ///< After finish() in the order of x, then top.
    std::vector<Segment> m_segments; ///< In the order of the points.
    std::vector<End> m_tops;         ///< Of the runs, from the highest on the screen.
    std::vector<End> m_bottoms;      ///< Of the runs, from the highest on the screen.
    qint64 m_reach = 0;              ///< The largest absolute coordinate.
    qint64 m_length = 0;             ///< Pixels of all runs together.
};
