#pragma once

#include "proccounters.h"
#include "quantity.h"

#include <QList>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <atomic>
#include <chrono>
#include <optional>
#include <vector>

class AbstractChartModel;
class AbstractChartSeries;
class Recorder;

/**
 * Reads the machine's counters in a thread of its own, at a steady pace, and feeds them to a model.
 *
 * Samples are due at fixed times after the start: one that comes late does not put off those behind
 * it. X is the wall clock at the start plus the time that has passed since, sleep of the machine
 * included; so it rises whatever happens to the clock.
 *
 * The model, its series and the recorder must outlive the thread. Start, stop and destruction
 * belong to the thread that made the object.
 */
class Feeder : public QThread
{
    Q_OBJECT

public:
    struct Options
    {
        std::chrono::milliseconds interval{250}; ///< From sample to sample.
        double keep = 600.0; ///< Seconds for which the model keeps a sample, at the start.
    };

    /// \p series has one entry for each quantity, in the same order. \p recorder, which may be
    /// null, gets a row for each set of samples.
    Feeder(AbstractChartModel &model, const QList<AbstractChartSeries *> &series,
           const ProcCounters &counters, const std::vector<Quantity> &quantities,
           const Options &options, Recorder *recorder);

    /// Stops.
    ~Feeder() override;

    /// The samples to come are kept for so many seconds. Any thread.
    void setKeep(double seconds) { m_keep = seconds; }

    /// Ends the thread, at once but for a reading that is under way, and waits for it.
    void stop();

signals:
    /// The recorder could not write. Feeding goes on without it.
    void recordingFailed(const QString &problem);

protected:
    void run() override;

private:
    bool waitUntil(std::chrono::steady_clock::time_point due);
    void feed(double time, const std::vector<double> &values);
    void record(double time, const std::vector<double> &values);
    std::vector<double> valuesBetween(const ProcReading &before, const ProcReading &after,
                                      double seconds) const;

    AbstractChartModel &m_model;
    const QList<AbstractChartSeries *> m_series;
    ProcCounters m_counters;
    const std::vector<Quantity> m_quantities;
    const Options m_options;
    std::atomic<double> m_keep; ///< Seconds for which the model keeps a sample.
    Recorder *m_recorder;       ///< Not owned; null without a recording.

    QMutex m_stopMutex;
    QWaitCondition m_stopCondition;
    bool m_stopped = false; ///< Guarded by m_stopMutex.
};
