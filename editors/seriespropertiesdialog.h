#pragma once

#include "quarvchart_export.h"

#include <QDialog>
#include <QPointer>

class AbstractChartSeries;
class Ui_SeriesPropertiesDialog;

/**
 * The modal dialog in which a user sets the line colour, line width, point visibility and point
 * size of one series.
 *
 * Accepted with a change, it writes all four and marks the series as customized; cancelled, or
 * accepted without a change, it writes nothing. It repaints nothing: whoever runs it does. Such
 * changes are no undo steps. GUI thread only.
 */
class QUARVCHART_EXPORT SeriesPropertiesDialog : public QDialog
{
    Q_OBJECT

public:
    /// \p series must not be null and is not owned. It may die while the dialog is open; accepting
    /// does nothing then. Widths and sizes from 1 to 10 pixels can be shown; others are shown as
    /// the next one, and count as changed.
    explicit SeriesPropertiesDialog(AbstractChartSeries *series, QWidget *parent = nullptr,
                                    Qt::WindowFlags flags = Qt::WindowFlags());
    ~SeriesPropertiesDialog() override;

    void accept() override; ///< Writes what has changed, and closes.

    Ui_SeriesPropertiesDialog *ui; ///< The form; owned.
    AbstractChartSeries *m_series; ///< Not owned; null for none.

private:
    bool isChanged() const;
    void writeSeries();

    const QPointer<AbstractChartSeries> m_livingSeries; ///< Tells whether the series has died.
};
