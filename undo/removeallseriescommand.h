#pragma once

#include "undo/removeseriescommand.h"

/// Empties the model in one step, with one pair of row signals.
class QUARVCHART_EXPORT RemoveAllSeriesCommand : public RemoveSeriesCommand
{
public:
    using RemoveSeriesCommand::redo;
    using RemoveSeriesCommand::RemoveSeriesCommand;

    void redo() override;      ///< Takes all series out.
    int type() const override; ///< RemoveType.
};
