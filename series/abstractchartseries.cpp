#include "series/abstractchartseries.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/pointthread.h"
#include "series/sampleindex_p.h"
#include "series/seriesregistry_p.h"

#include <QDateTime>

#include <cmath>

namespace {

/**
 * Where a merge stands in the store.
 *
 * From here on the samples ascend, if the store has an index: they do so at first, and insert() is
 * called only with a sample whose X lies below that of the one it goes before. That holds for any
 * order of the samples that come. The stretches after the one in which the cursor stands are as the
 * index knows them, and of that one the last sample is.
 */
class MergeCursor
{
public:
    MergeCursor(ChartValueList &values, SampleIndex &index, bool isIndexed)
        : m_values(values)
        , m_index(index)
        , m_isIndexed(isIndexed)
        , m_node(values.begin())
    {
    }

    bool atEnd() const { return m_node == m_values.end(); }
    ChartValue *value() const { return *m_node; }

    /// Moves towards the first sample with an X of at least \p x. The present one is none.
    void advance(double x)
    {
        // With an index, the present stretch either holds such a sample after the present one, or
        // is left by a jump; a NaN is reached nowhere.
        if (m_isIndexed && !(stretch().lastX >= x)) {
            m_number = m_index.firstReaching(x, m_number + 1);
            const bool isLeft = m_number == int(m_index.stretches().size());
            m_node = isLeft ? m_values.end() : stretch().first;
            return;
        }
        ++m_node;
    }

    /// Puts \p value before the present sample and moves onto it.
    void insert(ChartValue *value)
    {
        const bool isFirst = m_isIndexed && m_node == stretch().first;
        m_node = m_values.insert(m_node, value);
        if (m_isIndexed) {
            m_index.change(m_number, isFirst ? m_node : stretch().first, stretch().count + 1);
        }
    }

    /// Tells that the present record has new contents.
    void noteReplaced()
    {
        if (m_isIndexed) {
            m_index.change(m_number, stretch().first, stretch().count);
        }
    }

private:
    const SampleIndex::Stretch &stretch() const { return m_index.stretches()[size_t(m_number)]; }

    ChartValueList &m_values;
    SampleIndex &m_index;
    const bool m_isIndexed;
    ChartValueList::iterator m_node;
    int m_number = 0; ///< Of the stretch in which m_node stands.
};

} // namespace

AbstractChartSeries::AbstractChartSeries()
    : m_lineWidth(SeriesSettings::defaultLineWidth())
    , m_pointsVisible(SeriesSettings::defaultPointsVisible())
    , m_pointSize(SeriesSettings::defaultPointsSize())
    , m_index(std::make_unique<SampleIndex>(this))
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
    return value && std::isfinite(value->y) && std::isfinite(value->x);
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
    detachValues();
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
    detachValues();
    const bool changed = m_index->update()
                             ? ageStretches(now, visible)
                             : ageSamples(m_values.begin(), m_values.size(), now, visible).changed;
    return restoreExtremes() || changed;
}

void AbstractChartSeries::recalculateMinMax()
{
    m_index->clear(); // What calls for this may have made it wrong.
    findExtremes();
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
    detachValues();
    m_values.append(value);
    updateExtremes(value);
}

void AbstractChartSeries::appendAll(QQueue<ChartValue *> &values)
{
    addValues(values);
    values.clear();
}

/// A store of which there is a copy gets new nodes with its next change, here at the latest. The
/// index, which knows the old ones, is told.
void AbstractChartSeries::detachValues()
{
    if (!m_values.isDetached()) {
        m_index->clear();
        m_values.detach();
    }
}

/// Whether the ends of the store lie in descending order, so that a merge makes no sense.
bool AbstractChartSeries::descends() const
{
    const ChartValue *first = m_values.first();
    const ChartValue *last = m_values.last();
    return first && last && first->x > last->x;
}

