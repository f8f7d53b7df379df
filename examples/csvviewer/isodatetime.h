#pragma once

#include <QtGlobal>

/**
 * Reads dates and times in ISO form into seconds since the epoch.
 *
 * "2026-11-21", "2026-11-21T14:34" and "2026-11-21T14:34:27.5", with a blank in place of the T, a
 * comma in place of the point, and a zone behind a time: "Z", "+01", "+0130" or "+01:30". A time
 * without a zone is local time; a date alone is its first second. An hour that the end of summer
 * time repeats cannot be told from its twin: it counts as one of the two.
 *
 * Remembers the last local hour, because asking for the local zone costs far more than the rest.
 * One object serves one thread.
 */
class IsoDateTime
{
public:
    /// Reads all of the text from \p begin to \p end. Returns whether it is such a date; \p seconds
    /// is set only then.
    bool parse(const char *begin, const char *end, double &seconds);

private:
    qint64 localToEpoch(qint64 localSeconds);

    qint64 m_hour = 0;      ///< Local hours since the epoch; means nothing while not known.
    qint64 m_hourBegin = 0; ///< Its first second since the epoch.
    bool m_hourKnown = false;
    bool m_hourRegular = false; ///< The next hour begins 3600 seconds later: the zone stays.
};
