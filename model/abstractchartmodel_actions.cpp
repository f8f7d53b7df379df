#include "model/abstractchartmodel.h"

#include "series/abstractchartseries.h"
#include "views/chartwidget.h"

#include <QAbstractItemView>
#include <QAction>
#include <QActionGroup>
#include <QIcon>
#include <QMenu>
#include <QUndoStack>

#include <algorithm>
#include <utility>

// The linker leaves out of a static library what nobody names, and so what would register the
// images by itself.
static void registerImages()
{
#ifdef QUARVCHART_STATIC_DEFINE
    Q_INIT_RESOURCE(chart);
#endif
}

namespace {

QIcon chartIcon(const char *image)
{
    return QIcon(QStringLiteral(":/chart/images/") + QLatin1String(image));
}

} // namespace

QAction *AbstractChartModel::newAction(const QString &text, const char *image, const char *method,
                                       QActionGroup *group)
{
    // An action joins a group by having it as parent.
    auto *action =
        new QAction(chartIcon(image), text, group ? static_cast<QObject *>(group) : this);
    connect(action, SIGNAL(triggered()), this, method);
    return action;
}

void AbstractChartModel::createActions()
{
    registerImages();
    createSeriesActions();
    createModeActions();
    createZoomActions();
    createScrollActions();
    createUndoActions();
}

void AbstractChartModel::createSeriesActions()
{
    m_removeSeriesAction =
        newAction(tr("Remove series"), "list-remove.svg", SLOT(slotRemoveSeries()));
    m_removeAllSeriesAction =
        newAction(tr("Remove all series"), "edit-clear.svg", SLOT(slotRemoveAllSeries()));
    m_clearPointsAction =
        newAction(tr("Clear points"), "points-clear.svg", SLOT(slotClearPoints()));
    m_adjustColumnsAction = newAction(tr("Adjust columns width"), "resize-horizontal.svg",
                                      SIGNAL(resizeColumnsToContents()));
}

void AbstractChartModel::createModeActions()
{
    m_chartModeGroup = new QActionGroup(this);
    m_mouseModeGroup = new QActionGroup(this);

    m_singleModeAction =
        newAction(tr("Combine"), "chart.svg", SLOT(slotSingleMode()), m_chartModeGroup);
    m_multiModeAction =
        newAction(tr("Separate"), "chart2x.svg", SLOT(slotMultiMode()), m_chartModeGroup);
    m_addChartAction = newAction(tr("Add chart"), "chart-add.svg", SLOT(slotAddChart()));
    m_removeChartAction =
        newAction(tr("Remove empty charts"), "chart-remove.svg", SLOT(slotRemoveChart()));
    m_selectModeAction =
        newAction(tr("Select area"), "ftrectangle.svg", SLOT(slotSelectMode()), m_mouseModeGroup);
    m_moveModeAction = newAction(tr("Move"), "ftmove.svg", SLOT(slotMoveMode()), m_mouseModeGroup);

    for (QAction *mode :
         {m_singleModeAction, m_multiModeAction, m_selectModeAction, m_moveModeAction}) {
        mode->setCheckable(true);
    }
    m_singleModeAction->setChecked(true);
    m_selectModeAction->setChecked(true);
    m_addChartAction->setEnabled(false);
    m_removeChartAction->setEnabled(false);
    connect(m_multiModeAction, SIGNAL(toggled(bool)), m_addChartAction, SLOT(setEnabled(bool)));
}

void AbstractChartModel::createZoomActions()
{
    m_zoomInAction = newAction(tr("Zoom in"), "zoom_in.svg", SLOT(slotZoomIn()));
    m_zoomOutAction = newAction(tr("Zoom out"), "zoom_out.svg", SLOT(slotZoomOut()));
    m_zoomInXAction = newAction(tr("Zoom in (X axis)"), "zoom_in_x.svg", SLOT(slotZoomInX()));
    m_zoomOutXAction = newAction(tr("Zoom out (X axis)"), "zoom_out_x.svg", SLOT(slotZoomOutX()));
    m_zoomInYAction = newAction(tr("Zoom in (Y axis)"), "zoom_in_y.svg", SLOT(slotZoomInY()));
    m_zoomOutYAction = newAction(tr("Zoom out (Y axis)"), "zoom_out_y.svg", SLOT(slotZoomOutY()));
    m_undoZoomAction = newAction(tr("Undo zoom"), "zoom_undo.svg", SLOT(slotUndoZoom()));
}

void AbstractChartModel::createScrollActions()
{
    m_scrollDownAction = newAction(tr("Scroll down"), "go-down.svg", SLOT(slotScrollDown()));
    m_scrollToBeginAction =
        newAction(tr("Scroll to begin"), "go-first.svg", SLOT(slotScrollToBegin()));
    m_scrollBackAction =
        newAction(tr("Scroll backward"), "go-previous.svg", SLOT(slotScrollBack()));
    m_pauseAction = new QAction(chartIcon("media-playback-pause.svg"), tr("Pause"), this);
    m_pauseAction->setCheckable(true);
    connect(m_pauseAction, SIGNAL(triggered(bool)), this, SLOT(slotPause(bool)));
    m_scrollForwardAction =
        newAction(tr("Scroll forward"), "go-next.svg", SLOT(slotScrollForward()));
    m_scrollToEndAction = newAction(tr("Scroll to end"), "go-last.svg", SLOT(slotScrollToEnd()));
    m_scrollUpAction = newAction(tr("Scroll up"), "go-up.svg", SLOT(slotScrollUp()));
    m_adjustSizeAction = newAction(tr("Adjust size"), "adjust-y.svg", SIGNAL(adjustSize()));
    m_adjustSizeAction->setEnabled(false);
}

