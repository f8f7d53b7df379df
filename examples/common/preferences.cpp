#include "common/preferences.h"

#include "settings/chartsettings.h"

#include <QPalette>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr int MiddleLightness = 128; // of 0 to 255: a window below it is dark

struct Colors
{
    QRgb background;
    QRgb grid; // stays behind the curves
    QRgb cursor;
    QRgb series[SeriesColorCount];
};

// The names and read-outs of a series are written in its colour too, on the plot, in the legend and
// on the window: each colour has a WCAG contrast ratio of at least 3:1 to black, #202020 and
// #303030, or to white and #efefef. Equal places have similar hues, so that the blue series is blue
// in both.
constexpr Colors DarkColors = {
    0xff101010,
    0xff606060,
    0xffffaa00,
    {0xffff6b6b, 0xff5fd75f, 0xff6fa8ff, 0xff45d5d5, 0xffe884e8, 0xffffb454, 0xffc5a3ff, 0xffd8d860,
     0xffd2a27c, 0xffb8c4d0},
};
constexpr Colors LightColors = {
    0xffffffff,
    0xffd8d8d8,
    0xffb35c00,
    {0xffd32020, 0xff1f8a2f, 0xff1560d0, 0xff008a93, 0xffc41fb0, 0xffc06000, 0xff6a30c0, 0xff757800,
     0xff6e3b1f, 0xff56626e},
};

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < MiddleLightness;
}

} // namespace

void chooseColors(ChartSettings &settings, const QPalette &palette)
{
    const Colors &colors = isDark(palette) ? DarkColors : LightColors;
    settings.backgroundColor = QColor(colors.background);
    settings.gridColor = QColor(colors.grid);
    settings.cursorLineColor = QColor(colors.cursor);
    std::copy(std::begin(colors.series), std::end(colors.series), settings.seriesSettings.colors);
}

void copyPreferences(const ChartSettings &from, ChartSettings &to)
{
    ChartSettings copy = from;
    copy.organization = to.organization;
    copy.application = to.application;
    copy.legendState = to.legendState;
    copy.splitterState = to.splitterState;
    to = std::move(copy);
}
