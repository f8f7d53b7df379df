// How long a redraw waits for the points.

#include "benchdata.h"

#include "series/pointthread.h"

#include <benchmark/benchmark.h>

namespace {

/// A series full of samples of one shape, with its transform made.
BenchSeries *filledSeries(BenchModel &model, DataShape shape, int count)
{
    BenchSeries *series = model.newSeries();
    const std::vector<double> values = ordinates(shape, count);
    QList<ChartValue *> samples;
    samples.reserve(count);
    for (int i = 0; i < count; ++i) {
        samples.append(new ChartValue{double(i), values[size_t(i)]});
    }
    model.addValues(series, samples);
    series->m_pointThread->wait(); // The calculation of the empty series.
    series->updateMatrix(BenchPlot);
    return series;
}

/// The point calculation over the whole range, on this thread.
void calculatePoints(benchmark::State &state, DataShape shape)
{
    BenchModel model;
    const int count = int(state.range(0));
    BenchSeries *series = filledSeries(model, shape, count);
    series->m_pointThread->m_rect = series->visibleRect();
    for (auto _ : state) {
        series->m_pointThread->run();
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["points"] = series->m_pointThread->m_points.size();
}
BENCHMARK_CAPTURE(calculatePoints, smooth, Smooth)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, noisy, Noisy)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, stepped, Stepped)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, randomWalk, RandomWalk)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);

/// The yardstick: the same list walked once, doing nothing but adding up.
void bareWalk(benchmark::State &state)
{
    BenchModel model;
    const int count = int(state.range(0));
    const BenchSeries *series = filledSeries(model, RandomWalk, count);
    for (auto _ : state) {
        double sum = 0.0;
        for (const ChartValue *value : series->m_values) {
            sum += value->x + value->y;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(bareWalk)->RangeMultiplier(10)->Range(100000, 10000000)->Unit(benchmark::kMillisecond);

/// A user who has zoomed far in: almost all samples are out of sight.
void calculatePointsZoomedIn(benchmark::State &state)
{
    constexpr double Shown = 0.001; // of the range
    BenchModel model;
    const int count = int(state.range(0));
    BenchSeries *series = filledSeries(model, RandomWalk, count);
    QRectF rect = series->visibleRect();
    rect.setWidth(rect.width() * Shown);
    series->m_pointThread->m_rect = rect;
    for (auto _ : state) {
        series->m_pointThread->run();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(calculatePointsZoomedIn)->Arg(1000000)->Unit(benchmark::kMillisecond);

} // namespace
