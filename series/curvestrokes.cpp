#include "series/curvestrokes_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>
#include <QTransform>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iterator>

namespace {

// Device pixels. Beyond 32767 the raster engine's numbers overflow, and lines are cut before they
// are drawn; this stays well away from it, and no screen is larger.
constexpr int CoordinateLimit = 15000;

// What lines cost for each pixel, in the time of a pixel of an image; but an image has all pixels
// of the runs' box. The engine fills broad lines as if they were polygons.
constexpr int CostOfLine = 8;
constexpr int CostOfBroadLine = 128;

constexpr int RowsAtOnce = 16; // of the image: few enough to stay in the processor's cache
constexpr int LinesAtOnce = 256;
constexpr int CostOfRectangle = 200; // that Qt fills, beside its pixels, in pixels of an image

// These say nothing on lines, nor on images that are not transformed.
constexpr QPainter::RenderHints HarmlessHints(QPainter::TextAntialiasing |
                                              QPainter::SmoothPixmapTransform);

bool isOpaqueLine(const QPen &pen)
{
    return pen.style() == Qt::SolidLine && pen.capStyle() != Qt::FlatCap &&
           pen.brush().style() == Qt::SolidPattern && pen.color().rgba64().isOpaque();
}

/// Whether each pixel of a line just gets the pen's colour.
bool isPlain(const QPainter &painter)
{
    return painter.isActive() && painter.paintEngine()->type() == QPaintEngine::Raster &&
           !(painter.renderHints() & ~HarmlessHints) && painter.opacity() == 1.0 &&
           painter.compositionMode() == QPainter::CompositionMode_SourceOver &&
           isOpaqueLine(painter.pen());
}

bool isWhole(double number)
{
    return number == std::floor(number) && std::abs(number) <= CoordinateLimit;
}

/// Null if the device is no image, or one whose pixels an image without colour would change: by
/// way of another format they lose digits.
const QImage *imageOf(const QPainter &painter)
{
    const QPaintDevice *device = painter.paintEngine()->paintDevice();
    if (!device || device->devType() != QInternal::Image) {
        return nullptr;
    }
    const auto *image = static_cast<const QImage *>(device);
    const bool isExact = image->format() == QImage::Format_RGB32 ||
                         image->format() == QImage::Format_ARGB32_Premultiplied;
    return isExact ? image : nullptr;
}

/// Gives the painter the device's own pixels.
void leaveTransform(QPainter &painter)
{
    const QTransform beyondWorld = painter.deviceTransform().inverted() * painter.worldTransform();
    painter.setWorldTransform(beyondWorld);
}

/// Hands lines to the painter many at a time.
class LineBatch
{
public:
    explicit LineBatch(QPainter &painter)
        : m_painter(painter)
    {
    }
    ~LineBatch() { flush(); }
    Q_DISABLE_COPY_MOVE(LineBatch)

    void add(int x1, int y1, int x2, int y2)
    {
        m_lines[m_count++] = QLineF(x1, y1, x2, y2);
        if (m_count == m_lines.size()) {
            flush();
        }
    }

private:
    void flush()
    {
        m_painter.drawLines(m_lines.data(), int(m_count));
        m_count = 0;
    }

    QPainter &m_painter;
    std::array<QLineF, LinesAtOnce> m_lines;
    std::size_t m_count = 0;
};

} // namespace

/**
 * What the painter's pen leaves of a run: a rectangle of device pixels.
 *
 * That holds for a pen of one pixel, and for one of an even number of them around whole
 * coordinates. The sides of a pen with an odd number run through the centres of pixels, where the
 * direction of the line and the clip decide which ones it fills: such a run is no sum of its parts.
 */
class CurveStrokes::Nib
{
public:
    explicit Nib(const QPainter &painter)
    {
        const QTransform transform = painter.deviceTransform();
        const double scale = transform.m11();
        const double width = painter.pen().widthF() * scale;
        const bool isPure = transform.type() <= QTransform::TxScale && transform.m22() == scale;
        if (!isPure || scale < 1.0 || width < 0.0 || !isWhole(scale) || !isWhole(width) ||
            !isWhole(transform.dx()) || !isWhole(transform.dy())) {
            return;
        }
        m_scale = int(scale);
        m_width = std::max(int(width), 1);
        m_dx = int(transform.dx());
        m_dy = int(transform.dy());
        m_isExact = m_width % 2 == 0 || (m_width == 1 && m_scale == 1);
    }