/// Whether a merge that begins with \p head is to use the index. To build one takes as long as a
/// walk, so it is not built only to find late samples once. It is for a queue that lies beyond the
/// end of the store: most likely the next ones do too.
bool AbstractChartSeries::gainsByIndex(const ChartValue *head) const
{
    const ChartValue *last = m_values.last();
    const bool isLate = !head || !last || head->x <= last->x;
    return !isLate || !m_index->stretches().empty();
}

/// Takes from the queue what lies before the end of the store; leaves the rest in it.
void AbstractChartSeries::mergeValues(QQueue<ChartValue *> &values)
{
    const bool isIndexed = gainsByIndex(values.head()) && m_index->update();
    MergeCursor cursor(m_values, *m_index, isIndexed);
    while (!cursor.atEnd() && !values.isEmpty()) {
        ChartValue *head = values.head();
        if (!head) {
            values.removeFirst();
            continue;
        }
        // Written so that an X that is NaN, on either side, moves on.
        const bool reached = cursor.value() && cursor.value()->x >= head->x;
        if (!reached) {
            cursor.advance(head->x);
            continue;
        }
        values.removeFirst();
        if (cursor.value()->x == head->x) {
            replaceRecord(cursor.value(), head);
            cursor.noteReplaced();
        } else {
            cursor.insert(head);
            updateExtremes(head);
        }
    }
    m_index->settle();
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

/// Ages out in the stretches with samples that are due; returns whether one was in sight.
bool AbstractChartSeries::ageStretches(double now, const QRectF &visible)
{
    bool changed = false;
    int number = 0;
    for (const SampleIndex::Stretch &stretch : m_index->stretches()) {
        if (now >= stretch.dueTime) {
            const AgedSamples aged = ageSamples(stretch.first, stretch.count, now, visible);
            changed = changed || aged.changed;
            m_index->change(number, aged.first, aged.count);
        }
        ++number;
    }
    m_index->settle();
    return changed;
}

/// Ages out among \p count samples from \p node on.
AbstractChartSeries::AgedSamples AbstractChartSeries::ageSamples(ChartValueList::iterator node,
                                                                 int count, double now,
                                                                 const QRectF &visible)
{
    AgedSamples aged;
    for (; count > 0; --count) {
        ChartValue *value = *node;
        const bool due = value && now >= value->expireTime;
        if (due && !isValid(value)) {
            forgetExtreme(value);
            delete value;
            node = m_values.erase(node);
            continue;
        }
        if (due && blankValue(value, visible)) {
            aged.changed = true;
        }
        if (aged.count == 0) {
            aged.first = node;
        }
        ++aged.count;
        ++node;
    }
    return aged;
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
    if (m_index->update()) {
        findExtremesByIndex();
    } else {
        findExtremes();
    }
    return true;
}

void AbstractChartSeries::findExtremes()
{
    m_minValue = nullptr;
    m_maxValue = nullptr;
    for (ChartValue *value : qAsConst(m_values)) {
        if (value) {
            updateExtremes(value);
        }
    }
}

/// Gives what findExtremes() does, and leaves out the samples of plain stretches that cannot be it.
///
/// The first valid sample becomes both extremes, so nothing is left out before it. From then on a
/// sample takes over an extreme only from one that it equals or exceeds. So the last of the lowest
/// samples is the minimum; unless it lies in a stretch that is not plain, it lies in the last plain
/// stretch that reaches as low as any. (If the first valid sample has a NaN for its y, which an
/// application may allow, none takes over from it, and what is left out does not matter. Later ones
/// with a NaN take over from none.)
void AbstractChartSeries::findExtremesByIndex()
{
    m_minValue = nullptr;
    m_maxValue = nullptr;
    const SampleIndex::ExtremeStretches extremes = m_index->extremes();
    int number = -1;
    for (const SampleIndex::Stretch &stretch : m_index->stretches()) {
        ++number;
        const bool mayHoldExtreme = !stretch.isPlain || !m_minValue || number == extremes.lowest ||
                                    number == extremes.highest;
        auto node = stretch.first;
        for (int i = 0; mayHoldExtreme && i < stretch.count; ++i, ++node) {
            updateExtremes(*node);
        }
    }
}
