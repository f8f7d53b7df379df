#pragma once

#include "quarvchart_export.h"

#include <QPointer>
#include <QWidget>

class AbstractChartSeries;
class QToolButton;
class SeriesPropertiesDialog;

/**
 * The legend's editor in place: a button with the sample of the series, which opens its properties,
 * and a narrow one that returns the series to its defaults.
 *
 * Changes the series itself, and not a value of the model; changed() tells the world. Such changes
 * are no undo steps. Without a series the buttons do nothing. GUI thread only.
 */
class QUARVCHART_EXPORT SeriesEditor : public QWidget
{
    Q_OBJECT

public:
    /// An editor without a series.
    explicit SeriesEditor(QWidget *parent = nullptr);

    /// An open dialog goes on without the editor.
    ~SeriesEditor() override;

    /// Renders the sample anew; the way round from changed() leads here by way of the view.
    void updateImage();

    QToolButton *m_seriesButton; ///< Child.
    QToolButton *m_resetButton;  ///< Child.

    /// Not owned and not watched: views close their editors when the row goes.
    AbstractChartSeries *m_series = nullptr;

signals:
    /// The series has been changed, or its dialog accepted; \p widget is this editor.
    void changed(QWidget *widget);

public slots:
    /// Null is ignored and leaves the former series in place.
    void setSeries(AbstractChartSeries *series);

private slots:
    void emitResetProperty();
    void slotSeriesButtonClicked();

private:
    QToolButton *newButton(const QSize &iconSize, QSizePolicy::Policy horizontal,
                           QSizePolicy::Policy vertical);

    QPointer<SeriesPropertiesDialog> m_dialog; ///< While it is open; stands on the stack.
};
