#include "series/abstractchartseries.h"

#include "series/curvestrokes_p.h"
#include "series/lockorder_p.h"
#include "series/pointthread.h"
#include "views/chartcursor.h"
#include "views/cursorvalue.h"

#include <QApplication>
#include <QBrush>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>

namespace {

constexpr double CursorGap = 5.0; // pixels between the cursor line and a read-out
constexpr int LogoLength = 40;    // pixels of the legend's line, at most

QPen linePen(const QColor &color, int width)
{
    QPen pen(color);
    pen.setWidth(width);
    return pen;
}

QLineF lineOnDevice(const ChartPoint &p, const ChartPoint &q, const QTransform &transform)
{
    const QLineF line(p.x, p.y, q.x, q.y);
    return transform.type() == QTransform::TxNone ? line : transform.map(line);
}

/// Whether the cursor line crosses the segment; neither may be without length.
bool crosses(const QLineF &line, const QLineF &cursorLine, QPointF &crossing)
{
    return !line.isNull() && line.intersects(cursorLine, &crossing) == QLineF::BoundedIntersection;
}

/// Index of the first point of the first segment that crosses the cursor line; -1 if none does.
int firstCrossing(const QVector<ChartPoint> &points, const QTransform &transform,
                  const QLineF &cursorLine)
{
    for (int i = 0; i + 1 < points.size(); ++i) {
        const ChartPoint &p = points.at(i);
        const ChartPoint &q = points.at(i + 1);
        QPointF crossing;
        if (!p.isGap() && !q.isGap() &&
            crosses(lineOnDevice(p, q, transform), cursorLine, crossing)) {
            return i;
        }
    }
    return -1;
}

/// Whether the cursor line is one that CurveStrokes takes: all of a pane's own are.
bool isUpright(const QLineF &line)
{
    return line.dx() == 0.0 && qAbs(line.dy()) >= 1.0;
}

QRectF sourceRect(const QImage &image)
{
    return QRectF(0.0, 0.0, image.width(), image.height());
}

} // namespace

void AbstractChartSeries::paint(QPainter &painter, const QRectF &rect, const QTransform &transform,
                                const QLineF &cursorLine, QList<CursorValue> &values,
                                ChartCursor *cursor)
{
    const PointsLocker locker(&m_pointsMutex);
    paintCurve(painter, transform);
    addReadOut(rect, transform, cursorLine, values, cursor);
}

void AbstractChartSeries::paintCurve(QPainter &painter, const QTransform &transform)
{
    painter.setPen(linePen(m_color, m_lineWidth));
    const bool hasSymbols = m_pointsVisible && !m_pointImage.isNull();
    const CurveStrokes *strokes = m_pointThread->strokes();
    if (strokes && !hasSymbols && transform.type() == QTransform::TxNone &&
        strokes->canPaint(painter)) {
        strokes->paint(painter);
        return;
    }
    const QVector<ChartPoint> &points = m_pointThread->m_points;
    for (int i = 0; i + 1 < points.size(); ++i) {
        const ChartPoint &p = points.at(i);
        const ChartPoint &q = points.at(i + 1);
        const QLineF line = lineOnDevice(p, q, transform);
        if (!p.isGap() && !q.isGap()) {
            painter.drawLines(&line, 1);
        }
        if (m_pointsVisible) {
            paintSymbols(painter, line, p, q);
        }
    }
}

void AbstractChartSeries::addReadOut(const QRectF &rect, const QTransform &transform,
                                     const QLineF &cursorLine, QList<CursorValue> &values,
                                     ChartCursor *cursor)
{
    if (cursorLine.isNull()) {
        return;
    }
    const QVector<ChartPoint> &points = m_pointThread->m_points;
    const CurveStrokes *strokes = m_pointThread->strokes();
    const bool byStrokes =
        strokes && transform.type() == QTransform::TxNone && isUpright(cursorLine);
    const int index = byStrokes ? strokes->firstCrossing(cursorLine)
                                : firstCrossing(points, transform, cursorLine);
    if (index < 0) {
        return;
    }
    const ChartPoint &p = points.at(index);
    const ChartPoint &q = points.at(index + 1);
    const QLineF line = lineOnDevice(p, q, transform);
    QPointF crossing;
    line.intersects(cursorLine, &crossing);
    values.append(readOut(line, crossing, p, q, cursor->m_position));
    if (values.constLast().rect.right() > rect.left() + rect.width()) {
        cursor->m_side = ChartCursor::Left;
    }
}

