#include "editors/serieseditor.h"

#include "editors/seriespropertiesdialog.h"
#include "series/abstractchartseries.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QToolButton>

namespace {

constexpr QSize SampleSize(40, 16); // pixels
constexpr QSize ResetSize(8, 8);    // pixels

constexpr int EditorGone = -1; // result of a dialog, beside those of QDialog::DialogCode

} // namespace

SeriesEditor::SeriesEditor(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_seriesButton = newButton(SampleSize, QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusProxy(m_seriesButton);
    m_seriesButton->setAccessibleName(tr("Series properties"));
    connect(m_seriesButton, SIGNAL(clicked()), SLOT(slotSeriesButtonClicked()));

    m_resetButton = newButton(ResetSize, QSizePolicy::Fixed, QSizePolicy::MinimumExpanding);
    m_resetButton->setIcon(QIcon(QStringLiteral(":/chart/images/resetproperty.png")));
    m_resetButton->setAccessibleName(tr("Restore defaults"));
    connect(m_resetButton, SIGNAL(clicked()), SLOT(emitResetProperty()));
}

SeriesEditor::~SeriesEditor()
{
    if (!m_dialog) {
        return;
    }
    // It stands on the stack of slotSeriesButtonClicked() and must not die as a child does. Losing
    // its parent closes it; that slot opens it again where it was.
    const bool open = m_dialog->isVisible();
    const QPoint position = m_dialog->pos();
    m_dialog->setParent(nullptr, m_dialog->windowFlags());
    m_dialog->move(position);
    if (open) {
        m_dialog->setResult(EditorGone);
    }
}

QToolButton *SeriesEditor::newButton(const QSize &iconSize, QSizePolicy::Policy horizontal,
                                     QSizePolicy::Policy vertical)
{
    auto *button = new QToolButton(this);
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setIconSize(iconSize);
    button->setSizePolicy(horizontal, vertical);
    layout()->addWidget(button);
    return button;
}

void SeriesEditor::setSeries(AbstractChartSeries *series)
{
    if (!series) {
        return;
    }
    m_series = series;
    updateImage();
}

void SeriesEditor::updateImage()
{
    if (!m_series) {
        return;
    }
    QPixmap pixmap(m_seriesButton->iconSize());
    pixmap.fill(QColor(0, 0, 0, 0));
    QPainter painter(&pixmap);
    m_series->paintLogo(&painter, pixmap.rect());
    painter.end();
    m_seriesButton->setIcon(QIcon(pixmap));
}

void SeriesEditor::slotSeriesButtonClicked()
{
    if (!m_series) {
        return;
    }
    const QPointer<SeriesEditor> self(this);
    const QPointer<AbstractChartSeries> series(m_series);
    SeriesPropertiesDialog dialog(m_series, this, Qt::WindowFlags());
    m_dialog = &dialog;
    int result = dialog.exec();
    if (result == EditorGone) {
        result = dialog.exec();
    }
    if (!self || !series || result != QDialog::Accepted) {
        return;
    }
    updateImage();
    emit changed(this);
}

void SeriesEditor::emitResetProperty()
{
    if (!m_series) {
        return;
    }
    m_series->restoreDefault();
    emit changed(this);
}
