#include "chartoutput.h"

#include "chartexport.h"
#include "chartpicture.h"
#include "samplewriter.h"

#include "views/multichart.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrintPreviewDialog>

namespace {

constexpr double LeastScale = 0.5;
constexpr double MostScale = 10.0;

/// "Drawing (*.svg)" gives "svg".
QString suffixOf(const QString &filter)
{
    return filter.section(QStringLiteral("*."), 1).section(QLatin1Char(')'), 0, 0);
}

/// Charts are wider than high.
void turnToLandscape(QPrinter &printer)
{
    printer.setPageOrientation(QPageLayout::Landscape);
}

} // namespace

ChartOutput::ChartOutput(MultiChart &chart, QWidget *window)
    : QObject(window)
    , m_chart(chart)
    , m_window(window)
    , m_documentName(QCoreApplication::applicationName())
{
    m_actions = {newAction(tr("&Export picture..."), SLOT(slotExportPicture()),
                           QKeySequence(Qt::CTRL + Qt::Key_E)),
                 newAction(tr("Save &samples..."), SLOT(slotSaveSamples()), QKeySequence::Save),
                 nullptr, newAction(tr("Print pre&view..."), SLOT(slotPrintPreview())),
                 newAction(tr("&Print..."), SLOT(slotPrint()), QKeySequence::Print)};
}

QAction *ChartOutput::newAction(const QString &text, const char *slot, const QKeySequence &shortcut)
{
    auto *action = new QAction(text, this);
    action->setShortcut(shortcut);
    connect(action, SIGNAL(triggered()), slot);
    return action;
}

void ChartOutput::setDocumentName(const QString &name)
{
    m_documentName = name;
}

bool ChartOutput::writePicture(const QString &fileName, double scale)
{
    QString problem;
    if (exportPicture(ChartPicture(m_chart), fileName, pictureFormatOf(fileName), scale,
                      &problem)) {
        return true;
    }
    tell(problem);
    return false;
}

bool ChartOutput::writeSamples(const QString &fileName)
{
    QString problem;
    if (m_chart.m_model && saveVisibleSamples(*m_chart.m_model, fileName, &problem)) {
        return true;
    }
    tell(problem);
    return false;
}

void ChartOutput::tell(const QString &problem)
{
    QMessageBox box(QMessageBox::Warning, QCoreApplication::applicationName(), problem,
                    QMessageBox::Ok, m_window);
    box.setTextFormat(Qt::PlainText); // It quotes a file's name, which may hold anything.
    box.exec();
}

/// An empty name if the user cancels.
QString ChartOutput::chooseFile(const QString &title, const QStringList &filters)
{
    QFileDialog dialog(m_window, title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(suffixOf(filters.constFirst()));
    // A name without suffix gets that of the chosen form, and the question about an existing file
    // is asked for the whole name.
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&dialog](const QString &filter) { dialog.setDefaultSuffix(suffixOf(filter)); });
    dialog.selectFile(m_documentName);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

/// Nothing if the user cancels.
std::optional<double> ChartOutput::chooseScale()
{
    bool ok = false;
    const double scale = QInputDialog::getDouble(
        m_window, tr("Export picture"), tr("Pixels of the picture for a pixel of the screen:"),
        m_window->devicePixelRatioF(), LeastScale, MostScale, 1, &ok, Qt::WindowFlags(), 0.5);
    return ok ? std::make_optional(scale) : std::nullopt;
}

void ChartOutput::slotExportPicture()
{
    const QString fileName =
        chooseFile(tr("Export picture"), {tr("PNG image (*.png)"), tr("SVG drawing (*.svg)"),
                                          tr("PDF document (*.pdf)")});
    if (fileName.isEmpty()) {
        return;
    }
    if (pictureFormatOf(fileName) != PictureFormat::Png) {
        writePicture(fileName, 1.0);
        return;
    }
    if (const std::optional<double> scale = chooseScale()) {
        writePicture(fileName, *scale);
    }
}

void ChartOutput::slotSaveSamples()
{
    const QString fileName = chooseFile(tr("Save samples"), {tr("Table (*.csv)")});
    if (!fileName.isEmpty()) {
        writeSamples(fileName);
    }
}

void ChartOutput::slotPrint()
{
    QPrinter printer(QPrinter::HighResolution);
    turnToLandscape(printer);
    QPrintDialog dialog(&printer, m_window);
    if (dialog.exec() == QDialog::Accepted) {
        slotPaintPage(&printer);
    }
}

void ChartOutput::slotPrintPreview()
{
    QPrinter printer(QPrinter::HighResolution);
    turnToLandscape(printer);
    QPrintPreviewDialog dialog(&printer, m_window);
    connect(&dialog, SIGNAL(paintRequested(QPrinter *)), SLOT(slotPaintPage(QPrinter *)));
    dialog.exec();
}

void ChartOutput::slotPaintPage(QPrinter *printer)
{
    printPicture(ChartPicture(m_chart), *printer);
}
