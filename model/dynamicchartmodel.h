#pragma once

#include "model/abstractchartmodel.h"

/**
 * The model for samples that arrive in real time: its X axis is a window that follows the newest.
 *
 * The window follows in one of three ways. Auto scale of X: it is the extent of the data. Sliding
 * (dynamicGrid()): its right edge stands on the newest sample. Jumping: it stands still until a
 * curve crosses its right edge, then moves so that the newest sample stands in the middle. A zoom
 * or scroll freezes the first two; a jump goes on. Width and samples are in X units, seconds on a
 * date-time scale.
 */
class QUARVCHART_EXPORT DynamicChartModel : public AbstractChartModel
{
    Q_OBJECT

public:
    /// The two names select the store of the settings. The window starts at 0 and has the width
    /// that the settings record is made with.
    DynamicChartModel(const QString &organization, const QString &application,
                      QObject *parent = nullptr);

    /// Also hands the dynamic grid to the model, and returns to a window of the set width if the X
    /// axis is not zoomed: with an undo step, but for the first application.
    void applyChartSettings() override;

    void adjustAxisX() override;

    /// Returns to the live window.
    void undoZoom() override;

    /// Slides (true) or jumps (false) from now on. Leaves window and settings as they are.
    void setDynamicGrid(bool on);
    bool dynamicGrid() const; ///< Whether the window slides.

    bool m_dynamicGrid = false; ///< Guarded by the model's lock on the axes.

protected slots:
    /// Freezes the view, or returns to the live window with an undo step.
    void slotPause(bool paused) override;

public:
    /// Whether the window may jump for the sample that has just come; true here. Runs on the
    /// feeder's thread with locks held: pure, takes no locks and calls nothing of the model.
    virtual bool isPossibleJumpCurrentTime() const;

private:
    struct NewestStep
    {
        bool examined = false; ///< Some series has two samples to look at.
        bool crossed = false;  ///< The last step of some curve has left the window to the right.
    };
    std::optional<double> newestX() const;
    NewestStep newestStep() const;
    void assignWindow(double a, double b);
    void restoreWidth();
    void slide();
    void jump();
};
