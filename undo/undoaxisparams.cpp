#include "undo/undoaxisparams.h"

#include "axes/chartaxis.h"

UndoAxisParams::UndoAxisParams(const ChartAxis *axis)
{
    if (!axis) {
        return;
    }
    min = axis->m_min;
    max = axis->m_max;
    zoomed = axis->m_zoomed;
    valid = true;
}

bool UndoAxisParams::operator==(const UndoAxisParams &other) const
{
    return min == other.min && max == other.max && zoomed == other.zoomed && valid == other.valid;
}
