#include "editors/qtcolorbutton.h"
#include "editors/serieseditor.h"
#include "editors/seriespropertiesdialog.h"
#include "model/staticchartmodel.h"
#include "support/dialoganswer.h"
#include "support/plainseries.h"
#include "support/popupwatcher.h"
#include "support/recordingmodel.h"
#include "support/screen.h"
#include "support/settingsfolder.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

#include <memory>

namespace {

const QRect WindowPlace(40, 40, 1000, 700);
const QRect SourcePlace(1100, 100, 60, 60); // beside the window
const QColor ChosenColor(0x7b, 0x2d, 0x43);
constexpr int ChosenWidth = 7; // pixels, of a line

/// What this program does depends on this variable, as it runs in three roles.
constexpr auto RoleVariable = "QUARVCHART_LEGENDWALK_ROLE";

QPoint centerOf(const QWidget &widget)
{
    return widget.mapToGlobal(widget.rect().center());
}

QRect globalRect(const QWidget &widget, const QRect &rect)
{
    return QRect(widget.mapToGlobal(rect.topLeft()), rect.size());
}

bool clickAt(const QPoint &point, const QString &button = "1")
{
    return runXdotool(mouseMove(point) + QStringList{"click", button});
}

/// What the user sees there.
QImage picture(const QRect &area)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

int pixelsOf(const QColor &color, const QRect &area)
{
    const QImage image = picture(area);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, y) == color.rgb() ? 1 : 0;
        }
    }
    return count;
}

bool shows(const QColor &color, const QRect &area)
{
    return pixelsOf(color, area) > 0;
}

/// Selects all text of an editor and types another.
bool type(QWidget &editor, const QString &text)
{
    // Without a window manager nobody else gives the keyboard to a new window.
    editor.activateWindow();
    return comesTrue([&] { return editor.isActiveWindow(); }) && clickAt(centerOf(editor)) &&
           comesTrue([&] { return editor.hasFocus(); }) &&
           runXdotool({"key", "ctrl+a", "type", text});
}

bool closesBy(QDialog &dialog, QDialogButtonBox::StandardButton button)
{
    return clickAt(centerOf(*dialog.findChild<QDialogButtonBox *>()->button(button))) &&
           comesTrue([&] { return !dialog.isVisible(); });
}

/// The field for a color's name; null if there is none.
QLineEdit *colorNameEdit(const QColorDialog &dialog)
{
    const auto edits = dialog.findChildren<QLineEdit *>();
    for (QLineEdit *edit : edits) {
        if (edit->text() == dialog.currentColor().name()) {
            return edit;
        }
    }
    return nullptr;
}

QtColorButton &colorButton(const SeriesPropertiesDialog &dialog)
{
    return *dialog.findChild<QtColorButton *>("lineColorToolButton");
}

/**
 * Drags something from one place of this program's windows onto a widget of its own, and lets go
 * when the widget has taken notice.
 *
 * A drag runs an event loop of its own, inside whatever had the mouse moved; so nothing here waits.
 */
class DragInside : public QObject
{
public:
    DragInside(const QPoint &from, QWidget &target)
        : m_target(centerOf(target))
    {
        target.installEventFilter(this);
        m_tool.start("xdotool", mouseMove(from) + QStringList{"mousedown", "1"});
        connect(&m_timer, &QTimer::timeout, this, &DragInside::goOn);
        m_timer.start(Interval);
    }

    bool isDone() const { return m_isReleased && !isBusy(); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_isOver = m_isOver || event->type() == QEvent::DragEnter;
        return false;
    }

private:
    static constexpr int Interval = 20; // ms

    bool isBusy() const { return m_tool.state() != QProcess::NotRunning; }

    void goOn()
    {
        if (m_isReleased || isBusy()) {
            return;
        }
        if (m_isOver) {
            m_tool.start("xdotool", {"mouseup", "1"});
            m_isReleased = true;
            return;
        }
        // To and fro: the first move starts the drag, and only a later one is seen by the target.
        m_step = 1 - m_step;
        m_tool.start("xdotool", mouseMove(m_target + QPoint(m_step, 0)));
    }

    const QPoint m_target;
    QProcess m_tool;
    QTimer m_timer;
    int m_step = 0; // pixels
    bool m_isOver = false;
    bool m_isReleased = false;
};

/// Another program, whose window is a colour that can be dragged away.
class ColorSource
{
public:
    ColorSource()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(RoleVariable, "source");
        m_program.setProcessEnvironment(environment);
        m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_program.start(QCoreApplication::applicationFilePath(), {"-style", "fusion"});
    }
    ~ColorSource()
    {
        m_program.terminate();
        m_program.waitForFinished(TimeLimit);
    }

    bool isShown() const { return shows(ChosenColor, SourcePlace); }

