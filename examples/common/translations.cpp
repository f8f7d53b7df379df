#include "translations.h"

#include "quarvchart_translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

// The linker leaves out of a static library what nobody names.
static void registerTranslations()
{
#ifdef HAS_TRANSLATIONS
    Q_INIT_RESOURCE(examples_translations);
#endif
}

/// Installs \p name for \p language out of \p folder; false if there is none.
static bool installTranslation(const QLocale &language, const QString &name, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(language, name, QStringLiteral("_"), folder)) {
        return false;
    }
    translator->setParent(QCoreApplication::instance());
    return QCoreApplication::installTranslator(translator.release());
}

void installTranslations(const QLocale &locale)
{
    registerTranslations();
    for (const QString &name : locale.uiLanguages()) {
        const QLocale language(name);
        if (language.language() == QLocale::English) {
            return; // The sources are in it; a language that is wanted less must not replace it.
        }
        if (installTranslation(language, QStringLiteral("examples"),
                               QStringLiteral(":/examples/translations"))) {
            installTranslation(language, QStringLiteral("qtbase"),
                               QLibraryInfo::location(QLibraryInfo::TranslationsPath));
            installChartTranslation(language);
            return;
        }
    }
}
