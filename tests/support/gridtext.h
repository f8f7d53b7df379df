#pragma once

#include "axes/chartaxis.h"

#include <QStringList>

/// The grid values of an axis as one text: "0.6 0.8 1".
inline QString gridText(const ChartAxis &axis)
{
    QStringList texts;
    for (const double value : axis.m_gridValues) {
        texts.append(QString::number(value, 'g', 12));
    }
    return texts.join(' ');
}
