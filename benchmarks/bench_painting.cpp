// How long the GUI thread is busy with one repaint.

#include "benchdata.h"

#include "series/pointthread.h"
#include "views/chartwidget.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>

namespace {

/// One pane with one series of a million samples, painted from its points: frame, grid, labels and
/// curve.
void paintPane(benchmark::State &state, DataShape shape)
{
    constexpr int Samples = 1000000;
    BenchModel model;
    BenchSeries *series = model.newSeries();
    series->m_pointsVisible = state.range(0) != 0;
    const std::vector<double> values = ordinates(shape, Samples);
    QList<ChartValue *> samples;
    samples.reserve(Samples);
    for (int i = 0; i < Samples; ++i) {
        samples.append(new ChartValue{double(i), values[size_t(i)]});
    }
    model.addValues(series, samples);
    series->m_pointThread->wait();
    series->updatePoints(QRectF());
    series->m_pointThread->wait();

    ChartWidget &pane = *model.mainChart();
    QImage image(pane.size(), QImage::Format_ARGB32_Premultiplied);
    const int points = series->m_pointThread->m_points.size();
    for (auto _ : state) {
        QPainter painter(&image);
        pane.paint(painter, pane.palette(), QRectF());
    }
    state.SetItemsProcessed(state.iterations() * points);
    state.counters["points"] = points;
}
BENCHMARK_CAPTURE(paintPane, smooth, Smooth)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(paintPane, noisy, Noisy)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(paintPane, stepped, Stepped)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(paintPane, randomWalk, RandomWalk)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace
