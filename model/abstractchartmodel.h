#pragma once

#include "quarvchart_export.h"
#include "series/chartvalue.h"
#include "settings/chartsettings.h"

#include <QAbstractTableModel>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QList>
#include <QMap>
#include <QPair>
#include <QQueue>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

class AbstractChartSeries;
class AxesMutex;
class ChartAxis;
class ChartWidget;
class HorizontalChartAxis;
class QAction;
class QActionGroup;
class QMenu;
class QPoint;
class QRectF;
class QUndoStack;
class ScaleCommand;

/**
 * The centre of a chart: owns the series, the X axis, the panes, the settings, the undo stack and
 * the actions, and is the legend's table with one row per series.
 *
 * Abstract: a concrete model supplies adjustAxisX(). A change of series runs in two halves: the
 * first decides and pushes an undo command, the second ("complete", "restore") is called by the
 * command and changes the list. Every change of samples or series ends in adjustAxes(), Y first.
 *
 * Threads: sample entry (addValue() to removeOldValues()), update() and updateCharts() may be
 * called from any thread; off the GUI thread the axes move at once and what belongs to the GUI is
 * posted. Everything else belongs to the GUI thread. The application stops its feeders before the
 * model dies. Locks are taken in the order m_pointsMutex and m_valuesMutex of a series, then the
 * lock on the axes below; nothing waits under the last.
 */
