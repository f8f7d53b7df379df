#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <vector>

struct ProcReading;

/// One quantity of the machine: a curve of the monitor and a column of its recording.
struct Quantity
{
    QString name;            ///< With its unit.
    int decimals = 0;        ///< Behind the point, in labels and recordings.
    bool percentage = false; ///< From 0 to 100, whatever it is at present.

    /// Computes it from two readings and the seconds between them. NaN if it has no value.
    std::function<double(const ProcReading &before, const ProcReading &after, double seconds)>
        value;

    Q_DECLARE_TR_FUNCTIONS(Quantity)
};

/**
 * The quantities of a machine whose counters read as \p reading: at most \p most.
 *
 * Those of the whole machine come first, and as many of its cores follow as still fit. What the
 * reading does not have is left out; so is the only core of a machine, which says what all say.
 */
std::vector<Quantity> quantitiesOf(const ProcReading &reading, int most);
