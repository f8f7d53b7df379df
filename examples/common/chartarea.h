#pragma once

#include <QList>
#include <QScrollArea>
#include <QTimer>

class AbstractChartModel;
class MultiChart;

/**
 * A MultiChart that stays readable: panes have a least height, more of them than fit scroll, and
 * the legend gets the height of its rows until the user moves a handle.
 */
class ChartArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit ChartArea(QWidget *parent = nullptr);

    /// Hands \p model to the MultiChart, which takes it over. To be called once.
    void setModel(AbstractChartModel *model);

    MultiChart &chart() const { return *m_chart; }

signals:
    /// The curves have been computed for the present size of the panes, and nobody has asked for
    /// more.
    void chartsReady();

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private slots:
    void slotChartCountChanged();
    void slotSeriesCountChanged();
    void slotSplitterMoved();
    void slotPointsFinished();
    void slotFitLegend();

private:
    void softenHighlight();
    int legendHeight() const;

    MultiChart *m_chart;          ///< Child.
    QList<int> m_keptCounts;      ///< Numbers of panes whose heights are kept from earlier.
    QTimer m_fitTimer;            ///< Fits the legend once a change of size is complete.
    bool m_heightsChosen = false; ///< The user has moved a handle: keep the heights.
};
