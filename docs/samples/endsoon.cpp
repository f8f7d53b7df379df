// Linked into the samples so that a test can run them, while their text shows what an application
// needs and no more: with SAMPLE_ENDS_AFTER set to milliseconds, the event loop ends by itself.
#include <QCoreApplication>
#include <QTimer>

static void endSoon()
{
    const int milliseconds = qEnvironmentVariableIntValue("SAMPLE_ENDS_AFTER");
    if (milliseconds > 0) {
        QTimer::singleShot(milliseconds, qApp, SLOT(quit()));
    }
}
Q_COREAPP_STARTUP_FUNCTION(endSoon)
