#pragma once

#include <QSize>
#include <QString>

#include <optional>

/// The exit code of a program that has not done what it was asked for.
constexpr int ExitFailure = 1;

/// Chooses the platform that draws into memory where there is no display, for want of which Qt
/// would end the program. Returns whether it did. Must come before QApplication.
bool drawIntoMemoryWithoutDisplay();

/// Reads the value of --size, "1200x800". Nothing if it is no size for a window; \p problem then
/// says so.
std::optional<QSize> parseSize(const QString &text, QString *problem);

/// Says on standard error what is wrong, behind the program's name, and returns ExitFailure.
int failWith(const QString &message);
