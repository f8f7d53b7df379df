#pragma once

#include "settings/chartsettings.h"

#include <QDialog>
#include <QPointer>

#include <memory>
#include <vector>

class AbstractChartModel;
class QAbstractButton;
class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QGridLayout;
class QGroupBox;
class QSpinBox;
class QtColorButton;

/**
 * Lets a user change the settings of a chart: colours, the live view, scales, panes and the style
 * of new series.
 *
 * "OK" and "Apply" write them into the model's record and apply it; "Restore defaults" only fills
 * the dialog in; "Cancel" drops what has not been applied. What concerns live charts only is
 * disabled for others. The model may die while the dialog is open; nothing is written then.
 */
class ChartSettingsDialog : public QDialog
{
    Q_OBJECT

public:
    /// Starts with the settings of \p model. \p defaults are what "Restore defaults" brings back.
    ChartSettingsDialog(AbstractChartModel &model, const ChartSettings &defaults,
                        QWidget *parent = nullptr);
    ~ChartSettingsDialog() override;

signals:
    /// New settings are in the model and in effect.
    void applied();

public slots:
    void accept() override;

private slots:
    void slotButtonClicked(QAbstractButton *button);

private:
    class Field;
    template <typename Control, typename Place>
    class FieldOf;

    void createControls();
    QGroupBox *createColorGroup();
    QGroupBox *createLiveGroup();
    QGroupBox *createPaneGroup();
    QGroupBox *createScaleGroup();
    QGroupBox *createSeriesGroup();
    QGridLayout *createSeriesColors();
    QDialogButtonBox *createButtons();

    template <typename Place>
    QtColorButton *createColorButton(const QString &name, const QString &description, Place place);
    template <typename Place>
    QSpinBox *createPixelBox(const char *name, int lowest, int highest, Place place);
    template <typename Place>
    QCheckBox *createCheckBox(const char *name, const QString &text, Place place);
    template <typename Place>
    QComboBox *createChoice(const char *name, const QString &textIfTrue, const QString &textIfFalse,
                            Place place);
    template <typename Control, typename Place>
    void bind(Control *control, Place place);

    void fillIn(const ChartSettings &settings);
    ChartSettings chosen() const;
    void apply();

    const QPointer<AbstractChartModel> m_model;
    const ChartSettings m_defaults;
    QDialogButtonBox *m_buttons = nullptr;
    std::vector<std::unique_ptr<Field>> m_fields;
    bool m_restored = false; ///< The controls were last filled in with the defaults.
};
