#include "common/screenshot.h"
#include "model/dynamicchartmodel.h"
#include "monitorwindow.h"
#include "proccounters.h"
#include "support/quietplatform.h"
#include "support/screen.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {

constexpr int LongerThanDoubleClick = 20; // samples
const QSize WindowSize(1000, 700);

} // namespace

/**
 * Uses the monitor as its user does, in a real window with a real mouse, and watches the screen.
 *
 * A twin of the window in this process, which nobody sees, tells where its buttons are.
 */
class TestMonitorWalk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void zoomsByBandThenUndoesAndRedoes();
    void zoomsByWheel();
    void movesByDragging();
    void pausesAndResumes();
    void separatesAndCombines();
    void opensMenuByRightClick();
    void hidesCurveByLegend();

private:
    QRect plot() const;
    QPoint centerOf(QAction *action) const;
    bool click(QAction *action) const;
    bool drag(const QPoint &from, const QPoint &to) const;
    bool move(const QPoint &from, const QPoint &to) const;
    bool restMouse() const;
    static QStringList moveTo(const QPoint &point);

    bool waitForSamples(int count) const;
    QImage picture() const { return m_screen.picture().copy(plot()); }
    bool standsStill() const;
    bool comesToRest() const;
    bool comesToLife() const;
    int marginPixels() const;

    const DynamicChartModel &model() const { return m_twin->model(); }

    Screen m_screen;
    QTemporaryDir m_folder;
    QProcess m_monitor;
    std::unique_ptr<MonitorWindow> m_twin;
};

void TestMonitorWalk::initTestCase()
{
    for (const char *tool : {"Xvfb", "xdotool"}) {
        if (QStandardPaths::findExecutable(tool).isEmpty()) {
            QSKIP("needs Xvfb and xdotool");
        }
    }
    QVERIFY(m_screen.start());
    QProcessEnvironment environment = m_screen.environment();
    // The libraries of the desktop keep what they have until the process ends.
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    m_monitor.setProcessEnvironment(environment);
    m_monitor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_monitor.start(MONITOR, {"--interval", "50", "--window", "10", "--size",
                              QString("%1x%2").arg(WindowSize.width()).arg(WindowSize.height()),
                              "--record", m_folder.filePath("heartbeat.csv"), "-style", "fusion"});
    QVERIFY(m_monitor.waitForStarted());

    QApplication::setStyle("fusion");
    QApplication::setFont(QFont("Sans Serif", 9)); // what Qt takes where no desktop names another
    m_twin = std::make_unique<MonitorWindow>(
        quantitiesOf(ProcCounters("/proc").read(), MonitorWindow::MostSeries), 10.0, false);
    m_twin->resize(WindowSize);
    const QuietPlatform quiet;
    showOffScreen(*m_twin);
}

/// Every walk begins with a live chart: curves that come in and slide.
void TestMonitorWalk::init()
{
    QVERIFY(restMouse());
    QVERIFY2(comesToLife(), "the chart does not move");
}

void TestMonitorWalk::cleanupTestCase()
{
    if (m_monitor.state() == QProcess::NotRunning) {
        return;
    }
    m_monitor.terminate();
    QVERIFY(m_monitor.waitForFinished(TimeLimit));
    QCOMPARE(m_monitor.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_monitor.exitCode(), 0);
}

/// The inner part of the plot: fonts, and so the margins, may differ a little from the twin's.
QRect TestMonitorWalk::plot() const
{
    constexpr int Margin = 40; // pixels
    const ChartWidget *pane = model().mainChart();
    const QRect frame = pane->fullChartRect(QRectF()).toRect();
    const QPoint corner = pane->mapTo(m_twin.get(), frame.topLeft());
    return QRect(corner, frame.size()).adjusted(Margin, Margin, -Margin, -Margin);
}

QPoint TestMonitorWalk::centerOf(QAction *action) const
{
    const QWidget *button = m_twin->findChild<QToolBar *>()->widgetForAction(action);
    return button->mapTo(m_twin.get(), button->rect().center());
}

QStringList TestMonitorWalk::moveTo(const QPoint &point)
{
    return {"mousemove", QString::number(point.x()), QString::number(point.y())};
}

