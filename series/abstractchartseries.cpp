#include "series/abstractchartseries.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/pointthread.h"
#include "series/sampleindex_p.h"
#include "series/seriesregistry_p.h"

#include <QDateTime>

AbstractChartSeries::AbstractChartSeries()
    : m_lineWidth(SeriesSettings::defaultLineWidth())
    , m_pointsVisible(SeriesSettings::defaultPointsVisible())
    , m_pointSize(SeriesSettings::defaultPointsSize())
{
    m_axisY = new VerticalChartAxis(this);
    m_pointThread = new PointThread(this);
    connect(m_pointThread, SIGNAL(finished()), this, SIGNAL(updatePointsFinished()));
    SeriesRegistry::instance().enter(this);
}

AbstractChartSeries::~AbstractChartSeries()
{
    // The worker first: it may hold m_valuesMutex, for which a feeder waits that leave() waits for.
    m_pointThread->stopThread();
    SeriesRegistry::instance().leave(this);
    delete m_pointThread;
    qDeleteAll(m_values);
    m_values.clear();
    delete m_axisY;
}

void *AbstractChartSeries::operator new(std::size_t size)
{
    return ::operator new(size);
}

void *AbstractChartSeries::operator new(std::size_t size, const std::nothrow_t &tag) noexcept
{
    return ::operator new(size, tag);
}

void AbstractChartSeries::operator delete(void *memory)
{
    SeriesRegistry::instance().retire(memory);
}

bool AbstractChartSeries::isValid(const ChartValue *value) const
{
    return value && qIsFinite(value->y) && qIsFinite(value->x);
}

QString AbstractChartSeries::stringValue(double value) const
{
    return QString::number(value, format(), precision());
}

QString AbstractChartSeries::scaleString(double value) const
{
    return QString::number(value, format(), precision() + m_extraPrecision);
}

QString AbstractChartSeries::name() const
{
    return m_name;
}

void AbstractChartSeries::setName(const QString &name)
{
    m_name = name;
}

QString AbstractChartSeries::labelY() const
{
    return QString();
}

QString AbstractChartSeries::labelX() const
{
    const AxesLocker locker(m_model);
    return m_axisX && m_axisX->m_dateTime ? tr("Time") : QString();
}

void AbstractChartSeries::addValues(const QList<ChartValue *> &values)
{
    for (ChartValue *value : values) {
        appendValue(value);
    }
}

void AbstractChartSeries::insertValues(QQueue<ChartValue *> &values)
{
    if (values.isEmpty()) {
        return;
    }
    if (m_values.isEmpty() || descends()) {
        appendAll(values);
        return;
    }
    mergeValues(values);
    appendAll(values);
    restoreExtremes();
}

bool AbstractChartSeries::removeOldValues()
{
    constexpr double MillisecondsPerSecond = 1000.0;
    const QDateTime clock = QDateTime::currentDateTime();
    const double now =
        double(clock.toSecsSinceEpoch()) + clock.time().msec() / MillisecondsPerSecond;
    const QRectF visible = visibleRect();
    bool changed = false;

    for (auto node = m_values.begin(); node != m_values.end();) {
        ChartValue *value = *node;
        const bool due = value && now >= value->expireTime;
        if (due && !isValid(value)) {
            forgetExtreme(value);
            delete value;
            node = m_values.erase(node);
            continue;
        }
        if (due && blankValue(value, visible)) {
            changed = true;
        }
        ++node;
    }
    return restoreExtremes() || changed;
}

void AbstractChartSeries::recalculateMinMax()
{
    m_minValue = nullptr;
    m_maxValue = nullptr;
    for (ChartValue *value : qAsConst(m_values)) {
        if (value) {
            updateExtremes(value);
        }
    }
}

void AbstractChartSeries::setAutoScale(bool on)
{
    const AxesLocker locker(m_model);
    if (m_axisY) {
        m_axisY->m_autoScale = on;
    }
}

void AbstractChartSeries::appendValue(ChartValue *value)
{
    if (!value) {
        return;
    }
    m_values.append(value);
    updateExtremes(value);
}

void AbstractChartSeries::appendAll(QQueue<ChartValue *> &values)
{
    addValues(values);
    values.clear();
}

/// Whether the ends of the store lie in descending order, so that a merge makes no sense.
bool AbstractChartSeries::descends() const
{
    const ChartValue *first = m_values.first();
    const ChartValue *last = m_values.last();
    return first && last && first->x > last->x;
}

/// Takes from the queue what lies before the end of the store; leaves the rest in it.
void AbstractChartSeries::mergeValues(QQueue<ChartValue *> &values)
{
    auto cursor = m_values.begin();
    while (cursor != m_values.end() && !values.isEmpty()) {
        ChartValue *head = values.head();
        if (!head) {
            values.removeFirst();
            continue;
        }
        // Written so that an X that is NaN, on either side, moves on.
        const bool reached = *cursor && (*cursor)->x >= head->x;
        if (!reached) {
            ++cursor;
            continue;
        }
        values.removeFirst();
        if ((*cursor)->x == head->x) {
            replaceRecord(*cursor, head);
        } else {
            cursor = m_values.insert(cursor, head);
            updateExtremes(head);
        }
    }
}

/// Gives the stored record the contents of the taken one. An extreme that loses its value is found
/// anew at the end of the merge; a record that was none stays none, even if its new Y lies beyond
/// the extremes. That is wanted: they stay as they are until the next rescan.
void AbstractChartSeries::replaceRecord(ChartValue *stored, ChartValue *taken)
{
    forgetExtreme(stored);
    *stored = *taken;
    delete taken;
}

/// Of several samples with the same Y, the one entered last is the extreme.
void AbstractChartSeries::updateExtremes(ChartValue *value)
{
    if (!isValid(value)) {
        return;
    }
    if (!m_minValue || m_minValue->y >= value->y) {
        m_minValue = value;
    }
    if (!m_maxValue || value->y >= m_maxValue->y) {
        m_maxValue = value;
    }
}

void AbstractChartSeries::forgetExtreme(const ChartValue *value)
{
    if (m_minValue == value) {
        m_minValue = nullptr;
    }
    if (m_maxValue == value) {
        m_maxValue = nullptr;
    }
}

/// Makes the sample a gap; returns whether it was in sight.
bool AbstractChartSeries::blankValue(ChartValue *value, const QRectF &visible)
{
    const bool inSight = visible.contains(QPointF(value->x, value->y));
    value->y = qQNaN();
    forgetExtreme(value);
    return inSight;
}

/// Finds the extremes anew if one was lost; returns whether it did.
bool AbstractChartSeries::restoreExtremes()
{
    if (m_values.isEmpty() || (m_minValue && m_maxValue)) {
        return false;
    }
    recalculateMinMax();
    return true;
}
