#pragma once

#include "quarvchart_export.h"

#include <QUndoCommand>

/// A command of the chart's undo stack; type() tells the classes apart, as id() is one for all.
class QUARVCHART_EXPORT ChartUndoCommand : public QUndoCommand
{
public:
    /// Codes that type() yields.
    enum Type { RemoveType = 1, AddType = 2, ScaleType = 3 };

    using QUndoCommand::QUndoCommand;

    /// The Type of the command's class.
    virtual int type() const = 0;
};
