#pragma once

#include "quarvchart_export.h"
#include "series/abstractchartseries.h"

#include <atomic>
#include <deque>
#include <limits>
#include <optional>
#include <vector>

/**
 * What is known of a long store without looking at its samples: one entry for every few dozen of
 * them, so that a calculation, a merge or the age-out passes over what does not concern it.
 *
 * There is an index only over a store of at least smallestStore() samples, all with a finite X that
 * nowhere descends. It lags behind: appending to the store does not touch it, and update() takes in
 * what has been appended since, each sample once. Whoever changes the store in another way tells
 * it, by change() and settle(), or by clear().
 *
 * Validity is asked once and kept: isValid() depends on the record alone.
 *
 * Guarded by the series' m_valuesMutex, as the store is. Exported for the tests.
 */
class QUARVCHART_EXPORT SampleIndex
{
public:
    static constexpr int StretchSize = 32; // samples

    /// Copies of what the records of a stretch hold: read in a row, they come several times faster
    /// than from the store.
    struct Samples
    {
        double x[StretchSize];
        double y[StretchSize];
        int state[StretchSize];
    };

    /// Some neighbouring samples of the store.
    struct Stretch
    {
        /// Whether the sample with this number, from 0, is valid.
        bool isValid(int number) const { return (validMask >> number & 1u) != 0; }

        ChartValueList::iterator first; ///< Node of the first sample.
        int count = 0;                  ///< At least 1, at most StretchSize.
        quint32 validMask = 0;          ///< A bit for each sample, the lowest for the first.
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

        Samples samples; ///< The first count of them are set.
    };

    /// Numbers of stretches.
    struct ExtremeStretches
    {
        int lowest = -1;  ///< The last plain one with the lowest Y of all plain ones; -1 for none.
        int highest = -1; ///< The same for the highest Y.
    };

    /// \p series is not owned; it tells which samples are valid.
    explicit SampleIndex(const AbstractChartSeries *series);

    /// Brings the index up to date with the store of its series. Returns whether there is one. A
    /// store that cannot have one is looked at again after RetryPeriod calls.
    bool update();

    /// Forgets everything; the next update() starts anew.
    void clear();

    /// Tells that the samples of a stretch have changed in value or number: \p count of them are
    /// there now, from the node \p first on, and none has a higher X than all had. To be called in
    /// ascending order of \p number, also several times for one, and followed by settle() before
    /// anything else is asked; until then the X of the stretch is the old one.
    void change(int number, ChartValueList::iterator first, int count);

    /// Reads the changed stretches anew, and divides or joins them; their numbers change. If the
    /// samples no longer ascend the index is cleared.
    void settle();

    /// In the order of the store. Describe it after an update() that has returned true.
    const std::deque<Stretch> &stretches() const { return m_stretches; }

    /// Number of the first stretch from \p from on whose highest X is at least \p x; the number of
    /// stretches if there is none, or if \p x is NaN. A binary search.
    int firstReaching(double x, int from = 0) const;

    /// Where the extremes are to be looked for. One walk over the stretches.
    ExtremeStretches extremes() const;

    /// Below this many samples a walk is as good, and there is no index.
    static int smallestStore() { return s_smallestStore.load(std::memory_order_relaxed); }

    /// For tests, so that small stores get an index too. Any thread.
    static void setSmallestStore(int count)
    {
        s_smallestStore.store(count, std::memory_order_relaxed);
    }

    static constexpr int DefaultSmallestStore = 10000; // samples
    static constexpr int RetryPeriod = 64;             // calls of update()

private:
    using Node = ChartValueList::iterator;

    std::optional<Node> firstUnknown() const;
    bool read(Node node, int count, std::deque<Stretch> &stretches) const;
    void takeIn(const ChartValue &value, int number, Stretch &stretch) const;
    bool readChanged(std::deque<Stretch> &anew) const;
    bool ascendsAt(int number) const;
    bool isSparse() const;
    void refuse();

    static std::atomic<int> s_smallestStore;

    const AbstractChartSeries *m_series;
    std::deque<Stretch> m_stretches;
    std::vector<int> m_changed; ///< Numbers of the stretches to settle, ascending.
    int m_count = 0;            ///< Samples in all stretches.
    int m_refusals = 0;         ///< Calls of update() to let pass before a new try.
};
