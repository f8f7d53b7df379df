#pragma once

#include "series/abstractchartseries.h"
#include "support/openmodel.h"

#include <QCoreApplication>
#include <QStringList>
#include <QtTest>

/**
 * A model that writes down its signals and the calls of its virtual operations, in their order.
 *
 * What happens while a calculation runs is marked with a star: so updateCharts() shows, which is
 * not virtual. Of nested calls of adjustAxisY() only the outermost is written down.
 */
class RecordingModel : public OpenModel
{
public:
    RecordingModel()
    {
        connect(this, &QAbstractItemModel::rowsAboutToBeInserted, this,
                [this](const QModelIndex &, int a, int b) { record(rows("inserting", a, b)); });
        connect(this, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex &, int a, int b) { record(rows("inserted", a, b)); });
        connect(this, &QAbstractItemModel::rowsAboutToBeRemoved, this,
                [this](const QModelIndex &, int a, int b) { record(rows("removing", a, b)); });
        connect(this, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int a, int b) { record(rows("removed", a, b)); });
        connect(this, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &a, const QModelIndex &b) {
                    record(QString("data %1,%2-%3,%4")
                               .arg(a.row())
                               .arg(a.column())
                               .arg(b.row())
                               .arg(b.column()));
                });
        connect(this, &AbstractChartModel::select, this,
                [this](const QModelIndex &index, QItemSelectionModel::SelectionFlags flags) {
                    record(QString("select %1,%2 %3")
                               .arg(index.row())
                               .arg(index.column())
                               .arg(int(flags)));
                });
        connect(this, &AbstractChartModel::savePosition, this, [this] { record("savePosition"); });
        connect(this, &AbstractChartModel::chartCountChanged, this, [this] { record("charts"); });
        connect(this, &AbstractChartModel::seriesCountChanged, this, [this] { record("series"); });
    }

    void adjustAxisY(AbstractChartSeries *series) override
    {
        if (m_depth++ == 0) {
            record(QString("y:%1").arg(series ? series->m_name : QStringLiteral("all")));
        }
        OpenModel::adjustAxisY(series);
        --m_depth;
    }
    void adjustAxisY() override
    {
        if (m_depth++ == 0) {
            record("y");
        }
        OpenModel::adjustAxisY();
        --m_depth;
    }
    void adjustAxisX() override
    {
        record("x");
        OpenModel::adjustAxisX();
    }
    void adjustZoom(AbstractChartSeries *series) override
    {
        record(QString("zoom:%1").arg(series->m_name));
        OpenModel::adjustZoom(series);
    }
    void updateActions() override
    {
        record("actions");
        OpenModel::updateActions();
    }
    void slotPause(bool paused) override
    {
        record(paused ? "pause on" : "pause off");
        OpenModel::slotPause(paused);
    }

    void record(const QString &call)
    {
        m_calls.append(updatePointsInProgress() ? call + '*' : call);
    }

    /// What was written down since the last call, as one text.
    QString takeCalls()
    {
        const QString calls = m_calls.join('|');
        m_calls.clear();
        return calls;
    }

private:
    static QString rows(const char *event, int first, int last)
    {
        return QString("%1 %2-%3").arg(event).arg(first).arg(last);
    }

    QStringList m_calls;
    int m_depth = 0; ///< Of adjustAxisY(), which runs with the lock on the axes held.
};

/// Whether no calculation runs and none is asked for, or that comes true within some seconds.
inline bool settled(const AbstractChartModel &model)
{
    const bool isIdle = QTest::qWaitFor(
        [&model] { return !model.updatePointsInProgress() && !model.m_chartsUpdatePending; });
    QCoreApplication::processEvents(); // what was posted meanwhile, late completions included
    return isIdle && !model.updatePointsInProgress();
}

/// The names of the series in row order: "a b c".
inline QString rowsText(const AbstractChartModel &model)
{
    QStringList names;
    for (const AbstractChartSeries *series : model.m_series) {
        names.append(series->m_name);
    }
    return names.join(' ');
}
