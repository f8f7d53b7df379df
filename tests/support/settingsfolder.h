#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

/**
 * An empty folder that takes the settings of this program for as long as it lives, so that a test
 * neither sees nor touches the user's, nor those of the test before it.
 */
class SettingsFolder
{
public:
    SettingsFolder() { use(m_folder); }
    Q_DISABLE_COPY_MOVE(SettingsFolder)

    /// The store of OpenModel's two names.
    static QSettings store() { return QSettings("QUARVChart5 tests", "tests"); }

    /// The file of that store, which need not exist.
    static QString fileName() { return store().fileName(); }

    /// Moves the store to another folder: what is read from now on comes from the file, not from
    /// what QSettings remembers of it.
    bool moveStore()
    {
        const QString written = fileName();
        use(m_secondFolder);
        return QDir().mkpath(QFileInfo(fileName()).path()) && QFile::copy(written, fileName());
    }

private:
    static void use(const QTemporaryDir &folder)
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    }

    QTemporaryDir m_folder;
    QTemporaryDir m_secondFolder;
};
