#include "common/chartpicture.h"

#include "model/staticchartmodel.h"
#include "support/modelsetup.h"
#include "support/quietplatform.h"
#include "support/recordingpaintdevice.h"
#include "views/chartwidget.h"
#include "views/multichart.h"

#include <QAction>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QToolBar>
#include <QtTest>

#include <algorithm>

namespace {

constexpr QSize ChartSize(600, 500);
constexpr QRgb ChartColor = 0xff203040;
constexpr QRgb PlotColor = 0xff402010;
constexpr QRgb GridColor = 0xff80c080;

/// A chart without model.
class EmptyChart : public MultiChart
{
public:
    ~EmptyChart() override { delete m_toolBar; }
};

/// A chart in a window, shown with its curves.
class ShownChart
{
public:
    explicit ShownChart(const QStringList &names, const QSize &size = ChartSize)
        : m_model(new StaticChartModel("QUARVChart5 tests", "tests"))
    {
        m_chart.setObjectName("picture");
        m_chart.setModel(m_model);
        QPalette palette = m_chart.palette();
        palette.setColor(QPalette::Window, QColor(ChartColor));
        m_chart.setPalette(palette);
        ChartSettings &settings = m_model->m_settings;
        settings.backgroundColor = QColor(PlotColor);
        settings.gridColor = QColor(GridColor);
        settings.autoScaleY = true;
        m_model->applyChartSettings();
        m_model->m_multiModeAction->trigger();
        for (const QString &name : names) {
            m_series.append(addSeries(*m_model, name, {1.0, 3.0, 2.0, 4.0}));
            m_series.last()->m_labelY = "unit";
        }
        m_chart.resize(size);
        const QuietPlatform quiet;
        m_chart.show();
    }

    ~ShownChart() { delete m_chart.toolBar(); }

    bool isReady() { return recalculated(*m_model); }

    QList<ChartWidget *> panes() const { return m_model->m_charts; }

    MultiChart m_chart;
    StaticChartModel *m_model; ///< Dies with the chart.
    QList<PlainSeries *> m_series;
};

QImage screenImage(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_RGB32);
    widget.render(&image);
    return image;
}

QImage imageOf(const ChartPicture &picture, int dotsPerMeter = 0)
{
    QImage image(picture.size(), QImage::Format_RGB32);
    if (dotsPerMeter > 0) {
        image.setDotsPerMeterX(dotsPerMeter);
        image.setDotsPerMeterY(dotsPerMeter);
    }
    image.fill(Qt::white);
    QPainter painter(&image);
    picture.paint(painter);
    return image;
}

int heightOf(const QList<ChartWidget *> &panes)
{
    int height = 0;
    for (const ChartWidget *pane : panes) {
        height += pane->height();
    }
    return height;
}

QVector<PaintCall> textsOf(const ChartPicture &picture)
{
    RecordingPaintDevice device(picture.size());
    QPainter painter(&device);
    picture.paint(painter);
    painter.end();
    return device.calls(PaintCall::Text);
}

/// Of all texts those that are, or begin with, one of the names; in the order of painting.
QVector<PaintCall> entriesOf(const ChartPicture &picture, const QStringList &names)
{
    QVector<PaintCall> entries;
    for (const PaintCall &call : textsOf(picture)) {
        const auto begins = [&call](const QString &name) {
            return call.text.startsWith(name.left(2));
        };
        if (std::any_of(names.cbegin(), names.cend(), begins)) {
            entries.append(call);
        }
    }
    return entries;
}

QString joined(const QVector<PaintCall> &entries)
{
    QStringList texts;
    for (const PaintCall &call : entries) {
        texts.append(call.text);
    }
    return texts.join(' ');
}

} // namespace

class TestChartPicture : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyWithoutPanes();
    void isEmptyAfterDeathOfModel();
    void showsEachPaneAsOnScreen_data();
    void showsEachPaneAsOnScreen();
    void leavesCollapsedPaneOut();
    void fillsMarginsWithColorOfChart();
    void takesDefaultsForInvalidColors();
    void listsVisibleSeriesInRowOrder();
    void hasNoLegendWithoutVisibleSeries();
    void paintsSampleBesideName();
    void placesShortNamesSideBySide();
    void breaksRowsOfLegend();
    void elidesNameThatIsTooLong();
    void keepsNameOnOneLine();
    void paintsSamePixelsOnFinerDevice();
    void restoresPainter();
};

void TestChartPicture::isEmptyWithoutPanes()
{
    const EmptyChart chart;
    const ChartPicture picture(chart);
    RecordingPaintDevice device(ChartSize);
    QPainter painter(&device);
    picture.paint(painter);
    painter.end();

    QVERIFY(picture.size().isEmpty());
    QVERIFY(device.calls().isEmpty());
}

