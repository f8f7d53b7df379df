#pragma once

#include "undo/removeseriescommand.h"

/// Empties the model in one step, with one pair of row signals.
class QUARVCHART_EXPORT RemoveAllSeriesCommand : public RemoveSeriesCommand
{
public:
    using RemoveSeriesCommand::RemoveSeriesCommand;
    using RemoveSeriesCommand::redo;

    void redo() override;
    int type() const override;
};
