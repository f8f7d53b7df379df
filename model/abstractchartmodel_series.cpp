#include "model/abstractchartmodel.h"

#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"
#include "series/pointthread.h"
#include "series/sampleindex_p.h"
#include "series/seriesregistry_p.h"
#include "undo/addseriescommand.h"
#include "undo/removeallseriescommand.h"
#include "undo/removeseriescommand.h"

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QUndoStack>

namespace {

// As many as the palette has colours.
constexpr int MaximumSeries = SeriesColorCount;

constexpr auto SelectWholeRow =
    QItemSelectionModel::Clear | QItemSelectionModel::Select | QItemSelectionModel::Rows;

/// Runs the entry of samples into \p series, which keeps alive and locked what it touches: the
/// series, its store and the axes. False for a series that no longer lives; nothing runs then.
template <typename Entry>
bool runEntry(const AbstractChartModel *model, AbstractChartSeries *series, Entry entry)
{
    const SeriesRegistry::Reader reader(series);
    if (!reader.lives()) {
        return false;
    }
    const ValuesLocker valuesLocker(&series->m_valuesMutex);
    const AxesLocker axesLocker(model);
    entry();
    return true;
}

} // namespace

void AbstractChartModel::addSeries(AbstractChartSeries *series)
{
    addSeries(QList<AbstractChartSeries *>{series});
}

void AbstractChartModel::addSeries(const QList<AbstractChartSeries *> &series)
{
    QList<AbstractChartSeries *> added = series;
    added.removeAll(nullptr);
    if (added.isEmpty()) {
        return;
    }
    if (!m_seriesEditable) {
        // No limit here: without an undo history the application decides what leaves.
        for (AbstractChartSeries *one : qAsConst(added)) {
            completeAddSeries(one);
        }
        return;
    }

    const int count = qMin(added.size(), MaximumSeries);
    const int overflow = m_series.size() + count - MaximumSeries;
    QMap<int, AbstractChartSeries *> removedByRow;
    for (int row = 0; row < overflow; ++row) {
        removedByRow.insert(row, m_series.at(row));
    }
    QMap<int, AbstractChartSeries *> addedInOrder;
    for (int i = 0; i < count; ++i) {
        addedInOrder.insert(MaximumSeries - count + i, added.at(i));
    }
    auto *command = new AddSeriesCommand(this, addedInOrder, removedByRow);
    command->setText(commandText(tr("Add series")));
    m_undoStack->push(command);
}

void AbstractChartModel::completeAddSeries(AbstractChartSeries *series)
{
    if (series) {
        const bool isFirst = m_series.isEmpty();
        if (!m_charts.contains(series->m_chart)) {
            series->m_chart = nullptr; // Dropped on a pane before it had a model; that may be gone.
        }
        if (!series->m_axisX) {
            styleNewSeries(series);
        }
        insertSeriesRow(m_series.size(), series);
        if (isFirst) {
            selectRow(0);
        }
        adjustAxes(nullptr, false);
        adjustZoom(series);
        synchronizeChart();
        updateCharts();
    }
    emit seriesCountChanged();
}

void AbstractChartModel::styleNewSeries(AbstractChartSeries *series)
{
    {
        const AxesLocker locker(this);
        series->m_axisX = m_axisX;
        series->m_model = this;
        series->setAutoScale(m_autoScaleY);
    }
    const SeriesSettings &style = m_settings.seriesSettings;
    series->m_color = newSeriesColor();
    series->m_colorIndex = m_colorIndex;
    series->m_lineWidth = style.lineWidth;
    series->m_pointsVisible = style.pointsVisible;
    series->m_pointImage = QImage();
    series->setPointSize(style.pointsSize);
    series->m_defaults = style;
}

void AbstractChartModel::insertSeriesRow(int row, AbstractChartSeries *series)
{
    beginInsertRows(QModelIndex(), row, row);
    {
        const AxesLocker locker(this);
        m_series.insert(row, series);
    }
    endInsertRows();
}

void AbstractChartModel::selectRow(int row)
{
    emit select(index(row, 0), SelectWholeRow);
}

void AbstractChartModel::restoreSeries(const QMap<int, AbstractChartSeries *> &series,
                                       int selectedRow, int colorIndex)
{
    const QMap<int, AbstractChartSeries *> returning = series;
    for (auto it = returning.cbegin(); it != returning.cend(); ++it) {
        if (it.key() < 0 || !it.value()) {
            continue;
        }
        insertSeriesRow(qMin(it.key(), m_series.size()), it.value());
        adjustAxes(nullptr, false);
        adjustZoom(it.value());
    }
    if (selectedRow >= 0) {
        selectRow(selectedRow);
    }
    if (colorIndex >= 0) {
        m_colorIndex = colorIndex;
    }
    synchronizeChart();
    updateCharts();
    emit seriesCountChanged();
}

void AbstractChartModel::removeSeries(AbstractChartSeries *series)
{
    const int row = m_series.indexOf(series);
    if (row < 0) {
        return;
    }
    if (!m_seriesEditable) {
        completeRemoveSeries(series);
        deleteSeries(series);
        return;
    }
    QMap<int, AbstractChartSeries *> removed{{row, series}};
    pushNamedAfterAction(new RemoveSeriesCommand(this, removed));
}

