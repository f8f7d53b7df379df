#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <utility>

/// Counts the repaints of a widget, which has to be shown to have any.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *watched) { watched->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    /// Repaints since the last call, those included that are due.
    int take()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_paints, 0);
    }

    int m_paints = 0;
};
