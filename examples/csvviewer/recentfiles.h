#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QMenu;

/**
 * The files that were opened last, newest first: a menu of them, kept across starts.
 *
 * A file that is gone leaves the list when the menu is next shown.
 */
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    /// Files that the list holds at most.
    static constexpr int MostFiles = 8;

    /// \p parent is the parent of the menu too.
    explicit RecentFiles(QWidget *parent);

    /// Child of the parent; disabled while there are no files.
    QMenu *menu() const { return m_menu; }

    /// Absolute paths.
    QStringList files() const;

    /// Puts a file first.
    void add(const QString &fileName);

signals:
    /// The user has chosen a file of the menu.
    void chosen(const QString &fileName);

private slots:
    void slotFillMenu();
    void slotChosen();
    void slotClear();

private:
    void store(const QStringList &files);

    QMenu *m_menu;
};
