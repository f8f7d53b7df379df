// How long a step of a live chart keeps the GUI thread.

#include "benchdata.h"

#include "axes/horizontalchartaxis.h"
#include "views/chartwidget.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <ctime>

namespace {

/// Seconds that the calling thread has computed so far; waiting does not count.
double threadTime()
{
    constexpr double NanosecondsPerSecond = 1e9;
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / NanosecondsPerSecond;
}

double quantile(std::vector<double> &values, double part)
{
    const auto nth = values.begin() + std::ptrdiff_t(part * double(values.size() - 1));
    std::nth_element(values.begin(), nth, values.end());
    return *nth;
}

/// Where the pane is redrawn.
enum Target {
    OnScreen, ///< In its window, whose background and copy to the screen count too.
    OnImage   ///< As an application draws it itself.
};

/// One sample more, a window that slides over the last tenth of what is held, and the redraw of the
/// pane when the points are there. The time is that of the GUI thread, from the sample to the
/// picture; while the worker computes, the thread is free.
void liveStep(benchmark::State &state, DataShape shape, Target target)
{
    constexpr double Shown = 0.1; // of the samples
    const int count = int(state.range(0));
    BenchDynamicModel model;
    model.m_settings.visibleInterval = count * Shown;
    model.m_settings.dynamicGrid = true;
    model.applyChartSettings();
    ChartWidget &pane = *model.mainChart();
    pane.resize(1000, 600);
    pane.setVisible(target == OnScreen);
    QImage image(pane.size(), QImage::Format_RGB32);
    BenchSeries *series = model.newSeries();
    const std::vector<double> values = ordinates(shape, count);
    for (int i = 0; i < count; ++i) {
        model.addValue(series, new ChartValue{double(i), values[size_t(i)]});
    }

    QEventLoop loop;
    QObject::connect(series, SIGNAL(updatePointsFinished()), &loop, SLOT(quit()));
    const auto redraw = [&] {
        model.updateCharts();
        loop.exec();
        QCoreApplication::processEvents(); // the end of the pass and the painting
        if (target == OnImage) {
            QPainter painter(&image);
            pane.paint(painter, pane.palette(), QRectF());
        }
    };
    redraw(); // the first one takes all samples into account
    redraw();

    std::vector<double> times;
    double x = count;
    for (auto _ : state) {
        const double start = threadTime();
        model.addValue(series, new ChartValue{x, values[size_t(x) % values.size()]});
        redraw();
        times.push_back(threadTime() - start);
        state.SetIterationTime(times.back());
        x += 1.0;
    }
    constexpr double Milliseconds = 1000.0; // of a second
    state.counters["median ms"] = quantile(times, 0.5) * Milliseconds;
    state.counters["99% ms"] = quantile(times, 0.99) * Milliseconds;
}
BENCHMARK_CAPTURE(liveStep, noisyOnScreen, Noisy, OnScreen)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->UseManualTime()
    ->Iterations(1000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(liveStep, noisyOnImage, Noisy, OnImage)
    ->RangeMultiplier(10)
    ->Range(10000, 10000000)
    ->UseManualTime()
    ->Iterations(1000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(liveStep, randomWalkOnScreen, RandomWalk, OnScreen)
    ->Arg(1000000)
    ->UseManualTime()
    ->Iterations(1000)
    ->Unit(benchmark::kMillisecond);

} // namespace
