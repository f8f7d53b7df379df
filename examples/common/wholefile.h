#pragma once

#include <QString>

#include <functional>

class QByteArray;
class QIODevice;

/// Writes all of \p data, in several steps if the device takes only a part at once. Returns false
/// if it takes no more; the device then knows why.
bool writeAll(QIODevice &device, const QByteArray &data);

/**
 * Writes a file by \p write, which returns whether the device has taken everything. The device has
 * no buffer: \p write should hand it big blocks, by writeAll().
 *
 * Returns false if that fails; \p problem then says why, behind the name of the file, and a file of
 * that name is as it was: it is replaced only by a whole one. What is neither a file nor a name
 * that is free, such as a device or a folder, is left alone.
 */
bool writeWholeFile(const QString &fileName, const std::function<bool(QIODevice &device)> &write,
                    QString *problem);
