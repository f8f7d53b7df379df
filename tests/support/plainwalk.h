#pragma once

#include "series/abstractchartseries.h"
#include "series/chartpoint.h"
#include "series/fastlineclip.h"

#include <QLineF>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <QVector>

/// The calculation of the points once more, as plainly as possible: pair by pair, from all samples.
class PlainWalk
{
public:
    /// The points of the whole store.
    static QVector<ChartPoint> points(const AbstractChartSeries &series, const QRectF &window)
    {
        return points(series, window, series.m_values.size());
    }

    /// The points of the first \p count samples.
    static QVector<ChartPoint> points(const AbstractChartSeries &series, const QRectF &window,
                                      int count)
    {
        PlainWalk walk(series, window);
        const ChartValue *previous = nullptr;
        for (const ChartValue *value : series.m_values) {
            if (count-- == 0) {
                break;
            }
            if (previous && value) {
                walk.addPair(*previous, *value);
            }
            previous = value;
        }
        return walk.m_points;
    }

private:
    PlainWalk(const AbstractChartSeries &series, const QRectF &window)
        : m_series(series)
        , m_window(window)
    {
    }

    void addPair(const ChartValue &a, const ChartValue &b)
    {
        if (!m_series.isValid(&a) || !m_series.isValid(&b)) {
            addSingle(a);
            addSingle(b);
            return;
        }
        FastLineClip clip;
        clip.xMin = m_window.left();
        clip.xMax = m_window.left() + m_window.width();
        clip.yMin = m_window.top();
        clip.yMax = m_window.top() + m_window.height();
        double x1 = a.x;
        double y1 = a.y;
        double x2 = b.x;
        double y2 = b.y;
        if (clip.LineClip(&x1, &y1, &x2, &y2) != 1) {
            addGap();
            return;
        }
        const QLineF line = m_series.m_matrix.map(QLineF(x1, y1, x2, y2));
        const QPoint first(qRound(line.x1()), qRound(line.y1()));
        const QPoint second(qRound(line.x2()), qRound(line.y2()));
        if (first != second) {
            add(first, a, clip.clipped0);
            add(second, b, clip.clipped1);
        }
    }

    void addSingle(const ChartValue &value)
    {
        const QPointF place(value.x, value.y);
        if (!m_series.isValid(&value) || !m_window.contains(place)) {
            addGap();
            return;
        }
        const QPointF pixel = m_series.m_matrix.map(place);
        add(QPoint(qRound(pixel.x()), qRound(pixel.y())), value, false);
    }

    void add(const QPoint &pixel, const ChartValue &value, bool clipped)
    {
        if (!m_points.isEmpty() && m_points.last().x == pixel.x() &&
            m_points.last().y == pixel.y()) {
            return;
        }
        ChartPoint point;
        point.x = pixel.x();
        point.y = pixel.y();
        point.state = value.state;
        point.value = value.y;
        point.clipped = clipped;
        m_points.append(point);
    }

    void addGap()
    {
        if (!m_points.isEmpty() && !m_points.last().isGap()) {
            m_points.append(ChartPoint::gap());
        }
    }

    const AbstractChartSeries &m_series;
    const QRectF m_window;
    QVector<ChartPoint> m_points;
};

/// Whether both are the same in all fields.
inline bool arePointsEqual(const QVector<ChartPoint> &a, const QVector<ChartPoint> &b)
{
    const auto isEqual = [](const ChartPoint &p, const ChartPoint &q) {
        return p.x == q.x && p.y == q.y && p.state == q.state && p.value == q.value &&
               p.clipped == q.clipped;
    };
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), isEqual);
}

/// All fields of a point, for a message.
inline QString fullText(const ChartPoint &point)
{
    return QString("(%1 %2 %3 %4 %5)")
        .arg(point.x)
        .arg(point.y)
        .arg(point.state)
        .arg(point.value)
        .arg(point.clipped);
}

/// The same of all points.
inline QString fullText(const QVector<ChartPoint> &points)
{
    QString text;
    for (const ChartPoint &point : points) {
        text += fullText(point);
    }
    return text;
}
