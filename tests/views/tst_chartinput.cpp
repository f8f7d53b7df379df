#include "views/chartwidget.h"

#include "model/chartmimedata.h"
#include "support/limitedseries.h"
#include "support/modelsetup.h"
#include "support/paintcalltext.h"
#include "support/paintcounter.h"
#include "support/popupwatcher.h"
#include "views/chartcursor.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QRandomGenerator>
#include <QRubberBand>
#include <QTransform>
#include <QtTest>
#include <QUndoStack>
#include <QWheelEvent>

#include <memory>
#include <utility>

namespace {

constexpr int UnknownMode = 7;

// The frame of all panes here. The plot lies 1% inside: 392 x 196, at 4,2 of the frame.
const QSizeF FrameSize(400.0, 200.0);

QPoint originOf(const ChartWidget &pane)
{
    return pane.fullChartRect(QRectF()).topLeft().toPoint();
}

/// Gives a pane the frame of these tests and shows it: only in a visible pane the band is visible.
void showPane(ChartWidget &pane)
{
    const QSizeF missing = FrameSize - pane.fullChartRect(QRectF()).size();
    pane.resize(pane.size() + missing.toSize());
    pane.show();
}

/// Sends a mouse event; \p position is in pixels of the frame.
void sendMouse(ChartWidget &pane, QEvent::Type type, const QPointF &position,
               Qt::MouseButton button, Qt::MouseButtons buttons)
{
    const QPointF local = originOf(pane) + position;
    QMouseEvent event(type, local, local, pane.mapToGlobal(QPoint()) + local, button, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(&pane, &event);
}

void press(ChartWidget &pane, const QPoint &position, Qt::MouseButton button = Qt::LeftButton)
{
    sendMouse(pane, QEvent::MouseButtonPress, position, button, button);
}

void release(ChartWidget &pane, const QPoint &position, Qt::MouseButton button = Qt::LeftButton)
{
    sendMouse(pane, QEvent::MouseButtonRelease, position, button, Qt::NoButton);
}

void move(ChartWidget &pane, const QPointF &position)
{
    sendMouse(pane, QEvent::MouseMove, position, Qt::NoButton, Qt::NoButton);
}

/// Moves with the left button held.
void drag(ChartWidget &pane, const QPoint &position)
{
    sendMouse(pane, QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton);
}

void turnWheel(ChartWidget &pane, const QPointF &position, const QPoint &angle,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QPointF local = originOf(pane) + position;
    QWheelEvent event(local, local, QPoint(), angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&pane, &event);
}

void leave(ChartWidget &pane)
{
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&pane, &event);
}

void askForMenu(ChartWidget &pane, const QPoint &globalPosition)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(), globalPosition);
    QApplication::sendEvent(&pane, &event);
}

