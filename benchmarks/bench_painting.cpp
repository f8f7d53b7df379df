// How long the GUI thread is busy with one repaint.

#include "benchdata.h"

#include "series/pointthread.h"
#include "views/chartwidget.h"
#include "views/cursorvalue.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <QPen>

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

/// The curve alone, in a pane of the usual size.
constexpr QRectF CurvePlot{0.0, 0.0, 1000.0, 600.0};

/// A series of so many samples whose points are made for that pane.
BenchSeries *plottedSeries(BenchModel &model, DataShape shape, int count)
{
    BenchSeries *series = model.newSeries();
    series->m_pointsVisible = false;
    const std::vector<double> values = ordinates(shape, count);
    QList<ChartValue *> samples;
    samples.reserve(count);
    for (int i = 0; i < count; ++i) {
        samples.append(new ChartValue{double(i), values[size_t(i)]});
    }
    model.addValues(series, samples);
    series->m_pointThread->wait(); // The calculation of the empty series.
    series->updateMatrix(CurvePlot);
    series->m_pointThread->m_rect = series->visibleRect();
    series->m_pointThread->run();
    return series;
}

/// Paints again and again on an image with \p ratio device pixels to a pixel.
template <typename Paint>
void paintAgain(benchmark::State &state, const BenchSeries &series, int ratio, Paint paint)
{
    QImage image(CurvePlot.size().toSize() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setClipRect(CurvePlot);
    for (auto _ : state) {
        paint(painter);
    }
    const int points = series.m_pointThread->m_points.size();
    state.SetItemsProcessed(state.iterations() * points);
    state.counters["points"] = points;
}

/// What a repaint costs for one curve. Arguments: samples, device pixels to a pixel.
void paintCurve(benchmark::State &state, DataShape shape)
{
    BenchModel model;
    BenchSeries *series = plottedSeries(model, shape, int(state.range(0)));
    paintAgain(state, *series, int(state.range(1)), [series](QPainter &painter) {
        QList<CursorValue> values;
        series->paint(painter, CurvePlot, QTransform(), QLineF(), values, nullptr);
    });
}

/// The yardstick: each segment drawn by itself.
void paintSegments(benchmark::State &state, DataShape shape)
{
    BenchModel model;
    BenchSeries *series = plottedSeries(model, shape, int(state.range(0)));
    paintAgain(state, *series, int(state.range(1)), [series](QPainter &painter) {
        QPen pen(series->m_color);
        pen.setWidth(series->m_lineWidth);
        painter.setPen(pen);
        const QVector<ChartPoint> &points = series->m_pointThread->m_points;
        for (int i = 0; i + 1 < points.size(); ++i) {
            const ChartPoint &p = points.at(i);
            const ChartPoint &q = points.at(i + 1);
            const QLineF line(p.x, p.y, q.x, q.y);
            if (!p.isGap() && !q.isGap()) {
                painter.drawLines(&line, 1);
            }
        }
    });
}

void curveArguments(benchmark::internal::Benchmark *benchmark)
{
    benchmark->ArgsProduct({{10000, 100000, 1000000, 10000000}, {1}});
    benchmark->Args({10000, 2})->Args({1000000, 2});
    benchmark->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(paintCurve, smooth, Smooth)->Apply(curveArguments);
BENCHMARK_CAPTURE(paintCurve, noisy, Noisy)->Apply(curveArguments);
BENCHMARK_CAPTURE(paintCurve, stepped, Stepped)->Apply(curveArguments);
BENCHMARK_CAPTURE(paintCurve, randomWalk, RandomWalk)->Apply(curveArguments);

void segmentArguments(benchmark::internal::Benchmark *benchmark)
{
    benchmark->ArgsProduct({{10000, 100000, 1000000}, {1}});
    benchmark->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(paintSegments, smooth, Smooth)->Apply(segmentArguments)->Args({10000, 2});
BENCHMARK_CAPTURE(paintSegments, noisy, Noisy)->Apply(segmentArguments)->Iterations(1);
BENCHMARK_CAPTURE(paintSegments, stepped, Stepped)->Apply(segmentArguments)->Args({10000, 2});
BENCHMARK_CAPTURE(paintSegments, randomWalk, RandomWalk)->Apply(segmentArguments);

} // namespace
