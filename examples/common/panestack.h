#pragma once

#include <QScrollArea>

class AbstractChartModel;
class ChartSettings;
class QSplitter;

/**
 * The panes of a model, from top to bottom, with plots of equal height until the user moves them.
 * More panes than fit scroll.
 *
 * Follows the model: takes its new panes in, and has the curves computed anew when a pane gets
 * another size.
 */
class PaneStack : public QScrollArea
{
    Q_OBJECT

public:
    /// \p model is not owned and must live as long as its panes have events.
    explicit PaneStack(AbstractChartModel &model, QWidget *parent = nullptr);

    /// Chooses the colours that suit a stack. They take effect as all settings do.
    static void setColors(ChartSettings &settings);

signals:
    /// The curves have been computed for the present size of the panes, and nobody has asked for
    /// more.
    void chartsReady();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private slots:
    void slotChartCountChanged();
    void slotSeriesCountChanged();
    void slotSplitterMoved();
    void slotPointsFinished();

private:
    void createSplitter();
    void fitPanes();

    AbstractChartModel &m_model;
    QSplitter *m_splitter;
    bool m_heightsChosen = false; ///< The user has moved panes: keep their heights.
};
