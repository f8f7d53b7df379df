#include "panestack.h"

#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"
#include "settings/chartsettings.h"
#include "views/chartwidget.h"

#include <QEvent>
#include <QPalette>
#include <QSplitter>

#include <algorithm>
#include <iterator>

namespace {

// Pixels between top and bottom of the frame. From 50 on, the hundredth of it that a pane keeps
// between curve and frame makes a pixel, and the frame hides no extreme.
constexpr int LowestPlot = 60;

// Bright colours, in which labels can be read on the dark margins, and a grid that stays behind the
// curves.
constexpr QRgb MarginColor = 0xff202020;
constexpr QRgb TextColor = 0xffe0e0e0;
constexpr QRgb GridColor = 0xff606060;
constexpr QRgb SeriesColors[SeriesColorCount] = {0xffff6b6b, 0xff5fd75f, 0xff6fa8ff, 0xff45d5d5,
                                                 0xffe884e8, 0xffffb454, 0xffc5a3ff, 0xffd8d860,
                                                 0xffd2a27c, 0xffb8c4d0};

} // namespace

PaneStack::PaneStack(AbstractChartModel &model, QWidget *parent)
    : QScrollArea(parent)
    , m_model(model)
    , m_splitter(new QSplitter(Qt::Vertical))
{
    createSplitter();
    connect(&m_model, SIGNAL(chartCountChanged()), SLOT(slotChartCountChanged()));
    connect(&m_model, SIGNAL(seriesCountChanged()), SLOT(slotSeriesCountChanged()));
    slotChartCountChanged(); // A model has a pane from the start.
}

void PaneStack::createSplitter()
{
    QPalette palette = m_splitter->palette();
    palette.setColor(QPalette::Window, QColor(MarginColor));
    palette.setColor(QPalette::WindowText, QColor(TextColor));
    m_splitter->setPalette(palette);
    m_splitter->setAutoFillBackground(true);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->installEventFilter(this);
    connect(m_splitter, SIGNAL(splitterMoved(int, int)), SLOT(slotSplitterMoved()));

    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setWidget(m_splitter);
}

void PaneStack::setColors(ChartSettings &settings)
{
    settings.gridColor = QColor(GridColor);
    std::copy(std::begin(SeriesColors), std::end(SeriesColors), settings.seriesSettings.colors);
}

/// Brings the splitter in line with the model's panes; those that the model has deleted have left
/// it by themselves.
void PaneStack::slotChartCountChanged()
{
    const QList<ChartWidget *> charts = m_model.m_charts;
    for (int i = 0; i < charts.size(); ++i) {
        if (m_splitter->widget(i) != charts.at(i)) {
            m_splitter->insertWidget(i, charts.at(i));
            charts.at(i)->installEventFilter(this);
        }
    }
    // First and last pane may be others than before, and those have more around their plot.
    for (ChartWidget *chart : charts) {
        chart->setMinimumHeight(chart->topSpace() + LowestPlot + chart->bottomSpace());
    }
    m_heightsChosen = false;
    fitPanes();
}

void PaneStack::slotSeriesCountChanged()
{
    // Queued, so that the model has heard of it first.
    constexpr auto OnceAndLater = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    for (const AbstractChartSeries *series : qAsConst(m_model.m_series)) {
        connect(series, SIGNAL(updatePointsFinished()), SLOT(slotPointsFinished()), OnceAndLater);
    }
}

void PaneStack::slotSplitterMoved()
{
    m_heightsChosen = true;
}

/// Gives all plots, and not all panes, the same height.
void PaneStack::fitPanes()
{
    const QList<ChartWidget *> charts = m_model.m_charts;
    int room = m_splitter->height() - (charts.size() - 1) * m_splitter->handleWidth();
    for (const ChartWidget *chart : charts) {
        room -= chart->topSpace() + chart->bottomSpace();
    }
    QList<int> heights;
    for (int left = charts.size(); left > 0; --left) {
        const ChartWidget *chart = charts.at(heights.size());
        const int plot = qMax(room / left, LowestPlot); // the last ones get the remainder
        room -= plot;
        heights.append(chart->topSpace() + plot + chart->bottomSpace());
    }
    m_splitter->setSizes(heights);
}

void PaneStack::slotPointsFinished()
{
    if (!m_model.updatePointsInProgress() && !m_model.m_chartsUpdatePending) {
        emit chartsReady();
    }
}

bool PaneStack::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        if (object != m_splitter) {
            m_model.updateCharts(); // The points are pixels of the former size.
        } else if (!m_heightsChosen) {
            fitPanes();
        }
    }
    return QScrollArea::eventFilter(object, event);
}
