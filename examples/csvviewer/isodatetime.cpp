#include "isodatetime.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

namespace {

constexpr qint64 SecondsOfMinute = 60;
constexpr qint64 SecondsOfHour = 3600;
constexpr qint64 SecondsOfDay = 86400;
constexpr qint64 JulianDayOfEpoch = 2440588; // 1970-01-01
constexpr double ExactPowerOfTen = 1e15;     // below it all integers are exact

/// Walks through a text. Each operation either takes what it names, or takes nothing and says so.
class Scanner
{
public:
    Scanner(const char *begin, const char *end)
        : m_next(begin)
        , m_end(end)
    {
    }

    bool atEnd() const { return m_next == m_end; }

    bool takeOneOf(char a, char b)
    {
        if (atEnd() || (*m_next != a && *m_next != b)) {
            return false;
        }
        ++m_next;
        return true;
    }
    bool take(char c) { return takeOneOf(c, c); }

    /// Exactly \p digits digits.
    bool takeNumber(int digits, int &number)
    {
        if (m_end - m_next < digits) {
            return false;
        }
        int value = 0;
        for (int i = 0; i < digits; ++i) {
            if (!isDigit(m_next[i])) {
                return false;
            }
            value = value * 10 + (m_next[i] - '0');
        }
        m_next += digits;
        number = value;
        return true;
    }

    /// At least one digit, as what stands behind a decimal mark.
    bool takeFraction(double &fraction)
    {
        double numerator = 0.0;
        double denominator = 1.0;
        const char *const begin = m_next;
        for (; !atEnd() && isDigit(*m_next); ++m_next) {
            // More digits than a double holds change nothing.
            if (denominator < ExactPowerOfTen) {
                numerator = numerator * 10.0 + (*m_next - '0');
                denominator *= 10.0;
            }
        }
        fraction = numerator / denominator;
        return m_next != begin;
    }

private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    const char *m_next;
    const char *m_end;
};

bool takeDays(Scanner &scanner, qint64 &days)
{
    int year = 0;
    int month = 0;
    int day = 0;
    if (!scanner.takeNumber(4, year) || !scanner.take('-') || !scanner.takeNumber(2, month) ||
        !scanner.take('-') || !scanner.takeNumber(2, day)) {
        return false;
    }
    const QDate date(year, month, day);
    if (!date.isValid()) {
        return false;
    }
    days = date.toJulianDay() - JulianDayOfEpoch;
    return true;
}

bool takeTime(Scanner &scanner, qint64 &secondOfDay, double &fraction)
{
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!scanner.takeNumber(2, hour) || !scanner.take(':') || !scanner.takeNumber(2, minute)) {
        return false;
    }
    if (scanner.take(':')) {
        if (!scanner.takeNumber(2, second)) {
            return false;
        }
        if (scanner.takeOneOf('.', ',') && !scanner.takeFraction(fraction)) {
            return false;
        }
    }
    secondOfDay = hour * SecondsOfHour + minute * SecondsOfMinute + second;
    return hour < 24 && minute < 60 && second < 60;
}

/// Takes a zone, which must be there; \p offset is how far its clocks are ahead of UTC.
bool takeZone(Scanner &scanner, qint64 &offset)
{
    if (scanner.takeOneOf('Z', 'z')) {
        offset = 0;
        return true;
    }
    const bool west = scanner.take('-');
    if (!west && !scanner.take('+')) {
        return false;
    }
    int hours = 0;
    int minutes = 0;
    if (!scanner.takeNumber(2, hours)) {
        return false;
    }
    const bool minutesMustFollow = scanner.take(':');
    if (!scanner.takeNumber(2, minutes) && minutesMustFollow) {
        return false;
    }
    offset = hours * SecondsOfHour + minutes * SecondsOfMinute;
    offset = west ? -offset : offset;
    return hours < 24 && minutes < 60;
}

/// \p localSeconds are the seconds from 1970-01-01T00:00 to the same time of a local clock.
qint64 askForEpoch(qint64 localSeconds)
{
    // Rounds down, also before 1970.
    const qint64 days = localSeconds / SecondsOfDay - (localSeconds % SecondsOfDay < 0 ? 1 : 0);
    const int secondOfDay = int(localSeconds - days * SecondsOfDay);
    const QDate date = QDate::fromJulianDay(days + JulianDayOfEpoch);
    const QTime time = QTime::fromMSecsSinceStartOfDay(secondOfDay * 1000);
    return QDateTime(date, time, Qt::LocalTime).toSecsSinceEpoch();
}

} // namespace

bool IsoDateTime::parse(const char *begin, const char *end, double &seconds)
{
    Scanner scanner(begin, end);
    qint64 days = 0;
    qint64 secondOfDay = 0;
    double fraction = 0.0;
    if (!takeDays(scanner, days)) {
        return false;
    }
    if (!scanner.atEnd()) {
        const bool separated = scanner.takeOneOf('T', 't') || scanner.take(' ');
        if (!separated || !takeTime(scanner, secondOfDay, fraction)) {
            return false;
        }
    }

    const qint64 clock = days * SecondsOfDay + secondOfDay;
    if (scanner.atEnd()) {
        seconds = double(localToEpoch(clock)) + fraction;
        return true;
    }
    qint64 offset = 0;
    if (!takeZone(scanner, offset) || !scanner.atEnd()) {
        return false;
    }
    seconds = double(clock - offset) + fraction;
    return true;
}

qint64 IsoDateTime::localToEpoch(qint64 localSeconds)
{
    const qint64 inHour = ((localSeconds % SecondsOfHour) + SecondsOfHour) % SecondsOfHour;
    const qint64 hour = (localSeconds - inHour) / SecondsOfHour;
    if (!m_hourKnown || hour != m_hour) {
        m_hourKnown = true;
        m_hour = hour;
        m_hourBegin = askForEpoch(hour * SecondsOfHour);
        m_hourRegular = askForEpoch((hour + 1) * SecondsOfHour) == m_hourBegin + SecondsOfHour;
    }
    return m_hourRegular ? m_hourBegin + inHour : askForEpoch(localSeconds);
}
