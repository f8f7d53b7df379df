#pragma once

#include "undo/chartundocommand.h"
#include "undo/undoaxisparams.h"

#include <QMap>

class AbstractChartModel;
class ChartAxis;

/**
 * One undoable step: the state of all axes before and after it.
 *
 * Made before the axes change, which captures the old state. The first redo(), which is the push,
 * captures the new state from the axes; later ones apply it. When data moves an axis, the model
 * captures anew into the commands next to the stack's index.
 *
 * Does nothing without a model. GUI thread only.
 */
class QUARVCHART_EXPORT ScaleCommand : public ChartUndoCommand
{
public:
    /// \p model is not owned and outlives the command.
    explicit ScaleCommand(AbstractChartModel *model, QUndoCommand *parent = nullptr);

    void undo() override;    ///< Applies the old state.
    void redo() override;    ///< Captures the new state the first time, applies it later.
    int id() const override; ///< One number for all commands of a chart, so that each may merge.

    /// Whether \p other is a pure scale step that ended in the state in which this command ended;
    /// the stack then drops it. Changes neither.
    bool mergeWith(const QUndoCommand *other) override;

    int type() const override; ///< ScaleType.

    /// Captures the axes as the state before the step. Rows are added or overwritten, never
    /// removed.
    void setOldParams();

    /// Captures the axes as the state after the step, likewise, and updates the model's actions.
    void setNewParams();

    /**
     * Writes a saved state into the axes, then updates charts and actions.
     *
     * \p y is keyed by row. A size that differs from the number of series gives the warning
     * "Size error" with both counts; the rows that exist are applied all the same.
     */
    void setParams(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y);

    /// Whether the axes differ from the old state.
    bool isValid() const;

    AbstractChartModel *m_model;            ///< Not owned.
    QMap<int, UndoAxisParams> m_oldParamsY; ///< By row in the model's list at capture time.
    QMap<int, UndoAxisParams> m_newParamsY; ///< Likewise.
    UndoAxisParams m_oldParamsX;            ///< Valid if the model has an X axis.
    UndoAxisParams m_newParamsX;            ///< Valid once the new state has been captured.

private:
    void applyAxes(const UndoAxisParams &x, const QMap<int, UndoAxisParams> &y);
    static void applyAxis(const UndoAxisParams &params, ChartAxis *axis);
};
