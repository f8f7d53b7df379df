#include "series/fastlineclip.h"

#include "series/clipregion_p.h"

namespace {

constexpr int Accepted = 1;
constexpr int Rejected = 0;
constexpr int NoSuchCode = -1;

using ClipRegion::Bottom;
using ClipRegion::Inside;
using ClipRegion::Left;
using ClipRegion::Right;
using ClipRegion::Top;
constexpr int LeftTop = Left | Top;
constexpr int RightTop = Right | Top;
constexpr int LeftBottom = Left | Bottom;
constexpr int RightBottom = Right | Bottom;

/// One number for the regions of both ends, 0 to 170.
constexpr int code(int first, int second)
{
    constexpr int RegionCount = 16;
    return first * RegionCount + second;
}

/// Where the line from an end to the other one crosses an edge: "along" is the coordinate in which
/// the edge is given, "across" the one that is asked for.
double crossing(double edge, double along, double across, double otherAlong, double otherAcross)
{
    return (edge - along) * (otherAcross - across) / (otherAlong - along) + across;
}

} // namespace

int FastLineClip::LineClip(double *firstX, double *firstY, double *secondX, double *secondY)
{
    x0 = *firstX;
    y0 = *firstY;
    x1 = *secondX;
    y1 = *secondY;
    clipped0 = false;
    clipped1 = false;

    const int first = ClipRegion::of(x0, y0, *this);
    const int second = ClipRegion::of(x1, y1, *this);
    const int result = clipByCode(code(first, second));
    if (result == Accepted) {
        *firstX = x0;
        *firstY = y0;
        *secondX = x1;
        *secondY = y1;
    }
    return result;
}