/// Changes whenever the curve does; nothing for points that are not the worker's own.
std::optional<quint64> AbstractChartSeries::curveStamp() const
{
    return m_pointThread->strokes() ? std::make_optional(m_pointThread->m_pass) : std::nullopt;
}

/// The box of the end that lies nearer to the crossing; of two at one distance, of the first.
CursorValue AbstractChartSeries::readOut(const QLineF &line, const QPointF &crossing,
                                         const ChartPoint &p, const ChartPoint &q,
                                         double cursorPosition)
{
    const QFontMetrics metrics(QApplication::font());
    const bool atFirst = qAbs(crossing.x() - line.x2()) >= qAbs(crossing.x() - line.x1());
    const ChartPoint &sample = atFirst ? p : q;
    const double pointY = atFirst ? line.y1() : line.y2();

    CursorValue value;
    value.text = QString(" %1 ").arg(stringValue(sample.value));
    const int height = metrics.height();
    const int width = metrics.horizontalAdvance(value.text);
    const int left = int(cursorPosition + CursorGap);
    const int top = int(pointY);
    // The second corner lies above the first; both belong to the box, which therefore stands on the
    // point and is two pixels higher than the text.
    value.rect = QRect(QPoint(left, top), QPoint(left + width - 1, top - height - 1)).normalized();
    value.frameColor = m_color;
    value.textColor = textColor(sample.state);
    value.y = pointY;
    value.pointY = pointY;
    return value;
}

/// A point between two lines gets its symbol twice, which shows no difference. Ends that the
/// clipper made get none.
void AbstractChartSeries::paintSymbols(QPainter &painter, const QLineF &line, const ChartPoint &p,
                                       const ChartPoint &q)
{
    if (!p.isGap() && !p.clipped) {
        paintPointImage(painter, QPoint(qRound(line.x1()), qRound(line.y1())));
    }
    if (!q.isGap() && !q.clipped) {
        paintPointImage(painter, QPoint(qRound(line.x2()), qRound(line.y2())));
    }
}

void AbstractChartSeries::paintPointImage(QPainter &painter, const QPoint &point)
{
    if (m_pointImage.isNull()) {
        return;
    }
    const double width = m_pointImage.width();
    const double height = m_pointImage.height();
    const QRectF target(point.x() - width * 0.5, point.y() - height * 0.5, width, height);
    painter.drawImage(target, m_pointImage, sourceRect(m_pointImage), Qt::AutoColor);
}

void AbstractChartSeries::paintLogo(QPainter *painter, const QRect &rect)
{
    painter->save();
    painter->setPen(linePen(m_color, m_lineWidth));
    const int centerX = (rect.left() + rect.right()) / 2;
    const int centerY = (rect.top() + rect.bottom()) / 2;
    const int half = qMin(rect.width(), LogoLength) / 2;
    painter->drawLine(centerX - half, centerY, centerX + half, centerY);
    if (m_pointsVisible && !m_pointImage.isNull()) {
        // right() and bottom() are one less than the ends: halves of an even size round down.
        const QRect image = m_pointImage.rect();
        const int left = centerX - (image.right() - image.left()) / 2;
        const int top = centerY - (image.bottom() - image.top()) / 2;
        painter->setBrush(QBrush(m_color, Qt::SolidPattern));
        painter->drawImage(QRectF(left, top, image.width(), image.height()), m_pointImage,
                           sourceRect(m_pointImage));
    }
    painter->restore();
}

void AbstractChartSeries::updatePointImage()
{
    m_pointImage = QImage(m_pointSize, m_pointSize, QImage::Format_ARGB32_Premultiplied);
    if (m_pointImage.isNull()) {
        return; // a size that a settings file has made 0 or less: no symbols
    }
    m_pointImage.fill(0);
    // Without antialiasing, and one pixel smaller than the image for the pen.
    QPainter painter(&m_pointImage);
    painter.setPen(m_color);
    painter.setBrush(QBrush(m_color, Qt::SolidPattern));
    painter.drawEllipse(m_pointImage.rect().adjusted(0, 0, -1, -1));
}

void AbstractChartSeries::setPointSize(int size)
{
    if (size <= 1) {
        return;
    }
    m_pointSize = size;
    updatePointImage();
}

void AbstractChartSeries::restoreDefault()
{
    if (m_colorIndex >= 0 && m_colorIndex < SeriesColorCount) {
        m_color = m_defaults.colors[m_colorIndex];
    }
    m_customized = false;
    m_lineWidth = m_defaults.lineWidth;
    m_pointsVisible = m_defaults.pointsVisible;
    m_pointSize = m_defaults.pointsSize;
    updatePointImage();
}
