#pragma once

#include "series/abstractchartseries.h"
#include "series/fastlineclip.h"
#include "series/pixelmap_p.h"
#include "series/pointwriter_p.h"
#include "series/sampleindex_p.h"

#include <QRectF>

#include <atomic>

/**
 * One calculation: from the samples of a series to the pixel points of its line.
 *
 * The store is walked by pairs of neighbours. What a sample comes to, its validity, its place
 * relative to the window and its pixel, is found once, though it is the end of one pair and the
 * start of the next. With an index, stretches are passed over that would give what is there
 * already: nothing, or the gap that marks a line out of sight.
 *
 * Lives on the stack of the worker, which holds the series' m_pointsMutex and m_valuesMutex.
 */
class PointWalk
{
public:
    /// The arguments must outlive the walk. \p window is in data units; \p stop ends the walk at
    /// the next pair.
    PointWalk(const AbstractChartSeries &series, const QRectF &window, PointWriter &writer,
              const std::atomic<bool> &stop);

    /// Whether the edges of the window are numbers that a sample can lie beyond.
    bool canUseIndex() const;

    /// Walks the whole store.
    void walkAll();

    /// The same by an index that is up to date. canUseIndex() must hold.
    void walkBy(const SampleIndex &index);

    /// Appends \p value without a line: as a point if it is valid and in sight, else as a gap.
    void addSinglePoint(const ChartValue &value);

private:
    using Node = ChartValueList::const_iterator;
    using Stretch = SampleIndex::Stretch;

    /// What a sample comes to in this calculation.
    struct Place
    {
        double x = 0.0;
        double y = 0.0;
        int state = 0;
        bool exists = false;  ///< An entry without a sample has none.
        bool isValid = false; ///< Nothing of what follows means anything unless it is.
        int region = 0;       ///< A ClipRegion.
        int column = 0;       ///< Of its pixel; only in the window.
        int row = 0;
    };

    bool passOver(const Place &last, const Stretch &stretch);
    int sideOf(const Stretch &stretch) const;
    bool isInside(const Stretch &stretch) const;
    bool isOnPixelOf(const Place &place, const Stretch &stretch) const;
    void walkStretch(const Place &last, const Stretch &stretch);
    void walkInside(const Place &last, const Stretch &stretch);
    int endOfColumn(int column, const Stretch &stretch, int from) const;
    void walkOneByOne(Place last, const Stretch &stretch);
    Place lastPlaceIn(const Stretch &stretch) const;
    Place placeIn(const Stretch &stretch, int i) const;
    Place placeOf(const ChartValue *value) const;
    Place placeOf(double x, double y, int state, bool isValid) const;
    void addPair(Place a, Place b);
    void addClipped(Place a, Place b);
    void addSingle(Place place);

    const AbstractChartSeries &m_series;
    const QRectF m_window;
    const PixelMap m_map;
    PointWriter &m_writer;
    const std::atomic<bool> &m_stop;
    FastLineClip m_clip;
};
