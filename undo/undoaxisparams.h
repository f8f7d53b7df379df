#pragma once

#include "quarvchart_export.h"

class ChartAxis;

/**
 * The state of one axis as an undo command keeps it.
 *
 * Compared exactly; a NaN bound equals nothing, itself included.
 */
class QUARVCHART_EXPORT UndoAxisParams
{
public:
    /// A record that stands for no axis: valid is false.
    UndoAxisParams() = default;

    /// Copies the state of \p axis; null gives the record that stands for no axis. The model's lock
    /// on the axes must be held.
    explicit UndoAxisParams(const ChartAxis *axis);

    /// @{
    /// Compares all four members, exactly.
    bool operator==(const UndoAxisParams &other) const;
    bool operator!=(const UndoAxisParams &other) const { return !(*this == other); }
    /// @}

    double min = 0.0;    ///< ChartAxis::m_min, in data units.
    double max = 0.0;    ///< ChartAxis::m_max.
    bool zoomed = false; ///< ChartAxis::m_zoomed.
    bool valid = false;  ///< Taken from a real axis.
};
