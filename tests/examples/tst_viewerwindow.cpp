#include "viewerwindow.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "support/boxanswer.h"
#include "support/quietplatform.h"
#include "views/chartwidget.h"

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QProgressDialog>
#include <QPushButton>
#include <QSplitter>
#include <QTemporaryDir>
#include <QtTest>
#include <QUndoStack>

#include <sys/stat.h>

namespace {

/// Shows a window without the platform's complaint about it.
void show(ViewerWindow &window)
{
    const QuietPlatform quiet;
    window.show();
}

StaticChartModel *modelOf(const ViewerWindow &window)
{
    return window.findChild<StaticChartModel *>();
}

/// What a window shows: the series of each pane, from top to bottom.
QString panesText(const ViewerWindow &window)
{
    const auto *splitter = window.findChild<QSplitter *>();
    QStringList panes;
    for (int i = 0; i < splitter->count(); ++i) {
        QStringList names;
        for (const AbstractChartSeries *series :
             qobject_cast<ChartWidget *>(splitter->widget(i))->seriesList()) {
            names.append(series->name());
        }
        panes.append(names.join('+'));
    }
    return panes.join('|');
}

QString axisText(const ChartAxis &axis)
{
    return QString("[%1,%2]").arg(axis.m_min, 0, 'g', 12).arg(axis.m_max, 0, 'g', 12);
}

} // namespace

class TestViewerWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void startsWithOneEmptyPane();
    void showsColumnsInPanes_data();
    void showsColumnsInPanes();
    void letsUserCombineAndSeparate();
    void fitsAxesToData();
    void showsMoreThanTenColumns();
    void replacesFormerFile();
    void keepsFormerFileWhenNextOneFails();
    void tellsFailureBySignalWhileHidden();
    void tellsFailureBySignalWithoutDialogs();
    void keepsFormerFileWhenCancelled();
    void survivesEndWhileLoading();
    void givesPlotsEqualHeights();
    void keepsHeightsThatUserHasChosen();
    void computesCurvesAnewWhenResized();

private:
    QString write(const QString &name, const QByteArray &text);
    bool open(ViewerWindow &window, const QString &fileName);

    QTemporaryDir m_folder;
};

void TestViewerWindow::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QString TestViewerWindow::write(const QString &name, const QByteArray &text)
{
    const QString path = m_folder.filePath(name);
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    return written ? path : QString();
}

bool TestViewerWindow::open(ViewerWindow &window, const QString &fileName)
{
    QSignalSpy opened(&window, SIGNAL(opened()));
    window.openFile(fileName);
    return opened.wait();
}

void TestViewerWindow::startsWithOneEmptyPane()
{
    const ViewerWindow window(ViewerWindow::AutomaticPanes);

    QCOMPARE(window.findChild<QSplitter *>()->count(), 1);
    QCOMPARE(panesText(window), QString());
    QVERIFY(!window.windowIcon().isNull());
}

void TestViewerWindow::showsColumnsInPanes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    const QByteArray one = "t,a\n1,2\n3,4\n";
    const QByteArray three = "t,a,b,c\n1,2,3,4\n5,6,7,8\n";
    QTest::newRow("automatic, one") << int(ViewerWindow::AutomaticPanes) << one << "a";
    QTest::newRow("automatic, three") << int(ViewerWindow::AutomaticPanes) << three << "a|b|c";
    QTest::newRow("separate, three") << int(ViewerWindow::SeparatePanes) << three << "a|b|c";
    QTest::newRow("combined, one") << int(ViewerWindow::CombinedPanes) << one << "a";
    QTest::newRow("combined, three") << int(ViewerWindow::CombinedPanes) << three << "a+b+c";
}

void TestViewerWindow::showsColumnsInPanes()
{
    QFETCH(int, mode);
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);

    ViewerWindow window{ViewerWindow::PaneMode(mode)};
    QVERIFY(open(window, write("file.csv", text)));
    QCOMPARE(panesText(window), expected);
    QCOMPARE(window.windowTitle(), "file.csv - " + QCoreApplication::applicationName());
}

void TestViewerWindow::letsUserCombineAndSeparate()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("three.csv", "t,a,b,c\n1,2,3,4\n")));

    modelOf(window)->m_singleModeAction->trigger();
    QCOMPARE(panesText(window), QString("a+b+c"));
    modelOf(window)->m_multiModeAction->trigger();
    QCOMPARE(panesText(window), QString("a|b|c"));
}

void TestViewerWindow::fitsAxesToData()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("axes.csv", "t,a,b\n1,20,300\n2,25,310\n4,22,290\n")));

    const StaticChartModel &model = *modelOf(window);
    QCOMPARE(axisText(*model.m_axisX), QString("[1,4]"));
    QVERIFY(!model.m_axisX->m_dateTime);
    QCOMPARE(axisText(*model.m_series.at(0)->m_axisY), QString("[20,25]"));
    QCOMPARE(axisText(*model.m_series.at(1)->m_axisY), QString("[290,310]"));
}

void TestViewerWindow::showsMoreThanTenColumns()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("many.csv", "0,1,2,3,4,5,6,7,8,9,10,11,12\n")));

    QCOMPARE(modelOf(window)->m_series.size(), 12);
    QCOMPARE(modelOf(window)->m_charts.size(), 12);
}

