#pragma once

#include "viewerwindow.h"

#include <QObject>
#include <QSize>
#include <QString>

#include <optional>

/// What the command line asks for.
struct LaunchOptions
{
    QString fileName;          ///< Empty: an empty window.
    QString screenshot;        ///< The picture to write; empty: a window on the screen.
    std::optional<QSize> size; ///< Of the window; without, as last time.
    ViewerWindow::PaneMode paneMode = ViewerWindow::AutomaticPanes;
};

/**
 * Carries out the command line: opens the file and shows the window, or writes a picture of it and
 * ends the program. If that fails it says so on standard error and ends the program with 1.
 */
class Launcher : public QObject
{
    Q_OBJECT

public:
    explicit Launcher(const LaunchOptions &options);

    /// The event loop must run soon after.
    void launch();

private slots:
    void slotOpened();
    void slotFailed(const QString &message);
    void slotCancelled();
    void slotChartsReady();

private:
    void showWindow();
    void fail(const QString &message);

    const LaunchOptions m_options;
    ViewerWindow m_window;
};
