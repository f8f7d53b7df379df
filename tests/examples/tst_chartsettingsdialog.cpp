#include "common/chartsettingsdialog.h"

#include "axes/horizontalchartaxis.h"
#include "common/preferences.h"
#include "editors/qtcolorbutton.h"
#include "support/modelsetup.h"
#include "support/opendynamicmodel.h"
#include "support/quietplatform.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(ChartSettings)

class TestChartSettingsDialog : public QObject
{
    Q_OBJECT

private slots:
    void opensWithTheSettingsOfTheModel();
    void showsDefaultForAnInvalidColor();
    void applyWritesWhatTheUserHasChanged_data();
    void applyWritesWhatTheUserHasChanged();
    void applyKeepsWhatIsNoPreference();
    void applyLeavesTheDialogOpen();
    void changesCanBeTakenBackAfterApply();
    void untouchedValueStays_data();
    void untouchedValueStays();
    void changesByOthersStay();
    void okAppliesAndCloses();
    void cancelWritesNothing();
    void cancelKeepsWhatWasApplied();
    void restoreDefaultsOnlyFillsIn();
    void restoredDefaultsAreWrittenExactly();
    void restoredDefaultsCanBeChanged();
    void applyPutsSettingsIntoEffect();
    void applyMovesTheLiveWindow();
    void announcesEveryApplication();
    void liveGroupIsForLiveCharts();
    void intervalHasTheUnitOfTheScale();
    void survivesTheModel();
    void enterTakesTypedNumberAndCloses();
    void tabWalksFromTopToBottom();
    void everyControlHasANameForTheUser();
    void mnemonicsAreUnique();
    void colorsOfSeriesStandInTwoRows();
};

namespace {

QString colorButtonName(int index)
{
    return QString("seriesColorButton%1").arg(index + 1);
}

/// The preferences by the names of their controls.
QVariantMap preferences(const ChartSettings &settings)
{
    QVariantMap map{
        {"backgroundColorButton", settings.backgroundColor},
        {"gridColorButton", settings.gridColor},
        {"cursorLineColorButton", settings.cursorLineColor},
        {"visibleIntervalBox", settings.visibleInterval},
        {"windowBox", settings.dynamicGrid},
        {"removeEmptyPanesBox", settings.autoRemoveEmptyChart},
        {"scaleBox", settings.individualScale},
        {"autoScaleXBox", settings.autoScaleX},
        {"autoScaleYBox", settings.autoScaleY},
        {"lineWidthBox", settings.seriesSettings.lineWidth},
        {"showPointsBox", settings.seriesSettings.pointsVisible},
        {"pointSizeBox", settings.seriesSettings.pointsSize},
    };
    for (int i = 0; i < SeriesColorCount; ++i) {
        map.insert(colorButtonName(i), settings.seriesSettings.colors[i]);
    }
    return map;
}

/// Settings that controls can show, none of them a default.
ChartSettings someSettings()
{
    ChartSettings settings;
    settings.backgroundColor = Qt::darkBlue;
    settings.gridColor = Qt::darkGray;
    settings.cursorLineColor = QColor(10, 20, 30, 40); // translucent
    settings.visibleInterval = 42.25;
    settings.dynamicGrid = true;
    settings.autoRemoveEmptyChart = false;
    settings.individualScale = false;
    settings.autoScaleX = true;
    settings.autoScaleY = true;
    for (int i = 0; i < SeriesColorCount; ++i) {
        settings.seriesSettings.colors[i] = QColor(100, 100, i);
    }
    settings.seriesSettings.lineWidth = 3;
    settings.seriesSettings.pointsVisible = true;
    settings.seriesSettings.pointsSize = 7;
    return settings;
}

/// Settings with valid colours and the other defaults.
ChartSettings defaultSettings()
{
    ChartSettings settings;
    settings.backgroundColor = Qt::white;
    settings.gridColor = Qt::lightGray;
    settings.cursorLineColor = Qt::black;
    return settings;
}

/// A live model with a dialog that is shown.
struct Fixture
{
    explicit Fixture(const ChartSettings &settings = someSettings(),
                     const ChartSettings &defaults = defaultSettings())
    {
        copyPreferences(settings, model.m_settings);
        dialog = std::make_unique<ChartSettingsDialog>(model, defaults);
        dialog->show();
    }