private:
    QProcess m_program;
};

} // namespace

/**
 * Uses the legend as its user does, in a real window with a real mouse and keyboard, and watches
 * both the model and the screen.
 *
 * Three series: "first" has the upper pane, "second" and "third" share the lower one.
 */
class TestLegendWalk : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void recolorsByDialog();
    void recolorsByDroppedColor();
    void resetsByButton();
    void hidesAndShowsByCheckBox();
    void movesSeriesToOtherPane_data();
    void movesSeriesToOtherPane();
    void removesByMenuThenUndoesAndRedoes();
    void showsAxisOfSelectedRow();
    void cancelsByEscape();

private:
    enum Row { First, Second, Third };

    PlainSeries *addSeries(const QString &name, double maximumY);
    QTreeView &legend() const { return *m_chart->legendView(); }
    QRect cell(int row, int column) const;
    QPoint nameOf(int row) const;
    QPoint checkBoxOf(int row) const;
    QRect plot(int pane) const;
    int nameInk(int row) const;
    SeriesEditor *openEditor(int row) const;
    bool clickAction(QAction *action) const;

    std::unique_ptr<SettingsFolder> m_settings;
    std::unique_ptr<QMainWindow> m_window;
    MultiChart *m_chart = nullptr;
    StaticChartModel *m_model = nullptr;
    PlainSeries *m_series[3] = {};
};

void TestLegendWalk::init()
{
    m_settings = std::make_unique<SettingsFolder>();
    m_window = std::make_unique<QMainWindow>();
    m_chart = new MultiChart;
    m_model = new StaticChartModel("QUARVChart5 tests", "tests");
    m_chart->setModel(m_model);
    m_model->applyChartSettings();
    m_window->addToolBar(m_chart->toolBar());
    m_window->setCentralWidget(m_chart);
    m_window->setGeometry(WindowPlace);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(comesTrue([this] { return m_window->isActiveWindow(); }));

    m_series[First] = addSeries("first series", 50.0);
    m_series[Second] = addSeries("second series", 100.0);
    m_model->m_multiModeAction->trigger();
    m_series[Third] = addSeries("third series", 7000.0);
    m_series[Third]->m_chart = m_series[Second]->m_chart;
    m_model->m_removeChartAction->trigger();
    m_chart->setSizes({200, 200, 200});
    QCOMPARE(m_model->m_charts.size(), 2);
    QVERIFY(settled(*m_model));
    QVERIFY(comesTrue([this] { return shows(m_series[First]->m_color, plot(0)); }));
    QVERIFY(comesTrue([this] { return shows(m_series[Second]->m_color, plot(1)); }));
}

void TestLegendWalk::cleanup()
{
    m_window.reset();
    m_settings.reset();
}

/// A line across the plot, at another height for each series.
PlainSeries *TestLegendWalk::addSeries(const QString &name, double maximumY)
{
    auto *series = new PlainSeries(name);
    series->m_maximumY = maximumY;
    m_model->addSeries(series);
    const double y = maximumY * (m_model->m_series.size() + 1) / 8.0;
    m_model->addValues(series, {newValue(0.0, y), newValue(10.0, y)});
    m_model->update();
    return series;
}

QRect TestLegendWalk::cell(int row, int column) const
{
    return globalRect(*legend().viewport(), legend().visualRect(m_model->index(row, column)));
}

QPoint TestLegendWalk::checkBoxOf(int row) const
{
    const QRect name = cell(row, AbstractChartModel::NameColumn);
    return name.topLeft() + QPoint(name.height() / 2, name.height() / 2);
}

QPoint TestLegendWalk::nameOf(int row) const
{
    const QRect name = cell(row, AbstractChartModel::NameColumn);
    return name.topLeft() + QPoint(2 * name.height(), name.height() / 2);
}

/// Where series are seen, and no axis.
QRect TestLegendWalk::plot(int pane) const
{
    const ChartWidget &chart = *m_model->m_charts.at(pane);
    return globalRect(chart, chart.chartRect(QRectF()).toAlignedRect().adjusted(1, 1, -1, -1));
}

/// Pixels that make up a check box and a name: more of them for a bold one.
int TestLegendWalk::nameInk(int row) const
{
    const QRect name = cell(row, AbstractChartModel::NameColumn);
    const QColor background = picture(QRect(name.right() - 1, name.center().y(), 1, 1)).pixel(0, 0);
    return name.width() * name.height() - pixelsOf(background, name);
}

