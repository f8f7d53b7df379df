#include "launcher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QImageWriter>
#include <QTextStream>

namespace {

constexpr int ExitFailure = 1;

} // namespace

Launcher::Launcher(const LaunchOptions &options)
    : m_options(options)
    , m_window(options.paneMode)
{
    m_window.resize(m_options.size);
    connect(&m_window, SIGNAL(opened()), SLOT(slotOpened()));
    connect(&m_window, SIGNAL(failed(QString)), SLOT(slotFailed(QString)));
    connect(&m_window, SIGNAL(cancelled()), SLOT(slotCancelled()));
    if (!m_options.screenshot.isEmpty()) {
        m_window.setDialogsShown(false);
        connect(&m_window, SIGNAL(chartsReady()), SLOT(slotChartsReady()));
    }
}

void Launcher::launch()
{
    if (m_options.fileName.isEmpty()) {
        m_window.show();
        return;
    }
    m_window.openFile(m_options.fileName);
}

void Launcher::slotOpened()
{
    if (m_options.screenshot.isEmpty()) {
        m_window.show();
        return;
    }
    // For a picture the window stays hidden, so that no window manager changes its size. Painting
    // it lays it out first: that gives the panes the size for which the curves are computed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    m_window.grab();
}

void Launcher::slotFailed(const QString &message)
{
    fail(message);
}

void Launcher::slotCancelled()
{
    m_window.show();
}

void Launcher::slotChartsReady()
{
    QString problem;
    if (!writeScreenshot(&problem)) {
        fail(QStringLiteral("%1: %2").arg(m_options.screenshot, problem));
        return;
    }
    QCoreApplication::quit();
}

bool Launcher::writeScreenshot(QString *problem)
{
    QImage image(m_window.size(), QImage::Format_RGB32);
    m_window.render(&image);
    QImageWriter writer(m_options.screenshot, "png");
    const bool written = writer.write(image);
    *problem = writer.errorString();
    return written;
}

void Launcher::fail(const QString &message)
{
    QTextStream(stderr) << message << '\n';
    QCoreApplication::exit(ExitFailure);
}