    template <typename Control = QWidget>
    Control *control(const QString &name) const
    {
        return dialog->findChild<Control *>(name);
    }

    QVariant shown(const QString &name) const;
    void choose(const QString &name, const QVariant &value) const;

    QVariantMap allShown() const
    {
        QVariantMap map;
        const QStringList names = preferences(ChartSettings()).keys();
        for (const QString &name : names) {
            map.insert(name, shown(name));
        }
        return map;
    }

    QPushButton *button(QDialogButtonBox::StandardButton which) const
    {
        return dialog->findChild<QDialogButtonBox *>()->button(which);
    }
    void apply() const { button(QDialogButtonBox::Apply)->click(); }

    const QuietPlatform quiet;
    OpenDynamicModel model;
    std::unique_ptr<ChartSettingsDialog> dialog;
};

QVariant Fixture::shown(const QString &name) const
{
    if (const auto *color = control<QtColorButton>(name)) {
        return color->color();
    }
    if (const auto *number = control<QSpinBox>(name)) {
        return number->value();
    }
    if (const auto *number = control<QDoubleSpinBox>(name)) {
        return number->value();
    }
    if (const auto *choice = control<QComboBox>(name)) {
        return choice->currentIndex() == 0;
    }
    return control<QCheckBox>(name)->isChecked();
}

void Fixture::choose(const QString &name, const QVariant &value) const
{
    if (auto *color = control<QtColorButton>(name)) {
        color->setColor(value.value<QColor>());
    } else if (auto *number = control<QSpinBox>(name)) {
        number->setValue(value.toInt());
    } else if (auto *real = control<QDoubleSpinBox>(name)) {
        real->setValue(value.toDouble());
    } else if (auto *choice = control<QComboBox>(name)) {
        choice->setCurrentIndex(value.toBool() ? 0 : 1);
    } else {
        control<QCheckBox>(name)->setChecked(value.toBool());
    }
}

/// Text that is shown with a mnemonic: of labels, boxes and buttons.
QStringList textsOf(const QWidget &dialog)
{
    QStringList texts;
    const auto labels = dialog.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        texts.append(label->text());
    }
    const auto buttons = dialog.findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons) {
        texts.append(button->text());
    }
    return texts;
}

/// The name of a control, or the text of a button of the button box.
QString nameOf(const QWidget &widget)
{
    const auto *button = qobject_cast<const QPushButton *>(&widget);
    return button ? button->text().remove('&') : widget.objectName();
}

bool takesTab(const QWidget &widget)
{
    return widget.isVisible() && widget.isEnabled() && widget.focusPolicy() & Qt::TabFocus &&
           !widget.focusProxy() && !widget.isWindow();
}

} // namespace

void TestChartSettingsDialog::opensWithTheSettingsOfTheModel()
{
    const Fixture f;

    QCOMPARE(f.dialog->windowTitle(), QString("Settings"));
    QCOMPARE(f.allShown(), preferences(someSettings()));
}

void TestChartSettingsDialog::showsDefaultForAnInvalidColor()
{
    const Fixture f{ChartSettings()};

    QCOMPARE(f.shown("backgroundColorButton"), QVariant(ChartSettings::defaultBackgroundColor()));
    QCOMPARE(f.shown("gridColorButton"), QVariant(ChartSettings::defaultGridColor()));
    QCOMPARE(f.shown("cursorLineColorButton"), QVariant(ChartSettings::defaultCursorColor()));
}

