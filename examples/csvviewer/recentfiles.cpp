#include "recentfiles.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>

namespace {

const char FilesKey[] = "recentFiles";

} // namespace

RecentFiles::RecentFiles(QWidget *parent)
    : QObject(parent)
    , m_menu(new QMenu(tr("Open &recent"), parent))
{
    m_menu->setEnabled(!files().isEmpty());
    connect(m_menu, SIGNAL(aboutToShow()), SLOT(slotFillMenu()));
}

QStringList RecentFiles::files() const
{
    return QSettings().value(FilesKey).toStringList();
}

void RecentFiles::store(const QStringList &files)
{
    QSettings().setValue(FilesKey, files);
    m_menu->setEnabled(!files.isEmpty());
}

void RecentFiles::add(const QString &fileName)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    QStringList list = files(); // asked anew: other windows of the program add to it too
    list.removeAll(path);
    list.prepend(path);
    store(list.mid(0, MostFiles));
}

void RecentFiles::slotFillMenu()
{
    QStringList living;
    m_menu->clear();
    const QStringList all = files();
    for (const QString &path : all) {
        if (!QFileInfo::exists(path)) {
            continue;
        }
        living.append(path);
        // An "&" would be taken for a mnemonic.
        QAction *action =
            m_menu->addAction(QString(path).replace('&', "&&"), this, SLOT(slotChosen()));
        action->setData(path);
    }
    m_menu->addSeparator();
    m_menu->addAction(tr("&Clear list"), this, SLOT(slotClear()));
    if (living != all) {
        store(living);
    }
}

void RecentFiles::slotChosen()
{
    emit chosen(qobject_cast<QAction *>(sender())->data().toString());
}

void RecentFiles::slotClear()
{
    store(QStringList());
}
