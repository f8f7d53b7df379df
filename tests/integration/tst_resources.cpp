#include "support/openmodel.h"

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QtTest>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>

namespace {

const QString Folder = QStringLiteral(":/chart/images/");

struct ImageRow
{
    const char *name;
    QSize size;
};

const ImageRow Images[] = {
    {"adjust-y.svg", {48, 48}},
    {"chart-add.svg", {48, 48}},
    {"chart-remove.svg", {48, 48}},
    {"chart.svg", {48, 48}},
    {"chart2x.svg", {48, 48}},
    {"edit-clear.svg", {48, 48}},
    {"edit-redo.svg", {48, 48}},
    {"edit-undo.svg", {48, 48}},
    {"ftmove.svg", {60, 60}},
    {"ftrectangle.svg", {60, 60}},
    {"go-down.svg", {48, 48}},
    {"go-first.svg", {48, 48}},
    {"go-last.svg", {48, 48}},
    {"go-next.svg", {48, 48}},
    {"go-previous.svg", {48, 48}},
    {"go-up.svg", {48, 48}},
    {"list-remove.svg", {48, 48}},
    {"media-playback-pause.svg", {48, 48}},
    {"points-clear.svg", {48, 48}},
    {"resetproperty.png", {7, 6}},
    {"resize-horizontal.svg", {48, 48}},
    {"zoom_in.svg", {48, 48}},
    {"zoom_in_x.svg", {48, 48}},
    {"zoom_in_y.svg", {48, 48}},
    {"zoom_out.svg", {48, 48}},
    {"zoom_out_x.svg", {48, 48}},
    {"zoom_out_y.svg", {48, 48}},
    {"zoom_undo.svg", {48, 48}},
};

/// What a reader of the file finds in its root element; sizes are invalid and the error is set if
/// the file cannot be opened or is not well-formed.
struct SvgFile
{
    QString root;
    QSize size;
    QString viewBox;
    QString error;
};

SvgFile readSvg(const QString &path)
{
    SvgFile svg;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        svg.error = file.errorString();
        return svg;
    }

    QXmlStreamReader reader(&file);
    if (reader.readNextStartElement()) {
        const QXmlStreamAttributes attributes = reader.attributes();
        svg.root = reader.name().toString();
        svg.size = QSize(attributes.value("width").toInt(), attributes.value("height").toInt());
        svg.viewBox = attributes.value("viewBox").toString();
    }
    while (!reader.atEnd()) {
        reader.readNext();
    }
    svg.error = reader.errorString();
    return svg;
}

/// The image at \p name as a button of \p extent by \p extent pixels shows it.
QImage rendered(const QString &name, int extent)
{
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QIcon(Folder + name).paint(&painter, image.rect());
    return image;
}

int visiblePixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        }
    }
    return count;
}

/// The largest difference between the two pixels in one channel.
int channelDifference(QRgb a, QRgb b)
{
    return std::max({qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b)),
                     qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))});
}

/// The number of pixels that look different to the eye; the images have the same size.
int differingPixels(const QImage &a, const QImage &b)
{
    constexpr int SeenDifference = 64; // a quarter of a channel

    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            count += channelDifference(a.pixel(x, y), b.pixel(x, y)) >= SeenDifference ? 1 : 0;
        }
    }
    return count;
}

void addImageRows(bool svgOnly)
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");

    for (const ImageRow &image : Images) {
        const QString name = image.name;
        if (!svgOnly || name.endsWith(".svg")) {
            QTest::newRow(image.name) << name << image.size;
        }
    }
}

} // namespace

/// The images inside the library, looked at from a program that has done nothing to register them.
class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void containsNoOtherFiles();
    void containsImage_data() { addImageRows(false); }
    void containsImage();
    void imageHasItsSize_data() { addImageRows(false); }
    void imageHasItsSize();
    void svgIsWellFormed_data() { addImageRows(true); }
    void svgIsWellFormed();
    void imageIsVisibleOnToolBar_data() { addImageRows(false); }
    void imageIsVisibleOnToolBar();
    void resetMarkHasTransparentBackground();
    void noTwoImagesLookAlikeWhenSmall_data() { addImageRows(false); }
    void noTwoImagesLookAlikeWhenSmall();

private:
    // Its use of the library's code is what makes the program load the library, where the linker
    // drops libraries that nothing refers to.
    std::unique_ptr<OpenModel> m_model;
};

void TestResources::initTestCase()
{
    m_model = std::make_unique<OpenModel>();
}

void TestResources::containsNoOtherFiles()
{
    QStringList names;
    for (const ImageRow &image : Images) {
        names.append(image.name);
    }
    names.sort();

    QStringList found = QDir(Folder).entryList(QDir::Files);
    found.sort();

    QCOMPARE(found.join("|"), names.join("|"));
    QCOMPARE(found.size(), 28);
}

void TestResources::containsImage()
{
    QFETCH(const QString, name);

    QVERIFY(QFile::exists(Folder + name));
}

void TestResources::imageHasItsSize()
{
    QFETCH(const QString, name);
    QFETCH(const QSize, size);

    if (name.endsWith(".png")) {
        QCOMPARE(QImage(Folder + name).size(), size);
        return;
    }

    const SvgFile svg = readSvg(Folder + name);
    QCOMPARE(svg.size, size);
    QCOMPARE(svg.viewBox, QString("0 0 %1 %2").arg(size.width()).arg(size.height()));
}

void TestResources::svgIsWellFormed()
{
    QFETCH(const QString, name);

    const SvgFile svg = readSvg(Folder + name);
    QCOMPARE(svg.error, QString());
    QCOMPARE(svg.root, QStringLiteral("svg"));
}

void TestResources::imageIsVisibleOnToolBar()
{
    QFETCH(const QString, name);

    const QPixmap pixmap = QIcon(Folder + name).pixmap(32, 32);
    QVERIFY(!pixmap.isNull());
    QVERIFY(visiblePixels(pixmap.toImage()) > 0);
}

void TestResources::resetMarkHasTransparentBackground()
{
    const QImage image(Folder + "resetproperty.png");

    QVERIFY(image.hasAlphaChannel());
    const int visible = visiblePixels(image);
    QVERIFY(visible > 0);
    QVERIFY(visible < 7 * 6);
}

void TestResources::noTwoImagesLookAlikeWhenSmall()
{
    constexpr int SmallExtent = 16; // pixels, the smallest buttons in use
    constexpr int FewestPixels = 4; // one short stroke more or less, as of plus and minus

    QFETCH(const QString, name);

    const QImage image = rendered(name, SmallExtent);
    for (const ImageRow &other : Images) {
        if (name == other.name) {
            continue;
        }
        const int differing = differingPixels(image, rendered(other.name, SmallExtent));
        QVERIFY2(differing >= FewestPixels,
                 qPrintable(QString("%1 differs in %2 pixels").arg(other.name).arg(differing)));
    }
}

QTEST_MAIN(TestResources)
#include "tst_resources.moc"
