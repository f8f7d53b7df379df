#pragma once

#include <QString>

class AbstractChartModel;
class QIODevice;

/**
 * Writes the samples that are in view as a table of CSV: a row for each X between the ends of the X
 * axis, both included, and a column for each visible series.
 *
 * Numbers are as long as it takes to read the same number back; an X on a date-time scale is
 * written as a date and time in UTC, and read back to the same number too; if there is an X that no
 * date says (before the year 1 or behind 9999, or finer than the digits of a date), all X are
 * numbers. A gap, and an X that a series has no sample at, is an empty cell. A series with several
 * samples at one X gets several rows. GUI thread; feeders wait only while samples are copied.
 *
 * Returns false if the device takes no more.
 */
bool writeVisibleSamples(const AbstractChartModel &model, QIODevice &device);

/// Writes the same to a file. Returns false if that fails; \p problem then says why, and a file of
/// that name is as it was: it is replaced only by a whole one.
bool saveVisibleSamples(const AbstractChartModel &model, const QString &fileName, QString *problem);
