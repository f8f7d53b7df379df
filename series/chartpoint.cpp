#include "series/chartpoint.h"

ChartPoint ChartPoint::gap()
{
    ChartPoint point;
    point.x = GapCoordinate;
    point.y = GapCoordinate;
    point.clipped = true;
    return point;
}