void TestChartSettingsDialog::applyWritesWhatTheUserHasChanged_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVariant>("value");

    const auto row = [](const char *name, const QVariant &value) {
        QTest::newRow(name) << QString(name) << value;
    };
    row("backgroundColorButton", QColor(1, 2, 3));
    row("gridColorButton", QColor(1, 2, 3));
    row("cursorLineColorButton", QColor(1, 2, 3, 4));
    row("visibleIntervalBox", 99.5);
    row("windowBox", false);
    row("removeEmptyPanesBox", true);
    row("scaleBox", true);
    row("autoScaleXBox", false);
    row("autoScaleYBox", false);
    row("lineWidthBox", 10);
    row("showPointsBox", false);
    row("pointSizeBox", 2);
    for (int i = 0; i < SeriesColorCount; ++i) {
        row(qPrintable(colorButtonName(i)), QColor(1, 2, 3));
    }
}

void TestChartSettingsDialog::applyWritesWhatTheUserHasChanged()
{
    QFETCH(QString, name);
    QFETCH(QVariant, value);
    const Fixture f;

    f.choose(name, value);
    QCOMPARE(preferences(f.model.m_settings), preferences(someSettings()));
    f.apply();

    QVariantMap expected = preferences(someSettings());
    expected.insert(name, value);
    QCOMPARE(preferences(f.model.m_settings), expected);
}

void TestChartSettingsDialog::applyKeepsWhatIsNoPreference()
{
    ChartSettings defaults = defaultSettings();
    defaults.application = "of the defaults";
    defaults.legendState = "of the defaults";
    Fixture f(someSettings(), defaults);
    f.model.m_settings.legendState = "legend";

    f.button(QDialogButtonBox::RestoreDefaults)->click();
    f.apply();

    QCOMPARE(f.model.m_settings.application, QString("tests"));
    QCOMPARE(f.model.m_settings.legendState, QByteArray("legend"));
}

void TestChartSettingsDialog::applyLeavesTheDialogOpen()
{
    const Fixture f;

    f.choose("lineWidthBox", 5);
    f.apply();

    QVERIFY(f.dialog->isVisible());
    QCOMPARE(f.shown("lineWidthBox"), QVariant(5));
}

void TestChartSettingsDialog::changesCanBeTakenBackAfterApply()
{
    const Fixture f;

    f.choose("lineWidthBox", 5);
    f.apply();
    f.choose("lineWidthBox", 3);
    f.apply();

    QCOMPARE(f.model.m_settings.seriesSettings.lineWidth, 3);
}

void TestChartSettingsDialog::untouchedValueStays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<ChartSettings>("settings");

    const auto row = [](const char *title, const QString &name, auto change) {
        ChartSettings settings = someSettings();
        change(settings);
        QTest::newRow(title) << name << settings;
    };
    row("interval of many digits", "visibleIntervalBox",
        [](auto &s) { s.visibleInterval = 123.456789; });
    row("no interval", "visibleIntervalBox", [](auto &s) { s.visibleInterval = 0.0; });
    row("negative interval", "visibleIntervalBox", [](auto &s) { s.visibleInterval = -5.0; });
    row("enormous interval", "visibleIntervalBox", [](auto &s) { s.visibleInterval = 1e300; });
    row("infinite interval", "visibleIntervalBox", [](auto &s) { s.visibleInterval = qInf(); });
    row("line width 0", "lineWidthBox", [](auto &s) { s.seriesSettings.lineWidth = 0; });
    row("line width 50", "lineWidthBox", [](auto &s) { s.seriesSettings.lineWidth = 50; });
    row("point size 1", "pointSizeBox", [](auto &s) { s.seriesSettings.pointsSize = 1; });
    row("point size 30", "pointSizeBox", [](auto &s) { s.seriesSettings.pointsSize = 30; });
    row("no background", "backgroundColorButton", [](auto &s) { s.backgroundColor = QColor(); });
    row("no grid", "gridColorButton", [](auto &s) { s.gridColor = QColor(); });
    row("no cursor line", "cursorLineColorButton", [](auto &s) { s.cursorLineColor = QColor(); });
    row("no series color", colorButtonName(4), [](auto &s) { s.seriesSettings.colors[4] = {}; });
}

