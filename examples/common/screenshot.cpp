#include "screenshot.h"

#include <QImage>
#include <QImageWriter>
#include <QWidget>

void showOffScreen(QWidget &window)
{
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
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
