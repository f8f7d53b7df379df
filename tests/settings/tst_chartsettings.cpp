#include "settings/chartsettings.h"

#include "support/settingsfolder.h"

#include <QPoint>
#include <QtTest>
#include <QVector>

#include <functional>
#include <memory>

namespace {

/// One key of the store and the member behind it.
struct Key
{
    QByteArray name;
    int type;          ///< Of the value in the store.
    QVariant fallback; ///< What a store without the key gives; invalid if it gives nothing.
    QVariant other;    ///< A value that is not the fallback.
    std::function<QVariant(ChartSettings &)> value;
    std::function<void(ChartSettings &, const QVariant &)> assign;
};

/// A key for the member that \p member returns a reference to.
template <typename T, typename Member>
Key keyOf(const QByteArray &name, const T &fallback, const T &other, Member member)
{
    return {name,
            qMetaTypeId<T>(),
            QVariant::fromValue(fallback),
            QVariant::fromValue(other),
            [member](ChartSettings &settings) { return QVariant::fromValue<T>(member(settings)); },
            [member](ChartSettings &settings, const QVariant &value) {
                member(settings) = value.value<T>();
            }};
}

/// \p member with keyOf() for a member of the record itself.
template <typename T>
Key keyOf(const QByteArray &name, const T &fallback, const T &other, T ChartSettings::*member)
{
    return keyOf<T>(name, fallback, other,
                    [member](ChartSettings &settings) -> T & { return settings.*member; });
}

template <typename T>
Key styleKey(const QByteArray &name, const T &fallback, const T &other, T SeriesSettings::*member)
{
    return keyOf<T>(name, fallback, other, [member](ChartSettings &settings) -> T & {
        return settings.seriesSettings.*member;
    });
}

Key seriesColorKey(int index, const QColor &fallback)
{
    return keyOf<QColor>("defSeriesColors" + QByteArray::number(index), fallback,
                         QColor(10 + index, 20, 30), [index](ChartSettings &settings) -> QColor & {
                             return settings.seriesSettings.colors[index];
                         });
}

Key splitterKey(int panes)
{
    return {"splitterState" + QByteArray::number(panes),
            QMetaType::QByteArray,
            QVariant(),
            QByteArray("layout ") + QByteArray::number(panes),
            [panes](ChartSettings &settings) {
                return settings.splitterState.contains(panes)
                           ? QVariant(settings.splitterState.value(panes))
                           : QVariant();
            },
            [panes](ChartSettings &settings, const QVariant &value) {
                settings.splitterState[panes] = value.toByteArray();
            }};
}

QVector<Key> makeKeys()
{
    const QColor rose(1, 2, 3);
    QVector<Key> keys{
        keyOf("backgroundColor", QColor(0, 0, 0), rose, &ChartSettings::backgroundColor),
        keyOf("gridColor", QColor(255, 255, 255), rose, &ChartSettings::gridColor),
        keyOf("cursorLineColor", QColor(255, 170, 0), rose, &ChartSettings::cursorLineColor),
        keyOf("visibleInterval", 600.0, 7.25, &ChartSettings::visibleInterval),
        keyOf("dynamicGrid", false, true, &ChartSettings::dynamicGrid),
    };
    const QRgb colors[] = {0xff0000, 0x00ff00, 0x0000ff, 0x00ffff, 0xff00ff,
                           0x800000, 0x008000, 0x000080, 0x008080, 0x800080};
    for (int i = 0; i < 10; ++i) {
        keys.append(seriesColorKey(i, QColor(colors[i])));
    }
    keys += QVector<Key>{
        styleKey("defLineWidth", 1, 4, &SeriesSettings::lineWidth),
        styleKey("defPointsVisible", false, true, &SeriesSettings::pointsVisible),
        styleKey("defPointSize", 5, 9, &SeriesSettings::pointsSize),
        keyOf("autoRemoveEmptyChart", true, false, &ChartSettings::autoRemoveEmptyChart),
        keyOf("individualScale", true, false, &ChartSettings::individualScale),
        keyOf("autoScaleX", false, true, &ChartSettings::autoScaleX),
        keyOf("autoScaleY", false, true, &ChartSettings::autoScaleY),
        keyOf("legendState", QByteArray(), QByteArray("widths\0\n=", 9),
              &ChartSettings::legendState),
    };
    for (int panes = 1; panes <= 10; ++panes) {
        keys.append(splitterKey(panes));
    }
    return keys;
}

/// All 33. QSettings sorts them by name in its file, whatever the order of writing.
const QVector<Key> &keys()
{
    static const QVector<Key> all = makeKeys();
    return all;
}

QString textOf(const QVariant &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

/// The record as one line for each key.
QStringList linesOf(ChartSettings &settings)
{
    QStringList lines;
    for (const Key &key : keys()) {
        lines.append(key.name + ": " + textOf(key.value(settings)));
    }
    return lines;
}

ChartSettings newSettings()
{
    ChartSettings settings;
    settings.organization = "QUARVChart5 tests";
    settings.application = "tests";
    return settings;
}

/// A record with no member as in an empty store.
ChartSettings otherSettings()
{
    ChartSettings settings = newSettings();
    for (const Key &key : keys()) {
        key.assign(settings, key.other);
    }
    return settings;
}

/// What a new record reads from the store.
ChartSettings loaded(const QString &group = "panel")
{
    ChartSettings settings = newSettings();
    settings.loadSettings(group);
    return settings;
}

QStringList loadedLines(const QString &group = "panel")
{
    ChartSettings settings = loaded(group);
    return linesOf(settings);
}

/// The lines of a record with the defaults but for one key.
QStringList defaultLinesBut(const QByteArray &name, const QVariant &value)
{
    QStringList lines;
    for (const Key &key : keys()) {
        lines.append(key.name + ": " + textOf(key.name == name ? value : key.fallback));
    }
    return lines;
}

QStringList defaultLines()
{
    return defaultLinesBut(QByteArray(), QVariant());
}

QString inPanel(const QByteArray &name)
{
    return "panel/" + QString(name);
}

} // namespace

class TestChartSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void knowsItsDefaultColors();
    void beforeLoadingHasWhatItIsMadeWith();
    void emptyStoreGivesDefaults();
    void hasThirtyThreeKeys();
    void missingKeyGivesItsDefault_data();
    void missingKeyGivesItsDefault();
    void readsEachKeyIntoItsMember_data();
    void readsEachKeyIntoItsMember();
    void writesEachMemberUnderItsKey_data();
    void writesEachMemberUnderItsKey();
    void readsBackFromTheFileWhatItWrote();
    void writesDefaultsToo();
    void missingKeyOverwritesTheMember();
    void convertsWhatIsStored_data();
    void convertsWhatIsStored();
    void convertsStoredColors_data();
    void convertsStoredColors();
    void loadedColorLeavesDefaultColorsAlone();
    void keepsGroupsApart_data();
    void keepsGroupsApart();
    void emptyGroupIsChart();
    void keepsValuesThatMakeNoSense_data();
    void keepsValuesThatMakeNoSense();
    void emptyLegendStateLeavesTheStoredOne();
    void savingTwoPanesLeavesTheLayoutOfThree();
    void writesAnEmptyLayoutThatIsThere();
    void neitherReadsNorWritesOtherNumbersOfPanes_data();
    void neitherReadsNorWritesOtherNumbersOfPanes();
    void loadingKeepsLayoutsThatAreNotStored();
    void savingRemovesNothing();
    void keepsApplicationsApart();
    void losesValuesSilentlyIfItCannotWrite_data();
    void losesValuesSilentlyIfItCannotWrite();

private:
    static void addKeyRows();

