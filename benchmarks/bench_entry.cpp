// How fast an application may feed.

#include "benchdata.h"

#include "axes/horizontalchartaxis.h"
#include "series/pointthread.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr int BlockSize = 1000; // samples handed in by one call

constexpr int BatchSize = 100000; // samples fed between two rests of the clock
constexpr double Period = 100.0;  // samples; Y repeats, so that Y axes stand after one

/// Ranges that no batch leaves.
constexpr double WideWindow = 1e9;

/// With the same Y at a whole number of periods before, negative X included.
ChartValue *newSample(double x)
{
    return new ChartValue{x, x - Period * std::floor(x / Period)};
}

/// What the entry of a sample cannot do without: the list's node, and the extremes by way of the
/// virtual isValid(). The yardstick of all that follows.
void appendBare(AbstractChartSeries &series, ChartValue *value)
{
    series.m_values.append(value);
    if (!series.isValid(value)) {
        return;
    }
    if (!series.m_minValue || series.m_minValue->y >= value->y) {
        series.m_minValue = value;
    }
    if (!series.m_maxValue || value->y >= series.m_maxValue->y) {
        series.m_maxValue = value;
    }
}

/// The ways of a sample into a series, for the benchmarks of many models.
constexpr auto Bare = [](AbstractChartModel &, AbstractChartSeries *series, ChartValue *value) {
    appendBare(*series, value);
};
constexpr auto ByModel = [](AbstractChartModel &model, AbstractChartSeries *series,
                            ChartValue *value) { model.addValue(series, value); };

/// As many series as the argument says; each has more samples than one period of Y.
template <typename Model>
QList<AbstractChartSeries *> filledSeries(Model &model, qint64 count)
{
    QList<AbstractChartSeries *> all;
    for (int i = 0; i < count; ++i) {
        all.append(model.newSeries());
        for (double x = -2.0 * Period; x < 0.0; x += 1.0) {
            model.addValue(all.last(), newSample(x));
        }
    }
    return all;
}

/// Takes out what a batch has brought in, without a look at the axes.
void truncate(AbstractChartSeries &series, int size)
{
    while (series.m_values.size() > size) {
        delete series.m_values.takeLast();
    }
    series.recalculateMinMax();
}

/// Feeds the last series with samples made beforehand: the time is that of the entry alone.
template <typename Feed>
void feedReady(benchmark::State &state, AbstractChartModel &model, Feed feed)
{
    AbstractChartSeries *series = model.m_series.last();
    const int stored = series->m_values.size();
    QVector<ChartValue *> samples(BatchSize);
    double x = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        truncate(*series, stored);
        for (ChartValue *&sample : samples) {
            sample = newSample(x);
            x += 1.0;
        }
        state.ResumeTiming();
        for (ChartValue *sample : qAsConst(samples)) {
            feed(model, series, sample);
        }
    }
    state.SetItemsProcessed(state.iterations() * BatchSize);
}

/// Feeds all series by turns with samples made on the way, as an application does.
template <typename Feed>
void feedNew(benchmark::State &state, AbstractChartModel &model, Feed feed)
{
    const QList<AbstractChartSeries *> all = model.m_series;
    const int stored = all.first()->m_values.size();
    double x = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        for (AbstractChartSeries *series : all) {
            truncate(*series, stored);
        }
        state.ResumeTiming();
        for (int i = 0; i < BatchSize; ++i) {
            feed(model, all.at(i % all.size()), newSample(x));
            x += 1.0;
        }
    }
    state.SetItemsProcessed(state.iterations() * BatchSize);
}

/// A chart of finished data that the user has zoomed: no axis moves.
template <typename Run>
void zoomed(benchmark::State &state, Run run)
{
    BenchModel model;
    filledSeries(model, state.range(0));
    model.m_axisX->assignRange(0.0, WideWindow);
    model.m_axisX->m_zoomed = true;
    run(state, model);
}

