#include "settings/seriessettings.h"

#include <algorithm>
#include <iterator>

// Spelled as RGB and not as Qt::GlobalColor: this constructor is constexpr, so the array is right
// before any static object of another file asks for it.
QColor defSeriesColors[SeriesColorCount] = {
    QColor(255, 0, 0),   QColor(0, 255, 0),   QColor(0, 0, 255), QColor(0, 255, 255),
    QColor(255, 0, 255), QColor(128, 0, 0),   QColor(0, 128, 0), QColor(0, 0, 128),
    QColor(0, 128, 128), QColor(128, 0, 128),
};

SeriesSettings::SeriesSettings()
    : lineWidth(defaultLineWidth())
    , pointsVisible(defaultPointsVisible())
    , pointsSize(defaultPointsSize())
{
    std::copy(std::begin(defSeriesColors), std::end(defSeriesColors), std::begin(colors));
}

int SeriesSettings::defaultLineWidth()
{
    return 1;
}

bool SeriesSettings::defaultPointsVisible()
{
    return false;
}

int SeriesSettings::defaultPointsSize()
{
    return 5;
}
