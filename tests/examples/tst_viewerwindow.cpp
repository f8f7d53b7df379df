#include "viewerwindow.h"

#include "recentfiles.h"

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "common/chartoutput.h"
#include "model/staticchartmodel.h"
#include "series/abstractchartseries.h"
#include "support/boxanswer.h"
#include "support/quietplatform.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QProgressDialog>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>
#include <QUndoStack>
#include <QUrl>

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
    const MultiChart &chart = window.chart();
    QStringList panes;
    for (int i = 0; i < chart.count() - 1; ++i) { // the last one is the legend
        QStringList names;
        for (const AbstractChartSeries *series :
             qobject_cast<ChartWidget *>(chart.widget(i))->seriesList()) {
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
    void init();
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
    void reloadsGrownFileWithZoomAndStyle();
    void replacesCurvesWhenReloadedFileHasOthers_data();
    void replacesCurvesWhenReloadedFileHasOthers();
    void reloadsOnlyWhatIsOpen();
    void keepsOpenFileWhenReloadFails();
    void remembersFilesThatCouldBeRead();
    void opensFileOfRecentOnes();
    void opensDroppedFile();
    void refusesDropWithoutLocalFile_data();
    void refusesDropWithoutLocalFile();
    void suggestsNamesAfterFile();

private:
    QString write(const QString &name, const QByteArray &text);
    bool open(ViewerWindow &window, const QString &fileName);

    QTemporaryDir m_folder;
};

void TestViewerWindow::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QCoreApplication::setOrganizationName("QUARVChart5 tests"); // without one nothing is kept
}

void TestViewerWindow::init()
{
    QSettings().clear();
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

    QCOMPARE(window.chart().count(), 2); // and the legend
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
    show(window);

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

    const MultiChart &chart = window.chart();
    const int before = chart.sizes().constFirst();
    QWidget *handle = chart.handle(1);
    const QPoint from(50, 1);
    const QPoint to(50, 101);
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent drag(QEvent::MouseMove, to, handle->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(handle, &drag);
    QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, to);
    const int dragged = chart.sizes().constFirst();
    QVERIFY2(dragged >= before + 50, qPrintable(QString("%1 to %2").arg(before).arg(dragged)));
    window.resize(700, 700);
    QCOMPARE(chart.sizes().constFirst(), dragged);
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

void TestViewerWindow::reloadsGrownFileWithZoomAndStyle()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    const QString file = write("growing.csv", "t,a,b\n0,1,2\n10,3,4\n");
    QVERIFY(open(window, file));
    StaticChartModel &model = *modelOf(window);
    AbstractChartSeries *first = model.m_series.constFirst();
    first->m_lineWidth = 3;
    first->m_customized = true;
    model.m_axisX->assignRange(2.0, 4.0);
    model.m_axisX->m_zoomed = true;

    write("growing.csv", "t,a,b\n0,1,2\n10,3,4\n20,9,6\n");
    QSignalSpy opened(&window, SIGNAL(opened()));
    window.slotReload();
    QVERIFY(opened.wait());

    QCOMPARE(model.m_series.constFirst(), first);
    QCOMPARE(first->m_lineWidth, 3);
    QCOMPARE(first->m_values.size(), 3);
    QCOMPARE(axisText(*first->m_axisY), QString("[1,9]"));
    QCOMPARE(axisText(*model.m_axisX), QString("[2,4]"));
    model.undoZoom();
    QCOMPARE(axisText(*model.m_axisX), QString("[0,20]"));
    QCOMPARE(panesText(window), QString("a|b"));
}

void TestViewerWindow::replacesCurvesWhenReloadedFileHasOthers_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("other name") << QByteArray("t,a,c\n0,1,2\n") << "a|c";
    QTest::newRow("one more") << QByteArray("t,a,b,c\n0,1,2,3\n") << "a|b|c";
    QTest::newRow("one less") << QByteArray("t,b\n0,2\n") << "b";
    QTest::newRow("more decimals") << QByteArray("t,a,b\n0,1.25,2\n") << "a|b";
    QTest::newRow("exponents") << QByteArray("t,a,b\n0,1e9,2\n") << "a|b";
    QTest::newRow("other X") << QByteArray("x,a,b\n0,1,2\n") << "a|b";
    QTest::newRow("dates") << QByteArray("t,a,b\n1970-01-01T00:00:05Z,1,2\n") << "a|b";
}