/// Whether the pane accepts a drag of these data. Handed to the pane itself: the application wants
/// to know of a drag before it passes such events on.
bool acceptsDrag(ChartWidget &pane, const QMimeData &data)
{
    QDragEnterEvent event(QPoint(10, 10), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    static_cast<QObject &>(pane).event(&event);
    return event.isAccepted();
}

/// Drops these data on the pane; whether that is accepted.
bool acceptsDrop(ChartWidget &pane, const QMimeData &data)
{
    QDropEvent event(QPoint(10, 10), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    static_cast<QObject &>(pane).event(&event);
    return event.isAccepted();
}

/// Drops these series on the pane and returns how many it has taken.
int drop(ChartWidget &pane, const QList<AbstractChartSeries *> &series)
{
    ChartMimeData data;
    data.m_series = series;
    const QSignalSpy taken(&pane, SIGNAL(seriesParentChanged()));
    acceptsDrop(pane, data);
    return taken.count();
}

Qt::CursorShape shapeOf(const ChartWidget &pane)
{
    return pane.cursor().shape();
}

/// A model with a series whose limits of zooming a test sets. X shows [0,1], Y [0,100].
class InputModel : public OpenModel
{
public:
    InputModel() { m_limited = ::addSeries<LimitedSeries>(*this, "a", {0.0, 8.0}); }

    LimitedSeries *m_limited;
};

/**
 * A pane that only the test hears: it looks at the model, but the model does not know it. Writes
 * down its signals, with positions in pixels of the frame.
 */
class LonePane : public ChartWidget
{
public:
    explicit LonePane(AbstractChartModel *model)
        : ChartWidget(model)
    {
        connect(this, &ChartWidget::zoomChanged, this,
                [this](const QRectF &chart, const QRectF &zoom, int type) {
                    m_log.append(zoomText(chart, zoom, type));
                });
        connect(this, &ChartWidget::cursorStateChanged, this, [this](double pos, bool visible) {
            m_log.append(
                QString("cursor %1 %2").arg(pos - originOf(*this).x()).arg(visible ? "on" : "off"));
        });
        connect(this, &ChartWidget::beginMove, this, [this] { m_log.append("begin"); });
        connect(this, &ChartWidget::endMove, this,
                [this] { m_log.append(QString("end \"%1\"").arg(m_commandText)); });
        connect(this, &ChartWidget::seriesParentChanged, this, [this] { m_log.append("parent"); });
        showPane(*this);
    }

    /// The signals since the last call, as one text.
    QString takeLog()
    {
        const QString log = m_log.join('|');
        m_log.clear();
        return log;
    }

    /// The band in pixels of the frame.
    QRect band() const { return m_rubberBand->geometry().translated(-originOf(*this)); }

private:
    QString zoomText(const QRectF &chart, const QRectF &zoom, int type) const
    {
        const bool isPlot = chart == chartRect(QRectF());
        return QString("%1 \"%2\" %3 %4")
            .arg(isPlot ? "zoom" : "zoom in another plot", m_commandText,
                 rectText(zoom.translated(-originOf(*this))))
            .arg(type);
    }

    QStringList m_log;
};

/// What the wheel's zoom is to be, step by step.
QRectF plainWheelTarget(const QRectF &chart, double factor, const QPoint &mouse)
{
    const double width = factor * chart.width();
    const double height = factor * chart.height();
    const double x = chart.width() * 0.5 + chart.x() - width * 0.5;
    const double y = chart.height() * 0.5 + chart.y() - height * 0.5;
    const double sx = width / chart.width();
    const double sy = height / chart.height();
    const QPoint m =
        QTransform(sx, 0.0, 0.0, sy, x - chart.x() * sx, y - chart.y() * sy).map(mouse);
    return QRectF(x + (mouse.x() - m.x()), y + (mouse.y() - m.y()), width, height);
}

} // namespace

class TestChartInput : public QObject
{
    Q_OBJECT

private slots:
    void edgesOfTheFrameAreInside_data();
    void edgesOfTheFrameAreInside();
    void roundsTheMousePosition_data();
    void roundsTheMousePosition();
    void showsTheCursorOfTheMode_data();
    void showsTheCursorOfTheMode();

    void selectsAnArea_data();
    void selectsAnArea();
    void clickSelectsNothing();
    void oneMoveToThePressPointSelectsOnePixel();
    void selectionKeepsItsLastPointInside();
    void pressOutsideStartsNothing();
    void selectsNothingAtTheLimit();

    void movesTheView();
    void viewDoesNotMoveOutsideTheFrame();

    void otherButtonsStartNothing_data();
    void otherButtonsStartNothing();
    void otherButtonsDoNotEndADrag_data();
    void otherButtonsDoNotEndADrag();
    void unknownModeOnlyTellsTheCursor();
    void releaseActsInTheModeAsItIs();

    void wheelZoomsAboutTheMouse_data();
    void wheelZoomsAboutTheMouse();
    void wheelAgreesWithPlainImplementation();
    void wheelStopsAtTheLimits();
    void wheelOnTheMarginsResetsTheCursorOnly();
    void wheelWithoutRoomDoesNothing();

    void hidesTheCursorLineWhenTheMouseLeaves();
    void doesNothingWithoutModel();
    void tellsOfWheelAndLeavingWithoutModel();
    void repaintsForTheCursorLineOnlyIfItShows();
    void oneCursorLineRunsThroughAllPanes();

    void menuHasTheActionsOfTheModel();
    void menuOpensAtTheGivenPlace();
    void noMenuWithoutActions();
    void menuThatSwallowsTheReleaseEndsTheDrag();
    void menuMayDeleteThePane();

    void takesDragsOfSeriesOnly();
    void dropMovesSeriesToThePane();
    void dropOfSeveralSeriesTellsOfEach();
    void dropPassesOverWhatIsNotItsOwn();
    void dropPassesOverTheDead();
    void dropOnAPaneThatMayNotStay();
    void paneWithoutModelTakesStrangersOnly();

    void modelCarriesOutASelection();
    void modelCarriesOutADragAsOneStep();
    void modelCarriesOutTheWheel();
};

void TestChartInput::edgesOfTheFrameAreInside_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<bool>("inside");

    QTest::newRow("centre") << QPoint(200, 100) << true;
    QTest::newRow("top left corner") << QPoint(0, 0) << true;
    QTest::newRow("bottom right corner") << QPoint(400, 200) << true;
    QTest::newRow("left edge") << QPoint(0, 100) << true;
    QTest::newRow("right edge") << QPoint(400, 100) << true;
    QTest::newRow("left of it") << QPoint(-1, 100) << false;
    QTest::newRow("right of it") << QPoint(401, 100) << false;
    QTest::newRow("above") << QPoint(200, -1) << false;
    QTest::newRow("below") << QPoint(200, 201) << false;
}

void TestChartInput::edgesOfTheFrameAreInside()
{
    QFETCH(QPoint, point);
    QFETCH(bool, inside);
    InputModel model;
    LonePane pane(&model);

    move(pane, point);
    QCOMPARE(shapeOf(pane), inside ? Qt::CrossCursor : Qt::ArrowCursor);
    QCOMPARE(pane.takeLog(), QString("cursor %1 %2").arg(point.x()).arg(inside ? "on" : "off"));

    press(pane, point);
    QCOMPARE(pane.m_rubberBand->isVisible(), inside);
    QCOMPARE(pane.takeLog(), inside ? QString("cursor %1 off").arg(point.x()) : QString());

    turnWheel(pane, point, QPoint(0, 120));
    QCOMPARE(!pane.takeLog().isEmpty(), inside);
}

void TestChartInput::roundsTheMousePosition_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QString>("log");

    QTest::newRow("down") << QPointF(99.4, 50.0) << "cursor 99 on";
    QTest::newRow("up") << QPointF(99.5, 50.0) << "cursor 100 on";
    QTest::newRow("onto the left edge") << QPointF(-0.5, 50.0) << "cursor 0 on";
    QTest::newRow("off the right edge") << QPointF(400.5, 50.0) << "cursor 401 off";
    QTest::newRow("off the bottom") << QPointF(50.0, 200.5) << "cursor 50 off";
}

void TestChartInput::roundsTheMousePosition()
{
    QFETCH(QPointF, point);
    QFETCH(QString, log);
    InputModel model;
    LonePane pane(&model);

    move(pane, point);

    QCOMPARE(pane.takeLog(), log);
}

