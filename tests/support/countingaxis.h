#pragma once

#include "axes/verticalchartaxis.h"
#include "series/abstractchartseries.h"

/// A Y axis that counts how often its grid is computed.
class CountingAxis : public VerticalChartAxis
{
public:
    using VerticalChartAxis::VerticalChartAxis;

    void recalculateGridValues() override
    {
        ++m_recalculations;
        VerticalChartAxis::recalculateGridValues();
    }

    int m_recalculations = 0;
};

/// Gives \p series such an axis, in the state of its former one, which dies. The series owns it.
inline CountingAxis *installCountingAxis(AbstractChartSeries &series)
{
    auto *axis = new CountingAxis(&series);
    static_cast<ChartAxis &>(*axis) = *series.m_axisY;
    delete series.m_axisY;
    series.m_axisY = axis;
    return axis;
}
