#include "common/chartsettingsdialog.h"

#include "axes/horizontalchartaxis.h"
#include "common/preferences.h"
#include "editors/qtcolorbutton.h"
#include "model/dynamicchartmodel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr double ShortestInterval = 0.01; // X units
constexpr double LongestInterval = 1e8;   // three years of seconds
constexpr int IntervalDecimals = 2;
constexpr int WidestLine = 10; // pixels
constexpr int SmallestPoint = 2;
constexpr int LargestPoint = 10;
constexpr int SeriesColorsInRow = 5;
constexpr QSize SwatchSize(44, 26); // pixels

QColor valueOf(const QtColorButton &button)
{
    return button.color();
}

double valueOf(const QDoubleSpinBox &box)
{
    return box.value();
}

int valueOf(const QSpinBox &box)
{
    return box.value();
}

bool valueOf(const QCheckBox &box)
{
    return box.isChecked();
}

bool valueOf(const QComboBox &box)
{
    return box.currentData().toBool();
}

void showIn(QtColorButton &button, const QColor &color)
{
    button.setColor(color);
}

void showIn(QDoubleSpinBox &box, double value)
{
    box.setValue(value);
}

void showIn(QSpinBox &box, int value)
{
    box.setValue(value);
}

void showIn(QCheckBox &box, bool on)
{
    box.setChecked(on);
}

void showIn(QComboBox &box, bool value)
{
    box.setCurrentIndex(box.findData(value));
}

QColor validOr(const QColor &color, const QColor &fallback)
{
    return color.isValid() ? color : fallback;
}

/// The settings with the colours that a chart paints in the place of invalid ones.
ChartSettings asPainted(ChartSettings settings)
{
    settings.backgroundColor =
        validOr(settings.backgroundColor, ChartSettings::defaultBackgroundColor());
    settings.gridColor = validOr(settings.gridColor, ChartSettings::defaultGridColor());
    settings.cursorLineColor =
        validOr(settings.cursorLineColor, ChartSettings::defaultCursorColor());
    return settings;
}

} // namespace

/// A control, and the place in the settings that it stands for.
class ChartSettingsDialog::Field
{
public:
    Field() = default;
    virtual ~Field() = default;
    Q_DISABLE_COPY_MOVE(Field)

    virtual void fillIn(const ChartSettings &settings) = 0;

    /// Writes what the user has chosen. A value that nobody has touched is not written: the control
    /// may be unable to show it, such as a width beyond its range.
    virtual void writeTo(ChartSettings &settings) const = 0;
};

/// \p Place takes the settings, const or not, and returns a reference to one value in them.
template <typename Control, typename Place>
class ChartSettingsDialog::FieldOf : public ChartSettingsDialog::Field
{
public:
    FieldOf(Control *control, Place place)
        : m_control(control)
        , m_place(std::move(place))
        , m_shown(valueOf(*control))
    {
    }

    void fillIn(const ChartSettings &settings) override
    {
        showIn(*m_control, m_place(settings));
        m_shown = valueOf(*m_control);
    }

    void writeTo(ChartSettings &settings) const override
    {
        if (valueOf(*m_control) != m_shown) {
            m_place(settings) = valueOf(*m_control);
        }
    }

private:
    Control *const m_control;
    const Place m_place;
    decltype(valueOf(std::declval<const Control &>())) m_shown; ///< What it was filled in with.
};

template <typename Control, typename Place>
void ChartSettingsDialog::bind(Control *control, Place place)
{
    m_fields.push_back(std::make_unique<FieldOf<Control, Place>>(control, std::move(place)));
}

ChartSettingsDialog::ChartSettingsDialog(AbstractChartModel &model, const ChartSettings &defaults,
                                         QWidget *parent)
    : QDialog(parent)
    , m_model(&model)
    , m_defaults(defaults)
{
    setWindowTitle(tr("Settings"));
    createControls();
    fillIn(model.m_settings);
}

ChartSettingsDialog::~ChartSettingsDialog() = default;