void TestChartInput::showsTheCursorOfTheMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("held");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("shape");

    const QPoint inside(200, 100);
    const QPoint outside(-5, 100);
    const auto row = [](const char *name, int mode, bool held, const QPoint &point,
                        Qt::CursorShape shape) {
        QTest::newRow(name) << mode << held << point << int(shape);
    };
    row("select", ChartWidget::SelectMode, false, inside, Qt::CrossCursor);
    row("select, button held", ChartWidget::SelectMode, true, inside, Qt::CrossCursor);
    row("select, outside", ChartWidget::SelectMode, false, outside, Qt::ArrowCursor);
    row("move", ChartWidget::MoveMode, false, inside, Qt::OpenHandCursor);
    row("move, button held", ChartWidget::MoveMode, true, inside, Qt::ClosedHandCursor);
    row("move, outside", ChartWidget::MoveMode, false, outside, Qt::ArrowCursor);
    row("move, button held, outside", ChartWidget::MoveMode, true, outside, Qt::ArrowCursor);
    row("unknown", UnknownMode, false, inside, Qt::WaitCursor);
    row("unknown, outside", UnknownMode, false, outside, Qt::ArrowCursor);
}

void TestChartInput::showsTheCursorOfTheMode()
{
    QFETCH(int, mode);
    QFETCH(bool, held);
    QFETCH(QPoint, point);
    QFETCH(int, shape);
    InputModel model;
    model.m_mouseMode = mode;
    LonePane pane(&model);
    pane.setCursor(Qt::WaitCursor);

    sendMouse(pane, QEvent::MouseMove, point, Qt::NoButton, held ? Qt::LeftButton : Qt::NoButton);

    QCOMPARE(int(shapeOf(pane)), shape);
}

void TestChartInput::selectsAnArea_data()
{
    QTest::addColumn<QPoint>("first");
    QTest::addColumn<QPoint>("last");

    QTest::newRow("down and right") << QPoint(100, 50) << QPoint(199, 99);
    QTest::newRow("up and left") << QPoint(199, 99) << QPoint(100, 50);
    QTest::newRow("down and left") << QPoint(199, 50) << QPoint(100, 99);
    QTest::newRow("along a line") << QPoint(100, 50) << QPoint(199, 50);
    QTest::newRow("over the whole frame") << QPoint(0, 0) << QPoint(400, 200);
}

void TestChartInput::selectsAnArea()
{
    QFETCH(QPoint, first);
    QFETCH(QPoint, last);
    InputModel model;
    LonePane pane(&model);
    const QRect area = QRect(first, last).normalized();

    press(pane, first);
    QVERIFY(pane.m_rubberBand->isVisible());
    QCOMPARE(pane.band(), QRect(first, QSize(0, 0)));
    QCOMPARE(pane.m_lastPoint, originOf(pane) + first);
    QCOMPARE(pane.takeLog(), QString("cursor %1 off").arg(first.x()));

    drag(pane, QPoint(150, 60));
    QCOMPARE(pane.band(), QRect(first, QPoint(150, 60)).normalized());
    drag(pane, last);
    QCOMPARE(pane.band(), area);
    QCOMPARE(pane.takeLog(), QString());

    release(pane, last);
    QVERIFY(!pane.m_rubberBand->isVisible());
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
    QCOMPARE(pane.takeLog(), QString("zoom \"Select area\" %1 1|cursor %2 on")
                                 .arg(rectText(QRectF(area)))
                                 .arg(last.x()));
}

void TestChartInput::clickSelectsNothing()
{
    InputModel model;
    LonePane pane(&model);

    press(pane, QPoint(100, 50));
    pane.takeLog();
    release(pane, QPoint(110, 60));

    QCOMPARE(pane.takeLog(), QString("cursor 110 on"));
    QVERIFY(!pane.m_rubberBand->isVisible());
}

void TestChartInput::oneMoveToThePressPointSelectsOnePixel()
{
    InputModel model;
    LonePane pane(&model);

    press(pane, QPoint(100, 50));
    pane.takeLog();
    drag(pane, QPoint(100, 50));
    release(pane, QPoint(100, 50));

    QCOMPARE(pane.takeLog(), QString("zoom \"Select area\" 100,50 1x1 1|cursor 100 on"));
}

void TestChartInput::selectionKeepsItsLastPointInside()
{
    InputModel model;
    LonePane pane(&model);

    press(pane, QPoint(300, 100));
    drag(pane, QPoint(399, 149));
    pane.takeLog();
    drag(pane, QPoint(450, 300));
    QCOMPARE(shapeOf(pane), Qt::ArrowCursor);
    QCOMPARE(pane.takeLog(), QString("cursor 450 off"));
    QVERIFY(pane.m_rubberBand->isVisible());
    release(pane, QPoint(450, 300));

    QCOMPARE(pane.takeLog(), QString("zoom \"Select area\" 300,100 100x50 1|cursor 450 on"));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
}

void TestChartInput::pressOutsideStartsNothing()
{
    InputModel model;
    LonePane pane(&model);

    press(pane, QPoint(-10, 100));
    drag(pane, QPoint(100, 100));
    QVERIFY(!pane.m_rubberBand->isVisible());
    QCOMPARE(pane.takeLog(), QString("cursor 100 on"));

    // The release counts everywhere, but there is no area.
    release(pane, QPoint(-10, 100));
    QCOMPARE(pane.takeLog(), QString("cursor -10 on"));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
}

