// How fast an application may feed.

#include "benchdata.h"

#include <benchmark/benchmark.h>

#include <cmath>

#include <malloc.h>

namespace {

constexpr int BlockSize = 1000; // samples handed in by one call

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

/// Not a speed: the bytes of heap that each stored sample takes, record and node.
void memoryPerSample(benchmark::State &state)
{
    const int count = int(state.range(0));
    double bytes = 0.0;
    for (auto _ : state) {
        BenchModel model;
        BenchSeries *series = model.newSeries();
        const size_t before = mallinfo2().uordblks;
        for (int i = 0; i < count; ++i) {
            model.addValue(series, new ChartValue{double(i), double(i % 100)});
        }
        bytes = double(mallinfo2().uordblks - before) / count;
    }
    state.counters["bytes/sample"] = bytes;
}
BENCHMARK(memoryPerSample)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