/// The order of creation is the order of the tab key: down the left column, then the right one.
void ChartSettingsDialog::createControls()
{
    auto *left = new QVBoxLayout;
    left->addWidget(createColorGroup());
    left->addWidget(createLiveGroup());
    left->addWidget(createPaneGroup(), 1); // so that both columns end at the same height

    auto *right = new QVBoxLayout;
    right->addWidget(createScaleGroup());
    right->addWidget(createSeriesGroup(), 1);

    auto *columns = new QHBoxLayout;
    columns->addLayout(left);
    columns->addLayout(right);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(columns);
    layout->addWidget(createButtons());
}

QGroupBox *ChartSettingsDialog::createColorGroup()
{
    auto *group = new QGroupBox(tr("Colors"));
    auto *form = new QFormLayout(group);
    form->addRow(tr("&Background:"), createColorButton(
                                         "backgroundColorButton", tr("Background of the charts"),
                                         [](auto &s) -> auto & { return s.backgroundColor; }));
    form->addRow(tr("&Grid:"), createColorButton(
                                   "gridColorButton", tr("Grid and frame"),
                                   [](auto &s) -> auto & { return s.gridColor; }));
    form->addRow(tr("C&ursor line:"), createColorButton(
                                          "cursorLineColorButton", tr("Line of the cursor"),
                                          [](auto &s) -> auto & { return s.cursorLineColor; }));
    return group;
}

QGroupBox *ChartSettingsDialog::createLiveGroup()
{
    auto *group = new QGroupBox(tr("Live view"));
    group->setObjectName("liveGroup");

    auto *interval = new QDoubleSpinBox;
    interval->setObjectName("visibleIntervalBox");
    interval->setDecimals(IntervalDecimals);
    interval->setRange(ShortestInterval, LongestInterval);
    interval->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    if (m_model->m_axisX && m_model->m_axisX->m_dateTime) {
        interval->setSuffix(tr(" s"));
    }
    bind(
        interval, [](auto &s) -> auto & { return s.visibleInterval; });

    auto *form = new QFormLayout(group);
    form->addRow(tr("&Visible interval:"), interval);
    form->addRow(tr("&Window:"),
                 createChoice(
                     "windowBox", tr("Slides with each sample"), tr("Jumps when full"),
                     [](auto &s) -> auto & { return s.dynamicGrid; }));
    if (!qobject_cast<DynamicChartModel *>(m_model)) {
        group->setEnabled(false);
        group->setToolTip(tr("This chart shows finished data, not a live view."));
    }
    return group;
}

QGroupBox *ChartSettingsDialog::createPaneGroup()
{
    auto *group = new QGroupBox(tr("Panes"));
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(createCheckBox(
        "removeEmptyPanesBox", tr("&Remove empty panes"),
        [](auto &s) -> auto & { return s.autoRemoveEmptyChart; }));
    layout->addStretch();
    return group;
}

QGroupBox *ChartSettingsDialog::createScaleGroup()
{
    auto *group = new QGroupBox(tr("Scale"));
    auto *form = new QFormLayout(group);
    form->addRow(tr("&Scale of Y:"),
                 createChoice(
                     "scaleBox", tr("Individual for each series"), tr("Common to all series"),
                     [](auto &s) -> auto & { return s.individualScale; }));
    form->addRow(createCheckBox(
        "autoScaleXBox", tr("Auto scale &X"), [](auto &s) -> auto & { return s.autoScaleX; }));
    form->addRow(createCheckBox(
        "autoScaleYBox", tr("Auto scale &Y"), [](auto &s) -> auto & { return s.autoScaleY; }));
    return group;
}

QGroupBox *ChartSettingsDialog::createSeriesGroup()
{
    auto *group = new QGroupBox(tr("New series"));
    auto *form = new QFormLayout(group);
    form->addRow(tr("Colors:"), createSeriesColors());
    form->addRow(tr("&Line width:"), createPixelBox(
                                         "lineWidthBox", 1, WidestLine, [](auto &s) -> auto & {
                                             return s.seriesSettings.lineWidth;
                                         }));
    form->addRow(createCheckBox(
        "showPointsBox", tr("Show &points"),
        [](auto &s) -> auto & { return s.seriesSettings.pointsVisible; }));
    form->addRow(tr("Point si&ze:"),
                 createPixelBox(
                     "pointSizeBox", SmallestPoint, LargestPoint,
                     [](auto &s) -> auto & { return s.seriesSettings.pointsSize; }));
    return group;
}

