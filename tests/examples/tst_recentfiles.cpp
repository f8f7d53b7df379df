#include "recentfiles.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>
#include <QWidget>

class TestRecentFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void startsEmpty();
    void putsNewestFirst();
    void movesFileThatIsOpenedAgain();
    void forgetsOldestBeyondLimit();
    void keepsListAcrossStarts();
    void makesPathsAbsolute();
    void showsFilesInMenu();
    void tellsChosenFile();
    void dropsFilesThatAreGone();
    void clearsList();

private:
    QString write(const QString &name) const;
    static QString menuText(const RecentFiles &files);

    QTemporaryDir m_folder;
};

void TestRecentFiles::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QCoreApplication::setOrganizationName("QUARVChart5 tests"); // without one nothing is kept
}

void TestRecentFiles::init()
{
    QSettings().clear();
}

QString TestRecentFiles::write(const QString &name) const
{
    QFile file(m_folder.filePath(name));
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

/// The menu as it comes up: "a.csv, b.csv, |, &Clear list".
QString TestRecentFiles::menuText(const RecentFiles &files)
{
    QMetaObject::invokeMethod(files.menu(), "aboutToShow");
    QStringList texts;
    const QList<QAction *> actions = files.menu()->actions();
    for (const QAction *action : actions) {
        // Files stand there with their paths.
        texts.append(action->isSeparator() ? QString("|") : action->text().section('/', -1));
    }
    return texts.join(", ");
}

void TestRecentFiles::startsEmpty()
{
    QWidget window;
    const RecentFiles files(&window);

    QVERIFY(files.files().isEmpty());
    QVERIFY(!files.menu()->isEnabled());
}

void TestRecentFiles::putsNewestFirst()
{
    QWidget window;
    RecentFiles files(&window);
    files.add("/a.csv");
    files.add("/b.csv");

    QCOMPARE(files.files(), (QStringList{"/b.csv", "/a.csv"}));
    QVERIFY(files.menu()->isEnabled());
}

void TestRecentFiles::movesFileThatIsOpenedAgain()
{
    QWidget window;
    RecentFiles files(&window);
    files.add("/a.csv");
    files.add("/b.csv");
    files.add("/a.csv");

    QCOMPARE(files.files(), (QStringList{"/a.csv", "/b.csv"}));
}

void TestRecentFiles::forgetsOldestBeyondLimit()
{
    QWidget window;
    RecentFiles files(&window);
    for (int i = 0; i <= RecentFiles::MostFiles; ++i) {
        files.add(QString("/%1.csv").arg(i));
    }

    QCOMPARE(files.files().size(), int(RecentFiles::MostFiles));
    QCOMPARE(files.files().constFirst(), QString("/8.csv"));
    QCOMPARE(files.files().constLast(), QString("/1.csv"));
}

void TestRecentFiles::keepsListAcrossStarts()
{
    QWidget window;
    RecentFiles(&window).add("/a.csv");

    const RecentFiles next(&window);
    QCOMPARE(next.files(), QStringList{"/a.csv"});
    QVERIFY(next.menu()->isEnabled());
}

void TestRecentFiles::makesPathsAbsolute()
{
    QWidget window;
    RecentFiles files(&window);
    files.add("relative.csv");

    QCOMPARE(files.files(), QStringList{QDir::current().filePath("relative.csv")});
}

void TestRecentFiles::showsFilesInMenu()
{
    QWidget window;
    RecentFiles files(&window);
    files.add(write("a.csv"));
    files.add(write("b & c.csv"));

    // An "&" is doubled, or else it would underline the letter behind it.
    QCOMPARE(menuText(files), QString("b && c.csv, a.csv, |, &Clear list"));
    QCOMPARE(menuText(files), QString("b && c.csv, a.csv, |, &Clear list")); // not twice
}

void TestRecentFiles::tellsChosenFile()
{
    QWidget window;
    RecentFiles files(&window);
    const QString name = write("b & c.csv");
    files.add(name);
    const QSignalSpy chosen(&files, SIGNAL(chosen(QString)));

    QMetaObject::invokeMethod(files.menu(), "aboutToShow");
    files.menu()->actions().constFirst()->trigger();
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen.constFirst().constFirst().toString(), name);
}

void TestRecentFiles::dropsFilesThatAreGone()
{
    QWidget window;
    RecentFiles files(&window);
    files.add("/nowhere/gone.csv");
    files.add(write("a.csv"));

    QMetaObject::invokeMethod(files.menu(), "aboutToShow");
    QCOMPARE(files.files(), QStringList{m_folder.filePath("a.csv")});
}

void TestRecentFiles::clearsList()
{
    QWidget window;
    RecentFiles files(&window);
    files.add(write("a.csv"));

    QMetaObject::invokeMethod(files.menu(), "aboutToShow");
    files.menu()->actions().constLast()->trigger();
    QVERIFY(files.files().isEmpty());
    QVERIFY(!files.menu()->isEnabled());
}

QTEST_MAIN(TestRecentFiles)
#include "tst_recentfiles.moc"
