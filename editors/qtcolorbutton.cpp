#include "editors/qtcolorbutton.h"

#include "editors/qtcolorbutton_p.h"

#include <QApplication>
#include <QBrush>
#include <QColorDialog>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

namespace {

constexpr int ColorMargin = 4;   // pixels from the edge of the button to the colour
constexpr int ButtonSquare = 10; // pixels of a side of the checker board's squares
constexpr int DragSquare = 20;
constexpr int DragSize = 24; // pixels of a side of the drag's picture

// Black, at about a tenth and a fifth of full opacity: sets the colour off from any background.
constexpr int InnerFrameAlpha = 26;
constexpr int OuterFrameAlpha = 51;

/// Two by two squares of a checker board, seen through \p color.
QPixmap checkerTile(int square, const QColor &first, const QColor &second, const QColor &color)
{
    QPixmap tile(2 * square, 2 * square);
    QPainter painter(&tile);
    painter.fillRect(0, 0, square, square, first);
    painter.fillRect(square, square, square, square, first);
    painter.fillRect(0, square, square, square, second);
    painter.fillRect(square, 0, square, square, second);
    painter.fillRect(tile.rect(), color);
    painter.end();
    return tile;
}

/// Where a board of such squares starts so that it is centred in a rectangle of \p size that lies
/// \p margin from the edges.
QPoint checkerOrigin(const QSize &size, int square, int margin)
{
    return QPoint((size.width() % square + square) / 2 + margin,
                  (size.height() % square + square) / 2 + margin);
}

} // namespace

QColor QtColorButtonPrivate::shownColor() const
{
    return m_dragging ? m_dragColor : m_color;
}

QPixmap QtColorButtonPrivate::generatePixmap() const
{
    constexpr int Margin = 1; // pixels: the frame
    QPixmap pixmap(DragSize, DragSize);
    const QPixmap tile = checkerTile(DragSquare, Qt::lightGray, Qt::darkGray, shownColor());
    QPainter painter(&pixmap);
    const QRect ring = pixmap.rect().adjusted(Margin, Margin, -Margin, -Margin);
    painter.setBrushOrigin(checkerOrigin(ring.size(), DragSquare, Margin));
    painter.fillRect(ring, QBrush(tile));
    painter.fillRect(ring.width() / 4 + Margin, ring.height() / 4 + Margin, ring.width() / 2,
                     ring.height() / 2, QColor(shownColor().rgb()));
    painter.drawRect(pixmap.rect().adjusted(0, 0, -1, -1));
    painter.end();
    return pixmap;
}

void QtColorButtonPrivate::slotEditColor()
{
    const QPointer<QtColorButton> button(q_ptr);
    const QColor newColor =
        QColorDialog::getColor(m_color, q_ptr, QString(), QColorDialog::ShowAlphaChannel);
    if (!button || !newColor.isValid() || newColor == button->color()) {
        return;
    }
    button->setColor(newColor);
    emit button->colorChanged(m_color);
}

QtColorButton::QtColorButton(QWidget *parent)
    : QToolButton(parent)
    , d_ptr(new QtColorButtonPrivate(this))
{
    setAcceptDrops(true);
    connect(this, SIGNAL(clicked()), SLOT(slotEditColor()));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QtColorButton::~QtColorButton()
{
    // An open dialog stands on the stack of slotEditColor() and must not die as a child does.
    // Losing its parent closes it.
    const auto dialogs = findChildren<QColorDialog *>(QString(), Qt::FindDirectChildrenOnly);
    for (QColorDialog *dialog : dialogs) {
        dialog->setParent(nullptr, dialog->windowFlags());
    }
    delete d_ptr;
}

QColor QtColorButton::color() const
{
    return d_ptr->m_color;
}

void QtColorButton::setColor(const QColor &color)
{
    if (d_ptr->m_color == color) {
        return;
    }
    d_ptr->m_color = color;
    update();
}

bool QtColorButton::isBackgroundCheckered() const
{
    return d_ptr->m_backgroundCheckered;
}

void QtColorButton::setBackgroundCheckered(bool checkered)
{
    if (d_ptr->m_backgroundCheckered == checkered) {
        return;
    }
    d_ptr->m_backgroundCheckered = checkered;
    update();
}

void QtColorButton::slotEditColor()
{
    d_ptr->slotEditColor();
}

void QtColorButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        d_ptr->m_dragStart = event->pos();
    }
    QToolButton::mousePressEvent(event);
}

void QtColorButton::mouseMoveEvent(QMouseEvent *event)
{
    const int distance = (d_ptr->m_dragStart - event->pos()).manhattanLength();
    if (!event->buttons().testFlag(Qt::LeftButton) ||
        distance <= QApplication::startDragDistance()) {
        QToolButton::mouseMoveEvent(event);
        return;
    }
    event->accept();
    startDrag();
}

void QtColorButton::startDrag()
{
    auto *mime = new QMimeData;
    mime->setColorData(color());
    auto *drag = new QDrag(this); // takes the mime data and dies by itself
    drag->setMimeData(mime);
    drag->setPixmap(d_ptr->generatePixmap());
    setDown(false); // No click is to follow.
    drag->exec(Qt::CopyAction);
}

void QtColorButton::dragEnterEvent(QDragEnterEvent *event)
{
    const QMimeData *mime = event->mimeData();
    if (!mime->hasColor()) {
        return;
    }
    event->accept();
    d_ptr->m_dragColor = mime->colorData().value<QColor>();
    d_ptr->m_dragging = true;
    update();
}

void QtColorButton::dragLeaveEvent(QDragLeaveEvent *event)
{
    event->accept();
    d_ptr->m_dragging = false;
    update();
}

void QtColorButton::dropEvent(QDropEvent *event)
{
    event->accept();
    d_ptr->m_dragging = false;
    if (d_ptr->m_dragColor == color()) {
        return;
    }
    setColor(d_ptr->m_dragColor);
    emit colorChanged(color());
}

void QtColorButton::paintEvent(QPaintEvent *event)
{
    QToolButton::paintEvent(event);
    if (!isEnabled()) {
        return;
    }
    const QColor shown = d_ptr->shownColor();
    const QBrush brush = d_ptr->m_backgroundCheckered
                             ? QBrush(checkerTile(ButtonSquare, Qt::white, Qt::black, shown))
                             : QBrush(shown, Qt::SolidPattern);
    const QRect area = rect().adjusted(ColorMargin, ColorMargin, -ColorMargin, -ColorMargin);
    QPainter painter(this);
    painter.setBrushOrigin(checkerOrigin(area.size(), ButtonSquare, ColorMargin));
    painter.fillRect(area, brush);
    painter.setPen(QColor(0, 0, 0, InnerFrameAlpha));
    painter.drawRect(area.adjusted(1, 1, -2, -2));
    painter.setPen(QColor(0, 0, 0, OuterFrameAlpha));
    painter.drawRect(area.adjusted(0, 0, -1, -1));
}
