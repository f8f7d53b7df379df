#include "common/chartexport.h"

#include "common/chartpicture.h"
#include "model/staticchartmodel.h"
#include "support/modelsetup.h"
#include "support/quietplatform.h"
#include "views/multichart.h"

#include <QDir>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPrinter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QToolBar>
#include <QtTest>
#include <QXmlStreamReader>

#include <csignal>
#include <limits>

#include <sys/resource.h>

namespace {

constexpr QRgb CurveColor = 0xffe04020;

/// A chart without model.
class EmptyChart : public MultiChart
{
public:
    ~EmptyChart() override { delete m_toolBar; }
};

/// A chart with one thick curve, in a window.
class ShownChart
{
public:
    ShownChart()
        : m_model(new StaticChartModel("QUARVChart5 tests", "tests"))
    {
        m_chart.setObjectName("export");
        m_chart.setModel(m_model);
        m_model->m_settings.autoScaleY = true;
        m_model->applyChartSettings();
        PlainSeries *series = addSeries(*m_model, "<alpha & beta>", {1.0, 3.0, 2.0, 4.0});
        series->m_color = QColor(CurveColor);
        series->m_lineWidth = 5;
        m_chart.resize(400, 301);
        const QuietPlatform quiet;
        m_chart.show();
    }

    ~ShownChart() { delete m_chart.toolBar(); }

    bool isReady() { return recalculated(*m_model); }

    MultiChart m_chart;
    StaticChartModel *m_model; ///< Dies with the chart.
};

QImage imageOf(const ChartPicture &picture)
{
    QImage image(picture.size(), QImage::Format_RGB32);
    QPainter painter(&image);
    picture.paint(painter);
    return image;
}

QByteArray contentsOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &fileName, const QByteArray &contents)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

/// What a PDF says of a page of a size in points.
QByteArray mediaBox(const QSize &size)
{
    return QString("/MediaBox [0 0 %1.000000 %2.000000]")
        .arg(size.width())
        .arg(size.height())
        .toLatin1();
}

/// The mean distance of two images of one size, by pixel and colour, from 0 to 255.
double distance(const QImage &a, const QImage &b)
{
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor one = a.pixelColor(x, y);
            const QColor other = b.pixelColor(x, y);
            sum += qAbs(one.red() - other.red()) + qAbs(one.green() - other.green()) +
                   qAbs(one.blue() - other.blue());
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

int countOf(const QImage &image, QRgb color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

/// Draws nothing, and keeps the place of the first rectangle on the device.
class FirstRect : public QPaintEngine
{
public:
    FirstRect()
        : QPaintEngine(AllFeatures)
    {
    }

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState &) override {}
    void drawRects(const QRectF *rects, int) override
    {
        if (m_rect.isNull()) {
            m_rect = painter()->deviceTransform().mapRect(rects[0]);
        }
    }
    void drawRects(const QRect *rects, int) override
    {
        const QRectF rect(rects[0]);
        drawRects(&rect, 1);
    }
    void drawPath(const QPainterPath &) override {}
    void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void drawImage(const QRectF &, const QImage &, const QRectF &,
                   Qt::ImageConversionFlags) override
    {
    }
    void drawTextItem(const QPointF &, const QTextItem &) override {}

    QRectF m_rect;
};

/// A printer that keeps only where the picture's background is.
class FirstRectPrinter : public QPrinter
{
public:
    QPaintEngine *paintEngine() const override { return &m_engine; }

    mutable FirstRect m_engine;
};

/// Lets no file of this process grow beyond \p bytes while it lives.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_formerHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limited{bytes, m_former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_formerHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    void (*m_formerHandler)(int);
    rlimit m_former{};
};

} // namespace

Q_DECLARE_METATYPE(PictureFormat)

