#include "chartarea.h"

#include "model/abstractchartmodel.h"
#include "series/abstractchartseries.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QEvent>
#include <QHeaderView>
#include <QTreeView>

namespace {

// Pixels between top and bottom of the frame. From 50 on, the hundredth of it that a pane keeps
// between curve and frame makes a pixel, and the frame hides no extreme.
constexpr int LowestPlot = 60;

// Of the text's colour in the highlight: names keep the colour of their series on it.
constexpr double HighlightStrength = 0.2;

constexpr int LargestLegendShare = 3; // a legend takes at most this part of the height: a third

/// A colour that lies between two, \p part of the way from the first.
QColor between(const QColor &first, const QColor &second, double part)
{
    const auto mix = [part](int a, int b) { return qRound(a + part * (b - a)); };
    return QColor(mix(first.red(), second.red()), mix(first.green(), second.green()),
                  mix(first.blue(), second.blue()));
}

} // namespace

ChartArea::ChartArea(QWidget *parent)
    : QScrollArea(parent)
    , m_chart(new MultiChart)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setWidget(m_chart);
    softenHighlight();
    m_chart->installEventFilter(this);
    m_fitTimer.setSingleShot(true);
    connect(&m_fitTimer, SIGNAL(timeout()), SLOT(slotFitLegend()));
    connect(m_chart, SIGNAL(splitterMoved(int, int)), SLOT(slotSplitterMoved()));
}

void ChartArea::softenHighlight()
{
    QPalette palette = m_chart->legendView()->palette();
    palette.setColor(
        QPalette::Highlight,
        between(palette.color(QPalette::Base), palette.color(QPalette::Text), HighlightStrength));
    m_chart->legendView()->setPalette(palette);
}

void ChartArea::setModel(AbstractChartModel *model)
{
    m_chart->setModel(model);
    m_keptCounts = m_chart->m_splitterStates.keys();
    connect(model, SIGNAL(chartCountChanged()), SLOT(slotChartCountChanged()));
    connect(model, SIGNAL(seriesCountChanged()), SLOT(slotSeriesCountChanged()));
    slotChartCountChanged(); // A model has a pane from the start.
}

void ChartArea::slotChartCountChanged()
{
    // First and last pane may be others than before, and those have more around their plot.
    for (ChartWidget *chart : qAsConst(m_chart->m_model->m_charts)) {
        chart->setMinimumHeight(chart->topSpace() + LowestPlot + chart->bottomSpace());
        m_chart->setStretchFactor(m_chart->indexOf(chart), 1); // the legend has 0
    }
    slotFitLegend();
}

void ChartArea::slotSeriesCountChanged()
{
    // Queued, so that the model has heard of it first.
    constexpr auto OnceAndLater = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);
    for (const AbstractChartSeries *series : qAsConst(m_chart->m_model->m_series)) {
        connect(series, SIGNAL(updatePointsFinished()), SLOT(slotPointsFinished()), OnceAndLater);
    }
    slotFitLegend();
}

void ChartArea::slotSplitterMoved()
{
    m_heightsChosen = true;
}

void ChartArea::slotPointsFinished()
{
    const AbstractChartModel *model = m_chart->m_model;
    if (model && !model->updatePointsInProgress() && !model->m_chartsUpdatePending) {
        emit chartsReady();
    }
}

void ChartArea::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    slotFitLegend();
}

bool ChartArea::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_chart && event->type() == QEvent::Resize) {
        m_fitTimer.start(0); // The splitter has not heard of it yet.
    }
    return QScrollArea::eventFilter(object, event);
}

/// Leaves alone what the user has chosen, now or at an earlier time.
void ChartArea::slotFitLegend()
{
    const AbstractChartModel *model = m_chart->m_model;
    if (!isVisible() || m_heightsChosen || !model ||
        m_keptCounts.contains(model->m_charts.size())) {
        return;
    }
    QList<int> heights = m_chart->sizes();
    const int height = legendHeight();
    heights.first() += heights.last() - height;
    heights.last() = height;
    m_chart->setSizes(heights);
    m_chart->slotAdjustSize();
}

int ChartArea::legendHeight() const
{
    const QTreeView *legend = m_chart->legendView();
    const int rows = legend->model()->rowCount() * legend->sizeHintForRow(0);
    const int all = legend->header()->height() + rows + 2 * legend->frameWidth();
    return qBound(legend->minimumSizeHint().height(), all, m_chart->height() / LargestLegendShare);
}
