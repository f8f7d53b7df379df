#include "editors/serieseditor.h"
#include "support/gatedseries.h"
#include "support/limitedseries.h"
#include "support/modelsetup.h"
#include "support/paintcounter.h"
#include "support/quietplatform.h"
#include "views/chartcursor.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QRubberBand>
#include <QShortcut>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>
#include <QUndoStack>
#include <QVBoxLayout>

#include <memory>

namespace {

// The frame of the panes here. The plot lies 1% inside: from 4 to 396, with its middle at 200.
const QSizeF FrameSize(400.0, 200.0);

constexpr double Hidden = -1.0; // where no cursor line stands

double frameLeft(const ChartWidget &pane)
{
    return pane.fullChartRect(QRectF()).x();
}

void resizePane(ChartWidget &pane)
{
    const QSizeF missing = FrameSize - pane.fullChartRect(QRectF()).size();
    pane.resize(pane.size() + missing.toSize());
}

/// Presses a key and returns whether the pane has used it.
bool press(ChartWidget &pane, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&pane, &event);
    return event.isAccepted();
}

void clickInFrame(ChartWidget &pane)
{
    QTest::mouseClick(&pane, Qt::LeftButton, Qt::NoModifier,
                      pane.fullChartRect(QRectF()).center().toPoint());
}

/// Where the cursor line stands, in pixels of the frame.
double cursorOf(const ChartWidget &pane)
{
    return pane.m_cursor->m_visible ? pane.m_cursor->m_position - frameLeft(pane) : Hidden;
}

/// A model with one pane, in which both axes show [0,100]. Nothing is calculated at first.
template <typename Series = PlainSeries>
class KeyModel : public OpenModel
{
public:
    KeyModel()
    {
        m_load = ::addSeries<Series>(*this, "Load");
        addValue(m_load, newValue(0.0, 0.0));
        addValue(m_load, newValue(100.0, 100.0));
        resizePane(pane());
    }

    ChartWidget &pane() const { return *mainChart(); }
    QString lastCommand() const { return m_undoStack->undoText(); }

    Series *m_load;
};

/// A pane in a window, with a field of text that comes before it on the way of Tab.
class PaneWindow : public QWidget
{
public:
    explicit PaneWindow(ChartWidget &pane)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&m_edit);
        layout->addWidget(&pane, 1);
        m_edit.setFocus();
        resize(500, 400);
        show();
        activateWindow();
    }
    ~PaneWindow() override { m_edit.setParent(nullptr); }

    QLineEdit m_edit;

private:
    QuietPlatform m_quiet;
};

QImage pictureOf(ChartWidget &pane)
{
    return pane.grab().toImage();
}

/// What the pane paints for an application, on paper of its own.
QImage exportOf(ChartWidget &pane)
{
    QImage image(pane.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    pane.paint(painter, pane.palette(), QRectF());
    return image;
}

} // namespace

class TestChartKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void keysAct_data();
    void keysAct();
    void disabledActionStaysAtRest();
    void asksAnewWhatIsPossible();
    void zoomDuringCalculationIsParked();

    void keysMoveTheCursorLine_data();
    void keysMoveTheCursorLine();
    void cursorLineOfAllPanesFollows();
    void escapeHidesTheCursorLine();
    void cursorLineNeedsAPlot();

    void otherKeysAreIgnored_data();
    void otherKeysAreIgnored();
    void ignoresAllKeysWithoutModel_data();
    void ignoresAllKeysWithoutModel();
    void keysRestWhileTheMouseDrags();
    void actionsHaveNoShortcuts();
    void shortcutOfTheApplicationComesFirst();

    void takesFocusByTabAndByClick();
    void wheelLeavesTheFocus();
    void showsFocusThatComesByTheKeyboard();
    void clickDoesNotShowTheFocus();
    void focusComesBackAsItWas();
    void exportShowsNoFocus();
    void tabGoesFromTopToBottom();
    void clickLeavesTheEditorOfTheLegendOpen();
};

