#include "views/chartaccessible_p.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"
#include "views/chartcursor.h"
#include "views/chartwidget.h"

#include <QAccessibleWidget>
#include <QImage>
#include <QPainter>
#include <QStringList>

namespace {

constexpr int ExtraDecimals = 1; // on top of those of the step, as in the cursor's own label

/// The names of the visible series, as the legend shows them.
QString nameOf(const ChartWidget &pane)
{
    QStringList names;
    const QList<AbstractChartSeries *> all = pane.seriesList();
    for (const AbstractChartSeries *series : all) {
        const QString name = series->m_visible ? series->name() : QString();
        if (!name.isEmpty()) {
            names.append(name);
        }
    }
    if (names.isEmpty()) {
        return ChartWidget::tr("Chart");
    }
    return ChartWidget::tr("Chart: %1").arg(names.join(QStringLiteral(", ")));
}

/// The axis measures a label as it makes it, which takes a painter. The lock on the axes must be
/// held.
QString labelOf(const HorizontalChartAxis &axis, double value)
{
    QImage scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
    const QPainter painter(&scratch);
    QString text;
    QRectF box;
    axis.valueTextAndRect(value, painter, text, box, ExtraDecimals);
    // An axis without a step has no label to give.
    return text.isEmpty() ? QString::number(value) : text.replace('\n', ' ');
}

QString descriptionOf(const ChartWidget &pane)
{
    AbstractChartSeries *selected = pane.selectedSeries();
    const HorizontalChartAxis *axisX = pane.axisX();
    if (!selected || !selected->m_axisY || !axisX) {
        return ChartWidget::tr("No series");
    }
    const QString name = selected->name();
    const ChartCursor &cursor = *pane.m_cursor;
    bool isMapped = false;
    const double cursorX = selected->mapInverted(QPointF(cursor.m_position, 0.0), &isMapped).x();

    const AxesLocker locker(pane.m_model);
    QStringList parts{ChartWidget::tr("X from %1 to %2")
                          .arg(labelOf(*axisX, axisX->m_min), labelOf(*axisX, axisX->m_max))};
    // The Y axis of a hidden series is not painted either.
    if (selected->m_visible) {
        parts.append(ChartWidget::tr("Y of %1 from %2 to %3")
                         .arg(name, selected->scaleString(selected->m_axisY->m_min),
                              selected->scaleString(selected->m_axisY->m_max)));
    }
    if (cursor.m_visible && isMapped) {
        parts.append(ChartWidget::tr("cursor at %1").arg(labelOf(*axisX, cursorX)));
    }
    return parts.join(QStringLiteral(", "));
}

class ChartAccessible : public QAccessibleWidget
{
public:
    explicit ChartAccessible(ChartWidget *pane)
        : QAccessibleWidget(pane, QAccessible::Chart)
    {
    }

    QString text(QAccessible::Text type) const override
    {
        const QString own = QAccessibleWidget::text(type);
        const auto *pane = qobject_cast<const ChartWidget *>(object());
        if (!own.isEmpty() || !pane) {
            return own;
        }
        switch (type) {
        case QAccessible::Name:
            return nameOf(*pane);
        case QAccessible::Description:
            return descriptionOf(*pane);
        default:
            return own;
        }
    }
};

/// Asked for every object that Qt knows no interface for yet.
QAccessibleInterface *newChartAccessible(const QString &, QObject *object)
{
    auto *pane = qobject_cast<ChartWidget *>(object);
    return pane ? new ChartAccessible(pane) : nullptr;
}

/// Takes the factory back when the library is unloaded before the program ends.
class FactoryGuard
{
public:
    FactoryGuard() { QAccessible::installFactory(newChartAccessible); }
    ~FactoryGuard() { QAccessible::removeFactory(newChartAccessible); }
    Q_DISABLE_COPY_MOVE(FactoryGuard)
};

} // namespace

void installChartAccessible()
{
    static const FactoryGuard guard;
}
