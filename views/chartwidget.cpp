#include "views/chartwidget.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/abstractchartmodel.h"
#include "model/axeslocker_p.h"
#include "series/abstractchartseries.h"
#include "views/chartaccessible_p.h"
#include "views/chartcursor.h"
#include "views/cursorvalue.h"
#include "views/panepicture_p.h"

#include <QFontMetrics>
#include <QPaintEngine>
#include <QPainter>
#include <QPaintEvent>
#include <QPalette>
#include <QRubberBand>

#include <algorithm>

namespace {

constexpr int MinimumSideSpace = 30;   // pixels left and right of the frame
constexpr int TitleSpace = 20;         // pixels around the X title: 10 to the frame, 10 to the edge
constexpr double PlotInset = 0.01;     // of the frame's width and height, on each side
constexpr double CursorOverhang = 1.0; // pixels that the cursor line exceeds the plot by
constexpr int CursorPrecision = 1;     // decimals of the time label on top of those of the step

QColor validOr(const QColor &color, const QColor &fallback)
{
    return color.isValid() ? color : fallback;
}

} // namespace

ChartWidget::ChartWidget(AbstractChartModel *model, QWidget *parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
    , m_cursor(new ChartCursor(model))
    , m_rubberBand(new QRubberBand(QRubberBand::Rectangle, this))
    , m_model(model)
    , m_picture(std::make_unique<PanePicture>())
{
    m_rubberBand->setGeometry(QRect());
    m_rubberBand->hide();
    // The cursor line follows the mouse without a button held.
    setAttribute(Qt::WA_MouseTracking);
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    installChartAccessible();
}

ChartWidget::~ChartWidget()
{
    if (m_model) {
        m_model->forgetChart(this);
    }
    delete m_cursor;
}

HorizontalChartAxis *ChartWidget::axisX() const
{
    return m_model ? m_model->m_axisX : nullptr;
}

VerticalChartAxis *ChartWidget::axisY() const
{
    const AbstractChartSeries *selected = selectedSeries();
    return selected ? selected->m_axisY : nullptr;
}

bool ChartWidget::isUpper() const
{
    return m_model && !m_model->m_charts.isEmpty() && m_model->m_charts.first() == this;
}

bool ChartWidget::isLower() const
{
    return m_model && !m_model->m_charts.isEmpty() && m_model->m_charts.last() == this;
}

int ChartWidget::topSpace() const
{
    return sideSpace(isUpper());
}

int ChartWidget::bottomSpace() const
{
    return sideSpace(isLower());
}

// The outer ends of the stack of panes have room for a label of the X axis: the cursor's above, the
// ticks' below.
int ChartWidget::sideSpace(bool isOuter) const
{
    const HorizontalChartAxis *axis = axisX();
    if (!isOuter || !axis) {
        return QFontMetrics(font()).height();
    }
    const AxesLocker locker(m_model);
    return axis->m_size;
}

int ChartWidget::rightSpace() const
{
    if (!m_model) {
        return MinimumSideSpace;
    }
    const AxesLocker locker(m_model);
    const QFontMetrics metrics(font());
    int space = MinimumSideSpace;
    QString measured; // Most series have the same title.
    for (const AbstractChartSeries *series : qAsConst(m_model->m_series)) {
        const QString title = series ? series->labelX() : QString();
        if (title != measured) {
            space = std::max(space, metrics.horizontalAdvance(title) + TitleSpace);
            measured = title;
        }
    }
    return space;
}

int ChartWidget::axisYSize() const
{
    if (!m_model) {
        return 0;
    }
    const AxesLocker locker(m_model);
    int size = 0;
    for (const AbstractChartSeries *series : qAsConst(m_model->m_series)) {
        if (series && series->m_axisY) {
            size = std::max(size, series->m_axisY->m_size);
        }
    }
    return size;
}

QRectF ChartWidget::fullChartRect(QRectF const &rect) const
{
    const QRectF base = rect.isValid() ? rect : QRectF(0.0, 0.0, width(), height());
    const int left = std::max(axisYSize(), MinimumSideSpace);
    const int top = topSpace();
    return QRectF(base.x() + left, base.y() + top, base.width() - left - rightSpace(),
                  base.height() - top - bottomSpace());
}

QRectF ChartWidget::chartRect(QRectF const &rect) const
{
    const QRectF full = rect.isValid() ? rect : fullChartRect(QRectF());
    const double dx = full.width() * PlotInset;
    const double dy = full.height() * PlotInset;
    return QRectF(full.x() + dx, full.y() + dy, full.width() - 2 * dx, full.height() - 2 * dy);
}

QList<AbstractChartSeries *> ChartWidget::seriesList() const
{
    QList<AbstractChartSeries *> list;
    if (!m_model) {
        return list;
    }
    for (AbstractChartSeries *series : qAsConst(m_model->m_series)) {
        if (series && series->m_chart == this) {
            list.append(series);
        }
    }
    return list;
}

bool ChartWidget::isEmpty() const
{
    return seriesList().isEmpty();
}

AbstractChartSeries *ChartWidget::selectedSeries() const
{
    const QList<AbstractChartSeries *> list = seriesList();
    for (AbstractChartSeries *series : list) {
        if (series->m_selected) {
            return series;
        }
    }
    return list.value(0);
}

void ChartWidget::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const QPalette colors = chartPalette();
    if (!paintKept(painter, colors, event->region())) {
        paint(painter, colors, QRectF());
    }
    paintFocus(painter);
}

