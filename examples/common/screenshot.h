#pragma once

#include <QString>

class QWidget;

/// Lays out a window that is not shown: that gives the panes the size for which their curves are
/// computed. A window for a picture stays hidden, so that no window manager changes its size.
void layOutHidden(QWidget &window);

/// Writes a picture of \p window as PNG. Returns false if that fails; \p problem then says why.
bool writeScreenshot(QWidget &window, const QString &fileName, QString *problem);