void TestChartKeyboard::keysAct_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("command");
    QTest::addColumn<double>("minX");
    QTest::addColumn<double>("maxX");
    QTest::addColumn<double>("minY");
    QTest::addColumn<double>("maxY");

    const auto row = [](const char *name, int key, Qt::KeyboardModifiers modifiers,
                        const char *command, const QPair<double, double> &x,
                        const QPair<double, double> &y) {
        QTest::newRow(name) << key << modifiers << QString("\"%1\"").arg(command) << x.first
                            << x.second << y.first << y.second;
    };
    const QPair<double, double> all(0.0, 100.0);
    const QPair<double, double> half(25.0, 75.0);
    const QPair<double, double> twice(-50.0, 150.0);
    const QPair<double, double> before(-100.0, 0.0);
    const QPair<double, double> behind(100.0, 200.0);

    row("plus", Qt::Key_Plus, Qt::NoModifier, "Zoom in", half, half);
    row("plus with Shift", Qt::Key_Plus, Qt::ShiftModifier, "Zoom in", half, half);
    row("plus of the keypad", Qt::Key_Plus, Qt::KeypadModifier, "Zoom in", half, half);
    row("Ctrl plus", Qt::Key_Plus, Qt::ControlModifier, "Zoom in (X axis)", half, all);
    row("Ctrl plus with Shift", Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier,
        "Zoom in (X axis)", half, all);
    row("Alt plus", Qt::Key_Plus, Qt::AltModifier, "Zoom in (Y axis)", all, half);
    row("minus", Qt::Key_Minus, Qt::NoModifier, "Zoom out", twice, twice);
    row("Ctrl minus", Qt::Key_Minus, Qt::ControlModifier, "Zoom out (X axis)", twice, all);
    row("Alt minus", Qt::Key_Minus, Qt::AltModifier, "Zoom out (Y axis)", all, twice);
    row("Shift Left", Qt::Key_Left, Qt::ShiftModifier, "Scroll backward", before, all);
    row("Shift Right", Qt::Key_Right, Qt::ShiftModifier, "Scroll forward", behind, all);
    row("Ctrl Home", Qt::Key_Home, Qt::ControlModifier, "Scroll to begin", all, all);
    row("Ctrl End", Qt::Key_End, Qt::ControlModifier, "Scroll to end", {50.0, 150.0}, all);
    row("Up", Qt::Key_Up, Qt::NoModifier, "Scroll up", all, behind);
    row("Up of the keypad", Qt::Key_Up, Qt::KeypadModifier, "Scroll up", all, behind);
    row("PageUp", Qt::Key_PageUp, Qt::NoModifier, "Scroll up", all, behind);
    row("Down", Qt::Key_Down, Qt::NoModifier, "Scroll down", all, before);
    row("PageDown", Qt::Key_PageDown, Qt::NoModifier, "Scroll down", all, before);
}

void TestChartKeyboard::keysAct()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, command);
    QFETCH(double, minX);
    QFETCH(double, maxX);
    QFETCH(double, minY);
    QFETCH(double, maxY);

    KeyModel model;
    QVERIFY(recalculated(model));
    QVERIFY(press(model.pane(), key, modifiers));

    QVERIFY(hasRange(*model.m_axisX, minX, maxX));
    QVERIFY(hasRange(*model.m_load->m_axisY, minY, maxY));
    QVERIFY(model.m_axisX->m_zoomed);
    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.lastCommand(), command);
    QCOMPARE(cursorOf(model.pane()), Hidden);

    model.m_undoStack->undo();
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
    QVERIFY(hasRange(*model.m_load->m_axisY, 0.0, 100.0));
    QVERIFY(settled(model));
}

void TestChartKeyboard::disabledActionStaysAtRest()
{
    KeyModel<LimitedSeries> model;
    QVERIFY(recalculated(model));
    model.m_load->m_allowsInY = false;

    // Used up all the same: at the limit, a key that is held does not begin to do something else.
    QVERIFY(press(model.pane(), Qt::Key_Plus));
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
    QCOMPARE(model.m_undoStack->count(), 0);

    QVERIFY(press(model.pane(), Qt::Key_Plus, Qt::ControlModifier));
    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(settled(model));
}

void TestChartKeyboard::asksAnewWhatIsPossible()
{
    KeyModel model;
    QVERIFY(recalculated(model));
    // The actions are those of the series when it had no samples.
    QVERIFY(!model.m_zoomInAction->isEnabled());
    QVERIFY(press(model.pane(), Qt::Key_Plus));
    QVERIFY(hasRange(*model.m_axisX, 25.0, 75.0));
    QVERIFY(model.m_zoomInAction->isEnabled());
    QVERIFY(settled(model));
}

void TestChartKeyboard::zoomDuringCalculationIsParked()
{
    KeyModel<GatedSeries> model;
    QVERIFY(recalculated(model));
    model.m_load->closeGate();
    model.updateCharts();
    QVERIFY(model.m_load->waitForWorker());

    QVERIFY(press(model.pane(), Qt::Key_Plus));
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
    QCOMPARE(model.m_undoStack->count(), 0);

    model.m_load->openGate();
    QVERIFY(settled(model));
    QVERIFY(hasRange(*model.m_axisX, 25.0, 75.0));
    QCOMPARE(model.m_undoStack->count(), 1);
    QCOMPARE(model.lastCommand(), QString("\"Zoom in\""));
}