    std::unique_ptr<SettingsFolder> m_folder;
};

void TestChartSettings::init()
{
    m_folder = std::make_unique<SettingsFolder>();
}

void TestChartSettings::cleanup()
{
    m_folder.reset();
}

void TestChartSettings::addKeyRows()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < keys().size(); ++i) {
        QTest::newRow(keys().at(i).name.constData()) << i;
    }
}

void TestChartSettings::knowsItsDefaultColors()
{
    QCOMPARE(ChartSettings::defaultBackgroundColor(), QColor(0, 0, 0));
    QCOMPARE(ChartSettings::defaultGridColor(), QColor(255, 255, 255));
    QCOMPARE(ChartSettings::defaultCursorColor(), QColor(255, 170, 0));
}

void TestChartSettings::beforeLoadingHasWhatItIsMadeWith()
{
    const ChartSettings settings;

    QVERIFY(!settings.backgroundColor.isValid());
    QVERIFY(!settings.gridColor.isValid());
    QVERIFY(!settings.cursorLineColor.isValid());
    QCOMPARE(settings.visibleInterval, 600.0);
    QCOMPARE(settings.dynamicGrid, false);
    QCOMPARE(settings.autoRemoveEmptyChart, true);
    QCOMPARE(settings.individualScale, true);
    QCOMPARE(settings.autoScaleX, false);
    QCOMPARE(settings.autoScaleY, false);
    QVERIFY(settings.legendState.isEmpty());
    QVERIFY(settings.splitterState.isEmpty());
}