void TestChartInput::selectsNothingAtTheLimit()
{
    InputModel model;
    LonePane pane(&model);
    model.m_limited->m_allowsInY = false;

    press(pane, QPoint(100, 50));
    QCOMPARE(shapeOf(pane), Qt::ForbiddenCursor);
    QVERIFY(pane.m_rubberBand->isVisible());
    QCOMPARE(pane.takeLog(), QString("cursor 100 off"));

    drag(pane, QPoint(200, 100));
    QCOMPARE(shapeOf(pane), Qt::ForbiddenCursor);
    QCOMPARE(pane.band(), QRect(QPoint(100, 50), QSize(0, 0)));
    QCOMPARE(pane.takeLog(), QString());

    release(pane, QPoint(200, 100));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
    QCOMPARE(pane.takeLog(), QString("cursor 200 on"));
    QVERIFY(!pane.m_rubberBand->isVisible());
}

void TestChartInput::movesTheView()
{
    InputModel model;
    model.m_mouseMode = ChartWidget::MoveMode;
    model.m_limited->m_allowsInX = false; // zooming is not asked
    LonePane pane(&model);

    press(pane, QPoint(100, 50));
    QCOMPARE(shapeOf(pane), Qt::ClosedHandCursor);
    QCOMPARE(pane.takeLog(), QString("begin|cursor 100 off"));
    QVERIFY(pane.m_rubberBand->isVisible());

    // 30 to the right and 10 up: the plot, at 4,2, is filled from what lies 30 to the left.
    drag(pane, QPoint(130, 40));
    QCOMPARE(pane.takeLog(), QString("zoom \"\" -26,12 392x196 0"));
    QCOMPARE(pane.m_lastPoint, originOf(pane) + QPoint(130, 40));
    QCOMPARE(shapeOf(pane), Qt::ClosedHandCursor);
    // Each step counts from the one before.
    drag(pane, QPoint(125, 60));
    QCOMPARE(pane.takeLog(), QString("zoom \"\" 9,-18 392x196 0"));
    drag(pane, QPoint(125, 60));
    QCOMPARE(pane.takeLog(), QString("zoom \"\" 4,2 392x196 0"));
    QCOMPARE(pane.band(), QRect(QPoint(100, 50), QSize(0, 0)));

    release(pane, QPoint(125, 60));
    QCOMPARE(shapeOf(pane), Qt::OpenHandCursor);
    QCOMPARE(pane.takeLog(), QString("end \"Move\"|cursor 125 on"));
    QVERIFY(!pane.m_rubberBand->isVisible());

    move(pane, QPoint(140, 60));
    QCOMPARE(pane.takeLog(), QString("cursor 140 on"));
}

void TestChartInput::viewDoesNotMoveOutsideTheFrame()
{
    InputModel model;
    model.m_mouseMode = ChartWidget::MoveMode;
    LonePane pane(&model);

    press(pane, QPoint(100, 50));
    pane.takeLog();
    drag(pane, QPoint(-20, 50));
    QCOMPARE(shapeOf(pane), Qt::ArrowCursor);
    QCOMPARE(pane.takeLog(), QString("cursor -20 off"));

    // Back inside, the way counts from the last point inside.
    drag(pane, QPoint(110, 50));
    QCOMPARE(pane.takeLog(), QString("zoom \"\" -6,2 392x196 0"));
    release(pane, QPoint(-20, 50));
    QCOMPARE(pane.takeLog(), QString("end \"Move\"|cursor -20 on"));
}

void TestChartInput::otherButtonsStartNothing_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("button");

    QTest::newRow("right, select") << 0 << int(Qt::RightButton);
    QTest::newRow("right, move") << 1 << int(Qt::RightButton);
    QTest::newRow("middle, select") << 0 << int(Qt::MiddleButton);
    QTest::newRow("middle, move") << 1 << int(Qt::MiddleButton);
}

void TestChartInput::otherButtonsStartNothing()
{
    QFETCH(int, mode);
    QFETCH(int, button);
    InputModel model;
    model.m_mouseMode = mode;
    model.m_limited->m_allowsInX = false;
    LonePane pane(&model);
    pane.setCursor(Qt::WaitCursor);

    press(pane, QPoint(100, 50), Qt::MouseButton(button));
    QCOMPARE(pane.takeLog(), QString("cursor 100 on"));
    QVERIFY(!pane.m_rubberBand->isVisible());
    QCOMPARE(pane.m_lastPoint, QPoint());

    release(pane, QPoint(100, 50), Qt::MouseButton(button));
    press(pane, QPoint(-10, 50), Qt::MouseButton(button));
    QCOMPARE(pane.takeLog(), QString());
    QCOMPARE(shapeOf(pane), Qt::WaitCursor);
}

void TestChartInput::otherButtonsDoNotEndADrag_data()
{
    otherButtonsStartNothing_data();
}

void TestChartInput::otherButtonsDoNotEndADrag()
{
    QFETCH(int, mode);
    QFETCH(int, button);
    InputModel model;
    model.m_mouseMode = mode;
    LonePane pane(&model);
    press(pane, QPoint(100, 50));
    drag(pane, QPoint(120, 60));
    pane.takeLog();

    // The cursor line stays hidden.
    press(pane, QPoint(120, 60), Qt::MouseButton(button));
    QCOMPARE(pane.takeLog(), QString("cursor 120 off"));
    release(pane, QPoint(120, 60), Qt::MouseButton(button));

    QCOMPARE(pane.takeLog(), QString());
    QVERIFY(pane.m_rubberBand->isVisible());
    QCOMPARE(pane.m_lastPoint, originOf(pane) + (mode == 0 ? QPoint(100, 50) : QPoint(120, 60)));
}

