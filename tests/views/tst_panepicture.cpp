// The panes on the screen keep a picture of the inside of their frames; here it is compared with
// painting everything.

#include "axes/horizontalchartaxis.h"
#include "axes/verticalchartaxis.h"
#include "series/pointthread.h"
#include "support/countingaxis.h"
#include "support/modelsetup.h"
#include "support/titledseries.h"
#include "views/chartcursor.h"
#include "views/chartwidget.h"
#include "views/cursorvalue.h"

#include <QPainter>
#include <QPaintEvent>
#include <QScreen>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <limits>
#include <random>
#include <thread>

namespace {

constexpr unsigned Seed = 20250131;
const QSize PaneSize(340, 210);
const QPoint Places[] = {QPoint(7, 5), QPoint(3, 300)}; // in the window, so that panes are moved
const QSize WindowSize(600, 620);

/// Paints what \p chart should show, the list of what a pane paints.
void paintPlainly(ChartWidget &chart, QPainter &painter)
{
    QPalette colors = chart.palette();
    colors.setColor(QPalette::All, QPalette::Window, chart.m_model->m_settings.backgroundColor);
    colors.setColor(QPalette::All, QPalette::AlternateBase, chart.m_model->m_settings.gridColor);

    const QRectF full = chart.fullChartRect(QRectF());
    if (!full.isValid()) {
        return;
    }
    painter.fillRect(full, colors.color(QPalette::Current, QPalette::Window));
    AbstractChartSeries *selected = chart.selectedSeries();
    const QRectF plot = chart.chartRect(full);
    if (!selected || !plot.isValid()) {
        return;
    }
    selected->m_axisY->paint(selected, painter, full, QTransform(), colors, true);
    chart.axisX()->paint(selected, painter, full, QTransform(), colors, chart.isLower());

    painter.setClipRect(QRectF(full.x(), full.y(), full.width() + 1, full.height() + 1));
    ChartCursor &cursor = *chart.m_cursor;
    const double x = cursor.m_position;
    const QLineF line = cursor.m_visible ? QLineF(x, plot.y() - 1, x, plot.bottom() + 1) : QLineF();
    cursor.m_side = ChartCursor::Right;
    QList<CursorValue> values;
    QList<AbstractChartSeries *> list = chart.seriesList();
    list.removeOne(selected);
    list.append(selected);
    for (AbstractChartSeries *series : qAsConst(list)) {
        if (series->m_visible) {
            series->paint(painter, plot, QTransform(), line, values, &cursor);
        }
    }
    bool isMapped = false;
    const QPointF position = selected->mapInverted(line.p1(), &isMapped);
    if (!line.isNull() && isMapped) {
        cursor.m_timeText.clear();
        cursor.m_timeRect = QRectF();
        chart.axisX()->valueTextAndRect(position.x(), painter, cursor.m_timeText, cursor.m_timeRect,
                                        1);
    }
    if (!line.isNull()) {
        std::sort(values.begin(), values.end());
        cursor.paint(painter, line, values, full, chart.isUpper(), colors);
    }
    painter.setPen(colors.color(QPalette::Current, QPalette::AlternateBase));
    painter.setBrush(QBrush(Qt::transparent, Qt::SolidPattern));
    painter.drawRect(full);
}

/// The part of a window that \p widget has.
QImage shownPicture(const QWidget &widget)
{
    const QWidget &window = *widget.window();
    const QPoint place = widget.mapTo(&window, QPoint(0, 0));
    return window.screen()
        ->grabWindow(window.winId(), place.x(), place.y(), widget.width(), widget.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

/// A widget that paints everything that a pane should show at each event.
class PlainTwin : public QWidget
{
public:
    using QWidget::QWidget;

    /// What \p chart should show.
    QImage picture(ChartWidget &chart)
    {
        m_chart = &chart;
        setFont(chart.font());
        setPalette(chart.palette());
        setGeometry(chart.geometry());
        repaint();
        return shownPicture(*this);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (m_chart) {
            paintPlainly(*m_chart, painter);
        }
    }

private:
    ChartWidget *m_chart = nullptr;
};

/// The first pixel that differs, as text; empty if none does.
QString difference(const QImage &shown, const QImage &expected)
{
    if (shown == expected) {
        return QString();
    }
    for (int y = 0; y < qMin(shown.height(), expected.height()); ++y) {
        for (int x = 0; x < qMin(shown.width(), expected.width()); ++x) {
            if (shown.pixel(x, y) != expected.pixel(x, y)) {
                return QString("(%1,%2) is %3, not %4")
                    .arg(x)
                    .arg(y)
                    .arg(shown.pixel(x, y), 0, 16)
                    .arg(expected.pixel(x, y), 0, 16);
            }
        }
    }
    return "another size";
}

/// A window with two panes of one model.
class Stage
{
public:
    explicit Stage(int seriesCount = 6)
    {
        m_window.resize(WindowSize);
        m_twinWindow.resize(WindowSize);
        m_twinWindow.show();
        m_model.m_settings.autoScaleY = true;
        m_model.m_settings.backgroundColor = QColor(250, 245, 240);
        m_model.m_settings.gridColor = QColor(120, 130, 140);
        m_model.m_settings.cursorLineColor = QColor(200, 20, 30);
        m_model.applyChartSettings();
        for (int i = 0; i < seriesCount; ++i) {
            addCurve(QString::number(i), i * 3.0);
        }
        m_model.appendChart(-1); // A series that is added takes the other panes away.
        for (int i = 0; i < m_model.m_charts.size(); ++i) {
            ChartWidget *chart = m_model.m_charts.at(i);
            chart->setParent(&m_window);
            chart->setGeometry(QRect(Places[i], PaneSize));
        }
        for (int i = 1; i < seriesCount; i += 2) {
            series(i).m_chart = &pane(1);
        }
        m_window.show();
        const bool isShown = QTest::qWaitForWindowExposed(&m_window);
        Q_UNUSED(isShown)
        pass();
    }

    TitledSeries *addCurve(const QString &name, double offset)
    {
        auto *series = addSeries<TitledSeries>(m_model, name,
                                               {offset + 1, offset + 7, offset + 2, offset + 9});
        series->m_color = QColor(40 + 30 * m_model.m_series.size(), 90, 200);
        series->m_pointsVisible = true;
        series->setPointSize(5);
        return series;
    }

    bool pass() { return recalculated(m_model); }

    ChartWidget &pane(int i = 0) { return *m_model.m_charts.at(i); }
    TitledSeries &series(int i = 0) { return static_cast<TitledSeries &>(*m_model.m_series.at(i)); }

    QImage plainPicture(int i = 0) { return m_twin.picture(pane(i)); }

    QWidget m_window;
    QWidget m_twinWindow;
    PlainTwin m_twin{&m_twinWindow}; // at the pane's place: rounding depends on it
    RecordingModel m_model;          // dies first, with its panes
};

/// Changes the symbols behind the back of everybody: only a curve that is painted anew shows it.
void recolorSecretly(AbstractChartSeries &series)
{
    const QImage &image = series.m_pointImage;
    auto *bits = const_cast<uchar *>(image.constBits());
    std::fill(bits, bits + image.sizeInBytes(), uchar(255));
}

/// Gathers what is repainted of a pane.
class ExposedRegion : public QObject
{
public:
    explicit ExposedRegion(QWidget &pane) { pane.installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            m_region += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }

    QRegion m_region;
};

/// Random changes of all that a pane shows.
class Change
{
public:
    /// Of which kind the changes are.
    enum Kind { Any, KeepsPicture };

    Change(Stage &stage, Kind kind)
        : m_stage(stage)
        , m_kind(kind)
    {
    }

    /// Makes one, and notes it.
    void make()
    {
        static constexpr struct
        {
            const char *name;
            void (Change::*function)();
        } Changes[] = {
            {"samples", &Change::addSamples},    {"pass", &Change::pass},
            {"color", &Change::color},           {"width", &Change::lineWidth},
            {"points", &Change::pointsVisible},  {"point size", &Change::pointSize},
            {"symbol", &Change::symbol},         {"visible", &Change::visible},
            {"selected", &Change::selected},     {"order", &Change::order},
            {"pane", &Change::moveToPane},       {"size", &Change::size},
            {"palette", &Change::palette},       {"font", &Change::font},
            {"settings", &Change::settings},     {"range Y", &Change::rangeY},
            {"range X", &Change::rangeX},        {"date", &Change::dateTime},
            {"by hand", &Change::pointsByHand},  {"titles", &Change::titles},
            {"label", &Change::label},           {"matrix", &Change::matrix},
            {"format", &Change::format},         {"copy", &Change::copy},
            {"cursor", &Change::cursorSecretly}, {"axis", &Change::otherAxis},
        };
        const auto &change = Changes[number(int(std::size(Changes)))];
        (this->*change.function)();
        m_log.append(change.name);
    }

    /// Moves the cursor in both panes, or hides it if it is shown; something always changes.
    void moveCursor()
    {
        const bool isShown = m_stage.pane().m_cursor->m_visible;
        const bool show = !isShown || number(4) > 0;
        const double x = 30 + number(m_stage.pane().width());
        for (ChartWidget *chart : qAsConst(m_stage.m_model.m_charts)) {
            chart->m_cursor->m_visible = isShown;
            chart->changeCursorState(x == chart->m_cursor->m_position ? x + 1 : x, show);
        }
        QCoreApplication::processEvents();
        m_log.append(QString("move to %1").arg(x));
    }

    int number(int below) { return int(m_random() % unsigned(below)); }

    QString log() const { return m_log.mid(qMax(0, m_log.size() - 30)).join(", "); }

private:
    TitledSeries &any() { return m_stage.series(number(m_stage.m_model.m_series.size())); }
    ChartWidget &anyPane() { return m_stage.pane(number(2)); }
    QColor anyColor(int alpha = 255)
    {
        return QColor(number(256), number(256), number(256), alpha);
    }
    int anyAlpha() { return number(4) == 0 ? number(256) : 255; }
    void pass() { m_stage.pass(); }

    void addSamples()
    {
        TitledSeries &series = any();
        double x = series.m_values.isEmpty() ? 0.0 : series.m_values.last()->x;
        for (int i = number(20); i >= 0; --i) {
            x += 1.0;
            const double gap = std::numeric_limits<double>::quiet_NaN();
            m_stage.m_model.addValue(&series, newValue(x, number(8) == 0 ? gap : number(100)));
        }
        if (number(3) > 0) {
            pass();
        }
    }
    void color() { any().m_color = anyColor(anyAlpha()); }
    void lineWidth() { any().m_lineWidth = number(5); }
    void pointsVisible() { any().m_pointsVisible = number(2) == 0; }
    void pointSize() { any().setPointSize(number(12)); }
    void symbol()
    {
        QImage &image = any().m_pointImage;
        if (number(4) == 0) {
            image = QImage();
        } else if (!image.isNull()) {
            image.fill(anyColor(anyAlpha()));
        }
    }
    void visible() { any().m_visible = number(3) > 0; }
    void selected() { any().m_selected = number(2) == 0; }
    void order()
    {
        auto &all = m_stage.m_model.m_series;
        std::swap(all[number(all.size())], all[number(all.size())]);
    }
    void moveToPane() { any().m_chart = &anyPane(); }
    void size()
    {
        const int height = number(5) == 0 ? number(90) : 150 + number(140);
        anyPane().resize(number(5) == 0 ? number(120) : 200 + number(300), height);
        if (number(2) == 0) {
            pass();
        }
    }
    void palette()
    {
        QPalette colors = anyPane().palette();
        colors.setColor(number(2) == 0 ? QPalette::WindowText : QPalette::Window, anyColor());
        anyPane().setPalette(colors);
    }
    void font()
    {
        QFont font = anyPane().font();
        font.setPixelSize(number(8) == 0 ? 30 + number(20) : 8 + number(8));
        font.setItalic(number(2) == 0);
        anyPane().setFont(font);
    }
    void settings()
    {
        ChartSettings &settings = m_stage.m_model.m_settings;
        settings.backgroundColor = anyColor(m_kind == Any ? anyAlpha() : 255);
        settings.gridColor = anyColor(m_kind == Any ? anyAlpha() : 255);
        settings.cursorLineColor = anyColor(anyAlpha());
    }
    void rangeY()
    {
        const double low = number(100) - 50;
        any().m_axisY->assignRange(low, low + 0.1 * (1 + number(2000)));
    }
    void rangeX()
    {
        const double low = number(100) - 50;
        m_stage.m_model.m_axisX->assignRange(low, low + 0.1 * (1 + number(2000)));
    }
    void dateTime()
    {
        HorizontalChartAxis &axis = *m_stage.m_model.m_axisX;
        axis.m_dateTime = !axis.m_dateTime;
        axis.recalculateGridValues();
    }
    void pointsByHand()
    {
        if (m_kind == KeepsPicture) {
            return;
        }
        QVector<ChartPoint> &points = any().m_pointThread->m_points;
        for (int i = number(4); i >= 0; --i) {
            ChartPoint point;
            point.x = 30 + number(300);
            point.y = 20 + number(160);
            points.insert(number(points.size() + 1), point);
        }
    }
    void titles()
    {
        const QStringList titles{"", "Zeit", "Overpressure"};
        (number(2) == 0 ? any().m_labelX : any().m_labelY) = titles.at(number(titles.size()));
    }
    void label()
    {
        TitledSeries &series = any();
        const QVector<double> &values = series.m_axisY->m_gridValues;
        if (!values.isEmpty()) {
            series.m_labels[values.at(number(values.size()))] = QString(number(9), '/');
        }
    }
    void matrix() { any().updateMatrix(QRectF(40, 30, 100 + number(200), 50 + number(100))); }
    void format() { any().m_precision = number(4); }
    void copy() { anyPane().grab(); }
    void cursorSecretly() { anyPane().m_cursor->m_position = number(300); }
    void otherAxis()
    {
        if (m_kind == Any && number(4) == 0) {
            installCountingAxis(any());
        }
    }

    Stage &m_stage;
    const Kind m_kind;
    std::mt19937 m_random{Seed};
    QStringList m_log;
};

using Step = void (*)(Stage &);

} // namespace

Q_DECLARE_METATYPE(Step)

class TestPanePicture : public QObject
{
    Q_OBJECT

private slots:
    void showsWhatPlainPaintingShows_data();
    void showsWhatPlainPaintingShows();
    void showsItAfterEachMoveOfTheCursor_data();
    void showsItAfterEachMoveOfTheCursor();
    void joinsExposedParts();
    void keepsCurvesWhileTheCursorMoves();
    void keepsCurvesThroughExposes();
    void keepsNoCurvesThatAreShownOnce();
    void keepsCurvesAtOnceWhileTheCursorMoves();
    void keepsNothingOfAnotherLook_data();
    void keepsNothingOfAnotherLook();
    void keepsNothingWhileHidden();
    void keepsNothingWhereTheGroundShowsThrough();
    void repaintsOnlyTheFrameForTheCursor();
    void repaintsTheMarginsThatAreNoLongerRight();
    void isNotMisledByACopy();
    void readsNoAxisThatAFeederMoves();

private:
    void compare(Stage &stage, const Change &change, int step);
};

void TestPanePicture::compare(Stage &stage, const Change &change, int step)
{
    for (int i = 0; i < 2; ++i) {
        const QString found = difference(shownPicture(stage.pane(i)), stage.plainPicture(i));
        QVERIFY2(found.isEmpty(), qPrintable(QString("Step %1, pane %2: %3 after %4")
                                                 .arg(step)
                                                 .arg(i)
                                                 .arg(found, change.log())));
    }
}

void TestPanePicture::showsWhatPlainPaintingShows_data()
{
    QTest::addColumn<bool>("isKept");
    QTest::newRow("any change") << false;
    QTest::newRow("the picture can be kept") << true;
}

void TestPanePicture::showsWhatPlainPaintingShows()
{
    QFETCH(bool, isKept);
    Stage stage;
    Change change(stage, isKept ? Change::KeepsPicture : Change::Any);
    for (int step = 0; step < 800; ++step) {
        change.make();
        if (change.number(3) == 0) {
            change.moveCursor();
        }
        stage.pane(0).repaint();
        stage.pane(1).repaint();
        compare(stage, change, step);
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

void TestPanePicture::showsItAfterEachMoveOfTheCursor_data()
{
    showsWhatPlainPaintingShows_data();
}

void TestPanePicture::showsItAfterEachMoveOfTheCursor()
{
    QFETCH(bool, isKept);
    Stage stage;
    Change change(stage, isKept ? Change::KeepsPicture : Change::Any);
    for (int step = 0; step < 800; ++step) {
        if (change.number(2) == 0) {
            change.make();
        }
        change.moveCursor();
        compare(stage, change, step);
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

// Only where the picture is kept: Qt rounds a wide line that leaves what is exposed otherwise.
void TestPanePicture::joinsExposedParts()
{
    Stage stage;
    Change change(stage, Change::KeepsPicture);
    for (int step = 0; step < 500; ++step) {
        change.make();
        const QRegion corner(0, 0, change.number(400), change.number(300));
        for (int i = 0; i < 2; ++i) {
            ChartWidget &pane = stage.pane(i);
            pane.repaint(corner);
            pane.repaint(QRegion(pane.rect()).subtracted(corner));
        }
        compare(stage, change, step);
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

void TestPanePicture::keepsCurvesWhileTheCursorMoves()
{
    Stage stage;
    const QImage before = shownPicture(stage.pane());
    recolorSecretly(stage.series());

    stage.pane().changeCursorState(150.0, true);
    QCoreApplication::processEvents();
    QVERIFY(shownPicture(stage.pane()) != before);
    stage.pane().changeCursorState(151.0, true);
    QCoreApplication::processEvents();
    stage.pane().changeCursorState(0.0, false);
    QCoreApplication::processEvents();

    QCOMPARE(difference(shownPicture(stage.pane()), before), QString());
}

void TestPanePicture::keepsCurvesThroughExposes()
{
    Stage stage;
    const QImage before = shownPicture(stage.pane());
    recolorSecretly(stage.series());

    stage.pane().repaint();
    stage.pane().repaint(50, 60, 70, 80);
    stage.pane().repaint(0, 0, 100, 80);

    QCOMPARE(difference(shownPicture(stage.pane()), before), QString());
}

// New samples that come all the time make a picture of each moment a waste.
void TestPanePicture::keepsNoCurvesThatAreShownOnce()
{
    Stage stage;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(stage.pass());
    }
    const QImage before = shownPicture(stage.pane());
    recolorSecretly(stage.series());

    stage.pane().repaint();

    QVERIFY(shownPicture(stage.pane()) != before);
    QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
}

void TestPanePicture::keepsCurvesAtOnceWhileTheCursorMoves()
{
    Stage stage;
    QVERIFY(stage.pass());
    stage.pane().changeCursorState(150.0, true);
    QCoreApplication::processEvents();
    QVERIFY(stage.pass());
    const QImage before = shownPicture(stage.pane());
    recolorSecretly(stage.series());

    stage.pane().repaint();

    QCOMPARE(difference(shownPicture(stage.pane()), before), QString());
}

void TestPanePicture::keepsNothingOfAnotherLook_data()
{
    QTest::addColumn<Step>("step");

    const auto add = [](const char *name, Step step) { QTest::newRow(name) << step; };
    add("pass", [](Stage &stage) { stage.pass(); });
    add("color", [](Stage &stage) { stage.series(2).m_color = Qt::cyan; });
    add("width", [](Stage &stage) { stage.series(2).m_lineWidth = 3; });
    add("symbols", [](Stage &stage) { stage.series(2).m_pointsVisible = false; });
    add("symbol", [](Stage &stage) { stage.series(2).setPointSize(9); });
    add("hidden", [](Stage &stage) { stage.series(2).m_visible = false; });
    add("selected", [](Stage &stage) { stage.series(2).m_selected = true; });
    add("taken away", [](Stage &stage) { stage.series(2).m_chart = nullptr; });
    add("size", [](Stage &stage) { stage.pane().resize(PaneSize + QSize(1, 0)); });
    add("background", [](Stage &stage) { stage.m_model.m_settings.backgroundColor = Qt::red; });
    add("grid", [](Stage &stage) { stage.m_model.m_settings.gridColor = Qt::red; });
    add("grid of X", [](Stage &stage) { stage.m_model.m_axisX->assignRange(0.0, 70.0); });
    add("grid of Y", [](Stage &stage) { stage.series().m_axisY->assignRange(0.0, 70.0); });
    add("map", [](Stage &stage) { stage.series().updateMatrix(QRectF(40, 30, 200, 100)); });
    add("points", [](Stage &stage) { stage.series(2).m_pointThread->m_points.removeLast(); });
}

void TestPanePicture::keepsNothingOfAnotherLook()
{
    QFETCH(Step, step);
    Stage stage(4);
    stage.pane().repaint();
    stage.pane().repaint(); // seen twice, and kept
    recolorSecretly(stage.series());

    step(stage);
    for (int i = 0; i < 3; ++i) {
        stage.pane().repaint();
        QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
    }
}

void TestPanePicture::keepsNothingWhileHidden()
{
    Stage stage;
    recolorSecretly(stage.series());

    stage.pane().hide();
    stage.pane().show();
    QCoreApplication::processEvents();

    QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
}

void TestPanePicture::keepsNothingWhereTheGroundShowsThrough()
{
    Stage stage;
    stage.m_model.m_settings.backgroundColor = QColor(10, 200, 30, 100);
    stage.pane().repaint();
    recolorSecretly(stage.series());

    stage.pane().repaint();

    QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
}

void TestPanePicture::repaintsOnlyTheFrameForTheCursor()
{
    Stage stage;
    stage.pane().changeCursorState(150.0, true);
    QCoreApplication::processEvents();
    const QRect frame = stage.pane().fullChartRect(QRectF()).toRect();

    ExposedRegion exposed(stage.pane());
    stage.pane().changeCursorState(151.0, true);
    QCoreApplication::processEvents();

    QCOMPARE(exposed.m_region, QRegion(frame.x(), 0, frame.width() + 1, frame.bottom() + 2));
}

void TestPanePicture::repaintsTheMarginsThatAreNoLongerRight()
{
    Stage stage;
    stage.pane().changeCursorState(150.0, true);
    QCoreApplication::processEvents();

    stage.series().m_labelY = "Y";
    stage.pane().changeCursorState(151.0, true);
    QCoreApplication::processEvents();

    QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
}

void TestPanePicture::isNotMisledByACopy()
{
    Stage stage;
    stage.series().m_labelY = "Y";
    stage.pane().grab();

    stage.pane().changeCursorState(151.0, true);
    QCoreApplication::processEvents();

    QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
}

// For the thread sanitizer: what is compared with the present axes was once theirs.
void TestPanePicture::readsNoAxisThatAFeederMoves()
{
    constexpr int Samples = 3000;
    Stage stage;
    std::atomic<bool> isFed{false};
    std::thread feeder([&] {
        for (int i = 0; i < Samples; ++i) {
            stage.m_model.addValue(&stage.series(), new ChartValue{100.0 + i, double(i)});
        }
        isFed = true;
    });
    for (int x = 100; !isFed; x = 100 + (x + 1) % 100) {
        stage.pane().changeCursorState(x, true);
        QCoreApplication::processEvents();
    }
    feeder.join();
    stage.pane().changeCursorState(0.0, false);
    QVERIFY(stage.pass());

    QCOMPARE(difference(shownPicture(stage.pane()), stage.plainPicture()), QString());
}

QTEST_MAIN(TestPanePicture)
#include "tst_panepicture.moc"
