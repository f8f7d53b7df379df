#pragma once

#include "settings/chartsettings.h"

#include <QList>
#include <QMainWindow>
#include <QSize>

class AbstractChartModel;
class ChartArea;
class ChartOutput;
class MultiChart;
class QAction;
class QMenu;

/**
 * A main window around a MultiChart, with what a user wants of any chart: the toolbar, menus for
 * export, print and settings, and a memory for the size of the window and the chart's settings.
 */
class ChartWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ChartWindow(QWidget *parent = nullptr);

    MultiChart &chart() const;

    /// Takes the size and the place that the window had when it was last closed, or else \p size if
    /// the screen is as large.
    void restoreLayout(const QSize &size);

    /// Keeps size, place and the chart's settings for the next start. Closing the window does so.
    void saveLayout();

    ChartOutput &output() const { return *m_output; }

signals:
    /// The curves have been computed for the present size of the panes, and nobody has asked for
    /// more.
    void chartsReady();

    /// The user has changed the settings of the chart; they are in effect.
    void settingsChanged();

protected:
    /// Shows \p model with the settings of the last time, or with \p defaults at the very first
    /// one. They are not applied yet. Takes the model over.
    void setModel(AbstractChartModel *model, const ChartSettings &defaults);

    /// Makes the menus; \p fileActions stand first in the first of them. A null stands for a
    /// separator.
    void createMenus(const QList<QAction *> &fileActions);

    void closeEvent(QCloseEvent *event) override;

private slots:
    void slotEditSettings();

private:
    void createEditMenu();
    void createViewMenu();

    ChartArea *m_area;     ///< Child.
    ChartOutput *m_output; ///< Child.
    ChartSettings m_defaults;
};
