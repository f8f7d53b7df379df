#include "undo/addseriescommand.h"

#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"
#include "series/seriesregistry_p.h"

AddSeriesCommand::AddSeriesCommand(AbstractChartModel *model,
                                   QMap<int, AbstractChartSeries *> &added,
                                   QMap<int, AbstractChartSeries *> &removed, QUndoCommand *parent)
    : RemoveSeriesCommand(model, removed, parent)
    , m_addedSeries(added)
{
}

AddSeriesCommand::~AddSeriesCommand()
{
    if (!m_ownsAdded) {
        return;
    }
    for (AbstractChartSeries *series : qAsConst(m_addedSeries)) {
        deleteSeries(series);
    }
}

void AddSeriesCommand::undo()
{
    // The old series first, here as in redo(): their rows count from the start of the list, so the
    // added ones that still stand at its end do not disturb them.
    if (!m_removedSeries.isEmpty()) {
        RemoveSeriesCommand::undo(false);
    }
    if (m_model && !m_addedSeries.isEmpty()) {
        const QMap<int, AbstractChartSeries *> added = m_addedSeries;
        for (AbstractChartSeries *series : added) {
            if (series) {
                m_model->completeRemoveSeries(series);
            }
        }
        m_ownsAdded = true;
    }
    ScaleCommand::undo();
}

void AddSeriesCommand::redo()
{
    if (!m_removedSeries.isEmpty()) {
        RemoveSeriesCommand::redo(false);
    }
    if (m_model && !m_addedSeries.isEmpty()) {
        const QMap<int, AbstractChartSeries *> added = m_addedSeries;
        for (AbstractChartSeries *series : added) {
            if (series) {
                m_model->completeAddSeries(series);
            }
        }
        m_ownsAdded = false;
    }
    ScaleCommand::redo();
}

int AddSeriesCommand::type() const
{
    return AddType;
}
