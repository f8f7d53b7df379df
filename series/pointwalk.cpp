#include "series/pointwalk_p.h"

#include "series/clipregion_p.h"

#include <cmath>
#include <iterator>

namespace {

constexpr int Lookahead = 16; // samples

} // namespace

PointWalk::PointWalk(const AbstractChartSeries &series, const QRectF &window, PointWriter &writer,
                     const std::atomic<bool> &stop)
    : m_series(series)
    , m_window(window)
    , m_map(series.m_matrix)
    , m_writer(writer)
    , m_stop(stop)
{
    m_clip.xMin = window.left();
    m_clip.xMax = window.left() + window.width();
    m_clip.yMin = window.top();
    m_clip.yMax = window.top() + window.height();
}

bool PointWalk::canUseIndex() const
{
    return std::isfinite(m_clip.xMin) && std::isfinite(m_clip.xMax) && std::isfinite(m_clip.yMin) &&
           std::isfinite(m_clip.yMax);
}

void PointWalk::walkAll()
{
    const Node end = m_series.m_values.cend();
    Node node = m_series.m_values.cbegin();
    if (m_series.m_values.size() < 2 || m_stop) {
        return;
    }
    // The records lie anywhere: they are asked for early, while the nodes are walked on to.
    Node ahead = node;
    for (int i = 0; i < Lookahead && ahead != end; ++i) {
        __builtin_prefetch(*ahead++);
    }
    Place a = placeOf(*node++);
    do {
        if (ahead != end) {
            __builtin_prefetch(*ahead++);
        }
        const Place b = placeOf(*node++);
        addPair(a, b);
        a = b;
    } while (node != end && !m_stop);
}

void PointWalk::walkBy(const SampleIndex &index)
{
    const std::deque<Stretch> &stretches = index.stretches();
    const auto reaching = stretches.cbegin() + index.firstReaching(m_clip.xMin);
    if (reaching == stretches.cend()) {
        return;
    }
    // What lies left of the window gives nothing, not even a gap: no points begin with one. But the
    // last sample there may be the start of a line that leads into the window.
    const bool isFirst = reaching == stretches.cbegin();
    Place last = isFirst ? placeIn(*reaching, 0) : lastPlaceIn(*std::prev(reaching));
    const Stretch *passed = nullptr; // one that was passed over, if last is to be found in it
    for (auto stretch = reaching; stretch != stretches.cend() && !m_stop; ++stretch) {
        if (last.x > m_clip.xMax) {
            m_writer.addGap(); // And so does all that follows.
            return;
        }
        if (passOver(last, *stretch)) {
            passed = &*stretch;
            last.x = stretch->lastX; // Shows when the right edge is reached.
            continue;
        }
        last = passed ? lastPlaceIn(*passed) : last;
        passed = nullptr;
        walkStretch(last, *stretch);
        last = lastPlaceIn(*stretch);
    }
}

/// Whether the lines to and within the stretch are known without a look at its samples, and dealt
/// with: they all fall on one pixel, or lie all above or all below the window.
bool PointWalk::passOver(const Place &last, const Stretch &stretch)
{
    if (!stretch.isPlain || !last.isValid) {
        return false;
    }
    if ((last.region & sideOf(stretch)) != ClipRegion::Inside) {
        m_writer.addGap();
        return true;
    }
    return last.region == ClipRegion::Inside && isInside(stretch) && isOnPixelOf(last, stretch);
}

/// The edge beyond which all samples lie, above or below the window.
int PointWalk::sideOf(const Stretch &stretch) const
{
    if (stretch.lowestY > m_clip.yMax) {
        return ClipRegion::Bottom;
    }
    return stretch.highestY < m_clip.yMin ? ClipRegion::Top : ClipRegion::Inside;
}

bool PointWalk::isInside(const Stretch &stretch) const
{
    return stretch.firstX >= m_clip.xMin && stretch.lastX <= m_clip.xMax &&
           stretch.lowestY >= m_clip.yMin && stretch.highestY <= m_clip.yMax;
}

/// Each coordinate keeps its order on the way to the screen, so that what lies between two values
/// on one pixel lies there too.
bool PointWalk::isOnPixelOf(const Place &place, const Stretch &stretch) const
{
    return m_map.isPlain() && m_map.column(stretch.firstX) == place.column &&
           m_map.column(stretch.lastX) == place.column && m_map.row(stretch.lowestY) == place.row &&
           m_map.row(stretch.highestY) == place.row;
}