// Long because it is a table: one row for each pair of regions, so that a segment costs one jump
// and no second look at its ends. The order of the steps within a row decides the result near the
// corners. The rows are not mirror images of one another, and that is wanted: top to left looks at
// the top edge once more, which only rounding can have passed, and top to right does not.
int FastLineClip::clipByCode(int segmentCode)
{
    // clang-format off
    switch (segmentCode) {
    // Both ends beyond one common edge
    case code(Left, Left):
    case code(Left, LeftTop):
    case code(Left, LeftBottom):
    case code(Right, Right):
    case code(Right, RightTop):
    case code(Right, RightBottom):
    case code(Top, Top):
    case code(Top, LeftTop):
    case code(Top, RightTop):
    case code(LeftTop, Left):
    case code(LeftTop, Top):
    case code(LeftTop, LeftTop):
    case code(LeftTop, RightTop):
    case code(LeftTop, LeftBottom):
    case code(RightTop, Right):
    case code(RightTop, Top):
    case code(RightTop, LeftTop):
    case code(RightTop, RightTop):
    case code(RightTop, RightBottom):
    case code(Bottom, Bottom):
    case code(Bottom, LeftBottom):
    case code(Bottom, RightBottom):
    case code(LeftBottom, Left):
    case code(LeftBottom, LeftTop):
    case code(LeftBottom, Bottom):
    case code(LeftBottom, LeftBottom):
    case code(LeftBottom, RightBottom):
    case code(RightBottom, Right):
    case code(RightBottom, RightTop):
    case code(RightBottom, Bottom):
    case code(RightBottom, LeftBottom):
    case code(RightBottom, RightBottom):
        return Rejected;

    // First end inside
    case code(Inside, Inside):
        return Accepted;
    case code(Inside, Left):
        Clip1_Left();
        return Accepted;
    case code(Inside, Right):
        Clip1_Right();
        return Accepted;
    case code(Inside, Top):
        Clip1_Top();
        return Accepted;
    case code(Inside, LeftTop):
        Clip1_Left();
        if (y1 < yMin) { Clip1_Top(); }
        return Accepted;
    case code(Inside, RightTop):
        Clip1_Right();
        if (y1 < yMin) { Clip1_Top(); }
        return Accepted;
    case code(Inside, Bottom):
        Clip1_Bottom();
        return Accepted;
    case code(Inside, LeftBottom):
        Clip1_Left();
        if (y1 > yMax) { Clip1_Bottom(); }
        return Accepted;
    case code(Inside, RightBottom):
        Clip1_Right();
        if (y1 > yMax) { Clip1_Bottom(); }
        return Accepted;

    // First end left
    case code(Left, Inside):
        Clip0_Left();
        return Accepted;
    case code(Left, Right):
        Clip0_Left();
        Clip1_Right();
        return Accepted;
    case code(Left, Top):
        Clip0_Left();
        if (y0 < yMin) { return Rejected; }
        Clip1_Top();
        return Accepted;
    case code(Left, RightTop):
        Clip0_Left();
        if (y0 < yMin) { return Rejected; }
        Clip1_Top();
        if (x1 > xMax) { Clip1_Right(); }
        return Accepted;
    case code(Left, Bottom):
        Clip0_Left();
        if (y0 > yMax) { return Rejected; }
        Clip1_Bottom();
        return Accepted;
    case code(Left, RightBottom):
        Clip0_Left();
        if (y0 > yMax) { return Rejected; }
        Clip1_Bottom();
        if (x1 > xMax) { Clip1_Right(); }
        return Accepted;

    // First end right
    case code(Right, Inside):
        Clip0_Right();
        return Accepted;
    case code(Right, Left):
        Clip0_Right();
        Clip1_Left();
        return Accepted;
    case code(Right, Top):
        Clip0_Right();
        if (y0 < yMin) { return Rejected; }
        Clip1_Top();
        return Accepted;
    case code(Right, LeftTop):
        Clip0_Right();
        if (y0 < yMin) { return Rejected; }
        Clip1_Top();
        if (x1 < xMin) { Clip1_Left(); }
        return Accepted;
    case code(Right, Bottom):
        Clip0_Right();
        if (y0 > yMax) { return Rejected; }
        Clip1_Bottom();
        return Accepted;
    case code(Right, LeftBottom):
        Clip0_Right();
        if (y0 > yMax) { return Rejected; }
        Clip1_Bottom();
        if (x1 < xMin) { Clip1_Left(); }
        return Accepted;

    // First end top
    case code(Top, Inside):
        Clip0_Top();
        return Accepted;
    case code(Top, Left):
        Clip0_Top();
        if (x0 < xMin) { return Rejected; }
        Clip1_Left();
        if (y1 < yMin) { Clip1_Top(); }
        return Accepted;
    case code(Top, Right):
        Clip0_Top();
        if (x0 > xMax) { return Rejected; }
        Clip1_Right();
        return Accepted;
    case code(Top, Bottom):
        Clip0_Top();
        Clip1_Bottom();
        return Accepted;
    case code(Top, LeftBottom):
        Clip0_Top();
        if (x0 < xMin) { return Rejected; }
        Clip1_Left();
        if (y1 > yMax) { Clip1_Bottom(); }
        return Accepted;
    case code(Top, RightBottom):
        Clip0_Top();
        if (x0 > xMax) { return Rejected; }
        Clip1_Right();
        if (y1 > yMax) { Clip1_Bottom(); }
        return Accepted;

    // First end left and top
    case code(LeftTop, Inside):
        Clip0_Left();
        if (y0 < yMin) { Clip0_Top(); }
        return Accepted;
    case code(LeftTop, Right):
        Clip1_Right();
        if (y1 < yMin) { return Rejected; }
        Clip0_Top();
        if (x0 < xMin) { Clip0_Left(); }
        return Accepted;
    case code(LeftTop, Bottom):
        Clip1_Bottom();
        if (x1 < xMin) { return Rejected; }
        Clip0_Top();
        if (x0 < xMin) { Clip0_Left(); }
        return Accepted;
    case code(LeftTop, RightBottom):
        Clip0_Left();
        if (y0 > yMax) { return Rejected; }
        Clip1_Right();
        if (y1 < yMin) { return Rejected; }
        if (y0 < yMin) { Clip0_Top(); }
        if (y1 > yMax) { Clip1_Bottom(); }
        return Accepted;

    // First end right and top
    case code(RightTop, Inside):
        Clip0_Right();
        if (y0 < yMin) { Clip0_Top(); }
        return Accepted;
    case code(RightTop, Left):
        Clip1_Left();
        if (y1 < yMin) { return Rejected; }
        Clip0_Top();
        if (x0 > xMax) { Clip0_Right(); }
        return Accepted;
    case code(RightTop, Bottom):
        Clip1_Bottom();
        if (x1 > xMax) { return Rejected; }
        Clip0_Right();
        if (y0 < yMin) { Clip0_Top(); }
        return Accepted;
    case code(RightTop, LeftBottom):
        Clip1_Left();
        if (y1 < yMin) { return Rejected; }
        Clip0_Right();
        if (y0 > yMax) { return Rejected; }
        if (y1 > yMax) { Clip1_Bottom(); }
        if (y0 < yMin) { Clip0_Top(); }
        return Accepted;

    // First end bottom
    case code(Bottom, Inside):
        Clip0_Bottom();
        return Accepted;
    case code(Bottom, Left):
        Clip0_Bottom();
        if (x0 < xMin) { return Rejected; }
        Clip1_Left();
        return Accepted;
    case code(Bottom, Right):
        Clip0_Bottom();
        if (x0 > xMax) { return Rejected; }
        Clip1_Right();
        return Accepted;
    case code(Bottom, Top):
        Clip0_Bottom();
        Clip1_Top();
        return Accepted;
    case code(Bottom, LeftTop):
        Clip0_Bottom();
        if (x0 < xMin) { return Rejected; }
        Clip1_Left();
        if (y1 < yMin) { Clip1_Top(); }
        return Accepted;
    case code(Bottom, RightTop):
        Clip0_Bottom();
        if (x0 > xMax) { return Rejected; }
        Clip1_Right();
        if (y1 < yMin) { Clip1_Top(); }
        return Accepted;

    // First end left and bottom
    case code(LeftBottom, Inside):
        Clip0_Left();
        if (y0 > yMax) { Clip0_Bottom(); }
        return Accepted;
    case code(LeftBottom, Right):
        Clip1_Right();
        if (y1 > yMax) { return Rejected; }
        Clip0_Bottom();
        if (x0 < xMin) { Clip0_Left(); }
        return Accepted;
    case code(LeftBottom, Top):
        Clip1_Top();
        if (x1 < xMin) { return Rejected; }
        Clip0_Left();
        if (y0 > yMax) { Clip0_Bottom(); }
        return Accepted;
    case code(LeftBottom, RightTop):
        Clip0_Left();
        if (y0 < yMin) { return Rejected; }
        Clip1_Right();
        if (y1 > yMax) { return Rejected; }
        if (y0 > yMax) { Clip0_Bottom(); }
        if (y1 < yMin) { Clip1_Top(); }
        return Accepted;

    // First end right and bottom
    case code(RightBottom, Inside):
        Clip0_Right();
        if (y0 > yMax) { Clip0_Bottom(); }
        return Accepted;
    case code(RightBottom, Left):
        Clip1_Left();
        if (y1 > yMax) { return Rejected; }
        Clip0_Bottom();
        if (x0 > xMax) { Clip0_Right(); }
        return Accepted;
    case code(RightBottom, Top):
        Clip1_Top();
        if (x1 > xMax) { return Rejected; }
        Clip0_Right();
        if (y0 > yMax) { Clip0_Bottom(); }
        return Accepted;
    case code(RightBottom, LeftTop):
        Clip1_Left();
        if (y1 > yMax) { return Rejected; }
        Clip0_Right();
        if (y0 < yMin) { return Rejected; }
        if (y1 < yMin) { Clip1_Top(); }
        if (y0 > yMax) { Clip0_Bottom(); }
        return Accepted;
    }
    // clang-format on
    return NoSuchCode;
}