void ChartWidget::hideEvent(QHideEvent *)
{
    m_picture->clear();
}

// All painting takes its colours from this palette: so the settings reach the axes.
QPalette ChartWidget::chartPalette() const
{
    const QColor background = m_model ? m_model->m_settings.backgroundColor : QColor();
    const QColor grid = m_model ? m_model->m_settings.gridColor : QColor();
    QPalette result = palette();
    result.setBrush(QPalette::All, QPalette::Window,
                    QBrush(validOr(background, ChartSettings::defaultBackgroundColor())));
    result.setBrush(QPalette::All, QPalette::AlternateBase,
                    QBrush(validOr(grid, ChartSettings::defaultGridColor())));
    return result;
}

void ChartWidget::paint(QPainter &painter, QPalette const &palette, QRectF const &rect)
{
    painter.save();
    paintContents(painter, palette, rect);
    painter.restore();
}

void ChartWidget::paintContents(QPainter &painter, const QPalette &palette, const QRectF &target)
{
    const QRectF full = fullChartRect(target);
    if (!full.isValid()) {
        return;
    }
    painter.fillRect(full, palette.brush(QPalette::Current, QPalette::Window).color());

    AbstractChartSeries *selected = selectedSeries();
    const QRectF chart = chartRect(full);
    if (!selected || !selected->m_axisY || !axisX() || !chart.isValid()) {
        return;
    }
    const QTransform transform = deviceTransform(target, chart);
    clipToDevice(painter);
    paintAxes(painter, palette, full, transform, *selected, true);

    painter.setClipRect(frameClip(full), Qt::ReplaceClip);
    const QLineF line = cursorLine(chart);
    QList<CursorValue> values = paintSeries(painter, chart, transform, line, selected);
    paintCursor(painter, palette, full, line, values, *selected);
}

// Axes may draw outside the frame, series may not.
QRectF ChartWidget::frameClip(const QRectF &full)
{
    return QRectF(full.x(), full.y(), full.width() + 1, full.height() + 1);
}

// Without any clip the raster engine sends each pixel of a thin line through the device's own,
// which takes thirty times as long. One that exceeds every device hides nothing and spares it that.
void ChartWidget::clipToDevice(QPainter &painter)
{
    constexpr QRect Everywhere(-100000, -100000, 200000, 200000); // no image exceeds 32767
    const bool isRaster = painter.paintEngine()->type() == QPaintEngine::Raster;
    if (isRaster && !painter.hasClipping() &&
        painter.transform().type() <= QTransform::TxTranslate) {
        painter.setClipRect(Everywhere);
    }
}