void TestChartSettingsDialog::untouchedValueStays()
{
    QFETCH(QString, name);
    QFETCH(ChartSettings, settings);
    const Fixture f(settings);

    f.choose("showPointsBox", false);
    f.apply();
    f.button(QDialogButtonBox::Ok)->click();

    QVERIFY(!f.model.m_settings.seriesSettings.pointsVisible);
    QCOMPARE(preferences(f.model.m_settings).value(name), preferences(settings).value(name));
}

void TestChartSettingsDialog::changesByOthersStay()
{
    Fixture f;

    f.model.m_settings.dynamicGrid = false;
    f.choose("lineWidthBox", 5);
    f.apply();

    QVERIFY(!f.model.m_settings.dynamicGrid);
    QCOMPARE(f.shown("windowBox"), QVariant(false));
    QCOMPARE(f.model.m_settings.seriesSettings.lineWidth, 5);
}

void TestChartSettingsDialog::okAppliesAndCloses()
{
    const Fixture f;

    f.choose("lineWidthBox", 5);
    f.button(QDialogButtonBox::Ok)->click();

    QCOMPARE(f.model.m_settings.seriesSettings.lineWidth, 5);
    QVERIFY(!f.dialog->isVisible());
    QCOMPARE(f.dialog->result(), int(QDialog::Accepted));
}

void TestChartSettingsDialog::cancelWritesNothing()
{
    const Fixture f;
    const QSignalSpy applied(f.dialog.get(), SIGNAL(applied()));

    f.choose("lineWidthBox", 5);
    f.button(QDialogButtonBox::Cancel)->click();

    QCOMPARE(preferences(f.model.m_settings), preferences(someSettings()));
    QCOMPARE(applied.count(), 0);
    QVERIFY(!f.dialog->isVisible());
    QCOMPARE(f.dialog->result(), int(QDialog::Rejected));
}

void TestChartSettingsDialog::cancelKeepsWhatWasApplied()
{
    const Fixture f;

    f.choose("lineWidthBox", 5);
    f.apply();
    f.choose("lineWidthBox", 6);
    f.button(QDialogButtonBox::Cancel)->click();

    QCOMPARE(f.model.m_settings.seriesSettings.lineWidth, 5);
}

void TestChartSettingsDialog::restoreDefaultsOnlyFillsIn()
{
    const Fixture f;
    const QSignalSpy applied(f.dialog.get(), SIGNAL(applied()));

    f.button(QDialogButtonBox::RestoreDefaults)->click();

    QCOMPARE(f.allShown(), preferences(defaultSettings()));
    QCOMPARE(preferences(f.model.m_settings), preferences(someSettings()));
    QCOMPARE(applied.count(), 0);
    QVERIFY(f.dialog->isVisible());
}

void TestChartSettingsDialog::restoredDefaultsAreWrittenExactly()
{
    ChartSettings settings = someSettings();
    settings.seriesSettings.lineWidth = 50; // shown as 10, which is the default here
    ChartSettings defaults = defaultSettings();
    defaults.seriesSettings.lineWidth = 10;
    defaults.visibleInterval = 123.456789;
    const Fixture f(settings, defaults);

    f.button(QDialogButtonBox::RestoreDefaults)->click();
    f.apply();

    QCOMPARE(preferences(f.model.m_settings), preferences(defaults));
    QCOMPARE(f.model.m_settings.visibleInterval, 123.456789);
}

void TestChartSettingsDialog::restoredDefaultsCanBeChanged()
{
    const Fixture f;

    f.button(QDialogButtonBox::RestoreDefaults)->click();
    f.choose("lineWidthBox", 3); // as it was before
    f.apply();

    QVariantMap expected = preferences(defaultSettings());
    expected.insert("lineWidthBox", 3);
    QCOMPARE(preferences(f.model.m_settings), expected);
}

