#pragma once

#include "quarvchart_export.h"

#include <cstddef>
#include <limits>
#include <new>

/**
 * One sample.
 *
 * Allocated by the application with new and owned by the series from the moment it is handed in;
 * the library frees it as this plain record, so nothing may be derived from it.
 */
struct QUARVCHART_EXPORT ChartValue
{
    double x = 0.0; ///< Abscissa; on a date-time scale, seconds since the epoch with fraction.
    double y = 0.0; ///< Ordinate; NaN marks a gap.
    int state = 0;  ///< The application's status code, handed to AbstractChartSeries::textColor().

    /// Seconds since the epoch from which removeOldValues() may take the sample; NaN and +infinity
    /// never expire.
    double expireTime = std::numeric_limits<double>::infinity();

    /// @{
    /// As usual, but that single records share their memory tightly, without a heap's overhead for
    /// each: of the millions in a store each takes its 32 bytes. Any thread may delete what another
    /// has made.
    static void *operator new(std::size_t size);
    static void *operator new(std::size_t size, const std::nothrow_t &tag) noexcept;
    static void *operator new(std::size_t, void *place) noexcept { return place; }
    static void operator delete(void *memory, std::size_t size) noexcept;
    /// @}
};