// From the pane's pixels, in which the points of the series are computed, to those of the target.
QTransform ChartWidget::deviceTransform(const QRectF &target, const QRectF &chart) const
{
    if (!target.isValid()) {
        return QTransform();
    }
    const QRectF screen = chartRect(QRectF());
    const double sx = chart.width() / screen.width();
    const double sy = chart.height() / screen.height();
    return QTransform(sx, 0.0, 0.0, sy, chart.x() - screen.x() * sx, chart.y() - screen.y() * sy);
}

// A null line if the cursor is hidden.
QLineF ChartWidget::cursorLine(const QRectF &chart) const
{
    if (!m_cursor->m_visible) {
        return QLineF();
    }
    const double x = m_cursor->m_position;
    return QLineF(x, chart.y() - CursorOverhang, x, chart.y() + chart.height() + CursorOverhang);
}

// Both axes use the mapping of the selected series: the grid is that of its scales.
void ChartWidget::paintAxes(QPainter &painter, const QPalette &palette, const QRectF &full,
                            const QTransform &transform, AbstractChartSeries &selected,
                            bool showLabels)
{
    const AxesLocker locker(m_model);
    selected.m_axisY->paint(&selected, painter, full, transform, palette, showLabels);
    axisX()->paint(&selected, painter, full, transform, palette, showLabels && isLower());
}

// The visible series, the selected one on top.
QList<AbstractChartSeries *> ChartWidget::paintOrder(AbstractChartSeries *selected) const
{
    QList<AbstractChartSeries *> list = seriesList();
    list.removeOne(selected);
    list.append(selected);
    const auto hidden = [](const AbstractChartSeries *series) { return !series->m_visible; };
    list.erase(std::remove_if(list.begin(), list.end(), hidden), list.end());
    return list;
}

// Paints the visible series and returns their read-outs at the line. Each waits for its own points,
// so the lock on the axes must not be held here.
QList<CursorValue> ChartWidget::paintSeries(QPainter &painter, const QRectF &chart,
                                            const QTransform &transform, const QLineF &line,
                                            AbstractChartSeries *selected)
{
    // One box that would leave the plot turns the side for all boxes of the pane.
    m_cursor->m_side = ChartCursor::Right;
    QList<CursorValue> values;
    const QList<AbstractChartSeries *> list = paintOrder(selected);
    for (AbstractChartSeries *series : list) {
        series->paint(painter, chart, transform, line, values, m_cursor);
    }
    return values;
}

// The cursor, and at the very end the frame, over the series and the boxes.
void ChartWidget::paintCursor(QPainter &painter, const QPalette &palette, const QRectF &full,
                              const QLineF &line, QList<CursorValue> &values,
                              AbstractChartSeries &selected)
{
    if (!line.isNull()) {
        updateTimeLabel(painter, line, selected);
        std::sort(values.begin(), values.end());
        m_cursor->paint(painter, line, values, full, isUpper(), palette);
    }
    clipToDevice(painter);
    painter.setPen(palette.brush(QPalette::Current, QPalette::AlternateBase).color());
    painter.setBrush(QBrush(Qt::transparent, Qt::SolidPattern));
    painter.drawRect(full);
}

// A position that cannot be mapped keeps the former label.
void ChartWidget::updateTimeLabel(const QPainter &painter, const QLineF &line,
                                  AbstractChartSeries &selected)
{
    bool ok = false;
    const QPointF position = selected.mapInverted(line.p1(), &ok);
    if (!ok) {
        return;
    }
    QString text;
    QRectF box;
    {
        const AxesLocker locker(m_model);
        axisX()->valueTextAndRect(position.x(), painter, text, box, CursorPrecision);
    }
    m_cursor->m_timeText = text;
    m_cursor->m_timeRect = box;
}
