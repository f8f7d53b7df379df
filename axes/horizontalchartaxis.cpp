#include "axes/horizontalchartaxis.h"

#include "series/abstractchartseries.h"

#include <QApplication>
#include <QDateTime>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace {

constexpr double MinimumDateTimeSpan = 0.001;       // seconds
constexpr double MaximumDateTimeSpan = 315360000.0; // seconds: ten years of 365 days

constexpr int LabelLines = 2;     // time over date
constexpr int LabelMargin = 10;   // pixels that the strip exceeds the label by
constexpr double LabelGap = 5.0;  // pixels between the frame and a label below it
constexpr double TitleGap = 10.0; // pixels between the frame and the title right of it

constexpr int LabelAlignment = Qt::AlignHCenter | Qt::AlignVCenter;

QColor textColor(const QPalette &palette)
{
    return palette.brush(QPalette::Current, QPalette::WindowText).color();
}

// The second that a date label shows, as 32 bits hold it: values outside wrap around. The fraction
// is dropped, so that a label always shows a whole second.
qint64 labelSecond(double value)
{
    constexpr double Wrap = 4294967296.0; // 2^32
    if (!std::isfinite(value)) {
        return 0;
    }
    const double second = std::fmod(std::trunc(value), Wrap);
    return qint64(second < 0.0 ? second + Wrap : second);
}

// Decimals that a step below 1 needs: one for 0.1 and 0.2, two for 0.01 and 0.02, and so on.
int stepDecimals(double step)
{
    return step < 1.0 ? int(std::abs(std::log10(step)) + 0.5) : 0;
}

bool collides(const QRectF &label, const QRectF &previous)
{
    return previous.isValid() && label.x() <= previous.x() + previous.width();
}

} // namespace

HorizontalChartAxis::HorizontalChartAxis()
{
    m_size = LabelLines * QFontMetrics(QApplication::font()).height() + LabelMargin;
}

bool HorizontalChartAxis::canZoomIn() const
{
    return m_dateTime ? m_max - m_min > MinimumDateTimeSpan : ChartAxis::canZoomIn();
}

bool HorizontalChartAxis::canZoomOut() const
{
    return m_dateTime ? m_max - m_min < MaximumDateTimeSpan : ChartAxis::canZoomOut();
}

void HorizontalChartAxis::paint(AbstractChartSeries *series, QPainter &painter, QRectF const &rect,
                                QTransform const &transform, QPalette const &palette,
                                bool showLabels)
{
    if (!series) {
        return;
    }
    const QPen linePen = gridPen(palette);
    const QPen textPen(textColor(palette));
    QRectF lastLabel;
    for (const double value : qAsConst(m_gridValues)) {
        const double x = devicePosition(*series, value, transform).x();
        painter.setPen(linePen);
        painter.drawLine(QLineF(x, rect.y(), x, rect.y() + rect.height()));
        if (!showLabels) {
            continue;
        }
        const Label label = placedLabel(value, x, painter, rect);
        if (!label.box.isValid() || collides(label.box, lastLabel)) {
            continue;
        }
        painter.setPen(textPen);
        painter.drawText(label.box, LabelAlignment, label.text);
        lastLabel = label.box;
    }
    painter.setPen(textPen);
    paintTitle(*series, painter, rect, lastLabel, showLabels);
}

ChartAxis::Label HorizontalChartAxis::placedLabel(double value, double x, const QPainter &painter,
                                                  const QRectF &frame) const
{
    Label label = measuredLabel(value, painter);
    const double left = x - 0.5 * label.box.width();
    const double rightmost = frame.x() + frame.width() - label.box.width();
    label.box.moveTo(std::min(left, rightmost), frame.y() + frame.height() + LabelGap);
    return label;
}

void HorizontalChartAxis::paintTitle(const AbstractChartSeries &series, QPainter &painter,
                                     const QRectF &frame, const QRectF &lastLabel,
                                     bool showLabels) const
{
    // A date-time title stands level with the labels, so it appears only where they do.
    if (!showLabels && m_dateTime) {
        return;
    }
    const QString title = series.labelX();
    const QFontMetrics metrics = painter.fontMetrics();
    const double bottom = frame.y() + frame.height();
    QRectF box(frame.x() + frame.width() + TitleGap, showLabels ? bottom + LabelGap : bottom,
               metrics.horizontalAdvance(title), metrics.height());
    if (lastLabel.isValid()) {
        box.moveTop(lastLabel.y());
        box.setHeight(lastLabel.height());
    }
    painter.drawText(box, LabelAlignment, title);
}

void HorizontalChartAxis::valueTextAndRect(double value, QPainter const &painter, QString &text,
                                           QRectF &rect, int precision) const
{
    const QFontMetrics metrics = painter.fontMetrics();
    if (m_dateTime) {
        const QDateTime moment = QDateTime::fromSecsSinceEpoch(labelSecond(value));
        const QString timeText = moment.time().toString(QStringLiteral("hh:mm:ss"));
        const QString dateText = moment.date().toString(QStringLiteral("dd.MM.yyyy"));
        rect.setWidth(
            std::max(metrics.horizontalAdvance(timeText), metrics.horizontalAdvance(dateText)));
        text = QStringLiteral("%1\n%2").arg(timeText, dateText);
    } else if (m_step > 0.0) {
        text = QString::number(value, 'f', precision + stepDecimals(m_step));
        rect = QRectF(0.0, 0.0, metrics.horizontalAdvance(text), metrics.height());
    }
    // Numbers get two lines as well, so that the strip does not change with the scale.
    rect.setHeight(LabelLines * metrics.height());
}

void HorizontalChartAxis::recalculateGridValues()
{
    m_gridValues.clear();
    m_step = gridStep();
    if (m_step == 0.0) {
        return;
    }
    appendGridValues(firstGridValue(std::ceil));
}