    /// Whether the rectangles are those that the painter fills, as far out as \p reach.
    bool isExact(qint64 reach) const
    {
        const int offset = std::max(std::abs(m_dx), std::abs(m_dy));
        return m_isExact && reach * m_scale + m_width + offset <= CoordinateLimit;
    }

    /// Whether a segment to the next column fills no pixel outside of the rectangle around its
    /// ends, that is of the nib's rectangle from the upper one to the lower one. A line of one
    /// pixel never does. The ends of a line of two are squares whose corners reach sqrt(2) pixels
    /// out at most, and the next centres lie 1.5 out. Of a line of four, corners that reach a
    /// centre belong to rises between 1 and 2 columns' widths, and rises are whole multiples of
    /// them. Broader lines do reach some.
    bool staysInBox() const { return m_width <= 4; }

    int left(int x) const { return x * m_scale + m_dx - m_width / 2; }
    int top(int y) const { return y * m_scale + m_dy - m_width / 2; }
    int scale() const { return m_scale; }
    int width() const { return m_width; }

private:
    int m_scale = 1;
    int m_width = 1;
    int m_dx = 0;
    int m_dy = 0;
    bool m_isExact = false;
};

/**
 * Draws runs by images of a few rows each, and where many rows are equal, by rectangles.
 *
 * From one row to the next only those columns change in which a run begins or ends; all others are
 * copied. Where broad runs overlap, a pixel stays until the last one has ended.
 */
class CurveStrokes::RowPainter
{
public:
    RowPainter(QPainter &painter, const CurveStrokes &strokes, const Nib &nib, const QRect &area)
        : m_painter(painter)
        , m_nib(nib)
        , m_area(area)
        , m_color(painter.pen().color().rgba())
        , m_top(strokes.m_tops.cbegin())
        , m_topEnd(strokes.m_tops.cend())
        , m_bottom(strokes.m_bottoms.cbegin())
        , m_bottomEnd(strokes.m_bottoms.cend())
        , m_row(std::size_t(area.width()), 0)
        , m_depth(m_row.size(), 0)
        , m_pixels(m_row.size() * RowsAtOnce, 0)
    {
    }

    void paint()
    {
        for (int y = m_area.y(); y < areaEnd();) {
            turnTo(y);
            const int change = nextChange();
            if (isFillable(change - y)) {
                fillRows(y, change);
                y = change;
            } else {
                y = drawRows(y);
            }
        }
    }

private:
    /// A part of a row whose pixels get the colour.
    struct Span
    {
        int left;
        int end;
    };

    int areaEnd() const { return m_area.y() + m_area.height(); }

    /// The next row after the present one that differs from it, or the end of the area.
    int nextChange() const
    {
        int next = areaEnd();
        if (m_top != m_topEnd) {
            next = std::min(next, m_nib.top(m_top->y));
        }
        if (m_bottom != m_bottomEnd) {
            next = std::min(next, m_nib.top(m_bottom->y) + m_nib.width());
        }
        return next;
    }

    /// Whether \p rows rows like the present one are filled by rectangles sooner than drawn by
    /// images. Finds the rectangles' sides.
    bool isFillable(int rows)
    {
        if (rows < RowsAtOnce) {
            return false;
        }
        const auto isFilled = [this](QRgb pixel) { return pixel == m_color; };
        const auto begin = m_row.cbegin();
        m_spans.clear();
        for (auto end = begin; end != m_row.cend();) {
            const auto left = std::find_if(end, m_row.cend(), isFilled);
            end = std::find_if_not(left, m_row.cend(), isFilled);
            if (left != end) {
                m_spans.push_back({int(left - begin), int(end - begin)});
            }
        }
        return qint64(m_spans.size()) * CostOfRectangle <= qint64(rows) * m_area.width();
    }

    void fillRows(int y, int end)
    {
        const QColor color = QColor::fromRgb(m_color);
        for (const Span &span : m_spans) {
            m_painter.fillRect(m_area.x() + span.left, y, span.end - span.left, end - y, color);
        }
    }

