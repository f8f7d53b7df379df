#pragma once

#include "quarvchart_export.h"

#include <QTransform>

/**
 * A zoom that was asked for while points were computed, and waits for the end of the calculation.
 *
 * The four bounds are in data units. They mean nothing while valid is false.
 */
class QUARVCHART_EXPORT PendingTransform
{
public:
    virtual ~PendingTransform() = default;

    bool valid = false;   ///< A zoom is parked.
    QTransform transform; ///< The map that will replace the series' present one.
    double minX = 0.0;    ///< Bounds of the X axis after the zoom.
    double maxX = 0.0;    ///< Upper bound.
    double minY = 0.0;    ///< Bounds of the Y axis after it.
    double maxY = 0.0;    ///< Upper bound.
};