/// A live chart that stands until the newest sample leaves it.
template <typename Run>
void jumping(benchmark::State &state, Run run)
{
    BenchDynamicModel model;
    filledSeries(model, state.range(0));
    model.m_axisX->assignRange(0.0, WideWindow);
    run(state, model);
}

/// A live chart that moves with each sample.
template <typename Run>
void sliding(benchmark::State &state, Run run)
{
    BenchDynamicModel model;
    model.setDynamicGrid(true);
    filledSeries(model, state.range(0));
    run(state, model);
}

/// A chart of data that still come in: its X range grows with each sample.
template <typename Run>
void growing(benchmark::State &state, Run run)
{
    BenchModel model;
    filledSeries(model, state.range(0));
    run(state, model);
}

/// The same by blocks that were made beforehand.
void addValuesReady(benchmark::State &state)
{
    BenchModel model;
    AbstractChartSeries *series = filledSeries(model, 1).first();
    const int stored = series->m_values.size();
    QVector<QList<ChartValue *>> blocks(BatchSize / BlockSize);
    double x = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        truncate(*series, stored);
        for (QList<ChartValue *> &block : blocks) {
            block.clear();
            for (int i = 0; i < BlockSize; ++i) {
                block.append(newSample(x));
                x += 1.0;
            }
        }
        state.ResumeTiming();
        for (const QList<ChartValue *> &block : qAsConst(blocks)) {
            model.addValues(series, block);
        }
    }
    state.SetItemsProcessed(state.iterations() * BatchSize);
}
BENCHMARK(addValuesReady);

constexpr auto ReadyBare = [](benchmark::State &state, AbstractChartModel &model) {
    feedReady(state, model, Bare);
};
constexpr auto ReadyByModel = [](benchmark::State &state, AbstractChartModel &model) {
    feedReady(state, model, ByModel);
};
constexpr auto NewBare = [](benchmark::State &state, AbstractChartModel &model) {
    feedNew(state, model, Bare);
};
constexpr auto NewByModel = [](benchmark::State &state, AbstractChartModel &model) {
    feedNew(state, model, ByModel);
};

// Each pair of lines below is to be read as a ratio: what the model does on top of the bare append.

void bareAppendReady(benchmark::State &state)
{
    zoomed(state, ReadyBare);
}
BENCHMARK(bareAppendReady)->Arg(1)->Arg(10);
void addValueReadyZoomed(benchmark::State &state)
{
    zoomed(state, ReadyByModel);
}
BENCHMARK(addValueReadyZoomed)->Arg(1)->Arg(10);
void addValueReadyJumping(benchmark::State &state)
{
    jumping(state, ReadyByModel);
}
BENCHMARK(addValueReadyJumping)->Arg(1)->Arg(10);
void addValueReadySliding(benchmark::State &state)
{
    sliding(state, ReadyByModel);
}
BENCHMARK(addValueReadySliding)->Arg(1)->Arg(10);
void addValueReadyGrowing(benchmark::State &state)
{
    growing(state, ReadyByModel);
}
BENCHMARK(addValueReadyGrowing)->Arg(1)->Arg(10);

void bareAppendNew(benchmark::State &state)
{
    zoomed(state, NewBare);
}
BENCHMARK(bareAppendNew)->Arg(1)->Arg(10);
void addValueNewZoomed(benchmark::State &state)
{
    zoomed(state, NewByModel);
}
BENCHMARK(addValueNewZoomed)->Arg(1)->Arg(10);
void addValueNewJumping(benchmark::State &state)
{
    jumping(state, NewByModel);
}
BENCHMARK(addValueNewJumping)->Arg(1)->Arg(10);
void addValueNewSliding(benchmark::State &state)
{
    sliding(state, NewByModel);
}
BENCHMARK(addValueNewSliding)->Arg(1)->Arg(10);
void addValueNewGrowing(benchmark::State &state)
{
    growing(state, NewByModel);
}
BENCHMARK(addValueNewGrowing)->Arg(1)->Arg(10);