    /// Draws the present row and the next ones, as many as an image holds or until rows begin that
    /// are better filled. Returns the row that follows.
    int drawRows(int y)
    {
        const QImage image(reinterpret_cast<const uchar *>(m_pixels.data()), m_area.width(),
                           RowsAtOnce, m_area.width() * int(sizeof(QRgb)),
                           QImage::Format_ARGB32_Premultiplied);
        const int end = std::min(y + RowsAtOnce, areaEnd());
        auto pixels = std::copy(m_row.cbegin(), m_row.cend(), m_pixels.begin());
        int row = y + 1;
        for (; row < end; ++row) {
            const bool isEqual = nextChange() > row;
            turnTo(row);
            if (!isEqual && isFillable(nextChange() - row)) {
                break;
            }
            pixels = std::copy(m_row.cbegin(), m_row.cend(), pixels);
        }
        m_painter.drawImage(QPoint(m_area.x(), y), image, QRect(0, 0, m_area.width(), row - y));
        return row;
    }

    void turnTo(int y)
    {
        for (; m_top != m_topEnd && m_nib.top(m_top->y) <= y; ++m_top) {
            change(m_top->x, 1);
        }
        for (; m_bottom != m_bottomEnd && m_nib.top(m_bottom->y) + m_nib.width() <= y; ++m_bottom) {
            change(m_bottom->x, -1);
        }
    }

    void change(int x, int runs)
    {
        const int left = m_nib.left(x) - m_area.x();
        const int end = std::min(left + m_nib.width(), m_area.width());
        for (int i = std::max(left, 0); i < end; ++i) {
            const auto column = std::size_t(i);
            m_depth[column] += runs;
            m_row[column] = m_depth[column] > 0 ? m_color : 0;
        }
    }

    QPainter &m_painter;
    const Nib &m_nib;
    const QRect m_area; ///< Device pixels.
    const QRgb m_color;
    std::vector<End>::const_iterator m_top; ///< Of the runs that are still to begin.
    const std::vector<End>::const_iterator m_topEnd;
    std::vector<End>::const_iterator m_bottom; ///< Of the runs that are still to end.
    const std::vector<End>::const_iterator m_bottomEnd;
    std::vector<QRgb> m_row;    ///< The present row.
    std::vector<int> m_depth;   ///< How many runs lie on each of its pixels.
    std::vector<QRgb> m_pixels; ///< The last rows, RowsAtOnce of them.
    std::vector<Span> m_spans;  ///< Those of the row that isFillable() has looked at.
};

void CurveStrokes::clear()
{
    m_runs.clear();
    m_segments.clear();
    m_tops.clear();
    m_bottoms.clear();
    m_reach = 0;
    m_length = 0;
}

void CurveStrokes::finish()
{
    m_reach = reach();
    if (m_reach > CoordinateLimit) {
        return; // never to be painted
    }
    joinRuns();
    sortEnds();
    for (Segment &segment : m_segments) {
        segment.isCovered = isCovered(segment);
    }
}

qint64 CurveStrokes::reach() const
{
    qint64 reach = 0;
    const auto include = [&reach](qint64 coordinate) {
        reach = std::max(reach, std::abs(coordinate));
    };
    for (const Run &run : m_runs) {
        include(run.x);
        include(run.top);
        include(run.bottom);
    }
    for (const Segment &segment : m_segments) {
        include(segment.x1);
        include(segment.y1);
        include(segment.x2);
        include(segment.y2);
    }
    return reach;
}

void CurveStrokes::joinRuns()
{
    const auto isBefore = [](const Run &a, const Run &b) {
        return a.x != b.x ? a.x < b.x : a.top < b.top;
    };
    if (!std::is_sorted(m_runs.cbegin(), m_runs.cend(), isBefore)) {
        std::sort(m_runs.begin(), m_runs.end(), isBefore);
    }
    std::size_t count = 0;
    for (const Run &run : m_runs) {
        Run *last = count > 0 ? &m_runs[count - 1] : nullptr;
        if (last && last->x == run.x && run.top <= last->bottom + 1) {
            last->bottom = std::max(last->bottom, run.bottom);
        } else {
            m_runs[count++] = run;
        }
    }
    m_runs.resize(count);
}