void TestChartInput::unknownModeOnlyTellsTheCursor()
{
    InputModel model;
    model.m_mouseMode = UnknownMode;
    LonePane pane(&model);
    pane.setCursor(Qt::WaitCursor);

    press(pane, QPoint(100, 50));
    QVERIFY(!pane.m_rubberBand->isVisible());
    drag(pane, QPoint(120, 60));
    release(pane, QPoint(130, 70));

    QCOMPARE(pane.takeLog(), QString("cursor 100 on|cursor 120 on|cursor 130 on"));
    QCOMPARE(shapeOf(pane), Qt::WaitCursor);
    QCOMPARE(pane.m_commandText, QString());
}

void TestChartInput::releaseActsInTheModeAsItIs()
{
    InputModel model;
    LonePane pane(&model);
    press(pane, QPoint(100, 50));
    drag(pane, QPoint(120, 60));
    pane.takeLog();

    model.m_mouseMode = ChartWidget::MoveMode;
    release(pane, QPoint(130, 70));
    QCOMPARE(pane.takeLog(), QString("end \"Move\"|cursor 130 on"));
    QVERIFY(!pane.m_rubberBand->isVisible());

    // The empty band of a move selects nothing.
    press(pane, QPoint(100, 50));
    drag(pane, QPoint(120, 60));
    pane.takeLog();
    model.m_mouseMode = ChartWidget::SelectMode;
    release(pane, QPoint(130, 70));
    QCOMPARE(pane.takeLog(), QString("cursor 130 on"));
}

void TestChartInput::wheelZoomsAboutTheMouse_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("target");

    const auto row = [](const char *name, const QPoint &angle, const QPointF &point,
                        const char *target, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::newRow(name) << angle << point << int(modifiers) << target;
    };
    const QPoint in(0, 120);
    const QPoint out(0, -120);
    // In: 294 x 147, centred at 53,26.5. Out: 588 x 294, centred at -94,-47.
    row("in at the centre", in, {200, 100}, "53,26.5 294x147");
    row("out at the centre", out, {200, 100}, "-94,-47 588x294");
    // The corner 0,0 would go to 53 - 3, 26.5 - 1.5.
    row("in at the top left corner", in, {0, 0}, "3,1.5 294x147");
    row("in at the bottom right corner", in, {400, 200}, "103,51.5 294x147");
    // 300,50 would go to -94 + 1.5 * 296 = 350 and -47 + 1.5 * 48 = 25.
    row("out beside the centre", out, {300, 50}, "-144,-22 588x294");
    // 1,1 would go to 50.75 and 25.75, which counts as 51 and 26.
    row("in, by whole pixels", in, {1, 1}, "3,1.5 294x147");
    row("position is rounded", in, {199.5, 100.4}, "53,26.5 294x147");
    row("the angle's size does not count", QPoint(0, 1), {200, 100}, "53,26.5 294x147");
    row("modifiers do not count", in, {200, 100}, "53,26.5 294x147",
        Qt::ControlModifier | Qt::ShiftModifier);
    row("sideways in", QPoint(120, 0), {200, 100}, "53,26.5 294x147");
    row("sideways out", QPoint(-120, 0), {200, 100}, "-94,-47 588x294");
    row("more sideways counts", QPoint(-120, 60), {200, 100}, "-94,-47 588x294");
    row("more upright counts", QPoint(-60, 120), {200, 100}, "53,26.5 294x147");
    row("of equal angles the upright one counts", QPoint(-60, 60), {200, 100}, "53,26.5 294x147");
    row("no angle", QPoint(0, 0), {200, 100}, "");
}

void TestChartInput::wheelZoomsAboutTheMouse()
{
    QFETCH(QPoint, angle);
    QFETCH(QPointF, point);
    QFETCH(int, modifiers);
    QFETCH(QString, target);
    InputModel model;
    LonePane pane(&model);

    turnWheel(pane, point, angle, Qt::KeyboardModifiers(modifiers));

    QCOMPARE(pane.takeLog(), target.isEmpty()
                                 ? QString()
                                 : QString("zoom \"Scaling with mouse wheel\" %1 1").arg(target));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
}

void TestChartInput::wheelAgreesWithPlainImplementation()
{
    constexpr int Cases = 4000;
    constexpr int SizeChange = 50; // cases between two sizes of the pane
    QRandomGenerator random(42);
    InputModel model;
    ChartWidget pane(&model);
    pane.show();
    QRectF chart;
    QRectF target;
    connect(&pane, &ChartWidget::zoomChanged, this,
            [&](const QRectF &from, const QRectF &to) { chart = from, target = to; });
    for (int i = 0; i < Cases; ++i) {
        if (i % SizeChange == 0) {
            pane.resize(random.bounded(150, 900), random.bounded(150, 700));
        }
        const QRect frame = pane.fullChartRect(QRectF()).toRect();
        const QPoint point(random.bounded(frame.width()), random.bounded(frame.height()));
        const bool in = random.bounded(2) == 0;

        turnWheel(pane, point, QPoint(0, in ? 120 : -120));

        const QRectF plot = pane.chartRect(QRectF());
        const QPoint mouse = frame.topLeft() + point;
        const QRectF expected = plainWheelTarget(plot, in ? 0.75 : 1.5, mouse);
        const QString story =
            QString("case %1, frame %2, point %3").arg(i).arg(rectText(frame), pointText(point));
        QVERIFY2(chart == plot && rectText(target) == rectText(expected), qPrintable(story));

        // What fills the plot leaves the point under the mouse, to half a pixel of the target.
        const double place = (mouse.x() - plot.x()) / plot.width();
        const double there = target.x() + place * target.width();
        QVERIFY2(qAbs(there - mouse.x()) <= 0.5 + 1e-9, qPrintable(story));
    }
}

