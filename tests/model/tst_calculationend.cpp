#include "model/abstractchartmodel.h"

#include "support/gatedseries.h"
#include "support/modelsetup.h"
#include "support/paintcounter.h"
#include "undo/scalecommand.h"

#include <QSignalSpy>
#include <QtTest>
#include <QUndoStack>

class TestCalculationEnd : public QObject
{
    Q_OBJECT

private slots:
    void calculationEndsWithTheLastSeries();
    void endAppliesParkedZoomsAndPushesWaitingCommandsInOrder();
    void endRepaintsThePanes();
    void requestsDuringACalculationLeadToOneMore();
    void lateReportOfAnEarlierRunIsIgnored();
    void removalOfTheLastRunningSeriesEndsTheCalculation();
    void endWithoutSenderClosesAnIdleModel();
};

void TestCalculationEnd::calculationEndsWithTheLastSeries()
{
    OpenModel model;
    auto *a = addSeries<GatedSeries>(model, "a", {0.0, 8.0});
    auto *b = addSeries<GatedSeries>(model, "b", {0.0, 8.0});
    QVERIFY(settled(model));
    a->closeGate();
    b->closeGate();
    QSignalSpy finishedA(a, SIGNAL(updatePointsFinished()));

    model.updateCharts();
    QVERIFY(a->waitForWorker());
    QVERIFY(b->waitForWorker());
    QCOMPARE(model.m_updatingSeries, (QList<AbstractChartSeries *>{a, b}));
    model.m_pendingCommands.append(new ScaleCommand(&model));

    a->openGate();
    QVERIFY(finishedA.wait());
    QCOMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{b});
    QCOMPARE(model.m_undoStack->count(), 0);

    b->openGate();
    QVERIFY(settled(model));
    QCOMPARE(model.m_undoStack->count(), 1);
}

void TestCalculationEnd::endAppliesParkedZoomsAndPushesWaitingCommandsInOrder()
{
    OpenModel model;
    auto *a = addSeries<GatedSeries>(model, "a", {0.0, 8.0});
    addSeries<GatedSeries>(model, "b", {0.0, 8.0});
    QVERIFY(settled(model));
    a->closeGate();
    model.updateCharts();
    QVERIFY(a->waitForWorker());
    const QRectF plot = model.mainChart()->chartRect(QRectF());
    const QTransform matrix = a->m_matrix;

    // The commands all end in one state; these three stay apart all the same.
    class Unmerged : public ScaleCommand
    {
    public:
        using ScaleCommand::ScaleCommand;
        int id() const override { return -1; }
    };
    for (const char *text : {"first", "second", "third"}) {
        auto *command = new Unmerged(&model);
        command->setText(text);
        model.m_pendingCommands.append(command);
        model.m_pendingCommands.append(nullptr);
    }
    // Twice the left half: a quarter is left.
    model.changeZoom(plot, partOf(plot, 0.0, 0.0, 0.5, 1.0), true);
    model.changeZoom(plot, partOf(plot, 0.0, 0.0, 0.5, 1.0), true);
    QCOMPARE(axesText(model), QString("[0,1] [0,100] [0,100]"));
    QCOMPARE(a->m_matrix, matrix);
    QVERIFY(model.m_chartsUpdatePending);
    QCOMPARE(model.m_undoStack->count(), 0);

    a->openGate();
    QVERIFY(settled(model));

    QVERIFY(hasRange(*model.m_axisX, 0.0, 0.25));
    QVERIFY(isNear(a->m_matrix.m11(), matrix.m11() * 4.0));
    QVERIFY(model.m_pendingCommands.isEmpty());
    QStringList texts;
    for (int i = 0; i < model.m_undoStack->count(); ++i) {
        texts.append(model.m_undoStack->text(i));
        const auto &command = dynamic_cast<const ScaleCommand &>(*model.m_undoStack->command(i));
        QVERIFY(isNear(command.m_newParamsX.max, 0.25));
        QCOMPARE(command.m_oldParamsX.max, 1.0);
    }
    QCOMPARE(texts.join(' '), QString("first second third"));
    model.m_undoStack->undo();
    QCOMPARE(axesText(model), QString("[0,1] [0,100] [0,100]"));
}

