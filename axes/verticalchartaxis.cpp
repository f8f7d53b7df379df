#include "axes/verticalchartaxis.h"

#include "series/abstractchartseries.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace {

constexpr int MaximumExtraPrecision = 5; // decimals
constexpr double LabelGap = 5.0;         // pixels between a label and the frame right of it

constexpr int LabelAlignment = Qt::AlignRight | Qt::AlignVCenter;

// Values ascend and the screen's y runs downward: a label must end above the one drawn before it.
bool collides(const QRectF &label, const QRectF &previous)
{
    return previous.isValid() && previous.y() <= label.y() + label.height();
}

} // namespace

VerticalChartAxis::VerticalChartAxis(AbstractChartSeries *series)
    : m_series(series)
{
}

void VerticalChartAxis::paint(AbstractChartSeries *series, QPainter &painter, QRectF const &rect,
                              QTransform const &transform, QPalette const &palette, bool showLabels)
{
    if (!series || !series->m_visible) {
        return;
    }
    const QPen linePen = gridPen(palette);
    const QPen textPen(series->m_color);
    painter.setPen(textPen);
    painter.drawText(QRectF(0.0, 0.0, rect.x() - LabelGap, rect.y()), LabelAlignment,
                     series->labelY());
    const double right = rect.x() + rect.width();
    const double bottom = rect.y() + rect.height();
    QRectF lastLabel;
    for (const double value : qAsConst(m_gridValues)) {
        const double y = devicePosition(*series, value, transform).y();
        const bool isInside = y > rect.y() && y < bottom;
        if (!isInside) {
            continue;
        }
        painter.setPen(linePen);
        painter.drawLine(QLineF(rect.x(), y, right, y));
        if (!showLabels) {
            continue;
        }
        const Label label = placedLabel(value, y, painter, rect);
        if (!label.box.isValid() || collides(label.box, lastLabel)) {
            continue;
        }
        painter.setPen(textPen);
        painter.drawText(label.box, LabelAlignment, label.text);
        lastLabel = label.box;
    }
}

ChartAxis::Label VerticalChartAxis::placedLabel(double value, double y, const QPainter &painter,
                                                const QRectF &frame) const
{
    Label label = measuredLabel(value, painter);
    // Half a line is a whole number of pixels.
    const int halfLine = painter.fontMetrics().height() / 2;
    const double top = y + halfLine - label.box.height();
    label.box.moveTo(frame.x() - LabelGap - label.box.width(), std::max(top, frame.y()));
    return label;
}

void VerticalChartAxis::valueTextAndRect(double value, QPainter const &painter, QString &text,
                                         QRectF &rect, int) const
{
    text = m_series ? m_series->scaleString(value) : QString();
    const QFontMetrics metrics = painter.fontMetrics();
    rect = QRectF(0.0, 0.0, metrics.horizontalAdvance(text), metrics.height());
}

void VerticalChartAxis::recalculateGridValues()
{
    m_gridValues.clear();
    m_step = gridStep();
    if (m_step == 0.0) {
        return;
    }
    // The value above the range is never painted, but its label counts below.
    m_gridValues.append(appendGridValues(firstGridValue(std::floor)));
    if (!m_series) {
        return;
    }
    m_series->m_extraPrecision = 0;
    while (needIncreasePrecision()) {
        ++m_series->m_extraPrecision;
    }
    const QFontMetrics metrics(QApplication::font());
    int width = metrics.horizontalAdvance(m_series->labelY());
    for (const double value : qAsConst(m_gridValues)) {
        width = std::max(width, metrics.horizontalAdvance(m_series->scaleString(value)));
    }
    m_size = width + metrics.height();
}

bool VerticalChartAxis::needIncreasePrecision() const
{
    if (!m_series || m_series->m_extraPrecision >= MaximumExtraPrecision) {
        return false;
    }
    QStringList texts;
    for (const double value : m_gridValues) {
        const QString text = m_series->scaleString(value);
        if (texts.contains(text)) {
            return true;
        }
        texts.append(text);
    }
    return false;
}
