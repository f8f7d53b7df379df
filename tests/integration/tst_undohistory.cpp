#include "integration/chartwalk.h"

#include <QtTest>

namespace {

/// Steps that change series, and scale steps that change some axes by hand.
class UndoWalk : public ChartWalk
{
public:
    explicit UndoWalk(quint32 seed)
        : ChartWalk(seed)
    {
        addChoice(12, [this] { return add(); });
        addChoice(8, [this] { return remove(); });
        addChoice(1, [this] { return removeAll(); });
        addChoice(20, [this] { return enter(); });
        addChoice(3, [this] { return clear(); });
        addChoice(14, [this] { return pushStep(); });
        addChoice(18, [this] { return undo(); });
        addChoice(14, [this] { return redo(); });
        addChoice(2, [this] { return undoZoom(); });
        addChoice(3, [this] { return configure(m_random.bounded(2) == 0); });
        addChoice(2, [this] { return switchMode(); });
        addChoice(3, [this] { return handleEvents(); });
    }

    QString paneFault() const override
    {
        const QString fault = ChartWalk::paneFault();
        const bool isEmptyLeft = fault.isEmpty() && m_model->hasEmptyCharts();
        return isEmptyLeft ? QString("an empty pane is left") : fault;
    }

private:
    /// A step of the user: some axes change by hand, or none, which is to be merged.
    QString pushStep()
    {
        auto *command = new ScaleCommand(m_model.get());
        const PlainCommand plain = m_plain.newCommand(PlainCommand::Scale);
        QString changed;
        if (m_random.bounded(2) == 0) {
            zoom(*m_model->m_axisX, m_plain.x);
            changed += " X";
        }
        if (m_random.bounded(2) == 0 && !m_model->m_series.isEmpty()) {
            const int row = anyRow();
            zoom(*m_model->m_series.at(row)->m_axisY, m_plain.series[m_plain.rows.at(row)].axis);
            changed += QString(" row %1").arg(row);
        }
        m_model->m_undoStack->push(command);
        m_plain.push(plain);
        return "step on" + changed;
    }

    void zoom(ChartAxis &axis, PlainAxis &plain)
    {
        const double a = anyNumber();
        const double b = anyNumber();
        axis.assignRange(a, b);
        axis.m_zoomed = true;
        plain.set(a, b);
        plain.zoomed = true;
    }

    QString undoZoom()
    {
        m_model->undoZoom();
        m_plain.undoZoom();
        return "undo zoom";
    }

    /// Lets calculations end and others start.
    QString handleEvents()
    {
        QCoreApplication::processEvents();
        return "handle events";
    }
};

} // namespace

class TestUndoHistory : public QObject
{
    Q_OBJECT

private slots:
    void walksWithItsPlainTwin_data();
    void walksWithItsPlainTwin();
};

void TestUndoHistory::walksWithItsPlainTwin_data()
{
    QTest::addColumn<quint32>("seed");

    for (quint32 seed = 1; seed <= 6; ++seed) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

void TestUndoHistory::walksWithItsPlainTwin()
{
    constexpr int Steps = 1000;
    QFETCH(quint32, seed);
    UndoWalk walk(seed);

    QVERIFY(walksWell(walk, Steps));

    walk.finish();
    QCOMPARE(walk.deadText(), walk.allText());
}

QTEST_MAIN(TestUndoHistory)
#include "tst_undohistory.moc"