void TestViewerWindow::replacesCurvesWhenReloadedFileHasOthers()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);

    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("changing.csv", "t,a,b\n0,1,2\n")));
    const QPointer<AbstractChartSeries> first(modelOf(window)->m_series.constFirst());

    write("changing.csv", text);
    QSignalSpy opened(&window, SIGNAL(opened()));
    window.slotReload();
    QVERIFY(opened.wait());
    QVERIFY(!first);
    QCOMPARE(panesText(window), expected);
}

void TestViewerWindow::reloadsOnlyWhatIsOpen()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QSignalSpy opened(&window, SIGNAL(opened()));
    const QSignalSpy failed(&window, SIGNAL(failed(QString)));
    window.slotReload();
    QVERIFY(open(window, write("open.csv", "t,a\n1,2\n")));
    // A file that cannot be read is not the one to read again.
    window.openFile(m_folder.filePath("absent.csv"));
    QTRY_COMPARE(failed.count(), 1);
    opened.clear();
    window.slotReload();
    QVERIFY(opened.wait());
    QCOMPARE(failed.count(), 1);
    QCOMPARE(window.windowTitle(), "open.csv - " + QCoreApplication::applicationName());
}

void TestViewerWindow::keepsOpenFileWhenReloadFails()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("breaking.csv", "t,a\n1,2\n")));
    QSignalSpy failed(&window, SIGNAL(failed(QString)));

    write("breaking.csv", "t,a\n1,x\n");
    window.slotReload();
    QVERIFY(failed.wait());
    QCOMPARE(modelOf(window)->m_series.constFirst()->m_values.size(), 1);
    // Mended, it can be read again.
    write("breaking.csv", "t,a\n1,2\n2,3\n");
    QSignalSpy opened(&window, SIGNAL(opened()));
    window.slotReload();
    QVERIFY(opened.wait());
    QCOMPARE(modelOf(window)->m_series.constFirst()->m_values.size(), 2);
}

void TestViewerWindow::remembersFilesThatCouldBeRead()
{
    const QString good = write("remembered.csv", "t,a\n1,2\n");
    {
        ViewerWindow window(ViewerWindow::AutomaticPanes);
        QVERIFY(open(window, good));
        QSignalSpy failed(&window, SIGNAL(failed(QString)));
        window.openFile(m_folder.filePath("absent.csv"));
        QVERIFY(failed.wait());
    }
    const ViewerWindow next(ViewerWindow::AutomaticPanes);
    QCOMPARE(next.findChild<RecentFiles *>()->files(), QStringList{good});
}

void TestViewerWindow::opensFileOfRecentOnes()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("one.csv", "t,a\n1,2\n")));
    QVERIFY(open(window, write("two.csv", "t,b\n1,2\n")));

    QMenu *menu = window.findChild<RecentFiles *>()->menu();
    QMetaObject::invokeMethod(menu, "aboutToShow");
    QSignalSpy opened(&window, SIGNAL(opened()));
    menu->actions().at(1)->trigger(); // the one before the newest
    QVERIFY(opened.wait());
    QCOMPARE(panesText(window), QString("a"));
}

void TestViewerWindow::opensDroppedFile()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    show(window);
    QMimeData mimeData;
    mimeData.setUrls({QUrl::fromLocalFile(write("dropped.csv", "t,a\n1,2\n"))});

    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mimeData, Qt::LeftButton,
                          Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&window, &enter);
    QVERIFY(enter.isAccepted());
    QSignalSpy opened(&window, SIGNAL(opened()));
    QDropEvent drop(QPointF(10.0, 10.0), Qt::CopyAction, &mimeData, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &drop);
    QVERIFY(opened.wait());
    QCOMPARE(panesText(window), QString("a"));
}

void TestViewerWindow::refusesDropWithoutLocalFile_data()
{
    QTest::addColumn<QList<QUrl>>("urls");

    QTest::newRow("no address") << QList<QUrl>();
    QTest::newRow("elsewhere") << QList<QUrl>{QUrl("https://localhost/a.csv")};
}

void TestViewerWindow::refusesDropWithoutLocalFile()
{
    QFETCH(QList<QUrl>, urls);

    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QMimeData mimeData;
    mimeData.setUrls(urls);
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mimeData, Qt::LeftButton,
                          Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&window, &enter);
    QVERIFY(!enter.isAccepted());
}

void TestViewerWindow::suggestsNamesAfterFile()
{
    ViewerWindow window(ViewerWindow::AutomaticPanes);
    QVERIFY(open(window, write("first.part.csv", "t,a\n1,2\n")));

    QCOMPARE(window.output().documentName(), QString("first.part"));
}

QTEST_MAIN(TestViewerWindow)
#include "tst_viewerwindow.moc"
