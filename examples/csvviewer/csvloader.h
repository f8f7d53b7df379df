#pragma once

#include "csvtable.h"

#include <QString>
#include <QThread>

#include <atomic>

/**
 * Reads CSV files in a thread of its own, one after the other.
 *
 * All operations belong to the GUI thread, where the object lives; its signals arrive there.
 */
class CsvLoader : public QThread
{
    Q_OBJECT

public:
    explicit CsvLoader(QObject *parent = nullptr);

    /// Cancels a running load and waits for its end, which is near then.
    ~CsvLoader() override;

    /// Starts to load \p fileName. loaded() must have told the end of the load before.
    void load(const QString &fileName);

    /// Asks the running load to end early; loaded() comes all the same.
    void cancel();

signals:
    void progressed(int percent);

    /// The end of a load, good or bad. The result belongs to whoever receives it.
    void loaded(const CsvResult &result);

protected:
    void run() override;

private:
    CsvResult readFile();

    QString m_fileName; ///< Written before the start only.
    std::atomic<bool> m_cancel{false};
};
