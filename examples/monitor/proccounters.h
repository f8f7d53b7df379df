#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

class QByteArray;

/// What a processor has done since the machine started, in ticks of the kernel's clock.
struct CpuTime
{
    quint64 busy = 0;
    quint64 total = 0;
};

/// Bytes since the machine started: received and sent, or read and written.
struct Traffic
{
    quint64 in = 0;
    quint64 out = 0;
};

/// One reading of the kernel's counters. What could not be read is not there.
struct ProcReading
{
    std::optional<CpuTime> cpu;       ///< All cores together.
    QMap<int, CpuTime> cores;         ///< By number; a core may be missing while it is off.
    std::optional<double> memoryUsed; ///< MiB that programs could not have.
    std::optional<Traffic> network;   ///< All interfaces but the loopback.
    std::optional<Traffic> disk;      ///< All disks of the machine.
    std::optional<double> load;       ///< Average of one minute.
};

/**
 * Reads the counters that the kernel shows as text files: stat, meminfo, net/dev, diskstats and
 * loadavg of one folder.
 *
 * One object serves one thread.
 */
class ProcCounters
{
    Q_DECLARE_TR_FUNCTIONS(ProcCounters)

public:
    explicit ProcCounters(const QString &root);

    ProcReading read();

    /// What the last reading has missed: "FILE: why", a line for each file.
    const QStringList &problems() const { return m_problems; }

    // One file each, as text. Nothing if it does not hold what it should.

    static void parseStat(const QByteArray &text, ProcReading &reading);
    static std::optional<double> parseMemInfo(const QByteArray &text);
    static std::optional<Traffic> parseNetDev(const QByteArray &text);

    /// Counts whole disks: their partitions would count everything twice.
    static std::optional<Traffic> parseDiskStats(const QByteArray &text);
    static std::optional<double> parseLoadAvg(const QByteArray &text);

private:
    QByteArray contents(const QString &fileName);
    void note(const QString &fileName, const QString &problem);
    void noteMissing(const QString &fileName, bool missing);

    const QString m_root;
    QStringList m_problems;
};

// Rates between two readings. NaN, which is a gap in a curve, where there is none: a counter is
// missing, has wrapped or started anew, or no time has passed.

/// Percent of the time for which a processor was busy.
double busyPercent(const std::optional<CpuTime> &before, const std::optional<CpuTime> &after);

/// KiB in a second.
double kibPerSecond(quint64 before, quint64 after, double seconds);
