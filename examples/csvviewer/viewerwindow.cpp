#include "viewerwindow.h"

#include "csvloader.h"
#include "csvseries.h"

#include "common/panestack.h"
#include "model/staticchartmodel.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QIcon>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTimer>
#include <QUndoStack>

namespace {

constexpr int ProgressDelay = 500;   // milliseconds: a shorter load needs no dialog
constexpr int ProgressMaximum = 100; // percent

} // namespace

ViewerWindow::ViewerWindow(PaneMode paneMode, QWidget *parent)
    : QMainWindow(parent)
    , m_paneMode(paneMode)
    , m_loader(new CsvLoader(this))
{
    setWindowIcon(QIcon(QStringLiteral(":/chart/images/chart.svg")));
    setWindowTitle(QCoreApplication::applicationName());
    createModel();
    createMenus();
    connect(m_loader, SIGNAL(loaded(CsvResult)), SLOT(slotLoaded(CsvResult)));
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
    PaneStack::setColors(settings);
    m_model->applyChartSettings();

    auto *panes = new PaneStack(*m_model);
    connect(panes, SIGNAL(chartsReady()), SIGNAL(chartsReady()));
    setCentralWidget(panes);
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
    m_openAction->setEnabled(!result.table);
    if (result.cancelled) {
        emit cancelled();
        return;
    }
    if (!result.table) {
        reportError(result.error.text(m_fileName));
        return;
    }
    m_incoming = result.table;
    m_nextColumn = 0;
    replaceSeries();
    slotEnterColumn();
}

/// A column for each turn of the event loop: millions of samples take their time, and the window
/// has to stay alive meanwhile.
void ViewerWindow::slotEnterColumn()
{
    if (m_nextColumn < m_incoming->columns.size()) {
        AbstractChartSeries *series = m_model->m_series.at(int(m_nextColumn));
        m_model->addValues(series, m_incoming->columns.at(m_nextColumn).takeSamples());
        ++m_nextColumn;
        QTimer::singleShot(0, this, SLOT(slotEnterColumn()));
        return;
    }
    m_incoming.reset();
    m_openAction->setEnabled(true);
    m_model->updateCharts();
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

void ViewerWindow::replaceSeries()
{
    m_model->removeAllSeries();
    m_model->undoZoom();
    m_model->m_undoStack->clear(); // Its steps lead to axes of the former file.
    m_model->setUseDateTimeScaleX(m_incoming->dateTime);

    QList<AbstractChartSeries *> allSeries;
    for (const CsvColumn &column : m_incoming->columns) {
        allSeries.append(new CsvSeries(column, m_incoming->nameX));
    }
    applyPaneMode(allSeries.size());
    m_model->addSeries(allSeries);
}

void ViewerWindow::applyPaneMode(int columnCount)
{
    const bool separate =
        m_paneMode == AutomaticPanes ? columnCount > 1 : m_paneMode == SeparatePanes;
    QAction *action = separate ? m_model->m_multiModeAction : m_model->m_singleModeAction;
    action->trigger();
}
