#include "isodatetime.h"

#include <QDateTime>
#include <QRandomGenerator>
#include <QtTest>

#include <ctime>

namespace {

// Central European time by rule, so that no time zone database is needed.
const char CentralEurope[] = "CET-1CEST,M3.5.0,M10.5.0/3";

/// From 2 to 3 on the last Sundays of March and October 2026.
bool isHourOfChange(const QDateTime &clock)
{
    const QDate spring(2026, 3, 29);
    const QDate autumn(2026, 10, 25);
    return (clock.date() == spring || clock.date() == autumn) && clock.time().hour() == 2;
}

/// The seconds as text, or "none".
QString parsed(IsoDateTime &isoDateTime, const QByteArray &text)
{
    double seconds = 0.0;
    const bool ok = isoDateTime.parse(text.constBegin(), text.constEnd(), seconds);
    return ok ? QString::number(seconds, 'f', 3) : QStringLiteral("none");
}

} // namespace

class TestIsoDateTime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void readsDateAndTime_data();
    void readsDateAndTime();
    void refusesWhatIsNoDate_data();
    void refusesWhatIsNoDate();
    void readsLocalTimeLikeQDateTime();
};

void TestIsoDateTime::initTestCase()
{
    qputenv("TZ", CentralEurope);
    tzset();
}

void TestIsoDateTime::readsDateAndTime_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    // 1970-01-02 begins at 86400 in UTC, an hour earlier in Central Europe.
    QTest::newRow("date, local") << QByteArray("1970-01-02") << "82800.000";
    QTest::newRow("local") << QByteArray("1970-01-02T01:00:00") << "86400.000";
    QTest::newRow("local, before the epoch") << QByteArray("1970-01-01T00:00:01") << "-3599.000";
    QTest::newRow("local, in summer") << QByteArray("2026-07-01T02:00:00") << "1782864000.000";
    QTest::newRow("blank for T") << QByteArray("1970-01-02 01:00:00") << "86400.000";
    QTest::newRow("small t") << QByteArray("1970-01-02t01:00:00") << "86400.000";
    QTest::newRow("no seconds") << QByteArray("1970-01-02T01:02") << "86520.000";
    QTest::newRow("UTC") << QByteArray("1970-01-02T00:00:05Z") << "86405.000";
    QTest::newRow("UTC, small z") << QByteArray("1970-01-02T00:00:05z") << "86405.000";
    QTest::newRow("UTC, no seconds") << QByteArray("1970-01-02T00:01Z") << "86460.000";
    QTest::newRow("fraction") << QByteArray("1970-01-02T00:00:05.25Z") << "86405.250";
    QTest::newRow("fraction behind a comma") << QByteArray("1970-01-02T00:00:05,5Z") << "86405.500";
    QTest::newRow("long fraction")
        << QByteArray("1970-01-02T00:00:05.12500000000000000000001Z") << "86405.125";
    QTest::newRow("fraction, local") << QByteArray("1970-01-02T01:00:00.5") << "86400.500";
    QTest::newRow("east") << QByteArray("1970-01-02T02:30:00+02:30") << "86400.000";
    QTest::newRow("west") << QByteArray("1970-01-01T19:00:00-05:00") << "86400.000";
    QTest::newRow("zone without colon") << QByteArray("1970-01-02T02:30:00+0230") << "86400.000";
    QTest::newRow("zone of hours") << QByteArray("1970-01-02T02:00:00+02") << "86400.000";
    QTest::newRow("fraction and zone") << QByteArray("1970-01-02 02:00:00.5+02:00") << "86400.500";
    QTest::newRow("leap day") << QByteArray("1972-02-29T00:00:00Z") << "68169600.000";
}

void TestIsoDateTime::readsDateAndTime()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);

    IsoDateTime isoDateTime;
    QCOMPARE(parsed(isoDateTime, text), expected);
}

void TestIsoDateTime::refusesWhatIsNoDate_data()
{
    QTest::addColumn<QByteArray>("text");

    const QList<QByteArray> texts{"",
                                  "1",
                                  "2026",
                                  "2026-11",
                                  "2026-11-2",
                                  "2026-13-01",
                                  "2026-02-29",
                                  "20261121",
                                  "21.11.2026",
                                  "2026-11-21T",
                                  "2026-11-21T14",
                                  "2026-11-21T14:3",
                                  "2026-11-21T24:00:00",
                                  "2026-11-21T14:60:00",
                                  "2026-11-21T14:34:60",
                                  "2026-11-21T14:34:27.",
                                  "2026-11-21T14:34:27.Z",
                                  "2026-11-21T14:34:27+1",
                                  "2026-11-21T14:34:27+01:",
                                  "2026-11-21T14:34:27+24:00",
                                  "2026-11-21T14:34:27+01:60",
                                  "2026-11-21T14:34:27ZZ",
                                  "2026-11-21T14:34:27 x",
                                  "2026-11-21Z",
                                  "2026-11-21X14:34:27",
                                  "+026-11-21"};
    for (const QByteArray &text : texts) {
        QTest::newRow(text.isEmpty() ? "nothing" : text.constData()) << text;
    }
}

void TestIsoDateTime::refusesWhatIsNoDate()
{
    QFETCH(QByteArray, text);

    IsoDateTime isoDateTime;
    QCOMPARE(parsed(isoDateTime, text), QString("none"));
}

void TestIsoDateTime::readsLocalTimeLikeQDateTime()
{
    // Walks by up to 20 minutes, so that most times fall into an hour that is remembered, through
    // a year with both changes of the clock, and now and then jumps.
    IsoDateTime isoDateTime;
    QRandomGenerator random(20261121);
    const QDateTime start(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);
    QDateTime clock = start;
    constexpr int Day = 86400;
    for (int i = 0; i < 60000; ++i) {
        const bool jump = random.bounded(100) == 0;
        clock = jump ? start.addSecs(random.bounded(365 * Day))
                     : clock.addSecs(random.bounded(20 * 60));
        // The digits of a local clock, some of which the spring change leaves out.
        const QDateTime local(clock.date(), clock.time(), Qt::LocalTime);
        const QByteArray text = clock.toString("yyyy-MM-ddTHH:mm:ss").toLatin1();
        const double expected = double(local.toSecsSinceEpoch());
        double got = 0.0;
        QVERIFY2(isoDateTime.parse(text.constBegin(), text.constEnd(), got), text);
        // The system may answer either way for the hours that a change skips or repeats.
        const bool changing = isHourOfChange(clock);
        QVERIFY2(got == expected || (changing && qAbs(got - expected) == 3600.0),
                 text + ": got " + QByteArray::number(got, 'f', 1));
    }
}

QTEST_MAIN(TestIsoDateTime)
#include "tst_isodatetime.moc"