SeriesEditor *TestLegendWalk::openEditor(int row) const
{
    const QModelIndex sample = m_model->index(row, AbstractChartModel::LineColumn);
    const auto editor = [&] { return qobject_cast<SeriesEditor *>(legend().indexWidget(sample)); };
    const bool opened =
        clickAt(cell(row, AbstractChartModel::LineColumn).center()) && comesTrue([&] {
            return editor() &&
                   shows(m_series[row]->m_color, globalRect(*editor(), editor()->rect()));
        });
    return opened ? editor() : nullptr;
}

bool TestLegendWalk::clickAction(QAction *action) const
{
    return clickAt(centerOf(*m_chart->toolBar()->widgetForAction(action)));
}

void TestLegendWalk::recolorsByDialog()
{
    SeriesEditor *editor = openEditor(Second);
    QVERIFY(editor);
    QVERIFY(comesTrue([this] { return m_series[Second]->m_selected; }));
    const int ink = nameInk(Second);
    DialogAnswer<QColorDialog> colors{[](QColorDialog &dialog) {
        QLineEdit *name = colorNameEdit(dialog);
        QVERIFY(name);
        QVERIFY(type(*name, ChosenColor.name()));
        QVERIFY(comesTrue([&] { return dialog.currentColor() == ChosenColor; }));
        QVERIFY(closesBy(dialog, QDialogButtonBox::Ok));
    }};
    DialogAnswer<SeriesPropertiesDialog> properties{
        [](SeriesPropertiesDialog &dialog) {
            QtColorButton &button = colorButton(dialog);
            QVERIFY(clickAt(centerOf(button)));
            QVERIFY(comesTrue([&] { return button.color() == ChosenColor; }));
            QVERIFY(
                comesTrue([&] { return shows(ChosenColor, globalRect(button, button.rect())); }));
        },
        [](SeriesPropertiesDialog &dialog) { QVERIFY(closesBy(dialog, QDialogButtonBox::Ok)); }};

    QVERIFY(clickAt(centerOf(*editor->m_seriesButton)));
    QVERIFY(comesTrue([&] { return properties.isDone() && colors.isDone(); }));

    QCOMPARE(m_series[Second]->m_color, ChosenColor);
    QVERIFY(m_series[Second]->m_customized);
    QVERIFY(comesTrue([this] { return shows(ChosenColor, plot(1)); }));
    const QWidget &button = *editor->m_seriesButton;
    QVERIFY(comesTrue([&] { return shows(ChosenColor, globalRect(button, button.rect())); }));
    QVERIFY(comesTrue([&] { return nameInk(Second) > ink; }));
    QVERIFY(!m_series[Third]->m_customized);
}

void TestLegendWalk::recolorsByDroppedColor()
{
    SeriesEditor *editor = openEditor(Second);
    QVERIFY(editor);
    const ColorSource source;
    QVERIFY(comesTrue([&] { return source.isShown(); }));
    DialogAnswer<SeriesPropertiesDialog> properties{
        [this](SeriesPropertiesDialog &dialog) {
            QtColorButton &button = colorButton(dialog);
            const QRect area = globalRect(button, button.rect());
            QVERIFY(runXdotool(mouseMove(SourcePlace.center()) + QStringList{"mousedown", "1"} +
                               mouseMove(SourcePlace.center() - QPoint(20, 0))));
            int step = 0; // pixels, to and fro until the other program drags
            QVERIFY(comesTrue([&] {
                step = 1 - step;
                return runXdotool(mouseMove(centerOf(button) + QPoint(step, 0))) &&
                       shows(ChosenColor, area);
            }));
            QCOMPARE(button.color(), m_series[Second]->m_color); // as yet it only shows the other
            QVERIFY(runXdotool({"mouseup", "1"}));
            QVERIFY(comesTrue([&] { return button.color().rgba() == ChosenColor.rgba(); }));
            QVERIFY(shows(ChosenColor, area));
        },
        [](SeriesPropertiesDialog &dialog) { QVERIFY(closesBy(dialog, QDialogButtonBox::Ok)); }};

    QVERIFY(clickAt(centerOf(*editor->m_seriesButton)));
    QVERIFY(comesTrue([&] { return properties.isDone(); }));

    QCOMPARE(m_series[Second]->m_color.rgba(), ChosenColor.rgba());
    QVERIFY(m_series[Second]->m_customized);
    QVERIFY(comesTrue([this] { return shows(ChosenColor, plot(1)); }));
}

