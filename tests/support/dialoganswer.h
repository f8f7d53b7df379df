#pragma once

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <functional>
#include <initializer_list>
#include <vector>

/**
 * Acts on modal dialogs of the class \p Dialog for as long as it lives: takes one step each time
 * that it finds one on top, and rejects what stands after the last step, so that none stands for
 * good.
 *
 * A step may close the dialog, delete it or open another, which then needs an answer of its own.
 */
template <typename Dialog>
class DialogAnswer : public QObject
{
public:
    using Step = std::function<void(Dialog &)>;

    DialogAnswer(std::initializer_list<Step> steps)
        : m_steps(steps)
    {
        connect(&m_timer, &QTimer::timeout, this, &DialogAnswer::look);
        m_timer.start(LookInterval);
    }

    bool isDone() const { return m_next == m_steps.size(); } ///< All steps have been taken.

private:
    static constexpr int LookInterval = 5; // ms

    void look()
    {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog) {
            return;
        }
        if (isDone()) {
            dialog->reject();
            return;
        }
        m_steps[m_next++](*dialog);
    }

    const std::vector<Step> m_steps;
    std::size_t m_next = 0;
    QTimer m_timer;
};
