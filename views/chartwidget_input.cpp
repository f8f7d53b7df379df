#include "views/chartwidget.h"

#include "model/abstractchartmodel.h"
#include "model/chartmimedata.h"
#include "series/abstractchartseries.h"
#include "series/seriesregistry_p.h"
#include "views/chartcursor.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QRubberBand>
#include <QTransform>
#include <QWheelEvent>

namespace {

// One step in and one step out do not cancel: they leave 1.125 of the span. That is wanted.
constexpr double WheelIn = 0.75;
constexpr double WheelOut = 1.5;

/// What a wheel has turned, in eighths of a degree; a wheel that tilts counts by its sideways turn.
int wheelDelta(const QWheelEvent &event)
{
    const QPoint turn = event.angleDelta();
    return qAbs(turn.x()) > qAbs(turn.y()) ? turn.x() : turn.y();
}

/// \p chart scaled by \p factor so that what is under \p mouse stays there.
QRectF scaledAbout(const QRectF &chart, double factor, const QPoint &mouse)
{
    QRectF target(0.0, 0.0, factor * chart.width(), factor * chart.height());
    target.moveTo(chart.width() * 0.5 + chart.x() - target.width() * 0.5,
                  chart.height() * 0.5 + chart.y() - target.height() * 0.5);
    const double sx = target.width() / chart.width();
    const double sy = target.height() / chart.height();
    const QTransform chartOntoTarget(sx, 0.0, 0.0, sy, target.x() - chart.x() * sx,
                                     target.y() - chart.y() * sy);
    // In whole pixels, as the mouse moves.
    return target.translated(mouse - chartOntoTarget.map(mouse));
}

} // namespace

bool ChartWidget::isInFrame(const QPoint &point) const
{
    return fullChartRect(QRectF()).contains(QPointF(point));
}

void ChartWidget::mousePressEvent(QMouseEvent *event)
{
    const QPoint point = event->pos();
    if (!m_model || !isInFrame(point)) {
        return;
    }
    if (event->button() == Qt::LeftButton) {
        startDrag(point);
    }
    emit cursorStateChanged(point.x(), !m_rubberBand->isVisible());
}

/// In both modes the visible band marks a running drag; when the view is moved it stays empty.
void ChartWidget::startDrag(const QPoint &point)
{
    const int mode = m_model->m_mouseMode;
    if (mode != SelectMode && mode != MoveMode) {
        return; // A mode of the application's own.
    }
    m_lastPoint = point;
    if (mode == MoveMode) {
        setCursor(Qt::ClosedHandCursor);
        emit beginMove();
    } else if (!m_model->canZoomIn()) {
        setCursor(Qt::ForbiddenCursor);
    }
    m_rubberBand->setGeometry(QRect(point, point - QPoint(1, 1)));
    m_rubberBand->show();
}

void ChartWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_model) {
        return;
    }
    const QPoint point = event->pos();
    if (!isInFrame(point)) {
        setCursor(Qt::ArrowCursor);
        emit cursorStateChanged(point.x(), false);
        return;
    }
    const bool dragging = m_rubberBand->isVisible();
    if (m_model->m_mouseMode == SelectMode) {
        if (dragging) {
            if (m_model->canZoomIn()) {
                m_rubberBand->setGeometry(QRect(m_lastPoint, point).normalized());
            }
            return;
        }
        setCursor(Qt::CrossCursor);
    } else if (m_model->m_mouseMode == MoveMode) {
        const bool held = event->buttons().testFlag(Qt::LeftButton);
        setCursor(held ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
        if (dragging) {
            // The window of data moves against the mouse, so that the curves move with it.
            const QRectF chart = chartRect(QRectF());
            emit zoomChanged(chart, chart.translated(m_lastPoint - point), ZoomTransient);
            m_lastPoint = point;
            return;
        }
    }
    emit cursorStateChanged(point.x(), !dragging);
}

void ChartWidget::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_model || event->button() != Qt::LeftButton) {
        return;
    }
    if (m_model->m_mouseMode == SelectMode) {
        const QRect band = m_rubberBand->geometry();
        if (m_rubberBand->isVisible() && band.isValid()) {
            m_commandText = tr("Select area");
            emit zoomChanged(chartRect(QRectF()), QRectF(band), ZoomUndoable);
        }
        setCursor(Qt::CrossCursor);
    } else if (m_model->m_mouseMode == MoveMode) {
        setCursor(Qt::OpenHandCursor);
        m_commandText = tr("Move");
        emit endMove();
    }
    m_rubberBand->hide();
    emit cursorStateChanged(event->pos().x(), true);
}

void ChartWidget::wheelEvent(QWheelEvent *event)
{
    restoreCursor();
    const QPoint point = event->position().toPoint();
    const int delta = wheelDelta(*event);
    if (delta == 0 || !isInFrame(point)) {
        return;
    }
    const bool in = delta > 0;
    if (m_model && !(in ? m_model->canZoomIn() : m_model->canZoomOut())) {
        setCursor(Qt::ForbiddenCursor);
        return;
    }
    const QRectF chart = chartRect(QRectF());
    const QRectF target = scaledAbout(chart, in ? WheelIn : WheelOut, point);
    if (target.isValid()) {
        m_commandText = tr("Scaling with mouse wheel");
        emit zoomChanged(chart, target, ZoomUndoable);
    }
}

void ChartWidget::leaveEvent(QEvent *)
{
    emit cursorStateChanged(0.0, false);
}

void ChartWidget::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_model) {
        return;
    }
    QMenu menu;
    menu.addActions(m_model->m_actions);
    if (menu.isEmpty()) {
        return;
    }
    const QPointer<ChartWidget> self(this); // An action may delete the pane.
    menu.exec(event->globalPos());
    if (self && !QApplication::mouseButtons().testFlag(Qt::LeftButton)) {
        m_rubberBand->hide(); // The menu has swallowed the release of a drag.
    }
}

void ChartWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (qobject_cast<const ChartMimeData *>(event->mimeData())) {
        event->acceptProposedAction();
    }
}

void ChartWidget::dropEvent(QDropEvent *event)
{
    const auto *dropped = qobject_cast<const ChartMimeData *>(event->mimeData());
    if (!dropped) {
        return;
    }
    // A copy: what hears of one series may end the drag, or remove the pane where it may not stay.
    const QList<AbstractChartSeries *> all = dropped->m_series;
    const QPointer<ChartWidget> self(this);
    for (AbstractChartSeries *series : all) {
        if (!self) {
            return;
        }
        if (takesDropOf(series) && series->m_chart != this) {
            series->m_chart = this;
            emit seriesParentChanged();
        }
    }
}

/// A series of this pane's model, or one that never had a model. One that has died since the drag
/// began may not even be looked at.
bool ChartWidget::takesDropOf(AbstractChartSeries *series) const
{
    if (!series || !SeriesRegistry::instance().contains(series)) {
        return false;
    }
    return !series->m_model || (series->m_model == m_model && m_model->m_series.contains(series));
}

void ChartWidget::changeCursorState(double pos, bool visible)
{
    const bool shows = m_cursor->m_visible != visible || (visible && m_cursor->m_position != pos);
    m_cursor->m_visible = visible;
    m_cursor->m_position = pos;
    if (shows) {
        update(cursorReach());
    }
}

void ChartWidget::restoreCursor()
{
    if (!m_model) {
        return;
    }
    if (m_model->m_mouseMode == SelectMode) {
        setCursor(Qt::CrossCursor);
    } else if (m_model->m_mouseMode == MoveMode) {
        setCursor(Qt::OpenHandCursor);
    }
}
