#include "common/chartwindow.h"

#include "common/chartsettingsdialog.h"
#include "model/dynamicchartmodel.h"
#include "support/modelsetup.h"
#include "support/popupwatcher.h"
#include "support/quietplatform.h"
#include "views/multichart.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTimer>
#include <QToolBar>
#include <QtTest>

namespace {

const QSize FirstSize(700, 500);

class Window : public ChartWindow
{
public:
    Window()
        : m_model(new DynamicChartModel(QCoreApplication::organizationName(),
                                        QCoreApplication::applicationName()))
    {
        ChartSettings defaults;
        defaults.backgroundColor = QColor(1, 2, 3);
        defaults.visibleInterval = 42.0;
        setModel(m_model, defaults);
        m_model->applyChartSettings();
        createMenus({new QAction("Own", this), nullptr});
    }

    void open()
    {
        const QuietPlatform quiet;
        restoreLayout(FirstSize);
        show();
    }

    /// The texts of a menu of the bar: "Own, |, Quit".
    QString menuText(int index) const
    {
        return actionsText(menuBar()->actions().at(index)->menu()->actions()).remove('&');
    }

    DynamicChartModel *m_model; ///< The chart's.
};

/// Presses a button of the settings dialog, once it stands, and then closes it.
class SettingsUser : public QObject
{
public:
    SettingsUser(ChartWindow &window, QDialogButtonBox::StandardButton button)
    {
        QTimer::singleShot(0, this, [this, &window, button] {
            auto *dialog = window.findChild<ChartSettingsDialog *>();
            m_seen = dialog;
            if (dialog) {
                dialog->findChild<QDialogButtonBox *>()->button(button)->click();
                dialog->reject();
            }
        });
    }

    bool m_seen = false;

private:
    QuietPlatform m_quiet;
};

QAction *settingsAction(const ChartWindow &window)
{
    return window.menuBar()->actions().at(1)->menu()->actions().constLast();
}

} // namespace

class TestChartWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void placesToolBar();
    void offersMenus();
    void undoesByKey();
    void takesDefaultsAtFirstStart();
    void keepsSettingsAcrossStarts();
    void keepsSizeAcrossStarts();
    void staysWithinScreenAtFirstStart();
    void hidesToolBarByMenuAndKeepsThat();
    void keepsAppliedSettingsAtOnce();
    void changesNothingWhenSettingsAreCancelled();
};

void TestChartWindow::initTestCase()
{
    QCoreApplication::setOrganizationName("QUARVChart5 tests"); // without one nothing is kept
}

void TestChartWindow::init()
{
    QSettings().clear();
}

void TestChartWindow::placesToolBar()
{
    Window window;
    window.open();

    QToolBar *toolBar = window.chart().toolBar();
    QCOMPARE(window.toolBarArea(toolBar), Qt::TopToolBarArea);
    QVERIFY(toolBar->isVisible());
    QVERIFY(toolBar->actions().contains(window.m_model->m_zoomInAction));
    QVERIFY(!window.windowIcon().isNull());
}

void TestChartWindow::offersMenus()
{
    const Window window;

    QCOMPARE(window.menuText(0),
             QString("Own, |, Export picture..., Save samples..., |, Print preview..., Print..., "
                     "|, Quit"));
    QCOMPARE(window.menuText(1), QString("Undo action, Redo action, |, Settings..."));
    QCOMPARE(window.menuText(2),
             QString("Combine, Separate, |, Add chart, Remove empty charts, Adjust size, |, "
                     "Undo zoom, |, Chart toolbar"));
}

void TestChartWindow::undoesByKey()
{
    const Window window;
    QCOMPARE(window.m_model->m_undoAction->shortcut(), QKeySequence(QKeySequence::Undo));
    QCOMPARE(window.m_model->m_redoAction->shortcut(), QKeySequence(QKeySequence::Redo));
}

void TestChartWindow::takesDefaultsAtFirstStart()
{
    const Window window;
    QCOMPARE(window.m_model->m_settings.backgroundColor, QColor(1, 2, 3));
    QCOMPARE(window.m_model->m_settings.visibleInterval, 42.0);
}

void TestChartWindow::keepsSettingsAcrossStarts()
{
    {
        Window window;
        window.open();
        window.m_model->m_settings.backgroundColor = QColor(9, 8, 7);
        window.m_model->m_settings.visibleInterval = 17.0;
        window.close();
    }
    const Window window;
    QCOMPARE(window.m_model->m_settings.backgroundColor, QColor(9, 8, 7));
    QCOMPARE(window.m_model->m_settings.visibleInterval, 17.0);
    QCOMPARE(window.m_model->m_axisX->m_max - window.m_model->m_axisX->m_min, 17.0);
}

void TestChartWindow::keepsSizeAcrossStarts()
{
    const QSize chosen(640, 480);
    {
        Window window;
        window.open();
        QCOMPARE(window.size(), FirstSize);
        window.resize(chosen);
        window.close();
    }
    Window window;
    window.open();
    QCOMPARE(window.size(), chosen);
}

void TestChartWindow::staysWithinScreenAtFirstStart()
{
    Window window;
    window.restoreLayout(QSize(100000, 500));

    QCOMPARE(window.size(), QSize(window.screen()->availableSize().width(), 500));
}

void TestChartWindow::hidesToolBarByMenuAndKeepsThat()
{
    {
        Window window;
        window.open();
        window.menuBar()->actions().at(2)->menu()->actions().constLast()->trigger();
        QVERIFY(!window.chart().toolBar()->isVisible());
        window.close();
    }
    Window window;
    window.open();
    QVERIFY(!window.chart().toolBar()->isVisible());
}

void TestChartWindow::keepsAppliedSettingsAtOnce()
{
    Window window;
    window.open();
    window.m_model->m_settings.backgroundColor = QColor(9, 8, 7);
    QSignalSpy changed(&window, SIGNAL(settingsChanged()));

    SettingsUser user(window, QDialogButtonBox::Apply);
    settingsAction(window)->trigger();
    QVERIFY(user.m_seen);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(QSettings().value("MultiChart/backgroundColor").value<QColor>(), QColor(9, 8, 7));
}

void TestChartWindow::changesNothingWhenSettingsAreCancelled()
{
    Window window;
    window.open();
    const QSignalSpy changed(&window, SIGNAL(settingsChanged()));

    SettingsUser user(window, QDialogButtonBox::Cancel);
    settingsAction(window)->trigger();
    QVERIFY(user.m_seen);
    QCOMPARE(changed.count(), 0);
    QVERIFY(!QSettings().contains("MultiChart/backgroundColor"));
}

QTEST_MAIN(TestChartWindow)
#include "tst_chartwindow.moc"
