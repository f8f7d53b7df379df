#pragma once

#include "quarvchart_export.h"
#include "series/chartpoint.h"

#include <QRectF>
#include <QThread>
#include <QVector>

#include <atomic>
#include <memory>

class AbstractChartSeries;
class CurveStrokes;
struct ChartValue;

/**
 * The worker that reduces one series' samples to the pixel points that are painted.
 *
 * Each calculation starts from nothing and covers the whole store. Segments out of sight are left
 * out, and what falls on the pixel of its predecessor is dropped, so the result is bounded by what
 * can be seen. The worker holds the series' m_pointsMutex and m_valuesMutex for the whole run.
 *
 * Owned by its series. All operations but run() belong to the GUI thread.
 */
class QUARVCHART_EXPORT PointThread : public QThread
{
    Q_OBJECT

public:
    /// \p series is not owned; a null series makes run() do nothing.
    explicit PointThread(AbstractChartSeries *series, QObject *parent = nullptr);

    /// Stops the calculation and waits for its end.
    ~PointThread() override;

    /// Starts a calculation clipped to \p rect, in data units. It must not be running.
    void startThread(const QRectF &rect);

    /// Asks the calculation to end and waits until it has; returns what QThread::wait() returns.
    /// The points computed so far stay.
    bool stopThread();

    void run() override; ///< The calculation. Worker only.

    /// Appends \p value without a line: as a point if it is valid and in sight, else as a gap.
    /// Null adds nothing. Worker only.
    void addSinglePoint(const ChartValue *value);

    /// Whether the last point computed lies on the pixel of \p point. No other point is looked at.
    bool containsPoint(const ChartPoint &point) const;

    AbstractChartSeries *m_series;   ///< Not owned; may be null.
    QVector<ChartPoint> m_points;    ///< Guarded by the series' m_pointsMutex.
    std::atomic<bool> m_stop{false}; ///< Set by the GUI thread, read before each pair of samples.
    QRectF m_rect;                   ///< Written before the start only.

private:
    friend class AbstractChartSeries;

    const CurveStrokes *strokes() const;
    void calculate();
    void giveBackCapacity();

    // Guarded by the series' m_pointsMutex.
    std::unique_ptr<CurveStrokes> m_strokes; ///< The line through m_points as the worker left them.
    QVector<ChartPoint> m_strokedPoints;     ///< Shares m_points until somebody else writes there.
    int m_mostPoints = 0;                    ///< Of the last few dozen calculations.
    int m_calculations = 0;                  ///< Counted up, to part them into dozens.
    quint64 m_pass = 0; ///< Number of the last calculation; no other one of any series has it.
};
