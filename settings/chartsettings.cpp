#include "settings/chartsettings.h"

QColor ChartSettings::defaultBackgroundColor()
{
    return QColor(Qt::black);
}

QColor ChartSettings::defaultGridColor()
{
    return QColor(Qt::white);
}

QColor ChartSettings::defaultCursorColor()
{
    return QColor(255, 170, 0);
}

void ChartSettings::loadSettings(QString) {}

void ChartSettings::saveSettings(QString) {}