void TestChartSettings::emptyStoreGivesDefaults()
{
    const ChartSettings settings = loaded();

    QCOMPARE(settings.backgroundColor, QColor(Qt::black));
    QCOMPARE(settings.gridColor, QColor(Qt::white));
    QCOMPARE(settings.cursorLineColor, QColor(255, 170, 0));
    QCOMPARE(settings.visibleInterval, 600.0);
    QCOMPARE(settings.dynamicGrid, false);
    for (int i = 0; i < SeriesColorCount; ++i) {
        QCOMPARE(settings.seriesSettings.colors[i], defSeriesColors[i]);
    }
    QCOMPARE(settings.seriesSettings.lineWidth, 1);
    QCOMPARE(settings.seriesSettings.pointsVisible, false);
    QCOMPARE(settings.seriesSettings.pointsSize, 5);
    QCOMPARE(settings.autoRemoveEmptyChart, true);
    QCOMPARE(settings.individualScale, true);
    QCOMPARE(settings.autoScaleX, false);
    QCOMPARE(settings.autoScaleY, false);
    QVERIFY(settings.legendState.isEmpty());
    QVERIFY(settings.splitterState.isEmpty());
    QCOMPARE(settings.organization, QString("QUARVChart5 tests"));
    QCOMPARE(settings.application, QString("tests"));
    QCOMPARE(loadedLines(), defaultLines());
}

void TestChartSettings::hasThirtyThreeKeys()
{
    otherSettings().saveSettings("panel");

    QCOMPARE(keys().size(), 33);
    QCOMPARE(SettingsFolder::store().allKeys().size(), 33);
}

void TestChartSettings::missingKeyGivesItsDefault_data()
{
    addKeyRows();
}

void TestChartSettings::missingKeyGivesItsDefault()
{
    QFETCH(const int, index);
    const Key &key = keys().at(index);
    ChartSettings written = otherSettings();
    written.saveSettings("panel");
    SettingsFolder::store().remove(inPanel(key.name));

    QStringList expected = linesOf(written);
    expected[index] = key.name + ": " + textOf(key.fallback);
    QCOMPARE(loadedLines(), expected);
}

void TestChartSettings::readsEachKeyIntoItsMember_data()
{
    addKeyRows();
}

void TestChartSettings::readsEachKeyIntoItsMember()
{
    QFETCH(const int, index);
    const Key &key = keys().at(index);
    SettingsFolder::store().setValue(inPanel(key.name), key.other);

    QCOMPARE(loadedLines(), defaultLinesBut(key.name, key.other));
}

void TestChartSettings::writesEachMemberUnderItsKey_data()
{
    addKeyRows();
}

void TestChartSettings::writesEachMemberUnderItsKey()
{
    QFETCH(const int, index);
    const Key &key = keys().at(index);
    ChartSettings settings = loaded();
    key.assign(settings, key.other);

    settings.saveSettings("panel");

    const QVariant stored = SettingsFolder::store().value(inPanel(key.name));
    QCOMPARE(stored.userType(), key.type);
    QCOMPARE(stored, key.other);
    QCOMPARE(loadedLines(), defaultLinesBut(key.name, key.other));
}