void FastLineClip::Clip0_Left()
{
    y0 = crossing(xMin, x0, y0, x1, y1);
    x0 = xMin;
    clipped0 = true;
}

void FastLineClip::Clip0_Right()
{
    y0 = crossing(xMax, x0, y0, x1, y1);
    x0 = xMax;
    clipped0 = true;
}

void FastLineClip::Clip0_Top()
{
    x0 = crossing(yMin, y0, x0, y1, x1);
    y0 = yMin;
    clipped0 = true;
}

void FastLineClip::Clip0_Bottom()
{
    x0 = crossing(yMax, y0, x0, y1, x1);
    y0 = yMax;
    clipped0 = true;
}

void FastLineClip::Clip1_Left()
{
    y1 = crossing(xMin, x1, y1, x0, y0);
    x1 = xMin;
    clipped1 = true;
}

void FastLineClip::Clip1_Right()
{
    y1 = crossing(xMax, x1, y1, x0, y0);
    x1 = xMax;
    clipped1 = true;
}

void FastLineClip::Clip1_Top()
{
    x1 = crossing(yMin, y1, x1, y0, x0);
    y1 = yMin;
    clipped1 = true;
}

void FastLineClip::Clip1_Bottom()
{
    x1 = crossing(yMax, y1, x1, y0, x0);
    y1 = yMax;
    clipped1 = true;
}
