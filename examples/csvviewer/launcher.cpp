#include "launcher.h"

#include "common/commandline.h"
#include "common/screenshot.h"

#include <QCoreApplication>
#include <QTextStream>

Launcher::Launcher(const LaunchOptions &options)
    : m_options(options)
    , m_window(options.paneMode)
{
    connect(&m_window, SIGNAL(opened()), SLOT(slotOpened()));
    connect(&m_window, SIGNAL(failed(QString)), SLOT(slotFailed(QString)));
    connect(&m_window, SIGNAL(cancelled()), SLOT(slotCancelled()));
    if (!m_options.screenshot.isEmpty()) {
        m_window.setDialogsShown(false);
    }
}

void Launcher::launch()
{
    if (m_options.fileName.isEmpty()) {
        showWindow();
        return;
    }
    m_window.openFile(m_options.fileName);
}

void Launcher::slotOpened()
{
    if (m_options.screenshot.isEmpty()) {
        showWindow();
        return;
    }
    connect(&m_window, SIGNAL(chartsReady()), SLOT(slotChartsReady()));
    m_window.resize(m_options.size.value_or(DefaultWindowSize));
    showOffScreen(m_window);
}

void Launcher::showWindow()
{
    m_window.restoreLayout(DefaultWindowSize);
    if (m_options.size) {
        m_window.resize(*m_options.size);
    }
    m_window.show();
}

void Launcher::slotFailed(const QString &message)
{
    fail(message);
}

void Launcher::slotCancelled()
{
    showWindow();
}

void Launcher::slotChartsReady()
{
    QString problem;
    if (!writeScreenshot(m_window, m_options.screenshot, &problem)) {
        fail(problem);
        return;
    }
    QCoreApplication::quit();
}

void Launcher::fail(const QString &message)
{
    QTextStream(stderr) << message << '\n';
    QCoreApplication::exit(ExitFailure);
}
