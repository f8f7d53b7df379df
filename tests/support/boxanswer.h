#pragma once

#include "support/quietplatform.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>

/**
 * Answers message boxes for as long as it lives, so that none stands for good: presses the button
 * that it was made with, or closes a box that has no such button. Tells what the last box showed.
 */
class BoxAnswer : public QObject
{
public:
    explicit BoxAnswer(QMessageBox::StandardButton button)
        : m_button(button)
    {
        connect(&m_timer, &QTimer::timeout, this, &BoxAnswer::look);
        m_timer.start(LookInterval);
    }

    int m_count = 0; ///< Boxes seen.
    QString m_title;
    QString m_text;
    QString m_buttons; ///< Their texts in the box's order: "Yes No".
    QMessageBox::Icon m_icon = QMessageBox::NoIcon;
    QWidget *m_parent = nullptr;
    std::function<void()> m_beforeAnswer; ///< Called while the box stands.

private:
    static constexpr int LookInterval = 5; // ms

    void look()
    {
        QWidget *modal = QApplication::activeModalWidget();
        auto *box = qobject_cast<QMessageBox *>(modal);
        if (!box) {
            if (modal) {
                modal->close();
            }
            return;
        }
        note(*box);
        if (m_beforeAnswer) {
            m_beforeAnswer();
        }
        if (QAbstractButton *button = box->button(m_button)) {
            button->click();
        } else {
            box->done(QMessageBox::NoButton);
        }
    }

    void note(const QMessageBox &box)
    {
        ++m_count;
        m_title = box.windowTitle();
        m_text = box.text();
        m_icon = box.icon();
        m_parent = box.parentWidget();
        QStringList texts;
        const QList<QAbstractButton *> buttons = box.buttons();
        for (const QAbstractButton *button : buttons) {
            texts.append(button->text().remove('&'));
        }
        m_buttons = texts.join(' ');
    }

    QuietPlatform m_quiet; // a box has a fixed size
    QMessageBox::StandardButton m_button;
    QTimer m_timer;
};
