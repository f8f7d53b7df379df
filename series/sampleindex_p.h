#pragma once

#include "series/abstractchartseries.h"

#include <deque>
#include <limits>

/**
 * What is known of a long store without looking at its samples: one entry for every few dozen of
 * them, so that a calculation, a merge or the age-out passes over what does not concern it.
 *
 * There is an index only over a store of at least smallestStore() samples, all with a finite X that
 * nowhere descends. It lags behind: appending to the store does not touch it, and update() takes in
 * what has been appended since, each sample once. Whoever changes the store in another way tells
 * it, by truncate(), refresh() or clear().
 *
 * Validity is asked once and kept: isValid() depends on the record alone.
 *
 * Guarded by the series' m_valuesMutex, as the store is.
 */
class SampleIndex
{
public:
    /// Some neighbouring samples of the store.
    struct Stretch
    {
        ChartValueList::iterator first; ///< Node of the first sample.
        int count = 0;                  ///< At least 1, at most StretchSize.
        bool isPlain = true;            ///< All samples are valid and have a finite y.
        double firstX = 0.0;            ///< Lowest X.
        double lastX = 0.0;             ///< Highest X.

        /// @{
        /// Range of Y; of no meaning unless isPlain.
        double lowestY = std::numeric_limits<double>::infinity();
        double highestY = -std::numeric_limits<double>::infinity();
        /// @}

        /// Earliest expireTime of the samples, in seconds since the epoch; a NaN does not count.
        double dueTime = std::numeric_limits<double>::infinity();
    };

    static constexpr int StretchSize = 32; // samples

    /// \p series is not owned; it tells which samples are valid.
    explicit SampleIndex(const AbstractChartSeries *series);

    /// Brings the index up to date with the store of its series. Returns whether there is one.
    bool update();

    /// Forgets everything; the next update() starts anew.
    void clear();

    /// Forgets the stretches from \p number on: their samples have changed in number or order.
    void truncate(int number);

    /// Reads a stretch anew whose samples have changed in value, or have become fewer: \p count of
    /// them are left, from the node \p first on. With a count of 0 only its numbers change; call
    /// removeEmpty() then.
    void refresh(int number, ChartValueList::iterator first, int count);

    /// Drops stretches that refresh() has left without samples.
    void removeEmpty();

    /// In the order of the store. Describe it after an update() that has returned true.
    const std::deque<Stretch> &stretches() const { return m_stretches; }

    /// Number of the first stretch from \p from on whose highest X is at least \p x; the number of
    /// stretches if there is none, or if \p x is NaN. A binary search.
    int firstReaching(double x, int from = 0) const;

    /// Below this many samples a walk is as good, and there is no index.
    static int smallestStore() { return s_smallestStore; }

    /// For tests, so that small stores get an index too.
    static void setSmallestStore(int count) { s_smallestStore = count; }

private:
    bool matches() const;
    bool extend();

    static int s_smallestStore;

    const AbstractChartSeries *m_series;
    std::deque<Stretch> m_stretches;
    int m_count = 0;    ///< Samples in all stretches.
    int m_refusals = 0; ///< Calls of update() to let pass before a new try.
};