bool TestMonitorWalk::click(QAction *action) const
{
    return m_screen.act(moveTo(centerOf(action)) + QStringList{"click", "1"}) && restMouse();
}

/// Holds before the release: a step that comes while points are computed waits for their end, and
/// the undo step of a drag knows what the axes show at the release.
bool TestMonitorWalk::drag(const QPoint &from, const QPoint &to) const
{
    constexpr int Samples = 8; // 400 ms
    return m_screen.act(moveTo(from) + QStringList{"mousedown", "1"} + moveTo((from + to) / 2) +
                        moveTo(to)) &&
           waitForSamples(Samples) && m_screen.act({"mouseup", "1"}) && restMouse();
}

/// Drags the view, which stands as soon as the first step has reached the axes, and releases it
/// only then, however slow the machine is: see drag().
bool TestMonitorWalk::move(const QPoint &from, const QPoint &to) const
{
    return m_screen.act(moveTo(from) + QStringList{"mousedown", "1"} + moveTo((from + to) / 2) +
                        moveTo(to)) &&
           comesToRest() && m_screen.act({"mouseup", "1"}) && restMouse();
}

/// Puts the mouse where it changes nothing: outside the window.
bool TestMonitorWalk::restMouse() const
{
    return m_screen.act(moveTo(QPoint(WindowSize.width(), WindowSize.height()) + QPoint(100, 100)));
}

/// The recording grows with every sample: it is the clock of this test.
bool TestMonitorWalk::waitForSamples(int count) const
{
    QFile recording(m_folder.filePath("heartbeat.csv"));
    if (!recording.open(QIODevice::ReadOnly)) {
        return false;
    }
    recording.readAll();
    int seen = 0;
    return comesTrue([&] {
        seen += recording.readAll().count('\n');
        return seen >= count;
    });
}

bool TestMonitorWalk::standsStill() const
{
    constexpr int Samples = 8; // 400 ms: the chart is drawn every 100
    const QImage before = picture();
    return waitForSamples(Samples) && picture() == before;
}

bool TestMonitorWalk::comesToRest() const
{
    return comesTrue([this] { return standsStill(); });
}

bool TestMonitorWalk::comesToLife() const
{
    return comesTrue(
        [this] { return QFile::exists(m_folder.filePath("heartbeat.csv")) && !standsStill(); });
}

/// What shows between panes, in the middle of what is one pane when the curves are combined.
int TestMonitorWalk::marginPixels() const
{
    const QRgb margin = m_twin->palette().color(QPalette::Window).rgb();
    const QImage image = picture();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        count += image.pixel(image.width() / 2, y) == margin ? 1 : 0;
    }
    return count;
}

void TestMonitorWalk::zoomsByBandThenUndoesAndRedoes()
{
    const QRect area = plot();
    QVERIFY(drag(area.center() - QPoint(100, 100), area.center() + QPoint(100, 100)));
    QVERIFY2(comesToRest(), "a zoomed chart goes on sliding");
    const QImage zoomed = picture();

    QVERIFY(click(model().m_undoAction));
    QVERIFY2(comesToLife(), "undo does not return to the live chart");
    QVERIFY(click(model().m_redoAction));
    QVERIFY2(comesToRest(), "redo does not return to the zoom");
    QVERIFY(click(model().m_undoZoomAction));
    QVERIFY2(comesToLife(), "undo zoom does not return to the live chart");
    QVERIFY(picture() != zoomed);
}

void TestMonitorWalk::zoomsByWheel()
{
    QVERIFY(m_screen.act(moveTo(plot().center()) + QStringList{"click", "4"})); // wheel up
    QVERIFY(restMouse());
    QVERIFY2(comesToRest(), "a zoomed chart goes on sliding");
    const QImage once = picture();

    QVERIFY(m_screen.act(moveTo(plot().center()) + QStringList{"click", "5"})); // wheel down
    QVERIFY(restMouse());
    QVERIFY2(comesTrue([&] { return picture() != once; }), "the wheel does not zoom out");
    QVERIFY(comesToRest());
    QVERIFY(click(model().m_undoZoomAction));
    QVERIFY2(comesToLife(), "undo zoom does not return to the live chart");
}

