#include "screenshot.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QImageWriter>
#include <QPixmap>
#include <QWidget>

void layOutHidden(QWidget &window)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    window.grab(); // Painting lays out.
}

bool writeScreenshot(QWidget &window, const QString &fileName, QString *problem)
{
    QImage image(window.size(), QImage::Format_RGB32);
    window.render(&image);
    QImageWriter writer(fileName, "png");
    const bool written = writer.write(image);
    if (!written) {
        *problem = QStringLiteral("%1: %2").arg(fileName, writer.errorString());
    }
    return written;
}
