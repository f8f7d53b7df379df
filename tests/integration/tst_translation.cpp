#include "quarvchart_translation.h"

#include "editors/seriespropertiesdialog.h"
#include "support/openmodel.h"
#include "support/plainseries.h"

#include <QAction>
#include <QFile>
#include <QtTest>

class TestTranslation : public QObject
{
    Q_OBJECT

private slots:
    void speaksEnglishAtFirst();
    void speaksLanguageOfLocale_data();
    void speaksLanguageOfLocale();
    void keepsLanguageWithoutTranslation();
    void replacesEarlierLanguage();
};

void TestTranslation::speaksEnglishAtFirst()
{
    const OpenModel model;
    QCOMPARE(model.m_zoomInAction->text(), QString("Zoom in"));
}

void TestTranslation::speaksLanguageOfLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("dialog");

    QTest::newRow("German") << QLocale("de_DE") << "Vergrößern"
                            << "Linie"
                            << "Eigenschaften der Kurve";
    QTest::newRow("German of Austria") << QLocale("de_AT") << "Vergrößern"
                                       << "Linie"
                                       << "Eigenschaften der Kurve";
    QTest::newRow("Russian") << QLocale("ru_RU") << "Увеличить"
                             << "Линия"
                             << "Свойства ряда";
}

void TestTranslation::speaksLanguageOfLocale()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, action);
    QFETCH(QString, column);
    QFETCH(QString, dialog);

    QVERIFY(installChartTranslation(locale));
    const OpenModel model;
    PlainSeries series;
    QCOMPARE(model.m_zoomInAction->text(), action);
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), column);
    QCOMPARE(SeriesPropertiesDialog(&series).windowTitle(), dialog);
}

void TestTranslation::keepsLanguageWithoutTranslation()
{
    QVERIFY(installChartTranslation(QLocale("de_DE")));
    QVERIFY(!installChartTranslation(QLocale("cy_GB")));
    const OpenModel model;
    QCOMPARE(model.m_pauseAction->text(), QString("Anhalten"));
}

void TestTranslation::replacesEarlierLanguage()
{
    QVERIFY(installChartTranslation(QLocale("de_DE")));
    QVERIFY(installChartTranslation(QLocale("ru_RU")));
    const OpenModel model;
    QCOMPARE(model.m_pauseAction->text(), QString("Пауза"));
}

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