void TestChartSettingsDialog::applyPutsSettingsIntoEffect()
{
    Fixture f;
    const PlainSeries *series = addSeries(f.model, "a");
    PlainSeries *customized = addSeries(f.model, "b");
    customized->m_customized = true;

    f.choose("lineWidthBox", 5);
    f.choose("seriesColorButton1", QColor(1, 2, 3));
    f.choose("autoScaleXBox", false);
    f.apply();

    QCOMPARE(series->m_lineWidth, 5);
    QCOMPARE(series->m_color, QColor(1, 2, 3));
    QVERIFY(customized->m_lineWidth != 5);
    QCOMPARE(customized->m_defaults.lineWidth, 5);
    QVERIFY(!f.model.m_axisX->m_autoScale);
}

void TestChartSettingsDialog::applyMovesTheLiveWindow()
{
    Fixture f(defaultSettings());
    f.model.applyChartSettings();
    QVERIFY(hasRange(*f.model.m_axisX, 0.0, 600.0));

    f.choose("visibleIntervalBox", 60.0);
    f.choose("windowBox", true);
    f.apply();

    QVERIFY(isNear(f.model.m_axisX->m_max - f.model.m_axisX->m_min, 60.0));
    QVERIFY(f.model.dynamicGrid());
}

void TestChartSettingsDialog::announcesEveryApplication()
{
    Fixture f;
    const PlainSeries *series = addSeries(f.model, "a");
    QList<int> widths; // in effect when the signal comes
    connect(f.dialog.get(), &ChartSettingsDialog::applied, f.dialog.get(),
            [&widths, series] { widths.append(series->m_lineWidth); });

    f.choose("lineWidthBox", 5);
    f.apply();
    f.apply();
    f.choose("lineWidthBox", 6);
    f.button(QDialogButtonBox::Ok)->click();

    QCOMPARE(widths, (QList<int>{5, 5, 6}));
}

void TestChartSettingsDialog::liveGroupIsForLiveCharts()
{
    OpenModel finished;
    const ChartSettingsDialog dialog(finished, defaultSettings());
    const auto *group = dialog.findChild<QGroupBox *>("liveGroup");
    QVERIFY(!group->isEnabled());
    QVERIFY(!group->toolTip().isEmpty());

    const Fixture live;
    const auto *liveGroup = live.control<QGroupBox>("liveGroup");
    QVERIFY(liveGroup->isEnabled());
    QVERIFY(liveGroup->toolTip().isEmpty());
}

void TestChartSettingsDialog::intervalHasTheUnitOfTheScale()
{
    OpenDynamicModel model;
    const ChartSettingsDialog plain(model, defaultSettings());
    QCOMPARE(plain.findChild<QDoubleSpinBox *>("visibleIntervalBox")->suffix(), QString());

    model.setUseDateTimeScaleX(true);
    const ChartSettingsDialog dateTime(model, defaultSettings());
    QCOMPARE(dateTime.findChild<QDoubleSpinBox *>("visibleIntervalBox")->suffix(), QString(" s"));
}

void TestChartSettingsDialog::survivesTheModel()
{
    const QuietPlatform quiet;
    auto model = std::make_unique<OpenDynamicModel>();
    ChartSettingsDialog dialog(*model, defaultSettings());
    const QSignalSpy applied(&dialog, SIGNAL(applied()));
    const auto *box = dialog.findChild<QDialogButtonBox *>();
    dialog.show();

    model.reset();
    dialog.findChild<QSpinBox *>("lineWidthBox")->setValue(5);
    box->button(QDialogButtonBox::Apply)->click();
    box->button(QDialogButtonBox::RestoreDefaults)->click();
    QVERIFY(dialog.isVisible());
    box->button(QDialogButtonBox::Ok)->click();

    QVERIFY(!dialog.isVisible());
    QCOMPARE(applied.count(), 0);
}

