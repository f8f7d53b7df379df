// How long the GUI thread is busy with one repaint of a shown pane of ten series.

#include "benchdata.h"

#include "series/pointthread.h"
#include "views/chartwidget.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSize>

namespace {

constexpr int SeriesCount = 10;
constexpr QSize PaneSize(1000, 600); // pixels

void setCurve(BenchSeries &series, DataShape shape, int count, double phase)
{
    const std::vector<double> values = ordinates(shape, count);
    QList<ChartValue *> samples;
    samples.reserve(count);
    for (int i = 0; i < count; ++i) {
        samples.append(new ChartValue{double(i), values[size_t(i)] + phase});
    }
    series.m_pointThread->wait();
    static_cast<BenchModel *>(series.m_chart->m_model)->addValues(&series, samples);
}

void calculate(BenchSeries &series)
{
    series.m_pointThread->wait();
    series.updatePoints(QRectF());
    series.m_pointThread->wait();
}

/// A shown pane of ten series, each of \p count samples and a little above the one before.
struct ShownPane
{
    ShownPane(DataShape shape, int count)
    {
        constexpr double Shift = 0.05;
        m_pane.resize(PaneSize);
        for (int i = 0; i < SeriesCount; ++i) {
            m_series[i] = m_model.newSeries();
            m_series[i]->m_pointsVisible = false;
            setCurve(*m_series[i], shape, count, Shift * i);
        }
        for (BenchSeries *series : m_series) {
            calculate(*series);
        }
        m_pane.show();
        QCoreApplication::processEvents();
        m_pane.repaint();
    }

    BenchModel m_model;
    ChartWidget &m_pane{*m_model.mainChart()};
    BenchSeries *m_series[SeriesCount];
};

/// The samples of one curve; two of them are as good as none, and leave the rest of the pane.
DataShape shapeOf(const benchmark::State &state)
{
    return DataShape(state.range(0));
}

int countOf(const benchmark::State &state)
{
    return int(state.range(1));
}

/// The first repaint after new samples: one calculation has ended.
void repaintAfterPass(benchmark::State &state)
{
    ShownPane shown(shapeOf(state), countOf(state));
    for (auto _ : state) {
        state.PauseTiming();
        calculate(*shown.m_series[0]);
        state.ResumeTiming();
        shown.m_pane.repaint();
    }
}

/// The application paints the pane into an image.
void paintImage(benchmark::State &state)
{
    ShownPane shown(shapeOf(state), countOf(state));
    QImage image(PaneSize, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        shown.m_pane.paint(painter, shown.m_pane.palette(), QRectF());
    }
}

/// A window that stood before the pane goes away.
void expose(benchmark::State &state)
{
    ShownPane shown(shapeOf(state), countOf(state));
    for (auto _ : state) {
        shown.m_pane.repaint();
    }
}

/// The mouse moves by a pixel over the plot, and all series show a value.
void moveCursor(benchmark::State &state)
{
    constexpr int Left = 100;
    constexpr int Steps = 800;
    ShownPane shown(shapeOf(state), countOf(state));
    int step = 0;
    for (auto _ : state) {
        shown.m_pane.changeCursorState(Left + step++ % Steps, true);
        QCoreApplication::sendPostedEvents();
    }
}

/// The same where no series has a value: right of the curves, inside the frame.
void moveCursorBesideCurves(benchmark::State &state)
{
    ShownPane shown(shapeOf(state), countOf(state));
    const QRectF frame = shown.m_pane.fullChartRect(QRectF());
    int step = 0;
    for (auto _ : state) {
        shown.m_pane.changeCursorState(frame.right() - step++ % 4, true);
        QCoreApplication::sendPostedEvents();
    }
}

void curves(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Args({Smooth, 2})->Args({Smooth, 1000000})->Args({Noisy, 100000});
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(repaintAfterPass)->Apply(curves);
BENCHMARK(paintImage)->Apply(curves);
BENCHMARK(expose)->Apply(curves);
BENCHMARK(moveCursor)->Apply(curves);
BENCHMARK(moveCursorBesideCurves)->Apply(curves);

} // namespace
