#include "common/wholefile.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

bool writeAll(QIODevice &device, const QByteArray &data)
{
    int done = 0;
    while (done < data.size()) {
        // A disk that becomes full takes a part first, and says what is wrong at the next attempt.
        const qint64 count = device.write(data.constData() + done, data.size() - done);
        if (count <= 0) {
            return false;
        }
        done += int(count);
    }
    return true;
}

bool writeWholeFile(const QString &fileName, const std::function<bool(QIODevice &device)> &write,
                    QString *problem)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile()) { // To replace a device or a pipe would do away with it.
        const QString reason = QCoreApplication::translate("WholeFile", "this is no file");
        *problem = QStringLiteral("%1: %2").arg(fileName, reason);
        return false;
    }
    QSaveFile file(fileName);
    // A buffer would be written by commit(), which passes over a disk that takes only a part of it.
    const bool written =
        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && write(file) && file.commit();
    if (!written) {
        *problem = QStringLiteral("%1: %2").arg(fileName, file.errorString());
    }
    return written;
}
