#include "editors/seriesdelegate.h"

#include "editors/serieseditor.h"
#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"

namespace {

constexpr int ExtraSize = 4; // pixels, in width and height

AbstractChartSeries *seriesOf(const QModelIndex &index)
{
    return qobject_cast<AbstractChartSeries *>(
        index.data(Qt::UserRole).value<AbstractChartSeries *>());
}

} // namespace

SeriesDelegate::SeriesDelegate(QObject *parent)
    : QItemDelegate(parent)
{
}

void SeriesDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                           const QModelIndex &index) const
{
    AbstractChartSeries *series = seriesOf(index);
    if (!series) {
        return;
    }
    QStyleOptionViewItem opt = option;
    const QVariant foreground = index.data(Qt::ForegroundRole);
    const QColor color =
        foreground.userType() == QMetaType::QColor ? foreground.value<QColor>() : series->m_color;
    // A selected row keeps the colour of its series on its highlight.
    const QBrush brush(color, Qt::SolidPattern);
    opt.palette.setBrush(QPalette::All, QPalette::Text, brush);
    opt.palette.setBrush(QPalette::All, QPalette::HighlightedText, brush);
    opt.font.setWeight(series->m_customized ? QFont::Bold : QFont::Normal);
    QItemDelegate::paint(painter, opt, index);
    if (index.column() == AbstractChartModel::LineColumn) {
        series->paintLogo(painter, opt.rect);
    }
}

QSize SeriesDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return QItemDelegate::sizeHint(option, index) + QSize(ExtraSize, ExtraSize);
}

QWidget *SeriesDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                      const QModelIndex &index) const
{
    if (index.column() != AbstractChartModel::LineColumn) {
        return nullptr;
    }
    auto *editor = new SeriesEditor(parent);
    connect(editor, SIGNAL(changed(QWidget *)), this, SIGNAL(commitData(QWidget *)));
    return editor;
}

void SeriesDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (index.column() != AbstractChartModel::LineColumn) {
        return;
    }
    auto *seriesEditor = qobject_cast<SeriesEditor *>(editor);
    if (AbstractChartSeries *series = seriesOf(index); series && seriesEditor) {
        seriesEditor->setSeries(series);
    }
}

void SeriesDelegate::setModelData(QWidget *, QAbstractItemModel *model, const QModelIndex &) const
{
    if (auto *chartModel = qobject_cast<AbstractChartModel *>(model)) {
        chartModel->update();
    }
}