class QUARVCHART_EXPORT AbstractChartModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Columns of the legend.
    enum Column { LineColumn = 0, NameColumn = 1 };

    /// How series are spread over panes; m_chartMode holds it.
    enum ChartMode { SingleMode = 0, MultiMode = 1 };

    /// The two names select the store of the settings. Leaves one pane.
    AbstractChartModel(const QString &organization, const QString &application,
                       QObject *parent = nullptr);

    /// Stops all workers and deletes the series; the panes stay and forget the model.
    ~AbstractChartModel() override;

    /// \name Legend table and panes
    /// @{

    int rowCount(const QModelIndex &parent = QModelIndex()) const override; ///< Ignores the parent.
    int columnCount(const QModelIndex &parent = QModelIndex()) const override; ///< Of the headers.

    /// The colour of the series as Qt::ForegroundRole and the series itself as Qt::UserRole; in the
    /// column of names also the name and the check box. Invalid out of range.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /// Takes an int for the check box of the name and nothing else. Emits no dataChanged().
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    /// The titles of m_headers, and nothing for rows and other roles.
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    /// Returns a ChartMimeData with the series of the indexes of the name column; the caller owns
    /// it.
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

    /// All cells can be selected and dragged, names checked and the line's sample edited.
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    AbstractChartSeries *selectedSeries() const; ///< First selected one in row order, or null.
    int selectedRow() const;                     ///< Its row; -1 if there is none.

    /// The first series that has a first sample, valid or not; null if there is none.
    AbstractChartSeries *firstValidSeries() const;

    ChartWidget *mainChart() const; ///< The first pane, or null.

    /// Steps the palette counter and returns its colour; light gray where the palette has none
    /// (10).
    const QColor &newSeriesColor();

    /// Makes a pane at \p position (appended if that is no place in the list) and connects it.
    ChartWidget *appendChart(int position);

    /// Chooses the scale of X; takes effect with the next recalculation of the grid.
    void setUseDateTimeScaleX(bool on);

    /// Tells the legend and redraws the charts. Any thread.
    void update();

    /// Recomputes and repaints what is shown. Asked for during a calculation, it runs once more at
    /// its end. Any thread.
    void updateCharts();

    /// Repaints the panes from the points they have.
    void repaintCharts();

    /// @}

    /// \name Series and samples
    /// @{

    /// Takes over \p series and adds it at the end, as below. Null is ignored.
    virtual void addSeries(AbstractChartSeries *series);

    /**
     * Takes over the series of the list and adds them.
     *
     * Editable models hold ten: at most the first ten of the list are added, as one undo step, and
     * the oldest leave for them. Others add all. Nulls are dropped. Adding a series twice is not
     * detected.
     */
    virtual void addSeries(const QList<AbstractChartSeries *> &series);

    /// Second half of an addition: appends the series, gives it axes, look and a pane.
    virtual void completeAddSeries(AbstractChartSeries *series);

    /// Puts removed series back at their rows, then selects \p selectedRow and sets the palette
    /// counter unless they are negative. A row beyond the end appends.
    virtual void restoreSeries(const QMap<int, AbstractChartSeries *> &series, int selectedRow,
                               int colorIndex);

    /// Takes \p series out as an undo step, or deletes it if the model is not editable.
    virtual void removeSeries(AbstractChartSeries *series);

    /// Second half of a removal: the caller keeps the series.
    virtual void completeRemoveSeries(AbstractChartSeries *series);

    /// Takes all series out as one undo step, or deletes them if the model is not editable.
    virtual void removeAllSeries();

    /// Second half of that, with one pair of row signals. An uneditable model deletes them.
    virtual void completeRemoveAllSeries();

    /// Appends one sample and takes it over; null only adjusts the axes. A null series does nothing
    /// and leaves the sample to the caller. Any thread.
    virtual void addValue(AbstractChartSeries *series, ChartValue *value);

    /// Appends samples in list order and takes them over. Any thread.
    virtual void addValues(AbstractChartSeries *series, const QList<ChartValue *> &values);

    /// Deletes all samples of a series; the drawn line stays until the next update. Any thread.
    virtual void clearValues(AbstractChartSeries *series);

    /// Deletes all samples of all series, one series after the other. Any thread.
    virtual void clearValues();

    /// Merges an ascending queue by X and empties it; \p keepAxes leaves the axes alone. Any
    /// thread.
    virtual void insertValues(AbstractChartSeries *series, QQueue<ChartValue *> &values,
                              bool keepAxes);

    /// Ages samples out; returns whether the picture changed. Adjusts no axis. Any thread.
    virtual bool removeOldValues(AbstractChartSeries *series);

    /// Brings the axes up to date with the data; \p updateUndoHistory lets the commands next to the
    /// stack's index follow. A null series stands for all. Any thread.
    void adjustAxes(AbstractChartSeries *series, bool updateUndoHistory);

    /// @}

    /// \name What a derived model may replace
    /// @{

    /// Gives a series that joins a zoomed chart the relative view of the first valid series.
    virtual void adjustZoom(AbstractChartSeries *series);

    /// Fills m_actions, once, from MultiChart::setModel(). A replacement chooses what toolbar and
    /// pane menu show, and in which order.
    virtual void configureActions();

    /// Pushes a changed settings record into axes and series, and redraws.
    virtual void applyChartSettings();

    /// Enables the actions that make sense at present.
    virtual void updateActions();

    /// Brings the Y axis of \p series up to date, or all of them if \p series is null or the scale
    /// is common. Zoomed axes stay. Any thread.
    virtual void adjustAxisY(AbstractChartSeries *series);
    virtual void adjustAxisY(); ///< All of them. Any thread.

    /// Brings the X axis up to date. Runs with the lock on the axes held; any thread.
    virtual void adjustAxisX() = 0;

    /// Fills the context menu of the legend; one that stays empty is not shown.
    virtual void addActionsToContextMenu(QMenu &menu);

    /// Returns all axes to automatic ranges, without an undo step.
    virtual void undoZoom();

    /// @}

    /// \name Axes and zoom
    /// @{

    /// The Y range common to all series, lower first unless all samples share one negative value;
    /// a series without samples counts as one at 0.
    QPair<double, double> minMaxY() const;

    /// The Y range that \p series should have, by the settings; its values may be in reverse order.
    QPair<double, double> scale(const AbstractChartSeries *series) const;

    /// Hands the auto scale flags to the axes; recalculates nothing.
    void setAutoScale(bool x, bool y);

    /// Zooms every series that has a pane so that \p to, chosen in the plot \p from, fills it; both
    /// in pixels of one pane. \p pending parks the zoom until the calculation ends.
    void changeZoom(const QRectF &from, const QRectF &to, bool pending);

    /// Makes the panes match the chart mode.
    void synchronizeChart();

    /// @}

    /// \name What the user can do
    /// @{

    bool canZoom() const;                ///< There are series.
    bool updatePointsInProgress() const; ///< A calculation runs.
    bool canZoomIn() const;              ///< Both tests below for zooming in.

    /// The X axis and all series allow a step in both directions; not the two tests below.
    bool canZoomOut() const;

    bool canZoomInX() const;  ///< The X axis and all series allow one more step of factor 10.
    bool canZoomOutX() const; ///< The same for zooming out.
    bool canZoomInY() const;  ///< All series allow one more step of factor 10.
    bool canZoomOutY() const; ///< The same for zooming out.

    bool hasEmptyCharts() const; ///< Only in multi mode, and only if there are several panes.

    /// @}

    QList<AbstractChartSeries *> m_series; ///< Owned. Written under the axes lock.
    QList<ChartWidget *> m_charts;         ///< Top to bottom. A pane that dies leaves it.
    QMap<int, QString> m_headers;          ///< Column titles.
    HorizontalChartAxis *m_axisX;          ///< Shared by all series. Guarded by the axes lock.

    /// @{
    /// What the user can do: in the toolbar, the menu of the panes and the menu of the legend.
    /// Children of the model, which enables them in updateActions().
    QAction *m_removeSeriesAction = nullptr;
    QAction *m_removeAllSeriesAction = nullptr;
    QAction *m_clearPointsAction = nullptr;
    QAction *m_adjustColumnsAction = nullptr;
    QActionGroup *m_chartModeGroup = nullptr;
    QActionGroup *m_mouseModeGroup = nullptr;
    QAction *m_singleModeAction = nullptr;
    QAction *m_multiModeAction = nullptr;
    QAction *m_addChartAction = nullptr;
    QAction *m_removeChartAction = nullptr;
    QAction *m_selectModeAction = nullptr;
    QAction *m_moveModeAction = nullptr;
    QAction *m_zoomInAction = nullptr;
    QAction *m_zoomOutAction = nullptr;
    QAction *m_zoomInXAction = nullptr;
    QAction *m_zoomOutXAction = nullptr;
    QAction *m_zoomInYAction = nullptr;
    QAction *m_zoomOutYAction = nullptr;
    QAction *m_undoZoomAction = nullptr;
    QAction *m_scrollDownAction = nullptr;
    QAction *m_scrollToBeginAction = nullptr;
    QAction *m_scrollBackAction = nullptr;
    QAction *m_pauseAction = nullptr;
    QAction *m_scrollForwardAction = nullptr;
    QAction *m_scrollToEndAction = nullptr;
    QAction *m_scrollUpAction = nullptr;
    QAction *m_adjustSizeAction = nullptr;
    QAction *m_undoAction = nullptr;
    QAction *m_redoAction = nullptr;
    /// @}

    ChartSettings m_settings; ///< Call applyChartSettings() after a change.
    QUndoStack *m_undoStack;  ///< Child; holds ScaleCommand and its derived classes only.
    QList<ScaleCommand *> m_pendingCommands; ///< Wait for the end of a calculation; owned.
    int m_colorIndex = 0;                    ///< Palette counter.
    bool m_autoScaleY = false;               ///< Handed to the Y axis of each new series.
    bool m_seriesEditable = true; ///< Series changes are undo steps; else they are final at once.
    int m_chartMode = SingleMode; ///< A ChartMode.
    int m_mouseMode = 0;          ///< A ChartWidget::MouseMode.
    QList<QAction *> m_actions;   ///< Toolbar and pane menu, with separators.
    bool m_scrollLocked = false;  ///< Keeps a live window from following the data.
    QList<ScaleCommand *> m_moveCommands;          ///< The drag under way; owned.
    bool m_settingsApplied = false;                ///< applyChartSettings() has run once.
    bool m_chartsUpdatePending = false;            ///< Redraw once more when the calculation ends.
    QList<AbstractChartSeries *> m_updatingSeries; ///< Started and not yet reported.

