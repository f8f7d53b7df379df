#pragma once

#include "quarvchart_export.h"

#include <QLineF>
#include <QList>
#include <QPoint>
#include <QRectF>
#include <QString>
#include <QWidget>

#include <memory>
#include <optional>

class AbstractChartModel;
class AbstractChartSeries;
class ChartCursor;
class CursorValue;
class HorizontalChartAxis;
class PanePicture;
class QPainter;
class QPalette;
class QRegion;
class QRubberBand;
class QTransform;
class VerticalChartAxis;
struct MarginLook;
struct PaneLook;

/**
 * One pane: frame, grid, labels, the curves of its series and the cursor.
 *
 * Panes are made by AbstractChartModel::appendChart() and stand in the model's list from top to
 * bottom. A pane keeps no list of series: each series names its pane. All geometry is in pane
 * pixels; the plot, to which the ranges of the axes map, lies 1% inside the frame.
 *
 * May be placed in any layout; a pane that dies leaves its model's list. Takes the focus by Tab and
 * by a click, and then keys move the cursor line, zoom and scroll. Tells assistive technology its
 * series, ranges and cursor, unless the application has set an accessible name or description. GUI
 * thread only.
 */
class QUARVCHART_EXPORT ChartWidget : public QWidget
{
    Q_OBJECT

public:
    /// What the left mouse button does; AbstractChartModel::m_mouseMode holds it.
    enum MouseMode { SelectMode = 0, MoveMode = 1 };

    /// Whether a zoom leaves an undo step; any value but 0 does.
    enum ZoomType { ZoomTransient = 0, ZoomUndoable = 1 };

    /// \p model is not owned and may be null: such a pane is a filled frame.
    explicit ChartWidget(AbstractChartModel *model, QWidget *parent = nullptr,
                         Qt::WindowFlags flags = Qt::WindowFlags());
    ~ChartWidget() override;

    HorizontalChartAxis *axisX() const; ///< The model's; null without a model.
    VerticalChartAxis *axisY() const;   ///< That of selectedSeries(); null if there is none.

    bool isUpper() const; ///< First of the model's panes.
    bool isLower() const; ///< Last of the model's panes.

    int topSpace() const;    ///< Pixels above the frame.
    int bottomSpace() const; ///< Pixels below it.
    int rightSpace() const;  ///< Pixels right of it.
    int axisYSize() const; ///< Widest Y axis of all series of the model; one margin for all panes.

    /// The frame within \p rect, or within the pane if \p rect is empty. Its size may be zero or
    /// negative in a very small pane.
    QRectF fullChartRect(QRectF const &rect) const;

    /// The plot: 1% inside the frame \p rect, or inside the pane's own if \p rect is empty.
    QRectF chartRect(QRectF const &rect) const;

    /// The series of this pane in row order.
    QList<AbstractChartSeries *> seriesList() const;
    bool isEmpty() const; ///< No series names this pane, a hidden one included.

    /// The selected series of this pane, or else its first; null if it has none.
    AbstractChartSeries *selectedSeries() const;

    /**
     * Draws the pane into \p rect of the painter's device, or as on the screen if \p rect is null.
     *
     * Background, grid and labels of the X axis have the roles Window, AlternateBase and WindowText
     * of \p palette. Waits for running calculations of the pane's series. The painter is restored.
     */
    void paint(QPainter &painter, QPalette const &palette, QRectF const &rect);

    /// Shows the cursor at \p pos, in pane pixels, or hides it; repaints only if that shows.
    void changeCursorState(double pos, bool visible);

    /// Sets the mouse cursor of the present mode.
    void restoreCursor();

