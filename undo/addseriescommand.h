#pragma once

#include "undo/removeseriescommand.h"

/**
 * Adds series; the oldest leave if the model would hold more than ten.
 *
 * While the added series are out of the model after an undo, the command owns them.
 */
class QUARVCHART_EXPORT AddSeriesCommand : public RemoveSeriesCommand
{
public:
    /// \p added is in order of addition, its keys mean nothing else; \p removed holds by row the
    /// series that leave. Until the push the added series belong to the caller.
    AddSeriesCommand(AbstractChartModel *model, QMap<int, AbstractChartSeries *> &added,
                     QMap<int, AbstractChartSeries *> &removed, QUndoCommand *parent = nullptr);
    ~AddSeriesCommand() override;

    using RemoveSeriesCommand::redo;
    using RemoveSeriesCommand::undo;

    /// The old series come back first, then the added ones leave: not the mirror image of redo().
    void undo() override;
    void redo() override;      ///< The old series leave, then the added ones come.
    int type() const override; ///< AddType.

    QMap<int, AbstractChartSeries *> m_addedSeries; ///< In order of addition.
    bool m_ownsAdded = false; ///< They are out of the model and belong to this command.
};