void TestChartKeyboard::keysMoveTheCursorLine_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<double>("end");

    const Qt::KeyboardModifiers none;
    const Qt::KeyboardModifiers control = Qt::ControlModifier;
    const Qt::KeyboardModifiers keypad = Qt::KeypadModifier;
    QTest::newRow("Left shows it in the middle") << Hidden << int(Qt::Key_Left) << none << 200.0;
    QTest::newRow("Right shows it in the middle") << Hidden << int(Qt::Key_Right) << none << 200.0;
    QTest::newRow("Ctrl Right shows it there too")
        << Hidden << int(Qt::Key_Right) << control << 200.0;
    QTest::newRow("Home shows it at the left end") << Hidden << int(Qt::Key_Home) << none << 4.0;
    QTest::newRow("End shows it at the right end") << Hidden << int(Qt::Key_End) << none << 396.0;
    QTest::newRow("Left") << 100.0 << int(Qt::Key_Left) << none << 99.0;
    QTest::newRow("Right") << 100.0 << int(Qt::Key_Right) << none << 101.0;
    QTest::newRow("Right of the keypad") << 100.0 << int(Qt::Key_Right) << keypad << 101.0;
    QTest::newRow("Ctrl Left") << 100.0 << int(Qt::Key_Left) << control << 90.0;
    QTest::newRow("Ctrl Right") << 100.0 << int(Qt::Key_Right) << control << 110.0;
    QTest::newRow("Home") << 100.0 << int(Qt::Key_Home) << none << 4.0;
    QTest::newRow("End") << 100.0 << int(Qt::Key_End) << none << 396.0;
    QTest::newRow("stops at the left end") << 4.0 << int(Qt::Key_Left) << none << 4.0;
    QTest::newRow("stops at the right end") << 396.0 << int(Qt::Key_Right) << none << 396.0;
    QTest::newRow("long step ends at the left end") << 8.0 << int(Qt::Key_Left) << control << 4.0;
    QTest::newRow("long step ends at the right end")
        << 392.0 << int(Qt::Key_Right) << control << 396.0;
    QTest::newRow("comes in from the margin of the frame")
        << 1.0 << int(Qt::Key_Right) << none << 4.0;
}

void TestChartKeyboard::keysMoveTheCursorLine()
{
    QFETCH(double, start);
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(double, end);

    KeyModel model;
    ChartWidget &pane = model.pane();
    pane.changeCursorState(start + frameLeft(pane), start != Hidden);
    const QSignalSpy moves(&pane, SIGNAL(cursorStateChanged(double, bool)));

    QVERIFY(press(pane, key, modifiers));
    QCOMPARE(cursorOf(pane), end);
    QCOMPARE(moves.count(), 1);
    QCOMPARE(model.m_undoStack->count(), 0);
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
}

void TestChartKeyboard::cursorLineOfAllPanesFollows()
{
    KeyModel model;
    ::addSeries(model, "Heat", {1.0, 2.0});
    model.slotMultiMode();
    QVERIFY(settled(model));
    QCOMPARE(model.m_charts.size(), 2);

    press(*model.m_charts.last(), Qt::Key_Home);
    press(*model.m_charts.first(), Qt::Key_Right);
    const double position = model.m_charts.first()->m_cursor->m_position;
    QCOMPARE(model.m_charts.last()->m_cursor->m_position, position);
    press(*model.m_charts.last(), Qt::Key_Escape);
    QVERIFY(!model.m_charts.first()->m_cursor->m_visible);
}

void TestChartKeyboard::escapeHidesTheCursorLine()
{
    KeyModel model;
    press(model.pane(), Qt::Key_End);
    QVERIFY(press(model.pane(), Qt::Key_Escape));
    QCOMPARE(cursorOf(model.pane()), Hidden);

    // With nothing to hide it is the application's: it may close a dialog.
    QVERIFY(!press(model.pane(), Qt::Key_Escape));
}

void TestChartKeyboard::cursorLineNeedsAPlot()
{
    KeyModel model;
    model.pane().resize(20, 20); // less than the margins
    QVERIFY(!press(model.pane(), Qt::Key_Right));
    QVERIFY(!press(model.pane(), Qt::Key_Home));
    QCOMPARE(cursorOf(model.pane()), Hidden);
}