    ChartCursor *m_cursor;       ///< Owned.
    QRubberBand *m_rubberBand;   ///< Child; visible while the left button drags.
    QPoint m_lastPoint;          ///< Last press, or last step of a drag.
    QString m_commandText;       ///< Name of the last zoom made here, for its undo entry.
    AbstractChartModel *m_model; ///< Not owned; null once the model has died.

signals:
    /// A drop has moved a series here.
    void seriesParentChanged();
    /// \p zoomRect, in pane pixels, is to fill the plot \p chartRect; \p zoomType is a ZoomType.
    void zoomChanged(QRectF const &chartRect, QRectF const &zoomRect, int zoomType);
    /// The mouse or a key has moved the cursor to \p pos, in pane pixels, or has left.
    void cursorStateChanged(double pos, bool visible);
    void beginMove(); ///< A drag of the view begins.
    void endMove();   ///< It has ended.

protected:
    /// @{
    /// What the user does, and what the system asks for.
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

    /**
     * Left and Right move the cursor line by one pixel, with Ctrl by ten; Home and End put it to
     * the ends of the plot; Escape hides it.
     *
     * Plus and minus zoom as the actions of the model do, with Ctrl along X and with Alt along Y.
     * Up, Down, PageUp, PageDown, Shift+Left, Shift+Right, Ctrl+Home and Ctrl+End scroll likewise.
     * Every other key is ignored, and all of them without a model and while the mouse drags.
     */
    void keyPressEvent(QKeyEvent *event) override;

    /// Focus that comes by the keyboard is shown, outside of the frame.
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    /// @}

private:
    bool isInFrame(const QPoint &point) const;
    void startDrag(const QPoint &point);
    bool takesDropOf(AbstractChartSeries *series) const;
    bool moveCursorLine(const QKeyEvent &event);
    bool hideCursorLine(const QKeyEvent &event);
    void sendCursorLine(double position, bool visible);
    bool triggerAction(const QKeyEvent &event);
    void updateFocus();
    void paintFocus(QPainter &painter);
    int sideSpace(bool isOuter) const;
    QPalette chartPalette() const;
    QTransform deviceTransform(const QRectF &target, const QRectF &chart) const;
    static void clipToDevice(QPainter &painter);
    static QRectF frameClip(const QRectF &full);
    QLineF cursorLine(const QRectF &chart) const;
    QList<AbstractChartSeries *> paintOrder(AbstractChartSeries *selected) const;
    void paintContents(QPainter &painter, const QPalette &palette, const QRectF &target);
    void paintAxes(QPainter &painter, const QPalette &palette, const QRectF &full,
                   const QTransform &transform, AbstractChartSeries &selected, bool showLabels);
    QList<CursorValue> paintSeries(QPainter &painter, const QRectF &chart,
                                   const QTransform &transform, const QLineF &line,
                                   AbstractChartSeries *selected);
    void paintCursor(QPainter &painter, const QPalette &palette, const QRectF &full,
                     const QLineF &line, QList<CursorValue> &values, AbstractChartSeries &selected);
    void updateTimeLabel(const QPainter &painter, const QLineF &line,
                         AbstractChartSeries &selected);

    // Painting from the picture that is kept of the frame's inside.
    bool paintKept(QPainter &painter, const QPalette &palette, const QRegion &exposed);
    std::optional<PaneLook> insideLook(const QPainter &painter, const QPalette &palette,
                                       const QRectF &full, AbstractChartSeries &selected) const;
    std::optional<MarginLook> marginLook(const QRectF &full) const;
    void readGrid(PaneLook &look, const AbstractChartSeries &selected) const;
    void paintMargins(QPainter &painter, const QPalette &palette, const QRectF &full,
                      const QRegion &exposed, AbstractChartSeries &selected);
    QRect cursorReach() const;
    void paintInside(const QPalette &palette, PaneLook &look, AbstractChartSeries &selected);
    QList<CursorValue> readOuts(const QRectF &chart, const QLineF &line,
                                AbstractChartSeries &selected);

    std::unique_ptr<PanePicture> m_picture;
    bool m_showsFocus = false; ///< The focus, if it is here, has come by the keyboard.
};