class TestChartExport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void tellsFormatBySuffix_data();
    void tellsFormatBySuffix();
    void writesPngInPixelsOfScreen();
    void scalesPng_data();
    void scalesPng();
    void refusesImpossibleImage_data();
    void refusesImpossibleImage();
    void writesSvg();
    void writesPdfOfOnePage();
    void refusesChartWithoutPane_data();
    void refusesChartWithoutPane();
    void tellsWhyFileCannotBeWritten_data();
    void tellsWhyFileCannotBeWritten();
    void leavesDeviceInPlace();
    void keepsFormerFileWhenDiskIsFull();
    void replacesFormerFile();
    void printsOnOnePage();
    void fitsPictureIntoPage_data();
    void fitsPictureIntoPage();
    void printsNothingWithoutPane();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList files() const;

    std::unique_ptr<QTemporaryDir> m_folder; ///< A new one for each test.
};

void TestChartExport::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QStringList TestChartExport::files() const
{
    return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
}

void TestChartExport::tellsFormatBySuffix_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<PictureFormat>("expected");

    QTest::newRow("png") << "a/b.png" << PictureFormat::Png;
    QTest::newRow("svg") << "a/b.svg" << PictureFormat::Svg;
    QTest::newRow("pdf") << "a/b.pdf" << PictureFormat::Pdf;
    QTest::newRow("capitals") << "B.PDF" << PictureFormat::Pdf;
    QTest::newRow("last of several") << "b.svg.pdf" << PictureFormat::Pdf;
    QTest::newRow("another") << "b.jpg" << PictureFormat::Png;
    QTest::newRow("none") << "svg" << PictureFormat::Png;
    QTest::newRow("suffix of the folder") << "a.svg/b" << PictureFormat::Png;
}

void TestChartExport::tellsFormatBySuffix()
{
    QFETCH(QString, fileName);
    QTEST(pictureFormatOf(fileName), "expected");
}

void TestChartExport::writesPngInPixelsOfScreen()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QString problem;

    QVERIFY(exportPicture(picture, path("a.png"), PictureFormat::Png, 1.0, &problem));
    QVERIFY(problem.isEmpty());
    QVERIFY(contentsOf(path("a.png")).startsWith("\x89PNG"));
    const QImage image(path("a.png"));
    QCOMPARE(image.convertToFormat(QImage::Format_RGB32), imageOf(picture));
    QCOMPARE(files(), QStringList("a.png"));
}

void TestChartExport::scalesPng_data()
{
    QTest::addColumn<double>("scale");

    QTest::newRow("double") << 2.0;
    QTest::newRow("half") << 0.5;
    QTest::newRow("fraction") << 1.3;
}

void TestChartExport::scalesPng()
{
    QFETCH(double, scale);

    ShownChart shown;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QString problem;
    QVERIFY(exportPicture(picture, path("a.png"), PictureFormat::Png, scale, &problem));
    const QImage image(path("a.png"));

    QCOMPARE(image.width(), qRound(picture.size().width() * scale));
    QCOMPARE(image.height(), qRound(picture.size().height() * scale));
    const QColor margin = shown.m_chart.palette().color(QPalette::Window);
    QCOMPARE(image.pixelColor(0, 0), margin);
    QCOMPARE(image.pixelColor(image.width() - 1, image.height() - 1), margin);
    const double wanted = scale * scale * countOf(imageOf(picture), CurveColor);
    const double got = countOf(image, CurveColor);
    QVERIFY2(got > 0.8 * wanted && got < 1.2 * wanted, qPrintable(QString::number(got / wanted)));
}

