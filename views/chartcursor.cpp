#include "views/chartcursor.h"

#include "model/abstractchartmodel.h"
#include "views/cursorvalue.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace {

constexpr int Gap = 5;             // pixels: box to box, box to line, time label to frame
constexpr double FrameWidth = 2.0; // pixels
constexpr int TextAlignment = Qt::AlignHCenter | Qt::AlignVCenter;

// The lowest places that the boxes may have: one above the other from the foot of the frame.
void stackFromBelow(QList<CursorValue> &values, const QRectF &frame)
{
    double bottom = frame.y() + frame.height();
    for (CursorValue &value : values) {
        value.rect.moveBottom(int(bottom));
        bottom = value.rect.top() - Gap;
    }
}

// Lifts each box towards its point, but not onto the box above it nor beyond the frame. A box never
// moves down here, so a stack that is higher than the frame stays as it is.
void liftToPoints(QList<CursorValue> &values, const QRectF &frame)
{
    QRect previous;
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
        double target = std::max(frame.y(), value->y);
        if (previous.isValid()) {
            target = std::max(target, double(previous.bottom() + Gap));
        }
        if (value->rect.top() > target) {
            value->rect.moveTop(int(target));
        }
        previous = value->rect;
    }
}

} // namespace

ChartCursor::ChartCursor(AbstractChartModel *model)
    : m_model(model)
{
}

void ChartCursor::paint(QPainter &painter, QLineF const &line, QList<CursorValue> &values,
                        QRectF const &rect, bool showTime, QPalette const &palette)
{
    paintLine(painter, line);
    if (!values.isEmpty()) {
        stackFromBelow(values, rect);
        liftToPoints(values, rect);
        paintBoxes(painter, line, values);
    }
    if (showTime) {
        paintTimeLabel(painter, line, rect, palette);
    }
}

void ChartCursor::paintLine(QPainter &painter, const QLineF &line) const
{
    const QColor color = m_model ? m_model->m_settings.cursorLineColor : QColor();
    painter.setPen(color.isValid() ? color : ChartSettings::defaultCursorColor());
    painter.drawLine(line);
}

void ChartCursor::paintBoxes(QPainter &painter, const QLineF &line,
                             const QList<CursorValue> &values) const
{
    painter.setBrush(QBrush(Qt::darkGray, Qt::SolidPattern));
    for (const CursorValue &value : values) {
        QRectF box(value.rect);
        if (m_side == Left) {
            box.moveLeft(line.x1() - Gap - box.width());
        }
        painter.setPen(QPen(QBrush(value.frameColor, Qt::SolidPattern), FrameWidth, Qt::SolidLine,
                            Qt::SquareCap, Qt::BevelJoin));
        painter.drawRect(box);
        painter.setPen(value.textColor);
        painter.drawText(box, TextAlignment, value.text);
    }
}

void ChartCursor::paintTimeLabel(QPainter &painter, const QLineF &line, const QRectF &rect,
                                 const QPalette &palette)
{
    // The label stands above the frame, to which the series were clipped.
    painter.setClipping(false);
    painter.setPen(palette.brush(QPalette::Current, QPalette::WindowText).color());
    if (!m_timeRect.isValid()) {
        return;
    }
    const double width = m_timeRect.width();
    const double right = rect.x() + rect.width();
    m_timeRect.moveTo(line.x1() - 0.5 * width, rect.y() - Gap - m_timeRect.height());
    if (rect.x() > m_timeRect.x()) {
        m_timeRect.moveLeft(rect.x());
    } else if (m_timeRect.x() + width > right) {
        m_timeRect.moveLeft(right - width);
    }
    painter.drawText(m_timeRect, TextAlignment, m_timeText);
}
