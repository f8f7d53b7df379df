#pragma once

#include "quarvchart_export.h"

#include <QColor>
#include <QToolButton>

class QtColorButtonPrivate;

/**
 * A tool button that shows a colour and lets its user change it: by a click, which opens a colour
 * dialog with an alpha channel, or by dropping a colour on it. Its own colour can be dragged away.
 *
 * A translucent colour is shown over a checker board. A drag with a colour previews that colour
 * while it is over the button. GUI thread only.
 */
class QUARVCHART_EXPORT QtColorButton : public QToolButton
{
    Q_OBJECT
    /// Whether a translucent colour is shown over a checker board, or over what is behind it.
    Q_PROPERTY(bool backgroundCheckered READ isBackgroundCheckered WRITE setBackgroundCheckered)

public:
    /// A button without a colour.
    explicit QtColorButton(QWidget *parent = nullptr);

    /// An open colour dialog is closed, as if cancelled.
    ~QtColorButton() override;

    /// Invalid until it is set. A drag over the button leaves it alone.
    QColor color() const;

    bool isBackgroundCheckered() const;          ///< True by default.
    void setBackgroundCheckered(bool checkered); ///< Repaints if that is a change.

    QtColorButtonPrivate *d_ptr; ///< Owned.

signals:
    /// The user has chosen another colour. setColor() does not emit it.
    void colorChanged(const QColor &color);

public slots:
    void setColor(const QColor &color); ///< Repaints if that is a change. Emits nothing.

protected:
    /// @{
    /// Drags away the own colour, takes another, and shows either.
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    /// @}

private slots:
    void slotEditColor();

private:
    void startDrag();
};
