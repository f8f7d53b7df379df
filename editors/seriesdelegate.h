#pragma once

#include "quarvchart_export.h"

#include <QItemDelegate>

/**
 * The look of the legend: names in the colour of their series, bold if the user has customized it,
 * and the sample of the line, whose editor is a SeriesEditor.
 *
 * For the columns of an AbstractChartModel. GUI thread only.
 */
class QUARVCHART_EXPORT SeriesDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    /// MultiChart makes one for its legend.
    explicit SeriesDelegate(QObject *parent = nullptr);

    /// Paints nothing at all for an index without a series.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    /// 4 pixels more than usual in both directions.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// A SeriesEditor for the line's sample, null for the other columns.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;

    /// Hands the series of the row to the editor.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

    /// Announces what the editor has changed in the series: the model's update().
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
};
