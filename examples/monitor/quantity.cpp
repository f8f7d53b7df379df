#include "quantity.h"

#include "proccounters.h"

namespace {

/// Traffic in one direction; \p traffic says where, \p direction which way.
Quantity rate(const QString &name, std::optional<Traffic> ProcReading::*traffic,
              quint64 Traffic::*direction)
{
    return {name, 1, false,
            [=](const ProcReading &before, const ProcReading &after, double seconds) {
                if (!(before.*traffic) || !(after.*traffic)) {
                    return qQNaN();
                }
                return kibPerSecond(*(before.*traffic).*direction, *(after.*traffic).*direction,
                                    seconds);
            }};
}

/// What a reading holds as it is.
Quantity gauge(const QString &name, int decimals, std::optional<double> ProcReading::*value)
{
    return {name, decimals, false, [=](const ProcReading &, const ProcReading &after, double) {
                return (after.*value).value_or(qQNaN());
            }};
}

Quantity allCores()
{
    return {Quantity::tr("CPU %"), 1, true,
            [](const ProcReading &before, const ProcReading &after, double) {
                return busyPercent(before.cpu, after.cpu);
            }};
}

Quantity core(int number)
{
    const auto timeOf = [number](const ProcReading &reading) {
        const auto found = reading.cores.constFind(number);
        return found == reading.cores.constEnd() ? std::nullopt : std::make_optional(*found);
    };
    return {Quantity::tr("CPU %1 %").arg(number), 1, true,
            [timeOf](const ProcReading &before, const ProcReading &after, double) {
                return busyPercent(timeOf(before), timeOf(after));
            }};
}

void appendTraffic(std::vector<Quantity> &quantities, const ProcReading &reading)
{
    if (reading.network) {
        quantities.push_back(
            rate(Quantity::tr("Net in KiB/s"), &ProcReading::network, &Traffic::in));
        quantities.push_back(
            rate(Quantity::tr("Net out KiB/s"), &ProcReading::network, &Traffic::out));
    }
    if (reading.disk) {
        quantities.push_back(
            rate(Quantity::tr("Disk read KiB/s"), &ProcReading::disk, &Traffic::in));
        quantities.push_back(
            rate(Quantity::tr("Disk write KiB/s"), &ProcReading::disk, &Traffic::out));
    }
}

} // namespace

std::vector<Quantity> quantitiesOf(const ProcReading &reading, int most)
{
    std::vector<Quantity> quantities;
    if (reading.cpu) {
        quantities.push_back(allCores());
    }
    if (reading.load) {
        quantities.push_back(gauge(Quantity::tr("Load"), 2, &ProcReading::load));
    }
    if (reading.memoryUsed) {
        quantities.push_back(gauge(Quantity::tr("Memory MiB"), 1, &ProcReading::memoryUsed));
    }
    appendTraffic(quantities, reading);
    if (reading.cores.size() > 1) {
        for (int number : reading.cores.keys()) {
            quantities.push_back(core(number));
        }
    }
    if (int(quantities.size()) > most) {
        quantities.resize(size_t(most));
    }
    return quantities;
}
