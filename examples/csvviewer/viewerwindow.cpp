#include "viewerwindow.h"

#include "csvloader.h"
#include "csvseries.h"
#include "recentfiles.h"

#include "axes/horizontalchartaxis.h"
#include "common/chartoutput.h"
#include "common/preferences.h"
#include "model/staticchartmodel.h"

#include <QAction>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTimer>
#include <QUndoStack>
#include <QUrl>

#include <algorithm>

namespace {

constexpr int ProgressDelay = 500;   // milliseconds: a shorter load needs no dialog
constexpr int ProgressMaximum = 100; // percent

/// Empty if there is none.
QString localFileOf(const QMimeData &mimeData)
{
    return mimeData.urls().value(0).toLocalFile();
}

} // namespace

ViewerWindow::ViewerWindow(PaneMode paneMode, QWidget *parent)
    : ChartWindow(parent)
    , m_paneMode(paneMode)
    , m_model(new StaticChartModel(QCoreApplication::organizationName(),
                                   QCoreApplication::applicationName()))
    , m_recentFiles(new RecentFiles(this))
    , m_loader(new CsvLoader(this))
{
    setWindowTitle(QCoreApplication::applicationName());
    setAcceptDrops(true);
    createModel();
    createActions();
    createMenus({m_openAction, m_recentFiles->menu()->menuAction(), m_reloadAction, nullptr});
    connect(m_recentFiles, SIGNAL(chosen(QString)), SLOT(slotOpenRecent(QString)));
    connect(m_loader, SIGNAL(loaded(CsvResult)), SLOT(slotLoaded(CsvResult)));
}

void ViewerWindow::createModel()
{
    // A file is shown with all its columns or not at all. That needs no undo steps, which would
    // also hold ten series at most.
    m_model->m_seriesEditable = false;
    ChartSettings defaults;
    chooseColors(defaults, palette());
    defaults.individualScale = true;
    defaults.autoScaleY = true;
    setModel(m_model, defaults);
    m_model->applyChartSettings();
}

void ViewerWindow::createActions()
{
    m_openAction = new QAction(tr("&Open..."), this);
    m_openAction->setShortcut(QKeySequence::Open);
    connect(m_openAction, SIGNAL(triggered()), SLOT(slotOpen()));
    m_reloadAction = new QAction(tr("Re&load"), this);
    m_reloadAction->setShortcut(QKeySequence::Refresh);
    m_reloadAction->setEnabled(false);
    connect(m_reloadAction, SIGNAL(triggered()), SLOT(slotReload()));
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
    m_reloadAction->setEnabled(false);
    m_loadingFile = fileName;
    if (m_dialogsShown) {
        showProgress();
    }
    m_loader->load(fileName);
}

void ViewerWindow::slotReload()
{
    if (!m_openFile.isEmpty()) {
        openFile(m_openFile);
    }
}

void ViewerWindow::slotOpenRecent(const QString &fileName)
{
    openFile(fileName);
}

/// The first of the files that are dropped.
void ViewerWindow::dropEvent(QDropEvent *event)
{
    const QString fileName = localFileOf(*event->mimeData());
    if (!fileName.isEmpty()) {
        event->acceptProposedAction();
        openFile(fileName);
    }
}

void ViewerWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!localFileOf(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void ViewerWindow::showProgress()
{
    m_progress = new QProgressDialog(this);
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setMinimumDuration(ProgressDelay);
    m_progress->setLabelText(tr("Reading %1").arg(QFileInfo(m_loadingFile).fileName()));
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
        QFileDialog::getOpenFileName(this, tr("Open"), QFileInfo(m_loadingFile).path(),
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
    m_reloadAction->setEnabled(!result.table && !m_openFile.isEmpty());
    if (result.cancelled) {
        emit cancelled();
        return;
    }
    if (!result.table) {
        reportError(result.error.text(m_loadingFile));
        return;
    }
    m_incoming = result.table;
    m_nextColumn = 0;
    if (m_loadingFile != m_openFile || !fitsSeries()) {
        replaceSeries();
    }
    slotEnterColumn();
}

/// A column for each turn of the event loop: millions of samples take their time, and the window
/// has to stay alive meanwhile.
void ViewerWindow::slotEnterColumn()
{
    if (m_nextColumn >= m_incoming->columns.size()) {
        finishEntering();
        return;
    }
    AbstractChartSeries *series = m_model->m_series.at(int(m_nextColumn));
    m_model->clearValues(series); // Read again, it has those of the last time.
    m_model->addValues(series, m_incoming->columns.at(m_nextColumn).takeSamples());
    ++m_nextColumn;
    QTimer::singleShot(0, this, SLOT(slotEnterColumn()));
}

void ViewerWindow::finishEntering()
{
    m_incoming.reset();
    m_openFile = m_loadingFile;
    m_openAction->setEnabled(true);
    m_reloadAction->setEnabled(true);
    m_recentFiles->add(m_openFile);
    const QFileInfo file(m_openFile);
    output().setDocumentName(file.completeBaseName());
    setWindowTitle(tr("%1 - %2").arg(file.fileName(), QCoreApplication::applicationName()));
    m_model->updateCharts();
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

/// Whether the curves that are there are those of the file: then they stay, with their style, their
/// panes and the zoom.
bool ViewerWindow::fitsSeries() const
{
    const QList<AbstractChartSeries *> &all = m_model->m_series;
    if (m_model->m_axisX->m_dateTime != m_incoming->dateTime ||
        size_t(all.size()) != m_incoming->columns.size()) {
        return false;
    }
    return std::equal(all.cbegin(), all.cend(), m_incoming->columns.cbegin(),
                      [this](const AbstractChartSeries *series, const CsvColumn &column) {
                          return static_cast<const CsvSeries *>(series)->fits(column,
                                                                              m_incoming->nameX);
                      });
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
