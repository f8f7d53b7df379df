#pragma once

#include "quarvchart_export.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPointer>
#include <QSplitter>

class AbstractChartModel;
class QResizeEvent;
class QToolBar;
class QTreeView;
class Ui_MultiChart;

/**
 * The one widget that an application places: the panes of a model, from top to bottom, above its
 * legend.
 *
 * The order of use is: make the widget, give it an object name if the program has several (the name
 * chooses where the settings are kept), setModel(), change the model's settings if need be and call
 * its applyChartSettings(), add series; at the end saveSettings(). The toolbar is made here and
 * placed by the application.
 *
 * The legend is always the last widget of the splitter. Panes come and go with the model; their
 * heights are kept for each number of panes, and shared out so that all plots are equally high
 * where none are kept. GUI thread only.
 */
class QUARVCHART_EXPORT MultiChart : public QSplitter
{
    Q_OBJECT

public:
    /// A legend without a model, and a toolbar without actions.
    explicit MultiChart(QWidget *parent = nullptr);

    /// Takes the model along, if it still lives, but not the toolbar.
    ~MultiChart() override;

    /**
     * Shows \p model, loads its settings and takes it over: the model dies with the legend view.
     *
     * Null is ignored. To be called once: a second model is not provided for. If the model dies
     * first, its panes stay as empty frames and the widget does nothing any more.
     */
    void setModel(AbstractChartModel *model);

    QTreeView *legendView() const; ///< Child of this widget.

    /// The model's actions, once there is a model. Without a parent, and never deleted here:
    /// whoever places it owns it, as QMainWindow::addToolBar() does.
    QToolBar *toolBar() const { return m_toolBar; }

    /// Puts the widths of the legend's columns and the heights of the panes into the model's
    /// settings, and stores them. Does nothing without a model.
    void saveSettings();

    /**
     * Shares the sum of \p sizes out so that the plots of all panes are equally high.
     *
     * \p sizes are heights in pixels by index in the splitter, without the legend's. An entry for
     * which there is no pane gets its share on top of what it has. The remainder of the division is
     * dropped. Entries may become negative if there is not enough room for the margins.
     */
    void adjustSizes(QList<int> &sizes);

    Ui_MultiChart *ui;                      ///< The form; owned.
    AbstractChartModel *m_model = nullptr;  ///< The legend view's child; null once it has died.
    QToolBar *m_toolBar;                    ///< Not owned.
    QMap<int, QByteArray> m_splitterStates; ///< QSplitter::saveState() by number of panes.

public slots:
    void slotSaveSettings();      ///< saveSettings(), for a signal of the application's.
    void slotChartCountChanged(); ///< Takes new panes in.
    void slotSavePosition();      ///< Keeps the present heights, unless they are not visible.
    void slotAdjustSize();        ///< Makes the plots equally high; the legend keeps its height.
    void slotSplitterMoved();     ///< Redraws: the panes have other heights.
    void slotResizeColumnsToContents(); ///< Fits the legend's columns to their contents.

protected:
    void resizeEvent(QResizeEvent *event) override; ///< Redraws.

private slots:
    void slotModelDestroyed();

private:
    void connectModel();
    bool showsLegendOnly() const;
    void updateCharts();

    QPointer<QWidget> m_livingLegend; ///< The legend view, which may die before the model.
};
