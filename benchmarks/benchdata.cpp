#include "benchdata.h"

#include "views/chartwidget.h"

#include <cmath>
#include <random>

namespace {

constexpr unsigned Seed = 20250131;
constexpr double Pi = 3.14159265358979323846;

} // namespace

std::vector<double> ordinates(DataShape shape, int count)
{
    constexpr int Periods = 5;
    constexpr int StepsShown = 40;
    constexpr double WalkStep = 0.01;

    std::mt19937 random(Seed);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    std::vector<double> values(size_t(count), 0.0);
    double walk = 0.0;
    for (int i = 0; i < count; ++i) {
        const double phase = double(i) / count;
        double &value = values[size_t(i)];
        switch (shape) {
        case Smooth:
            value = std::sin(2.0 * Pi * Periods * phase);
            break;
        case Noisy:
            value = noise(random);
            break;
        case Stepped:
            value = int(phase * StepsShown) % 2 == 0 ? -1.0 : 1.0;
            break;
        case RandomWalk:
            walk += WalkStep * noise(random);
            value = walk;
            break;
        }
    }
    return values;
}

template <typename Base>
FullScreenModel<Base>::FullScreenModel()
    : Base("QUARVChart5 benchmarks", "benchmarks")
{
    this->m_seriesEditable = false;
    this->m_settings.autoScaleY = true;
    this->applyChartSettings();
    this->mainChart()->resize(1920, 1080);
}

template <typename Base>
FullScreenModel<Base>::~FullScreenModel()
{
    delete this->mainChart();
}

template <typename Base>
BenchSeries *FullScreenModel<Base>::newSeries()
{
    auto *series = new BenchSeries;
    this->addSeries(series);
    return series;
}

template class FullScreenModel<StaticChartModel>;
template class FullScreenModel<DynamicChartModel>;
