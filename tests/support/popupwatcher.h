#pragma once

#include "support/quietplatform.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPoint>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>

/// The texts of actions in their order, a separator as "|": "Combine, Separate, |, Add chart".
inline QString actionsText(const QList<QAction *> &actions)
{
    QStringList texts;
    for (const QAction *action : actions) {
        texts.append(action->isSeparator() ? QStringLiteral("|") : action->text());
    }
    return texts.join(", ");
}

/**
 * Closes pop-ups for as long as it lives, so that none stands for good. Tells what the last menu
 * showed.
 */
class PopupWatcher : public QObject
{
public:
    PopupWatcher()
    {
        connect(&m_timer, &QTimer::timeout, this, &PopupWatcher::look);
        m_timer.start(LookInterval);
    }

    int m_count = 0; ///< Pop-ups seen.
    QList<QAction *> m_actions;
    QString m_text; ///< Of the actions; they may be gone when a test looks.
    QPoint m_pos;   ///< Global.
    QWidget *m_parent = nullptr;
    std::function<void()> m_beforeClose; ///< Called while the pop-up stands.

private:
    static constexpr int LookInterval = 5; // ms

    void look()
    {
        const QPointer<QWidget> popup = QApplication::activePopupWidget();
        if (!popup) {
            return;
        }
        ++m_count;
        if (const auto *menu = qobject_cast<QMenu *>(popup.data())) {
            m_actions = menu->actions();
            m_text = actionsText(m_actions);
            m_pos = menu->pos();
        }
        m_parent = popup->parentWidget();
        if (m_beforeClose) {
            m_beforeClose();
        }
        if (popup) {
            popup->close();
        }
    }

    QuietPlatform m_quiet; // a menu wants to be raised and to have the keyboard
    QTimer m_timer;
};
