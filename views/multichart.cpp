#include "views/multichart.h"

#include "editors/seriesdelegate.h"
#include "model/abstractchartmodel.h"
#include "ui_multichart.h"
#include "views/chartwidget.h"

#include <QHeaderView>
#include <QMessageBox>
#include <QToolBar>
#include <QTreeView>
#include <QVector>

#include <algorithm>
#include <numeric>

namespace {

/// Tab goes from pane to pane from top to bottom, whatever the order they were made in.
void chainFocus(const QList<ChartWidget *> &charts)
{
    for (int i = 1; i < charts.size(); ++i) {
        if (charts.at(i - 1) && charts.at(i)) {
            QWidget::setTabOrder(charts.at(i - 1), charts.at(i));
        }
    }
}

} // namespace

MultiChart::MultiChart(QWidget *parent)
    : QSplitter(parent)
    , ui(new Ui_MultiChart)
    , m_toolBar(new QToolBar)
{
    ui->setupUi(this);
    QTreeView *legend = ui->legendView;
    m_livingLegend = legend;
    legend->header()->setSectionsMovable(false);
    legend->setContextMenuPolicy(Qt::CustomContextMenu);
    legend->setDragEnabled(true);
    legend->setItemDelegate(new SeriesDelegate(this));
    legend->setEditTriggers(QAbstractItemView::AllEditTriggers);
    legend->setAccessibleName(tr("Legend"));

    m_toolBar->setObjectName(QStringLiteral("chartToolBar"));
    m_toolBar->setWindowTitle(tr("Chart toolbar"));
    m_toolBar->setAccessibleName(m_toolBar->windowTitle());
    connect(this, SIGNAL(splitterMoved(int, int)), SLOT(slotSplitterMoved()));
}

MultiChart::~MultiChart()
{
    // A question of the model that is open over this very widget stands on the stack and must not
    // die as a child does. Losing its parent closes it.
    const auto boxes = findChildren<QMessageBox *>(QString(), Qt::FindDirectChildrenOnly);
    for (QMessageBox *box : boxes) {
        if (box->isVisible()) {
            box->setParent(nullptr, box->windowFlags());
        }
    }
    delete ui;
}

QTreeView *MultiChart::legendView() const
{
    return ui->legendView;
}

void MultiChart::setModel(AbstractChartModel *model)
{
    if (!model) {
        return;
    }
    m_model = model;
    ChartSettings &settings = m_model->m_settings;
    settings.loadSettings(objectName());
    if (!settings.legendState.isEmpty()) {
        ui->legendView->header()->restoreState(settings.legendState);
    }
    m_splitterStates = settings.splitterState;
    m_model->configureActions();
    m_toolBar->addActions(m_model->m_actions);
    ui->legendView->setModel(m_model);
    m_model->QObject::setParent(ui->legendView);
    slotChartCountChanged();
    connectModel();
}

void MultiChart::connectModel()
{
    QTreeView *legend = ui->legendView;
    if (QItemSelectionModel *selection = legend->selectionModel()) {
        connect(selection, SIGNAL(selectionChanged(QItemSelection, QItemSelection)), m_model,
                SLOT(slotSelectionChanged(QItemSelection, QItemSelection)));
        connect(m_model, SIGNAL(select(QModelIndex, QItemSelectionModel::SelectionFlags)),
                selection, SLOT(setCurrentIndex(QModelIndex, QItemSelectionModel::SelectionFlags)));
    }
    connect(legend, SIGNAL(customContextMenuRequested(QPoint)), m_model,
            SLOT(slotContextMenuRequested(QPoint)));
    connect(m_model, SIGNAL(chartCountChanged()), SLOT(slotChartCountChanged()));
    connect(m_model, SIGNAL(savePosition()), SLOT(slotSavePosition()));
    connect(m_model, SIGNAL(adjustSize()), SLOT(slotAdjustSize()));
    connect(m_model, SIGNAL(resizeColumnsToContents()), SLOT(slotResizeColumnsToContents()));
    connect(m_model, SIGNAL(destroyed()), SLOT(slotModelDestroyed()));
}