void TestViewerWindow::replacesFormerFile()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("numbers.csv", "t,a,b\n1,20,300\n2,25,310\n")));
    StaticChartModel &model = *modelOf(window);
    model.m_axisX->m_zoomed = true;
    QVERIFY(
        open(window, write("dates.csv", "t,c\n1970-01-01T00:00:05Z,1\n1970-01-01T00:00:09Z,3\n")));

    QCOMPARE(panesText(window), QString("c"));
    QVERIFY(model.m_axisX->m_dateTime);
    QCOMPARE(axisText(*model.m_axisX), QString("[5,9]"));
    QCOMPARE(axisText(*model.m_series.constFirst()->m_axisY), QString("[1,3]"));
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestViewerWindow::keepsFormerFileWhenNextOneFails()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("good.csv", "t,a,b\n1,2,3\n")));
    show(window);
    const QString title = window.windowTitle();
    const QString bad = write("bad.csv", "t,a\n1,x\n");
    const QSignalSpy failed(&window, SIGNAL(failed(QString)));
    BoxAnswer answer(QMessageBox::Ok);

    window.openFile(bad);
    QTRY_COMPARE(answer.m_text, bad + ":2:2: \"x\" is no number");
    QCOMPARE(failed.count(), 0);
    QCOMPARE(panesText(window), QString("a|b"));
    QCOMPARE(window.windowTitle(), title);

    QCOMPARE(answer.m_parent, &window);

    // And the window is ready for the next one.
    QVERIFY(open(window, write("next.csv", "t,c\n1,2\n")));
    QCOMPARE(panesText(window), QString("c"));
}

void TestViewerWindow::tellsFailureBySignalWhileHidden()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QSignalSpy failed(&window, SIGNAL(failed(QString)));
    const QString missing = m_folder.filePath("missing.csv");

    window.openFile(missing);
    QVERIFY(failed.wait());
    QCOMPARE(failed.constFirst().constFirst().toString(), missing + ": No such file or directory");
}

void TestViewerWindow::tellsFailureBySignalWithoutDialogs()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    window.setDialogsShown(false);
    show(window);
    QSignalSpy failed(&window, SIGNAL(failed(QString)));

    window.openFile(m_folder.path());
    QVERIFY(!window.findChild<QProgressDialog *>());
    QVERIFY(failed.wait());
    QCOMPARE(failed.constFirst().constFirst().toString(),
             m_folder.path() + ": file to open is a directory");
}

void TestViewerWindow::keepsFormerFileWhenCancelled()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("former.csv", "t,a\n1,2\n")));

    // A pipe without data holds the load up until the user has pressed the button.
    const QString pipe = m_folder.filePath("pipe.csv");
    QCOMPARE(mkfifo(pipe.toLocal8Bit().constData(), S_IRUSR | S_IWUSR), 0);
    QFile writer(pipe);
    QSignalSpy cancelled(&window, SIGNAL(cancelled()));
    window.openFile(pipe);
    auto *dialog = window.findChild<QProgressDialog *>();
    QVERIFY(dialog);
    dialog->findChild<QPushButton *>()->click();
    QVERIFY(writer.open(QIODevice::WriteOnly));
    writer.write("t,b\n1,2\n");
    writer.close();

    QVERIFY(cancelled.wait());
    QCOMPARE(panesText(window), QString("a"));
    QVERIFY(!window.findChild<QProgressDialog *>());
}

void TestViewerWindow::survivesEndWhileLoading()
{
    const QString fileName = write("long.csv", QByteArray("1,2,3,4\n").repeated(500000));
    for (int i = 0; i < 5; ++i) {
        ViewerWindow window(ViewerWindow::AutomaticPanes);
        window.openFile(fileName);
    }
}

void TestViewerWindow::givesPlotsEqualHeights()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    window.resize(600, 700);
    QVERIFY(open(window, write("plots.csv", "t,a,b,c,d\n1,2,3,4,5\n2,4,5,6,7\n")));
    window.grab(); // lays out

    double lowest = window.height();
    double highest = 0.0;
    for (const ChartWidget *chart : qAsConst(modelOf(window)->m_charts)) {
        const double height = chart->fullChartRect(QRectF()).height();
        lowest = qMin(lowest, height);
        highest = qMax(highest, height);
    }
    QVERIFY2(lowest >= 40.0 && highest - lowest <= 1.0,
             qPrintable(QString("from %1 to %2").arg(lowest).arg(highest)));
}

void TestViewerWindow::keepsHeightsThatUserHasChosen()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    window.resize(600, 700);
    show(window);
    QVERIFY(open(window, write("drag.csv", "t,a,b\n1,2,3\n2,4,5\n")));
    QCoreApplication::processEvents(); // lays out

    const auto *splitter = window.findChild<QSplitter *>();
    const int before = splitter->widget(0)->height();
    QWidget *handle = splitter->handle(1);
    const QPoint from(50, 1);
    const QPoint to(50, 101);
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent drag(QEvent::MouseMove, to, handle->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(handle, &drag);
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, to);
    const int dragged = splitter->widget(0)->height();
    QVERIFY2(dragged >= before + 50, qPrintable(QString("%1 to %2").arg(before).arg(dragged)));
    window.resize(700, 700);
    QCOMPARE(splitter->widget(0)->height(), dragged);
}

void TestViewerWindow::computesCurvesAnewWhenResized()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    window.resize(600, 400);
    show(window);
    QVERIFY(open(window, write("resize.csv", "t,a\n0,0\n10,1\n")));
    QTRY_VERIFY(!modelOf(window)->updatePointsInProgress());

    QSignalSpy ready(&window, SIGNAL(chartsReady()));
    window.resize(900, 400);
    QVERIFY(ready.wait());
    const AbstractChartSeries &series = *modelOf(window)->m_series.constFirst();
    const QRectF plot = series.m_chart->chartRect(QRectF());
    QVERIFY(plot.width() > 600.0);
    QCOMPARE(series.map(QPointF(10.0, 0.0)).x(), plot.x() + plot.width());
}

QTEST_MAIN(TestViewerWindow)
#include "tst_viewerwindow.moc"
