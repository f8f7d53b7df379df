#pragma once

#include "csvtable.h"

#include <QtGlobal>

#include <atomic>
#include <functional>

class QIODevice;

/**
 * Reads a CSV or TSV file into samples of a chart.
 *
 * The first column is X: numbers, or dates and times in ISO form (see IsoDateTime) if the first row
 * has one. Every other column is a series. The first row is a header with the names of the columns
 * unless all its cells are values; without a header, or with an empty name, a series is called
 * "Column 2" and so on. An empty cell and "nan" are a gap; X must not have one. "inf" is
 * entered as it is, and leaves a gap in the curve too. Every row has as many cells as the first.
 *
 * CsvTokenizer tells how rows are cut into cells. The decimal mark is point or comma, whichever the
 * file uses first. Numbers have no thousands separators.
 *
 * Samples keep the order of the rows if X never descends; otherwise they are sorted by X, and rows
 * of equal X keep their order.
 */
class CsvReader
{
public:
    /// Told the number of bytes read so far, about once for each block.
    using Progress = std::function<void(qint64 bytesRead)>;

    /// Reads \p device, which is open, to its end, or until \p cancel becomes true. Any thread.
    CsvResult read(QIODevice &device, const std::atomic<bool> &cancel,
                   const Progress &progress = Progress());
};
