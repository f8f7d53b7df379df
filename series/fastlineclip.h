#pragma once

#include "quarvchart_export.h"

/**
 * Clips a line segment to an axis-aligned window, in data coordinates.
 *
 * The line-encoding method of M. S. Sobkow, P. Pospisil and Y.-H. Yang, "A fast two-dimensional
 * line clipping algorithm via line encoding", Computers & Graphics 11(4), 1987: the region codes of
 * both ends make one number, and one jump on it leads to the intersections that this case needs.
 *
 * The window is closed: a point on an edge is inside. The caller sets it directly; xMin <= xMax and
 * yMin <= yMax are not checked. Top is the side of small Y. A NaN coordinate counts as inside.
 *
 * One object serves one thread.
 */
class QUARVCHART_EXPORT FastLineClip
{
public:
    /**
     * Clips the segment in place.
     *
     * Returns 1 if some of the segment lies in the window; the arguments then hold the clipped
     * ends, and clipped0 and clipped1 tell which were moved. Returns 0 if it lies outside and -1
     * for a code that does not exist; the arguments are then unchanged, and the members mean
     * nothing. No argument may be null.
     */
    int LineClip(double *x0, double *y0, double *x1, double *y1);

    /// @{
    /// Moves one end of the segment, the first (0) or the second (1), along the line to the edge
    /// of the name. The ends must lie on different sides of it.
    void Clip0_Left();
    void Clip0_Right();
    void Clip0_Top();
    void Clip0_Bottom();
    void Clip1_Left();
    void Clip1_Right();
    void Clip1_Top();
    void Clip1_Bottom();
    /// @}

    double x0 = 0.0;       ///< First end of the segment at work.
    double y0 = 0.0;       ///< First end.
    double x1 = 0.0;       ///< Second end.
    double y1 = 0.0;       ///< Second end.
    bool clipped0 = false; ///< The first end has been moved.
    bool clipped1 = false; ///< The second end has been moved.
    double xMin = 0.0;     ///< Left edge of the window.
    double xMax = 0.0;     ///< Right edge.
    double yMin = 0.0;     ///< Top edge: the smallest Y.
    double yMax = 0.0;     ///< Bottom edge: the largest Y.

private:
    int clipByCode(int segmentCode);
};