QGridLayout *ChartSettingsDialog::createSeriesColors()
{
    auto *grid = new QGridLayout;
    for (int i = 0; i < SeriesColorCount; ++i) {
        const QString name = QStringLiteral("seriesColorButton%1").arg(i + 1);
        QtColorButton *button = createColorButton(
            name, tr("Color %1 of %2").arg(i + 1).arg(SeriesColorCount), [i](auto &s) -> auto & {
                return s.seriesSettings.colors[i];
            });
        grid->addWidget(button, i / SeriesColorsInRow, i % SeriesColorsInRow);
    }
    return grid;
}

QDialogButtonBox *ChartSettingsDialog::createButtons()
{
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Apply |
                                     QDialogButtonBox::Cancel | QDialogButtonBox::RestoreDefaults);
    m_buttons->setObjectName("buttonBox");
    m_buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(m_buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(m_buttons, SIGNAL(rejected()), SLOT(reject()));
    connect(m_buttons, SIGNAL(clicked(QAbstractButton *)),
            SLOT(slotButtonClicked(QAbstractButton *)));
    return m_buttons;
}

template <typename Place>
QtColorButton *ChartSettingsDialog::createColorButton(const QString &name,
                                                      const QString &description, Place place)
{
    auto *button = new QtColorButton;
    button->setObjectName(name);
    button->setToolTip(description);
    button->setAccessibleName(description);
    button->setMinimumSize(SwatchSize);
    bind(button, std::move(place));
    return button;
}

template <typename Place>
QSpinBox *ChartSettingsDialog::createPixelBox(const char *name, int lowest, int highest,
                                              Place place)
{
    auto *box = new QSpinBox;
    box->setObjectName(name);
    box->setRange(lowest, highest);
    box->setSuffix(tr(" px"));
    bind(box, std::move(place));
    return box;
}

template <typename Place>
QCheckBox *ChartSettingsDialog::createCheckBox(const char *name, const QString &text, Place place)
{
    auto *box = new QCheckBox(text);
    box->setObjectName(name);
    bind(box, std::move(place));
    return box;
}

template <typename Place>
QComboBox *ChartSettingsDialog::createChoice(const char *name, const QString &textIfTrue,
                                             const QString &textIfFalse, Place place)
{
    auto *box = new QComboBox;
    box->setObjectName(name);
    box->addItem(textIfTrue, true);
    box->addItem(textIfFalse, false);
    bind(box, std::move(place));
    return box;
}

void ChartSettingsDialog::fillIn(const ChartSettings &settings)
{
    const ChartSettings painted = asPainted(settings);
    for (const auto &field : m_fields) {
        field->fillIn(painted);
    }
    m_restored = false;
}

/// Starts with what the model has at present, so that what others have changed meanwhile stays.
ChartSettings ChartSettingsDialog::chosen() const
{
    ChartSettings settings = m_model->m_settings;
    if (m_restored) {
        copyPreferences(m_defaults, settings);
    }
    for (const auto &field : m_fields) {
        field->writeTo(settings);
    }
    return settings;
}

void ChartSettingsDialog::apply()
{
    if (!m_model) {
        return;
    }
    copyPreferences(chosen(), m_model->m_settings);
    m_model->applyChartSettings();
    fillIn(m_model->m_settings);
    emit applied();
}

void ChartSettingsDialog::accept()
{
    apply();
    QDialog::accept();
}

void ChartSettingsDialog::slotButtonClicked(QAbstractButton *button)
{
    switch (m_buttons->standardButton(button)) {
    case QDialogButtonBox::Apply:
        apply();
        break;
    case QDialogButtonBox::RestoreDefaults:
        fillIn(m_defaults);
        m_restored = true;
        break;
    default:
        break; // OK and Cancel have slots of their own.
    }
}
