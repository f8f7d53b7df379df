// How long a redraw waits for the points.

#include "benchdata.h"

#include "series/pointthread.h"
#include "tests/support/plainwalk.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

namespace {

/// Where the records of neighbouring samples lie in memory.
enum Records {
    InOrder, ///< One after the other, as a feeder makes them.
    Strewn   ///< Anywhere, as after a long life of the program.
};

/// A series full of samples of one shape, with its transform made and its window the whole range.
BenchSeries *filledSeries(BenchModel &model, DataShape shape, int count, Records records = InOrder)
{
    constexpr unsigned Seed = 7;
    QList<ChartValue *> samples;
    samples.reserve(count);
    for (int i = 0; i < count; ++i) {
        samples.append(new ChartValue);
    }
    if (records == Strewn) {
        std::mt19937 random(Seed);
        std::shuffle(samples.begin(), samples.end(), random);
    }
    const std::vector<double> values = ordinates(shape, count);
    for (int i = 0; i < count; ++i) {
        samples[i]->x = double(i);
        samples[i]->y = values[size_t(i)];
    }
    BenchSeries *series = model.newSeries();
    model.addValues(series, samples);
    series->m_pointThread->wait(); // The calculation of the empty series.
    series->updateMatrix(BenchPlot);
    series->m_pointThread->m_rect = series->visibleRect();
    return series;
}

/// The point calculation on this thread, again and again.
void calculate(benchmark::State &state, BenchSeries *series)
{
    series->m_pointThread->run(); // has its memory from now on
    for (auto _ : state) {
        series->m_pointThread->run();
    }
    state.SetItemsProcessed(state.iterations() * series->m_values.size());
    state.counters["points"] = series->m_pointThread->m_points.size();
}

/// Over the whole range.
void calculatePoints(benchmark::State &state, DataShape shape, Records records)
{
    BenchModel model;
    calculate(state, filledSeries(model, shape, int(state.range(0)), records));
}
BENCHMARK_CAPTURE(calculatePoints, smooth, Smooth, InOrder)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, noisy, Noisy, InOrder)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, stepped, Stepped, InOrder)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, randomWalk, RandomWalk, InOrder)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePoints, noisyStrewn, Noisy, Strewn)
    ->RangeMultiplier(10)
    ->Range(1000000, 10000000)
    ->Unit(benchmark::kMillisecond);

/// The yardstick: the same list walked once, doing nothing but adding up.
void bareWalk(benchmark::State &state, Records records)
{
    BenchModel model;
    const int count = int(state.range(0));
    const BenchSeries *series = filledSeries(model, Noisy, count, records);
    for (auto _ : state) {
        double sum = 0.0;
        for (const ChartValue *value : series->m_values) {
            sum += value->y;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK_CAPTURE(bareWalk, inOrder, InOrder)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bareWalk, strewn, Strewn)
    ->RangeMultiplier(10)
    ->Range(1000000, 10000000)
    ->Unit(benchmark::kMillisecond);

/// The same points by the plain rules, pair by pair.
void calculatePlainly(benchmark::State &state, DataShape shape)
{
    BenchModel model;
    const int count = int(state.range(0));
    const BenchSeries *series = filledSeries(model, shape, count);
    const QRectF window = series->visibleRect();
    for (auto _ : state) {
        benchmark::DoNotOptimize(PlainWalk::points(*series, window));
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK_CAPTURE(calculatePlainly, noisy, Noisy)
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculatePlainly, smooth, Smooth)->Arg(1000000)->Unit(benchmark::kMillisecond);

/// A user who has zoomed in: 1% of the samples are in sight.
void calculateOnePercent(benchmark::State &state, DataShape shape)
{
    constexpr double Shown = 0.01; // of the range
    BenchModel model;
    BenchSeries *series = filledSeries(model, shape, int(state.range(0)));
    QRectF &window = series->m_pointThread->m_rect;
    window.moveLeft(window.left() + 0.5 * window.width());
    window.setWidth(window.width() * Shown);
    series->m_matrix = QTransform::fromScale(1.0 / Shown, 1.0) * series->m_matrix *
                       QTransform::fromTranslate(-0.5 * BenchPlot.width() / Shown, 0.0);
    series->m_matrix.type();
    calculate(state, series);
}
BENCHMARK_CAPTURE(calculateOnePercent, noisy, Noisy)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculateOnePercent, smooth, Smooth)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);

/// A step of a live chart: one sample more, and a window that ends with it and shows the last tenth
/// of what is held.
void calculateLive(benchmark::State &state)
{
    constexpr double Shown = 0.1; // of the range
    BenchModel model;
    const int count = int(state.range(0));
    BenchSeries *series = filledSeries(model, Noisy, count);
    const double span = count * Shown;
    QRectF &window = series->m_pointThread->m_rect;
    window.setWidth(span);
    const double scaleX = BenchPlot.width() / span;
    series->m_pointThread->run(); // takes in what is held
    double x = count;
    for (auto _ : state) {
        series->addValues({new ChartValue{x, 0.5}});
        window.moveLeft(x - span);
        series->m_matrix =
            QTransform(scaleX, 0.0, 0.0, series->m_matrix.m22(),
                       BenchPlot.left() - window.left() * scaleX, series->m_matrix.dy());
        series->m_matrix.type();
        series->m_pointThread->run();
        x += 1.0;
    }
    state.counters["points"] = series->m_pointThread->m_points.size();
}
BENCHMARK(calculateLive)
    ->RangeMultiplier(10)
    ->Range(100000, 10000000)
    ->Unit(benchmark::kMillisecond);

} // namespace
