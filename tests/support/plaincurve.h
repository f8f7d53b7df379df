#pragma once

#include "series/abstractchartseries.h"
#include "series/pointthread.h"
#include "views/chartcursor.h"
#include "views/cursorvalue.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>

/// A series painted in the obvious way, segment by segment: what every faster way is to give.
class PlainCurve
{
public:
    PlainCurve(AbstractChartSeries &series, const QTransform &transform = QTransform())
        : m_series(series)
        , m_transform(transform)
    {
    }

    /// Line and symbols.
    void draw(QPainter &painter) const
    {
        QPen pen(m_series.m_color);
        pen.setWidth(m_series.m_lineWidth);
        painter.setPen(pen);
        const QVector<ChartPoint> &points = m_series.m_pointThread->m_points;
        for (int i = 0; i + 1 < points.size(); ++i) {
            const ChartPoint &p = points.at(i);
            const ChartPoint &q = points.at(i + 1);
            const QLineF line = lineOf(p, q);
            if (!p.isGap() && !q.isGap()) {
                painter.drawLines(&line, 1);
            }
            drawSymbol(painter, p, line.p1());
            drawSymbol(painter, q, line.p2());
        }
    }

    /// The read-out at the cursor line.
    void read(const QRectF &plot, const QLineF &cursorLine, QList<CursorValue> &values,
              ChartCursor &cursor) const
    {
        const QVector<ChartPoint> &points = m_series.m_pointThread->m_points;
        for (int i = 0; i + 1 < points.size(); ++i) {
            const ChartPoint &p = points.at(i);
            const ChartPoint &q = points.at(i + 1);
            const QLineF line = lineOf(p, q);
            QPointF crossing;
            if (p.isGap() || q.isGap() || line.isNull() || cursorLine.isNull() ||
                line.intersects(cursorLine, &crossing) != QLineF::BoundedIntersection) {
                continue;
            }
            const bool atFirst = qAbs(crossing.x() - line.x2()) >= qAbs(crossing.x() - line.x1());
            values.append(atFirst ? box(p, line.y1(), cursor) : box(q, line.y2(), cursor));
            if (values.constLast().rect.right() > plot.left() + plot.width()) {
                cursor.m_side = 1;
            }
            return;
        }
    }

private:
    QLineF lineOf(const ChartPoint &p, const ChartPoint &q) const
    {
        return m_transform.map(QLineF(p.x, p.y, q.x, q.y));
    }

    void drawSymbol(QPainter &painter, const ChartPoint &point, const QPointF &place) const
    {
        if (m_series.m_pointsVisible && !point.isGap() && !point.clipped) {
            m_series.paintPointImage(painter, QPoint(qRound(place.x()), qRound(place.y())));
        }
    }

    CursorValue box(const ChartPoint &sample, double y, const ChartCursor &cursor) const
    {
        const QFontMetrics metrics(QApplication::font());
        CursorValue value;
        value.text = QString(" %1 ").arg(m_series.stringValue(sample.value));
        const int left = int(cursor.m_position + 5.0);
        const int right = left + metrics.horizontalAdvance(value.text) - 1;
        value.rect =
            QRect(QPoint(left, int(y)), QPoint(right, int(y) - metrics.height() - 1)).normalized();
        value.frameColor = m_series.m_color;
        value.textColor = m_series.textColor(sample.state);
        value.y = y;
        value.pointY = y;
        return value;
    }

    AbstractChartSeries &m_series;
    const QTransform m_transform;
};
