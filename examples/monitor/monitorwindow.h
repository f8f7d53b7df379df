#pragma once

#include "quantity.h"

#include "common/chartwindow.h"

#include <QList>

#include <optional>
#include <vector>

class AbstractChartSeries;
class DynamicChartModel;

/**
 * A window with a live chart of the machine.
 *
 * Draws what has come into the model a few times a second; samples enter from elsewhere.
 */
class MonitorWindow : public ChartWindow
{
    Q_OBJECT

public:
    /// As many series as the model holds without the first ones giving way to the next.
    static constexpr int MostSeries = 10;

    /// Width of the live view, in seconds, until the user chooses another.
    static constexpr double DefaultVisibleSeconds = 60.0;

    /// Makes a series for each of the \p quantities, at most MostSeries. \p visibleSeconds is the
    /// width of the live view, in place of the one that is kept; \p separate gives each series a
    /// pane of its own.
    MonitorWindow(const std::vector<Quantity> &quantities, std::optional<double> visibleSeconds,
                  bool separate);

    DynamicChartModel &model() const { return *m_model; }

    /// A series for each quantity, in the same order. They belong to the model, or to its undo
    /// history while the user has removed them.
    const QList<AbstractChartSeries *> &series() const { return m_series; }

    /// Seconds that the live view shows, as set at present.
    double visibleSeconds() const;

private slots:
    void slotUpdate();

private:
    void createModel(std::optional<double> visibleSeconds);
    void createSeries(const std::vector<Quantity> &quantities);

    DynamicChartModel *m_model; ///< The chart's.
    QList<AbstractChartSeries *> m_series;
};
