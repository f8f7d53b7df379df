#include "feeder.h"

#include "recorder.h"

#include "model/abstractchartmodel.h"
#include "series/chartvalue.h"

#include <QDateTime>
#include <QDeadlineTimer>

#include <ctime>

namespace {

constexpr double MillisecondsPerSecond = 1000.0;
constexpr double NanosecondsPerSecond = 1e9;

/// Seconds of a clock that never goes back, and goes on while the machine sleeps.
double secondsSinceBoot()
{
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / NanosecondsPerSecond;
}

} // namespace

Feeder::Feeder(AbstractChartModel &model, const QList<AbstractChartSeries *> &series,
               const ProcCounters &counters, const std::vector<Quantity> &quantities,
               const Options &options, Recorder *recorder)
    : m_model(model)
    , m_series(series)
    , m_counters(counters)
    , m_quantities(quantities)
    , m_options(options)
    , m_keep(options.keep)
    , m_recorder(recorder)
{
}

Feeder::~Feeder()
{
    stop();
}

void Feeder::stop()
{
    {
        const QMutexLocker locker(&m_stopMutex);
        m_stopped = true;
        m_stopCondition.wakeAll();
    }
    wait();
}

void Feeder::run()
{
    using Clock = std::chrono::steady_clock;
    const double epochAtBoot =
        double(QDateTime::currentMSecsSinceEpoch()) / MillisecondsPerSecond - secondsSinceBoot();
    Clock::time_point due = Clock::now();
    // The first reading is compared with itself: it has gauges and no rates yet.
    ProcReading before = m_counters.read();
    double timeBefore = epochAtBoot + secondsSinceBoot();
    feed(timeBefore, valuesBetween(before, before, 0.0));

    while (true) {
        // Samples that a sleep or a slow disk has cost are not made up for.
        const auto missed = (Clock::now() - due) / m_options.interval;
        due += m_options.interval * (missed + 1);
        if (!waitUntil(due)) {
            return;
        }
        const ProcReading after = m_counters.read();
        const double time = epochAtBoot + secondsSinceBoot();
        feed(time, valuesBetween(before, after, time - timeBefore));
        before = after;
        timeBefore = time;
    }
}

/// Returns false, at once, when the thread has to end.
bool Feeder::waitUntil(std::chrono::steady_clock::time_point due)
{
    const auto left = due - std::chrono::steady_clock::now();
    const QDeadlineTimer deadline(left, Qt::PreciseTimer);
    const QMutexLocker locker(&m_stopMutex);
    while (!m_stopped && m_stopCondition.wait(&m_stopMutex, deadline)) {
    }
    return !m_stopped;
}

std::vector<double> Feeder::valuesBetween(const ProcReading &before, const ProcReading &after,
                                          double seconds) const
{
    std::vector<double> values;
    values.reserve(m_quantities.size());
    for (const Quantity &quantity : m_quantities) {
        values.push_back(quantity.value(before, after, seconds));
    }
    return values;
}

void Feeder::feed(double time, const std::vector<double> &values)
{
    for (int i = 0; i < m_series.size(); ++i) {
        auto *sample = new ChartValue{time, values.at(size_t(i)), 0, time + m_keep};
        m_model.addValue(m_series.at(i), sample); // takes it over
    }
    record(time, values);
}

void Feeder::record(double time, const std::vector<double> &values)
{
    if (m_recorder && !m_recorder->addRow(time, values)) {
        emit recordingFailed(m_recorder->problem());
        m_recorder = nullptr;
    }
}