void TestChartInput::wheelStopsAtTheLimits()
{
    InputModel model;
    LonePane pane(&model);
    const QPoint point(200, 100);
    const QPoint in(0, 120);
    const QPoint out(0, -120);

    model.m_limited->m_allowsInX = false;
    turnWheel(pane, point, in);
    QCOMPARE(pane.takeLog(), QString());
    QCOMPARE(shapeOf(pane), Qt::ForbiddenCursor);
    // The next turn resets the cursor.
    turnWheel(pane, point, out);
    QCOMPARE(pane.takeLog(), QString("zoom \"Scaling with mouse wheel\" -94,-47 588x294 1"));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);

    model.m_limited->m_allowsInX = true;
    model.m_limited->m_allowsOut = false;
    turnWheel(pane, point, out);
    QCOMPARE(pane.takeLog(), QString());
    QCOMPARE(shapeOf(pane), Qt::ForbiddenCursor);
    turnWheel(pane, point, in);
    QCOMPARE(pane.takeLog(), QString("zoom \"Scaling with mouse wheel\" 53,26.5 294x147 1"));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);

    // And so does a move.
    turnWheel(pane, point, out);
    QCOMPARE(shapeOf(pane), Qt::ForbiddenCursor);
    move(pane, point);
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
    // Without a turn nothing is refused.
    turnWheel(pane, point, QPoint());
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
}

void TestChartInput::wheelOnTheMarginsResetsTheCursorOnly()
{
    InputModel model;
    LonePane pane(&model);
    pane.setCursor(Qt::WaitCursor);

    turnWheel(pane, QPoint(-1, 100), QPoint(0, 120));
    QCOMPARE(shapeOf(pane), Qt::CrossCursor);
    model.m_mouseMode = ChartWidget::MoveMode;
    turnWheel(pane, QPoint(100, 201), QPoint(0, -120));
    QCOMPARE(shapeOf(pane), Qt::OpenHandCursor);
    model.m_mouseMode = UnknownMode;
    pane.setCursor(Qt::WaitCursor);
    turnWheel(pane, QPoint(401, 100), QPoint(0, -120));
    QCOMPARE(shapeOf(pane), Qt::WaitCursor);

    QCOMPARE(pane.takeLog(), QString());
}

void TestChartInput::wheelWithoutRoomDoesNothing()
{
    InputModel model;
    LonePane pane(&model);
    pane.resize(pane.width() - 410, pane.height());
    const QRectF frame = pane.fullChartRect(QRectF());
    QCOMPARE(frame.width(), -10.0);

    // Within the frame, which is turned inside out.
    turnWheel(pane, QPoint(-5, 100), QPoint(0, 120));

    QCOMPARE(pane.takeLog(), QString());
}

void TestChartInput::hidesTheCursorLineWhenTheMouseLeaves()
{
    InputModel model;
    ChartWidget pane(&model);
    QSignalSpy states(&pane, SIGNAL(cursorStateChanged(double, bool)));

    leave(pane);

    QCOMPARE(states.count(), 1);
    QCOMPARE(states.first(), (QVariantList{0.0, false}));
}

void TestChartInput::doesNothingWithoutModel()
{
    PopupWatcher menus;
    LonePane pane(nullptr);
    pane.setCursor(Qt::WaitCursor);

    move(pane, QPoint(100, 50));
    move(pane, QPoint(-10, 50));
    press(pane, QPoint(100, 50));
    drag(pane, QPoint(120, 60));
    release(pane, QPoint(120, 60));
    press(pane, QPoint(100, 50), Qt::RightButton);
    askForMenu(pane, QPoint(10, 10));

    QCOMPARE(pane.takeLog(), QString());
    QCOMPARE(shapeOf(pane), Qt::WaitCursor);
    QVERIFY(!pane.m_rubberBand->isVisible());
    QCOMPARE(menus.m_count, 0);
}

void TestChartInput::tellsOfWheelAndLeavingWithoutModel()
{
    LonePane pane(nullptr);
    pane.setCursor(Qt::WaitCursor);

    // There is nothing that would set a limit.
    turnWheel(pane, QPoint(200, 100), QPoint(0, 120));
    QCOMPARE(pane.takeLog(), QString("zoom \"Scaling with mouse wheel\" 53,26.5 294x147 1"));
    leave(pane);
    QCOMPARE(pane.takeLog(), QString("cursor %1 off").arg(-originOf(pane).x()));
    QCOMPARE(shapeOf(pane), Qt::WaitCursor);
}

void TestChartInput::repaintsForTheCursorLineOnlyIfItShows()
{
    InputModel model;
    ChartWidget &pane = *model.mainChart();
    showPane(pane);
    QVERIFY(QTest::qWaitForWindowExposed(&pane));
    QVERIFY(recalculated(model));
    PaintCounter paints(&pane);
    paints.take();

    move(pane, QPoint(100, 50));
    QCOMPARE(paints.take(), 1);
    move(pane, QPoint(100, 80)); // the line stands where it was
    QCOMPARE(paints.take(), 0);
    move(pane, QPoint(101, 80));
    QCOMPARE(paints.take(), 1);
    QCOMPARE(pane.m_cursor->m_position, originOf(pane).x() + 101.0);
    leave(pane);
    QCOMPARE(paints.take(), 1);
    QCOMPARE(pane.m_cursor->m_position, 0.0);

    // Hidden, it moves without a repaint.
    move(pane, QPoint(-7, 50));
    QCOMPARE(paints.take(), 0);
    QCOMPARE(pane.m_cursor->m_position, originOf(pane).x() - 7.0);
    leave(pane);
    QCOMPARE(paints.take(), 0);
    QCOMPARE(pane.m_cursor->m_position, 0.0);
    QVERIFY(!pane.m_cursor->m_visible);
}

