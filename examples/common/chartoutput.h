#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>

#include <optional>

class MultiChart;
class QAction;
class QPrinter;
class QWidget;

/**
 * What can be got out of a chart, with the dialogs for it: a picture, a print, its samples.
 *
 * What goes wrong is told in a message box.
 */
class ChartOutput : public QObject
{
    Q_OBJECT

public:
    /// \p window is the parent of the dialogs and of this object.
    ChartOutput(MultiChart &chart, QWidget *window);

    /// Actions for a menu; a null stands for a separator.
    QList<QAction *> actions() const { return m_actions; }

    /// The name that files get unless the user types another; without suffix. At first that of the
    /// program.
    QString documentName() const { return m_documentName; }
    void setDocumentName(const QString &name);

    /// Writes what is shown as a picture, whose form the suffix of \p fileName tells. Returns
    /// false, and has told the user, if that fails.
    bool writePicture(const QString &fileName, double scale);

    /// Writes the samples in view as CSV. Returns false, and has told the user, if that fails.
    bool writeSamples(const QString &fileName);

private slots:
    void slotExportPicture();
    void slotSaveSamples();
    void slotPrint();
    void slotPrintPreview();
    void slotPaintPage(QPrinter *printer);

private:
    QAction *newAction(const QString &text, const char *slot,
                       const QKeySequence &shortcut = QKeySequence());
    QString chooseFile(const QString &title, const QStringList &filters);
    std::optional<double> chooseScale();
    void tell(const QString &problem);

    MultiChart &m_chart;
    QWidget *m_window;
    QString m_documentName;
    QList<QAction *> m_actions;
};