signals:
    /// Asks the legend to select a row.
    void select(const QModelIndex &index, QItemSelectionModel::SelectionFlags command);
    void chartCountChanged();       ///< Panes were added or removed.
    void seriesCountChanged();      ///< At the end of every change of series.
    void savePosition();            ///< The panes are about to be laid out anew.
    void adjustSize();              ///< Asks the view to make all plots equally high.
    void resizeColumnsToContents(); ///< Asks the legend to fit its columns.

protected slots:
    /// Marks the series of \p selected as selected, all others not. Repaints the panes.
    void slotSelectionChanged(const QItemSelection &selected, const QItemSelection &deselected);

    /// Shows the legend's menu at \p pos in the view. Only with series, and if they are editable.
    void slotContextMenuRequested(const QPoint &pos);

public slots:
    virtual void slotRemoveSeries();    ///< Removes the selected series.
    virtual void slotRemoveAllSeries(); ///< Removes all series, after a question.
    virtual void slotClearPoints();     ///< Deletes all samples, after a question.

protected slots:
    /// A drop has moved a series to another pane: removes empty panes if the settings say so.
    void slotSeriesParentChanged();
    void slotSingleMode();  ///< Gathers all series in one pane.
    void slotMultiMode();   ///< Gives each series a pane.
    void slotAddChart();    ///< Adds an empty pane at the bottom.
    void slotRemoveChart(); ///< Removes the empty panes.

public slots:
    /// The road of every zoom: changeZoom(), which waits while points are computed, and an undo
    /// step unless \p zoomType is ChartWidget::ZoomTransient. Both rectangles in pane pixels.
    void slotZoomChanged(const QRectF &chartRect, const QRectF &zoomRect, int zoomType);

