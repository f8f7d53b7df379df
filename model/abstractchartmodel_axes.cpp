#include "model/abstractchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "model/axessnapshot_p.h"
#include "model/postonce_p.h"
#include "model/storeends_p.h"
#include "series/abstractchartseries.h"
#include "series/handover_p.h"
#include "series/pointthread.h"
#include "undo/scalecommand.h"
#include "views/chartwidget.h"

#include <QTransform>
#include <QUndoStack>
#include <QVector>

namespace {

double yOrZero(const ChartValue *value)
{
    return value ? value->y : 0.0;
}

/// Gives a range of no width some: half a unit around 0, else half the value to either side. Of a
/// negative value that gives the upper end first; assigning a range puts it in order.
QPair<double, double> widened(QPair<double, double> range)
{
    if (range.first != range.second) {
        return range;
    }
    const double value = range.first;
    return value == 0.0 ? qMakePair(-0.5, 0.5) : qMakePair(value * 0.5, value * 1.5);
}

/// The Y range of a series with a scale of its own. It has an axis.
QPair<double, double> ownScale(const AbstractChartSeries &series)
{
    const VerticalChartAxis &axis = *series.m_axisY;
    const double lower = axis.m_autoScale ? yOrZero(series.m_minValue) : series.minimumY();
    // Asked again: the call before is the application's and may have changed the flag.
    const double upper = axis.m_autoScale ? yOrZero(series.m_maxValue) : series.maximumY();
    return widened(qMakePair(lower, upper));
}

/// A series that has a pane, and the plot of that pane.
struct ShownSeries
{
    AbstractChartSeries *series;
    QRectF plot;
};

/**
 * The series that a zoom reaches, all with a map.
 *
 * Gathered before the first of them is zoomed: that moves the X axis, from which the map of a
 * series that was never calculated is built here, and may change the width of the labels, and with
 * it every plot, while the maps in use belong to the plots as they are.
 */
QVector<ShownSeries> gatherShownSeries(const QList<AbstractChartSeries *> &all)
{
    QVector<ShownSeries> shown;
    for (AbstractChartSeries *series : all) {
        if (!series || !series->m_chart) {
            continue;
        }
        const QRectF plot = series->m_chart->chartRect(QRectF());
        if (series->m_matrix.isIdentity()) {
            if (series->m_pointThread->isRunning()) {
                continue; // Started before it had a pane; its pixels mean nothing yet.
            }
            takeOver(series->m_pointThread);
            series->updateMatrix(plot);
        }
        shown.append({series, plot});
    }
    return shown;
}

/// Carries \p from onto \p to.
QTransform ontoTransform(const QRectF &from, const QRectF &to)
{
    const double scaleX = to.width() / from.width();
    const double scaleY = to.height() / from.height();
    return QTransform(scaleX, 0.0, 0.0, scaleY, to.x() - from.x() * scaleX,
                      to.y() - from.y() * scaleY);
}

} // namespace

std::optional<QPair<double, double>>
AbstractChartModel::finiteEndsX(const AbstractChartSeries &series)
{
    const std::optional<double> first = firstFiniteX(series.m_values);
    if (!first) {
        return std::nullopt;
    }
    return qMakePair(*first, *lastFiniteX(series.m_values));
}

std::optional<QPair<double, double>> AbstractChartModel::dataExtentX() const
{
    const AxesLocker locker(this);
    std::optional<QPair<double, double>> extent;
    for (const AbstractChartSeries *series : m_series) {
        const auto ends = series ? finiteEndsX(*series) : std::nullopt;
        if (!ends) {
            continue;
        }
        if (!extent) {
            extent = ends;
        }
        extent->first = qMin(extent->first, ends->first);
        extent->second = qMax(extent->second, ends->second);
    }
    return extent;
}

QPair<double, double> AbstractChartModel::minMaxY() const
{
    const AxesLocker locker(this);
    const AbstractChartSeries *first = firstValidSeries();
    if (!first) {
        return qMakePair(-0.5, 0.5);
    }
    double lower = yOrZero(first->m_minValue);
    double upper = yOrZero(first->m_maxValue);
    for (const AbstractChartSeries *series : m_series) {
        if (!series) {
            continue;
        }
        // A series without valid samples counts as one at 0; that is wanted.
        const double a = yOrZero(series->m_minValue);
        const double b = yOrZero(series->m_maxValue);
        lower = lower < a ? lower : a;
        upper = b > upper ? b : upper;
    }
    return widened(qMakePair(lower, upper));
}

QPair<double, double> AbstractChartModel::scale(const AbstractChartSeries *series) const
{
    const AxesLocker locker(this);
    if (!individualScale()) {
        return minMaxY();
    }
    if (!series || !series->m_axisY) {
        return qMakePair(0.0, 0.0);
    }
    return ownScale(*series);
}

bool AbstractChartModel::individualScale() const
{
    if (isOwnThread() && m_individualScale != m_settings.individualScale) {
        m_individualScale = m_settings.individualScale;
    }
    return m_individualScale;
}

double AbstractChartModel::visibleInterval() const
{
    if (isOwnThread()) {
        m_visibleInterval = m_settings.visibleInterval;
    }
    return m_visibleInterval;
}

void AbstractChartModel::adjustAxes(AbstractChartSeries *series, bool updateUndoHistory)
{
    const AxesLocker locker(this);
    if (updateUndoHistory) {
        followData(series);
    } else {
        adjustAxisY(series);
        adjustAxisX();
    }
}