void TestChartSettings::readsBackFromTheFileWhatItWrote()
{
    ChartSettings written = otherSettings();
    written.visibleInterval = 1.0 / 3.0;
    written.saveSettings("panel");
    QVERIFY(m_folder->moveStore());

    QCOMPARE(loadedLines(), linesOf(written));
    QCOMPARE(loaded().visibleInterval, 1.0 / 3.0);
}

void TestChartSettings::writesDefaultsToo()
{
    loaded().saveSettings("panel");

    // All but the legend's state and the ten layouts.
    QCOMPARE(SettingsFolder::store().allKeys().size(), 22);
    QCOMPARE(loadedLines(), defaultLines());
}

void TestChartSettings::missingKeyOverwritesTheMember()
{
    ChartSettings settings = otherSettings();
    settings.loadSettings("panel");

    settings.splitterState.clear(); // which alone stays, see below
    QCOMPARE(linesOf(settings), defaultLines());
}

void TestChartSettings::convertsWhatIsStored_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QVariant>("expected");

    const QVariant list = QVariant(QStringList{"a", "b"});
    const auto add = [](const char *name, const char *what, const QVariant &stored,
                        const QVariant &expected) {
        QTest::addRow("%s: %s", name, what) << QByteArray(name) << stored << expected;
    };
    add("visibleInterval", "text of a number", "2.5", 2.5);
    add("visibleInterval", "whole number", 30, 30.0);
    add("visibleInterval", "other text", "long", 0.0);
    add("visibleInterval", "list", list, 0.0);
    for (const char *name : {"defLineWidth", "defPointSize"}) {
        add(name, "text of a number", "7", 7);
        add(name, "other text", "wide", 0);
        add(name, "list", list, 0);
    }
    for (const char *name : {"dynamicGrid", "defPointsVisible", "autoRemoveEmptyChart",
                             "individualScale", "autoScaleX", "autoScaleY"}) {
        add(name, "text true", "true", true);
        add(name, "text false", "false", false);
        add(name, "one", 1, true);
        add(name, "text of zero", "0", false);
        add(name, "empty text", "", false);
        add(name, "list", list, false);
        add(name, "point", QPoint(1, 1), false);
    }
    for (const char *name : {"legendState", "splitterState1", "splitterState10"}) {
        add(name, "text", "abc", QByteArray("abc"));
        add(name, "list", list, QByteArray());
    }
}

void TestChartSettings::convertsWhatIsStored()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QVariant, stored);
    QFETCH(const QVariant, expected);
    SettingsFolder::store().setValue(inPanel(name), stored);

    QCOMPARE(loadedLines(), defaultLinesBut(name, expected));
}

void TestChartSettings::convertsStoredColors_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QColor>("expected");

    for (const char *name : {"backgroundColor", "gridColor", "cursorLineColor", "defSeriesColors0",
                             "defSeriesColors9"}) {
        const auto add = [name](const char *what, const QVariant &stored, const QColor &expected) {
            QTest::addRow("%s: %s", name, what) << QByteArray(name) << stored << expected;
        };
        add("colour", QColor(1, 2, 3, 4), QColor(1, 2, 3, 4));
        add("invalid colour", QColor(), QColor());
        add("name", "red", QColor(255, 0, 0));
        add("value", "#102030", QColor(16, 32, 48));
        add("no colour", "no colour", QColor());
        add("empty text", "", QColor());
        add("number", 5, QColor());
        add("list", QStringList{"red", "blue"}, QColor());
    }
}

void TestChartSettings::convertsStoredColors()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QVariant, stored);
    QFETCH(const QColor, expected);
    SettingsFolder::store().setValue(inPanel(name), stored);

    QCOMPARE(loadedLines(), defaultLinesBut(name, expected));
}

void TestChartSettings::loadedColorLeavesDefaultColorsAlone()
{
    SettingsFolder::store().setValue("panel/defSeriesColors3", QColor(1, 2, 3));
    QVector<QColor> expected(std::begin(defSeriesColors), std::end(defSeriesColors));
    expected[3] = QColor(1, 2, 3);

    const ChartSettings settings = loaded();

    const SeriesSettings &style = settings.seriesSettings;
    QCOMPARE(QVector<QColor>(std::begin(style.colors), std::end(style.colors)), expected);
    QCOMPARE(defSeriesColors[3], QColor(0, 255, 255));
    QCOMPARE(SeriesSettings().colors[3], QColor(0, 255, 255));
}

