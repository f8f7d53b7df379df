#include "views/cursorvalue.h"

#include <QtTest>

#include <algorithm>

class TestCursorValue : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty();
    void sortsTheLowestOnTheScreenFirst();
    void doesNotOrderEqualPositions();
};

void TestCursorValue::startsEmpty()
{
    const CursorValue value;

    QVERIFY(value.text.isEmpty());
    QVERIFY(value.rect.isNull());
    QVERIFY(!value.frameColor.isValid());
    QVERIFY(!value.textColor.isValid());
    QCOMPARE(value.y, 0.0);
    QCOMPARE(value.pointY, 0.0);
}

void TestCursorValue::sortsTheLowestOnTheScreenFirst()
{
    QList<CursorValue> values;
    for (const int y : {10, 300, -5, 200}) {
        CursorValue value;
        value.y = y;
        values.append(value);
    }

    std::sort(values.begin(), values.end());

    QList<double> positions;
    for (const CursorValue &value : qAsConst(values)) {
        positions.append(value.y);
    }
    QCOMPARE(positions, (QList<double>{300.0, 200.0, 10.0, -5.0}));
}

void TestCursorValue::doesNotOrderEqualPositions()
{
    CursorValue a;
    CursorValue b;
    a.y = b.y = 7.0;
    b.text = "other";

    QVERIFY(!(a < b));
    QVERIFY(!(b < a));
}

QTEST_MAIN(TestCursorValue)
#include "tst_cursorvalue.moc"