/// Brings the axes up to date, and the history behind them. With the lock on the axes held.
void AbstractChartModel::followData(AbstractChartSeries *series)
{
    const AxesSnapshot before(*this);
    adjustAxisY(series);
    adjustAxisX();
    if (!before.isPresent()) {
        followHistory();
    }
}

void AbstractChartModel::followHistory()
{
    if (isOwnThread()) {
        rewriteHistoryNeighbours();
        return;
    }
    postOnce(this, m_historyPosted, [this] { rewriteHistoryNeighbours(); });
}

void AbstractChartModel::rewriteHistoryNeighbours()
{
    const auto commandAt = [this](int i) {
        return dynamic_cast<ScaleCommand *>(const_cast<QUndoCommand *>(m_undoStack->command(i)));
    };
    const int index = m_undoStack->index();
    if (index < 1) {
        return; // The command at 0 keeps its old state: nothing undone leads back to it.
    }
    if (ScaleCommand *done = commandAt(index - 1)) {
        done->setNewParams();
    }
    if (ScaleCommand *undone = commandAt(index)) {
        undone->setOldParams();
    }
}

void AbstractChartModel::adjustAxisY(AbstractChartSeries *series)
{
    const AxesLocker locker(this);
    if (!series || !individualScale()) {
        adjustAxisY();
        return;
    }
    if (!series->m_axisY || series->m_axisY->m_zoomed) {
        return;
    }
    const QPair<double, double> range = ownScale(*series);
    series->m_axisY->assignRange(range.first, range.second);
}

void AbstractChartModel::adjustAxisY()
{
    const AxesLocker locker(this);
    const QList<AbstractChartSeries *> all = m_series;
    if (individualScale()) {
        for (AbstractChartSeries *series : all) {
            if (series) {
                adjustAxisY(series);
            }
        }
        return;
    }
    const QPair<double, double> range = minMaxY();
    for (AbstractChartSeries *series : all) {
        if (series && series->m_axisY && !series->m_axisY->m_zoomed) {
            series->m_axisY->assignRange(range.first, range.second);
        }
    }
}

void AbstractChartModel::adjustZoom(AbstractChartSeries *series)
{
    {
        const AxesLocker locker(this);
        const AbstractChartSeries *first = firstValidSeries();
        if (!series || !first || !first->m_axisY || !series->m_axisY) {
            return;
        }
        const VerticalChartAxis &shown = *first->m_axisY;
        const double shownSpan = shown.m_max - shown.m_min;
        if (!shown.m_zoomed || shownSpan == 0.0) {
            return;
        }
        if (!m_autoScaleY) {
            const QPair<double, double> firstScale = scale(first);
            const QPair<double, double> seriesScale = scale(series);
            const double firstSpan = firstScale.second - firstScale.first;
            const double seriesSpan = seriesScale.second - seriesScale.first;
            // The same part of its scale, at the same place in it, as the first series shows.
            const double lower =
                seriesScale.first - (firstScale.first - shown.m_min) * seriesSpan / firstSpan;
            const double upper = seriesSpan / (firstSpan / shownSpan) + lower;
            series->m_axisY->assignRange(lower, upper);
            series->m_axisY->m_zoomed = true;
            return;
        }
    }
    // With automatic scaling a new series ends the zoom of all. It starts workers: no lock here.
    undoZoom();
}

void AbstractChartModel::setAutoScale(bool x, bool y)
{
    const AxesLocker locker(this);
    if (m_axisX) {
        m_axisX->m_autoScale = x;
    }
    m_autoScaleY = y;
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        if (series) {
            series->setAutoScale(m_autoScaleY);
        }
    }
}

void AbstractChartModel::changeZoom(const QRectF &from, const QRectF &to, bool pending)
{
    if (!(from.width() > 0.0 && from.height() > 0.0 && to.width() > 0.0 && to.height() > 0.0)) {
        return;
    }
    {
        const AxesLocker locker(this);
        const QVector<ShownSeries> shown = gatherShownSeries(m_series);
        for (const ShownSeries &one : shown) {
            const QRectF target = ontoTransform(from, one.plot).mapRect(to);
            if (pending) {
                one.series->zoomPending(one.plot, target);
            } else {
                one.series->zoom(one.plot, target);
            }
        }
    }
    updateCharts();
}

void AbstractChartModel::synchronizeChart()
{
    emit savePosition();
    if (m_chartMode == SingleMode) {
        gatherInOneChart();
    } else if (m_chartMode == MultiMode) {
        removeEmptyCharts();
        spreadOverCharts();
    }
    emit chartCountChanged();
    updateActions();
}

void AbstractChartModel::gatherInOneChart()
{
    if (m_charts.isEmpty()) {
        appendChart(-1);
    }
    while (m_charts.size() > 1) {
        delete m_charts.takeLast();
    }
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        if (series) {
            series->m_chart = mainChart();
        }
    }
}

void AbstractChartModel::removeEmptyCharts()
{
    int i = 0;
    while (i < m_charts.size() && m_charts.size() > 1) {
        ChartWidget *chart = m_charts.at(i);
        if (chart && chart->isEmpty()) {
            m_charts.removeAt(i);
            delete chart;
        } else {
            ++i;
        }
    }
}

void AbstractChartModel::spreadOverCharts()
{
    ChartWidget *main = mainChart();
    const QList<AbstractChartSeries *> all = m_series;
    for (int row = 0; row < all.size(); ++row) {
        AbstractChartSeries *series = all.at(row);
        if (!series || series->m_chart) {
            continue;
        }
        series->m_chart = main && main->isEmpty() ? main : appendChart(row);
    }
}
