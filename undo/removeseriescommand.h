#pragma once

#include "undo/scalecommand.h"

class AbstractChartSeries;

/**
 * Takes series out of the model and brings them back.
 *
 * While they are out, with their samples, the command owns them and deletes them with itself.
 */
class QUARVCHART_EXPORT RemoveSeriesCommand : public ScaleCommand
{
public:
    /// \p series holds the series by their rows before the removal. To be made before it.
    RemoveSeriesCommand(AbstractChartModel *model, QMap<int, AbstractChartSeries *> &series,
                        QUndoCommand *parent = nullptr);
    ~RemoveSeriesCommand() override;

    void undo() override; ///< Brings the series back, and the axes with them.
    void redo() override; ///< Takes the series out, and the axes follow.
    bool mergeWith(const QUndoCommand *other) override; ///< As the base class: scale steps only.
    int type() const override;                          ///< RemoveType.

    /// Brings the series back; \p withParams says whether the axes follow.
    void undo(bool withParams);
    /// Takes the series out; \p withParams says whether the axes follow.
    void redo(bool withParams);

    QMap<int, AbstractChartSeries *> m_removedSeries; ///< By row before the removal.
    bool m_ownsRemoved = false; ///< They are out of the model and belong to this command.
    int m_selectedRow = -1;     ///< Selected row when the command was made; -1 for none.
    int m_colorIndex = -1;      ///< The model's colour counter when the command was made.
};