void TestChartPicture::isEmptyAfterDeathOfModel()
{
    ShownChart shown({"alpha"});
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QVERIFY(!picture.size().isEmpty());
    delete shown.m_model;

    QVERIFY(picture.size().isEmpty());
    QVERIFY(textsOf(picture).isEmpty());
}

void TestChartPicture::showsEachPaneAsOnScreen_data()
{
    QTest::addColumn<int>("paneCount");
    QTest::addColumn<bool>("cursor");

    QTest::newRow("one pane") << 1 << false;
    QTest::newRow("three panes") << 3 << false;
    QTest::newRow("cursor") << 2 << true;
}

void TestChartPicture::showsEachPaneAsOnScreen()
{
    QFETCH(int, paneCount);
    QFETCH(bool, cursor);

    ShownChart shown(QStringList{"alpha", "beta", "gamma"}.mid(0, paneCount));
    QVERIFY(shown.isReady());
    QCOMPARE(shown.panes().size(), paneCount);
    for (ChartWidget *pane : shown.panes()) {
        pane->changeCursorState(300.0, cursor);
    }
    const QImage image = imageOf(ChartPicture(shown.m_chart));

    QCOMPARE(image.width(), shown.panes().first()->width());
    int top = 0;
    for (ChartWidget *pane : shown.panes()) {
        const QImage part = image.copy(0, top, pane->width(), pane->height());
        QCOMPARE(part, screenImage(*pane));
        top += pane->height();
    }
    QVERIFY(image.height() > top); // The legend follows.
}

void TestChartPicture::leavesCollapsedPaneOut()
{
    ShownChart shown({"alpha", "beta"});
    QVERIFY(shown.isReady());
    shown.m_chart.setSizes({0, 300, 100});
    QVERIFY(shown.isReady());
    ChartWidget *second = shown.panes().last();
    const QImage image = imageOf(ChartPicture(shown.m_chart));

    QCOMPARE(image.copy(second->rect()), screenImage(*second));
    QVERIFY(image.height() < second->height() + 100);
}

void TestChartPicture::fillsMarginsWithColorOfChart()
{
    ShownChart shown({"alpha"});
    QVERIFY(shown.isReady());
    const QImage image = imageOf(ChartPicture(shown.m_chart));
    const QRectF plot = shown.panes().first()->fullChartRect(QRectF());

    QCOMPARE(image.pixel(0, 0), ChartColor);
    QCOMPARE(image.pixel(image.width() - 1, image.height() - 1), ChartColor);
    QCOMPARE(image.pixel(plot.topLeft().toPoint()), GridColor); // the frame
    QCOMPARE(image.pixel(plot.topLeft().toPoint() + QPoint(2, 2)), PlotColor);
}

void TestChartPicture::takesDefaultsForInvalidColors()
{
    ShownChart shown({"alpha"});
    shown.m_model->m_settings.backgroundColor = QColor();
    shown.m_model->m_settings.gridColor = QColor();
    QVERIFY(shown.isReady());
    const QImage image = imageOf(ChartPicture(shown.m_chart));
    const QRectF plot = shown.panes().first()->fullChartRect(QRectF());

    QCOMPARE(image.pixelColor(plot.topLeft().toPoint()), ChartSettings::defaultGridColor());
    QCOMPARE(image.pixelColor(plot.topLeft().toPoint() + QPoint(2, 2)),
             ChartSettings::defaultBackgroundColor());
}

void TestChartPicture::listsVisibleSeriesInRowOrder()
{
    const QStringList names{"delta", "alpha", "gamma", "beta"};
    ShownChart shown(names);
    shown.m_series.at(1)->m_visible = false;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    const QVector<PaintCall> entries = entriesOf(picture, names);

    QCOMPARE(joined(entries), QString("delta gamma beta"));
    QCOMPARE(entries.first().pen.color(), shown.m_series.first()->m_color);
    QCOMPARE(entries.last().pen.color(), shown.m_series.last()->m_color);
}

void TestChartPicture::hasNoLegendWithoutVisibleSeries()
{
    ShownChart shown({"alpha", "beta"});
    shown.m_series.first()->m_visible = false;
    shown.m_series.last()->m_visible = false;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);

    QCOMPARE(picture.size().height(), heightOf(shown.panes()));
    QVERIFY(entriesOf(picture, {"alpha", "beta"}).isEmpty());
}

