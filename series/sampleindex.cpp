#include "series/sampleindex_p.h"

#include <algorithm>
#include <cmath>
#include <iterator>

std::atomic<int> SampleIndex::s_smallestStore{DefaultSmallestStore};

SampleIndex::SampleIndex(const AbstractChartSeries *series)
    : m_series(series)
{
}

bool SampleIndex::update()
{
    if (m_series->m_values.size() < smallestStore()) {
        clear();
        return false;
    }
    if (m_refusals > 0) {
        --m_refusals;
        return false;
    }
    auto unknown = firstUnknown();
    if (!unknown) {
        clear();
        unknown = m_series->m_values.constBegin().i;
    }
    const int count = m_series->m_values.size() - m_count;
    if (!read(*unknown, count, m_stretches)) {
        refuse();
        return false;
    }
    m_count += count;
    return true;
}

void SampleIndex::clear()
{
    m_stretches.clear();
    m_changed.clear();
    m_count = 0;
    m_refusals = 0;
}

/// The store is walked up to the sample that does not fit, which is not to be done at each call.
void SampleIndex::refuse()
{
    clear();
    m_refusals = RetryPeriod - 1;
}

/// The first sample that has not been taken in; none if the store is no longer the one that is
/// known.
///
/// Found from the end of the store, not from the nodes that are known: those may have been freed. A
/// store with other nodes, or with another number of samples before the last stretch, shows it by
/// its first node or by the node where the last stretch is to begin.
std::optional<SampleIndex::Node> SampleIndex::firstUnknown() const
{
    const ChartValueList &values = m_series->m_values;
    if (m_stretches.empty()) {
        return Node(values.constBegin().i);
    }
    const Stretch &last = m_stretches.back();
    if (values.size() < m_count || values.constBegin().i != m_stretches.front().first.i) {
        return std::nullopt;
    }
    const auto unknown = std::prev(values.constEnd(), values.size() - m_count);
    if (std::prev(unknown, last.count).i != last.first.i) {
        return std::nullopt;
    }
    return Node(unknown.i);
}

/// Appends \p count samples from \p node on to \p stretches, after filling up the last of them.
/// Returns false at a sample that an index cannot hold.
bool SampleIndex::read(Node node, int count, std::deque<Stretch> &stretches) const
{
    double previousX =
        stretches.empty() ? -std::numeric_limits<double>::infinity() : stretches.back().lastX;
    while (count > 0) {
        if (stretches.empty() || stretches.back().count == StretchSize) {
            stretches.emplace_back();
            stretches.back().first = node;
            stretches.back().firstX = *node ? (*node)->x : 0.0;
        }
        Stretch &stretch = stretches.back();
        const int taken = std::min(count, StretchSize - stretch.count);
        for (int i = 0; i < taken; ++i, ++node) {
            const ChartValue *value = *node;
            if (!value || !std::isfinite(value->x) || value->x < previousX) {
                return false;
            }
            previousX = value->x;
            takeIn(*value, stretch.count + i, stretch);
        }
        stretch.lastX = previousX;
        stretch.count += taken;
        count -= taken;
    }
    return true;
}

/// What the sample with this number means for its stretch, apart from count and X.
void SampleIndex::takeIn(const ChartValue &value, int number, Stretch &stretch) const
{
    stretch.samples.x[number] = value.x;
    stretch.samples.y[number] = value.y;
    stretch.samples.state[number] = value.state;
    const bool isValid = m_series->isValid(&value);
    stretch.validMask |= quint32(isValid) << number;
    stretch.isPlain = stretch.isPlain && isValid && std::isfinite(value.y);
    stretch.lowestY = std::min(stretch.lowestY, value.y);
    stretch.highestY = std::max(stretch.highestY, value.y);
    stretch.dueTime = std::min(stretch.dueTime, value.expireTime); // the first one if NaN
}

void SampleIndex::change(int number, ChartValueList::iterator first, int count)
{
    Stretch &stretch = m_stretches[size_t(number)];
    m_count += count - stretch.count;
    stretch.first = first;
    stretch.count = count;
    if (m_changed.empty() || m_changed.back() != number) {
        m_changed.push_back(number);
    }
}

/// Everything from the first to the last changed stretch is put together anew; what lies outside of
/// them moves at most from the nearer end, so that changes at either end of the store cost little.
void SampleIndex::settle()
{
    if (m_changed.empty()) {
        return;
    }
    std::deque<Stretch> anew;
    if (!readChanged(anew)) {
        refuse();
        return;
    }
    const int from = m_changed.front();
    const int old = m_changed.back() + 1 - from;
    const int common = std::min(old, int(anew.size()));
    std::copy_n(anew.cbegin(), common, m_stretches.begin() + from);
    m_stretches.erase(m_stretches.begin() + from + common, m_stretches.begin() + from + old);
    m_stretches.insert(m_stretches.begin() + from + common, anew.cbegin() + common, anew.cend());
    m_changed.clear();

    if (!ascendsAt(from)) {
        refuse();
    } else if (isSparse()) {
        clear();
    }
}

/// The stretches from the first to the last changed one as they are now. Only where a changed one
/// begins can the samples descend, as no highest X has grown; read() sees that.
bool SampleIndex::readChanged(std::deque<Stretch> &anew) const
{
    auto changed = m_changed.cbegin();
    for (int number = m_changed.front(); number <= m_changed.back(); ++number) {
        const Stretch &stretch = m_stretches[size_t(number)];
        if (number == *changed) {
            ++changed;
            if (!read(stretch.first, stretch.count, anew)) {
                return false;
            }
            continue;
        }
        anew.push_back(stretch);
    }
    return true;
}

bool SampleIndex::ascendsAt(int number) const
{
    if (number <= 0 || number >= int(m_stretches.size())) {
        return true;
    }
    return m_stretches[size_t(number) - 1].lastX <= m_stretches[size_t(number)].firstX;
}

/// Whether the stretches have become so short that it pays to start anew. That takes the removal of
/// about a third of the samples, or an insertion for about every second stretch.
bool SampleIndex::isSparse() const
{
    return 2 * int(m_stretches.size()) > 3 * (m_count / StretchSize + 1);
}

int SampleIndex::firstReaching(double x, int from) const
{
    // Written so that a NaN is never reached.
    const auto liesBefore = [x](const Stretch &stretch) { return !(stretch.lastX >= x); };
    const auto found =
        std::partition_point(m_stretches.cbegin() + from, m_stretches.cend(), liesBefore);
    return int(found - m_stretches.cbegin());
}

SampleIndex::ExtremeStretches SampleIndex::extremes() const
{
    ExtremeStretches result;
    double lowestY = std::numeric_limits<double>::infinity();
    double highestY = -lowestY;
    int number = 0;
    for (const Stretch &stretch : m_stretches) {
        if (stretch.isPlain && stretch.lowestY <= lowestY) {
            lowestY = stretch.lowestY;
            result.lowest = number;
        }
        if (stretch.isPlain && stretch.highestY >= highestY) {
            highestY = stretch.highestY;
            result.highest = number;
        }
        ++number;
    }
    return result;
}