void CurveStrokes::sortEnds()
{
    m_tops.reserve(m_runs.size());
    m_bottoms.reserve(m_runs.size());
    for (const Run &run : m_runs) {
        m_tops.push_back({run.top, run.x});
        m_bottoms.push_back({run.bottom, run.x});
        m_length += run.bottom - run.top + 1;
    }
    const auto isAbove = [](const End &a, const End &b) { return a.y < b.y; };
    std::sort(m_tops.begin(), m_tops.end(), isAbove);
    std::sort(m_bottoms.begin(), m_bottoms.end(), isAbove);
}

/// Whether the runs fill the rectangle around the ends of a segment to the next column.
bool CurveStrokes::isCovered(const Segment &segment) const
{
    const auto [top, bottom] = std::minmax(segment.y1, segment.y2);
    return std::abs(segment.x2 - segment.x1) == 1 && covers(segment.x1, top, bottom) &&
           covers(segment.x2, top, bottom);
}

/// Joined runs of one column have gaps between them, so that only one of them can cover the rows:
/// the last that begins at top or above it.
bool CurveStrokes::covers(int x, int top, int bottom) const
{
    const auto next =
        std::upper_bound(m_runs.cbegin(), m_runs.cend(), top, [x](int row, const Run &run) {
            return run.x != x ? x < run.x : row < run.top;
        });
    return next != m_runs.cbegin() && std::prev(next)->x == x && std::prev(next)->bottom >= bottom;
}

bool CurveStrokes::canPaint(const QPainter &painter) const
{
    return isPlain(painter) && Nib(painter).isExact(m_reach);
}

void CurveStrokes::paint(QPainter &painter) const
{
    const Nib nib(painter);
    paintSegments(painter, !nib.staysInBox());
    const QImage *image = imageOf(painter);
    if (image && isDense(nib)) {
        paintRows(painter, nib, image->rect());
    } else {
        paintRuns(painter);
    }
}

void CurveStrokes::paintRows(QPainter &painter, const Nib &nib, const QRect &device) const
{
    const QRect box(QPoint(nib.left(m_runs.front().x), nib.top(m_tops.front().y)),
                    QPoint(nib.left(m_runs.back().x), nib.top(m_bottoms.back().y)));
    painter.save();
    leaveTransform(painter);
    QRect area = box.adjusted(0, 0, nib.width() - 1, nib.width() - 1) & device;
    if (painter.hasClipping()) {
        area &= painter.clipBoundingRect().toAlignedRect();
    }
    if (!area.isEmpty()) {
        RowPainter(painter, *this, nib, area).paint();
    }
    painter.restore();
}

/// Whether the runs fill so much of their box that an image is drawn sooner than lines.
bool CurveStrokes::isDense(const Nib &nib) const
{
    if (m_runs.empty()) {
        return false;
    }
    const qint64 columns = m_runs.back().x - m_runs.front().x + 1;
    const qint64 rows = m_bottoms.back().y - m_tops.front().y + 1;
    const qint64 cost = nib.width() == 1 ? CostOfLine : CostOfBroadLine;
    return columns * rows * nib.scale() <= cost * m_length * nib.width();
}

void CurveStrokes::paintSegments(QPainter &painter, bool withCovered) const
{
    LineBatch batch(painter);
    for (const Segment &segment : m_segments) {
        if (withCovered || !segment.isCovered) {
            batch.add(segment.x1, segment.y1, segment.x2, segment.y2);
        }
    }
}

void CurveStrokes::paintRuns(QPainter &painter) const
{
    LineBatch batch(painter);
    for (const Run &run : m_runs) {
        batch.add(run.x, run.top, run.x, run.bottom);
    }
}

/// A run that is upright like the line crosses it nowhere: QLineF finds a denominator of 0. A
/// segment more than a pixel to the side does not either. With d the distance from its first end,
/// in X, and w its width, QLineF tests 0 <= d / w <= 1; there d / w lies outside by at least
/// 1 / w > 2e-10, which rounding does not bridge.
int CurveStrokes::firstCrossing(const QLineF &line) const
{
    const double x = line.x1();
    for (const Segment &segment : m_segments) {
        const auto [left, right] = std::minmax(segment.x1, segment.x2);
        if (x < left - 1.0 || x > right + 1.0) {
            continue;
        }
        const QLineF own(segment.x1, segment.y1, segment.x2, segment.y2);
        QPointF crossing;
        if (own.intersects(line, &crossing) == QLineF::BoundedIntersection) {
            return segment.index;
        }
    }
    return -1;
}
