#include "launcher.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

#include <optional>

namespace {

constexpr int ExitFailure = 1;
constexpr int SmallestSide = 200; // pixels of a window in which something can be seen
constexpr int LargestSide = 8192;

const char PlatformVariable[] = "QT_QPA_PLATFORM";

/// Chooses the platform that draws into memory where there is no display, for want of which Qt
/// would end the program. Returns whether it did. Must come before QApplication.
bool drawIntoMemoryWithoutDisplay()
{
    if (!qEnvironmentVariableIsEmpty("DISPLAY") ||
        !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
        !qEnvironmentVariableIsEmpty(PlatformVariable)) {
        return false;
    }
    qputenv(PlatformVariable, "offscreen");
    return true;
}

/// Reads "1200x800".
std::optional<QSize> parseSize(const QString &text)
{
    const auto parseSide = [](const QString &side) -> std::optional<int> {
        bool isNumber = false;
        const int pixels = side.toInt(&isNumber);
        if (!isNumber || pixels < SmallestSide || pixels > LargestSide) {
            return std::nullopt;
        }
        return pixels;
    };
    const QStringList sides = text.split('x');
    const std::optional<int> width = parseSide(sides.first());
    const std::optional<int> height = parseSide(sides.last());
    if (sides.size() != 2 || !width || !height) {
        return std::nullopt;
    }
    return QSize(*width, *height);
}

class CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CommandLine();

    /// Reads the program's arguments; ends the program for --help, --version and unknown options.
    /// Returns nothing if they make no sense, and \p problem says why.
    std::optional<LaunchOptions> parse(QString *problem);

private:
    const QCommandLineOption m_screenshot;
    const QCommandLineOption m_size;
    const QCommandLineOption m_separate;
    const QCommandLineOption m_combine;
    QCommandLineParser m_parser;
};

CommandLine::CommandLine()
    : m_screenshot("screenshot", tr("Write a picture of the window as PNG, and end."), "FILE.png")
    , m_size("size", tr("Size of the window in pixels (1200x800)."), "WxH", "1200x800")
    , m_separate("separate", tr("Show each column in a pane of its own."))
    , m_combine("combine", tr("Show all columns in one pane."))
{
    m_parser.setApplicationDescription(
        tr("Shows the columns of a CSV or TSV file over the first one, which holds numbers or "
           "dates and times in ISO form."));
    m_parser.addOptions({m_screenshot, m_size, m_separate, m_combine});
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    m_parser.addPositionalArgument("FILE", tr("The file to show."), "[FILE]");
}

std::optional<LaunchOptions> CommandLine::parse(QString *problem)
{
    m_parser.process(QCoreApplication::arguments());
    LaunchOptions options;
    const QStringList files = m_parser.positionalArguments();
    options.fileName = files.value(0);
    options.screenshot = m_parser.value(m_screenshot);
    if (files.size() > 1) {
        *problem = tr("more than one file: %1").arg(files.join(' '));
        return std::nullopt;
    }
    if (m_parser.isSet(m_screenshot) && (files.isEmpty() || options.screenshot.isEmpty())) {
        *problem = tr("--screenshot needs a file to show and a file to write");
        return std::nullopt;
    }
    const std::optional<QSize> size = parseSize(m_parser.value(m_size));
    if (!size) {
        *problem = tr("--size wants WxH, each from %1 to %2, and not \"%3\"")
                       .arg(SmallestSide)
                       .arg(LargestSide)
                       .arg(m_parser.value(m_size));
        return std::nullopt;
    }
    options.size = *size;
    if (m_parser.isSet(m_separate) && m_parser.isSet(m_combine)) {
        *problem = tr("--separate and --combine exclude each other");
        return std::nullopt;
    }
    if (m_parser.isSet(m_separate)) {
        options.paneMode = ViewerWindow::SeparatePanes;
    } else if (m_parser.isSet(m_combine)) {
        options.paneMode = ViewerWindow::CombinedPanes;
    }
    return options;
}

int failWith(const QString &message)
{
    QTextStream(stderr) << QCoreApplication::applicationName() << ": " << message << '\n';
    return ExitFailure;
}

} // namespace

int main(int argc, char *argv[])
{
    const bool withoutDisplay = drawIntoMemoryWithoutDisplay();
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName("QUARVChart5");
    QCoreApplication::setApplicationName("csvviewer");
    QCoreApplication::setApplicationVersion(CSVVIEWER_VERSION);

    QString problem;
    const std::optional<LaunchOptions> options = CommandLine().parse(&problem);
    if (!options) {
        return failWith(problem);
    }
    if (withoutDisplay && options->screenshot.isEmpty()) {
        return failWith(CommandLine::tr("there is no display; --screenshot writes a picture"));
    }
    Launcher launcher(*options);
    launcher.launch();
    return application.exec();
}
