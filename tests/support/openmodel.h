#pragma once

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/chartwidget.h"

#include <QStringList>

/**
 * A static model that opens the protected slots, answers QAbstractItemModelTester as it wants, and
 * takes its panes with it.
 *
 * The panes have no parent in a test without windows, so somebody has to delete them.
 */
class OpenModel : public StaticChartModel
{
    Q_OBJECT

public:
    OpenModel()
        : StaticChartModel("QUARVChart5 tests", "tests")
    {
    }
    ~OpenModel() override
    {
        while (!m_charts.isEmpty()) {
            delete m_charts.takeLast();
        }
    }

    /// The tester wants a flat table to have no rows below a row; the library's answer ignores the
    /// parent on purpose.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : StaticChartModel::rowCount(parent);
    }
    int columnCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : StaticChartModel::columnCount(parent);
    }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? StaticChartModel::flags(index) : Qt::ItemFlags();
    }

    using AbstractChartModel::slotAddChart;
    using AbstractChartModel::slotMultiMode;
    using AbstractChartModel::slotPause;
    using AbstractChartModel::slotRemoveChart;
    using AbstractChartModel::slotSelectionChanged;
    using AbstractChartModel::slotSeriesParentChanged;
    using AbstractChartModel::slotSingleMode;
};

/// An axis as one text: "[0,600]", with " zoomed" behind it if it is.
inline QString axisText(const ChartAxis &axis)
{
    return QString("[%1,%2]%3")
        .arg(axis.m_min, 0, 'g', 12)
        .arg(axis.m_max, 0, 'g', 12)
        .arg(axis.m_zoomed ? QStringLiteral(" zoomed") : QString());
}

/// All axes of a model as one text: X first, then Y of each series by row.
inline QString axesText(const AbstractChartModel &model)
{
    QStringList texts{axisText(*model.m_axisX)};
    for (const AbstractChartSeries *series : qAsConst(model.m_series)) {
        texts.append(axisText(*series->m_axisY));
    }
    return texts.join(' ');
}
