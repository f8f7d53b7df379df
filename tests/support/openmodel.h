#pragma once

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/chartwidget.h"

#include <QStringList>

/**
 * A model of the class \p Base that opens the protected slots, answers QAbstractItemModelTester as
 * it wants, and takes its panes with it.
 *
 * The panes have no parent in a test without windows, so somebody has to delete them.
 */
template <typename Base>
class OpenedModel : public Base
{
public:
    OpenedModel()
        : Base("QUARVChart5 tests", "tests")
    {
    }
    ~OpenedModel() override
    {
        while (!this->m_charts.isEmpty()) {
            delete this->m_charts.takeLast();
        }
    }

    /// The tester wants a flat table to have no rows below a row; the library's answer ignores the
    /// parent on purpose.
    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : Base::rowCount(parent);
    }
    int columnCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : Base::columnCount(parent);
    }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? Base::flags(index) : Qt::ItemFlags();
    }

    using Base::setScrollLocked;
    using Base::slotAddChart;
    using Base::slotContextMenuRequested;
    using Base::slotCursorStateChanged;
    using Base::slotMoveMode;
    using Base::slotMultiMode;
    using Base::slotPause;
    using Base::slotRemoveChart;
    using Base::slotScrollBack;
    using Base::slotScrollDown;
    using Base::slotScrollForward;
    using Base::slotScrollToBegin;
    using Base::slotScrollToEnd;
    using Base::slotScrollUp;
    using Base::slotSelectionChanged;
    using Base::slotSelectMode;
    using Base::slotSeriesParentChanged;
    using Base::slotSingleMode;
    using Base::slotUndoZoom;
    using Base::slotZoomIn;
    using Base::slotZoomInX;
    using Base::slotZoomInY;
    using Base::slotZoomOut;
    using Base::slotZoomOutX;
    using Base::slotZoomOutY;
};

/// A static model, opened.
class OpenModel : public OpenedModel<StaticChartModel>
{
    Q_OBJECT
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
