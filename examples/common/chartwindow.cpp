#include "chartwindow.h"

#include "chartarea.h"
#include "chartoutput.h"
#include "chartsettingsdialog.h"
#include "preferences.h"

#include "model/abstractchartmodel.h"
#include "views/multichart.h"

#include <QAction>
#include <QCloseEvent>
#include <QIcon>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QToolBar>

namespace {

const char GeometryKey[] = "window/geometry";
const char StateKey[] = "window/state";

void fillMenu(QMenu &menu, const QList<QAction *> &actions)
{
    for (QAction *action : actions) {
        if (action) {
            menu.addAction(action);
        } else {
            menu.addSeparator();
        }
    }
}

} // namespace

ChartWindow::ChartWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_area(new ChartArea)
    , m_output(new ChartOutput(m_area->chart(), this))
{
    setWindowIcon(QIcon(QStringLiteral(":/chart/images/chart.svg")));
    setCentralWidget(m_area);
    addToolBar(chart().toolBar());
    connect(m_area, SIGNAL(chartsReady()), SIGNAL(chartsReady()));
}

MultiChart &ChartWindow::chart() const
{
    return m_area->chart();
}

void ChartWindow::setModel(AbstractChartModel *model, const ChartSettings &defaults)
{
    m_defaults = defaults;
    m_area->setModel(model);
    // The chart keeps its colours from the first time on that it keeps anything.
    if (!QSettings().contains(chart().objectName() + QStringLiteral("/backgroundColor"))) {
        copyPreferences(m_defaults, model->m_settings);
    }
}

void ChartWindow::createMenus(const QList<QAction *> &fileActions)
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    fillMenu(*menu, fileActions);
    fillMenu(*menu, m_output->actions());
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, SLOT(close()), QKeySequence::Quit);
    createEditMenu();
    createViewMenu();
}

void ChartWindow::createEditMenu()
{
    const AbstractChartModel &model = *chart().m_model;
    model.m_undoAction->setShortcut(QKeySequence::Undo);
    model.m_redoAction->setShortcut(QKeySequence::Redo);

    QMenu *menu = menuBar()->addMenu(tr("&Edit"));
    fillMenu(*menu, {model.m_undoAction, model.m_redoAction, nullptr});
    menu->addAction(tr("&Settings..."), this, SLOT(slotEditSettings()), QKeySequence::Preferences);
}

void ChartWindow::createViewMenu()
{
    const AbstractChartModel &model = *chart().m_model;
    QMenu *menu = menuBar()->addMenu(tr("&View"));
    fillMenu(*menu,
             {model.m_singleModeAction, model.m_multiModeAction, nullptr, model.m_addChartAction,
              model.m_removeChartAction, model.m_adjustSizeAction, nullptr, model.m_undoZoomAction,
              nullptr, chart().toolBar()->toggleViewAction()});
}

void ChartWindow::slotEditSettings()
{
    ChartSettingsDialog dialog(*chart().m_model, m_defaults, this);
    connect(&dialog, SIGNAL(applied()), SIGNAL(settingsChanged()));
    connect(&dialog, SIGNAL(applied()), &chart(), SLOT(slotSaveSettings()));
    dialog.exec();
}

void ChartWindow::restoreLayout(const QSize &size)
{
    resize(size.boundedTo(screen()->availableSize()));
    const QSettings settings;
    restoreGeometry(settings.value(GeometryKey).toByteArray());
    restoreState(settings.value(StateKey).toByteArray());
}

void ChartWindow::saveLayout()
{
    QSettings settings;
    settings.setValue(GeometryKey, saveGeometry());
    settings.setValue(StateKey, saveState());
    chart().saveSettings();
}

void ChartWindow::closeEvent(QCloseEvent *event)
{
    saveLayout();
    QMainWindow::closeEvent(event);
}
