#include "common/translations.h"

#include "common/chartsettingsdialog.h"
#include "common/samplewriter.h"
#include "csvreader.h"
#include "proccounters.h"
#include "quantity.h"
#include "recorder.h"
#include "support/modelsetup.h"
#include "support/programrun.h"
#include "support/titledseries.h"
#include "viewerwindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QBuffer>
#include <QDialogButtonBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLibraryInfo>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

bool hasTranslationOfQt(const QString &language)
{
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    return QFile::exists(QStringLiteral("%1/qtbase_%2.qm").arg(folder, language));
}

/// A text of the programs, of the library and of Qt.
QStringList textsOfAll()
{
    OpenModel model;
    const ChartSettingsDialog dialog(model, ChartSettings());
    const auto *buttons = dialog.findChild<QDialogButtonBox *>();
    return {dialog.windowTitle(), model.m_zoomInAction->text(),
            buttons->button(QDialogButtonBox::Cancel)->text().remove('&')};
}

QStringList textsOf(const QList<QAction *> &actions)
{
    QStringList texts;
    std::transform(actions.cbegin(), actions.cend(), std::back_inserter(texts),
                   [](const QAction *action) { return action->text(); });
    return texts;
}

template <typename Control>
QStringList textsOf(const QWidget &widget)
{
    QStringList texts;
    for (const auto *control : widget.findChildren<Control *>()) {
        texts.append(control->text());
    }
    return texts;
}

/// The first mnemonic that two of the texts have; nothing if there is none.
QString doubleMnemonic(const QStringList &texts)
{
    QList<QKeySequence> seen;
    for (const QString &text : texts) {
        const QKeySequence mnemonic = QKeySequence::mnemonic(text);
        if (!mnemonic.isEmpty() && seen.contains(mnemonic)) {
            return text;
        }
        seen.append(mnemonic);
    }
    return QString();
}

CsvResult read(QIODevice &device)
{
    const std::atomic<bool> cancel{false};
    device.open(QIODevice::ReadOnly);
    return CsvReader().read(device, cancel);
}

/// A machine that counts everything, on two cores.
ProcReading fullReading()
{
    ProcReading reading;
    reading.cpu = CpuTime();
    reading.cores = {{0, CpuTime()}, {1, CpuTime()}};
    reading.memoryUsed = 1.0;
    reading.network = Traffic();
    reading.disk = Traffic();
    reading.load = 1.0;
    return reading;
}

void addLocales()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("English") << QLocale("en_GB");
    QTest::newRow("German") << QLocale("de_DE");
    QTest::newRow("Russian") << QLocale("ru_RU");
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void speaksOneLanguage_data();
    void speaksOneLanguage();
    void givesMenusMnemonicsOfTheirOwn_data();
    void givesMenusMnemonicsOfTheirOwn();
    void givesSettingsMnemonicsOfTheirOwn_data();
    void givesSettingsMnemonicsOfTheirOwn();
    void readsItsRecordings_data();
    void readsItsRecordings();
    void readsItsTables_data();
    void readsItsTables();
    void programsSpeakLanguageOfUser_data();
    void programsSpeakLanguageOfUser();
};

/// The next test is to start in English.
void TestTranslations::cleanup()
{
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>());
}

void TestTranslations::speaksOneLanguage_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("languageOfQt");
    QTest::addColumn<QStringList>("expected");

    const QStringList english{"Settings", "Zoom in", "Cancel"};
    const QStringList german{"Einstellungen", "Vergrößern", "Abbrechen"};
    const QStringList russian{"Настройки", "Увеличить", "Отмена"};

    QTest::newRow("none") << QLocale::c() << "" << english;
    QTest::newRow("English") << QLocale("en_US") << "" << english;
    QTest::newRow("German") << QLocale("de_DE") << "de" << german;
    QTest::newRow("German of Austria") << QLocale("de_AT") << "de" << german;
    QTest::newRow("Russian") << QLocale("ru_RU") << "ru" << russian;
    QTest::newRow("French, which Qt alone speaks") << QLocale("fr_FR") << "fr" << english;
}

void TestTranslations::speaksOneLanguage()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, languageOfQt);

    if (!languageOfQt.isEmpty() && !hasTranslationOfQt(languageOfQt)) {
        QSKIP("Qt's own translations are not installed");
    }
    installTranslations(locale);
    QTEST(textsOfAll(), "expected");
}

void TestTranslations::givesMenusMnemonicsOfTheirOwn_data()
{
    addLocales();
}