void MultiChart::slotModelDestroyed()
{
    m_model = nullptr;
    // Else the legend goes on selecting in what is gone, which Qt logs. A dying one takes the model
    // along, and is no tree view any more then.
    if (auto *legend = qobject_cast<QTreeView *>(m_livingLegend.data())) {
        legend->setModel(nullptr);
    }
}

void MultiChart::slotSaveSettings()
{
    saveSettings();
}

void MultiChart::saveSettings()
{
    if (!m_model) {
        return;
    }
    ChartSettings &settings = m_model->m_settings;
    settings.legendState = ui->legendView->header()->saveState();
    m_splitterStates[m_model->m_charts.size()] = saveState();
    settings.splitterState = m_splitterStates;
    settings.saveSettings(objectName());
}

// Panes that the model has deleted have left the splitter by themselves.
void MultiChart::slotChartCountChanged()
{
    if (!m_model) {
        return;
    }
    const QList<ChartWidget *> charts = m_model->m_charts;
    for (int i = 0; i < charts.size(); ++i) {
        if (charts.at(i) && indexOf(charts.at(i)) < 0) {
            insertWidget(i, charts.at(i));
        }
    }
    chainFocus(charts);
    if (!m_splitterStates.contains(charts.size())) {
        slotAdjustSize();
        return;
    }
    restoreState(m_splitterStates.value(charts.size()));
    if (showsLegendOnly()) {
        // The layout of a widget that was never shown. slotAdjustSize() shares out no more than the
        // panes have, so all get some room first.
        setSizes(QVector<int>(count(), height() / count()).toList());
        slotAdjustSize();
    }
    updateCharts();
}

bool MultiChart::showsLegendOnly() const
{
    const QList<int> heights = sizes();
    return heights.last() > 0 && std::count(heights.cbegin(), heights.cend(), 0) == count() - 1;
}

void MultiChart::slotSavePosition()
{
    if (!isVisible() || !m_model) {
        return; // The sizes of a hidden splitter are of no value.
    }
    m_splitterStates[m_model->m_charts.size()] = saveState();
}

void MultiChart::slotAdjustSize()
{
    QList<int> heights = sizes();
    if (heights.size() <= 1) {
        return;
    }
    const int legendHeight = heights.last();
    if (legendHeight == 0) {
        return; // A collapsed legend says that nothing is to be laid out.
    }
    heights.removeLast();
    adjustSizes(heights);
    heights.append(legendHeight);
    setSizes(heights);
    updateCharts();
}

void MultiChart::adjustSizes(QList<int> &sizes)
{
    if (sizes.isEmpty()) {
        return;
    }
    int total = std::accumulate(sizes.cbegin(), sizes.cend(), 0);
    if (m_model) {
        for (ChartWidget *chart : qAsConst(m_model->m_charts)) {
            const int i = chart ? indexOf(chart) : -1;
            if (i < 0 || i >= sizes.size()) {
                continue;
            }
            sizes[i] = chart->topSpace() + chart->bottomSpace();
            total -= sizes.at(i);
        }
    }
    const int share = total / sizes.size();
    for (int &size : sizes) {
        size += share;
    }
}

void MultiChart::slotResizeColumnsToContents()
{
    if (!m_model) {
        return;
    }
    for (int i = 0; i < m_model->columnCount(); ++i) {
        ui->legendView->resizeColumnToContents(i);
    }
}

void MultiChart::slotSplitterMoved()
{
    updateCharts();
}

void MultiChart::resizeEvent(QResizeEvent *event)
{
    QSplitter::resizeEvent(event);
    updateCharts();
}

/// Points are pixels of the panes' size.
void MultiChart::updateCharts()
{
    if (m_model) {
        m_model->updateCharts();
    }
}
