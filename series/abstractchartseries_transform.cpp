#include "series/abstractchartseries.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/handover_p.h"
#include "series/pointthread.h"
#include "views/chartwidget.h"

namespace {

constexpr double SmallestDeterminant = 1e-12; // at or below it a transform has no usable inverse
constexpr double ZoomFactor = 10.0;           // of the one step that the tests of zooming try
constexpr int ExtraPrecisionLimit = 4;        // decimals beyond which labels of Y may not grow

/// The ranges of both axes, in data units.
struct DataRange
{
    double minX = 0.0;
    double maxX = 0.0;
    double minY = 0.0;
    double maxY = 0.0;
};

/// What \p pixels shows under a map whose inverse is given.
DataRange dataRange(const QTransform &inverse, const QRectF &pixels)
{
    const QRectF data = inverse.mapRect(pixels).normalized();
    return {data.left(), data.left() + data.width(), data.top(), data.top() + data.height()};
}

/// The map that carries the range onto the plot, the largest Y at the top.
QTransform plotTransform(const QRectF &plot, const DataRange &range)
{
    const double spanX = range.maxX - range.minX;
    const double spanY = range.maxY - range.minY;
    const double scaleX = spanX == 0.0 ? 1.0 : plot.width() / spanX;
    const double scaleY = spanY == 0.0 ? 1.0 : -plot.height() / spanY;
    return QTransform(scaleX, 0.0, 0.0, scaleY, plot.left() - range.minX * scaleX,
                      plot.top() - range.maxY * scaleY);
}

void setZoomedRange(ChartAxis *axis, double a, double b)
{
    if (!axis) {
        return;
    }
    axis->assignRange(a, b);
    axis->m_zoomed = true;
}

} // namespace

void AbstractChartSeries::updateMatrix(const QRectF &rect)
{
    const AxesLocker locker(m_model);
    if (!m_axisX || !m_axisY) {
        return;
    }
    setMatrix(
        plotTransform(rect, {m_axisX->m_min, m_axisX->m_max, m_axisY->m_min, m_axisY->m_max}));
}

QPointF AbstractChartSeries::map(const QPointF &point) const
{
    return m_matrix.map(point);
}

QLineF AbstractChartSeries::map(const QLineF &line) const
{
    return m_matrix.map(line);
}

QPointF AbstractChartSeries::mapInverted(const QPointF &point, bool *ok)
{
    const QTransform inverse = m_matrix.inverted(ok);
    return *ok ? inverse.map(point) : QPointF();
}

bool AbstractChartSeries::isInvertible(const QTransform &transform) const
{
    return !(qAbs(transform.determinant()) <= SmallestDeterminant);
}

void AbstractChartSeries::zoom(const QRectF &chartRect, const QRectF &zoomRect)
{
    Q_UNUSED(chartRect)
    bool ok = false;
    const QTransform inverse = m_matrix.inverted(&ok);
    if (!isInvertible(m_matrix) || !ok) {
        return;
    }
    const DataRange range = dataRange(inverse, zoomRect);
    const AxesLocker locker(m_model);
    setZoomedRange(m_axisX, range.minX, range.maxX);
    setZoomedRange(m_axisY, range.minY, range.maxY);
}

void AbstractChartSeries::zoomPending(const QRectF &chartRect, const QRectF &zoomRect)
{
    const QTransform base = m_pending.valid ? m_pending.transform : m_matrix;
    bool ok = false;
    const QTransform inverse = base.inverted(&ok);
    if (!isInvertible(base) || !ok) {
        return;
    }
    const DataRange range = dataRange(inverse, zoomRect);
    m_pending.valid = true;
    m_pending.transform = plotTransform(chartRect, range);
    m_pending.minX = range.minX;
    m_pending.maxX = range.maxX;
    m_pending.minY = range.minY;
    m_pending.maxY = range.maxY;
}

void AbstractChartSeries::setPendingParameters()
{
    if (!m_pending.valid) {
        return;
    }
    {
        const AxesLocker locker(m_model);
        setZoomedRange(m_axisX, m_pending.minX, m_pending.maxX);
        setZoomedRange(m_axisY, m_pending.minY, m_pending.maxY);
    }
    setMatrix(m_pending.transform);
    m_pending = PendingTransform();
}

QRectF AbstractChartSeries::visibleRect() const
{
    // Lines that leave the plot are cut off outside of it, so that they run on to its very edge.
    constexpr double Percent = 100.0;
    constexpr double MarginPercent = 0.98;

    const AxesLocker locker(m_model);
    if (!m_axisX || !m_axisY) {
        return QRectF();
    }
    const QRectF range = QRectF(m_axisX->m_min, m_axisY->m_min, m_axisX->m_max - m_axisX->m_min,
                                m_axisY->m_max - m_axisY->m_min)
                             .normalized();
    const double dx = range.width() / Percent * MarginPercent;
    const double dy = range.height() / Percent * MarginPercent;
    return QRectF(range.left() - dx, range.top() - dy, range.width() + dx + dx,
                  range.height() + dy + dy);
}

QRectF AbstractChartSeries::fullRect() const
{
    const AxesLocker locker(m_model);
    if (m_values.isEmpty() || !m_minValue || !m_maxValue) {
        return QRectF();
    }
    const ChartValue *first = m_values.first();
    const ChartValue *last = m_values.last();
    if (!first || !last) {
        return QRectF();
    }
    return QRectF(first->x, m_maxValue->y, last->x - first->x, m_minValue->y - m_maxValue->y)
        .normalized();
}

void AbstractChartSeries::updatePoints(const QRectF &rect)
{
    if (m_pointThread->isRunning()) {
        return;
    }
    takeOver(m_pointThread);
    QRectF clip;
    {
        // Held over both, so that no feeder moves an axis between the map and the clip.
        const AxesLocker locker(m_model);
        if (rect.width() > 0.0 && rect.height() > 0.0) {
            updateMatrix(rect);
        } else if (m_chart) {
            updateMatrix(m_chart->chartRect(QRectF()));
        }
        clip = visibleRect();
    }
    m_pointThread->startThread(clip);
}

bool AbstractChartSeries::canZoomOut()
{
    return staysInvertible(1.0 / ZoomFactor, 1.0 / ZoomFactor);
}

bool AbstractChartSeries::canZoomInX()
{
    return staysInvertible(ZoomFactor, 1.0);
}

bool AbstractChartSeries::canZoomInY()
{
    const AxesLocker locker(m_model);
    if (m_extraPrecision > ExtraPrecisionLimit || (m_axisY && !m_axisY->canZoomIn())) {
        return false;
    }
    return staysInvertible(1.0, ZoomFactor);
}

bool AbstractChartSeries::canZoomOutX()
{
    return staysInvertible(1.0 / ZoomFactor, 1.0);
}

bool AbstractChartSeries::canZoomOutY()
{
    return staysInvertible(1.0, 1.0 / ZoomFactor);
}

void AbstractChartSeries::setMatrix(const QTransform &matrix)
{
    m_matrix = matrix;
    m_matrix.type(); // computed and kept at the first call, which must not be the worker's
}

bool AbstractChartSeries::staysInvertible(double scaleX, double scaleY) const
{
    QTransform scaled = m_matrix;
    return isInvertible(scaled.scale(scaleX, scaleY));
}
