#include "recorder.h"

#include <QDateTime>
#include <QtNumeric>

#include <unistd.h>

namespace {

constexpr int SaveInterval = 1000; // milliseconds of rows that a crash of the machine may cost
constexpr double MillisecondsPerSecond = 1000.0;

QString timeText(double time)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(qRound64(time * MillisecondsPerSecond));
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

} // namespace

bool Recorder::open(const QString &fileName, const std::vector<Column> &columns)
{
    m_columns = columns;
    m_file.setFileName(fileName);
    // Without a buffer of its own: a line goes to the system as it is written.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return false;
    }
    QStringList header{tr("Time")};
    for (const Column &column : m_columns) {
        header.append(column.name);
    }
    return writeLine(header);
}

bool Recorder::addRow(double time, const std::vector<double> &values)
{
    QStringList cells{timeText(time)};
    for (size_t i = 0; i < m_columns.size(); ++i) {
        const double value = values.at(i);
        cells.append(qIsFinite(value) ? QString::number(value, 'f', m_columns.at(i).decimals)
                                      : QString());
    }
    return writeLine(cells);
}

bool Recorder::writeLine(const QStringList &cells)
{
    const QByteArray line = cells.join(',').toUtf8() + '\n';
    if (m_file.write(line) != line.size()) {
        return false;
    }
    saveToDisk();
    return true;
}

/// A row a second at most waits for the disk. Pipes and the like have no disk; that is no failure.
void Recorder::saveToDisk()
{
    if (m_sinceSaved.isValid() && !m_sinceSaved.hasExpired(SaveInterval)) {
        return;
    }
    fdatasync(m_file.handle());
    m_sinceSaved.start();
}

QString Recorder::problem() const
{
    return QStringLiteral("%1: %2").arg(m_file.fileName(), m_file.errorString());
}