void TestChartExport::refusesImpossibleImage_data()
{
    QTest::addColumn<double>("scale");

    QTest::newRow("too large") << 1000.0;
    QTest::newRow("huge") << 1e300;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("too small") << 1e-6;
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -1.0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void TestChartExport::refusesImpossibleImage()
{
    QFETCH(double, scale);

    ShownChart shown;
    QVERIFY(shown.isReady());
    QVERIFY(write(path("a.png"), "former"));
    QString problem;

    QVERIFY(!exportPicture(ChartPicture(shown.m_chart), path("a.png"), PictureFormat::Png, scale,
                           &problem));
    QVERIFY2(problem.startsWith(path("a.png") + ": there can be no image of "),
             qPrintable(problem));
    QCOMPARE(contentsOf(path("a.png")), QByteArray("former"));
}

void TestChartExport::writesSvg()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QString problem;
    QVERIFY(exportPicture(picture, path("a.svg"), PictureFormat::Svg, 1.0, &problem));
    const QByteArray svg = contentsOf(path("a.svg"));

    QXmlStreamReader reader(svg);
    QString text;
    while (!reader.atEnd()) {
        text += reader.readNext() == QXmlStreamReader::Characters ? reader.text().toString()
                                                                  : QString();
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(text.contains("<alpha & beta>")); // the legend's

    QSvgRenderer renderer(svg);
    QVERIFY(renderer.isValid());
    QCOMPARE(renderer.viewBox(), QRect(QPoint(), picture.size()));
    QImage image(picture.size(), QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    const double difference = distance(image, imageOf(picture));
    QVERIFY2(difference < 5.0, qPrintable(QString::number(difference)));
    QCOMPARE(files(), QStringList("a.svg"));
}

void TestChartExport::writesPdfOfOnePage()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    QString problem;
    QVERIFY(exportPicture(picture, path("a.pdf"), PictureFormat::Pdf, 1.0, &problem));
    const QByteArray pdf = contentsOf(path("a.pdf"));

    QVERIFY(pdf.startsWith("%PDF-"));
    QCOMPARE(pdf.count("/Type /Page\n"), 1);
    QVERIFY(pdf.contains("/Count 1\n"));
    QVERIFY(pdf.contains(mediaBox(picture.size())));
    QCOMPARE(files(), QStringList("a.pdf"));
}

void TestChartExport::refusesChartWithoutPane_data()
{
    QTest::addColumn<PictureFormat>("format");

    QTest::newRow("png") << PictureFormat::Png;
    QTest::newRow("svg") << PictureFormat::Svg;
    QTest::newRow("pdf") << PictureFormat::Pdf;
}

void TestChartExport::refusesChartWithoutPane()
{
    QFETCH(PictureFormat, format);

    const EmptyChart chart;
    QVERIFY(write(path("a"), "former"));
    QString problem;

    QVERIFY(!exportPicture(ChartPicture(chart), path("a"), format, 1.0, &problem));
    QCOMPARE(problem, path("a") + ": there is nothing to be seen");
    QCOMPARE(contentsOf(path("a")), QByteArray("former"));
    QCOMPARE(files(), QStringList("a"));
}

void TestChartExport::tellsWhyFileCannotBeWritten_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no such folder") << "missing/a%1.png"
                                    << "No such file or directory";
    QTest::newRow("a folder") << "folder.png"
                              << "this is no file";
    QTest::newRow("below a file") << "file/a.png"
                                  << "Not a directory";
}

void TestChartExport::tellsWhyFileCannotBeWritten()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);

    ShownChart shown;
    QVERIFY(shown.isReady());
    QVERIFY(QDir(m_folder->path()).mkdir("folder.png"));
    QVERIFY(write(path("file"), "former"));
    for (const PictureFormat format :
         {PictureFormat::Png, PictureFormat::Svg, PictureFormat::Pdf}) {
        QString problem;
        QVERIFY(!exportPicture(ChartPicture(shown.m_chart), path(name), format, 1.0, &problem));
        QCOMPARE(problem, path(name) + ": " + reason);
    }
    QCOMPARE(contentsOf(path("file")), QByteArray("former"));
    QCOMPARE(files(), QStringList("file"));
    QVERIFY(QDir(path("folder.png")).isEmpty());
}

