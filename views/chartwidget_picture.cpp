// Painting on the screen, where the inside of the frame is kept as a picture. What is seen is what
// paint() gives, pixel for pixel.

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/abstractchartmodel.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"
#include "series/lockorder_p.h"
#include "views/chartcursor.h"
#include "views/chartwidget.h"
#include "views/cursorvalue.h"
#include "views/panepicture_p.h"

#include <QBackingStore>
#include <QPaintEngine>
#include <QPainter>
#include <QPalette>
#include <QRegion>

#include <typeinfo>

namespace {

constexpr int OpaqueAlpha = 255;

/// Whether the memory painted to keeps each colour as the picture does.
bool hasPictureColors(const QPaintDevice *device)
{
    if (!device || device->devType() != QInternal::Image) {
        return false;
    }
    const QImage::Format format = static_cast<const QImage *>(device)->format();
    return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied;
}

/// Whether what is painted is to be seen, and not a copy of it.
bool isOnScreen(const QPainter &painter, const QWidget &widget)
{
    QBackingStore *store = widget.backingStore();
    return store && painter.paintEngine()->paintDevice() == store->paintDevice();
}

/// Whether the pane's pixels fall on those of the device.
bool isOnPixels(const QTransform &transform)
{
    return transform.type() <= QTransform::TxTranslate &&
           transform.dx() == qRound(transform.dx()) && transform.dy() == qRound(transform.dy());
}

/// Whether a picture that was painted elsewhere looks on this painter as if it had been painted
/// here.
bool takesPictures(const QPainter &painter)
{
    const QPaintEngine *engine = painter.paintEngine();
    return engine->type() == QPaintEngine::Raster && hasPictureColors(engine->paintDevice()) &&
           isOnPixels(painter.deviceTransform()) &&
           painter.renderHints() == QPainter::TextAntialiasing;
}

/// The part of a pane above the foot of \p frame and between its sides, the frame's lines included.
/// Labels and titles stand beside and below it, and Qt cuts off what of a letter leans out of the
/// box of its text.
QRect columnOf(const QRect &frame)
{
    // The right and the lower line of the frame follow the rectangle.
    return frame.adjusted(0, -frame.y(), 1, 1);
}

/// With the lock on the axes held.
std::vector<double> gridOf(const ChartAxis &axis)
{
    return {axis.m_gridValues.cbegin(), axis.m_gridValues.cend()};
}

/// Whether the pane has both axes, and they draw what the axes of this library draw.
bool hasPlainAxes(const ChartWidget &chart)
{
    const HorizontalChartAxis *x = chart.axisX();
    const VerticalChartAxis *y = chart.axisY();
    return x && y && typeid(*x) == typeid(HorizontalChartAxis) &&
           typeid(*y) == typeid(VerticalChartAxis);
}

} // namespace

/// Paints as paint() does, with the inside from the picture where that pays; false if it cannot and
/// has painted nothing.
bool ChartWidget::paintKept(QPainter &painter, const QPalette &palette, const QRegion &exposed)
{
    const QRectF full = fullChartRect(QRectF());
    const QRectF chart = chartRect(full);
    AbstractChartSeries *selected = selectedSeries();
    if (!selected || !full.isValid() || !chart.isValid()) {
        m_picture->clear();
        return false;
    }
    std::optional<PaneLook> look;
    if (isVisible() && hasPlainAxes(*this) && takesPictures(painter)) {
        look = insideLook(painter, palette, full, *selected);
    }
    if (!look) {
        m_picture->setMargins(std::nullopt);
        return false;
    }
    const bool isPicture = m_picture->isWorthwhile(*look);
    if (isPicture && !m_picture->shows(*look)) {
        paintInside(palette, *look, *selected);
    }
    painter.save();
    clipToDevice(painter);
    if (!isPicture) {
        painter.fillRect(full, look->background);
    }
    if (!isPicture || !columnOf(look->frame).contains(exposed.boundingRect())) {
        paintMargins(painter, palette, full, exposed, *selected);
    }
    if (isPicture) {
        m_picture->draw(painter, *look);
    }
    painter.setClipRect(frameClip(full), Qt::ReplaceClip);
    const QLineF line = cursorLine(chart);
    QList<CursorValue> values = isPicture
                                    ? readOuts(chart, line, *selected)
                                    : paintSeries(painter, chart, QTransform(), line, selected);
    paintCursor(painter, palette, full, line, values, *selected);
    painter.restore();
    if (m_cursor->m_timeRect.width() > full.width() && exposed != rect()) {
        update(); // The time label reaches beyond what cursorReach() could know of.
    }
    return true;
}

/// Paints the labels and titles; the grid comes with them.
void ChartWidget::paintMargins(QPainter &painter, const QPalette &palette, const QRectF &full,
                               const QRegion &exposed, AbstractChartSeries &selected)
{
    const AxesLocker locker(m_model); // over both, so that the look is that of what was painted
    paintAxes(painter, palette, full, QTransform(), selected, true);
    if (!isOnScreen(painter, *this)) {
        return;
    }
    const std::optional<MarginLook> look = marginLook(full);
    if (exposed == rect()) {
        m_picture->setMargins(look);
    } else if (!m_picture->hasMargins(look)) {
        m_picture->setMargins(std::nullopt); // One part is new and the rest is not.
    }
}

