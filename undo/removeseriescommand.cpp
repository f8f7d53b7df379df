#include "undo/removeseriescommand.h"

#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"
#include "series/seriesregistry_p.h"

RemoveSeriesCommand::RemoveSeriesCommand(AbstractChartModel *model,
                                         QMap<int, AbstractChartSeries *> &series,
                                         QUndoCommand *parent)
    : ScaleCommand(model, parent)
    , m_removedSeries(series)
{
    if (model) {
        m_selectedRow = model->selectedRow();
        m_colorIndex = model->m_colorIndex;
    }
}

RemoveSeriesCommand::~RemoveSeriesCommand()
{
    if (!m_ownsRemoved) {
        return;
    }
    for (AbstractChartSeries *series : qAsConst(m_removedSeries)) {
        deleteSeries(series);
    }
}

void RemoveSeriesCommand::undo()
{
    undo(true);
}

void RemoveSeriesCommand::redo()
{
    redo(true);
}

void RemoveSeriesCommand::undo(bool withParams)
{
    if (m_model && !m_removedSeries.isEmpty()) {
        m_model->restoreSeries(m_removedSeries, m_selectedRow, m_colorIndex);
        m_ownsRemoved = false;
    }
    if (withParams) {
        ScaleCommand::undo();
    }
}

void RemoveSeriesCommand::redo(bool withParams)
{
    if (m_model && !m_removedSeries.isEmpty()) {
        const QMap<int, AbstractChartSeries *> removed = m_removedSeries;
        for (AbstractChartSeries *series : removed) {
            if (series) {
                m_model->completeRemoveSeries(series);
            }
        }
        m_ownsRemoved = true;
    }
    if (withParams) {
        ScaleCommand::redo();
    }
}

bool RemoveSeriesCommand::mergeWith(const QUndoCommand *other)
{
    return ScaleCommand::mergeWith(other);
}

int RemoveSeriesCommand::type() const
{
    return RemoveType;
}
