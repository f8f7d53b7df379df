#pragma once

#include "feeder.h"
#include "proccounters.h"
#include "quantity.h"
#include "recorder.h"

#include <QObject>
#include <QSize>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class MonitorWindow;

/// What the command line asks for.
struct MonitorOptions
{
    Feeder::Options feeding;
    std::optional<double> visibleSeconds; ///< Width of the live view; without, as last time.
    bool separate = false;                ///< A pane for each quantity.
    std::optional<int> seconds; ///< After these the program ends; without, when its window closes.
    bool shown = true;          ///< The window comes onto the screen.
    QString screenshot;         ///< The picture to write at the end; empty for none.
    QString recording;          ///< The table to write all the time; empty for none.
    std::optional<QSize> size;  ///< Of the window; without, as last time.
    QString procFolder;
};

/**
 * Carries out the command line: window, feeder and recorder, from the start to a clean end.
 *
 * What goes wrong is said on standard error; if it is what the user has asked for, the program ends
 * with ExitFailure.
 */
class Monitor : public QObject
{
    Q_OBJECT

public:
    explicit Monitor(const MonitorOptions &options);

    /// Stops feeding before the window and its model die.
    ~Monitor() override;

    /// Starts everything; returns false, and has said why, if there is nothing to show or no
    /// recording to write. The event loop must run soon after.
    bool start();

public slots:
    /// Ends the program, with its picture if it was to write one.
    void slotEnd();

private slots:
    void slotChartsReady();
    void slotRecordingFailed(const QString &problem);
    void slotSettingsChanged();

private:
    bool findQuantities();
    bool openRecording();
    void showWindow();

    const MonitorOptions m_options;
    ProcCounters m_counters;
    std::vector<Quantity> m_quantities;
    std::unique_ptr<MonitorWindow> m_window;
    Recorder m_recorder;
    std::unique_ptr<Feeder> m_feeder; ///< Last: it uses all that stands above.
    int m_exitCode = 0;
};
