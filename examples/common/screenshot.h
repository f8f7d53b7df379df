#pragma once

#include <QSize>
#include <QString>

class QWidget;

/// The size of a window at its first start, and for a picture.
constexpr QSize DefaultWindowSize(1200, 1000);

/// Shows a window nowhere: all is as with a visible one, but no window manager changes its size.
void showOffScreen(QWidget &window);

/// Writes a picture of \p window as PNG. Returns false if that fails; \p problem then says why.
bool writeScreenshot(QWidget &window, const QString &fileName, QString *problem);
