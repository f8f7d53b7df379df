#pragma once

#include "quarvchart_export.h"

#include <QLocale>

/**
 * Shows the library's texts in the language of \p locale, if there is a translation into it: German
 * and Russian come with the library.
 *
 * Returns whether there is one; without, texts stay as they are, which is English at first. A later
 * call replaces what an earlier one has installed. To be called when the application object lives
 * and before models and widgets are made, since those take their texts once. GUI thread.
 */
QUARVCHART_EXPORT bool installChartTranslation(const QLocale &locale = QLocale());