void TestChartExport::leavesDeviceInPlace()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    QString problem;

    QVERIFY(!exportPicture(ChartPicture(shown.m_chart), "/dev/null", PictureFormat::Png, 1.0,
                           &problem));
    QCOMPARE(problem, QString("/dev/null: this is no file"));
    QVERIFY(!QFileInfo("/dev/null").isFile());
}

void TestChartExport::keepsFormerFileWhenDiskIsFull()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    QVERIFY(write(path("a.pdf"), "former"));
    QString problem;
    bool exported = true;
    {
        const FileSizeLimit limit(100);
        exported = exportPicture(ChartPicture(shown.m_chart), path("a.pdf"), PictureFormat::Pdf,
                                 1.0, &problem);
    }

    QVERIFY(!exported);
    QCOMPARE(problem, path("a.pdf") + ": File too large");
    QCOMPARE(contentsOf(path("a.pdf")), QByteArray("former"));
    QCOMPARE(files(), QStringList("a.pdf"));
}

void TestChartExport::replacesFormerFile()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    QVERIFY(write(path("a.png"), QByteArray(1000000, 'x')));
    QString problem;

    QVERIFY(exportPicture(ChartPicture(shown.m_chart), path("a.png"), PictureFormat::Png, 1.0,
                          &problem));
    QCOMPARE(QImage(path("a.png")).size(), ChartPicture(shown.m_chart).size());
    QCOMPARE(files(), QStringList("a.png"));
}

void TestChartExport::printsOnOnePage()
{
    ShownChart shown;
    QVERIFY(shown.isReady());
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFileName(path("print.pdf"));
    printer.setPageSize(QPageSize(QPageSize::A5));
    printPicture(ChartPicture(shown.m_chart), printer);
    const QByteArray pdf = contentsOf(path("print.pdf"));

    QVERIFY(pdf.startsWith("%PDF-"));
    QVERIFY(pdf.contains("/Count 1\n"));
    QVERIFY(pdf.contains(mediaBox(QSize(420, 595)))); // A5
}

void TestChartExport::fitsPictureIntoPage_data()
{
    QTest::addColumn<QSizeF>("page"); // millimetres
    QTest::addColumn<bool>("isWide");

    QTest::newRow("high page") << QSizeF(100.0, 300.0) << false;
    QTest::newRow("wide page") << QSizeF(300.0, 100.0) << true;
}

void TestChartExport::fitsPictureIntoPage()
{
    QFETCH(QSizeF, page);
    QFETCH(bool, isWide);

    ShownChart shown;
    QVERIFY(shown.isReady());
    const ChartPicture picture(shown.m_chart);
    FirstRectPrinter printer;
    printer.setOutputFileName(path("print.pdf"));
    printer.setPageSize(QPageSize(page, QPageSize::Millimeter));
    printer.setPageMargins(QMarginsF(10.0, 12.0, 14.0, 16.0), QPageLayout::Millimeter);
    printPicture(picture, printer);
    const QSizeF room = printer.pageRect(QPrinter::DevicePixel).size();
    const QRectF got = printer.m_engine.m_rect;

    QVERIFY(isNear(got.center().x(), room.width() / 2.0));
    QVERIFY(isNear(got.center().y(), room.height() / 2.0));
    QVERIFY(isNear(got.width() * picture.size().height(), got.height() * picture.size().width()));
    QVERIFY(isWide ? isNear(got.height(), room.height()) : isNear(got.width(), room.width()));
    QVERIFY(isWide ? got.width() < room.width() : got.height() < room.height());
}

void TestChartExport::printsNothingWithoutPane()
{
    const EmptyChart chart;
    FirstRectPrinter printer;
    printer.setOutputFileName(path("print.pdf"));
    printPicture(ChartPicture(chart), printer);

    QVERIFY(printer.m_engine.m_rect.isNull());
    QVERIFY(files().isEmpty());
}

QTEST_MAIN(TestChartExport)
#include "tst_chartexport.moc"