void TestCalculationEnd::endRepaintsThePanes()
{
    OpenModel model;
    addSeries(model, "a", {0.0, 8.0});
    PaintCounter counter(model.mainChart());
    model.mainChart()->show();
    QTRY_VERIFY(counter.m_paints > 0);
    QVERIFY(settled(model));
    QCoreApplication::processEvents();
    model.m_charts.append(nullptr); // Passed over.
    counter.m_paints = 0;

    // A pane waits in its painting for a worker that calculates, so this one is let through.
    model.updateCharts();
    QVERIFY(settled(model));
    QTRY_VERIFY(counter.m_paints > 0);
    model.m_charts.removeLast();
}

void TestCalculationEnd::requestsDuringACalculationLeadToOneMore()
{
    OpenModel model;
    auto *series = addSeries<GatedSeries>(model, "a", {0.0, 8.0});
    QVERIFY(settled(model));
    series->closeGate();
    QSignalSpy finished(series, SIGNAL(updatePointsFinished()));
    model.updateCharts();
    QVERIFY(series->waitForWorker());

    for (int i = 0; i < 3; ++i) {
        model.updateCharts();
    }
    QVERIFY(model.m_chartsUpdatePending);
    QCOMPARE(model.m_updatingSeries.size(), 1);

    series->openGate();
    QVERIFY(finished.wait());
    QVERIFY(!model.m_chartsUpdatePending);
    QVERIFY(model.updatePointsInProgress()); // The one more.
    QVERIFY(settled(model));
    QCoreApplication::processEvents();
    QCOMPARE(finished.count(), 2);
    QVERIFY(!model.updatePointsInProgress());
}

void TestCalculationEnd::lateReportOfAnEarlierRunIsIgnored()
{
    OpenModel model;
    auto *series = addSeries<GatedSeries>(model, "a", {0.0, 8.0});
    QVERIFY(settled(model));
    series->closeGate();
    model.updateCharts();
    QVERIFY(series->waitForWorker());

    emit series->updatePointsFinished();
    QVERIFY(model.updatePointsInProgress());

    series->openGate();
    QVERIFY(settled(model));
}

void TestCalculationEnd::removalOfTheLastRunningSeriesEndsTheCalculation()
{
    OpenModel model;
    auto *a = addSeries<GatedSeries>(model, "a", {0.0, 8.0});
    auto *b = addSeries<GatedSeries>(model, "b", {0.0, 8.0});
    QVERIFY(settled(model));
    a->closeGate();
    QSignalSpy finishedB(b, SIGNAL(updatePointsFinished()));
    model.updateCharts();
    QVERIFY(a->waitForWorker());
    QVERIFY(finishedB.wait());
    QCOMPARE(model.m_updatingSeries, QList<AbstractChartSeries *>{a});
    model.m_pendingCommands.append(new ScaleCommand(&model));

    // No signal of the removed series counts any more.
    a->openGate();
    model.completeRemoveSeries(a);
    delete a;

    QTRY_COMPARE(model.m_undoStack->count(), 1);
    QVERIFY(settled(model));
    QVERIFY(!model.m_chartsUpdatePending);
}

void TestCalculationEnd::endWithoutSenderClosesAnIdleModel()
{
    OpenModel model;
    model.m_pendingCommands.append(new ScaleCommand(&model));
    model.m_chartsUpdatePending = true;

    model.slotUpdatePointsCompleted();

    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(!model.m_chartsUpdatePending);
}

QTEST_MAIN(TestCalculationEnd)
#include "tst_calculationend.moc"
