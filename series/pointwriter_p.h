#pragma once

#include "series/chartpoint.h"
#include "series/curvestrokes_p.h"

#include <QVector>

#include <algorithm>

/**
 * Writes the points of a calculation, and enters the line through them into the strokes.
 *
 * The vector is filled in place: clearing and appending would destroy and construct every point by
 * itself, which takes longer than computing it. So it holds no result before finish().
 */
class PointWriter
{
public:
    /// Both are not owned. Begins after the first \p count points, which stay.
    PointWriter(QVector<ChartPoint> &points, CurveStrokes &strokes, int count = 0)
        : m_points(points)
        , m_strokes(strokes)
    {
        useStorage(count);
        if (count > 0) {
            takePixel(m_next[-1].x, m_next[-1].y);
        }
    }

    /// Appends a point unless the points end on its pixel.
    void addPoint(int x, int y, int state, double value, bool clipped)
    {
        if (x == m_lastX && y == m_lastY && !isEmpty()) {
            return;
        }
        ChartPoint &point = nextPoint();
        point.x = x;
        point.y = y;
        point.state = state;
        point.value = value;
        point.clipped = clipped;
        addToLine(x, y);
    }

    /// Whether addColumn() may follow: the points end on this pixel, a line may run on from there,
    /// and no pixel of its column is that of a gap marker.
    bool takesColumn(int x, int y) const
    {
        return m_isLineOpen && m_lastX == x && m_lastY == y && x != GapCoordinate;
    }

    /// The same as addPoint() for \p count samples on the column of the last point. takesColumn()
    /// must hold. \p rowOf gives the row of a value. Takes no decision that depends on the data.
    template <typename RowOf>
    void addColumn(const int *states, const double *values, int count, const RowOf &rowOf)
    {
        makeRoom(count);
        ChartPoint *point = m_next;
        int lastRow = m_lastY;
        for (int i = 0; i < count; ++i) {
            const int row = rowOf(values[i]);
            point->x = m_lastX;
            point->y = row;
            point->state = states[i];
            point->value = values[i];
            point->clipped = false;
            point += row != lastRow ? 1 : 0; // else it is written over, or left out at the end
            m_runTop = std::min(m_runTop, row);
            m_runBottom = std::max(m_runBottom, row);
            lastRow = row;
        }
        m_next = point;
        m_lastY = lastRow;
    }

    /// Appends a gap marker, unless there are no points or they end on one.
    void addGap()
    {
        if (isEmpty() || isGap(m_lastX, m_lastY)) {
            return;
        }
        const ChartPoint gap = ChartPoint::gap();
        nextPoint() = gap;
        addToLine(gap.x, gap.y);
    }

    /// Leaves what has been written, and nothing else, in the vector.
    void finish()
    {
        closeRun();
        m_points.resize(count());
    }

private:
    static constexpr int GrowthStep = 4096; // points

    static constexpr int GapCoordinate = -1;

    // A marker is known by its pixel alone. All bits of both are set in -1 and nowhere else.
    static bool isGap(int x, int y) { return (x & y) == GapCoordinate; }

    bool isEmpty() const { return m_next == m_begin; }
    int count() const { return int(m_next - m_begin); }

    ChartPoint &nextPoint()
    {
        makeRoom(1);
        return *m_next++;
    }

    void makeRoom(int more)
    {
        if (m_end - m_next < more) {
            grow();
        }
    }

    void grow()
    {
        const int written = count();
        m_points.resize(m_points.size() + GrowthStep);
        useStorage(written);
    }

    void useStorage(int written)
    {
        m_begin = m_points.data();
        m_next = m_begin + written;
        m_end = m_begin + m_points.size();
    }

    void addToLine(int x, int y)
    {
        if (m_isLineOpen && x == m_lastX && !isGap(x, y)) {
            m_lastY = y;
            m_runTop = std::min(m_runTop, y);
            m_runBottom = std::max(m_runBottom, y);
            return;
        }
        closeRun();
        if (m_isLineOpen && !isGap(x, y)) {
            // The point itself is written already.
            m_strokes.addSegment(count() - 2, m_lastX, m_lastY, x, y);
        }
        takePixel(x, y);
    }

    void takePixel(int x, int y)
    {
        m_lastX = x;
        m_lastY = y;
        m_runTop = y;
        m_runBottom = y;
        m_isLineOpen = !isGap(x, y);
    }

    void closeRun()
    {
        if (m_runTop < m_runBottom) {
            m_strokes.addRun(m_lastX, m_runTop, m_runBottom);
            m_runTop = m_runBottom;
        }
    }

    QVector<ChartPoint> &m_points;
    CurveStrokes &m_strokes;
    ChartPoint *m_begin = nullptr;
    ChartPoint *m_next = nullptr;
    ChartPoint *m_end = nullptr; ///< Of the points that exist in the vector.
    int m_lastX = 0;             ///< Pixel of the last point, if there is one.
    int m_lastY = 0;
    int m_runTop = 0; ///< Rows that the line has covered since it came into this column.
    int m_runBottom = 0;
    bool m_isLineOpen = false; ///< A line may run on from the last point.
};