void TestLegendWalk::resetsByButton()
{
    PlainSeries &series = *m_series[Second];
    const QColor own = series.m_color;
    SeriesEditor *editor = openEditor(Second);
    QVERIFY(editor);
    QVERIFY(comesTrue([&] { return series.m_selected; }));
    QVERIFY(settled(*m_model));
    const int ink = nameInk(Second);
    series.m_color = ChosenColor;
    series.m_lineWidth = ChosenWidth;
    series.m_customized = true;
    m_model->update();
    const QRect area = globalRect(*editor, editor->rect());
    QVERIFY(comesTrue([&] { return shows(ChosenColor, plot(1)) && shows(ChosenColor, area); }));
    QVERIFY(comesTrue([&] { return nameInk(Second) > ink; }));

    QVERIFY(clickAt(centerOf(*editor->m_resetButton)));

    QVERIFY(comesTrue([&] { return !series.m_customized; }));
    QCOMPARE(series.m_color, own);
    QCOMPARE(series.m_lineWidth, SeriesSettings::defaultLineWidth());
    QVERIFY(comesTrue([&] { return !shows(ChosenColor, plot(1)) && shows(own, plot(1)); }));
    QVERIFY(comesTrue([&] { return !shows(ChosenColor, area) && shows(own, area); }));
    QVERIFY(comesTrue([&] { return nameInk(Second) == ink; }));
}

void TestLegendWalk::hidesAndShowsByCheckBox()
{
    const QColor color = m_series[Third]->m_color;
    QVERIFY(comesTrue([&] { return shows(color, plot(1)); }));

    QVERIFY(clickAt(checkBoxOf(Third)));
    QVERIFY(comesTrue([this] { return !m_series[Third]->m_visible; }));
    QVERIFY(comesTrue([&] { return !shows(color, plot(1)); }));
    QVERIFY(shows(m_series[Second]->m_color, plot(1)));

    QVERIFY(clickAt(checkBoxOf(Third)));
    QVERIFY(comesTrue([this] { return m_series[Third]->m_visible; }));
    QVERIFY(comesTrue([&] { return shows(color, plot(1)); }));
}

void TestLegendWalk::movesSeriesToOtherPane_data()
{
    QTest::addColumn<bool>("autoRemove");

    QTest::newRow("the emptied pane goes") << true;
    QTest::newRow("the emptied pane stays") << false;
}

void TestLegendWalk::movesSeriesToOtherPane()
{
    QFETCH(bool, autoRemove);
    m_model->m_settings.autoRemoveEmptyChart = autoRemove;
    const QColor color = m_series[First]->m_color;
    ChartWidget *upper = m_model->m_charts.at(0);
    ChartWidget *lower = m_model->m_charts.at(1);

    const DragInside drag(nameOf(First), *lower);
    QVERIFY(comesTrue([&] { return drag.isDone(); }));

    QVERIFY(comesTrue([&] { return m_series[First]->m_chart == lower; }));
    QCOMPARE(m_model->m_charts.contains(upper), !autoRemove);
    QCOMPARE(m_chart->count(), autoRemove ? 2 : 3);
    const int pane = m_model->m_charts.indexOf(lower);
    QVERIFY(comesTrue([&] { return shows(color, plot(pane)); }));
    QCOMPARE(m_model->m_removeChartAction->isEnabled(), !autoRemove);
    if (!autoRemove) {
        QVERIFY(comesTrue([&] { return !shows(color, plot(0)); }));
        QVERIFY(clickAction(m_model->m_removeChartAction));
        QVERIFY(comesTrue([this] { return m_model->m_charts.size() == 1; }));
        QCOMPARE(m_chart->count(), 2);
    }
}

void TestLegendWalk::removesByMenuThenUndoesAndRedoes()
{
    const QColor color = m_series[First]->m_color;
    PopupWatcher menus;
    menus.m_beforeClose = [this] {
        const auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QAction *action = m_model->m_removeSeriesAction;
        QVERIFY(clickAt(globalRect(*menu, menu->actionGeometry(action)).center()));
        QVERIFY(comesTrue([] { return !QApplication::activePopupWidget(); }));
    };

    QVERIFY(clickAt(nameOf(First), "3"));
    QVERIFY(comesTrue([&] { return m_model->m_series.size() == 2; }));
    QCOMPARE(menus.m_text, QString("Remove series, Remove all series, Clear points, |, "
                                   "Adjust columns width"));
    QVERIFY(!m_model->m_series.contains(m_series[First]));
    QCOMPARE(m_model->m_charts.size(), 1);
    QVERIFY(comesTrue([&] { return !shows(color, plot(0)); }));

    QVERIFY(clickAction(m_model->m_undoAction));
    QVERIFY(comesTrue([this] { return m_model->m_series.size() == 3; }));
    QCOMPARE(m_model->m_series.first(), m_series[First]);
    QCOMPARE(m_model->m_charts.size(), 2);
    QCOMPARE(m_chart->count(), 3);
    QVERIFY(comesTrue([&] { return shows(color, plot(0)); }));

    QVERIFY(clickAction(m_model->m_redoAction));
    QVERIFY(comesTrue([this] { return m_model->m_series.size() == 2; }));
    QCOMPARE(m_model->m_charts.size(), 1);
    QVERIFY(comesTrue([&] { return !shows(color, plot(0)); }));
}

