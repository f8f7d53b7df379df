#include "quarvchart_translation.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTranslator>

#include <memory>

// The linker leaves out of a static library what nobody names.
static void registerTranslations()
{
#if defined(QUARVCHART_STATIC_DEFINE) && defined(HAS_TRANSLATIONS)
    Q_INIT_RESOURCE(chart_translations);
#endif
}

bool installChartTranslation(const QLocale &locale)
{
    static QPointer<QTranslator> installed;

    registerTranslations();
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, QStringLiteral("quarvchart5"), QStringLiteral("_"),
                          QStringLiteral(":/chart/translations"))) {
        return false;
    }
    delete installed; // A translator that dies takes itself off.
    installed = translator.release();
    installed->setParent(QCoreApplication::instance());
    return QCoreApplication::installTranslator(installed);
}
