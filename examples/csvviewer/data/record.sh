#!/usr/bin/env bash
# Records the kernel's counters of this machine as CSV on standard output, a row a second.
#
#   record.sh [SECONDS]        default: 3600
#
# Columns: local time, load (1 minute average), CPU (percent busy of all cores), memory (MiB not
# available), network in and out (KiB/s, without loopback), disk read and written (KiB/s).
# A counter that this machine does not have gives empty cells, which a chart shows as a gap.
set -euo pipefail

seconds=${1:-3600}

# One line: busy and total jiffies, bytes in, bytes out, sectors read, sectors written.
read_counters() {
    awk '
        FILENAME == "/proc/stat" && $1 == "cpu" {
            for (i = 2; i <= 9; ++i) total += $i
            busy = total - $5 - $6
        }
        FILENAME == "/proc/net/dev" && FNR > 2 {
            sub(/:/, " ")
            if ($1 != "lo") { netSeen = 1; received += $2; sent += $10 }
        }
        # Whole disks only: partitions would count every sector twice.
        FILENAME == "/proc/diskstats" && $3 ~ /^(sd[a-z]+|vd[a-z]+|xvd[a-z]+|nvme[0-9]+n[0-9]+|mmcblk[0-9]+)$/ {
            diskSeen = 1; sectorsRead += $6; sectorsWritten += $10
        }
        END {
            printf "%d %d", busy, total
            if (netSeen) printf " %d %d", received, sent; else printf " - -"
            if (diskSeen) printf " %d %d\n", sectorsRead, sectorsWritten; else printf " - -\n"
        }' /proc/stat /proc/net/dev /proc/diskstats
}

memory_used() {
    awk '$1 == "MemTotal:" { total = $2 } $1 == "MemAvailable:" { available = $2 }
         END { printf "%.1f", (total - available) / 1024 }' /proc/meminfo
}

echo "Time,Load,CPU %,Memory MiB,Net in KiB/s,Net out KiB/s,Disk read KiB/s,Disk write KiB/s"
previous=$(read_counters)
previous_time=$(date +%s.%N)
next=$(( ${previous_time%.*} + 1 ))
for ((i = 0; i < seconds; ++i)); do
    # Sleep up to the next full second, so that the rows do not drift.
    sleep "$(awk -v now="$(date +%s.%N)" -v next_time="$next" \
        'BEGIN { d = next_time - now; printf "%.3f", (d > 0 ? d : 0) }')"
    next=$((next + 1))
    current=$(read_counters)
    current_time=$(date +%s.%N)
    read -r load _ < /proc/loadavg
    awk -v p="$previous" -v c="$current" -v t0="$previous_time" -v t1="$current_time" \
        -v stamp="$(date +%Y-%m-%dT%H:%M:%S)" -v load="$load" -v memory="$(memory_used)" '
        function rate(i, unit) {
            if (was[i] == "-" || is[i] == "-") return ""
            return sprintf("%.1f", (is[i] - was[i]) * unit / (t1 - t0))
        }
        BEGIN {
            split(p, was, " "); split(c, is, " ")
            ticks = is[2] - was[2]
            cpu = ticks > 0 ? sprintf("%.1f", 100 * (is[1] - was[1]) / ticks) : ""
            printf "%s,%s,%s,%s,%s,%s,%s,%s\n", stamp, load, cpu, memory,
                   rate(3, 1 / 1024), rate(4, 1 / 1024), rate(5, 0.5), rate(6, 0.5)
        }'
    previous=$current
    previous_time=$current_time
done