void TestLegendWalk::showsAxisOfSelectedRow()
{
    const ChartWidget &pane = *m_model->m_charts.at(1);
    const QRect frame = pane.fullChartRect(QRectF()).toRect();
    const QRect labels = globalRect(pane, QRect(0, frame.top(), frame.left(), frame.height()));
    QVERIFY(clickAt(nameOf(Second)));
    QVERIFY(comesTrue([this] { return m_series[Second]->m_selected; }));
    QCOMPARE(pane.axisY(), m_series[Second]->m_axisY);
    QVERIFY(comesTrue([&] { return shows(m_series[Second]->m_color, labels); }));

    QVERIFY(clickAt(nameOf(Third)));

    QVERIFY(comesTrue([this] { return m_series[Third]->m_selected; }));
    QVERIFY(!m_series[Second]->m_selected);
    QCOMPARE(pane.axisY(), m_series[Third]->m_axisY);
    QVERIFY(comesTrue([&] {
        return shows(m_series[Third]->m_color, labels) && !shows(m_series[Second]->m_color, labels);
    }));
}

void TestLegendWalk::cancelsByEscape()
{
    const PlainSeries &series = *m_series[Second];
    const QColor own = series.m_color;
    SeriesEditor *editor = openEditor(Second);
    QVERIFY(editor);
    DialogAnswer<SeriesPropertiesDialog> properties{[](SeriesPropertiesDialog &dialog) {
        auto *width = dialog.findChild<QSpinBox *>("lineWidthSpinBox");
        QVERIFY(type(*width, QString::number(ChosenWidth)));
        QVERIFY(comesTrue([&] { return width->value() == ChosenWidth; }));
        QVERIFY(runXdotool({"key", "Escape"}));
        QVERIFY(comesTrue([&] { return !dialog.isVisible(); }));
    }};

    QVERIFY(clickAt(centerOf(*editor->m_seriesButton)));
    QVERIFY(comesTrue([&] { return properties.isDone(); }));

    QCOMPARE(series.m_color, own);
    QCOMPARE(series.m_lineWidth, SeriesSettings::defaultLineWidth());
    QVERIFY(!series.m_customized);
}

namespace {

int runWalk(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setStyle("fusion");
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication::setDoubleClickInterval(0); // Quick clicks are meant one by one.
    TestLegendWalk walk;
    return QTest::qExec(&walk, app.arguments());
}

int runSource(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QtColorButton button;
    button.setColor(ChosenColor);
    button.setGeometry(SourcePlace);
    button.show();
    return QApplication::exec();
}

/// Runs the walk as a program of its own, whose platform is a screen that is made here.
int runOnScreen(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    if (!Screen::isAvailable()) {
        qInfo("Skipped: needs Xvfb and xdotool");
        return EXIT_SUCCESS;
    }
    Screen screen;
    if (!screen.start()) {
        qInfo("Xvfb does not start");
        return EXIT_FAILURE;
    }
    QProcessEnvironment environment = screen.environment();
    environment.insert(RoleVariable, "walk");
    environment.remove("QT_QPA_PLATFORMTHEME");
    environment.remove("XDG_CURRENT_DESKTOP");
    // The libraries of the desktop keep what they have until the process ends.
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    QProcess walk;
    walk.setProcessEnvironment(environment);
    walk.setProcessChannelMode(QProcess::ForwardedChannels);
    walk.start(QCoreApplication::applicationFilePath(), QCoreApplication::arguments().mid(1));
    walk.waitForFinished(-1); // Tests have a time limit of their own.
    return walk.exitStatus() == QProcess::NormalExit ? walk.exitCode() : EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    const QByteArray role = qgetenv(RoleVariable);
    if (role == "walk") {
        return runWalk(argc, argv);
    }
    return role == "source" ? runSource(argc, argv) : runOnScreen(argc, argv);
}

#include "tst_legendwalk.moc"
