#pragma once

#include "quarvchart_export.h"
#include "settings/seriessettings.h"

#include <QByteArray>
#include <QColor>
#include <QMap>
#include <QString>

/**
 * Everything about a chart that outlives a run of the program.
 *
 * A plain record that the model holds by value. An application changes its members and calls
 * AbstractChartModel::applyChartSettings(); a change alone has no effect until the next use. No
 * value is validated. GUI thread only.
 */
class QUARVCHART_EXPORT ChartSettings
{
public:
    static QColor defaultBackgroundColor(); ///< Black.
    static QColor defaultGridColor();       ///< White.
    static QColor defaultCursorColor();     ///< Orange: 255, 170, 0.

    /**
     * Fills the record from the store, under \p group ("chart" if empty).
     *
     * A missing key gives its default, whatever the member held, but leaves the splitter states
     * alone. No value is checked: an unreadable number gives 0, an unreadable flag false, and an
     * unreadable colour an invalid one, in whose place panes and cursor paint the default.
     */
    void loadSettings(QString group);

    /// Writes the record to the store, under \p group ("chart" if empty). Removes nothing: an empty
    /// legendState and absent splitter states leave what is stored. Failures are silent.
    void saveSettings(QString group);

    QString organization; ///< First name of the store, as QSettings takes it.
    QString application;  ///< Second name of the store.

    QByteArray legendState;              ///< QHeaderView::saveState() of the legend.
    QMap<int, QByteArray> splitterState; ///< QSplitter::saveState() by number of panes, 1 to 10.

    QColor backgroundColor; ///< Of the panes; the default if invalid.
    QColor gridColor;       ///< Grid and frame; the default if invalid.
    QColor cursorLineColor; ///< The default if invalid.

    double visibleInterval = 600.0; ///< Width of a live window in X units (seconds for date-time).
    bool dynamicGrid = false;       ///< A live window slides (true) or jumps (false).
    bool autoRemoveEmptyChart = true; ///< A pane that a drop leaves empty goes away.
    bool individualScale = true;      ///< A Y range for each series, or one for all.
    bool autoScaleX = false;          ///< The X axis follows the data.
    bool autoScaleY = false;          ///< The Y axes follow the data.

    SeriesSettings seriesSettings; ///< What new series get.
};