protected slots:
    /// @{
    /// One step of zoom or scroll, for the action of its name.
    virtual void slotZoomIn();
    virtual void slotZoomOut();
    virtual void slotZoomInX();
    virtual void slotZoomOutX();
    virtual void slotZoomInY();
    virtual void slotZoomOutY();
    virtual void slotUndoZoom();
    virtual void slotScrollToBegin();
    virtual void slotScrollToEnd();
    virtual void slotScrollBack();
    virtual void slotScrollForward();
    virtual void slotScrollUp();
    virtual void slotScrollDown();
    /// @}
    virtual void slotPause(bool paused); ///< Nothing here: only a window that moves can pause.
    void slotSelectMode();               ///< The left button draws a zoom band.
    void slotMoveMode();                 ///< The left button drags the view.

    /// Shows or hides the cursor at \p pos, in pane pixels, in all panes.
    void slotCursorStateChanged(double pos, bool visible);

public slots:
    void slotBeginMove(); ///< Remembers the axes before a drag of the view.
    void slotEndMove();   ///< Pushes the drag as one undo step.

    /// Takes the sender off the running calculation; with the last one the calculation ends.
    void slotUpdatePointsCompleted();

protected:
    /// Keeps a live window from following the data, or lets it go.
    void setScrollLocked(bool on);

    /// m_settings.individualScale, for any thread: off the GUI thread it is what that thread has
    /// used last, in applyChartSettings() or wherever it adjusts a Y axis.
    bool individualScale() const;

    /// The same for m_settings.visibleInterval.
    double visibleInterval() const;

    /// X of the first and of the last sample that have a finite one; nothing if there is none. The
    /// lock on the axes must be held.
    static std::optional<QPair<double, double>> finiteEndsX(const AbstractChartSeries &series);

    /// Lowest and highest of these ends over all series; nothing if no series has any.
    std::optional<QPair<double, double>> dataExtentX() const;

    /// Gives the window of X a new lower bound and keeps its width; a bound that would not be
    /// finite changes nothing.
    void moveWindow(double minimum);

    /// Frees all Y axes of their zoom and brings them up to date. The lock on the axes must be
    /// held.
    void followYAxes();

private:
    friend class AxesLocker;
    friend class ChartWidget;

    bool isCell(const QModelIndex &index) const;
    bool isOwnThread() const { return std::this_thread::get_id() == m_ownThread; }
    QList<AbstractChartSeries *> seriesSnapshot() const;
    void createActions();
    void createSeriesActions();
    void createModeActions();
    void createZoomActions();
    void createScrollActions();
    void createUndoActions();
    QAction *newAction(const QString &text, const char *image, const char *method,
                       QActionGroup *group = nullptr);
    void pushNamedAfterAction(ScaleCommand *command);
    void nameAfterSender(ScaleCommand &command) const;
    void zoomMainChart(QRectF (*targetOf)(const QRectF &plot));
    void scrollX(const std::function<std::optional<double>(const ChartAxis &axis)> &minimumOf);
    bool confirm(const QString &question);
    static QString commandText(const QString &trigger);
    void styleNewSeries(AbstractChartSeries *series);
    void selectRow(int row);
    void insertSeriesRow(int row, AbstractChartSeries *series);
    void synchronizeAfterRemoval();
    void schedulePassEnd();
    void finishPass();
    void followData(AbstractChartSeries *series);
    void followHistory();
    void rewriteHistoryNeighbours();
    void gatherInOneChart();
    void spreadOverCharts();
    void removeEmptyCharts();
    void forgetChart(ChartWidget *chart);
    bool allSeries(bool (AbstractChartSeries::*test)()) const;

    /// Guards every axis (range, flags, grid, m_size, the series' m_extraPrecision), the list
    /// m_series, and with a series' m_valuesMutex the ends and extremes of its store. Last in the
    /// order; nothing that waits runs under it.
    const std::unique_ptr<AxesMutex> m_axesMutex;
    std::unique_ptr<HorizontalChartAxis> m_ownedAxisX;

    const std::thread::id m_ownThread; ///< The GUI thread.

    // What feeders read of m_settings, which belongs to the GUI thread.
    mutable std::atomic<bool> m_individualScale{true};
    mutable std::atomic<double> m_visibleInterval{0.0};

    std::atomic<bool> m_historyPosted{false}; ///< A rewriting of the history is on its way.
    std::atomic<bool> m_updatePosted{false};
    std::atomic<bool> m_chartsUpdatePosted{false};
};
