#include "viewerwindow.h"

#include "csvloader.h"
#include "csvseries.h"

#include "model/staticchartmodel.h"
#include "views/chartwidget.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QIcon>
#include <QMenuBar>
#include <QMessageBox>
#include <QPalette>
#include <QProgressBar>
#include <QProgressDialog>
#include <QScrollArea>
#include <QSplitter>
#include <QUndoStack>

#include <algorithm>
#include <iterator>

namespace {

constexpr int LowestPlot = 40;       // pixels between top and bottom of the frame
constexpr int ProgressDelay = 500;   // milliseconds: a shorter load needs no dialog
constexpr int ProgressMaximum = 100; // percent

// Bright colours, in which labels can be read on the dark margins, and a grid that stays behind the
// curves.
constexpr QRgb MarginColor = 0xff202020;
constexpr QRgb TextColor = 0xffe0e0e0;
constexpr QRgb GridColor = 0xff606060;
constexpr QRgb SeriesColors[SeriesColorCount] = {0xffff6b6b, 0xff5fd75f, 0xff6fa8ff, 0xff45d5d5,
                                                 0xffe884e8, 0xffffb454, 0xffc5a3ff, 0xffd8d860,
                                                 0xffd2a27c, 0xffb8c4d0};

} // namespace

ViewerWindow::ViewerWindow(PaneMode paneMode, QWidget *parent)
    : QMainWindow(parent)
    , m_paneMode(paneMode)
    , m_panes(new QSplitter(Qt::Vertical))
    , m_loader(new CsvLoader(this))
{
    setWindowIcon(QIcon(QStringLiteral(":/chart/images/chart.svg")));
    setWindowTitle(QCoreApplication::applicationName());
    createPanes();
    createModel();
    createMenus();
    connect(m_loader, SIGNAL(loaded(CsvResult)), SLOT(slotLoaded(CsvResult)));
}

void ViewerWindow::createPanes()
{
    QPalette palette = m_panes->palette();
    palette.setColor(QPalette::Window, QColor(MarginColor));
    palette.setColor(QPalette::WindowText, QColor(TextColor));
    m_panes->setPalette(palette);
    m_panes->setAutoFillBackground(true);
    m_panes->setChildrenCollapsible(false);

    // More panes than fit into the window scroll.
    auto *scrollArea = new QScrollArea;
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(m_panes);
    setCentralWidget(scrollArea);
}

void ViewerWindow::createModel()
{
    m_model = new StaticChartModel(QCoreApplication::organizationName(),
                                   QCoreApplication::applicationName(), this);
    // A file is shown with all its columns or not at all. That needs no undo steps, which would
    // also hold ten series at most.
    m_model->m_seriesEditable = false;
    ChartSettings &settings = m_model->m_settings;
    settings.individualScale = true;
    settings.autoScaleY = true;
    settings.gridColor = QColor(GridColor);
    std::copy(std::begin(SeriesColors), std::end(SeriesColors), settings.seriesSettings.colors);
    m_model->applyChartSettings();

    connect(m_model, SIGNAL(chartCountChanged()), SLOT(slotChartCountChanged()));
    connect(m_panes, SIGNAL(splitterMoved(int, int)), SLOT(slotSplitterMoved()));
    m_panes->installEventFilter(this);
    slotChartCountChanged(); // A new model has a pane already.
}

void ViewerWindow::createMenus()
{
    QMenu *fileMenu = menuBar()->addMenu(tr("&File"));
    m_openAction = fileMenu->addAction(tr("&Open..."), this, SLOT(slotOpen()), QKeySequence::Open);
    fileMenu->addSeparator();
    fileMenu->addAction(tr("&Quit"), this, SLOT(close()), QKeySequence::Quit);

    QMenu *viewMenu = menuBar()->addMenu(tr("&View"));
    viewMenu->addAction(m_model->m_singleModeAction);
    viewMenu->addAction(m_model->m_multiModeAction);
    viewMenu->addSeparator();
    viewMenu->addAction(m_model->m_undoZoomAction);
}

void ViewerWindow::setDialogsShown(bool on)
{
    m_dialogsShown = on;
}

void ViewerWindow::openFile(const QString &fileName)
{
    if (!m_openAction->isEnabled()) {
        return;
    }
    m_openAction->setEnabled(false);
    m_fileName = fileName;
    if (m_dialogsShown) {
        showProgress();
    }
    m_loader->load(fileName);
}

