#include "model/abstractchartmodel.h"

#include "axes/horizontalchartaxis.h"
#include "model/axeslocker_p.h"
#include "model/chartmimedata.h"
#include "model/postonce_p.h"
#include "series/abstractchartseries.h"
#include "series/handover_p.h"
#include "series/pointthread.h"
#include "series/seriesregistry_p.h"
#include "undo/scalecommand.h"
#include "views/chartcursor.h"
#include "views/chartwidget.h"

#include <QAction>
#include <QUndoStack>

namespace {

constexpr int UndoLimit = 20; // steps

} // namespace

AbstractChartModel::AbstractChartModel(const QString &organization, const QString &application,
                                       QObject *parent)
    : QAbstractTableModel(parent)
    , m_axisX(new HorizontalChartAxis)
    , m_undoStack(new QUndoStack(this))
    , m_axesMutex(std::make_unique<AxesMutex>())
    , m_ownedAxisX(m_axisX)
    , m_ownThread(std::this_thread::get_id())
{
    m_settings.organization = organization;
    m_settings.application = application;
    m_headers.insert(LineColumn, tr("Line view"));
    m_headers.insert(NameColumn, tr("Name"));
    m_undoStack->setUndoLimit(UndoLimit);
    createActions();
    synchronizeChart();
}

AbstractChartModel::~AbstractChartModel()
{
    // All workers first: a completion that comes while series die must find none half dead.
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        if (series) {
            series->m_pointThread->stopThread();
        }
    }
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        deleteSeries(series);
    }
    for (ChartWidget *chart : qAsConst(m_charts)) {
        if (chart) {
            chart->m_model = nullptr;
            chart->m_cursor->m_model = nullptr;
        }
    }
    qDeleteAll(m_pendingCommands);
    qDeleteAll(m_moveCommands);
}

int AbstractChartModel::rowCount(const QModelIndex &) const
{
    return m_series.size();
}

int AbstractChartModel::columnCount(const QModelIndex &) const
{
    return m_headers.size();
}

bool AbstractChartModel::isCell(const QModelIndex &index) const
{
    return index.row() >= 0 && index.column() >= 0 && index.model() &&
           index.row() < rowCount(QModelIndex()) && index.column() < columnCount(QModelIndex());
}

QVariant AbstractChartModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index)) {
        return QVariant();
    }
    AbstractChartSeries *series = m_series.value(index.row());
    if (!series) {
        return QVariant();
    }
    if (role == Qt::ForegroundRole) {
        return series->m_color;
    }
    if (role == Qt::UserRole) {
        return QVariant::fromValue(series);
    }
    if (index.column() != NameColumn) {
        return QVariant();
    }
    if (role == Qt::DisplayRole) {
        return series->name();
    }
    if (role == Qt::CheckStateRole) {
        return int(series->m_visible ? Qt::Checked : Qt::Unchecked);
    }
    return QVariant();
}

bool AbstractChartModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isCell(index) || role != Qt::CheckStateRole || index.column() != NameColumn ||
        value.userType() != QMetaType::Int) {
        return false;
    }
    AbstractChartSeries *series = m_series.value(index.row());
    if (!series) {
        return false;
    }
    series->m_visible = value.toInt() != Qt::Unchecked;
    updateCharts();
    return true;
}

QVariant AbstractChartModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section < 0 ||
        section >= m_headers.size()) {
        return QVariant();
    }
    return m_headers.value(section);
}

QMimeData *AbstractChartModel::mimeData(const QModelIndexList &indexes) const
{
    auto *mimeData = new ChartMimeData;
    for (const QModelIndex &index : indexes) {
        if (index.row() < 0 || index.column() != NameColumn || !index.model()) {
            continue;
        }
        if (auto *series = data(index, Qt::UserRole).value<AbstractChartSeries *>()) {
            mimeData->m_series.append(series);
        }
    }
    return mimeData;
}

Qt::ItemFlags AbstractChartModel::flags(const QModelIndex &index) const
{
    // The line's sample has the editor, everything else the check box: an index that is no cell
    // too.
    const Qt::ItemFlags common = Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsEnabled;
    return index.column() == LineColumn ? common | Qt::ItemIsEditable
                                        : common | Qt::ItemIsUserCheckable;
}

AbstractChartSeries *AbstractChartModel::selectedSeries() const
{
    const int row = selectedRow();
    return row < 0 ? nullptr : m_series.at(row);
}

int AbstractChartModel::selectedRow() const
{
    for (int row = 0; row < m_series.size(); ++row) {
        if (m_series.at(row) && m_series.at(row)->m_selected) {
            return row;
        }
    }
    return -1;
}

AbstractChartSeries *AbstractChartModel::firstValidSeries() const
{
    const AxesLocker locker(this);
    for (AbstractChartSeries *series : m_series) {
        if (series && !series->m_values.isEmpty() && series->m_values.first()) {
            return series;
        }
    }
    return nullptr;
}

ChartWidget *AbstractChartModel::mainChart() const
{
    return m_charts.isEmpty() ? nullptr : m_charts.first();
}

const QColor &AbstractChartModel::newSeriesColor()
{
    static const QColor beyondPalette(Qt::lightGray);

    // The counter takes one step past the last colour before it starts anew; that step has no
    // colour of its own, and a series made with it has none to return to.
    if (m_colorIndex >= SeriesColorCount || m_series.isEmpty()) {
        m_colorIndex = 0;
    } else {
        ++m_colorIndex;
    }
    return m_colorIndex < SeriesColorCount ? m_settings.seriesSettings.colors[m_colorIndex]
                                           : beyondPalette;
}

