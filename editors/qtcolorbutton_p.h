#pragma once

#include "quarvchart_export.h"

#include <QColor>
#include <QPixmap>
#include <QPoint>

class QtColorButton;

/// The state of a QtColorButton.
class QUARVCHART_EXPORT QtColorButtonPrivate
{
public:
    explicit QtColorButtonPrivate(QtColorButton *button)
        : q_ptr(button)
    {
    }

    /// The offered colour while a drag is over the button, else its own.
    QColor shownColor() const;

    /// The picture that a drag carries: a checked ring around an opaque centre.
    QPixmap generatePixmap() const;

    void slotEditColor();

    QtColorButton *q_ptr;
    QColor m_color;
    QColor m_dragColor; ///< Offered by the drag that is over the button.
    QPoint m_dragStart; ///< Where the left button went down.
    bool m_dragging = false;
    bool m_backgroundCheckered = true;
};