void TestChartKeyboard::otherKeysAreIgnored_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");

    const Qt::KeyboardModifiers none;
    QTest::newRow("letter") << int(Qt::Key_A) << none;
    QTest::newRow("Space") << int(Qt::Key_Space) << none;
    QTest::newRow("Return") << int(Qt::Key_Return) << none;
    QTest::newRow("Delete") << int(Qt::Key_Delete) << none;
    QTest::newRow("Ctrl Z") << int(Qt::Key_Z) << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("Alt Left") << int(Qt::Key_Left) << Qt::KeyboardModifiers(Qt::AltModifier);
    QTest::newRow("Ctrl Shift Left")
        << int(Qt::Key_Left) << (Qt::ControlModifier | Qt::ShiftModifier);
    QTest::newRow("Shift Home") << int(Qt::Key_Home) << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("Ctrl Up") << int(Qt::Key_Up) << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("Ctrl PageDown")
        << int(Qt::Key_PageDown) << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("Ctrl Alt plus") << int(Qt::Key_Plus) << (Qt::ControlModifier | Qt::AltModifier);
    QTest::newRow("Meta minus") << int(Qt::Key_Minus) << Qt::KeyboardModifiers(Qt::MetaModifier);
    QTest::newRow("Shift Escape") << int(Qt::Key_Escape)
                                  << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void TestChartKeyboard::otherKeysAreIgnored()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);

    KeyModel model;
    press(model.pane(), Qt::Key_Home);
    QVERIFY(!press(model.pane(), key, modifiers));
    QCOMPARE(cursorOf(model.pane()), 4.0);
    QCOMPARE(model.m_undoStack->count(), 0);
    QVERIFY(hasRange(*model.m_axisX, 0.0, 100.0));
}

void TestChartKeyboard::ignoresAllKeysWithoutModel_data()
{
    QTest::addColumn<int>("key");
    for (const int key : {Qt::Key_Plus, Qt::Key_Up, Qt::Key_Left, Qt::Key_Home, Qt::Key_Escape}) {
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << key;
    }
}

void TestChartKeyboard::ignoresAllKeysWithoutModel()
{
    QFETCH(int, key);

    ChartWidget never(nullptr);
    resizePane(never);
    never.changeCursorState(100.0, true);
    QVERIFY(!press(never, key));

    // A pane that has outlived its model.
    auto model = std::make_unique<StaticChartModel>("QUARVChart5 tests", "tests");
    const std::unique_ptr<ChartWidget> orphan(model->mainChart());
    model.reset();
    QVERIFY(!press(*orphan, key));
}

void TestChartKeyboard::keysRestWhileTheMouseDrags()
{
    KeyModel model;
    ChartWidget &pane = model.pane();
    pane.show();
    const QPoint middle = pane.fullChartRect(QRectF()).center().toPoint();
    QTest::mousePress(&pane, Qt::LeftButton, Qt::NoModifier, middle);
    QVERIFY(pane.m_rubberBand->isVisible());

    QVERIFY(!press(pane, Qt::Key_Plus));
    QVERIFY(!press(pane, Qt::Key_Right));
    QCOMPARE(cursorOf(pane), Hidden);
    QCOMPARE(model.m_undoStack->count(), 0);

    QTest::mouseRelease(&pane, Qt::LeftButton, Qt::NoModifier, middle);
    QVERIFY(press(pane, Qt::Key_Right));
    QCOMPARE(cursorOf(pane), middle.x() + 1.0 - frameLeft(pane));
    QVERIFY(settled(model));
}

void TestChartKeyboard::actionsHaveNoShortcuts()
{
    OpenModel model;
    const auto actions = model.findChildren<QAction *>();
    QVERIFY(actions.size() > 20);
    for (const QAction *action : actions) {
        QVERIFY2(action->shortcuts().isEmpty(), qPrintable(action->text()));
    }
    QVERIFY(model.findChildren<QShortcut *>().isEmpty());
    QVERIFY(model.mainChart()->findChildren<QShortcut *>().isEmpty());
}

void TestChartKeyboard::shortcutOfTheApplicationComesFirst()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(recalculated(model));
    QShortcut shortcut(QKeySequence(Qt::Key_Plus), &window);
    const QSignalSpy activations(&shortcut, SIGNAL(activated()));
    model.pane().setFocus();

    QTest::keyClick(&model.pane(), Qt::Key_Plus);
    QCOMPARE(activations.count(), 1);
    QCOMPARE(model.m_undoStack->count(), 0);
    QTest::keyClick(&model.pane(), Qt::Key_Minus);
    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(settled(model));
}