ChartWidget *AbstractChartModel::appendChart(int position)
{
    auto *chart = new ChartWidget(this, nullptr, Qt::WindowFlags());
    const bool isPlace = position >= 0 && position <= m_charts.size();
    m_charts.insert(isPlace ? position : m_charts.size(), chart);

    connect(chart, SIGNAL(seriesParentChanged()), this, SLOT(slotSeriesParentChanged()));
    connect(chart, SIGNAL(zoomChanged(QRectF, QRectF, int)), this,
            SLOT(slotZoomChanged(QRectF, QRectF, int)));
    connect(chart, SIGNAL(cursorStateChanged(double, bool)), this,
            SLOT(slotCursorStateChanged(double, bool)));
    connect(chart, SIGNAL(beginMove()), this, SLOT(slotBeginMove()));
    connect(chart, SIGNAL(endMove()), this, SLOT(slotEndMove()));
    return chart;
}

void AbstractChartModel::forgetChart(ChartWidget *chart)
{
    m_charts.removeAll(chart);
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        if (series && series->m_chart == chart) {
            series->m_chart = nullptr;
        }
    }
}

void AbstractChartModel::setUseDateTimeScaleX(bool on)
{
    const AxesLocker locker(this);
    if (m_axisX) {
        m_axisX->m_dateTime = on;
    }
}

QList<AbstractChartSeries *> AbstractChartModel::seriesSnapshot() const
{
    const AxesLocker locker(this);
    QList<AbstractChartSeries *> copy = m_series;
    copy.detach(); // The GUI thread changes m_series in place, while the caller reads.
    return copy;
}

void AbstractChartModel::update()
{
    if (!isOwnThread()) {
        postOnce(this, m_updatePosted, [this] { update(); });
        return;
    }
    emit dataChanged(QModelIndex(), QModelIndex(), QVector<int>());
    updateCharts();
}

void AbstractChartModel::updateCharts()
{
    if (!isOwnThread()) {
        postOnce(this, m_chartsUpdatePosted, [this] { updateCharts(); });
        return;
    }
    if (updatePointsInProgress()) {
        m_chartsUpdatePending = true;
        return;
    }
    const QList<AbstractChartSeries *> all = m_series;
    for (AbstractChartSeries *series : all) {
        if (!series) {
            continue;
        }
        disconnect(series, SIGNAL(updatePointsFinished()), this, SLOT(slotUpdatePointsCompleted()));
        connect(series, SIGNAL(updatePointsFinished()), this, SLOT(slotUpdatePointsCompleted()));
        m_updatingSeries.append(series);
        series->updatePoints(QRectF());
    }
}

void AbstractChartModel::slotUpdatePointsCompleted()
{
    auto *series = qobject_cast<AbstractChartSeries *>(sender());
    if (series && series->m_pointThread->isRunning()) {
        return; // Reported late by an earlier run; the present one will report for itself.
    }
    if (series) {
        takeOver(series->m_pointThread);
    }
    m_updatingSeries.removeAll(series);
    if (!updatePointsInProgress()) {
        finishPass();
    }
}

void AbstractChartModel::finishPass()
{
    const QList<AbstractChartSeries *> all = m_series;
    for (AbstractChartSeries *series : all) {
        if (series) {
            series->setPendingParameters();
        }
    }
    while (!m_pendingCommands.isEmpty()) {
        if (ScaleCommand *command = m_pendingCommands.takeFirst()) {
            m_undoStack->push(command);
        }
    }
    repaintCharts();
    if (m_chartsUpdatePending) {
        // Cleared last: a request that this very call makes is met by the pass that it starts.
        updateCharts();
        m_chartsUpdatePending = false;
    }
}

void AbstractChartModel::schedulePassEnd()
{
    // Through the event loop: a removal may run inside the undo stack, which must not be pushed on
    // meanwhile.
    QMetaObject::invokeMethod(this, "slotUpdatePointsCompleted", Qt::QueuedConnection);
}

void AbstractChartModel::repaintCharts()
{
    const QList<ChartWidget *> charts = m_charts;
    for (ChartWidget *chart : charts) {
        if (chart) {
            chart->update();
        }
    }
}

void AbstractChartModel::applyChartSettings()
{
    m_visibleInterval = m_settings.visibleInterval; // For feeders; the scale follows below.
    setAutoScale(m_settings.autoScaleX, m_settings.autoScaleY);
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        if (!series) {
            continue;
        }
        series->m_defaults = m_settings.seriesSettings;
        if (!series->m_customized) {
            series->restoreDefault();
        }
    }
    if (!m_series.isEmpty()) {
        emit dataChanged(index(0, 0), index(m_series.size() - 1, m_headers.size() - 1));
    }
    if (!m_settings.dynamicGrid && m_pauseAction->isChecked()) {
        m_pauseAction->activate(QAction::Trigger);
    }
    adjustAxes(nullptr, true);
    updateCharts();
    m_settingsApplied = true;
}

void AbstractChartModel::setScrollLocked(bool on)
{
    const AxesLocker locker(this);
    m_scrollLocked = on;
}
