#include "common/chartpicture.h"

#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"
#include "settings/chartsettings.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QFont>
#include <QFontMetrics>
#include <QPaintDevice>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <iterator>

namespace {

// Pixels of the legend
constexpr QSize SampleSize(40, 16); // of line and symbol, as in the legend on the screen
constexpr int SampleGap = 6;        // between the sample and the name
constexpr int ColumnGap = 16;
constexpr int RowGap = 4;
constexpr int LegendMargin = 8; // on all sides

QColor validOr(const QColor &color, const QColor &fallback)
{
    return color.isValid() ? color : fallback;
}

/// The font of \p widget with as many pixels as on the screen: the painter's device may measure
/// points by another resolution.
QFont fontFor(const QPainter &painter, const QWidget &widget)
{
    QFont font = widget.font();
    if (font.pointSizeF() > 0.0) { // Otherwise its size is in pixels anyway.
        font.setPointSizeF(font.pointSizeF() * widget.logicalDpiY() /
                           painter.device()->logicalDpiY());
    }
    return font;
}

/// The panes that can be seen, from top to bottom.
QList<ChartWidget *> panesOf(const MultiChart &chart)
{
    QList<ChartWidget *> panes;
    if (!chart.m_model) {
        return panes;
    }
    for (ChartWidget *pane : qAsConst(chart.m_model->m_charts)) {
        const bool shown = chart.isAncestorOf(pane) && pane->isVisibleTo(&chart);
        if (shown && !pane->size().isEmpty()) {
            panes.append(pane);
        }
    }
    return panes;
}

int widthOf(const QList<ChartWidget *> &panes)
{
    int width = 0;
    for (const ChartWidget *pane : panes) {
        width = std::max(width, pane->width());
    }
    return width;
}

/// The colours in which the pane paints itself.
QPalette paletteOf(const ChartWidget &pane, const ChartSettings &settings)
{
    QPalette palette = pane.palette();
    palette.setColor(QPalette::Window,
                     validOr(settings.backgroundColor, ChartSettings::defaultBackgroundColor()));
    palette.setColor(QPalette::AlternateBase,
                     validOr(settings.gridColor, ChartSettings::defaultGridColor()));
    return palette;
}

/// Paints at the painter's origin.
void paintPane(QPainter &painter, ChartWidget &pane, const ChartSettings &settings)
{
    painter.save();
    painter.setClipRect(pane.rect());
    painter.setFont(fontFor(painter, pane));
    pane.paint(painter, paletteOf(pane, settings), QRectF());
    painter.restore();
}

QString nameOf(const AbstractChartSeries &series)
{
    return series.name().simplified(); // on one line
}

/// Samples and names of the visible series, row by row in columns of one width.
class Legend
{
public:
    Legend(const MultiChart &chart, int width);

    int height() const; ///< 0 if no series is visible.

    /// Paints at the painter's origin.
    void paint(QPainter &painter) const;

private:
    int widestName() const;
    QRect cellOf(int entry) const;
    void paintEntry(QPainter &painter, AbstractChartSeries &series, const QRect &cell) const;

    QList<AbstractChartSeries *> m_series;
    const QFontMetrics m_metrics;
    QSize m_cell;
    int m_columns = 1;
};

Legend::Legend(const MultiChart &chart, int width)
    : m_metrics(chart.fontMetrics())
{
    std::copy_if(chart.m_model->m_series.cbegin(), chart.m_model->m_series.cend(),
                 std::back_inserter(m_series),
                 [](const AbstractChartSeries *series) { return series->m_visible; });
    const int room = width - 2 * LegendMargin;
    const int wanted = SampleSize.width() + SampleGap + widestName();
    m_cell = QSize(std::min(wanted, room), std::max(SampleSize.height(), m_metrics.height()));
    m_columns = std::max(1, (room + ColumnGap) / (wanted + ColumnGap));
}

int Legend::widestName() const
{
    int widest = 0;
    for (const AbstractChartSeries *series : m_series) {
        widest = std::max(widest, m_metrics.horizontalAdvance(nameOf(*series)));
    }
    return widest + 1; // An advance is rounded, perhaps down.
}

int Legend::height() const
{
    return m_series.isEmpty() ? 0 : cellOf(m_series.size() - 1).bottom() + 1 + LegendMargin;
}

QRect Legend::cellOf(int entry) const
{
    const int column = entry % m_columns;
    const int row = entry / m_columns;
    const QPoint place(LegendMargin + column * (m_cell.width() + ColumnGap),
                       LegendMargin + row * (m_cell.height() + RowGap));
    return QRect(place, m_cell);
}

void Legend::paint(QPainter &painter) const
{
    for (int i = 0; i < m_series.size(); ++i) {
        paintEntry(painter, *m_series.at(i), cellOf(i));
    }
}

void Legend::paintEntry(QPainter &painter, AbstractChartSeries &series, const QRect &cell) const
{
    QRect sample(cell.topLeft(), SampleSize);
    sample.moveTop(cell.y() + (cell.height() - sample.height()) / 2);
    series.paintLogo(&painter, sample);

    const QRect text = cell.adjusted(SampleSize.width() + SampleGap, 0, 0, 0);
    painter.setPen(series.m_color);
    // Not clipped: glyphs of a finer device may be wider by the fraction of a pixel.
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                     m_metrics.elidedText(nameOf(series), Qt::ElideRight, text.width()));
}

} // namespace

ChartPicture::ChartPicture(const MultiChart &chart)
    : m_chart(chart)
{
}

QSize ChartPicture::size() const
{
    const QList<ChartWidget *> panes = panesOf(m_chart);
    if (panes.isEmpty()) {
        return QSize();
    }
    const int width = widthOf(panes);
    int height = Legend(m_chart, width).height();
    for (const ChartWidget *pane : panes) {
        height += pane->height();
    }
    return QSize(width, height);
}

void ChartPicture::paint(QPainter &painter) const
{
    const QList<ChartWidget *> panes = panesOf(m_chart);
    if (panes.isEmpty()) {
        return;
    }
    painter.save();
    painter.fillRect(QRect(QPoint(), size()), m_chart.palette().color(QPalette::Window));
    for (ChartWidget *pane : panes) {
        paintPane(painter, *pane, m_chart.m_model->m_settings);
        painter.translate(0, pane->height());
    }
    painter.setFont(fontFor(painter, m_chart));
    Legend(m_chart, widthOf(panes)).paint(painter);
    painter.restore();
}