void TestChartInput::oneCursorLineRunsThroughAllPanes()
{
    InputModel model;
    addSeries(model, "b");
    addSeries(model, "c");
    model.slotMultiMode();
    QCOMPARE(model.m_charts.size(), 3);
    ChartWidget &pane = *model.m_charts.at(1);
    const auto states = [&model] {
        QStringList texts;
        for (const ChartWidget *chart : qAsConst(model.m_charts)) {
            texts.append(QString("%1 %2")
                             .arg(chart->m_cursor->m_position)
                             .arg(chart->m_cursor->m_visible ? "on" : "off"));
        }
        return texts.join('|');
    };
    const int x = originOf(pane).x() + 100;

    move(pane, QPoint(100, 50));
    QCOMPARE(states(), QString("%1 on|%1 on|%1 on").arg(x));
    leave(pane);
    QCOMPARE(states(), QString("0 off|0 off|0 off"));
}

void TestChartInput::menuHasTheActionsOfTheModel()
{
    OpenModel model; // without any series
    model.configureActions();
    PopupWatcher menus;
    QList<QAction *> expected;
    for (QAction *action : qAsConst(model.m_actions)) {
        expected.removeAll(action); // a menu has each action at its last place
        expected.append(action);
    }

    askForMenu(*model.mainChart(), QPoint(10, 10));

    QCOMPARE(menus.m_count, 1);
    QCOMPARE(menus.m_actions, expected);
    QCOMPARE(menus.m_actions.size(), 27);
    QVERIFY(!menus.m_parent);
}

void TestChartInput::menuOpensAtTheGivenPlace()
{
    InputModel model;
    model.m_actions.append(model.m_undoZoomAction);
    PopupWatcher menus;

    askForMenu(*model.mainChart(), QPoint(30, 40));

    QCOMPARE(menus.m_count, 1);
    QCOMPARE(menus.m_pos, QPoint(30, 40));
}

void TestChartInput::noMenuWithoutActions()
{
    InputModel model;
    QVERIFY(model.m_actions.isEmpty());
    PopupWatcher menus;

    askForMenu(*model.mainChart(), QPoint(30, 40));

    QCOMPARE(menus.m_count, 0);
}

void TestChartInput::menuThatSwallowsTheReleaseEndsTheDrag()
{
    InputModel model;
    model.m_actions.append(model.m_undoZoomAction);
    LonePane pane(&model);
    PopupWatcher menus;
    press(pane, QPoint(100, 50));
    drag(pane, QPoint(200, 100));
    QVERIFY(pane.m_rubberBand->isVisible());

    askForMenu(pane, QPoint(30, 40));

    QCOMPARE(menus.m_count, 1);
    QVERIFY(!pane.m_rubberBand->isVisible());
    pane.takeLog();
    move(pane, QPoint(210, 100));
    QCOMPARE(pane.takeLog(), QString("cursor 210 on"));
}

void TestChartInput::menuMayDeleteThePane()
{
    InputModel model;
    model.m_actions.append(model.m_undoZoomAction);
    const QPointer<ChartWidget> pane = new ChartWidget(&model);
    PopupWatcher menus;
    menus.m_beforeClose = [&pane] { delete pane.data(); };

    askForMenu(*pane, QPoint(30, 40));

    QCOMPARE(menus.m_count, 1);
    QVERIFY(!pane);
}

void TestChartInput::takesDragsOfSeriesOnly()
{
    InputModel model;
    ChartWidget &pane = *model.mainChart();
    const std::unique_ptr<QMimeData> ofLegend(model.mimeData({model.index(0, 1)}));
    ChartMimeData empty;
    QMimeData foreign;
    foreign.setText("a");

    QVERIFY(pane.acceptDrops());
    QVERIFY(acceptsDrag(pane, *ofLegend));
    QVERIFY(acceptsDrag(pane, empty));
    QVERIFY(!acceptsDrag(pane, foreign));
}

void TestChartInput::dropMovesSeriesToThePane()
{
    InputModel model;
    model.m_settings.autoRemoveEmptyChart = false;
    PlainSeries *b = addSeries(model, "b");
    model.slotMultiMode();
    ChartWidget &pane = *model.m_charts.at(1);
    QVERIFY(model.m_limited->m_chart != &pane);

    QCOMPARE(drop(pane, {model.m_limited}), 1);
    QCOMPARE(model.m_limited->m_chart, &pane);
    QCOMPARE(pane.seriesList(), (QList<AbstractChartSeries *>{model.m_limited, b}));

    // Both are at home there now.
    QCOMPARE(drop(pane, {model.m_limited, b}), 0);

    ChartMimeData data;
    data.m_series = {b};
    QVERIFY(!acceptsDrop(*model.m_charts.at(0), data)); // taken, yet not accepted in so many words
    QCOMPARE(b->m_chart, model.m_charts.at(0));
}

