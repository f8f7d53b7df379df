#include "views/chartwidget.h"

#include "model/abstractchartmodel.h"
#include "views/chartcursor.h"

#include <QAccessible>
#include <QAction>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QRegion>
#include <QRubberBand>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include <optional>

namespace {

constexpr int Step = 1;      // pixels that an arrow key moves the cursor line by
constexpr int LongStep = 10; // pixels with Ctrl

constexpr int FocusWidth = 2; // pixels along the edge of the pane that show the focus

/// A key and the action that it stands for. The actions have no shortcuts: only the pane with the
/// focus hears these keys, and only if the application has no use for them.
struct ActionKey
{
    int key;
    Qt::KeyboardModifiers modifiers;
    QAction *AbstractChartModel::*action;
};

constexpr ActionKey ActionKeys[] = {
    {Qt::Key_Plus, Qt::NoModifier, &AbstractChartModel::m_zoomInAction},
    {Qt::Key_Plus, Qt::ControlModifier, &AbstractChartModel::m_zoomInXAction},
    {Qt::Key_Plus, Qt::AltModifier, &AbstractChartModel::m_zoomInYAction},
    {Qt::Key_Minus, Qt::NoModifier, &AbstractChartModel::m_zoomOutAction},
    {Qt::Key_Minus, Qt::ControlModifier, &AbstractChartModel::m_zoomOutXAction},
    {Qt::Key_Minus, Qt::AltModifier, &AbstractChartModel::m_zoomOutYAction},
    {Qt::Key_Left, Qt::ShiftModifier, &AbstractChartModel::m_scrollBackAction},
    {Qt::Key_Right, Qt::ShiftModifier, &AbstractChartModel::m_scrollForwardAction},
    {Qt::Key_Home, Qt::ControlModifier, &AbstractChartModel::m_scrollToBeginAction},
    {Qt::Key_End, Qt::ControlModifier, &AbstractChartModel::m_scrollToEndAction},
    {Qt::Key_Up, Qt::NoModifier, &AbstractChartModel::m_scrollUpAction},
    {Qt::Key_PageUp, Qt::NoModifier, &AbstractChartModel::m_scrollUpAction},
    {Qt::Key_Down, Qt::NoModifier, &AbstractChartModel::m_scrollDownAction},
    {Qt::Key_PageDown, Qt::NoModifier, &AbstractChartModel::m_scrollDownAction},
};

/// The modifiers that make a difference; the keypad is as good as the rest of the keyboard.
Qt::KeyboardModifiers modifiersOf(const QKeyEvent &event)
{
    Qt::KeyboardModifiers counted =
        Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier;
    if (event.key() == Qt::Key_Plus || event.key() == Qt::Key_Minus) {
        counted &= ~Qt::ShiftModifier; // On some keyboards plus takes Shift, on others it does not.
    }
    return event.modifiers() & counted;
}

/// By how many pixels a key moves the cursor line; 0 if it does not.
int cursorStep(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = modifiersOf(event);
    if (modifiers != Qt::NoModifier && modifiers != Qt::ControlModifier) {
        return 0;
    }
    const int length = modifiers == Qt::ControlModifier ? LongStep : Step;
    switch (event.key()) {
    case Qt::Key_Left:
        return -length;
    case Qt::Key_Right:
        return length;
    default:
        return 0;
    }
}

/// Where a key puts the cursor line; nothing if it has no say in that. In whole pixels, as those of
/// the mouse and of the computed points are.
std::optional<double> cursorTarget(const QKeyEvent &event, const ChartCursor &cursor,
                                   const QRectF &plot)
{
    const double left = qRound(plot.x());
    const double right = qRound(plot.x() + plot.width());
    if (modifiersOf(event) == Qt::NoModifier && event.key() == Qt::Key_Home) {
        return left;
    }
    if (modifiersOf(event) == Qt::NoModifier && event.key() == Qt::Key_End) {
        return right;
    }
    const int step = cursorStep(event);
    if (step == 0) {
        return std::nullopt;
    }
    if (!cursor.m_visible) {
        return qRound(plot.center().x());
    }
    return qBound(left, cursor.m_position + step, right);
}

} // namespace

void ChartWidget::keyPressEvent(QKeyEvent *event)
{
    // While the mouse drags, keys change neither its view nor the history behind its back.
    const bool listens = m_model && !m_rubberBand->isVisible();
    if (listens && (moveCursorLine(*event) || hideCursorLine(*event) || triggerAction(*event))) {
        return;
    }
    QWidget::keyPressEvent(event); // leaves the key to the parents
}

bool ChartWidget::moveCursorLine(const QKeyEvent &event)
{
    const QRectF plot = chartRect(QRectF());
    if (!plot.isValid()) {
        return false;
    }
    const std::optional<double> target = cursorTarget(event, *m_cursor, plot);
    if (target) {
        sendCursorLine(*target, true);
    }
    return target.has_value();
}

/// Escape is left to the application if there is nothing to hide: it may close a dialog.
bool ChartWidget::hideCursorLine(const QKeyEvent &event)
{
    const bool hides = event.key() == Qt::Key_Escape && modifiersOf(event) == Qt::NoModifier &&
                       m_cursor->m_visible;
    if (hides) {
        sendCursorLine(0.0, false);
    }
    return hides;
}

void ChartWidget::sendCursorLine(double position, bool visible)
{
    emit cursorStateChanged(position, visible);
    QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&changed);
}

/// The key of a disabled action is used up as well, or holding a key would do something else as
/// soon as a limit is reached.
bool ChartWidget::triggerAction(const QKeyEvent &event)
{
    for (const ActionKey &candidate : ActionKeys) {
        if (candidate.key == event.key() && candidate.modifiers == modifiersOf(event)) {
            // Samples alone do not refresh the actions; the wheel asks anew as well.
            m_model->updateActions();
            QAction *action = m_model->*candidate.action;
            if (action->isEnabled()) {
                action->trigger(); // which by itself works on a disabled action too
            }
            return true;
        }
    }
    return false;
}

/// A click gives the focus as well, but shows nothing of it: the picture stays, and is not painted
/// anew either, as the base class would have it.
void ChartWidget::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        m_showsFocus = true;
        break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
        break; // It comes back from where it was lent to.
    default:
        m_showsFocus = false;
    }
    updateFocus();
}

void ChartWidget::focusOutEvent(QFocusEvent *)
{
    updateFocus();
}

void ChartWidget::updateFocus()
{
    if (m_showsFocus) {
        update();
    }
}

void ChartWidget::paintFocus(QPainter &painter)
{
    if (!m_showsFocus || !hasFocus()) {
        return;
    }
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.state |= QStyle::State_KeyboardFocusChange;
    option.backgroundColor = palette().color(QPalette::Window);
    // Some styles tint all that is inside; the margins are wider than this everywhere.
    const QRect inside = rect().adjusted(FocusWidth, FocusWidth, -FocusWidth, -FocusWidth);
    painter.setClipRegion(QRegion(rect()).subtracted(inside));
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}
