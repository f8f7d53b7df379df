#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <QStringList>

#include <vector>

/**
 * Writes samples to a CSV file: a header, then rows of local time with milliseconds and zone, and
 * numbers; a number that is not finite is an empty cell.
 *
 * Each row is in the file when addRow() returns, so that a crash of the program loses none, and on
 * the disk within a second and a row, so that a crash of the machine loses little.
 *
 * One thread at a time.
 */
class Recorder
{
    Q_DECLARE_TR_FUNCTIONS(Recorder)

public:
    /// A column of the file.
    struct Column
    {
        QString name;
        int decimals = 0;
    };

    /// Makes \p fileName, or empties it, and writes the header. Returns false if that fails.
    bool open(const QString &fileName, const std::vector<Column> &columns);

    /// Writes one row: \p time in seconds since the epoch, and a value for each column. Returns
    /// false if that fails.
    bool addRow(double time, const std::vector<double> &values);

    /// "FILE: why" of the last failure.
    QString problem() const;

private:
    bool writeLine(const QStringList &cells);
    void saveToDisk();

    QFile m_file;
    std::vector<Column> m_columns;
    QElapsedTimer m_sinceSaved;
};
