#pragma once

#include "quarvchart_export.h"

#include <QColor>

/// Number of colours that are handed out to new series in turn.
constexpr int SeriesColorCount = 10;

/**
 * The ten default colours of series, by index: red, green, blue, cyan, magenta and their dark
 * forms.
 *
 * Yellow and dark yellow are left out. Filled from constants before any static object is built, and
 * never written afterwards, so any thread may read it.
 */
extern QUARVCHART_EXPORT QColor defSeriesColors[SeriesColorCount];

/**
 * How a series looks before its user changes anything: the colours that new series take in turn,
 * the width of the line and the point symbols.
 *
 * A plain record. A chart's settings hold one for the series to come, and every series holds a copy
 * to return to.
 */
class QUARVCHART_EXPORT SeriesSettings
{
public:
    /// Copies the colours from defSeriesColors and takes the three defaults below.
    SeriesSettings();

    static int defaultLineWidth();      ///< 1 pixel.
    static bool defaultPointsVisible(); ///< false.
    static int defaultPointsSize();     ///< 5 pixels.

    QColor colors[SeriesColorCount]; ///< Handed out in turn.
    int lineWidth;                   ///< Pen width of the line, in pixels.
    bool pointsVisible;              ///< Whether samples get a symbol.
    int pointsSize;                  ///< Diameter of the symbol, in pixels.
};