void TestChartPicture::paintsSampleBesideName()
{
    ShownChart shown({"alpha"});
    shown.m_series.first()->m_lineWidth = 3;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    const QRgb color = shown.m_series.first()->m_color.rgb();
    const QImage legend = imageOf(picture).copy(0, heightOf(shown.panes()), 50, 1000);

    // 40 pixels and one end, three high.
    int pixels = 0;
    for (int y = 0; y < legend.height(); ++y) {
        for (int x = 0; x < legend.width(); ++x) {
            pixels += legend.pixel(x, y) == color ? 1 : 0;
        }
    }
    QVERIFY2(pixels >= 3 * 38 && pixels <= 3 * 44, qPrintable(QString::number(pixels)));
}

void TestChartPicture::placesShortNamesSideBySide()
{
    const QStringList names{"alpha", "beta", "gamma"};
    ShownChart shown(names);
    QVERIFY(shown.isReady());
    const QVector<PaintCall> entries = entriesOf(ChartPicture(shown.m_chart), names);
    const QFontMetrics metrics = shown.m_chart.fontMetrics();

    QCOMPARE(joined(entries), QString("alpha beta gamma"));
    for (int i = 1; i < entries.size(); ++i) {
        const PaintCall &left = entries.at(i - 1);
        QCOMPARE(entries.at(i).position.y(), left.position.y());
        // The sample has room between them.
        QVERIFY(entries.at(i).position.x() >
                left.position.x() + metrics.horizontalAdvance(left.text) + 40);
    }
}

void TestChartPicture::breaksRowsOfLegend()
{
    QStringList names;
    for (int i = 0; i < 8; ++i) {
        names.append(QString("%1%1 name of some length").arg(QChar('a' + i)));
    }
    ShownChart shown(names);
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    const QVector<PaintCall> entries = entriesOf(picture, names);
    const QFontMetrics metrics = shown.m_chart.fontMetrics();

    QCOMPARE(joined(entries), names.join(' '));
    double bottom = 0.0;
    double right = 0.0;
    for (const PaintCall &entry : entries) {
        if (entry.position.x() == entries.first().position.x()) { // a new row
            QVERIFY(entry.position.y() - metrics.ascent() >= bottom);
            bottom = entry.position.y() + metrics.descent();
        } else {
            QVERIFY(entry.position.x() > right + 40);
        }
        right = entry.position.x() + metrics.horizontalAdvance(entry.text);
        QVERIFY(right < picture.size().width());
    }
    QVERIFY(entries.last().position.y() > entries.first().position.y());
    // The painter stands at the legend's top.
    QVERIFY(bottom < picture.size().height() - heightOf(shown.panes()));
}

void TestChartPicture::elidesNameThatIsTooLong()
{
    const QStringList names{"alpha" + QString(400, 'x'), "beta"};
    ShownChart shown(names);
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    const QVector<PaintCall> entries = entriesOf(picture, names);
    const PaintCall &first = entries.first();

    QCOMPARE(entries.size(), 2);
    QVERIFY(first.text.startsWith("alphax") && first.text.endsWith(QChar(0x2026)));
    QVERIFY(first.position.x() + shown.m_chart.fontMetrics().horizontalAdvance(first.text) <=
            picture.size().width());
    QVERIFY(entries.last().position.y() > first.position.y());
}

void TestChartPicture::keepsNameOnOneLine()
{
    ShownChart shown({"alpha\nof & two\tlines"});
    QVERIFY(shown.isReady());

    QCOMPARE(joined(entriesOf(ChartPicture(shown.m_chart), {"alpha"})),
             QString("alpha of & two lines"));
}

/// Fonts are given in points, which are more pixels there.
void TestChartPicture::paintsSamePixelsOnFinerDevice()
{
    constexpr int DotsPerMeter = 11811; // 300 for each inch
    ShownChart shown({"alpha", "beta"});
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QImage fine = imageOf(picture, DotsPerMeter);
    const QImage usual = imageOf(picture);
    fine.setDotsPerMeterX(usual.dotsPerMeterX());
    fine.setDotsPerMeterY(usual.dotsPerMeterY());

    QCOMPARE(fine, usual);
}

void TestChartPicture::restoresPainter()
{
    ShownChart shown({"alpha"});
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QImage image(ChartSize, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.translate(5, 7);
    painter.setPen(Qt::blue);
    const QFont font = painter.font();
    picture.paint(painter);

    QCOMPARE(painter.transform(), QTransform::fromTranslate(5, 7));
    QCOMPARE(painter.pen().color(), QColor(Qt::blue));
    QCOMPARE(painter.font(), font);
    QVERIFY(!painter.hasClipping());
    QCOMPARE(image.pixel(5, 7), ChartColor);
}

QTEST_MAIN(TestChartPicture)
#include "tst_chartpicture.moc"
