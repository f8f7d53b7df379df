#pragma once

#include "csvtable.h"

#include <QMainWindow>
#include <QPointer>
#include <QString>

#include <memory>

class CsvLoader;
class PaneStack;
class QAction;
class QProgressDialog;
class StaticChartModel;

/**
 * A window that shows one CSV file: a pane for each column, stacked over one X axis, or all columns
 * in one pane.
 *
 * Files are read in a thread, under a progress dialog if that takes a while. What was open stays
 * open until the next file has been read without fault.
 */
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    enum PaneMode {
        AutomaticPanes, ///< Separate panes for several columns: their units differ.
        SeparatePanes,
        CombinedPanes
    };

    explicit ViewerWindow(PaneMode paneMode, QWidget *parent = nullptr);

    /// Starts to load a file; one of opened(), failed() and cancelled() follows. Does nothing while
    /// another file is loading.
    void openFile(const QString &fileName);

    /// False keeps progress and errors to the signals, for use without anybody in front of it.
    void setDialogsShown(bool on);

signals:
    void opened();

    /// A file could not be read. Comes in place of a message box while the window is not shown.
    void failed(const QString &message);

    void cancelled();

    /// The curves have been computed for the present size of the panes.
    void chartsReady();

private slots:
    void slotOpen();
    void slotCancel();
    void slotLoaded(const CsvResult &result);
    void slotEnterColumn();

private:
    void createModel();
    void createMenus();
    void showProgress();
    void reportError(const QString &message);
    void replaceSeries();
    void applyPaneMode(int columnCount);

    const PaneMode m_paneMode;
    bool m_dialogsShown = true;
    StaticChartModel *m_model = nullptr;  ///< Child.
    QAction *m_openAction = nullptr;      ///< Disabled while a file is loading.
    CsvLoader *m_loader;                  ///< Child.
    std::shared_ptr<CsvTable> m_incoming; ///< What the model is being given; null at other times.
    size_t m_nextColumn = 0;              ///< The first of its columns that the model has not got.
    QString m_fileName;                   ///< The file that is loading, or else the last one.
    QPointer<QProgressDialog> m_progress;
};
