#include "settings/chartsettings.h"

#include <QSettings>
#include <QVariant>

namespace {

constexpr int DefaultVisibleInterval = 600; // X units
constexpr int MostKeptPanes = 10;           // a layout of more panes is not kept

/// The flat keys of one group, "group/name".
class Keys
{
public:
    explicit Keys(const QString &group)
        : m_group(group.isEmpty() ? QStringLiteral("chart") : group)
    {
    }

    // Both places in one call: a group may hold a "%1" of its own.
    QString of(const char *name) const
    {
        return QStringLiteral("%1/%2").arg(m_group, QLatin1String(name));
    }
    QString of(const char *name, int number) const
    {
        return QStringLiteral("%1/%2%3").arg(m_group, QLatin1String(name), QString::number(number));
    }
    QString ofSeriesColor(int index) const { return of("defSeriesColors", index); } ///< From 0.
    QString ofSplitterState(int panes) const { return of("splitterState", panes); } ///< From 1.

private:
    const QString m_group;
};

/// A text that names a colour gives that colour; what gives none is an invalid colour, and whoever
/// paints with it falls back.
QColor storedColor(const QSettings &settings, const QString &key, const QColor &fallback)
{
    return settings.value(key, fallback).value<QColor>();
}

} // namespace

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

// The order of the keys is the same here and in saveSettings().
void ChartSettings::loadSettings(QString group)
{
    const Keys keys(group);
    const QSettings settings(organization, application, nullptr);

    backgroundColor = storedColor(settings, keys.of("backgroundColor"), defaultBackgroundColor());
    gridColor = storedColor(settings, keys.of("gridColor"), defaultGridColor());
    cursorLineColor = storedColor(settings, keys.of("cursorLineColor"), defaultCursorColor());
    visibleInterval = settings.value(keys.of("visibleInterval"), DefaultVisibleInterval).toDouble();
    dynamicGrid = settings.value(keys.of("dynamicGrid"), false).toBool();
    for (int i = 0; i < SeriesColorCount; ++i) {
        seriesSettings.colors[i] = storedColor(settings, keys.ofSeriesColor(i), defSeriesColors[i]);
    }
    seriesSettings.lineWidth =
        settings.value(keys.of("defLineWidth"), SeriesSettings::defaultLineWidth()).toInt();
    seriesSettings.pointsVisible =
        settings.value(keys.of("defPointsVisible"), SeriesSettings::defaultPointsVisible())
            .toBool();
    // The key says "Point" and the default "Points": files in the field have it so.
    seriesSettings.pointsSize =
        settings.value(keys.of("defPointSize"), SeriesSettings::defaultPointsSize()).toInt();
    autoRemoveEmptyChart = settings.value(keys.of("autoRemoveEmptyChart"), true).toBool();
    individualScale = settings.value(keys.of("individualScale"), true).toBool();
    autoScaleX = settings.value(keys.of("autoScaleX"), false).toBool();
    autoScaleY = settings.value(keys.of("autoScaleY"), false).toBool();
    legendState = settings.value(keys.of("legendState"), QVariant()).toByteArray();
    for (int panes = 1; panes <= MostKeptPanes; ++panes) {
        const QString key = keys.ofSplitterState(panes);
        if (settings.contains(key)) {
            splitterState[panes] = settings.value(key).toByteArray();
        }
    }
}

void ChartSettings::saveSettings(QString group)
{
    const Keys keys(group);
    QSettings settings(organization, application, nullptr);

    settings.setValue(keys.of("backgroundColor"), backgroundColor);
    settings.setValue(keys.of("gridColor"), gridColor);
    settings.setValue(keys.of("cursorLineColor"), cursorLineColor);
    settings.setValue(keys.of("visibleInterval"), visibleInterval);
    settings.setValue(keys.of("dynamicGrid"), dynamicGrid);
    for (int i = 0; i < SeriesColorCount; ++i) {
        settings.setValue(keys.ofSeriesColor(i), seriesSettings.colors[i]);
    }
    settings.setValue(keys.of("defLineWidth"), seriesSettings.lineWidth);
    settings.setValue(keys.of("defPointsVisible"), seriesSettings.pointsVisible);
    settings.setValue(keys.of("defPointSize"), seriesSettings.pointsSize);
    settings.setValue(keys.of("autoRemoveEmptyChart"), autoRemoveEmptyChart);
    settings.setValue(keys.of("individualScale"), individualScale);
    settings.setValue(keys.of("autoScaleX"), autoScaleX);
    settings.setValue(keys.of("autoScaleY"), autoScaleY);
    if (!legendState.isEmpty()) {
        settings.setValue(keys.of("legendState"), legendState);
    }
    for (int panes = 1; panes <= MostKeptPanes; ++panes) {
        if (splitterState.contains(panes)) {
            settings.setValue(keys.ofSplitterState(panes), splitterState.value(panes));
        }
    }
}