void AbstractChartModel::createUndoActions()
{
    m_undoAction = m_undoStack->createUndoAction(this, tr("Undo action"));
    m_undoAction->setIcon(chartIcon("edit-undo.svg"));
    m_redoAction = m_undoStack->createRedoAction(this, tr("Redo action"));
    m_redoAction->setIcon(chartIcon("edit-redo.svg"));
}

void AbstractChartModel::configureActions()
{
    const auto newSeparator = [this] {
        auto *separator = new QAction(this);
        separator->setSeparator(true);
        return separator;
    };
    m_actions << m_singleModeAction << m_multiModeAction;
    m_actions << newSeparator();
    m_actions << m_addChartAction << m_removeChartAction << m_adjustSizeAction;
    m_actions << newSeparator();
    m_actions << m_selectModeAction << m_moveModeAction;
    m_actions << newSeparator();
    m_actions << m_zoomInAction << m_zoomOutAction << m_zoomInXAction << m_zoomOutXAction
              << m_zoomInYAction << m_zoomOutYAction << m_undoZoomAction;
    // One separator in two places: a widget keeps an action at its last place only, so zoom and
    // scroll stand together and undo and redo apart. That appearance is wanted.
    QAction *beforeUndo = newSeparator();
    m_actions << beforeUndo;
    m_actions << m_scrollDownAction << m_scrollToBeginAction << m_scrollBackAction << m_pauseAction
              << m_scrollForwardAction << m_scrollToEndAction << m_scrollUpAction;
    m_actions << beforeUndo;
    m_actions << m_undoAction << m_redoAction;
}

void AbstractChartModel::addActionsToContextMenu(QMenu &menu)
{
    menu.addAction(m_removeSeriesAction);
    menu.addAction(m_removeAllSeriesAction);
    menu.addAction(m_clearPointsAction);
    menu.addSeparator();
    menu.addAction(m_adjustColumnsAction);
}

void AbstractChartModel::updateActions()
{
    const bool canScroll = canZoom();
    const std::pair<QAction *, bool> rules[] = {
        {m_removeChartAction, hasEmptyCharts()},
        {m_adjustSizeAction, m_chartMode == MultiMode},
        {m_zoomInAction, canZoomIn()},
        {m_zoomInXAction, canZoomInX()},
        {m_zoomInYAction, canZoomInY()},
        {m_zoomOutAction, canZoomOut()},
        {m_zoomOutXAction, canZoomOutX()},
        {m_zoomOutYAction, canZoomOutY()},
        {m_undoZoomAction, canScroll},
        {m_scrollDownAction, canScroll},
        {m_scrollToBeginAction, canScroll},
        {m_scrollBackAction, canScroll},
        {m_pauseAction, canScroll && m_settings.dynamicGrid},
        {m_scrollForwardAction, canScroll},
        {m_scrollToEndAction, canScroll},
        {m_scrollUpAction, canScroll},
    };
    for (const auto &[action, enabled] : rules) {
        action->setEnabled(enabled);
    }
}

bool AbstractChartModel::hasEmptyCharts() const
{
    if (m_chartMode != MultiMode || m_charts.size() == 1) {
        return false;
    }
    return std::any_of(m_charts.cbegin(), m_charts.cend(),
                       [](const ChartWidget *chart) { return chart && chart->isEmpty(); });
}

void AbstractChartModel::slotSingleMode()
{
    if (m_chartMode == SingleMode) {
        return;
    }
    m_chartMode = SingleMode;
    synchronizeChart();
    updateCharts();
}

void AbstractChartModel::slotMultiMode()
{
    if (m_chartMode == MultiMode) {
        return;
    }
    m_chartMode = MultiMode;
    // A series without a pane asks for one of its own; the first keeps the pane that is there.
    const QList<AbstractChartSeries *> all = m_series;
    for (AbstractChartSeries *series : all) {
        if (series) {
            series->m_chart = series == all.first() ? mainChart() : nullptr;
        }
    }
    synchronizeChart();
    updateCharts();
}

void AbstractChartModel::slotAddChart()
{
    appendChart(-1);
    emit chartCountChanged();
    updateActions();
    updateCharts();
}

void AbstractChartModel::slotRemoveChart()
{
    synchronizeChart();
    updateCharts();
}

void AbstractChartModel::slotSeriesParentChanged()
{
    if (m_settings.autoRemoveEmptyChart) {
        synchronizeChart();
    }
    updateCharts();
    updateActions();
}

void AbstractChartModel::slotSelectMode()
{
    m_mouseMode = ChartWidget::SelectMode;
}

void AbstractChartModel::slotMoveMode()
{
    m_mouseMode = ChartWidget::MoveMode;
}

void AbstractChartModel::slotSelectionChanged(const QItemSelection &selected,
                                              const QItemSelection &)
{
    const QList<AbstractChartSeries *> all = m_series;
    for (int row = 0; row < all.size(); ++row) {
        if (all.at(row)) {
            all.at(row)->m_selected = selected.contains(index(row, 0));
        }
    }
    repaintCharts();
}

void AbstractChartModel::slotCursorStateChanged(double pos, bool visible)
{
    const QList<ChartWidget *> charts = m_charts;
    for (ChartWidget *chart : charts) {
        if (chart) {
            chart->changeCursorState(pos, visible);
        }
    }
}

void AbstractChartModel::slotContextMenuRequested(const QPoint &pos)
{
    const auto *view = qobject_cast<QAbstractItemView *>(QObject::parent());
    if (!m_seriesEditable || m_series.isEmpty() || !view || !view->viewport()) {
        return;
    }
    QMenu menu;
    addActionsToContextMenu(menu);
    if (!menu.isEmpty()) {
        menu.exec(view->viewport()->mapToGlobal(pos));
    }
}
