#include "csvtable.h"

#include <QtAlgorithms>

#include <utility>

CsvColumn::~CsvColumn()
{
    qDeleteAll(samples);
}

QList<ChartValue *> CsvColumn::takeSamples()
{
    return std::exchange(samples, {});
}

QString CsvError::text(const QString &fileName) const
{
    if (line == 0) {
        return QStringLiteral("%1: %2").arg(fileName, message);
    }
    return QStringLiteral("%1:%2:%3: %4")
        .arg(fileName, QString::number(line), QString::number(cell), message);
}
