#pragma once

#include "csvtable.h"

#include "common/chartwindow.h"

#include <QPointer>
#include <QString>

#include <memory>

class CsvLoader;
class QAction;
class QProgressDialog;
class RecentFiles;
class StaticChartModel;

/**
 * A window that shows one CSV file: a pane for each column, stacked over one X axis, or all columns
 * in one pane.
 *
 * Files are read in a thread, under a progress dialog if that takes a while. What was open stays
 * open until the next file has been read without fault. Files are opened by the menu or by dropping
 * them on the window; a file that has grown is read again with the zoom and the style of the curves
 * kept.
 */
class ViewerWindow : public ChartWindow
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

public slots:
    /// Reads the file anew that is open. Does nothing without one.
    void slotReload();

signals:
    void opened();

    /// A file could not be read. Comes in place of a message box while the window is not shown.
    void failed(const QString &message);

    void cancelled();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private slots:
    void slotOpen();
    void slotOpenRecent(const QString &fileName);
    void slotCancel();
    void slotLoaded(const CsvResult &result);
    void slotEnterColumn();

private:
    void createModel();
    void createActions();
    void showProgress();
    void reportError(const QString &message);
    bool fitsSeries() const;
    void replaceSeries();
    void applyPaneMode(int columnCount);
    void finishEntering();

    const PaneMode m_paneMode;
    bool m_dialogsShown = true;
    StaticChartModel *m_model;            ///< The chart's.
    RecentFiles *m_recentFiles;           ///< Child.
    QAction *m_openAction = nullptr;      ///< Disabled while a file is loading.
    QAction *m_reloadAction = nullptr;    ///< Disabled while there is no file to read again.
    CsvLoader *m_loader;                  ///< Child.
    std::shared_ptr<CsvTable> m_incoming; ///< What the model is being given; null at other times.
    size_t m_nextColumn = 0;              ///< The first of its columns that the model has not got.
    QString m_openFile;                   ///< The file that is open; empty for none.
    QString m_loadingFile;                ///< The file that is loading, or was loaded last.
    QPointer<QProgressDialog> m_progress;
};
