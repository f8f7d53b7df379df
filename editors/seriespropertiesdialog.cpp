#include "editors/seriespropertiesdialog.h"

#include "series/abstractchartseries.h"
#include "ui_seriespropertiesdialog.h"

SeriesPropertiesDialog::SeriesPropertiesDialog(AbstractChartSeries *series, QWidget *parent,
                                               Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , ui(new Ui_SeriesPropertiesDialog)
    , m_series(series)
    , m_livingSeries(series)
{
    ui->setupUi(this);
    ui->lineColorToolButton->setColor(m_series->m_color);
    ui->lineWidthSpinBox->setValue(m_series->m_lineWidth);
    ui->showPointsCheckBox->setChecked(m_series->m_pointsVisible);
    ui->pointSizeSpinBox->setValue(m_series->m_pointSize);
}

SeriesPropertiesDialog::~SeriesPropertiesDialog()
{
    delete ui;
}

void SeriesPropertiesDialog::accept()
{
    if (m_series && m_livingSeries && isChanged()) {
        writeSeries();
    }
    QDialog::accept();
}

bool SeriesPropertiesDialog::isChanged() const
{
    return ui->lineColorToolButton->color() != m_series->m_color ||
           ui->lineWidthSpinBox->value() != m_series->m_lineWidth ||
           ui->showPointsCheckBox->isChecked() != m_series->m_pointsVisible ||
           ui->pointSizeSpinBox->value() != m_series->m_pointSize;
}

void SeriesPropertiesDialog::writeSeries()
{
    m_series->m_color = ui->lineColorToolButton->color();
    m_series->updatePointImage();
    m_series->m_lineWidth = ui->lineWidthSpinBox->value();
    m_series->updatePointImage();
    m_series->m_pointsVisible = ui->showPointsCheckBox->isChecked();
    m_series->m_pointImage = QImage();
    // A size of 1 is refused: the former one stays, and the symbol is gone until it is next
    // rendered. This order is wanted.
    m_series->setPointSize(ui->pointSizeSpinBox->value());
    m_series->m_customized = true;
}