/// A feeder that hands in each sample as it comes, into one of as many series as the argument says.
void addValueOneByOne(benchmark::State &state)
{
    BenchModel model;
    for (int i = 1; i < state.range(0); ++i) {
        model.newSeries();
    }
    BenchSeries *series = model.newSeries();
    double x = 0.0;
    for (auto _ : state) {
        model.addValue(series, new ChartValue{x, std::fmod(x, 100.0)});
        x += 1.0;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(addValueOneByOne)->Arg(1)->Arg(10);

/// Feeders of models of their own, one thread each: what they share is the library's.
void addValueByFeeders(benchmark::State &state)
{
    static std::vector<std::unique_ptr<BenchModel>> s_models;
    if (state.thread_index() == 0) { // the GUI thread; the others wait for it
        for (int i = 0; i < state.threads(); ++i) {
            s_models.push_back(std::make_unique<BenchModel>());
            filledSeries(*s_models.back(), 1);
            s_models.back()->m_axisX->assignRange(0.0, WideWindow);
            s_models.back()->m_axisX->m_zoomed = true;
        }
    }
    double x = 0.0;
    for (auto _ : state) {
        BenchModel &model = *s_models[std::size_t(state.thread_index())];
        model.addValue(model.m_series.last(), newSample(x));
        x += 1.0;
    }
    state.SetItemsProcessed(state.iterations());
    if (state.thread_index() == 0) {
        s_models.clear();
    }
}
BENCHMARK(addValueByFeeders)->ThreadRange(1, 2)->UseRealTime()->Iterations(1000000);

/// A feeder that gathers samples and hands them in by the thousand.
void addValuesInBlocks(benchmark::State &state)
{
    BenchModel model;
    BenchSeries *series = model.newSeries();
    double x = 0.0;
    for (auto _ : state) {
        QList<ChartValue *> block;
        block.reserve(BlockSize);
        for (int i = 0; i < BlockSize; ++i) {
            block.append(new ChartValue{x, std::fmod(x, 100.0)});
            x += 1.0;
        }
        model.addValues(series, block);
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
}
BENCHMARK(addValuesInBlocks);

/// Late samples that fall between stored ones: a thousand merged evenly into a store of as many as
/// the argument says. The whole store is walked for each queue.
void insertValuesMerged(benchmark::State &state)
{
    const int stored = int(state.range(0));
    const double gap = double(stored) / BlockSize;
    for (auto _ : state) {
        state.PauseTiming();
        BenchModel model;
        BenchSeries *series = model.newSeries();
        QList<ChartValue *> block;
        for (int i = 0; i < stored; ++i) {
            block.append(new ChartValue{double(i), double(i % 100)});
        }
        model.addValues(series, block);
        QQueue<ChartValue *> late;
        for (int i = 0; i < BlockSize; ++i) {
            late.enqueue(new ChartValue{std::floor(i * gap) + 0.5, 50.0});
        }
        state.ResumeTiming();
        model.insertValues(series, late, false);
        state.PauseTiming();
        model.clearValues();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
    state.counters["walked/s"] =
        benchmark::Counter(double(stored), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(insertValuesMerged)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

constexpr int HeldSamples = 1000000;

/// The next thousand samples from \p x on, due at \p expireTime.
QQueue<ChartValue *> nextBlock(double &x,
                               double expireTime = std::numeric_limits<double>::infinity())
{
    QQueue<ChartValue *> block;
    block.reserve(BlockSize);
    for (int i = 0; i < BlockSize; ++i) {
        block.enqueue(new ChartValue{x, std::fmod(x, 100.0), 0, expireTime});
        x += 1.0;
    }
    return block;
}

/// A series that holds a million samples, from 0 to \p x, which is 0 at first.
BenchSeries *heldSeries(BenchModel &model, double &x)
{
    BenchSeries *series = model.newSeries();
    while (series->m_values.size() < HeldSamples) {
        model.addValues(series, nextBlock(x));
    }
    series->m_pointThread->wait();
    return series;
}

/// A feeder that merges, as it cannot rule out late samples, though none of its blocks is late.
void insertValuesAtTail(benchmark::State &state)
{
    BenchModel model;
    double x = 0.0;
    BenchSeries *series = heldSeries(model, x);
    QQueue<ChartValue *> first = nextBlock(x);
    model.insertValues(series, first, false); // Looks at all samples, once.
    for (auto _ : state) {
        state.PauseTiming();
        QQueue<ChartValue *> block = nextBlock(x);
        state.ResumeTiming();
        model.insertValues(series, block, false);
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
}
BENCHMARK(insertValuesAtTail)->Iterations(300)->Unit(benchmark::kMicrosecond);

/// A feeder whose blocks are all late by some thousand samples, one sample between each two stored.
void insertValuesLate(benchmark::State &state)
{
    BenchModel model;
    double x = 0.0;
    BenchSeries *series = heldSeries(model, x);
    model.removeOldValues(series); // Looks at all samples, as a redraw would.
    double late = HeldSamples - double(state.range(0)) + 0.5;
    for (auto _ : state) {
        state.PauseTiming();
        QQueue<ChartValue *> block = nextBlock(late);
        state.ResumeTiming();
        model.insertValues(series, block, false);
        state.PauseTiming();
        model.addValues(series, nextBlock(x));
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
}
BENCHMARK(insertValuesLate)
    ->Arg(5000)
    ->Arg(500000)
    ->Arg(HeldSamples)
    ->Iterations(300)
    ->Unit(benchmark::kMicrosecond);

/// The yardstick of insertValuesAtTail: the same list and extremes, and nothing else.
void bareAppend(benchmark::State &state)
{
    BenchModel model;
    double x = 0.0;
    BenchSeries *series = heldSeries(model, x);
    for (auto _ : state) {
        state.PauseTiming();
        QQueue<ChartValue *> block = nextBlock(x);
        state.ResumeTiming();
        for (ChartValue *value : qAsConst(block)) {
            series->m_values.append(value);
            if (!series->isValid(value)) {
                continue;
            }
            if (series->m_minValue->y >= value->y) {
                series->m_minValue = value;
            }
            if (value->y >= series->m_maxValue->y) {
                series->m_maxValue = value;
            }
        }
        block.clear();
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
}
BENCHMARK(bareAppend)->Iterations(300)->Unit(benchmark::kMicrosecond);

/// An application that asks often, while a million samples wait for their time.
void removeOldValuesNothingDue(benchmark::State &state)
{
    BenchModel model;
    double x = 0.0;
    BenchSeries *series = heldSeries(model, x);
    for (auto _ : state) {
        model.removeOldValues(series);
    }
}
BENCHMARK(removeOldValuesNothingDue)->Unit(benchmark::kMicrosecond);

/// One that drops the oldest thousand of a million samples: one call blanks and one deletes them.
void removeOldValuesOldestDue(benchmark::State &state)
{
    constexpr double LongAgo = 0.0;
    BenchModel model;
    double x = 0.0;
    double oldest = 0.0;
    BenchSeries *series = heldSeries(model, x);
    for (auto _ : state) {
        state.PauseTiming();
        QQueue<ChartValue *> due = nextBlock(oldest, LongAgo); // replaces what is stored there
        model.insertValues(series, due, false);
        state.ResumeTiming();
        model.removeOldValues(series);
        model.removeOldValues(series);
        state.PauseTiming();
        model.addValues(series, nextBlock(x));
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
}
BENCHMARK(removeOldValuesOldestDue)->Iterations(300)->Unit(benchmark::kMicrosecond);

} // namespace
