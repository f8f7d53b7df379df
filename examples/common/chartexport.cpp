#include "common/chartexport.h"

#include "common/chartpicture.h"
#include "common/wholefile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>

namespace {

constexpr int LongestSide = 32767; // pixels that Qt can paint on in one direction
constexpr int SvgResolution = 96;  // units for each inch: what SVG calls a pixel
constexpr int PointsPerInch = 72;

/// Where a file goes before it is whole.
class Buffer : public QBuffer
{
public:
    Buffer() { open(QIODevice::WriteOnly); }
};

/// Returns an image without size, and says why, if there can be none.
QImage imageOf(const ChartPicture &picture, double scale, QString *reason)
{
    const double width = std::round(picture.size().width() * scale);
    const double height = std::round(picture.size().height() * scale);
    const bool possible =
        width >= 1.0 && height >= 1.0 && width <= LongestSide && height <= LongestSide;
    QImage image(possible ? QSize(int(width), int(height)) : QSize(), QImage::Format_RGB32);
    if (image.isNull()) {
        *reason =
            QCoreApplication::translate("ChartExport", "there can be no image of %1 x %2 pixels")
                .arg(width)
                .arg(height);
        return image;
    }
    QPainter painter(&image);
    painter.scale(width / picture.size().width(), height / picture.size().height());
    picture.paint(painter);
    return image;
}

QByteArray encodePng(const ChartPicture &picture, double scale, QString *reason)
{
    const QImage image = imageOf(picture, scale, reason);
    Buffer buffer;
    if (!image.isNull() && !image.save(&buffer, "png")) {
        *reason = QCoreApplication::translate("ChartExport", "the image cannot be encoded");
    }
    return buffer.data();
}

QByteArray encodeSvg(const ChartPicture &picture)
{
    Buffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(SvgResolution);
    generator.setSize(picture.size());
    generator.setViewBox(QRect(QPoint(), picture.size()));
    generator.setTitle(QCoreApplication::applicationName());
    QPainter painter(&generator);
    picture.paint(painter);
    painter.end();
    return buffer.data();
}

/// A pixel becomes a point: pages have whole points only.
QByteArray encodePdf(const ChartPicture &picture)
{
    Buffer buffer;
    QPdfWriter writer(&buffer);
    writer.setResolution(PointsPerInch);
    writer.setPageSize(QPageSize(picture.size(), QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    writer.setTitle(QCoreApplication::applicationName());
    QPainter painter(&writer);
    picture.paint(painter);
    painter.end();
    return buffer.data();
}

/// Sets \p reason if that fails.
QByteArray encode(const ChartPicture &picture, PictureFormat format, double scale, QString *reason)
{
    if (picture.size().isEmpty()) {
        *reason = QCoreApplication::translate("ChartExport", "there is nothing to be seen");
        return QByteArray();
    }
    switch (format) {
    case PictureFormat::Png:
        break;
    case PictureFormat::Svg:
        return encodeSvg(picture);
    case PictureFormat::Pdf:
        return encodePdf(picture);
    }
    return encodePng(picture, scale, reason);
}

} // namespace

PictureFormat pictureFormatOf(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("svg")) {
        return PictureFormat::Svg;
    }
    return suffix == QLatin1String("pdf") ? PictureFormat::Pdf : PictureFormat::Png;
}

bool exportPicture(const ChartPicture &picture, const QString &fileName, PictureFormat format,
                   double scale, QString *problem)
{
    QString reason;
    const QByteArray data = encode(picture, format, scale, &reason);
    if (!reason.isEmpty()) {
        *problem = QStringLiteral("%1: %2").arg(fileName, reason);
        return false;
    }
    const auto write = [&data](QIODevice &device) { return writeAll(device, data); };
    return writeWholeFile(fileName, write, problem);
}

void printPicture(const ChartPicture &picture, QPrinter &printer)
{
    QPainter painter;
    if (picture.size().isEmpty() || !painter.begin(&printer)) {
        return;
    }
    const QSizeF size(picture.size());
    const QSizeF page = printer.pageRect(QPrinter::DevicePixel).size();
    const double scale = std::min(page.width() / size.width(), page.height() / size.height());
    const QSizeF margins = (page - size * scale) / 2.0;
    painter.translate(margins.width(), margins.height()); // The origin is the page's corner.
    painter.scale(scale, scale);
    picture.paint(painter);
}
