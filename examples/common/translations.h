#pragma once

class QLocale;

/**
 * Shows the texts of the programs, of the library and of Qt in the first language of \p locale that
 * the programs are translated into. All three keep to it: a window in two languages is worse than
 * one in English, which they stay in without a translation.
 *
 * To be called once, when the application object lives and before any text is taken.
 */
void installTranslations(const QLocale &locale);
