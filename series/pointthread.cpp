#include "series/pointthread.h"

#include "series/abstractchartseries.h"
#include "series/curvestrokes_p.h"
#include "series/handover_p.h"
#include "series/lockorder_p.h"
#include "series/pointwalk_p.h"
#include "series/pointwriter_p.h"

namespace {

/// A number that no other calculation of the process has.
quint64 newPass()
{
    static std::atomic<quint64> passes{0};
    return ++passes;
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
        calculate();
    }
    handOver(this);     // The map that was read belongs to the GUI thread again,
    handOver(thread()); // which gets finished().
}

void PointThread::calculate()
{
    m_strokedPoints = QVector<ChartPoint>(); // From now on m_points is written to.
    m_strokes->clear();
    giveBackCapacity();
    PointWriter writer(m_points, *m_strokes);
    if (m_rect.width() > 0.0 && m_rect.height() > 0.0) {
        PointWalk walk(*m_series, m_rect, writer, m_stop);
        SampleIndex &index = *m_series->m_index;
        if (walk.canUseIndex() && index.update()) {
            walk.walkBy(index);
        } else {
            walk.walkAll();
        }
    }
    writer.finish();
    m_strokes->finish();
    m_strokedPoints = m_points;
    m_pass = newPass();
}

/// A view that was crowded once need not hold its memory for ever; but what the last calculations
/// have needed is kept, so that a user who zooms in and out again does not wait for the system.
void PointThread::giveBackCapacity()
{
    constexpr int Period = 32; // calculations
    m_mostPoints = std::max(m_mostPoints, m_points.size());
    if (++m_calculations % Period != 0) {
        return;
    }
    if (m_points.capacity() / 2 > m_mostPoints) {
        m_points = QVector<ChartPoint>();
        m_points.reserve(m_mostPoints);
        m_strokes = std::make_unique<CurveStrokes>();
    }
    m_mostPoints = 0;
}

void PointThread::addSinglePoint(const ChartValue *value)
{
    if (!value || !m_series) {
        return;
    }
    CurveStrokes unused;
    PointWriter writer(m_points, unused, m_points.size());
    PointWalk(*m_series, m_rect, writer, m_stop).addSinglePoint(*value);
    writer.finish();
}

bool PointThread::containsPoint(const ChartPoint &point) const
{
    if (m_points.isEmpty()) {
        return false;
    }
    const ChartPoint &last = m_points.constLast();
    return last.x == point.x && last.y == point.y;
}