/// What a move of the cursor line changes: the whole pane, unless what stands in the margins is
/// still right.
QRect ChartWidget::cursorReach() const
{
    const std::optional<MarginLook> look = marginLook(fullChartRect(QRectF()));
    // The time label keeps between the sides of the frame, if it is not wider.
    if (!m_picture->hasMargins(look) || m_cursor->m_timeRect.width() > look->frame.width()) {
        return rect();
    }
    return columnOf(look->frame);
}

/// What the margins around the frame \p full show when they are painted now, if that is known.
std::optional<MarginLook> ChartWidget::marginLook(const QRectF &full) const
{
    const AbstractChartSeries *selected = selectedSeries();
    if (!selected || !hasPlainAxes(*this)) {
        return std::nullopt;
    }
    const AxesLocker locker(m_model);
    MarginLook look;
    look.frame = full.toRect();
    look.grid = m_model->m_settings.gridColor;
    look.matrix = selected->m_matrix;
    look.gridX = gridOf(*axisX());
    look.stepX = axisX()->m_step;
    look.isDateTime = axisX()->m_dateTime;
    look.showsLabelsX = isLower();
    look.texts.append(selected->labelX());
    if (selected->m_visible) {
        look.colorY = selected->m_color;
        look.gridY = gridOf(*selected->m_axisY);
        look.texts.append(selected->labelY());
        for (const double value : look.gridY) {
            look.texts.append(selected->scaleString(value));
        }
    }
    return look;
}

/// Nothing if it is not known when a curve changes, or if what lies under the inside, or under the
/// frame, shows through.
std::optional<PaneLook> ChartWidget::insideLook(const QPainter &painter, const QPalette &palette,
                                                const QRectF &full,
                                                AbstractChartSeries &selected) const
{
    const QPaintDevice *device = painter.paintEngine()->paintDevice();
    const QTransform transform = painter.deviceTransform();
    PaneLook look;
    look.device = QSize(device->width(), device->height());
    look.origin = QPoint(int(transform.dx()), int(transform.dy()));
    look.frame = full.toRect();
    look.background = palette.brush(QPalette::Current, QPalette::Window).color();
    look.grid = palette.brush(QPalette::Current, QPalette::AlternateBase).color();
    if (look.background.alpha() != OpaqueAlpha || look.grid.alpha() != OpaqueAlpha) {
        return std::nullopt;
    }
    look.matrix = selected.m_matrix;
    readGrid(look, selected);
    const QList<AbstractChartSeries *> list = paintOrder(&selected);
    for (AbstractChartSeries *series : list) {
        const PointsLocker locker(&series->m_pointsMutex);
        const std::optional<quint64> stamp = series->curveStamp();
        if (!stamp) {
            return std::nullopt;
        }
        look.curves.append({stamp, series->m_color, series->m_lineWidth, series->m_pointsVisible,
                            series->m_pointImage.cacheKey()});
    }
    return look;
}

void ChartWidget::readGrid(PaneLook &look, const AbstractChartSeries &selected) const
{
    const AxesLocker locker(m_model);
    look.gridX = gridOf(*axisX());
    look.gridY = selected.m_visible ? gridOf(*selected.m_axisY) : std::vector<double>();
}

/// Paints the picture anew, with the same calls as paint(). A calculation or a feeder that has come
/// in between changes \p look.
void ChartWidget::paintInside(const QPalette &palette, PaneLook &look,
                              AbstractChartSeries &selected)
{
    QPainter painter(&m_picture->canvas(look));
    painter.translate(look.origin);
    painter.setClipRect(frameClip(look.frame));
    painter.fillRect(QRectF(look.frame), look.background);
    {
        const AxesLocker locker(m_model);
        paintAxes(painter, palette, look.frame, QTransform(), selected, false);
        readGrid(look, selected);
    }
    auto curve = look.curves.begin();
    const QList<AbstractChartSeries *> list = paintOrder(&selected);
    for (AbstractChartSeries *series : list) {
        const PointsLocker locker(&series->m_pointsMutex);
        curve++->stamp = series->curveStamp();
        series->paintCurve(painter, QTransform());
    }
    m_picture->keep(look);
}

QList<CursorValue> ChartWidget::readOuts(const QRectF &chart, const QLineF &line,
                                         AbstractChartSeries &selected)
{
    m_cursor->m_side = ChartCursor::Right;
    QList<CursorValue> values;
    const QList<AbstractChartSeries *> list = paintOrder(&selected);
    for (AbstractChartSeries *series : list) {
        const PointsLocker locker(&series->m_pointsMutex);
        series->addReadOut(chart, QTransform(), line, values, m_cursor);
    }
    return values;
}
