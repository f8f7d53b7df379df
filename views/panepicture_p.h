#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QStringList>
#include <QTransform>
#include <QVector>

#include <optional>
#include <vector>

class QPainter;

/// All that the curve of one visible series depends on.
struct CurveLook
{
    std::optional<quint64> stamp; ///< Of its points; none if nobody knows whose they are.
    QColor color;
    int lineWidth = 0;
    bool pointsVisible = false;
    qint64 symbol = 0; ///< QImage::cacheKey() of the symbol.
};

/// All that the inside of a frame shows: background, grid and curves.
///
/// The values of the grid are copies, here and below: a QVector would share its memory with that of
/// the axis, to which a feeder writes as soon as the lock is free.
struct PaneLook
{
    QSize device;  ///< Size of what is painted to.
    QPoint origin; ///< Of the pane, there.
    QRect frame;   ///< In pane pixels; without its right and lower line, which follow.
    QColor background;
    QColor grid;
    QTransform matrix; ///< Carries the grid values to the pane.
    std::vector<double> gridX;
    std::vector<double> gridY;
    QVector<CurveLook> curves; ///< From the lowest to the topmost.
};

/// All that the labels and titles around a frame show, but for what repaints the whole pane when it
/// changes: font, palette and time zone.
struct MarginLook
{
    QRect frame;
    QColor grid; ///< Lines that belong to another size may stand beside the frame.
    QTransform matrix;
    std::vector<double> gridX;
    std::vector<double> gridY;
    double stepX = 0.0;
    bool isDateTime = false;
    bool showsLabelsX = false;
    QColor colorY;
    QStringList texts; ///< Titles and labels, but for those of the X axis.
};

/// @{
/// Whether the one is sure to show what the other does: never with a NaN or an unknown curve.
bool operator==(const PaneLook &a, const PaneLook &b);
bool operator==(const MarginLook &a, const MarginLook &b);
/// @}

/**
 * The inside of a pane's frame as it was last painted, so that a cursor that moves or a window that
 * goes away costs no curve.
 *
 * It has the size and the coordinates of the device, for Qt cuts a line off at the edges of those,
 * and not of the frame, before it rounds. What lies outside of the frame is never written, so that
 * the system gives it no memory. Invariant: the picture shows the look that it was given with
 * keep(), or none. It also remembers what was painted around the frame, which it does not keep. GUI
 * thread only.
 */
class PanePicture
{
public:
    /// Takes note that \p look is wanted on the screen. Returns whether to keep a picture of it: if
    /// it, or the look before, has been wanted more than once. One that is wanted once only, as
    /// when new samples come all the time and no cursor moves, is sooner painted where it belongs.
    bool isWorthwhile(const PaneLook &look);

    /// Whether the picture that is kept shows \p look.
    bool shows(const PaneLook &look) const;

    /// The image to paint \p look into, with any former contents. Nothing is kept until keep().
    QImage &canvas(const PaneLook &look);

    /// Says that the canvas shows \p look now.
    void keep(const PaneLook &look) { m_look = look; }

    /// Puts what is kept, of this look, where it belongs.
    void draw(QPainter &painter, const PaneLook &look) const;

    /// Says that the margins around the frame show \p look now, or an unknown one.
    void setMargins(const std::optional<MarginLook> &look) { m_margins = look; }

    /// Whether the margins on the screen are known to show \p look.
    bool hasMargins(const std::optional<MarginLook> &look) const;

    /// Frees the memory.
    void clear();

private:
    QImage m_canvas;
    std::optional<PaneLook> m_look;   ///< Of the canvas.
    std::optional<PaneLook> m_wanted; ///< The last one.
    bool m_isWantedAgain = false;     ///< m_wanted, after the first time.
    bool m_wasWantedAgain = false;    ///< The one before.
    std::optional<MarginLook> m_margins;
};
