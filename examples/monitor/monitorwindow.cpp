#include "monitorwindow.h"

#include "common/namedseries.h"
#include "common/panestack.h"
#include "model/dynamicchartmodel.h"

#include <QAction>
#include <QCoreApplication>
#include <QIcon>
#include <QListView>
#include <QPalette>
#include <QSysInfo>
#include <QTimer>
#include <QToolBar>
#include <QUndoStack>
#include <QVBoxLayout>

namespace {

constexpr int LegendRows = 2;    // in which ten names fit into a window of usual width
constexpr int LegendSpacing = 4; // pixels
constexpr QRgb LegendColor = 0xff303030;
constexpr int UpdateInterval = 100; // milliseconds: smooth enough, whatever the pace of the samples

} // namespace

MonitorWindow::MonitorWindow(const std::vector<Quantity> &quantities, double visibleSeconds,
                             bool separate)
    : m_model(new DynamicChartModel(QCoreApplication::organizationName(),
                                    QCoreApplication::applicationName(), this))
{
    setWindowIcon(QIcon(QStringLiteral(":/chart/images/chart.svg")));
    setWindowTitle(
        tr("%1 - %2").arg(QSysInfo::machineHostName(), QCoreApplication::applicationName()));
    createModel(visibleSeconds);
    createToolBar();
    auto *contents = new QWidget;
    auto *layout = new QVBoxLayout(contents);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(newPanes(), 1);
    layout->addWidget(newLegend());
    setCentralWidget(contents);
    if (separate) {
        m_model->m_multiModeAction->trigger();
    }
    createSeries(quantities);

    auto *timer = new QTimer(this);
    connect(timer, SIGNAL(timeout()), SLOT(slotUpdate()));
    timer->start(UpdateInterval);
}

void MonitorWindow::createModel(double visibleSeconds)
{
    m_model->setUseDateTimeScaleX(true);
    ChartSettings &settings = m_model->m_settings;
    settings.dynamicGrid = true; // The view slides, and so it can pause.
    settings.visibleInterval = visibleSeconds;
    settings.individualScale = true; // Percents, MiB and KiB/s have no scale in common.
    settings.autoScaleY = true;
    PaneStack::setColors(settings);
    m_model->applyChartSettings();
}

void MonitorWindow::createToolBar()
{
    m_model->configureActions();
    QToolBar *toolBar = addToolBar(tr("Chart"));
    toolBar->setMovable(false);
    toolBar->setContextMenuPolicy(Qt::PreventContextMenu); // It would offer to hide the toolbar.
    toolBar->addActions(m_model->m_actions);
}

QWidget *MonitorWindow::newPanes()
{
    auto *panes = new PaneStack(*m_model);
    connect(panes, SIGNAL(chartsReady()), SIGNAL(chartsReady()));
    return panes;
}

/// The model is the table of its legend: any view of Qt shows it.
QWidget *MonitorWindow::newLegend()
{
    auto *legend = new QListView;
    legend->setModel(m_model);
    legend->setModelColumn(AbstractChartModel::NameColumn);
    legend->setSelectionBehavior(QAbstractItemView::SelectRows); // The model looks at whole rows.
    legend->setDragEnabled(true);
    legend->setFlow(QListView::LeftToRight);
    legend->setWrapping(true);
    legend->setResizeMode(QListView::Adjust);
    legend->setSpacing(LegendSpacing);
    legend->setFrameShape(QFrame::NoFrame);
    legend->setFixedHeight(LegendRows * (legend->fontMetrics().height() + 3 * LegendSpacing));
    QPalette palette = legend->palette();
    palette.setColor(QPalette::Base, QColor(LegendColor));
    legend->setPalette(palette);

    connect(m_model, SIGNAL(select(QModelIndex, QItemSelectionModel::SelectionFlags)),
            legend->selectionModel(),
            SLOT(select(QModelIndex, QItemSelectionModel::SelectionFlags)));
    connect(legend->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)),
            m_model, SLOT(slotSelectionChanged(QItemSelection, QItemSelection)));
    return legend;
}

void MonitorWindow::createSeries(const std::vector<Quantity> &quantities)
{
    QList<NamedSeries *> percentages;
    for (const Quantity &quantity : quantities) {
        auto *series = new NamedSeries(quantity.name, 'f', quantity.decimals);
        m_series.append(series);
        if (quantity.percentage) {
            percentages.append(series);
        }
    }
    m_model->addSeries(m_series);
    for (NamedSeries *series : qAsConst(percentages)) {
        series->setFixedScale(0.0, 100.0);
    }
    // That was an undo step. The user's own steps begin here; to take back the first of them must
    // not empty the chart.
    m_model->m_undoStack->clear();
}

/// The chart's pace, which is not that of the samples: ages the old ones out and draws the rest.
void MonitorWindow::slotUpdate()
{
    for (AbstractChartSeries *series : qAsConst(m_series)) {
        m_model->removeOldValues(series);
    }
    m_model->update();
}