void TestChartKeyboard::takesFocusByTabAndByClick()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(window.m_edit.hasFocus());
    QTest::keyClick(&window.m_edit, Qt::Key_Tab);
    QVERIFY(model.pane().hasFocus());

    QTest::keyClick(&model.pane(), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(window.m_edit.hasFocus());
    clickInFrame(model.pane());
    QVERIFY(model.pane().hasFocus());
    QCOMPARE(model.m_undoStack->count(), 0);
}

void TestChartKeyboard::wheelLeavesTheFocus()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(recalculated(model));
    const QPointF middle = model.pane().fullChartRect(QRectF()).center();
    QWheelEvent event(middle, middle, QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&model.pane(), &event);
    QCOMPARE(model.m_undoStack->count(), 1);
    QVERIFY(window.m_edit.hasFocus());
    QVERIFY(settled(model));
}

void TestChartKeyboard::showsFocusThatComesByTheKeyboard()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(recalculated(model));
    const QImage without = pictureOf(model.pane());

    QTest::keyClick(&window.m_edit, Qt::Key_Tab);
    const QImage with = pictureOf(model.pane());
    QVERIFY(with != without);
    // The frame and all inside it are as they were.
    const QRect frame = model.pane().fullChartRect(QRectF()).toAlignedRect();
    QCOMPARE(with.copy(frame), without.copy(frame));

    window.m_edit.setFocus();
    QCOMPARE(pictureOf(model.pane()), without);
}

void TestChartKeyboard::clickDoesNotShowTheFocus()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(recalculated(model));
    const QImage without = pictureOf(model.pane());

    // Not even when it has come by Tab before.
    QTest::keyClick(&window.m_edit, Qt::Key_Tab);
    window.m_edit.setFocus();
    QCoreApplication::processEvents();
    PaintCounter paints(&model.pane());
    paints.take();
    model.pane().setFocus(Qt::MouseFocusReason);
    QVERIFY(model.pane().hasFocus());
    QCOMPARE(paints.take(), 0);
    QCOMPARE(pictureOf(model.pane()), without);
}

void TestChartKeyboard::focusComesBackAsItWas()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window.m_edit, Qt::Key_Tab);
    const QImage with = pictureOf(model.pane());

    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(pictureOf(model.pane()) != with);
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(pictureOf(model.pane()), with);
}

void TestChartKeyboard::exportShowsNoFocus()
{
    KeyModel model;
    PaneWindow window(model.pane());
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(recalculated(model));
    const QImage without = exportOf(model.pane());
    QTest::keyClick(&window.m_edit, Qt::Key_Tab);
    QVERIFY(model.pane().hasFocus());
    QCOMPARE(exportOf(model.pane()), without);
}

void TestChartKeyboard::tabGoesFromTopToBottom()
{
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar());
    auto *model = new OpenModel;
    chart.setModel(model);
    // The second pane to be made is the upper one.
    model->appendChart(0);
    model->appendChart(2);
    emit model->chartCountChanged();

    QList<ChartWidget *> chain;
    const QWidget *start = chart.legendView();
    for (QWidget *w = start->nextInFocusChain(); w != start; w = w->nextInFocusChain()) {
        if (auto *pane = qobject_cast<ChartWidget *>(w)) {
            chain.append(pane);
        }
    }
    QCOMPARE(model->m_charts.size(), 3);
    QCOMPARE(chain, model->m_charts);
}

void TestChartKeyboard::clickLeavesTheEditorOfTheLegendOpen()
{
    const QuietPlatform quiet;
    MultiChart chart;
    const std::unique_ptr<QToolBar> toolBar(chart.toolBar());
    auto *model = new OpenModel;
    chart.setModel(model);
    model->addSeries(new PlainSeries("Load"));
    chart.resize(500, 500);
    chart.show();
    chart.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&chart));
    QTreeView *legend = chart.legendView();
    legend->edit(model->index(0, AbstractChartModel::LineColumn));
    QVERIFY(legend->findChild<SeriesEditor *>());
    QVERIFY(settled(*model));

    clickInFrame(*model->mainChart());
    QCoreApplication::processEvents();
    QVERIFY(model->mainChart()->hasFocus());
    QVERIFY(legend->findChild<SeriesEditor *>());
    QVERIFY(legend->findChild<SeriesEditor *>()->isVisible());
    QVERIFY(settled(*model));
}

QTEST_MAIN(TestChartKeyboard)
#include "tst_chartkeyboard.moc"