void TestTranslations::givesMenusMnemonicsOfTheirOwn()
{
    QFETCH(QLocale, locale);

    installTranslations(locale);
    const ViewerWindow window(ViewerWindow::AutomaticPanes);
    const QList<QAction *> titles = window.menuBar()->actions();
    QCOMPARE(doubleMnemonic(textsOf(titles)), QString());
    for (const QAction *title : titles) {
        QCOMPARE(doubleMnemonic(textsOf(title->menu()->actions())), QString());
    }
}

void TestTranslations::givesSettingsMnemonicsOfTheirOwn_data()
{
    addLocales();
}

void TestTranslations::givesSettingsMnemonicsOfTheirOwn()
{
    QFETCH(QLocale, locale);

    installTranslations(locale);
    OpenModel model;
    const ChartSettingsDialog dialog(model, ChartSettings());
    const QStringList texts = textsOf<QLabel>(dialog) + textsOf<QAbstractButton>(dialog);
    QCOMPARE(doubleMnemonic(texts), QString());
}

void TestTranslations::readsItsRecordings_data()
{
    addLocales();
}

void TestTranslations::readsItsRecordings()
{
    QFETCH(QLocale, locale);

    installTranslations(locale);
    std::vector<Recorder::Column> columns;
    for (const Quantity &quantity : quantitiesOf(fullReading(), 10)) {
        columns.push_back({quantity.name, quantity.decimals});
    }
    const QTemporaryDir folder;
    QFile file(folder.filePath("recording.csv"));
    Recorder recorder;
    QVERIFY(recorder.open(file.fileName(), columns));
    QVERIFY(recorder.addRow(0.0, std::vector<double>(columns.size(), 0.5)));

    const CsvResult result = read(file);
    QVERIFY2(result.table, qPrintable(result.error.message));
    QCOMPARE(result.table->columns.size(), columns.size());
    for (size_t i = 0; i < columns.size(); ++i) {
        QCOMPARE(result.table->columns[i].name, columns[i].name);
    }
}

void TestTranslations::readsItsTables_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("dateTime");
    QTest::addColumn<QString>("title");

    QTest::newRow("German") << QLocale("de_DE") << false << "X";
    QTest::newRow("German, dates") << QLocale("de_DE") << true << "Zeit";
    QTest::newRow("Russian") << QLocale("ru_RU") << false << "X";
    QTest::newRow("Russian, dates") << QLocale("ru_RU") << true << "Время";
}

void TestTranslations::readsItsTables()
{
    QFETCH(QLocale, locale);
    QFETCH(bool, dateTime);
    QFETCH(QString, title);

    installTranslations(locale);
    OpenModel model;
    model.setUseDateTimeScaleX(dateTime);
    addSeries<TitledSeries>(model, "a", {0.5, 1.5});
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(writeVisibleSamples(model, buffer));
    buffer.close();

    const CsvResult result = read(buffer);
    QVERIFY2(result.table, qPrintable(result.error.message));
    QCOMPARE(result.table->nameX, title);
    QCOMPARE(result.table->dateTime, dateTime);
    QCOMPARE(result.table->columns.front().samples.at(1)->y, 1.5);
}

void TestTranslations::programsSpeakLanguageOfUser_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("languages");
    QTest::addColumn<QString>("expected");

    QTest::newRow("csvviewer, German") << CSVVIEWER << "de_DE.UTF-8"
                                       << ""
                                       << "Jede Spalte in einem eigenen Diagramm zeigen.";
    QTest::newRow("monitor, German") << MONITOR << "de_DE.UTF-8"
                                     << ""
                                     << "Jede Kurve in einem eigenen Diagramm zeigen.";
    QTest::newRow("German for want of Welsh") << MONITOR << "cy_GB.UTF-8"
                                              << "cy_GB:de"
                                              << "Jede Kurve in einem eigenen Diagramm zeigen.";
    QTest::newRow("English rather than German") << MONITOR << "en_US.UTF-8"
                                                << "en_US:de"
                                                << "Show each curve in a pane of its own.";
    QTest::newRow("English for want of Welsh") << CSVVIEWER << "cy_GB.UTF-8"
                                               << ""
                                               << "Show each column in a pane of its own.";
}

void TestTranslations::programsSpeakLanguageOfUser()
{
    QFETCH(QString, program);
    QFETCH(QString, locale);
    QFETCH(QString, languages);
    QFETCH(QString, expected);

    QProcessEnvironment environment = withoutDisplay();
    environment.insert("LC_ALL", locale);
    environment.insert("LANGUAGE", languages);
    const Outcome outcome = runProgram(program, {"--help"}, environment);

    QCOMPARE(outcome.exitCode, 0);
    QVERIFY2(outcome.output.contains(expected), qPrintable(outcome.output));
}

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
