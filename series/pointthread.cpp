#include "series/pointthread.h"

#include "series/abstractchartseries.h"
#include "series/curvestrokes_p.h"
#include "series/fastlineclip.h"
#include "series/handover_p.h"
#include "series/lockorder_p.h"

#include <iterator>

namespace {

ChartPoint pointAt(const QPointF &pixel, const ChartValue &value, bool clipped)
{
    ChartPoint point;
    point.x = qRound(pixel.x());
    point.y = qRound(pixel.y());
    point.state = value.state;
    point.value = value.y;
    point.clipped = clipped;
    return point;
}

bool onSamePixel(const ChartPoint &a, const ChartPoint &b)
{
    return a.x == b.x && a.y == b.y;
}

} // namespace

PointThread::PointThread(AbstractChartSeries *series, QObject *parent)
    : QThread(parent)
    , m_series(series)
    , m_strokes(std::make_unique<CurveStrokes>())
{
}

PointThread::~PointThread()
{
    stopThread();
}

void PointThread::startThread(const QRectF &rect)
{
    m_rect = rect;
    m_stop = false;
    start(QThread::NormalPriority);
}

bool PointThread::stopThread()
{
    LockOrder::expectNone(); // The worker may wait for any of them.
    m_stop = true;
    const bool ended = wait();
    takeOver(this);
    return ended;
}

/// Null if the points are not those of the last calculation, untouched.
const CurveStrokes *PointThread::strokes() const
{
    const bool isOwn = m_points.constData() == m_strokedPoints.constData();
    return m_pass > 0 && isOwn ? m_strokes.get() : nullptr;
}

void PointThread::run()
{
    if (!m_series) {
        return;
    }
    {
        const PointsLocker pointsLocker(&m_series->m_pointsMutex);
        const ValuesLocker valuesLocker(&m_series->m_valuesMutex);
        m_points.clear(); // keeps its capacity for the next calculation
        if (m_rect.width() > 0.0 && m_rect.height() > 0.0) {
            walkPairs();
        }
    }
    handOver(this);     // The map that was read belongs to the GUI thread again,
    handOver(thread()); // which gets finished().
}

void PointThread::walkPairs()
{
    FastLineClip clip;
    clip.xMin = m_rect.left();
    clip.xMax = m_rect.left() + m_rect.width();
    clip.yMin = m_rect.top();
    clip.yMax = m_rect.top() + m_rect.height();

    const auto end = m_series->m_values.constEnd();
    auto a = m_series->m_values.constBegin();
    if (a == end) {
        return;
    }
    for (auto b = std::next(a); b != end && !m_stop; a = b, ++b) {
        addPair(clip, *a, *b);
    }
}

void PointThread::addPair(FastLineClip &clip, const ChartValue *a, const ChartValue *b)
{
    if (!a || !b) {
        return;
    }
    if (m_series->isValid(a) && m_series->isValid(b)) {
        addSegment(clip, *a, *b);
        return;
    }
    addSinglePoint(a);
    addSinglePoint(b);
}

void PointThread::addSegment(FastLineClip &clip, const ChartValue &a, const ChartValue &b)
{
    double x1 = a.x;
    double y1 = a.y;
    double x2 = b.x;
    double y2 = b.y;
    if (clip.LineClip(&x1, &y1, &x2, &y2) != 1) {
        addGap();
        return;
    }
    const QLineF line = m_series->map(QLineF(x1, y1, x2, y2));
    const ChartPoint first = pointAt(line.p1(), a, clip.clipped0);
    const ChartPoint second = pointAt(line.p2(), b, clip.clipped1);
    if (onSamePixel(first, second)) {
        return;
    }
    addPoint(first);
    addPoint(second);
}

void PointThread::addSinglePoint(const ChartValue *value)
{
    if (!value) {
        return;
    }
    const QPointF position(value->x, value->y);
    if (m_series->isValid(value) && m_rect.contains(position)) {
        addPoint(pointAt(m_series->map(position), *value, false));
    } else {
        addGap();
    }
}

void PointThread::addPoint(const ChartPoint &point)
{
    if (!containsPoint(point)) {
        m_points.append(point);
    }
}

void PointThread::addGap()
{
    if (!m_points.isEmpty() && !m_points.constLast().isGap()) {
        m_points.append(ChartPoint::gap());
    }
}

bool PointThread::containsPoint(const ChartPoint &point) const
{
    return !m_points.isEmpty() && onSamePixel(m_points.constLast(), point);
}