void ViewerWindow::showProgress()
{
    m_progress = new QProgressDialog(this);
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setMinimumDuration(ProgressDelay);
    m_progress->setLabelText(tr("Reading %1").arg(QFileInfo(m_fileName).fileName()));
    // The first file is loaded before the window is shown: the end of the dialog must not look like
    // the end of the last window.
    m_progress->setAttribute(Qt::WA_QuitOnClose, false);

    // The progress goes to the bar directly, because the dialog's own setValue() runs the event
    // loop.
    auto *bar = new QProgressBar;
    bar->setMaximum(ProgressMaximum);
    m_progress->setBar(bar);
    connect(m_loader, SIGNAL(progressed(int)), bar, SLOT(setValue(int)));
    connect(m_progress, SIGNAL(canceled()), SLOT(slotCancel()));
}

void ViewerWindow::slotOpen()
{
    const QString fileName =
        QFileDialog::getOpenFileName(this, tr("Open"), QFileInfo(m_fileName).path(),
                                     tr("Tables (*.csv *.tsv *.txt);;All files (*)"));
    if (!fileName.isEmpty()) {
        openFile(fileName);
    }
}

void ViewerWindow::slotCancel()
{
    m_loader->cancel();
}

void ViewerWindow::slotLoaded(const CsvResult &result)
{
    delete m_progress;
    m_openAction->setEnabled(true);
    if (result.cancelled) {
        emit cancelled();
        return;
    }
    if (!result.table) {
        reportError(result.error.text(m_fileName));
        return;
    }
    showTable(*result.table);
    setWindowTitle(
        tr("%1 - %2").arg(QFileInfo(m_fileName).fileName(), QCoreApplication::applicationName()));
    emit opened();
}

void ViewerWindow::reportError(const QString &message)
{
    if (isVisible() && m_dialogsShown) {
        QMessageBox box(QMessageBox::Warning, QCoreApplication::applicationName(), message,
                        QMessageBox::Ok, this);
        box.setTextFormat(Qt::PlainText); // It quotes the file, which may hold anything.
        box.exec();
        return;
    }
    emit failed(message);
}

void ViewerWindow::showTable(CsvTable &table)
{
    m_model->removeAllSeries();
    m_model->undoZoom();
    m_model->m_undoStack->clear(); // Its steps lead to axes of the former file.
    m_model->setUseDateTimeScaleX(table.dateTime);

    QList<AbstractChartSeries *> allSeries;
    for (const CsvColumn &column : table.columns) {
        auto *series = new CsvSeries(column, table.nameX);
        // Queued, so that the model has heard of it first.
        connect(series, SIGNAL(updatePointsFinished()), SLOT(slotPointsFinished()),
                Qt::QueuedConnection);
        allSeries.append(series);
    }
    applyPaneMode(allSeries.size());
    m_model->addSeries(allSeries);
    for (int i = 0; i < allSeries.size(); ++i) {
        m_model->addValues(allSeries.at(i), table.columns.at(size_t(i)).takeSamples());
    }
    m_model->updateCharts();
}

void ViewerWindow::applyPaneMode(int columnCount)
{
    const bool separate =
        m_paneMode == AutomaticPanes ? columnCount > 1 : m_paneMode == SeparatePanes;
    QAction *action = separate ? m_model->m_multiModeAction : m_model->m_singleModeAction;
    action->trigger();
}

/// Brings the splitter in line with the model's panes; those that the model has deleted have left
/// it by themselves.
void ViewerWindow::slotChartCountChanged()
{
    const QList<ChartWidget *> charts = m_model->m_charts;
    for (int i = 0; i < charts.size(); ++i) {
        if (m_panes->widget(i) != charts.at(i)) {
            m_panes->insertWidget(i, charts.at(i));
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

void ViewerWindow::slotSplitterMoved()
{
    m_heightsChosen = true;
}

/// Gives all plots, and not all panes, the same height.
void ViewerWindow::fitPanes()
{
    const QList<ChartWidget *> charts = m_model->m_charts;
    int room = m_panes->height() - (charts.size() - 1) * m_panes->handleWidth();
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
    m_panes->setSizes(heights);
}

void ViewerWindow::slotPointsFinished()
{
    if (!m_model->updatePointsInProgress() && !m_model->m_chartsUpdatePending) {
        emit chartsReady();
    }
}

bool ViewerWindow::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        if (object != m_panes) {
            m_model->updateCharts(); // The points are pixels of the former size.
        } else if (!m_heightsChosen) {
            fitPanes();
        }
    }
    return QMainWindow::eventFilter(object, event);
}
