#include "model/staticchartmodel.h"
#include "ui_chartform.h"
#include "views/multichart.h"

#include <QFile>
#include <QPluginLoader>
#include <QPointer>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QUiLoader>
#include <QXmlStreamReader>

#include <memory>

namespace {

/// The plug-in, unloaded at the end: the next test has a new one.
class LoadedPlugin
{
public:
    ~LoadedPlugin() { m_loader.unload(); }

    QDesignerCustomWidgetInterface *get()
    {
        return qobject_cast<QDesignerCustomWidgetInterface *>(m_loader.instance());
    }

private:
    QPluginLoader m_loader{QStringLiteral(PLUGIN)};
};

/// Loads \p form with the plug-in of the build alone. Returns null if that does not go.
std::unique_ptr<QWidget> loadForm(QIODevice &form)
{
    QUiLoader loader;
    loader.clearPluginPaths();
    loader.addPluginPath(QStringLiteral(PLUGIN_FOLDER));
    return std::unique_ptr<QWidget>(loader.load(&form));
}

} // namespace

class TestMultiChartPlugin : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatItIs();
    void offersOneSmallChart();
    void isInitializedByDesignerOnly();
    void leavesToolBarToProgram();
    void takesToolBarAlongInDesigner();
    void isAvailableToUiLoader();
    void loadsChartsOfForm();
    void loadedChartShowsModel();
    void compiledFormHasSameCharts();
};

void TestMultiChartPlugin::tellsWhatItIs()
{
    LoadedPlugin plugin;
    QDesignerCustomWidgetInterface *chart = plugin.get();
    QVERIFY(chart);
    QCOMPARE(chart->name(), QString(MultiChart::staticMetaObject.className()));
    QCOMPARE(chart->group(), QString("Charts"));
    QCOMPARE(chart->toolTip(), QString("Chart panes above a legend"));
    QVERIFY(chart->whatsThis().contains("setModel()"));
    QCOMPARE(chart->includeFile(), QString("<QUARVChart5/MultiChart>"));
    QCOMPARE(chart->icon().availableSizes(),
             QList<QSize>({QSize(22, 22)})); // the widget box passes over others
    QVERIFY(!chart->isContainer());
}

void TestMultiChartPlugin::offersOneSmallChart()
{
    LoadedPlugin plugin;
    QStringList elements;
    QStringList sizes;
    QXmlStreamReader reader(plugin.get()->domXml().trimmed());
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (reader.name() == "widget") {
            elements << reader.attributes().value("class").toString()
                     << reader.attributes().value("name").toString();
        } else if (reader.name() == "width" || reader.name() == "height") {
            sizes << reader.readElementText();
        }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(elements, QStringList({"MultiChart", "multiChart"}));
    QCOMPARE(sizes, QStringList({"480", "360"}));
}

void TestMultiChartPlugin::isInitializedByDesignerOnly()
{
    LoadedPlugin plugin;
    QVERIFY(!plugin.get()->isInitialized());
    plugin.get()->initialize(nullptr);
    QVERIFY(plugin.get()->isInitialized());
}

void TestMultiChartPlugin::leavesToolBarToProgram()
{
    LoadedPlugin plugin;
    QWidget parent;
    auto *chart = qobject_cast<MultiChart *>(plugin.get()->createWidget(&parent));
    QVERIFY(chart);
    QCOMPARE(chart->parentWidget(), &parent);

    const QPointer<QToolBar> toolBar = chart->toolBar();
    delete chart;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(toolBar);
    delete toolBar;
}

void TestMultiChartPlugin::takesToolBarAlongInDesigner()
{
    LoadedPlugin plugin;
    plugin.get()->initialize(nullptr);
    QWidget parent;
    auto *chart = qobject_cast<MultiChart *>(plugin.get()->createWidget(&parent));
    const QPointer<QToolBar> toolBar = chart->toolBar();
    delete chart;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!toolBar);
}

void TestMultiChartPlugin::isAvailableToUiLoader()
{
    QUiLoader loader;
    loader.clearPluginPaths();
    QVERIFY(!loader.availableWidgets().contains("MultiChart"));
    loader.addPluginPath(QStringLiteral(PLUGIN_FOLDER));
    QVERIFY(loader.availableWidgets().contains("MultiChart"));
}

void TestMultiChartPlugin::loadsChartsOfForm()
{
    QFile file(QStringLiteral(FORM));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const std::unique_ptr<QWidget> form = loadForm(file);
    QVERIFY(form);

    const QList<MultiChart *> charts = form->findChildren<MultiChart *>();
    QCOMPARE(charts.size(), 2);
    QCOMPARE(charts[0]->objectName(), QString("pressureChart"));
    QCOMPARE(charts[0]->toolTip(), QString("Pressure"));
    QCOMPARE(charts[1]->objectName(), QString("temperatureChart"));
    for (MultiChart *chart : charts) {
        const std::unique_ptr<QToolBar> toolBar(chart->toolBar());
        QVERIFY(toolBar);
        QCOMPARE(chart->orientation(), Qt::Vertical);
        QCOMPARE(chart->count(), 1);
        QCOMPARE(chart->widget(0), chart->legendView());
    }
}

void TestMultiChartPlugin::loadedChartShowsModel()
{
    QFile file(QStringLiteral(FORM));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const std::unique_ptr<QWidget> form = loadForm(file);
    QVERIFY(form);
    auto *chart = form->findChild<MultiChart *>("pressureChart");
    const std::unique_ptr<QToolBar> toolBar(chart->toolBar());
    const std::unique_ptr<QToolBar> otherToolBar(
        form->findChild<MultiChart *>("temperatureChart")->toolBar());

    chart->setModel(new StaticChartModel("QUARVChart5 tests", "plug-in"));
    QCOMPARE(chart->count(), 2); // a pane above the legend
    QVERIFY(!toolBar->actions().isEmpty());
}

void TestMultiChartPlugin::compiledFormHasSameCharts()
{
    QWidget widget;
    Ui::ChartForm form;
    form.setupUi(&widget);
    const std::unique_ptr<QToolBar> toolBar(form.pressureChart->toolBar());
    const std::unique_ptr<QToolBar> otherToolBar(form.temperatureChart->toolBar());
    QCOMPARE(form.pressureChart->objectName(), QString("pressureChart"));
    QCOMPARE(form.pressureChart->count(), 1);
}

QTEST_MAIN(TestMultiChartPlugin)
#include "tst_multichartplugin.moc"
