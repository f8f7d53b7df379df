#include "monitor.h"

#include "monitorwindow.h"

#include "common/commandline.h"
#include "common/screenshot.h"
#include "model/dynamicchartmodel.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>

Monitor::Monitor(const MonitorOptions &options)
    : m_options(options)
    , m_counters(options.procFolder)
{
}

Monitor::~Monitor() = default;

bool Monitor::start()
{
    if (!findQuantities() || !openRecording()) {
        return false;
    }
    m_window =
        std::make_unique<MonitorWindow>(m_quantities, m_options.visibleSeconds, m_options.separate);
    showWindow();
    m_feeder = std::make_unique<Feeder>(m_window->model(), m_window->series(), m_counters,
                                        m_quantities, m_options.feeding,
                                        m_options.recording.isEmpty() ? nullptr : &m_recorder);
    connect(m_feeder.get(), SIGNAL(recordingFailed(QString)), SLOT(slotRecordingFailed(QString)));
    connect(m_window.get(), SIGNAL(settingsChanged()), SLOT(slotSettingsChanged()));
    slotSettingsChanged();
    m_feeder->start();
    if (m_options.seconds) {
        QTimer::singleShot(std::chrono::seconds(*m_options.seconds), this, SLOT(slotEnd()));
    }
    return true;
}

/// Says what the machine does not count, and goes on with the rest.
bool Monitor::findQuantities()
{
    m_quantities = quantitiesOf(m_counters.read(), MonitorWindow::MostSeries);
    for (const QString &problem : m_counters.problems()) {
        failWith(problem);
    }
    if (m_quantities.empty()) {
        failWith(tr("there is nothing to show"));
        return false;
    }
    return true;
}

bool Monitor::openRecording()
{
    if (m_options.recording.isEmpty()) {
        return true;
    }
    std::vector<Recorder::Column> columns;
    for (const Quantity &quantity : m_quantities) {
        columns.push_back({quantity.name, quantity.decimals});
    }
    if (!m_recorder.open(m_options.recording, columns)) {
        failWith(m_recorder.problem());
        return false;
    }
    return true;
}

void Monitor::showWindow()
{
    if (!m_options.shown) {
        m_window->resize(m_options.size.value_or(DefaultWindowSize));
        showOffScreen(*m_window);
        return;
    }
    m_window->restoreLayout(DefaultWindowSize);
    if (m_options.size) {
        m_window->resize(*m_options.size);
    }
    m_window->show();
}

void Monitor::slotEnd()
{
    m_feeder->stop();
    if (m_options.shown) {
        m_window->saveLayout();
    }
    if (m_options.screenshot.isEmpty()) {
        QCoreApplication::exit(m_exitCode);
        return;
    }
    // The picture shows the last sample: it waits for the curves that have it.
    connect(m_window.get(), SIGNAL(chartsReady()), SLOT(slotChartsReady()), Qt::UniqueConnection);
    m_window->model().update();
}

void Monitor::slotChartsReady()
{
    QString problem;
    if (!writeScreenshot(*m_window, m_options.screenshot, &problem)) {
        m_exitCode = failWith(problem);
    }
    QCoreApplication::exit(m_exitCode);
}

void Monitor::slotRecordingFailed(const QString &problem)
{
    m_exitCode = failWith(problem);
}

/// Samples stay for as long as the view can show them.
void Monitor::slotSettingsChanged()
{
    m_feeder->setKeep(std::max(m_options.feeding.keep, m_window->visibleSeconds()));
}
