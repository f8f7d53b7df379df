#include "csvloader.h"

#include "csvreader.h"

#include <QFile>

CsvLoader::CsvLoader(QObject *parent)
    : QThread(parent)
{
    qRegisterMetaType<CsvResult>("CsvResult");
}

CsvLoader::~CsvLoader()
{
    cancel();
    wait();
}

void CsvLoader::load(const QString &fileName)
{
    wait(); // loaded() comes out of the thread a moment before its end.
    m_fileName = fileName;
    m_cancel = false;
    start();
}

void CsvLoader::cancel()
{
    m_cancel = true;
}

void CsvLoader::run()
{
    emit loaded(readFile());
}

CsvResult CsvLoader::readFile()
{
    QFile file(m_fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        CsvResult result;
        result.error.message = file.errorString();
        return result;
    }
    const qint64 size = file.size(); // 0 for a pipe, which has no end in sight
    int percent = 0;
    const auto report = [&](qint64 bytesRead) {
        const int reached = size > 0 ? int(qMin(100 * bytesRead / size, qint64(100))) : 0;
        if (reached != percent) {
            percent = reached;
            emit progressed(percent);
        }
    };
    return CsvReader().read(file, m_cancel, report);
}
