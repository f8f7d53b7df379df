#pragma once

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"

#include <QVarLengthArray>

/// The state of one axis at one moment, as UndoAxisParams has it. Without initialisers, so that a
/// row of them costs only what is written into it.
struct AxisState
{
    bool isStateOf(const ChartAxis *axis) const
    {
        if (!axis) {
            return !isAxis;
        }
        return isAxis && min == axis->m_min && max == axis->m_max && zoomed == axis->m_zoomed;
    }

    double min;
    double max;
    bool zoomed;
    bool isAxis; ///< False for an axis that is missing; the rest says nothing then.
};

inline AxisState stateOf(const ChartAxis *axis)
{
    return axis ? AxisState{axis->m_min, axis->m_max, axis->m_zoomed, true}
                : AxisState{0.0, 0.0, false, false};
}

inline const ChartAxis *axisY(const AbstractChartSeries *series)
{
    return series ? series->m_axisY : nullptr;
}

Q_DECLARE_TYPEINFO(AxisState, Q_PRIMITIVE_TYPE);

/**
 * The state of all axes at one moment, as a ScaleCommand would capture it, but without a command
 * and its maps: entering a sample allocates nothing.
 */
class AxesSnapshot
{
public:
    explicit AxesSnapshot(const AbstractChartModel &model)
        : m_model(model)
        , m_axisX(stateOf(model.m_axisX))
        , m_axesY(model.m_series.size())
    {
        AxisState *state = m_axesY.data();
        for (const AbstractChartSeries *series : model.m_series) {
            *state++ = stateOf(axisY(series));
        }
    }

    /// Whether all axes are in this state now. All are looked at, since what a derived model does
    /// for one series may have touched any.
    bool isPresent() const
    {
        const QList<AbstractChartSeries *> &all = m_model.m_series;
        if (!m_axisX.isStateOf(m_model.m_axisX) || m_axesY.size() != all.size()) {
            return false;
        }
        const AxisState *state = m_axesY.constData();
        for (const AbstractChartSeries *series : all) {
            if (!state++->isStateOf(axisY(series))) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr int UsualSeries = 32;

    const AbstractChartModel &m_model;
    AxisState m_axisX;
    QVarLengthArray<AxisState, UsualSeries> m_axesY;
};
