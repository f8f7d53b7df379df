#include "multichartplugin.h"

#include "views/multichart.h"

#include <QIcon>
#include <QToolBar>

QString MultiChartPlugin::name() const
{
    return QStringLiteral("MultiChart");
}

QString MultiChartPlugin::group() const
{
    return QStringLiteral("Charts");
}

QString MultiChartPlugin::toolTip() const
{
    return tr("Chart panes above a legend");
}

QString MultiChartPlugin::whatsThis() const
{
    return tr("Shows the series of a chart model in panes above a legend. The program gives it its "
              "model with setModel() and places its toolBar().");
}

QString MultiChartPlugin::includeFile() const
{
    return QStringLiteral("<QUARVChart5/MultiChart>");
}

QIcon MultiChartPlugin::icon() const
{
    // As a picture: the widget box takes an icon that can be drawn at any size for an empty one.
    constexpr int IconSize = 22; // of the widget box, in pixels
    return QIcon(QIcon(QStringLiteral(":/chart/images/chart.svg")).pixmap(IconSize));
}

bool MultiChartPlugin::isContainer() const
{
    return false;
}

QString MultiChartPlugin::domXml() const
{
    return QStringLiteral(R"(
<ui language="c++" displayname="Multi Chart">
    <widget class="MultiChart" name="multiChart">
        <property name="geometry">
            <rect>
                <x>0</x>
                <y>0</y>
                <width>480</width>
                <height>360</height>
            </rect>
        </property>
    </widget>
    <customwidgets>
        <customwidget>
            <class>MultiChart</class>
            <extends>QSplitter</extends>
        </customwidget>
    </customwidgets>
</ui>
)");
}

void MultiChartPlugin::initialize(QDesignerFormEditorInterface *)
{
    m_initialized = true;
}

bool MultiChartPlugin::isInitialized() const
{
    return m_initialized;
}

QWidget *MultiChartPlugin::createWidget(QWidget *parent)
{
    auto *chart = new MultiChart(parent);
    if (m_initialized) {
        connect(chart, SIGNAL(destroyed()), chart->toolBar(), SLOT(deleteLater()));
    }
    return chart;
}
