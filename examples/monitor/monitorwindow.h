#pragma once

#include "quantity.h"

#include <QList>
#include <QMainWindow>

#include <vector>

class AbstractChartSeries;
class DynamicChartModel;
class QWidget;

/**
 * A window with a live chart: the model's actions in a toolbar, its panes, and a legend in which
 * curves are hidden, selected and dragged to other panes.
 *
 * Draws what has come into the model a few times a second; samples enter from elsewhere.
 */
class MonitorWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// As many series as the model holds without the first ones giving way to the next.
    static constexpr int MostSeries = 10;

    /// Makes a series for each of the \p quantities, at most MostSeries. \p visibleSeconds is the
    /// width of the live view; \p separate gives each series a pane of its own.
    MonitorWindow(const std::vector<Quantity> &quantities, double visibleSeconds, bool separate);

    DynamicChartModel &model() const { return *m_model; }

    /// A series for each quantity, in the same order. The model's.
    const QList<AbstractChartSeries *> &series() const { return m_series; }

signals:
    /// The curves have been computed for all that had come in.
    void chartsReady();

private slots:
    void slotUpdate();

private:
    void createModel(double visibleSeconds);
    void createSeries(const std::vector<Quantity> &quantities);
    void createToolBar();
    QWidget *newPanes();
    QWidget *newLegend();

    DynamicChartModel *m_model; ///< Child.
    QList<AbstractChartSeries *> m_series;
};