void TestChartInput::dropOfSeveralSeriesTellsOfEach()
{
    InputModel model;
    PlainSeries *b = addSeries(model, "b");
    PlainSeries *c = addSeries(model, "c");
    model.slotMultiMode();
    const QPointer<ChartWidget> pane = model.m_charts.at(1);

    // The panes that they leave go away meanwhile.
    QCOMPARE(drop(*pane, {model.m_limited, nullptr, c}), 2);

    QCOMPARE(model.m_charts, QList<ChartWidget *>{pane});
    QCOMPARE(pane->seriesList(), (QList<AbstractChartSeries *>{model.m_limited, b, c}));
}

void TestChartInput::dropPassesOverWhatIsNotItsOwn()
{
    InputModel model;
    InputModel other;
    PlainSeries *removed = addSeries(model, "b");
    QVERIFY(settled(model));
    model.removeSeries(removed); // lives on in the undo history
    PlainSeries stranger;
    ChartWidget &pane = *model.mainChart();

    QCOMPARE(drop(pane, {other.m_limited}), 0);
    QCOMPARE(other.m_limited->m_chart, other.mainChart());
    QCOMPARE(drop(pane, {removed}), 0);
    QVERIFY(!removed->m_chart);

    // One that never had a model is free to come.
    QCOMPARE(drop(pane, {other.m_limited, &stranger, removed, nullptr}), 1);
    QCOMPARE(stranger.m_chart, &pane);

    QMimeData foreign;
    const QSignalSpy taken(&pane, SIGNAL(seriesParentChanged()));
    QVERIFY(!acceptsDrop(pane, foreign));
    QCOMPARE(taken.count(), 0);
}

void TestChartInput::dropPassesOverTheDead()
{
    InputModel model;
    model.m_settings.autoRemoveEmptyChart = false;
    PlainSeries *b = addSeries(model, "b");
    model.slotMultiMode();
    QVERIFY(settled(model));
    int deaths = 0;
    b->m_deaths = &deaths;
    model.removeSeries(b);
    model.m_undoStack->clear();
    QCOMPARE(deaths, 1);
    model.slotAddChart();

    QCOMPARE(drop(*model.m_charts.last(), {b, model.m_limited}), 1);
    QCOMPARE(model.m_limited->m_chart, model.m_charts.last());
}

void TestChartInput::dropOnAPaneThatMayNotStay()
{
    InputModel model;
    PlainSeries *b = addSeries(model, "b");
    model.slotAddChart(); // a second pane in single mode, until the panes are next looked after
    const QPointer<ChartWidget> main = model.mainChart();
    const QPointer<ChartWidget> pane = model.m_charts.last();

    ChartMimeData data;
    data.m_series = {model.m_limited, b};
    acceptsDrop(*pane, data);

    QVERIFY(!pane);
    QCOMPARE(model.m_charts, QList<ChartWidget *>{main});
    QCOMPARE(model.m_limited->m_chart, main.data());
    QCOMPARE(b->m_chart, main.data());
}

void TestChartInput::paneWithoutModelTakesStrangersOnly()
{
    InputModel model;
    PlainSeries stranger;
    LonePane pane(nullptr);

    QCOMPARE(drop(pane, {model.m_limited, &stranger}), 1);

    QCOMPARE(model.m_limited->m_chart, model.mainChart());
    QCOMPARE(stranger.m_chart, &pane);
}

void TestChartInput::modelCarriesOutASelection()
{
    InputModel model;
    ChartWidget &pane = *model.mainChart();
    showPane(pane);
    QVERIFY(recalculated(model));

    // From the plot's corner at 4,2: half of its 392 and half of its 196 pixels.
    press(pane, QPoint(4, 2));
    drag(pane, QPoint(199, 99));
    release(pane, QPoint(199, 99));

    QVERIFY(hasRange(*model.m_axisX, 0.0, 0.5));
    QVERIFY(hasRange(*model.m_limited->m_axisY, 50.0, 100.0));
    QVERIFY(settled(model));
    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->text(0), QString("\"Select area\""));
}

void TestChartInput::modelCarriesOutADragAsOneStep()
{
    InputModel model;
    model.m_mouseMode = ChartWidget::MoveMode;
    ChartWidget &pane = *model.mainChart();
    showPane(pane);
    QVERIFY(recalculated(model));

    // Twice a quarter of the plot's 392 pixels to the right.
    press(pane, QPoint(100, 50));
    drag(pane, QPoint(198, 50));
    QVERIFY(settled(model));
    QVERIFY(hasRange(*model.m_axisX, -0.25, 0.75));
    drag(pane, QPoint(296, 50));
    QVERIFY(settled(model));
    QCOMPARE(model.m_undoStack->count(), 0);
    release(pane, QPoint(296, 50));

    QVERIFY(hasRange(*model.m_axisX, -0.5, 0.5));
    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.m_undoStack->text(0), QString("\"Move\""));
    model.m_undoStack->undo();
    QCOMPARE(axesText(model), QString("[0,1] [0,100]"));
}

void TestChartInput::modelCarriesOutTheWheel()
{
    InputModel model;
    ChartWidget &pane = *model.mainChart();
    showPane(pane);
    QVERIFY(recalculated(model));

    // At the centre: three quarters of the span are left.
    turnWheel(pane, QPoint(200, 100), QPoint(0, 120));
    QVERIFY(hasRange(*model.m_axisX, 0.125, 0.875));
    QVERIFY(hasRange(*model.m_limited->m_axisY, 12.5, 87.5));
    QVERIFY(settled(model));
    QCOMPARE(model.m_undoStack->text(0), QString("\"Scaling with mouse wheel\""));
}

QTEST_MAIN(TestChartInput)
#include "tst_chartinput.moc"