void TestMonitorWalk::movesByDragging()
{
    QVERIFY(click(model().m_moveModeAction));
    QVERIFY(move(plot().center(), plot().center() + QPoint(200, 0)));
    QVERIFY2(comesToRest(), "a moved chart goes on sliding");
    const QImage moved = picture();

    QVERIFY(move(plot().center(), plot().center() + QPoint(-120, 0)));
    QVERIFY2(comesTrue([&] { return picture() != moved; }), "a second move does nothing");
    QVERIFY(click(model().m_undoAction));
    QVERIFY2(comesTrue([&] { return picture() == moved; }), "undo does not take the move back");
    QVERIFY(click(model().m_undoAction));
    QVERIFY2(comesToLife(), "undo does not return to the live chart");
    QVERIFY(click(model().m_selectModeAction));
}

void TestMonitorWalk::pausesAndResumes()
{
    QVERIFY(click(model().m_pauseAction));
    QVERIFY2(comesToRest(), "the pause does not stop the chart");
    QVERIFY(click(model().m_pauseAction));
    QVERIFY2(comesToLife(), "the chart does not go on after the pause");
}

void TestMonitorWalk::separatesAndCombines()
{
    QCOMPARE(marginPixels(), 0);
    QVERIFY(click(model().m_multiModeAction));
    QVERIFY2(comesTrue([this] { return marginPixels() > 0; }), "there is one pane still");
    QVERIFY2(comesToLife(), "the panes do not move");
    QVERIFY(click(model().m_singleModeAction));
    QVERIFY2(comesTrue([this] { return marginPixels() == 0; }), "there are several panes still");
}

void TestMonitorWalk::opensMenuByRightClick()
{
    // A chart at rest, so that only the menu changes the picture.
    QVERIFY(click(model().m_pauseAction));
    QVERIFY(comesToRest());
    const QImage before = picture();

    QVERIFY(m_screen.act(moveTo(plot().topLeft()) + QStringList{"click", "3"}));
    QVERIFY2(comesTrue([&] { return picture() != before; }), "there is no menu");
    QVERIFY(m_screen.act({"key", "Escape"}));
    QVERIFY(restMouse());
    QVERIFY2(comesTrue([&] { return picture() == before; }), "the menu stays");
    QVERIFY(click(model().m_pauseAction));
}

void TestMonitorWalk::hidesCurveByLegend()
{
    QVERIFY(click(model().m_pauseAction));
    QVERIFY(comesToRest());

    // The last entry stands at the bottom edge, whatever the height of the others.
    const QTreeView *legend = m_twin->chart().legendView();
    const int lastRow = model().m_series.size() - 1;
    const QRect entry = legend->visualRect(model().index(lastRow, DynamicChartModel::NameColumn));
    const QPoint checkBox = legend->viewport()->mapTo(m_twin.get(), entry.topLeft()) +
                            QPoint(entry.height() / 2, entry.height() / 2);

    // The axis of a selected curve is shown left of the plot, and goes when the curve is hidden.
    const QRect labels(0, plot().top(), plot().left(), plot().height());
    const QImage ofFirst = m_screen.picture().copy(labels);
    const QPoint name = checkBox + QPoint(2 * entry.height(), 0);
    QVERIFY(m_screen.act(moveTo(name) + QStringList{"click", "1"}) && restMouse());
    QVERIFY2(comesTrue([&] { return m_screen.picture().copy(labels) != ofFirst; }),
             "the axis is not that of the selected curve");
    QVERIFY(waitForSamples(LongerThanDoubleClick));
    const QImage before = m_screen.picture().copy(labels);

    const QStringList check = moveTo(checkBox) + QStringList{"click", "1"};
    QVERIFY(m_screen.act(check) && restMouse());
    QVERIFY2(comesTrue([&] { return m_screen.picture().copy(labels) != before; }),
             "the curve is still there");
    QVERIFY(waitForSamples(LongerThanDoubleClick));
    QVERIFY(m_screen.act(check) && restMouse());
    QVERIFY2(comesTrue([&] { return m_screen.picture().copy(labels) == before; }),
             "the curve does not come back");
    QVERIFY(click(model().m_pauseAction));
}

QTEST_MAIN(TestMonitorWalk)
#include "tst_monitorwalk.moc"
