#pragma once

#include "model/dynamicchartmodel.h"
#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"

#include <vector>

/// Shapes of data that the point calculation meets in practice.
enum DataShape {
    Smooth,    ///< A slow sine: neighbours fall on one pixel.
    Noisy,     ///< White noise: every sample is far from the one before.
    Stepped,   ///< A square wave: long level runs.
    RandomWalk ///< Small random steps: the usual measurement.
};

/// The ordinates of a shape, always the same.
std::vector<double> ordinates(DataShape shape, int count);

/// The smallest series.
class BenchSeries : public AbstractChartSeries
{
public:
    double minimumY() const override { return -1.0; }
    double maximumY() const override { return 1.0; }
    int precision() const override { return 3; }
    char format() const override { return 'f'; }
    QColor textColor(int) override { return Qt::white; }
    bool isValid(const ChartValue *value) const override
    {
        return AbstractChartSeries::isValid(value);
    }
};

/// A model of the class \p Base with one pane of the size of a full screen, and series that take no
/// part in an undo history.
template <typename Base>
class FullScreenModel : public Base
{
public:
    FullScreenModel();
    ~FullScreenModel() override;

    /// Adds an empty series.
    BenchSeries *newSeries();
};

using BenchModel = FullScreenModel<StaticChartModel>;
using BenchDynamicModel = FullScreenModel<DynamicChartModel>;

/// The plot of that pane, in pixels.
constexpr QRectF BenchPlot{50.0, 50.0, 1800.0, 900.0};
