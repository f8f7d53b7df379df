#include "axes/chartaxis.h"

#include "series/abstractchartseries.h"

#include <QPainter>
#include <QPalette>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace {

constexpr double MinimumSpan = 1e-9; // a zoom in ends at this span
constexpr double MaximumSpan = 1e9;  // and a zoom out at this one

constexpr double MaximumIntervals = 10.0;
constexpr double MinimumIntervals = 2.0; // with fewer, the step is divided once more

constexpr double Minute = 60.0; // seconds
constexpr double Hour = 3600.0;

constexpr int GridPrecision = 0; // decimals of a tick label whose step is 1 or more

// From here on a quotient of doubles has no fraction that could be rounded away.
constexpr double WholeNumbersOnly = 4503599627370496.0; // 2^52

double numericStep(double span)
{
    double step = span >= 1.0 ? 1.0 : 0.1;
    double intervals = span / step;
    while (intervals > MaximumIntervals) {
        step *= 10.0;
        intervals = span / step;
    }
    while (1.0 > intervals) {
        step /= 10.0;
        intervals = span / step;
    }
    return MinimumIntervals > intervals ? step / 5.0 : step;
}

// The smallest multiple of unit, 1, 60 or 3600, that cuts span into ten intervals at most; the same
// as a walk over the multiples finds by asking for each whether span / multiple still exceeds ten.
// Both quotients are rounded, yet they agree: a double above 10 * n * unit exceeds it by more than
// 2^-53 of itself, which is more than half of the last bit of ten, and, with these units, also
// moves the quotient by 0.8 of the last bit of n or more, so neither is rounded down.
double smallestMultiple(double span, double unit)
{
    return std::max(1.0, std::ceil(span / (MaximumIntervals * unit))) * unit;
}

double dateTimeStep(double span)
{
    if (Minute > span) {
        return smallestMultiple(span, 1.0);
    }
    const double step = smallestMultiple(span, Hour > span ? Minute : Hour);
    return MinimumIntervals > span / step ? step / 3.0 : step;
}

} // namespace

bool ChartAxis::canZoomIn() const
{
    return m_max - m_min > MinimumSpan;
}

bool ChartAxis::canZoomOut() const
{
    return m_max - m_min < MaximumSpan;
}

double ChartAxis::gridStep() const
{
    const double span = m_max - m_min;
    if (!std::isfinite(span) || span <= 0.0) {
        return 0.0;
    }
    return m_dateTime ? dateTimeStep(span) : numericStep(span);
}

void ChartAxis::assignRange(double a, double b)
{
    const double lower = a < b ? a : b;
    const double upper = a < b ? b : a;
    if (lower == m_min && upper == m_max) {
        return;
    }
    m_min = lower;
    m_max = upper;
    recalculateGridValues();
}

double ChartAxis::firstGridValue(double (*rounding)(double)) const
{
    const double quotient = m_min / m_step;
    const bool isWhole = std::abs(quotient) >= WholeNumbersOnly;
    return (isWhole ? quotient : rounding(quotient)) * m_step;
}

double ChartAxis::appendGridValues(double first)
{
    // Multiplied and not added up, so that the error of the step does not add up either.
    double value = first;
    for (int i = 1; m_max >= value; ++i) {
        m_gridValues.append(value);
        value = first + i * m_step;
    }
    return value;
}

ChartAxis::Label ChartAxis::measuredLabel(double value, const QPainter &painter) const
{
    Label label;
    valueTextAndRect(value, painter, label.text, label.box, GridPrecision);
    return label;
}

QPointF ChartAxis::devicePosition(const AbstractChartSeries &series, double value,
                                  const QTransform &transform)
{
    const QPointF position = series.map(QPointF(value, value));
    return transform.type() == QTransform::TxNone ? position : transform.map(position);
}

QPen ChartAxis::gridPen(const QPalette &palette)
{
    const QColor color = palette.brush(QPalette::Current, QPalette::AlternateBase).color();
    return QPen(QBrush(color, Qt::SolidPattern), 0, Qt::DotLine, Qt::SquareCap, Qt::BevelJoin);
}
