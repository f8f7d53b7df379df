#pragma once

#include "series/fastlineclip.h"

/// Where a point lies relative to a clip window: one bit for each edge that it lies beyond.
namespace ClipRegion {

constexpr int Inside = 0;
constexpr int Left = 1;
constexpr int Right = 2;
constexpr int Top = 4;
constexpr int Bottom = 8;

/// The comparisons are strict, so that the window is closed, and in this form a NaN is inside.
inline int of(double x, double y, const FastLineClip &window)
{
    const int column = x > window.xMax ? Right : window.xMin > x ? Left : Inside;
    const int row = y > window.yMax ? Bottom : window.yMin > y ? Top : Inside;
    return column | row;
}

} // namespace ClipRegion