void TestChartSettings::keepsGroupsApart_data()
{
    QTest::addColumn<QString>("group");

    QTest::newRow("plain") << "panel";
    QTest::newRow("place for a text") << "%1";
    QTest::newRow("place for a text within") << "a%2b";
    QTest::newRow("both places") << "%2%1";
    QTest::newRow("per cent") << "100 %";
    QTest::newRow("groups in groups") << "left/upper/chart";
    QTest::newRow("not in ASCII") << QString::fromUtf8("größe");
}

void TestChartSettings::keepsGroupsApart()
{
    QFETCH(const QString, group);
    ChartSettings written = otherSettings();
    written.saveSettings(group);

    QCOMPARE(SettingsFolder::store().value(group + "/visibleInterval"), QVariant(7.25));
    QCOMPARE(SettingsFolder::store().value(group + "/defSeriesColors9"),
             QVariant(QColor(19, 20, 30)));
    QCOMPARE(SettingsFolder::store().value(group + "/splitterState10"),
             QVariant(QByteArray("layout 10")));
    QVERIFY(m_folder->moveStore());
    QCOMPARE(loadedLines(group), linesOf(written));
    QCOMPARE(loadedLines("another"), defaultLines());
}

void TestChartSettings::emptyGroupIsChart()
{
    ChartSettings written = otherSettings();
    written.saveSettings(QString());

    QCOMPARE(SettingsFolder::store().childGroups(), QStringList("chart"));
    QCOMPARE(SettingsFolder::store().value("chart/visibleInterval"), QVariant(7.25));
    QCOMPARE(loadedLines(QString()), linesOf(written));
    QCOMPARE(loadedLines(""), linesOf(written));
    QCOMPARE(loadedLines("chart"), linesOf(written));
}

void TestChartSettings::keepsValuesThatMakeNoSense_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("negative line width") << QByteArray("defLineWidth") << QVariant(-3);
    QTest::newRow("no line width") << QByteArray("defLineWidth") << QVariant(0);
    QTest::newRow("negative point size") << QByteArray("defPointSize") << QVariant(-1);
    QTest::newRow("no interval") << QByteArray("visibleInterval") << QVariant(0.0);
    QTest::newRow("negative interval") << QByteArray("visibleInterval") << QVariant(-600.0);
    QTest::newRow("endless interval") << QByteArray("visibleInterval") << QVariant(qInf());
    QTest::newRow("no layout at all") << QByteArray("splitterState2") << QVariant(QByteArray("x"));
}

void TestChartSettings::keepsValuesThatMakeNoSense()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QVariant, value);
    SettingsFolder::store().setValue(inPanel(name), value);

    ChartSettings settings = loaded();
    QCOMPARE(linesOf(settings), defaultLinesBut(name, value));

    settings.saveSettings("second");
    QVERIFY(m_folder->moveStore());
    QCOMPARE(loadedLines("second"), defaultLinesBut(name, value));
}

void TestChartSettings::emptyLegendStateLeavesTheStoredOne()
{
    ChartSettings settings = loaded();
    settings.legendState = "widths";
    settings.saveSettings("panel");

    settings.legendState.clear();
    settings.saveSettings("panel");

    QCOMPARE(loaded().legendState, QByteArray("widths"));
}

void TestChartSettings::savingTwoPanesLeavesTheLayoutOfThree()
{
    ChartSettings three = loaded();
    three.splitterState = {{3, "three"}};
    three.saveSettings("panel");
    QCOMPARE(SettingsFolder::store().value("panel/splitterState3"), QVariant(QByteArray("three")));

    ChartSettings two = newSettings();
    two.splitterState = {{2, "two"}};
    two.saveSettings("panel");

    const QMap<int, QByteArray> expected{{2, "two"}, {3, "three"}};
    QCOMPARE(loaded().splitterState, expected);
}

