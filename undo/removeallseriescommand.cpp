#include "undo/removeallseriescommand.h"

#include "model/abstractchartmodel.h"

void RemoveAllSeriesCommand::redo()
{
    if (m_model && !m_removedSeries.isEmpty()) {
        m_model->completeRemoveAllSeries();
        m_ownsRemoved = true;
    }
    ScaleCommand::redo();
}

int RemoveAllSeriesCommand::type() const
{
    return RemoveType;
}
