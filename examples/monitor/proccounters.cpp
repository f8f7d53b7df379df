#include "proccounters.h"

#include <QFile>
#include <QList>
#include <QRegularExpression>

namespace {

constexpr double KibPerMib = 1024.0;
constexpr double BytesPerKib = 1024.0;
constexpr quint64 BytesPerSector = 512; // of diskstats, whatever the disk's own sectors are

using Fields = QList<QByteArray>;

/// The words of each line, however many blanks stand between them.
QList<Fields> linesOf(const QByteArray &text)
{
    QList<Fields> lines;
    for (const QByteArray &line : text.split('\n')) {
        lines.append(line.simplified().split(' '));
    }
    return lines;
}

std::optional<quint64> counterAt(const Fields &fields, int index)
{
    bool isNumber = false;
    const quint64 counter = fields.value(index).toULongLong(&isNumber);
    return isNumber ? std::make_optional(counter) : std::nullopt;
}

std::optional<CpuTime> cpuTime(const Fields &fields)
{
    // cpu user nice system idle iowait irq softirq steal; what follows is in user and nice too.
    enum { User = 1, Idle = 4, IoWait = 5, Steal = 8 };
    CpuTime time;
    for (int i = User; i <= Steal; ++i) {
        const std::optional<quint64> ticks = counterAt(fields, i);
        if (!ticks) {
            return std::nullopt;
        }
        time.total += *ticks;
        time.busy += i == Idle || i == IoWait ? 0 : *ticks;
    }
    return time;
}

void addTraffic(std::optional<Traffic> &sum, const Fields &fields, int inIndex, int outIndex,
                quint64 unit)
{
    const std::optional<quint64> in = counterAt(fields, inIndex);
    const std::optional<quint64> out = counterAt(fields, outIndex);
    if (!in || !out) {
        return;
    }
    const Traffic former = sum.value_or(Traffic());
    sum = Traffic{former.in + *in * unit, former.out + *out * unit};
}

bool isDisk(const QByteArray &name)
{
    static const QRegularExpression disk(
        "^(sd[a-z]+|vd[a-z]+|xvd[a-z]+|nvme[0-9]+n[0-9]+|mmcblk[0-9]+)$");
    return disk.match(QString::fromLatin1(name)).hasMatch();
}

} // namespace

ProcCounters::ProcCounters(const QString &root)
    : m_root(root)
{
}

ProcReading ProcCounters::read()
{
    m_problems.clear();
    ProcReading reading;
    parseStat(contents("stat"), reading);
    noteMissing("stat", !reading.cpu);
    reading.memoryUsed = parseMemInfo(contents("meminfo"));
    noteMissing("meminfo", !reading.memoryUsed);
    reading.network = parseNetDev(contents("net/dev"));
    noteMissing("net/dev", !reading.network);
    reading.disk = parseDiskStats(contents("diskstats"));
    noteMissing("diskstats", !reading.disk);
    reading.load = parseLoadAvg(contents("loadavg"));
    noteMissing("loadavg", !reading.load);
    return reading;
}

/// Everything in a file of the folder; nothing, with a note, if it cannot be read.
QByteArray ProcCounters::contents(const QString &fileName)
{
    QFile file(m_root + '/' + fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        note(fileName, file.errorString());
        return QByteArray();
    }
    return file.readAll();
}

void ProcCounters::note(const QString &fileName, const QString &problem)
{
    m_problems.append(QStringLiteral("%1/%2: %3").arg(m_root, fileName, problem));
}

/// A file that could not be opened has its note already.
void ProcCounters::noteMissing(const QString &fileName, bool missing)
{
    const QString path = QStringLiteral("%1/%2: ").arg(m_root, fileName);
    const bool noted = !m_problems.isEmpty() && m_problems.constLast().startsWith(path);
    if (missing && !noted) {
        note(fileName, tr("no counters that are known here"));
    }
}

void ProcCounters::parseStat(const QByteArray &text, ProcReading &reading)
{
    const QByteArray cpu = "cpu";
    for (const Fields &fields : linesOf(text)) {
        const QByteArray &name = fields.constFirst();
        if (name == cpu) {
            reading.cpu = cpuTime(fields);
            continue;
        }
        bool isCore = false;
        const int core = name.mid(cpu.size()).toInt(&isCore);
        const std::optional<CpuTime> time = cpuTime(fields);
        if (name.startsWith(cpu) && isCore && time) {
            reading.cores.insert(core, *time);
        }
    }
}

std::optional<double> ProcCounters::parseMemInfo(const QByteArray &text)
{
    std::optional<quint64> total;
    std::optional<quint64> available;
    for (const Fields &fields : linesOf(text)) {
        if (fields.constFirst() == "MemTotal:") {
            total = counterAt(fields, 1);
        } else if (fields.constFirst() == "MemAvailable:") {
            available = counterAt(fields, 1);
        }
    }
    if (!total || !available || *total < *available) {
        return std::nullopt;
    }
    return double(*total - *available) / KibPerMib;
}

std::optional<Traffic> ProcCounters::parseNetDev(const QByteArray &text)
{
    enum { Received = 0, Sent = 8 }; // behind the colon
    std::optional<Traffic> sum;
    for (const QByteArray &line : text.split('\n')) {
        const int colon = line.indexOf(':');
        // Large counters stand right behind the colon.
        if (colon >= 0 && line.left(colon).trimmed() != "lo") {
            addTraffic(sum, line.mid(colon + 1).simplified().split(' '), Received, Sent, 1);
        }
    }
    return sum;
}

std::optional<Traffic> ProcCounters::parseDiskStats(const QByteArray &text)
{
    enum { Name = 2, SectorsRead = 5, SectorsWritten = 9 };
    std::optional<Traffic> sum;
    for (const Fields &fields : linesOf(text)) {
        if (isDisk(fields.value(Name))) {
            addTraffic(sum, fields, SectorsRead, SectorsWritten, BytesPerSector);
        }
    }
    return sum;
}

std::optional<double> ProcCounters::parseLoadAvg(const QByteArray &text)
{
    bool isNumber = false;
    const double load = text.simplified().split(' ').constFirst().toDouble(&isNumber);
    return isNumber && qIsFinite(load) ? std::make_optional(load) : std::nullopt;
}

double busyPercent(const std::optional<CpuTime> &before, const std::optional<CpuTime> &after)
{
    // Idle time too is known to go backwards at times: then more was busy than there was.
    if (!before || !after || after->busy < before->busy || after->total <= before->total ||
        after->busy - before->busy > after->total - before->total) {
        return qQNaN();
    }
    return 100.0 * double(after->busy - before->busy) / double(after->total - before->total);
}

double kibPerSecond(quint64 before, quint64 after, double seconds)
{
    if (after < before || !(seconds > 0.0)) {
        return qQNaN();
    }
    return double(after - before) / BytesPerKib / seconds;
}