void AbstractChartModel::completeRemoveSeries(AbstractChartSeries *series)
{
    const int row = series ? m_series.indexOf(series) : -1;
    if (row < 0) {
        emit seriesCountChanged();
        return;
    }
    beginRemoveRows(QModelIndex(), row, row);
    {
        const AxesLocker locker(this);
        m_series.removeAt(row);
    }
    endRemoveRows();
    synchronizeAfterRemoval();

    series->m_chart = nullptr;
    series->m_pointThread->stopThread();
    // Only now, with its worker at rest: a completion still in the queue finds the series gone.
    const bool wasUpdating = m_updatingSeries.removeAll(series) > 0;
    if (wasUpdating && !updatePointsInProgress()) {
        schedulePassEnd();
    }
    emit seriesCountChanged();
}

void AbstractChartModel::removeAllSeries()
{
    if (m_series.isEmpty()) {
        return;
    }
    if (!m_seriesEditable) {
        completeRemoveAllSeries();
        return;
    }
    QMap<int, AbstractChartSeries *> removed;
    for (int row = 0; row < m_series.size(); ++row) {
        removed.insert(row, m_series.at(row));
    }
    pushNamedAfterAction(new RemoveAllSeriesCommand(this, removed));
}

void AbstractChartModel::completeRemoveAllSeries()
{
    const QList<AbstractChartSeries *> leaving = m_series;
    for (AbstractChartSeries *series : leaving) {
        if (series) {
            series->m_chart = nullptr;
            series->m_pointThread->stopThread();
        }
    }
    if (!leaving.isEmpty()) {
        beginRemoveRows(QModelIndex(), 0, leaving.size() - 1);
        {
            const AxesLocker locker(this);
            m_series.clear();
        }
        endRemoveRows();
    }
    const bool wasUpdating = updatePointsInProgress();
    m_updatingSeries.clear();
    if (!m_seriesEditable) {
        for (AbstractChartSeries *series : leaving) {
            deleteSeries(series);
        }
    }
    synchronizeAfterRemoval();
    if (wasUpdating) {
        schedulePassEnd();
    }
    emit seriesCountChanged();
}

void AbstractChartModel::synchronizeAfterRemoval()
{
    adjustAxes(nullptr, false);
    synchronizeChart();
    updateCharts();
    if (m_series.isEmpty()) {
        repaintCharts(); // No calculation will, without a series.
    }
}

void AbstractChartModel::pushNamedAfterAction(ScaleCommand *command)
{
    if (const auto *action = qobject_cast<QAction *>(sender())) {
        command->setText(commandText(action->text()));
    }
    m_undoStack->push(command);
}

QString AbstractChartModel::commandText(const QString &trigger)
{
    return QStringLiteral("\"%1\"").arg(trigger);
}

void AbstractChartModel::addValue(AbstractChartSeries *series, ChartValue *value)
{
    if (!series) {
        return;
    }
    const bool lives = runEntry(this, series, [&] {
        if (value) {
            series->appendValue(value);
        }
        followData(series);
    });
    if (!lives) {
        delete value;
    }
}

void AbstractChartModel::addValues(AbstractChartSeries *series, const QList<ChartValue *> &values)
{
    if (!series) {
        return;
    }
    const bool lives = runEntry(this, series, [&] {
        series->addValues(values);
        followData(series);
    });
    if (!lives) {
        qDeleteAll(values);
    }
}

void AbstractChartModel::insertValues(AbstractChartSeries *series, QQueue<ChartValue *> &values,
                                      bool keepAxes)
{
    if (!series) {
        return;
    }
    const bool lives = runEntry(this, series, [&] {
        series->insertValues(values);
        if (!keepAxes) {
            followData(series);
        }
    });
    if (!lives) {
        qDeleteAll(values);
        values.clear();
    }
}

void AbstractChartModel::clearValues(AbstractChartSeries *series)
{
    if (!series) {
        return;
    }
    ChartValueList taken;
    runEntry(this, series, [&] {
        series->m_minValue = nullptr;
        series->m_maxValue = nullptr;
        taken.swap(series->m_values);
        series->m_index->clear();
        followData(series);
    });
    qDeleteAll(taken); // Millions of records, and nobody has to wait for that.
}

void AbstractChartModel::clearValues()
{
    const QList<AbstractChartSeries *> all = seriesSnapshot();
    for (AbstractChartSeries *series : all) {
        clearValues(series);
    }
}

bool AbstractChartModel::removeOldValues(AbstractChartSeries *series)
{
    bool changed = false;
    if (series) {
        runEntry(this, series, [&] { changed = series->removeOldValues(); });
    }
    return changed;
}

void AbstractChartModel::slotRemoveSeries()
{
    if (AbstractChartSeries *series = selectedSeries()) {
        removeSeries(series);
    }
}

void AbstractChartModel::slotRemoveAllSeries()
{
    if (confirm(tr("Do you really want to remove all series?"))) {
        removeAllSeries();
    }
}

void AbstractChartModel::slotClearPoints()
{
    if (confirm(tr("Do you really want to clear points?"))) {
        clearValues();
        updateCharts();
    }
}

bool AbstractChartModel::confirm(const QString &question)
{
    const QPointer<AbstractChartModel> self(this); // The program goes on under the question.
    QWidget *window = QApplication::activeWindow();
    // Exactly these buttons: with the default not among them Qt shows both, Yes and No.
    const int answer = QMessageBox::question(window, window ? window->windowTitle() : QString(),
                                             question, QMessageBox::Yes, QMessageBox::No);
    return self && answer == QMessageBox::Yes;
}
