#include "commandline.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTextStream>

namespace {

constexpr int SmallestSide = 200; // pixels of a window in which something can be seen
constexpr int LargestSide = 8192;

const char PlatformVariable[] = "QT_QPA_PLATFORM";
const char IntoMemory[] = "offscreen";

QtMessageHandler s_formerHandler = nullptr;

/// Leaves out that this platform passes no hints about the size of a window to a window manager:
/// there is none.
void passMessageOn(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("This plugin does not support "))) {
        s_formerHandler(type, context, message);
    }
}

std::optional<int> parseSide(const QString &text)
{
    bool isNumber = false;
    const int pixels = text.toInt(&isNumber);
    if (!isNumber || pixels < SmallestSide || pixels > LargestSide) {
        return std::nullopt;
    }
    return pixels;
}

} // namespace

bool drawIntoMemoryWithoutDisplay()
{
    const bool withoutDisplay = qEnvironmentVariableIsEmpty("DISPLAY") &&
                                qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
                                qEnvironmentVariableIsEmpty(PlatformVariable);
    if (withoutDisplay) {
        qputenv(PlatformVariable, IntoMemory);
    }
    if (qgetenv(PlatformVariable) == IntoMemory) {
        s_formerHandler = qInstallMessageHandler(passMessageOn);
    }
    return withoutDisplay;
}

std::optional<QSize> parseSize(const QString &text, QString *problem)
{
    const QStringList sides = text.split('x');
    const std::optional<int> width = parseSide(sides.first());
    const std::optional<int> height = parseSide(sides.last());
    if (sides.size() != 2 || !width || !height) {
        *problem = QCoreApplication::translate("CommandLine",
                                               "--size wants WxH, each from %1 to %2, and not "
                                               "\"%3\"")
                       .arg(SmallestSide)
                       .arg(LargestSide)
                       .arg(text);
        return std::nullopt;
    }
    return QSize(*width, *height);
}

int failWith(const QString &message)
{
    QTextStream(stderr) << QCoreApplication::applicationName() << ": " << message << '\n';
    return ExitFailure;
}