void TestChartSettingsDialog::enterTakesTypedNumberAndCloses()
{
    const Fixture f;
    const QSignalSpy applied(f.dialog.get(), SIGNAL(applied()));
    auto *interval = f.control<QDoubleSpinBox>("visibleIntervalBox");
    QVERIFY(f.button(QDialogButtonBox::Ok)->isDefault());

    interval->selectAll();
    QTest::keyClicks(interval, "120");
    QTest::keyClick(interval, Qt::Key_Return);

    QCOMPARE(f.model.m_settings.visibleInterval, 120.0);
    QCOMPARE(applied.count(), 1);
    QVERIFY(!f.dialog->isVisible());
}

void TestChartSettingsDialog::tabWalksFromTopToBottom()
{
    const Fixture f;
    QStringList expected{"backgroundColorButton",
                         "gridColorButton",
                         "cursorLineColorButton",
                         "visibleIntervalBox",
                         "windowBox",
                         "removeEmptyPanesBox",
                         "scaleBox",
                         "autoScaleXBox",
                         "autoScaleYBox"};
    for (int i = 0; i < SeriesColorCount; ++i) {
        expected.append(colorButtonName(i));
    }
    expected << "lineWidthBox"
             << "showPointsBox"
             << "pointSizeBox";

    QStringList names;
    const QWidget *first = f.control("backgroundColorButton");
    const QWidget *widget = first;
    do {
        if (takesTab(*widget)) {
            names.append(nameOf(*widget));
        }
        widget = widget->nextInFocusChain();
    } while (widget != first);

    QCOMPARE(names.mid(0, expected.size()), expected);
    const QStringList buttons = names.mid(expected.size());
    QCOMPARE(buttons.size(), 4); // in the order of the platform
    QVERIFY(buttons.contains("OK"));
}

void TestChartSettingsDialog::everyControlHasANameForTheUser()
{
    const Fixture f;
    QSet<const QWidget *> labelled;
    const auto labels = f.dialog->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        labelled.insert(label->buddy());
    }

    const QStringList names = preferences(ChartSettings()).keys();
    for (const QString &name : names) {
        const QWidget *control = f.control(name);
        QVERIFY2(control, qPrintable(name));
        const bool hasOwnText = qobject_cast<const QCheckBox *>(control);
        const bool isNumbered = name.startsWith("seriesColorButton");
        QVERIFY2(hasOwnText || isNumbered || labelled.contains(control), qPrintable(name));
    }
    for (int i = 0; i < SeriesColorCount; ++i) {
        const QWidget *button = f.control(colorButtonName(i));
        QCOMPARE(button->toolTip(), QString("Color %1 of 10").arg(i + 1));
        QCOMPARE(button->accessibleName(), button->toolTip());
    }
}

void TestChartSettingsDialog::mnemonicsAreUnique()
{
    const Fixture f;

    QMap<QString, QString> owners;
    const QStringList texts = textsOf(*f.dialog);
    for (const QString &text : texts) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty()) {
            QVERIFY2(!owners.contains(key), qPrintable(owners.value(key) + " and " + text));
            owners.insert(key, text);
        }
    }
    QVERIFY(owners.size() >= 12);
}

void TestChartSettingsDialog::colorsOfSeriesStandInTwoRows()
{
    const Fixture f;
    QVERIFY(QTest::qWaitForWindowExposed(f.dialog.get()));

    const QPoint first = f.control("seriesColorButton1")->pos();
    for (int i = 1; i < SeriesColorCount; ++i) {
        const QPoint pos = f.control(colorButtonName(i))->pos();
        const QPoint left = f.control(colorButtonName(i - 1))->pos();
        if (i == 5) {
            QVERIFY(pos.x() == first.x() && pos.y() > first.y());
        } else {
            QVERIFY(pos.x() > left.x() && pos.y() == left.y());
        }
    }
}

QTEST_MAIN(TestChartSettingsDialog)
#include "tst_chartsettingsdialog.moc"
