#include "undo/scalecommand.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/abstractchartmodel.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"

#include <QDebug>

namespace {

void captureAxes(const AbstractChartModel &model, UndoAxisParams &x, QMap<int, UndoAxisParams> &y)
{
    const AxesLocker locker(&model);
    x = UndoAxisParams(model.m_axisX);
    for (int row = 0; row < model.m_series.size(); ++row) {
        if (const AbstractChartSeries *series = model.m_series.at(row)) {
            y.insert(row, UndoAxisParams(series->m_axisY));
        }
    }
}

} // namespace

ScaleCommand::ScaleCommand(AbstractChartModel *model, QUndoCommand *parent)
    : ChartUndoCommand(parent)
    , m_model(model)
{
    setOldParams();
}

void ScaleCommand::undo()
{
    setParams(m_oldParamsX, m_oldParamsY);
}

void ScaleCommand::redo()
{
    if (m_newParamsX.valid) {
        setParams(m_newParamsX, m_newParamsY);
    } else {
        setNewParams();
    }
}

int ScaleCommand::id() const
{
    // One id for all commands of a chart, so that the stack asks each whether it merges.
    return ScaleType;
}

bool ScaleCommand::mergeWith(const QUndoCommand *other)
{
    const auto *next = dynamic_cast<const ScaleCommand *>(other);
    if (!next || next->type() != ScaleType) {
        return false;
    }
    return m_newParamsX == next->m_newParamsX && m_newParamsY == next->m_newParamsY;
}

int ScaleCommand::type() const
{
    return ScaleType;
}

void ScaleCommand::setOldParams()
{
    if (m_model) {
        captureAxes(*m_model, m_oldParamsX, m_oldParamsY);
    }
}

void ScaleCommand::setNewParams()
{
    if (!m_model) {
        return;
    }
    captureAxes(*m_model, m_newParamsX, m_newParamsY);
    m_model->updateActions();
}

void ScaleCommand::setParams(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y)
{
    if (!m_model) {
        return;
    }
    if (m_model->m_series.size() != y.size()) {
        qWarning() << "Size error" << m_model->m_series.size() << y.size();
    }
    applyAxes(x, y);
    m_model->updateCharts();
    m_model->updateActions();
}

void ScaleCommand::applyAxes(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y)
{
    const AxesLocker locker(m_model);
    applyAxis(x, m_model->m_axisX);

    const QList<AbstractChartSeries *> series = m_model->m_series;
    for (int row = 0; row < series.size(); ++row) {
        if (series.at(row)) {
            applyAxis(y.value(row), series.at(row)->m_axisY);
        }
    }
}

void ScaleCommand::applyAxis(const UndoAxisParams &params, ChartAxis *axis)
{
    if (!params.valid || !axis) {
        return;
    }
    axis->assignRange(params.min, params.max);
    axis->m_zoomed = params.zoomed;
}

bool ScaleCommand::isValid() const
{
    if (!m_model) {
        return false;
    }
    UndoAxisParams x;
    QMap<int, UndoAxisParams> y;
    captureAxes(*m_model, x, y);
    return m_oldParamsX != x || m_oldParamsY != y;
}