void PointWalk::walkStretch(const Place &last, const Stretch &stretch)
{
    if (stretch.isPlain && m_map.isPlain() && isInside(stretch)) {
        walkInside(last, stretch);
    } else {
        walkOneByOne(last, stretch);
    }
}

/// The samples all lie in the window: nothing is clipped, and each is just a pixel.
void PointWalk::walkInside(const Place &last, const Stretch &stretch)
{
    const SampleIndex::Samples &samples = stretch.samples;
    const auto rowOf = [this](double y) { return m_map.row(y); };
    Place place = placeIn(stretch, 0);
    addPair(last, place);
    for (int i = 1; i < stretch.count;) {
        const int end = endOfColumn(place.column, stretch, i);
        if (end > i && m_writer.takesColumn(place.column, place.row)) {
            m_writer.addColumn(samples.state + i, samples.y + i, end - i, rowOf);
            place = placeIn(stretch, end - 1);
            i = end;
        } else {
            const Place next = placeIn(stretch, i++);
            addPair(place, next);
            place = next;
        }
    }
}

/// The number of the first sample from \p from on that falls on another column.
int PointWalk::endOfColumn(int column, const Stretch &stretch, int from) const
{
    if (m_map.column(stretch.lastX) == column) {
        return stretch.count; // As X ascends, so do those between.
    }
    int end = from;
    while (m_map.column(stretch.samples.x[end]) == column) {
        ++end;
    }
    return end;
}

void PointWalk::walkOneByOne(Place last, const Stretch &stretch)
{
    for (int i = 0; i < stretch.count; ++i) {
        const Place place = placeIn(stretch, i);
        addPair(last, place);
        last = place;
    }
}

PointWalk::Place PointWalk::lastPlaceIn(const Stretch &stretch) const
{
    return placeIn(stretch, stretch.count - 1);
}

PointWalk::Place PointWalk::placeIn(const Stretch &stretch, int i) const
{
    const SampleIndex::Samples &samples = stretch.samples;
    return placeOf(samples.x[i], samples.y[i], samples.state[i], stretch.isValid(i));
}

PointWalk::Place PointWalk::placeOf(const ChartValue *value) const
{
    return value ? placeOf(value->x, value->y, value->state, m_series.isValid(value)) : Place();
}

PointWalk::Place PointWalk::placeOf(double x, double y, int state, bool isValid) const
{
    Place place;
    place.x = x;
    place.y = y;
    place.state = state;
    place.exists = true;
    place.isValid = isValid;
    if (!isValid) {
        return place;
    }
    place.region = ClipRegion::of(x, y, m_clip);
    if (place.region == ClipRegion::Inside) {
        const QPoint pixel = m_map.pixel(x, y);
        place.column = pixel.x();
        place.row = pixel.y();
    }
    return place;
}

void PointWalk::addSinglePoint(const ChartValue &value)
{
    addSingle(placeOf(&value));
}

inline void PointWalk::addPair(Place a, Place b)
{
    if (!a.exists || !b.exists) {
        return;
    }
    if (!a.isValid || !b.isValid) {
        addSingle(a);
        addSingle(b);
        return;
    }
    if ((a.region | b.region) != ClipRegion::Inside) {
        addClipped(a, b);
        return;
    }
    if (a.column == b.column && a.row == b.row) {
        return;
    }
    m_writer.addPoint(a.column, a.row, a.state, a.y, false);
    m_writer.addPoint(b.column, b.row, b.state, b.y, false);
}

void PointWalk::addClipped(Place a, Place b)
{
    double x1 = a.x;
    double y1 = a.y;
    double x2 = b.x;
    double y2 = b.y;
    if (m_clip.LineClip(&x1, &y1, &x2, &y2) != 1) {
        m_writer.addGap();
        return;
    }
    const QPoint first = m_map.pixel(x1, y1);
    const QPoint second = m_map.pixel(x2, y2);
    if (first == second) {
        return;
    }
    m_writer.addPoint(first.x(), first.y(), a.state, a.y, m_clip.clipped0);
    m_writer.addPoint(second.x(), second.y(), b.state, b.y, m_clip.clipped1);
}

void PointWalk::addSingle(Place place)
{
    if (!place.isValid || !m_window.contains(QPointF(place.x, place.y))) {
        m_writer.addGap();
        return;
    }
    const QPoint pixel = m_map.pixel(place.x, place.y);
    m_writer.addPoint(pixel.x(), pixel.y(), place.state, place.y, false);
}