void TestChartSettings::writesAnEmptyLayoutThatIsThere()
{
    ChartSettings settings = loaded();
    settings.splitterState = {{4, QByteArray()}};
    settings.saveSettings("panel");

    QVERIFY(SettingsFolder::store().contains("panel/splitterState4"));
    QCOMPARE(loaded().splitterState.keys(), QList<int>{4});
}

void TestChartSettings::neitherReadsNorWritesOtherNumbersOfPanes_data()
{
    QTest::addColumn<int>("panes");

    QTest::newRow("none") << 0;
    QTest::newRow("eleven") << 11;
    QTest::newRow("less than none") << -1;
    QTest::newRow("hundred") << 100;
}

void TestChartSettings::neitherReadsNorWritesOtherNumbersOfPanes()
{
    QFETCH(const int, panes);
    ChartSettings settings = loaded();
    settings.splitterState = {{panes, "kept here"}};
    settings.saveSettings("panel");
    QCOMPARE(SettingsFolder::store().allKeys().size(), 22);

    SettingsFolder::store().setValue(QString("panel/splitterState%1").arg(panes),
                                     QByteArray("stored"));
    QVERIFY(loaded().splitterState.isEmpty());

    settings.loadSettings("panel");
    const QMap<int, QByteArray> expected{{panes, "kept here"}};
    QCOMPARE(settings.splitterState, expected);
}

void TestChartSettings::loadingKeepsLayoutsThatAreNotStored()
{
    SettingsFolder::store().setValue("panel/splitterState2", QByteArray("stored"));
    ChartSettings settings = newSettings();
    settings.splitterState = {{2, "mine"}, {5, "mine"}};

    settings.loadSettings("panel");

    const QMap<int, QByteArray> expected{{2, "stored"}, {5, "mine"}};
    QCOMPARE(settings.splitterState, expected);
}

void TestChartSettings::savingRemovesNothing()
{
    otherSettings().saveSettings("panel");
    SettingsFolder::store().setValue("panel/foreign", 1);
    SettingsFolder::store().setValue("splitterState3", 2);
    SettingsFolder::store().setValue("another/gridColor", 3);
    const QStringList keysBefore = SettingsFolder::store().allKeys();

    newSettings().saveSettings("panel");

    QCOMPARE(SettingsFolder::store().allKeys(), keysBefore);
    QCOMPARE(SettingsFolder::store().value("panel/foreign"), QVariant(1));
    QCOMPARE(SettingsFolder::store().value("splitterState3"), QVariant(2));
    QCOMPARE(SettingsFolder::store().value("another/gridColor"), QVariant(3));
}

void TestChartSettings::keepsApplicationsApart()
{
    otherSettings().saveSettings("panel");

    ChartSettings otherApplication = newSettings();
    otherApplication.application = "others";
    otherApplication.loadSettings("panel");
    QCOMPARE(linesOf(otherApplication), defaultLines());

    ChartSettings otherOrganization = newSettings();
    otherOrganization.organization = "QUARVChart5 others";
    otherOrganization.loadSettings("panel");
    QCOMPARE(linesOf(otherOrganization), defaultLines());
}

void TestChartSettings::losesValuesSilentlyIfItCannotWrite_data()
{
    QTest::addColumn<bool>("folderIsAFile");

    QTest::newRow("a folder in place of the file") << false;
    QTest::newRow("a file in place of the folder") << true;
}

// Neither case depends on who runs the test; a folder without the right to write would.
void TestChartSettings::losesValuesSilentlyIfItCannotWrite()
{
    QFETCH(const bool, folderIsAFile);
    const QString fileName = SettingsFolder::fileName();
    if (folderIsAFile) {
        QFile file(QFileInfo(fileName).path());
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(QDir().mkpath(fileName));
    }

    ChartSettings settings = otherSettings();
    settings.saveSettings("panel");

    QCOMPARE(loadedLines(), defaultLines());
    ChartSettings expected = otherSettings();
    QCOMPARE(linesOf(settings), linesOf(expected));
}

QTEST_MAIN(TestChartSettings)
#include "tst_chartsettings.moc"
